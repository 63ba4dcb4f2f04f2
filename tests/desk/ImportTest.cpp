#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Sha256.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

MATCHER_P2(Fact, field, value, "tells a fact that was not there before") {
  return arg.field == field && !arg.before && arg.after == std::optional<std::string>(value);
}

class TheImport : public DeskFixture {
 protected:
  static HowToImport Again() {
    HowToImport how;
    how.again = true;
    return how;
  }
  static HowToImport Rehearsed() {
    HowToImport how;
    how.dryRun = true;
    return how;
  }

  std::vector<AuditedDeed> Trail(std::optional<std::int32_t> txnId = {}) {
    return ListAudit(*company_, {.user = {}, .action = {}, .period = {NullDate(), NullDate()}, .txnId = txnId});
  }

  static constexpr std::string_view kRentRows =
      "R1,bill,2024-04-01,Northern Power,April,Payables,-100.00,,,,\nR1,bill,,,,Utilities:Power,100.00,,,,\n";
  static constexpr std::string_view kRent =
      "transaction,type,date,name,memo,account,amount\n"
      "R1,bill,2024-04-01,Northern Power,April,Payables,-100.00\nR1,bill,,,,Utilities:Power,100.00\n";

  std::vector<Refusal> RefusalsOfAllImports() {
    return {RefusalOf([&] { Import(*company_, Importable::kAccounts, Csv("name,type\nFreight,Expense\n")); }),
            RefusalOf([&] { Import(*company_, Importable::kNames, Csv("name,kind\nElm Freight,vendor\n")); }),
            RefusalOf([&] { Import(*company_, Importable::kTransactions, Csv(kMarch)); })};
  }
};

TEST_F(TheImport, OfAccountsSaysHowManyItAdded) {
  const Imported imported =
      Import(*company_, Importable::kAccounts, Csv("name,type\nFreight,Expense\nFreight:Rail,Expense\n"));

  EXPECT_EQ(imported.rows, 2);
  EXPECT_EQ(imported.accounts, 2);
  EXPECT_EQ(imported.names, 0);
  EXPECT_EQ(imported.transactions, 0);
  EXPECT_NE(AccountId("Freight:Rail"), 0);
}

TEST_F(TheImport, TakesAnEntryAboutWhatAPartnerOwesForTheCompanysOwn) {
  RelateBirch();

  Import(*company_, Importable::kTransactions,
         Csv("transaction,type,date,account,amount,partner_realm,request_id,state,name,memo\n"
             "1,journal,2026-03-01,Due from Birch,10.00,1001,own,3,,\n1,journal,,Utilities,-10.00,,,,,\n"
             "2,journal,2026-03-01,Utilities,10.00,1001,theirs,3,,\n2,journal,,Due to Birch,-10.00,,,,,\n"));

  standalone::StandaloneHost other(path_);
  EXPECT_EQ(standalone::Count(other, "SELECT group_concat(target_id) FROM me_own_request"), 1);
}

TEST_F(TheImport, OfNamesSaysHowManyItAdded) {
  const Imported imported = Import(*company_, Importable::kNames, Csv("name,kind\nElm Freight,vendor\n"));

  EXPECT_EQ(imported.rows, 1);
  EXPECT_EQ(imported.names, 1);
  EXPECT_EQ(imported.accounts, 0);
  EXPECT_NE(NameId("Elm Freight"), 0);
}

TEST_F(TheImport, OfTransactionsSaysHowManyItAdded) {
  RelateBirch();

  const Imported imported = Import(*company_, Importable::kTransactions, Csv(kMarch));

  EXPECT_EQ(imported.rows, 7);
  EXPECT_EQ(imported.transactions, 3);
  EXPECT_EQ(imported.lines, 7);
  EXPECT_EQ(imported.intercompanyLines, 3);
}

TEST_F(TheImport, TellsHowFarItIs) {
  const std::filesystem::path csv = Csv("name,kind\nElm Freight,vendor\n");
  std::vector<std::pair<std::uint64_t, std::uint64_t>> told;

  HowToImport how;
  how.progress = [&](std::uint64_t read, std::uint64_t total) {
    told.emplace_back(read, total);
  };
  Import(*company_, Importable::kNames, csv, how);

  ASSERT_FALSE(told.empty());
  EXPECT_EQ(told.back().first, std::filesystem::file_size(csv));
  EXPECT_EQ(told.back().second, std::filesystem::file_size(csv));
}

TEST_F(TheImport, LeavesTheCompanyAsItWasWhenARowIsBad) {
  const std::string before = Everything();
  const std::filesystem::path csv = Csv("name,kind\nElm Freight,vendor\nOak Rail,nobody\n");

  EXPECT_THAT(MessageOf<standalone::InvalidInput>([&] { Import(*company_, Importable::kNames, csv); }),
              AllOf(HasSubstr("rows.csv"), HasSubstr("3"), HasSubstr("\"nobody\"")));

  EXPECT_EQ(Everything(), before);
}

TEST_F(TheImport, NamesAFileThatIsNotThere) {
  EXPECT_THAT(
      MessageOf<standalone::InvalidInput>([&] { Import(*company_, Importable::kAccounts, folder_ / "none.csv"); }),
      HasSubstr("none.csv"));
}

TEST_F(TheImport, IsForAdministrators) {
  OpenFor("Robin", {"accounts:create", "bills:create", "checks:create", "journal:create"});
  const std::string before = Everything();

  const std::vector<Refusal> refusals = RefusalsOfAllImports();

  EXPECT_THAT(refusals, Each(IsForAdministrators()));
  EXPECT_THAT(refusals, Each(testing::Field(&Refusal::what, UseCase::kImport)));
  EXPECT_EQ(Everything(), before);
}

TEST_F(TheImport, IsNotForWhoIsNoAdministratorAnyMore) {
  LetAnotherProgramTakeTheAdministratorsMark();
  const std::string before = Everything();

  EXPECT_THAT(RefusalsOfAllImports(), Each(IsForAdministrators()));

  EXPECT_EQ(Everything(), before);
}

TEST_F(TheImport, AsksForTheRightBeforeItOpensTheFile) {
  OpenFor("Robin", {});
  const Refusal refusal =
      RefusalOf([&] { Import(*company_, Importable::kNames, std::filesystem::path(folder_ / "none.csv")); });

  EXPECT_THAT(refusal, IsForAdministrators());
}

TEST_F(TheImport, AsksForTheRightBeforeItReadsAStream) {
  OpenFor("Robin", {});
  bool isRead = false;
  const CsvStream stream{.name = "standard input", .read = [&](char*, std::size_t) -> std::size_t {
                           isRead = true;
                           return 0;
                         }};

  RefusalOf([&] { Import(*company_, Importable::kNames, stream); });

  EXPECT_FALSE(isRead);
}

TEST_F(TheImport, OfAFileThatWasImportedUnderAnotherNameIsRefusedAndSaysByWhomAndWhen) {
  const std::filesystem::path csv = Csv("name,kind\nElm Freight,vendor\n");
  Import(*company_, Importable::kNames, csv);
  std::filesystem::copy_file(csv, folder_ / "copy.csv");
  const AuditedDeed first = Trail().back();
  const std::string before = Everything();

  const Refusal refusal = RefusalOf([&] { Import(*company_, Importable::kNames, folder_ / "copy.csv"); });

  EXPECT_EQ(refusal.remedy, Remedy::kImportAgain);
  EXPECT_THAT(refusal.why,
              AllOf(HasSubstr("copy.csv was imported before, as \"rows.csv\" by Admin (" + first.systemUser + ") on " +
                              standalone::FormatDayAndTime(first.localTime, ' ')),
                    HasSubstr("line " + std::to_string(first.number) + " of the audit trail")));
  EXPECT_EQ(Everything(), before);
}

TEST_F(TheImport, OfAFileAgainIsTakenWhenThatIsMeantAndRemembersTheFirstOne) {
  const std::filesystem::path csv = Csv(kRent);
  Import(*company_, Importable::kTransactions, csv);
  const std::int64_t first = Trail().back().number;

  const Imported imported = Import(*company_, Importable::kTransactions, csv, Again());

  EXPECT_EQ(imported.transactions, 1);
  EXPECT_THAT(Trail().back().changes, Contains(Fact("imported before", "yes")));
  EXPECT_THAT(RefusalOf([&] { Import(*company_, Importable::kTransactions, csv); }).why,
              HasSubstr("line " + std::to_string(first) + " of"));
}

TEST_F(TheImport, OfAFileAgainStillRefusesWhatIsInTheBooksOrPassesOverIt) {
  RelateBirch();
  const std::filesystem::path csv = Csv(kMarch);
  Import(*company_, Importable::kTransactions, csv);
  const std::string before = Records();

  EXPECT_THAT(MessageOf<standalone::BadRows>([&] { Import(*company_, Importable::kTransactions, csv, Again()); }),
              AllOf(HasSubstr("request-bill"), HasSubstr("request-check"), HasSubstr("request-journal")));
  HowToImport how = Again();
  how.skipKnown = true;
  EXPECT_EQ(Import(*company_, Importable::kTransactions, csv, how).passedOver, 3);

  EXPECT_EQ(Records(), before);
}

TEST_F(TheImport, ThatWasRefusedDoesNotCount) {
  const std::filesystem::path csv = Csv(kMarch);
  EXPECT_THROW(Import(*company_, Importable::kTransactions, csv), standalone::BadRows);
  RelateBirch();

  EXPECT_EQ(Import(*company_, Importable::kTransactions, csv).transactions, 3);
}

TEST_F(TheImport, OfAFileThatWasImportedSaysSoRatherThanNamingItsRows) {
  const std::filesystem::path csv = Csv("name,type\nFreight,Expense\n");
  Import(*company_, Importable::kAccounts, csv);

  EXPECT_EQ(RefusalOf([&] { Import(*company_, Importable::kAccounts, csv); }).remedy, Remedy::kImportAgain);
}

TEST_F(TheImport, ThatIsRehearsedSaysWhatItWouldAddAndKeepsNothing) {
  RelateBirch();
  const std::string before = Everything();

  const Imported rehearsed = Import(*company_, Importable::kTransactions, Csv(kMarch), Rehearsed());

  EXPECT_EQ(rehearsed.transactions, 3);
  EXPECT_EQ(rehearsed.lines, 7);
  EXPECT_EQ(rehearsed.intercompanyLines, 3);
  EXPECT_EQ(Everything(), before);
}

TEST_F(TheImport, ThatIsRehearsedUsesNoNumbersAndIsNoFirstImport) {
  RelateBirch();
  Import(*company_, Importable::kTransactions, Csv(kMarch), Rehearsed());

  Import(*company_, Importable::kTransactions, Csv(kMarch));

  const AuditedDeed deed = Trail().back();
  EXPECT_EQ(deed.firstTxnId, 1);
  EXPECT_EQ(deed.lastTxnId, 3);
}

TEST_F(TheImport, ThatIsRehearsedIsRefusedAsTheImportWouldBe) {
  RelateBirch();
  const std::filesystem::path bad = folder_ / "bad.csv";
  standalone::WriteFile(bad, "name,kind\nElm Freight,friend\n");
  const std::filesystem::path csv = Csv(kMarch);
  Import(*company_, Importable::kTransactions, csv);
  const std::string before = Everything();

  EXPECT_THROW(Import(*company_, Importable::kNames, bad, Rehearsed()), standalone::BadRows);
  EXPECT_EQ(RefusalOf([&] { Import(*company_, Importable::kTransactions, csv, Rehearsed()); }).remedy,
            Remedy::kImportAgain);

  EXPECT_EQ(Everything(), before);
}

TEST_F(TheImport, IsToldByTheAuditTrailWithTheFilesShaAndWhatItAdded) {
  RelateBirch();
  ImportMarch();
  const std::string grown = std::string(kMarch) + std::string(kRentRows);
  HowToImport how;
  how.skipKnown = true;

  Import(*company_, Importable::kTransactions, Csv(grown), how);

  const AuditedDeed deed = Trail().back();
  EXPECT_EQ(deed.subject, "rows.csv");
  EXPECT_EQ(deed.firstTxnId, 4);
  EXPECT_EQ(deed.lastTxnId, 4);
  EXPECT_THAT(deed.changes, ElementsAre(Fact("SHA-256", standalone::Sha256Of(grown)), Fact("rows", "9"),
                                        Fact("transactions", "1"), Fact("lines", "2"), Fact("passed over", "3")));
}

TEST_F(TheImport, IsFoundInTheAuditTrailByEachTransactionThatItAdded) {
  RelateBirch();
  ImportMarch();

  for (const std::int32_t txnId : {1, 2, 3}) {
    EXPECT_THAT(Trail(txnId), ElementsAre(testing::Field(&AuditedDeed::action, "import")));
  }
  EXPECT_THAT(Trail(4), testing::IsEmpty());
}

}  // namespace
}  // namespace desk
