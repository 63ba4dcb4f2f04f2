#include <gtest/gtest.h>

#include <cstddef>

#include "MultiEntity/Records.h"

namespace {

// Where the fields of the tables' rows begin is asserted beside them; these widths do not follow from it.
TEST(Records, OfARelationKeepTheWidthsOfTheirFields) {
  EXPECT_EQ(sizeof(DBMultiEntityRelation::partnerName), 60U);
  EXPECT_EQ(sizeof(DBMultiEntityRelation::relationType), 2U);
  EXPECT_EQ(sizeof(DBMultiEntityRelation::state), 2U);
  EXPECT_EQ(sizeof(DBMultiEntityRelation::createdAt), 8U);
  EXPECT_EQ(sizeof(DBMultiEntityRelation::changedAt), 8U);
  EXPECT_EQ(sizeof(DBMultiEntityRelation::revision), 4U);
  EXPECT_EQ(sizeof(DBMultiEntityRelation::dueFromAccountId), 4U);
  EXPECT_EQ(sizeof(DBMultiEntityRelation::dueToAccountId), 4U);
}

TEST(Records, OfATransactionKeepTheWidthsOfTheirFields) {
  EXPECT_EQ(sizeof(DBMultiEntityTransaction::txnId), 4U);
  EXPECT_EQ(sizeof(DBMultiEntityTransaction::relationId), 4U);
  EXPECT_EQ(sizeof(DBMultiEntityTransaction::requestId), 37U);
  EXPECT_EQ(sizeof(DBMultiEntityTransaction::txnType), 2U);
  EXPECT_EQ(sizeof(DBMultiEntityTransaction::state), 2U);
}

TEST(Records, OfARejectedTransactionKeepTheWidthsOfTheirFields) {
  EXPECT_EQ(sizeof(DBMultiEntityRejectedTxnReceiver::requestId), 37U);
  EXPECT_EQ(sizeof(DBMultiEntityRejectedTxnReceiver::txnType), 4U);
  EXPECT_EQ(sizeof(DBMultiEntityRejectedTxnReceiver::partnerTxnId), 37U);
}

TEST(Records, OfAnAccountKeepTheOrderOfTheirFields) {
  EXPECT_EQ(offsetof(MEAccountInfo, name), 0U);
  EXPECT_LT(offsetof(MEAccountInfo, name), offsetof(MEAccountInfo, type));
  EXPECT_LT(offsetof(MEAccountInfo, type), offsetof(MEAccountInfo, accountId));
  EXPECT_LT(offsetof(MEAccountInfo, accountId), offsetof(MEAccountInfo, role));
  EXPECT_EQ(sizeof(MEAccountInfo::type), 2U);
  EXPECT_EQ(sizeof(MEAccountInfo::accountId), 4U);
  EXPECT_EQ(sizeof(MEAccountInfo::role), 4U);
}

TEST(Records, OfAnUpdateKeepTheOrderOfTheirFields) {
  EXPECT_EQ(offsetof(MERelationInfo, realmId), 0U);
  EXPECT_LT(offsetof(MERelationInfo, realmId), offsetof(MERelationInfo, updateRealm));
  EXPECT_LT(offsetof(MERelationInfo, updateRealm), offsetof(MERelationInfo, state));
  EXPECT_LT(offsetof(MERelationInfo, state), offsetof(MERelationInfo, accounts));
  EXPECT_LT(offsetof(MERelationInfo, accounts), offsetof(MERelationInfo, skipPermissionCheck));
  EXPECT_EQ(sizeof(MERelationInfo::state), 4U);
  EXPECT_EQ(sizeof(MERelationInfo::skipPermissionCheck), 1U);
}

TEST(Records, OfANameKeepTheOrderOfTheirFields) {
  EXPECT_EQ(offsetof(MECNameInfo, name), 0U);
  EXPECT_LT(offsetof(MECNameInfo, name), offsetof(MECNameInfo, nameId));
  EXPECT_EQ(sizeof(MECNameInfo::nameId), 4U);
}

TEST(Records, OfAListedLineKeepTheOrderOfTheirFields) {
  EXPECT_EQ(offsetof(METxnInfo, txnId), 0U);
  EXPECT_EQ(offsetof(METxnInfo, targetId), 4U);
  EXPECT_EQ(offsetof(METxnInfo, txnType), 8U);
  EXPECT_EQ(offsetof(METxnInfo, state), 10U);
  EXPECT_LT(offsetof(METxnInfo, state), offsetof(METxnInfo, realmId));
  EXPECT_LT(offsetof(METxnInfo, realmId), offsetof(METxnInfo, partnerName));
  EXPECT_LT(offsetof(METxnInfo, partnerName), offsetof(METxnInfo, requestId));
  EXPECT_LT(offsetof(METxnInfo, requestId), offsetof(METxnInfo, amount));
  EXPECT_LT(offsetof(METxnInfo, amount), offsetof(METxnInfo, currencyCode));
  EXPECT_LT(offsetof(METxnInfo, currencyCode), offsetof(METxnInfo, txnName));
  EXPECT_LT(offsetof(METxnInfo, txnName), offsetof(METxnInfo, billCheckAccountName));
  EXPECT_LT(offsetof(METxnInfo, billCheckAccountName), offsetof(METxnInfo, liabilityAccountName));
  EXPECT_LT(offsetof(METxnInfo, liabilityAccountName), offsetof(METxnInfo, entryAccountName));
  EXPECT_LT(offsetof(METxnInfo, entryAccountName), offsetof(METxnInfo, txnDate));
  EXPECT_EQ(sizeof(METxnInfo::txnId), 4U);
  EXPECT_EQ(sizeof(METxnInfo::targetId), 4U);
  EXPECT_EQ(sizeof(METxnInfo::txnType), 2U);
  EXPECT_EQ(sizeof(METxnInfo::state), 2U);
}

TEST(Records, OfAListedRejectedTransactionKeepTheOrderOfTheirFields) {
  EXPECT_EQ(offsetof(MERejectedTxnInfo, txnType), 0U);
  EXPECT_EQ(offsetof(MERejectedTxnInfo, state), 2U);
  EXPECT_LT(offsetof(MERejectedTxnInfo, state), offsetof(MERejectedTxnInfo, realmId));
  EXPECT_LT(offsetof(MERejectedTxnInfo, realmId), offsetof(MERejectedTxnInfo, partnerName));
  EXPECT_LT(offsetof(MERejectedTxnInfo, partnerName), offsetof(MERejectedTxnInfo, requestId));
  EXPECT_LT(offsetof(MERejectedTxnInfo, requestId), offsetof(MERejectedTxnInfo, currencyCode));
  EXPECT_LT(offsetof(MERejectedTxnInfo, currencyCode), offsetof(MERejectedTxnInfo, amount));
  EXPECT_LT(offsetof(MERejectedTxnInfo, amount), offsetof(MERejectedTxnInfo, partnerTxnId));
  EXPECT_EQ(sizeof(MERejectedTxnInfo::txnType), 2U);
  EXPECT_EQ(sizeof(MERejectedTxnInfo::state), 2U);
}

TEST(Records, OfAListedLineStartWithTenEmptyTexts) {
  const METxnInfo info;

  EXPECT_TRUE(info.realmId.empty());
  EXPECT_TRUE(info.partnerName.empty());
  EXPECT_TRUE(info.requestId.empty());
  EXPECT_TRUE(info.amount.empty());
  EXPECT_TRUE(info.currencyCode.empty());
  EXPECT_TRUE(info.txnName.empty());
  EXPECT_TRUE(info.billCheckAccountName.empty());
  EXPECT_TRUE(info.liabilityAccountName.empty());
  EXPECT_TRUE(info.entryAccountName.empty());
  EXPECT_TRUE(info.txnDate.empty());
}

TEST(Codes, OfAStatusHaveTheNumbersOfTheInterface) {
  EXPECT_EQ(MEStatusDeclined, 0);
  EXPECT_EQ(MEStatusSuccess, 1);
  EXPECT_EQ(MEStatusFeatureDisabled, 2);
  EXPECT_EQ(MEStatusPermissionDenied, 3);
  EXPECT_EQ(MEStatusExpenseAccountRefused, 5);
  EXPECT_EQ(MEStatusAccountFailed, 6);
  EXPECT_EQ(MEStatusReadFailed, 8);
  EXPECT_EQ(MEStatusRelationPending, 9);
  EXPECT_EQ(MEStatusWriteFailed, 10);
  EXPECT_EQ(MEStatusDeleteFailed, 11);
  EXPECT_EQ(MEStatusInvalidData, 12);
  EXPECT_EQ(MEStatusConflict, 13);
  EXPECT_EQ(MEStatusException, 14);
  EXPECT_EQ(MEStatusNameRefused, 16);
  EXPECT_EQ(MEStatusNameFailed, 17);
  EXPECT_EQ(MEStatusJournalEntryNotRemoved, 18);
  EXPECT_EQ(MEStatusRowsNotRemoved, 19);
  EXPECT_EQ(MEStatusAccountUnusable, 28);
}

TEST(Codes, OfStatesRolesFiltersAndKeysHaveTheNumbersOfTheInterface) {
  EXPECT_EQ(MEStatePending, 1);
  EXPECT_EQ(MEStateEstablished, 3);
  EXPECT_EQ(MEStateWithoutAccounts, 4);
  EXPECT_EQ(MEStateDeactivated, 5);
  EXPECT_EQ(MEStateKeepStored, 6);
  EXPECT_EQ(MEAccountRoleDueFrom, 0);
  EXPECT_EQ(MEAccountRoleDueTo, 1);
  EXPECT_EQ(MEAccountFilterUnused, 1);
  EXPECT_EQ(MEAccountFilterUnusedOrOwn, 2);
  EXPECT_EQ(MESupportCheckMultiEntity, 1);
  EXPECT_EQ(MEKillSwitchGlobal, 0);
  EXPECT_EQ(MEKillSwitchBills, 1);
  EXPECT_EQ(MEKillSwitchChecks, 2);
}

TEST(Codes, OfRightsHaveTheNumbersOfTheInterface) {
  EXPECT_EQ(MEPermissionManageRelations, 0);
  EXPECT_EQ(MEPermissionViewRelations, 1);
  EXPECT_EQ(MEPermissionCreateTransactions, 2);
  EXPECT_EQ(MEPermissionModifyTransactions, 3);
  EXPECT_EQ(MEPermissionViewTransactions, 4);
  EXPECT_EQ(MEPermissionAlwaysGranted, 5);
  EXPECT_EQ(MEPermissionReceiveReminder, 6);
}

}  // namespace
