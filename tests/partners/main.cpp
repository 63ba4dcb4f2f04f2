// Plays random histories of companies that are partners of each other over a bad mailbox, and shortens one that fails.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include <CLI/CLI.hpp>

#include "partners/Group.h"
#include "partners/History.h"
#include "partners/Play.h"

namespace {

constexpr int kMostShorter = 200;
// Histories of which some have a program that dies, as surely as anything.
constexpr int kEnoughToDieIn = 100;

using partners::History;
using std::chrono::steady_clock;

// Where nothing waits for a disk, if there is such a place.
std::filesystem::path InMemory() {
  const std::filesystem::path memory = "/dev/shm";
  return std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
}

struct Options {
  std::filesystem::path directory = InMemory();
  std::uint64_t seed = std::random_device{}();
  int histories = 100'000;
  int seconds = 0;
  partners::Extras extras;
  bool keep = false;
};

// Companies are paired once and copied for each history.
class Groups {
 public:
  explicit Groups(std::filesystem::path folder) : folder_(std::move(folder)) {}

  // What is wrong, if anything is. One group has a company open at a time.
  std::optional<std::string> Play(const History& history) {
    try {
      partners::PlayHistory(Of(history.companies), history, tally_);
    } catch (const std::exception& violation) {
      CloseAll();
      return violation.what();
    }
    CloseAll();
    return std::nullopt;
  }
  const partners::Tally& Done() const noexcept { return tally_; }

 private:
  partners::Group& Of(std::size_t companies) {
    std::unique_ptr<partners::Group>& group = groups_[companies];
    if (!group) group = std::make_unique<partners::Group>(folder_ / std::to_string(companies), companies);
    return *group;
  }
  void CloseAll() {
    for (auto& [companies, group] : groups_) {
      if (group) group->CloseAll();
    }
  }

  std::filesystem::path folder_;
  std::map<std::size_t, std::unique_ptr<partners::Group>> groups_;
  partners::Tally tally_;
};

History Without(const History& history, std::size_t from, std::size_t count) {
  History shorter = history;
  const auto begin = shorter.steps.begin() + static_cast<std::ptrdiff_t>(from);
  shorter.steps.erase(begin, begin + static_cast<std::ptrdiff_t>(std::min(count, shorter.steps.size() - from)));
  return shorter;
}

// Keys and request ids are others each time, and some faults need certain ones.
bool Fails(Groups& groups, const History& history) {
  return groups.Play(history) || groups.Play(history);
}

// Lets programs live as long as it still fails.
void LetLive(Groups& groups, History& history, int& most) {
  for (std::size_t step = 0; step < history.steps.size() && most > 0; ++step) {
    if (!history.steps[step].death) continue;
    --most;
    History shorter = history;
    shorter.steps[step].death.reset();
    if (Fails(groups, shorter)) history = std::move(shorter);
  }
}

// Leaves out steps as long as it still fails, many at a time first.
History Shortened(Groups& groups, History history) {
  int most = kMostShorter;
  for (std::size_t count = history.steps.size(); count > 0; count /= 2) {
    for (std::size_t from = 0; from < history.steps.size() && most > 0;) {
      --most;
      History shorter = Without(history, from, count);
      if (Fails(groups, shorter)) {
        history = std::move(shorter);
      } else {
        from += count;
      }
    }
  }
  LetLive(groups, history, most);
  return history;
}

void Print(const partners::Tally& tally) {
  for (const auto& [act, times] : tally.times) {
    std::printf("  %-15s %7d done %7d refused %7d without anything to be done to %7d died\n", partners::NameOf(act),
                times.done, times.refused, times.idle, times.died);
  }
  for (const auto& [file, times] : tally.diedWriting) std::printf("  %7d died writing %s\n", times, file.c_str());
}

void Report(Groups& groups, const Options& options, std::uint64_t seed, const History& history,
            const std::string& what) {
  std::printf("FAILED: %s\nto play it again: partner_check --seed %llu --histories 1%s%s\n", what.c_str(),
              static_cast<unsigned long long>(seed), options.extras.restores ? " --restores" : "",
              options.extras.rekeys ? " --rekeys" : "");
  std::fflush(stdout);
  if (options.keep) return;
  const History shorter = Shortened(groups, history);
  const std::optional<std::string> again = groups.Play(shorter);
  std::printf("shortened: %s\n%s", again ? again->c_str() : "does not fail each time", TextOf(shorter).c_str());
  std::fflush(stdout);
}

bool PlayAll(const Options& options, const std::filesystem::path& folder) {
  Groups groups(folder);
  const auto began = steady_clock::now();
  const auto elapsed = [&] {
    return std::chrono::duration<double>(steady_clock::now() - began).count();
  };
  int played = 0;
  for (; played < options.histories && (options.seconds == 0 || elapsed() < options.seconds); ++played) {
    const std::uint64_t seed = options.seed + static_cast<std::uint64_t>(played);
    const History history = partners::NewHistory(seed, options.extras);
    if (const std::optional<std::string> what = groups.Play(history)) {
      Report(groups, options, seed, history, *what);
      return false;
    }
  }
  std::printf("%d histories in %.1f s\n", played, elapsed());
  Print(groups.Done());
  if (played < kEnoughToDieIn || !groups.Done().diedWriting.empty()) return true;
  std::printf("no program died, so the run shows nothing of it\n");
  return false;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  Options options;
  CLI::App program("Plays random histories of companies that exchange requests over a bad mailbox");
  program.add_option("--directory", options.directory, "Where to work; a new directory is made there")
      ->capture_default_str();
  program.add_option("--seed", options.seed, "Of the first history; each further one has the next number");
  program.add_option("--histories", options.histories, "How many at most")->capture_default_str();
  program.add_option("--seconds", options.seconds, "How long at most; 0 for as long as it takes")
      ->capture_default_str();
  program.add_flag("--restores", options.extras.restores,
                   "Also restores backups of the companies, and works with two copies of one");
  program.add_flag("--rekeys", options.extras.rekeys, "Also gives companies other keys");
  program.add_flag("--keep", options.keep,
                   "Leaves the companies of a history that fails as they are, and does not shorten it");
  CLI11_PARSE(program, argumentCount, arguments);

  setenv("MULTIENTITY_NOW", "2026-06-01T09:00:00", /*overwrite=*/1);
  std::printf("seed %llu\n", static_cast<unsigned long long>(options.seed));
  std::fflush(stdout);
  const std::filesystem::path folder = options.directory / ("multientity-partners-" + std::to_string(getpid()));
  bool isWell = false;
  try {
    isWell = PlayAll(options, folder);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
  }
  if (!isWell && options.keep) {
    std::printf("they are in %s\n", folder.c_str());
  } else {
    std::filesystem::remove_all(folder);
  }
  return isWell ? 0 : 1;
}
