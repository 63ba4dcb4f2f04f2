#include "standalone/desk/Entering.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr DateType32 kLastClosedDay(2026, 6, 30);
constexpr DateType32 kFirstOpenDay(2026, 7, 1);

// Books that are closed through June 2026, with an entry of a partner's request of May in them.
class TheClosedBooks : public DeskFixture {
 protected:
  TheClosedBooks() {
    RelateBirch();
    may_ = RecordJournalEntry(*company_, EntryOf(DateType32(2026, 5, 5), "request-may"));
    ChangeSetting(*company_, "closing-date", "2026-06-30");
  }

  static EntryToRecord EntryOf(DateType32 day, std::string_view request) {
    EntryToRecord entry = Entry(request);
    entry.date = day;
    return entry;
  }
  static EntryToRecord AllTheSame(EntryToRecord entry) {
    entry.closedDays = ClosedDays::kChangedAllTheSame;
    return entry;
  }

  // The company file is compared as it is before and after.
  template <typename Ask>
  Refusal RefusalThatLeavesNothing(Ask&& ask) {
    const std::string before = WholeFile();
    Refusal refusal = RefusalOf(std::forward<Ask>(ask));
    EXPECT_EQ(WholeFile(), before);
    return refusal;
  }

  AuditedDeed LastDeed() {
    return ListAudit(*company_, {.user = {}, .action = {}, .period = {NullDate(), NullDate()}, .txnId = {}}).back();
  }
  static auto SaysAfterClose() {
    return Field(&AuditedDeed::changes,
                 Contains(AllOf(Field(&AuditedChange::field, "after close"), Field(&AuditedChange::after, "yes"))));
  }

  std::int32_t may_ = 0;
};

TEST_F(TheClosedBooks, AreClosedThroughTheDayThatTheSettingsName) {
  EXPECT_EQ(ReadSettings(*company_).closingDate, kLastClosedDay);
}

TEST_F(TheClosedBooks, TellInTheTrailHowFarTheyAreClosedAndWere) {
  ChangeSetting(*company_, "closing-date", "2026-07-31");
  const AuditedDeed moved = LastDeed();
  ChangeSetting(*company_, "closing-date", "none");
  const AuditedDeed opened = LastDeed();

  const auto isFromTo = [](const char* before, const char* after) {
    return ElementsAre(AllOf(Field(&AuditedChange::field, "closing-date"), Field(&AuditedChange::before, before),
                             Field(&AuditedChange::after, after)));
  };
  EXPECT_EQ(moved.action, "settings.change");
  EXPECT_THAT(moved.changes, isFromTo("2026-06-30", "2026-07-31"));
  EXPECT_THAT(opened.changes, isFromTo("2026-07-31", "none"));
}

TEST_F(TheClosedBooks, StayAsTheyAreWhenTheClosingDateIsNoDay) {
  const std::string before = WholeFile();

  EXPECT_THAT(MessageOf<standalone::InvalidInput>([&] { ChangeSetting(*company_, "closing-date", "June"); }),
              AllOf(HasSubstr("The closing date \"June\" is no day of the calendar"),
                    HasSubstr("Write none to open the books.")));
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheClosedBooks, TakeNoPartnersRequestOnAClosedDay) {
  answers_.clear();

  const Refusal refusal =
      RefusalThatLeavesNothing([&] { RecordJournalEntry(*company_, EntryOf(kLastClosedDay, "request-june")); });

  EXPECT_EQ(refusal.what, UseCase::kRecordJournalEntry);
  EXPECT_EQ(refusal.remedy, Remedy::kDateLaterOrReopen);
  EXPECT_EQ(refusal.why, "the books are closed through 2026-06-30, and 2026-06-30 is not after that");
  EXPECT_THAT(answers_, IsEmpty());
}

TEST_F(TheClosedBooks, TakeAPartnersRequestOnTheDayAfter) {
  EXPECT_NO_THROW(RecordJournalEntry(*company_, EntryOf(kFirstOpenDay, "request-july")));
}

TEST_F(TheClosedBooks, TakeNothingTodayWhenTodayIsClosed) {
  ChangeSetting(*company_, "closing-date", "9999-12-31");

  EXPECT_EQ(RefusalThatLeavesNothing([&] { RecordJournalEntry(*company_, Entry("request-today")); }).remedy,
            Remedy::kDateLaterOrReopen);
}

TEST_F(TheClosedBooks, KeepTheEntriesOfClosedDays) {
  answers_.clear();

  const Refusal refusal = RefusalThatLeavesNothing([&] { RemoveJournalEntry(*company_, may_); });

  EXPECT_EQ(refusal.what, UseCase::kRemoveJournalEntry);
  EXPECT_EQ(refusal.remedy, Remedy::kDateLaterOrReopen);
  EXPECT_THAT(answers_, IsEmpty());
}

TEST_F(TheClosedBooks, AreChangedByAnAdministratorAllTheSameAndTheTrailSaysSo) {
  RecordJournalEntry(*company_, AllTheSame(EntryOf(kLastClosedDay, "request-june")));
  const AuditedDeed recorded = LastDeed();
  RemoveJournalEntry(*company_, may_, ClosedDays::kChangedAllTheSame);
  const AuditedDeed removed = LastDeed();

  EXPECT_EQ(recorded.action, "journal.record");
  EXPECT_THAT(recorded, SaysAfterClose());
  EXPECT_EQ(removed.action, "journal.remove");
  EXPECT_THAT(removed, SaysAfterClose());
}

TEST_F(TheClosedBooks, AreClosedAgainRightAfterThat) {
  RecordJournalEntry(*company_, AllTheSame(EntryOf(kLastClosedDay, "request-june")));

  EXPECT_EQ(RefusalThatLeavesNothing([&] { RemoveJournalEntry(*company_, may_); }).remedy, Remedy::kDateLaterOrReopen);
  EXPECT_THAT(WholeFile(), Not(HasSubstr("\nafter_close: ")));
}

TEST_F(TheClosedBooks, AreClosedAgainAfterTheModuleHasRefused) {
  EntryToRecord entry = AllTheSame(EntryOf(kLastClosedDay, "request-may"));

  EXPECT_EQ(RefusalThatLeavesNothing([&] { RecordJournalEntry(*company_, entry); }).remedy, Remedy::kSeeTheBookedEntry);

  EXPECT_EQ(RefusalThatLeavesNothing([&] { RemoveJournalEntry(*company_, may_); }).remedy, Remedy::kDateLaterOrReopen);
}

TEST_F(TheClosedBooks, SayNothingOfTheClosingWhereNoClosedDayWasChanged) {
  RecordJournalEntry(*company_, AllTheSame(EntryOf(kFirstOpenDay, "request-july")));

  EXPECT_THAT(LastDeed(), Not(SaysAfterClose()));
}

TEST_F(TheClosedBooks, AreChangedByNobodyElse) {
  OpenFor("Robin", {"journal:create", "journal:delete"});

  const std::vector<Refusal> refusals{
      RefusalThatLeavesNothing(
          [&] { RecordJournalEntry(*company_, AllTheSame(EntryOf(kLastClosedDay, "request-june"))); }),
      RefusalThatLeavesNothing(
          [&] { RecordJournalEntry(*company_, AllTheSame(EntryOf(kFirstOpenDay, "request-july"))); }),
      RefusalThatLeavesNothing([&] { RemoveJournalEntry(*company_, may_, ClosedDays::kChangedAllTheSame); })};

  EXPECT_THAT(refusals, Each(IsForAdministrators()));
}

TEST_F(TheClosedBooks, TakeNothingThatIsEnteredOrCopiedOnAClosedDay) {
  TransactionToRecord bill{.type = EnteredType::kBill,
                           .date = kFirstOpenDay,
                           .name = Existing{"Northern Power"},
                           .lines = {{.account = "Utilities", .amount = standalone::LineAmount("10.00")}},
                           .shares = {},
                           .attachments = {}};
  const std::int32_t original = RecordTransaction(*company_, bill, Posting::kPost).txnId;
  bill.date = kLastClosedDay;
  TransactionToCopy copy{.type = EnteredType::kBill, .txnId = original, .date = kLastClosedDay, .attachments = {}};

  for (const Posting how : {Posting::kPost, Posting::kPreviewOnly}) {
    EXPECT_EQ(RefusalThatLeavesNothing([&] { RecordTransaction(*company_, bill, how); }).remedy,
              Remedy::kDateLaterOrReopen);
    EXPECT_EQ(RefusalThatLeavesNothing([&] { CopyTransaction(*company_, copy, how); }).remedy,
              Remedy::kDateLaterOrReopen);
  }
  bill.closedDays = ClosedDays::kChangedAllTheSame;
  RecordTransaction(*company_, bill, Posting::kPost);
  EXPECT_THAT(LastDeed(), SaysAfterClose());
  copy.closedDays = ClosedDays::kChangedAllTheSame;
  CopyTransaction(*company_, copy, Posting::kPost);
  EXPECT_THAT(LastDeed(), SaysAfterClose());
}

TEST_F(TheClosedBooks, TakeNoRowsOfClosedDays) {
  const std::string before = WholeFile();

  const std::string message = MessageOf<standalone::BadRows>([&] {
    Import(*company_, Importable::kTransactions,
           Csv("transaction,type,date,name,memo,account,amount\n"
               "1,bill,2026-06-30,Northern Power,June,Payables,-100.00\n1,bill,,,,Utilities:Power,100.00\n"
               "2,bill,2026-07-01,Northern Power,July,Payables,-100.00\n2,bill,,,,Utilities:Power,100.00\n"));
  });

  EXPECT_THAT(message, AllOf(HasSubstr("line 2: The date \"2026-06-30\" is not after 2026-06-30"),
                             Not(HasSubstr("2026-07-01"))));
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheClosedBooks, PassOverRowsOfClosedDaysThatTheyHaveAlready) {
  ChangeSetting(*company_, "closing-date", "none");
  ImportMarch();
  ChangeSetting(*company_, "closing-date", "2026-06-30");
  HowToImport how;
  how.again = true;
  how.skipKnown = true;

  EXPECT_EQ(Import(*company_, Importable::kTransactions, Csv(kMarch), how).passedOver, 3);
}

TEST_F(TheClosedBooks, TakeRowsOfClosedDaysOnceTheyAreOpen) {
  ChangeSetting(*company_, "closing-date", "none");

  ImportMarch();

  EXPECT_EQ(ReadSettings(*company_).closingDate, std::nullopt);
}

}  // namespace
}  // namespace desk
