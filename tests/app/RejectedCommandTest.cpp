#include <algorithm>
#include <iterator>

#include "app/Books.h"

using testing::AllOf;
using testing::HasSubstr;

namespace {

const std::vector<std::string> kSave = {"rejected",  "save",          kFile,    "--realm", "1001",
                                        "--request", "request-1",     "--type", "bill",    "--amount",
                                        "1234.5",    "--partner-txn", "B-4711"};

std::vector<std::string> Saving(const std::string& option, const std::string& value) {
  std::vector<std::string> words = kSave;
  *std::next(std::ranges::find(words, option)) = value;
  return words;
}

}  // namespace

TEST_F(Books, ARejectedBillIsKeptAndListed) {
  RelateBirch();

  EXPECT_EQ(Answer(kSave), Json::parse(R"({"status":1,"realm":"1001","requestId":"request-1"})"));

  EXPECT_EQ(Answer({"rejected", "list", kFile}), Json::parse(R"({"status":1,"rejected":[
      {"type":"bill","typeNumber":9,"state":"rejected","stateNumber":4,"realm":"1001",
       "partner":"Birch Services Company","requestId":"request-1","amount":"1234.50","currency":"USD",
       "writtenAmount":"1234.5","partnerTransaction":"B-4711"}]})"));
}

TEST_F(Books, RejectedTransactionsAreListedForPeople) {
  RelateBirch();
  Done(Saving("--type", "check"));

  EXPECT_EQ(Run({"rejected", "list", kFile}).out,
            "Type   Partner                 Realm    Amount  Cur  Request    Partner's id\n"
            "-----  ----------------------  -----  --------  ---  ---------  ------------\n"
            "check  Birch Services Company  1001   1,234.50  USD  request-1  B-4711\n");
}

TEST_F(Books, WithoutRejectionsTheListIsEmpty) {
  EXPECT_EQ(Run({"rejected", "list", kFile}).out, "No rejected transactions.\n");
  EXPECT_EQ(Answer({"rejected", "list", kFile}).at("rejected"), Json::array());
}

TEST_F(Books, ADeletedRejectionIsGone) {
  RelateBirch();
  Done(kSave);

  Done({"rejected", "delete", kFile, "--realm", "1001", "--request", "request-1"});

  EXPECT_EQ(Answer({"rejected", "list", kFile}).at("rejected"), Json::array());
}

TEST_F(Books, ARejectionThatIsNotThereIsNotDeleted) {
  RelateBirch();

  const Json error = ErrorOf({"rejected", "delete", kFile, "--realm", "1001", "--request", "request-1"});

  EXPECT_EQ(error.at("exit"), 1);
  EXPECT_EQ(error.at("status"), 0);
  EXPECT_EQ(error.at("meaning"), "there is no rejected transaction with that request id");
  EXPECT_THAT(error.at("hint").get<std::string>(), HasSubstr("rejected list"));
}

TEST_F(Books, ARejectionByAnUnknownPartnerIsRefused) {
  const Json error = ErrorOf(kSave);

  EXPECT_EQ(error.at("status"), 12);
  EXPECT_EQ(error.at("meaning"), "there is no relation with the partner");
}

TEST_F(Books, AUserWhoMaySeeChecksOnlyKeepsNoBillAndSeesNone) {
  RelateBirch();
  Done({"users", "add", kFile, "Robin", "--right", "checks:view"});
  Done(kSave);
  Done(Saving("--type", "check"));

  std::vector<std::string> byRobin = kSave;
  byRobin.insert(byRobin.end(), {"--user", "Robin"});
  EXPECT_EQ(ErrorOf(byRobin).at("status"), 3);

  const Json listed = Answer({"rejected", "list", kFile, "--user", "Robin"}).at("rejected");
  ASSERT_EQ(listed.size(), 1U);
  EXPECT_EQ(listed.at(0).at("type"), "check");
}

TEST_F(Books, AJournalEntryCannotBeRejectedByAPartner) {
  const Outcome outcome = Run(Saving("--type", "journal"));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("\"journal\""), HasSubstr("a bill or a check")));
}

TEST_F(Books, ARejectedAmountFillsTwentyTwoCharacters) {
  RelateBirch();

  Done(Saving("--amount", "0000000000000000123.45"));

  EXPECT_EQ(Answer({"rejected", "list", kFile}).at("rejected").at(0).at("amount"), "123.45");
}

TEST_F(Books, ALongerRejectedAmountIsRefusedBeforeTheCall) {
  const Outcome outcome = Run(Saving("--amount", "00000000000000000123.45"));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("00000000000000000123.45"), HasSubstr("22")));
}

TEST_F(Books, ARejectedAmountThatIsNoneIsNamed) {
  const Outcome outcome = Run(Saving("--amount", "ten"));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("\"ten\""));
}

TEST_F(Books, APartnersIdOfThirtySevenCharactersIsRefusedBeforeTheCall) {
  const Outcome outcome = Run(Saving("--partner-txn", std::string(37, 'p')));

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("partner's transaction id"), HasSubstr("36")));
}

TEST_F(Books, WithTheFeatureSwitchedOffRejectionsAreKeptButNotListed) {
  RelateBirch();
  WriteFile("alder.company.remote.toml", "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");

  Done(kSave);

  EXPECT_EQ(ErrorOf({"rejected", "list", kFile}).at("status"), 2);
}
