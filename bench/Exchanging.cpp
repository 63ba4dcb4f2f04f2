#include <fmt/format.h>

#include <array>
#include <chrono>
#include <deque>
#include <fstream>
#include <iterator>
#include <string>

#include "bench/AllocationCount.h"
#include "bench/Benchmarks.h"
#include "bench/ExchangingByHand.h"
#include "bench/SampleCompany.h"
#include "standalone/company/CompanyFile.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/Exchange.h"
#include "standalone/desk/Import.h"
#include "standalone/desk/Pairing.h"
#include "standalone/desk/PairingBoth.h"
#include "standalone/desk/Realm.h"
#include "standalone/desk/Rules.h"

namespace bench {

namespace {

constexpr double kMostTimesByHand = 1.5;
constexpr double kMostGrowth = 1.2;
constexpr int kRounds = 5;
constexpr std::int64_t kCheckedProposals = 50;
constexpr std::int32_t kVendors = 30;

constexpr const char* kAlder = "alder";
constexpr const char* kBirch = "birch";
constexpr std::int32_t kAlderNumber = 1;
constexpr std::int32_t kBirchNumber = 2;
constexpr const char* kUpTo = "99,999.99";
// Who carries, one after the other, until the answers are at the sender.
constexpr std::array kTurns{kAlder, kBirch, kAlder};

// A folder with both companies, their identities, and the letters that lie between them.
struct Pair {
  std::filesystem::path folder;

  std::filesystem::path FileOf(const char* company) const { return folder / (std::string(company) + ".company"); }
  std::filesystem::path Letters() const { return folder / "letters"; }
};

void Execute(const std::filesystem::path& company, const std::string& sql) {
  standalone::SqliteDatabase database(company, standalone::kBusyTimeout);
  {
    standalone::UnitOfWork unit(database, standalone::Access::kWrite);
    database.Execute(sql.c_str());
    unit.Commit();
  }
  database.Execute("PRAGMA wal_checkpoint(TRUNCATE)");
}

void MakeOne(const Pair& pair, const char* company, std::int32_t number) {
  MakeCompany(pair.FileOf(company), 0);
  Execute(pair.FileOf(company),
          fmt::format("UPDATE company SET name = '{}'; DELETE FROM me_relation WHERE id = {}", company, number));
  desk::Company opened(pair.FileOf(company));
  desk::RememberRealm(opened, standalone::RealmId(RealmId(number)));
}

// Each with a half that the partner bears.
void WriteBills(const std::filesystem::path& csv, std::int64_t bills) {
  std::ofstream out(csv, std::ios::binary);
  out << "transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n";
  for (std::int64_t i = 1; i <= bills; ++i) {
    const std::int64_t half = 1 + i * 7919 % 1'000'000;
    const auto money = [](std::int64_t amount) {
      return fmt::format("{}.{:02}", amount / 100, amount % 100);
    };
    out << fmt::format("T{},bill,2025-{:02}-{:02},Region {},Order {},Operating Expenses:Department {},{},,,,\n", i,
                       1 + i % 12, 1 + i % 28, 1 + i % kVendors, i, 1 + i % kExpenseAccounts, money(half));
    out << fmt::format("T{},,,,,Due from Partner {},{},Half of order {},{},{},entered\n", i, kBirchNumber, money(half),
                       i, RealmId(kBirchNumber), RequestId(i));
    out << fmt::format("T{},,,,,Accounts Payable,-{},,,,\n", i, money(2 * half));
  }
}

void CarryOnce(const Pair& pair, const char* company) {
  desk::Company opened(pair.FileOf(company));
  desk::RunExchange(opened);
}

// Two companies that are paired and have nothing to tell each other; Birch books all that Alder asks by the rules for
// its vendors, and Alder has entered that many bills.
Pair PairWith(const std::filesystem::path& folder, std::int64_t bills) {
  const Pair pair{folder / fmt::format("exchanging-{}", bills)};
  if (std::filesystem::exists(pair.folder)) return pair;
  std::filesystem::create_directories(pair.Letters());
  MakeOne(pair, kAlder, kAlderNumber);
  MakeOne(pair, kBirch, kBirchNumber);
  desk::PairBoth({.one = {.file = pair.FileOf(kAlder), .options = {}, .accounts = {}},
                  .other = {.file = pair.FileOf(kBirch), .options = {}, .accounts = {}},
                  .folder = pair.Letters(),
                  .useExistingRelations = true});
  for (const char* const company : {kAlder, kBirch, kAlder, kBirch}) CarryOnce(pair, company);
  {
    desk::Company birch(pair.FileOf(kBirch));
    for (std::int32_t vendor = 1; vendor <= kVendors; ++vendor) {
      desk::AddRule(birch, {.partner = desk::Partner(RealmId(kAlderNumber)),
                            .name = fmt::format("Region {}", vendor),
                            .hint = {},
                            .memo = {},
                            .expense = fmt::format("Operating Expenses:Department {}", vendor)});
    }
    desk::SetBookedUpTo(birch, RealmId(kAlderNumber), standalone::LineAmount(kUpTo));
  }
  const std::filesystem::path csv = pair.folder / "bills.csv";
  WriteBills(csv, bills);
  desk::Company alder(pair.FileOf(kAlder));
  desk::Import(alder, desk::Importable::kTransactions, csv);
  return pair;
}

Pair CopyOfPair(const Pair& pair, const char* suffix) {
  const Pair copy{pair.folder.string() + suffix};
  std::filesystem::remove_all(copy.folder);
  std::filesystem::copy(pair.folder, copy.folder, std::filesystem::copy_options::recursive);
  for (const char* const company : {kAlder, kBirch}) {
    Execute(copy.FileOf(company), fmt::format("UPDATE exchange_pairing SET folder = '{}'", copy.Letters().string()));
  }
  return copy;
}

void ExchangeAtTheDesk(const Pair& pair) {
  for (const char* const company : kTurns) CarryOnce(pair, company);
}

void ExchangeByHand(const Pair& pair, const std::function<HandWritten::Moment(const char* company)>& now) {
  for (const char* const company : kTurns) {
    ExchangingByHand(pair.FileOf(company), [&] { return now(company); }).Carry();
  }
}

// All but what is random: words, and names of letters; and the numbers of facts and requests in the inbox, which are
// nobody's business.
std::string ContentOfExchange(const std::filesystem::path& company) {
  standalone::SqliteDatabase database(company, standalone::kBusyTimeout);
  return database.QueryText(R"sql(
SELECT (SELECT json_group_array(json_array(hex(hash), origin, kind, name, names, month, hex(body), hex(signature), shown,
                                           set_aside)) FROM (SELECT * FROM exchange_fact ORDER BY hash))
    || (SELECT json_group_array(json_array(request_id, hex(proposal), state, mark, txn_id))
          FROM (SELECT * FROM exchange_inbox ORDER BY request_id))
    || (SELECT json_group_array(json_array(request_id, hex(proposal), target_id, mark))
          FROM (SELECT * FROM exchange_outbox ORDER BY request_id))
    || (SELECT json_group_array(json_array(word_for, is_echoed, owes_reply, their_summary, telling, worked_through,
                                           compared_since, is_compared)) FROM exchange_carrying)
    || (SELECT json_group_array(json_array(looked_for)) FROM exchange_left))sql");
}

std::string FileText(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

bool AreEstablished(const Pair& pair, std::int64_t proposals) {
  standalone::SqliteDatabase database(pair.FileOf(kAlder), standalone::kBusyTimeout);
  return database.QueryText("SELECT count(*) FROM me_transaction WHERE state = 3") == std::to_string(proposals);
}

// The trail's SHA-256 is made of when its lines were written, which the hand-written side is told.
void RequireSameExchange(const std::filesystem::path& folder) {
  const Pair pair = PairWith(folder, kCheckedProposals);
  const Pair ours = CopyOfPair(pair, ".check");
  const Pair theirs = CopyOfPair(pair, ".check-by-hand");
  ExchangeAtTheDesk(ours);
  std::map<std::string, std::deque<HandWritten::Moment>> moments;
  for (const char* const company : {kAlder, kBirch}) {
    const std::size_t before = MomentsOfTrail(pair.FileOf(company)).size();
    const std::vector<HandWritten::Moment> all = MomentsOfTrail(ours.FileOf(company));
    moments[company].assign(all.begin() + static_cast<std::ptrdiff_t>(before), all.end());
  }
  ExchangeByHand(theirs, [&](const char* company) {
    std::deque<HandWritten::Moment>& left = moments.at(company);
    Require(!left.empty(), "the desk has written fewer lines of the audit trail");
    const HandWritten::Moment next = left.front();
    left.pop_front();
    return next;
  });
  Require(AreEstablished(ours, kCheckedProposals), "a proposal was not answered");
  for (const char* const company : {kAlder, kBirch}) {
    Require(ContentOf(ours.FileOf(company)) == ContentOf(theirs.FileOf(company)), "the books after an exchange differ");
    Require(ContentOfExchange(ours.FileOf(company)) == ContentOfExchange(theirs.FileOf(company)),
            "what was told in an exchange differs");
    Require(FileText(ours.FileOf(company).string() + ".identity") ==
                FileText(theirs.FileOf(company).string() + ".identity"),
            "what left in an exchange differs");
  }
}

template <typename Exchange>
Body Measured(const Pair& pair, const char* suffix, std::int64_t proposals, Exchange exchange) {
  return [pair, suffix, proposals, exchange](benchmark::State& state) {
    for (auto _ : state) {
      state.PauseTiming();
      const Pair copy = CopyOfPair(pair, suffix);
      state.ResumeTiming();
      exchange(copy);
      state.PauseTiming();
      if (!AreEstablished(copy, proposals)) state.SkipWithError("a proposal was not answered");
      state.ResumeTiming();
    }
  };
}

struct Grown {
  double seconds = 0.0;  // for each
  std::ptrdiff_t peak = 0;
};

Grown Grow(const std::filesystem::path& folder, std::int64_t proposals) {
  const Pair copy = CopyOfPair(PairWith(folder, proposals), ".growth");
  const AllocationCount count;
  const auto begin = std::chrono::steady_clock::now();
  ExchangeAtTheDesk(copy);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  Require(AreEstablished(copy, proposals), "a proposal was not answered");
  return {.seconds = seconds / static_cast<double>(proposals), .peak = count.Peak()};
}

}  // namespace

void AddExchanging(Table& table, const std::filesystem::path& folder, const Sizes& sizes) {
  const std::int64_t proposals = sizes.exchangedProposals;
  const std::string title = fmt::format("exchange of {} proposals, accepted by rule and answered", proposals);
  if (!table.Wants(title)) return;
  RequireSameExchange(folder);
  const Pair pair = PairWith(folder, proposals);
  table.Add({.what = title, .target = kMostTimesByHand, .items = static_cast<double>(proposals), .rounds = kRounds},
            Measured(pair, ".exchange", proposals, ExchangeAtTheDesk),
            Measured(pair, ".exchange-by-hand", proposals, [](const Pair& copy) {
              ExchangeByHand(copy, [](const char* /*company*/) { return platform::SystemClock().Now(); });
            }));
}

void PrintExchangeGrowth(const std::filesystem::path& folder, const Sizes& sizes) {
  const Grown few = Grow(folder, sizes.fewProposals);
  const Grown many = Grow(folder, sizes.manyProposals);
  fmt::print("\n| growth of the exchange | time for each | peak |\n|---|---:|---:|\n");
  for (const auto& [proposals, grown] : {std::pair(sizes.fewProposals, few), std::pair(sizes.manyProposals, many)}) {
    fmt::print("| {} proposals | {:.2f} us | {:.1f} MiB |\n", proposals, grown.seconds * 1e6, InMebibytes(grown.peak));
  }
  fmt::print("| ratio, at most {:.1f} | {:.2f} | {:.2f} |\n", kMostGrowth, many.seconds / few.seconds,
             static_cast<double>(many.peak) / static_cast<double>(few.peak));
}

}  // namespace bench
