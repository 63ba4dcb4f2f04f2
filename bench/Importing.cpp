#include <fmt/format.h>

#include "bench/AllocationCount.h"
#include "bench/Benchmarks.h"
#include "bench/HandWritten.h"
#include "bench/SampleCompany.h"
#include "standalone/Import.h"
#include "standalone/StandaloneHost.h"

namespace bench {

namespace {

using standalone::StandaloneHost;

// The content of the import file, with every name looked up already.
std::vector<HandWritten::Booking> Bookings(std::int64_t transactions) {
  std::vector<HandWritten::Booking> bookings;
  for (std::int64_t i = 1; i <= transactions; ++i) {
    const auto number = static_cast<std::int32_t>(i);
    const std::int32_t partner = 1 + number % kPartners;
    const bool isIntercompany = i % 4 != 0;
    const auto type = static_cast<std::int16_t>(i % 4 == 2 ? 3 : i % 4 == 3 ? 8 : 9);
    bookings.push_back({.type = type,
                        .date = {2025, 1 + number % 12, 1 + number % 28},
                        .nameId = 1 + number % kNames,
                        .memo = fmt::format("Order {}", i),
                        .account = ExpenseAccount(1 + number % kExpenseAccounts),
                        .otherAccount = type == 3   ? kBankAccount
                                        : type == 8 ? DueToAccount(partner)
                                                    : kPayableAccount,
                        .amount = 1 + i * 7919 % 1000000,
                        .relationId = isIntercompany ? partner : 0,
                        .requestId = isIntercompany ? RequestId(i) : std::string()});
  }
  return bookings;
}

void InsertAll(HandWritten& hand, const std::vector<HandWritten::Booking>& bookings) {
  hand.Begin();
  for (const HandWritten::Booking& booking : bookings) hand.Insert(booking);
  hand.Commit();
}

std::string ContentOf(const std::filesystem::path& company) {
  standalone::Database database(company, standalone::kBusyTimeout);
  return database.QueryText(
      "SELECT (SELECT group_concat(id || type || date || name_id || memo || posted) FROM txn) || '/' || "
      "(SELECT group_concat(id || txn_id || account_id || amount || memo) FROM txn_line) || '/' || "
      "(SELECT group_concat(txn_id || target_id || relation_id || request_id || txn_type || state) FROM "
      "me_transaction)");
}

std::filesystem::path ImportFile(const std::filesystem::path& folder, std::int64_t transactions) {
  std::filesystem::path csv = folder / fmt::format("transactions-{}.csv", transactions);
  if (!std::filesystem::exists(csv)) WriteImportFile(csv, transactions);
  return csv;
}

void RequireSameImports(const std::filesystem::path& folder) {
  constexpr std::int64_t kTransactions = 1'000;
  const std::filesystem::path ours = CopyOf(CompanyWith(folder, 0), ".import-check");
  const std::filesystem::path theirs = CopyOf(CompanyWith(folder, 0), ".import-check-by-hand");
  {
    StandaloneHost host(ours);
    standalone::ImportTransactions(host, ImportFile(folder, kTransactions));
  }
  {
    HandWritten hand(theirs);
    InsertAll(hand, Bookings(kTransactions));
  }
  Require(ContentOf(ours) == ContentOf(theirs), "the imported companies differ");
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
          StandaloneHost host(CopyOf(empty, ".import"));
          state.ResumeTiming();
          standalone::ImportTransactions(host, csv);
        }
      },
      [empty, transactions](benchmark::State& state) {
        const std::vector<HandWritten::Booking> bookings = Bookings(transactions);
        for (auto _ : state) {
          state.PauseTiming();
          HandWritten hand(CopyOf(empty, ".import-by-hand"));
          state.ResumeTiming();
          InsertAll(hand, bookings);
        }
      });
}

void PrintImportMemory(const std::filesystem::path& folder, const Sizes& sizes) {
  fmt::print("\n| peak memory of the import | peak |\n|---|---:|\n");
  for (const std::int64_t transactions : {sizes.importedTransactions / 10, sizes.importedTransactions}) {
    StandaloneHost host(CopyOf(CompanyWith(folder, 0), ".import-memory"));
    const std::filesystem::path csv = ImportFile(folder, transactions);
    const AllocationCount count;
    standalone::ImportTransactions(host, csv);
    fmt::print("| {} transactions | {} KiB |\n", transactions, count.Peak() / 1024);
  }
}

}  // namespace bench
