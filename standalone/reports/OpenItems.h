#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/books/LedgerQueries.h"

namespace standalone {

// What both companies are agreed on; what this company has booked without a request, such as a payment, so that no
// partner has seen it; what the partner has not answered; what is without effect, as it was closed here, and is not
// reversed.
enum class Standing { kAgreed, kNoRequest, kNotAnswered, kClosed };

// 0 to 30, 31 to 60, 61 to 90 and over 90 days.
inline constexpr std::size_t kAges = 4;
std::size_t AgeOf(std::int64_t days) noexcept;

// A line that nothing has settled, or not whole. Amounts are positive in the direction of the account: what is owed.
struct OpenItem {
  std::int32_t lineId = 0;
  std::int32_t txnId = 0;
  std::int16_t txnType = 0;
  DateType32 date;
  std::string documentNumber;
  std::string name;
  std::string memo;
  std::string lineMemo;
  std::int64_t amount = 0;  // as it was booked
  std::int64_t open = 0;
  std::int64_t days = 0;  // since its date
  Standing standing = Standing::kAgreed;
  std::optional<BookedState> state;
};

// What is open of the days before the first one.
struct EarlierItems {
  std::size_t count = 0;
  std::int64_t open = 0;
};

// By date. `closed` is in none of the other sums; the sum of all four is what the account holds, unless a line is on
// another account than its partner's. They and the ages are also of what is earlier.
struct OpenItems {
  EarlierItems earlier;
  std::vector<OpenItem> items;
  std::int64_t agreed = 0;
  std::int64_t noRequest = 0;
  std::int64_t notAnswered = 0;
  std::int64_t closed = 0;
  std::array<std::int64_t, kAges> byAge{};
};

// Debits of a due-from account are claims, credits of a due-to account are debts.
enum class Owed { kToUs, kByUs };

struct OpenItemsQuery {
  std::int32_t relationId = 0;
  std::int32_t accountId = 0;
  Owed owed = Owed::kToUs;
  DateType32 asOf;
  DateType32 from = NullDate();   // the first day of the items, which are all when it is null
  bool hasLinesElsewhere = true;  // whether requests of the relation may stand on other accounts than its own
};

// A transaction and its reversal, both of that day or before, cancel each other, but once the partner has taken the
// transaction only when the partner has taken the reversal, too. What is closed stands by itself, and so does what is
// not answered, also what was closed by a reversal after the day. Of the rest, what stands on the other side settles
// the oldest first; what is left over of it is open itself, as a negative amount. Within a unit of work;
// std::overflow_error when amounts add up to more than 64 bits hold.
OpenItems ReadOpenItems(LedgerQueries& ledger, const std::vector<LedgerQueries::Reversal>& reversals,
                        const OpenItemsQuery& query);

}  // namespace standalone
