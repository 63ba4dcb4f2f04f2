// A company file that a program of a later version opens.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/company/Session.h"
#include "standalone/values/Errors.h"
#include "tests/company/CompanyFixture.h"
#include "tests/storage/NextSchema.h"
#include "tests/storage/OldCompanyFiles.h"
#include "tests/storage/Telling.h"

namespace standalone {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using Steps = std::vector<const char*>;

class AMigration : public testing::Test {
 protected:
  AMigration() {
    told_ = ToldBy(ThisVersionAnd({}));
    std::filesystem::remove(Before(ThisVersionAnd({})));
  }

  // Opens the company with a program that knows these steps; what its books hold then.
  std::string ToldBy(const Steps& steps) { return ToldBy(steps, file_.Path()); }
  std::string ToldBy(const Steps& steps, const std::filesystem::path& file) {
    opening_.reset();
    StandaloneHost host(file, kAdministratorName, Options(steps));
    const Session session(host);
    return Tell(host);
  }
  std::string RefusalBy(const Steps& steps) {
    opening_.reset();
    return MessageOf<CompanyFileError>([&] { CompanyFile file(file_.Path(), Options(steps).file); });
  }
  // What a program that knows these steps makes of an SQL statement.
  void RunBy(const Steps& steps, const char* sql) {
    CompanyFile(file_.Path(), Options(steps).file).Data().Execute(sql);
  }
  std::int64_t NumberBy(const Steps& steps, const char* sql) {
    return CompanyFile(file_.Path(), Options(steps).file).Data().QueryNumber(sql);
  }
  // What books with a program that knows these steps answers; the number of the entry is in `txnId_`.
  MEStatusCode BookBy(const Steps& steps) {
    StandaloneHost host(file_.Path(), kAdministratorName, Options(steps));
    const Session session(host);
    return host.Request(Access::kWrite, [&] {
      return MultiEntityDriver::RecordGeneralJournalEntry("5120774003618",
                                                          {.name = "Rent", .type = 12, .accountId = 12}, 7, "10.00",
                                                          "one-more", {.name = "Walker", .nameId = -1}, txnId_);
    });
  }

  HostOptions Options(const Steps& steps) {
    HostOptions options;
    options.file.busyTimeout = std::chrono::milliseconds(200);
    options.file.schema = steps;
    options.file.tell = [this](const Opening& opening) {
      opening_ = opening;
    };
    return options;
  }

  std::filesystem::path Before(const Steps& steps, const std::string& more = {}) const {
    return file_.Path().string() + ".before-" + std::to_string(steps.size()) + more;
  }
  std::vector<std::string> FilesBesideTheCompany() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(file_.Path().parent_path())) {
      const std::string name = entry.path().filename().string();
      if (entry.path() != file_.Path() && !name.ends_with(".log")) names.push_back(name);
    }
    return names;
  }

  const OldCompanyFile file_{"version-1", "birch.company"};
  std::string told_;  // what the books held before
  std::optional<Opening> opening_;
  std::uint32_t txnId_ = 0;
};

TEST_F(AMigration, IsNotNeededByAFileOfThisVersion) {
  ToldBy(ThisVersionAnd({}));

  EXPECT_FALSE(opening_.has_value());
  EXPECT_THAT(FilesBesideTheCompany(), IsEmpty());
}

TEST_F(AMigration, AddsAColumn) {
  const Steps next = ThisVersionAnd({kAddsAColumn});

  EXPECT_EQ(ToldBy(next), told_);

  EXPECT_EQ(NumberBy(next, "SELECT count(*) FROM account WHERE note = ''"), 17);
}

TEST_F(AMigration, MakesATableAnewThatOthersReferTo) {
  const Steps next = ThisVersionAnd({kMakesTransactionsAnew});

  EXPECT_EQ(ToldBy(next), told_);

  EXPECT_EQ(NumberBy(next, "SELECT count(*) FROM txn WHERE due_date = 0"), 9);
  EXPECT_THROW(RunBy(next, "DELETE FROM txn_line WHERE id = 1"), ConstraintViolation);
  EXPECT_THROW(RunBy(next, "INSERT INTO txn_line VALUES (99, 98, 1, 0, '')"), ConstraintViolation);
}

TEST_F(AMigration, GivesNoNumberOfADeletedTransactionAgain) {
  const Steps next = ThisVersionAnd({kMakesTransactionsAnew});
  RunBy(ThisVersionAnd({}), "DELETE FROM me_transaction WHERE txn_id = 10; DELETE FROM txn WHERE id = 10");

  EXPECT_EQ(BookBy(next), MEStatusSuccess);

  EXPECT_EQ(txnId_, 11U);
}

TEST_F(AMigration, GivesNoNumberAgainWhenNoTransactionIsLeft) {
  const Steps next = ThisVersionAnd({kMakesTransactionsAnew});
  RunBy(ThisVersionAnd({}), "DELETE FROM me_transaction; DELETE FROM txn");

  EXPECT_EQ(BookBy(next), MEStatusSuccess);

  EXPECT_EQ(txnId_, 11U);
}

TEST_F(AMigration, ReplacesAnIndexAndATrigger) {
  const Steps next = ThisVersionAnd({kReplacesAnIndexAndATrigger});

  EXPECT_EQ(ToldBy(next), told_);

  EXPECT_THAT(MessageOf<ConstraintViolation>([&] { RunBy(next, "DELETE FROM txn_line WHERE id = 1"); }),
              HasSubstr("no line of a posted transaction is deleted"));
}

TEST_F(AMigration, DropsATable) {
  ToldBy(ThisVersionAnd({kAddsATable}));
  const Steps next = ThisVersionAnd({kAddsATable, kDropsATable});

  EXPECT_EQ(ToldBy(next), told_);

  EXPECT_EQ(NumberBy(next, "SELECT count(*) FROM sqlite_schema WHERE name = 'note'"), 0);
}

TEST_F(AMigration, TakesAllStepsAtOnce) {
  const Steps next =
      ThisVersionAnd({kAddsAColumn, kMakesTransactionsAnew, kReplacesAnIndexAndATrigger, kAddsATable, kDropsATable});

  EXPECT_EQ(ToldBy(next), told_);

  ASSERT_TRUE(opening_ && opening_->migrated);
  EXPECT_EQ(opening_->migrated->from, kSchemaSteps.size());
  EXPECT_EQ(opening_->migrated->to, next.size());
  EXPECT_EQ(BookBy(next), MEStatusSuccess);
  EXPECT_FALSE(opening_->onlyRead);
}

TEST_F(AMigration, IsDoneOnce) {
  const Steps next = ThisVersionAnd({kAddsAColumn});
  ToldBy(next);

  EXPECT_EQ(ToldBy(next), told_);

  EXPECT_FALSE(opening_.has_value());
}

TEST_F(AMigration, LeavesNothingToTheProgramOfBefore) {
  ToldBy(ThisVersionAnd({kAddsAColumn}));

  EXPECT_THAT(RefusalBy(ThisVersionAnd({})), HasSubstr("newer program"));
}

TEST_F(AMigration, TakesWhatACrashLeftInTheWriteAheadLog) {
  const OldCompanyFile crashed("version-1", "crashed.company");
  const Steps next = ThisVersionAnd({kAddsAColumn});

  EXPECT_EQ(ToldBy(next, crashed.Path()), ReadFile(OldCompanyFile::Place("version-1") / "crashed.txt"));

  const std::filesystem::path before = opening_->migrated->before;
  EXPECT_EQ(ToldBy(ThisVersionAnd({}), before), ReadFile(OldCompanyFile::Place("version-1") / "crashed.txt"));
}

TEST_F(AMigration, KeepsTheCompanyAsItWasBesideIt) {
  const Steps next = ThisVersionAnd({kAddsAColumn});

  ToldBy(next);

  EXPECT_EQ(opening_->migrated->before.filename(), Before(next).filename());
  EXPECT_THAT(FilesBesideTheCompany(), ElementsAre(Before(next).filename().string()));
  EXPECT_EQ(ToldBy(ThisVersionAnd({}), Before(next)), told_);
}

TEST_F(AMigration, KeepsTheCompanyForItsReadersOnly) {
#ifdef _WIN32
  GTEST_SKIP() << "who may read a file is said by its folder on Windows";
#endif
  constexpr std::filesystem::perms kOwnerAndGroup =
      std::filesystem::perms::owner_read | std::filesystem::perms::owner_write | std::filesystem::perms::group_read;
  const Steps next = ThisVersionAnd({kAddsAColumn});
  std::filesystem::permissions(file_.Path(), kOwnerAndGroup);

  ToldBy(next);

  EXPECT_EQ(std::filesystem::status(Before(next)).permissions(), kOwnerAndGroup);
  EXPECT_EQ(std::filesystem::status(file_.Path()).permissions(), kOwnerAndGroup);
}

TEST_F(AMigration, CopiesTheCompanyOverNoOtherFile) {
  const Steps next = ThisVersionAnd({kAddsAColumn});
  WriteFile(Before(next), "precious");
  WriteFile(Before(next, ".1"), "precious, too");

  ToldBy(next);

  EXPECT_EQ(opening_->migrated->before.filename(), Before(next, ".2").filename());
  EXPECT_EQ(ReadFile(Before(next)), "precious");
  EXPECT_EQ(ReadFile(Before(next, ".1")), "precious, too");
  EXPECT_EQ(ToldBy(ThisVersionAnd({}), Before(next, ".2")), told_);
}

// It would be a part of the copy.
TEST_F(AMigration, CopiesTheCompanyBesideNoJournalOfAnotherFile) {
  const Steps next = ThisVersionAnd({kAddsAColumn});
  const std::filesystem::path crashedLog = OldCompanyFile::Place("version-1") / "crashed.company-wal";
  WriteFile(Before(next, "-wal"), ReadFile(crashedLog));

  ToldBy(next);

  EXPECT_EQ(opening_->migrated->before.filename(), Before(next, ".1").filename());
  EXPECT_EQ(ReadFile(Before(next, "-wal")), ReadFile(crashedLog));
  EXPECT_EQ(ToldBy(ThisVersionAnd({}), Before(next, ".1")), told_);
}

TEST_F(AMigration, TakesNoLinkForACopy) {
  const Steps next = ThisVersionAnd({kAddsAColumn});
  std::error_code error;
  std::filesystem::create_symlink(file_.Path(), Before(next), error);
  if (error) GTEST_SKIP() << "no symbolic links here";

  ToldBy(next);

  EXPECT_EQ(opening_->migrated->before.filename(), Before(next, ".1").filename());
  EXPECT_EQ(ToldBy(ThisVersionAnd({}), Before(next, ".1")), told_);
}

TEST_F(AMigration, KeepsOneCopyOfTheSameBooks) {
  const Steps next = ThisVersionAnd({kAddsAColumn});
  ToldBy(next);
  WriteFile(file_.Path(), ReadFile(Before(next)));

  EXPECT_EQ(ToldBy(next), told_);

  EXPECT_EQ(opening_->migrated->before.filename(), Before(next).filename());
  EXPECT_THAT(FilesBesideTheCompany(), ElementsAre(Before(next).filename().string()));
}

TEST_F(AMigration, KeepsTheCopyBesideTheFileThatALinkLeadsTo) {
  const Steps next = ThisVersionAnd({kAddsAColumn});
  const TemporaryFolder elsewhere;
  std::error_code error;
  std::filesystem::create_symlink(file_.Path(), elsewhere / "link.company", error);
  if (error) GTEST_SKIP() << "no symbolic links here";

  EXPECT_EQ(ToldBy(next, elsewhere / "link.company"), told_);

  EXPECT_TRUE(std::filesystem::exists(Before(next)));
}

// A step that fails leaves the company to the program of before, byte for byte or at least with the same books.
class AFailedMigration : public AMigration {
 protected:
  void ExpectAsItWas() {
    EXPECT_FALSE(opening_.has_value());
    EXPECT_THAT(FilesBesideTheCompany(), testing::Not(testing::Contains(HasSubstr("before"))));
    EXPECT_EQ(ToldBy(ThisVersionAnd({})), told_);
    EXPECT_EQ(NumberBy(ThisVersionAnd({}), "SELECT count(*) FROM pragma_table_info('account') WHERE name = 'note'"), 0);
  }
};

TEST_F(AFailedMigration, OfAStepThatFailsHalfwayLeavesTheCompanyAsItWas) {
  const Steps next = ThisVersionAnd(
      {kAddsAColumn, kMakesTransactionsAnew, "CREATE TABLE half (id INTEGER) STRICT; INSERT INTO nowhere VALUES (1)"});

  EXPECT_THAT(RefusalBy(next), AllOf(HasSubstr(file_.Path().string()), HasSubstr("is as it was"),
                                     HasSubstr("schema version " + std::to_string(next.size())), HasSubstr("nowhere")));

  ExpectAsItWas();
}

TEST_F(AFailedMigration, OfAStepThatBreaksARuleOfItsOwnLeavesTheCompanyAsItWas) {
  EXPECT_THAT(RefusalBy(ThisVersionAnd({kAddsAColumn, "DELETE FROM txn_line WHERE id = 1"})),
              HasSubstr("is not deleted"));

  ExpectAsItWas();
}

TEST_F(AFailedMigration, ThatWouldLoseALineLeavesTheCompanyAsItWas) {
  EXPECT_THAT(
      RefusalBy(ThisVersionAnd({kAddsAColumn, "DELETE FROM txn WHERE id = 1; DELETE FROM txn_line WHERE txn_id = 1"})),
      HasSubstr("the bookings would not be the same"));

  ExpectAsItWas();
}

TEST_F(AFailedMigration, ThatWouldLeaveAReferenceToNothingLeavesTheCompanyAsItWas) {
  EXPECT_THAT(RefusalBy(ThisVersionAnd({kAddsAColumn, "DELETE FROM name WHERE id = 2"})),
              HasSubstr("a row of txn refers to one that is missing"));

  ExpectAsItWas();
}

TEST_F(AFailedMigration, ThatWouldUnbalanceATransactionLeavesTheCompanyAsItWas) {
  EXPECT_THAT(RefusalBy(ThisVersionAnd({kAddsAColumn,
                                        "DROP TRIGGER txn_line_update_posted;"
                                        "UPDATE txn_line SET amount = amount + 1 WHERE id = 1;"})),
              HasSubstr("the lines of transaction 1 do not sum to zero"));

  ExpectAsItWas();
}

TEST_F(AFailedMigration, OfADamagedCompanyLeavesItAsItIs) {
  RunBy(ThisVersionAnd({}), "DROP TRIGGER txn_post");
  const std::string bytes = ReadFile(file_.Path());

  EXPECT_THAT(RefusalBy(ThisVersionAnd({kAddsAColumn})), AllOf(HasSubstr("is damaged"), HasSubstr("trigger txn_post")));

  EXPECT_EQ(ReadFile(file_.Path()), bytes);
  EXPECT_THAT(FilesBesideTheCompany(), testing::Not(testing::Contains(HasSubstr("before"))));
}

// Under each of its names it would have a write-ahead log of its own.
TEST_F(AMigration, OfAFileWithASecondNameIsThatOfACopy) {
  std::error_code error;
  const std::filesystem::path other = file_.Path().string() + ".other";
  std::filesystem::create_hard_link(file_.Path(), other, error);
  if (error) GTEST_SKIP() << "no hard links here";
  const std::string before = ReadFile(file_.Path());

  EXPECT_EQ(ToldBy(ThisVersionAnd({kAddsAColumn})), told_);

  ASSERT_TRUE(opening_.has_value());
  EXPECT_EQ(opening_->onlyRead, OnlyRead::kOtherNames);
  EXPECT_TRUE(opening_->migrated.has_value());
  EXPECT_EQ(ReadFile(file_.Path()), before);
  EXPECT_THAT(FilesBesideTheCompany(), ElementsAre(other.filename().string()));
}

TEST_F(AFailedMigration, ForWhichNoCopyCanBeMadeLeavesTheCompanyAsItWas) {
  const Steps next = ThisVersionAnd({kAddsAColumn});
  const std::filesystem::path longName = file_.Path().parent_path() / (std::string(230, 'x') + ".company");
  std::filesystem::copy_file(file_.Path(), longName);

  EXPECT_THAT(MessageOf<CompanyFileError>([&] { CompanyFile(longName, Options(next).file); }),
              AllOf(HasSubstr("is as it was"), HasSubstr("could not be copied"), HasSubstr("Check that")));

  EXPECT_EQ(ToldBy(ThisVersionAnd({}), longName), told_);
}

// Another program that keeps the company open would go on by the rules of before.
TEST_F(AFailedMigration, OfACompanyThatIsOpenElsewhereSaysSo) {
  StandaloneHost other(file_.Path());
  other.Request(Access::kRead, [&] { other.Settings().Get(); });

  EXPECT_THAT(RefusalBy(ThisVersionAnd({kAddsAColumn})),
              AllOf(HasSubstr("is as it was"), HasSubstr("open in another program"), HasSubstr("Close it there")));

  EXPECT_EQ(other.Request(Access::kRead, [&] { return other.Settings().Get().companyName; }), "Birch Services Company");
}

// What others have added to a company file stays in it.
class WhatOthersAdded : public AMigration {
 protected:
  void Add(const char* sql) { RunBy(ThisVersionAnd({}), sql); }
  std::int64_t Found(const Steps& steps, const char* name) {
    return NumberBy(steps, ("SELECT count(*) FROM sqlite_schema WHERE name = '" + std::string(name) + "'").c_str());
  }
};

TEST_F(WhatOthersAdded, StaysWhenItsTableIsMadeAnew) {
  Add("CREATE VIEW entered AS SELECT memo FROM txn; CREATE INDEX \"by \"\"memo\" ON txn (memo);"
      "CREATE TABLE seen (id INTEGER); CREATE TRIGGER see AFTER INSERT ON txn BEGIN INSERT INTO seen VALUES (NEW.id); "
      "END; CREATE TRIGGER enter INSTEAD OF INSERT ON entered BEGIN INSERT INTO seen VALUES (0); END");
  const Steps next = ThisVersionAnd({kMakesTransactionsAnew});

  EXPECT_EQ(ToldBy(next), told_);

  EXPECT_THAT(opening_->migrated->left, IsEmpty());
  EXPECT_EQ(NumberBy(next, "SELECT count(*) FROM entered"), 9);
  EXPECT_EQ(Found(next, "by \"memo"), 1);
  EXPECT_EQ(Found(next, "see"), 1);
  EXPECT_EQ(Found(next, "enter"), 1);
  EXPECT_EQ(NumberBy(next, "SELECT count(*) FROM seen"), 0);
}

TEST_F(WhatOthersAdded, IsNamedWhenItDoesNotFitAnyMore) {
  ToldBy(ThisVersionAnd({kAddsAColumn}));
  RunBy(ThisVersionAnd({kAddsAColumn}), "CREATE INDEX by_note ON account (note)");
  const Steps next = ThisVersionAnd({kAddsAColumn, "ALTER TABLE account DROP COLUMN note"});

  EXPECT_EQ(ToldBy(next), told_);

  EXPECT_THAT(opening_->migrated->left, ElementsAre("index by_note"));
}

// A program that has the company open in a way that nobody sees: a journal of another kind shows it to no one.
TEST_F(AMigration, OfACompanyThatIsOpenUnseenStopsTheOtherProgramsWriting) {
  RunBy(ThisVersionAnd({}), "PRAGMA journal_mode = DELETE");
  StandaloneHost other(file_.Path());
  other.Request(Access::kRead, [&] { other.Settings().Get(); });

  EXPECT_EQ(ToldBy(ThisVersionAnd({kAddsAColumn})), told_);

  EXPECT_THAT(MessageOf<UnitOfWorkError>([&] {
                other.Request(Access::kWrite,
                              [&] { Statement(other.Data(), "INSERT INTO preference VALUES ('key', 'value')").Run(); });
              }),
              AllOf(HasSubstr("Nothing was saved"), HasSubstr("schema version"), HasSubstr("open it again")));
}

}  // namespace
}  // namespace standalone
