#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MultiEntity/Records.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/Transactions.h"
#include "standalone/desk/work/Work.h"

namespace desk {

// What the books have of lines that the module has listed; within one unit of work.
class LineReader {
 public:
  explicit LineReader(Work& work);

  IntercompanyLine Read(const METxnInfo& listed);
  std::vector<IntercompanyLine> Read(const std::vector<METxnInfo>& listed);

 private:
  std::optional<ListItem> AccountOf(const standalone::LineView& line);

  Work& work_;
  std::string currency_;
};

}  // namespace desk
