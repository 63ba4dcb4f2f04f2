#include <algorithm>

#include "app/Books.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::vector<std::string> RequestsIn(const Json& answer) {
  std::vector<std::string> requests;
  for (const Json& entry : answer.at("transactions")) requests.push_back(entry.at("requestId"));
  return requests;
}

}  // namespace

class March : public Books {
 public:
  March() {
    RelateBirch();
    ImportMarch();
  }
};

TEST_F(March, WithoutBoundsEveryIntercompanyLineIsListed) {
  EXPECT_THAT(RequestsIn(Answer({"transactions", kFile})),
              ElementsAre("request-bill", "request-check", "request-journal"));
}

TEST_F(March, BothBoundsOfAPeriodBelongToIt) {
  EXPECT_THAT(RequestsIn(Answer({"transactions", kFile, "--from", "2024-03-01", "--to", "2024-03-15"})),
              ElementsAre("request-bill", "request-check"));
}

TEST_F(March, APeriodMayBeOpenAtItsEnd) {
  EXPECT_THAT(RequestsIn(Answer({"transactions", kFile, "--from", "2024-03-02"})),
              ElementsAre("request-check", "request-journal"));
}

TEST_F(March, APeriodMayBeOpenAtItsBeginning) {
  EXPECT_THAT(RequestsIn(Answer({"transactions", kFile, "--to", "2024-03-30"})),
              ElementsAre("request-bill", "request-check"));
}

TEST_F(March, ABillIsListedWithItsAccountNameAmountAndDate) {
  const Json bill = Answer({"transactions", kFile}).at("transactions").at(0);

  EXPECT_EQ(bill.at("type"), "bill");
  EXPECT_EQ(bill.at("typeNumber"), 9);
  EXPECT_EQ(bill.at("date"), "2024-03-01");
  EXPECT_EQ(bill.at("name").at("name"), "Northern Power");
  EXPECT_EQ(bill.at("account"),
            Json::parse(R"({"id":)" + std::to_string(AccountId("Due from Birch")) + R"(,"name":"Due from Birch"})"));
  EXPECT_EQ(bill.at("otherAccount"), nullptr);
  EXPECT_EQ(bill.at("amount"), "40.00");
  EXPECT_EQ(bill.at("currency"), "USD");
  EXPECT_EQ(bill.at("state"), "sent");
  EXPECT_EQ(bill.at("realm"), "1001");
  EXPECT_EQ(bill.at("partner"), "Birch Services Company");
}

TEST_F(March, AmountsAreAlignedAtTheirRightForPeople) {
  EXPECT_THAT(Run({"transactions", kFile, "--to", "2024-03-15"}).out,
              testing::AllOf(HasSubstr("     40.00  USD  sent"), HasSubstr("  1,250.00  USD  established")));
}

TEST_F(March, TheListFitsTheTerminalAndSaysWhatItLeavesOut) {
  if (IsWindowsProgram()) GTEST_SKIP() << "an emulated program has no console here";

  const Outcome outcome = RunProgramAtATerminal(80, In("."), {"transactions", kFile, "--to", "2024-03-01"});

  EXPECT_EQ(outcome.out,
            "Date        Type  Txn  Partner      Name         Account      Amount  Cur  State\n"
            "----------  ----  ---  -----------  -----------  -----------  ------  ---  -----\n"
            "2024-03-01  bill    1  Birch Serv\u2026  Northern P\u2026  Due from B\u2026   40.00  USD  sent\n"
            "----------  ----  ---  -----------  -----------  -----------  ------  ---  -----\n"
            "Total                  owed to us                              40.00  USD\n"
            "(--wide shows also: Line, Liability account, Request)\n");
}

TEST_F(March, TheListIsWholeAtANarrowTerminalWhenItIsAskedForSo) {
  if (IsWindowsProgram()) GTEST_SKIP() << "an emulated program has no console here";

  const Outcome outcome = RunProgramAtATerminal(80, In("."), {"transactions", kFile, "--wide"});

  EXPECT_EQ(outcome.out, Run({"transactions", kFile}).out);
}

TEST_F(March, LinesAreListedByDateWhateverWasEnteredFirst) {
  WriteFile("earlier.csv",
            "transaction,type,date,name,memo,account,amount,partner_realm,request_id\n"
            "B2,bill,2024-02-01,Northern Power,,Payables,-1.00,,\n"
            "B2,bill,,,,Due from Birch,1.00,1001,earlier\n"
            "C2,check,2024-03-01,Northern Power,,Checking,-2.00,,\n"
            "C2,check,,,,Due from Birch,2.00,1001,same-day\n");
  Done({"import", "transactions", kFile, "earlier.csv"});

  EXPECT_THAT(RequestsIn(Answer({"transactions", kFile})),
              ElementsAre("earlier", "request-bill", "same-day", "request-check", "request-journal"));
}

TEST_F(March, ASpreadsheetGetsEveryColumnByTheNameThatItHasForPrograms) {
  const Outcome outcome = Run({"transactions", kFile, "--to", "2024-03-01", "--csv"});

  EXPECT_EQ(outcome.out,
            "transaction,line,type,typeNumber,date,realm,partner,name.id,name.name,memo,account.id,account.name,"
            "otherAccount.id,otherAccount.name,amount,currency,state,stateNumber,ofBefore,requestId\n"
            "1,3,bill,9,2024-03-01,1001,Birch Services Company,1,Northern Power,," +
                std::to_string(AccountId("Due from Birch")) +
                ",Due from Birch,,,40.00,USD,sent,1,false,request-bill\n");
}

TEST_F(March, ASpreadsheetGetsTheHeaderOfAnEmptyListToo) {
  const Outcome outcome = Run({"transactions", kFile, "--to", "1999-01-01", "--csv"});

  EXPECT_THAT(outcome.out, testing::StartsWith("transaction,line,type,"));
  EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 1);
}

TEST_F(March, ASpreadsheetAndAProgramCannotBothGetTheList) {
  EXPECT_EQ(Run({"transactions", kFile, "--csv", "--json"}).exitCode, 2);
}

TEST_F(March, WhatAUserMayNotSeeIsSaidBesideASpreadsheet) {
  Done({"users", "add", kFile, "Robin", "--right", "checks:view"});

  const Outcome outcome = Run({"transactions", kFile, "--user", "Robin", "--csv"});

  EXPECT_EQ(outcome.err, "note: You may not see bills and journal entries.\n");
}

TEST_F(March, TheListMayBeNarrowedDown) {
  EXPECT_THAT(RequestsIn(Answer({"transactions", kFile, "--type", "journal"})), ElementsAre("request-journal"));
  EXPECT_THAT(RequestsIn(Answer({"transactions", kFile, "--state", "established", "--account", "Due from Birch"})),
              ElementsAre("request-check"));
  EXPECT_THAT(RequestsIn(Answer({"transactions", kFile, "--request", "request-bill"})), ElementsAre("request-bill"));
}

TEST_F(March, WhatIsNoStateAndNoTypeIsNamed) {
  EXPECT_THAT(Run({"transactions", kFile, "--state", "lost"}).err, HasSubstr("lost"));
  EXPECT_THAT(Run({"transactions", kFile, "--type", "invoice"}).err, HasSubstr("invoice"));
}

TEST_F(March, OneTransactionIsListedByItsId) {
  const Json bill = Answer({"transactions", kFile}).at("transactions").at(0);

  const Json answer = Answer({"transactions", kFile, "--txn", std::to_string(bill.at("transaction").get<int>())});

  EXPECT_THAT(RequestsIn(answer), ElementsAre("request-bill"));
  EXPECT_EQ(answer.at("transactions")[0], bill);
}

TEST_F(March, ATransactionWithoutIntercompanyLinesHasAnEmptyList) {
  EXPECT_EQ(Run({"transactions", kFile, "--txn", "4711"}).out, "No intercompany transactions.\n");
}

TEST_F(March, AUserSeesOnlyTheTypesThatTheirRightsAllow) {
  Done({"users", "add", kFile, "Robin", "--right", "checks:view"});

  EXPECT_THAT(RequestsIn(Answer({"transactions", kFile, "--user", "Robin"})), ElementsAre("request-check"));
}

TEST_F(March, ATransactionThatTheUserMayNotSeeIsRefused) {
  Done({"users", "add", kFile, "Robin", "--right", "checks:view"});
  const Json bill = Answer({"transactions", kFile}).at("transactions").at(0);

  const Json error =
      ErrorOf({"transactions", kFile, "--txn", std::to_string(bill.at("transaction").get<int>()), "--user", "Robin"});

  EXPECT_EQ(error.at("status"), 3);
}

TEST_F(Books, ADayThatDoesNotExistIsNamed) {
  const Outcome outcome = Run({"transactions", kFile, "--from", "2023-02-29"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("2023-02-29"));
}

TEST_F(Books, ADateInAnotherFormIsNamed) {
  const Outcome outcome = Run({"transactions", kFile, "--to", "03/31/2024"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("03/31/2024"));
  EXPECT_THAT(outcome.err, HasSubstr("YYYY-MM-DD"));
}

TEST_F(Books, APeriodThatEndsBeforeItBeginsIsRefused) {
  const Outcome outcome = Run({"transactions", kFile, "--from", "2024-04-01", "--to", "2024-03-31"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("2024-04-01"));
}

TEST_F(Books, OneTransactionAndAPeriodExcludeEachOther) {
  EXPECT_EQ(Run({"transactions", kFile, "--txn", "1", "--from", "2024-03-01"}).exitCode, 2);
}

TEST_F(EmptyDirectory, TheSampleCompaniesAreImportedWhole) {
  const std::string samples = MULTIENTITY_SAMPLES "/alder/";
  Done({"init", kFile, "--name", "Alder Supply Company", "--sample"});
  Done({"import", "accounts", kFile, samples + "accounts.csv"});
  Done({"import", "names", kFile, samples + "names.csv"});
  Done({"relation", "create", kFile, "--realm", "5120918846275", "--partner", "Birch Services Company", "--due-from",
        "Due from Birch Services Company", "--due-to", "Due to Birch Services Company"});

  const Json answer = Answer({"import", "transactions", kFile, samples + "transactions.csv"});

  EXPECT_EQ(answer.at("transactions"), 600);
  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions").size(), answer.at("intercompanyLines"));
}
