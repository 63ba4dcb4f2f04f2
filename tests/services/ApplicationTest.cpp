#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "standalone/company/LogReader.h"
#include "tests/company/CloseListener.h"
#include "tests/company/CompanyFixture.h"
#include "tests/company/QueuedMessage.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;

class TheApplication : public CompanyFixture {
 protected:
  Application& App() { return host_.Services().application; }

  AppMsg* Recorded(const std::string& name) {
    return new QueuedMessage([this, name] { record_.push_back("processed " + name); },
                             [this, name] { record_.push_back("destroyed " + name); });
  }

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
  bool isOpen = true;
  bool isClosing = false;
  std::int32_t fileState = 0;
  CloseListener listener([&] {
    isOpen = App().SystemIsOpen();
    isClosing = App().SystemIsClosing();
    fileState = App().GetActiveFileMgr()->GetFileState();
  });
  App().SubscribeCloseSystem(listener);

  host_.App().Close();

  EXPECT_FALSE(isOpen);
  EXPECT_TRUE(isClosing);
  EXPECT_EQ(fileState, DBMgr::kFileStateNoDatabaseWork);
}

TEST_F(TheApplication, HasNoFileAndNoPreferencesOnceItIsClosed) {
  DBMgr::FileMgr* const file = App().GetActiveFileMgr();

  host_.App().Close();

  EXPECT_FALSE(App().SystemIsOpen());
  EXPECT_FALSE(App().SystemIsClosing());
  EXPECT_EQ(App().GetActiveFileMgr(), nullptr);
  EXPECT_EQ(file->GetFileState(), DBMgr::kFileStateNoDatabaseWork);
  EXPECT_FALSE(host_.Services().preferences.PrefGetPrefHandle());
}

TEST_F(TheApplication, DeliversMessagesInTheirOrderAndDestroysEachBeforeTheNext) {
  App().Enqueue(Recorded("first"));
  App().Enqueue(Recorded("second"));

  host_.App().DeliverNextMessage();
  host_.App().DeliverNextMessage();

  EXPECT_FALSE(host_.App().HasMessages());
  EXPECT_THAT(record_, ElementsAre("processed first", "destroyed first", "processed second", "destroyed second"));
}

TEST_F(TheApplication, DestroysAMessageThatFails) {
  App().Enqueue(
      new QueuedMessage([] { throw std::runtime_error("no"); }, [this] { record_.emplace_back("destroyed"); }));

  EXPECT_THROW(host_.App().DeliverNextMessage(), std::runtime_error);

  EXPECT_FALSE(host_.App().HasMessages());
  EXPECT_THAT(record_, ElementsAre("destroyed"));
}

TEST_F(TheApplication, DestroysTheMessagesThatItDidNotDeliverWhenItCloses) {
  App().Enqueue(Recorded("late"));

  host_.App().Close();

  EXPECT_FALSE(host_.App().HasMessages());
  EXPECT_THAT(record_, ElementsAre("destroyed late"));
}

TEST_F(TheApplication, KeepsAMessageThatIsMadeAfterTheCloseUntilItIsComplete) {
  std::vector<std::string> record;
  {
    StandaloneHost host(path_);
    host.App().Close();

    host.Services().application.Enqueue(new QueuedMessage([] {}, [&record] { record.emplace_back("destroyed"); }));

    EXPECT_FALSE(host.App().HasMessages());
    EXPECT_THAT(record, IsEmpty());
  }
  EXPECT_THAT(record, ElementsAre("destroyed"));
}

TEST_F(TheApplication, TellsEachListenerThatIsStillSubscribedOnceWhenItCloses) {
  std::vector<int> told;
  CloseListener second([&] { told.push_back(2); });
  CloseListener third([&] { told.push_back(3); });
  CloseListener first([&] {
    told.push_back(1);
    App().UnsubscribeCloseSystem(third);
  });
  App().SubscribeCloseSystem(first);
  App().SubscribeCloseSystem(second);
  App().SubscribeCloseSystem(third);
  App().UnsubscribeCloseSystem(second);

  host_.App().Close();
  host_.App().Close();

  EXPECT_THAT(told, ElementsAre(1));
}

TEST_F(TheApplication, TellsTheOtherListenersWhenOneFails) {
  bool isTold = false;
  CloseListener failing([] { throw std::runtime_error("cannot stop"); });
  CloseListener other([&] { isTold = true; });
  App().SubscribeCloseSystem(failing);
  App().SubscribeCloseSystem(other);

  host_.App().Close();

  EXPECT_TRUE(isTold);
  EXPECT_EQ(App().GetActiveFileMgr(), nullptr);
  EXPECT_THAT(LogReader(CompanyFile::LogPath(path_)).LastLines(1),
              ElementsAre(Field(&LogLine::message, "HOST:: a listener failed: cannot stop")));
}

class Commands : public TheApplication {
 protected:
  Commands() {
    host_.App().SetCommandRunner([this](PluginView view, std::string_view url) {
      views_.push_back(view);
      urls_.emplace_back(url);
    });
  }

  void Execute(const char* url) {
    host_.Request(Access::kWrite, [&] { App().ExecuteCommand(CCommandAndArgs(url)); });
  }

  std::vector<PluginView> views_;
  std::vector<std::string> urls_;
};

TEST_F(Commands, OpenTheViewsOfThePlugin) {
  Execute("krw:LaunchMEPlugin?context=ICT_SCHEDULER");
  Execute("krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_REALM_RESET");
  Execute("krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_NORELATIONS");

  EXPECT_THAT(views_, ElementsAre(PluginView::kPendingTransactions, PluginView::kRelationsAfterRealmReset,
                                  PluginView::kRelationSetUp));
  EXPECT_EQ(urls_.at(2), "krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_NORELATIONS");
}

TEST_F(Commands, AreLogged) {
  Execute("krw:LaunchMEPlugin?context=ICT_SCHEDULER");

  EXPECT_THAT(LogReader(CompanyFile::LogPath(path_)).LastLines(10),
              Contains(Field(&LogLine::message, "HOST:: running command krw:LaunchMEPlugin?context=ICT_SCHEDULER")));
}

TEST_F(Commands, ThatOpenNothingAreRefusedByTheirUrl) {
  const auto refusal = [this](const char* url) {
    return MessageOf<std::runtime_error>([&] { Execute(url); });
  };

  EXPECT_THAT(refusal("krw:Unknown?x=1"), HasSubstr("\"krw:Unknown?x=1\""));
  EXPECT_THAT(refusal("krw:LaunchMEPlugin"), HasSubstr("\"krw:LaunchMEPlugin\""));
  EXPECT_THAT(refusal("krw:LaunchMEPlugin?context=ICT_SCHEDULER2"), HasSubstr("ICT_SCHEDULER2"));

  EXPECT_THAT(views_, IsEmpty());
  EXPECT_THAT(LogReader(CompanyFile::LogPath(path_)).LastLines(10),
              Contains(Field(&LogLine::message, "HOST:: command refused: krw:Unknown?x=1")));
}

TEST_F(TheApplication, RefusesEveryCommandWhileNobodyRunsThem) {
  EXPECT_THAT(MessageOf<std::runtime_error>(
                  [&] { App().ExecuteCommand(CCommandAndArgs("krw:LaunchMEPlugin?context=ICT_SCHEDULER")); }),
              HasSubstr("ICT_SCHEDULER"));
}

}  // namespace
}  // namespace standalone
