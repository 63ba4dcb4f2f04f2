#include "app/PairedCompanies.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

}  // namespace

// Birch says where Alder's requests are booked.
class RulesCommand : public PairedCompanies {
 protected:
  static Arguments Add(const Arguments& more = {}) {
    return With({"rules", "add", kBirchFile, "--partner", kAlder, "--name", "Northern Power", "--expense", "Repairs"},
                more);
  }
};

TEST_F(RulesCommand, ARuleIsAddedListedAndRemoved) {
  const Outcome none = Run({"rules", "list", kBirchFile});
  const Outcome added = Run(Add());
  const Outcome listed = Run({"rules", "list", kBirchFile, "--partner", kAlder});
  const Outcome removed = Run({"rules", "remove", kBirchFile, "1"});

  EXPECT_EQ(none.out, "No rules.\n");
  EXPECT_EQ(added.exitCode, 0) << added.err;
  EXPECT_EQ(added.out, "Added rule 1 for requests of Alder Supply Company.\n");
  EXPECT_THAT(listed.out, AllOf(StartsWith("Rule  Partner "), HasSubstr("Northern Power  any "),
                                HasSubstr("  Repairs "), HasSubstr("its own name"), HasSubstr("added")));
  EXPECT_EQ(removed.out, "Removed rule 1 for requests of Alder Supply Company.\n");
  EXPECT_EQ(Run({"rules", "list", kBirchFile}).out, "No rules.\n");
  EXPECT_THAT(Run({"audit", "show", kBirchFile, "--what", "rules"}).out,
              AllOf(HasSubstr("added rule 1: "), HasSubstr("name Northern Power"), HasSubstr("removed rule 1")));
}

TEST_F(RulesCommand, ProgramsAndSpreadsheetsGetAllOfARule) {
  Done({"name", "add", kBirchFile, "Northern", "--kind", "vendor"});
  const Json added = Answer(Add({"--hint", "Utilities", "--memo", "meter 7", "--as", "Northern"})).at("rule");

  const Json listed = Answer({"rules", "list", kBirchFile}).at("rules").at(0);
  const std::string csv = Run({"rules", "list", kBirchFile, "--csv"}).out;

  EXPECT_EQ(listed, added);
  EXPECT_EQ(listed.at("partner"), kAlder);
  EXPECT_EQ(listed.at("name"), "Northern Power");
  EXPECT_EQ(listed.at("hint"), "Utilities");
  EXPECT_EQ(listed.at("memo"), "meter 7");
  EXPECT_EQ(listed.at("account").at("name"), "Repairs");
  EXPECT_EQ(listed.at("bookedAs").at("name"), "Northern");
  EXPECT_EQ(listed.at("learned"), false);
  EXPECT_EQ(listed.at("unfit"), nullptr);
  EXPECT_THAT(csv, AllOf(StartsWith("id,partner,realm,name,hint,memo,account.id,account.name,bookedAs.id,"),
                         HasSubstr(",Northern Power,Utilities,meter 7,")));
  EXPECT_EQ(Answer({"rules", "remove", kBirchFile, "1"}).at("rule"), added);
}

TEST_F(RulesCommand, WhatARuleFitsIsBookedByItAndTheRestStaysWithTheReason) {
  Done(Add());
  const std::string fits = BillInTheInbox("NP-1");
  Done({"name", "add", kFile, "Stone", "--kind", "vendor"});
  Done({"bill", "record", kFile, "--name", "Stone", "--number", "S-1", "--date", "2024-03-06", "--line", "Utilities",
        "20.00", "--partner", kBirch, "--share", "50%"});
  Carry();

  const Outcome shown = Run({"inbox", "show", kBirchFile, fits});
  const Outcome outcome = Run({"inbox", "accept", kBirchFile, "--partner", kAlder, "--by", "rule"});

  EXPECT_THAT(shown.out, AllOf(HasSubstr("\nRule:          1, to Repairs, under its own name\n"),
                               HasSubstr("multientity inbox accept birch.company " + fits +
                                         " --partner \"Alder Supply Company\" --by rule; or reject it")));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.out, AllOf(StartsWith("Booked request " + fits), HasSubstr("of 2024-03-05, by rule 1.\n"),
                                 HasSubstr("\nLeft request "), HasSubstr(": no rule fits it\n"),
                                 HasSubstr("multientity rules add FILE --partner PARTNER")));
  EXPECT_EQ(outcome.err, "multientity: 1 of 2 requests left as before; why is told of each\n");
  EXPECT_EQ(InInbox(fits).at("state"), "accepted");
}

TEST_F(RulesCommand, OnlyWhatIsUpToAnAmountIsBookedByRule) {
  Done(Add());
  const std::string small = BillInTheInbox("NP-1", "20.00");
  const std::string large = BillInTheInbox("NP-2", "900.00");

  const Json accepted = Answer({"inbox", "accept", kBirchFile, "--up-to", "100", "--by", "rule"});

  ASSERT_EQ(accepted.at("booked").size(), 1U);
  EXPECT_EQ(accepted.at("booked").at(0).at("requestId"), small);
  EXPECT_EQ(accepted.at("booked").at(0).at("byRule"), 1);
  EXPECT_EQ(accepted.at("left"), Json::array());
  EXPECT_EQ(InInbox(large).at("state"), "new");
  EXPECT_EQ(InInbox(large).at("rule").at("id"), 1);
}

TEST_F(RulesCommand, WhatWasLearnedIsShownAsSuch) {
  const std::string request = BillInTheInbox("NP-1");
  Done({"inbox", "accept", kBirchFile, request, "--expense", "Repairs", "--new-name", "Northern"});
  const std::string next = BillInTheInbox("NP-2");

  EXPECT_THAT(Run({"rules", "list", kBirchFile}).out, AllOf(HasSubstr("Northern Power"), HasSubstr("learned")));
  EXPECT_THAT(Run({"inbox", "show", kBirchFile, next}).out, HasSubstr("Rule:          1 (learned), to Repairs, as "
                                                                      "Northern\n"));
  EXPECT_EQ(Run({"inbox", "accept", kBirchFile, next, "--by", "rule"}).exitCode, 0);
}

TEST_F(RulesCommand, ARuleThatFitsNothingMoreSaysWhy) {
  Done({"account", "add", kBirchFile, "Lift", "--type", "Expense"});
  Done(Add());
  Done({"rules", "add", kBirchFile, "--partner", kAlder, "--name", "Stone", "--expense", "Lift"});
  Done({"account", "delete", kBirchFile, "Lift"});

  const Outcome listed = Run({"rules", "list", kBirchFile});

  EXPECT_THAT(listed.out, HasSubstr("\nRule 2 fits nothing: the account \"Lift\" is marked deleted\n"));
  EXPECT_THAT(listed.out, Not(HasSubstr("Rule 1 fits nothing")));
}

TEST_F(RulesCommand, APartnersRequestsAreBookedAsSoonAsTheyComeOnceThatIsSaid) {
  Done(Add());
  const Outcome set = Run({"partner", "auto", kBirchFile, kAlder, "--up-to", "50"});
  const std::string small = BillInTheInbox("NP-1", "90.00");
  const std::string large = BillInTheInbox("NP-2", "900.00");
  const Outcome shown = Run({"partner", "show", kBirchFile, kAlder});
  const Outcome off = Run({"partner", "auto", kBirchFile, kAlder, "--off"});
  const std::string after = BillInTheInbox("NP-3", "80.00");

  EXPECT_EQ(set.out,
            "Requests of Alder Supply Company up to 50.00 USD that a rule fits are booked as soon as they come.\n");
  EXPECT_THAT(shown.out, HasSubstr("\nBy rule:     up to 50.00 USD\n"));
  EXPECT_EQ(off.out, "Each request of Alder Supply Company waits in the inbox now.\n");
  EXPECT_EQ(InInbox(small).at("state"), "accepted");
  EXPECT_EQ(InInbox(large).at("state"), "new");
  EXPECT_EQ(InInbox(after).at("state"), "new");
  EXPECT_EQ(Answer({"partner", "auto", kBirchFile, kAlder, "--up-to", "7.5"}).at("partner").at("bookedUpTo"), "7.50");
}

TEST_F(RulesCommand, WhatIsNotAcceptableIsToldAndChangesNothing) {
  BillInTheInbox();
  Done(Add());
  const std::string before = Whole(kBirchFile);
  const auto expectRefused = [&](const Arguments& arguments, const std::string& why) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << outcome.out;
    EXPECT_THAT(outcome.err, HasSubstr(why));
  };

  expectRefused({"rules", "add", kBirchFile, "--partner", kAlder, "--expense", "Repairs"}, "--name");
  expectRefused({"rules", "add", kBirchFile, "--partner", kAlder, "--name", "", "--expense", "Repairs"},
                "The name of the requests");
  expectRefused({"rules", "add", kBirchFile, "--partner", "Cedar", "--name", "X", "--expense", "Repairs"}, "\"Cedar\"");
  expectRefused({"rules", "add", kBirchFile, "--partner", kAlder, "--name", "X", "--expense", "Repars"}, "\"Repars\"");
  expectRefused(
      {"rules", "add", kBirchFile, "--partner", kAlder, "--name", "X", "--expense", "Repairs", "--as", "Nobody"},
      "\"Nobody\"");
  expectRefused(Add(), "there is a rule for the same requests, rule 1");
  expectRefused({"rules", "remove", kBirchFile, "7"}, "there is no rule 7");
  expectRefused({"rules", "remove", kBirchFile, "first"}, "\"first\"");
  expectRefused({"inbox", "accept", kBirchFile, "--all", "--by", "rules"}, "--by \"rules\" is not acceptable");
  expectRefused({"inbox", "accept", kBirchFile, "--all", "--by", "rule", "--expense", "Repairs"}, "--by");
  expectRefused({"inbox", "accept", kBirchFile, "--all", "--by", "rule", "--new-name", "X"}, "--by");
  expectRefused({"inbox", "accept", kBirchFile, "--by", "rule"}, "--all");
  expectRefused({"partner", "auto", kBirchFile, kAlder}, "--up-to");
  expectRefused({"partner", "auto", kBirchFile, kAlder, "--up-to", "0"}, "\"0\" is not above nothing");
  expectRefused({"partner", "auto", kBirchFile, kAlder, "--up-to", "much"}, "much");
  expectRefused({"partner", "auto", kBirchFile, kAlder, "--up-to", "5", "--off"}, "--off");

  EXPECT_EQ(Whole(kBirchFile), before);
}
