#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/Records.h"
#include "MultiEntityHost/DateType32.h"
#include "platform/Clock.h"

struct sqlite3;
struct sqlite3_stmt;

namespace bench {

// What a programmer would write who needs the same answers from the same file and leaves the same rows there, those of
// the audit trail included, and nothing else: no host, no module, no log, no rights; one connection with the company
// file's own settings and statements that are prepared once. What writes is a transaction of its own, at a given time.
class HandWritten {
 public:
  using Moment = platform::Clock::TimePoint;

  // The audit trail tells what people have set the clock to; nothing for the machine's own.
  explicit HandWritten(const std::filesystem::path& file, std::string clockSetTo = {});
  HandWritten(const HandWritten&) = delete;
  HandWritten& operator=(const HandWritten&) = delete;
  ~HandWritten() = default;

  // The lines of a period from one join, its numbers turned to text in C++ or by SQL's own functions.
  void ListPeriod(DateType32 from, DateType32 to, std::vector<METxnInfo>& list);
  void ListPeriodAsText(DateType32 from, DateType32 to, std::vector<METxnInfo>& list);

  struct Entry {
    std::string realmId;
    std::int32_t expenseAccount;
    std::int32_t dueToAccount;
    std::int64_t amount;
    std::string requestId;
    std::int32_t nameId;
  };
  // Returns the journal entry's id.
  std::int64_t Record(const Entry& entry, Moment now);

  // Of a file of transactions.
  struct Booking {
    std::int16_t type;
    DateType32 date;
    std::int32_t nameId;
    std::string memo;
    std::int32_t account;
    std::int32_t otherAccount;
    std::int64_t amount;
    std::int32_t relationId;  // 0 for an ordinary transaction
    std::string requestId;
    std::int16_t state;
  };
  // What the file at that path has, with every name looked up.
  void Import(const std::vector<Booking>& bookings, const std::filesystem::path& csv, Moment now);

  bool Exists(std::string_view realmId, std::string_view requestId);
  // With the mark that the partner confirmed; false when there is no such line that was sent.
  bool Establish(std::string_view realmId, std::string_view requestId, Moment now);

  using AccountMap = std::unordered_map<long, std::pair<std::string, std::string>>;
  // `typeNames` has the types' names by their numbers.
  AccountMap FreeAccounts(const std::vector<std::string>& typeNames);

  // The engine's version, and each statement with its plan.
  void PrintPlans(std::ostream& out);

 private:
  [[noreturn]] void Fail() const;
  sqlite3_stmt* Prepare(const char* sql);
  // Whether there is a row; fails when the engine does.
  bool Step(sqlite3_stmt* statement) const;
  void Reset(sqlite3_stmt* statement) const;
  std::size_t CountRows();
  // Both return the transaction's id.
  std::int64_t Insert(const Booking& booking);
  std::int64_t InsertEntry(std::int16_t type, DateType32 date, std::int32_t nameId, std::string_view memo,
                           std::string_view lineMemo, std::int32_t account, std::int32_t otherAccount,
                           std::int64_t amount);
  // Goes on from the last line of the trail; returns the new one's number.
  std::int64_t AppendToTrail(Moment now, std::string_view action, std::int64_t firstTxn, std::int64_t lastTxn,
                             std::string_view subject, std::string_view changes);
  void Run(sqlite3_stmt* statement);

  struct Closer {
    void operator()(sqlite3* database) const noexcept;
    void operator()(sqlite3_stmt* statement) const noexcept;
  };

  std::string clockSetTo_;
  std::string systemUser_;
  std::unique_ptr<sqlite3, Closer> database_;
  std::vector<std::unique_ptr<sqlite3_stmt, Closer>> statements_;
  sqlite3_stmt* begin_;
  sqlite3_stmt* commit_;
  sqlite3_stmt* count_;
  sqlite3_stmt* period_;
  sqlite3_stmt* periodText_;
  sqlite3_stmt* booked_;
  sqlite3_stmt* insertHeader_;
  sqlite3_stmt* insertLine_;
  sqlite3_stmt* insertRow_;
  sqlite3_stmt* post_;
  sqlite3_stmt* exists_;
  sqlite3_stmt* row_;
  sqlite3_stmt* confirm_;
  sqlite3_stmt* setState_;
  sqlite3_stmt* freeAccounts_;
  sqlite3_stmt* lastOfTrail_;
  sqlite3_stmt* appendToTrail_;
  sqlite3_stmt* insertFile_;
};

}  // namespace bench
