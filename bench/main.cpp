// Measures the module and the stand-alone host against hand-written SQLite programs that give the same answers.
//
// multientity_bench            everything at full size
// multientity_bench --quick    smaller, in about two minutes
// multientity_bench --plans    the hand-written statements with their query plans
// multientity_bench --check    measures nothing, but makes sure on small files that both sides answer the same
// multientity_bench --only RE  what matches the regular expression; may stand with --quick or --check

#include <fmt/format.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bench/Benchmarks.h"
#include "bench/HandWritten.h"
#include "bench/SampleCompany.h"

namespace bench {

namespace {

constexpr int kRepetitions = 9;
constexpr int kQuickRepetitions = 5;
constexpr DurableRuns kQuickDurable{.repetitions = 11, .requests = 100};

struct Options {
  bool isQuick = false;
  bool showsPlans = false;
  bool onlyChecks = false;
  std::string filter;
};

std::optional<Options> Parse(int count, char** arguments) {
  Options options;
  for (int index = 1; index < count; ++index) {
    const std::string_view argument = arguments[index];
    if (argument == "--quick") {
      options.isQuick = true;
    } else if (argument == "--plans") {
      options.showsPlans = true;
    } else if (argument == "--check") {
      options.onlyChecks = true;
    } else if (argument == "--only" && index + 1 < count) {
      options.filter = arguments[++index];
    } else {
      fmt::print(stderr, "'{}' is not known; the options are --quick, --plans, --check and --only EXPRESSION.\n",
                 argument);
      return std::nullopt;
    }
  }
  return options;
}

Sizes QuickSizes() {
  Sizes sizes;
  sizes.listedLines = {10'000, 100'000};
  sizes.storedLines = 100'000;
  sizes.importedTransactions = 10'000;
  sizes.reportedTransactions = 10'000;
  sizes.exchangedProposals = 1'000;
  sizes.fewProposals = 500;
  sizes.manyProposals = 5'000;
  return sizes;
}

Sizes CheckedSizes() {
  return {.listedLines = {1'000},
          .storedLines = 1'000,
          .importedTransactions = 1'000,
          .reportedTransactions = 8'000,
          .exchangedProposals = 100};
}

void WarnOfFolderInMemory(const std::filesystem::path& folder) {
  struct statfs system = {};
  if (::statfs(folder.c_str(), &system) != 0 || system.f_type != TMPFS_MAGIC) return;
  fmt::print(
      stderr,
      "The folder {} is in memory, so that what is measured as durable waits for no disk. Set TMPDIR to a folder "
      "on a disk.\n",
      folder.parent_path().string());
}

// Ends the run unless both sides answer the same.
void AddAll(Table& table, const std::filesystem::path& folder, const Sizes& sizes) {
  AddPeriodListing(table, folder, sizes);
  AddRecording(table, folder);
  AddRequests(table, folder, sizes);
  AddImporting(table, folder, sizes);
  AddLookingUp(table, folder, sizes);
  AddFreeAccounts(table, folder, sizes);
  AddExchanging(table, folder, sizes);
}

void Check(const Options& options) {
  const WorkFolder folder(std::filesystem::temp_directory_path());
  Table table(options.filter, DurableRuns());
  AddAll(table, folder.Path(), CheckedSizes());
  Require(table.Size() != 0, "no comparison has that name");
  fmt::print("Both sides answer the same in {} comparisons.\n", table.Size());
}

void Measure(const Options& options) {
  const WorkFolder folder(std::filesystem::temp_directory_path());
  WarnOfFolderInMemory(folder.Path());
  const Sizes sizes = options.isQuick ? QuickSizes() : Sizes();
  Table table(options.filter, options.isQuick ? kQuickDurable : DurableRuns());
  AddAll(table, folder.Path(), sizes);
  // What making the files has left to be written would hold up those who wait for the disk.
  ::sync();
  if (options.isQuick) {
    table.Run(kQuickRepetitions, /*minimumSeconds=*/0.1);
  } else {
    table.Run(kRepetitions, /*minimumSeconds=*/0.5);
  }
  PrintListingGrowth(table, sizes);
  if (table.Wants("peak memory of the period listing")) PrintListingMemory(folder.Path(), sizes);
  if (table.Wants("peak memory of the import")) PrintImportMemory(folder.Path(), sizes);
  if (table.Wants("growth of the exchange")) PrintExchangeGrowth(folder.Path(), sizes);
  if (table.Wants("hledger")) PrintJournalReports(folder.Path(), sizes);
  if (table.Wants("ledger")) PrintLedger(folder.Path(), sizes);
}

void ShowPlans() {
  const WorkFolder folder(std::filesystem::temp_directory_path());
  HandWritten(CompanyWith(folder.Path(), 0)).PrintPlans(std::cout);
}

}  // namespace

std::filesystem::path CompanyWith(const std::filesystem::path& folder, std::int64_t lines) {
  std::filesystem::path company = folder / fmt::format("{}.company", lines);
  if (!std::filesystem::exists(company)) MakeCompany(company, lines);
  return company;
}

std::filesystem::path CopyOf(const std::filesystem::path& company, const char* suffix) {
  std::filesystem::path copy = company;
  copy += suffix;
  for (const char* const beside : {"-wal", "-shm", ".log"}) {
    std::filesystem::path other = copy;
    other += beside;
    std::filesystem::remove(other);
  }
  std::filesystem::copy_file(company, copy, std::filesystem::copy_options::overwrite_existing);
  return copy;
}

void Require(bool isSame, const char* what) {
  if (!isSame) throw std::runtime_error(what);
}

bool Succeeds(const std::string& command) {
  return std::system(command.c_str()) == 0;
}

}  // namespace bench

int main(int count, char** arguments) {
  try {
    const std::optional<bench::Options> options = bench::Parse(count, arguments);
    if (!options) return 2;
    if (options->showsPlans) {
      bench::ShowPlans();
    } else if (options->onlyChecks) {
      bench::Check(*options);
    } else {
      bench::Measure(*options);
    }
    return EXIT_SUCCESS;
  } catch (const std::exception& error) {
    std::cerr << "multientity_bench: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
