#include <stdexcept>
#include <string>
#include <vector>

#include "module/Arrangements.h"

namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;
using testing::ThrowsMessage;

const std::string kCreate = "MultiEntityDriver::CreateRelation";
const std::string kUpdate = "MultiEntityDriver::UpdateRelation";
const std::string kDelete = "MultiEntityDriver::DeleteRelation";

constexpr MERelationType kSomeType{7};
constexpr MEState kStateTwo{2};
constexpr MEState kStateZero{0};

class Relation : public Company {
 protected:
  static MEStatusCode Create(Util::TString realmId, MEState state, std::vector<MEAccountInfo> accounts) {
    return MultiEntityDriver::CreateRelation(realmId, "North Ltd", kSomeType, state, accounts);
  }
  static MEStatusCode CreateNamed(Util::TString realmId, Util::TString partnerName) {
    return MultiEntityDriver::CreateRelation(realmId, partnerName, kSomeType, MEStatePending, {DueFrom(11), DueTo(12)});
  }

  // A relation that the store has kept for a while.
  DBMultiEntityRelation& Keep(std::int16_t state) {
    DBMultiEntityRelation row = RelationRow({.relationId = 5,
                                             .realmId = "9130",
                                             .partnerName = "North Ltd",
                                             .relationType = 2,
                                             .state = state,
                                             .dueFromAccountId = 11,
                                             .dueToAccountId = 12});
    row.createdAt = 1'600'000'000'001;
    row.changedAt = 1'600'000'000'002;
    row.revision = 4;
    host.store.relations.push_back(row);
    return host.store.relations.back();
  }

  // A relation of another partner, with the second pair of accounts.
  void KeepAnotherPartner() {
    host.store.relations.push_back(
        RelationRow({.relationId = 6, .realmId = "9131", .dueFromAccountId = 13, .dueToAccountId = 14}));
  }

  std::vector<std::string> StoreCalls() const {
    return host.CallsOf({"GetRelation", "SaveRelation", "UpdateRelationForRealm", "DeleteRelation",
                         "HasAnyMatchingRecord", "HasAnyMatchingAccRecordExclRealm", "HasAnyMatchingTransaction"});
  }
};

testing::Matcher<DBMultiEntityRelation> WithAccounts(std::int32_t dueFrom, std::int32_t dueTo) {
  return AllOf(Field("dueFromAccountId", &DBMultiEntityRelation::dueFromAccountId, dueFrom),
               Field("dueToAccountId", &DBMultiEntityRelation::dueToAccountId, dueTo));
}

testing::Matcher<DBMultiEntityRelation> InState(std::int16_t state) {
  return Field("state", &DBMultiEntityRelation::state, state);
}

TEST_F(Relation, IsNotCreatedWhileTheFeatureIsOff) {
  TurnTheFeatureOff();

  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(11), DueTo(12)}), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kCreate, "MULTIENTITY: CreateRelation :Feature is disabled"));
  EXPECT_THAT(host.Calls(), Each(testing::StartsWith("IsFeatureEnabled(MultiEntityFeature")));
}

TEST_F(Relation, IsNotCreatedByAUserWhoMayNotManageRelations) {
  host.permissions.administrator = false;

  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(11), DueTo(12)}), MEStatusPermissionDenied);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Trace("MULTIENTITY: No permission to create relation")));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(Relation, IsCreatedWithALineForEachGateAndNoExitLine) {
  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(11), DueTo(12)}), MEStatusSuccess);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered()));
}

TEST_F(Relation, IsCreatedInThisOrderOfQuestions) {
  Create("9130", MEStatePending, {DueFrom(11), DueTo(12)});

  EXPECT_THAT(
      host.Calls(),
      InOrder("IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)", "IsFeatureEnabled(MultiEntityFeature, ME_FOR_BILLS)",
              "IsFeatureEnabled(MultiEntityFeature, ME_FOR_CHECKS)", "LoadLibraryA(AddinBridge.DLL)",
              "CurrentUserIsAdminUser()", "GetRelation(9130)", "HasAnyMatchingRecord(9130, 11, 12)",
              "GetAccntListPtr()", "EdListRefreshList(list, 1)",  //
              "OpenAccount(1)", "GetAccountForRecnum(11)", "GetDeleted(11)", "GetType(11)", "GetIsSubAccnt(11)",
              "IsSpecial(11, 5)", "IsFeatureEnabled(MultiEntityAccounts, Other_Current_Asset)",
              "ReleaseAccount(11)",  //
              "OpenAccount(1)", "GetAccountForRecnum(12)", "GetDeleted(12)", "GetType(12)", "GetIsSubAccnt(12)",
              "IsSpecial(12, 5)", "IsFeatureEnabled(MultiEntityAccounts, Other_Current_Liability)",
              "ReleaseAccount(12)",  //
              "SaveRelation(9130)"));
}

TEST_F(Relation, IsSavedWithWhatTheCallerGaveAndNothingLeftOverFromTheFailedLookUp) {
  Create("9130", MEStateEstablished, {DueFrom(11), DueTo(12)});

  ASSERT_THAT(host.store.relationsHandedIn, SizeIs(1));
  const DBMultiEntityRelation expected = RelationRow({.relationId = 0,
                                                      .realmId = "9130",
                                                      .partnerName = "North Ltd",
                                                      .relationType = 7,
                                                      .state = 3,
                                                      .dueFromAccountId = 11,
                                                      .dueToAccountId = 12});
  const DBMultiEntityRelation& saved = host.store.relationsHandedIn.front();
  EXPECT_EQ(saved.relationId, 0);
  EXPECT_TRUE(std::ranges::equal(saved.realmId, expected.realmId));
  EXPECT_TRUE(std::ranges::equal(saved.partnerName, expected.partnerName));
  EXPECT_EQ(saved.relationType, 7);
  EXPECT_EQ(saved.state, 3);
  EXPECT_EQ(saved.createdAt, 0);
  EXPECT_EQ(saved.changedAt, 0);
  EXPECT_EQ(saved.revision, 0);
  EXPECT_THAT(saved, WithAccounts(11, 12));
}

TEST_F(Relation, TakesItsAccountsByTheirRolesAndNotByTheirOrder) {
  const Util::TString realmId = Characters(19);

  EXPECT_EQ(Create(realmId, MEStatePending, {DueTo(12), DueFrom(11)}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(WithAccounts(11, 12)));
  EXPECT_EQ(host.store.relations.front().realmId, realmId.view());
  EXPECT_THAT(host.CallsOf({"HasAnyMatchingRecord"}), InOrder("HasAnyMatchingRecord(7777777777777777777, 12, 11)"));
}

TEST_F(Relation, IsNotCreatedWithARealmIdOfTwentyCharactersAndTheStoreIsNotAsked) {
  EXPECT_EQ(Create(Characters(20), MEStatePending, {DueFrom(11), DueTo(12)}), MEStatusInvalidData);

  EXPECT_THAT(StoreCalls(), IsEmpty());
  EXPECT_THAT(host.Lines(), InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR::CreateRelation failed as Invalid data for realm "
                                          "[77777777777777777777]")));
}

TEST_F(Relation, IsNotCreatedWithoutARealmId) {
  EXPECT_EQ(Create("", MEStatePending, {DueFrom(11), DueTo(12)}), MEStatusInvalidData);

  EXPECT_THAT(StoreCalls(), IsEmpty());
  EXPECT_THAT(host.LinesOf(kCreate),
              InOrder(Entering(kCreate), Error("MULTIENTITY_ERROR::CreateRelation failed as Invalid data for "
                                               "realm []")));
}

TEST_F(Relation, KeepsAPartnerNameOfFiftyNineCharactersWhole) {
  const Util::TString partnerName = Characters(59);

  EXPECT_EQ(CreateNamed("9130", partnerName), MEStatusSuccess);

  ASSERT_THAT(host.store.relations, SizeIs(1));
  EXPECT_EQ(host.store.relations.front().partnerName, partnerName.view());
}

TEST_F(Relation, IsNotCreatedWithAPartnerNameOfSixtyCharacters) {
  EXPECT_EQ(CreateNamed("9130", Characters(60)), MEStatusInvalidData);

  EXPECT_THAT(StoreCalls(), IsEmpty());
  EXPECT_THAT(host.LinesOf(kCreate),
              InOrder(Entering(kCreate), Error("MULTIENTITY_ERROR::CreateRelation failed as Invalid data for "
                                               "realm [9130]")));
}

TEST_F(Relation, IsNotCreatedWithoutAPartnerName) {
  EXPECT_EQ(CreateNamed("9130", ""), MEStatusInvalidData);

  EXPECT_THAT(StoreCalls(), IsEmpty());
  EXPECT_THAT(host.LinesOf(kCreate),
              InOrder(Entering(kCreate), Error("MULTIENTITY_ERROR::CreateRelation failed as Invalid data for "
                                               "realm [9130]")));
}

TEST_F(Relation, IsNotCreatedTwiceWhenItIsEstablished) {
  Keep(MEStateEstablished);

  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(13), DueTo(14)}), MEStatusConflict);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Warning("MULTIENTITY_WARNING:: record already part of table realm [9130]")));
  EXPECT_THAT(StoreCalls(), InOrder("GetRelation(9130)"));
}

TEST_F(Relation, IsNotCreatedAgainAfterItWasDeactivated) {
  Keep(MEStateDeactivated);

  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(13), DueTo(14)}), MEStatusConflict);

  EXPECT_THAT(host.store.relations, ElementsAre(AllOf(InState(5), WithAccounts(11, 12))));
}

TEST_F(Relation, IsNotCreatedAgainInAStateWithoutARule) {
  Keep(2);

  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(13), DueTo(14)}), MEStatusConflict);
}

TEST_F(Relation, IsTakenUpAgainWhilePendingWithAnExitLine) {
  Keep(MEStatePending);

  EXPECT_EQ(Create("9130", MEStateEstablished, {DueFrom(13), DueTo(14)}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(AllOf(InState(3), WithAccounts(13, 14))));
  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered(), Exiting(kCreate)));
  EXPECT_THAT(StoreCalls(), InOrder("GetRelation(9130)", "UpdateRelationForRealm(9130, \"\")"));
}

TEST_F(Relation, IsTakenUpAgainWhenItHasNoAccounts) {
  Keep(MEStateWithoutAccounts);

  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(13), DueTo(14)}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(AllOf(InState(1), WithAccounts(13, 14))));
}

TEST_F(Relation, KeepsNameTypeAndTheStoresOwnColumnsWhenItIsTakenUpAgain) {
  Keep(MEStatePending);

  MultiEntityDriver::CreateRelation("9130", "Another Name", kSomeType, MEStateEstablished, {DueFrom(13), DueTo(14)});

  ASSERT_THAT(host.store.relationsHandedIn, SizeIs(1));
  const DBMultiEntityRelation& written = host.store.relationsHandedIn.front();
  EXPECT_STREQ(written.partnerName, "North Ltd");
  EXPECT_EQ(written.relationType, 2);
  EXPECT_EQ(written.relationId, 5);
  EXPECT_EQ(written.createdAt, 1'600'000'000'001);
  EXPECT_EQ(written.changedAt, 1'600'000'000'002);
  EXPECT_EQ(written.revision, 4);
}

TEST_F(Relation, IsTakenUpAgainWithAnyNumberOfAccountsAndWithoutALookAtTheirOtherUses) {
  Keep(MEStatePending);
  KeepAnotherPartner();

  EXPECT_EQ(Create("9130", MEStateEstablished, {DueTo(14)}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations.front(), WithAccounts(11, 14));
  EXPECT_THAT(host.CallsOf({"HasAnyMatchingRecord", "HasAnyMatchingAccRecordExclRealm"}), IsEmpty());
}

TEST_F(Relation, KeepsItsAccountsWhenItIsTakenUpAgainWithoutAny) {
  Keep(MEStatePending);

  EXPECT_EQ(Create("9130", MEStateWithoutAccounts, {}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(AllOf(InState(4), WithAccounts(11, 12))));
}

TEST_F(Relation, IsNotTakenUpAgainWithAnAccountThatCannotServe) {
  Keep(MEStatePending);

  EXPECT_EQ(Create("9130", MEStateEstablished, {DueFrom(13), DueTo(99)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.store.relationsHandedIn, IsEmpty());
  EXPECT_THAT(host.Lines(), InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: no matching Accnt for id [99] in  "
                                          "MultiEntityDriver::PopulateCOAInRelation")));
}

TEST_F(Relation, IsReportedAsNotWrittenWhenItCannotBeTakenUpAgain) {
  Keep(MEStatePending);
  host.FailAt("UpdateRelationForRealm");

  EXPECT_EQ(Create("9130", MEStateEstablished, {DueFrom(13), DueTo(14)}), MEStatusWriteFailed);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: not able to update relation, realm [9130]")));
}

TEST_F(Relation, NeedsExactlyTwoAccountsBeforeAnyOfThemIsLookedAt) {
  EXPECT_EQ(Create("9130", kStateZero, {DueFrom(11), DueTo(12), DueTo(14)}), MEStatusInvalidData);
  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(11)}), MEStatusInvalidData);
  EXPECT_EQ(Create("9130", MEStateEstablished, {}), MEStatusInvalidData);

  EXPECT_THAT(StoreCalls(), InOrder("GetRelation(9130)", "GetRelation(9130)", "GetRelation(9130)"));
  EXPECT_THAT(host.CallsOf({"EdListRefreshList", "OpenAccount"}), IsEmpty());
}

TEST_F(Relation, IsReportedAsInvalidWithAnotherNumberOfAccounts) {
  Create("9130", kStateZero, {DueFrom(11), DueTo(12), DueTo(14)});

  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR::CreateRelation failed as Invalid data for realm [9130]")));
}

TEST_F(Relation, IsNotCreatedWithAnAccountThatAnotherRelationUses) {
  KeepAnotherPartner();

  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(11), DueTo(14)}), MEStatusConflict);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Warning("MULTIENTITY_WARNING:: record already part of table realm [9130], "
                                            "accnt1 [11], accnt2 [14]")));
  EXPECT_THAT(host.CallsOf({"EdListRefreshList", "SaveRelation"}), IsEmpty());
}

TEST_F(Relation, IsNotCreatedWithAnAccountThatCannotServe) {
  host.chart.accounts[12].deleted = true;

  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(11), DueTo(12)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.store.relationsHandedIn, IsEmpty());
  EXPECT_THAT(host.Lines(), InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: Accnt for id [12] is marked deleted in  "
                                          "MultiEntityDriver::PopulateCOAInRelation")));
}

TEST_F(Relation, IsCreatedWithoutAccountsInTheStateThatCarriesNone) {
  EXPECT_EQ(Create("9130", MEStateWithoutAccounts, {}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(AllOf(InState(4), WithAccounts(0, 0))));
  EXPECT_THAT(StoreCalls(), InOrder("GetRelation(9130)", "SaveRelation(9130)"));
}

TEST_F(Relation, DoesNotLookAtAccountsInTheStateThatCarriesNone) {
  EXPECT_EQ(Create("9130", MEStateWithoutAccounts, {DueFrom(11), DueTo(99)}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(WithAccounts(0, 0)));
  EXPECT_THAT(host.CallsOf({"EdListRefreshList", "OpenAccount"}), IsEmpty());
}

TEST_F(Relation, IsCreatedInAStateWithoutARuleUnchanged) {
  EXPECT_EQ(Create("9130", kStateTwo, {DueFrom(11), DueTo(12)}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(InState(2)));
}

TEST_F(Relation, IsReportedAsNotCreatedWhenTheStoreDeclines) {
  host.FailAt("SaveRelation");

  EXPECT_EQ(Create("9130", MEStatePending, {DueFrom(11), DueTo(12)}), MEStatusWriteFailed);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kCreate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: Relation creation failed for realm [9130], "
                                          "due_from_accnt_id [11], due_to_accnt_id [12]")));
}

TEST_F(Relation, LetsTheHostsExceptionThroughWhenItIsCreated) {
  host.ThrowAtNth("GetIsSubAccnt", 2, std::runtime_error("the chart of accounts is locked"));

  EXPECT_THROW(Create("9130", MEStatePending, {DueFrom(11), DueTo(12)}), std::runtime_error);

  EXPECT_EQ(host.chart.open.Count(), 0U);
  EXPECT_THAT(host.store.relationsHandedIn, IsEmpty());
}

TEST_F(Relation, LetsAnythingThatTheStoreThrowsThroughWhenItIsCreated) {
  host.ThrowAt("GetRelation", 42);

  EXPECT_THROW(Create("9130", MEStatePending, {DueFrom(11), DueTo(12)}), int);
}

class RelationAccounts : public Company {
 protected:
  MEStatusCode Populate(std::vector<MEAccountInfo> accounts) {
    return MultiEntityDriver::PopulateCOAInRelation(row, accounts);
  }

  DBMultiEntityRelation row = RelationRow({.dueFromAccountId = 1, .dueToAccountId = 2});
};

testing::Matcher<std::vector<LogLine>> CannotUse(const std::string& id) {
  return InOrder(Error("MULTIENTITY_ERROR:: Can not use Accnt for MultiEntity for id [" + id +
                       "] in  MultiEntityDriver::PopulateCOAInRelation"));
}

TEST_F(RelationAccounts, AreFilledInByTheirRolesWithoutALine) {
  EXPECT_EQ(Populate({DueTo(12), DueFrom(11)}), MEStatusSuccess);

  EXPECT_THAT(row, WithAccounts(11, 12));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RelationAccounts, StayAsTheyAreWhenNoneIsGivenAndTheListIsRefreshedAllTheSame) {
  EXPECT_EQ(Populate({}), MEStatusSuccess);

  EXPECT_THAT(row, WithAccounts(1, 2));
  EXPECT_THAT(host.Calls(), InOrder("GetAccntListPtr()", "EdListRefreshList(list, 1)"));
}

TEST_F(RelationAccounts, StayAsTheyAreForARoleThatIsNone) {
  EXPECT_EQ(Populate({AccountInRole(11, static_cast<MEAccountRole>(2))}), MEStatusSuccess);

  EXPECT_THAT(row, WithAccounts(1, 2));
}

TEST_F(RelationAccounts, AreCheckedAlsoInARoleThatIsNone) {
  EXPECT_EQ(Populate({AccountInRole(99, static_cast<MEAccountRole>(2))}), MEStatusAccountUnusable);
}

TEST_F(RelationAccounts, MustExist) {
  EXPECT_EQ(Populate({DueFrom(99)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR:: no matching Accnt for id [99] in  "
                                          "MultiEntityDriver::PopulateCOAInRelation")));
}

TEST_F(RelationAccounts, AreNotFoundUnlessTheHostAnswersOne) {
  host.FailAt("GetAccountForRecnum", 0);

  EXPECT_EQ(Populate({DueFrom(11)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR:: no matching Accnt for id [11] in  "
                                          "MultiEntityDriver::PopulateCOAInRelation")));
}

TEST_F(RelationAccounts, MustNotBeMarkedDeletedEvenWhenTheOtherIsValid) {
  host.chart.accounts[12].deleted = true;

  EXPECT_EQ(Populate({DueFrom(11), DueTo(12)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR:: Accnt for id [12] is marked deleted in  "
                                          "MultiEntityDriver::PopulateCOAInRelation")));
}

TEST_F(RelationAccounts, AreReportedAsDeletedRatherThanAsIneligible) {
  host.chart.accounts[11] = {.name = "Old", .type = KrEnumerations::kAccountsPayable, .deleted = true};

  Populate({DueFrom(11)});

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR:: Accnt for id [11] is marked deleted in  "
                                          "MultiEntityDriver::PopulateCOAInRelation")));
}

TEST_F(RelationAccounts, MustNotBeSubAccounts) {
  host.chart.accounts[11].isSubAccount = true;

  EXPECT_EQ(Populate({DueFrom(11)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.Lines(), CannotUse("11"));
}

TEST_F(RelationAccounts, MustNotBeReceivable) {
  host.chart.accounts[11].type = KrEnumerations::kAccountsReceivable;

  EXPECT_EQ(Populate({DueFrom(11)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.Lines(), CannotUse("11"));
}

TEST_F(RelationAccounts, MustNotBePayable) {
  host.chart.accounts[12].type = KrEnumerations::kAccountsPayable;

  EXPECT_EQ(Populate({DueTo(12)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.Lines(), CannotUse("12"));
}

TEST_F(RelationAccounts, MustNotBeNonPosting) {
  host.chart.accounts[12].type = KrEnumerations::kNonPosting;

  EXPECT_EQ(Populate({DueTo(12)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.Lines(), CannotUse("12"));
}

TEST_F(RelationAccounts, MustNotBeOfTheSpecialKindFive) {
  host.chart.accounts[11].specialKinds = {5};

  EXPECT_EQ(Populate({DueFrom(11)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.Lines(), CannotUse("11"));
}

TEST_F(RelationAccounts, MayBeOfAnotherSpecialKind) {
  host.chart.accounts[11].specialKinds = {4, 6};

  EXPECT_EQ(Populate({DueFrom(11)}), MEStatusSuccess);
}

TEST_F(RelationAccounts, MustNotBeBankAccountsWhileBankAccountsAreSwitchedOff) {
  host.chart.accounts[11].type = KrEnumerations::kBank;
  host.switches.TurnOff(kAccountsSection, "Bank");

  EXPECT_EQ(Populate({DueFrom(11)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.Lines(), CannotUse("11"));
}

TEST_F(RelationAccounts, MustNotBeOfATypeThatHasNoSwitch) {
  host.chart.accounts[11].type = 16;

  EXPECT_EQ(Populate({DueFrom(11)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.Lines(), CannotUse("11"));
}

TEST_F(RelationAccounts, BeforeTheFirstThatFailsStayInTheRowAndThoseAfterItAreNotLookedAt) {
  EXPECT_EQ(Populate({DueFrom(11), DueTo(99), DueTo(14)}), MEStatusAccountUnusable);

  EXPECT_THAT(row, WithAccounts(11, 2));
  EXPECT_THAT(host.CallsOf({"GetAccountForRecnum"}), InOrder("GetAccountForRecnum(11)", "GetAccountForRecnum(99)"));
}

// Every call that the operation makes, but the release of an account.
class RelationAccountsStep : public RelationAccounts, public testing::WithParamInterface<const char*> {};

TEST_P(RelationAccountsStep, LetsTheHostsExceptionThroughAndLeavesTheRow) {
  host.ThrowAt(GetParam(), std::runtime_error(GetParam()));

  EXPECT_THAT([this] { Populate({DueFrom(11)}); }, ThrowsMessage<std::runtime_error>(GetParam()));

  EXPECT_THAT(row, WithAccounts(1, 2));
  EXPECT_EQ(host.chart.open.Count(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Every, RelationAccountsStep,
                         testing::Values("GetAccntListPtr", "EdListRefreshList", "OpenAccount", "GetAccountForRecnum",
                                         "GetDeleted", "GetType", "GetIsSubAccnt", "IsSpecial", "IsFeatureEnabled"),
                         [](const auto& tested) { return std::string(tested.param); });

class RelationUpdate : public Relation {
 protected:
  static MEStatusCode Update(MEState state, std::vector<MEAccountInfo> accounts) {
    return MultiEntityDriver::UpdateRelation(
        {.realmId = "9130", .updateRealm = {}, .state = state, .accounts = accounts, .skipPermissionCheck = false});
  }
  static MEStatusCode UpdateRealm(Util::TString realmId) {
    return MultiEntityDriver::UpdateRelation({.realmId = realmId,
                                              .updateRealm = {},
                                              .state = MEStateKeepStored,
                                              .accounts = {},
                                              .skipPermissionCheck = false});
  }
};

TEST_F(RelationUpdate, IsRefusedWhileTheFeatureIsOff) {
  TurnTheFeatureOff();

  EXPECT_EQ(Update(MEStateEstablished, {}), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kUpdate, "MULTIENTITY: UpdateRelationsWithState :Feature is disabled"));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationUpdate, IsRefusedToAUserWhoMayNotManageRelations) {
  host.permissions.administrator = false;

  EXPECT_EQ(Update(MEStateEstablished, {}), MEStatusPermissionDenied);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kUpdate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Trace("MULTIENTITY: No permission to update relation")));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationUpdate, DoesNotAskForTheRightWhenToldToSkipIt) {
  host.permissions.administrator = false;
  Keep(MEStatePending);

  const MEStatusCode status = MultiEntityDriver::UpdateRelation(
      {.realmId = "9130", .updateRealm = {}, .state = MEStateEstablished, .accounts = {}, .skipPermissionCheck = true});

  EXPECT_EQ(status, MEStatusSuccess);
  EXPECT_THAT(host.Lines(), InOrder(Entering(kUpdate), FeatureAsked(), Existing(kUpdate)));
  EXPECT_THAT(host.CallsOf({"LoadLibraryA", "CurrentUserIsAdminUser"}), IsEmpty());
}

TEST_F(RelationUpdate, NeedsARealmId) {
  EXPECT_EQ(UpdateRealm(""), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kUpdate), FeatureAsked(), RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for realm []")));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationUpdate, RefusesARealmIdOfTwentyCharactersBeforeTheStoreIsAsked) {
  EXPECT_EQ(UpdateRealm(Characters(20)), MEStatusInvalidData);

  EXPECT_THAT(host.LinesOf(kUpdate),
              InOrder(Entering(kUpdate), Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data "
                                               "for realm [77777777777777777777]")));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationUpdate, TakesARealmIdOfNineteenCharacters) {
  host.store.relations = {RelationRow({.realmId = "7777777777777777777"})};

  EXPECT_EQ(UpdateRealm(Characters(19)), MEStatusSuccess);
}

TEST_F(RelationUpdate, ReportsAPartnerWithoutRelationAsAnError) {
  EXPECT_EQ(Update(MEStateEstablished, {}), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kUpdate), FeatureAsked(), RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR:: not able to update as relation is not part of table realm "
                            "[9130]")));
}

TEST_F(RelationUpdate, RewritesTheRowUnchangedWhenNothingIsToChange) {
  const DBMultiEntityRelation before = Keep(MEStateEstablished);

  EXPECT_EQ(Update(MEStateKeepStored, {}), MEStatusSuccess);

  ASSERT_THAT(host.store.relationsHandedIn, SizeIs(1));
  const DBMultiEntityRelation& written = host.store.relationsHandedIn.front();
  EXPECT_EQ(written.relationId, before.relationId);
  EXPECT_STREQ(written.realmId, before.realmId);
  EXPECT_STREQ(written.partnerName, before.partnerName);
  EXPECT_EQ(written.relationType, before.relationType);
  EXPECT_EQ(written.state, before.state);
  EXPECT_EQ(written.createdAt, before.createdAt);
  EXPECT_EQ(written.changedAt, before.changedAt);
  EXPECT_EQ(written.revision, before.revision);
  EXPECT_THAT(written, WithAccounts(11, 12));
  EXPECT_THAT(StoreCalls(), InOrder("GetRelation(9130)", "UpdateRelationForRealm(9130, \"\")"));
  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kUpdate), FeatureAsked(), RightAsked(), RightAnswered(), Existing(kUpdate)));
}

TEST_F(RelationUpdate, StoresAnyOtherStateAsItIs) {
  Keep(MEStateDeactivated);

  EXPECT_EQ(Update(kStateZero, {}), MEStatusSuccess);
  EXPECT_THAT(host.store.relations, ElementsAre(InState(0)));
  EXPECT_EQ(Update(kStateTwo, {}), MEStatusSuccess);
  EXPECT_THAT(host.store.relations, ElementsAre(InState(2)));
  EXPECT_EQ(Update(MEStateWithoutAccounts, {}), MEStatusSuccess);
  EXPECT_THAT(host.store.relations, ElementsAre(AllOf(InState(4), WithAccounts(11, 12))));
}

TEST_F(RelationUpdate, PutsTheNewAccountsIn) {
  Keep(MEStatePending);

  EXPECT_EQ(Update(MEStateEstablished, {DueTo(14), DueFrom(13)}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(AllOf(InState(3), WithAccounts(13, 14))));
  EXPECT_THAT(
      host.CallsOf({"GetRelation", "HasAnyMatchingAccRecordExclRealm", "EdListRefreshList", "GetAccountForRecnum",
                    "UpdateRelationForRealm"}),
      InOrder("GetRelation(9130)", "HasAnyMatchingAccRecordExclRealm(9130, 14, 13)", "EdListRefreshList(list, 1)",
              "GetAccountForRecnum(14)", "GetAccountForRecnum(13)", "UpdateRelationForRealm(9130, \"\")"));
}

TEST_F(RelationUpdate, MayGiveARelationItsOwnAccountsAgain) {
  Keep(MEStateEstablished);

  EXPECT_EQ(Update(MEStateKeepStored, {DueFrom(12), DueTo(11)}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(WithAccounts(12, 11)));
}

TEST_F(RelationUpdate, RefusesAccountsThatAnotherPartnersRelationUses) {
  Keep(MEStateEstablished);
  KeepAnotherPartner();

  EXPECT_EQ(Update(MEStateKeepStored, {DueFrom(11), DueTo(14)}), MEStatusConflict);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kUpdate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Warning("MULTIENTITY_WARNING::  accnt1 [11], accnt2 [14] are already used by "
                                            "another realm")));
  EXPECT_THAT(host.store.relationsHandedIn, IsEmpty());
  EXPECT_THAT(host.CallsOf({"EdListRefreshList"}), IsEmpty());
}

TEST_F(RelationUpdate, RefusesAnAccountThatCannotServeAndWritesNothing) {
  Keep(MEStatePending);
  host.chart.accounts[14].isSubAccount = true;

  EXPECT_EQ(Update(MEStateEstablished, {DueFrom(13), DueTo(14)}), MEStatusAccountUnusable);

  EXPECT_THAT(host.store.relations, ElementsAre(AllOf(InState(1), WithAccounts(11, 12))));
  EXPECT_THAT(host.store.relationsHandedIn, IsEmpty());
  EXPECT_THAT(host.LinesOf("MultiEntityDriver::PopulateCOAInRelation"), CannotUse("14"));
}

TEST_F(RelationUpdate, RefusesASingleAccountAsInvalidDataInsteadOfThrowing) {
  Keep(MEStatePending);

  EXPECT_EQ(Update(MEStateEstablished, {DueFrom(13)}), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kUpdate), FeatureAsked(), RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for realm "
                            "[9130]")));
  EXPECT_THAT(StoreCalls(), InOrder("GetRelation(9130)"));
}

TEST_F(RelationUpdate, AsksForTheFirstTwoOfMoreAccountsAndPutsAllOfThemIn) {
  Keep(MEStatePending);

  EXPECT_EQ(Update(MEStateEstablished, {DueFrom(11), DueTo(12), DueTo(14)}), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(WithAccounts(11, 14)));
  EXPECT_THAT(host.CallsOf({"HasAnyMatchingAccRecordExclRealm"}),
              InOrder("HasAnyMatchingAccRecordExclRealm(9130, 11, 12)"));
}

TEST_F(RelationUpdate, HandsTheUpdatesRealmTextToTheStoreAsItIs) {
  Keep(MEStatePending);

  MultiEntityDriver::UpdateRelation({.realmId = "9130",
                                     .updateRealm = "a text that is no realm id, and longer than one",
                                     .state = MEStateKeepStored,
                                     .accounts = {},
                                     .skipPermissionCheck = false});

  EXPECT_THAT(host.CallsOf({"UpdateRelationForRealm"}),
              InOrder("UpdateRelationForRealm(9130, a text that is no realm id, and longer than one)"));
}

TEST_F(RelationUpdate, ReportsARowThatTheStoreDeclines) {
  Keep(MEStatePending);
  host.FailAt("UpdateRelationForRealm");

  EXPECT_EQ(Update(MEStateEstablished, {}), MEStatusWriteFailed);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kUpdate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: not able to update relation, realm [9130]")));
}

TEST_F(RelationUpdate, LetsTheStoresExceptionThrough) {
  Keep(MEStatePending);
  host.ThrowAt("HasAnyMatchingAccRecordExclRealm", std::out_of_range("row"));

  EXPECT_THROW(Update(MEStateEstablished, {DueFrom(13), DueTo(14)}), std::out_of_range);
}

class RelationDeletion : public Relation {
 protected:
  static constexpr bool kForced = true;

  static MEStatusCode Delete(Util::TString realmId, bool force = false) {
    return MultiEntityDriver::DeleteRelation(realmId, force);
  }

  void KeepATransaction() { host.store.transactions = {TransactionRow({.relationId = 5})}; }
};

TEST_F(RelationDeletion, IsRefusedWhileTheFeatureIsOff) {
  TurnTheFeatureOff();

  EXPECT_EQ(Delete("9130"), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kDelete, "MULTIENTITY: DeleteRelation :Feature is disabled"));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationDeletion, IsRefusedToAUserWhoMayNotManageRelations) {
  host.permissions.administrator = false;

  EXPECT_EQ(Delete("9130"), MEStatusPermissionDenied);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kDelete), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Trace("MULTIENTITY: No permission to delete relation")));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationDeletion, NeedsARealmId) {
  EXPECT_EQ(Delete(""), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kDelete), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR::DeleteRelation failed as Invalid data for realm []")));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationDeletion, RefusesARealmIdOfTwentyCharactersBeforeTheStoreIsAsked) {
  EXPECT_EQ(Delete(Characters(20)), MEStatusInvalidData);

  EXPECT_THAT(host.LinesOf(kDelete),
              InOrder(Entering(kDelete), Error("MULTIENTITY_ERROR::DeleteRelation failed as Invalid data for realm "
                                               "[77777777777777777777]")));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationDeletion, TakesARealmIdOfNineteenCharacters) {
  host.store.relations = {RelationRow({.realmId = "7777777777777777777"})};

  EXPECT_EQ(Delete(Characters(19)), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, IsEmpty());
}

TEST_F(RelationDeletion, ReportsAPartnerWithoutRelationAsAnError) {
  EXPECT_EQ(Delete("9130"), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kDelete), FeatureAsked(), RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR:: not able to delete as relation is not part of table realm "
                            "[9130]")));
}

TEST_F(RelationDeletion, LeavesAPendingRelationUnlessItIsForced) {
  Keep(MEStatePending);

  EXPECT_EQ(Delete("9130"), MEStatusRelationPending);

  EXPECT_THAT(host.store.relations, ElementsAre(InState(1)));
  EXPECT_THAT(host.Lines(), InOrder(Entering(kDelete), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Trace("MULTIENTITY:: do not delete relation as pending, realm [9130]")));
  EXPECT_THAT(StoreCalls(), InOrder("GetRelation(9130)"));
}

TEST_F(RelationDeletion, RemovesAPendingRelationThatHasNoTransactionsWhenItIsForced) {
  Keep(MEStatePending);

  EXPECT_EQ(Delete("9130", kForced), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, IsEmpty());
}

TEST_F(RelationDeletion, DeactivatesAPendingRelationThatHasTransactionsWhenItIsForced) {
  Keep(MEStatePending);
  KeepATransaction();

  EXPECT_EQ(Delete("9130", kForced), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, ElementsAre(InState(5)));
}

TEST_F(RelationDeletion, RemovesARelationThatHasNoTransactions) {
  Keep(MEStateEstablished);

  EXPECT_EQ(Delete("9130"), MEStatusSuccess);

  EXPECT_THAT(host.store.relations, IsEmpty());
  EXPECT_THAT(StoreCalls(), InOrder("GetRelation(9130)", "HasAnyMatchingTransaction(5)", "DeleteRelation(9130)"));
  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kDelete), FeatureAsked(), RightAsked(), RightAnswered(), Existing(kDelete)));
}

TEST_F(RelationDeletion, DeactivatesARelationThatHasTransactionsAndKeepsTheRestOfItsRow) {
  Keep(MEStateEstablished);
  KeepATransaction();

  EXPECT_EQ(Delete("9130"), MEStatusSuccess);

  EXPECT_THAT(host.store.relations,
              ElementsAre(AllOf(InState(5), WithAccounts(11, 12),
                                Field("createdAt", &DBMultiEntityRelation::createdAt, 1'600'000'000'001))));
  EXPECT_THAT(StoreCalls(),
              InOrder("GetRelation(9130)", "HasAnyMatchingTransaction(5)", "UpdateRelationForRealm(9130, \"\")"));
  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kDelete), FeatureAsked(), RightAsked(), RightAnswered(), Existing(kDelete)));
}

TEST_F(RelationDeletion, IsByTheRealmIdThatTheRowHolds) {
  host.store.realmIdsIgnoreCase = true;
  host.store.relations = {RelationRow({.realmId = "NORTH"})};

  EXPECT_EQ(Delete("north"), MEStatusSuccess);

  EXPECT_THAT(StoreCalls(), InOrder("GetRelation(north)", "HasAnyMatchingTransaction(1)", "DeleteRelation(NORTH)"));
}

TEST_F(RelationDeletion, ReportsARelationThatCouldNotBeDeactivated) {
  Keep(MEStateEstablished);
  KeepATransaction();
  host.FailAt("UpdateRelationForRealm");

  EXPECT_EQ(Delete("9130"), MEStatusWriteFailed);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kDelete), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: not able to deactivate relation, realm [9130]")));
  EXPECT_THAT(host.CallsOf({"DeleteRelation"}), IsEmpty());
}

TEST_F(RelationDeletion, ReportsARelationThatCouldNotBeRemoved) {
  Keep(MEStateEstablished);
  host.FailAt("DeleteRelation");

  EXPECT_EQ(Delete("9130"), MEStatusDeleteFailed);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kDelete), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: not able to delete relation from DB, realm "
                                          "[9130]")));
}

TEST_F(RelationDeletion, LetsTheStoresExceptionThrough) {
  Keep(MEStateEstablished);
  host.ThrowAt("HasAnyMatchingTransaction", 42);

  EXPECT_THROW(Delete("9130"), int);
}

}  // namespace
