#include <stdexcept>
#include <string>

#include "module/Arrangements.h"
#include "support/MultiEntityPrivateAccess.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

constexpr const char* kResetQuestion =
    "YesNoInfoMsgO(Src/MultiEntityDriver, MultiEntityDriver::BlockUserIfRealmReset, 42, 14717, 1, 2, true, true)";
constexpr const char* kResetCommand = "ExecuteCommand(krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_REALM_RESET)";
constexpr const char* kNoRelationsMessage = "KRMSG_MessageO(0, 4, 0, 14717, [1; 2; 0; 1; 4; 5; 3; -1])";
constexpr const char* kNoRelationsCommand = "ExecuteCommand(krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_NORELATIONS)";

class Realm : public AttachedTest {
 protected:
  void FileRemembers(const std::string& realmId) { host.databasePreferences.values = {{"MERealmId", realmId}}; }
};

class RealmReset : public Realm {
 protected:
  static bool Ask(const char* realmId) { return MultiEntityPrivateAccess::IsRealmReset(realmId); }
};

TEST_F(RealmReset, IsNoneOnTheFirstUseWhichRemembersTheRealm) {
  EXPECT_FALSE(Ask("111"));

  EXPECT_THAT(host.databasePreferences.values, ElementsAre(Pair("MERealmId", "111")));
}

TEST_F(RealmReset, IsNoneWhileTheRealmIsTheOneRemembered) {
  FileRemembers("111");

  EXPECT_FALSE(Ask("111"));

  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RealmReset, IsSeenByAnotherRealmAndTheFirstStaysRemembered) {
  FileRemembers("111");

  EXPECT_TRUE(Ask("222"));

  EXPECT_THAT(host.databasePreferences.values, ElementsAre(Pair("MERealmId", "111")));
}

TEST_F(RealmReset, IsSeenByTheCaseOfALetterABlankOrALongerText) {
  FileRemembers("abc");

  EXPECT_TRUE(Ask("Abc"));
  EXPECT_TRUE(Ask("abc "));
  EXPECT_TRUE(Ask("abcd"));
  EXPECT_TRUE(Ask("ab"));
}

TEST_F(RealmReset, IsSeenWhenTheFileRemembersAnEmptyRealm) {
  FileRemembers("");

  EXPECT_TRUE(Ask("111"));
}

TEST_F(RealmReset, IsNoneWithoutARealmIdAlthoughTheFileIsAsked) {
  FileRemembers("111");

  EXPECT_FALSE(Ask(""));

  EXPECT_THAT(host.CallsOf({"GetCompanyDBPreference"}), SizeIs(1));
}

TEST_F(RealmReset, IsNoneWhenTheFileCannotBeRead) {
  host.FailAt("GetCompanyDBPreference", -1);

  EXPECT_FALSE(Ask("222"));

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR::In MultiEntityDriver::GetMECacheRealmId, Unable to read "
                                          "CDB Preferences")));
}

TEST_F(RealmReset, IsNoneWhenTheRealmCannotBeRemembered) {
  host.FailAt("SetCompanyDBPreference");

  EXPECT_FALSE(Ask("222"));
}

TEST_F(RealmReset, IsNoneWhileNoFileIsOpen) {
  host.application.hasActiveFile = false;

  EXPECT_FALSE(Ask("222"));
}

TEST_F(RealmReset, IsNoneWhenTheHostThrows) {
  host.ThrowAt("GetCompanyDBPreference", 42);

  EXPECT_FALSE(Ask("222"));

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR::Exiting MultiEntityDriver::GetMECacheRealmId, due to "
                                          "generic exception")));
}

TEST_F(RealmReset, KeepsTheBlockOfTheRememberedRealm) {
  FileRemembers("111");

  Ask("111");
  Ask("222");

  EXPECT_THAT(host.CallsOf({"LocalAlloc", "LocalFree"}), InOrder("LocalAlloc(64, 4)", "LocalAlloc(64, 4)"));
}

class RealmGuard : public Realm {
 protected:
  RealmGuard() { host.messages.strings[{2003, 3023}] = "This company has no realm id."; }

  static bool Blocks(const char* realmId) { return MultiEntityDriver::BlockUserIfRealmReset(realmId); }

  void ConfigureCheck(const std::string& value) { host.values.values[{"MultiEntity", "CheckForRealmReset"}] = value; }

  std::vector<std::string> Shown() const {
    return host.CallsOf({"YesNoInfoMsgO", "KRMSG_MessageO", "KRWarnMsgWithTitle02", "ExecuteCommand"});
  }
};

testing::Matcher<std::vector<LogLine>> OnlyTheGuardsException() {
  return InOrder(
      Error("MULTIENTITY_ERROR::Exiting MultiEntityDriver::BlockUserIfRealmReset, due to generic "
            "exception"));
}

TEST_F(RealmGuard, StopsAUserWithoutARealmId) {
  EXPECT_TRUE(Blocks(""));

  EXPECT_THAT(host.Calls(), InOrder("GetKRWinInstance()", "GetIndStringC(1024, 42, 2003, 3023)",
                                    "KRMSG_MessageO(0, 3, 3, 2003, [-7; Intercompany transactions; This company has no "
                                    "realm id.; -1])"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RealmGuard, StopsAUserWithoutARealmIdAlsoWhenTheCheckIsSwitchedOff) {
  ConfigureCheck("0");

  EXPECT_TRUE(Blocks(""));

  EXPECT_THAT(Shown(), SizeIs(1));
}

TEST_F(RealmGuard, LetsEveryRealmPassWithoutAskingTheFileWhenTheCheckIsSwitchedOff) {
  FileRemembers("111");
  ConfigureCheck("0");

  EXPECT_FALSE(Blocks("abc"));

  EXPECT_THAT(host.Calls(), InOrder("GetValue2(MultiEntity, CheckForRealmReset)"));
}

TEST_F(RealmGuard, AsksForTheSwitchAfreshEachTime) {
  FileRemembers("111");
  ConfigureCheck("0");
  EXPECT_FALSE(Blocks("222"));
  ConfigureCheck("1");

  EXPECT_TRUE(Blocks("222"));
}

TEST_F(RealmGuard, LetsTheFirstUsePassAndRemembersTheRealm) {
  EXPECT_FALSE(Blocks("111"));

  EXPECT_THAT(host.databasePreferences.values, ElementsAre(Pair("MERealmId", "111")));
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(RealmGuard, LetsTheRealmPassThatTheFileRemembers) {
  FileRemembers("111");

  EXPECT_FALSE(Blocks("111"));

  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RealmGuard, StopsAtAResetRealmAndOpensThePluginOnYes) {
  FileRemembers("111");
  host.messages.answer = kAnswerYes;

  EXPECT_TRUE(Blocks("222"));

  EXPECT_THAT(host.Calls(), InOrder("GetValue2(MultiEntity, CheckForRealmReset)", "GetActiveFileMgr()",
                                    "GetFileState()", "GetCompanyDBPreference(MERealmId)", "LocalAlloc(64, 4)",
                                    "GetKRWinInstance()", kResetQuestion, kResetCommand));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RealmGuard, ChecksTheRealmWhenTheSwitchCannotBeRead) {
  FileRemembers("111");
  host.ThrowAt("GetValue2", 42);

  EXPECT_TRUE(Blocks("222"));

  EXPECT_THAT(host.Lines(), InOrder(Error("DCE check failed for NeedToCheckForMERealmReset")));
}

TEST_F(RealmGuard, DoesNotStopWhenThePluginCannotBeOpened) {
  FileRemembers("111");
  host.messages.answer = kAnswerYes;
  host.ThrowAt("ExecuteCommand", std::runtime_error("there is no such command"));

  EXPECT_FALSE(Blocks("222"));

  EXPECT_THAT(host.Lines(), OnlyTheGuardsException());
}

TEST_F(RealmGuard, StopsAndLetsPassAlsoWhileTheFeatureIsOff) {
  FileRemembers("111");
  HaveTheFeatureOff(host);

  EXPECT_TRUE(Blocks(""));
  EXPECT_TRUE(Blocks("222"));
  EXPECT_FALSE(Blocks("111"));

  EXPECT_THAT(Shown(), SizeIs(2));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

class AnswerToTheReset : public RealmGuard, public testing::WithParamInterface<std::int32_t> {};

TEST_P(AnswerToTheReset, OtherThanYesStopsWithoutOpeningThePlugin) {
  FileRemembers("111");
  host.messages.answer = static_cast<YNC_Tag>(GetParam());

  EXPECT_TRUE(Blocks("222"));

  EXPECT_THAT(Shown(), InOrder(kResetQuestion));
}

INSTANTIATE_TEST_SUITE_P(Every, AnswerToTheReset, testing::Values(0, 2, 3, -1, 257));

class GuardStep : public RealmGuard, public testing::WithParamInterface<const char*> {};

TEST_P(GuardStep, DoesNotStopAUserWhoseQuestionCannotBeAsked) {
  FileRemembers("111");
  host.ThrowAt(GetParam(), 42);

  EXPECT_FALSE(Blocks("222"));

  EXPECT_THAT(host.Lines(), OnlyTheGuardsException());
}

INSTANTIATE_TEST_SUITE_P(Every, GuardStep, testing::Values("GetKRWinInstance", "YesNoInfoMsgO"),
                         [](const auto& tested) { return std::string(tested.param); });

class NoRealmStep : public RealmGuard, public testing::WithParamInterface<const char*> {};

TEST_P(NoRealmStep, DoesNotStopAUserWhoCannotBeTold) {
  host.ThrowAt(GetParam(), 42);

  EXPECT_FALSE(Blocks(""));

  EXPECT_THAT(host.Lines(), OnlyTheGuardsException());
}

INSTANTIATE_TEST_SUITE_P(Every, NoRealmStep, testing::Values("GetKRWinInstance", "GetIndStringC", "KRMSG_MessageO"),
                         [](const auto& tested) { return std::string(tested.param); });

class PluginNavigation : public AttachedTest {
 protected:
  static bool GoesOn() { return MultiEntityDriver::CheckForPluginNavigation(); }

  std::vector<std::string> Shown() const { return host.CallsOf({"KRMSG_MessageO", "YesNoInfoMsgO", "ExecuteCommand"}); }

  testing::Matcher<std::vector<LogLine>> RelationsReadAnd(const std::string& last) const {
    return InOrder(Entering("MultiEntityDriver::GetRelationsList"), FeatureAsked(), RightAsked(), RightAnswered(),
                   Error(last));
  }
};

TEST_F(PluginNavigation, GoesOnWithOneEstablishedRelation) {
  host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130", .state = 1}),
                          RelationRow({.relationId = 6, .realmId = "9131", .state = 3})};

  EXPECT_TRUE(GoesOn());

  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_THAT(host.Lines(),
              InOrder(Entering("MultiEntityDriver::GetRelationsList"), FeatureAsked(), RightAsked(), RightAnswered()));
}

TEST_F(PluginNavigation, OpensThePluginForTheFirstRelation) {
  host.messages.messageAnswer = 0;

  EXPECT_FALSE(GoesOn());

  EXPECT_THAT(Shown(), InOrder(kNoRelationsMessage, kNoRelationsCommand));
}

TEST_F(PluginNavigation, OpensThePluginWhenNoRelationIsEstablished) {
  host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130", .state = 1}),
                          RelationRow({.relationId = 6, .realmId = "9131", .state = 4}),
                          RelationRow({.relationId = 7, .realmId = "9132", .state = 5})};

  EXPECT_FALSE(GoesOn());

  EXPECT_THAT(Shown(), InOrder(kNoRelationsMessage, kNoRelationsCommand));
}

TEST_F(PluginNavigation, GoesOnWhileTheFeatureIsOffAndSaysWhy) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  EXPECT_TRUE(GoesOn());

  EXPECT_THAT(host.LinesOf("MultiEntityDriver::CheckForPluginNavigation"),
              InOrder(Trace("MULTIENTITY::Exiting MultiEntityDriver::CheckForPluginNavigation, due to Error 2")));
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(PluginNavigation, GoesOnWhenTheRelationsCannotBeReadAndSaysWhy) {
  host.FailAt("GetAllRelations");

  EXPECT_TRUE(GoesOn());

  EXPECT_THAT(host.LinesOf("MultiEntityDriver::CheckForPluginNavigation"),
              InOrder(Trace("MULTIENTITY::Exiting MultiEntityDriver::CheckForPluginNavigation, due to Error 8")));
  EXPECT_THAT(Shown(), IsEmpty());
}

class AnswerToNoRelations : public PluginNavigation, public testing::WithParamInterface<std::int32_t> {};

TEST_P(AnswerToNoRelations, OtherThanZeroGoesOn) {
  host.messages.messageAnswer = GetParam();

  EXPECT_TRUE(GoesOn());

  EXPECT_THAT(Shown(), InOrder(kNoRelationsMessage));
}

INSTANTIATE_TEST_SUITE_P(Every, AnswerToNoRelations, testing::Values(1, 2, -1));

class PluginNavigationStep : public PluginNavigation, public testing::WithParamInterface<const char*> {};

TEST_P(PluginNavigationStep, GoesOnWhateverTheHostThrows) {
  host.ThrowAt(GetParam(), 42);

  EXPECT_TRUE(GoesOn());

  EXPECT_THAT(host.Lines(), RelationsReadAnd("MULTIENTITY_ERROR::Exiting "
                                             "MultiEntityDriver::CheckForPluginNavigation, due to generic exception"));
}

INSTANTIATE_TEST_SUITE_P(Every, PluginNavigationStep,
                         testing::Values("GetAllRelations", "KRMSG_MessageO", "ExecuteCommand"),
                         [](const auto& tested) { return std::string(tested.param); });

class Persona : public AttachedTest {
 protected:
  static std::int32_t OfRole(int role) { return MultiEntityDriver::SybaseRelationsUserPersonaForRole(role); }

  void Grant(UserAction action) { host.permissions.lists.emplace(kListAccounts, action); }

  std::vector<std::string> Questions() const { return host.CallsOf({"ListPermissionAvailable"}); }
};

TEST_F(Persona, OfRolesZeroAndFifteenIsTheManagerWithoutAQuestion) {
  EXPECT_EQ(OfRole(0), 3);
  EXPECT_EQ(OfRole(15), 3);

  EXPECT_THAT(Questions(), IsEmpty());
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(Persona, OfRoleOneIsTheManagerWhoMayDelete) {
  Grant(kActionDelete);

  EXPECT_EQ(OfRole(1), 3);

  EXPECT_THAT(host.Calls(),
              InOrder("OpenAccount(1)", "ListPermissionAvailable(1, 0, 4, 1, 0, 0)", "ReleaseAccount(0)"));
}

TEST_F(Persona, OfRoleOneIsTheContributorWhoMayViewOnly) {
  Grant(kActionView);

  EXPECT_EQ(OfRole(1), 2);

  EXPECT_THAT(Questions(),
              InOrder("ListPermissionAvailable(1, 0, 4, 1, 0, 0)", "ListPermissionAvailable(1, 0, 2, 1, 0, 0)"));
}

TEST_F(Persona, OfRoleOneIsNoneWithoutARight) {
  Grant(kActionModify);

  EXPECT_EQ(OfRole(1), 0);

  EXPECT_THAT(Questions(),
              InOrder("ListPermissionAvailable(1, 0, 4, 1, 0, 0)", "ListPermissionAvailable(1, 0, 2, 1, 0, 0)"));
}

class OtherRole : public Persona, public testing::WithParamInterface<int> {};

TEST_P(OtherRole, IsTheViewerWhoMayView) {
  Grant(kActionView);

  EXPECT_EQ(OfRole(GetParam()), 1);

  EXPECT_THAT(host.Calls(),
              InOrder("OpenAccount(1)", "ListPermissionAvailable(1, 0, 2, 1, 0, 0)", "ReleaseAccount(0)"));
}

TEST_P(OtherRole, IsNoneWithoutTheRightToView) {
  Grant(kActionDelete);

  EXPECT_EQ(OfRole(GetParam()), 0);

  EXPECT_THAT(Questions(), InOrder("ListPermissionAvailable(1, 0, 2, 1, 0, 0)"));
}

INSTANTIATE_TEST_SUITE_P(Every, OtherRole, testing::Values(2, 14, 16, -1, 2147483647));

class PersonaStep : public Persona, public testing::WithParamInterface<const char*> {};

TEST_P(PersonaStep, IsNoneWhateverTheHostThrows) {
  Grant(kActionDelete);
  host.ThrowAt(GetParam(), 42);

  EXPECT_EQ(OfRole(1), 0);

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR::Exiting "
                                          "MultiEntityDriver::SybaseRelationsUserPersonaForRole, due to generic "
                                          "exception")));
  EXPECT_EQ(host.chart.open.Count(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Every, PersonaStep, testing::Values("OpenAccount", "ListPermissionAvailable"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
