#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdarg>
#include <optional>
#include <string>
#include <vector>

#include "standalone/Import.h"
#include "standalone/QueryEngineService.h"
#include "standalone/RemoteConfiguration.h"
#include "standalone/RuntimeService.h"
#include "tests/standalone/CompanyFixture.h"

namespace standalone {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class RemoteSwitches : public testing::Test {
 protected:
  bool IsOn(const char* flag) { return remote_.IsFeatureEnabled("MultiEntityFeature", flag); }

  std::string Refusal() {
    return MessageOf<std::runtime_error>([&] { IsOn("ME_FOR_ALL"); });
  }

  TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_ / "birch.company.remote.toml";
  RemoteConfiguration remote_{path_};
};

TEST_F(RemoteSwitches, AreOnWithoutAFile) {
  EXPECT_TRUE(IsOn("ME_FOR_ALL"));
}

TEST_F(RemoteSwitches, AreWhatTheFileSaysAndOnOtherwise) {
  WriteFile(path_, "[switches.MultiEntityFeature]\nME_FOR_ALL = false\nME_FOR_BILLS = true\n");

  EXPECT_FALSE(IsOn("ME_FOR_ALL"));
  EXPECT_TRUE(IsOn("ME_FOR_BILLS"));
  EXPECT_TRUE(IsOn("ME_FOR_CHECKS"));
  EXPECT_TRUE(remote_.IsFeatureEnabled("MultiEntityAccounts", "Bank"));
}

TEST_F(RemoteSwitches, ChangeWithTheFile) {
  WriteFile(path_, "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  ASSERT_FALSE(IsOn("ME_FOR_ALL"));

  WriteFile(path_, "[switches.MultiEntityFeature]\nME_FOR_ALL = true \n");
  EXPECT_TRUE(IsOn("ME_FOR_ALL"));
  WriteFile(path_, "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  EXPECT_FALSE(IsOn("ME_FOR_ALL"));
  std::filesystem::remove(path_);
  EXPECT_TRUE(IsOn("ME_FOR_ALL"));
}

TEST_F(RemoteSwitches, ChangeWithAFileThatLayThereForLong) {
  const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(5);
  WriteFile(path_, "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  std::filesystem::last_write_time(path_, longAgo);
  ASSERT_FALSE(IsOn("ME_FOR_ALL"));
  ASSERT_FALSE(IsOn("ME_FOR_ALL"));

  WriteFile(path_, "[switches.MultiEntityFeature]\nME_FOR_ALL = true \n");

  EXPECT_TRUE(IsOn("ME_FOR_ALL"));
}

TEST_F(RemoteSwitches, ThatCannotBeReadAreReportedWithTheirFile) {
  WriteFile(path_, "[switches\n");
  EXPECT_THAT(Refusal(), AllOf(HasSubstr("birch.company.remote.toml"), HasSubstr("line 1")));

  WriteFile(path_, "[switches.MultiEntityFeature]\nME_FOR_ALL = \"no\"\n");
  EXPECT_THAT(Refusal(), HasSubstr("switches.MultiEntityFeature.ME_FOR_ALL is neither true nor false"));

  WriteFile(path_, "[switches]\nMultiEntityFeature = false\n");
  EXPECT_THAT(Refusal(), HasSubstr("switches.MultiEntityFeature is not a table"));

  std::filesystem::remove(path_);
  std::filesystem::create_directory(path_);
  EXPECT_THAT(Refusal(), HasSubstr("not a readable file"));
}

TEST_F(RemoteSwitches, ComeWithValuesThatLeaveTheCallersOwnWhenTheyAreMissing) {
  WriteFile(path_, "[values.MultiEntity]\nInitialDelayInSeconds = \"5\"\nHoursToLaunchDay = 7\n");
  Util::TString found("before");
  Util::TString missing("before");

  EXPECT_TRUE(remote_.GetValue2("MultiEntity", "InitialDelayInSeconds", found));
  EXPECT_FALSE(remote_.GetValue2("MultiEntity", "CheckForRealmReset", missing));

  EXPECT_EQ(found.view(), "5");
  EXPECT_EQ(missing.view(), "before");
  EXPECT_THAT(MessageOf<std::runtime_error>([&] { remote_.GetValue2("MultiEntity", "HoursToLaunchDay", found); }),
              HasSubstr("is not a text in quotes"));
}

class MessageBoxes : public CompanyFixture {
 protected:
  Messages& Boxes() { return host_.Services().messages; }

  void AnswerYes() {
    host_.MessageBoxes().SetAnswerer([this](const Question& question) {
      asked_.push_back(question);
      return true;
    });
  }

  const Util::SourceContext here_{"file", "operation"};
  std::vector<Question> asked_;
  StandaloneHost host_{path_};
};

TEST_F(MessageBoxes, WithoutAnybodyToAskAnswerByWhatDoesNothingFurther) {
  EXPECT_NE(Boxes().YesNoInfoMsgO(here_, Boxes().GetKRWinInstance(), 14715, 1, 2, true, true), kAnswerYes);
  EXPECT_NE(Boxes().KRMSG_MessageO(0, 4, 0, 14717, {}), 0);
}

TEST_F(MessageBoxes, AskWithTheTextsOfTheirList) {
  AnswerYes();

  EXPECT_EQ(Boxes().YesNoInfoMsgO(here_, Boxes().GetKRWinInstance(), 14715, 1, 2, true, true), kAnswerYes);

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].kind, QuestionKind::kYesNo);
  EXPECT_EQ(asked_[0].title, "Intercompany transactions");
  EXPECT_THAT(asked_[0].text, HasSubstr("waiting to be booked"));
}

TEST_F(MessageBoxes, ShowTextsOfTheCallersOwn) {
  AnswerYes();
  const std::array<MessageArgument, 4> arguments{-7, Util::TString("A title"), Util::TString("A text"), -1};

  Boxes().KRMSG_MessageO(0, 3, 3, 2003, arguments);

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].kind, QuestionKind::kNotice);
  EXPECT_EQ(asked_[0].title, "A title");
  EXPECT_EQ(asked_[0].text, "A text");
}

TEST_F(MessageBoxes, AnswerAListedMessageByTheNumberOfItsFirstButton) {
  AnswerYes();
  const std::array<MessageArgument, 8> arguments{1, 2, 0, 1, 4, 5, 3, -1};

  EXPECT_EQ(Boxes().KRMSG_MessageO(0, 4, 0, 14717, arguments), 0);

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].title, StringResource(14717, 1));
  EXPECT_EQ(asked_[0].text, StringResource(14717, 2));
}

TEST_F(MessageBoxes, WarnWithTwoTexts) {
  AnswerYes();

  Boxes().KRWarnMsgWithTitle02(0, here_, "first", "second", true);

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].kind, QuestionKind::kWarning);
  EXPECT_EQ(asked_[0].text, "second");
}

TEST_F(MessageBoxes, HaveEveryTextThatIsAskedFor) {
  EXPECT_FALSE(StringResource(2003, 3023).empty());
  EXPECT_FALSE(StringResource(14715, 1).empty());
  EXPECT_FALSE(StringResource(14715, 2).empty());
  EXPECT_FALSE(StringResource(14715, 3).empty());
  EXPECT_FALSE(StringResource(14715, 4).empty());
  EXPECT_FALSE(StringResource(14717, 1).empty());
  EXPECT_FALSE(StringResource(14717, 2).empty());
}

TEST_F(MessageBoxes, FillABufferNoFurtherThanItGoes) {
  std::array<char, 6> buffer{};
  buffer.fill('#');

  Boxes().GetIndStringC(buffer.data(), 5, Boxes().GetKRWinInstance(), 14715, 1);

  EXPECT_STREQ(buffer.data(), "Inte");
  EXPECT_EQ(buffer[5], '#');
}

class RecordedMessage final : public AppMsg {
 public:
  RecordedMessage(std::vector<std::string>& record, std::string name, Application* next = nullptr)
      : record_(record), name_(std::move(name)), next_(next) {}
  ~RecordedMessage() override { record_.push_back("destroyed " + name_); }

  void ProcessMsg() override {
    record_.push_back("processed " + name_);
    if (next_ != nullptr) next_->Enqueue(new RecordedMessage(record_, name_ + "'s next"));
  }

 private:
  std::vector<std::string>& record_;
  std::string name_;
  Application* next_;
};

class TheApplication : public CompanyFixture {
 protected:
  Application& App() { return host_.Services().application; }

  std::vector<std::string> record_;
  StandaloneHost host_{path_};
};

TEST_F(TheApplication, IsOpenWithAFileThatTakesWork) {
  EXPECT_TRUE(App().SystemIsOpen());
  EXPECT_FALSE(App().SystemIsClosing());
  EXPECT_FALSE(App().IsServerMode(true));
  ASSERT_NE(App().GetActiveFileMgr(), nullptr);
  EXPECT_NE(App().GetActiveFileMgr()->GetFileState(), DBMgr::kFileStateNoDatabaseWork);
  EXPECT_TRUE(host_.Services().preferences.PrefGetPrefHandle());
}

TEST_F(TheApplication, TakesNoWorkOnAFileThatItCloses) {
  host_.App().BeginClosing([](CNotificationBase&) {});

  EXPECT_FALSE(App().SystemIsOpen());
  EXPECT_TRUE(App().SystemIsClosing());
  EXPECT_EQ(App().GetActiveFileMgr()->GetFileState(), DBMgr::kFileStateNoDatabaseWork);
  host_.App().EndClosing();
  EXPECT_EQ(App().GetActiveFileMgr(), nullptr);
  EXPECT_FALSE(host_.Services().preferences.PrefGetPrefHandle());
}

TEST_F(TheApplication, DeliversEachMessageOnceAndDestroysItBeforeTheNext) {
  App().Enqueue(new RecordedMessage(record_, "first", &App()));
  App().Enqueue(new RecordedMessage(record_, "second"));

  EXPECT_EQ(host_.App().DeliverMessages(), 3U);
  EXPECT_EQ(host_.App().DeliverMessages(), 0U);

  EXPECT_THAT(record_, ElementsAre("processed first", "destroyed first", "processed second", "destroyed second",
                                   "processed first's next", "destroyed first's next"));
}

TEST_F(TheApplication, DestroysMessagesThatItNoLongerDelivers) {
  App().Enqueue(new RecordedMessage(record_, "late"));
  host_.App().EndClosing();
  App().Enqueue(new RecordedMessage(record_, "later"));

  EXPECT_EQ(host_.App().DeliverMessages(), 0U);

  EXPECT_THAT(record_, ElementsAre("destroyed late", "destroyed later"));
}

TEST_F(TheApplication, TellsTheListenersThatAreStillSubscribedWhenItCloses) {
  struct Listener final : CNotificationBase {};
  Listener first;
  Listener second;
  Listener third;
  App().SubscribeCloseSystem(first);
  App().SubscribeCloseSystem(second);
  App().SubscribeCloseSystem(third);
  App().UnsubscribeCloseSystem(second);
  std::vector<CNotificationBase*> told;

  host_.App().BeginClosing([&](CNotificationBase& listener) {
    told.push_back(&listener);
    App().UnsubscribeCloseSystem(third);
  });

  EXPECT_THAT(told, ElementsAre(&first));
}

TEST_F(TheApplication, RefusesACommandThatItDoesNotKnow) {
  EXPECT_THAT(MessageOf<std::runtime_error>([&] { App().ExecuteCommand(CCommandAndArgs("krw:Unknown?x=1")); }),
              HasSubstr("\"krw:Unknown?x=1\""));
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

}  // namespace
}  // namespace standalone
