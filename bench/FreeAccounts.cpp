#include <fmt/format.h>

#include "MultiEntity/MultiEntityDriver.h"
#include "bench/Benchmarks.h"
#include "bench/HandWritten.h"
#include "bench/SampleCompany.h"
#include "standalone/company/Session.h"
#include "standalone/company/StandaloneHost.h"
#include "standalone/values/AccountTypes.h"

namespace bench {

namespace {

using standalone::Access;
using standalone::Session;
using standalone::StandaloneHost;

using AccountMap = HandWritten::AccountMap;

constexpr std::int16_t kLastType = 15;

std::vector<std::string> TypeNames() {
  std::vector<std::string> names;
  for (std::int16_t type = 0; type <= kLastType; ++type) names.push_back(standalone::AccountTypeName(type));
  return names;
}

AccountMap ListByModule(StandaloneHost& host) {
  AccountMap accounts;
  const MEStatusCode status = host.Request(
      Access::kRead, [&] { return MultiEntityDriver::GetAccountsList(accounts, MEAccountFilterUnused, ""); });
  Require(status == MEStatusSuccess, "the list of free accounts failed");
  return accounts;
}

template <typename List>
void MeasureList(benchmark::State& state, List&& list) {
  for (auto _ : state) {
    AccountMap accounts = list();
    benchmark::DoNotOptimize(accounts.size());
    state.PauseTiming();
    accounts = AccountMap();
    state.ResumeTiming();
  }
}

}  // namespace

void AddFreeAccounts(Table& table, const std::filesystem::path& folder, const Sizes& sizes) {
  const std::string title =
      fmt::format("accounts free for relations, {} accounts, {} relations", sizes.accounts, sizes.relations);
  if (!table.Wants(title)) return;
  const std::filesystem::path company = folder / "chart.company";
  MakeChart(company, sizes.accounts, sizes.relations);
  {
    StandaloneHost host(company);
    const Session session(host);
    const AccountMap ours = ListByModule(host);
    Require(!ours.empty() && ours == HandWritten(company).FreeAccounts(TypeNames()), "the lists of accounts differ");
  }
  table.Add(
      {.what = title, .target = 1.5},
      [company](benchmark::State& state) {
        StandaloneHost host(company);
        const Session session(host);
        MeasureList(state, [&] { return ListByModule(host); });
      },
      [company](benchmark::State& state) {
        HandWritten hand(company);
        const std::vector<std::string> typeNames = TypeNames();
        MeasureList(state, [&] { return hand.FreeAccounts(typeNames); });
      });
}

}  // namespace bench
