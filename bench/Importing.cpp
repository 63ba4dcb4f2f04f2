#include <fmt/format.h>

#include "MultiEntityHost/Enumerations.h"
#include "bench/AllocationCount.h"
#include "bench/Benchmarks.h"
#include "bench/HandWritten.h"
#include "bench/SameRows.h"
#include "bench/SampleCompany.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/Import.h"

namespace bench {

namespace {

// In MiB: the page caches of the company file and of the table of what was imported so far, 2 MB each, and little else.
constexpr std::int64_t kMostAtPeak = 5;

std::int16_t TypeOf(std::int64_t transaction) {
  switch (transaction % 4) {
    case 2:
      return kTxnTypeCheck;
    case 3:
      return kTxnTypeJournalEntry;
    default:
      return kTxnTypeBill;
  }
}

std::int32_t OtherAccount(std::int16_t type, std::int32_t partner) {
  if (type == kTxnTypeCheck) return kBankAccount;
  return type == kTxnTypeJournalEntry ? DueToAccount(partner) : kPayableAccount;
}

// The content of the import file, with every name looked up already.
std::vector<HandWritten::Booking> Bookings(std::int64_t transactions) {
  std::vector<HandWritten::Booking> bookings;
  for (std::int64_t i = 1; i <= transactions; ++i) {
    const auto number = static_cast<std::int32_t>(i);
    const std::int32_t partner = 1 + number % kPartners;
    const bool isIntercompany = i % 4 != 0;
    const std::int16_t type = TypeOf(i);
    bookings.push_back({.type = type,
                        .date = {2025, 1 + number % 12, 1 + number % 28},
                        .nameId = 1 + number % kNames,
                        .memo = fmt::format("Order {}", i),
                        .account = ExpenseAccount(1 + number % kExpenseAccounts),
                        .otherAccount = OtherAccount(type, partner),
                        .amount = 1 + i * 7919 % 1000000,
                        .relationId = isIntercompany ? partner : 0,
                        .requestId = isIntercompany ? RequestId(i) : std::string(),
                        .state = kSampleState});
  }
  return bookings;
}

std::filesystem::path ImportFile(const std::filesystem::path& folder, std::int64_t transactions) {
  std::filesystem::path csv = folder / fmt::format("transactions-{}.csv", transactions);
  if (!std::filesystem::exists(csv)) WriteImportFile(csv, transactions);
  return csv;
}

void ImportAtTheDesk(desk::Company& company, const std::filesystem::path& csv) {
  desk::Import(company, desk::Importable::kTransactions, csv);
}

void RequireSameImports(const std::filesystem::path& folder) {
  constexpr std::int64_t kTransactions = 1'000;
  const std::filesystem::path csv = ImportFile(folder, kTransactions);
  RequireSameRows(
      CompanyWith(folder, 0), "the imported companies differ",
      [&](const std::filesystem::path& copy) {
        desk::Company opened(copy);
        ImportAtTheDesk(opened, csv);
      },
      [&](HandWritten& hand, Moments moments) { hand.Import(Bookings(kTransactions), csv, moments.front()); });
}

}  // namespace

void AddImporting(Table& table, const std::filesystem::path& folder, const Sizes& sizes) {
  const std::int64_t transactions = sizes.importedTransactions;
  const std::string title = fmt::format("import of {} transactions", transactions);
  if (!table.Wants(title)) return;
  RequireSameImports(folder);
  const std::filesystem::path empty = CompanyWith(folder, 0);
  const std::filesystem::path csv = ImportFile(folder, transactions);
  table.Add(
      {.what = title, .target = 1.5, .items = static_cast<double>(transactions)},
      [empty, csv](benchmark::State& state) {
        for (auto _ : state) {
          state.PauseTiming();
          desk::Company opened(CopyOf(empty, ".import"));
          state.ResumeTiming();
          ImportAtTheDesk(opened, csv);
        }
      },
      [empty, csv, transactions](benchmark::State& state) {
        const std::vector<HandWritten::Booking> bookings = Bookings(transactions);
        for (auto _ : state) {
          state.PauseTiming();
          HandWritten hand(CopyOf(empty, ".import-by-hand"));
          state.ResumeTiming();
          hand.Import(bookings, csv, platform::SystemClock().Now());
        }
      });
}

void PrintImportMemory(const std::filesystem::path& folder, const Sizes& sizes) {
  fmt::print("\n| peak memory of the import | peak | at most |\n|---|---:|---:|\n");
  const std::int64_t fewest = sizes.importedTransactions;
  for (const std::int64_t transactions : {fewest, fewest * 3, fewest * 10}) {
    desk::Company opened(CopyOf(CompanyWith(folder, 0), ".import-memory"));
    const std::filesystem::path csv = ImportFile(folder, transactions);
    const AllocationCount count;
    ImportAtTheDesk(opened, csv);
    fmt::print("| {} transactions | {:.1f} MiB | {} MiB |\n", transactions, InMebibytes(count.Peak()), kMostAtPeak);
  }
}

}  // namespace bench
