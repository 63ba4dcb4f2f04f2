#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace standalone {

class Database;
class PreparedStatement;
class UnitBound;

// Commits the unit of work that is open, if any, runs `work` and begins another unit with the same access: for
// questions to the user and for commands, which must not keep others waiting and may open units of their own.
void OutsideUnit(Database& database, const std::function<void()>& work);

// What a unit of work may do: read one unchanging state of the company, or read and write while others wait.
enum class Access { kRead, kWrite };

// What a statement writes: nothing, what a booking writes (transactions, their lines and intercompany rows), or
// anything else, such as accounts, names, partners, users and settings.
enum class Writes { kNothing, kBookings, kLists };

// One connection to a company's database, used by one thread; an engine derives its own. All reading and writing
// through statements happens in a unit of work, of which a connection has one at a time.
//
// Errors: ConstraintViolation leaves the unit of work as it was before the statement. Any other failure of the engine
// spoils the unit: every later statement and the commit throw UnitOfWorkError (CompanyFileError when the database is
// damaged), because what the unit wrote before may be gone. A commit whose outcome nobody knows throws OutcomeUnknown.
class Database {
 public:
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  virtual ~Database();

  // From now on no unit of work that writes begins: it throws UnitOfWorkError with this text.
  void RefuseWriting(std::string why) { whyNotWriting_ = std::move(why); }

  // Told after each commit of a unit that wrote something; throws nothing.
  void SetSavedObserver(std::function<void()> observer) { onSaved_ = std::move(observer); }

  void Begin(Access access);
  void Commit();
  // Undoes the unit. Throws UnitOfWorkError when the engine has failed in it, so that who asked for the work learns why
  // it came to nothing.
  void TakeBack();
  void Rollback() noexcept;
  bool InUnit() const noexcept { return inUnit_; }
  // The engine's reason for which the unit, or the last one if none is open, cannot be committed; empty if it can.
  const std::string& WhyUnitFailed() const noexcept { return spoiled_.reason; }
  // The unit's; meaningless outside of one.
  Access UnitAccess() const noexcept { return access_; }

  // A number that stands as long as what was read holds, over the ends of units too: it changes when this connection
  // may have written, when something was undone, when something failed and when another connection has written. That of
  // the lists stands while this connection books: only its statements that write a list change it. Within a unit of
  // work only; throws as a statement does.
  std::uint64_t ReadVersion(Writes of) {
    if (!hasNoticedOthers_) NoticeOtherWriters();
    return of == Writes::kLists ? listsVersion_ : readVersion_;
  }

  virtual std::int64_t LastInsertedId() const noexcept = 0;
  virtual std::int64_t ChangedRows() const noexcept = 0;

  // What people call the company's file; another one than is open when that is a copy of it.
  const std::filesystem::path& Name() const noexcept { return name_; }
  void SetName(std::filesystem::path name) { name_ = std::move(name); }

 protected:
  // What the engine could not do.
  struct Failure {
    enum class Kind { kConstraint, kInUse, kDamaged, kOther };
    Kind kind = Kind::kOther;
    std::string reason;     // the engine's words
    std::string complaint;  // what is wrong with the company, and what to do about it; a sentence or two
  };

  // What became of a transaction that was to be committed.
  enum class CommitOutcome { kSaved, kNotSaved, kUnknown };

  explicit Database(std::filesystem::path name);

  // Throws what a failure means where it happened, in a unit of work or outside of one.
  [[noreturn]] void Fail(const Failure& failure);
  // To be called before anything is done outside of the rules of units of work.
  void ForgetWhatWasRead() noexcept;

 private:
  friend class Rows;
  friend class Statement;
  friend class UnitBound;
  friend void OutsideUnit(Database& database, const std::function<void()>& work);

  // What an engine does. Those that answer false or that it was not saved have failed, and WhyFailed() says why until
  // the engine is asked for the next thing.
  virtual bool BeginTransaction(Access access) = 0;
  virtual CommitOutcome CommitTransaction() = 0;
  virtual void RollBackTransaction() noexcept = 0;
  // False as well once the engine has rolled back by itself.
  virtual bool HasTransaction() const noexcept = 0;
  // Null when it fails. The SQL outlives what is prepared.
  virtual std::unique_ptr<PreparedStatement> Prepare(const char* sql) = 0;
  virtual Failure WhyFailed() const = 0;
  // By this connection, whatever became of them; without those of statements that failed.
  virtual std::int64_t RowsWritten() const noexcept = 0;
  // A number that is another one once another connection has committed something.
  virtual bool ReadOthersVersion(std::int64_t& version) = 0;
  // Asked once others have written; anything but an empty answer is why this connection must not go on.
  virtual std::string WhyOthersStopThis() = 0;

  void DropWhatTheUnitKept() noexcept;
  void RequireUsable(Writes writes);
  [[noreturn]] void Fail() { Fail(WhyFailed()); }
  bool IsSpoiled() const noexcept { return !spoiled_.reason.empty(); }
  // The unit that is open or was committed last: whether it has asked for anything to be written, and whether anything
  // was, which is not so when the row was refused or none was met.
  bool HasUnitAsked() const noexcept { return access_ == Access::kWrite && readVersion_ != readVersionAtBegin_; }
  bool HasUnitWritten() const noexcept { return HasUnitAsked() && RowsWritten() != rowsWrittenAtBegin_; }
  void Spoil(std::string reason);
  [[noreturn]] void ThrowSpoiled() const;
  void NoticeLostUnit();
  void NoticeOtherWriters();

  std::filesystem::path name_;
  std::vector<UnitBound*> unitBound_;
  std::uint64_t readVersion_ = 0;
  std::uint64_t readVersionAtBegin_ = 0;  // of the unit, where it may write
  std::int64_t rowsWrittenAtBegin_ = 0;   // likewise
  std::uint64_t listsVersion_ = 0;
  std::int64_t othersVersion_ = 0;
  bool hasNoticedOthers_ = false;  // in the open unit, which nothing has spoiled since
  bool inUnit_ = false;
  Access access_ = Access::kRead;
  std::string whyNotWriting_;  // empty while writing is allowed
  std::function<void()> onSaved_;
  Failure spoiled_;           // without a reason while the unit can be committed
  bool mayBeSaved_ = false;   // the spoiled unit, whose commit has failed
  bool isPartSaved_ = false;  // what came before a question in the unit
};

// Something that is kept from call to call within a unit of work and dropped at its end, although it may still hold:
// what takes much memory, and what lies outside of the company's database, of whose changes no version tells.
class UnitBound {
 public:
  UnitBound(const UnitBound&) = delete;
  UnitBound& operator=(const UnitBound&) = delete;

 protected:
  explicit UnitBound(Database& database);
  ~UnitBound();
  Database& Data() noexcept { return database_; }

 private:
  friend class Database;
  virtual void Drop() noexcept = 0;

  Database& database_;
};

// A unit of work: what it wrote is in the company once Commit() has returned, and nothing of it otherwise. Throws
// UnitOfWorkError when it cannot begin or commit, OutcomeUnknown when it may be there all the same.
class UnitOfWork {
 public:
  UnitOfWork(Database& database, Access access);
  UnitOfWork(const UnitOfWork&) = delete;
  UnitOfWork& operator=(const UnitOfWork&) = delete;
  ~UnitOfWork();
  void Commit();
  void TakeBack();

 private:
  Database& database_;
};

// Runs `work` in the unit of work that is open, or in a reading one of its own, and returns what it returns.
template <typename Work>
auto InReadingUnit(Database& database, Work&& work) {
  if (database.InUnit()) return std::forward<Work>(work)();
  UnitOfWork unit(database, Access::kRead);
  auto result = std::forward<Work>(work)();
  unit.Commit();
  return result;
}

}  // namespace standalone
