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
