#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "crash/Commands.h"
#include "crash/Contents.h"
#include "crash/Timing.h"
#include "crash/Wish.h"

// What a run was at when it was killed, as far as can be told from outside.
enum class Moment {
  kBeforeOpening,  // of the company file
  kBeforeCommit,
  kDuringCommit,  // the write-ahead log was written, but not to the end
  kAfterCommit,
  kDuringCheckpoint,  // what is in the write-ahead log was being moved into the file, or had been
  kBeforeReport,      // the company was closed
  kAfterReport,
  kUnknown,  // two runs had the same wish, and one of them fulfilled it
};
inline constexpr std::size_t kMoments = 8;

struct Tally {
  std::array<int, kMoments> killed{};
  int runs = 0;
  int kills = 0;
  int ended = 0;  // by themselves, before they were to be killed
  int refused = 0;
  std::chrono::nanoseconds took{};
};

// A company whose users are unlucky: the program is killed again and again while they work.
class UnluckyCompany {
 public:
  UnluckyCompany(const Scene& scene, std::uint64_t seed);

  // One program at a time; the books are looked at after each run.
  Tally KillOneAtATime(int kills);
  // Two programs at once, each with two commands after each other; the books are looked at when both are dead.
  Tally KillTwoAtATime(int kills);
  // Runs without a kill: what the program itself says about the books after all this. Throws BooksBroken.
  void ReadThroughTheProgram();

  const std::map<std::string, Timing>& Timings() const noexcept { return timings_; }

 private:
  struct Attempt {
    std::shared_ptr<Wish> wish;
    std::chrono::nanoseconds killAfter{};
    ProgramRun run;
    Report report;
    Traces traces;
  };
  using Lane = std::vector<Attempt>;

  ProgramRun RunUnharmed(const std::vector<std::string>& words) const;
  void Measure();
  std::shared_ptr<Wish> NewWish(std::set<std::int64_t>& taken);
  BookingOrder NewOrder();
  BillOrder NewBill();
  std::shared_ptr<Wish> NewBillWish(std::set<std::int64_t>& taken);
  Attempt NextAttempt(std::set<std::int64_t>& taken);
  void Try(Attempt& attempt) const;
  void TryAlone(Attempt& attempt) const;
  void Judge(std::vector<Lane>& lanes, Tally& tally);
  void Settle(const Attempt& attempt, bool isOnlyOne, bool wasFulfilled, Tally& tally);
  [[noreturn]] void Fail(const std::vector<std::string>& faults) const;

  Scene scene_;
  std::filesystem::path file_;
  Random random_;
  std::map<std::string, Timing> timings_;
  Contents books_;  // as they were found last
  std::vector<std::shared_ptr<Wish>> again_;
  std::vector<std::string> history_;
  int orders_ = 0;
};

// Imports of so many transactions, killed on the way. Each leaves all of them or none.
Tally KillImports(const Scene& scene, std::uint64_t seed, int kills, int transactions);

// Openings of a company of an older version, killed while it is brought forward. The books stay the same, for the
// scene's program or for the next one, beside which they are kept as they were.
Tally KillMigrations(const Scene& scene, const std::filesystem::path& nextProgram,
                     const std::filesystem::path& oldCompany, std::uint64_t seed, int kills);

// Backups that are killed while they are made. The company stays whole, and a backup that is there is whole, too.
Tally KillBackups(const Scene& scene, std::uint64_t seed, int kills);

// Restores that are killed: of a company that is sound, which is whole before and after, and of one that is damaged,
// which is kept. The backup stays as it is.
Tally KillRestores(const Scene& scene, std::uint64_t seed, int kills);
Tally KillReplacements(const Scene& scene, std::uint64_t seed, int kills);

// Companies that are killed while they are made. Each is there, complete, or not there.
Tally KillInits(const Scene& scene, std::uint64_t seed, int kills);
