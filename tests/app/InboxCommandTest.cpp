#include "app/PairedCompanies.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

}  // namespace

class InboxCommand : public PairedCompanies {};

TEST_F(InboxCommand, WhatAPartnerAsksIsListedWithWhatIsNewInAll) {
  const std::string request = BillInTheInbox();

  const Outcome list = Run({"inbox", "list", kBirchFile, "--wide"});

  EXPECT_EQ(list.exitCode, 0) << list.err;
  EXPECT_THAT(list.out, AllOf(StartsWith("Partner "), HasSubstr("Alder Supply Company  2024-03-05  bill"),
                              HasSubstr("NP-1"), HasSubstr("Northern Power"), HasSubstr(" 45.00 "), HasSubstr("  new "),
                              HasSubstr(request), HasSubstr("\nNew in all ")));
}

TEST_F(InboxCommand, AnEmptyInboxIsSaid) {
  EXPECT_EQ(Run({"inbox", "list", kBirchFile}).out, "No requests.\n");
}

TEST_F(InboxCommand, ProgramsAndSpreadsheetsGetWhatTheProposalSays) {
  const std::string request = BillInTheInbox();

  const Json listed = Answer({"inbox", "list", kBirchFile}).at("requests").at(0);
  const std::string csv = Run({"inbox", "list", kBirchFile, "--csv"}).out;

  EXPECT_EQ(listed.at("partner"), kAlder);
  EXPECT_EQ(listed.at("requestId"), request);
  EXPECT_EQ(listed.at("type"), "bill");
  EXPECT_EQ(listed.at("date"), "2024-03-05");
  EXPECT_EQ(listed.at("amount"), "45.00");
  EXPECT_EQ(listed.at("documentNumber"), "NP-1");
  EXPECT_EQ(listed.at("name"), "Northern Power");
  EXPECT_EQ(listed.at("state"), "new");
  EXPECT_EQ(listed.at("entry"), nullptr);
  EXPECT_THAT(csv,
              AllOf(StartsWith("partner,realm,requestId,type,typeNumber,date,amount,currency,documentNumber,name,"),
                    HasSubstr("\nAlder Supply Company,"), HasSubstr("," + request + ",bill,")));
}

TEST_F(InboxCommand, OneRequestIsShownWithWhatToDoNext) {
  const std::string request = BillInTheInbox();

  const Outcome shown = Run({"inbox", "show", kBirchFile, request});

  EXPECT_EQ(shown.exitCode, 0) << shown.err;
  EXPECT_THAT(shown.out, AllOf(HasSubstr("Amount:        45.00 USD\n"), HasSubstr("Their account: Utilities\n"),
                               HasSubstr("State:         new\n"),
                               HasSubstr("multientity inbox accept birch.company " + request +
                                         " --partner \"Alder Supply Company\" --expense ACCOUNT"),
                               HasSubstr("multientity inbox reject birch.company " + request)));
}

TEST_F(InboxCommand, WhatIsAcceptedWithANewAccountAndANewVendorIsEstablishedAtTheSender) {
  const std::string request = BillInTheInbox();

  const Outcome accepted = AcceptRequest(request);
  Carry();

  EXPECT_EQ(accepted.exitCode, 0) << accepted.err;
  EXPECT_THAT(accepted.out,
              AllOf(StartsWith("Booked request " + request +
                               " of Alder Supply Company, a bill of 2024-03-05 over 45.00 "
                               "USD, as journal entry 1 of 2024-03-05.\n"),
                    HasSubstr("The answer leaves with the next letters: multientity exchange run birch.company")));
  EXPECT_THAT(Run({"accounts", kBirchFile}).out, HasSubstr("Power"));
  EXPECT_THAT(Run({"names", kBirchFile}).out, HasSubstr("Northern Power"));
  EXPECT_EQ(InInbox(request).at("entry").at("transaction"), 1);
  EXPECT_EQ(InOutbox(request).at("state"), "established");
  EXPECT_EQ(Answer({"show", kFile, "1"}).at("confirmed"), true);
  EXPECT_EQ(Run({"inbox", "list", kBirchFile}).out, "No requests.\n");
  EXPECT_THAT(Run({"inbox", "list", kBirchFile, "--all", "--wide"}).out, HasSubstr("  accepted "));
}

TEST_F(InboxCommand, TheDayOnWhichTheBooksAreClosedIsToldBesideTheOneThatWasTaken) {
  const std::string request = BillInTheInbox();
  Done({"settings", "set", kBirchFile, "closing-date", "2024-03-31"});

  const Outcome accepted = AcceptRequest(request);

  EXPECT_EQ(accepted.exitCode, 0) << accepted.err;
  EXPECT_THAT(accepted.out,
              HasSubstr("journal entry 1 of 2024-04-01; the books are closed on 2024-03-05, which was meant.\n"));
}

TEST_F(InboxCommand, MoreThanWhatIsNamedIsOnlyAcceptedWhenThatIsSaid) {
  BillInTheInbox();
  const std::string before = Whole(kBirchFile);

  for (const char* const verb : {"accept", "reject"}) {
    const Outcome outcome = Run({"inbox", verb, kBirchFile});

    EXPECT_EQ(outcome.exitCode, 2) << outcome.out;
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("REQUEST"), HasSubstr("--partner"), HasSubstr("--up-to"),
                                   HasSubstr("--all"), HasSubstr("Usage:")));
  }
  EXPECT_EQ(Whole(kBirchFile), before);
}

TEST_F(InboxCommand, AllAndNamedOnesExcludeEachOther) {
  const std::string request = BillInTheInbox();

  const Outcome outcome = AcceptRequest(request, {"--all"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("--all"), HasSubstr("excludes"), HasSubstr("REQUEST")));
  EXPECT_EQ(InInbox(request).at("state"), "new");
}

TEST_F(InboxCommand, ANewAccountAndAnOldOneExcludeEachOther) {
  const std::string request = BillInTheInbox();

  EXPECT_EQ(AcceptRequest(request, {"--expense", "Repairs"}).exitCode, 2);
  EXPECT_EQ(AcceptRequest(request, {"--name", "Northern Power"}).exitCode, 2);
  EXPECT_EQ(InInbox(request).at("state"), "new");
}

TEST_F(InboxCommand, WhatIsUpToAnAmountIsAcceptedAndTheRestStays) {
  const std::string small = BillInTheInbox("NP-1", "20.00");
  const std::string large = BillInTheInbox("NP-2", "900.00");

  const Json accepted =
      Answer({"inbox", "accept", kBirchFile, "--up-to", "100", "--expense", "Repairs", "--new-name", "Northern Power"});

  ASSERT_EQ(accepted.at("booked").size(), 1U);
  EXPECT_EQ(accepted.at("booked").at(0).at("requestId"), small);
  EXPECT_EQ(accepted.at("booked").at(0).at("dateMoved"), false);
  EXPECT_EQ(accepted.at("left"), Json::array());
  EXPECT_EQ(InInbox(large).at("state"), "new");
}

TEST_F(InboxCommand, WhatIsLeftBesideWhatIsBookedIsToldWithWhatToDo) {
  BillInTheInbox("NP-1");
  BillInTheInbox("NP-2");

  const Outcome outcome =
      Run({"inbox", "accept", kBirchFile, "--all", "--new-expense", "Power", "--new-name", "Northern Power"});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Booked request "), HasSubstr("\nLeft request "),
                                 HasSubstr("\n  there is an account of that name; book to it with --expense\n")));
  EXPECT_EQ(outcome.err, "multientity: 1 of 2 requests left as before; why is told of each\n");
  EXPECT_EQ(Answer({"inbox", "list", kBirchFile}).at("requests").size(), 1U);
}

TEST_F(InboxCommand, WhatCannotBeBookedStaysWithTheReasonAndTheCommandEndsAsARefusalDoes) {
  const std::string request = BillInTheInbox();

  const Outcome outcome = Run({"inbox", "accept", kBirchFile, request, "--expense", "Repairs", "--json"});

  EXPECT_NE(outcome.exitCode, 0);
  const Json done = Json::parse(outcome.out);
  EXPECT_EQ(done.at("booked"), Json::array());
  ASSERT_EQ(done.at("left").size(), 1U);
  EXPECT_EQ(done.at("left").at(0).at("requestId"), request);
  const Json refusal = done.at("left").at(0).at("refusal");
  EXPECT_THAT(refusal.at("meaning").get<std::string>(), Not(testing::IsEmpty()));
  EXPECT_THAT(refusal.at("hint").get<std::string>(), Not(testing::IsEmpty()));
  const Json error = Json::parse(outcome.err).at("error");
  EXPECT_EQ(error.at("exit"), outcome.exitCode);
  EXPECT_EQ(error.at("meaning"), refusal.at("meaning"));
  EXPECT_EQ(InInbox(request).at("state"), "new");
}

TEST_F(InboxCommand, AReasonGoesWithTheRejectionToTheSender) {
  const std::string request = BillInTheInbox();

  const Outcome rejected = Run({"inbox", "reject", kBirchFile, request, "--reason", "Our half is 40.00"});
  Carry();

  EXPECT_EQ(rejected.exitCode, 0) << rejected.err;
  EXPECT_THAT(rejected.out, StartsWith("Rejected request " + request + " of Alder Supply Company, a bill of "));
  EXPECT_EQ(InInbox(request).at("state"), "rejected");
  EXPECT_EQ(InOutbox(request).at("state"), "came-back");
  EXPECT_EQ(InOutbox(request).at("reason"), "Our half is 40.00");
  EXPECT_THAT(Run({"outbox", "show", kFile, request}).out,
              AllOf(HasSubstr("Reason:        Our half is 40.00\n"),
                    HasSubstr("Next:          correct it with: multientity bill correct alder.company 1;")));
}

TEST_F(InboxCommand, ADisputeIsToldToBothUntilTheRequestIsDecided) {
  const std::string request = BillInTheInbox();

  const Outcome disputed = Run({"inbox", "dispute", kBirchFile, request, "--reason", "Our half is 40.00"});
  Carry();

  EXPECT_EQ(disputed.exitCode, 0) << disputed.err;
  EXPECT_EQ(disputed.out, "Disputed request " + request +
                              " of Alder Supply Company, a bill of 2024-03-05 over 45.00 USD.\n"
                              "That leaves with the next letters: multientity exchange run birch.company, or exchange "
                              "export.\n");
  EXPECT_THAT(
      Run({"inbox", "show", kBirchFile, request}).out,
      AllOf(HasSubstr("State:         new, disputed\n"), HasSubstr("Dispute:       this company: Our half is 40.00\n"),
            HasSubstr("multientity inbox note birch.company " + request),
            HasSubstr("multientity inbox accept birch.company " + request),
            HasSubstr("multientity inbox reject birch.company " + request)));
  EXPECT_THAT(Run({"outbox", "show", kFile, request}).out,
              AllOf(HasSubstr("State:         sent, disputed\n"),
                    HasSubstr("Dispute:       Birch Services Company: Our half is 40.00\n"),
                    HasSubstr("multientity outbox note alder.company " + request),
                    HasSubstr("multientity outbox withdraw alder.company " + request)));
  EXPECT_THAT(Run({"inbox", "list", kBirchFile, "--wide"}).out,
              AllOf(HasSubstr("  new, disputed "),
                    HasSubstr(request + " of Alder Supply Company: disputed by this company: Our half is 40.00\n")));
  EXPECT_THAT(Run({"outbox", "list", kFile, "--wide"}).out,
              AllOf(HasSubstr("  sent, disputed "),
                    HasSubstr(request +
                              " of Birch Services Company: disputed by Birch Services Company: Our half is 40.00\n")));
  ASSERT_EQ(AcceptRequest(request).exitCode, 0);
  EXPECT_THAT(Run({"inbox", "show", kBirchFile, request}).out,
              AllOf(HasSubstr("State:         accepted\n"), HasSubstr("Dispute:       this company: ")));
}

TEST_F(InboxCommand, NotesGoBothWaysAndTheStatusTellsWhoHasToSaySomething) {
  const std::string request = BillInTheInbox();
  Done({"inbox", "dispute", kBirchFile, request, "--reason", "Our half is 40.00"});
  Carry();
  const std::string disputed = Run({"exchange", "status", kFile}).out;
  const std::string waiting = Run({"exchange", "status", kBirchFile}).out;

  const Outcome noted = Run({"outbox", "note", kFile, request, "--text", "The tax is in it"});
  Carry();

  EXPECT_EQ(noted.exitCode, 0) << noted.err;
  EXPECT_THAT(noted.out, StartsWith("Noted on request " + request + " to Birch Services Company, a bill of "));
  EXPECT_THAT(disputed,
              AllOf(HasSubstr("\n  disputed by the partner: 1 request over 45.00 USD, of 2024-03-05\n"),
                    HasSubstr("answer or withdraw what the partner disputes; see why with: multientity outbox list "
                              "alder.company --partner \"Birch Services Company\"")));
  EXPECT_THAT(waiting, AllOf(HasSubstr("\n  in the inbox, disputed: 1 request over 45.00 USD, of 2024-03-05\n"),
                             Not(HasSubstr("book, reject or answer what is disputed"))));
  EXPECT_THAT(Run({"exchange", "status", kBirchFile}).out, HasSubstr("book, reject or answer what is disputed"));
  EXPECT_THAT(Run({"inbox", "list", kBirchFile, "--wide"}).out,
              HasSubstr("disputed by this company; Alder Supply Company says: The tax is in it\n"));
  EXPECT_EQ(Run({"inbox", "note", kBirchFile, request, "--text", "Then it is right"}).exitCode, 0);
  EXPECT_THAT(Run({"inbox", "show", kBirchFile, request}).out,
              AllOf(HasSubstr("Note:          Alder Supply Company: The tax is in it\n"),
                    HasSubstr("Note:          this company: Then it is right\n")));
}

TEST_F(InboxCommand, ProgramsGetWhatWasSaidOfARequest) {
  const std::string request = BillInTheInbox();
  const Json disputed =
      Answer({"inbox", "dispute", kBirchFile, request, "--reason", "Our half is 40.00"}).at("request");
  Carry();
  const Json status = Answer({"exchange", "status", kFile}).at("partners").at(0).at("outbox").at("disputed");

  EXPECT_EQ(disputed.at("disputed"), true);
  EXPECT_EQ(disputed.at("state"), "new");
  EXPECT_EQ(disputed.at("remarks").at(0).at("by"), "us");
  EXPECT_EQ(InOutbox(request).at("disputed"), true);
  const Json remark = InOutbox(request).at("remarks").at(0);
  EXPECT_EQ(remark.at("id"), disputed.at("remarks").at(0).at("id"));
  EXPECT_EQ(remark.at("kind"), "dispute");
  EXPECT_EQ(remark.at("by"), "partner");
  EXPECT_EQ(remark.at("text"), "Our half is 40.00");
  EXPECT_EQ(status.at("count"), 1);
  EXPECT_EQ(status.at("amount"), "45.00");
  EXPECT_EQ(status.at("toAnswer"), 1);
  EXPECT_THAT(Run({"inbox", "list", kBirchFile, "--csv"}).out, HasSubstr(",state,disputed,mark,"));
}

TEST_F(InboxCommand, ADisputeAndANoteNeedATextAndLeaveTheBooksAsTheyWereWithoutOne) {
  const std::string request = BillInTheInbox();
  const std::string before = Whole(kBirchFile);

  const Outcome silent = Run({"inbox", "dispute", kBirchFile, request});
  const Outcome empty = Run({"inbox", "dispute", kBirchFile, request, "--reason", " "});
  const Outcome endless = Run({"inbox", "note", kBirchFile, request, "--text", std::string(4001, 't')});

  EXPECT_EQ(silent.exitCode, 2);
  EXPECT_THAT(silent.err, HasSubstr("--reason is required"));
  EXPECT_EQ(empty.exitCode, 2);
  EXPECT_THAT(empty.err, HasSubstr("The text is empty; it needs a text."));
  EXPECT_EQ(endless.exitCode, 2);
  EXPECT_THAT(endless.err, HasSubstr("4000 bytes are the most"));
  EXPECT_EQ(Whole(kBirchFile), before);
}

TEST_F(InboxCommand, OnlyOneStateIsListedAndAnotherWordIsToldWithWhatMayHaveBeenMeant) {
  const std::string request = BillInTheInbox();

  const Json held = Answer({"inbox", "list", kBirchFile, "--state", "held"}).at("requests");
  const Json fresh = Answer({"inbox", "list", kBirchFile, "--state", "new"}).at("requests");
  const Outcome wrong = Run({"inbox", "list", kBirchFile, "--state", "acepted"});

  EXPECT_EQ(held, Json::array());
  EXPECT_EQ(fresh.at(0).at("requestId"), request);
  EXPECT_EQ(wrong.exitCode, 2);
  EXPECT_THAT(wrong.err, AllOf(HasSubstr("state \"acepted\" is not acceptable"), HasSubstr("to-book-again"),
                               HasSubstr("Did you mean \"accepted\"?")));
}

TEST_F(InboxCommand, ARequestThatIsNotThereIsRefused) {
  BillInTheInbox();

  for (const char* const verb : {"show", "accept", "reject"}) {
    const Outcome outcome = Run({"inbox", verb, kBirchFile, "R-1"});

    EXPECT_EQ(outcome.exitCode, 2) << verb << outcome.out;
    EXPECT_THAT(outcome.err, HasSubstr("R-1")) << verb;
  }
  EXPECT_THAT(Run({"inbox", "dispute", kBirchFile, "R-1", "--reason", "What is it?"}).err, HasSubstr("R-1"));
  EXPECT_THAT(Run({"inbox", "note", kBirchFile, "R-1", "--text", "What is it?"}).err, HasSubstr("R-1"));
  EXPECT_THAT(Run({"outbox", "note", kFile, "R-1", "--text", "What is it?"}).err, HasSubstr("R-1"));
}

TEST_F(InboxCommand, TheUsualCompanyIsTakenForOneThatIsNotGiven) {
  const std::string request = BillInTheInbox();
  setenv("MULTIENTITY_COMPANY", kBirchFile, 1);

  const Outcome listed = Run({"inbox", "list"});
  const Outcome shown = Run({"inbox", "show", request});
  const Outcome accepted = Run({"inbox", "accept", request, "--expense", "Repairs", "--new-name", "Northern Power"});
  unsetenv("MULTIENTITY_COMPANY");

  EXPECT_EQ(listed.exitCode, 0) << listed.err;
  EXPECT_EQ(shown.exitCode, 0) << shown.err;
  EXPECT_EQ(accepted.exitCode, 0) << accepted.err;
  EXPECT_EQ(InInbox(request).at("state"), "accepted");
}
