#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using testing::AllOf;
using testing::Each;
using testing::HasSubstr;

class TheImport : public DeskFixture {
 protected:
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

  Import(*company_, Importable::kNames, csv,
         [&](std::uint64_t read, std::uint64_t total) { told.emplace_back(read, total); });

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

}  // namespace
}  // namespace desk
