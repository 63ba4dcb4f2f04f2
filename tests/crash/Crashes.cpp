#include "crash/Crashes.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <thread>
#include <utility>

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;
using std::chrono::nanoseconds;

constexpr const char* kBooksName = "alder.company";
constexpr std::size_t kRememberedCommands = 12;
constexpr int kImportedAtOnce = 6;
constexpr int kMeasuredRuns = 9;

constexpr std::string_view kAccountsCsv =
    "name,type\n"
    "Checking,Bank\n"
    "Payables,Accounts Payable\n"
    "Due from Birch,Other Current Asset\n"
    "Due to Birch,Other Current Liability\n"
    "Utilities,Expense\n"
    "Rent,Expense\n";
constexpr std::string_view kNamesCsv = "name,kind\nNorthern Power,vendor\nWalker,vendor\n";

void WriteFile(const std::filesystem::path& file, std::string_view text) {
  std::ofstream stream(file, std::ios::binary);
  stream << text;
  if (!stream.flush()) throw std::runtime_error("cannot write " + file.string());
}

std::filesystem::path MakeBooks(const Scene& scene) {
  const std::filesystem::path file = scene.directory / kBooksName;
  WriteFile(scene.directory / "accounts.csv", kAccountsCsv);
  WriteFile(scene.directory / "names.csv", kNamesCsv);
  RunToItsEnd(scene, {"init", file, "--name", "Alder Supply Company"});
  RunToItsEnd(scene, {"import", "accounts", file, "accounts.csv"});
  RunToItsEnd(scene, {"import", "names", file, "names.csv"});
  RunToItsEnd(scene, {"relation", "create", file, "--realm", kRealm, "--partner", "Birch Services Company",
                      "--due-from", kDueFrom, "--due-to", kDueTo});
  return file;
}

nanoseconds Median(std::vector<nanoseconds> times) {
  std::ranges::nth_element(times, times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2));
  return times[times.size() / 2];
}

Moment MomentOf(const ProgramRun& run, const Report& report, bool isCommitted, Traces traces) {
  if (report.kind == Report::Kind::kDone) return Moment::kAfterReport;
  if (isCommitted && !run.hadFileOpen) return Moment::kBeforeReport;
  if (isCommitted) return traces.inFile ? Moment::kDuringCheckpoint : Moment::kAfterCommit;
  if (!run.hadFileOpen) return Moment::kBeforeOpening;
  return traces.inLog ? Moment::kDuringCommit : Moment::kBeforeCommit;
}

class Stopwatch {
 public:
  explicit Stopwatch(Tally& tally) : tally_(tally) {}
  Stopwatch(const Stopwatch&) = delete;
  Stopwatch& operator=(const Stopwatch&) = delete;
  ~Stopwatch() { tally_.took = std::chrono::steady_clock::now() - start_; }

 private:
  Tally& tally_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

void Count(Tally& tally, const ProgramRun& run, Moment moment) {
  ++tally.runs;
  if (run.ending == Ending::kKilled) {
    ++tally.kills;
    ++tally.killed[static_cast<std::size_t>(moment)];
  } else {
    ++tally.ended;
  }
}

template <typename Item>
Item OneOf(Random& random, const std::vector<Item>& items) {
  return items[static_cast<std::size_t>(Pick(random, 0, static_cast<int>(items.size()) - 1))];
}

// The states to which the program moves a transaction of a state.
std::vector<int> MovesFrom(int state) {
  switch (state) {
    case 0:
      return {1, 3, 5};
    case 1:
      return {2, 3, 5};
    case 2:
      return {1, 5};
    default:
      return {};
  }
}

}  // namespace

UnluckyCompany::UnluckyCompany(const Scene& scene, std::uint64_t seed)
    : scene_(scene), file_(MakeBooks(scene)), random_(seed) {
  books_ = InspectCopy(file_).contents;
  Measure();
}

ProgramRun UnluckyCompany::RunUnharmed(const std::vector<std::string>& words) const {
  return RunToItsEnd(scene_, words);
}

// The runs that are measured also give the others something to remove and change.
void UnluckyCompany::Measure() {
  std::map<std::string, std::vector<nanoseconds>> times;
  const auto measure = [&](Wish& wish) {
    times[wish.Kind()].push_back(RunUnharmed(wish.Words()).took);
    books_ = InspectCopy(file_).contents;
  };
  for (int round = 0; round < kMeasuredRuns; ++round) {
    measure(*BookingWish(file_, NewOrder()));
    measure(*RemovalWish(file_, books_.transactions.rbegin()->first));
    const std::string key = "M" + std::to_string(round);
    measure(*ImportWish(file_, scene_.directory / "import.csv", key, kImportedAtOnce));
    const auto& [id, imported] = *books_.transactions.rbegin();
    measure(*StateWish(file_, id, imported.rows.front(), 1));
    measure(*BillWish(file_, NewBill()));
    const auto& [billId, bill] = *books_.transactions.rbegin();
    measure(*CorrectionWish(file_, billId, bill, NewBill()));
  }
  for (auto& [kind, measured] : times) timings_.emplace(kind, Timing(Median(std::move(measured))));
}

BookingOrder UnluckyCompany::NewOrder() {
  const std::string number = std::to_string(++orders_);
  BookingOrder order{.request = "request-" + number,
                     .amount = Pick(random_, 1, 100'000'000),
                     .expense = OneIn(random_, 2) ? "Utilities" : "Rent",
                     .name = OneIn(random_, 2) ? "Northern Power" : "Walker"};
  if (OneIn(random_, 6)) {
    order.expense = "Expense " + number;
    order.expenseIsNew = true;
  }
  if (OneIn(random_, 6)) {
    order.name = "Vendor " + number;
    order.nameIsNew = true;
  }
  return order;
}

BillOrder UnluckyCompany::NewBill() {
  const std::string number = std::to_string(++orders_);
  BillOrder order{.key = "bill-" + number,
                  .half = Pick(random_, 1, 50'000'000),
                  .expense = OneIn(random_, 2) ? "Utilities" : "Rent",
                  .name = OneIn(random_, 2) ? "Northern Power" : "Walker"};
  if (OneIn(random_, 6)) {
    order.name = "Vendor " + number;
    order.nameIsNew = true;
  }
  return order;
}

// A bill, or another one in the place of one.
std::shared_ptr<Wish> UnluckyCompany::NewBillWish(std::set<std::int64_t>& taken) {
  std::vector<std::int64_t> correctable = CorrectableBills(books_.transactions);
  std::erase_if(correctable, [&](std::int64_t id) { return taken.contains(id); });
  if (correctable.empty() || OneIn(random_, 2)) return BillWish(file_, NewBill());
  const std::int64_t id = OneOf(random_, correctable);
  taken.insert(id);
  return CorrectionWish(file_, id, books_.transactions.at(id), NewBill());
}

// Of two runs at the same time each works on something else; `taken` are the transactions that others work on.
std::shared_ptr<Wish> UnluckyCompany::NewWish(std::set<std::int64_t>& taken) {
  std::vector<std::int64_t> entries;
  std::vector<std::int64_t> movable;
  for (const auto& [id, transaction] : books_.transactions) {
    if (transaction.rows.empty() || taken.contains(id)) continue;
    if (transaction.type == kJournalEntry) entries.push_back(id);
    if (!MovesFrom(transaction.rows.front().state).empty()) movable.push_back(id);
  }
  if (OneIn(random_, 4)) return NewBillWish(taken);
  const int dice = Pick(random_, 1, 10);
  if (entries.empty() || movable.empty() || dice <= 4) return BookingWish(file_, NewOrder());
  if (dice == 5) {
    const std::string key = "I" + std::to_string(++orders_);
    return ImportWish(file_, scene_.directory / (key + ".csv"), key, kImportedAtOnce);
  }
  const std::int64_t id = OneOf(random_, dice <= 7 ? entries : movable);
  taken.insert(id);
  if (dice <= 7) return RemovalWish(file_, id);
  const IntercompanyRow& row = books_.transactions.at(id).rows.front();
  return StateWish(file_, id, row, OneOf(random_, MovesFrom(row.state)));
}

UnluckyCompany::Attempt UnluckyCompany::NextAttempt(std::set<std::int64_t>& taken) {
  Attempt attempt;
  if (again_.empty()) {
    attempt.wish = NewWish(taken);
  } else {
    attempt.wish = again_.back();
    again_.pop_back();
  }
  attempt.killAfter = OneIn(random_, 8) ? kWhenItPrints : timings_.at(attempt.wish->Kind()).NextKill(random_);
  return attempt;
}

void UnluckyCompany::Try(Attempt& attempt) const {
  attempt.run = Run(CommandOf(scene_, attempt.wish->Words()),
                    {.directory = scene_.directory, .watchedFile = file_, .killAfter = attempt.killAfter});
  attempt.report = ReportOf(attempt.run);
}

void UnluckyCompany::TryAlone(Attempt& attempt) const {
  const Stamps before(file_);
  Try(attempt);
  attempt.traces = before.Until(Stamps(file_));
}

Tally UnluckyCompany::KillOneAtATime(int kills) {
  Tally tally;
  const Stopwatch stopwatch(tally);
  while (tally.kills < kills) {
    std::set<std::int64_t> taken;
    std::vector<Lane> lanes(1);
    lanes[0].push_back(NextAttempt(taken));
    TryAlone(lanes[0][0]);
    Judge(lanes, tally);
  }
  return tally;
}

Tally UnluckyCompany::KillTwoAtATime(int kills) {
  Tally tally;
  const Stopwatch stopwatch(tally);
  while (tally.kills < kills) {
    std::set<std::int64_t> taken;
    for (const std::shared_ptr<Wish>& wish : again_) {
      if (wish->Subject()) taken.insert(*wish->Subject());
    }
    std::vector<Lane> lanes(2);
    for (int command = 0; command < 2; ++command) {
      for (Lane& lane : lanes) lane.push_back(NextAttempt(taken));
    }
    // Now and then both want the same.
    if (OneIn(random_, 4)) lanes[1][0].wish = lanes[0][0].wish;

    std::vector<std::jthread> threads;
    threads.reserve(lanes.size());
    for (Lane& lane : lanes) {
      threads.emplace_back([this, &lane] { std::ranges::for_each(lane, [this](Attempt& attempt) { Try(attempt); }); });
    }
    threads.clear();
    Judge(lanes, tally);
  }
  return tally;
}

void UnluckyCompany::Judge(std::vector<Lane>& lanes, Tally& tally) {
  std::vector<std::pair<std::shared_ptr<Wish>, std::vector<const Attempt*>>> attempts;
  for (const Lane& lane : lanes) {
    for (const Attempt& attempt : lane) {
      auto same = std::ranges::find(attempts, attempt.wish, [](const auto& entry) { return entry.first; });
      if (same == attempts.end()) same = attempts.emplace(same, attempt.wish, std::vector<const Attempt*>());
      same->second.push_back(&attempt);
      history_.push_back("multientity " + Joined(attempt.wish->Words()) + AfterMilliseconds(attempt.killAfter) + ": " +
                         Description(attempt.run));
    }
  }
  if (history_.size() > kRememberedCommands) {
    history_.erase(history_.begin(), history_.end() - static_cast<std::ptrdiff_t>(kRememberedCommands));
  }

  Inspection found = InspectCopy(file_);
  Change change(books_, found.contents);
  for (const auto& [wish, tries] : attempts) {
    std::vector<Report> reports;
    std::ranges::transform(tries, std::back_inserter(reports), [](const Attempt* attempt) { return attempt->report; });
    const bool wasFulfilled = wish->IsFulfilled();
    wish->Judge(reports, change, found.faults);
    for (const Attempt* attempt : tries) Settle(*attempt, tries.size() == 1, wasFulfilled, tally);
    const bool isReported =
        std::ranges::any_of(reports, [](const Report& report) { return report.kind == Report::Kind::kDone; });
    if (!isReported && OneIn(random_, 2)) again_.push_back(wish);
  }
  std::ranges::copy(found.separated, std::back_inserter(found.faults));
  std::ranges::copy(change.Unclaimed(), std::back_inserter(found.faults));
  if (!found.faults.empty()) Fail(found.faults);
  books_ = std::move(found.contents);
}

void UnluckyCompany::Settle(const Attempt& attempt, bool isOnlyOne, bool wasFulfilled, Tally& tally) {
  const bool isCommitted = !wasFulfilled && attempt.wish->IsFulfilled();
  const bool isKnown = isOnlyOne || !isCommitted || attempt.report.kind == Report::Kind::kDone;
  Count(tally, attempt.run,
        isKnown ? MomentOf(attempt.run, attempt.report, isCommitted, attempt.traces) : Moment::kUnknown);
  if (attempt.report.kind == Report::Kind::kRefused) ++tally.refused;
  if (isKnown && !wasFulfilled && attempt.killAfter != kWhenItPrints) {
    timings_.at(attempt.wish->Kind()).Learn(attempt.killAfter, attempt.run, isCommitted);
  }
}

void UnluckyCompany::ReadThroughTheProgram() {
  const Inspection found = Inspect(file_);
  std::vector<std::string> faults = found.faults;
  std::ranges::copy(Change(books_, found.contents).Unclaimed(), std::back_inserter(faults));

  std::size_t rows = 0;
  for (const auto& [id, transaction] : books_.transactions) rows += transaction.rows.size();
  const ProgramRun listing =
      RunUnharmed({"transactions", file_.string(), "--from", "2000-01-01", "--to", "2999-12-31"});
  const std::size_t listed = Json::parse(listing.out).at("transactions").size();
  if (listed != rows) {
    faults.push_back("the program lists " + std::to_string(listed) + " intercompany lines of " + std::to_string(rows));
  }
  RunUnharmed({"log", file_.string(), "--last", "100000"});
  if (!faults.empty()) Fail(faults);
}

void UnluckyCompany::Fail(const std::vector<std::string>& faults) const {
  std::string text = "The books are broken:\n";
  for (const std::string& fault : faults) text += "  " + fault + '\n';
  text += "The last commands, each with the moment at which it was to be killed:\n";
  for (const std::string& command : history_) text += "  " + command;
  throw BooksBroken(text + "The company file is as it was left: " + file_.string());
}

Tally KillImports(const Scene& scene, std::uint64_t seed, int kills, int transactions) {
  Random random(seed);
  const std::filesystem::path file = MakeBooks(scene);
  const std::filesystem::path untouched = scene.directory / "untouched.company";
  std::filesystem::copy_file(file, untouched);
  const auto import = [&] {
    return ImportWish(file, scene.directory / "import.csv", "import", transactions);
  };
  const auto startAnew = [&] {
    std::filesystem::remove(file.string() + "-wal");
    std::filesystem::remove(file.string() + "-shm");
    std::filesystem::copy_file(untouched, file, std::filesystem::copy_options::overwrite_existing);
  };
  Timing timing(RunToItsEnd(scene, import()->Words()).took);
  startAnew();

  const Contents before = InspectCopy(file).contents;
  Tally tally;
  const Stopwatch stopwatch(tally);
  while (tally.kills < kills) {
    const std::unique_ptr<Wish> wish = import();
    const nanoseconds killAfter = timing.NextKill(random);
    const Stamps stamps(file);
    const ProgramRun run = Run(CommandOf(scene, wish->Words()),
                               {.directory = scene.directory, .watchedFile = file, .killAfter = killAfter});
    const Report report = ReportOf(run);
    Inspection found = InspectCopy(file);
    Change change(before, found.contents);
    wish->Judge({report}, change, found.faults);
    std::ranges::copy(found.separated, std::back_inserter(found.faults));
    std::ranges::copy(change.Unclaimed(), std::back_inserter(found.faults));
    if (!found.faults.empty()) {
      throw BooksBroken("The import" + AfterMilliseconds(killAfter) + " " + Description(run) + found.faults.front() +
                        "\nThe company file is as it was left: " + file.string());
    }
    Count(tally, run, MomentOf(run, report, wish->IsFulfilled(), stamps.Until(Stamps(file))));
    timing.Learn(killAfter, run, wish->IsFulfilled());
    if (wish->IsFulfilled()) startAnew();
  }
  return tally;
}

Tally KillInits(const Scene& scene, std::uint64_t seed, int kills) {
  Random random(seed);
  const auto init = [](const std::filesystem::path& file) {
    return std::vector<std::string>{"init", file.string(), "--name", "Alder Supply Company"};
  };
  Timing timing(RunToItsEnd(scene, init(scene.directory / "measured.company")).took);

  Tally tally;
  const Stopwatch stopwatch(tally);
  while (tally.kills < kills) {
    const std::filesystem::path file = scene.directory / ("company-" + std::to_string(tally.runs));
    const nanoseconds killAfter = timing.NextKill(random);
    const ProgramRun run =
        Run(CommandOf(scene, init(file)), {.directory = scene.directory, .watchedFile = file, .killAfter = killAfter});
    const Report report = ReportOf(run);
    const bool isMade = std::filesystem::exists(file);
    if (report.kind == Report::Kind::kDone && !isMade) {
      throw BooksBroken("reported as done, but it is not there: init " + file.string());
    }
    if (isMade) {
      const Inspection found = InspectCopy(file);
      if (!found.faults.empty()) throw BooksBroken(found.faults.front() + ": init " + file.string());
      RunToItsEnd(scene, {"settings", "show", file.string()});
    }
    Count(tally, run, MomentOf(run, report, isMade, {}));
    timing.Learn(killAfter, run, isMade);
  }
  return tally;
}

namespace {

// A company that a program of today wrote and the next one opens.
class MovedCompany {
 public:
  MovedCompany(const Scene& scene, std::filesystem::path oldCompany)
      : scene_(scene), original_(std::move(oldCompany)), file_(scene.directory / "moved.company") {
    PutBack();
    before_ = InspectCopy(file_).contents;
  }

  const std::filesystem::path& File() const noexcept { return file_; }
  std::vector<std::string> Listing() const { return ListingOf(file_); }

  void PutBack() const { Replace(original_, file_); }

  // What is wrong after a kill; says whether the company is the next program's by then.
  std::vector<std::string> FaultsAfter(const Scene& next, bool& isMoved) const {
    std::vector<std::string> faults;
    Compare("the company", file_, faults);
    std::size_t copies = ComparedCopies(faults);

    // The program of today may bring an older company forward itself.
    const std::filesystem::path copy = scene_.directory / "former.company";
    Replace(file_, copy);
    const ProgramRun former = Run(CommandOf(scene_, ListingOf(copy)), {.directory = scene_.directory});
    isMoved = former.code != 0;
    if (isMoved && former.err.find("newer program") == std::string::npos) {
      faults.push_back("the program of today says: " + former.err);
    }
    if (isMoved && copies == 0) faults.emplace_back("it was brought forward, but is not kept as it was");
    RunToItsEnd(next, Listing());
    Compare("the company, once it was opened", file_, faults);
    copies = ComparedCopies(faults);
    if (copies != 1) faults.push_back("it is kept as it was in " + std::to_string(copies) + " files");
    return faults;
  }

 private:
  static std::vector<std::string> ListingOf(const std::filesystem::path& file) { return {"accounts", file.string()}; }

  // The company itself included.
  static std::vector<std::filesystem::path> FilesBeside(const std::filesystem::path& file) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(file.parent_path())) {
      if (entry.path().filename().string().starts_with(file.filename().string())) files.push_back(entry.path());
    }
    return files;
  }

  static void Replace(const std::filesystem::path& from, const std::filesystem::path& file) {
    const std::vector<std::filesystem::path> beside = FilesBeside(file);
    for (const std::filesystem::path& path : beside) std::filesystem::remove(path);
    for (const char* suffix : {"", "-wal"}) {
      const std::filesystem::path part = from.string() + suffix;
      if (std::filesystem::exists(part)) std::filesystem::copy_file(part, file.string() + suffix);
    }
  }

  void Compare(const std::string& what, const std::filesystem::path& file, std::vector<std::string>& faults) const {
    const Inspection found = InspectCopy(file);
    for (const std::string& fault : found.faults) faults.push_back(what + ": " + fault);
    if (found.contents != before_) faults.push_back(what + " does not hold what it held");
  }

  std::size_t ComparedCopies(std::vector<std::string>& faults) const {
    std::size_t copies = 0;
    for (const std::filesystem::path& path : FilesBeside(file_)) {
      const std::string name = path.filename().string();
      if (name.find(".before-") == std::string::npos || name.find(".new") != std::string::npos ||
          name.find(".copy") != std::string::npos) {
        continue;
      }
      Compare(name, path, faults);
      ++copies;
    }
    return copies;
  }

  Scene scene_;
  std::filesystem::path original_;
  std::filesystem::path file_;
  Contents before_;
};

}  // namespace

Tally KillMigrations(const Scene& scene, const std::filesystem::path& nextProgram,
                     const std::filesystem::path& oldCompany, std::uint64_t seed, int kills) {
  Random random(seed);
  const Scene next{.program = nextProgram, .directory = scene.directory};
  const MovedCompany company(scene, oldCompany);
  Timing timing(RunToItsEnd(next, company.Listing()).took);

  Tally tally;
  const Stopwatch stopwatch(tally);
  while (tally.kills < kills) {
    company.PutBack();
    const nanoseconds killAfter = timing.NextKill(random);
    const Stamps stamps(company.File());
    const ProgramRun run = Run(CommandOf(next, company.Listing()),
                               {.directory = scene.directory, .watchedFile = company.File(), .killAfter = killAfter});
    const Traces traces = stamps.Until(Stamps(company.File()));
    bool isMoved = false;
    const std::vector<std::string> faults = company.FaultsAfter(next, isMoved);
    if (!faults.empty()) {
      throw BooksBroken("Brought forward" + AfterMilliseconds(killAfter) + " " + Description(run) + Joined(faults) +
                        "\nThe company file is as it was left: " + company.File().string());
    }
    Count(tally, run, MomentOf(run, ReportOf(run), isMoved, traces));
    timing.Learn(killAfter, run, isMoved);
  }
  return tally;
}

namespace {

std::string BytesOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// A company that has gone on since its backup was made, and a backup of it as it went on.
class BackedUpCompany {
 public:
  explicit BackedUpCompany(const Scene& scene) : scene_(scene), file_(MakeBooks(scene)) {
    before_ = InspectCopy(file_).contents;
    RunToItsEnd(scene_, {"backup", file_.string(), Backup().string()});
    RunToItsEnd(scene_, ImportWish(file_, scene_.directory / "import.csv", "import", kImportedSince)->Words());
    RunToItsEnd(scene_, {"backup", file_.string(), LaterBackup().string()});
    after_ = InspectCopy(file_).contents;
    backupBytes_ = BytesOf(Backup());
  }

  const std::filesystem::path& File() const noexcept { return file_; }
  std::filesystem::path Backup() const { return scene_.directory / "alder.backup"; }
  std::vector<std::string> Restore() const { return RestoreOf(Backup()); }
  void GoOnAgain() const { RunToItsEnd(scene_, RestoreOf(LaterBackup())); }

  // Whether the company holds what the backup does; throws unless it holds that or what it held before, all of it.
  bool IsRestored() const {
    if (BytesOf(Backup()) != backupBytes_) throw BooksBroken("The backup has changed");
    const Inspection found = InspectCopy(file_);
    if (!found.faults.empty()) throw BooksBroken(found.faults.front());
    if (found.contents != before_ && found.contents != after_)
      throw BooksBroken("It holds neither the one nor the other");
    RunToItsEnd(scene_, {"audit", "verify", file_.string()});
    return found.contents == before_;
  }

 private:
  static constexpr int kImportedSince = 300;

  std::vector<std::string> RestoreOf(const std::filesystem::path& backup) const {
    return {"restore", backup.string(), file_.string(), "--replace"};
  }
  std::filesystem::path LaterBackup() const { return scene_.directory / "later.backup"; }

  Scene scene_;
  std::filesystem::path file_;
  Contents before_;
  Contents after_;
  std::string backupBytes_;
};

// Runs what is told until it has been killed so often. `judge` says whether its work was done, or throws BooksBroken.
Tally KillAgainAndAgain(const Scene& scene, const std::filesystem::path& watched, Timing timing, std::uint64_t seed,
                        int kills, const std::function<std::vector<std::string>()>& prepare,
                        const std::function<bool()>& judge) {
  Random random(seed);
  Tally tally;
  const Stopwatch stopwatch(tally);
  while (tally.kills < kills) {
    const std::vector<std::string> words = prepare();
    const nanoseconds killAfter = timing.NextKill(random);
    const Stamps stamps(watched);
    const ProgramRun run =
        Run(CommandOf(scene, words), {.directory = scene.directory, .watchedFile = watched, .killAfter = killAfter});
    const Traces traces = stamps.Until(Stamps(watched));
    const Report report = ReportOf(run);
    const auto fail = [&](const std::string& fault) {
      throw BooksBroken("multientity " + Joined(words) + AfterMilliseconds(killAfter) + ' ' + Description(run) + fault +
                        "\nAll is as it was left: " + scene.directory.string());
    };
    bool isDone = false;
    try {
      isDone = judge();
    } catch (const std::exception& fault) {
      fail(fault.what());
    }
    if (report.kind == Report::Kind::kDone && !isDone) fail("Reported as done, but it is not");
    if (report.kind == Report::Kind::kFailed || report.kind == Report::Kind::kRefused) fail("It failed");
    Count(tally, run, MomentOf(run, report, isDone, traces));
    timing.Learn(killAfter, run, isDone);
  }
  return tally;
}

}  // namespace

Tally KillBackups(const Scene& scene, std::uint64_t seed, int kills) {
  const std::filesystem::path file = MakeBooks(scene);
  const Contents books = InspectCopy(file).contents;
  std::filesystem::path backup;
  auto prepare = [&, number = 0]() mutable {
    backup = scene.directory / ("backup-" + std::to_string(++number));
    return std::vector<std::string>{"backup", file.string(), backup.string()};
  };
  const Timing timing(RunToItsEnd(scene, prepare()).took);
  return KillAgainAndAgain(scene, file, timing, seed, kills, prepare, [&] {
    const bool isMade = std::filesystem::exists(backup);
    for (const std::filesystem::path& made : {file, backup}) {
      if (made == backup && !isMade) continue;
      const Inspection found = InspectCopy(made);
      if (!found.faults.empty()) throw BooksBroken(found.faults.front());
      if (found.contents != books) throw BooksBroken("The books are not the same in " + made.string());
      RunToItsEnd(scene, {"audit", "verify", made.string()});
    }
    return isMade;
  });
}

Tally KillRestores(const Scene& scene, std::uint64_t seed, int kills) {
  const BackedUpCompany company(scene);
  const Timing timing(RunToItsEnd(scene, company.Restore()).took);
  bool isRestored = true;
  const auto prepare = [&] {
    if (isRestored) company.GoOnAgain();
    return company.Restore();
  };
  return KillAgainAndAgain(scene, company.File(), timing, seed, kills, prepare,
                           [&] { return isRestored = company.IsRestored(); });
}

Tally KillReplacements(const Scene& scene, std::uint64_t seed, int kills) {
  const BackedUpCompany company(scene);
  const Timing timing(RunToItsEnd(scene, company.Restore()).took);
  const std::filesystem::path aside = company.File().string() + ".damaged";
  constexpr std::size_t kPage = 4096;
  std::string damaged = BytesOf(company.File());
  damaged.replace(kPage, kPage, kPage, 'x');
  const auto prepare = [&] {
    for (const char* suffix : {"", "-wal", "-shm"}) {
      std::filesystem::remove(company.File().string() + suffix);
      std::filesystem::remove(aside.string() + suffix);
    }
    WriteFile(company.File(), damaged);
    return company.Restore();
  };
  return KillAgainAndAgain(scene, company.File(), timing, seed, kills, prepare, [&] {
    const bool isThere = std::filesystem::exists(company.File());
    if (isThere && BytesOf(company.File()) == damaged) return false;
    if (BytesOf(aside) != damaged) throw BooksBroken("The damaged company is gone");
    // Between the two names there is none, and the restore is asked for again.
    if (!isThere) RunToItsEnd(scene, company.Restore());
    if (!company.IsRestored()) throw BooksBroken("It was not restored");
    return isThere;
  });
}
