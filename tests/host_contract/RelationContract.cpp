#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host_contract/HostUnderTest.h"

namespace host_contract {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::StrEq;

TEST_P(RelationStore, ASavedRelationIsFoundByItsRealmWithAllItsColumns) {
  DBMultiEntityRelation saved = Relation("9130347", 7, 8);
  saved.relationType = -2;
  saved.state = 4;
  ASSERT_TRUE(Store().SaveRelation(saved).Succeeded());

  DBMultiEntityRelation read{};
  ASSERT_TRUE(Store().GetRelation("9130347", read).Succeeded());

  EXPECT_GE(read.relationId, 1);
  EXPECT_EQ(read.relationId, saved.relationId);
  EXPECT_STREQ(read.realmId, "9130347");
  EXPECT_STREQ(read.partnerName, "Alder Supply");
  EXPECT_EQ(read.relationType, -2);
  EXPECT_EQ(read.state, 4);
  EXPECT_EQ(read.dueFromAccountId, 7);
  EXPECT_EQ(read.dueToAccountId, 8);
  EXPECT_EQ(read.revision, 1);
  EXPECT_EQ(read.createdAt, saved.createdAt);
  EXPECT_EQ(read.changedAt, read.createdAt);
}

TEST_P(RelationStore, ARelationIsFoundByItsId) {
  const std::int32_t id = SaveRelation("9130347");

  DBMultiEntityRelation read{};
  ASSERT_TRUE(Store().GetRelationById(id, read).Succeeded());

  EXPECT_STREQ(read.realmId, "9130347");
}

TEST_P(RelationStore, ARelationThatIsNotThereIsNotFound) {
  DBMultiEntityRelation read{};

  EXPECT_TRUE(Store().GetRelation("9130347", read).Failed());
  EXPECT_TRUE(Store().GetRelationById(1, read).Failed());
  EXPECT_TRUE(Store().DeleteRelation("9130347").Failed());
}

TEST_P(RelationStore, ARealmIdIsComparedWithItsCase) {
  SaveRelation("realmA");

  DBMultiEntityRelation read{};
  EXPECT_TRUE(Store().GetRelation("REALMA", read).Failed());
  EXPECT_TRUE(Store().GetRelation("realmA ", read).Failed());
}

TEST_P(RelationStore, TheLongestRealmIdAndPartnerNameAreStoredWhole) {
  const std::string realm(kRealmIdLength, 'r');
  const std::string partner(kPartnerNameLength, 'p');
  DBMultiEntityRelation row = Relation(realm, 0, 0);
  Put(row.partnerName, partner);
  ASSERT_TRUE(Store().SaveRelation(row).Succeeded());

  DBMultiEntityRelation read{};
  ASSERT_TRUE(Store().GetRelation(std::string_view(realm), read).Succeeded());

  EXPECT_EQ(read.realmId, realm);
  EXPECT_EQ(read.partnerName, partner);
}

TEST_P(RelationStore, ARealmIsRelatedOnce) {
  SaveRelation("9130347", 7, 8);
  DBMultiEntityRelation again = Relation("9130347", 9, 10);

  EXPECT_TRUE(Store().SaveRelation(again).Failed());

  std::vector<DBMultiEntityRelation> rows;
  ASSERT_TRUE(Store().GetAllRelations(rows).Succeeded());
  EXPECT_THAT(rows, ElementsAre(Field(&DBMultiEntityRelation::dueFromAccountId, 7)));
}

TEST_P(RelationStore, RelationsAreListedInTheOrderOfTheirIds) {
  SaveRelation("30");
  SaveRelation("10");
  SaveRelation("20");

  std::vector<DBMultiEntityRelation> rows;
  ASSERT_TRUE(Store().GetAllRelations(rows).Succeeded());

  EXPECT_THAT(rows, ElementsAre(Field(&DBMultiEntityRelation::realmId, StrEq("30")),
                                Field(&DBMultiEntityRelation::realmId, StrEq("10")),
                                Field(&DBMultiEntityRelation::realmId, StrEq("20"))));
}

TEST_P(RelationStore, AListWithoutRelationsIsEmptyAndNoFailure) {
  std::vector<DBMultiEntityRelation> rows;

  EXPECT_TRUE(Store().GetAllRelations(rows).Succeeded());

  EXPECT_THAT(rows, IsEmpty());
}

TEST_P(RelationStore, AnUpdateChangesTheRowAndCountsItsRevision) {
  DBMultiEntityRelation row = Relation("9130347", 7, 8);
  ASSERT_TRUE(Store().SaveRelation(row).Succeeded());
  const DBMultiEntityRelation saved = row;
  Put(row.partnerName, "Birch Services");
  row.state = 5;
  row.dueFromAccountId = 17;
  row.dueToAccountId = 0;

  ASSERT_TRUE(Store().UpdateRelationForRealm(row, "").Succeeded());

  DBMultiEntityRelation read{};
  ASSERT_TRUE(Store().GetRelation("9130347", read).Succeeded());
  EXPECT_STREQ(read.partnerName, "Birch Services");
  EXPECT_EQ(read.state, 5);
  EXPECT_EQ(read.dueFromAccountId, 17);
  EXPECT_EQ(read.dueToAccountId, 0);
  EXPECT_EQ(read.revision, 2);
  EXPECT_EQ(read.relationId, saved.relationId);
  EXPECT_EQ(read.createdAt, saved.createdAt);
  EXPECT_GE(read.changedAt, saved.changedAt);
}

TEST_P(RelationStore, AnUpdateLooksAtTheRealmOnly) {
  SaveRelation("9130347");
  DBMultiEntityRelation stale = Relation("9130347", 7, 8);
  stale.revision = 99;
  stale.createdAt = 1;
  stale.relationId = 4711;

  EXPECT_TRUE(Store().UpdateRelationForRealm(stale, "anything").Succeeded());

  DBMultiEntityRelation read{};
  ASSERT_TRUE(Store().GetRelation("9130347", read).Succeeded());
  EXPECT_EQ(read.revision, 2);
  EXPECT_NE(read.createdAt, 1);
  EXPECT_NE(read.relationId, 4711);
}

TEST_P(RelationStore, AnUpdateOfARelationThatIsNotThereFails) {
  DBMultiEntityRelation row = Relation("9130347", 7, 8);

  EXPECT_TRUE(Store().UpdateRelationForRealm(row, "").Failed());
}

TEST_P(RelationStore, ADeletedRelationIsGoneAndItsRealmMayBeRelatedAgain) {
  const std::int32_t first = SaveRelation("9130347");

  ASSERT_TRUE(Store().DeleteRelation("9130347").Succeeded());

  DBMultiEntityRelation read{};
  EXPECT_TRUE(Store().GetRelation("9130347", read).Failed());
  EXPECT_NE(SaveRelation("9130347"), first);
}

TEST_P(RelationStore, ARelationThatTransactionsReferToIsNotDeleted) {
  const std::int32_t id = SaveRelation("9130347");
  ASSERT_TRUE(Save(Row(id, {100, 200}, "req", kTxnTypeBill)));

  EXPECT_TRUE(Store().DeleteRelation("9130347").Failed());

  DBMultiEntityRelation read{};
  EXPECT_TRUE(Store().GetRelation("9130347", read).Succeeded());
}

TEST_P(RelationStore, AnAccountThatAnyRelationUsesInEitherRoleMatches) {
  SaveRelation("9130347", 7, 8);

  EXPECT_TRUE(Store().HasAnyMatchingRecord("other", 7, 99));
  EXPECT_TRUE(Store().HasAnyMatchingRecord("other", 99, 7));
  EXPECT_TRUE(Store().HasAnyMatchingRecord("other", 8, 99));
  EXPECT_TRUE(Store().HasAnyMatchingRecord("9130347", 99, 8));
  EXPECT_FALSE(Store().HasAnyMatchingRecord("9130347", 98, 99));
}

TEST_P(RelationStore, ARelationWithoutAccountsMatchesNone) {
  SaveRelation("9130347", 0, 0);

  EXPECT_FALSE(Store().HasAnyMatchingRecord("other", 0, 0));
  EXPECT_FALSE(Store().HasAnyMatchingAccRecordExclRealm("other", 0, 0));
}

TEST_P(RelationStore, ARelationsOwnAccountsDoNotMatchWhenItIsLeftOut) {
  SaveRelation("9130347", 7, 8);
  SaveRelation("5550001", 17, 18);

  EXPECT_FALSE(Store().HasAnyMatchingAccRecordExclRealm("9130347", 7, 8));
  EXPECT_TRUE(Store().HasAnyMatchingAccRecordExclRealm("9130347", 7, 18));
  EXPECT_TRUE(Store().HasAnyMatchingAccRecordExclRealm("9130347", 17, 8));
}

TEST_P(RelationStore, RelationsAreThereAfterTheCompanyIsOpenedAgain) {
  DBMultiEntityRelation saved = Relation("9130347", 7, 8);
  ASSERT_TRUE(Store().SaveRelation(saved).Succeeded());

  host_->Reopen();

  DBMultiEntityRelation read{};
  ASSERT_TRUE(Store().GetRelation("9130347", read).Succeeded());
  EXPECT_EQ(std::memcmp(&read, &saved, sizeof read), 0);
}

}  // namespace host_contract
