#include <gmock/gmock.h>

#include "standalone/books/AuditTable.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Sha256.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class TheAuditTrail : public CompanyFixture {
 protected:
  static AuditDeed Deed(const std::string& action, std::optional<TransactionRange> transactions = {}) {
    return {.action = action,
            .subject = "bill 4",
            .transactions = transactions,
            .changes = {{.field = "state", .before = "pending", .after = "established"}}};
  }
  static AuditStamp By(const std::string& user) {
    return {.at = 1'700'000'000'123, .clock = "", .user = user, .systemUser = "root"};
  }
  void Append(const AuditStamp& stamp, const AuditDeed& deed) {
    host_.Request(Access::kWrite, [&] { host_.Audit().Append(stamp, deed); });
  }
  AuditCheck Check() {
    return host_.Request(Access::kRead, [&] { return host_.Audit().Check(); });
  }
  std::vector<std::int64_t> NumbersOf(const AuditFilter& filter) {
    std::vector<std::int64_t> numbers;
    host_.Request(Access::kRead, [&] {
      host_.Audit().ForEach(filter, [&](const AuditLine& line) { numbers.push_back(line.number); });
    });
    return numbers;
  }
  // What no program of ours does.
  void Tamper(const char* sql) {
    FileOf(host_).Execute("DROP TRIGGER audit_insert; DROP TRIGGER audit_update; DROP TRIGGER audit_delete");
    FileOf(host_).Execute(sql);
  }

  StandaloneHost host_{path_};
};

TEST_F(TheAuditTrail, BeginsWithTheMakingOfTheCompany) {
  std::vector<AuditLine> lines;
  host_.Request(Access::kRead,
                [&] { host_.Audit().ForEach({}, [&](const AuditLine& line) { lines.push_back(line); }); });

  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].action, "company.make");
  EXPECT_EQ(lines[0].changes.at(0).field, "company-name");
  EXPECT_EQ(lines[0].changes.at(0).before, std::nullopt);
  EXPECT_EQ(lines[0].changes.at(0).after, "Birch Services");
}

TEST_F(TheAuditTrail, TellsALineAsItWasWritten) {
  Append({.at = 5, .clock = "2026-01-31T09:30:00", .user = "Anna \"A\"", .systemUser = "söm"},
         Deed("transaction.state", TransactionRange{.first = 4, .last = 9}));

  AuditLine told;
  host_.Request(Access::kRead, [&] { host_.Audit().ForEach({}, [&](const AuditLine& line) { told = line; }); });

  EXPECT_EQ(told.number, 2);
  EXPECT_EQ(told.at, 5);
  EXPECT_EQ(told.clock, "2026-01-31T09:30:00");
  EXPECT_EQ(told.user, "Anna \"A\"");
  EXPECT_EQ(told.systemUser, "söm");
  EXPECT_EQ(told.subject, "bill 4");
  EXPECT_EQ(told.transactions->first, 4);
  EXPECT_EQ(told.transactions->last, 9);
  EXPECT_EQ(told.changes.at(0).before, "pending");
  EXPECT_EQ(told.changes.at(0).after, "established");
}

TEST_F(TheAuditTrail, GrowsByOneLineAtMostInAUnitOfWork) {
  const std::int64_t before = Check().lines;

  EXPECT_THROW(host_.Request(Access::kWrite,
                             [&] {
                               host_.Record(Deed("journal.record"));
                               host_.Record(Deed("journal.record"));
                             }),
               std::logic_error);
  host_.Request(Access::kWrite, [&] { host_.Record(Deed("journal.record")); });

  EXPECT_EQ(Check().lines, before + 1);
}

TEST_F(TheAuditTrail, IsWholeWithEachLineThatIsAppended) {
  const std::string first = Check().head;
  Append(By("Anna"), Deed("journal.record"));

  const AuditCheck check = Check();

  EXPECT_EQ(check.lines, 2);
  EXPECT_FALSE(check.breakAt.has_value());
  EXPECT_NE(check.head, first);
}

TEST_F(TheAuditTrail, CarriesTheSha256OfTheNetstringsOfTheLineBefore) {
  host_.Request(Access::kWrite, [&] { host_.Audit().Append(By("Anna"), Deed("journal.record")); });
  const std::string previous = FileOf(host_).QueryText("SELECT previous FROM audit WHERE id = 2");

  const std::string head = Check().head;

  EXPECT_EQ(head, Sha256Of("1:2,64:" + previous +
                           ",13:1700000000123,0:,4:Anna,4:root,14:journal.record,0:,0:,6:bill 4,"
                           "60:[{\"field\":\"state\",\"before\":\"pending\",\"after\":\"established\"}],"));
}

TEST_F(TheAuditTrail, WritesChangesAsJsonThatAnyProgramReads) {
  AuditDeed deed = Deed("settings.change");
  deed.changes = {{.field = "memo", .before = {}, .after = "5\" pipe, \\ and \x7F"},
                  {.field = "na\tme", .before = "Söm", .after = "line\nbreak \x01"},
                  {.field = "", .before = "", .after = {}},
                  {.field = "\xE2\x80", .before = {}, .after = {}}};

  Append(By("Anna"), deed);

  EXPECT_EQ(FileOf(host_).QueryText("SELECT changes FROM audit WHERE id = 2"),
            "[{\"field\":\"memo\",\"after\":\"5\\\" pipe, \\\\ and \x7F\"},"
            "{\"field\":\"na\\tme\",\"before\":\"Söm\",\"after\":\"line\\nbreak \\u0001\"},"
            "{\"field\":\"\",\"before\":\"\"},"
            "{\"field\":\"\xEF\xBF\xBD\"}]");
}

TEST_F(TheAuditTrail, RefusesEveryChangeButAnotherLineAtItsEnd) {
  Append(By("Anna"), Deed("journal.record"));

  for (const char* const sql :
       {"UPDATE audit SET user = 'Robin' WHERE id = 2", "DELETE FROM audit WHERE id = 2", "DELETE FROM audit",
        "INSERT INTO audit SELECT 4, previous, at, clock, user, system_user, action, first_txn_id, last_txn_id, "
        "subject, "
        "changes FROM audit WHERE id = 2",
        "INSERT OR REPLACE INTO audit SELECT 2, previous, at, clock, user, system_user, action, first_txn_id, "
        "last_txn_id, subject, changes FROM audit WHERE id = 1"}) {
    EXPECT_THAT(MessageOf<ConstraintViolation>([&] { FileOf(host_).Execute(sql); }), HasSubstr("audit trail")) << sql;
  }
  EXPECT_EQ(Check().lines, 2);
}

TEST_F(TheAuditTrail, BreaksBehindALineThatWasChanged) {
  for (int line = 0; line < 3; ++line) Append(By("Anna"), Deed("journal.record"));

  Tamper("UPDATE audit SET user = 'Robin' WHERE id = 2");

  EXPECT_EQ(Check().breakAt, 3);
}

TEST_F(TheAuditTrail, BreaksWhereALineWasTakenOut) {
  for (int line = 0; line < 3; ++line) Append(By("Anna"), Deed("journal.record"));

  Tamper("DELETE FROM audit WHERE id = 2");

  EXPECT_EQ(Check().breakAt, 3);
}

TEST_F(TheAuditTrail, BreaksAtItsFirstLineWhenThatIsGone) {
  Append(By("Anna"), Deed("journal.record"));

  Tamper("DELETE FROM audit WHERE id = 1");

  EXPECT_EQ(Check().breakAt, 2);
}

TEST_F(TheAuditTrail, HasAnotherHeadWhenItsLastLineWasChanged) {
  Append(By("Anna"), Deed("journal.record"));
  const std::string head = Check().head;

  Tamper("UPDATE audit SET user = 'Robin' WHERE id = 2");

  EXPECT_NE(Check().head, head);
}

TEST_F(TheAuditTrail, IsAskedByUserActionAndTransaction) {
  Append(By("Anna"), Deed("journal.record", TransactionRange{.first = 3, .last = 3}));
  Append(By("Robin"), Deed("journal.remove", TransactionRange{.first = 3, .last = 3}));
  Append(By("Anna"), Deed("import", TransactionRange{.first = 4, .last = 9}));

  EXPECT_THAT(NumbersOf({.user = "anna", .action = "", .txnId = {}}), ElementsAre(2, 4));
  EXPECT_THAT(NumbersOf({.user = "", .action = "journal", .txnId = {}}), ElementsAre(2, 3));
  EXPECT_THAT(NumbersOf({.user = "", .action = "journal.remove", .txnId = {}}), ElementsAre(3));
  EXPECT_THAT(NumbersOf({.user = "", .action = "journ", .txnId = {}}), ElementsAre());
  EXPECT_THAT(NumbersOf({.user = "", .action = "", .txnId = 7}), ElementsAre(4));
  EXPECT_THAT(NumbersOf({.user = "Anna", .action = "journal", .txnId = 3}), ElementsAre(2));
}

TEST_F(TheAuditTrail, SaysWhichLineCannotBeRead) {
  Tamper("UPDATE audit SET changes = 'nonsense' WHERE id = 1");

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { NumbersOf({}); }), HasSubstr("line 1 of the audit trail"));
}

}  // namespace
}  // namespace standalone
