#include "standalone/services/MultiEntityStore.h"

#include "standalone/services/Guard.h"

namespace standalone {

namespace {

// What a question for one row, or a change of it, has found.
long Found(bool any) {
  return any ? Util::Status::kSuccess : kStatusNotFound;
}

}  // namespace

Util::Status MultiEntityStore::GetRelation(Util::TString realmId, DBMultiEntityRelation& row) {
  return AsStatus([&] { return Found(relations_.Find(realmId.view(), row)); });
}

Util::Status MultiEntityStore::GetRelationById(long relationId, DBMultiEntityRelation& row) {
  return AsStatus([&] { return Found(relations_.FindById(relationId, row)); });
}

Util::Status MultiEntityStore::GetAllRelations(std::vector<DBMultiEntityRelation>& rows) {
  return AsStatus([&] {
    relations_.List(rows);
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::SaveRelation(DBMultiEntityRelation& row) {
  return AsStatus([&] {
    relations_.Add(row, MillisecondsNow());
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::UpdateRelationForRealm(DBMultiEntityRelation& row, Util::TString /*realm*/) {
  return AsStatus([&] { return Found(relations_.Change(row, MillisecondsNow())); });
}

Util::Status MultiEntityStore::DeleteRelation(Util::TString realmId) {
  return AsStatus([&] { return Found(relations_.Remove(realmId.view())); });
}

// The partner does not matter: an account that any relation uses is taken.
bool MultiEntityStore::HasAnyMatchingRecord(Util::TString /*realmId*/, long account1, long account2) {
  return relations_.UsesAccounts(account1, account2);
}

bool MultiEntityStore::HasAnyMatchingAccRecordExclRealm(Util::TString realmId, long account1, long account2) {
  return relations_.OthersUseAccounts(realmId.view(), account1, account2);
}

bool MultiEntityStore::HasAnyMatchingTransaction(long relationId) {
  return intercompany_.HasAnyWith(relationId);
}

Util::Status MultiEntityStore::SaveTransaction(DBMultiEntityTransaction& row) {
  return AsStatus([&] {
    intercompany_.Add(row);
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::GetTransaction(std::int32_t txnId, std::int32_t targetId,
                                              DBMultiEntityTransaction& row) {
  return AsStatus([&] { return Found(intercompany_.Find(txnId, targetId, row)); });
}

Util::Status MultiEntityStore::GetTransactionWithRequestId(std::int32_t relationId, Util::TString requestId,
                                                           DBMultiEntityTransaction& row) {
  return AsStatus([&] { return Found(intercompany_.FindRequest(relationId, requestId.view(), row)); });
}

Util::Status MultiEntityStore::UpdateTransaction(DBMultiEntityTransaction& row) {
  return AsStatus([&] { return Found(intercompany_.Change(row)); });
}

Util::Status MultiEntityStore::DeleteTransaction(std::int32_t txnId) {
  return AsStatus([&] {
    intercompany_.RemoveAllOf(txnId);
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows) {
  return AsStatus([&] {
    intercompany_.ListOf(txnId, rows);
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows) {
  return AsStatus([&] {
    intercompany_.List(rows);
    return Util::Status::kSuccess;
  });
}

bool MultiEntityStore::HasAnyMatchingTransaction(Util::TString requestId, std::int32_t relationId) {
  return intercompany_.HasRequest(relationId, requestId.view());
}

Util::Status MultiEntityStore::SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row) {
  return AsStatus([&] {
    rejected_.Add(row);
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) {
  return AsStatus([&] {
    rejected_.List(rows);
    return Util::Status::kSuccess;
  });
}

Util::Status MultiEntityStore::DeleteRejectedTransaction(Util::TString requestId) {
  return AsStatus([&] {
    return Found(rejectedOf_ ? rejected_.Remove(*rejectedOf_, requestId.view()) : rejected_.Remove(requestId.view()));
  });
}

std::int64_t MultiEntityStore::MillisecondsNow() {
  return std::chrono::floor<std::chrono::milliseconds>(clock_.Now()).time_since_epoch().count();
}

bool MultiEntityStore::HasAnyMatchingRejectedTransaction(Util::TString requestId) {
  return rejected_.Has(requestId.view());
}

}  // namespace standalone
