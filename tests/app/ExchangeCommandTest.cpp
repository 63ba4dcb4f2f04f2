#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>

#include "app/OtherProgram.h"
#include "app/PairedCompanies.h"
#include "app/RunningProgram.h"
#include "app/TwoCompanies.h"

namespace {

using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

}  // namespace

class ExchangingCompanies : public TwoCompanies {
 protected:
  std::size_t FilesInTheFolder() const {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(In("shared")))
      count += entry.is_regular_file() ? 1 : 0;
    return count;
  }
};

TEST_F(ExchangingCompanies, ByAFolderBothComeToAnEstablishedRelation) {
  InviteBirch({"--folder", "shared"});
  Done(Accept({"--folder", "shared"}));

  const Outcome birchPuts = Run({"exchange", "run", kBirchFile});
  const Outcome alderTakes = Run({"exchange", "run", kFile});
  Done({"partner", "confirm", kFile, kBirch, "--fingerprint", FingerprintOf(kBirchFile)});
  Done({"exchange", "run", kFile});
  const Outcome birchTakes = Run({"exchange", "run", kBirchFile});

  EXPECT_THAT(birchPuts.out, AllOf(StartsWith("Alder Supply Company: took 0 letters, put 1 letter into "),
                                   HasSubstr("\nCarried for 1 partner: 0 letters taken, 1 put.\n")));
  EXPECT_THAT(alderTakes.out, AllOf(StartsWith("Birch Services Company: took 1 letter, put "),
                                    HasSubstr("has accepted the invitation")));
  EXPECT_THAT(birchTakes.out, HasSubstr("has confirmed, and the relation is established\n"));
  for (const char* const file : {kFile, kBirchFile}) {
    EXPECT_EQ(Answer({"relation", "list", file}).at("relations").at(0).at("state"), "established") << file;
    EXPECT_EQ(Answer({"partner", "list", file}).at("partners").at(0).at("state"), "established") << file;
  }
}

TEST_F(ExchangingCompanies, ByTextBothComeToAnEstablishedRelation) {
  Pair();

  EXPECT_EQ(StateOf(kFile, kBirch), "established");
  EXPECT_EQ(StateOf(kBirchFile, kAlder), "established");
  const Json relation = Answer({"relation", "list", kBirchFile}).at("relations").at(0);
  EXPECT_EQ(relation.at("state"), "established");
  EXPECT_EQ(relation.at("realm"), Answer({"realm", "show", kFile}).at("remembered"));
}

TEST_F(ExchangingCompanies, BothHaveTheSameInTheEndAndLettersDoNotPileUp) {
  Pair({"--folder", "shared"});
  Done({"partner", "folder", kBirchFile, kAlder, "shared"});

  for (int round = 0; round < 3; ++round) {
    Done({"exchange", "run", kFile});
    Done({"exchange", "run", kBirchFile});
  }

  EXPECT_LE(FilesInTheFolder(), 2U);
  EXPECT_EQ(Run({"exchange", "status", kFile}).out, "Birch Services Company: established; both have the same\n");
  EXPECT_EQ(Run({"exchange", "status", kBirchFile}).out, "Alder Supply Company: established; both have the same\n");
}

TEST_F(ExchangingCompanies, ARunIsToldProgramsAsOneObject) {
  InviteBirch();
  Done(Accept({"--folder", "shared"}));

  const Json partners = Answer({"exchange", "run", kBirchFile}).at("partners");

  ASSERT_EQ(partners.size(), 1U);
  EXPECT_EQ(partners.at(0).at("partner"), kAlder);
  EXPECT_EQ(partners.at(0).at("taken"), Json::array());
  EXPECT_EQ(partners.at(0).at("put"), 1);
  EXPECT_EQ(partners.at(0).at("setAside"), Json::array());
  EXPECT_EQ(partners.at(0).at("failure"), nullptr);
}

TEST_F(ExchangingCompanies, WithoutAFolderThereIsNothingToCarry) {
  InviteBirch();

  const Outcome outcome = Run({"exchange", "run", kFile});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith("No partner has a folder"));
}

TEST_F(ExchangingCompanies, AFolderThatIsGoneIsToldAndTheOthersAreServed) {
  std::filesystem::create_directory(In("gone"));
  Done({"partner", "invite", kFile, "--name", "Cedar", "--due-from", "Due from Cedar", "--due-to", "Due to Cedar",
        "--folder", "gone"});
  HaveBirchAccept({"--folder", "shared"});
  Done({"partner", "confirm", kFile, kBirch, "--fingerprint", FingerprintOf(kBirchFile)});
  std::filesystem::remove(In("gone"));

  const Outcome outcome = Run({"exchange", "run", kFile});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Cedar: its folder could not be reached: "),
                                 HasSubstr("Birch Services Company: took 0 letters, put 1 letter into ")));
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("1 folder could not be reached; the other partners were served"),
                                 HasSubstr("multientity partner folder alder.company PARTNER DIR")));
  EXPECT_EQ(FilesInTheFolder(), 1U);
}

TEST_F(ExchangingCompanies, AForgedLetterInTheFolderIsSetAsideAndNamed) {
  InviteBirch({"--folder", "shared"});
  Done(Accept({"--folder", "shared"}));
  Done({"exchange", "run", kBirchFile});
  std::filesystem::path letter;
  for (const auto& entry : std::filesystem::directory_iterator(In("shared"))) {
    if (entry.is_regular_file()) letter = entry.path();
  }
  std::string bytes = ContentsOf(letter);
  bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 1);
  Write(letter, bytes);

  const Outcome outcome = Run({"exchange", "run", kFile});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("  set aside: " + letter.filename().string()));
  EXPECT_EQ(StateOf(kFile, kBirch), "invited");
}

TEST_F(ExchangingCompanies, LettersArePrintedAsABlockOfText) {
  InviteBirch();
  Done(Accept());

  const Outcome outcome = Run({"exchange", "export", kBirchFile, kAlder});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, AllOf(StartsWith("-----BEGIN MULTIENTITY LETTER-----\n"),
                                 HasSubstr("-----END MULTIENTITY LETTER-----\n")));
}

TEST_F(ExchangingCompanies, LettersAreWrittenToAFileThatWasNotThere) {
  InviteBirch();
  Done(Accept());
  WriteFile("taken.txt", "before");

  const Outcome written = Run({"exchange", "export", kBirchFile, kAlder, "--output", "letters.txt"});
  const Outcome refused = Run({"exchange", "export", kBirchFile, kAlder, "--output", "taken.txt"});

  EXPECT_EQ(written.out, "Wrote the letters for Alder Supply Company to letters.txt; send it that file.\n");
  EXPECT_THAT(Contents("letters.txt"), StartsWith("-----BEGIN MULTIENTITY LETTER-----\n"));
  EXPECT_EQ(refused.exitCode, 2);
  EXPECT_EQ(Contents("taken.txt"), "before");
}

TEST_F(ExchangingCompanies, ThatThereIsNothingToTellIsSaidAndNoFileIsMade) {
  InviteBirch();

  const Outcome outcome = Run({"exchange", "export", kFile, kBirch, "--output", "letters.txt"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "There is nothing to tell Birch Services Company: invited, and nobody has accepted yet.\n");
  EXPECT_FALSE(std::filesystem::exists(In("letters.txt")));
  EXPECT_EQ(Answer({"exchange", "export", kFile, kBirch}).at("letters"), nullptr);
}

TEST_F(ExchangingCompanies, WhatALetterDidIsTold) {
  InviteBirch();
  Done(Accept());
  Done({"exchange", "export", kBirchFile, kAlder, "--output", "letters.txt"});

  const Outcome first = Run({"exchange", "import", kFile, "letters.txt"});
  const Outcome second = Run({"exchange", "import", kFile, "letters.txt"});

  EXPECT_THAT(first.out, AllOf(StartsWith("Took a letter of Birch Services Company: 1 new fact.\n"),
                               HasSubstr("has accepted the invitation")));
  EXPECT_EQ(second.out, "Took a letter of Birch Services Company: nothing new.\n");
}

TEST_F(ExchangingCompanies, ALetterIsTakenFromAMailOnStandardInput) {
  InviteBirch();
  Done(Accept());
  const std::string letters = Run({"exchange", "export", kBirchFile, kAlder}).out;
  RunningProgram program(In("."), {"exchange", "import", kFile, "-", "--json"});

  program.Type("Subject: letters\r\n\r\n" + letters + "-- \r\nBirch\r\n");
  program.EndInput();
  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  const Json taken = Json::parse(outcome.out).at("letters").at(0);
  EXPECT_EQ(taken.at("partner"), kBirch);
  EXPECT_EQ(taken.at("facts"), 1);
  EXPECT_EQ(taken.at("outstanding"), Json::array());
}

TEST_F(ExchangingCompanies, WhatIsNoLetterForThisCompanyIsRefused) {
  InviteBirch();
  Done(Accept());
  Done({"exchange", "export", kBirchFile, kAlder, "--output", "letters.txt"});
  WriteFile("mail.txt", "Dear Alder, nothing is here.\n");
  const std::string before = Whole(kBirchFile);

  const Outcome own = Run({"exchange", "import", kBirchFile, "letters.txt"});
  const Outcome none = Run({"exchange", "import", kBirchFile, "mail.txt"});

  EXPECT_EQ(own.exitCode, 2) << own.out;
  EXPECT_EQ(none.exitCode, 2) << none.out;
  EXPECT_THAT(none.err, HasSubstr("MULTIENTITY LETTER"));
  EXPECT_EQ(Whole(kBirchFile), before);
}

TEST_F(ExchangingCompanies, TheStatusSaysWhatWaitsForWhomAndWhatToDo) {
  EXPECT_THAT(Run({"exchange", "status", kFile}).out,
              AllOf(StartsWith("No partners are paired"), HasSubstr("multientity partner invite alder.company")));
  InviteBirch();
  const std::string invited = Run({"exchange", "status", kFile}).out;
  Done(Accept());
  const std::string accepted = Run({"exchange", "status", kBirchFile}).out;
  BringLetters(kBirchFile, kAlder, kFile);

  const std::string answered = Run({"exchange", "status", kFile}).out;

  EXPECT_THAT(invited, AllOf(StartsWith("Birch Services Company: invited, and nobody has accepted yet\n"),
                             HasSubstr("multientity exchange import alder.company LETTER\n")));
  EXPECT_THAT(accepted, AllOf(HasSubstr("the partner has to confirm\n"),
                              HasSubstr("multientity exchange export birch.company \"Alder Supply Company\"")));
  EXPECT_THAT(answered, HasSubstr("multientity partner confirm alder.company \"Birch Services Company\"\n"));
}

TEST_F(ExchangingCompanies, TheStatusIsThereForProgramsAndSpreadsheets) {
  HaveBirchAccept();

  const Json partner = Answer({"exchange", "status", kFile}).at("partners").at(0);
  const std::string csv = Run({"exchange", "status", kFile, "--csv"}).out;

  EXPECT_EQ(partner.at("state"), "answered");
  EXPECT_EQ(partner.at("waitsFor"), "us");
  EXPECT_THAT(partner.at("toDo").get<std::string>(), HasSubstr("partner confirm"));
  EXPECT_THAT(
      csv, AllOf(StartsWith("partner,realm,state,waitsFor,why,toDo,hasLetterToSend,outstanding,notUnderstood,folder,"),
                 HasSubstr(",inbox.marked\nBirch Services Company,")));
}

TEST_F(ExchangingCompanies, WithoutAPartnerNothingIsExchanged) {
  const Json error = ErrorOf({"exchange", "run", kFile});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("remedy"), "pair-first");
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("multientity partner invite FILE"));
}

TEST_F(ExchangingCompanies, TheAuditTrailTellsWhatWasTaken) {
  Pair();

  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "exchange"}).out,
              HasSubstr(") took the acceptance of Birch Services Company"));
  EXPECT_EQ(Run({"audit", "verify", kBirchFile}).exitCode, 0);
}

class ExchangingRequests : public PairedCompanies {};

TEST_F(ExchangingRequests, WhatIsDoneByItselfIsToldUnderTheCompanysOwnUserForIt) {
  const std::string request = BillInTheInbox();
  EnterBill("NP-2");
  Carry();
  AcceptRequest(request);
  Carry();

  const Json sent = Answer({"audit", "show", kFile, "--what", "exchange.send"}).at("audit");

  ASSERT_EQ(sent.size(), 2U);
  EXPECT_EQ(sent.at(0).at("user"), "Admin");
  EXPECT_EQ(sent.at(1).at("user"), "Exchange");
  EXPECT_EQ(sent.at(1).at("systemUser"), sent.at(0).at("systemUser"));
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "exchange.take"}).out, HasSubstr("  Exchange ("));
  EXPECT_THAT(Run({"audit", "show", kBirchFile, "--what", "inbox"}).out, HasSubstr("  Admin ("));
}

TEST_F(ExchangingRequests, WhatTheCompanysOwnUserMayNotDoIsToldAndDoneOnceItMay) {
  const std::string request = EnterBill();
  Done({"users", "change", kFile, "Exchange", "--accountant", "--right", "journal:modify"});

  const Outcome without = Run({"exchange", "run", kFile});
  Done({"users", "change", kFile, "Exchange", "--accountant", "--right", "bills:modify"});
  const Outcome with = Run({"exchange", "run", kFile});

  EXPECT_EQ(without.exitCode, 0) << without.err;
  EXPECT_THAT(without.out, AllOf(HasSubstr("  not sent: the request \"" + request),
                                 HasSubstr("the user \"Exchange\" has no right to move transactions of that type")));
  EXPECT_THAT(with.out, HasSubstr("  sent 1 request\n"));
}

TEST_F(ExchangingRequests, TheCompanysOwnUserStaysWhileItIsPaired) {
  const Outcome outcome = Run({"users", "remove", kFile, "Exchange"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("\"Exchange\""), HasSubstr("users change")));
  EXPECT_EQ(Answer({"users", "list", kFile}).at("users").size(), 2U);
}

TEST_F(ExchangingRequests, WhatWasEnteredIsSentAndListedOnce) {
  const std::string request = EnterBill();

  const Outcome first = Run({"exchange", "send", kFile});
  const Outcome second = Run({"exchange", "send", kFile});

  EXPECT_EQ(first.exitCode, 0) << first.err;
  EXPECT_EQ(first.out,
            "Sent request " + request +
                " to Birch Services Company, a bill of 2024-03-05 over 45.00 USD.\n"
                "It leaves with the next letters: multientity exchange run alder.company, or exchange export.\n");
  EXPECT_EQ(second.out, "There is nothing to send.\n");
}

TEST_F(ExchangingRequests, OnlyWhatIsNamedIsSent) {
  const std::string named = EnterBill("NP-1");
  const std::string other = EnterBill("NP-2");

  const Json done = Answer({"exchange", "send", kFile, named});

  ASSERT_EQ(done.at("sent").size(), 1U);
  EXPECT_EQ(done.at("sent").at(0).at("requestId"), named);
  EXPECT_EQ(done.at("left"), Json::array());
  EXPECT_EQ(InOutbox(other).at("state"), "entered");
}

TEST_F(ExchangingRequests, ABlockedPartnerIsSentNothing) {
  const std::string request = EnterBill();
  Done({"partner", "block", kFile, kBirch});

  const Outcome outcome = Run({"exchange", "send", kFile, request});

  EXPECT_EQ(outcome.exitCode, 2) << outcome.out;
  EXPECT_THAT(outcome.err, HasSubstr("blocked"));
  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions").at(0).at("state"), "entered");
}

TEST_F(ExchangingRequests, TheStatusCountsWhatWaitsForWhom) {
  BillInTheInbox("NP-1");
  EnterBill("NP-2", "20.00");

  const std::string ofAlder = Run({"exchange", "status", kFile}).out;
  const std::string ofBirch = Run({"exchange", "status", kBirchFile}).out;

  EXPECT_THAT(ofAlder,
              AllOf(StartsWith("Birch Services Company: established"),
                    HasSubstr("  entered, to be sent: 1 request over 10.00 USD, of 2024-03-05\n"),
                    HasSubstr("  sent, without an answer: 1 request over 45.00 USD, of 2024-03-05\n"),
                    HasSubstr("multientity exchange send alder.company --partner \"Birch Services Company\"")));
  EXPECT_THAT(ofBirch, AllOf(StartsWith("Alder Supply Company: established"),
                             HasSubstr("  in the inbox, for a person: 1 request over 45.00 USD, of 2024-03-05\n"),
                             HasSubstr("multientity inbox list birch.company --partner \"Alder Supply Company\"")));
}

TEST_F(ExchangingRequests, TheStatusOfRequestsIsThereForProgramsAndSpreadsheets) {
  BillInTheInbox("NP-1");
  BillInTheInbox("NP-2", "20.00");

  const Json alder = Answer({"exchange", "status", kFile}).at("partners").at(0);
  const Json birch = Answer({"exchange", "status", kBirchFile}).at("partners").at(0);

  EXPECT_EQ(alder.at("waitsFor"), "partner");
  EXPECT_EQ(alder.at("outbox").at("unanswered"),
            Json({{"count", 2}, {"amount", "55.00"}, {"currency", "USD"}, {"oldest", "2024-03-05"}}));
  EXPECT_EQ(alder.at("outbox").at("entered").at("count"), 0);
  EXPECT_EQ(alder.at("outbox").at("entered").at("amount"), nullptr);
  EXPECT_EQ(alder.at("inbox").at("new").at("count"), 0);
  EXPECT_EQ(birch.at("waitsFor"), "us");
  EXPECT_EQ(birch.at("inbox").at("new").at("count"), 2);
  EXPECT_EQ(birch.at("toDo"), birch.at("allToDo").at(0));
  EXPECT_THAT(Run({"exchange", "status", kBirchFile, "--csv"}).out, HasSubstr(",2,55.00,"));
}

TEST_F(ExchangingRequests, WhatCameBackIsForUsToCorrect) {
  const std::string request = BillInTheInbox();
  Done({"inbox", "reject", kBirchFile, request, "--reason", "Our half is 40.00"});
  Carry();

  const std::string status = Run({"exchange", "status", kFile}).out;

  EXPECT_THAT(status, AllOf(HasSubstr("  came back: 1 request over 45.00 USD, of 2024-03-05\n"),
                            HasSubstr("multientity outbox list alder.company --partner")));
}

TEST_F(ExchangingRequests, WhoMaySeeNoTransactionsIsToldOfThePairingAlone) {
  BillInTheInbox();
  Done({"users", "add", kBirchFile, "Kim", "--accountant"});

  const Json partner = Answer({"exchange", "status", kBirchFile, "--user", "Kim"}).at("partners").at(0);

  EXPECT_EQ(partner.at("state"), "established");
  EXPECT_EQ(partner.at("inbox"), nullptr);
  EXPECT_EQ(partner.at("outbox"), nullptr);
  EXPECT_THAT(Run({"exchange", "status", kBirchFile, "--user", "Kim"}).out, Not(HasSubstr("inbox")));
}

TEST_F(ExchangingRequests, ARunOfManyRequestsTellsOfTheFirstThousandAndHowManyMore) {
  constexpr std::size_t kMany = 1'002;
  const auto realm = Answer({"partner", "show", kFile, kBirch}).at("partner").at("realm").get<std::string>();
  std::string csv = "transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n";
  for (std::size_t i = 1; i <= kMany; ++i) {
    const std::string number = std::to_string(i);
    csv += number + ",bill,2024-03-05,Northern Power,,Utilities,45.00,,,,\n";
    csv += number + ",,,,,Due from Birch,45.00,," + realm + ",R-" + number + ",entered\n";
    csv += number + ",,,,,Payables,-90.00,,,,\n";
  }
  WriteFile("many.csv", csv);
  Done({"import", "transactions", kFile, "many.csv"});
  Done({"exchange", "run", kFile});

  const Outcome taken = Run({"exchange", "run", kBirchFile});

  EXPECT_THAT(taken.out, AllOf(HasSubstr(" waits in the inbox\n  and 2 more, of which inbox list, outbox list and the "
                                         "audit trail tell\n"),
                               Not(HasSubstr("bill R-1001 "))));
  EXPECT_EQ(Answer({"inbox", "list", kBirchFile}).at("requests").size(), kMany);
}

// Alder's bill is in Birch's inbox, and Alder's books are those of before it.
class RestoredBooks : public PairedCompanies {
 protected:
  RestoredBooks() {
    Done({"backup", kFile, "alder.backup"});
    request_ = BillInTheInbox();
    Done({"restore", "alder.backup", kFile, "--replace"});
  }

  std::string request_;
};

TEST_F(RestoredBooks, TellWhatCameBackAndHowItIsConfirmed) {
  Carry();

  const Outcome run = Run({"exchange", "run", kFile});
  const Outcome quiet = Run({"exchange", "run", kFile, "--quiet"});
  const std::string status = Run({"exchange", "status", kFile}).out;
  const Json awaited = Answer({"exchange", "status", kFile}).at("awaited");
  const Outcome send = Run({"exchange", "send", kFile});
  const Json forPrograms = ErrorOf({"exchange", "send", kFile});

  const auto tells = AllOf(HasSubstr("1 fact that this company signed and these books never made has come back: the "
                                     "proposal " +
                                     request_ + " to " + kBirch),
                           HasSubstr("nothing is decided or sent until an administrator has confirmed why that came "
                                     "back, with: multientity exchange confirm alder.company --restored"));
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, tells);
  EXPECT_THAT(quiet.out, tells);
  EXPECT_THAT(status, tells);
  EXPECT_EQ(awaited.at("cameBack"), 1);
  EXPECT_EQ(awaited.at("fromElsewhere"), 0);
  EXPECT_EQ(awaited.at("missing"), 0);
  EXPECT_EQ(awaited.at("toCompare"), Json::array());
  EXPECT_EQ(awaited.at("first"), Json::array({"the proposal " + request_ + " to " + kBirch}));
  EXPECT_EQ(send.exitCode, 2) << send.out;
  EXPECT_THAT(send.err, AllOf(HasSubstr(request_), HasSubstr("multientity exchange confirm FILE --restored"),
                              HasSubstr("multientity exchange confirm FILE --copy-ended")));
  EXPECT_EQ(forPrograms.at("remedy"), "confirm-what-came-back");
}

TEST_F(RestoredBooks, AreConfirmedOnceItIsSaidWhichItWas) {
  Carry();
  for (const Arguments& unclear : {Arguments{}, Arguments{"--restored", "--copy-ended"}}) {
    const Outcome outcome = Run(With({"exchange", "confirm", kFile}, unclear));
    EXPECT_EQ(outcome.exitCode, 2) << outcome.out;
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("--restored"), HasSubstr("--copy-ended")));
  }

  const Outcome confirmed = Run({"exchange", "confirm", kFile, "--restored"});
  const Outcome again = Run({"exchange", "confirm", kFile, "--restored"});

  EXPECT_EQ(confirmed.exitCode, 0) << confirmed.err;
  EXPECT_THAT(confirmed.out, HasSubstr("Confirmed that 1 fact came back because a backup was restored"));
  EXPECT_EQ(again.exitCode, 2) << again.out;
  EXPECT_THAT(again.err, HasSubstr("there is nothing to confirm"));
  EXPECT_EQ(Answer({"exchange", "status", kFile}).at("awaited"), nullptr);
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "exchange.confirm"}).out, HasSubstr("a backup was restored"));
  EXPECT_EQ(Run({"exchange", "send", kFile}).exitCode, 0);
}

TEST_F(RestoredBooks, AreNotConfirmedBeforeThePartnerHasShownWhatItHolds) {
  Done({"exchange", "run", kFile});

  const std::string status = Run({"exchange", "status", kFile}).out;
  const Outcome confirm = Run({"exchange", "confirm", kFile, "--restored"});

  EXPECT_THAT(status, AllOf(HasSubstr("that this company told its partners"),
                            HasSubstr("until these have shown what they hold: " + std::string(kBirch))));
  EXPECT_EQ(confirm.exitCode, 2) << confirm.out;
  EXPECT_THAT(confirm.err, HasSubstr("partners that have yet to show what they hold: " + std::string(kBirch)));
}

// The switch lies beside the company file of one of the two.
class SwitchedOff : public PairedCompanies {
 protected:
  void SwitchOff(const char* file) const {
    WriteFile(SwitchesOf(file), "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  }
  void SwitchOn(const char* file) const { std::filesystem::remove(In(SwitchesOf(file))); }
  std::vector<std::string> Lying() const {
    std::vector<std::string> letters;
    for (const auto& entry : std::filesystem::directory_iterator(In("shared"))) {
      letters.push_back(entry.path().filename().string() + ContentsOf(entry.path()));
    }
    std::ranges::sort(letters);
    return letters;
  }
  // It leaves the company and the letters as they are.
  void ExpectRefused(const char* file, const Arguments& arguments) const {
    const std::string before = Whole(file);
    const std::vector<std::string> letters = Lying();

    const Json error = ErrorOf(arguments);

    EXPECT_EQ(error.at("exit"), 1) << arguments.at(1);
    EXPECT_EQ(error.at("status"), 2) << arguments.at(1);
    EXPECT_EQ(error.at("remedy"), "ask-who-keeps-the-switches") << arguments.at(1);
    EXPECT_EQ(Whole(file), before) << arguments.at(1);
    EXPECT_EQ(Lying(), letters) << arguments.at(1);
  }

 private:
  static std::string SwitchesOf(const char* file) { return std::string(file) + ".remote.toml"; }
};

TEST_F(SwitchedOff, LettersAreNeitherTakenNorMadeAndAreTakenLater) {
  const std::string request = EnterBill();
  Done({"exchange", "run", kFile});
  Done({"exchange", "export", kFile, kBirch, "--output", "bill.letters"});
  SwitchOff(kBirchFile);

  const Outcome outcome = Run({"exchange", "run", kBirchFile});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(
      outcome.err,
      AllOf(HasSubstr("the multi-entity feature is switched off; letters stay where they lie, and none are made"),
            HasSubstr("ask who keeps them")));
  ExpectRefused(kBirchFile, {"exchange", "run", kBirchFile});
  ExpectRefused(kBirchFile, {"exchange", "export", kBirchFile, kAlder});
  ExpectRefused(kBirchFile, {"exchange", "import", kBirchFile, "bill.letters"});
  EXPECT_EQ(Answer({"inbox", "list", kBirchFile}).at("requests").size(), 0U);
  SwitchOn(kBirchFile);
  Carry();
  EXPECT_EQ(InInbox(request).at("state"), "new");
}

TEST_F(SwitchedOff, NothingIsSentOrWithdrawn) {
  const std::string sent = BillInTheInbox("NP-1");
  const std::string entered = EnterBill("NP-2");
  SwitchOff(kFile);

  ExpectRefused(kFile, {"exchange", "send", kFile});
  ExpectRefused(kFile, {"exchange", "send", kFile, entered});
  ExpectRefused(kFile, {"outbox", "withdraw", kFile, sent});
  EXPECT_EQ(InOutbox(entered).at("state"), "entered");
}

TEST_F(SwitchedOff, NothingIsDecided) {
  const std::string request = BillInTheInbox();
  SwitchOff(kBirchFile);

  ExpectRefused(kBirchFile, {"inbox", "accept", kBirchFile, request, "--new-expense", "Power", "--new-name", "Power"});
  ExpectRefused(kBirchFile, {"inbox", "reject", kBirchFile, request, "--reason", "Not ours"});
  EXPECT_EQ(InInbox(request).at("state"), "new");
  SwitchOn(kBirchFile);
  EXPECT_EQ(AcceptRequest(request).exitCode, 0);
}

class ExchangingForSeveral : public PairedCompanies {
 protected:
  std::size_t LettersInTheFolder() const {
    const std::filesystem::directory_iterator files(In("shared"));
    return static_cast<std::size_t>(std::count_if(
        begin(files), end(files), [](const auto& entry) { return entry.path().extension() == ".envelope"; }));
  }
};

TEST_F(ExchangingForSeveral, EachTellsWhatItHasDoneInTheOrderOfTheCompanies) {
  const Outcome outcome = Run({"exchange", "run", kBirchFile, kFile});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out,
              testing::MatchesRegex("birch.company:\nAlder Supply Company: took [0-9] letters?, put [^\n]*\n"
                                    "(  [^\n]*\n)*Carried for 1 partner: [^\n]*\n"
                                    "alder.company:\nBirch Services Company: took [^\n]*\n"
                                    "(  [^\n]*\n)*Carried for 1 partner: [^\n]*\n"));
}

TEST_F(ExchangingForSeveral, ARequestAndItsAnswerTravelByRunsOfBoth) {
  const std::string request = EnterBill();
  Done({"exchange", "run", kFile, kBirchFile});
  Done({"exchange", "run", kFile, kBirchFile});
  EXPECT_EQ(InInbox(request).at("state"), "new");
  EXPECT_EQ(AcceptRequest(request).exitCode, 0);

  for (int round = 0; round < 3; ++round) Done({"exchange", "run", kFile, kBirchFile});

  EXPECT_EQ(InOutbox(request).at("state"), "established");
}

TEST_F(ExchangingForSeveral, OneThatFailsIsNamedAndStopsNobody) {
  Done({"init", "cedar.company", "--name", "Cedar"});

  const Outcome outcome = Run({"exchange", "run", "none.company", kFile, "cedar.company", kBirchFile});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.out, AllOf(StartsWith("alder.company:\n"), HasSubstr("\nbirch.company:\n")));
  EXPECT_THAT(outcome.err,
              AllOf(StartsWith("multientity: none.company: There is no company file none.company"),
                    HasSubstr("\nmultientity: cedar.company: this company has not been paired with anybody\n  invite"),
                    HasSubstr("\nmultientity: not all went well: none.company ended with 3, cedar.company ended with "
                              "2\n")));
}

TEST_F(ExchangingForSeveral, TheyAreToldProgramsAsOneObject) {
  const Outcome outcome = Run({"exchange", "run", kFile, "none.company", kBirchFile, "--json"});

  EXPECT_EQ(outcome.exitCode, 3);
  const Json companies = Json::parse(outcome.out).at("companies");
  ASSERT_EQ(companies.size(), 3U);
  EXPECT_EQ(companies.at(0).at("file"), kFile);
  EXPECT_EQ(companies.at(0).at("exit"), 0);
  EXPECT_EQ(companies.at(0).at("answer").at("partners").at(0).at("partner"), kBirch);
  EXPECT_EQ(companies.at(0).at("messages"), Json::array());
  EXPECT_EQ(companies.at(1).at("exit"), 3);
  EXPECT_EQ(companies.at(1).at("answer"), nullptr);
  EXPECT_EQ(companies.at(1).at("messages").at(0).at("error").at("exit"), 3);
  EXPECT_EQ(companies.at(2).at("answer").at("partners").at(0).at("partner"), kAlder);
  EXPECT_EQ(Json::parse(outcome.err).at("error").at("message"), "not all went well: none.company ended with 3");
}

TEST_F(ExchangingForSeveral, WhoDoesItIsTheSameForAll) {
  Done({"users", "add", kFile, "Kim", "--administrator"});

  const Outcome outcome = Run({"exchange", "run", kFile, kBirchFile, "--user", "Kim"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.out, StartsWith("alder.company:\n"));
  EXPECT_THAT(outcome.err, StartsWith("multientity: birch.company: There is no user \"Kim\""));
}

TEST_F(ExchangingForSeveral, ACompanyIsGivenOnce) {
  const Outcome outcome = Run({"exchange", "run", kFile, kBirchFile, kFile});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("\"alder.company\" is given twice"));
  EXPECT_EQ(outcome.out, "");
}

TEST_F(ExchangingForSeveral, OneThatWaitsForAnotherProgramKeepsNobodyWaiting) {
  const OtherProgram other(In(kFile));
  other.Runs("BEGIN IMMEDIATE");
  RunningProgram program(In("."), {"exchange", "run", kFile, kBirchFile});
  const auto latest = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (LettersInTheFolder() == 0 && std::chrono::steady_clock::now() < latest) std::this_thread::yield();

  other.Runs("ROLLBACK");

  const Outcome outcome = program.End();
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith("alder.company:\n"));
}

TEST_F(ExchangingForSeveral, WhatIsNotSentIsToldWithWhatToType) {
  EnterBill("NP-1");
  EnterBill("NP-2");
  Done({"users", "change", kFile, "Exchange", "--right", "bills:view"});

  const Outcome outcome = Run({"exchange", "run", kFile});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  const std::string hint = "an administrator may do this, or give the right with: multientity users change FILE NAME";
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("\n  not sent: the request "), HasSubstr("\n    " + hint)));
  EXPECT_EQ(outcome.out.find(hint), outcome.out.rfind(hint));
  const Json carried = Answer({"exchange", "run", kFile}).at("partners").at(0);
  EXPECT_EQ(carried.at("notSent").size(), 2U);
  ASSERT_EQ(carried.at("hints").size(), 1U);
  EXPECT_THAT(carried.at("hints").at(0).get<std::string>(), StartsWith(hint));
}

TEST_F(ExchangingForSeveral, QuietlyOnlyWhatTravelsIsTold) {
  Carry();
  Carry();
  EXPECT_EQ(Run({"exchange", "run", kFile, "--quiet"}).out, "");
  EXPECT_EQ(Answer({"exchange", "run", kFile, "--quiet"}).at("partners"), Json::array());
  EnterBill();

  const Outcome outcome = Run({"exchange", "run", kFile, "--quiet"});

  EXPECT_THAT(outcome.out, AllOf(StartsWith("Birch Services Company: took 0 letters, put 1 letter into "),
                                 HasSubstr("\n  sent 1 request\n"), Not(HasSubstr("Carried for"))));
}

TEST_F(ExchangingForSeveral, WatchedTheyGoOnUntilTheProgramIsEnded) {
  Carry();
  Carry();
  RunningProgram program(In("."), {"exchange", "run", kFile, kBirchFile, "--watch", "--every", "1"});
  program.EndInput();
  program.WaitFor(
      "Letters are carried for 2 companies until Ctrl-C ends it, as soon as something changes and 1 second after each "
      "run.\n");

  const std::string request = EnterBill();
  program.WaitFor("  sent 1 request\n");
  program.WaitFor("birch.company:\nAlder Supply Company: took 1 letter");
  // Wine takes SIGTERM for what ends a program at once.
  program.Signal(IsWindowsProgram() ? SIGINT : SIGTERM);
  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(InInbox(request).at("state"), "new");
}

TEST_F(ExchangingForSeveral, WatchedOneThatFailsIsToldEachTimeAndTheOtherGoesOn) {
  RunningProgram program(In("."), {"exchange", "run", "none.company", kFile, "--watch", "--every", "1", "--json"});

  program.WaitFor("{\"file\":\"none.company\",\"exit\":3,\"answer\":null,\"messages\":[{\"error\":");
  program.WaitFor("{\"file\":\"none.company\",\"exit\":3,");
  EnterBill();
  program.WaitFor("{\"file\":\"alder.company\",\"exit\":0,");
  program.Signal(SIGINT);

  EXPECT_EQ(program.End().exitCode, 0);
}

class ExchangingAtOnce : public ExchangingForSeveral {
 protected:
  RunningProgram Watch(const std::vector<std::string>& files) const {
    std::vector<std::string> arguments{"exchange", "run", "--watch", "--every", "3600"};
    arguments.insert(arguments.end(), files.begin(), files.end());
    return RunningProgram(In("."), arguments);
  }
  // Each run asks the module, which writes it down.
  std::size_t AskedByRuns() const { return Contents(kFileLog).size() + Contents(kBirchFileLog).size(); }
  // Once it has not run for longer than it ever lets changes wait; false when that does not come about.
  bool ComesToRest() const {
    constexpr std::chrono::seconds kRest{4};
    const auto latest = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    auto since = std::chrono::steady_clock::now();
    for (std::size_t asked = AskedByRuns(); std::chrono::steady_clock::now() < since + kRest;) {
      if (std::chrono::steady_clock::now() > latest) return false;
      if (const std::size_t now = AskedByRuns(); now != asked) {
        asked = now;
        since = std::chrono::steady_clock::now();
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return true;
  }

  static constexpr const char* kFileLog = "alder.company.log";
  static constexpr const char* kBirchFileLog = "birch.company.log";
};

TEST_F(ExchangingAtOnce, ALetterIsTakenAsSoonAsItLiesThere) {
  RunningProgram program = Watch({kBirchFile});
  program.WaitFor("put 1 letter into ");

  const std::string request = EnterBill();
  Done({"exchange", "run", kFile});
  program.WaitFor("waits in the inbox\n");

  EXPECT_EQ(InInbox(request).at("state"), "new");
}

TEST_F(ExchangingAtOnce, WhatIsEnteredLeavesAtOnce) {
  RunningProgram program = Watch({kFile});
  program.WaitFor("put 1 letter into ");

  EnterBill();
  program.WaitFor("  sent 1 request\n");
  EnterBill("NP-2");
  program.WaitFor("  sent 1 request\n");
}

TEST_F(ExchangingAtOnce, BothSidesComeToAnEndAndThenToRest) {
  RunningProgram program = Watch({kFile, kBirchFile});
  const std::string request = EnterBill();
  program.WaitFor("waits in the inbox\n");

  EXPECT_EQ(AcceptRequest(request).exitCode, 0);

  const auto latest = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (InOutbox(request).at("state") != "established") ASSERT_LT(std::chrono::steady_clock::now(), latest);
  EXPECT_TRUE(ComesToRest());
}

TEST_F(ExchangingAtOnce, WhoOnlyReadsTheBooksHasNobodyCarry) {
  RunningProgram program = Watch({kFile, kBirchFile});
  program.WaitFor("put 1 letter into ");
  ASSERT_TRUE(ComesToRest());
  const std::string before = Contents(kFileLog);

  Done({"accounts", kFile});

  ASSERT_TRUE(ComesToRest());
  EXPECT_EQ(Contents(kFileLog), before);
}

TEST_F(ExchangingAtOnce, AFolderThatIsThereAgainIsLookedIntoAtOnce) {
  RunningProgram program = Watch({kBirchFile});
  program.WaitFor("put 1 letter into ");
  std::filesystem::rename(In("shared"), In("elsewhere"));
  std::filesystem::create_directory(In("shared"));

  EnterBill();
  Done({"exchange", "run", kFile});

  program.WaitFor("waits in the inbox\n");
}

TEST_F(ExchangingAtOnce, WhatItAsksItsRunsToTellIsNobodyElses) {
  EXPECT_THAT(Run({"exchange", "run", "--help"}).out, AllOf(HasSubstr("--watch"), Not(HasSubstr("--tell-places"))));
  EXPECT_THAT(Run({"completion", "bash"}).out, AllOf(HasSubstr("--watch"), Not(HasSubstr("--tell-places"))));
}

TEST_F(ExchangingForSeveral, HowOftenIsSaidOfWhatIsWatchedAndInSeconds) {
  EXPECT_THAT(Run({"exchange", "run", kFile, "--every", "5"}).err, HasSubstr("give --watch, too"));
  const Outcome outcome = Run({"exchange", "run", kFile, "--watch", "--every", "soon"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("--every"), HasSubstr("soon")));
}
