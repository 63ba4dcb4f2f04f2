#include "standalone/storage/sqlite/Migration.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <ranges>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/DiskFiles.h"
#include "standalone/storage/sqlite/DraftFile.h"
#include "standalone/storage/sqlite/Journals.h"
#include "standalone/storage/sqlite/OpenAlone.h"
#include "standalone/storage/sqlite/SameBytes.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Sha256.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

using std::chrono::milliseconds;

std::string VersionText(std::size_t version) {
  return "schema version " + std::to_string(version);
}

constexpr const char* kReport = "Go on with the older program, and report this.";
constexpr const char* kCheckDisk =
    "Check that its disk has room; if it has, go on with the older program and report this.";

std::string CheckDisk(const MigrationOptions& options) {
  return options.roomAdvice.value_or(kCheckDisk);
}

[[noreturn]] void ThrowAsItWas(const MigrationOptions& options, const std::string& reason, const std::string& advice) {
  throw CompanyFileError("The company file " + PathText(options.name) + " is as it was. It could not be brought to " +
                         VersionText(options.steps.size()) + ": " + reason + ". " + advice);
}

// Whether another program has brought the file forward meanwhile; false as well while it does.
bool IsCurrent(const std::filesystem::path& file, const MigrationOptions& options) {
  SqliteDatabase database(file, milliseconds::zero());
  database.SetName(options.name);
  database.AllowCheckpointOnClose(false);
  try {
    return RequireKnownVersion(database, options.steps.size()) == options.steps.size();
  } catch (const FileInUse&) {
    return false;
  }
}

// Two programs that wait for each other in step would never be alone.
void WaitALittle() {
  thread_local std::minstd_rand random{std::random_device{}()};
  std::this_thread::sleep_for(milliseconds(std::uniform_int_distribution(5, 50)(random)));
}

// What lies beside a database as its journal is a part of it.
bool HasJournal(const std::filesystem::path& file) {
  return std::filesystem::exists(std::filesystem::symlink_status(WithSuffix(file, kLogSuffix))) ||
         std::filesystem::exists(std::filesystem::symlink_status(WithSuffix(file, kRollbackSuffix)));
}

// The copy of a file as it was; removed again unless it is to stay.
class CopyOfBefore {
 public:
  CopyOfBefore(SqliteDatabase& database, const std::filesystem::path& file, const MigrationOptions& options) {
    const std::filesystem::path name = WithSuffix(file, ".before-" + std::to_string(options.steps.size()));
    try {
      DraftFile draft(name);
      platform::TakeRightsOf(file, draft.Path());
      database.CopyInto(draft.Path());
      Publish(draft, name);
    } catch (const std::system_error& error) {
      ThrowNotCopied(options, name, error.code().message());
    } catch (const CompanyFileError& error) {
      ThrowNotCopied(options, name, error.what());
    }
  }
  CopyOfBefore(const CopyOfBefore&) = delete;
  CopyOfBefore& operator=(const CopyOfBefore&) = delete;
  ~CopyOfBefore() {
    std::error_code ignored;
    if (!stays_) std::filesystem::remove(path_, ignored);
  }

  const std::filesystem::path& Path() const noexcept { return path_; }
  void Stay() noexcept { stays_ = true; }

 private:
  [[noreturn]] static void ThrowNotCopied(const MigrationOptions& options, const std::filesystem::path& name,
                                          const std::string& reason) {
    ThrowAsItWas(options, "it could not be copied to " + PathText(name) + " before (" + reason + ")",
                 "Check that you may write in its folder and that its disk has room.");
  }

  // A program that was killed may have left the same copy already.
  void Publish(DraftFile& draft, const std::filesystem::path& name) {
    path_ = name;
    for (int number = 1; HasJournal(path_) || !draft.Publish(path_); ++number) {
      stays_ = !HasJournal(path_) && HaveSameBytes(draft.Path(), path_);
      if (stays_) return;
      path_ = WithSuffix(name, "." + std::to_string(number));
    }
  }

  std::filesystem::path path_;
  bool stays_ = false;
};

// What of the books no new schema changes: how many transactions there are and are posted, and each account's lines and
// balance. Reads files of every version.
std::string LedgerOf(SqliteDatabase& database) {
  std::string ledger;
  for (const char* sql : {"SELECT 0, count(*), sum(posted) FROM txn",
                          "SELECT account_id, count(*), sum(amount) FROM txn_line GROUP BY account_id ORDER BY 1"}) {
    database.ForEachRow(sql, [&](const Rows& row) {
      ledger.append(row.Text(0)).append(":").append(row.Text(1)).append(":").append(row.Text(2)).append(";");
    });
  }
  return ledger;
}

// The last numbers that tables have given to rows. A table that is made anew would begin behind the highest one that it
// holds, and give numbers of deleted rows again.
class GivenNumbers {
 public:
  explicit GivenNumbers(SqliteDatabase& database) {
    database.ForEachRow("SELECT name, seq FROM sqlite_sequence",
                        [&](const Rows& row) { last_.emplace_back(row.Text(0), row.Int64(1)); });
  }

  void HandOn(SqliteDatabase& database) const {
    Statement raise(database, Writes::kLists, "UPDATE sqlite_sequence SET seq = max(seq, ?2) WHERE name = ?1");
    Statement add(database, Writes::kLists,
                  "INSERT INTO sqlite_sequence (name, seq) SELECT name, ?2 FROM sqlite_schema WHERE type = 'table' "
                  "AND name = ?1 AND sql LIKE '%AUTOINCREMENT%'");
    for (const auto& [table, number] : last_) {
      if (raise.Run(table, number) == 0) add.Run(table, number);
    }
  }

 private:
  std::vector<std::pair<std::string, std::int64_t>> last_;
};

// What others have added to the tables of a company: it would get in the way of steps, or go with a table that is made
// anew.
class AddedByOthers {
 public:
  AddedByOthers(SqliteDatabase& database, SchemaSpan steps) {
    const SchemaObjects found = ObjectsOf(database);
    std::ranges::set_difference(found, ObjectsMadeBy(steps), std::back_inserter(objects_));
    std::erase_if(objects_, [](const SchemaObject& object) { return object.type == "table"; });
  }

  void PutAside(SqliteDatabase& database) const {
    for (const SchemaObject& object : objects_) {
      std::string name = object.name;
      for (std::size_t at = name.find('"'); at != std::string::npos; at = name.find('"', at + 2)) {
        name.insert(at, 1, '"');
      }
      database.Execute(("DROP " + object.type + " \"" + name + '"').c_str());
    }
  }

  // Answers what does not fit any more. Views come before their triggers.
  std::vector<std::string> PutBack(SqliteDatabase& database) const {
    std::vector<std::string> left;
    for (const SchemaObject& object : std::views::reverse(objects_)) {
      if (!database.Accepts(object.sql.c_str())) left.push_back(object.type + ' ' + object.name);
    }
    return left;
  }

 private:
  std::vector<SchemaObject> objects_;
};

Holdings HoldingsOf(SqliteDatabase& database) {
  return {.transactions = database.QueryNumber("SELECT count(*) FROM txn"),
          .lines = database.QueryNumber("SELECT count(*) FROM txn_line"),
          .intercompanyRows = database.QueryNumber("SELECT count(*) FROM me_transaction"),
          .relations = database.QueryNumber("SELECT count(*) FROM me_relation")};
}

std::string Sha256OfFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  Sha256 digest;
  std::array<char, std::size_t{64} * 1024> piece{};
  while (stream.read(piece.data(), piece.size()), stream.gcount() > 0) {
    digest.Add({piece.data(), static_cast<std::size_t>(stream.gcount())});
  }
  if (!stream.eof()) throw CompanyFileError("The copy " + PathText(file) + " cannot be read.");
  return digest.Finish();
}

class NotAsExpected : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

void Expect(const std::string& fault) {
  if (!fault.empty()) throw NotAsExpected("afterwards, " + fault);
}

std::string AnyFaultOf(SqliteDatabase& database, SchemaSpan steps) {
  const std::string fault = FaultOf(database, steps, Search::kEverything);
  return fault.empty() ? ImbalanceOf(database, Search::kEverything) : fault;
}

// Answers what others had added and does not fit any more. Throws when the steps cannot be taken or would harm the
// books.
std::vector<std::string> Change(SqliteDatabase& database, SchemaSpan steps, std::size_t from) {
  const GivenNumbers numbers(database);
  const AddedByOthers added(database, steps.first(from));
  const std::string ledger = LedgerOf(database);
  added.PutAside(database);
  TakeSteps(database, steps, from);
  numbers.HandOn(database);
  Expect(AnyFaultOf(database, steps));
  Expect(LedgerOf(database) == ledger ? "" : "the bookings would not be the same");
  return added.PutBack(database);
}

// What was changed may be committed all the same.
class CommitFailed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

void ChangeAndCommit(SqliteDatabase& database, const MigrationOptions& options, Migrated& migrated) {
  try {
    PrepareForSteps(database);
    UnitOfWork unit(database, Access::kWrite);
    migrated.left = Change(database, options.steps, migrated.from);
    if (options.record) options.record(migrated, database);
    try {
      unit.Commit();
    } catch (const std::exception&) {
      throw CommitFailed(database.WhyUnitFailed());
    }
  } catch (const NotAsExpected& fault) {
    ThrowAsItWas(options, fault.what(), kReport);
  } catch (const ConstraintViolation& violation) {
    ThrowAsItWas(options, violation.what(), kReport);
  } catch (const UnitOfWorkError&) {
    ThrowAsItWas(options, database.WhyUnitFailed(), CheckDisk(options));
  }
}

// What the file tells once it is opened anew; nothing when it cannot be.
std::optional<std::size_t> VersionTold(const std::filesystem::path& file, const MigrationOptions& options) {
  try {
    const std::unique_ptr<SqliteDatabase> database = OpenAlone(file, options.name);
    if (database == nullptr) return std::nullopt;
    database->AllowCheckpointOnClose(true);
    return RequireKnownVersion(*database, options.steps.size());
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

Migrated Migrate(std::unique_ptr<SqliteDatabase> database, const std::filesystem::path& file,
                 const MigrationOptions& options, std::size_t from) {
  const std::string fault = AnyFaultOf(*database, options.steps.first(from));
  if (!fault.empty()) ThrowDamaged(options.name, fault);
  database->AllowCheckpointOnClose(true);
  // Only with this journal is it seen who has a file open.
  if (database->QueryText("PRAGMA journal_mode = WAL") != "wal") {
    ThrowAsItWas(options, "no write-ahead log can be kept beside it", CheckDisk(options));
  }
  Migrated migrated{.from = from,
                    .to = options.steps.size(),
                    .before = {},
                    .beforeSha256 = {},
                    .held = HoldingsOf(*database),
                    .left = {}};
  std::optional<CopyOfBefore> before;
  if (options.keepsCopy) {
    migrated.before = before.emplace(*database, file, options).Path();
    migrated.beforeSha256 = Sha256OfFile(migrated.before);
  }
  try {
    ChangeAndCommit(*database, options, migrated);
  } catch (const CommitFailed& failure) {
    database.reset();
    const std::optional<std::size_t> told = VersionTold(file, options);
    if (told == from) ThrowAsItWas(options, failure.what(), CheckDisk(options));
    if (before) before->Stay();
    if (!told) {
      throw CompanyFileError("It is not known whether the company file " + PathText(options.name) + " was brought to " +
                             VersionText(options.steps.size()) + " (" + failure.what() +
                             "). Check that its disk is there and has room, and open it again to find out.");
    }
  }
  if (before) before->Stay();
  return migrated;
}

}  // namespace

std::optional<Migrated> BringForward(const std::filesystem::path& file, const MigrationOptions& options) {
  const auto deadline = std::chrono::steady_clock::now() + options.patience;
  for (;;) {
    if (std::unique_ptr<SqliteDatabase> database = OpenAlone(file, options.name)) {
      if (options.roomAdvice) database->SetRoomAdvice(*options.roomAdvice);
      const std::size_t version = RequireKnownVersion(*database, options.steps.size());
      if (version == options.steps.size()) return std::nullopt;
      return Migrate(std::move(database), file, options, version);
    }
    if (IsCurrent(file, options)) return std::nullopt;
    if (std::chrono::steady_clock::now() >= deadline) {
      ThrowAsItWas(options, "it is open in another program", "Close it there, or try again later.");
    }
    WaitALittle();
  }
}

}  // namespace standalone
