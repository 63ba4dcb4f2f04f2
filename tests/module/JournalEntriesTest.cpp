#include <stdexcept>
#include <string>
#include <vector>

#include "module/Arrangements.h"

namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

struct Booking {
  Util::TString realmId = "9130";
  MEAccountInfo expense{.name = "Rent", .type = KrEnumerations::kExpense, .accountId = 21, .role = {}};
  std::int32_t dueToAccountId = 12;
  Util::TString amount = "1,250.50";
  Util::TString requestId = "request-1";
  MECNameInfo name{.name = "Landlord", .nameId = 31};
};

MEAccountInfo NewExpense(Util::TString name) {
  return {.name = name, .type = KrEnumerations::kExpense, .accountId = -1, .role = {}};
}

class JournalEntry : public AttachedTest {
 protected:
  JournalEntry() {
    host.permissions.Grant(kFeatureJournalEntries, kActionCreate);
    host.chart.accounts = {{12, {.name = "Due to North", .type = KrEnumerations::kOtherCurrentLiability}},
                           {21, {.name = "Rent", .type = KrEnumerations::kExpense}}};
    host.names.names = {{31, {.text = "Landlord"}}};
    host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130", .dueToAccountId = 12})};
    // What the company has booked before, so that transactions and lines are numbered apart.
    host.lines.lines = {{500, {.txnId = 70, .txnType = kTxnTypeBill}}};
  }

  MEStatusCode Record(const Booking& booking) {
    return MultiEntityDriver::RecordGeneralJournalEntry(booking.realmId, booking.expense, booking.dueToAccountId,
                                                        booking.amount, booking.requestId, booking.name, txnId);
  }

  // What changes something or decides, without the opening and closing of accounts.
  std::vector<std::string> Steps() const {
    return host.CallsOf({"FeaturePermissionAvailable", "CreateNewChartOfAccount", "GetAccountForRecnum", "GetRelation",
                         "CreateCName", "CreateGeneralJournalEntry", "SaveTransaction", "DeleteGeneralJournalEntry"});
  }

  std::uint32_t txnId = 4711;
};

testing::Matcher<std::vector<LogLine>> OnlyTheRightAsked() {
  return InOrder(RightAsked(), RightAnswered());
}
testing::Matcher<std::vector<LogLine>> TheRightAskedThen(const std::string& error) {
  return InOrder(RightAsked(), RightAnswered(), Error(error));
}

TEST_F(JournalEntry, IsNotRecordedByAUserWhoMayNotCreateJournalEntries) {
  host.permissions.features.clear();

  EXPECT_EQ(Record({}), MEStatusPermissionDenied);

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(), Trace("MULTIENTITY: No permission to record GJE")));
  EXPECT_THAT(host.Calls(), InOrder("FeaturePermissionAvailable(19, 1, 0)"));
  EXPECT_EQ(txnId, 4711U);
}

TEST_F(JournalEntry, IsRecordedInThisOrderWithoutALineOfItsOwn) {
  EXPECT_EQ(Record({}), MEStatusSuccess);

  EXPECT_THAT(Steps(), InOrder("FeaturePermissionAvailable(19, 1, 0)", "GetAccountForRecnum(21)", "GetRelation(9130)",
                               "GetAccountForRecnum(12)", "CreateGeneralJournalEntry(12, 21, 1,250.50, 31, Landlord)",
                               "SaveTransaction(71/501)"));
  EXPECT_THAT(host.Lines(), OnlyTheRightAsked());
}

TEST_F(JournalEntry, IsRecordedAlsoWhileTheFeatureIsOff) {
  HaveTheFeatureOff(host);

  EXPECT_EQ(Record({}), MEStatusSuccess);

  EXPECT_THAT(host.Lines(), OnlyTheRightAsked());
}

TEST_F(JournalEntry, IsRememberedInOneRowUnderTheRequestId) {
  EXPECT_EQ(Record({}), MEStatusSuccess);

  EXPECT_EQ(txnId, 71U);
  ASSERT_THAT(host.store.transactions, SizeIs(1));
  const DBMultiEntityTransaction& row = host.store.transactions.front();
  EXPECT_EQ(row.txnId, 71);
  EXPECT_EQ(row.relationId, 5);
  EXPECT_EQ(row.targetId, 501);
  EXPECT_STREQ(row.requestId, "request-1");
  EXPECT_EQ(row.txnType, 8);
  EXPECT_EQ(row.state, 3);
}

TEST_F(JournalEntry, HasARequestIdFieldThatIsZeroAfterItsText) {
  Record({});

  ASSERT_THAT(host.store.transactions, SizeIs(1));
  const DBMultiEntityTransaction expected = TransactionRow({.requestId = "request-1"});
  EXPECT_TRUE(std::ranges::equal(host.store.transactions.front().requestId, expected.requestId));
}

TEST_F(JournalEntry, TakesAnAccountAndANameThatExistAndCreatesNone) {
  Record({});

  EXPECT_THAT(host.CallsOf({"CreateNewChartOfAccount", "CreateCName"}), IsEmpty());
  EXPECT_THAT(host.chart.accounts, SizeIs(2));
  EXPECT_THAT(host.names.names, SizeIs(1));
}

TEST_F(JournalEntry, OpensItsAccountsWithTheStandardFeatureAndReleasesBoth) {
  Record({});

  EXPECT_THAT(host.CallsOf({"OpenAccount"}), InOrder("OpenAccount(1)", "OpenAccount(1)"));
  EXPECT_THAT(host.CallsOf({"ReleaseAccount"}),
              testing::UnorderedElementsAre("ReleaseAccount(12)", "ReleaseAccount(21)"));
}

TEST_F(JournalEntry, TakesAnAmountTextAsItIsGiven) {
  host.FailAt("CreateGeneralJournalEntry");

  Record({.amount = " twelve pounds "});

  EXPECT_THAT(host.CallsOf({"CreateGeneralJournalEntry"}),
              InOrder("CreateGeneralJournalEntry(12, 21,  twelve pounds , 31, Landlord)"));
}

TEST_F(JournalEntry, GoesToAnExpenseAccountThatIsCreatedFirst) {
  EXPECT_EQ(Record({.expense = NewExpense("Travel")}), MEStatusSuccess);

  EXPECT_THAT(Steps(), InOrder("FeaturePermissionAvailable(19, 1, 0)", "CreateNewChartOfAccount(Travel, 12, false)",
                               "GetAccountForRecnum(22)", "GetRelation(9130)", "GetAccountForRecnum(12)",
                               "CreateGeneralJournalEntry(12, 22, 1,250.50, 31, Landlord)", "SaveTransaction(71/501)"));
  EXPECT_EQ(host.chart.accounts.at(22).name, "Travel");
}

TEST_F(JournalEntry, LeavesTheCallersAccountNameWhenTheHostRewritesItsBuffer) {
  const Util::TString callersName = "  Travel  ";

  EXPECT_EQ(Record({.expense = NewExpense(callersName)}), MEStatusSuccess);

  EXPECT_EQ(callersName.view(), "  Travel  ");
  EXPECT_EQ(host.chart.accounts.at(22).name, "Travel");
}

TEST_F(JournalEntry, BooksNothingWhenTheNewAccountsNameIsTaken) {
  EXPECT_EQ(Record({.expense = NewExpense("Rent")}), MEStatusExpenseAccountRefused);

  EXPECT_THAT(Steps(), InOrder("FeaturePermissionAvailable(19, 1, 0)", "CreateNewChartOfAccount(Rent, 12, false)"));
  EXPECT_THAT(host.Lines(), OnlyTheRightAsked());
  EXPECT_EQ(txnId, 4711U);
}

TEST_F(JournalEntry, BooksNothingWhenTheAccountCannotBeCreated) {
  host.FailAt("CreateNewChartOfAccount", 7);

  EXPECT_EQ(Record({.expense = NewExpense("Travel")}), MEStatusAccountFailed);

  EXPECT_THAT(host.CallsOf({"GetAccountForRecnum"}), IsEmpty());
  EXPECT_THAT(host.Lines(), OnlyTheRightAsked());
}

TEST_F(JournalEntry, TakesStatusZeroOfTheAccountCreationAsAFailure) {
  host.FailAt("CreateNewChartOfAccount", 0);

  EXPECT_EQ(Record({.expense = NewExpense("Travel")}), MEStatusAccountFailed);
}

TEST_F(JournalEntry, NeedsAnExpenseAccountThatExists) {
  Booking booking;
  booking.expense.accountId = 98;

  EXPECT_EQ(Record(booking), MEStatusAccountFailed);

  EXPECT_THAT(host.Lines(), TheRightAskedThen("MULTIENTITY_ERROR:: no matching Expense Accnt for id [98] in  "
                                              "MultiEntityDriver::RecordGeneralJournalEntry"));
  EXPECT_THAT(host.CallsOf({"GetRelation"}), IsEmpty());
}

TEST_F(JournalEntry, NamesTheNewRecordNumberWhenTheCreatedAccountIsNotFound) {
  host.FailAt("GetAccountForRecnum");

  EXPECT_EQ(Record({.expense = NewExpense("Travel")}), MEStatusAccountFailed);

  EXPECT_THAT(host.Lines(), TheRightAskedThen("MULTIENTITY_ERROR:: no matching Expense Accnt for id [22] in  "
                                              "MultiEntityDriver::RecordGeneralJournalEntry"));
}

TEST_F(JournalEntry, NeedsARelationWithThePartner) {
  EXPECT_EQ(Record({.realmId = "9139"}), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(), TheRightAskedThen("MULTIENTITY_ERROR:: Relation fatching failed for realm [9139] in "
                                              "MultiEntityDriver::RecordGeneralJournalEntry"));
  EXPECT_THAT(host.CallsOf({"CreateGeneralJournalEntry"}), IsEmpty());
}

TEST_F(JournalEntry, NeedsARelationThatHasAnIdAfterTheAccountWasCreated) {
  host.store.relations.front().relationId = 0;

  EXPECT_EQ(Record({.expense = NewExpense("Travel")}), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(), TheRightAskedThen("MULTIENTITY_ERROR:: Relation fatching failed for realm [9130] in "
                                              "MultiEntityDriver::RecordGeneralJournalEntry"));
  EXPECT_TRUE(host.chart.accounts.contains(22));
}

TEST_F(JournalEntry, RefusesARelationWithANegativeId) {
  host.store.relations.front().relationId = -1;

  EXPECT_EQ(Record({}), MEStatusInvalidData);
}

TEST_F(JournalEntry, IsRecordedForTheCompanysFirstRelation) {
  host.store.relations.front().relationId = 1;

  EXPECT_EQ(Record({}), MEStatusSuccess);

  EXPECT_THAT(host.store.transactions, ElementsAre(Field(&DBMultiEntityTransaction::relationId, 1)));
}

TEST_F(JournalEntry, NeedsADueToAccountThatExists) {
  EXPECT_EQ(Record({.dueToAccountId = 97}), MEStatusAccountFailed);

  EXPECT_THAT(host.Lines(), TheRightAskedThen("MULTIENTITY_ERROR:: no matching Due to Accnt for id [97] in  "
                                              "MultiEntityDriver::RecordGeneralJournalEntry"));
  EXPECT_THAT(host.CallsOf({"CreateCName", "CreateGeneralJournalEntry"}), IsEmpty());
}

TEST_F(JournalEntry, IsBookedUnderANameThatIsCreatedFirst) {
  EXPECT_EQ(Record({.name = {.name = "Airline", .nameId = -1}}), MEStatusSuccess);

  EXPECT_THAT(Steps(), InOrder("FeaturePermissionAvailable(19, 1, 0)", "GetAccountForRecnum(21)", "GetRelation(9130)",
                               "GetAccountForRecnum(12)", "CreateCName(Airline, 1)",
                               "CreateGeneralJournalEntry(12, 21, 1,250.50, 32, Airline)", "SaveTransaction(71/501)"));
}

TEST_F(JournalEntry, IsBookedUnderTheNameAsTheHostStoredIt) {
  Record({.name = {.name = " Airline ", .nameId = -1}});

  EXPECT_THAT(host.CallsOf({"CreateGeneralJournalEntry"}),
              InOrder("CreateGeneralJournalEntry(12, 21, 1,250.50, 32, Airline)"));
}

TEST_F(JournalEntry, BooksNothingWhenTheNewNameIsTaken) {
  EXPECT_EQ(Record({.name = {.name = "landlord", .nameId = -1}}), MEStatusNameRefused);

  EXPECT_THAT(host.CallsOf({"CreateGeneralJournalEntry"}), IsEmpty());
  EXPECT_THAT(host.Lines(), OnlyTheRightAsked());
}

TEST_F(JournalEntry, BooksNothingWhenTheNameCannotBeCreated) {
  host.FailAt("CreateCName", 3);

  EXPECT_EQ(Record({.name = {.name = "Airline", .nameId = -1}}), MEStatusNameFailed);

  EXPECT_THAT(host.CallsOf({"CreateGeneralJournalEntry"}), IsEmpty());
  EXPECT_THAT(host.Lines(), OnlyTheRightAsked());
}

TEST_F(JournalEntry, IsReportedAsDeclinedWhenTheHostBooksNothing) {
  host.FailAt("CreateGeneralJournalEntry");

  EXPECT_EQ(Record({}), MEStatusDeclined);

  EXPECT_THAT(host.Lines(), TheRightAskedThen("MULTIENTITY_ERROR:: Not able to create GJE in  "
                                              "MultiEntityDriver::RecordGeneralJournalEntry"));
  EXPECT_THAT(host.CallsOf({"SaveTransaction", "DeleteGeneralJournalEntry"}), IsEmpty());
  EXPECT_EQ(txnId, 4711U);
}

TEST_F(JournalEntry, LeavesTheAccountAndTheNameThatWereCreatedWhenALaterStepFails) {
  host.FailAt("CreateGeneralJournalEntry");

  EXPECT_EQ(Record({.expense = NewExpense("Travel"), .name = {.name = "Airline", .nameId = -1}}), MEStatusDeclined);

  EXPECT_TRUE(host.chart.accounts.contains(22));
  EXPECT_TRUE(host.names.names.contains(32));
}

TEST_F(JournalEntry, KeepsARequestIdOfThirtySixCharactersWhole) {
  const Util::TString requestId = Characters(36);

  EXPECT_EQ(Record({.requestId = requestId}), MEStatusSuccess);

  ASSERT_THAT(host.store.transactions, SizeIs(1));
  EXPECT_EQ(host.store.transactions.front().requestId, requestId.view());
  EXPECT_THAT(host.CallsOf({"InvalidParameter"}), IsEmpty());
}

TEST_F(JournalEntry, TellsTheHostOfARequestIdOfThirtySevenCharactersAndIsSavedWithoutIt) {
  EXPECT_EQ(Record({.requestId = Characters(37)}), MEStatusSuccess);

  ASSERT_THAT(host.store.transactions, SizeIs(1));
  EXPECT_THAT(host.store.transactions.front().requestId, testing::Each('\0'));
  EXPECT_THAT(host.CallsOf({"InvalidParameter", "SaveTransaction"}),
              InOrder("InvalidParameter()", "SaveTransaction(71/501)"));
}

TEST_F(JournalEntry, TellsTheCallerItsIdBeforeItsRowIsSaved) {
  std::uint32_t idWhileSaving = 0;
  host.OnCall("SaveTransaction", [&] { idWhileSaving = txnId; });

  Record({});

  EXPECT_EQ(idWhileSaving, 71U);
}

TEST_F(JournalEntry, IsRemovedAgainWhenItsRowCannotBeSaved) {
  host.FailAt("SaveTransaction");

  EXPECT_EQ(Record({}), MEStatusDeclined);

  EXPECT_EQ(txnId, 71U);
  EXPECT_THAT(host.CallsOf({"DeleteGeneralJournalEntry"}), InOrder("DeleteGeneralJournalEntry(71)"));
  EXPECT_THAT(host.lines.lines, SizeIs(1));
  EXPECT_THAT(host.Lines(), TheRightAskedThen("MULTIENTITY_ERROR:: Not able to save GJE data in ME Txn table in  "
                                              "MultiEntityDriver::RecordGeneralJournalEntry"));
}

TEST_F(JournalEntry, IsReportedAsLeftBehindWhenItCannotBeRemovedAgain) {
  host.FailAt("SaveTransaction");
  host.FailAt("DeleteGeneralJournalEntry");

  EXPECT_EQ(Record({}), MEStatusJournalEntryNotRemoved);

  EXPECT_EQ(txnId, 71U);
  EXPECT_THAT(host.lines.lines, SizeIs(3));
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: Not able to save GJE data in ME Txn table in  "
                                          "MultiEntityDriver::RecordGeneralJournalEntry"),
                                    Error("MULTIENTITY_ERROR:: Not able to delete GJE in  "
                                          "MultiEntityDriver::RecordGeneralJournalEntry")));
}

TEST_F(JournalEntry, IsUndoneWithoutTouchingTheDeletionFlag) {
  bool flagWhileUndoing = true;
  host.FailAt("SaveTransaction");
  host.OnCall("DeleteGeneralJournalEntry",
              [&] { flagWhileUndoing = MultiEntityDriver::GetGJEDeletionDueToFDPFailure(); });

  Record({});

  EXPECT_FALSE(flagWhileUndoing);
}

TEST_F(JournalEntry, IsUndoneWithTheDeletionFlagAsTheHostHasSetIt) {
  MultiEntityDriver::SetGJEDeletionDueToFDPFailure(true);
  host.FailAt("SaveTransaction");

  Record({});

  EXPECT_TRUE(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
}

TEST_F(JournalEntry, ReportsAnExceptionDuringItsUndo) {
  host.FailAt("SaveTransaction");
  host.ThrowAt("DeleteGeneralJournalEntry", std::runtime_error("the journal is locked"));

  EXPECT_EQ(Record({}), MEStatusException);

  EXPECT_EQ(txnId, 71U);
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: Not able to save GJE data in ME Txn table in  "
                                          "MultiEntityDriver::RecordGeneralJournalEntry"),
                                    Error("MULTIENTITY_ERROR:: exception occured during fetching data  "
                                          "MultiEntityDriver::RecordGeneralJournalEntry")));
}

TEST_F(JournalEntry, IsNotRecordedWhenTheUsersRightsCannotBeRead) {
  host.ThrowAt("FeaturePermissionAvailable", std::runtime_error("the roles are locked"));

  EXPECT_EQ(Record({}), MEStatusPermissionDenied);

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(), Trace("MULTIENTITY: No permission to record GJE")));
}

class JournalEntryStep : public JournalEntry, public testing::WithParamInterface<const char*> {
 protected:
  MEStatusCode RecordWithEverythingNew() {
    return Record({.expense = NewExpense("Travel"), .name = {.name = "Airline", .nameId = -1}});
  }

  std::vector<LogLine> OwnLines() const { return host.LinesOf("MultiEntityDriver::RecordGeneralJournalEntry"); }
};

testing::Matcher<std::vector<LogLine>> AnExceptionReported() {
  return InOrder(
      Error("MULTIENTITY_ERROR:: exception occured during fetching data  "
            "MultiEntityDriver::RecordGeneralJournalEntry"));
}

TEST_P(JournalEntryStep, ReportsAnExceptionOfTheHost) {
  host.ThrowAt(GetParam(), std::runtime_error("the host is in trouble"));

  EXPECT_EQ(RecordWithEverythingNew(), MEStatusException);

  EXPECT_THAT(OwnLines(), AnExceptionReported());
  EXPECT_EQ(host.chart.open.Count(), 0U);
}

TEST_P(JournalEntryStep, ReportsAnythingElseThatTheHostThrows) {
  host.ThrowAt(GetParam(), 42);

  EXPECT_EQ(RecordWithEverythingNew(), MEStatusException);

  EXPECT_THAT(OwnLines(), AnExceptionReported());
}

INSTANTIATE_TEST_SUITE_P(Every, JournalEntryStep,
                         testing::Values("CreateNewChartOfAccount", "OpenAccount", "GetAccountForRecnum", "GetRelation",
                                         "CreateCName", "CreateGeneralJournalEntry", "SaveTransaction"),
                         [](const testing::TestParamInfo<const char*>& tested) { return std::string(tested.param); });

class JournalEntryRemoval : public AttachedTest {
 protected:
  JournalEntryRemoval() {
    host.lines.lines = {{501, {.txnId = 71}}, {502, {.txnId = 71}}};
    host.store.transactions = {TransactionRow({.txnId = 71, .targetId = 501}),
                               TransactionRow({.txnId = 72, .targetId = 503})};
  }
};

testing::Matcher<std::vector<LogLine>> OnlyNotDeleted() {
  return InOrder(Error("MULTIENTITY_ERROR:: Not able to delete GJE in  MultiEntityDriver::RemoveGeneralJournalEntry"));
}
testing::Matcher<std::vector<LogLine>> OnlyRowsNotDeleted() {
  return InOrder(
      Error("MULTIENTITY_ERROR:: Not able to save GJE data in ME Txn table in  "
            "MultiEntityDriver::RemoveGeneralJournalEntry"));
}

TEST_F(JournalEntryRemoval, TakesTheEntryAndItsRowsAwayAndAsksForNoRight) {
  EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(71), MEStatusSuccess);

  EXPECT_THAT(host.lines.lines, IsEmpty());
  EXPECT_THAT(host.store.transactions, ElementsAre(Field(&DBMultiEntityTransaction::txnId, 72)));
  EXPECT_THAT(host.Calls(), InOrder("DeleteGeneralJournalEntry(71)", "DeleteTransaction(71)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(JournalEntryRemoval, IsKnownToTheHostWhileItDeletesTheEntryAndNotAfter) {
  std::vector<bool> flags;
  host.OnCall("DeleteGeneralJournalEntry",
              [&] { flags.push_back(MultiEntityDriver::GetGJEDeletionDueToFDPFailure()); });
  host.OnCall("DeleteTransaction", [&] { flags.push_back(MultiEntityDriver::GetGJEDeletionDueToFDPFailure()); });

  MultiEntityDriver::RemoveGeneralJournalEntry(71);

  EXPECT_THAT(flags, ElementsAre(true, false));
  EXPECT_FALSE(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
}

TEST_F(JournalEntryRemoval, ClearsTheDeletionFlagWhateverItWasBefore) {
  MultiEntityDriver::SetGJEDeletionDueToFDPFailure(true);

  MultiEntityDriver::RemoveGeneralJournalEntry(71);

  EXPECT_FALSE(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
}

TEST_F(JournalEntryRemoval, LeavesTheRowsWhenTheHostCannotDeleteTheEntry) {
  EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(99), MEStatusJournalEntryNotRemoved);

  EXPECT_THAT(host.Calls(), InOrder("DeleteGeneralJournalEntry(99)"));
  EXPECT_THAT(host.Lines(), OnlyNotDeleted());
  EXPECT_THAT(host.store.transactions, SizeIs(2));
  EXPECT_FALSE(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
}

TEST_F(JournalEntryRemoval, TakesAnyStatusButOneAsAFailure) {
  host.FailAt("DeleteGeneralJournalEntry", 0);

  EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(71), MEStatusJournalEntryNotRemoved);
}

TEST_F(JournalEntryRemoval, ReportsAnExceptionOfTheDeletionAsNotDeleted) {
  host.ThrowAt("DeleteGeneralJournalEntry", std::runtime_error("the journal is locked"));

  EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(71), MEStatusJournalEntryNotRemoved);

  EXPECT_THAT(host.Calls(), InOrder("DeleteGeneralJournalEntry(71)"));
  EXPECT_THAT(host.Lines(), OnlyNotDeleted());
  EXPECT_FALSE(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
}

TEST_F(JournalEntryRemoval, ReportsAnythingThatTheDeletionThrowsAsNotDeleted) {
  host.ThrowAt("DeleteGeneralJournalEntry", 42);

  EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(71), MEStatusJournalEntryNotRemoved);

  EXPECT_THAT(host.Lines(), OnlyNotDeleted());
  EXPECT_FALSE(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
}

TEST_F(JournalEntryRemoval, ReportsRowsThatStayWithTheWordsOfAFailedSave) {
  host.FailAt("DeleteTransaction");

  EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(71), MEStatusRowsNotRemoved);

  EXPECT_THAT(host.Lines(), OnlyRowsNotDeleted());
  EXPECT_THAT(host.lines.lines, IsEmpty());
}

TEST_F(JournalEntryRemoval, ReportsAnExceptionOfTheRowsDeletionTheSameWay) {
  host.ThrowAt("DeleteTransaction", std::runtime_error("the table is locked"));

  EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(71), MEStatusRowsNotRemoved);

  EXPECT_THAT(host.Lines(), OnlyRowsNotDeleted());
}

TEST_F(JournalEntryRemoval, ReportsAnythingThatTheRowsDeletionThrowsTheSameWay) {
  host.ThrowAt("DeleteTransaction", 42);

  EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(71), MEStatusRowsNotRemoved);

  EXPECT_THAT(host.Lines(), OnlyRowsNotDeleted());
}

TEST_F(JournalEntryRemoval, HasAFlagThatIsDownWhenTheLibraryIsLoadedAndStaysAsItIsSet) {
  EXPECT_FALSE(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
  MultiEntityDriver::SetGJEDeletionDueToFDPFailure(true);
  EXPECT_TRUE(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
  MultiEntityDriver::SetGJEDeletionDueToFDPFailure(false);
  EXPECT_FALSE(MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
}

}  // namespace
