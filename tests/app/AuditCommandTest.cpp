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

  EXPECT_THAT(outcome.out, StartsWith("number,time,clock_set_to,user,system_user,action,subject,first_transaction,"
                                      "last_transaction,field,before,after\n"));
  EXPECT_THAT(outcome.out, HasSubstr(",company-name,"));
  EXPECT_THAT(outcome.out, HasSubstr(",\"Alder, Sons & \"\"Co\"\"\"\n"));
}

TEST_F(Books, TheAuditTrailOfAPeriodHasItsDaysOnly) {
  EXPECT_THAT(Run({"audit", "show", kFile, "--from", "2199-01-01"}).out, HasSubstr("no such lines"));
  EXPECT_THAT(Run({"audit", "show", kFile, "--to", "1999-12-31"}).out, HasSubstr("no such lines"));
  EXPECT_EQ(Run({"audit", "show", kFile, "--from", "yesterday"}).exitCode, 2);
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
