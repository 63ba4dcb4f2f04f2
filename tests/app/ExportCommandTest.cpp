#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <sstream>

#include "app/Books.h"
#include "app/OtherProgram.h"

// The export, also as the programs for which it is written read it.

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr const char* kJournal = "alder.journal";

// By account, without those that are zero.
using Balances = std::map<std::string, std::int64_t>;

int DigitOf(char digit) {
  return static_cast<int>(std::string_view("0123456789ABCDEF").find(digit));
}

bool IsEscape(std::string_view text, std::size_t index) {
  const auto isDigit = [&](std::size_t place) {
    return place < text.size() && std::string_view("0123456789ABCDEF").find(text[place]) != std::string_view::npos;
  };
  return text[index] == '%' && isDigit(index + 1) && isDigit(index + 2);
}

std::string ReadBack(std::string_view text) {
  std::string back;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (!IsEscape(text, index)) {
      back += text[index];
      continue;
    }
    back += static_cast<char>(DigitOf(text[index + 1]) * 16 + DigitOf(text[index + 2]));
    index += 2;
  }
  return back;
}

std::string Quoted(std::string_view text, char quote) {
  std::string quoted(1, quote);
  for (const char character : text) quoted.append(character == quote ? 2 : 1, character);
  return quoted + quote;
}

// Of an amount with two decimals or fewer.
std::int64_t MinorUnits(const std::string& amount) {
  const std::size_t point = std::min(amount.find('.'), amount.size());
  std::string digits = amount.substr(0, point);
  std::string decimals = point == amount.size() ? "" : amount.substr(point + 1);
  decimals.resize(2, '0');
  return std::stoll(digits + decimals);
}

void Add(Balances& balances, const std::string& account, const std::string& amount) {
  const std::int64_t balance = MinorUnits(amount.substr(0, amount.find(' ')));
  if (balance == 0) return;
  EXPECT_TRUE(balances.emplace(ReadBack(account), balance).second) << account;
}

class ExportedBooks : public Books {
 protected:
  Outcome RunHledger(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"hledger", "-f", kJournal});
    return RunOtherProgram(In("."), arguments);
  }
  Outcome RunLedger(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"ledger", "--args-only", "--pedantic", "-f", kJournal});
    return RunOtherProgram(In("."), arguments);
  }

  Balances HledgersBalances() const {
    const Outcome outcome = RunHledger({"balance", "--flat", "-N", "-O", "csv"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    std::istringstream lines(outcome.out);
    Balances balances;
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
      // "account","amount", with quotes doubled.
      const std::size_t comma = line.rfind(",\"");
      std::string account = line.substr(1, comma - 2);
      for (std::size_t at = 0; (at = account.find("\"\"", at)) != std::string::npos; ++at) account.erase(at, 1);
      Add(balances, account, line.substr(comma + 2));
    }
    return balances;
  }

  Balances LedgersBalances() const {
    const Outcome outcome =
        RunLedger({"balance", "--flat", "--no-total", "--format", "%(account)\t%(quantity(amount))\n"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    std::istringstream lines(outcome.out);
    Balances balances;
    for (std::string line; std::getline(lines, line);) {
      const std::size_t tab = line.find('\t');
      Add(balances, line.substr(0, tab), line.substr(tab + 1));
    }
    return balances;
  }

  // As the company file has them.
  Balances CompanysBalances() const {
    Balances balances;
    OtherProgram(In(kFile)).ForEachRow(
        "SELECT full_name || iif(deleted AND (SELECT count(*) FROM account AS other WHERE other.full_name = "
        "account.full_name) > 1, ' (deleted #' || account.id || ')', ''), sum(amount) FROM txn_line JOIN account ON "
        "account.id = account_id GROUP BY account_id HAVING sum(amount) <> 0",
        [&balances](const std::string& account, std::int64_t balance) { balances.emplace(account, balance); });
    return balances;
  }

  void ExpectTheSameBalances() const {
    Done({"export", kFile, "--output", kJournal, "--replace"});
    const Balances balances = CompanysBalances();
    EXPECT_GT(balances.size(), 1U);
    EXPECT_EQ(HledgersBalances(), balances);
    EXPECT_EQ(LedgersBalances(), balances);
    const Outcome strict = RunHledger({"check", "--strict"});
    EXPECT_EQ(strict.exitCode, 0) << strict.err;
  }

  // Posts amounts that sum to zero, whatever texts they have.
  void Post(const std::string& number, const std::string& memo, const std::string& lineMemo,
            const std::vector<std::pair<int, std::int64_t>>& lines, int name = 0) const {
    std::ostringstream sql;
    sql << "BEGIN; INSERT INTO txn (type, date, name_id, memo, document_number) VALUES (9, " << kDay << ", nullif("
        << name << ", 0), " << Quoted(memo, '\'') << ", " << Quoted(number, '\'') << ");";
    for (const auto& [account, amount] : lines) {
      sql << "INSERT INTO txn_line (txn_id, account_id, amount, memo) VALUES ((SELECT max(id) FROM txn), " << account
          << ", " << amount << ", " << Quoted(lineMemo, '\'') << ");";
    }
    sql << "UPDATE txn SET posted = 1 WHERE posted = 0; COMMIT";
    ChangeTheFile(sql.str());
  }

  // Adds accounts in one file, and returns the number of the first.
  int AddAccounts(const std::vector<std::string>& names) const {
    std::string csv = "name,type\n";
    for (const std::string& name : names) csv += Quoted(name, '"') + ",Expense\n";
    WriteFile("more.csv", csv);
    Done({"import", "accounts", kFile, "more.csv"});
    return AccountId(names.front());
  }

 private:
  static constexpr int kDay = 2024 * 65536 + 3 * 256 + 1;
};

// Each character that either program reads as syntax somewhere, where it is alone, first, last and between blanks.
std::vector<std::string> OddNames() {
  std::vector<std::string> names;
  for (const char character : std::string_view("!\"#$%&'()*+,-./;<=>?@[\\]^_`{|}~09")) {
    const std::string odd(1, character);
    for (const std::string& name :
         {odd + "Rent", "Rent" + odd, "Re" + odd + "nt", "a " + odd + " b", odd + " c", odd + odd, odd + "d" + odd}) {
      names.push_back(name);
    }
  }
  for (const char* const name : {"(Rent)",
                                 "[Rent]",
                                 "<Rent>",
                                 "[(Rent)]",
                                 "two  blanks",
                                 "three   blanks",
                                 "two  ; blanks",
                                 "check it",
                                 "assert it",
                                 "expr 1",
                                 "eval 1",
                                 "account Rent",
                                 "include x",
                                 "2024-03-01 * Rent",
                                 "10.00 USD",
                                 "Rent 10 USD",
                                 "%20",
                                 "%2520",
                                 "%25",
                                 "5% A0",
                                 "100%",
                                 "Rent (deleted #3)",
                                 "Rent",
                                 "caf\u00e9",
                                 "caf\u00a0e",
                                 "a\u00a0\u00a0b",
                                 "\u3000c",
                                 "\u65e5\u672c",
                                 "; type: A",
                                 "type:A",
                                 "Rent ; type: L",
                                 "Top",
                                 "Top:(sub)",
                                 "Top:; sub",
                                 "Top:two  blanks",
                                 "Top:*",
                                 "Assets",
                                 "Equity",
                                 "Unknown",
                                 "~",
                                 "P",
                                 "Y2024"}) {
    names.emplace_back(name);
  }
  // "type:A" stands under another one, and names are the same in capitals.
  names.insert(std::ranges::find(names, "type:A"), "type");
  std::ranges::stable_sort(names, [](const std::string& left, const std::string& right) {
    return std::ranges::count(left, ':') < std::ranges::count(right, ':');
  });
  std::erase_if(names, [](const std::string& name) { return name == "; type: A" || name == "Rent ; type: L"; });
  return names;
}

}  // namespace

TEST_F(ExportedBooks, HaveTheSameBalancesElsewhereAsTheSamplesHave) {
  std::filesystem::remove(In(kFile));
  const std::string samples = MULTIENTITY_SAMPLES "/alder/";
  for (const char* const list : {"accounts", "names", "transactions"}) {
    WriteFile(std::string(list) + ".csv", ContentsOf(samples + list + ".csv"));
  }
  Done({"init", kFile, "--name", "Alder Supply Company"});
  Done({"import", "accounts", kFile, "accounts.csv"});
  Done({"import", "names", kFile, "names.csv"});
  Done({"relation", "create", kFile, "--realm", "5120918846275", "--partner", "Birch Services Company", "--due-from",
        "Due from Birch Services Company", "--due-to", "Due to Birch Services Company"});
  Done({"import", "transactions", kFile, "transactions.csv"});

  ExpectTheSameBalances();
}

TEST_F(ExportedBooks, KeepEveryOddAccountByItself) {
  const std::vector<std::string> names = OddNames();
  const int first = AddAccounts(names);
  std::vector<std::pair<int, std::int64_t>> lines;
  for (std::size_t index = 0; index < names.size(); ++index) {
    const auto amount = static_cast<std::int64_t>(index) + 1;
    lines.emplace_back(first + static_cast<int>(index), amount);
    lines.emplace_back(1, -amount);
  }
  Post("", "odd", "", lines);

  ExpectTheSameBalances();

  EXPECT_EQ(CompanysBalances().size(), names.size() + 1);
}

TEST_F(ExportedBooks, KeepAccountsOfOneNameByThemselves) {
  const int first = AddAccounts({"Rent", "Rent (deleted #13)"});
  ASSERT_EQ(first, 13);
  Post("", "old", "", {{first, 100}, {first + 1, 20}, {1, -120}});
  ChangeTheFile("UPDATE account SET deleted = 1 WHERE id = 13");
  const int later = AddAccounts({"Rent"});
  Post("", "new", "", {{later == first ? first + 2 : later, 3}, {1, -3}});

  Done({"export", kFile, "--output", kJournal});

  EXPECT_THAT(Contents(kJournal), AllOf(HasSubstr("\naccount Rent (deleted #13)\n"), HasSubstr("\naccount Rent\n"),
                                        HasSubstr("\naccount Rent %28deleted #13)\n")));
  EXPECT_EQ(RunHledger({"check", "--strict"}).exitCode, 0);
  EXPECT_THAT(RunHledger({"balance", "-N", "--flat"}).out,
              AllOf(HasSubstr("1.00 USD  Rent (deleted #13)\n"), HasSubstr("0.20 USD  Rent %28deleted #13)\n"),
                    HasSubstr("0.03 USD  Rent\n")));
}

TEST_F(ExportedBooks, SumAParentWithAllBelowItHoweverItWasTyped) {
  const int first = AddAccounts({"Travel"});
  Done({"account", "add", kFile, "TRAVEL:Air", "--type", "Expense"});
  Done({"account", "add", kFile, "travel:AIR:Tickets", "--type", "Expense"});
  Post("", "", "", {{first, 100}, {first + 1, 20}, {first + 2, 3}, {1, -123}});

  ExpectTheSameBalances();

  EXPECT_THAT(RunHledger({"balance", "-N", "--flat", "--depth", "1"}).out, HasSubstr("1.23 USD  Travel\n"));
}

TEST_F(ExportedBooks, HaveTheSameBalancesElsewhereWhateverIsBooked) {
  std::mt19937 random(20240301);
  const std::vector<std::string> names = OddNames();
  std::vector<std::string> chosen;
  std::ranges::sample(names, std::back_inserter(chosen), 60, random);
  chosen.insert(chosen.begin(), {"type", "Top"});
  std::ranges::stable_sort(chosen);
  const auto repeated = std::ranges::unique(chosen);
  chosen.erase(repeated.begin(), repeated.end());
  std::ranges::stable_sort(chosen, {}, [](const std::string& name) { return std::ranges::count(name, ':'); });
  const int first = AddAccounts(chosen);
  const auto upTo = [&random](std::int64_t most) {
    return std::uniform_int_distribution<std::int64_t>(0, most)(random);
  };
  for (int count = 0; count < 100; ++count) {
    std::vector<std::pair<int, std::int64_t>> lines;
    std::int64_t rest = 0;
    for (std::int64_t line = 0; line <= upTo(5); ++line) {
      const std::int64_t amount = upTo(2'000'000'000) - 1'000'000'000;
      lines.emplace_back(first + static_cast<int>(upTo(static_cast<std::int64_t>(chosen.size()) - 1)), amount);
      rest -= amount;
    }
    lines.emplace_back(1, rest);
    const std::string& text = names[static_cast<std::size_t>(upTo(static_cast<std::int64_t>(names.size()) - 1))];
    Post(text, text, text, lines);
  }

  ExpectTheSameBalances();
}

TEST_F(ExportedBooks, HaveTheSameTextsElsewhere) {
  std::vector<std::string> texts = OddNames();
  for (const char* const text : {" first and last ", "a: b", "date: 2024-13-45", "[2024-02-01]", "[=2024-02-01] x",
                                 ":tag:", "txn: 9", "a:: (1 + 1)", "x, date:1, y", "Payee: Nobody", "(1) x"}) {
    texts.emplace_back(text);
  }
  for (const std::string& text : texts) Post(text, text, text, {{1, 100}, {2, -100}}, 1);
  Done({"export", kFile, "--output", kJournal});

  const Json transactions = Json::parse(RunHledger({"print", "-O", "json"}).out);
  const Outcome ledgers = RunLedger({"register", "Checking", "--format", "%(code)\t%(payee)\t%(tag(\"txn\"))\n"});

  ASSERT_EQ(transactions.size(), texts.size());
  std::istringstream lines(ledgers.out);
  for (std::size_t index = 0; index < texts.size(); ++index) {
    const Json& transaction = transactions.at(index);
    const std::string id = std::to_string(index + 1);
    const std::string code = transaction.at("tcode");
    const std::string description = transaction.at("tdescription");
    EXPECT_EQ(ReadBack(code), texts[index]);
    EXPECT_EQ(ReadBack(description), "Northern Power | " + texts[index]);
    const Json& posting = transaction.at("tpostings").at(0);
    EXPECT_EQ(ReadBack(posting.at("pcomment").get<std::string>()), "\n" + texts[index] + "\n");
    // That of the account.
    EXPECT_EQ(posting.at("ptags"), Json::parse(R"([["type","C"]])"));
    EXPECT_EQ(transaction.at("tdate"), "2024-03-01");
    EXPECT_EQ(transaction.at("ttags"), Json::parse(R"([["txn",")" + id + R"("],["type","bill"]])"));
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, std::string(code).append("\t").append(description).append("\t").append(id));
  }
}

TEST_F(ExportedBooks, TellOthersWhoThePartnerIs) {
  Done({"relation", "create", kFile, "--realm", "1001", "--partner", "Birch, Inc.: [1]", "--due-from", "Due from Birch",
        "--due-to", "Due to Birch"});
  ImportMarch();

  Done({"export", kFile, "--output", kJournal});

  EXPECT_EQ(RunHledger({"tags", "--values", "partner"}).out, "Birch%2C Inc.: %5B1]\n");
  EXPECT_EQ(RunHledger({"register", "tag:request=request-check", "-O", "csv"}).exitCode, 0);
  EXPECT_THAT(RunHledger({"balance", "-N", "tag:state=established"}).out, HasSubstr("1250.00 USD  Due from Birch\n"));
  EXPECT_EQ(
      RunLedger({"register", "--limit", "tag(\"state\") == \"sent\"", "--format", "%(account)|%(tag(\"partner\"))\n"})
          .out,
      "Due from Birch|Birch%2C Inc.: %5B1]\n");
}

TEST_F(ExportedBooks, TellOthersTheNumbersOfAccountsAndWhereThePapersAre) {
  Done({"account", "number", kFile, "Payables", "2000.10"});
  Done({"bill", "record", kFile, "--name", "Northern Power", "--date", "2024-03-01", "--line", "Utilities", "10.00",
        "--attach", "scans/a, b.pdf", "--attach", "https://example.org/date:2024?c=[1]"});

  Done({"export", kFile, "--output", kJournal});

  EXPECT_EQ(RunHledger({"check", "--strict"}).exitCode, 0);
  EXPECT_EQ(RunHledger({"tags", "--values", "attachment"}).out,
            "https://example.org/date:2024?c=%5B1]\nscans/a%2C b.pdf\n");
  EXPECT_THAT(RunHledger({"balance", "-N", "tag:number=2000"}).out, HasSubstr("-10.00 USD  Payables\n"));
  const Outcome ledgers = RunLedger({"register", "Payables", "--format", "%(tag(\"attachment\"))\n"});
  EXPECT_EQ(ledgers.exitCode, 0) << ledgers.err;
  EXPECT_THAT(ledgers.out, HasSubstr("example.org"));
}

TEST_F(ExportedBooks, AreWhatOthersMakeABalanceSheetOf) {
  RelateBirch();
  ImportMarch();

  Done({"export", kFile, "--output", kJournal});

  EXPECT_THAT(RunHledger({"balancesheet"}).out, AllOf(HasSubstr("Due from Birch"), HasSubstr("Payables")));
  EXPECT_THAT(RunHledger({"incomestatement"}).out, AllOf(HasSubstr("Utilities:Power"), HasSubstr("-135.50 USD")));
}

TEST_F(ExportedBooks, AreTheSameByteByByteOnStandardOutput) {
  RelateBirch();
  ImportMarch();

  const Outcome printed = Run({"export", kFile});
  const Outcome written = Run({"export", kFile, "--output", kJournal});

  EXPECT_EQ(printed.exitCode, 0) << printed.err;
  EXPECT_THAT(printed.out, StartsWith("; Alder Supply Company\n"));
  EXPECT_EQ(printed.out, Contents(kJournal));
  EXPECT_EQ(written.out, "Wrote alder.journal: 12 accounts and 3 transactions with 7 lines.\n");
}

TEST_F(ExportedBooks, AreToldOfAsJsonWhenTheyGoToAFile) {
  RelateBirch();
  ImportMarch();

  const Json answer = Answer({"export", kFile, "--output", kJournal, "--from", "2024-03-02", "--to", "2024-03-15"});
  const Json error = ErrorOf({"export", kFile});

  EXPECT_EQ(answer, Json({{"file", kJournal},
                          {"bytes", Contents(kJournal).size()},
                          {"accounts", 12},
                          {"transactions", 1},
                          {"lines", 2}}));
  EXPECT_EQ(error.at("exit"), 2);
  EXPECT_THAT(error.at("message").get<std::string>(), HasSubstr("--output"));
}

TEST_F(ExportedBooks, ReplaceAFileOnRequestOnly) {
  WriteFile(kJournal, "before");

  const Outcome refused = Run({"export", kFile, "--output", kJournal});
  const std::string afterwards = Contents(kJournal);
  Done({"export", kFile, "--output", kJournal, "--replace"});

  EXPECT_EQ(refused.exitCode, 2);
  EXPECT_THAT(refused.err, AllOf(HasSubstr("There is a file alder.journal already."), HasSubstr("--replace")));
  EXPECT_EQ(afterwards, "before");
  EXPECT_THAT(Contents(kJournal), StartsWith("; Alder Supply Company\n"));
}

TEST_F(ExportedBooks, AreNotLeftHalfWrittenOnAFullDisk) {
  if (IsWindowsProgram()) GTEST_SKIP() << "a limit of this system does not end the writing of a program under Wine";
  for (int count = 0; count < 30; ++count) Post("", std::string(4000, 'm'), "", {{1, 100}, {2, -100}});
  WriteFile(kJournal, "before");

  const Outcome outcome = RunProgramOnAFullDisk(100, In("."), {"export", kFile, "--output", kJournal, "--replace"});

  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, HasSubstr("alder.journal was not written."));
  EXPECT_EQ(Contents(kJournal), "before");
  for (const auto& entry : std::filesystem::directory_iterator(In("."))) {
    EXPECT_NE(entry.path().extension(), ".new") << entry.path();
  }
}

TEST_F(ExportedBooks, ThatCannotBePrintedAreAFailure) {
  EXPECT_EQ(RunProgramInto("/dev/full", In("."), {"export", kFile}).exitCode, 1);
}
