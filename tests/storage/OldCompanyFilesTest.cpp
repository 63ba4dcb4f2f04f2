// Books that earlier versions of the program wrote. Each open in this one, whole.
#include <gtest/gtest.h>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/company/Session.h"
#include "tests/storage/OldCompanyFiles.h"
#include "tests/storage/Telling.h"

namespace standalone {
namespace {

class ACompanyFileOfVersion1 : public testing::Test {
 protected:
  std::string Told(const char* name) const {
    const OldCompanyFile file("version-1", name);
    StandaloneHost host(file.Path());
    const Session session(host);
    return Tell(host);
  }
};

TEST_F(ACompanyFileOfVersion1, OpensWithAllThatItHolds) {
  EXPECT_EQ(Told("birch.company"), ReadFile(OldCompanyFile::Place("version-1") / "birch.txt"));
}

TEST_F(ACompanyFileOfVersion1, OpensAfterACrashWithAllThatWasCommitted) {
  EXPECT_EQ(Told("crashed.company"), ReadFile(OldCompanyFile::Place("version-1") / "crashed.txt"));
}

TEST_F(ACompanyFileOfVersion1, HasItsRowsMarkedAsOfBeforeWithTheirNumbers) {
  const OldCompanyFile file("version-1", "birch.company");
  StandaloneHost host(file.Path());

  host.Request(Access::kRead, [&] {
    std::vector<DBMultiEntityTransaction> rows;
    host.Intercompany().List(rows);
    std::vector<std::int16_t> states;
    for (const DBMultiEntityTransaction& row : rows) {
      states.push_back(row.state);
      EXPECT_TRUE(host.Intercompany().IsOfBefore(row.txnId, row.targetId)) << row.txnId;
    }
    EXPECT_EQ(states, (std::vector<std::int16_t>{0, 3, 2, 3, 4, 3, 3, 3}));
  });
}

TEST_F(ACompanyFileOfVersion1, HasWhatWaitedInItStillWaiting) {
  const OldCompanyFile file("version-1", "birch.company");
  StandaloneHost host(file.Path());

  EXPECT_EQ(host.Pending().Need() & kTransactionsWait, kTransactionsWait);
}

TEST_F(ACompanyFileOfVersion1, HasWhatIsBookedSinceUnmarked) {
  const OldCompanyFile file("version-1", "birch.company");
  StandaloneHost host(file.Path());

  host.Request(Access::kWrite, [&] {
    DBMultiEntityTransaction row{};
    row.txnId = 500;
    row.relationId = 1;
    row.targetId = 900;
    host.Intercompany().Add(row);

    EXPECT_FALSE(host.Intercompany().IsOfBefore(500, 900));
    EXPECT_TRUE(host.Intercompany().IsOfBefore(2, 5));
  });
}

class ACompanyFileOfVersion2 : public testing::Test {
 protected:
  const OldCompanyFile file_{"version-2", "birch.company"};
  StandaloneHost host_{file_.Path()};
};

TEST_F(ACompanyFileOfVersion2, OpensWithAllThatItHolds) {
  const Session session(host_);

  EXPECT_EQ(Tell(host_), ReadFile(OldCompanyFile::Place("version-2") / "birch.txt"));
}

TEST_F(ACompanyFileOfVersion2, GoesOnWithItsAuditTrail) {
  host_.Request(Access::kRead, [&] {
    std::vector<std::string> actions;
    host_.Audit().ForEach({}, [&](const AuditLine& line) { actions.push_back(line.action); });
    EXPECT_EQ(actions, (std::vector<std::string>{"company.migrate", "import", "journal.record", "transaction.state",
                                                 "settings.change", "company.migrate"}));
  });
}

TEST_F(ACompanyFileOfVersion2, KnowsWhichEntriesAreItsOwn) {
  constexpr std::int32_t kAboutWhatThePartnerOwes = 30;
  constexpr std::int32_t kOfThePartnersRequest = 34;

  host_.Request(Access::kRead, [&] {
    EXPECT_TRUE(host_.OwnRequests().Has(kAboutWhatThePartnerOwes));
    EXPECT_FALSE(host_.OwnRequests().Has(kOfThePartnersRequest));
  });
}

TEST_F(ACompanyFileOfVersion2, HasItsBooksOpen) {
  host_.Request(Access::kRead, [&] { EXPECT_EQ(host_.Settings().Get().closingDate, NullDate()); });
}

class ACompanyFileOfVersion3 : public testing::TestWithParam<const char*> {
 protected:
  static std::string Kept() {
    return ReadFile(OldCompanyFile::Place("version-3") / (std::string(GetParam()) + ".txt"));
  }

  const OldCompanyFile file_{"version-3", (std::string(GetParam()) + ".company").c_str()};
  StandaloneHost host_{file_.Path()};
  const Session session_{host_};
};

TEST_P(ACompanyFileOfVersion3, OpensWithAllThatItHolds) {
  EXPECT_EQ(Tell(host_) + TellOfTheDesk(host_), Kept());
}

INSTANTIATE_TEST_SUITE_P(, ACompanyFileOfVersion3, testing::Values("alder", "birch"),
                         [](const auto& company) { return std::string(company.param); });

TEST_F(ACompanyFileOfVersion1, TakesMoreBookings) {
  const OldCompanyFile file("version-1", "birch.company");
  StandaloneHost host(file.Path());
  const Session session(host);
  std::uint32_t txnId = 0;

  const MEStatusCode status = host.Request(Access::kWrite, [&] {
    return MultiEntityDriver::RecordGeneralJournalEntry("5120774003618", {.name = "Rent", .type = 12, .accountId = 12},
                                                        7, "10.00", "one-more", {.name = "Walker", .nameId = -1},
                                                        txnId);
  });

  EXPECT_EQ(status, MEStatusSuccess);
  EXPECT_EQ(txnId, 11U);
}

}  // namespace
}  // namespace standalone
