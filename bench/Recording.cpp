#include "MultiEntity/MultiEntityDriver.h"
#include "bench/Benchmarks.h"
#include "bench/HandWritten.h"
#include "bench/Logging.h"
#include "bench/SameRows.h"
#include "bench/SampleCompany.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/Journal.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/Work.h"

namespace bench {

namespace {

constexpr std::int64_t kStoredLines = 10'000;
constexpr std::int64_t kFirstNewRequest = 1'000'000'000;
constexpr std::size_t kCheckedEntries = 3;

constexpr std::int32_t kPartner = 7;
constexpr std::int32_t kName = 131;
constexpr const char* kNameText = "Region 3:Vendor 2:Branch 1";
constexpr const char* kExpenseText = "Operating Expenses:Department 3";
constexpr const char* kAmountText = "1,234.50";
constexpr std::int64_t kAmount = 123'450;

// The operation of the module and the line of the audit trail, without what the desk asks besides.
bool RecordByModule(desk::OpenCompany& company, std::int64_t request) {
  const std::string realm = RealmId(kPartner);
  const std::string requestId = RequestId(request);
  desk::Work work(company, desk::UseCase::kRecordJournalEntry);
  return work.Write([&] {
    MEAccountInfo expense;
    expense.accountId = ExpenseAccount(3);
    MECNameInfo name;
    name.nameId = kName;
    name.name = kNameText;
    std::uint32_t txnId = 0;
    const MEStatusCode answer =
        MultiEntityDriver::RecordGeneralJournalEntry(std::string_view(realm), expense, DueToAccount(kPartner),
                                                     kAmountText, std::string_view(requestId), name, txnId);
    return work.Recorded(answer, [&] {
      const desk::EntryLines entry = desk::LineReader(work).LinesOfEntry(static_cast<std::int32_t>(txnId));
      return desk::DeedOfRecording(entry.lines, {});
    });
  }) == MEStatusSuccess;
}

// What a person asks for, by the names that people use.
void RecordAtTheDesk(desk::Company& company, std::int64_t request) {
  desk::RecordJournalEntry(company, {.partner = standalone::RealmId(RealmId(kPartner)),
                                     .request = standalone::RequestId(RequestId(request)),
                                     .amount = standalone::LineAmount(kAmountText),
                                     .expense = desk::Existing{kExpenseText},
                                     .dueTo = {},
                                     .name = desk::Existing{kNameText}});
}

void RecordByHand(HandWritten& hand, std::int64_t request, HandWritten::Moment now) {
  hand.Record({.realmId = RealmId(kPartner),
               .expenseAccount = ExpenseAccount(3),
               .dueToAccount = DueToAccount(kPartner),
               .amount = kAmount,
               .requestId = RequestId(request),
               .nameId = kName},
              now);
}

void RequireSameEntries(const std::filesystem::path& company,
                        const std::function<void(const std::filesystem::path& company)>& recordSome) {
  RequireSameRows(company, "the recorded entries differ", recordSome, [](HandWritten& hand, Moments moments) {
    Require(moments.size() == kCheckedEntries, "an entry has no line of its own in the audit trail");
    std::int64_t next = kFirstNewRequest;
    for (const HandWritten::Moment moment : moments) RecordByHand(hand, next++, moment);
  });
}

template <typename OpenedCompany, typename RecordOne>
void RecordSome(OpenedCompany& company, RecordOne&& record) {
  for (std::size_t count = 0; count < kCheckedEntries; ++count) {
    record(company, kFirstNewRequest + static_cast<std::int64_t>(count));
  }
}

Body ByHand(const std::filesystem::path& company) {
  return [company, next = kFirstNewRequest](benchmark::State& state) mutable {
    HandWritten hand(company);
    Repeat(state, [&] { RecordByHand(hand, next++, platform::SystemClock().Now()); });
  };
}

void AddRecordingByModule(Table& table, const std::filesystem::path& folder, const Logging& logging) {
  const std::string title = logging.TitleOf("recording one journal entry durably");
  if (!table.Wants(title)) return;
  const std::filesystem::path company = CompanyWith(folder, kStoredLines);
  RequireSameEntries(company, [&](const std::filesystem::path& copy) {
    desk::OpenCompany opened = logging.Open(copy);
    RecordSome(opened, RecordByModule);
  });
  const std::filesystem::path ours = CopyOf(company, logging.SuffixOf(".recording").c_str());
  const std::filesystem::path theirs = CopyOf(company, logging.SuffixOf(".recording-by-hand").c_str());
  table.Add(
      {.what = title, .target = 1.1, .waitsForDisk = true},
      [ours, logging, next = kFirstNewRequest](benchmark::State& state) mutable {
        desk::OpenCompany opened = logging.Open(ours);
        Repeat(state, [&] {
          if (!RecordByModule(opened, next++)) state.SkipWithError("the entry was not recorded");
        });
      },
      ByHand(theirs));
}

void AddRecordingAtTheDesk(Table& table, const std::filesystem::path& folder) {
  const std::string title = "recording one journal entry durably at the desk";
  if (!table.Wants(title)) return;
  const std::filesystem::path company = CompanyWith(folder, kStoredLines);
  RequireSameEntries(company, [](const std::filesystem::path& copy) {
    desk::Company opened(copy);
    RecordSome(opened, RecordAtTheDesk);
  });
  const std::filesystem::path ours = CopyOf(company, ".recording-at-the-desk");
  const std::filesystem::path theirs = CopyOf(company, ".recording-at-the-desk-by-hand");
  table.Add(
      {.what = title, .target = 1.1, .waitsForDisk = true},
      [ours, next = kFirstNewRequest](benchmark::State& state) mutable {
        desk::Company opened(ours);
        Repeat(state, [&] { RecordAtTheDesk(opened, next++); });
      },
      ByHand(theirs));
}

}  // namespace

void AddRecording(Table& table, const std::filesystem::path& folder) {
  for (const Logging& logging : kLoggings) AddRecordingByModule(table, folder, logging);
  AddRecordingAtTheDesk(table, folder);
}

}  // namespace bench
