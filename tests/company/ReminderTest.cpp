#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <optional>

#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/Records.h"
#include "standalone/company/LogReader.h"
#include "standalone/company/Session.h"
#include "tests/company/CompanyFixture.h"
#include "tests/company/LoopTimers.h"
#include "tests/platform/ScriptedLoopClock.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// A company that stays open, from the message that arms the reminder to what the user sees. The launch hour is past, so
// that the least delay counts.
class TheReminder : public CompanyFixture {
 protected:
  TheReminder() {
    WriteFile(CompanyFile::RemotePath(path_),
              "[values.MultiEntity]\nInitialDelayInSeconds = \"1\"\nHoursToLaunchDay = \"0\"\n");
  }

  void Open(platform::LoopClock& clock) {
    HostOptions options;
    options.loopClock = &clock;
    options.answerer = [this](const Question& question) {
      shown_.push_back(question.text);
      host_->Loop().Quit();
      return answer_;
    };
    options.commandRunner = [this](PluginView view, std::string_view) {
      opened_.push_back(view);
    };
    host_.emplace(path_, kAdministratorName, std::move(options));
    session_.emplace(*host_);
  }

  void Relate(std::int16_t state) {
    DBMultiEntityRelation relation{};
    std::strcpy(relation.realmId, "9130347");
    relation.state = state;
    host_->Request(Access::kWrite, [&] { host_->Services().multiEntity.SaveRelation(relation); });
    relationId_ = relation.relationId;
  }

  void LetATransactionWait() {
    DBMultiEntityTransaction row{};
    row.txnId = 1;
    row.targetId = 1;
    row.relationId = relationId_;
    row.state = static_cast<std::int16_t>(TransactionState::kCameBack);
    host_->Request(Access::kWrite, [&] { host_->Services().multiEntity.SaveTransaction(row); });
  }

  void QuitWhenLogged(std::string_view message, int times) {
    host_->Log().SetObserver([this, message, times, seen = 0](const Util::Ops::Line& line) mutable {
      if (line.message == message && ++seen == times) host_->Loop().Quit();
    });
  }

  void CloseAndWaitLongerThanTheReminder() {
    closed = &*host_;
    host_->App().Close();
    TimersOf(*host_).SetTimer(0, 1500, [](HWND__*, std::uint32_t, TimerId, unsigned long) { closed->Loop().Quit(); });
  }

  void RunOpenCompany() {
    session_->QueueReminder();
    host_->Loop().Run();
  }

  std::optional<std::string> LaunchDate() {
    return host_->Request(Access::kRead, [&] { return host_->Preferences().Find(kLaunchDatePreference); });
  }

  std::vector<LogLine> Log() {
    if (host_) host_->Log().Flush();
    return LogReader(CompanyFile::LogPath(path_)).LastLines(200);
  }

  // For a timer's procedure, which has no room for anything of its own.
  static inline StandaloneHost* closed = nullptr;

  bool answer_ = true;
  std::int32_t relationId_ = 0;
  std::vector<std::string> shown_;
  std::vector<PluginView> opened_;
  std::optional<StandaloneHost> host_;
  std::optional<Session> session_;
  // Hurries on where the loop keeps its timers itself.
  platform::ScriptedLoopClock clock_;
};

TEST_F(TheReminder, OpensThePendingTransactionsWhenTheUserWantsTo) {
  Open(clock_);
  Relate(MEStateEstablished);
  LetATransactionWait();

  RunOpenCompany();

  EXPECT_THAT(shown_, ElementsAre(HasSubstr("Waiting for you: 1 transaction that came back.")));
  EXPECT_THAT(opened_, ElementsAre(PluginView::kPendingTransactions));
  EXPECT_EQ(LaunchDate(), MESchedulerUtil::DateToString(DateAdd(platform::Today(platform::SystemClock()), 1)));
}

TEST_F(TheReminder, OpensNothingWhenTheUserDeclines) {
  answer_ = false;
  Open(clock_);
  Relate(MEStateEstablished);
  LetATransactionWait();

  RunOpenCompany();

  EXPECT_EQ(shown_.size(), 1U);
  EXPECT_THAT(opened_, IsEmpty());
  EXPECT_TRUE(LaunchDate().has_value());
}

TEST_F(TheReminder, TellsOfTransactionsAndARelationThatWait) {
  Open(clock_);
  Relate(MEStatePending);
  LetATransactionWait();

  RunOpenCompany();

  EXPECT_THAT(shown_, ElementsAre(HasSubstr("1 transaction that came back, 1 relation not established yet.")));
}

TEST_F(TheReminder, WarnsOfARelationThatIsPendingAndOpensNothing) {
  Open(clock_);
  Relate(MEStatePending);

  RunOpenCompany();

  EXPECT_THAT(shown_, ElementsAre(HasSubstr("still pending")));
  EXPECT_THAT(opened_, IsEmpty());
}

TEST_F(TheReminder, ShowsNothingWhenNothingWaitsAndIsArmedAgain) {
  Open(clock_);
  Relate(MEStateEstablished);
  QuitWhenLogged("MULTIENTITY::StartScheduler: Exiting function", 2);

  RunOpenCompany();

  EXPECT_THAT(shown_, IsEmpty());
  EXPECT_TRUE(LaunchDate().has_value());
}

TEST_F(TheReminder, ComesNotToACompanyWithoutRelations) {
  Open(clock_);
  host_->App().SetMessageObserver([this](const AppMsg&) { host_->Loop().Post([this] { host_->Loop().Quit(); }); });

  RunOpenCompany();

  EXPECT_THAT(Log(), Not(Contains(Field(&LogLine::message, "MULTIENTITY::StartTimer: Entering function"))));
  EXPECT_EQ(LaunchDate(), std::nullopt);
}

TEST_F(TheReminder, NeverComesToACompanyThatIsClosed) {
  Open(clock_);
  Relate(MEStateEstablished);
  LetATransactionWait();
  host_->Log().SetObserver([this](const Util::Ops::Line& line) {
    if (line.message == "MULTIENTITY::StartScheduler: Exiting function") {
      host_->Loop().Post([this] { CloseAndWaitLongerThanTheReminder(); });
    }
  });

  RunOpenCompany();

  EXPECT_THAT(Log(),
              AllOf(Contains(Field(&LogLine::message, "MULTIENTITY::StartScheduler: Starting Timer for 1 seconds")),
                    Not(Contains(Field(&LogLine::message, "MULTIENTITY::OnTimerElapsed: Timer elapsed")))));
  EXPECT_THAT(shown_, IsEmpty());
}

TEST_F(TheReminder, ComesByTheClockOfTheMachine) {
  Open(platform::SteadyLoopClock());
  Relate(MEStateEstablished);
  LetATransactionWait();
  const auto opened = std::chrono::steady_clock::now();

  RunOpenCompany();

  EXPECT_GE(std::chrono::steady_clock::now() - opened, std::chrono::seconds(1));
  EXPECT_THAT(opened_, ElementsAre(PluginView::kPendingTransactions));
}

}  // namespace
}  // namespace standalone
