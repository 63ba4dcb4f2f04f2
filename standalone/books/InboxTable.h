#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/storage/Statement.h"
#include "standalone/values/InboxState.h"

namespace standalone {

// What has become of a partner's request. What it says its proposal tells, which is kept with the facts.
struct InboxRow {
  std::int32_t pairing = 0;
  std::string requestId;
  std::string proposal;  // the hash of the one that counts
  InboxState state{};
  std::string mark;                                  // why a person has to look closely; empty for most
  std::optional<std::int32_t> txnId = std::nullopt;  // of the entry; accepted ones have one, and no others

  friend bool operator==(const InboxRow&, const InboxRow&) = default;
};

// The requests of partners that have reached this company. Every operation needs an open unit of work;
// ConstraintViolation for a row that the company refuses. An entry that stands for a request is not removed.
class InboxTable {
 public:
  explicit InboxTable(Database& database);

  // In the place of the one that is there.
  void Set(const InboxRow& row);

  std::optional<InboxRow> Find(std::int32_t pairing, std::string_view requestId);
  // Of any pairing that the partner of a relation has or had: the last one that knows the request.
  std::optional<InboxRow> FindOfRelation(std::int32_t relationId, std::string_view requestId);
  // The request for which an entry stands.
  std::optional<InboxRow> FindByEntry(std::int32_t txnId);
  // Those of one pairing in the order in which they came; only those with which something is left to do, or all.
  void ForEach(std::int32_t pairing, bool decided, const std::function<void(const InboxRow& row)>& take);
  // Of all pairings that are not ended, those that are new or to be booked again.
  std::int64_t CountToAnswer();

 private:
  Statement set_;
  Statement one_;
  Statement ofRelation_;
  Statement byEntry_;
  Statement waiting_;
  Statement all_;
  Statement toAnswer_;
};

}  // namespace standalone
