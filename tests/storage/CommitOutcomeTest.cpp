// What is said of work whose saving has failed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/storage/sqlite/TemporaryCopy.h"
#include "standalone/values/Errors.h"
#include "tests/company/CompanyFixture.h"
#include "tests/support/FailingDisk.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ACommitThatFails : public CompanyFixture {
 protected:
  static void AddRent(StandaloneHost& host) { host.Accounts().Create({"Rent", KrEnumerations::kExpense, 0, false}); }
  static void AddPower(StandaloneHost& host) { host.Accounts().Create({"Power", KrEnumerations::kExpense, 0, false}); }
  // So that the write-ahead log has begun.
  static void WorkWell(StandaloneHost& host) {
    host.Request(Access::kWrite, [&] { AddRent(host); });
  }
  static std::int64_t Accounts(StandaloneHost& host) { return Count(host, "SELECT count(*) FROM account"); }
  // What whoever opens the company would find, were this program to end now.
  std::int64_t AccountsAfterACrash() const {
    const TemporaryCopy copy(path_);
    StandaloneHost host(copy.File());
    return Accounts(host);
  }

  FailingDisk disk_;
};

// It has reached the log, and perhaps the disk.
TEST_F(ACommitThatFails, WhenItIsBroughtToTheDiskMayHaveSavedAll) {
  StandaloneHost host(path_);
  WorkWell(host);
  disk_.onSync = [] {
    return SQLITE_IOERR_FSYNC;
  };

  const std::string message = MessageOf<OutcomeUnknown>([&] { host.Request(Access::kWrite, [&] { AddPower(host); }); });

  EXPECT_THAT(message, AllOf(HasSubstr("It is not known whether the work was saved"), HasSubstr(path_.string()),
                             HasSubstr("Check that its disk"), Not(HasSubstr("Nothing was saved"))));
  EXPECT_EQ(AccountsAfterACrash(), 2);
}

TEST_F(ACommitThatFails, WhenTheDiskCannotBeWrittenMayHaveSavedAll) {
  StandaloneHost host(path_);
  WorkWell(host);
  disk_.onWrite = [] {
    return SQLITE_IOERR_WRITE;
  };

  EXPECT_THAT(MessageOf<OutcomeUnknown>([&] { host.Request(Access::kWrite, [&] { AddPower(host); }); }),
              HasSubstr("It is not known whether the work was saved"));
}

TEST_F(ACommitThatFails, WhenTheDiskIsFullHasSavedNothing) {
  StandaloneHost host(path_);
  WorkWell(host);
  disk_.onWrite = [] {
    return SQLITE_FULL;
  };

  const std::string message =
      MessageOf<UnitOfWorkError>([&] { host.Request(Access::kWrite, [&] { AddPower(host); }); });

  EXPECT_THAT(message, AllOf(HasSubstr("Nothing was saved"), Not(HasSubstr("not known"))));
  EXPECT_EQ(AccountsAfterACrash(), 1);
  EXPECT_EQ(Accounts(host), 1);
}

TEST_F(ACommitThatFails, BeforeAQuestionIsToldOfAfterAll) {
  StandaloneHost host(path_);
  WorkWell(host);
  host.MessageBoxes().SetAnswerer([](const Question&) { return true; });
  disk_.onSync = [] {
    return SQLITE_IOERR_FSYNC;
  };

  EXPECT_THROW(host.Request(Access::kWrite,
                            [&] {
                              AddPower(host);
                              const Util::SourceContext here{"file", "operation"};
                              try {
                                host.Services().messages.YesNoInfoMsgO(here, ResourceInstance{1}, 14715, 1, 2, true,
                                                                       true);
                              } catch (const std::exception&) {
                                return MEStatusDeclined;
                              }
                              return MEStatusSuccess;
                            }),
               OutcomeUnknown);
}

TEST_F(ACommitThatFails, AfterAQuestionHasSavedWhatCameBeforeIt) {
  StandaloneHost host(path_);
  WorkWell(host);
  host.MessageBoxes().SetAnswerer([this](const Question&) {
    disk_.onWrite = [] {
      return SQLITE_FULL;
    };
    return true;
  });

  const std::string message = MessageOf<UnitOfWorkError>([&] {
    host.Request(Access::kWrite, [&] {
      AddPower(host);
      const Util::SourceContext here{"file", "operation"};
      host.Services().messages.YesNoInfoMsgO(here, ResourceInstance{1}, 14715, 1, 2, true, true);
      host.Names().Create("Northfield", NameKind::kVendor);
    });
  });

  EXPECT_THAT(message,
              AllOf(HasSubstr("Only what came before the question was saved"), Not(HasSubstr("Nothing was saved"))));
  EXPECT_EQ(Accounts(host), 2);
  EXPECT_EQ(Count(host, "SELECT count(*) FROM name"), 0);
}

TEST_F(ACommitThatFails, OfWorkThatWroteNothingHasSavedNothing) {
  StandaloneHost host(path_);
  WorkWell(host);
  disk_.onSync = [] {
    return SQLITE_IOERR_FSYNC;
  };

  EXPECT_NO_THROW(host.Request(Access::kWrite, [&] { return host.Settings().Get().companyName; }));
}

TEST_F(ACommitThatFails, DoesNotSpoilTheNextOne) {
  StandaloneHost host(path_);
  WorkWell(host);
  disk_.onSync = [] {
    return SQLITE_IOERR_FSYNC;
  };
  EXPECT_THROW(host.Request(Access::kWrite, [&] { AddPower(host); }), OutcomeUnknown);
  disk_.onSync = {};

  host.Request(Access::kWrite, [&] { AddPower(host); });

  EXPECT_EQ(Accounts(host), 2);
}

}  // namespace
}  // namespace standalone
