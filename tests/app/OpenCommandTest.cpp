#include <csignal>
#include <sstream>

#include "app/Books.h"
#include "app/PairedCompanies.h"
#include "app/RunningProgram.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

// A company with a relation and a bill that came back.
class OpenBooks : public Books {
 public:
  OpenBooks() {
    RelateBirch();
    ImportMarch();
    Done({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "came-back"});
  }

 protected:
  RunningProgram Open(std::vector<std::string> more, Console console = Console::kPipes) const {
    more.insert(more.begin(), {"open", kFile});
    return {In("."), more, console};
  }
};

std::vector<Json> EventsIn(const std::string& lines) {
  std::vector<Json> events;
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line);) events.push_back(Json::parse(line));
  return events;
}

std::vector<std::string> NamesOf(const std::vector<Json>& events) {
  std::vector<std::string> names;
  names.reserve(events.size());
  for (const Json& event : events) names.push_back(event.at("event"));
  return names;
}

std::string EventLine(const std::string& name) {
  return "{\"event\":\"" + name + "\"";
}

}  // namespace

TEST_F(OpenBooks, TheReminderIsAnsweredWithYesAndOpensWhatWaits) {
  LetTheReminderComeAtOnce();
  RunningProgram program = Open({"--answer", "yes", "--json"});

  std::string printed = program.WaitFor(EventLine("command-run"));
  program.EndInput();
  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  const std::vector<Json> events = EventsIn(printed + outcome.out);
  EXPECT_THAT(NamesOf(events),
              ElementsAre("opened", "message-delivered", "timer-armed", "timer-elapsed", "message-delivered",
                          "timer-armed", "reminder-shown", "answered", "command-run", "closing", "closed"));
  EXPECT_EQ(events.at(0), Json::parse(R"({"event":"opened","file":"alder.company","user":"Admin","bridge":true})"));
  EXPECT_EQ(events.at(1).at("message"), "MultiEntityScheduler");
  EXPECT_EQ(events.at(2).at("seconds"), 1);
  EXPECT_EQ(events.at(4).at("message"), "MESchedulerUIPrompt");
  EXPECT_GT(events.at(5).at("seconds"), 1);
  EXPECT_EQ(events.at(6).at("kind"), "question");
  EXPECT_EQ(events.at(7), Json::parse(R"({"event":"answered","answer":"yes","by":"option"})"));
  EXPECT_EQ(events.at(8).at("url"), "krw:LaunchMEPlugin?context=ICT_SCHEDULER");
  EXPECT_EQ(events.at(8).at("view"), "pending-transactions");
  ASSERT_EQ(events.at(8).at("transactions").size(), 1U);
  EXPECT_EQ(events.at(8).at("transactions").at(0).at("requestId"), "request-bill");
  EXPECT_EQ(events.at(9).at("cause"), "end of input");
}

TEST_F(OpenBooks, TheReminderIsAnsweredWithNoAndOpensNothing) {
  LetTheReminderComeAtOnce();
  RunningProgram program = Open({"--answer", "no", "--json"});

  program.WaitFor(EventLine("answered") + ",\"answer\":\"no\",\"by\":\"option\"}\n");
  program.EndInput();
  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(NamesOf(EventsIn(outcome.out)), ElementsAre("closing", "closed"));
}

TEST_F(OpenBooks, WithNobodyThereTheReminderOpensNothing) {
  LetTheReminderComeAtOnce();
  RunningProgram program = Open({});

  program.WaitFor("Answered: No (nobody)\n");
  program.EndInput();

  EXPECT_THAT(program.End().out, Not(HasSubstr("krw:")));
}

TEST_F(OpenBooks, APersonAtTheTerminalAnswersTheReminder) {
  LetTheReminderComeAtOnce();
  RunningProgram program = Open({}, Console::kTerminal);

  program.WaitFor("Yes or No? [y/N] ");
  program.Type("y\n");
  program.WaitFor("Answered: Yes (person)");
  program.WaitFor("request-bill");
}

TEST_F(OpenBooks, TheEndOfTheTerminalsInputClosesTheCompany) {
  if (IsWindowsProgram()) GTEST_SKIP() << "Wine's console swallows Ctrl-Z";
  RunningProgram program = Open({}, Console::kTerminal);
  program.WaitFor("Opened alder.company");

  program.Type("\x04");

  const Outcome outcome = program.End();
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("Closing alder.company: end of input."));
}

TEST_F(OpenBooks, AQuestionThatIsStillOpenDoesNotKeepTheCompanyFromClosing) {
  LetTheReminderComeAtOnce();
  RunningProgram program = Open({}, Console::kTerminal);
  program.WaitFor("[y/N] ");

  program.Signal(SIGINT);

  const Outcome outcome = program.End();
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Answered: No (nobody)"), Not(HasSubstr("krw:")),
                                 HasSubstr("Closing alder.company: interrupt.")));
}

TEST_F(OpenBooks, AReminderForAFarDayIsSaidToComeWhenItsTimerIsOver) {
  Remember("MEPromptLaunchDate", "21000102");
  RunningProgram program = Open({"--json"});

  const std::string printed = program.WaitFor(EventLine("timer-armed") + ",\"seconds\":");
  const std::string seconds = program.WaitFor("}");
  program.EndInput();

  EXPECT_EQ(program.End().exitCode, 0);
  EXPECT_LE(std::stoll(seconds), 2147483);
}

TEST_F(OpenBooks, TheNextReminderIsRememberedBeforeTheAnswer) {
  LetTheReminderComeAtOnce();
  RunningProgram program = Open({}, Console::kTerminal);

  program.WaitFor("[y/N] ");

  EXPECT_EQ(Answer({"reminder", "show", kFile}).at("remembered"), true);
}

TEST_F(OpenBooks, OthersMayWorkWhileAQuestionIsOpen) {
  LetTheReminderComeAtOnce();
  RunningProgram program = Open({}, Console::kTerminal);
  program.WaitFor("[y/N] ");

  Done({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "closed"});

  program.Type("y\n");
  program.WaitFor("None that this user may see.");
}

TEST_F(OpenBooks, TerminationClosesTheCompanyInOrder) {
  if (IsWindowsProgram()) GTEST_SKIP() << "Wine takes SIGTERM for what ends a program at once";
  RunningProgram program = Open({"--json"});
  program.WaitFor(EventLine("timer-armed"));

  program.Signal(SIGTERM);

  const Outcome outcome = program.End();
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(HasSubstr(EventLine("closing") + ",\"cause\":\"termination\"}\n"),
                                 HasSubstr(EventLine("closed") + ",\"file\":\"alder.company\"}\n")));
  EXPECT_FALSE(std::filesystem::exists(In("alder.company-wal")));
}

TEST_F(OpenBooks, AnInterruptClosesTheCompanyInOrder) {
  RunningProgram program = Open({"--json"});
  program.WaitFor(EventLine("opened"));

  program.Signal(SIGINT);

  const Outcome outcome = program.End();
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr(EventLine("closing") + ",\"cause\":\"interrupt\"}\n"));
}

TEST_F(OpenBooks, AnInputWithoutEndsOfLinesIsToldOfOnce) {
  RunningProgram program = Open({});

  for (int i = 0; i < 1024; ++i) program.Type(std::string(4096, 'y'));
  program.EndInput();
  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "note: a line of standard input has more than 4096 bytes; it is passed over\n");
}

TEST_F(OpenBooks, WithoutInputTheCompanyIsClosedAtOnce) {
  const Outcome outcome = Run({"open", kFile});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(testing::StartsWith("Opened alder.company for Admin"),
                                 testing::EndsWith("Closing alder.company: end of input.\nClosed alder.company.\n")));
}

TEST_F(Books, ACompanyWithoutRelationsIsOpenedWithoutAReminder) {
  RunningProgram program(In("."), {"open", kFile});

  program.WaitFor("No reminder comes; multientity reminder show alder.company tells why.\n");
  program.EndInput();

  EXPECT_EQ(program.End().exitCode, 0);
}

TEST_F(OpenBooks, APendingRelationIsToldWithAWarning) {
  Done({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "5"});
  Done({"relation", "update", kFile, "--realm", "1001", "--state", "pending"});
  LetTheReminderComeAtOnce();
  RunningProgram program = Open({"--answer", "yes", "--json"});

  program.WaitFor("{\"event\":\"reminder-shown\",\"kind\":\"warning\"");
  program.EndInput();

  EXPECT_THAT(program.End().out, Not(HasSubstr("command-run")));
}

TEST_F(OpenBooks, WithNothingWaitingNothingIsShown) {
  Done({"transaction", "set-state", kFile, "--realm", "1001", "--request", "request-bill", "--state", "5"});
  LetTheReminderComeAtOnce();
  RunningProgram program = Open({"--json"});

  program.WaitFor(EventLine("timer-elapsed"));
  const std::string printed = program.WaitFor(EventLine("timer-armed"));
  program.EndInput();

  EXPECT_THAT(printed + program.End().out, Not(HasSubstr("reminder-shown")));
}

TEST_F(OpenBooks, TheTraceIsPrintedWhileTheCompanyIsOpen) {
  RunningProgram program = Open({"--trace"});
  program.WaitFor("The reminder comes in ");
  program.EndInput();

  const Outcome outcome = program.End();

  EXPECT_THAT(outcome.err,
              HasSubstr("log level 0 event 6 MultiEntityScheduler::ProcessMsg: MULTIENTITY::MultiEntityScheduler: "
                        "ProcessMsg ::scheduler trigger checks passed. Initiating timer\n"));
}

TEST_F(OpenBooks, AnAnswerThatIsNeitherYesNorNoIsRefusedBeforeTheCompanyIsOpened) {
  const Outcome outcome = Run({"open", kFile, "--answer", "later"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, HasSubstr("\"later\""));
}

TEST_F(EmptyDirectory, ACompanyThatIsNotThereIsNotOpened) {
  EXPECT_EQ(Run({"open", "nowhere.company"}).exitCode, 3);
}

// Alder and Birch are paired and carry by one folder; Birch is the one that is kept open.
class OpenAndPaired : public PairedCompanies {
 protected:
  RunningProgram OpenBirch(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"open", kBirchFile});
    return {In("."), more};
  }
  void LetBirchsReminderComeAtOnce() const {
    WriteFile("birch.company.remote.toml",
              "[values.MultiEntity]\nInitialDelayInSeconds = \"1\"\nHoursToLaunchDay = \"0\"\n");
  }
  // In the folder, and not in Birch's inbox yet.
  std::string SendBill(const std::string& number = "NP-1") const {
    std::string request = EnterBill(number);
    Done({"exchange", "run", kFile});
    return request;
  }
};

TEST_F(OpenAndPaired, LettersAreCarriedAsSoonAsTheCompanyIsOpen) {
  const std::string request = SendBill();
  RunningProgram program = OpenBirch();

  program.WaitFor("Alder Supply Company: took 1 letter, ");
  program.WaitFor("waits in the inbox\n");

  EXPECT_EQ(InInbox(request).at("state"), "new");
  program.EndInput();
  EXPECT_EQ(program.End().exitCode, 0);
}

TEST_F(OpenAndPaired, LettersThatComeLaterAreCarriedWhileItIsOpen) {
  SendBill();
  RunningProgram program = OpenBirch({"--every", "1", "--json"});
  program.WaitFor(EventLine("letters-carried"));

  SendBill("NP-2");
  program.WaitFor(EventLine("letters-carried"));

  program.EndInput();
  const Outcome outcome = program.End();
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
}

TEST_F(OpenAndPaired, WhatComesOrIsDecidedWhileItIsOpenIsCarriedAtOnce) {
  RunningProgram program = OpenBirch({"--every", "3600"});
  program.WaitFor("put 1 letter into ");
  const std::string request = SendBill();
  program.WaitFor("waits in the inbox\n");

  AcceptRequest(request);
  program.WaitFor("put 1 letter into ");

  program.EndInput();
  EXPECT_EQ(program.End().exitCode, 0);
  Done({"exchange", "run", kFile});
  EXPECT_EQ(InOutbox(request).at("state"), "established");
}

TEST_F(OpenAndPaired, WhatWasDecidedMeanwhileHasLeftWhenItIsClosed) {
  const std::string request = SendBill();
  RunningProgram program = OpenBirch({"--every", "3600"});
  program.WaitFor("waits in the inbox\n");
  AcceptRequest(request);

  program.EndInput();
  const Outcome outcome = program.End();
  Done({"exchange", "run", kFile});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(InOutbox(request).at("state"), "established");
}

TEST_F(OpenAndPaired, WhatIsAmissIsToldOnceAndEndsNothing) {
  Done({"partner", "folder", kBirchFile, kAlder, "shared"});
  std::filesystem::rename(In("shared"), In("elsewhere"));
  RunningProgram program = OpenBirch({"--every", "1"});
  program.WaitFor("Letters were not carried: ");

  std::filesystem::rename(In("elsewhere"), In("shared"));
  SendBill();
  const std::string printed = program.WaitFor("waits in the inbox\n");

  EXPECT_THAT(printed, Not(HasSubstr("not carried")));
  program.EndInput();
  EXPECT_EQ(program.End().exitCode, 0);
}

TEST_F(OpenAndPaired, WhoMayNotCarryIsToldNothingOfIt) {
  SendBill();
  Done({"users", "add", kBirchFile, "Kim", "--right", "bills:view"});
  RunningProgram program = OpenBirch({"--user", "Kim", "--json"});
  program.WaitFor(EventLine("opened"));

  program.EndInput();
  const Outcome outcome = program.End();

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, Not(HasSubstr("letters")));
}

TEST_F(OpenAndPaired, TheReminderSaysHowManyRequestsWaitAndShowsThem) {
  const std::string request = BillInTheInbox();
  LetBirchsReminderComeAtOnce();
  RunningProgram program = OpenBirch({"--answer", "yes"});

  const std::string printed = program.WaitFor("multientity inbox reject birch.company REQUEST\n");

  EXPECT_THAT(printed,
              AllOf(HasSubstr("Waiting for you: 1 request of partners to answer. Do you want to look at it now?"),
                    HasSubstr("\nRequests of partners in the inbox:\n"), HasSubstr(request)));
  EXPECT_THAT(Run({"reminder", "show", kBirchFile}).out, HasSubstr("Waiting:    1 request of partners to answer\n"));
  program.EndInput();
  EXPECT_EQ(program.End().exitCode, 0);
}
