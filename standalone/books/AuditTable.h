#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/storage/Statement.h"

namespace standalone {

// A value that was changed, as people read it; without the one before it was added, without the one after removed.
struct AuditChange {
  std::string field;  // such as "amount"
  std::optional<std::string> before;
  std::optional<std::string> after;
};

// Transactions with all numbers from the first to the last one.
struct TransactionRange {
  std::int32_t first = 0;
  std::int32_t last = 0;
};

// What was done to what.
struct AuditDeed {
  std::string action;   // such as "journal.record"; the desk and the company know which there are
  std::string subject;  // such as "journal entry 41"
  std::optional<TransactionRange> transactions;
  std::vector<AuditChange> changes;
};

// Who did it, and when.
struct AuditStamp {
  std::int64_t at = 0;     // milliseconds since 1970, UTC
  std::string clock;       // what the clock was set to; empty for the machine's own
  std::string user;        // of the company; empty for the program itself
  std::string systemUser;  // who the operating system says that it was
};

struct AuditLine : AuditStamp, AuditDeed {
  std::int64_t number = 0;  // 1 for the first, without a gap
};

struct AuditFilter {
  std::string user;    // empty for all
  std::string action;  // also the beginning of one up to a point: "journal"; empty for all
  std::optional<std::int32_t> txnId;
};

struct AuditCheck {
  std::int64_t lines = 0;
  std::string head;                     // the SHA-256 of the last line, which says what the whole trail holds
  std::optional<std::int64_t> breakAt;  // the first line that does not go on from the one before it
};

// The audit trail: it only grows, and each line carries the SHA-256 of the one before it, so that a line that was
// changed or taken out is noticed. What is hashed of a line is its number, `previous`, time, clock, user, system user,
// action, first and last transaction (empty without), subject and changes, each as a netstring ("5:41.00,"). Every
// operation needs an open unit of work.
class AuditTable {
 public:
  explicit AuditTable(Database& database);

  // Returns the line's number.
  std::int64_t Append(const AuditStamp& stamp, const AuditDeed& deed);
  std::optional<AuditLine> Find(std::int64_t number);
  // In the order in which they were written.
  void ForEach(const AuditFilter& filter, const std::function<void(const AuditLine& line)>& take);
  // Reads the whole trail.
  AuditCheck Check();
  // How many lines of this trail and of another company's are the same from the first one on.
  std::int64_t CountLinesInCommon(AuditTable& other);
  std::optional<AuditLine> Last();

 private:
  Statement last_;
  Statement byNumber_;
  Statement insert_;
  Statement filtered_;
  Statement all_;
};

}  // namespace standalone
