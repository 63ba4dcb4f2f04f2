#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include <array>
#include <cstdarg>
#include <optional>
#include <string>
#include <vector>

#include "standalone/import/Import.h"
#include "standalone/services/QueryEngineService.h"
#include "standalone/services/RemoteConfiguration.h"
#include "standalone/services/RuntimeService.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class RemoteSwitches : public CompanyFixture {
 protected:
  bool IsOn(const char* flag) { return remote_.IsFeatureEnabled("MultiEntityFeature", flag); }

  std::string Refusal() {
    return MessageOf<std::runtime_error>([&] { IsOn("ME_FOR_ALL"); });
  }

  CompanyFile company_{path_};
  const std::filesystem::path remotePath_ = CompanyFile::RemotePath(path_);
  RemoteConfiguration remote_{remotePath_, company_.Data()};
};

TEST_F(RemoteSwitches, AreOnWithoutAFile) {
  EXPECT_TRUE(IsOn("ME_FOR_ALL"));
}

TEST_F(RemoteSwitches, AreWhatTheFileSaysAndOnOtherwise) {
  WriteFile(remotePath_, "[switches.MultiEntityFeature]\nME_FOR_ALL = false\nME_FOR_BILLS = true\n");

  EXPECT_FALSE(IsOn("ME_FOR_ALL"));
  EXPECT_TRUE(IsOn("ME_FOR_BILLS"));
  EXPECT_TRUE(IsOn("ME_FOR_CHECKS"));
  EXPECT_TRUE(remote_.IsFeatureEnabled("MultiEntityAccounts", "Bank"));
}

TEST_F(RemoteSwitches, ChangeWithTheFile) {
  WriteFile(remotePath_, "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  ASSERT_FALSE(IsOn("ME_FOR_ALL"));

  WriteFile(remotePath_, "[switches.MultiEntityFeature]\nME_FOR_ALL = true \n");
  EXPECT_TRUE(IsOn("ME_FOR_ALL"));
  WriteFile(remotePath_, "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  EXPECT_FALSE(IsOn("ME_FOR_ALL"));
  std::filesystem::remove(remotePath_);
  EXPECT_TRUE(IsOn("ME_FOR_ALL"));
}

TEST_F(RemoteSwitches, ChangeWithAFileThatLayThereForLong) {
  const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(5);
  WriteFile(remotePath_, "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  std::filesystem::last_write_time(remotePath_, longAgo);
  ASSERT_FALSE(IsOn("ME_FOR_ALL"));
  ASSERT_FALSE(IsOn("ME_FOR_ALL"));

  WriteFile(remotePath_, "[switches.MultiEntityFeature]\nME_FOR_ALL = true \n");

  EXPECT_TRUE(IsOn("ME_FOR_ALL"));
}

TEST_F(RemoteSwitches, StayWhatTheyAreUntilAUnitOfWorkEnds) {
  UnitOfWork unit(company_.Data(), Access::kRead);
  ASSERT_TRUE(IsOn("ME_FOR_ALL"));
  WriteFile(remotePath_, "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");

  EXPECT_TRUE(IsOn("ME_FOR_ALL"));
  OutsideUnit(company_.Data(), [&] { EXPECT_FALSE(IsOn("ME_FOR_ALL")); });
  EXPECT_FALSE(IsOn("ME_FOR_ALL"));
  unit.Commit();
}

TEST_F(RemoteSwitches, ThatCannotBeReadAreReportedWithTheirFile) {
  WriteFile(remotePath_, "[switches\n");
  EXPECT_THAT(Refusal(), AllOf(HasSubstr("birch.company.remote.toml"), HasSubstr("line 1")));

  WriteFile(remotePath_, "[switches.MultiEntityFeature]\nME_FOR_ALL = \"no\"\n");
  EXPECT_THAT(Refusal(), HasSubstr("switches.MultiEntityFeature.ME_FOR_ALL is neither true nor false"));

  WriteFile(remotePath_, "[switches]\nMultiEntityFeature = false\n");
  EXPECT_THAT(Refusal(), HasSubstr("switches.MultiEntityFeature is not a table"));

  std::filesystem::remove(remotePath_);
  std::filesystem::create_directory(remotePath_);
  EXPECT_THAT(Refusal(), HasSubstr("not a readable file"));
}

TEST_F(RemoteSwitches, InAFileOfGigabytesAreRefusedByItsSize) {
  WriteFile(remotePath_, "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  std::filesystem::resize_file(remotePath_, std::uintmax_t{3} << 30U);

  EXPECT_THAT(Refusal(), AllOf(HasSubstr("birch.company.remote.toml"), HasSubstr("3221225472"), HasSubstr("1048576")));
}

TEST_F(RemoteSwitches, InTheLargestFileAreRead) {
  std::string text = "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n#";
  text.resize((std::size_t{1} << 20U) - 1, ' ');
  WriteFile(remotePath_, text + "\n");
  EXPECT_FALSE(IsOn("ME_FOR_ALL"));

  WriteFile(remotePath_, text + "\n\n");
  EXPECT_THAT(Refusal(), HasSubstr("1048577"));
}

#ifndef _WIN32
TEST_F(RemoteSwitches, InThePlaceOfAPipeAreNotWaitedFor) {
  ASSERT_EQ(mkfifo(remotePath_.c_str(), 0600), 0);

  EXPECT_THAT(Refusal(), AllOf(HasSubstr("birch.company.remote.toml"), HasSubstr("not a readable file")));
}
#endif

TEST_F(RemoteSwitches, ComeWithValuesThatLeaveTheCallersOwnWhenTheyAreMissing) {
  WriteFile(remotePath_, "[values.MultiEntity]\nInitialDelayInSeconds = \"5\"\nHoursToLaunchDay = 7\n");
  Util::TString found("before");
  Util::TString missing("before");

  EXPECT_TRUE(remote_.GetValue2("MultiEntity", "InitialDelayInSeconds", found));
  EXPECT_FALSE(remote_.GetValue2("MultiEntity", "CheckForRealmReset", missing));

  EXPECT_EQ(found.view(), "5");
  EXPECT_EQ(missing.view(), "before");
  EXPECT_THAT(MessageOf<std::runtime_error>([&] { remote_.GetValue2("MultiEntity", "HoursToLaunchDay", found); }),
              HasSubstr("is not a text in quotes"));
}

TEST_F(RemoteSwitches, ComeWithValuesThatChangeWithTheFile) {
  WriteFile(remotePath_, "[values.MultiEntity]\nCheckForRealmReset = \"1\"\n");
  Util::TString before;
  remote_.GetValue2("MultiEntity", "CheckForRealmReset", before);

  WriteFile(remotePath_, "[values.MultiEntity]\nCheckForRealmReset = \"0\"\n");
  Util::TString after;
  remote_.GetValue2("MultiEntity", "CheckForRealmReset", after);

  EXPECT_EQ(before.view(), "1");
  EXPECT_EQ(after.view(), "0");
}

TEST_F(RemoteSwitches, ThatCannotBeReadAreReportedWhenAValueIsAskedForToo) {
  WriteFile(remotePath_, "[values\n");
  Util::TString value;

  EXPECT_THAT(MessageOf<std::runtime_error>([&] { remote_.GetValue2("MultiEntity", "HoursToLaunchDay", value); }),
              HasSubstr("birch.company.remote.toml"));
}

class TheQueryEngine : public CompanyFixture {
 protected:
  TheQueryEngine() {
    host_.Request(Access::kWrite, [&] {
      host_.Accounts().Create({"Rent", KrEnumerations::kExpense, 0, false});
      host_.Accounts().Create({"Cash", KrEnumerations::kBank, 0, false});
    });
    ImportTransactions(host_, WriteCsv("transaction,type,date,name,memo,account,amount\n"
                                       "1,bill,2024-01-31,,,Rent,1\n1,,,,,Cash,-1\n"
                                       "2,check,2024-02-15,,,Rent,1\n2,,,,,Cash,-1\n"
                                       "3,bill,2024-02-29,,,Rent,1\n3,,,,,Cash,-1\n"
                                       "4,journal,2024-03-01,,,Rent,1\n4,,,,,Cash,-1\n"));
  }

  static std::vector<unsigned long> Read(DQEWrapper& query) {
    std::vector<unsigned long> ids;
    for (const auto* row = query.First(); row != nullptr; row = query.Next()) {
      ids.push_back(query.GetTransPtrType(row, 0));
    }
    return ids;
  }

  std::vector<unsigned long> Select(unsigned int selection) {
    DQEWrapper query(host_.Services().queries);
    EXPECT_TRUE(query.SetSelect(selection).Succeeded());
    EXPECT_TRUE(query.DoQuery().Succeeded());
    EXPECT_TRUE(query.ResultExists());
    return Read(query);
  }

  std::vector<unsigned long> SelectPeriod(unsigned int selection, DateType32 from, DateType32 to) {
    DQEWrapper query(host_.Services().queries);
    query.SetSelect(selection);
    const long lower = query.SetStatement(kFieldTransactionDate, DQE::kNotBefore, from);
    const long upper = query.SetStatement(kFieldTransactionDate, DQE::kNotAfter, to);
    EXPECT_NE(query.SetStatement(lower, DQE::kAnd, upper), 0);
    EXPECT_TRUE(query.DoQuery().Succeeded());
    return Read(query);
  }

  void SetUp() override { unit_.emplace(host_.Data(), Access::kRead); }

  StandaloneHost host_{path_};
  std::optional<UnitOfWork> unit_;
};

TEST_F(TheQueryEngine, SelectsTransactionsByType) {
  EXPECT_THAT(Select(kTxnTypeBill), ElementsAre(1, 3));
  EXPECT_THAT(Select(kTxnTypeCheck), ElementsAre(2));
  EXPECT_THAT(Select(kTxnTypeJournalEntry), ElementsAre(4));
  EXPECT_THAT(Select(kSelectAllTransactions), ElementsAre(1, 2, 3, 4));
}

TEST_F(TheQueryEngine, SelectsAPeriodWithBothOfItsBounds) {
  EXPECT_THAT(SelectPeriod(kSelectAllTransactions, {2024, 2, 15}, {2024, 2, 29}), ElementsAre(2, 3));
  EXPECT_THAT(SelectPeriod(kTxnTypeBill, {2024, 2, 15}, {2024, 2, 29}), ElementsAre(3));
  EXPECT_THAT(SelectPeriod(kTxnTypeBill, {2024, 2, 1}, {2024, 2, 28}), IsEmpty());
}

TEST_F(TheQueryEngine, TakesANullDateAsAnOpenBound) {
  EXPECT_THAT(SelectPeriod(kSelectAllTransactions, NullDate(), {2024, 2, 15}), ElementsAre(1, 2));
  EXPECT_THAT(SelectPeriod(kSelectAllTransactions, {2024, 2, 29}, NullDate()), ElementsAre(3, 4));
}

TEST_F(TheQueryEngine, FindsNothingInAPeriodThatEndsBeforeItBegins) {
  EXPECT_THAT(SelectPeriod(kSelectAllTransactions, {2024, 3, 1}, {2024, 1, 1}), IsEmpty());
}

TEST_F(TheQueryEngine, FailsAQueryThatIsNotWellFormed) {
  DQEWrapper unknownSelection(host_.Services().queries);
  EXPECT_TRUE(unknownSelection.SetSelect(77).Failed());
  EXPECT_TRUE(unknownSelection.DoQuery().Failed());
  EXPECT_FALSE(unknownSelection.ResultExists());

  DQEWrapper unknownField(host_.Services().queries);
  unknownField.SetSelect(kTxnTypeBill);
  EXPECT_EQ(unknownField.SetStatement(99U, DQE::kNotBefore, DateType32(2024, 1, 1)), 0);
  EXPECT_TRUE(unknownField.DoQuery().Failed());

  DQEWrapper unknownStatement(host_.Services().queries);
  unknownStatement.SetSelect(kTxnTypeBill);
  EXPECT_EQ(unknownStatement.SetStatement(1L, DQE::kAnd, 2L), 0);
  EXPECT_TRUE(unknownStatement.DoQuery().Failed());
}

char* Format(Util::Runtime& runtime, const char* pattern, ...) {
  std::va_list arguments;
  va_start(arguments, pattern);
  char* text = runtime.FormatStringV(pattern, arguments);
  va_end(arguments);
  return text;
}

TEST(TheRuntime, FormatsATextThatItsMemoryManagerTakesBack) {
  RuntimeService runtime;

  char* text = Format(runtime, "%s:%s %d", "Top", "Mid", 7);

  EXPECT_STREQ(text, "Top:Mid 7");
  runtime.GetMemoryManager().Release(text);
}

TEST(TheRuntime, SaysWhereATextIsNull) {
  RuntimeService runtime;
  const char* const none = nullptr;

  char* const text = Format(runtime, "%s%s", "Top", none);

  EXPECT_STREQ(text, "Top(null)");
  runtime.GetMemoryManager().Release(text);
}

TEST(TheRuntime, JoinsTextsOfAnyLengthOfWhichSeveralAreOutAtOnce) {
  RuntimeService runtime;
  const std::string longText(5000, 'x');

  char* const first = Format(runtime, "%s%s%s", "Top", ":", "");
  char* const second = Format(runtime, "%s%s", first, "Mid");
  char* const longest = Format(runtime, "%s%s", longText.c_str(), "!");
  runtime.GetMemoryManager().Release(first);
  char* const last = Format(runtime, "%s%s%s%s", "a", "b", "c", "d");

  EXPECT_STREQ(second, "Top:Mid");
  EXPECT_EQ(std::string(longest), longText + "!");
  EXPECT_STREQ(last, "abcd");
  runtime.GetMemoryManager().Release(second);
  runtime.GetMemoryManager().Release(longest);
  runtime.GetMemoryManager().Release(last);
}

}  // namespace
}  // namespace standalone
