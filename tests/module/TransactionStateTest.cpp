#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "module/Arrangements.h"

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kUpdate = "MultiEntityDriver::UpdateTransactionWithState";

using RowBytes = std::array<std::byte, sizeof(DBMultiEntityTransaction)>;

RowBytes BytesOf(const DBMultiEntityTransaction& row) {
  return std::bit_cast<RowBytes>(row);
}

// A company with one intercompany transaction, a pending journal entry, and a user without any right.
class IntercompanyTransaction : public AttachedTest {
 protected:
  IntercompanyTransaction() {
    host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130"})};
    HasTheRow(kTxnTypeJournalEntry, MEStatePending);
  }

  void HasTheRow(std::int16_t txnType, std::int16_t state) {
    host.store.transactions = {TransactionRow(
        {.txnId = 71, .relationId = 5, .targetId = 501, .requestId = "request-1", .txnType = txnType, .state = state})};
    host.lines.lines = {{501, {.txnId = 71, .txnType = txnType}}};
  }

  std::int16_t StoredState() const { return host.store.transactions.at(0).state; }
};

class StateByRequest : public IntercompanyTransaction {
 protected:
  StateByRequest() { host.permissions.Grant(kFeatureJournalEntries, kActionModify); }

  MEStatusCode Update(MEState state) const { return Update("9130", "request-1", state); }
  MEStatusCode Update(const Util::TString& realmId, const Util::TString& requestId, MEState state) const {
    return MultiEntityDriver::UpdateTransactionWithState(realmId, requestId, state);
  }

  // The lines of an update that comes as far as the right, and what follows.
  static testing::Matcher<std::vector<LogLine>> OnceTheRightIsAsked(const testing::Matcher<LogLine>& last) {
    return InOrder(Entering(kUpdate), FeatureAsked(), RightAsked(), RightAnswered(), last);
  }
  static testing::Matcher<std::vector<LogLine>> OnceTheGateIsPassed(const testing::Matcher<LogLine>& last) {
    return InOrder(Entering(kUpdate), FeatureAsked(), last);
  }

  void ExpectOnlyTheGateAsked() const { EXPECT_THAT(host.CallsOf({"IsFeatureEnabled"}), host.Calls()); }
};

TEST_F(StateByRequest, IsNotChangedWhileTheFeatureIsOff) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  EXPECT_EQ(Update(MEStateEstablished), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kUpdate, "MULTIENTITY: UpdateRelationsWithState :Feature is disabled"));
  ExpectOnlyTheGateAsked();
}

TEST_F(StateByRequest, BecomesEstablishedOnceTheHostHasUpdatedItsTransaction) {
  EXPECT_EQ(Update(MEStateEstablished), MEStatusSuccess);

  EXPECT_EQ(StoredState(), 3);
  EXPECT_THAT(host.journal.confirmed, testing::ElementsAre(71));
  EXPECT_THAT(host.Calls(), InOrder("IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)",
                                    "IsFeatureEnabled(MultiEntityFeature, ME_FOR_BILLS)",
                                    "IsFeatureEnabled(MultiEntityFeature, ME_FOR_CHECKS)", "GetRelation(9130)",
                                    "GetTransactionWithRequestId(5, request-1)", "FeaturePermissionAvailable(19, 5, 0)",
                                    "TargExists(501, 0)", "UpdateMETransaction(71, 8)", "UpdateTransaction(71/501)"));
  EXPECT_THAT(host.Lines(), OnceTheRightIsAsked(Existing(kUpdate)));
}

TEST_F(StateByRequest, WritesItsLastLineAfterTheRowIsStored) {
  Update(MEStateEstablished);

  ASSERT_THAT(host.Events(), SizeIs(testing::Ge(2U)));
  EXPECT_EQ(*(host.Events().rbegin() + 1), "UpdateTransaction(71/501)");
}

TEST_F(StateByRequest, ChangesNothingElseInTheRow) {
  DBMultiEntityTransaction expected = host.store.transactions.front();
  expected.state = MEStateDeactivated;

  Update(MEStateDeactivated);

  ASSERT_THAT(host.store.transactionsHandedIn, SizeIs(1));
  EXPECT_EQ(BytesOf(host.store.transactionsHandedIn.front()), BytesOf(expected));
}

TEST_F(StateByRequest, NeedsARealmId) {
  EXPECT_EQ(Update("", "request-1", MEStateEstablished), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              OnceTheGateIsPassed(Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for realm "
                                        "[]")));
  ExpectOnlyTheGateAsked();
}

TEST_F(StateByRequest, TakesARealmIdOfNineteenCharacters) {
  const std::string realmId(19, '7');
  host.store.relations = {RelationRow({.relationId = 5, .realmId = realmId})};

  EXPECT_EQ(Update(Characters(19), "request-1", MEStateEstablished), MEStatusSuccess);
}

TEST_F(StateByRequest, RefusesARealmIdOfTwentyCharacters) {
  EXPECT_EQ(Update(Characters(20), "request-1", MEStateEstablished), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              OnceTheGateIsPassed(Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for realm "
                                        "[77777777777777777777]")));
  ExpectOnlyTheGateAsked();
}

TEST_F(StateByRequest, NeedsARequestId) {
  EXPECT_EQ(Update("9130", "", MEStateEstablished), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              OnceTheGateIsPassed(Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for "
                                        "requestId []")));
  ExpectOnlyTheGateAsked();
}

TEST_F(StateByRequest, TakesARequestIdOfThirtySixCharacters) {
  const std::string requestId(36, '7');
  host.store.transactions = {TransactionRow({.txnId = 71, .relationId = 5, .targetId = 501, .requestId = requestId})};

  EXPECT_EQ(Update("9130", Characters(36), MEStateDeactivated), MEStatusSuccess);

  EXPECT_EQ(StoredState(), MEStateDeactivated);
}

TEST_F(StateByRequest, RefusesARequestIdOfThirtySevenCharacters) {
  EXPECT_EQ(Update("9130", Characters(37), MEStateEstablished), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              OnceTheGateIsPassed(Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for "
                                        "requestId [7777777777777777777777777777777777777]")));
  ExpectOnlyTheGateAsked();
}

TEST_F(StateByRequest, SpeaksOfTheRealmIdFirstWhenNeitherIdIsValid) {
  EXPECT_EQ(Update("", "", MEStateEstablished), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              OnceTheGateIsPassed(Error("MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for realm "
                                        "[]")));
}

TEST_F(StateByRequest, NeedsARelationWithThePartner) {
  EXPECT_EQ(Update("9139", "request-1", MEStateEstablished), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(), OnceTheGateIsPassed(Error("MULTIENTITY_ERROR:: not able to update as relation is not part "
                                                      "of table realm [9139]")));
  EXPECT_THAT(host.CallsOf({"GetTransactionWithRequestId"}), IsEmpty());
}

TEST_F(StateByRequest, TakesARelationWithoutAnIdAsNone) {
  host.store.relations = {RelationRow({.relationId = 0, .realmId = "9130"})};

  EXPECT_EQ(Update(MEStateEstablished), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(), OnceTheGateIsPassed(Error("MULTIENTITY_ERROR:: not able to update as relation is not part "
                                                      "of table realm [9130]")));
  EXPECT_THAT(host.CallsOf({"GetTransactionWithRequestId"}), IsEmpty());
}

TEST_F(StateByRequest, OnlyWarnsWhenThePartnerHasNoSuchRequest) {
  EXPECT_EQ(Update("9130", "request-2", MEStateEstablished), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(), OnceTheGateIsPassed(Warning("MULTIENTITY_WARNING:: not able to update as transaction is "
                                                        "not part of table realm [9130]")));
  EXPECT_THAT(host.CallsOf({"FeaturePermissionAvailable", "TargExists", "UpdateTransaction"}), IsEmpty());
}

TEST_F(StateByRequest, OfAnotherPartnersRequestIsNotChanged) {
  host.store.relations.push_back(RelationRow({.relationId = 6, .realmId = "9131"}));

  EXPECT_EQ(Update("9131", "request-1", MEStateEstablished), MEStatusInvalidData);

  EXPECT_EQ(StoredState(), MEStatePending);
}

TEST_F(StateByRequest, DoesNotDependOnWhetherTheHostStillHasTheLine) {
  host.lines.lines.clear();

  EXPECT_EQ(Update(MEStateDeactivated), MEStatusSuccess);

  EXPECT_THAT(host.Calls(), Contains("TargExists(501, 0)"));
}

TEST_F(StateByRequest, OfARowWithoutTransactionDataIsNotChanged) {
  HasTheRow(kTxnTypeNone, MEStatePending);

  EXPECT_EQ(Update(MEStateEstablished), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              OnceTheGateIsPassed(Error("MULTIENTITY_ERROR:: Not able to fetch data for targetId [501] in "
                                        "MultiEntityDriver::UpdateTransactionWithState")));
  EXPECT_THAT(host.CallsOf({"FeaturePermissionAvailable", "TargExists", "UpdateMETransaction", "UpdateTransaction"}),
              InOrder("TargExists(501, 0)"));
  EXPECT_EQ(StoredState(), MEStatePending);
}

TEST_F(StateByRequest, ThatCannotBeWrittenIsReported) {
  host.FailAt("UpdateTransaction");

  EXPECT_EQ(Update(MEStateEstablished), MEStatusReadFailed);

  EXPECT_THAT(host.Lines(), OnceTheRightIsAsked(Error("MULTIENTITY_ERROR:: Not able to update transaction data with id "
                                                      "[71] from transaction table "
                                                      "MultiEntityDriver::UpdateTransactionWithState")));
  EXPECT_EQ(StoredState(), MEStatePending);
}

TEST_F(StateByRequest, IsRefusedWhenTheHostCannotTellTheRight) {
  host.ThrowAt("FeaturePermissionAvailable", std::runtime_error("nobody is signed in"));

  EXPECT_EQ(Update(MEStateEstablished), MEStatusPermissionDenied);

  EXPECT_EQ(StoredState(), MEStatePending);
}

class HostUpdateStatus : public StateByRequest, public testing::WithParamInterface<long> {};

TEST_P(HostUpdateStatus, OtherThanSuccessLeavesTheStoredState) {
  host.FailAt("UpdateMETransaction", GetParam());

  EXPECT_EQ(Update(MEStateEstablished), MEStatusRowsNotRemoved);

  EXPECT_THAT(host.Lines(), OnceTheRightIsAsked(Error("MULTIENTITY_ERROR:: Not able to delete GJE in  "
                                                      "MultiEntityDriver::UpdateTransactionWithState")));
  EXPECT_THAT(host.CallsOf({"UpdateTransaction"}), IsEmpty());
  EXPECT_EQ(StoredState(), MEStatePending);
}

INSTANTIATE_TEST_SUITE_P(Every, HostUpdateStatus, testing::Values(-1L, 0L, 2L, 3L, 7L));

class StateWithoutARule : public StateByRequest, public testing::WithParamInterface<std::int16_t> {};

TEST_P(StateWithoutARule, IsStoredAsGivenAndTheHostsTransactionIsLeftAlone) {
  EXPECT_EQ(Update(static_cast<MEState>(GetParam())), MEStatusSuccess);

  EXPECT_EQ(StoredState(), GetParam());
  EXPECT_THAT(host.CallsOf({"UpdateMETransaction"}), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Every, StateWithoutARule,
                         testing::Values(std::int16_t{0}, std::int16_t{1}, std::int16_t{2}, std::int16_t{4},
                                         std::int16_t{5}, std::int16_t{6}, std::int16_t{-1}, std::int16_t{32767}));

class StateByRequestStep : public StateByRequest, public testing::WithParamInterface<const char*> {};

TEST_P(StateByRequestStep, LetsAnExceptionOfTheHostPassAndLeavesTheRow) {
  host.ThrowAt(GetParam(), std::runtime_error("the file is damaged"));

  EXPECT_THROW(Update(MEStateEstablished), std::runtime_error);

  EXPECT_EQ(StoredState(), MEStatePending);
}

INSTANTIATE_TEST_SUITE_P(Every, StateByRequestStep,
                         testing::Values("GetRelation", "GetTransactionWithRequestId", "TargExists",
                                         "UpdateMETransaction", "UpdateTransaction"),
                         [](const auto& tested) { return std::string(tested.param); });

class StateByLine : public IntercompanyTransaction {
 protected:
  StateByLine() { host.permissions.Grant(kFeatureJournalEntries, kActionView); }

  MEStatusCode Update(MEState state) const { return MultiEntityDriver::UpdateTransactionWithState(71, 501, state); }
};

TEST_F(StateByLine, IsChangedWithoutALineOfItsOwn) {
  EXPECT_EQ(Update(MEStateWithoutAccounts), MEStatusSuccess);

  EXPECT_EQ(StoredState(), MEStateWithoutAccounts);
  EXPECT_THAT(host.Calls(),
              InOrder("GetTransaction(71, 501)", "FeaturePermissionAvailable(19, 2, 0)", "UpdateTransaction(71/501)"));
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(StateByLine, BecomesEstablishedWithoutTheHostsTransactionBeingUpdated) {
  EXPECT_EQ(Update(MEStateEstablished), MEStatusSuccess);

  EXPECT_EQ(StoredState(), MEStateEstablished);
  EXPECT_THAT(host.journal.confirmed, IsEmpty());
}

TEST_F(StateByLine, IsChangedAlsoWhileTheFeatureIsOff) {
  HaveTheFeatureOff(host);

  EXPECT_EQ(Update(MEStateEstablished), MEStatusSuccess);

  EXPECT_EQ(StoredState(), MEStateEstablished);
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(StateByLine, ChangesNothingElseInTheRow) {
  DBMultiEntityTransaction expected = host.store.transactions.front();
  expected.state = -7;

  Update(static_cast<MEState>(-7));

  ASSERT_THAT(host.store.transactionsHandedIn, SizeIs(1));
  EXPECT_EQ(BytesOf(host.store.transactionsHandedIn.front()), BytesOf(expected));
}

TEST_F(StateByLine, NeedsARowForTheLine) {
  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(71, 502, MEStateEstablished), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR::GetTransaction failed for txnId [71] , targetId [502],  "
                                          "MultiEntityDriver::UpdateTransactionWithState")));
  EXPECT_THAT(host.Calls(), InOrder("GetTransaction(71, 502)"));
}

TEST_F(StateByLine, OfARowWithoutTransactionDataIsChangedWithoutARight) {
  HasTheRow(kTxnTypeNone, MEStatePending);

  EXPECT_EQ(Update(MEStateEstablished), MEStatusSuccess);

  EXPECT_THAT(host.Calls(), InOrder("GetTransaction(71, 501)", "UpdateTransaction(71/501)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(StateByLine, ThatCannotBeWrittenIsReported) {
  host.FailAt("UpdateTransaction");

  EXPECT_EQ(Update(MEStateEstablished), MEStatusWriteFailed);

  EXPECT_THAT(host.Lines(),
              InOrder(RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR:not able to UpdateTransaction for txnid [71] and targetId [501]")));
  EXPECT_EQ(StoredState(), MEStatePending);
}

TEST_F(StateByLine, IsRefusedWhenTheHostCannotTellTheRight) {
  host.ThrowAt("FeaturePermissionAvailable", 42);

  EXPECT_EQ(Update(MEStateEstablished), MEStatusPermissionDenied);
}

class StateByLineStep : public StateByLine, public testing::WithParamInterface<const char*> {};

TEST_P(StateByLineStep, LetsAnExceptionOfTheHostPassAndLeavesTheRow) {
  host.ThrowAt(GetParam(), std::runtime_error("the file is damaged"));

  EXPECT_THROW(Update(MEStateEstablished), std::runtime_error);

  EXPECT_EQ(StoredState(), MEStatePending);
}

INSTANTIATE_TEST_SUITE_P(Every, StateByLineStep, testing::Values("GetTransaction", "UpdateTransaction"),
                         [](const auto& tested) { return std::string(tested.param); });

// The right that a user needs to move a row out of a state.
struct RightToLeave {
  std::int16_t state;
  UserAction action;
};

void PrintTo(const RightToLeave& right, std::ostream* out) {
  *out << "state " << right.state << ", action " << right.action;
}

class RowInState : public IntercompanyTransaction, public testing::WithParamInterface<RightToLeave> {
 protected:
  RowInState() { HasTheRow(kTxnTypeJournalEntry, GetParam().state); }

  std::string Question() const {
    return "FeaturePermissionAvailable(19, " + std::to_string(GetParam().action) + ", 0)";
  }
};

TEST_P(RowInState, IsChangedByLineWithTheRightThatItsOldStateAsksFor) {
  host.permissions.Grant(kFeatureJournalEntries, GetParam().action);

  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(71, 501, MEStateDeactivated), MEStatusSuccess);

  EXPECT_THAT(host.CallsOf({"FeaturePermissionAvailable"}), InOrder(Question()));
}

TEST_P(RowInState, IsAskedForThatRightAlsoOnTheWayToAStateThatWouldAskForAnother) {
  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(71, 501, static_cast<MEState>(0)), MEStatusPermissionDenied);
  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(71, 501, static_cast<MEState>(2)), MEStatusPermissionDenied);
  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(71, 501, MEStateEstablished), MEStatusPermissionDenied);

  EXPECT_THAT(host.CallsOf({"FeaturePermissionAvailable"}), InOrder(Question(), Question(), Question()));
  EXPECT_EQ(StoredState(), GetParam().state);
}

INSTANTIATE_TEST_SUITE_P(Every, RowInState,
                         testing::Values(RightToLeave{0, kActionCreate}, RightToLeave{2, kActionModify},
                                         RightToLeave{1, kActionView}, RightToLeave{3, kActionView},
                                         RightToLeave{4, kActionView}, RightToLeave{5, kActionView},
                                         RightToLeave{6, kActionView}, RightToLeave{-1, kActionView}));

// A type of transaction that a program feature guards, and what is noted of a user who may not update it.
struct GuardedType {
  const char* name;
  std::int16_t txnType;
  ProgramFeature feature;
  const char* refusedByRequest;
  const char* refusedByLine;
};

void PrintTo(const GuardedType& type, std::ostream* out) {
  *out << type.name;
}

class Guarded : public IntercompanyTransaction, public testing::WithParamInterface<GuardedType> {
 protected:
  Guarded() { HasTheRow(GetParam().txnType, MEStatePending); }

  std::string Question(UserAction action) const {
    return "FeaturePermissionAvailable(" + std::to_string(GetParam().feature) + ", " + std::to_string(action) + ", 0)";
  }
};

TEST_P(Guarded, IsUpdatedByRequestWithTheRightToModifyIt) {
  host.permissions.Grant(GetParam().feature, kActionModify);

  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState("9130", "request-1", MEStateEstablished), MEStatusSuccess);

  EXPECT_THAT(host.CallsOf({"FeaturePermissionAvailable", "UpdateMETransaction"}),
              InOrder(Question(kActionModify), "UpdateMETransaction(71, " + std::to_string(GetParam().txnType) + ")"));
}

TEST_P(Guarded, IsNotUpdatedByRequestWithoutThatRight) {
  host.permissions.Grant(GetParam().feature, kActionView);
  host.permissions.Grant(GetParam().feature, kActionCreate);

  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState("9130", "request-1", MEStateEstablished),
            MEStatusPermissionDenied);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kUpdate), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Trace(GetParam().refusedByRequest)));
  EXPECT_THAT(host.CallsOf({"TargExists", "UpdateMETransaction", "UpdateTransaction"}), IsEmpty());
  EXPECT_EQ(StoredState(), MEStatePending);
}

TEST_P(Guarded, IsUpdatedByLineWithTheRightToViewIt) {
  host.permissions.Grant(GetParam().feature, kActionView);

  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(71, 501, MEStateEstablished), MEStatusSuccess);

  EXPECT_THAT(host.CallsOf({"FeaturePermissionAvailable"}), InOrder(Question(kActionView)));
}

TEST_P(Guarded, IsNotUpdatedByLineWithoutThatRight) {
  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(71, 501, MEStateEstablished), MEStatusPermissionDenied);

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(), Trace(GetParam().refusedByLine)));
  EXPECT_THAT(host.CallsOf({"UpdateTransaction"}), IsEmpty());
  EXPECT_EQ(StoredState(), MEStatePending);
}

INSTANTIATE_TEST_SUITE_P(
    Transaction, Guarded,
    testing::Values(GuardedType{"Bill", 9, kFeatureBills, "MULTIENTITY_ERROR: No permission to update Bills",
                                "MULTIENTITY: No permission to update Bills"},
                    GuardedType{"Check", 3, kFeatureChecks, "MULTIENTITY_ERROR: No permission to update Checks",
                                "MULTIENTITY: No permission to update Checks"},
                    GuardedType{"JournalEntry", 8, kFeatureJournalEntries,
                                "MULTIENTITY_ERROR: No permission to update GJE",
                                "MULTIENTITY: No permission to update GJE"}),
    [](const auto& tested) { return std::string(tested.param.name); });

class UnguardedType : public IntercompanyTransaction, public testing::WithParamInterface<std::int16_t> {
 protected:
  UnguardedType() { HasTheRow(GetParam(), 2); }
};

TEST_P(UnguardedType, IsUpdatedByAnyone) {
  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState("9130", "request-1", MEStatePending), MEStatusSuccess);
  EXPECT_EQ(StoredState(), MEStatePending);
  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(71, 501, MEStateDeactivated), MEStatusSuccess);
  EXPECT_EQ(StoredState(), MEStateDeactivated);

  EXPECT_THAT(host.CallsOf({"FeaturePermissionAvailable", "LoadLibraryA", "CurrentUserIsAdminUser"}), IsEmpty());
  EXPECT_THAT(host.Lines(), InOrder(Entering(kUpdate), FeatureAsked(), Existing(kUpdate)));
}

INSTANTIATE_TEST_SUITE_P(Every, UnguardedType,
                         testing::Values(std::int16_t{1}, std::int16_t{2}, std::int16_t{4}, std::int16_t{10},
                                         std::int16_t{-8}, std::int16_t{32767}));

class RequestOfAPartner : public IntercompanyTransaction {
 protected:
  RequestOfAPartner() {
    host.store.relations.push_back(RelationRow({.relationId = 6, .realmId = "9131"}));
    host.store.rejected = {RejectedRow({.requestId = "rejected-1", .relationId = 6})};
  }

  static MEStatusCode Ask(const char* realmId, const char* requestId) {
    return MultiEntityDriver::DoesTransactionExist(realmId, requestId);
  }
};

TEST_F(RequestOfAPartner, IsKnownAsATransaction) {
  EXPECT_EQ(Ask("9130", "request-1"), MEStatusSuccess);

  EXPECT_THAT(host.Calls(), InOrder("GetRelation(9130)", "HasAnyMatchingTransaction(request-1, 5)"));
  EXPECT_THAT(host.Lines(), InOrder(Trace("MULTIENTITY:: Matching Transaction found for partner realm [9130], request "
                                          "id [request-1]")));
}

TEST_F(RequestOfAPartner, IsKnownAsARejectedOne) {
  EXPECT_EQ(Ask("9131", "rejected-1"), MEStatusSuccess);

  EXPECT_THAT(host.Calls(), InOrder("GetRelation(9131)", "HasAnyMatchingTransaction(rejected-1, 6)",
                                    "HasAnyMatchingRejectedTransaction(rejected-1)"));
  EXPECT_THAT(host.Lines(), InOrder(Trace("MULTIENTITY:: Matching Rejected Transaction found for partner realm [9131], "
                                          "request id [rejected-1]")));
}

TEST_F(RequestOfAPartner, IsKnownAlsoWhenItWasRejectedUnderAnotherPartner) {
  EXPECT_EQ(Ask("9130", "rejected-1"), MEStatusSuccess);
}

TEST_F(RequestOfAPartner, IsNotKnownAsATransactionOfAnotherPartner) {
  EXPECT_EQ(Ask("9131", "request-1"), MEStatusDeclined);
}

TEST_F(RequestOfAPartner, IsNotKnownWhenNeitherTableHasIt) {
  EXPECT_EQ(Ask("9130", "request-2"), MEStatusDeclined);

  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RequestOfAPartner, IsNotKnownWithoutARelation) {
  EXPECT_EQ(Ask("9139", "rejected-1"), MEStatusDeclined);

  EXPECT_THAT(host.Calls(), InOrder("GetRelation(9139)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RequestOfAPartner, IsNotKnownWhenTheRelationHasNoId) {
  host.store.relations = {RelationRow({.relationId = 0, .realmId = "9130"})};

  EXPECT_EQ(Ask("9130", "rejected-1"), MEStatusDeclined);

  EXPECT_THAT(host.Calls(), InOrder("GetRelation(9130)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RequestOfAPartner, IsKnownAlsoWhileTheFeatureIsOffAndToAnyone) {
  HaveTheFeatureOff(host);

  EXPECT_EQ(Ask("9130", "request-1"), MEStatusSuccess);

  EXPECT_THAT(host.Calls(), InOrder("GetRelation(9130)", "HasAnyMatchingTransaction(request-1, 5)"));
  EXPECT_THAT(host.Lines(), SizeIs(1));
}

class RequestOfAPartnerStep : public RequestOfAPartner, public testing::WithParamInterface<const char*> {};

TEST_P(RequestOfAPartnerStep, ReportsWhateverTheHostThrows) {
  host.ThrowAt(GetParam(), 42);

  EXPECT_EQ(Ask("9130", "request-2"), MEStatusException);

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR:: exception occured during fetching data  "
                                          "MultiEntityDriver::DoesTransactionExist")));
}

INSTANTIATE_TEST_SUITE_P(Every, RequestOfAPartnerStep,
                         testing::Values("GetRelation", "HasAnyMatchingTransaction",
                                         "HasAnyMatchingRejectedTransaction"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
