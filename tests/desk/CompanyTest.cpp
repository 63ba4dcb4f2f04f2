#include "standalone/desk/Company.h"
#include "standalone/desk/Log.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using testing::Contains;
using testing::Each;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

using ACompany = DeskFixture;

TEST_F(ACompany, IsMadeAsItIsAskedFor) {
  const std::filesystem::path file = folder_ / "cedar.company";

  CreateCompany({.file = file,
                 .name = "Cedar Haulage",
                 .homeCurrency = "EUR",
                 .multiCurrency = true,
                 .sampleFile = true,
                 .accountantsCopy = true});

  company_.reset();
  Company cedar(file);
  EXPECT_EQ(JsonOf(ReadSettings(cedar)).dump(),
            R"({"company-name":"Cedar Haulage","home-currency":"EUR","decimals":2,"multi-currency":true,)"
            R"("sample-file":true,"accountants-copy":true,"closing-date":null})");
  EXPECT_THAT(ListAccounts(cedar), IsEmpty());
  EXPECT_THAT(ListUsers(cedar), SizeIs(1));
}

TEST_F(ACompany, IsNotMadeOverAnother) {
  const std::string before = Everything();

  EXPECT_THROW(CreateCompany({.file = path_, .name = "Another Company"}), standalone::CompanyFileError);

  EXPECT_EQ(Everything(), before);
}

TEST_F(ACompany, IsNotMadeWithoutANameOrACurrency) {
  const std::filesystem::path file = folder_ / "cedar.company";

  EXPECT_THROW(CreateCompany({.file = file, .name = ""}), standalone::InvalidInput);
  EXPECT_THROW(CreateCompany({.file = file, .name = std::string(60, 'n')}), standalone::InvalidInput);
  EXPECT_THROW(CreateCompany({.file = file, .name = "Cedar", .homeCurrency = "euro"}), standalone::InvalidInput);

  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(ACompany, IsOpenForOneOfItsUsers) {
  OpenFor("Robin", {});

  EXPECT_EQ(company_->UserName(), "Robin");
  EXPECT_EQ(company_->File(), path_);
  EXPECT_TRUE(company_->HasBridge());
}

TEST_F(ACompany, IsNotOpenedForAnybodyElse) {
  company_.reset();

  EXPECT_THAT(MessageOf<standalone::InvalidInput>([&] { Open("Nobody"); }), HasSubstr("\"Nobody\""));
  EXPECT_NO_THROW(Open());
}

TEST_F(ACompany, IsNotOpenedWhenThereIsNone) {
  company_.reset();

  EXPECT_THROW(Company(folder_ / "none.company"), standalone::CompanyFileError);
}

TEST_F(ACompany, HasTheProcessToItself) {
  EXPECT_THROW(Company(path_, {}), std::runtime_error);

  EXPECT_THAT(ListNames(*company_), SizeIs(3));
}

TEST_F(ACompany, IsOpenedAgainAfterItWasClosed) {
  RelateBirch();
  Open();

  EXPECT_THAT(ListRelations(*company_), SizeIs(1));
}

TEST_F(ACompany, TellsNothingOfAnOpeningThatDidNothingBesides) {
  company_.reset();
  int told = 0;

  const Company company(
      path_, {.user = kFirstUser, .onOpened = [&](const Opening&) { ++told; }, .onLogLine = {}, .onAnswer = {}});

  EXPECT_EQ(told, 0);
}

TEST_F(ACompany, TellsWhatItsLogGains) {
  company_.reset();
  std::vector<NewLogLine> lines;
  Company company(path_, {.user = kFirstUser,
                          .onOpened = {},
                          .onLogLine = [&](const NewLogLine& line) { lines.push_back(line); },
                          .onAnswer = {}});

  ListRelations(company);

  EXPECT_THAT(lines, Contains(Field(&NewLogLine::message, HasSubstr("GetRelationsList"))));
}

TEST_F(ACompany, ShowsTheLastLinesOfItsLogOldestFirst) {
  RelateBirch();
  RefusalOf([&] { DeleteRelation(*company_, standalone::RealmId("2002"), false); });

  const std::vector<LogLine> all = ListLogLines(*company_, 1000);
  const std::vector<LogLine> last = ListLogLines(*company_, 2);

  ASSERT_THAT(last, SizeIs(2));
  EXPECT_EQ(JsonOf(last[1]), JsonOf(all.back()));
  EXPECT_EQ(JsonOf(last[0]), JsonOf(all.at(all.size() - 2)));
  EXPECT_THAT(all, Contains(Field(&LogLine::message, "MULTIENTITY::Entering MultiEntityDriver::CreateRelation")));
  EXPECT_THAT(last[1].message, HasSubstr("2002"));
  EXPECT_THAT(all, Each(Field(&LogLine::user, "Admin")));
  EXPECT_THAT(all, Each(Field(&LogLine::time, testing::MatchesRegex("....-..-..T..:..:......Z"))));
  EXPECT_TRUE(std::ranges::is_sorted(all, {}, &LogLine::time));
}

TEST_F(ACompany, LogsNothingOfWorkThatAsksTheModuleNothing) {
  const std::size_t before = ListLogLines(*company_, 1000).size();

  ListAccounts(*company_);

  EXPECT_THAT(ListLogLines(*company_, 1000), SizeIs(before));
  EXPECT_THAT(answers_, IsEmpty());
}

}  // namespace
}  // namespace desk
