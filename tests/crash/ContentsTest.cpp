#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "crash/Contents.h"
#include "standalone/books/AuditTable.h"
#include "standalone/company/CompanyFile.h"
#include "support/TemporaryFolder.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

// One journal entry with its row, and past it whatever a program would have to be broken for.
constexpr const char* kSoundBooks =
    "INSERT INTO account VALUES (1, NULL, 'Rent', 'Rent', 12, 0, 0, ''), (2, NULL, 'Due', 'Due', 7, 0, 0, '');"
    "INSERT INTO me_relation VALUES (1, '1001', 'Birch', 0, 3, 0, 0, 1, 1, 2);"
    "INSERT INTO txn (id, type, date, memo) VALUES (5, 8, 1, '');"
    "INSERT INTO txn_line VALUES (1, 5, 1, 100, ''), (2, 5, 2, -100, '');"
    "UPDATE txn SET posted = 1;"
    "INSERT INTO me_transaction VALUES (1, 5, 1, 1, 'request', 8, 3, 0);"
    "DROP TRIGGER audit_update; DROP TRIGGER audit_delete;"
    "DROP TRIGGER txn_line_update_posted; DROP TRIGGER txn_line_delete_posted; DROP TRIGGER txn_change_posted;"
    "DROP TRIGGER txn_insert_posted; DROP TRIGGER txn_line_insert_posted;"
    "DROP INDEX me_transaction_journal_request;";

class TheInspection : public testing::Test {
 protected:
  TheInspection() {
    standalone::NewCompany company;
    company.name = "Alder Supply Company";
    standalone::CompanyFile::Create(file_, company);
    TellOfTheEntry();
    Tamper(kSoundBooks);
  }

  void TellOfTheEntry() const {
    standalone::SqliteDatabase database(file_, std::chrono::milliseconds::zero());
    standalone::UnitOfWork unit(database, standalone::Access::kWrite);
    standalone::AuditTable(database).Append({.at = 0, .clock = "", .user = "Admin", .systemUser = "root"},
                                            {.action = "journal.record",
                                             .subject = "journal 5",
                                             .transactions = standalone::TransactionRange{.first = 5, .last = 5},
                                             .changes = {}});
    unit.Commit();
  }

  void Tamper(const char* sql) const {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file_.string().c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    sqlite3_close(database);
  }

  std::vector<std::string> FaultsAfter(const char* sql) const {
    Tamper(sql);
    return Inspect(file_).faults;
  }

  std::vector<std::string> SeparatedAfter(const char* sql) const {
    Tamper(sql);
    return Inspect(file_).separated;
  }

  standalone::TemporaryFolder folder_;
  const std::filesystem::path file_ = folder_ / "alder.company";
};

TEST_F(TheInspection, FindsNothingWrongWithSoundBooksAndReadsThem) {
  const Inspection found = Inspect(file_);

  EXPECT_THAT(found.faults, IsEmpty());
  EXPECT_THAT(found.separated, IsEmpty());
  ASSERT_THAT(found.contents.transactions, Contains(Pair(5, testing::_)));
  const Transaction& entry = found.contents.transactions.at(5);
  EXPECT_THAT(entry.lines, ElementsAre(EntryLine{1, "Rent", 100}, EntryLine{2, "Due", -100}));
  EXPECT_THAT(entry.rows, ElementsAre(IntercompanyRow{1, "1001", "request", 8, 3}));
}

TEST_F(TheInspection, ReadsWhatATransactionIsJoinedTo) {
  Tamper(
      "INSERT INTO txn VALUES (6, 8, 1, NULL, '', 1, 0, '');"
      "INSERT INTO txn_line VALUES (3, 6, 1, -100, ''), (4, 6, 2, 100, '');"
      "INSERT INTO me_transaction VALUES (2, 6, 3, 1, 'another', 8, 5, 0);"
      "INSERT INTO txn_link VALUES (6, 'reverses', 5);"
      "INSERT INTO me_own_request VALUES (3, 'reverses', 1)");

  const Contents found = Inspect(file_).contents;

  EXPECT_THAT(found.transactions.at(6).links, ElementsAre(Link{"reverses", 5}));
  EXPECT_THAT(found.transactions.at(6).rows, ElementsAre(IntercompanyRow{3, "1001", "another", 8, 5, "reverses", 1}));
  EXPECT_THAT(found.transactions.at(5).links, IsEmpty());
}

TEST_F(TheInspection, FindsATransactionThatDoesNotSumToZero) {
  EXPECT_THAT(FaultsAfter("UPDATE txn_line SET amount = 101 WHERE id = 1"),
              ElementsAre("does not sum to zero: transaction 5"));
}

TEST_F(TheInspection, FindsATransactionThatIsNotPosted) {
  EXPECT_THAT(FaultsAfter("UPDATE txn SET posted = 0"), ElementsAre("not posted: transaction 5"));
}

TEST_F(TheInspection, FindsATransactionWithOneLine) {
  EXPECT_THAT(FaultsAfter("DELETE FROM txn_line WHERE id = 2"), Contains("fewer than two lines: transaction 5"));
}

TEST_F(TheInspection, FindsABrokenReference) {
  EXPECT_THAT(FaultsAfter("UPDATE txn_line SET account_id = 77 WHERE id = 2"),
              ElementsAre("broken reference: txn_line 2 to account"));
}

TEST_F(TheInspection, FindsARequestThatIsBookedTwice) {
  EXPECT_THAT(FaultsAfter("INSERT INTO txn VALUES (6, 8, 1, NULL, '', 1, 0, '');"
                          "INSERT INTO txn_line VALUES (3, 6, 1, 100, ''), (4, 6, 2, -100, '');"
                          "INSERT INTO me_transaction VALUES (2, 6, 3, 1, 'request', 8, 3, 0)"),
              ElementsAre("booked twice: request request"));
}

TEST_F(TheInspection, FindsAnIndexThatContradictsItsTable) {
  EXPECT_THAT(FaultsAfter("PRAGMA writable_schema = ON;"
                          "UPDATE sqlite_schema SET rootpage = (SELECT rootpage FROM sqlite_schema WHERE name = "
                          "'txn_name') WHERE name = 'txn_line_account'"),
              Contains(HasSubstr("not sound: ")));
}

TEST_F(TheInspection, FindsAJournalEntryWithoutItsRow) {
  EXPECT_THAT(SeparatedAfter("DELETE FROM me_transaction"),
              ElementsAre("a journal entry without an intercompany row: transaction 5"));
}

TEST_F(TheInspection, FindsARowWithoutItsJournalEntry) {
  EXPECT_THAT(SeparatedAfter("DELETE FROM txn_line; DELETE FROM txn"),
              Contains("an intercompany row without its entry: transaction 5"));
}

TEST_F(TheInspection, FindsAnEntryThatTheAuditTrailDoesNotTellOf) {
  EXPECT_THAT(SeparatedAfter("UPDATE audit SET action = 'journal.remove' WHERE id = 2"),
              ElementsAre("not told by the audit trail: transaction 5"));
}

TEST_F(TheInspection, FindsABillThatTheAuditTrailDoesNotTellOf) {
  constexpr const char* kBillInThePlaceOfTheEntry =
      "UPDATE txn SET type = 9; UPDATE me_transaction SET txn_type = 9;"
      "UPDATE audit SET action = 'bill.record' WHERE id = 2";
  const auto untold = HasSubstr("not told by the audit trail: transaction 5");

  EXPECT_THAT(SeparatedAfter(kBillInThePlaceOfTheEntry), testing::Not(Contains(untold)));
  EXPECT_THAT(SeparatedAfter("UPDATE audit SET first_txn_id = 6, last_txn_id = 6 WHERE id = 2"), Contains(untold));
}

TEST_F(TheInspection, FindsAnEntryOfTheAuditTrailThatIsNotThere) {
  EXPECT_THAT(SeparatedAfter("DELETE FROM me_transaction; DELETE FROM txn_line; DELETE FROM txn"),
              ElementsAre("told by the audit trail but not there: transaction 5"));
}

TEST_F(TheInspection, FindsABreakOfTheAuditTrail) {
  EXPECT_THAT(SeparatedAfter("UPDATE audit SET user = 'Robin' WHERE id = 1"),
              ElementsAre("the audit trail breaks at line 2"));
}

TEST_F(TheInspection, FindsARowThatNamesALineOfAnotherEntry) {
  EXPECT_THAT(SeparatedAfter("UPDATE me_transaction SET target_id = 9"),
              ElementsAre("an intercompany row without its entry: transaction 5"));
}

TEST_F(TheInspection, SaysThatAFileCannotBeRead) {
  standalone::WriteFile(file_, std::string(5000, 'x'));

  EXPECT_THAT(Inspect(file_).faults, ElementsAre(HasSubstr("cannot be read")));
}

TEST_F(TheInspection, OfACopyLeavesTheFileAsItIs) {
  const std::string before = standalone::ReadFile(file_);

  const Inspection found = InspectCopy(file_);

  EXPECT_EQ(found.contents.transactions, Inspect(file_).contents.transactions);
  EXPECT_EQ(standalone::ReadFile(file_), before);
}

}  // namespace
