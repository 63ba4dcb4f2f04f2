#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "MultiEntityHost/MultiEntityDBManager.h"
#include "support/CallScript.h"

// The three multi-entity tables in memory, which a test may fill and read directly.
class ScriptedStore final : public MultiEntityDBManager {
 public:
  explicit ScriptedStore(CallScript& script) : script_(script) {}

  Util::Status GetRelation(Util::TString realmId, DBMultiEntityRelation& row) override;
  Util::Status GetRelationById(long relationId, DBMultiEntityRelation& row) override;
  Util::Status GetAllRelations(std::vector<DBMultiEntityRelation>& rows) override;
  Util::Status SaveRelation(DBMultiEntityRelation& row) override;
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

  std::vector<DBMultiEntityRelation> relations;
  std::vector<DBMultiEntityTransaction> transactions;
  std::vector<DBMultiEntityRejectedTxnReceiver> rejected;

  // The rows as they were handed in, before the store put its own columns into them; also those that it declined.
  std::vector<DBMultiEntityRelation> relationsHandedIn;
  std::vector<DBMultiEntityTransaction> transactionsHandedIn;
  std::vector<DBMultiEntityRejectedTxnReceiver> rejectedHandedIn;

  // Whether the key of the relation table is blind to upper and lower case, as a database's may be.
  bool realmIdsIgnoreCase = false;

  // The store's clock, in milliseconds since 1970-01-01 UTC.
  std::int64_t now = 1'700'000'000'000;

 private:
  std::function<bool(const DBMultiEntityRelation&)> OfRealm(Util::TString realmId) const;
  // Whether a transaction row refers to the relation.
  bool IsReferredTo(long relationId) const;

  CallScript& script_;
  std::int32_t lastRelationId_ = 0;
};

// Rows for tests to start from. Every byte that they do not name is zero.
struct RelationFields {
  std::int32_t relationId = 1;
  std::string_view realmId = "9130";
  std::string_view partnerName = "Partner Ltd";
  std::int16_t relationType = 0;
  std::int16_t state = 3;
  std::int32_t dueFromAccountId = 0;
  std::int32_t dueToAccountId = 0;
};
DBMultiEntityRelation RelationRow(const RelationFields& fields);

struct TransactionFields {
  std::int32_t txnId = 1;
  std::int32_t relationId = 1;
  std::int32_t targetId = 1;
  std::string_view requestId{};
  std::int16_t txnType = 8;
  std::int16_t state = 3;
};
DBMultiEntityTransaction TransactionRow(const TransactionFields& fields);

struct RejectedFields {
  std::string_view requestId{};
  std::int32_t txnType = 9;
  std::int32_t relationId = 1;
  std::string_view amount{};
  std::string_view partnerTxnId{};
};
DBMultiEntityRejectedTxnReceiver RejectedRow(const RejectedFields& fields);
