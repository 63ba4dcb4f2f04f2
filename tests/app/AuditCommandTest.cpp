#include "app/Books.h"
#include "app/OtherProgram.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(Books, TheAuditTrailIsToldInSentences) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:view"});

  const Outcome outcome = Run({"audit", "show", kFile, "--what", "user"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("  Admin ("), HasSubstr(") added the user Robin: administrator no; "),
                                 HasSubstr("rights bills:view")));
}

TEST_F(Books, TheAuditTrailIsOneObjectALineForPrograms) {
  Done({"users", "add", kFile, "Robin"});

  const Json audit = Answer({"audit", "show", kFile, "--by", "Admin", "--what", "user.add"}).at("audit");

  ASSERT_EQ(audit.size(), 1U);
  EXPECT_EQ(audit[0].at("action"), "user.add");
  EXPECT_EQ(audit[0].at("subject"), "the user Robin");
  EXPECT_EQ(audit[0].at("changes")[0], Json::parse(R"({"field":"administrator","before":null,"after":"no"})"));
}

TEST_F(Books, TheAuditTrailIsARowAChangeForASpreadsheet) {
  Done({"settings", "set", kFile, "company-name", "Alder, Sons & \"Co\""});

  const Outcome outcome = Run({"audit", "show", kFile, "--what", "settings", "--csv"});

  EXPECT_THAT(outcome.out, StartsWith("number,time,clockSetTo,user,systemUser,action,subject,firstTransaction,"
                                      "lastTransaction,field,before,after\n"));
  EXPECT_THAT(outcome.out, HasSubstr(",company-name,"));
  EXPECT_THAT(outcome.out, HasSubstr(",\"Alder, Sons & \"\"Co\"\"\"\n"));
}

TEST_F(Books, TheAuditTrailIsForASpreadsheetOrForAProgramNotForBoth) {
  const Outcome outcome = Run({"audit", "show", kFile, "--csv", "--json"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(Json::parse(outcome.err).at("error").at("message"),
            "--csv and --json exclude each other; give the one in which the list is wanted");
}

TEST_F(Books, TheAuditTrailOfAPeriodHasItsDaysOnly) {
  EXPECT_THAT(Run({"audit", "show", kFile, "--from", "2199-01-01"}).out, HasSubstr("no such lines"));
  EXPECT_THAT(Run({"audit", "show", kFile, "--to", "1999-12-31"}).out, HasSubstr("no such lines"));
  EXPECT_EQ(Run({"audit", "show", kFile, "--from", "yesterday"}).exitCode, 2);
}

TEST_F(Books, TheAuditTrailIsNotAskedForDeedsThatThereAreNot) {
  const Outcome kind = Run({"audit", "show", kFile, "--what", "jornal"});
  const Outcome deed = Run({"audit", "show", kFile, "--what", "bill.corect"});

  EXPECT_EQ(kind.exitCode, 2);
  EXPECT_THAT(kind.err, AllOf(HasSubstr("There is no kind of deed \"jornal\"; give account, bill, check, "),
                              HasSubstr("Did you mean \"journal\"?")));
  EXPECT_EQ(deed.exitCode, 2);
  EXPECT_THAT(deed.err, HasSubstr("Did you mean \"bill.correct\"?"));
  for (const char* const there : {"company.backup", "exchange", "identity.export", "import", "partner"}) {
    EXPECT_EQ(Run({"audit", "show", kFile, "--what", there}).exitCode, 0) << there;
    EXPECT_THAT(Run({"audit", "show", "--help"}).out,
                HasSubstr(std::string(there).substr(0, std::string(there).find('.'))));
  }
}

TEST_F(Books, TheAuditTrailIsAskedForUsersOfNowAndOfBefore) {
  Done({"users", "add", kFile, "Robin"});
  Done({"users", "add", kFile, "Ines", "--administrator"});
  Done({"users", "add", kFile, "Kim", "--user", "Ines"});
  Done({"users", "remove", kFile, "Ines"});

  const Outcome nobody = Run({"audit", "show", kFile, "--by", "Robinn"});

  EXPECT_EQ(nobody.exitCode, 2);
  EXPECT_THAT(nobody.err, AllOf(HasSubstr("There is no user \"Robinn\""), HasSubstr("Did you mean \"Robin\"?")));
  EXPECT_THAT(Run({"audit", "show", kFile, "--by", "robin"}).out, HasSubstr("no such lines"));
  EXPECT_THAT(Run({"audit", "show", kFile, "--by", "ines"}).out, HasSubstr("added the user Kim"));
}

TEST_F(Books, AWholeAuditTrailIsVerified) {
  const Json audit = Answer({"audit", "verify", kFile}).at("audit");

  EXPECT_EQ(audit.at("whole"), true);
  EXPECT_EQ(audit.at("head").get<std::string>().size(), 64U);
}

TEST_F(Books, ABrokenAuditTrailSaysWhereItBreaks) {
  Done({"users", "add", kFile, "Robin"});
  Done({"users", "remove", kFile, "Robin"});
  const std::string changed =
      "DROP TRIGGER audit_update; UPDATE audit SET user = 'nobody' WHERE action = 'user.add'; "
      "CREATE TRIGGER audit_update BEFORE UPDATE ON audit BEGIN\n"
      "  SELECT RAISE(ABORT, 'a line of the audit trail does not change');\nEND";
  OtherProgram(In(kFile)).Runs(changed.c_str());

  const Outcome outcome = Run({"audit", "verify", kFile});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, HasSubstr("breaks at line"));
}
