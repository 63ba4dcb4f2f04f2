#include <stdexcept>
#include <string>
#include <vector>

#include "module/Arrangements.h"
#include "support/MultiEntityPrivateAccess.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned int kBillsToPay = 12;
constexpr unsigned int kDueDate = 7;
constexpr DateType32 kFirstOfMarch{2024, 3, 1};
constexpr DateType32 kLastOfMarch{2024, 3, 31};

class TransactionQuery : public AttachedTest {
 protected:
  TransactionQuery() {
    host.queries.rows = {{.selection = kBillsToPay, .txnId = 73, .dates = {{kDueDate, {2024, 3, 1}}}},
                         {.selection = kBillsToPay, .txnId = 71, .dates = {{kDueDate, {2024, 3, 31}}}},
                         {.selection = 13, .txnId = 72, .dates = {{kDueDate, {2024, 3, 15}}}},
                         {.selection = kBillsToPay, .txnId = 71, .dates = {{kDueDate, {2024, 4, 1}}}}};
  }

  bool Ask() { return MultiEntityPrivateAccess::GetTxns(kBillsToPay, txns); }
  bool AskForPeriod(DateType32 from, DateType32 to) {
    return MultiEntityPrivateAccess::GetTxnsForPeriod(from, to, kBillsToPay, kDueDate, txns);
  }

  std::vector<unsigned long> txns;
};

TEST_F(TransactionQuery, FindsWhatItsSelectionYieldsInTheHostsOrderWithDuplicates) {
  EXPECT_TRUE(Ask());

  EXPECT_THAT(txns, ElementsAre(73, 71, 71));
  EXPECT_THAT(host.Calls(), InOrder("OpenQuery()", "SetSelect(12)", "DoQuery()", "ResultExists()", "First()",
                                    "GetTransPtrType(73, 0)", "Next()", "GetTransPtrType(71, 0)", "Next()",
                                    "GetTransPtrType(71, 0)", "Next()", "ReleaseQuery()"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(TransactionQuery, AppendsToTheCallersList) {
  txns = {5};

  EXPECT_TRUE(Ask());
  EXPECT_TRUE(Ask());

  EXPECT_THAT(txns, ElementsAre(5, 73, 71, 71, 73, 71, 71));
}

TEST_F(TransactionQuery, LeavesTheListWithoutAResultSet) {
  host.queries.rows.clear();
  txns = {5};

  EXPECT_TRUE(Ask());

  EXPECT_THAT(txns, ElementsAre(5));
  EXPECT_THAT(host.Calls(), InOrder("OpenQuery()", "SetSelect(12)", "DoQuery()", "ResultExists()", "ReleaseQuery()"));
}

TEST_F(TransactionQuery, LeavesTheListWhenTheResultSetHasNoRow) {
  host.FailAt("First");

  EXPECT_TRUE(Ask());

  EXPECT_THAT(txns, IsEmpty());
  EXPECT_THAT(host.CallsOf({"Next", "GetTransPtrType"}), IsEmpty());
}

TEST_F(TransactionQuery, ThatFailsIsReportedAndReleased) {
  host.FailAt("DoQuery");

  EXPECT_FALSE(Ask());

  EXPECT_THAT(txns, IsEmpty());
  EXPECT_THAT(host.Lines(),
              InOrder(Error("MULTIENTITY_ERROR::DQE query execution failed for MultiEntityDriver::GetTxns")));
  EXPECT_THAT(host.Calls(), InOrder("OpenQuery()", "SetSelect(12)", "DoQuery()", "ReleaseQuery()"));
}

TEST_F(TransactionQuery, RunsAlsoWhenTheSelectionIsRefused) {
  host.FailAt("SetSelect");

  EXPECT_TRUE(Ask());

  EXPECT_THAT(host.CallsOf({"DoQuery"}), InOrder("DoQuery()"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(TransactionQuery, IsNeitherGatedNorBoundToARight) {
  HaveTheFeatureOff(host);

  EXPECT_TRUE(Ask());
  EXPECT_TRUE(AskForPeriod(kFirstOfMarch, kLastOfMarch));

  EXPECT_THAT(txns, ElementsAre(73, 71, 71, 73, 71));
  EXPECT_THAT(host.CallsOf({"CurrentUserIsAdminUser", "FeaturePermissionAvailable"}), IsEmpty());
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(TransactionQuery, OfAPeriodJoinsBothBoundsOfTheDateField) {
  EXPECT_TRUE(AskForPeriod(kFirstOfMarch, kLastOfMarch));

  EXPECT_THAT(txns, ElementsAre(73, 71));
  EXPECT_THAT(host.Calls(), InOrder("OpenQuery()", "SetSelect(12)", "SetStatement(7, 10, 2024-03-01)",
                                    "SetStatement(7, 11, 2024-03-31)", "SetStatement(1, 2, 2)", "DoQuery()",
                                    "ResultExists()", "First()", "GetTransPtrType(73, 0)", "Next()",
                                    "GetTransPtrType(71, 0)", "Next()", "ReleaseQuery()"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(TransactionQuery, OfAPeriodThatEndsBeforeItBeginsRunsAsItIs) {
  EXPECT_TRUE(AskForPeriod(kLastOfMarch, kFirstOfMarch));

  EXPECT_THAT(txns, IsEmpty());
  EXPECT_THAT(host.CallsOf({"SetStatement", "DoQuery"}),
              InOrder("SetStatement(7, 10, 2024-03-31)", "SetStatement(7, 11, 2024-03-01)", "SetStatement(1, 2, 2)",
                      "DoQuery()"));
}

TEST_F(TransactionQuery, OfAPeriodAppendsToTheCallersList) {
  txns = {5};

  EXPECT_TRUE(AskForPeriod(kFirstOfMarch, kFirstOfMarch));

  EXPECT_THAT(txns, ElementsAre(5, 73));
}

TEST_F(TransactionQuery, OfAPeriodThatFailsIsReportedUnderItsOwnName) {
  host.FailAt("DoQuery");

  EXPECT_FALSE(AskForPeriod(kFirstOfMarch, kLastOfMarch));

  EXPECT_THAT(txns, IsEmpty());
  EXPECT_THAT(host.Lines(),
              InOrder(Error("MULTIENTITY_ERROR::DQE query execution failed for MultiEntityDriver::GetTxnsForPeriod")));
}

TEST_F(TransactionQuery, OfAPeriodRunsAlsoWhenTheSelectionIsRefused) {
  host.FailAt("SetSelect");

  EXPECT_TRUE(AskForPeriod(kFirstOfMarch, kLastOfMarch));

  EXPECT_THAT(host.CallsOf({"DoQuery"}), InOrder("DoQuery()"));
}

class TransactionQueryStep : public TransactionQuery, public testing::WithParamInterface<const char*> {};

TEST_P(TransactionQueryStep, ReleasesTheQueryWhenTheHostThrows) {
  host.ThrowAt(GetParam(), std::runtime_error("the file is damaged"));

  EXPECT_THROW(AskForPeriod(kFirstOfMarch, kLastOfMarch), std::runtime_error);

  EXPECT_EQ(host.queries.open.Count(), 0U);
  EXPECT_EQ(host.Calls().back(), "ReleaseQuery()");
}

INSTANTIATE_TEST_SUITE_P(Every, TransactionQueryStep,
                         testing::Values("SetSelect", "SetStatement", "DoQuery", "ResultExists", "First",
                                         "GetTransPtrType", "Next"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
