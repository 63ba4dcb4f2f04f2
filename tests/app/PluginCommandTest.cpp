#include "app/Books.h"

using testing::AllOf;
using testing::HasSubstr;

TEST_F(Books, WithAnEstablishedRelationThePluginMayBeOpened) {
  RelateBirch();

  EXPECT_EQ(Answer({"plugin", "check", kFile}), Json::parse(R"({"mayGoOn":true,"events":[]})"));
  EXPECT_EQ(Run({"plugin", "check", kFile}).out, "The plug-in may be opened.\n");
}

TEST_F(Books, WithoutAnEstablishedRelationTheSetUpIsOpenedOnDemand) {
  Done({"relation", "create", kFile, "--realm", "1002", "--partner", "Cedar", "--state", "without-accounts"});

  const Outcome outcome = Run({"plugin", "check", kFile, "--answer", "yes", "--json"});

  EXPECT_EQ(outcome.exitCode, 1);
  const Json answer = Json::parse(outcome.out);
  EXPECT_EQ(answer.at("mayGoOn"), false);
  const Json& command = answer.at("events").at(2);
  EXPECT_EQ(command.at("url"), "krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_NORELATIONS");
  EXPECT_EQ(command.at("view"), "relation-set-up");
  EXPECT_EQ(command.at("relations").at(0).at("realm"), "1002");
}

TEST_F(Books, TheSetUpSaysHowToRelateCompanies) {
  const Outcome outcome = Run({"plugin", "check", kFile, "--answer", "yes"});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("multientity accounts alder.company --free"),
                                 HasSubstr("multientity relation create alder.company")));
  EXPECT_THAT(outcome.err, HasSubstr("no relation with a partner company is established"));
}

TEST_F(Books, WhoDoesNotWantTheSetUpMayGoOn) {
  const Outcome outcome = Run({"plugin", "check", kFile, "--answer", "no"});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out,
              AllOf(HasSubstr("[question]"), testing::Not(HasSubstr("krw:")),
                    testing::EndsWith("No relation is established; the plug-in may be opened all the same.\n")));
}
