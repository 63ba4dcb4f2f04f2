// Kills the command line again and again while it works, and looks at the books after each time.
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <random>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "crash/Crashes.h"

namespace {

constexpr int kOrdinaryKills = 1000;

struct Options {
  std::filesystem::path program = MULTIENTITY_PROGRAM;
  std::filesystem::path directory = std::filesystem::temp_directory_path();
  std::uint64_t seed = std::random_device{}();
  int kills = kOrdinaryKills;
  int pairKills = kOrdinaryKills;
  int importKills = 40;
  int importTransactions = 4000;
  int initKills = 60;
  int backupKills = 60;  // and as many of restores, of sound and of damaged companies
  int migrationKills = 200;
  std::filesystem::path nextProgram = MULTIENTITY_NEXT_PROGRAM;
};

constexpr std::array<const char*, kMoments> kMomentTexts{
    "before the company file was opened",
    "company open, nothing written",
    "write-ahead log begun, not written to the end",
    "committed",
    "committed, being moved from the log into the file",
    "company closed, nothing reported",
    "reported",
    "one of two that wanted the same",
};

// Where the books could break.
constexpr std::array kDangerousMoments{Moment::kDuringCommit, Moment::kAfterCommit, Moment::kDuringCheckpoint};
// What can be told of two programs on one file.
constexpr std::array kDangerousMomentsOfTwo{Moment::kBeforeCommit, Moment::kAfterCommit};

double Seconds(std::chrono::nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

void Print(const char* title, const Tally& tally) {
  std::printf("%s: %d kills in %d runs, %.1f s; %d ended before their kill, %d were refused\n", title, tally.kills,
              tally.runs, Seconds(tally.took), tally.ended, tally.refused);
  for (std::size_t moment = 0; moment < kMoments; ++moment) {
    if (tally.killed[moment] != 0) std::printf("  %5d  %s\n", tally.killed[moment], kMomentTexts[moment]);
  }
  std::fflush(stdout);
}

void Print(const std::map<std::string, Timing>& timings) {
  for (const auto& [kind, timing] : timings) {
    std::printf("  %-22s takes %.1f ms, commits after %.1f ms\n", kind.c_str(), 1e3 * Seconds(timing.TypicalRun()),
                1e3 * Seconds(timing.TypicalCommit()));
  }
}

// Fewer kills than usual may miss them.
template <std::size_t kCount>
void RequireDangerOf(const Tally& tally, const std::array<Moment, kCount>& moments) {
  if (tally.kills < kOrdinaryKills) return;
  for (const Moment moment : moments) {
    const auto index = static_cast<std::size_t>(moment);
    if (tally.killed[index] == 0) {
      throw std::runtime_error("no program was killed at this moment, so the run shows nothing of it: " +
                               std::string(kMomentTexts[index]));
    }
  }
}

Scene NewScene(const Options& options, const std::filesystem::path& directory) {
  std::filesystem::create_directories(directory);
  return {.program = options.program, .directory = std::filesystem::canonical(directory)};
}

void Crash(const Options& options, const std::filesystem::path& directory) {
  UnluckyCompany company(NewScene(options, directory / "company"), options.seed);
  const Tally alone = company.KillOneAtATime(options.kills);
  Print("one program at a time", alone);
  Print(company.Timings());
  const Tally two = company.KillTwoAtATime(options.pairKills);
  Print("two programs at once", two);
  Print(company.Timings());
  company.ReadThroughTheProgram();
  Print(("an import of " + std::to_string(options.importTransactions) + " transactions").c_str(),
        KillImports(NewScene(options, directory / "import"), options.seed, options.importKills,
                    options.importTransactions));
  for (const char* name : {"birch.company", "crashed.company"}) {
    Print((std::string("bringing ") + name + " to the next version").c_str(),
          KillMigrations(NewScene(options, directory / name), options.nextProgram,
                         std::filesystem::path(MULTIENTITY_OLD_COMPANY_FILES) / name, options.seed,
                         options.migrationKills / 2));
  }
  Print("making a company", KillInits(NewScene(options, directory / "init"), options.seed, options.initKills));
  Print("making a backup", KillBackups(NewScene(options, directory / "backup"), options.seed, options.backupKills));
  Print("restoring a company",
        KillRestores(NewScene(options, directory / "restore"), options.seed, options.backupKills));
  Print("replacing a damaged company",
        KillReplacements(NewScene(options, directory / "replace"), options.seed, options.backupKills));
  RequireDangerOf(alone, kDangerousMoments);
  RequireDangerOf(two, kDangerousMomentsOfTwo);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  Options options;
  CLI::App program("Kills multientity at random moments and looks at the books after each time");
  program.add_option("--program", options.program, "The program")->capture_default_str();
  program.add_option("--directory", options.directory, "Where to work; a new directory is made there")
      ->capture_default_str();
  program.add_option("--seed", options.seed, "Plays the commands and moments of another run again");
  program.add_option("--kills", options.kills, "One program at a time")->capture_default_str();
  program.add_option("--pair-kills", options.pairKills, "Two programs at once")->capture_default_str();
  program.add_option("--import-kills", options.importKills, "Of a long import")->capture_default_str();
  program.add_option("--import-transactions", options.importTransactions, "How long that is")->capture_default_str();
  program.add_option("--init-kills", options.initKills, "Of companies that are made")->capture_default_str();
  program.add_option("--migration-kills", options.migrationKills, "Of companies that are brought to the next version")
      ->capture_default_str();
  program.add_option("--backup-kills", options.backupKills, "Of backups, of restores, of damaged companies replaced")
      ->capture_default_str();
  CLI11_PARSE(program, argumentCount, arguments);

  std::printf("seed %llu\n", static_cast<unsigned long long>(options.seed));
  std::fflush(stdout);
  const std::filesystem::path directory = options.directory / ("multientity-crash-" + std::to_string(getpid()));
  // A restore that is killed leaves its temporary folder.
  std::filesystem::create_directories(directory / "temporary");
  setenv("TMPDIR", (directory / "temporary").c_str(), /*overwrite=*/1);
  try {
    Crash(options, directory);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\nseed %llu, directory %s\n", error.what(), static_cast<unsigned long long>(options.seed),
                 directory.c_str());
    return 1;
  }
  std::filesystem::remove_all(directory);
  return 0;
}
