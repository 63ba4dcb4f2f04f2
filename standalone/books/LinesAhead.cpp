#include "standalone/books/LinesAhead.h"

#include <utility>

#include "MultiEntityHost/Enumerations.h"

namespace standalone {

namespace {

constexpr std::size_t kPageLines = 512;

}  // namespace

LinesAhead::LinesAhead(Database& database)
    : UnitBound(database),
      fromTarget_(database,
                  "SELECT l.id, t.type, t.date, t.name_id, l.account_id, l.amount, l.memo FROM me_transaction m "
                  "CROSS JOIN txn_line l ON l.id BETWEEN m.target_id AND m.target_id + (m.txn_type = 8) "
                  "CROSS JOIN txn t ON t.id = l.txn_id "
                  "WHERE m.id >= (SELECT id FROM me_transaction WHERE target_id = ?1) ORDER BY m.id, l.id LIMIT ?2"),
      page_(database, Writes::kBookings) {}

const LineView* LinesAhead::Find(std::int32_t lineId) {
  Page* page = page_.Held();
  if (page == nullptr) return nullptr;
  for (std::size_t at = page->at; at < page->lines.size(); ++at) {
    if (page->lines[at].id != lineId) continue;
    page->at = at;
    return &page->lines[at].view;
  }
  // A line that is no row's, such as a liability line that is gone, is no reason to leave the page.
  std::vector<Line> lines = ReadFrom(lineId);
  if (lines.empty()) return nullptr;
  page = &page_.Hold({std::move(lines)});
  return page->lines.front().id == lineId ? &page->lines.front().view : nullptr;
}

// None when that is no row's target line. A liability line comes without its memo, which nobody asks for.
std::vector<LinesAhead::Line> LinesAhead::ReadFrom(std::int32_t targetId) {
  std::vector<Line> lines;
  lines.reserve(kPageLines);
  Rows rows = fromTarget_.Query(targetId, std::int64_t{kPageLines});
  while (rows.Step()) {
    const std::int32_t id = rows.Int32(0);
    const bool followsTarget = !lines.empty() && lines.back().id + 1 == id;
    Line& line = lines.emplace_back();
    line.id = id;
    ReadLine(rows, /*first=*/1, line.view);
    // Journal entries alone are called by the memo, that of their target line.
    line.view.hasMemo = line.view.txnType == kTxnTypeJournalEntry && !followsTarget;
    if (line.view.hasMemo) line.view.memo = rows.Text(6);
  }
  return lines;
}

}  // namespace standalone
