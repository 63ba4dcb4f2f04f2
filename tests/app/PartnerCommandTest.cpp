#include "app/RunningProgram.h"
#include "app/TwoCompanies.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kSixGroups = "[0-9]{5}( [0-9]{5}){5}";
constexpr const char* kWrongFingerprint = "00000 00000 00000 00000 00000 00000";

}  // namespace

class PairingCompanies : public TwoCompanies {};

TEST_F(PairingCompanies, AnInvitationIsPrintedAloneAndWhatToDoIsToldBesides) {
  const Outcome outcome = Run(Invite());

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(StartsWith("-----BEGIN MULTIENTITY INVITATION-----\n"),
                                 HasSubstr("-----END MULTIENTITY INVITATION-----\n")));
  EXPECT_THAT(outcome.err, AllOf(ContainsRegex("no realm id; it got [1-9][0-9]{15} and keeps it"),
                                 ContainsRegex(std::string("fingerprint: ") + kSixGroups),
                                 HasSubstr("multientity partner confirm alder.company \"Birch Services Company\"")));
}

TEST_F(PairingCompanies, AnInvitationIsToldProgramsAsOneObject) {
  const Json invited = Answer(Invite());

  EXPECT_EQ(invited.at("partner"), kBirch);
  EXPECT_THAT(invited.at("invitation").get<std::string>(), StartsWith("-----BEGIN MULTIENTITY INVITATION-----\n"));
  EXPECT_EQ(invited.at("file"), nullptr);
  EXPECT_THAT(invited.at("fingerprint").get<std::string>(), testing::MatchesRegex(kSixGroups));
  EXPECT_EQ(invited.at("newRealm"), Answer({"realm", "show", kFile}).at("remembered"));
}

TEST_F(PairingCompanies, ARealmIdThatTheCompanyHasIsKept) {
  Done({"realm", "set", kFile, "--realm", "5120774003618"});

  EXPECT_EQ(Answer(Invite()).at("newRealm"), nullptr);
  EXPECT_EQ(Answer({"realm", "show", kFile}).at("remembered"), "5120774003618");
}

TEST_F(PairingCompanies, AnInvitationGoesIntoAFileThatWasNotThere) {
  const Outcome outcome = Run(Invite({"--output", "alder.invitation"}));

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, HasSubstr("Wrote the invitation to alder.invitation.\n"));
  EXPECT_THAT(Contents("alder.invitation"), StartsWith("-----BEGIN MULTIENTITY INVITATION-----\n"));
}

TEST_F(PairingCompanies, AFileThatIsThereIsNotWrittenOverAndNobodyIsInvited) {
  WriteFile("alder.invitation", "before");
  const std::string before = Whole(kFile);

  const Outcome outcome = Run(Invite({"--output", "alder.invitation"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("There is a file alder.invitation already"));
  EXPECT_EQ(Contents("alder.invitation"), "before");
  EXPECT_EQ(Whole(kFile), before);
}

TEST_F(PairingCompanies, AnInvitationThatCannotBeWrittenInvitesNobody) {
  const Outcome outcome = Run(Invite({"--output", "no-folder/alder.invitation"}));

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, HasSubstr("alder.invitation was not written"));
  EXPECT_EQ(Answer({"partner", "list", kFile}).at("partners"), Json::array());
}

TEST_F(PairingCompanies, AnInvitationThatCannotBePrintedIsSavedAllTheSame) {
  EXPECT_EQ(RunProgramInto("/dev/full", In("."), Invite()).exitCode, 4);
  EXPECT_EQ(StateOf(kFile, kBirch), "invited");
}

TEST_F(PairingCompanies, AnInvitationWithoutAccountsIsRefused) {
  const Json error = ErrorOf({"partner", "invite", kFile, "--name", kBirch});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("what"), "pair");
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("--due-from"));
}

TEST_F(PairingCompanies, APartnerIsInvitedUnderOneNameOnce) {
  InviteBirch();
  const std::string before = Whole(kFile);

  const Json error = ErrorOf(Invite());

  EXPECT_EQ(error.at("remedy"), "see-partners");
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("multientity partner list FILE"));
  EXPECT_EQ(Whole(kFile), before);
}

TEST_F(PairingCompanies, AFolderThatIsNotThereIsToldBeforeAnybodyIsInvited) {
  const Outcome outcome = Run(Invite({"--folder", "no-folder"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("no-folder"));
  EXPECT_EQ(Answer({"partner", "list", kFile}).at("partners"), Json::array());
}

TEST_F(PairingCompanies, WhoAcceptsIsToldBothFingerprintsAndWhatToDo) {
  InviteBirch();

  const Outcome outcome = Run(Accept());

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Accepted the invitation of Alder Supply Company (realm "),
                                 HasSubstr("Fingerprint of Alder Supply Company: " + FingerprintOf(kFile) + '\n'),
                                 HasSubstr("This company's fingerprint: " + FingerprintOf(kBirchFile) + '\n'),
                                 HasSubstr("multientity exchange export birch.company \"Alder Supply Company\"\n")));
  EXPECT_EQ(Answer({"relation", "list", kBirchFile}).at("relations").at(0).at("state"), "pending");
}

TEST_F(PairingCompanies, APartnerMayBeCalledOtherwiseThanItCallsItself) {
  InviteBirch();

  const Json accepted = Answer(Accept({"--name", "Alder"}));

  EXPECT_EQ(accepted.at("partner").at("partner"), "Alder");
  EXPECT_EQ(accepted.at("partner").at("state"), "accepted");
  EXPECT_EQ(accepted.at("partner").at("invitedByUs"), false);
  EXPECT_EQ(accepted.at("partner").at("dueTo").at("name"), "Due to Alder");
  EXPECT_EQ(accepted.at("fingerprint"), FingerprintOf(kBirchFile));
}

TEST_F(PairingCompanies, AnInvitationIsReadFromStandardInputToo) {
  InviteBirch();
  RunningProgram program(
      In("."), {"partner", "accept", kBirchFile, "-", "--due-from", "Due from Alder", "--due-to", "Due to Alder"});

  program.Type("Dear Birch,\r\n\r\n" + Contents("alder.invitation") + "\r\nYours, Alder\r\n");
  program.EndInput();

  EXPECT_EQ(program.End().exitCode, 0);
  EXPECT_EQ(StateOf(kBirchFile, kAlder), "accepted");
}

TEST_F(PairingCompanies, WhatIsNoInvitationIsRefused) {
  WriteFile("alder.invitation", "Dear Birch, no invitation came with this.\n");
  const std::string before = Whole(kBirchFile);

  const Outcome outcome = Run(Accept());

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("INVITATION"));
  EXPECT_EQ(Whole(kBirchFile), before);
}

TEST_F(PairingCompanies, AnInvitationThatIsEndlesslyLongIsNotRead) {
  WriteFile("alder.invitation", std::string(2 << 20, 'x'));

  const Outcome outcome = Run(Accept());

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("has more than 1048576 bytes, which no invitation has"));
}

TEST_F(PairingCompanies, AnInvitationThatIsNotThereIsNamed) {
  const Outcome outcome = Run(Accept());

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("\"alder.invitation\" cannot be read"));
}

TEST_F(PairingCompanies, AnInvitationOfTheCompanyItselfIsRefused) {
  InviteBirch();

  const Json error = ErrorOf(
      {"partner", "accept", kFile, "alder.invitation", "--due-from", "Due from Cedar", "--due-to", "Due to Cedar"});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("remedy"), "send-it-to-the-partner");
}

TEST_F(PairingCompanies, AnotherHomeCurrencyIsRefusedWithTheReason) {
  InviteBirch();
  Done({"settings", "set", kBirchFile, "home-currency", "JPY"});
  const std::string before = Whole(kBirchFile);

  const Json error = ErrorOf(Accept());

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_THAT(error.at("message").get<std::string>(), AllOf(HasSubstr("USD"), HasSubstr("JPY")));
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("talk to the partner"));
  EXPECT_EQ(Whole(kBirchFile), before);
}

TEST_F(PairingCompanies, ARelationThatIsThereIsTakenOnRequestOnly) {
  Done({"realm", "set", kFile, "--realm", "1000"});
  Done({"relation", "create", kBirchFile, "--realm", "1000", "--partner", kAlder, "--due-from", "Due from Alder",
        "--due-to", "Due to Alder"});
  InviteBirch();
  const Arguments accept{"partner", "accept", kBirchFile, "alder.invitation"};

  const Json error = ErrorOf(accept);
  const Json accepted = Answer(With(accept, {"--use-existing-relation"}));

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(accepted.at("partner").at("dueFrom").at("name"), "Due from Alder");
}

TEST_F(PairingCompanies, APartnerIsConfirmedByTheFingerprintThatItReadOut) {
  HaveBirchAccept();
  std::string asReadOut = FingerprintOf(kBirchFile);
  std::erase(asReadOut, ' ');

  const Outcome outcome = Run({"partner", "confirm", kFile, kBirch, "--fingerprint", asReadOut});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Confirmed Birch Services Company (realm "),
                                 HasSubstr("multientity exchange export alder.company \"Birch Services Company\"\n")));
  EXPECT_EQ(StateOf(kFile, kBirch), "established");
  EXPECT_EQ(Answer({"relation", "list", kFile}).at("relations").at(0).at("state"), "established");
}

TEST_F(PairingCompanies, AnotherFingerprintConfirmsNobody) {
  HaveBirchAccept();
  const std::string before = Whole(kFile);

  const Json error = ErrorOf({"partner", "confirm", kFile, kBirch, "--fingerprint", kWrongFingerprint});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("remedy"), "compare-fingerprints");
  EXPECT_EQ(Whole(kFile), before);
}

TEST_F(PairingCompanies, WithoutATerminalTheFingerprintIsGiven) {
  HaveBirchAccept();

  const Outcome outcome = Run({"partner", "confirm", kFile, kBirch});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--fingerprint"));
  EXPECT_EQ(StateOf(kFile, kBirch), "answered");
}

TEST_F(PairingCompanies, WhoHasNotAcceptedCannotBeConfirmed) {
  InviteBirch();

  const Json error = ErrorOf({"partner", "confirm", kFile, kBirch, "--fingerprint", kWrongFingerprint});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_THAT(error.at("message").get<std::string>(), HasSubstr("invited"));
}

TEST_F(PairingCompanies, APersonAtATerminalIsShownTheFingerprintAndAsked) {
  HaveBirchAccept();
  RunningProgram program(In("."), {"partner", "confirm", kFile, kBirch}, Console::kTerminal);

  const std::string asked = program.WaitFor("[y/N] ");
  program.Type("y\n");
  const Outcome outcome = program.End();

  EXPECT_THAT(asked, HasSubstr(FingerprintOf(kBirchFile)));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(StateOf(kFile, kBirch), "established");
}

TEST_F(PairingCompanies, APersonWhoSaysNoConfirmsNobodyAndIsToldWhatToDo) {
  HaveBirchAccept();
  RunningProgram program(In("."), {"partner", "confirm", kFile, kBirch}, Console::kTerminal);

  program.WaitFor("[y/N] ");
  program.Type("n\n");
  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, HasSubstr("multientity partner remove alder.company \"Birch Services Company\""));
  EXPECT_EQ(StateOf(kFile, kBirch), "answered");
}

TEST_F(PairingCompanies, PartnersAreListedForPeopleProgramsAndSpreadsheets) {
  EXPECT_EQ(Run({"partner", "list", kFile}).out, "No partners are paired.\n");
  InviteBirch();

  EXPECT_EQ(Run({"partner", "list", kFile}).out,
            "Partner                 Realm  State    Due from        Due to        Folder  Fingerprint\n"
            "----------------------  -----  -------  --------------  ------------  ------  -----------\n"
            "Birch Services Company         invited  Due from Birch  Due to Birch\n");
  EXPECT_EQ(Run({"partner", "list", kFile, "--csv"}).out,
            "id,partner,realm,state,invitedByUs,fingerprint,dueFrom.id,dueFrom.name,dueTo.id,dueTo.name,folder,"
            "hasLetterToSend,outstanding,notUnderstood,bookedUpTo\n"
            "1,Birch Services Company,,invited,true,," +
                std::to_string(AccountId("Due from Birch")) + ",Due from Birch," +
                std::to_string(AccountId("Due to Birch")) + ",Due to Birch,,true,,,\n");
  EXPECT_EQ(Answer({"partner", "list", kFile}).at("partners").at(0).at("state"), "invited");
}

TEST_F(PairingCompanies, APartnerIsShownWithWhatToDoNext) {
  HaveBirchAccept();

  const Outcome outcome = Run({"partner", "show", kFile, kBirch});

  EXPECT_THAT(outcome.out,
              AllOf(HasSubstr("Partner:     Birch Services Company\n"),
                    HasSubstr("State:       answered (somebody has accepted the invitation"),
                    HasSubstr("Fingerprint: " + FingerprintOf(kBirchFile) + '\n'), HasSubstr("Folder:      none\n"),
                    HasSubstr("multientity partner confirm alder.company \"Birch Services Company\"\n")));
}

TEST_F(PairingCompanies, APartnerThatThereIsNotIsNotShown) {
  const Json error = ErrorOf({"partner", "show", kFile, "Nobody"});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("remedy"), "see-partners");
}

TEST_F(PairingCompanies, BothSidesShowTheSameFingerprintOfOne) {
  HaveBirchAccept();

  const Outcome own = Run({"partner", "fingerprint", kBirchFile});

  EXPECT_THAT(own.out, testing::MatchesRegex(std::string(kSixGroups) + "\n"));
  EXPECT_EQ(Run({"partner", "fingerprint", kFile, kBirch}).out, own.out);
}

TEST_F(PairingCompanies, AFingerprintThatThereIsNotYetIsToldAsThat) {
  const Outcome own = Run({"partner", "fingerprint", kFile});
  InviteBirch();
  const Outcome partners = Run({"partner", "fingerprint", kFile, kBirch});

  EXPECT_EQ(own.exitCode, 1);
  EXPECT_THAT(own.err, HasSubstr("no identity yet"));
  EXPECT_EQ(partners.exitCode, 1);
  EXPECT_THAT(partners.err, HasSubstr("has no fingerprint yet"));
}

TEST_F(PairingCompanies, ABlockedPartnerIsSentNothingAndNothingIsTakenFromIt) {
  Pair({"--folder", "shared"});

  const Outcome blocked = Run({"partner", "block", kFile, kBirch});

  EXPECT_EQ(blocked.out, "Blocked Birch Services Company: nothing is sent to it and nothing is taken from it.\n");
  EXPECT_EQ(StateOf(kFile, kBirch), "blocked");
  EXPECT_EQ(Run({"exchange", "export", kFile, kBirch}).out, "");
  EXPECT_EQ(Run({"partner", "unblock", kFile, kBirch}).out, "Unblocked Birch Services Company.\n");
  EXPECT_EQ(StateOf(kFile, kBirch), "established");
}

TEST_F(PairingCompanies, WhatIsNotEstablishedIsNotBlocked) {
  InviteBirch();

  EXPECT_EQ(ErrorOf({"partner", "block", kFile, kBirch}).at("exit"), 2);
  EXPECT_EQ(ErrorOf({"partner", "unblock", kFile, kBirch}).at("exit"), 2);
}

TEST_F(PairingCompanies, APartnerThatIsRemovedIsListedOnRequestOnly) {
  InviteBirch();

  EXPECT_EQ(Run({"partner", "remove", kFile, kBirch}).out, "Ended the pairing with Birch Services Company.\n");

  EXPECT_EQ(Answer({"partner", "list", kFile}).at("partners"), Json::array());
  EXPECT_EQ(Answer({"partner", "list", kFile, "--all"}).at("partners").at(0).at("state"), "removed");
  Done(Invite());
}

TEST_F(PairingCompanies, WhoHasAcceptedAndEndsItKeepsNoPendingRelation) {
  InviteBirch();
  Done(Accept());

  Done({"partner", "remove", kBirchFile, kAlder});

  EXPECT_EQ(Answer({"relation", "list", kBirchFile}).at("relations"), Json::array());
}

TEST_F(PairingCompanies, TheFolderOfAPartnerIsSetAndTakenBack) {
  InviteBirch();

  const Outcome set = Run({"partner", "folder", kFile, kBirch, "shared"});
  const std::string folder = Answer({"partner", "show", kFile, kBirch}).at("partner").at("folder");
  const Outcome none = Run({"partner", "folder", kFile, kBirch, "--none"});

  EXPECT_EQ(set.exitCode, 0) << set.err;
  EXPECT_THAT(folder, testing::AllOf(testing::EndsWith("shared"), testing::Not("shared")));
  EXPECT_EQ(none.out, "Letters for Birch Services Company and of it go through no folder now.\n");
  EXPECT_EQ(Answer({"partner", "show", kFile, kBirch}).at("partner").at("folder"), nullptr);
}

TEST_F(PairingCompanies, TheFolderOfAPartnerIsEitherOneOrNone) {
  InviteBirch();

  EXPECT_EQ(Run({"partner", "folder", kFile, kBirch}).exitCode, 2);
  EXPECT_EQ(Run({"partner", "folder", kFile, kBirch, "shared", "--none"}).exitCode, 2);
  EXPECT_EQ(Run({"partner", "folder", kFile, kBirch, "no-folder"}).exitCode, 2);
}

TEST_F(PairingCompanies, WhoMayNotManageRelationsPairsWithNobody) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:create"});
  const std::string before = Whole(kFile);

  const Outcome outcome = Run(Invite({"--user", "Robin"}));

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, HasSubstr("status 3"));
  EXPECT_EQ(Whole(kFile), before);
}

TEST_F(PairingCompanies, TheAuditTrailTellsEachStepOfAPairing) {
  Pair();
  Done({"partner", "remove", kFile, kBirch});

  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "partner"}).out,
              AllOf(HasSubstr(") began the pairing with Birch Services Company"),
                    HasSubstr(") confirmed the pairing with Birch Services Company"),
                    HasSubstr(") ended the pairing with Birch Services Company")));
  EXPECT_THAT(Run({"audit", "show", kBirchFile, "--what", "partner.accept"}).out,
              HasSubstr(") accepted the pairing with Alder Supply Company"));
  EXPECT_EQ(Run({"audit", "verify", kFile}).exitCode, 0);
}

class PairingBothCompanies : public TwoCompanies {
 protected:
  static Arguments PairBoth(const Arguments& more = {}) {
    return With({"partner", "pair", kFile, kBirchFile, "--due-from", "Due from Birch", "--due-to", "Due to Birch",
                 "--other-due-from", "Due from Alder", "--other-due-to", "Due to Alder"},
                more);
  }
};

TEST_F(PairingBothCompanies, EstablishesBothWithOneCommandAndNoFingerprintIsTyped) {
  const Outcome outcome = Run(PairBoth({"--folder", "shared"}));

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out,
              AllOf(StartsWith("Paired Alder Supply Company and Birch Services Company; the relation is established on "
                               "both sides.\n"),
                    ContainsRegex("Alder Supply Company had no realm id; it got [1-9][0-9]{15} and keeps it"),
                    HasSubstr("Fingerprint of Birch Services Company: " + FingerprintOf(kBirchFile) + '\n'),
                    HasSubstr("nobody needs to call"), HasSubstr("multientity exchange run alder.company")));
  EXPECT_EQ(Run({"exchange", "status", kFile}).out, "Birch Services Company: established; both have the same\n");
  EXPECT_EQ(Run({"exchange", "status", kBirchFile}).out, "Alder Supply Company: established; both have the same\n");
}

TEST_F(PairingBothCompanies, AreToldProgramsInTheirOrder) {
  const Json companies = Answer(PairBoth()).at("companies");

  ASSERT_EQ(companies.size(), 2U);
  EXPECT_EQ(companies.at(0).at("file"), kFile);
  EXPECT_EQ(companies.at(0).at("company"), kAlder);
  EXPECT_EQ(companies.at(0).at("newRealm"), Answer({"realm", "show", kFile}).at("remembered"));
  EXPECT_EQ(companies.at(0).at("partner").at("partner"), kBirch);
  EXPECT_EQ(companies.at(0).at("partner").at("state"), "established");
  EXPECT_EQ(companies.at(1).at("file"), kBirchFile);
  EXPECT_EQ(companies.at(1).at("partner").at("fingerprint"), companies.at(0).at("fingerprint"));
  EXPECT_EQ(companies.at(1).at("partner").at("folder"), nullptr);
}

TEST_F(PairingBothCompanies, StayAsTheyAreWhenTheOtherOneLacksAnAccount) {
  const std::string alder = Whole(kFile);
  const std::string birch = Whole(kBirchFile);
  Arguments arguments = PairBoth();
  arguments.back() = "Due to Aldor";

  const Outcome outcome = Run(arguments);

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("birch.company: There is no account \"Due to Aldor\""));
  EXPECT_EQ(Whole(kFile), alder);
  EXPECT_EQ(Whole(kBirchFile), birch);
}

TEST_F(PairingBothCompanies, StayAsTheyAreWhenTheOneDoesNotKnowTheUser) {
  const std::string alder = Whole(kFile);
  Done({"users", "add", kBirchFile, "Kim", "--administrator"});

  const Outcome outcome = Run(PairBoth({"--user", "Kim"}));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("alder.company: "), HasSubstr("Kim")));
  EXPECT_EQ(Whole(kFile), alder);
}

TEST_F(PairingBothCompanies, GoOnWithAnInvitationThatWasBegun) {
  InviteBirch();

  Done(PairBoth());

  EXPECT_EQ(StateOf(kFile, kBirch), "established");
  EXPECT_EQ(StateOf(kBirchFile, kAlder), "established");
  const Json error = ErrorOf(PairBoth());
  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("remedy"), "see-partners");
  EXPECT_EQ(error.at("message"), "alder.company and birch.company are paired already");
}

class AnotherKeyOfACompany : public TwoCompanies {
 protected:
  AnotherKeyOfACompany() { Pair(); }

  // Birch's program is told that letters wait.
  Outcome BringWaitingLetters() const {
    std::filesystem::remove(In("letters.txt"));
    Done({"exchange", "export", kFile, kBirch, "--output", "letters.txt"});
    return Run({"exchange", "import", kBirchFile, "letters.txt"});
  }
};

TEST_F(AnotherKeyOfACompany, IsToldWithBothFingerprintsAndWhomToCall) {
  const std::string before = FingerprintOf(kFile);

  const Outcome replaced = Run({"partner", "rekey", kFile});

  EXPECT_EQ(replaced.exitCode, 0) << replaced.err;
  EXPECT_THAT(replaced.out,
              AllOf(StartsWith("Replaced the key of this company. Fingerprint: " + FingerprintOf(kFile) + "; it was " +
                               before + "\n"),
                    HasSubstr("multientity exchange run alder.company"), HasSubstr("call: Birch Services Company\n")));
  EXPECT_NE(FingerprintOf(kFile), before);
}

TEST_F(AnotherKeyOfACompany, WaitsAtThePartnerWhoIsToldWhatToDo) {
  const std::string before = FingerprintOf(kFile);
  Done({"partner", "rekey", kFile});
  const std::string now = FingerprintOf(kFile);

  const Outcome waiting = BringWaitingLetters();
  const std::string shown = Run({"partner", "show", kBirchFile, kAlder}).out;
  const Json offered = Answer({"partner", "show", kBirchFile, kAlder}).at("partner").at("offeredKeys");
  const Outcome wrong = Run({"partner", "confirm", kBirchFile, kAlder, "--fingerprint", "12345"});
  const Outcome confirmed = Run({"partner", "confirm", kBirchFile, kAlder, "--fingerprint", now});

  EXPECT_EQ(waiting.exitCode, 2) << waiting.out;
  EXPECT_THAT(waiting.err,
              AllOf(HasSubstr("under another key, whose fingerprint is " + now), HasSubstr("waits until")));
  EXPECT_THAT(shown,
              AllOf(HasSubstr("Fingerprint: " + before + "\n"),
                    HasSubstr("Other key:   " + now + ", announced under the key of now\n"),
                    HasSubstr("multientity partner confirm birch.company \"Alder Supply Company\" --fingerprint")));
  EXPECT_EQ(offered.at(0).at("fingerprint"), now);
  EXPECT_EQ(offered.at(0).at("announced"), true);
  EXPECT_EQ(wrong.exitCode, 2);
  EXPECT_THAT(wrong.err, HasSubstr("nor that of a key under which somebody writes as it, which is " + now));
  EXPECT_EQ(confirmed.exitCode, 0) << confirmed.err;
  EXPECT_EQ(Answer({"partner", "show", kBirchFile, kAlder}).at("partner").at("fingerprint"), now);
  EXPECT_EQ(BringWaitingLetters().exitCode, 0);
}

TEST_F(AnotherKeyOfACompany, IsMadeInThePlaceOfALostOneOnlyWhenThatIsSaid) {
  const Outcome notLost = Run({"partner", "rekey", kFile, "--lost"});
  std::filesystem::remove(In("alder.company.identity"));

  const Outcome missing = Run({"partner", "rekey", kFile});
  const Json replaced = Answer({"partner", "rekey", kFile, "--lost"});

  EXPECT_EQ(notLost.exitCode, 2) << notLost.out;
  EXPECT_THAT(notLost.err, HasSubstr("the identity is not lost: there is "));
  EXPECT_EQ(missing.exitCode, 2) << missing.out;
  EXPECT_THAT(missing.err, HasSubstr("the identity of this company is not beside it"));
  EXPECT_EQ(replaced.at("identity").at("fingerprint"), FingerprintOf(kFile));
  EXPECT_EQ(replaced.at("partners"), Json::array({kBirch}));
}
