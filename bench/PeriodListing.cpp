#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <tuple>

#include "MultiEntity/MultiEntityDriver.h"
#include "bench/AllocationCount.h"
#include "bench/Benchmarks.h"
#include "bench/HandWritten.h"
#include "standalone/company/Session.h"
#include "standalone/company/StandaloneHost.h"

namespace bench {

namespace {

using standalone::Access;
using standalone::Session;
using standalone::StandaloneHost;

using Listing = std::vector<METxnInfo>;

constexpr DateType32 kFrom{2025, 1, 1};
constexpr DateType32 kTo{2025, 12, 31};

bool IsSame(const METxnInfo& left, const METxnInfo& right) {
  const auto all = [](const METxnInfo& info) {
    return std::tie(info.txnId, info.targetId, info.txnType, info.state, info.realmId, info.partnerName, info.requestId,
                    info.amount, info.currencyCode, info.txnName, info.billCheckAccountName, info.liabilityAccountName,
                    info.entryAccountName, info.txnDate);
  };
  return all(left) == all(right);
}

void ListByModule(StandaloneHost& host, Listing& list) {
  const MEStatusCode status =
      host.Request(Access::kRead, [&] { return MultiEntityDriver::GetListOfTxnTargetEntries(list, kFrom, kTo); });
  Require(status == MEStatusSuccess, "the period listing failed");
}

void RequireSameListings(const std::filesystem::path& company, std::int64_t lines) {
  StandaloneHost host(company);
  const Session session(host);
  Listing ours;
  ListByModule(host, ours);
  Require(ours.size() == static_cast<std::size_t>(lines), "the period listing is not complete");
  HandWritten hand(company);
  Listing byHand;
  hand.ListPeriod(kFrom, kTo, byHand);
  Require(std::ranges::equal(ours, byHand, IsSame), "the listing formatted in C++ differs");
  byHand.clear();
  hand.ListPeriodAsText(kFrom, kTo, byHand);
  Require(std::ranges::equal(ours, byHand, IsSame), "the listing formatted by SQL differs");
}

// Runs `fill` on an empty list; emptying it again is not measured.
template <typename Fill>
void MeasureListing(benchmark::State& state, Fill&& fill) {
  for (auto _ : state) {
    Listing list;
    fill(list);
    benchmark::DoNotOptimize(list.data());
    state.PauseTiming();
    list = Listing();
    state.ResumeTiming();
  }
}

std::string Title(std::int64_t lines) {
  return fmt::format("period listing, {} lines", lines);
}

}  // namespace

void AddPeriodListing(Table& table, const std::filesystem::path& folder, const Sizes& sizes) {
  for (const std::int64_t lines : sizes.listedLines) {
    if (!table.Wants(Title(lines))) continue;
    const std::filesystem::path company = CompanyWith(folder, lines);
    RequireSameListings(company, lines);
    table.Add(
        {.what = Title(lines), .target = 1.0, .items = static_cast<double>(lines)},
        [company](benchmark::State& state) {
          StandaloneHost host(company);
          const Session session(host);
          MeasureListing(state, [&](Listing& list) { ListByModule(host, list); });
        },
        [company](benchmark::State& state) {
          HandWritten hand(company);
          MeasureListing(state, [&](Listing& list) { hand.ListPeriod(kFrom, kTo, list); });
        });
    table.AddOtherHand(Title(lines), kByHandAsText, [company](benchmark::State& state) {
      HandWritten hand(company);
      MeasureListing(state, [&](Listing& list) { hand.ListPeriodAsText(kFrom, kTo, list); });
    });
  }
}

void PrintListingGrowth(const Table& table, const Sizes& sizes) {
  const std::int64_t few = sizes.listedLines.front();
  const std::int64_t many = sizes.listedLines.back();
  const std::optional<double> ofFew = table.SecondsPerItem(Title(few));
  const std::optional<double> ofMany = table.SecondsPerItem(Title(many));
  if (!ofFew || !ofMany) return;
  fmt::print("\n| growth | ratio | at most |\n|---|---:|---:|\n");
  fmt::print("| time for each line, of {} against {} lines | {:.2f} | 1.3 |\n", many, few, *ofMany / *ofFew);
}

void PrintListingMemory(const std::filesystem::path& folder, const Sizes& sizes) {
  fmt::print("\n| peak memory of the period listing | result | peak | ratio | at most |\n|---|---:|---:|---:|---:|\n");
  for (const std::int64_t lines : sizes.listedLines) {
    StandaloneHost host(CompanyWith(folder, lines));
    const Session session(host);
    const AllocationCount count;
    Listing list;
    ListByModule(host, list);
    const std::ptrdiff_t peak = count.Peak();
    list.shrink_to_fit();
    const std::ptrdiff_t result = count.Live();
    fmt::print("| {} lines | {:.1f} MiB | {:.1f} MiB | {:.2f} | 1.5 |\n", lines, InMebibytes(result), InMebibytes(peak),
               static_cast<double>(peak) / static_cast<double>(result));
  }
}

}  // namespace bench
