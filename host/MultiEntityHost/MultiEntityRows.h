#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

// The rows of the three multi-entity tables, as they pass between the module and the host's data access. Their fields,
// order and widths belong to that interface. Texts are NUL-terminated unless said otherwise.

inline constexpr std::size_t kRealmIdLength = 19;
inline constexpr std::size_t kPartnerNameLength = 59;
inline constexpr std::size_t kRequestIdLength = 36;
inline constexpr std::size_t kPartnerTxnIdLength = 36;
// A rejected transaction's amount may fill its field and then has no NUL of its own.
inline constexpr std::size_t kRejectedAmountLength = 22;

namespace DMMultiEntityRelation {

// The relation with one partner company.
struct DBMultiEntityRelation {
  std::int32_t relationId;  // assigned by the store when the row is first saved; 1 or greater
  char realmId[kRealmIdLength + 1];
  char partnerName[kPartnerNameLength + 1];
  std::int16_t relationType;  // MERelationType
  std::int16_t state;         // MEState
  // Kept by the store, which counts and times every write of the row; the module carries them along untouched.
  std::int64_t createdAt;         // milliseconds since 1970-01-01 UTC
  std::int64_t changedAt;         // milliseconds since 1970-01-01 UTC
  std::int32_t revision;          // 1 when first saved, one more at each write
  std::int32_t dueFromAccountId;  // 0 when the relation carries no accounts
  std::int32_t dueToAccountId;    // 0 when the relation carries no accounts
};

static_assert(std::is_trivially_copyable_v<DBMultiEntityRelation> && std::is_standard_layout_v<DBMultiEntityRelation>);
static_assert(offsetof(DBMultiEntityRelation, relationId) == 0);
static_assert(offsetof(DBMultiEntityRelation, realmId) == 4);
static_assert(offsetof(DBMultiEntityRelation, partnerName) == 24);
static_assert(offsetof(DBMultiEntityRelation, relationType) == 84);
static_assert(offsetof(DBMultiEntityRelation, state) == 86);
static_assert(offsetof(DBMultiEntityRelation, createdAt) == 88);
static_assert(offsetof(DBMultiEntityRelation, changedAt) == 96);
static_assert(offsetof(DBMultiEntityRelation, revision) == 104);
static_assert(offsetof(DBMultiEntityRelation, dueFromAccountId) == 108);
static_assert(offsetof(DBMultiEntityRelation, dueToAccountId) == 112);
static_assert(sizeof(DBMultiEntityRelation) == 120);

}  // namespace DMMultiEntityRelation

namespace DMMultiEntityTransaction {

// One line of a host transaction that belongs to an intercompany transaction.
struct DBMultiEntityTransaction {
  std::int32_t txnId;                    // the host transaction
  std::int32_t relationId;               // the relation with the partner company; 1 or greater
  std::int32_t targetId;                 // the line of the host transaction; with txnId it identifies the row
  char requestId[kRequestIdLength + 1];  // shared with the partner company
  std::int16_t txnType;                  // 3 check, 8 general journal entry, 9 bill, 0 no transaction data
  std::int16_t state;                    // MEState
};

static_assert(std::is_trivially_copyable_v<DBMultiEntityTransaction> &&
              std::is_standard_layout_v<DBMultiEntityTransaction>);
static_assert(offsetof(DBMultiEntityTransaction, txnId) == 0);
static_assert(offsetof(DBMultiEntityTransaction, relationId) == 4);
static_assert(offsetof(DBMultiEntityTransaction, targetId) == 8);
static_assert(offsetof(DBMultiEntityTransaction, requestId) == 12);
static_assert(offsetof(DBMultiEntityTransaction, txnType) == 50);
static_assert(offsetof(DBMultiEntityTransaction, state) == 52);
static_assert(sizeof(DBMultiEntityTransaction) == 56);

}  // namespace DMMultiEntityTransaction

namespace DMMultiEntityRejectedTxnReceiver {

// A transaction that the partner company rejected.
struct DBMultiEntityRejectedTxnReceiver {
  char requestId[kRequestIdLength + 1];  // shared with the partner company
  std::int32_t txnType;                  // 3 check, 9 bill
  std::int32_t relationId;               // the relation with the partner company
  char amount[kRejectedAmountLength];    // amount text
  char partnerTxnId[kPartnerTxnIdLength + 1];
};

static_assert(std::is_trivially_copyable_v<DBMultiEntityRejectedTxnReceiver> &&
              std::is_standard_layout_v<DBMultiEntityRejectedTxnReceiver>);
static_assert(offsetof(DBMultiEntityRejectedTxnReceiver, requestId) == 0);
static_assert(offsetof(DBMultiEntityRejectedTxnReceiver, txnType) == 40);
static_assert(offsetof(DBMultiEntityRejectedTxnReceiver, relationId) == 44);
static_assert(offsetof(DBMultiEntityRejectedTxnReceiver, amount) == 48);
static_assert(offsetof(DBMultiEntityRejectedTxnReceiver, partnerTxnId) == 70);
static_assert(sizeof(DBMultiEntityRejectedTxnReceiver) == 108);

}  // namespace DMMultiEntityRejectedTxnReceiver

using DMMultiEntityRejectedTxnReceiver::DBMultiEntityRejectedTxnReceiver;
using DMMultiEntityRelation::DBMultiEntityRelation;
using DMMultiEntityTransaction::DBMultiEntityTransaction;
