#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <vector>

#include "bench/Benchmarks.h"
#include "bench/SampleCompany.h"

namespace bench {

namespace {

// Of more entries it takes most of a minute each time.
constexpr std::int64_t kMostRepeated = 100'000;
constexpr std::size_t kRuns = 5;

void WriteLedgerFile(const std::filesystem::path& file, std::int64_t entries) {
  std::ofstream out(file);
  for (std::int64_t i = 1; i <= entries; ++i) {
    const std::int64_t amount = 1 + i * 7919 % 1000000;
    out << fmt::format("2025/{:02}/{:02} Order {}\n    Expenses:Department {}  {}.{:02} USD\n    Due to Partner {}\n\n",
                       1 + i % 12, 1 + i % 28, i, 1 + i % kExpenseAccounts, amount / 100, amount % 100,
                       1 + i % kPartners);
  }
}

double SecondsOf(const std::string& command) {
  const auto begin = std::chrono::steady_clock::now();
  Require(Succeeds(command), "ledger failed");
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace

void PrintLedger(const std::filesystem::path& folder, const Sizes& sizes) {
  if (!Succeeds("ledger --version >/dev/null 2>&1")) return;
  fmt::print("\n| for orientation: ledger registers | time |\n|---|---:|\n");
  for (const std::int64_t lines : sizes.listedLines) {
    const std::filesystem::path file = folder / fmt::format("{}.ledger", lines);
    WriteLedgerFile(file, lines);
    const std::string command = fmt::format("ledger -f '{}' register Expenses >/dev/null", file.string());
    std::vector<double> seconds(lines > kMostRepeated ? 1 : kRuns);
    std::ranges::generate(seconds, [&] { return SecondsOf(command); });
    std::ranges::sort(seconds);
    fmt::print("| {} entries from its own file | {:.2f} s |\n", lines, seconds[seconds.size() / 2]);
  }
}

}  // namespace bench
