#include "MultiEntity/MultiEntityDriver.h"
#include "bench/Benchmarks.h"
#include "bench/HandWritten.h"
#include "bench/Logging.h"
#include "bench/SampleCompany.h"
#include "standalone/company/Session.h"
#include "standalone/company/StandaloneHost.h"
#include "standalone/values/Dates.h"

namespace bench {

namespace {

using standalone::Access;
using standalone::Session;
using standalone::StandaloneHost;

constexpr std::int64_t kStoredLines = 10'000;
constexpr std::int64_t kFirstNewRequest = 1'000'000'000;

constexpr std::int32_t kPartner = 7;
constexpr std::int32_t kName = 131;
constexpr const char* kMemo = "Region 2:Vendor 1:Branch 1";

MEStatusCode Record(StandaloneHost& host, std::int64_t request) {
  const std::string realm = RealmId(kPartner);
  const std::string requestId = RequestId(request);
  return host.Request(Access::kWrite, [&] {
    MEAccountInfo expense;
    expense.accountId = ExpenseAccount(3);
    MECNameInfo name;
    name.nameId = kName;
    name.name = kMemo;
    std::uint32_t txnId = 0;
    return MultiEntityDriver::RecordGeneralJournalEntry(std::string_view(realm), expense, DueToAccount(kPartner),
                                                        "1,234.50", std::string_view(requestId), name, txnId);
  });
}

void RecordByHand(HandWritten& hand, std::int64_t request) {
  hand.Record(RealmId(kPartner), ExpenseAccount(3), DueToAccount(kPartner), 123'450, RequestId(request), kName, kMemo,
              platform::Today(platform::SystemClock()));
}

bool RecordSameEntries(const std::filesystem::path& company) {
  const std::filesystem::path ours = CopyOf(company, ".recording-check");
  const std::filesystem::path theirs = CopyOf(company, ".recording-check-by-hand");
  {
    StandaloneHost host(ours);
    const Session session(host);
    Require(Record(host, kFirstNewRequest) == MEStatusSuccess, "the entry was not recorded");
  }
  {
    HandWritten hand(theirs);
    RecordByHand(hand, kFirstNewRequest);
  }
  return ContentOf(ours) == ContentOf(theirs);
}

void RequireSameEntries(const std::filesystem::path& company) {
  // An entry bears the day, so both have to be recorded on one.
  DateType32 day;
  bool isSame = false;
  do {
    day = platform::Today(platform::SystemClock());
    isSame = RecordSameEntries(company);
  } while (platform::Today(platform::SystemClock()).Value() != day.Value());
  Require(isSame, "the recorded entries differ");
}

void AddRecording(Table& table, const std::filesystem::path& folder, const Logging& logging) {
  const std::string title = logging.TitleOf("recording one journal entry durably");
  if (!table.Wants(title)) return;
  const std::filesystem::path company = CompanyWith(folder, kStoredLines);
  RequireSameEntries(company);
  const std::filesystem::path ours = CopyOf(company, logging.SuffixOf(".recording").c_str());
  const std::filesystem::path theirs = CopyOf(company, logging.SuffixOf(".recording-by-hand").c_str());
  table.Add(
      {.what = title, .target = 1.1, .waitsForDisk = true},
      [ours, logging, next = kFirstNewRequest](benchmark::State& state) mutable {
        StandaloneHost host(ours, standalone::kAdministratorName, logging.Options());
        const Session session(host);
        Repeat(state, [&] {
          if (Record(host, next++) != MEStatusSuccess) state.SkipWithError("the entry was not recorded");
        });
      },
      [theirs, next = kFirstNewRequest](benchmark::State& state) mutable {
        HandWritten hand(theirs);
        Repeat(state, [&] { RecordByHand(hand, next++); });
      });
}

}  // namespace

void AddRecording(Table& table, const std::filesystem::path& folder) {
  for (const Logging& logging : kLoggings) AddRecording(table, folder, logging);
}

}  // namespace bench
