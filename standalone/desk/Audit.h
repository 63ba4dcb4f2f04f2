#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/Transactions.h"
#include "standalone/values/Dates.h"

namespace desk {

class Company;

// A value that was changed; without the one before it was added, without the one after removed.
struct AuditedChange {
  std::string field;  // such as "amount"
  std::optional<std::string> before;
  std::optional<std::string> after;
};

// A line of the audit trail: who has done what to what.
struct AuditedDeed {
  using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

  std::int64_t number = 0;  // of the line; 1 for the first
  Moment at;                // UTC
  standalone::DayAndTime localTime;
  std::string clock;       // what people had set the clock to; empty for the machine's own
  std::string user;        // empty for the program itself
  std::string systemUser;  // who the operating system says that it was
  std::string action;      // such as "journal.record"
  std::string subject;     // such as "journal entry 41"
  // Of the transactions that it was about, the first and the last number.
  std::optional<std::int32_t> firstTxnId;
  std::optional<std::int32_t> lastTxnId;
  std::vector<AuditedChange> changes;
};

struct AuditQuery {
  std::string user;    // empty for everybody
  std::string action;  // "journal" is also for "journal.record"; empty for all
  Period period;       // days of this place
  // Also what was done to those that reverse, correct or move it, that it reverses, corrects or moves, and so on, as
  // the trail tells, which knows of those that were removed, too.
  std::optional<std::int32_t> txnId;
};

// In the order in which it was done. For administrators and accountants, like the next one.
std::vector<AuditedDeed> ListAudit(Company& company, const AuditQuery& query);

struct AuditVerdict {
  std::int64_t lines = 0;
  std::string head;                     // SHA-256 of the last line: another trail has another one
  std::optional<std::int64_t> breakAt;  // the first line that does not go on from the one before it
};

AuditVerdict VerifyAudit(Company& company);

}  // namespace desk
