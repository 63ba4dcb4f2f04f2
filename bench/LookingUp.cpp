#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bench/Benchmarks.h"
#include "bench/LookingUpByHand.h"
#include "bench/SampleCompany.h"
#include "standalone/company/CompanyFile.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/Export.h"
#include "standalone/desk/Reports.h"
#include "standalone/desk/json/Json.h"
#include "standalone/storage/sqlite/SqliteDatabase.h"

namespace bench {

namespace {

constexpr double kMostTimesSql = 1.2;
constexpr std::int32_t kBank = kBankAccount;
constexpr DateType32 kAsOf{2025, 12, 31};
constexpr std::size_t kLedgerRuns = 3;

// Of each eight transactions there are two bills of which a partner owes a part, two checks, two entries of partners'
// requests, a partner's payment and one to a partner. Of each hundred bills one is reversed. The audit trail has a line
// for each transaction.
constexpr const char* kYear = R"sql(
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {0})
INSERT INTO txn (type, date, name_id, memo, document_number)
  SELECT CASE i % 4 WHEN 1 THEN 9 WHEN 3 THEN 8 ELSE 3 END,
         2025 * 65536 + (1 + (i - 1) * 12 / {0}) * 256 + 1 + i % 28, 1 + i % 300, printf('Order %d', i),
         printf('INV-%d', i) FROM n;
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {0}),
  t AS (SELECT i, 1 + i * 7919 % 100000 AS own, 1 + i * 104729 % 100000 AS part, i / 4 % 20 AS partner FROM n),
  line (i, k, account, amount) AS (
    SELECT i, 1, 44 + i % 40, own FROM t WHERE i % 4 <> 0
    UNION ALL SELECT i, 2, 3 + partner, part FROM t WHERE i % 4 = 1
    UNION ALL SELECT i, 3, 1, -own - part FROM t WHERE i % 4 = 1
    UNION ALL SELECT i, 2, 2, -own FROM t WHERE i % 4 = 2
    UNION ALL SELECT i, 2, 23 + partner, -own FROM t WHERE i % 4 = 3
    UNION ALL SELECT i, 1, 2, part FROM t WHERE i % 8 = 0
    UNION ALL SELECT i, 2, 3 + i / 8 % 20, -part FROM t WHERE i % 8 = 0
    UNION ALL SELECT i, 1, 23 + i / 8 % 20, own FROM t WHERE i % 8 = 4
    UNION ALL SELECT i, 2, 2, -own FROM t WHERE i % 8 = 4)
INSERT INTO txn_line (txn_id, account_id, amount, memo)
  SELECT i, account, amount, printf('Services of month %d', i % 12 + 1) FROM line ORDER BY i, k;
INSERT INTO txn (type, date, name_id, memo, document_number)
  SELECT type, 2025 * 65536 + 12 * 256 + 28, name_id, memo, document_number FROM txn WHERE id % 400 = 1 ORDER BY id;
INSERT INTO txn_line (txn_id, account_id, amount, memo)
  SELECT {0} + 1 + (txn_id - 1) / 400, account_id, -amount, memo FROM txn_line WHERE txn_id % 400 = 1 ORDER BY id;
UPDATE txn SET posted = 1;
INSERT INTO txn_link (txn_id, kind, earlier_txn_id)
  SELECT id, 'reverses', 1 + (id - {0} - 1) * 400 FROM txn WHERE id > {0};
INSERT INTO me_transaction (txn_id, target_id, relation_id, request_id, txn_type, state)
  SELECT t.id, l.id, 1 + t.id / 4 % 20, printf('request-%d', t.id), t.type,
         CASE WHEN t.type = 8 THEN 3 WHEN t.id % 97 = 0 THEN 5 WHEN t.id % 10 = 1 THEN 1 ELSE 3 END
    FROM txn t CROSS JOIN txn_line l ON l.txn_id = t.id
   WHERE t.id <= {0} AND (t.type = 9 AND l.account_id BETWEEN 3 AND 22 OR t.type = 8 AND l.account_id >= 44)
   ORDER BY l.id;
INSERT INTO audit (id, previous, at, clock, user, system_user, action, first_txn_id, last_txn_id, subject, changes)
  SELECT (SELECT max(id) FROM audit) + id, printf('%064x', id), 1750000000000 + id, '', 'Admin', 'anna', 'import', id,
         id, printf('transaction %d', id),
         printf('[{{"field":"memo","after":"Order %d"}},{{"field":"date","after":"2025-01-01"}}]', id)
    FROM txn ORDER BY id;
)sql";

std::filesystem::path YearOf(const std::filesystem::path& folder, std::int64_t transactions) {
  const std::filesystem::path company = folder / fmt::format("looking-up-{}.company", transactions);
  if (std::filesystem::exists(company)) return company;
  MakeCompany(company, 0);
  standalone::SqliteDatabase database(company, standalone::kBusyTimeout);
  // Made anew after a crash.
  database.Execute("PRAGMA synchronous = OFF; PRAGMA cache_size = -200000;");
  {
    standalone::UnitOfWork unit(database, standalone::Access::kWrite);
    database.Execute(fmt::format(fmt::runtime(kYear), transactions).c_str());
    unit.Commit();
  }
  database.Execute("PRAGMA wal_checkpoint(TRUNCATE)");
  return company;
}

desk::Balances OurBalances(desk::Company& company) {
  return desk::ReadBalances(company, {.period = {{}, {}}, .account = {}, .depth = {}, .withUnused = false});
}

desk::Register OurRegister(desk::Company& company) {
  return desk::ReadRegister(company, {.account = std::to_string(kBank), .period = {{}, {}}, .withSubAccounts = false});
}

desk::OpenItems OurOpenItems(desk::Company& company) {
  return desk::ReadOpenItems(company, {.asOf = kAsOf, .partner = {}});
}

// A bill that was reversed, from the middle of the trail.
std::int32_t ShownTxn(std::int64_t transactions) {
  return static_cast<std::int32_t>(transactions / 800 * 400 + 1);
}

template <typename Report>
void RequireSame(const Report& ours, const Report& byHand, const char* what) {
  Require(desk::JsonOf(ours) == desk::JsonOf(byHand), what);
}

// The report is thrown away outside of the measured time, on both sides.
template <typename Read>
void MeasureAnswer(benchmark::State& state, Read&& read) {
  read();
  for (auto _ : state) {
    std::optional<decltype(read())> report = read();
    benchmark::DoNotOptimize(&*report);
    state.PauseTiming();
    report.reset();
    state.ResumeTiming();
  }
}

template <typename Ours, typename ByHand>
void AddReport(Table& table, const std::string& title, const std::filesystem::path& company, Ours ours, ByHand byHand) {
  if (!table.Wants(title)) return;
  {
    desk::Company opened(company);
    LookingUpByHand hand(company);
    RequireSame(ours(opened), byHand(hand), title.c_str());
  }
  table.Add(
      {.what = title, .target = kMostTimesSql, .items = 0.0},
      [company, ours](benchmark::State& state) {
        desk::Company opened(company);
        MeasureAnswer(state, [&] { return ours(opened); });
      },
      [company, byHand](benchmark::State& state) {
        LookingUpByHand hand(company);
        MeasureAnswer(state, [&] { return byHand(hand); });
      });
}

std::string Title(const char* what, std::int64_t transactions) {
  return fmt::format("looking up: {}, {} transactions", what, transactions);
}

template <typename Run>
double MedianSecondsOf(Run&& run) {
  std::vector<double> seconds;
  for (std::size_t number = 0; number < kLedgerRuns; ++number) {
    const auto begin = std::chrono::steady_clock::now();
    run();
    seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  }
  std::ranges::sort(seconds);
  return seconds[seconds.size() / 2];
}

// A report, and the command of hledger that answers the same from the exported journal, or most of it.
void PrintBoth(const char* what, const std::filesystem::path& journal, const std::string& report,
               const std::function<void()>& ours) {
  const std::string command = fmt::format("hledger -f '{}' {} >/dev/null", journal.string(), report);
  const double theirs = MedianSecondsOf([&] { Require(Succeeds(command), "hledger failed"); });
  const double here = MedianSecondsOf(ours);
  fmt::print("| {} | {} | {:.2f} s | {:.1f} ms | {:.0f} |\n", what, report, theirs, here * 1000, theirs / here);
}

}  // namespace

void AddLookingUp(Table& table, const std::filesystem::path& folder, const Sizes& sizes) {
  const std::int64_t count = sizes.reportedTransactions;
  if (!table.Wants(Title("", count))) return;
  const std::filesystem::path company = YearOf(folder, count);
  AddReport(table, Title("balances", count), company, &OurBalances,
            [](LookingUpByHand& hand) { return hand.Balances(); });
  table.AddOtherHand(Title("balances", count), kByHandAddedBySql, [company](benchmark::State& state) {
    LookingUpByHand hand(company);
    MeasureAnswer(state, [&] { return hand.BalancesBySql(); });
  });
  AddReport(table, Title("register of the bank", count), company, &OurRegister,
            [](LookingUpByHand& hand) { return hand.Register(kBank); });
  AddReport(table, Title("open items", count), company, &OurOpenItems,
            [](LookingUpByHand& hand) { return hand.OpenItems(kAsOf); });
  const std::int32_t shown = ShownTxn(count);
  AddReport(
      table, Title("one transaction", count), company,
      [shown](desk::Company& opened) { return desk::ShowTransaction(opened, shown); },
      [shown](LookingUpByHand& hand) { return hand.Show(shown); });
}

void PrintJournalReports(const std::filesystem::path& folder, const Sizes& sizes) {
  if (!Succeeds("hledger --version >/dev/null 2>&1")) return;
  const std::filesystem::path journal = folder / "looking-up.journal";
  desk::Company company(YearOf(folder, sizes.reportedTransactions));
  desk::ExportJournalTo(company, desk::Period({}, {}), journal, /*replaces=*/true);
  fmt::print("\n| {} transactions | hledger | its time | multientity | times as fast |\n|---|---|---:|---:|---:|\n",
             sizes.reportedTransactions);
  PrintBoth("balances", journal, "balance", [&] { static_cast<void>(OurBalances(company)); });
  PrintBoth("register of the bank", journal, "register Checking", [&] { static_cast<void>(OurRegister(company)); });
  PrintBoth("open items", journal, "register 'Due from' 'Due to'", [&] { static_cast<void>(OurOpenItems(company)); });
  const std::int32_t shown = ShownTxn(sizes.reportedTransactions);
  PrintBoth("one transaction", journal, fmt::format("print 'tag:txn=^{}$'", shown),
            [&] { static_cast<void>(desk::ShowTransaction(company, shown)); });
}

}  // namespace bench
