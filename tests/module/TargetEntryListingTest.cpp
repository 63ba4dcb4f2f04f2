#include <stdexcept>
#include <string>
#include <vector>

#include "module/Arrangements.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

const std::string kShortName = "MultiEntityDriver::GetListOfTxnTargetEntries";

constexpr DateType32 kMarch3{2024, 3, 3};
constexpr DateType32 kMarch4{2024, 3, 4};
constexpr DateType32 kMarch5{2024, 3, 5};

testing::Matcher<METxnInfo> OfLine(std::int32_t targetId) {
  return Field("targetId", &METxnInfo::targetId, targetId);
}

// A user who may view everything, and one intercompany line of each kind: a bill, a check and a journal entry with its
// liability line. The bill's name stands under two others.
class TargetEntries : public AttachedTest {
 protected:
  TargetEntries() {
    host.permissions.features = {
        {kFeatureBills, kActionView}, {kFeatureChecks, kActionView}, {kFeatureJournalEntries, kActionView}};
    host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130", .partnerName = "North Ltd"}),
                            RelationRow({.relationId = 6, .realmId = "9131", .partnerName = "South Ltd"})};
    host.names.names = {
        {31, {.text = "Top"}}, {32, {.text = "Mid", .parent = 31}}, {33, {.text = "Child", .parent = 32}}};
    host.lines.lines = {{101,
                         {.txnId = 10,
                          .txnType = kTxnTypeBill,
                          .date = kMarch3,
                          .minorUnits = 125050,
                          .accountName = "Rent",
                          .memo = "bill memo",
                          .nameId = 33}},
                        {201,
                         {.txnId = 20,
                          .txnType = kTxnTypeCheck,
                          .date = kMarch4,
                          .minorUnits = -99,
                          .accountName = "Travel:Flights",
                          .memo = "check memo",
                          .nameId = 31}},
                        {301,
                         {.txnId = 30,
                          .txnType = kTxnTypeJournalEntry,
                          .date = kMarch5,
                          .minorUnits = 7,
                          .accountName = "Office",
                          .memo = "entry memo",
                          .nameId = 31}},
                        {302,
                         {.txnId = 30,
                          .txnType = kTxnTypeJournalEntry,
                          .date = kMarch5,
                          .minorUnits = -7,
                          .accountName = "Due to North",
                          .memo = "liability memo",
                          .nameId = 31}}};
    host.store.transactions = {BillRow(), CheckRow(), EntryRow()};
  }

  static DBMultiEntityTransaction BillRow() {
    return TransactionRow(
        {.txnId = 10, .relationId = 5, .targetId = 101, .requestId = "bill-request", .txnType = 9, .state = 1});
  }
  static DBMultiEntityTransaction CheckRow() {
    return TransactionRow(
        {.txnId = 20, .relationId = 6, .targetId = 201, .requestId = "check-request", .txnType = 3, .state = 2});
  }
  static DBMultiEntityTransaction EntryRow() {
    return TransactionRow(
        {.txnId = 30, .relationId = 5, .targetId = 301, .requestId = "entry-request", .txnType = 8, .state = 3});
  }

  void Refuse(ProgramFeature feature) { host.permissions.features.erase({feature, kActionView}); }

  std::vector<LogLine> OwnLines() const { return host.LinesOf(kShortName); }
  std::vector<std::string> ViewQuestions() const { return host.CallsOf({"FeaturePermissionAvailable"}); }

  std::vector<METxnInfo> list{METxnInfo{}, METxnInfo{}};
};

class TransactionEntries : public TargetEntries {
 protected:
  MEStatusCode List(long txnId) { return MultiEntityDriver::GetListOfTxnTargetEntries(list, txnId); }

  // Puts the three lines into one host transaction: bill, check, journal entry.
  void PutAllIntoTransaction10() {
    host.store.transactions[1].txnId = 10;
    host.store.transactions[2].txnId = 10;
  }
};

TEST_F(TransactionEntries, AreNoneForATransactionWithoutRowsAndReplaceTheCallersList) {
  EXPECT_EQ(List(999), MEStatusSuccess);

  EXPECT_THAT(list, IsEmpty());
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(TransactionEntries, ShowABillWithoutItsAccountNames) {
  EXPECT_EQ(List(10), MEStatusSuccess);

  ASSERT_THAT(list, SizeIs(1));
  const METxnInfo& bill = list.front();
  EXPECT_EQ(bill.txnId, 10);
  EXPECT_EQ(bill.targetId, 101);
  EXPECT_EQ(bill.txnType, 9);
  EXPECT_EQ(bill.state, 1);
  EXPECT_EQ(bill.realmId, "9130");
  EXPECT_EQ(bill.partnerName, "North Ltd");
  EXPECT_EQ(bill.requestId, "bill-request");
  EXPECT_EQ(bill.amount, "1,250.50");
  EXPECT_EQ(bill.currencyCode, "USD");
  EXPECT_EQ(bill.txnName, "Top:Mid:Child");
  EXPECT_EQ(bill.billCheckAccountName, "");
  EXPECT_EQ(bill.liabilityAccountName, "");
  EXPECT_EQ(bill.entryAccountName, "");
  EXPECT_EQ(bill.txnDate, "03/03/2024");
}

TEST_F(TransactionEntries, ShowAJournalEntryUnderItsMemoWithoutItsAccountNames) {
  EXPECT_EQ(List(30), MEStatusSuccess);

  ASSERT_THAT(list, SizeIs(1));
  const METxnInfo& entry = list.front();
  EXPECT_EQ(entry.txnName, "entry memo");
  EXPECT_EQ(entry.amount, "0.07");
  EXPECT_EQ(entry.txnDate, "03/05/2024");
  EXPECT_EQ(entry.liabilityAccountName, "");
  EXPECT_EQ(entry.entryAccountName, "");
}

TEST_F(TransactionEntries, AreReadInThisOrderOfQuestions) {
  List(10);

  EXPECT_THAT(
      host.CallsOf({"GetTransactionWithTargets", "FeaturePermissionAvailable", "GetRelationById", "TargExists",
                    "OpenLine", "GetDate", "GetAmount", "Money2Str_s", "PrefGetPrefHandle", "GetTransactionName",
                    "ReleaseLine"}),
      InOrder("GetTransactionWithTargets(10)", "FeaturePermissionAvailable(20, 2, 0)", "GetRelationById(5)",
              "TargExists(101, 0)", "OpenLine(101, 1, 0, 9)", "GetDate(101)", "GetAmount(101)",
              "Money2Str_s(30, 125050, 65536)", "PrefGetPrefHandle()", "GetTransactionName(101)", "ReleaseLine(101)"));
  EXPECT_THAT(host.CallsOf({"GetAccountName"}), IsEmpty());
}

TEST_F(TransactionEntries, WriteTheRightsLinesOnly) {
  List(10);

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(TransactionEntries, AreListedAlsoWhileTheFeatureIsOff) {
  HaveTheFeatureOff(host);

  EXPECT_EQ(List(10), MEStatusSuccess);

  EXPECT_THAT(list, ElementsAre(OfLine(101)));
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(TransactionEntries, AskForTheRightAnewForEveryRowInTheStoresOrder) {
  PutAllIntoTransaction10();
  host.store.transactions.push_back(TransactionRow({.txnId = 10, .relationId = 5, .targetId = 302, .txnType = 8}));

  EXPECT_EQ(List(10), MEStatusSuccess);

  EXPECT_THAT(list, ElementsAre(OfLine(101), OfLine(201), OfLine(301), OfLine(302)));
  EXPECT_THAT(ViewQuestions(), InOrder("FeaturePermissionAvailable(20, 2, 0)", "FeaturePermissionAvailable(16, 2, 0)",
                                       "FeaturePermissionAvailable(19, 2, 0)", "FeaturePermissionAvailable(19, 2, 0)"));
}

TEST_F(TransactionEntries, EndAtTheFirstBillThatTheUserMayNotView) {
  host.store.transactions = {TransactionRow({.txnId = 10, .relationId = 6, .targetId = 201, .txnType = 3}),
                             TransactionRow({.txnId = 10, .relationId = 5, .targetId = 205, .txnType = 9}),
                             TransactionRow({.txnId = 10, .relationId = 5, .targetId = 301, .txnType = 8})};
  Refuse(kFeatureBills);

  EXPECT_EQ(List(10), MEStatusPermissionDenied);

  EXPECT_THAT(list, ElementsAre(OfLine(201)));
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(), RightAsked(), RightAnswered(),
                                    Trace("MULTIENTITY: No permission to view Bills")));
  EXPECT_THAT(host.CallsOf({"GetRelationById"}), InOrder("GetRelationById(6)"));
}

TEST_F(TransactionEntries, EndAtACheckThatTheUserMayNotView) {
  Refuse(kFeatureChecks);

  EXPECT_EQ(List(20), MEStatusPermissionDenied);

  EXPECT_THAT(list, IsEmpty());
  EXPECT_THAT(OwnLines(), InOrder(Trace("MULTIENTITY: No permission to view Checks")));
}

TEST_F(TransactionEntries, EndAtAJournalEntryThatTheUserMayNotView) {
  Refuse(kFeatureJournalEntries);

  EXPECT_EQ(List(30), MEStatusPermissionDenied);

  EXPECT_THAT(OwnLines(), InOrder(Trace("MULTIENTITY: No permission to view GJE")));
}

TEST_F(TransactionEntries, OfAnotherTypeNeedNoRight) {
  host.store.transactions.front().txnType = 5;
  host.permissions.features.clear();

  EXPECT_EQ(List(10), MEStatusSuccess);

  EXPECT_THAT(list, ElementsAre(OfLine(101)));
  EXPECT_THAT(host.Lines(), IsEmpty());
  EXPECT_THAT(host.CallsOf({"OpenLine"}), InOrder("OpenLine(101, 1, 0, 5)"));
}

TEST_F(TransactionEntries, AreNotReadWhenTheStoreFails) {
  host.FailAt("GetTransactionWithTargets");

  EXPECT_EQ(List(10), MEStatusReadFailed);

  EXPECT_THAT(list, IsEmpty());
  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR::GetTransactionWithTargets failed for txnId [10]  "
                                          "MultiEntityDriver::GetListOfTxnTargetEntries")));
}

TEST_F(TransactionEntries, EndAtARowWithoutRelationAndKeepThoseBefore) {
  PutAllIntoTransaction10();
  host.store.transactions[1].relationId = 44;

  EXPECT_EQ(List(10), MEStatusReadFailed);

  EXPECT_THAT(list, ElementsAre(OfLine(101)));
  EXPECT_THAT(OwnLines(),
              InOrder(Error("MULTIENTITY_ERROR::Invalid relation for the meTxn with relationId [44] for txnId [10]"
                            "  MultiEntityDriver::GetListOfTxnTargetEntries ")));
}

TEST_F(TransactionEntries, EndAtARowWithoutDataAlthoughItsLineExists) {
  PutAllIntoTransaction10();
  host.store.transactions[1].txnType = 0;

  EXPECT_EQ(List(10), MEStatusInvalidData);

  EXPECT_THAT(list, ElementsAre(OfLine(101)));
  EXPECT_THAT(OwnLines(), InOrder(Error("MULTIENTITY_ERROR:: Not able to fetch data for targetId [201] in "
                                        "MultiEntityDriver::GetListOfTxnTargetEntries")));
  EXPECT_THAT(host.CallsOf({"GetRelationById", "TargExists"}),
              InOrder("GetRelationById(5)", "TargExists(101, 0)", "GetRelationById(6)", "TargExists(201, 0)"));
}

TEST_F(TransactionEntries, ListALineThatIsGoneWithTheDataOfItsRow) {
  host.lines.lines.erase(101);

  EXPECT_EQ(List(10), MEStatusSuccess);

  ASSERT_THAT(list, SizeIs(1));
  EXPECT_EQ(list.front().requestId, "bill-request");
  EXPECT_EQ(list.front().txnDate, "");
}

TEST_F(TransactionEntries, ReportAnExceptionWithItsText) {
  PutAllIntoTransaction10();
  host.ThrowAtNth("GetAmount", 2, std::runtime_error("the amount is unreadable"));

  EXPECT_EQ(List(10), MEStatusException);

  EXPECT_THAT(list, ElementsAre(OfLine(101)));
  EXPECT_THAT(OwnLines(), InOrder(Error("MULTIENTITY_ERROR::Exiting MultiEntityDriver::GetListOfTxnTargetEntries, "
                                        "due to exception: the amount is unreadable")));
  EXPECT_EQ(host.lines.open.Count(), 0U);
}

TEST_F(TransactionEntries, ReportAnIndexOutOfRangeLikeAnyException) {
  host.ThrowAt("GetTransactionWithTargets", std::out_of_range("row 4"));

  EXPECT_EQ(List(10), MEStatusException);

  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR::Exiting MultiEntityDriver::GetListOfTxnTargetEntries, "
                                          "due to exception: row 4")));
}

TEST_F(TransactionEntries, ReportAnythingElseThatIsThrownWithoutAText) {
  host.ThrowAt("GetParent", 42);

  EXPECT_EQ(List(10), MEStatusException);

  EXPECT_THAT(OwnLines(), InOrder(Error("MULTIENTITY_ERROR:: exception occured during fetching data  "
                                        "MultiEntityDriver::GetListOfTxnTargetEntries")));
  EXPECT_EQ(host.lines.open.Count(), 0U);
  EXPECT_EQ(host.names.open.Count(), 0U);
}

TEST_F(TransactionEntries, EndWhenTheUsersRightsCannotBeRead) {
  host.ThrowAt("FeaturePermissionAvailable", std::runtime_error("the roles are locked"));

  EXPECT_EQ(List(10), MEStatusPermissionDenied);

  EXPECT_THAT(OwnLines(), InOrder(Trace("MULTIENTITY: No permission to view Bills")));
}

class TransactionEntriesStep : public TransactionEntries, public testing::WithParamInterface<const char*> {};

TEST_P(TransactionEntriesStep, ReportsAnExceptionOfTheHostWithItsText) {
  host.ThrowAt(GetParam(), std::runtime_error("trouble"));

  EXPECT_EQ(List(10), MEStatusException);

  EXPECT_THAT(OwnLines(), InOrder(Error("MULTIENTITY_ERROR::Exiting MultiEntityDriver::GetListOfTxnTargetEntries, "
                                        "due to exception: trouble")));
}

INSTANTIATE_TEST_SUITE_P(Every, TransactionEntriesStep,
                         testing::Values("GetTransactionWithTargets", "GetRelationById", "TargExists", "OpenLine",
                                         "GetDate", "GetAmount", "Money2Str_s", "PrefGetPrefHandle",
                                         "GetTransactionName", "GetName", "IsValidName", "FormatStringV"),
                         [](const testing::TestParamInfo<const char*>& tested) { return std::string(tested.param); });

class PeriodEntries : public TargetEntries {
 protected:
  MEStatusCode List(DateType32 from = NullDate(), DateType32 to = NullDate()) {
    return MultiEntityDriver::GetListOfTxnTargetEntries(list, from, to);
  }

  // The lines of the three questions for rights.
  static constexpr std::size_t kRightsLines = 6;
};

testing::Matcher<LogLine> OutsideThePeriod() {
  return Warning("MULTIENTITY_WARNING: This transaction is not in desired period");
}

TEST_F(PeriodEntries, ShowABillWithItsAccountName) {
  EXPECT_EQ(List(), MEStatusSuccess);

  ASSERT_THAT(list, ElementsAre(OfLine(101), OfLine(201), OfLine(301)));
  const METxnInfo& bill = list[0];
  EXPECT_EQ(bill.txnId, 10);
  EXPECT_EQ(bill.txnType, 9);
  EXPECT_EQ(bill.state, 1);
  EXPECT_EQ(bill.realmId, "9130");
  EXPECT_EQ(bill.partnerName, "North Ltd");
  EXPECT_EQ(bill.requestId, "bill-request");
  EXPECT_EQ(bill.amount, "1,250.50");
  EXPECT_EQ(bill.currencyCode, "USD");
  EXPECT_EQ(bill.txnName, "Top:Mid:Child");
  EXPECT_EQ(bill.billCheckAccountName, "Rent");
  EXPECT_EQ(bill.liabilityAccountName, "");
  EXPECT_EQ(bill.entryAccountName, "");
  EXPECT_EQ(bill.txnDate, "03/03/2024");
}

TEST_F(PeriodEntries, ShowACheckWithItsAccountName) {
  List();

  ASSERT_THAT(list, SizeIs(3));
  const METxnInfo& check = list[1];
  EXPECT_EQ(check.txnType, 3);
  EXPECT_EQ(check.state, 2);
  EXPECT_EQ(check.realmId, "9131");
  EXPECT_EQ(check.partnerName, "South Ltd");
  EXPECT_EQ(check.amount, "-0.99");
  EXPECT_EQ(check.txnName, "Top");
  EXPECT_EQ(check.billCheckAccountName, "Travel:Flights");
  EXPECT_EQ(check.liabilityAccountName, "");
  EXPECT_EQ(check.entryAccountName, "");
  EXPECT_EQ(check.txnDate, "03/04/2024");
}

TEST_F(PeriodEntries, ShowAJournalEntryWithItsOwnAndTheLiabilityAccount) {
  List();

  ASSERT_THAT(list, SizeIs(3));
  const METxnInfo& entry = list[2];
  EXPECT_EQ(entry.txnType, 8);
  EXPECT_EQ(entry.txnName, "entry memo");
  EXPECT_EQ(entry.billCheckAccountName, "");
  EXPECT_EQ(entry.liabilityAccountName, "Due to North");
  EXPECT_EQ(entry.entryAccountName, "Office");
  EXPECT_EQ(entry.txnDate, "03/05/2024");
}

TEST_F(PeriodEntries, ShareTheNameOfAnAccountThatStandsBehindSeveralLines) {
  host.store.transactions = {BillRow(), BillRow()};

  List();

  ASSERT_THAT(list, SizeIs(2));
  EXPECT_EQ(list[1].billCheckAccountName, "Rent");
  EXPECT_EQ(list[1].billCheckAccountName.c_str(), list[0].billCheckAccountName.c_str());
}

TEST_F(PeriodEntries, WriteTheRightsLinesOnly) {
  List();

  EXPECT_THAT(host.Lines(),
              InOrder(RightAsked(), RightAnswered(), RightAsked(), RightAnswered(), RightAsked(), RightAnswered()));
}

TEST_F(PeriodEntries, AskForTheThreeRightsOnceBeforeAnythingIsRead) {
  host.store.transactions.push_back(BillRow());

  List();

  EXPECT_THAT(host.CallsOf({"FeaturePermissionAvailable", "GetAllRelations", "GetAllTransactionWithTargets"}),
              InOrder("FeaturePermissionAvailable(20, 2, 0)", "FeaturePermissionAvailable(16, 2, 0)",
                      "FeaturePermissionAvailable(19, 2, 0)", "GetAllRelations()", "GetAllTransactionWithTargets()"));
}

TEST_F(PeriodEntries, OpenEachLineUnderItsTypeAndReleaseIt) {
  List();

  EXPECT_THAT(host.CallsOf({"TargExists", "OpenLine", "GetDate", "GetAccountName"}),
              InOrder("TargExists(101, 9)", "OpenLine(101, 1, 0, 9)", "GetDate(101)", "GetAccountName(101, 0, 0)",
                      "TargExists(201, 3)", "OpenLine(201, 1, 0, 3)", "GetDate(201)", "GetAccountName(201, 0, 0)",
                      "TargExists(301, 8)", "OpenLine(301, 1, 0, 8)", "GetDate(301)", "TargExists(302, 8)",
                      "OpenLine(302, 1, 0, 8)", "GetAccountName(302, 0, 0)", "GetAccountName(301, 0, 0)"));
  EXPECT_THAT(host.CallsOf({"ReleaseLine"}), SizeIs(4));
}

TEST_F(PeriodEntries, AskForAmountAccountCurrencyAndNameInThisOrder) {
  host.store.transactions = {BillRow()};

  List();

  EXPECT_THAT(host.CallsOf({"GetAmount", "Money2Str_s", "GetAccountName", "PrefGetPrefHandle", "GetTransactionName"}),
              InOrder("GetAmount(101)", "Money2Str_s(30, 125050, 65536)", "GetAccountName(101, 0, 0)",
                      "PrefGetPrefHandle()", "GetTransactionName(101)"));
}

TEST_F(PeriodEntries, AreListedAlsoWhileTheFeatureIsOff) {
  HaveTheFeatureOff(host);

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, ElementsAre(OfLine(101), OfLine(201), OfLine(301)));
  EXPECT_THAT(host.Lines(), SizeIs(kRightsLines));
}

TEST_F(PeriodEntries, IncludeTheFirstAndTheLastDay) {
  EXPECT_EQ(List(kMarch3, kMarch5), MEStatusSuccess);

  EXPECT_THAT(list, ElementsAre(OfLine(101), OfLine(201), OfLine(301)));
}

TEST_F(PeriodEntries, LeaveOutWhatLiesBeforeAndAfterWithAWarningEach) {
  EXPECT_EQ(List(kMarch4, kMarch4), MEStatusSuccess);

  EXPECT_THAT(list, ElementsAre(OfLine(201)));
  EXPECT_THAT(OwnLines(), InOrder(OutsideThePeriod(), OutsideThePeriod()));
}

TEST_F(PeriodEntries, HaveAnOpenBeginningWithoutAFirstDay) {
  List(NullDate(), kMarch4);

  EXPECT_THAT(list, ElementsAre(OfLine(101), OfLine(201)));
}

TEST_F(PeriodEntries, HaveAnOpenEndWithoutALastDay) {
  List(kMarch4, NullDate());

  EXPECT_THAT(list, ElementsAre(OfLine(201), OfLine(301)));
}

TEST_F(PeriodEntries, AreNoneWhenTheFirstDayIsAfterTheLast) {
  EXPECT_EQ(List(kMarch5, kMarch3), MEStatusSuccess);

  EXPECT_THAT(list, IsEmpty());
}

TEST_F(PeriodEntries, CompareDatesOfTheFarFutureAsLater) {
  host.lines.lines.at(101).date = DateType32{40000, 1, 1};

  List(kMarch4, NullDate());

  EXPECT_THAT(list, ElementsAre(OfLine(101), OfLine(201), OfLine(301)));
}

TEST_F(PeriodEntries, ShowALineWithAnInvalidDateWithoutADateText) {
  host.lines.lines.at(101).date = DateType32{2024, 2, 30};

  List();

  ASSERT_THAT(list, SizeIs(3));
  EXPECT_EQ(list[0].txnDate, "");
}

TEST_F(PeriodEntries, ShowTheDateWithMonthAndDayInTwoDigits) {
  host.lines.lines.at(101).date = DateType32{2024, 11, 7};

  List();

  ASSERT_THAT(list, SizeIs(3));
  EXPECT_EQ(list[0].txnDate, "11/07/2024");
}

TEST_F(PeriodEntries, ShowTheHomeCurrencyOfACompanyWithSeveral) {
  host.preferences.multiCurrency = true;
  host.preferences.homeCurrency = "EUR";

  List();

  EXPECT_THAT(list, Each(Field("currencyCode", &METxnInfo::currencyCode, Util::TString("EUR"))));
}

TEST_F(PeriodEntries, ShowDollarsForACompanyWithOneCurrencyWhateverItIs) {
  host.preferences.homeCurrency = "EUR";

  List();

  EXPECT_THAT(list, Each(Field("currencyCode", &METxnInfo::currencyCode, Util::TString("USD"))));
}

TEST_F(PeriodEntries, LeaveOutTheBillsThatTheUserMayNotViewWithANoteEach) {
  host.store.transactions = {BillRow(), CheckRow(), BillRow(), EntryRow()};
  Refuse(kFeatureBills);

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, ElementsAre(OfLine(201), OfLine(301)));
  EXPECT_THAT(OwnLines(), InOrder(Trace("MULTIENTITY: No permission to view Bills"),
                                  Trace("MULTIENTITY: No permission to view Bills")));
}

TEST_F(PeriodEntries, LeaveOutTheChecksThatTheUserMayNotView) {
  Refuse(kFeatureChecks);

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, ElementsAre(OfLine(101), OfLine(301)));
  EXPECT_THAT(OwnLines(), InOrder(Trace("MULTIENTITY: No permission to view Checks")));
}

TEST_F(PeriodEntries, LeaveOutTheJournalEntriesThatTheUserMayNotView) {
  Refuse(kFeatureJournalEntries);

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, ElementsAre(OfLine(101), OfLine(201)));
  EXPECT_THAT(OwnLines(), InOrder(Trace("MULTIENTITY: No permission to view GJE")));
}

TEST_F(PeriodEntries, LeaveOutARefusedRowBeforeItsRelationIsLookedFor) {
  Refuse(kFeatureBills);
  host.store.transactions.front().relationId = 44;

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, SizeIs(2));
}

TEST_F(PeriodEntries, AreNoneFromAnEmptyTableAndReplaceTheCallersList) {
  host.store.transactions.clear();

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, IsEmpty());
  EXPECT_THAT(host.Lines(), SizeIs(kRightsLines));
}

TEST_F(PeriodEntries, AreNoneFromAnUnreadableTableAndNothingIsLogged) {
  host.FailAt("GetAllTransactionWithTargets");

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, IsEmpty());
  EXPECT_THAT(host.Lines(), SizeIs(kRightsLines));
}

TEST_F(PeriodEntries, EndAtARowWithoutRelationAndKeepThoseBefore) {
  host.store.transactions[1].relationId = 44;

  EXPECT_EQ(List(), MEStatusReadFailed);

  EXPECT_THAT(list, ElementsAre(OfLine(101)));
  EXPECT_THAT(OwnLines(), InOrder(Error("MULTIENTITY_ERROR:: Not able to fetch relation data with id [44] from "
                                        "relation table MultiEntityDriver::GetListOfTxnTargetEntries")));
}

TEST_F(PeriodEntries, EndAtTheFirstRowWhenTheRelationsCannotBeRead) {
  host.FailAt("GetAllRelations");

  EXPECT_EQ(List(), MEStatusReadFailed);

  EXPECT_THAT(list, IsEmpty());
  EXPECT_THAT(OwnLines(), InOrder(Error("MULTIENTITY_ERROR:: Not able to fetch relation data with id [5] from "
                                        "relation table MultiEntityDriver::GetListOfTxnTargetEntries")));
}

TEST_F(PeriodEntries, AreNoneFromAnEmptyTableAlsoWhenTheRelationsCannotBeRead) {
  host.FailAt("GetAllRelations");
  host.store.transactions.clear();

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, IsEmpty());
}

TEST_F(PeriodEntries, AreNoneWhenNeitherRelationsNorRowsCanBeRead) {
  host.FailAt("GetAllRelations");
  host.FailAt("GetAllTransactionWithTargets");

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, IsEmpty());
  EXPECT_THAT(host.CallsOf({"GetAllRelations", "GetAllTransactionWithTargets"}),
              InOrder("GetAllRelations()", "GetAllTransactionWithTargets()"));
  EXPECT_THAT(host.Lines(), SizeIs(kRightsLines));
}

TEST_F(PeriodEntries, TakeTheFirstOfTwoRelationsWithTheSameId) {
  host.store.relations.push_back(RelationRow({.relationId = 5, .realmId = "9999", .partnerName = "Twin Ltd"}));

  List();

  ASSERT_THAT(list, SizeIs(3));
  EXPECT_EQ(list[0].partnerName, "North Ltd");
}

TEST_F(PeriodEntries, LeaveOutALineThatIsGoneWithAWarning) {
  host.lines.lines.erase(101);

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, ElementsAre(OfLine(201), OfLine(301)));
  EXPECT_THAT(OwnLines(), InOrder(Warning("MULTIENTITY_WARNING:: Not able to fetch data for targetId [101] in "
                                          "MultiEntityDriver::GetListOfTxnTargetEntries")));
}

TEST_F(PeriodEntries, ShowAJournalEntryWhoseLiabilityLineIsMissingWithoutItsAccount) {
  host.lines.lines.erase(302);

  EXPECT_EQ(List(), MEStatusSuccess);

  ASSERT_THAT(list, SizeIs(3));
  EXPECT_EQ(list[2].liabilityAccountName, "");
  EXPECT_EQ(list[2].entryAccountName, "Office");
  EXPECT_THAT(OwnLines(),
              InOrder(Error("MULTIENTITY_ERROR::MultiEntityDriver::GetListOfTxnTargetEntries, Failed to fetch "
                            "liability account name from account recnum 302")));
}

TEST_F(PeriodEntries, TakeTheLiabilityLineOfAJournalEntryOnly) {
  host.lines.lines.at(302).txnType = kTxnTypeBill;

  List();

  ASSERT_THAT(list, SizeIs(3));
  EXPECT_EQ(list[2].liabilityAccountName, "");
}

TEST_F(PeriodEntries, ShowALineOfAnotherTypeAfterAnErrorWithoutItsAccounts) {
  host.store.transactions.front().txnType = 5;
  host.lines.lines.at(101).txnType = 5;
  host.permissions.features.erase({kFeatureBills, kActionView});

  EXPECT_EQ(List(), MEStatusSuccess);

  ASSERT_THAT(list, ElementsAre(OfLine(101), OfLine(201), OfLine(301)));
  EXPECT_EQ(list[0].txnType, 5);
  EXPECT_EQ(list[0].txnName, "Top:Mid:Child");
  EXPECT_EQ(list[0].currencyCode, "USD");
  EXPECT_EQ(list[0].txnDate, "03/03/2024");
  EXPECT_EQ(list[0].amount, "1,250.50");
  EXPECT_EQ(list[0].billCheckAccountName, "");
  EXPECT_EQ(list[0].liabilityAccountName, "");
  EXPECT_EQ(list[0].entryAccountName, "");
  EXPECT_THAT(OwnLines(), InOrder(Error("MULTIENTITY_ERROR:: MultiEntityDriver::GetListOfTxnTargetEntries "
                                        "Unsupported txn type 5")));
}

TEST_F(PeriodEntries, ReportAnExceptionWithoutItsTextAndKeepThoseBefore) {
  host.ThrowAtNth("GetDate", 2, std::runtime_error("the line is locked"));

  EXPECT_EQ(List(), MEStatusException);

  EXPECT_THAT(list, ElementsAre(OfLine(101)));
  EXPECT_THAT(OwnLines(), InOrder(Error("MULTIENTITY_ERROR:: exception occured during fetching data  "
                                        "MultiEntityDriver::GetListOfTxnTargetEntries")));
  EXPECT_EQ(host.lines.open.Count(), 0U);
}

class PeriodEntriesStep : public PeriodEntries, public testing::WithParamInterface<const char*> {};

TEST_P(PeriodEntriesStep, ReportsAnythingThatTheHostThrows) {
  host.ThrowAt(GetParam(), 42);

  EXPECT_EQ(List(), MEStatusException);

  EXPECT_THAT(OwnLines(), InOrder(Error("MULTIENTITY_ERROR:: exception occured during fetching data  "
                                        "MultiEntityDriver::GetListOfTxnTargetEntries")));
}

INSTANTIATE_TEST_SUITE_P(Every, PeriodEntriesStep,
                         testing::Values("GetAllRelations", "GetAllTransactionWithTargets", "TargExists", "OpenLine",
                                         "GetDate", "GetAmount", "Money2Str_s", "GetAccountName", "PrefGetPrefHandle",
                                         "GetTransactionName", "GetStrMemo", "FormatStringV"),
                         [](const testing::TestParamInfo<const char*>& tested) { return std::string(tested.param); });

}  // namespace
