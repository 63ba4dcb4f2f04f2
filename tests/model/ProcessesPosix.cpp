// Processes of POSIX: a child is forked for each seed and, while a failing history is made shorter, for each attempt,
// so that each begins with what the module remembered when the history began.
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "model/Encounter.h"
#include "model/Narrator.h"
#include "model/Processes.h"

namespace model {

namespace {

constexpr unsigned int kSecondsForAHistory = 60;
constexpr int kDisagreed = 1;
constexpr std::size_t kMostAttempts = 20'000;

// What a child tells while it runs, also when it dies.
struct Report {
  std::size_t history = 0;
  Coverage coverage;
};

// Zeroed memory that children share with their parent.
class SharedReport {
 public:
  SharedReport() : memory_(mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    if (memory_ == MAP_FAILED) throw std::runtime_error("no memory to share with a child process");
    report_ = new (memory_) Report;
  }
  SharedReport(const SharedReport&) = delete;
  SharedReport& operator=(const SharedReport&) = delete;
  ~SharedReport() { munmap(memory_, sizeof(Report)); }

  Report& operator*() const noexcept { return *report_; }
  Report* operator->() const noexcept { return report_; }

 private:
  void* memory_;
  Report* report_;
};

pid_t Fork(const std::function<int()>& work) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no child process can be started");
  if (child != 0) return child;
  std::exit(work());
}

bool Succeeded(int status) {
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Whether a history is to blame: what watches over a process, such as Valgrind, ends it with a code of its own.
bool IsHistorysFault(int status) {
  return WIFSIGNALED(status) || WEXITSTATUS(status) == kDisagreed;
}

int Await(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

// The histories of one seed, in their order.
class Histories {
 public:
  Histories(std::uint64_t seed, std::size_t operations) : random_(seed), operations_(operations) {}

  rc::Shrinkable<History> Next() {
    const bool first = std::exchange(first_, false);
    return AHistory(operations_, first)(random_.split(), 0);
  }

 private:
  rc::Random random_;
  std::size_t operations_;
  bool first_ = true;
};

void Nothing(const Operation& /*operation*/, const Encounter& /*encounter*/) {}

int RunHistories(std::uint64_t seed, const Extent& extent, Report& report) {
  Histories histories(seed, extent.operations);
  ProcessMemory memory;
  for (std::size_t i = 0; i < extent.histories; ++i) {
    report.history = i;
    alarm(kSecondsForAHistory);
    const auto count = [&](const Operation& operation, const Encounter& encounter) {
      report.coverage.Count(operation.kind, encounter.Last().answer, encounter.FaultPlayed());
    };
    if (!LiveThrough(histories.Next().value(), memory, count).empty()) return kDisagreed;
    ++report.coverage.histories;
  }
  return 0;
}

// Whether a history fails when it follows what the process has lived through so far.
bool Fails(const History& history, const ProcessMemory& memory) {
  const int status = Await(Fork([&] {
    alarm(kSecondsForAHistory);
    ProcessMemory own = memory;
    return LiveThrough(history, own, Nothing).empty() ? 0 : kDisagreed;
  }));
  return !Succeeded(status);
}

rc::Shrinkable<History> Shortened(rc::Shrinkable<History> failing, const ProcessMemory& memory) {
  std::size_t attempts = 0;
  for (bool shorter = true; shorter;) {
    shorter = false;
    auto candidates = failing.shrinks();
    for (auto candidate = candidates.next(); candidate && attempts < kMostAttempts; candidate = candidates.next()) {
      ++attempts;
      if (!Fails(candidate->value(), memory)) continue;
      failing = *candidate;
      shorter = true;
      break;
    }
  }
  return failing;
}

void Tell(const History& history, ProcessMemory memory) {
  for (std::size_t i = 0; i < history.size(); ++i) std::printf("  %3zu  %s\n", i + 1, Told(history[i]).c_str());
  std::fflush(stdout);
  const int status = Await(Fork([&] {
    alarm(kSecondsForAHistory);
    std::printf("%s", LiveThrough(history, memory, Nothing).c_str());
    return 0;
  }));
  if (WIFSIGNALED(status)) std::printf("  it ends with signal %d\n", WTERMSIG(status));
}

// The options without which a seed would stand for other histories than it did in this run.
std::string SizeOptions(const Extent& extent) {
  std::string options;
  const Extent usual;
  if (extent.operations != usual.operations) options += " --operations " + std::to_string(extent.operations);
  if (extent.histories != usual.histories) options += " --histories " + std::to_string(extent.histories);
  return options;
}

int Explain(std::uint64_t seed, const Extent& extent, std::size_t failing) {
  Histories histories(seed, extent.operations);
  ProcessMemory memory;
  for (std::size_t i = 0; i < failing; ++i) LiveThrough(histories.Next().value(), memory, Nothing);
  const History shortest = Shortened(histories.Next(), memory).value();
  std::printf("The module and the model disagree. Seed %llu, history %zu, made as short as it goes:\n",
              static_cast<unsigned long long>(seed), failing + 1);
  Tell(shortest, memory);
  std::printf("Again: ./test model --seed %llu%s\n", static_cast<unsigned long long>(seed),
              SizeOptions(extent).c_str());
  return 0;
}

void TellFailure(std::uint64_t seed, const Extent& extent, std::size_t history, int status) {
  if (IsHistorysFault(status)) {
    Await(Fork([&] { return Explain(seed, extent, history); }));
  } else {
    std::printf("The process of seed %llu agreed with the model but ended with exit code %d.\n",
                static_cast<unsigned long long>(seed), WEXITSTATUS(status));
  }
}

}  // namespace

std::size_t RunProcesses(const Extent& extent, Coverage& coverage) {
  struct Running {
    std::uint64_t seed;
    std::unique_ptr<SharedReport> report;
  };
  std::map<pid_t, Running> running;
  std::size_t failed = 0;
  const auto awaitOne = [&] {
    int status = 0;
    const pid_t child = waitpid(-1, &status, 0);
    const auto found = running.find(child);
    if (found == running.end()) return;
    const Report& report = **found->second.report;
    coverage.Add(report.coverage);
    if (!Succeeded(status)) {
      ++failed;
      TellFailure(found->second.seed, extent, report.history, status);
    }
    running.erase(found);
  };
  constexpr std::size_t kEnoughFailures = 3;
  for (std::size_t i = 0; i < extent.processes && failed < kEnoughFailures; ++i) {
    const std::uint64_t seed = extent.firstSeed + i;
    auto report = std::make_unique<SharedReport>();
    Report& shared = **report;
    const pid_t child = Fork([&] { return RunHistories(seed, extent, shared); });
    running.emplace(child, Running{seed, std::move(report)});
    while (running.size() >= extent.atOnce) awaitOne();
  }
  while (!running.empty()) awaitOne();
  return failed;
}

}  // namespace model
