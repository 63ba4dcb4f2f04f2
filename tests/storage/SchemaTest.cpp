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
    Run("INSERT INTO account VALUES (1, NULL, 'Rent', 'Rent', 12, 0, 0, ''), (2, NULL, 'Cash', 'Cash', 0, 0, 0, '');"
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

TEST_F(TheLedger, PostsNothingOnAClosedDay) {
  Run("UPDATE company SET closing_date = 5;"
      "INSERT INTO txn_line VALUES (20, 10, 1, 500, ''), (21, 10, 2, -500, '')");

  EXPECT_THAT(Refusal("UPDATE txn SET posted = 1"), HasSubstr("the books are closed on that day"));
  Run("UPDATE company SET closing_date = 0; UPDATE txn SET posted = 1");
}

TEST_F(TheLedger, DeletesNothingOfAClosedDay) {
  PostTwoLines();
  Run("UPDATE company SET closing_date = 1");

  EXPECT_THAT(Refusal("DELETE FROM txn WHERE id = 10"), HasSubstr("the books are closed on that day"));
}

TEST_F(TheLedger, ChangesAClosedDayOnlyWhileThatIsAllowed) {
  Run("UPDATE company SET closing_date = 5; BEGIN; INSERT INTO after_close (id) VALUES (1)");

  PostTwoLines();

  EXPECT_THAT(Refusal("COMMIT"), HasSubstr("FOREIGN KEY"));
  Run("DELETE FROM after_close; COMMIT");
  EXPECT_EQ(Number("SELECT posted FROM txn"), 1);
}

TEST_F(TheLedger, ReversesATransactionOnce) {
  PostTwoLines();
  Run("INSERT INTO txn (id, type, date, memo) VALUES (11, 8, 1, ''), (12, 8, 1, ''), (13, 8, 1, '');"
      "INSERT INTO txn_link VALUES (11, 'reverses', 10)");

  EXPECT_THAT(Refusal("INSERT INTO txn_link VALUES (12, 'reverses', 10)"), HasSubstr("reversed already"));
  Run("INSERT INTO txn_link VALUES (12, 'reverses', 11); INSERT INTO txn_link VALUES (13, 'reverses', 10)");
}

TEST_F(TheLedger, KeepsTheLinksOfATransactionAsTheyAre) {
  PostTwoLines();
  Run("INSERT INTO txn (id, type, date, memo) VALUES (11, 8, 1, '');"
      "INSERT INTO txn_link VALUES (11, 'corrects', 10)");

  EXPECT_THAT(Refusal("UPDATE txn_link SET kind = 'moves'"), HasSubstr("does not change"));
  EXPECT_THAT(Refusal("DELETE FROM txn_link"), HasSubstr("is not deleted"));
}

TEST_F(TheLedger, KeepsWhatARequestNamesAsLongAsItsLineIsThere) {
  PostTwoLines();
  Run("INSERT INTO txn (id, type, date, memo) VALUES (11, 8, 1, '');"
      "INSERT INTO txn_line VALUES (30, 11, 1, -500, ''), (31, 11, 2, 500, '');"
      "INSERT INTO me_own_request VALUES (20, NULL, NULL), (30, 'reverses', 20)");

  EXPECT_THAT(Refusal("UPDATE me_own_request SET names = 'corrects' WHERE target_id = 30"), HasSubstr("not change"));
  EXPECT_THAT(Refusal("DELETE FROM me_own_request WHERE target_id = 30"), HasSubstr("is not deleted"));
  EXPECT_THAT(Refusal("DELETE FROM txn WHERE id = 10"), HasSubstr("FOREIGN KEY"));
  Run("DELETE FROM txn WHERE id = 11; DELETE FROM txn WHERE id = 10");
  EXPECT_EQ(Number("SELECT count(*) FROM me_own_request"), 0);
}

TEST_F(TheLedger, KeepsATransactionThatALaterOneIsLinkedTo) {
  PostTwoLines();
  Run("INSERT INTO txn (id, type, date, memo) VALUES (11, 8, 1, '');"
      "INSERT INTO txn_link VALUES (11, 'moves', 10)");

  EXPECT_THAT(Refusal("DELETE FROM txn WHERE id = 10"), HasSubstr("FOREIGN KEY"));
  Run("DELETE FROM txn WHERE id = 11; DELETE FROM txn WHERE id = 10");
  EXPECT_EQ(Number("SELECT count(*) FROM txn_link"), 0);
}

TEST_F(TheLedger, GivesAnAccountNumberOnce) {
  Run("UPDATE account SET number = '4000' WHERE id = 1");

  EXPECT_THAT(Refusal("UPDATE account SET number = '4000' WHERE id = 2"), HasSubstr("UNIQUE"));
  Run("UPDATE account SET deleted = 1 WHERE id = 1; UPDATE account SET number = '4000' WHERE id = 2");
}

TEST_F(TheLedger, NumbersLinesUpToTheLastNumberThatHasAFollower) {
  Run("INSERT INTO txn_line VALUES (2147483646, 10, 1, 0, '')");

  EXPECT_THAT(Refusal("INSERT INTO txn_line (txn_id, account_id, amount, memo) VALUES (10, 1, 0, '')"),
              HasSubstr("CHECK"));
}

TEST(TheSchema, HasTheDigestThatIsWrittenDown) {
  EXPECT_EQ(DigestOf(ObjectsMadeBy(SchemaSteps())), SchemaDigest());
}

}  // namespace
}  // namespace standalone
