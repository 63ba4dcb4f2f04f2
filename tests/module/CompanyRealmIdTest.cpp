#include <stdexcept>
#include <string>

#include "module/Arrangements.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// The realm id that the company file remembers. Blocks that a test does not give back are the platform's.
class RememberedRealmId : public AttachedTest {
 protected:
  const char* Get(const char* realmId) { return MultiEntityDriver::GetMECacheRealmId(realmId, ok); }
  static bool Set(std::string realmId) { return MultiEntityDriver::SetMECacheRealmId(realmId.data()); }

  void FileRemembers(const std::string& realmId) { host.databasePreferences.values = {{"MERealmId", realmId}}; }

  bool ok = false;
};

TEST_F(RememberedRealmId, IsTheOneThatTheFirstCallerGives) {
  EXPECT_EQ(Get("9130"), nullptr);

  EXPECT_TRUE(ok);
  EXPECT_THAT(host.databasePreferences.values, ElementsAre(Pair("MERealmId", "9130")));
  EXPECT_THAT(host.Calls(), InOrder("GetActiveFileMgr()", "GetFileState()", "GetCompanyDBPreference(MERealmId)",
                                    "SetCompanyDBPreference(MERealmId, 9130)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RememberedRealmId, IsAnsweredFromTheSecondCallOnWhateverIsGiven) {
  Get("9130");

  EXPECT_STREQ(Get("9999"), "9130");

  EXPECT_TRUE(ok);
  EXPECT_THAT(host.databasePreferences.values, ElementsAre(Pair("MERealmId", "9130")));
}

TEST_F(RememberedRealmId, ComesInABlockOfItsLengthAndANul) {
  FileRemembers("9130");

  EXPECT_STREQ(Get(""), "9130");

  EXPECT_THAT(host.Calls(), InOrder("GetActiveFileMgr()", "GetFileState()", "GetCompanyDBPreference(MERealmId)",
                                    "LocalAlloc(64, 5)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RememberedRealmId, ComesInABlockOfTheCallersOwnEachTime) {
  FileRemembers("9130");
  char* first = MultiEntityDriver::GetMECacheRealmId("", ok);
  ASSERT_NE(first, nullptr);
  first[0] = 'x';

  EXPECT_STREQ(Get(""), "9130");
  host.platform.LocalFree(first);

  EXPECT_EQ(host.databasePreferences.values.at("MERealmId"), "9130");
}

TEST_F(RememberedRealmId, MayBeEmptyAndThenComesAsANulOnly) {
  FileRemembers("");

  EXPECT_STREQ(Get("9130"), "");

  EXPECT_TRUE(ok);
  EXPECT_THAT(host.CallsOf({"LocalAlloc", "SetCompanyDBPreference"}), InOrder("LocalAlloc(64, 1)"));
}

TEST_F(RememberedRealmId, IsRememberedAlsoWhenItIsEmpty) {
  EXPECT_EQ(Get(""), nullptr);

  EXPECT_THAT(host.databasePreferences.values, ElementsAre(Pair("MERealmId", "")));
}

TEST_F(RememberedRealmId, IsAskedOfNoFileWhileNoneIsOpen) {
  host.application.hasActiveFile = false;

  EXPECT_EQ(Get("9130"), nullptr);

  EXPECT_TRUE(ok);
  EXPECT_THAT(host.Calls(), InOrder("GetActiveFileMgr()"));
  EXPECT_THAT(host.databasePreferences.values, IsEmpty());
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RememberedRealmId, IsNotAskedWhileTheDatabaseMayNotBeUsed) {
  host.application.fileState = 1;
  FileRemembers("9130");

  EXPECT_EQ(Get("9130"), nullptr);

  EXPECT_TRUE(ok);
  EXPECT_THAT(host.Calls(), InOrder("GetActiveFileMgr()", "GetFileState()"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RememberedRealmId, IsAskedInEveryOtherStateOfTheFile) {
  FileRemembers("9130");
  host.application.fileState = 2;
  EXPECT_STREQ(Get(""), "9130");
  host.application.fileState = -1;
  EXPECT_STREQ(Get(""), "9130");
}

TEST_F(RememberedRealmId, ThatCannotBeReadIsNotReplaced) {
  FileRemembers("9130");
  host.FailAt("GetCompanyDBPreference", -6017);

  EXPECT_EQ(Get("9999"), nullptr);

  EXPECT_FALSE(ok);
  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR::In MultiEntityDriver::GetMECacheRealmId, Unable to read "
                                          "CDB Preferences")));
  EXPECT_EQ(host.databasePreferences.values.at("MERealmId"), "9130");
}

TEST_F(RememberedRealmId, ThatCannotBeRememberedIsNotOkAndLeavesNoLine) {
  host.FailAt("SetCompanyDBPreference");

  EXPECT_EQ(Get("9130"), nullptr);

  EXPECT_FALSE(ok);
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RememberedRealmId, IsNotAnsweredWhenThereIsNoMemoryForIt) {
  FileRemembers("9130");
  host.FailAt("LocalAlloc");

  EXPECT_EQ(Get(""), nullptr);

  EXPECT_TRUE(ok);
  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR::Exiting MultiEntityDriver::GetMECacheRealmId, due to "
                                          "generic exception")));
}

TEST_F(RememberedRealmId, IsRememberedAnsweredAndReplacedByAnyoneAlsoWhileTheFeatureIsOff) {
  HaveTheFeatureOff(host);

  EXPECT_EQ(Get("9130"), nullptr);
  EXPECT_STREQ(Get("9999"), "9130");
  EXPECT_TRUE(Set("9131"));

  EXPECT_THAT(host.databasePreferences.values, ElementsAre(Pair("MERealmId", "9131")));
  EXPECT_THAT(host.CallsOf({"CurrentUserIsAdminUser", "FeaturePermissionAvailable"}), IsEmpty());
  EXPECT_THAT(host.Lines(), IsEmpty());
}

class RememberedRealmIdStep : public RememberedRealmId, public testing::WithParamInterface<const char*> {};

TEST_P(RememberedRealmIdStep, ReportsWhateverTheHostThrowsAndAnswersNothing) {
  host.ThrowAt(GetParam(), 42);

  EXPECT_EQ(Get("9130"), nullptr);

  EXPECT_TRUE(ok);
  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR::Exiting MultiEntityDriver::GetMECacheRealmId, due to "
                                          "generic exception")));
}

INSTANTIATE_TEST_SUITE_P(Every, RememberedRealmIdStep,
                         testing::Values("GetActiveFileMgr", "GetFileState", "GetCompanyDBPreference",
                                         "SetCompanyDBPreference"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(RememberedRealmId, IsReplacedOnDemand) {
  FileRemembers("9130");

  EXPECT_TRUE(Set("9131"));

  EXPECT_THAT(host.databasePreferences.values, ElementsAre(Pair("MERealmId", "9131")));
  EXPECT_THAT(host.Calls(), InOrder("GetActiveFileMgr()", "GetFileState()", "SetCompanyDBPreference(MERealmId, 9131)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RememberedRealmId, IsNotReplacedWhileNoFileIsOpen) {
  host.application.hasActiveFile = false;

  EXPECT_FALSE(Set("9131"));

  EXPECT_THAT(host.Calls(), InOrder("GetActiveFileMgr()"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RememberedRealmId, IsNotReplacedWhileTheDatabaseMayNotBeUsed) {
  host.application.fileState = 1;

  EXPECT_FALSE(Set("9131"));

  EXPECT_THAT(host.Calls(), InOrder("GetActiveFileMgr()", "GetFileState()"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RememberedRealmId, ThatCannotBeReplacedLeavesNoLine) {
  FileRemembers("9130");
  host.FailAt("SetCompanyDBPreference");

  EXPECT_FALSE(Set("9131"));

  EXPECT_EQ(host.databasePreferences.values.at("MERealmId"), "9130");
  EXPECT_THAT(host.Lines(), IsEmpty());
}

class ReplacedRealmIdStep : public RememberedRealmId, public testing::WithParamInterface<const char*> {};

TEST_P(ReplacedRealmIdStep, ReportsWhateverTheHostThrows) {
  host.ThrowAt(GetParam(), 42);

  EXPECT_FALSE(Set("9131"));

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR::Exiting MultiEntityDriver::SetMECacheRealmId, due to "
                                          "generic exception")));
}

INSTANTIATE_TEST_SUITE_P(Every, ReplacedRealmIdStep,
                         testing::Values("GetActiveFileMgr", "GetFileState", "SetCompanyDBPreference"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
