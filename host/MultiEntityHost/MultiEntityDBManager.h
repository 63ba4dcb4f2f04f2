#pragma once

#include <cstdint>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "MultiEntityHost/Status.h"
#include "MultiEntityHost/TString.h"

// The host's data access for the three multi-entity tables. A host implements it; the module calls it on the
// user-interface thread. Rows are copied in and out; nothing is kept after an operation returns. After a failure the
// row or list that was to be filled is unspecified.
class MultiEntityDBManager {
 public:
  // Fills `row` with the relation to that partner. Fails when there is none.
  virtual Util::Status GetRelation(Util::TString realmId, DBMultiEntityRelation& row) = 0;
  virtual Util::Status GetRelationById(long relationId, DBMultiEntityRelation& row) = 0;
  // Puts every relation into `rows`, in an order that does not change while the table does not. What it has put there
  // when it fails stays, and the listing of a period goes on with it.
  virtual Util::Status GetAllRelations(std::vector<DBMultiEntityRelation>& rows) = 0;

  // Inserts `row` and assigns its relationId and the store's own columns. Fails when the partner already has a
  // relation.
  virtual Util::Status SaveRelation(DBMultiEntityRelation& row) = 0;
  // Writes back `row`, found by its realm id. `realm` is the update's realm argument: empty, or a text that only the
  // host and its screens give a meaning.
  virtual Util::Status UpdateRelationForRealm(DBMultiEntityRelation& row, Util::TString realm) = 0;
  // Fails when there is no relation to that partner.
  virtual Util::Status DeleteRelation(Util::TString realmId) = 0;

  // Whether a relation already uses one of the two accounts, as due-from or as due-to account; `realmId` is the partner
  // they are wanted for.
  virtual bool HasAnyMatchingRecord(Util::TString realmId, long account1, long account2) = 0;
  // The same, without the relation to that partner.
  virtual bool HasAnyMatchingAccRecordExclRealm(Util::TString realmId, long account1, long account2) = 0;
  // Whether a transaction row refers to the relation.
  virtual bool HasAnyMatchingTransaction(long relationId) = 0;

  // Inserts `row`. Fails when the line already has a row, or a journal entry of the relation already has the request
  // id.
  virtual Util::Status SaveTransaction(DBMultiEntityTransaction& row) = 0;
  // Fills `row` with the row of one line of a host transaction. Fails when there is none.
  virtual Util::Status GetTransaction(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row) = 0;
  virtual Util::Status GetTransactionWithRequestId(std::int32_t relationId, Util::TString requestId,
                                                   DBMultiEntityTransaction& row) = 0;
  // Writes back `row`, found by its txnId and targetId. Fails when there is none.
  virtual Util::Status UpdateTransaction(DBMultiEntityTransaction& row) = 0;
  // Deletes all rows of a host transaction, of which there may be none.
  virtual Util::Status DeleteTransaction(std::int32_t txnId) = 0;
  // Puts all rows of one host transaction into `rows`, in the order of their lines.
  virtual Util::Status GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows) = 0;
  virtual Util::Status GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows) = 0;
  // Whether the relation has a transaction row with that request id.
  virtual bool HasAnyMatchingTransaction(Util::TString requestId, std::int32_t relationId) = 0;

  virtual Util::Status SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row) = 0;
  virtual Util::Status GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) = 0;
  // Fails when no rejected transaction has that request id.
  virtual Util::Status DeleteRejectedTransaction(Util::TString requestId) = 0;
  // Whether a rejected transaction of any partner has that request id.
  virtual bool HasAnyMatchingRejectedTransaction(Util::TString requestId) = 0;

 protected:
  ~MultiEntityDBManager() = default;
};
