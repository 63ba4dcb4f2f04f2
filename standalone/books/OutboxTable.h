#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/storage/Statement.h"

namespace standalone {

// A request of this company whose proposal was made. What the partner has decided the state of its line tells.
struct OutboxRow {
  std::int32_t pairing = 0;
  std::string requestId;
  std::string proposal;                                 // the hash of the one that counts
  std::optional<std::int32_t> targetId = std::nullopt;  // its line; none when these books have lost the transaction
  std::string mark;                                     // why a person has to look closely; empty for most

  friend bool operator==(const OutboxRow&, const OutboxRow&) = default;
};

// The requests that this company has made of partners with whom it is paired. Every operation needs an open unit of
// work; ConstraintViolation for a row that the company refuses. A line that was sent is not removed.
class OutboxTable {
 public:
  explicit OutboxTable(Database& database);

  // In the place of the one that is there.
  void Set(const OutboxRow& row);

  std::optional<OutboxRow> Find(std::int32_t pairing, std::string_view requestId);
  // The request that a line was sent as last.
  std::optional<OutboxRow> FindByLine(std::int32_t targetId);
  // Those of one pairing, by request id.
  void ForEach(std::int32_t pairing, const std::function<void(const OutboxRow& row)>& take);
  // Those without a line, by pairing and request id.
  void ForEachLost(const std::function<void(const OutboxRow& row)>& take);

 private:
  Statement set_;
  Statement one_;
  Statement byLine_;
  Statement all_;
  Statement lost_;
};

}  // namespace standalone
