#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <thread>

#include "standalone/company/LogReader.h"
#include "tests/company/CompanyFixture.h"
#include "tests/company/QueuedMessage.h"

namespace standalone {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;

class TheMessageLoop : public CompanyFixture {
 protected:
  static HostOptions Impatient() {
    HostOptions options;
    options.file.busyTimeout = std::chrono::milliseconds(1);
    return options;
  }

  void Enqueue(std::function<void()> process) {
    host_.Services().application.Enqueue(new QueuedMessage(std::move(process)));
  }

  MessageLoop& Loop() { return host_.Loop(); }

  std::vector<std::string> record_;
  StandaloneHost host_{path_, kAdministratorName, Impatient()};
};

TEST_F(TheMessageLoop, DeliversAMessageLaterAndNeverWhileItIsQueued) {
  Enqueue([this] {
    Enqueue([this] {
      record_.emplace_back("second");
      Loop().Quit();
    });
    record_.emplace_back("first");
  });
  record_.emplace_back("queued");

  Loop().Run();

  EXPECT_THAT(record_, ElementsAre("queued", "first", "second"));
}

TEST_F(TheMessageLoop, DeliversEachMessageInAUnitOfWorkOfItsOwn) {
  Enqueue([this] { host_.Names().Create("Northfield", NameKind::kVendor); });
  Enqueue([this] {
    host_.Names().Create("Southfield", NameKind::kVendor);
    throw std::runtime_error("no");
  });
  Enqueue([this] { Loop().Quit(); });

  Loop().Run();

  EXPECT_EQ(Count(host_, "SELECT count(*) FROM name"), 1);
}

TEST_F(TheMessageLoop, GoesOnAfterAMessageThatFailedAndSaysWhatWentWrong) {
  Loop().SetFailureHandler([this](std::string_view what) { record_.emplace_back(what); });
  Enqueue([] { throw std::runtime_error("no such form"); });
  Enqueue([this] { Loop().Quit(); });

  Loop().Run();

  EXPECT_THAT(record_, ElementsAre("no such form"));
  EXPECT_THAT(LogReader(CompanyFile::LogPath(path_)).LastLines(10),
              Contains(Field(&LogLine::message, "HOST:: work of the loop failed: no such form")));
}

TEST_F(TheMessageLoop, RunsTasksOfOtherThreadsOnItsOwn) {
  std::thread::id ranOn;
  std::thread other([&] {
    Loop().Post([&] {
      ranOn = std::this_thread::get_id();
      Loop().Quit();
    });
  });

  Loop().Run();
  other.join();

  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST_F(TheMessageLoop, WritesTheLogWhenItHasNothingToDo) {
  const LogReader reader(CompanyFile::LogPath(path_));
  const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  bool isWritten = false;
  const auto look = [this] {
    Util::Ops::MessageFunctor(host_.Log(), Util::Ops::Level::kTrace, Util::Ops::EventType::kFlow, "standalone",
                              __LINE__, "short", "signature")("looked");
  };
  Loop().Post([&] {
    host_.Request(Access::kRead, look);
    host_.Request(Access::kRead, look);
  });
  std::thread other([&] {
    while (!isWritten && std::chrono::steady_clock::now() < patience) isWritten = reader.LastLines(2).size() == 2;
    Loop().Quit();
  });

  Loop().Run();
  other.join();

  EXPECT_TRUE(isWritten);
}

TEST_F(TheMessageLoop, GoesOnAfterATaskThatFailed) {
  Loop().SetFailureHandler([this](std::string_view what) { record_.emplace_back(what); });
  Loop().Post([] { throw std::runtime_error("no printer"); });
  Loop().Post([this] { Loop().Quit(); });

  Loop().Run();

  EXPECT_THAT(record_, ElementsAre("no printer"));
}

TEST_F(TheMessageLoop, IsEndedFromAnotherThread) {
  std::thread other([this] { Loop().Quit(); });

  Loop().Run();
  other.join();

  EXPECT_TRUE(host_.Services().application.SystemIsOpen());
}

TEST_F(TheMessageLoop, LeavesMessagesUndeliveredOnceItWasTold) {
  Enqueue([this] { record_.emplace_back("delivered"); });
  Loop().Quit();

  Loop().Run();

  EXPECT_THAT(record_, ElementsAre());
  EXPECT_TRUE(host_.App().HasMessages());
}

TEST_F(TheMessageLoop, DeliversNothingOfACompanyThatIsClosed) {
  Loop().Post([this] {
    Enqueue([this] { record_.emplace_back("delivered"); });
    host_.App().Close();
    Loop().Post([this] { Loop().Quit(); });
  });

  Loop().Run();

  EXPECT_THAT(record_, ElementsAre());
}

TEST_F(TheMessageLoop, KeepsAMessageThatCannotBeginWhileAnotherProgramHoldsTheFile) {
  SqliteDatabase other(path_, kBusyTimeout);
  std::optional<UnitOfWork> held;
  held.emplace(other, Access::kWrite);
  Loop().SetFailureHandler([&](std::string_view what) {
    record_.emplace_back(what);
    held.reset();
  });
  Enqueue([this] {
    record_.emplace_back("delivered");
    Loop().Quit();
  });

  Loop().Run();

  EXPECT_THAT(record_, ElementsAre(HasSubstr("is in use by another program"), "delivered"));
}

TEST_F(TheMessageLoop, AsksAQuestionOutsideOfTheUnitOfWorkOfItsMessage) {
  bool wasInUnit = true;
  host_.MessageBoxes().SetAnswerer([&](const Question&) {
    wasInUnit = host_.Data().InUnit();
    return true;
  });
  Enqueue([this] {
    const Util::SourceContext here{"file", "operation"};
    host_.Names().Create("Northfield", NameKind::kVendor);
    host_.Services().messages.YesNoInfoMsgO(here, ResourceInstance{1}, 14715, 1, 2, true, true);
    host_.Names().Create("Southfield", NameKind::kVendor);
    Loop().Quit();
  });

  Loop().Run();

  EXPECT_FALSE(wasInUnit);
  EXPECT_EQ(Count(host_, "SELECT count(*) FROM name"), 2);
}

}  // namespace
}  // namespace standalone
