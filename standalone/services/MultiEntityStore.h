#pragma once

#include <cstdint>
#include <optional>

#include "MultiEntityHost/MultiEntityDBManager.h"
#include "platform/Clock.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/RejectedRequestTable.h"
#include "standalone/books/RelationTable.h"

namespace standalone {

// The three multi-entity tables in the company file. Lists come back in the order in which their rows were saved, the
// rows of one transaction in the order of their lines. Failures of the questions without a status are thrown.
class MultiEntityStore final : public MultiEntityDBManager {
 public:
  MultiEntityStore(RelationTable& relations, IntercompanyTable& intercompany, RejectedRequestTable& rejected,
                   platform::Clock& clock) noexcept
      : relations_(relations), intercompany_(intercompany), rejected_(rejected), clock_(clock) {}

  Util::Status GetRelation(Util::TString realmId, DBMultiEntityRelation& row) override;
  Util::Status GetRelationById(long relationId, DBMultiEntityRelation& row) override;
  Util::Status GetAllRelations(std::vector<DBMultiEntityRelation>& rows) override;
  Util::Status SaveRelation(DBMultiEntityRelation& row) override;
  // `realm` has no meaning here. Brings the row's store-kept columns up to date.
  Util::Status UpdateRelationForRealm(DBMultiEntityRelation& row, Util::TString realm) override;
  Util::Status DeleteRelation(Util::TString realmId) override;
  bool HasAnyMatchingRecord(Util::TString realmId, long account1, long account2) override;
  bool HasAnyMatchingAccRecordExclRealm(Util::TString realmId, long account1, long account2) override;
  bool HasAnyMatchingTransaction(long relationId) override;

  Util::Status SaveTransaction(DBMultiEntityTransaction& row) override;
  Util::Status GetTransaction(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row) override;
  Util::Status GetTransactionWithRequestId(std::int32_t relationId, Util::TString requestId,
                                           DBMultiEntityTransaction& row) override;
  Util::Status UpdateTransaction(DBMultiEntityTransaction& row) override;
  Util::Status DeleteTransaction(std::int32_t txnId) override;
  Util::Status GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows) override;
  Util::Status GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows) override;
  bool HasAnyMatchingTransaction(Util::TString requestId, std::int32_t relationId) override;

  Util::Status SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row) override;
  Util::Status GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) override;
  Util::Status DeleteRejectedTransaction(Util::TString requestId) override;
  bool HasAnyMatchingRejectedTransaction(Util::TString requestId) override;

  // The operation that deletes a rejected transaction takes its request id and no partner. While one is named here it
  // deletes that partner's only.
  void DeleteRejectedOf(std::optional<std::int32_t> relationId) noexcept { rejectedOf_ = relationId; }

 private:
  std::int64_t MillisecondsNow();

  RelationTable& relations_;
  IntercompanyTable& intercompany_;
  RejectedRequestTable& rejected_;
  platform::Clock& clock_;
  std::optional<std::int32_t> rejectedOf_;
};

}  // namespace standalone
