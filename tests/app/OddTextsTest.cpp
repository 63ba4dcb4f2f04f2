#include <algorithm>

#include "app/Books.h"

// What people type and files hold is data for the screen, the log and the company file.

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::size_t kMebibyte = 1U << 20U;

std::vector<std::string> CreateRelation(const std::string& realm, const std::string& partner) {
  return {"relation", "create", kFile, "--realm", realm, "--partner", partner, "--state", "4"};
}

class OddWords : public Books, public testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(Every, OddWords,
                         testing::Values("%s%n%d%999999999s", "'; DROP TABLE--", "\"North\" & 'Co'", "\\x41\\0",
                                         "\xc3\xa9\xe2\x82\xac"),
                         [](const auto& text) { return "number" + std::to_string(text.index); });

TEST_P(OddWords, AreARealmIdAndAPartnersName) {
  Done(CreateRelation(GetParam(), GetParam()));

  const Json relation = Answer({"relation", "show", kFile, "--realm", GetParam()}).at("relation");
  EXPECT_EQ(relation.at("realm"), GetParam());
  EXPECT_EQ(relation.at("partner"), GetParam());
}

TEST_P(OddWords, AreOnTheScreenAsTheyWereTyped) {
  Done(CreateRelation("1002", GetParam()));

  EXPECT_THAT(Run({"relation", "list", kFile}).out, HasSubstr(GetParam()));
}

class ControlCharacters : public Books, public testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(Every, ControlCharacters,
                         testing::Values("a\tb", "a\nb", "\x1b[31mred", "\x7f", "\u009b31m", "\u061cb", "a\u200e",
                                         "\u202e", "\u2066", "\u2028"),
                         [](const auto& text) { return "number" + std::to_string(text.index); });

TEST_P(ControlCharacters, AreRefusedAndDoNotReachTheScreen) {
  const std::string before = Contents(kFile);

  const Outcome outcome = Run(CreateRelation(GetParam(), "North"));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, Not(HasSubstr(GetParam())));
  EXPECT_EQ(Contents(kFile), before);
}

class BytesThatAreNoText : public Books {
 protected:
  void SetUp() override {
    if (IsWindowsProgram()) GTEST_SKIP() << "Wine makes text of all bytes, as Windows hands over nothing else";
  }
};

TEST_F(BytesThatAreNoText, AreRefusedAsARealmIdAndDoNotReachTheScreen) {
  const std::string before = Contents(kFile);

  const Outcome outcome = Run(CreateRelation("\xff\xfe", "North"));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, Not(HasSubstr("\xff\xfe")));
  EXPECT_EQ(Contents(kFile), before);
}

TEST_F(BytesThatAreNoText, DoNotReachTheScreenInTheNameOfAFile) {
  const Outcome outcome = Run({"accounts", "caf\xE9.company"});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, HasSubstr("caf\\xE9.company"));
}

TEST_F(BytesThatAreNoText, AreRefusedAsAPartnersName) {
  const Outcome outcome = Run(CreateRelation("1002", "Caf\xE9"));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("UTF-8"));
}

// Windows has no longer command lines than 32 KiB.
TEST_F(Books, AWordOfThirtyKibibytesIsRefusedInAShortMessage) {
  const Outcome outcome = Run(CreateRelation(std::string(30U << 10U, '%'), "North"));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("19"));
  EXPECT_LT(outcome.err.size(), 1000U);
}

TEST_F(Books, AFieldOfAMebibyteIsRefusedWithItsLine) {
  WriteFile("names.csv", "name,kind\n" + std::string(kMebibyte, '%') + ",vendor\n");
  const std::string before = Contents(kFile);

  const Outcome outcome = Run({"import", "names", kFile, "names.csv"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("names.csv, line 2"));
  EXPECT_EQ(Contents(kFile), before);
}

TEST_F(Books, ANulInAFileIsRefusedWithItsLine) {
  using namespace std::string_literals;
  WriteFile("names.csv", "name,kind\nNo\0rth,vendor\n"s);

  const Outcome outcome = Run({"import", "names", kFile, "names.csv"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("names.csv, line 2"));
  EXPECT_THAT(outcome.err, HasSubstr("\\x00"));
}

// What a screen would obey in a name.
constexpr std::string_view kSteering = "\u009b31m\u202eht\u2066roN\u200f\u2028";
constexpr std::string_view kSteeringShown =
    "\\xC2\\x9B31m\\xE2\\x80\\xAEht\\xE2\\x81\\xA6roN\\xE2\\x80\\x8F\\xE2\\x80\\xA8";

// Older programs took names that this one refuses.
class NamesOfAnOlderProgram : public Books {
 protected:
  void SetUp() override {
    RelateBirch();
    ChangeTheFile("UPDATE me_relation SET partner_name = '" + std::string(kSteering) + "\n'");
  }
};

TEST_F(NamesOfAnOlderProgram, StandInAListAsTheirBytesInALineOfTheirOwnWidth) {
  const std::string name = std::string(kSteeringShown) + "\\x0A";

  EXPECT_EQ(Run({"relation", "list", kFile}).out, "Id  Realm  Partner" + std::string(name.size() - 7, ' ') +
                                                      "  State        Due from        Due to\n"
                                                      "--  -----  " +
                                                      std::string(name.size(), '-') +
                                                      "  -----------  --------------  ------------\n"
                                                      " 1  1001   " +
                                                      name + "  established  Due from Birch  Due to Birch\n");
}

TEST_F(NamesOfAnOlderProgram, StandAloneAsTheirBytes) {
  const std::string out = Run({"relation", "show", kFile, "--realm", "1001"}).out;

  EXPECT_THAT(out, HasSubstr("\nPartner:    " + std::string(kSteeringShown) + "\\x0A\nType:"));
}

TEST_F(NamesOfAnOlderProgram, AreTheSameNamesForPrograms) {
  const Outcome outcome = Run({"relation", "list", kFile, "--json"});

  EXPECT_THAT(outcome.out, HasSubstr("\\u009B31m\\u202Eht\\u2066roN\\u200F\\u2028\\n"));
  EXPECT_EQ(Json::parse(outcome.out).at("relations")[0].at("partner"), std::string(kSteering) + "\n");
}

TEST_F(NamesOfAnOlderProgram, StandInTheAuditTrailAsTheirBytesAndInItsCsvAsTheyAre) {
  Done({"relation", "delete", kFile, "--realm", "1001"});

  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "relation.delete"}).out, HasSubstr(kSteeringShown));
  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "relation.delete", "--csv"}).out,
              HasSubstr(std::string(kSteering) + "\n"));
}

TEST_F(Books, ARememberedRealmIdDoesNotSteerTheScreen) {
  Remember("MERealmId", "91" + std::string(kSteering));

  EXPECT_EQ(Run({"realm", "show", kFile}).out,
            "The company file remembers the realm id 91" + std::string(kSteeringShown) + ".\n");
}

TEST_F(EmptyDirectory, TheNameOfAFileDoesNotSteerTheScreen) {
  const std::string file = std::string(kSteering) + "\nmultientity, done";

  const Outcome outcome = Run({"accounts", file});

  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, HasSubstr(std::string(kSteeringShown) + "\\x0Amultientity, done"));
  EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1);
}

TEST_F(EmptyDirectory, AWordThatIsNotUnderstoodDoesNotSteerTheScreen) {
  const Outcome outcome = Run({"accounts", kFile, "--" + std::string(kSteering)});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--" + std::string(kSteeringShown)));
}

TEST_F(EmptyDirectory, TheNameOfAFileDoesNotSteerTheScreenOfAProgramThatReadsErrors) {
  const Outcome outcome = Run({"accounts", std::string(kSteering), "--json"});

  EXPECT_THAT(outcome.err, HasSubstr("\\u009B31m\\u202E"));
  EXPECT_THAT(Json::parse(outcome.err).at("error").at("message"), HasSubstr(std::string(kSteering)));
}

// What programs other than this one may have left in the log.
class OddLog : public Books {
 protected:
  Outcome ShowLogOf(const std::string& message) const {
    WriteFile("alder.company.log",
              "2024-03-01T08:00:00.000Z\tAd\x1b[2Jmin\t1\t5\tSrc/Odd\t7\tOdd\x1b[2J\tOdd()\t" + message + "\n");
    return Run({"log", kFile, "--last", "1"});
  }
};

TEST_F(OddLog, ShowsALineOfAMebibyteAsAWhole) {
  const std::string percents(kMebibyte, '%');

  const Outcome outcome = ShowLogOf("[" + percents + "]");

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_TRUE(outcome.out.find("[" + percents + "]") != std::string::npos);
}

TEST_F(OddLog, ShowsNothingThatSteersTheScreen) {
  const Outcome outcome = ShowLogOf(std::string(kSteering) + " Caf\xE9");

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, HasSubstr(std::string(kSteeringShown) + " Caf\\xE9\n"));
}

TEST_F(OddLog, ShowsNoControlCharacters) {
  using namespace std::string_literals;

  const Outcome outcome = ShowLogOf("\x1b[31mred\x1b[0m, \0, \x7f, \\x1B"s);

  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.out, HasSubstr("\\x1B[31mred\\x1B[0m, \\x00, \\x7F, \\x1B"));
  EXPECT_THAT(outcome.out, Not(testing::ContainsRegex("[\x01-\x09\x0b-\x1f\x7f]")));
  EXPECT_THAT(outcome.out, Not(HasSubstr("\0"s)));
}

}  // namespace
