#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "crash/Contents.h"
#include "crash/ProgramRun.h"

inline constexpr const char* kRealm = "1001";
inline constexpr const char* kDueTo = "Due to Birch";
inline constexpr const char* kDueFrom = "Due from Birch";
inline constexpr int kBill = 9;
inline constexpr int kCheck = 3;
inline constexpr int kJournalEntry = 8;

std::string AmountText(std::int64_t minorUnits);

// What became different between two looks at a company file. Wishes take out what is theirs; what is left, nobody
// asked for.
struct Change {
  Change(const Contents& before, const Contents& after);

  std::vector<std::string> Unclaimed() const;

  std::map<std::int64_t, Transaction> added;
  std::map<std::int64_t, Transaction> removed;
  std::map<std::int64_t, std::pair<Transaction, Transaction>> changed;  // as it was, as it is
  std::set<std::string> newAccounts;
  std::set<std::string> newNames;
  std::set<std::string> lost;  // accounts and names
};

// What the program said about one attempt.
struct Report {
  enum class Kind {
    kNone,  // it was killed and had not said that it was done
    kDone,
    kRefused,  // by the rules of the books
    kFailed,   // anything else: never right
  };

  Kind kind = Kind::kNone;
  std::optional<std::int64_t> transaction{};  // of a booking that is done
  std::optional<int> status{};                // of a refusal by the module
  std::string text{};
};

Report ReportOf(const ProgramRun& run);

// Something that a user wants from the program, and asks for again when he does not know whether it was done.
class Wish {
 public:
  Wish() = default;
  Wish(const Wish&) = delete;
  Wish& operator=(const Wish&) = delete;
  virtual ~Wish() = default;

  virtual std::string Kind() const = 0;
  // The program's arguments.
  virtual std::vector<std::string> Words() const = 0;
  // The transaction that the wish is about, once there is one.
  const std::optional<std::int64_t>& Subject() const noexcept { return subject_; }

  // Compares what the attempts reported with what changed in the file, from which it takes its own. Adds what is wrong.
  void Judge(const std::vector<Report>& reports, Change& change, std::vector<std::string>& faults);
  // As of the last judgement.
  bool IsFulfilled() const noexcept { return fulfilled_; }

 protected:
  // Takes what the wish, once fulfilled, has changed; false when there is nothing of it. Adds what is wrong with it.
  virtual bool Claim(Change& change, std::vector<std::string>& faults) = 0;
  std::optional<std::int64_t> subject_;

 private:
  bool fulfilled_ = false;
};

struct BookingOrder {
  std::string request{};
  std::int64_t amount = 0;  // minor units
  std::string expense{};
  bool expenseIsNew = false;
  std::string name{};
  bool nameIsNew = false;
};

std::unique_ptr<Wish> BookingWish(const std::filesystem::path& company, BookingOrder order);
// Half of it is the partner's.
struct BillOrder {
  std::string key{};      // its memo, and the number of its paper
  std::int64_t half = 0;  // minor units
  std::string expense{};
  std::string name{};  // of a correction that of the original
  bool nameIsNew = false;
};

std::unique_ptr<Wish> BillWish(const std::filesystem::path& company, BillOrder order);
// In the place of a bill with one row, as it was before.
std::unique_ptr<Wish> CorrectionWish(const std::filesystem::path& company, std::int64_t original,
                                     const Transaction& before, BillOrder order);
// Those with one row that are not sent, are not reversed and reverse nothing.
std::vector<std::int64_t> CorrectableBills(const std::map<std::int64_t, Transaction>& books);
std::unique_ptr<Wish> RemovalWish(const std::filesystem::path& company, std::int64_t transaction);
// Of the transaction's first row.
std::unique_ptr<Wish> StateWish(const std::filesystem::path& company, std::int64_t transaction,
                                const IntercompanyRow& row, int state);
// Of so many transactions in `csv`, which is written here; `key` is the memo of each and begins their request ids.
std::unique_ptr<Wish> ImportWish(const std::filesystem::path& company, const std::filesystem::path& csv,
                                 const std::string& key, int transactions);
