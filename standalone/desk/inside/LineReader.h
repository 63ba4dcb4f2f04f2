#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "MultiEntity/Records.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/IntercompanyLine.h"
#include "standalone/values/Decimals.h"

namespace desk {

// The state that the row of a line has, by its number; within a unit of work.
standalone::BookedState StateOf(Work& work, const METxnInfo& listed);
standalone::BookedState StateOf(Work& work, const DBMultiEntityTransaction& row);

// A journal entry's intercompany lines and its own memo.
struct EntryLines {
  std::vector<IntercompanyLine> lines;
  std::string memo;
};

// What the books have of intercompany lines; within one unit of work.
class LineReader {
 public:
  explicit LineReader(Work& work);

  // Those that the module has listed.
  IntercompanyLine Read(const METxnInfo& listed);
  std::vector<IntercompanyLine> Read(const std::vector<METxnInfo>& listed);
  // As it is in the books, whoever may see it, and without what it is booked to: names, accounts and memo.
  IntercompanyLine ReadRequest(const DBMultiEntityTransaction& row);
  // Those of a journal entry, with all of it.
  EntryLines LinesOfEntry(std::int32_t txnId);

 private:
  IntercompanyLine LineOf(const DBMultiEntityTransaction& row, standalone::BookedState state);
  IntercompanyLine Read(const standalone::BookedRow& booked);
  standalone::Money MoneyOf(const standalone::LineView& line) const;
  void FillFromTheBooks(IntercompanyLine& read);
  std::optional<ListItem> NameOf(std::int32_t nameId);
  std::optional<ListItem> AccountOf(std::int32_t accountId);

  Work& work_;
  std::string currency_;
  standalone::Decimals decimals_;
  std::unordered_map<std::int32_t, std::string> names_;  // of those that were met
};

}  // namespace desk
