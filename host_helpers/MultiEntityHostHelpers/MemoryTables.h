#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <vector>

#include "MultiEntityHost/Enumerations.h"
#include "MultiEntityHost/MultiEntityDBManager.h"

// The three multi-entity tables in memory, for a host that does not keep them in its database yet. It keeps every
// promise of the data access; a copy of it is all that a unit of work has to restore.
class MemoryTables final : public MultiEntityDBManager {
  static constexpr Util::Status kDone{Util::Status::kSuccess};
  static constexpr Util::Status kDeclined{-1};

  static std::int64_t Now() {
    using std::chrono::milliseconds;
    return std::chrono::duration_cast<milliseconds>(std::chrono::system_clock::now().time_since_epoch()).count();
  }

  static auto OfRealm(Util::TString realmId) {
    return [=](const DBMultiEntityRelation& row) {
      return row.realmId == realmId.view();
    };
  }
  static auto OfRelation(long relationId) {
    return [=](const DBMultiEntityRelation& row) {
      return row.relationId == relationId;
    };
  }
  // An account id of 0 is none, and matches no other.
  static auto UsingOneOf(long account1, long account2) {
    return [=](const DBMultiEntityRelation& row) {
      const auto uses = [&](long account) {
        return account != 0 && (row.dueFromAccountId == account || row.dueToAccountId == account);
      };
      return uses(account1) || uses(account2);
    };
  }
  static auto OfLine(std::int32_t txnId, std::int32_t targetId) {
    return [=](const DBMultiEntityTransaction& row) {
      return row.txnId == txnId && row.targetId == targetId;
    };
  }
  static auto OfRequest(Util::TString requestId, std::int32_t relationId) {
    return [=](const DBMultiEntityTransaction& row) {
      return row.relationId == relationId && row.requestId == requestId.view();
    };
  }
  static auto OfRejectedRequest(Util::TString requestId) {
    return [=](const DBMultiEntityRejectedTxnReceiver& row) {
      return row.requestId == requestId.view();
    };
  }

  // One request is booked once: no two journal entries of a relation share its id.
  bool IsRequestTaken(const DBMultiEntityTransaction& row) const {
    if (row.txnType != kTxnTypeJournalEntry || row.requestId[0] == '\0') return false;
    return std::ranges::any_of(transactions, [&](const auto& other) {
      return other.txnType == kTxnTypeJournalEntry && OfRequest(row.requestId, row.relationId)(other);
    });
  }

  template <typename Row, typename Matches>
  static Util::Status Read(const std::vector<Row>& rows, Matches matches, Row& row) {
    const auto found = std::ranges::find_if(rows, matches);
    if (found == rows.end()) return kDeclined;
    row = *found;
    return kDone;
  }

 public:
  Util::Status GetRelation(Util::TString realmId, DBMultiEntityRelation& row) override {
    return Read(relations, OfRealm(realmId), row);
  }
  Util::Status GetRelationById(long relationId, DBMultiEntityRelation& row) override {
    return Read(relations, OfRelation(relationId), row);
  }
  Util::Status GetAllRelations(std::vector<DBMultiEntityRelation>& rows) override {
    rows = relations;
    return kDone;
  }
  Util::Status SaveRelation(DBMultiEntityRelation& row) override {
    if (std::ranges::any_of(relations, OfRealm(row.realmId))) return kDeclined;
    row.relationId = ++lastRelationId;
    row.revision = 1;
    row.createdAt = row.changedAt = Now();
    relations.push_back(row);
    return kDone;
  }
  Util::Status UpdateRelationForRealm(DBMultiEntityRelation& row, Util::TString /*realm*/) override {
    const auto stored = std::ranges::find_if(relations, OfRealm(row.realmId));
    if (stored == relations.end()) return kDeclined;
    row.relationId = stored->relationId;
    row.revision = stored->revision + 1;
    row.createdAt = stored->createdAt;
    row.changedAt = Now();
    *stored = row;
    return kDone;
  }
  Util::Status DeleteRelation(Util::TString realmId) override {
    const auto stored = std::ranges::find_if(relations, OfRealm(realmId));
    if (stored == relations.end() || HasAnyMatchingTransaction(stored->relationId)) return kDeclined;
    relations.erase(stored);
    return kDone;
  }

  bool HasAnyMatchingRecord(Util::TString /*realmId*/, long account1, long account2) override {
    return std::ranges::any_of(relations, UsingOneOf(account1, account2));
  }
  bool HasAnyMatchingAccRecordExclRealm(Util::TString realmId, long account1, long account2) override {
    return std::ranges::any_of(
        relations, [=](const auto& row) { return !OfRealm(realmId)(row) && UsingOneOf(account1, account2)(row); });
  }
  bool HasAnyMatchingTransaction(long relationId) override {
    return std::ranges::any_of(transactions, [=](const auto& row) { return row.relationId == relationId; });
  }

  Util::Status SaveTransaction(DBMultiEntityTransaction& row) override {
    const bool hasRelation = std::ranges::any_of(relations, OfRelation(row.relationId));
    const bool lineTaken =
        std::ranges::any_of(transactions, [&](const auto& other) { return other.targetId == row.targetId; });
    if (!hasRelation || lineTaken || IsRequestTaken(row)) return kDeclined;
    transactions.push_back(row);
    return kDone;
  }
  Util::Status GetTransaction(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row) override {
    return Read(transactions, OfLine(txnId, targetId), row);
  }
  Util::Status GetTransactionWithRequestId(std::int32_t relationId, Util::TString requestId,
                                           DBMultiEntityTransaction& row) override {
    return Read(transactions, OfRequest(requestId, relationId), row);
  }
  Util::Status UpdateTransaction(DBMultiEntityTransaction& row) override {
    const auto stored = std::ranges::find_if(transactions, OfLine(row.txnId, row.targetId));
    if (stored == transactions.end()) return kDeclined;
    *stored = row;
    return kDone;
  }
  Util::Status DeleteTransaction(std::int32_t txnId) override {
    std::erase_if(transactions, [=](const auto& row) { return row.txnId == txnId; });
    return kDone;
  }
  Util::Status GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows) override {
    rows.clear();
    std::ranges::copy_if(transactions, std::back_inserter(rows), [=](const auto& row) { return row.txnId == txnId; });
    std::ranges::sort(rows, {}, &DBMultiEntityTransaction::targetId);
    return kDone;
  }
  Util::Status GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows) override {
    rows = transactions;
    return kDone;
  }
  bool HasAnyMatchingTransaction(Util::TString requestId, std::int32_t relationId) override {
    return std::ranges::any_of(transactions, OfRequest(requestId, relationId));
  }

  Util::Status SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row) override {
    rejected.push_back(row);
    return kDone;
  }
  Util::Status GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) override {
    rows = rejected;
    return kDone;
  }
  Util::Status DeleteRejectedTransaction(Util::TString requestId) override {
    return std::erase_if(rejected, OfRejectedRequest(requestId)) > 0 ? kDone : kDeclined;
  }
  bool HasAnyMatchingRejectedTransaction(Util::TString requestId) override {
    return std::ranges::any_of(rejected, OfRejectedRequest(requestId));
  }

  // The rows in the order in which they were saved, for a host that loads and saves them itself.
  std::vector<DBMultiEntityRelation> relations;
  std::vector<DBMultiEntityTransaction> transactions;
  std::vector<DBMultiEntityRejectedTxnReceiver> rejected;
  // An id is never given twice, not even that of a relation that was deleted.
  std::int32_t lastRelationId = 0;
};
