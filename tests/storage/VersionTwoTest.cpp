// A company of schema version 1 that this program opens.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/company/StandaloneHost.h"
#include "standalone/values/Sha256.h"
#include "tests/company/CompanyFixture.h"
#include "tests/storage/OldCompanyFiles.h"

namespace standalone {
namespace {

using testing::Contains;
using testing::Field;
using testing::Optional;

class ACompanyOfVersion1 : public testing::Test {
 protected:
  static std::vector<AuditLine> AuditOf(StandaloneHost& host) {
    std::vector<AuditLine> lines;
    host.Request(Access::kRead,
                 [&] { host.Audit().ForEach({}, [&](const AuditLine& line) { lines.push_back(line); }); });
    return lines;
  }
  static auto Held(const std::string& field, const std::string& before) {
    return AllOf(Field(&AuditChange::field, field), Field(&AuditChange::before, Optional(before)));
  }

  const OldCompanyFile file_{"version-1", "birch.company"};
};

TEST_F(ACompanyOfVersion1, BeginsItsAuditTrailWithWhatItHeld) {
  StandaloneHost host(file_.Path());

  const std::vector<AuditLine> lines = AuditOf(host);

  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].action, "company.migrate");
  EXPECT_EQ(lines[0].user, "");
  EXPECT_THAT(lines[0].changes,
              Contains(Held("transactions", std::to_string(Count(host, "SELECT count(*) FROM txn")))));
  EXPECT_THAT(lines[0].changes, Contains(Held("lines", std::to_string(Count(host, "SELECT count(*) FROM txn_line")))));
  const std::string kept = ReadFile(file_.Path().string() + ".before-4");
  EXPECT_THAT(lines[0].changes, Contains(Held("SHA-256 of the copy", Sha256Of(kept))));
}

TEST_F(ACompanyOfVersion1, MarksItsIntercompanyRowsAsOfBefore) {
  StandaloneHost host(file_.Path());
  const std::int64_t rows = Count(host, "SELECT count(*) FROM me_transaction");
  DBMultiEntityTransaction row{};
  row.txnId = 900;
  row.targetId = 900;
  row.relationId = 1;

  host.Request(Access::kWrite, [&] { host.Intercompany().Add(row); });

  EXPECT_GT(rows, 0);
  EXPECT_EQ(Count(host, "SELECT count(*) FROM me_transaction WHERE of_before = 1"), rows);
  EXPECT_EQ(Count(host, "SELECT of_before FROM me_transaction WHERE txn_id = 900"), 0);
}

TEST_F(ACompanyOfVersion1, KeepsTwoDecimals) {
  StandaloneHost host(file_.Path());

  EXPECT_EQ(Count(host, "SELECT decimals FROM company"), 2);
}

TEST_F(ACompanyOfVersion1, KeepsTwoDecimalsWhateverItsCurrencyHas) {
  SqliteDatabase(file_.Path(), std::chrono::seconds(5)).Execute("UPDATE company SET home_currency = 'JPY'");
  StandaloneHost host(file_.Path());

  const Settings settings = host.Request(Access::kRead, [&] { return host.Settings().Get(); });

  EXPECT_EQ(settings.homeCurrency, "JPY");
  EXPECT_EQ(settings.decimals, kTwoDecimals);
}

TEST_F(ACompanyOfVersion1, IsBroughtForwardOnce) {
  {
    const StandaloneHost first(file_.Path());
  }
  StandaloneHost again(file_.Path());

  EXPECT_EQ(AuditOf(again).size(), 1U);
}

}  // namespace
}  // namespace standalone
