#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

#include "standalone/company/LogFile.h"
#include "standalone/company/LogReader.h"
#include "standalone/company/OperationsLog.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::SizeIs;

// What has the name of the operations log and is none.
class ThePlaceOfTheLog : public CompanyFixture {
 protected:
  static void Write(OperationsLog& log, const std::string& message) {
    log.Write({.level = Util::Ops::Level::kError,
               .eventType = Util::Ops::EventType::kFlow,
               .sourceFile = "Src/MultiEntityDriver",
               .sourceLine = 42,
               .shortName = "MultiEntityDriver::GetRelation",
               .signature = "static MEStatusCode MultiEntityDriver::GetRelation(Util::TString)",
               .message = message});
  }

  static void MakePipe(const std::filesystem::path& name) { ASSERT_EQ(mkfifo(name.c_str(), S_IRUSR | S_IWUSR), 0); }

  const std::filesystem::path log_ = CompanyFile::LogPath(path_);
};

TEST_F(ThePlaceOfTheLog, MayBeAPipeThatNobodyReads) {
  MakePipe(log_);

  StandaloneHost host(path_);
  Write(host.Log(), "one");

  EXPECT_EQ(Count(host, "SELECT 1"), 1);
  EXPECT_FALSE(host.Log().Wants(Util::Ops::Level::kError));
}

TEST_F(ThePlaceOfTheLog, MayBeAPipeThatSomebodyReadsWhoIsToldNothing) {
  MakePipe(log_);
  const int reader = open(log_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);

  {
    StandaloneHost host(path_);
    Write(host.Log(), "one");
  }

  std::array<char, 1> byte{};
  EXPECT_EQ(read(reader, byte.data(), byte.size()), 0);
  close(reader);
}

TEST_F(ThePlaceOfTheLog, MayBeADevice) {
  std::filesystem::create_symlink("/dev/zero", log_);

  StandaloneHost host(path_);
  Write(host.Log(), "one");

  EXPECT_FALSE(host.Log().Wants(Util::Ops::Level::kError));
}

TEST_F(ThePlaceOfTheLog, MayBecomeAPipeWhileTheCompanyIsOpen) {
  StandaloneHost host(path_);
  std::filesystem::remove(log_);
  MakePipe(log_);

  Write(host.Log(), "one");

  EXPECT_FALSE(host.Log().Wants(Util::Ops::Level::kError));
}

TEST_F(ThePlaceOfTheLog, IsNotReadWhenItIsAPipeOrADevice) {
  MakePipe(log_);
  EXPECT_THAT(MessageOf<std::runtime_error>([this] { LogReader(log_).LastLines(1); }),
              AllOf(HasSubstr(log_.string()), HasSubstr("a pipe or a device")));

  std::filesystem::remove(log_);
  std::filesystem::create_symlink("/dev/zero", log_);
  EXPECT_THAT(MessageOf<std::runtime_error>([this] { LogReader(log_).LastLines(1); }),
              AllOf(HasSubstr(log_.string()), HasSubstr("a pipe or a device")));
}

TEST_F(ThePlaceOfTheLog, OfAnOlderLogMayBeAPipeThatIsReadOnlyWhenItIsAskedFor) {
  MakePipe(OlderLog(log_, 1));
  OperationsLog log(log_, "clerk", {.fileBytes = 1000, .olderFiles = 1});
  for (int line = 0; line < 10; ++line) Write(log, std::string(300, 'x'));

  EXPECT_TRUE(std::filesystem::is_fifo(OlderLog(log_, 1)));
  EXPECT_THAT(LogReader(log_).LastLines(2), SizeIs(2));
  EXPECT_THAT(MessageOf<std::runtime_error>([this] { LogReader(log_).LastLines(100); }),
              HasSubstr(OlderLog(log_, 1).string()));
}

}  // namespace
}  // namespace standalone
