#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "MultiEntityHostHelpers/ForwardingServices.h"
#include "support/ScriptedHost.h"
#include "tests/host_contract/HostUnderTest.h"

namespace host_contract {

namespace {

class ScriptedUnderTest : public HostUnderTest {
 public:
  ScriptedUnderTest() { host_.permissions.administrator = true; }

  const HostServices& Services() override { return host_.Services(); }

  std::int32_t SeedAccount(std::string_view fullName, std::int16_t type, std::int32_t specialKind,
                           bool deleted) override {
    const auto recnum = static_cast<std::int32_t>(host_.chart.accounts.size()) + 1;
    host_.chart.accounts[recnum] = {.name = std::string(fullName),
                                    .type = type,
                                    .isSubAccount = fullName.find(':') != std::string_view::npos,
                                    .deleted = deleted,
                                    .specialKinds = {specialKind}};
    return recnum;
  }

  std::int32_t SeedName(std::string_view fullName) override {
    Util::TString name(fullName);
    std::int32_t id = 0;
    EXPECT_EQ(host_.names.CreateCName(name, kNameTypeVendor, id), kEdListSuccess);
    return id;
  }

  void SetRemovalUnderWay(bool underWay) override {
    host_.journal.removalUnderWay = [underWay] {
      return underWay;
    };
  }

  // The company is kept in memory and is all there is of it.
  void Reopen() override {}

 private:
  ScriptedHost host_;
};

// A host in front of the scripted one, whose promises have to reach through it.
class ForwardedUnderTest final : public ScriptedUnderTest {
 public:
  const HostServices& Services() override { return services_; }

 private:
  struct Front final : Forwarding::Host {
    using Host::Host;
  };

  Front front_{ScriptedUnderTest::Services()};
  HostServices services_ = front_.Services();
};

constexpr HostMaker kScripted{"Scripted", []() -> std::unique_ptr<HostUnderTest> {
                                return std::make_unique<ScriptedUnderTest>();
                              }};
constexpr HostMaker kForwarded{"Forwarded", []() -> std::unique_ptr<HostUnderTest> {
                                 return std::make_unique<ForwardedUnderTest>();
                               }};

}  // namespace

INSTANTIATE_TEST_SUITE_P(ScriptedHost, RelationStore, testing::Values(kScripted, kForwarded), NameOfHost);
INSTANTIATE_TEST_SUITE_P(ScriptedHost, TransactionRowStore, testing::Values(kScripted, kForwarded), NameOfHost);
INSTANTIATE_TEST_SUITE_P(ScriptedHost, RejectedTransactionStore, testing::Values(kScripted, kForwarded), NameOfHost);
INSTANTIATE_TEST_SUITE_P(ScriptedHost, AccountList, testing::Values(kScripted, kForwarded), NameOfHost);
INSTANTIATE_TEST_SUITE_P(ScriptedHost, NameListing, testing::Values(kScripted, kForwarded), NameOfHost);
INSTANTIATE_TEST_SUITE_P(ScriptedHost, GeneralJournal, testing::Values(kScripted, kForwarded), NameOfHost);
INSTANTIATE_TEST_SUITE_P(ScriptedHost, TransactionLine, testing::Values(kScripted, kForwarded), NameOfHost);
INSTANTIATE_TEST_SUITE_P(ScriptedHost, MoneyText, testing::Values(kScripted, kForwarded), NameOfHost);
INSTANTIATE_TEST_SUITE_P(ScriptedHost, Preference, testing::Values(kScripted, kForwarded), NameOfHost);

}  // namespace host_contract
