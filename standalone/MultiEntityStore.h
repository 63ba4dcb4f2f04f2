#pragma once

#include <functional>
#include <string>
#include <unordered_map>

#include "host/MultiEntityDBManager.h"
#include "standalone/Database.h"
#include "standalone/LinesAhead.h"
#include "standalone/Text.h"

namespace standalone {

// The three multi-entity tables in the company file. Lists come back in the order in which their rows were saved, the
// rows of one transaction in the order of their lines. Failures of the questions without a status are thrown.
class MultiEntityStore final : public MultiEntityDBManager {
 public:
  // Whenever all transaction rows are read, the lines behind them are read, too, and put into `lines`.
  MultiEntityStore(Database& database, LinesAhead& lines);

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

 private:
  using RelationsByRealm = std::unordered_map<std::string, DBMultiEntityRelation, TextHash, std::equal_to<>>;

  long ReadForUpdate(Rows rows, DBMultiEntityTransaction& row);
  void ReadWithLines(Rows found, std::vector<DBMultiEntityTransaction>& rows);

  Database& database_;
  LinesAhead& lines_;
  ReadOnce<RelationsByRealm> relationsByRealm_;
  Statement relation_;
  Statement relationById_;
  Statement relations_;
  Statement insertRelation_;
  Statement updateRelation_;
  Statement deleteRelation_;
  Statement usesAccounts_;
  Statement otherUsesAccounts_;
  Statement relationInUse_;
  Statement insertTransaction_;
  Statement transaction_;
  Statement transactionOfRequest_;
  Statement updateState_;
  Statement updateTransaction_;
  Statement deleteTransaction_;
  Statement transactionLines_;
  Statement transactionCount_;
  Statement transactions_;
  Statement hasRequest_;
  Statement insertRejected_;
  Statement rejected_;
  Statement deleteRejected_;
  Statement isRejected_;
  std::int64_t lastReadRow_ = 0;  // where to look first when a row is updated
};

}  // namespace standalone
