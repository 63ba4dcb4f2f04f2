#include <gtest/gtest.h>

#include <cstring>

#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

class WhatWaits : public CompanyFixture {
 protected:
  void Relate(std::int16_t state) {
    DBMultiEntityRelation relation{};
    std::strcpy(relation.realmId, "9130347");
    relation.state = state;
    host_.Request(Access::kWrite,
                  [&] { EXPECT_TRUE(host_.Services().multiEntity.SaveRelation(relation).Succeeded()); });
    relationId_ = relation.relationId;
  }

  // A row that is as a company of version 1.0 had it.
  void CarryFromBefore(std::int16_t state) {
    Carry(state);
    FileOf(host_).Execute(
        ("UPDATE me_transaction SET of_before = 1 WHERE txn_id = " + std::to_string(lastId_)).c_str());
  }

  void Carry(std::int16_t state) {
    DBMultiEntityTransaction row{};
    row.txnId = ++lastId_;
    row.targetId = lastId_;
    row.relationId = relationId_;
    row.state = state;
    host_.Request(Access::kWrite, [&] { EXPECT_TRUE(host_.Services().multiEntity.SaveTransaction(row).Succeeded()); });
  }

  StandaloneHost host_{path_};
  std::int32_t relationId_ = 0;
  std::int32_t lastId_ = 0;
};

TEST_F(WhatWaits, IsNothingInANewCompany) {
  EXPECT_EQ(host_.Pending().Need(), kNothingWaits);
}

TEST_F(WhatWaits, IsNothingWhenAllIsSettled) {
  Relate(3);
  Carry(3);
  Carry(4);
  Carry(5);
  CarryFromBefore(3);
  CarryFromBefore(4);
  CarryFromBefore(5);

  EXPECT_EQ(host_.Pending().Need(), kNothingWaits);
}

TEST_F(WhatWaits, IsNothingThatIsNotSentYetOrThatThePartnerHasToAnswer) {
  Relate(3);
  Carry(0);
  Carry(1);

  EXPECT_EQ(host_.Pending().Need(), kNothingWaits);
}

TEST_F(WhatWaits, IsATransactionThatCameBack) {
  Relate(3);
  Carry(3);
  Carry(2);

  EXPECT_EQ(host_.Pending().Need(), kTransactionsWait);
}

TEST_F(WhatWaits, IsATransactionOfBeforeThatThePartnerSent) {
  Relate(3);
  CarryFromBefore(3);
  CarryFromBefore(0);

  EXPECT_EQ(host_.Pending().Need(), kTransactionsWait);
}

TEST_F(WhatWaits, IsATransactionOfBeforeThatIsPending) {
  Relate(3);
  Carry(1);
  CarryFromBefore(1);

  EXPECT_EQ(host_.Pending().Need(), kTransactionsWait);
}

TEST_F(WhatWaits, IsATransactionOfBeforeThatCameBack) {
  Relate(3);
  CarryFromBefore(2);

  EXPECT_EQ(host_.Pending().Need(), kTransactionsWait);
}

TEST_F(WhatWaits, IsARelationThatIsPending) {
  Relate(1);

  EXPECT_EQ(host_.Pending().Need(), kRelationsWait);
}

TEST_F(WhatWaits, IsNoRelationThatIsWithoutAccountsOrDeactivated) {
  Relate(4);

  EXPECT_EQ(host_.Pending().Need(), kNothingWaits);
}

TEST_F(WhatWaits, IsCountedByWhatItIs) {
  Relate(1);
  Carry(2);
  Carry(3);
  CarryFromBefore(0);
  CarryFromBefore(1);
  CarryFromBefore(2);

  EXPECT_EQ(host_.Pending().Count(), (WaitingWork{.cameBack = 2, .ofBefore = 2, .relations = 1}));
}

TEST_F(WhatWaits, CanBeBoth) {
  Relate(1);
  Carry(2);

  EXPECT_EQ(host_.Pending().Need(), kTransactionsAndRelationsWait);
}

TEST_F(WhatWaits, IsAnsweredInTheUnitOfWorkThatIsOpen) {
  Relate(1);

  const SyncNeed need = host_.Request(Access::kWrite, [&] {
    host_.Services().multiEntity.DeleteRelation("9130347");
    return host_.Pending().Need();
  });

  EXPECT_EQ(need, kNothingWaits);
}

TEST(ATransactionState, OutsideOfTheKnownOnesAsksNothingOfAnybody) {
  for (const bool ofBefore : {false, true}) {
    EXPECT_FALSE(WaitsForAnswer({TransactionState{-1}, ofBefore}));
    EXPECT_FALSE(WaitsForAnswer({TransactionState{6}, ofBefore}));
  }
}

}  // namespace
}  // namespace standalone
