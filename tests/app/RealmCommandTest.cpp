#include "app/Books.h"
#include "app/RunningProgram.h"

using testing::AllOf;
using testing::HasSubstr;

TEST_F(Books, ANewFileRemembersNoRealmAndIsGivenNoneByLooking) {
  EXPECT_EQ(Answer({"realm", "show", kFile}), Json::parse(R"({"remembered":null})"));

  EXPECT_EQ(Run({"realm", "show", kFile}).out, "The company file remembers no realm id yet.\n");
}

TEST_F(Books, ARealmThatWasSetIsRemembered) {
  EXPECT_EQ(Answer({"realm", "set", kFile, "--realm", "9130"}), Json::parse(R"({"remembered":"9130","changed":true})"));

  EXPECT_EQ(Run({"realm", "show", kFile}).out, "The company file remembers the realm id 9130.\n");
}

TEST_F(Books, OnlyAnAdministratorSetsTheRealm) {
  Done({"users", "add", kFile, "Robin", "--right", "bills:view"});

  const Outcome outcome = Run({"realm", "set", kFile, "--realm", "9130", "--user", "Robin"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("Robin"));
  EXPECT_EQ(Answer({"realm", "show", kFile}).at("remembered"), nullptr);
}

TEST_F(Books, ARealmOfTwentyCharactersIsNotRemembered) {
  const Outcome outcome = Run({"realm", "set", kFile, "--realm", "12345678901234567890"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("12345678901234567890"), HasSubstr("19")));
}

TEST_F(Books, TheRealmOfAPartnerIsNotTakenForTheCompanysOwn) {
  RelateBirch();

  const Outcome outcome = Run({"realm", "set", kFile, "--realm", "1001"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(
      outcome.err,
      "multientity: the realm \"1001\" is that of the partner \"Birch Services Company\", not this company's own\n"
      "  give this company's own realm id; those of its partners are shown by: multientity relation list FILE\n");
  EXPECT_EQ(Answer({"realm", "show", kFile}).at("remembered"), nullptr);
}

TEST_F(Books, TheFirstCheckTakesNoPartnersRealmForTheCompanysOwn) {
  RelateBirch();

  const Json error = ErrorOf({"realm", "check", kFile, "--realm", "1001"});

  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_EQ(error.at("status"), nullptr);
  EXPECT_EQ(error.at("remedy"), "name-the-companys-realm");
  EXPECT_EQ(Answer({"realm", "show", kFile}).at("remembered"), nullptr);
}

TEST_F(Books, WithTheCheckSwitchedOffAPartnersRealmMayGoOnAsNoneIsRemembered) {
  RelateBirch();
  WriteFile("alder.company.remote.toml", "[values.MultiEntity]\nCheckForRealmReset = \"0\"\n");

  EXPECT_EQ(Run({"realm", "check", kFile, "--realm", "1001"}).exitCode, 0);

  EXPECT_EQ(Answer({"realm", "show", kFile}).at("remembered"), nullptr);
}

TEST_F(Books, TheFirstCheckHasTheFileRememberTheRealm) {
  const Json answer = Answer({"realm", "check", kFile, "--realm", "9130"});

  EXPECT_EQ(answer, Json::parse(R"({"blocked":false,"outcome":"remembered-now","realm":"9130",
                                    "rememberedBefore":null,"remembered":"9130","events":[]})"));
  EXPECT_EQ(Answer({"realm", "show", kFile}).at("remembered"), "9130");
}

TEST_F(Books, AnUnchangedRealmMayGoOn) {
  Done({"realm", "set", kFile, "--realm", "9130"});

  const Outcome outcome = Run({"realm", "check", kFile, "--realm", "9130"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "The realm is unchanged. Intercompany work may go on.\n");
}

TEST_F(Books, AResetRealmIsStoppedAndTheRelationsAreShownOnDemand) {
  RelateBirch();
  Done({"realm", "set", kFile, "--realm", "9130"});

  const Outcome outcome = Run({"realm", "check", kFile, "--realm", "9131", "--answer", "yes", "--json"});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(Json::parse(outcome.err).at("error").at("message").get<std::string>(),
              AllOf(HasSubstr("9131"), HasSubstr("9130")));
  const Json answer = Json::parse(outcome.out);
  EXPECT_EQ(answer.at("blocked"), true);
  EXPECT_EQ(answer.at("remembered"), "9130");
  const Json& events = answer.at("events");
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(events.at(0).at("event"), "message-shown");
  EXPECT_EQ(events.at(0).at("kind"), "question");
  EXPECT_EQ(events.at(1), Json::parse(R"({"event":"answered","answer":"yes","by":"option"})"));
  EXPECT_EQ(events.at(2).at("url"), "krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_REALM_RESET");
  EXPECT_EQ(events.at(2).at("view"), "relations-after-realm-reset");
  EXPECT_EQ(events.at(2).at("relations").at(0).at("partner"), "Birch Services Company");
}

TEST_F(Books, AResetRealmIsStoppedAlsoWhenTheRelationsAreNotWanted) {
  Done({"realm", "set", kFile, "--realm", "9130"});

  const Outcome outcome = Run({"realm", "check", kFile, "--realm", "9131", "--answer", "no"});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.out,
              AllOf(HasSubstr("[question]"), HasSubstr("Answered: No (option)"), testing::Not(HasSubstr("krw:"))));
}

TEST_F(Books, WithNobodyThereTheAnswerIsTheOneThatDoesNothingFurther) {
  Done({"realm", "set", kFile, "--realm", "9130"});

  const Outcome outcome = Run({"realm", "check", kFile, "--realm", "9131"});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Answered: No (nobody)"), testing::Not(HasSubstr("krw:"))));
}

TEST_F(Books, APersonAtTheTerminalIsAskedAboutAResetRealm) {
  Done({"realm", "set", kFile, "--realm", "9130"});
  RunningProgram program(In("."), {"realm", "check", kFile, "--realm", "9131"}, Console::kTerminal);

  program.WaitFor("[y/N] ");
  program.Type("perhaps\n");
  program.WaitFor("[y/N] ");
  program.Type("YES\n");

  program.WaitFor("Answered: Yes (person)");
  program.WaitFor("krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_REALM_RESET");
  EXPECT_EQ(program.End().exitCode, 1);
}

TEST_F(Books, WithoutARealmIntercompanyWorkIsStoppedWithANotice) {
  const Outcome outcome = Run({"realm", "check", kFile});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.out, HasSubstr("[notice] Intercompany transactions\n"));
  EXPECT_THAT(outcome.err, HasSubstr("no realm id"));
  EXPECT_EQ(Answer({"realm", "show", kFile}).at("remembered"), nullptr);
}

TEST_F(Books, WithoutARealmItIsToldWhichOneTheFileRemembers) {
  Done({"realm", "set", kFile, "--realm", "9130"});

  const Outcome outcome = Run({"realm", "check", kFile});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err,
            "multientity: the company reports no realm id, but the company file remembers \"9130\"; intercompany work "
            "must not go on; if the company's own is that one: multientity realm check alder.company --realm 9130\n");
}

TEST_F(Books, WithTheCheckSwitchedOffAnyRealmMayGoOnAndNoneIsRemembered) {
  WriteFile("alder.company.remote.toml", "[values.MultiEntity]\nCheckForRealmReset = \"0\"\n");

  const Outcome outcome = Run({"realm", "check", kFile, "--realm", "9131"});

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "The check of the realm is switched off. Intercompany work may go on.\n");
  EXPECT_EQ(Answer({"realm", "show", kFile}).at("remembered"), nullptr);
}

TEST_F(Books, AnAnswerThatIsNeitherYesNorNoIsNamed) {
  const Outcome outcome = Run({"realm", "check", kFile, "--realm", "9131", "--answer", "maybe"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("--answer"), HasSubstr("\"maybe\""), HasSubstr("yes or no")));
}
