#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntity/MultiEntityDriver.h"
#include "support/AttachedHost.h"

// The situations that the module's tests start from.

inline constexpr const char* kFeatureSection = "MultiEntityFeature";
inline constexpr const char* kAccountsSection = "MultiEntityAccounts";

inline MEAccountInfo AccountInRole(std::int32_t accountId, MEAccountRole role) {
  return {.name = {}, .type = 0, .accountId = accountId, .role = role};
}
inline MEAccountInfo DueFrom(std::int32_t accountId) {
  return AccountInRole(accountId, MEAccountRoleDueFrom);
}
inline MEAccountInfo DueTo(std::int32_t accountId) {
  return AccountInRole(accountId, MEAccountRoleDueTo);
}

inline Util::TString Characters(std::size_t count) {
  return std::string_view(std::string(count, '7'));
}

// Has the library read its switches, as it does once in a process, so that what follows happens while the feature is
// off. The record starts empty again.
inline void HaveTheFeatureOff(ScriptedHost& host) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");
  EXPECT_FALSE(MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal))
      << "the switches were read before";
  host.Forget();
  host.ops.lines.clear();
}

// A company whose administrator is signed in, with two pairs of accounts that can serve in relations.
class Company : public AttachedTest {
 protected:
  Company() {
    host.permissions.administrator = true;
    host.chart.accounts = {{11, {.name = "Due from North", .type = KrEnumerations::kOtherCurrentAsset}},
                           {12, {.name = "Due to North", .type = KrEnumerations::kOtherCurrentLiability}},
                           {13, {.name = "Due from South", .type = KrEnumerations::kOtherCurrentAsset}},
                           {14, {.name = "Due to South", .type = KrEnumerations::kOtherCurrentLiability}}};
  }

  void TurnTheFeatureOff() { host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL"); }
};

// The lines of a gated operation while the feature is off.
inline testing::Matcher<std::vector<LogLine>> RefusedAsDisabled(const std::string& shortName, const std::string& note) {
  return InOrder(Entering(shortName), FeatureAsked(), GlobalFeatureOff(), FeatureRefused(), Trace(note));
}
