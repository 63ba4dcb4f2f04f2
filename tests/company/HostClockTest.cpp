#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "platform/Clock.h"
#include "platform/SystemTime.h"
#include "standalone/company/LogReader.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::EndsWith;
using testing::StartsWith;

class StoppedClock final : public platform::Clock {
 public:
  StoppedClock() = default;
  explicit StoppedClock(TimePoint moment) : moment_(moment) {}
  TimePoint Now() override { return moment_; }

 private:
  TimePoint moment_ =
      *platform::MomentOf(DateType32(2020, 2, 29), std::chrono::hours(23)) + std::chrono::milliseconds(250);
};

// A host long before the machine's day.
class AHostByAClock : public CompanyFixture {
 protected:
  static HostOptions By(platform::Clock& clock) {
    HostOptions options;
    options.clock = &clock;
    return options;
  }

  StoppedClock clock_;
  StandaloneHost host_{path_, kAdministratorName, By(clock_)};
};

TEST_F(AHostByAClock, IsNotMadeWhenTheClockShowsATimeBefore1900) {
  StoppedClock wrong(std::chrono::sys_days(std::chrono::year(1899) / 6 / 1));

  EXPECT_THAT(MessageOf<std::runtime_error>([&] { StandaloneHost(path_, kAdministratorName, By(wrong)); }),
              testing::AllOf(StartsWith("The clock of this machine"), testing::HasSubstr("from 1900 to 2199")));
}

TEST_F(AHostByAClock, DatesItsBookings) {
  JournalEntryIds ids;

  host_.Request(Access::kWrite, [&] {
    const std::int32_t dueTo = host_.Accounts().Create({"Due to", 7, 0, false}).id;
    const std::int32_t rent = host_.Accounts().Create({"Rent", 12, 0, false}).id;
    const std::int32_t name = host_.Names().Create("Northfield", NameKind::kVendor).id;
    CAccnt credited(host_.Services().accounts, dueTo, kFeatureTypeStandard);
    CAccnt debited(host_.Services().accounts, rent, kFeatureTypeStandard);
    host_.Services().journal.CreateGeneralJournalEntry(credited, debited, "10", ids, name, "Northfield");
  });

  const auto header = host_.Request(
      Access::kRead, [&] { return host_.Transactions().FindHeader(static_cast<std::int32_t>(ids.first)); });
  ASSERT_TRUE(header.has_value());
  EXPECT_EQ(header->date, DateType32(2020, 2, 29));
}

TEST_F(AHostByAClock, TimesItsRelations) {
  DBMultiEntityRelation relation{};
  std::strcpy(relation.realmId, "9130347");

  host_.Request(Access::kWrite, [&] {
    host_.Services().multiEntity.SaveRelation(relation);
    host_.Services().multiEntity.UpdateRelationForRealm(relation, "9130347");
  });

  const auto now = std::chrono::floor<std::chrono::milliseconds>(clock_.Now()).time_since_epoch().count();
  EXPECT_EQ(relation.createdAt, now);
  EXPECT_EQ(relation.changedAt, now);
}

TEST_F(AHostByAClock, TellsTheModuleTheTime) {
  _SYSTEMTIME now{};

  host_.Services().platform->GetLocalTime(now);

  EXPECT_EQ(now.wYear, 2020);
  EXPECT_EQ(now.wMonth, 2);
  EXPECT_EQ(now.wDayOfWeek, 6);
  EXPECT_EQ(now.wDay, 29);
  EXPECT_EQ(now.wHour, 23);
  EXPECT_EQ(now.wMinute, 0);
  EXPECT_EQ(now.wSecond, 0);
  EXPECT_EQ(now.wMilliseconds, 250);
}

TEST_F(AHostByAClock, TimesTheLinesOfItsLog) {
  Util::Ops::MessageFunctor(host_.Log(), Util::Ops::Level::kTrace, Util::Ops::EventType::kFlow, "source", 1, "Short",
                            "signature")("text");
  host_.Log().Flush();

  const std::vector<LogLine> lines = LogReader(CompanyFile::LogPath(path_)).LastLines(10);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_THAT(lines[0].time, StartsWith("2020-02-"));
  EXPECT_THAT(lines[0].time, EndsWith(":00:00.250Z"));
}

}  // namespace
}  // namespace standalone
