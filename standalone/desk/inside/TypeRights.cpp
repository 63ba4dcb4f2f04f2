#include "standalone/desk/inside/TypeRights.h"

#include <algorithm>
#include <array>
#include <string>

#include "standalone/values/Rights.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

constexpr std::array kFeatures{kFeatureBills, kFeatureChecks, kFeatureJournalEntries};

bool HasRightsTo(Work& work, ProgramFeature feature, std::initializer_list<UserAction> actions) {
  return std::ranges::all_of(actions, [&](UserAction action) { return work.HasRight({feature, action}); });
}

// "bills:create and bills:modify".
std::string RightsText(ProgramFeature feature, std::initializer_list<UserAction> actions) {
  std::string text;
  for (const UserAction action : actions) {
    text.append(text.empty() ? "" : " and ").append(standalone::FeatureRightText({feature, action}));
  }
  return text;
}

}  // namespace

ProgramFeature FeatureOf(std::int16_t txnType) noexcept {
  switch (txnType) {
    case kTxnTypeBill:
      return kFeatureBills;
    case kTxnTypeCheck:
      return kFeatureChecks;
    case kTxnTypeJournalEntry:
      return kFeatureJournalEntries;
    default:
      return kFeatureNone;
  }
}

void RequireRightsToSomeType(Work& work, std::initializer_list<UserAction> actions) {
  std::string missing;
  for (const ProgramFeature feature : kFeatures) {
    if (HasRightsTo(work, feature, actions)) return;
    missing.append(missing.empty() ? "" : ", or ").append(RightsText(feature, actions));
  }
  work.Refuse("The user " + standalone::Quoted(work.Host().CurrentUser().name) + " needs " + missing + ".",
              Remedy::kAskForTheRight);
}

void RequireRightsToType(Work& work, std::int16_t txnType, std::initializer_list<UserAction> actions) {
  for (const UserAction action : actions) work.RequireRight({FeatureOf(txnType), action});
}

}  // namespace desk
