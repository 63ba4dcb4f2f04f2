#include <string>
#include <utility>

#include "standalone/desk/Export.h"
#include "standalone/desk/inside/Posting.h"
#include "standalone/values/Errors.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/Thrown.h"

namespace desk {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kJournalOfMarch = R"(; Alder Supply Company
; from 2024-03-01
; to 2024-03-31
; %XX is the byte with these hexadecimal digits, where the text would not be read as it is
decimal-mark .
commodity USD
tag txn
tag type
tag number
tag partner
tag realm
tag request
tag state
tag reverses
tag corrects
tag moves
tag attachment

account Checking
    ; type: C
account Due from Birch
    ; type: A
account Due from Cedar
    ; type: A
account Due to Birch
    ; type: L
account Due to Cedar
    ; type: L
account Old Rent
    ; type: X
account Payables
    ; type: L
account Receivables
    ; type: A
account Undeposited Funds
    ; type: A
account Utilities
    ; type: X
account Utilities:Power
    ; type: X

2024-03-01 (1) Northern Power | March power
    ; txn: 1
    ; type: bill
    Payables  -100.00 USD
    Utilities:Power  60.00 USD
    Due from Birch  40.00 USD
    ; partner: Birch Services Company
    ; realm: 1001
    ; request: request-bill
    ; state: sent

2024-03-15 (2) Walker:Depot | Refund
    ; txn: 2
    ; type: check
    Checking  1250.00 USD
    Due from Birch  -1250.00 USD
    ; partner: Birch Services Company
    ; realm: 1001
    ; request: request-check
    ; state: established

2024-03-31 (3) | Birch paid for us
    ; txn: 3
    ; type: journal
    Utilities  75.50 USD
    ; Heating
    ; partner: Birch Services Company
    ; realm: 1001
    ; request: request-journal
    ; state: established
    Due to Birch  -75.50 USD
)";

class TheExportOfADesk : public DeskFixture {
 protected:
  TheExportOfADesk() {
    RelateBirch();
    ImportMarch();
  }

  static Period March() { return {DateType32(2024, 3, 1), DateType32(2024, 3, 31)}; }
  static Period Always() { return {NullDate(), NullDate()}; }

  std::string Journal(const Period& period = Always()) {
    std::string text;
    ExportJournal(*company_, period, [&text](std::string_view piece) { text += piece; });
    return text;
  }

  // Another program's, of 3.00.
  void BookAnotherBill() {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite, [&] {
      const std::int32_t id = other.Transactions().AddHeader({.type = kTxnTypeBill,
                                                              .date = DateType32(2024, 3, 31),
                                                              .nameId = 0,
                                                              .memo = "Meanwhile",
                                                              .documentNumber = ""});
      other.Transactions().AddLine(id, {.accountId = 1, .amount = 300, .memo = ""});
      other.Transactions().AddLine(id, {.accountId = 2, .amount = -300, .memo = ""});
      other.Transactions().Post(id);
    });
  }

  const std::filesystem::path file_ = folder_ / "alder.journal";
};

TEST_F(TheExportOfADesk, IsTheJournalOfAPeriod) {
  EXPECT_EQ(Journal(March()), kJournalOfMarch);
}

TEST_F(TheExportOfADesk, MarksAStateOfBefore) {
  standalone::SqliteDatabase(path_, std::chrono::seconds(5)).Execute("UPDATE me_transaction SET of_before = 1");

  EXPECT_THAT(Journal(), HasSubstr("    ; state: pending (before)\n"));
}

TEST_F(TheExportOfADesk, TellsWhatItHandedOut) {
  std::size_t bytes = 0;

  const ExportedJournal exported =
      ExportJournal(*company_, Always(), [&bytes](std::string_view piece) { bytes += piece.size(); });

  EXPECT_EQ(exported.bytes, bytes);
  EXPECT_EQ(exported.accounts, 11);
  EXPECT_EQ(exported.transactions, 3);
  EXPECT_EQ(exported.lines, 7);
}

TEST_F(TheExportOfADesk, IsOneStateOfTheBooksWhoeverBooksMeanwhile) {
  std::string text;
  bool isFirst = true;
  const std::string memo(4000, 'm');
  for (int count = 0; count < 40; ++count) {
    Work work(company_->Opened(), UseCase::kExport);
    work.Write([&] {
      Post(work, {.type = kTxnTypeBill,
                  .date = DateType32(2024, 1, 1),
                  .nameId = 0,
                  .memo = memo,
                  .documentNumber = "",
                  .lines = {{.accountId = 1, .amount = 5, .memo = ""}, {.accountId = 2, .amount = -5, .memo = ""}}});
    });
  }

  ExportJournal(*company_, Always(), [&](std::string_view piece) {
    if (std::exchange(isFirst, false)) BookAnotherBill();
    text += piece;
  });

  EXPECT_THAT(text, Not(HasSubstr("Meanwhile")));
  EXPECT_THAT(Journal(), HasSubstr("Meanwhile"));
}

TEST_F(TheExportOfADesk, ChangesNothing) {
  const std::string before = WholeFile();

  Journal();
  ExportJournalTo(*company_, Always(), file_, /*replaces=*/false);

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheExportOfADesk, GoesToAFile) {
  const ExportedJournal exported = ExportJournalTo(*company_, March(), file_, /*replaces=*/false);

  EXPECT_EQ(standalone::ReadFile(file_), kJournalOfMarch);
  EXPECT_EQ(exported.file, file_);
  EXPECT_EQ(exported.bytes, kJournalOfMarch.size());
}

TEST_F(TheExportOfADesk, ReplacesAFileOnRequestOnly) {
  standalone::WriteFile(file_, "before");

  const Refusal refusal = RefusalOf([&] { ExportJournalTo(*company_, March(), file_, /*replaces=*/false); });
  const std::string afterwards = standalone::ReadFile(file_);
  ExportJournalTo(*company_, March(), file_, /*replaces=*/true);

  EXPECT_EQ(refusal.what, UseCase::kExport);
  EXPECT_EQ(refusal.remedy, Remedy::kReplaceTheFile);
  EXPECT_THAT(refusal.why, EndsWith("alder.journal already."));
  EXPECT_EQ(afterwards, "before");
  EXPECT_EQ(standalone::ReadFile(file_), kJournalOfMarch);
}

TEST_F(TheExportOfADesk, IsForWhoMaySeeAllThatWasPosted) {
  AddUser(*company_, UserWith("Robin", {"bills:view", "checks:view", "journal:view"}));
  AddUser(*company_, UserWith("Sam", {"bills:view", "checks:view"}));
  AddUser(*company_, UserWith("Toni", {"checks:view", "journal:view", "bills:create"}));
  AddUser(*company_, UserWith("Uli", {"bills:view", "journal:view"}));

  for (const auto& [user, missing] :
       {std::pair("Sam", "journal:view"), {"Toni", "bills:view"}, {"Uli", "checks:view"}}) {
    Open(user);
    const Refusal refusal = RefusalOf([&] { ExportJournalTo(*company_, Always(), file_, /*replaces=*/false); });
    EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
    EXPECT_THAT(refusal.why, HasSubstr(missing));
    EXPECT_FALSE(std::filesystem::exists(file_)) << user;
    RefusalOf([&] { Journal(); });
  }
  Open("Robin");

  EXPECT_EQ(Journal(March()), kJournalOfMarch);
}

TEST_F(TheExportOfADesk, NeverGoesOverTheCompany) {
  const std::string before = WholeFile();

  EXPECT_THAT(
      MessageOf<standalone::InvalidInput>([&] { ExportJournalTo(*company_, Always(), path_, /*replaces=*/true); }),
      HasSubstr("choose another name"));

  EXPECT_EQ(WholeFile(), before);
}

}  // namespace
}  // namespace desk
