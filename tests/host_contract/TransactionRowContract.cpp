#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host_contract/HostUnderTest.h"

namespace host_contract {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

TEST_P(TransactionRowStore, ASavedRowIsFoundByItsTransactionAndLine) {
  const std::int32_t relation = SaveRelation("9130347");
  const std::string request(kRequestIdLength, 'q');
  DBMultiEntityTransaction saved = Row(relation, {100, 200}, request, kTxnTypeCheck);
  saved.state = 2;
  ASSERT_TRUE(Save(saved));

  DBMultiEntityTransaction read{};
  ASSERT_TRUE(Store().GetTransaction(100, 200, read).Succeeded());

  EXPECT_EQ(read.txnId, 100);
  EXPECT_EQ(read.targetId, 200);
  EXPECT_EQ(read.relationId, relation);
  EXPECT_EQ(read.requestId, request);
  EXPECT_EQ(read.txnType, kTxnTypeCheck);
  EXPECT_EQ(read.state, 2);
}

TEST_P(TransactionRowStore, ARowIsNotFoundUnderAnotherTransactionOrLine) {
  const std::int32_t relation = SaveRelation("9130347");
  ASSERT_TRUE(Save(Row(relation, {100, 200}, "req", kTxnTypeBill)));

  DBMultiEntityTransaction read{};
  EXPECT_TRUE(Store().GetTransaction(100, 201, read).Failed());
  EXPECT_TRUE(Store().GetTransaction(101, 200, read).Failed());
}

TEST_P(TransactionRowStore, ALineHasOneRow) {
  const std::int32_t relation = SaveRelation("9130347");
  ASSERT_TRUE(Save(Row(relation, {100, 200}, "first", kTxnTypeBill)));

  EXPECT_FALSE(Save(Row(relation, {100, 200}, "second", kTxnTypeBill)));
  EXPECT_FALSE(Save(Row(relation, {101, 200}, "third", kTxnTypeBill)));
  EXPECT_TRUE(Save(Row(relation, {100, 201}, "fourth", kTxnTypeBill)));
}

TEST_P(TransactionRowStore, TwoJournalEntriesOfARelationNeverShareARequestId) {
  const std::int32_t relation = SaveRelation("9130347");
  ASSERT_TRUE(Save(Row(relation, {100, 200}, "req", kTxnTypeJournalEntry)));

  EXPECT_FALSE(Save(Row(relation, {101, 201}, "req", kTxnTypeJournalEntry)));
}

TEST_P(TransactionRowStore, JournalEntriesWithoutRequestIdStandBesideEachOther) {
  const std::int32_t relation = SaveRelation("9130347");
  ASSERT_TRUE(Save(Row(relation, {100, 200}, "", kTxnTypeJournalEntry)));

  EXPECT_TRUE(Save(Row(relation, {101, 201}, "", kTxnTypeJournalEntry)));
}

TEST_P(TransactionRowStore, ARequestIdMayComeAgainWithAnotherPartnerOrOnALineOfABill) {
  const std::int32_t relation = SaveRelation("9130347");
  const std::int32_t other = SaveRelation("5550001");
  ASSERT_TRUE(Save(Row(relation, {100, 200}, "req", kTxnTypeJournalEntry)));

  EXPECT_TRUE(Save(Row(other, {101, 201}, "req", kTxnTypeJournalEntry)));
  EXPECT_TRUE(Save(Row(relation, {102, 202}, "req", kTxnTypeBill)));
  EXPECT_TRUE(Save(Row(relation, {102, 203}, "req", kTxnTypeBill)));
}

TEST_P(TransactionRowStore, ARowNeedsARelation) {
  EXPECT_FALSE(Save(Row(4711, {100, 200}, "req", kTxnTypeBill)));
}

TEST_P(TransactionRowStore, ARowIsFoundByRelationAndRequestId) {
  const std::int32_t relation = SaveRelation("9130347");
  const std::int32_t other = SaveRelation("5550001");
  ASSERT_TRUE(Save(Row(relation, {100, 200}, "req", kTxnTypeJournalEntry)));

  DBMultiEntityTransaction read{};
  ASSERT_TRUE(Store().GetTransactionWithRequestId(relation, "req", read).Succeeded());
  EXPECT_EQ(read.targetId, 200);
  EXPECT_TRUE(Store().GetTransactionWithRequestId(other, "req", read).Failed());
  EXPECT_TRUE(Store().GetTransactionWithRequestId(relation, "REQ", read).Failed());
  EXPECT_TRUE(Store().HasAnyMatchingTransaction("req", relation));
  EXPECT_FALSE(Store().HasAnyMatchingTransaction("req", other));
  EXPECT_FALSE(Store().HasAnyMatchingTransaction("re", relation));
}

TEST_P(TransactionRowStore, ARelationWithoutRowsHasNoMatchingTransaction) {
  const std::int32_t relation = SaveRelation("9130347");
  const std::int32_t other = SaveRelation("5550001");
  ASSERT_TRUE(Save(Row(relation, {100, 200}, "req", kTxnTypeBill)));

  EXPECT_TRUE(Store().HasAnyMatchingTransaction(relation));
  EXPECT_FALSE(Store().HasAnyMatchingTransaction(static_cast<long>(other)));
}

TEST_P(TransactionRowStore, AnUpdateWritesTheRowOfItsLineBack) {
  const std::int32_t relation = SaveRelation("9130347");
  DBMultiEntityTransaction row = Row(relation, {100, 200}, "req", kTxnTypeBill);
  ASSERT_TRUE(Save(row));
  ASSERT_TRUE(Save(Row(relation, {100, 201}, "req", kTxnTypeBill)));
  row.state = 5;

  ASSERT_TRUE(Store().UpdateTransaction(row).Succeeded());

  DBMultiEntityTransaction changed{};
  DBMultiEntityTransaction untouched{};
  ASSERT_TRUE(Store().GetTransaction(100, 200, changed).Succeeded());
  ASSERT_TRUE(Store().GetTransaction(100, 201, untouched).Succeeded());
  EXPECT_EQ(changed.state, 5);
  EXPECT_EQ(untouched.state, 3);
}

TEST_P(TransactionRowStore, AnUpdateWritesEveryFieldOfTheRowBack) {
  const std::int32_t relation = SaveRelation("9130347");
  const std::int32_t other = SaveRelation("5550001");
  ASSERT_TRUE(Save(Row(relation, {100, 200}, "req", kTxnTypeBill)));
  DBMultiEntityTransaction row = Row(other, {100, 200}, "another", kTxnTypeCheck);

  ASSERT_TRUE(Store().UpdateTransaction(row).Succeeded());

  DBMultiEntityTransaction changed{};
  ASSERT_TRUE(Store().GetTransactionWithRequestId(other, "another", changed).Succeeded());
  EXPECT_EQ(changed.targetId, 200);
  EXPECT_EQ(changed.txnType, kTxnTypeCheck);
  EXPECT_TRUE(Store().GetTransactionWithRequestId(relation, "req", changed).Failed());
}

TEST_P(TransactionRowStore, AnUpdateOfARowThatIsNotThereFails) {
  const std::int32_t relation = SaveRelation("9130347");
  DBMultiEntityTransaction row = Row(relation, {100, 200}, "req", kTxnTypeBill);

  EXPECT_TRUE(Store().UpdateTransaction(row).Failed());
}

TEST_P(TransactionRowStore, DeletingTakesAllRowsOfTheTransactionAndNoOther) {
  const std::int32_t relation = SaveRelation("9130347");
  ASSERT_TRUE(Save(Row(relation, {100, 200}, "a", kTxnTypeBill)));
  ASSERT_TRUE(Save(Row(relation, {100, 201}, "b", kTxnTypeBill)));
  ASSERT_TRUE(Save(Row(relation, {101, 202}, "c", kTxnTypeBill)));

  ASSERT_TRUE(Store().DeleteTransaction(100).Succeeded());

  std::vector<DBMultiEntityTransaction> rows;
  ASSERT_TRUE(Store().GetAllTransactionWithTargets(rows).Succeeded());
  EXPECT_THAT(rows, ElementsAre(Field(&DBMultiEntityTransaction::txnId, 101)));
}

TEST_P(TransactionRowStore, DeletingTheRowsOfATransactionWithoutAnySucceeds) {
  EXPECT_TRUE(Store().DeleteTransaction(100).Succeeded());
}

TEST_P(TransactionRowStore, TheRowsOfATransactionComeInTheOrderOfTheirLines) {
  const std::int32_t relation = SaveRelation("9130347");
  ASSERT_TRUE(Save(Row(relation, {100, 205}, "a", kTxnTypeBill)));
  ASSERT_TRUE(Save(Row(relation, {101, 203}, "b", kTxnTypeBill)));
  ASSERT_TRUE(Save(Row(relation, {100, 201}, "c", kTxnTypeBill)));

  std::vector<DBMultiEntityTransaction> rows;
  ASSERT_TRUE(Store().GetTransactionWithTargets(100, rows).Succeeded());

  EXPECT_THAT(rows, ElementsAre(Field(&DBMultiEntityTransaction::targetId, 201),
                                Field(&DBMultiEntityTransaction::targetId, 205)));
}

TEST_P(TransactionRowStore, AllRowsComeInTheOrderInWhichTheyWereSaved) {
  const std::int32_t relation = SaveRelation("9130347");
  ASSERT_TRUE(Save(Row(relation, {101, 205}, "a", kTxnTypeBill)));
  ASSERT_TRUE(Save(Row(relation, {100, 203}, "b", kTxnTypeBill)));

  std::vector<DBMultiEntityTransaction> rows;
  ASSERT_TRUE(Store().GetAllTransactionWithTargets(rows).Succeeded());

  EXPECT_THAT(rows, ElementsAre(Field(&DBMultiEntityTransaction::targetId, 205),
                                Field(&DBMultiEntityTransaction::targetId, 203)));
}

TEST_P(TransactionRowStore, ListsWithoutRowsAreEmptyAndNoFailure) {
  std::vector<DBMultiEntityTransaction> ofOne;
  std::vector<DBMultiEntityTransaction> all;

  EXPECT_TRUE(Store().GetTransactionWithTargets(100, ofOne).Succeeded());
  EXPECT_TRUE(Store().GetAllTransactionWithTargets(all).Succeeded());

  EXPECT_THAT(ofOne, IsEmpty());
  EXPECT_THAT(all, IsEmpty());
}

TEST_P(TransactionRowStore, RowsAreThereAfterTheCompanyIsOpenedAgain) {
  const std::int32_t relation = SaveRelation("9130347");
  ASSERT_TRUE(Save(Row(relation, {100, 200}, "req", kTxnTypeJournalEntry)));

  host_->Reopen();

  DBMultiEntityTransaction read{};
  EXPECT_TRUE(Store().GetTransaction(100, 200, read).Succeeded());
  EXPECT_STREQ(read.requestId, "req");
}

namespace {

DBMultiEntityRejectedTxnReceiver Rejected(std::string_view requestId, std::string_view amount) {
  DBMultiEntityRejectedTxnReceiver row{};
  Put(row.requestId, requestId);
  row.txnType = kTxnTypeBill;
  row.relationId = 1;
  Put(row.amount, amount);
  Put(row.partnerTxnId, "partner-17");
  return row;
}

}  // namespace

TEST_P(RejectedTransactionStore, ASavedRejectionIsListedWithAllItsColumns) {
  DBMultiEntityRejectedTxnReceiver saved = Rejected("req", "1,234.50");
  ASSERT_TRUE(Store().SaveRejectedTransaction(saved).Succeeded());

  std::vector<DBMultiEntityRejectedTxnReceiver> rows;
  ASSERT_TRUE(Store().GetAllRejectedTransaction(rows).Succeeded());

  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(std::memcmp(rows.data(), &saved, sizeof saved), 0);
}

TEST_P(RejectedTransactionStore, AnAmountMayFillItsFieldToTheLastCharacter) {
  const std::string amount(kRejectedAmountLength, '9');
  DBMultiEntityRejectedTxnReceiver saved = Rejected("req", amount);
  ASSERT_TRUE(Store().SaveRejectedTransaction(saved).Succeeded());

  std::vector<DBMultiEntityRejectedTxnReceiver> rows;
  ASSERT_TRUE(Store().GetAllRejectedTransaction(rows).Succeeded());

  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(std::string_view(rows[0].amount, kRejectedAmountLength), amount);
  EXPECT_STREQ(rows[0].partnerTxnId, "partner-17");
}

TEST_P(RejectedTransactionStore, ARejectionIsKnownByItsRequestIdUntilItIsDeleted) {
  DBMultiEntityRejectedTxnReceiver saved = Rejected("req", "5.00");
  ASSERT_TRUE(Store().SaveRejectedTransaction(saved).Succeeded());
  ASSERT_TRUE(Store().HasAnyMatchingRejectedTransaction("req"));

  ASSERT_TRUE(Store().DeleteRejectedTransaction("req").Succeeded());

  EXPECT_FALSE(Store().HasAnyMatchingRejectedTransaction("req"));
}

TEST_P(RejectedTransactionStore, DeletingARejectionThatIsNotThereFails) {
  EXPECT_TRUE(Store().DeleteRejectedTransaction("req").Failed());
}

}  // namespace host_contract
