#include "app/PairedCompanies.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

}  // namespace

class OutboxCommand : public PairedCompanies {};

TEST_F(OutboxCommand, WhatIsSentAndWhatIsNotIsListedWithWhatIsNotAgreedInAll) {
  const std::string sent = BillInTheInbox("NP-1");
  const std::string entered = EnterBill("NP-2");

  const Outcome list = Run({"outbox", "list", kFile, "--wide"});

  EXPECT_EQ(list.exitCode, 0) << list.err;
  EXPECT_THAT(list.out, AllOf(StartsWith("Partner "), HasSubstr("  sent "), HasSubstr("  entered "), HasSubstr(sent),
                              HasSubstr(entered), HasSubstr("\nNot agreed in all "), HasSubstr(" 90.00 ")));
}

TEST_F(OutboxCommand, WhatIsSettledIsListedOnlyWithTheRest) {
  const std::string request = BillInTheInbox();
  ASSERT_EQ(AcceptRequest(request).exitCode, 0);
  Carry();

  EXPECT_EQ(Run({"outbox", "list", kFile}).out, "No requests.\n");
  EXPECT_EQ(Answer({"outbox", "list", kFile, "--all"}).at("requests").at(0).at("requestId"), request);
}

TEST_F(OutboxCommand, ProgramsAndSpreadsheetsGetTheLineAndHowFarItIs) {
  const std::string request = BillInTheInbox();

  const Json listed = Answer({"outbox", "list", kFile}).at("requests").at(0);
  const std::string csv = Run({"outbox", "list", kFile, "--csv"}).out;

  EXPECT_EQ(listed.at("partner"), kBirch);
  EXPECT_EQ(listed.at("requestId"), request);
  EXPECT_EQ(listed.at("transaction"), 1);
  EXPECT_EQ(listed.at("amount"), "45.00");
  EXPECT_EQ(listed.at("state"), "sent");
  EXPECT_EQ(listed.at("sent"), true);
  EXPECT_EQ(listed.at("withdrawing"), false);
  EXPECT_EQ(listed.at("lost"), false);
  EXPECT_THAT(csv,
              AllOf(StartsWith("partner,realm,requestId,transaction,line,type,"), HasSubstr("," + request + ",1,")));
}

TEST_F(OutboxCommand, OneRequestIsShownWithWhatToDoNext) {
  const std::string request = EnterBill();
  const std::string entered = Run({"outbox", "show", kFile, request}).out;
  Done({"exchange", "send", kFile});

  const std::string sent = Run({"outbox", "show", kFile, request}).out;

  EXPECT_THAT(entered, AllOf(HasSubstr("State:         entered\n"), HasSubstr("Transaction:   1, line "),
                             HasSubstr("multientity exchange send alder.company " + request)));
  EXPECT_THAT(sent, AllOf(HasSubstr("State:         sent\n"),
                          HasSubstr("multientity outbox withdraw alder.company " + request)));
}

TEST_F(OutboxCommand, WhatIsWithdrawnInTimeIsNotBookedAndIsClosed) {
  const std::string request = BillInTheInbox();

  const Outcome withdrawn = Run({"outbox", "withdraw", kFile, request});
  const Json meanwhile = InOutbox(request);
  Carry();

  EXPECT_EQ(withdrawn.exitCode, 0) << withdrawn.err;
  EXPECT_THAT(withdrawn.out, AllOf(StartsWith("Withdrawing request " + request + " to Birch Services Company, a bill "),
                                   HasSubstr("what the partner has decided by then stands")));
  EXPECT_EQ(meanwhile.at("state"), "sent");
  EXPECT_EQ(meanwhile.at("withdrawing"), true);
  EXPECT_EQ(InOutbox(request).at("state"), "closed");
  EXPECT_EQ(InInbox(request).at("state"), "withdrawn");
}

TEST_F(OutboxCommand, WhatWasAcceptedMeanwhileStands) {
  const std::string request = BillInTheInbox();
  ASSERT_EQ(AcceptRequest(request).exitCode, 0);

  Done({"outbox", "withdraw", kFile, request});
  Carry();

  EXPECT_EQ(InOutbox(request).at("state"), "established");
  EXPECT_EQ(InInbox(request).at("state"), "accepted");
}

TEST_F(OutboxCommand, WhatWasNotSentIsNotWithdrawn) {
  const std::string request = EnterBill();
  const std::string before = Whole(kFile);

  const Outcome outcome = Run({"outbox", "withdraw", kFile, request});

  EXPECT_EQ(outcome.exitCode, 2) << outcome.out;
  EXPECT_EQ(Whole(kFile), before);
}

TEST_F(OutboxCommand, ARequestThatIsNotThereIsRefused) {
  EnterBill();

  for (const char* const verb : {"show", "withdraw"}) {
    const Outcome outcome = Run({"outbox", verb, kFile, "R-1"});

    EXPECT_EQ(outcome.exitCode, 2) << verb << outcome.out;
    EXPECT_THAT(outcome.err, HasSubstr("R-1")) << verb;
  }
}

TEST_F(OutboxCommand, WhatRestoredBooksLostIsEnteredOnceMoreUnderItsRequest) {
  Done({"backup", kFile, "alder.backup"});
  const std::string request = BillInTheInbox();
  ASSERT_EQ(AcceptRequest(request).exitCode, 0);
  Carry();
  Done({"restore", "alder.backup", kFile, "--replace"});
  Carry();
  ASSERT_EQ(InOutbox(request).at("lost"), true);

  const std::string shown = Run({"outbox", "show", kFile, request}).out;
  const std::string status = Run({"exchange", "status", kFile}).out;
  const Outcome posted = Run({"bill", "record", kFile, "--lost", request, "--line", "Utilities", "90.00", "--partner",
                              kBirch, "--share", "45.00"});

  EXPECT_THAT(shown, HasSubstr("multientity bill record alder.company --lost " + request +
                               " --line ACCOUNT AMOUNT --partner \"" + kBirch + "\" --share 45.00\n"));
  EXPECT_THAT(status, HasSubstr("--lost REQUEST"));
  EXPECT_EQ(posted.exitCode, 0) << posted.err;
  EXPECT_EQ(InOutbox(request).at("state"), "established");
  EXPECT_EQ(InOutbox(request).at("lost"), false);

  const Outcome again = Run({"bill", "record", kFile, "--lost", request, "--line", "Utilities", "90.00"});
  EXPECT_EQ(again.exitCode, 2) << again.out;
  EXPECT_THAT(again.err, HasSubstr("is in these books, and was not lost"));
}

TEST_F(OutboxCommand, WhatRestoredBooksLostIsNotAskedForASecondTimeUnlessItIsAnotherOne) {
  Done({"backup", kFile, "alder.backup"});
  const std::string request = BillInTheInbox();
  Done({"restore", "alder.backup", kFile, "--replace"});
  Carry();
  ASSERT_EQ(InOutbox(request).at("lost"), true);
  const std::string before = Whole(kFile);
  const Arguments anew{"bill",   "record",    kFile,   "--name",    "Northern Power", "--date",  "2024-03-05",
                       "--line", "Utilities", "90.00", "--partner", kBirch,           "--share", "50%"};

  const Outcome refused = Run(anew);
  const Json forPrograms = ErrorOf(anew);

  EXPECT_EQ(refused.exitCode, 2) << refused.out;
  EXPECT_THAT(refused.err, AllOf(HasSubstr(std::string(kBirch) + " was sent the bill " + request +
                                           " of 2024-03-05 over 45.00 USD, which these books lost"),
                                 HasSubstr("--lost REQUEST"), HasSubstr("--again")));
  EXPECT_EQ(forPrograms.at("remedy"), "enter-under-the-lost-request");
  EXPECT_EQ(Whole(kFile), before);
  EXPECT_EQ(Run(With(anew, {"--again"})).exitCode, 0);
}

TEST_F(OutboxCommand, WhatRestoredBooksLostIsNotAskedForByACorrectionUnlessItIsAnotherOne) {
  Done({"backup", kFile, "alder.backup"});
  const std::string request = BillInTheInbox();
  Done({"restore", "alder.backup", kFile, "--replace"});
  Carry();
  EnterBill("NP-2", "60.00");
  const Arguments correct{"bill",      "correct", kFile,       "1",    "--number", "NP-1", "--line",
                          "Utilities", "90.00",   "--partner", kBirch, "--share",  "50%"};

  const Outcome refused = Run(correct);

  EXPECT_EQ(refused.exitCode, 2) << refused.out;
  EXPECT_THAT(refused.err, AllOf(HasSubstr(request), HasSubstr("under the same document number, \"NP-1\"")));
  EXPECT_EQ(Run(With(correct, {"--again"})).exitCode, 0);
}

TEST_F(OutboxCommand, ARequestIsNeededToBeShownWithdrawnOrNotedOn) {
  for (const char* const verb : {"show", "withdraw", "note"}) {
    const Outcome outcome = Run({"outbox", verb, kFile});

    EXPECT_EQ(outcome.exitCode, 2) << outcome.out;
    EXPECT_THAT(outcome.err, HasSubstr("REQUEST is required"));
  }
}
