#pragma once

#include <cstdint>
#include <optional>

#include "standalone/storage/Statement.h"

namespace standalone {

// What the request of a line does to the request of an earlier line.
struct EarlierRequest {
  enum class Kind { kReverses, kCorrects };

  Kind kind = Kind::kReverses;
  std::int32_t targetId = 0;  // the earlier line
  friend bool operator==(const EarlierRequest&, const EarlierRequest&) = default;
};

// The intercompany lines that this company entered itself, and what their requests name. Those of bills and checks are
// its own although they may be missing here; a journal entry whose lines are missing was booked from a partner's
// request. Every operation needs an open unit of work; ConstraintViolation for a line that there is not.
class OwnRequestTable {
 public:
  explicit OwnRequestTable(Database& database);

  void Add(std::int32_t targetId, const std::optional<EarlierRequest>& earlier);

  bool Has(std::int32_t targetId);
  // What its request names, if anything.
  std::optional<EarlierRequest> EarlierOf(std::int32_t targetId);
  // The line whose request reverses or corrects that of this one.
  std::optional<std::int32_t> LaterOf(std::int32_t targetId, EarlierRequest::Kind kind);

 private:
  Statement insert_;
  Statement has_;
  Statement earlier_;
  Statement later_;
};

}  // namespace standalone
