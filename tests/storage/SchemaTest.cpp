#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/storage/sqlite/Schema.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::HasSubstr;

// What the file itself promises, whoever writes it.
class TheLedger : public CompanyFixture {
 protected:
  TheLedger() {
    Run("INSERT INTO account VALUES (1, NULL, 'Rent', 'Rent', 12, 0, 0), (2, NULL, 'Cash', 'Cash', 0, 0, 0);"
        "INSERT INTO txn (id, type, date, memo) VALUES (10, 8, 1, '')");
  }

  void Run(const char* sql) { file_.Data().Execute(sql); }

  void PostTwoLines() {
    Run("INSERT INTO txn_line VALUES (20, 10, 1, 500, ''), (21, 10, 2, -500, ''); UPDATE txn SET posted = 1");
  }

  std::string Refusal(const char* sql) {
    return MessageOf<ConstraintViolation>([&] { Run(sql); });
  }

  std::int64_t Number(const char* sql) { return file_.Data().QueryNumber(sql); }

 private:
  CompanyFile file_{path_};
};

TEST_F(TheLedger, PostsATransactionWhoseLinesSumToZero) {
  PostTwoLines();

  EXPECT_EQ(Number("SELECT posted FROM txn"), 1);
}

TEST_F(TheLedger, DoesNotPostATransactionThatIsOutOfBalance) {
  Run("INSERT INTO txn_line VALUES (20, 10, 1, 500, ''), (21, 10, 2, -499, '')");

  EXPECT_THAT(Refusal("UPDATE txn SET posted = 1"), HasSubstr("must sum to zero"));
}

TEST_F(TheLedger, DoesNotPostATransactionOfOneLine) {
  Run("INSERT INTO txn_line VALUES (20, 10, 1, 0, '')");

  EXPECT_THAT(Refusal("UPDATE txn SET posted = 1"), HasSubstr("at least two lines"));
}

TEST_F(TheLedger, DoesNotTakeATransactionThatIsPostedBeforeItHasLines) {
  EXPECT_THAT(Refusal("INSERT INTO txn (type, date, memo, posted) VALUES (8, 1, '', 1)"),
              HasSubstr("after its lines are entered"));
}

TEST_F(TheLedger, DoesNotChangeAPostedTransaction) {
  PostTwoLines();

  EXPECT_THAT(Refusal("UPDATE txn SET posted = 0"), HasSubstr("does not change"));
  EXPECT_THAT(Refusal("UPDATE txn SET date = 2"), HasSubstr("does not change"));
  EXPECT_THAT(Refusal("UPDATE txn SET type = 9"), HasSubstr("does not change"));
}

TEST_F(TheLedger, DoesNotChangeTheLinesOfAPostedTransaction) {
  PostTwoLines();

  EXPECT_THAT(Refusal("INSERT INTO txn_line VALUES (22, 10, 1, 0, '')"), HasSubstr("takes no more lines"));
  EXPECT_THAT(Refusal("UPDATE txn_line SET amount = 0"), HasSubstr("does not change"));
  EXPECT_THAT(Refusal("DELETE FROM txn_line WHERE id = 20"), HasSubstr("is not deleted"));
}

TEST_F(TheLedger, DoesNotMoveALineIntoAPostedTransaction) {
  PostTwoLines();
  Run("INSERT INTO txn (id, type, date, memo) VALUES (11, 8, 1, '');"
      "INSERT INTO txn_line VALUES (30, 11, 1, 0, '')");

  EXPECT_THAT(Refusal("UPDATE txn_line SET txn_id = 10 WHERE id = 30"), HasSubstr("does not change"));
}

TEST_F(TheLedger, DeletesAPostedTransactionAsAWhole) {
  PostTwoLines();

  Run("DELETE FROM txn WHERE id = 10");

  EXPECT_EQ(Number("SELECT count(*) FROM txn_line"), 0);
}

TEST_F(TheLedger, LetsThePartnersConfirmationIntoAPostedTransaction) {
  PostTwoLines();

  Run("UPDATE txn SET partner_confirmed = 1");

  EXPECT_EQ(Number("SELECT partner_confirmed FROM txn"), 1);
}

TEST_F(TheLedger, TakesAmountsInItsRangeOnly) {
  Run("INSERT INTO txn_line VALUES (20, 10, 1, 9999999999999, ''), (21, 10, 2, -9999999999999, '')");

  EXPECT_THAT(Refusal("INSERT INTO txn_line VALUES (22, 10, 1, 10000000000000, '')"), HasSubstr("CHECK"));
}

TEST_F(TheLedger, TakesLinesOfAccountsThatExistOnly) {
  EXPECT_THAT(Refusal("INSERT INTO txn_line VALUES (20, 10, 99, 0, '')"), HasSubstr("FOREIGN KEY"));
}

TEST_F(TheLedger, KeepsAnAccountThatHasLines) {
  PostTwoLines();

  EXPECT_THAT(Refusal("DELETE FROM account WHERE id = 1"), HasSubstr("FOREIGN KEY"));
}

TEST_F(TheLedger, NumbersLinesUpToTheLastNumberThatHasAFollower) {
  Run("INSERT INTO txn_line VALUES (2147483646, 10, 1, 0, '')");

  EXPECT_THAT(Refusal("INSERT INTO txn_line (txn_id, account_id, amount, memo) VALUES (10, 1, 0, '')"),
              HasSubstr("CHECK"));
}

}  // namespace
}  // namespace standalone
