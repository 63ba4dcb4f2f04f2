#include "standalone/reports/OpenItems.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "standalone/reports/Sum.h"

namespace standalone {

namespace {

Standing StandingOf(const std::optional<BookedState>& state) noexcept {
  if (!state) return Standing::kNoRequest;
  switch (state->number) {
    case TransactionState::kEstablished:
      return Standing::kAgreed;
    case TransactionState::kRejected:
    case TransactionState::kClosed:
      return Standing::kClosed;
    default:
      return Standing::kNotAnswered;
  }
}

std::vector<OpenItem> ReadLines(LedgerQueries& ledger, const OpenItemsQuery& query) {
  const std::int64_t sign = query.owed == Owed::kToUs ? 1 : -1;
  std::vector<OpenItem> items;
  const auto take = [&](const PartnerLine& line) {
    items.push_back({.lineId = line.id,
                     .txnId = line.txnId,
                     .txnType = line.txnType,
                     .date = line.date,
                     .documentNumber = std::string(line.documentNumber),
                     .name = std::string(line.name),
                     .memo = std::string(line.memo),
                     .lineMemo = std::string(line.lineMemo),
                     .amount = sign * line.amount,
                     .open = sign * line.amount,
                     .days = (query.asOf.Days() - line.date.Days()).count(),
                     .standing = StandingOf(line.state),
                     .state = line.state});
  };
  ledger.ForEachWithPartner(query.relationId, query.accountId, query.asOf, take);
  if (!query.hasLinesElsewhere) return items;
  const std::size_t onTheAccount = items.size();
  ledger.ForEachElsewhere(query.relationId, query.owed == Owed::kToUs, query.asOf, take);
  if (items.size() != onTheAccount) {
    std::ranges::sort(items, [](const OpenItem& left, const OpenItem& right) {
      return std::tuple(left.date.Value(), left.txnId, left.lineId) <
             std::tuple(right.date.Value(), right.txnId, right.lineId);
    });
  }
  return items;
}

// What a later reversal has closed waited for an answer until then.
void ReopenWhatWasReversedAfter(DateType32 asOf, std::vector<OpenItem>& items,
                                const std::vector<LedgerQueries::Reversal>& reversals) {
  std::unordered_set<std::int32_t> later;
  for (const LedgerQueries::Reversal& reversal : reversals) {
    if (reversal.date.Value() > asOf.Value()) later.insert(reversal.earlierTxnId);
  }
  if (later.empty()) return;
  for (const LedgerQueries::Reversal& reversal : reversals) {
    if (reversal.date.Value() <= asOf.Value()) later.erase(reversal.earlierTxnId);
  }
  for (OpenItem& item : items) {
    const bool isClosed = item.state && item.state->number == TransactionState::kClosed;
    if (isClosed && later.contains(item.txnId)) item.standing = Standing::kNotAnswered;
  }
}

using LinesByTransaction = std::unordered_map<std::int32_t, std::vector<OpenItem*>>;

LinesByTransaction LinesOfReversed(std::vector<OpenItem>& items,
                                   const std::vector<LedgerQueries::Reversal>& reversals) {
  LinesByTransaction lines;
  if (reversals.empty()) return lines;
  for (const LedgerQueries::Reversal& reversal : reversals) {
    lines.try_emplace(reversal.txnId);
    lines.try_emplace(reversal.earlierTxnId);
  }
  for (OpenItem& item : items) {
    if (const auto found = lines.find(item.txnId); found != lines.end()) found->second.push_back(&item);
  }
  return lines;
}

bool IsTakenByThePartner(const OpenItem& item) noexcept {
  return item.state && item.state->number == TransactionState::kEstablished;
}

// From the last reversal on, so that of a transaction, its reversal and that one's own the first stays. A reversal has
// the lines of what it reverses in their order.
void CancelReversals(std::vector<OpenItem>& items, const std::vector<LedgerQueries::Reversal>& reversals) {
  const LinesByTransaction lines = LinesOfReversed(items, reversals);
  for (const LedgerQueries::Reversal& reversal : reversals) {
    const std::vector<OpenItem*>& later = lines.at(reversal.txnId);
    const std::vector<OpenItem*>& earlier = lines.at(reversal.earlierTxnId);
    for (std::size_t index = 0; index < std::min(later.size(), earlier.size()); ++index) {
      if (later[index]->open == 0 || earlier[index]->open == 0) continue;
      if (later[index]->amount + earlier[index]->amount != 0) continue;
      if (IsTakenByThePartner(*earlier[index]) && !IsTakenByThePartner(*later[index])) continue;
      later[index]->open = 0;
      earlier[index]->open = 0;
    }
  }
}

bool IsSettled(Standing standing) noexcept {
  return standing == Standing::kAgreed || standing == Standing::kNoRequest;
}

// The oldest first, from both sides at once.
void Settle(std::vector<OpenItem>& items) {
  std::int64_t owed = 0;
  std::int64_t settled = 0;
  for (const OpenItem& item : items) {
    if (!IsSettled(item.standing)) continue;
    AddTo(item.open > 0 ? owed : settled, item.open);
  }
  std::int64_t offOwed = std::min(owed, -settled);
  std::int64_t offSettled = offOwed;
  for (OpenItem& item : items) {
    if (!IsSettled(item.standing)) continue;
    std::int64_t& left = item.open > 0 ? offOwed : offSettled;
    const std::int64_t off = std::min(left, item.open > 0 ? item.open : -item.open);
    item.open -= item.open > 0 ? off : -off;
    left -= off;
  }
}

std::int64_t& SumFor(Standing standing, OpenItems& report) noexcept {
  switch (standing) {
    case Standing::kNoRequest:
      return report.noRequest;
    case Standing::kNotAnswered:
      return report.notAnswered;
    case Standing::kClosed:
      return report.closed;
    default:
      return report.agreed;
  }
}

// They have settled and were settled as all are; only the list goes without them.
EarlierItems TakeOutEarlier(std::vector<OpenItem>& items, DateType32 from) {
  EarlierItems earlier;
  std::erase_if(items, [&](const OpenItem& item) {
    if (item.date.Value() >= from.Value()) return false;
    ++earlier.count;
    AddTo(earlier.open, item.open);
    return true;
  });
  return earlier;
}

}  // namespace

std::size_t AgeOf(std::int64_t days) noexcept {
  constexpr std::int64_t kDaysOfAnAge = 30;
  return static_cast<std::size_t>(std::clamp<std::int64_t>((days - 1) / kDaysOfAnAge, 0, kAges - 1));
}

OpenItems ReadOpenItems(LedgerQueries& ledger, const std::vector<LedgerQueries::Reversal>& reversals,
                        const OpenItemsQuery& query) {
  std::vector<OpenItem> lines = ReadLines(ledger, query);
  ReopenWhatWasReversedAfter(query.asOf, lines, reversals);
  CancelReversals(lines, reversals);
  Settle(lines);
  std::erase_if(lines, [](const OpenItem& item) { return item.open == 0; });
  OpenItems report;
  report.items = std::move(lines);
  for (const OpenItem& item : report.items) {
    AddTo(SumFor(item.standing, report), item.open);
    if (item.standing != Standing::kClosed) AddTo(report.byAge.at(AgeOf(item.days)), item.open);
  }
  if (query.from != NullDate()) report.earlier = TakeOutEarlier(report.items, query.from);
  return report;
}

}  // namespace standalone
