#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "MultiEntity/Records.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/IntercompanyLine.h"

namespace desk {

// The state that the row of a line has, by its number; within a unit of work.
standalone::BookedState StateOf(Work& work, const METxnInfo& listed);
standalone::BookedState StateOf(Work& work, const DBMultiEntityTransaction& row);

// What the books have of intercompany lines; within one unit of work.
class LineReader {
 public:
  explicit LineReader(Work& work);

  // Those that the module has listed.
  IntercompanyLine Read(const METxnInfo& listed);
  std::vector<IntercompanyLine> Read(const std::vector<METxnInfo>& listed);
  // As it is in the books, whoever may see it.
  IntercompanyLine Read(const DBMultiEntityTransaction& row);
  // Those of a journal entry, in the same way.
  std::vector<IntercompanyLine> LinesOfEntry(std::int32_t txnId);

 private:
  void FillFromTheBooks(IntercompanyLine& read);
  std::optional<ListItem> NameOf(const standalone::LineView& line);
  std::optional<ListItem> AccountOf(const standalone::LineView& line);

  Work& work_;
  std::string currency_;
  std::unordered_map<std::int32_t, std::string> names_;  // of those that were met
};

}  // namespace desk
