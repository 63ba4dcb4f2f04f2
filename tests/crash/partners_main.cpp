// Kills the exchange of two partners again and again, and looks at the books of both.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <random>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "crash/UnluckyPartners.h"

namespace {

constexpr int kOrdinaryKills = 300;

struct Options {
  std::filesystem::path program = MULTIENTITY_PROGRAM;
  std::filesystem::path directory = std::filesystem::temp_directory_path();
  std::uint64_t seed = std::random_device{}();
  int kills = kOrdinaryKills;
  int killsInAHistory = 100;
  int killsUntilRest = 25;
};

constexpr std::array<const char*, kCarryingMoments> kMomentTexts{
    "before the company file was opened", "company open, nothing written",
    "books written, no letter put",       "a letter begun, not put",
    "a letter put, nothing reported",     "reported",
};

// Where the two could come apart.
constexpr std::array kDangerousMoments{CarryingMoment::kBooksWritten, CarryingMoment::kLetterPut};

void Print(const PartnersTally& tally) {
  std::printf("%d kills, %.1f s; both agreed %d times, at last on %d requests that were answered\n", tally.kills,
              std::chrono::duration<double>(tally.took).count(), tally.rests, tally.settled);
  for (const auto& [kind, commands] : tally.commands) {
    std::printf("  %-14s %5d killed %5d done %5d refused\n", kind.c_str(), commands.killed, commands.done,
                commands.refused);
  }
  std::printf("exchange run was killed\n");
  for (std::size_t moment = 0; moment < kCarryingMoments; ++moment) {
    std::printf("  %5d  %s\n", tally.carrying.at(moment), kMomentTexts.at(moment));
  }
  std::fflush(stdout);
}

// Fewer kills than usual may miss them.
void RequireDangerOf(const PartnersTally& tally) {
  if (tally.kills < kOrdinaryKills) return;
  for (const CarryingMoment moment : kDangerousMoments) {
    if (tally.carrying.at(static_cast<std::size_t>(moment)) != 0) continue;
    throw std::runtime_error("no carrying was killed at this moment, so the run shows nothing of it: " +
                             std::string(kMomentTexts.at(static_cast<std::size_t>(moment))));
  }
}

void PlayAll(const Options& options, const std::filesystem::path& directory) {
  std::filesystem::create_directories(directory);
  UnluckyPartners partners({.program = options.program, .directory = std::filesystem::canonical(directory)});
  PartnersTally tally;
  for (std::uint64_t seed = options.seed; tally.kills < options.kills; ++seed) {
    const int kills = std::min(options.killsInAHistory, options.kills - tally.kills);
    try {
      partners.Play(seed, kills, options.killsUntilRest, tally);
    } catch (const std::exception& error) {
      throw std::runtime_error(error.what() + ("\nto play it again: partner_kills --seed " + std::to_string(seed)) +
                               " --kills " + std::to_string(kills));
    }
  }
  Print(tally);
  RequireDangerOf(tally);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  Options options;
  CLI::App program("Kills the exchange of two partners at random moments and looks at the books of both each time");
  program.add_option("--program", options.program, "The program")->capture_default_str();
  program.add_option("--directory", options.directory, "Where to work; a new directory is made there")
      ->capture_default_str();
  program.add_option("--seed", options.seed, "Of the first history; each further one has the next number");
  program.add_option("--kills", options.kills, "All of them")->capture_default_str();
  program.add_option("--history", options.killsInAHistory, "Kills until both begin anew")->capture_default_str();
  program.add_option("--rest", options.killsUntilRest, "Kills until all is carried in peace, and both have to agree")
      ->capture_default_str();
  CLI11_PARSE(program, argumentCount, arguments);

  std::printf("seed %llu\n", static_cast<unsigned long long>(options.seed));
  std::fflush(stdout);
  const std::filesystem::path directory = options.directory / ("multientity-partner-kills-" + std::to_string(getpid()));
  try {
    PlayAll(options, directory);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\nThe companies are as they were left: %s\n", error.what(), directory.c_str());
    return 1;
  }
  std::filesystem::remove_all(directory);
  return 0;
}
