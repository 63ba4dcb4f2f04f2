#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "standalone/storage/Statement.h"

namespace standalone {

// What a later transaction does to an earlier one.
enum class LinkKind {
  kReverses,  // books the same lines with the amounts negated
  kCorrects,  // stands in the place of one that was reversed
  kMoves,     // moves the expense of an entry of a partner's request to another account
};

struct TransactionLink {
  std::int32_t txnId = 0;
  LinkKind kind = LinkKind::kReverses;
  std::int32_t earlierTxnId = 0;
  friend bool operator==(const TransactionLink&, const TransactionLink&) = default;
};

// Which transactions belong together. A transaction is not deleted while a later one is linked to it; the links of one
// that is deleted go with it. Every operation needs an open unit of work; a link that the company refuses throws
// ConstraintViolation.
class LinkTable {
 public:
  explicit LinkTable(Database& database);

  void Add(const TransactionLink& link);

  // From and to the transaction, by the later one's id.
  std::vector<TransactionLink> Of(std::int32_t txnId);
  // The transaction that reverses this one and is not reversed itself; there is one at most.
  std::optional<std::int32_t> ReversalOf(std::int32_t txnId);
  // Whether a later one is linked to it.
  bool HasLater(std::int32_t txnId);

 private:
  Statement insert_;
  Statement of_;
  Statement reversal_;
  Statement later_;
};

}  // namespace standalone
