#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "MultiEntityHost/DateType32.h"
#include "standalone/storage/Statement.h"
#include "standalone/values/States.h"

namespace standalone {

// A line of a posted transaction with all that its transaction tells. Texts are valid until the next line.
struct PostedLineView {
  std::int32_t txnId = 0;
  std::int16_t txnType = 0;
  DateType32 date;
  std::string_view documentNumber;
  std::string_view name;  // full; empty without one
  std::string_view txnMemo;
  std::int32_t reverses = 0;  // earlier transactions, 0 for none
  std::int32_t corrects = 0;
  std::int32_t moves = 0;

  std::int32_t accountId = 0;
  std::int64_t amount = 0;  // minor units; a debit is positive
  std::string_view memo;

  // Of an intercompany line.
  struct Intercompany {
    std::string_view partner;
    std::string_view realm;
    std::string_view requestId;
    BookedState state;
  };
  std::optional<Intercompany> intercompany;
};

// The lines of all posted transactions, read in one pass that keeps none of them.
class PostedLines {
 public:
  explicit PostedLines(Database& database);

  // Hands the lines of the transactions dated from one day to another to `take`, by date, transaction and line; the
  // null date leaves an end open. Needs an open unit of work.
  void ForEach(DateType32 from, DateType32 to, const std::function<void(const PostedLineView& line)>& take);

 private:
  std::string sql_;
  Statement lines_;
};

}  // namespace standalone
