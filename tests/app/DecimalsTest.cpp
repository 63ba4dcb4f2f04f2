#include "app/Books.h"

// Companies whose currency has no hundredths, from the day they are made.

using testing::AllOf;
using testing::HasSubstr;

namespace {

constexpr const char* kOther = "other.company";

class AnotherCurrency : public Books {
 protected:
  // Related to Birch Services Company, realm 1001, with the accounts and names of the books.
  void Make(const char* currency) const {
    Done({"init", kOther, "--name", "Another Company", "--home-currency", currency});
    Done({"import", "accounts", kOther, "accounts.csv"});
    Done({"import", "names", kOther, "names.csv"});
    Done({"relation", "create", kOther, "--realm", "1001", "--partner", "Birch Services Company", "--due-from",
          "Due from Birch", "--due-to", "Due to Birch"});
  }

  Outcome Book(const std::string& amount, const std::string& request) const {
    return Run({"journal", "record", kOther, "--realm", "1001", "--amount", amount, "--request", request, "--expense",
                "Utilities", "--name", "Northern Power"});
  }

  Outcome Import(const std::string& amount) const {
    WriteFile("bill.csv",
              "transaction,type,date,name,memo,account,amount,partner_realm,request_id\n"
              "B1,bill,2024-03-01,Northern Power,,Due from Birch," +
                  amount + ",1001,request-bill\nB1,,,,,Payables,-" + amount + ",,\n");
    return Run({"import", "transactions", kOther, "bill.csv"});
  }

  Outcome Reject(const std::string& amount) const {
    return Run({"rejected", "save", kOther, "--realm", "1001", "--request", "request-no", "--type", "bill", "--amount",
                amount, "--partner-txn", "B-1"});
  }

  std::string AmountOf(const std::string& request) const {
    const Json listed = Answer({"transactions", kOther}).at("transactions");
    for (const Json& line : listed) {
      if (line.at("requestId") == request) return line.at("amount");
    }
    return "none";
  }
};

}  // namespace

TEST_F(AnotherCurrency, WithoutDecimalsIsKeptInWholeOnes) {
  Make("JPY");

  EXPECT_EQ(Book("12,000", "request-1").exitCode, 0);
  EXPECT_EQ(Import("1200").exitCode, 0);
  EXPECT_EQ(Reject("1,200").exitCode, 0);

  EXPECT_EQ(Answer({"settings", "show", kOther}).at("settings").at("decimals"), 0);
  EXPECT_EQ(AmountOf("request-1"), "12000");
  EXPECT_EQ(AmountOf("request-bill"), "1200");
  EXPECT_THAT(Run({"transactions", kOther}).out, AllOf(HasSubstr("  12,000  JPY  "), HasSubstr("   1,200  JPY  ")));
  EXPECT_THAT(Run({"audit", "show", kOther, "--what", "journal"}).out, HasSubstr("; amount 12000 JPY; "));
  const Json rejected = Answer({"rejected", "list", kOther}).at("rejected").at(0);
  EXPECT_EQ(rejected.at("amount"), "1200");
  EXPECT_EQ(rejected.at("writtenAmount"), "1,200");
  EXPECT_THAT(Run({"rejected", "list", kOther}).out, HasSubstr("   1,200  JPY  "));
}

TEST_F(AnotherCurrency, WithThreeDecimalsIsKeptInThousandths) {
  Make("KWD");

  EXPECT_EQ(Book("1,234.5", "request-1").exitCode, 0);
  EXPECT_EQ(Import("1.005").exitCode, 0);
  EXPECT_EQ(Reject("12.25").exitCode, 0);

  EXPECT_EQ(Answer({"settings", "show", kOther}).at("settings").at("decimals"), 3);
  EXPECT_EQ(AmountOf("request-1"), "1234.500");
  EXPECT_EQ(AmountOf("request-bill"), "1.005");
  EXPECT_THAT(Run({"transactions", kOther}).out, AllOf(HasSubstr("  1,234.500  KWD  "), HasSubstr("  1.005  KWD  ")));
  EXPECT_THAT(Run({"audit", "show", kOther, "--what", "journal"}).out, HasSubstr("; amount 1234.500 KWD; "));
  EXPECT_EQ(Answer({"rejected", "list", kOther}).at("rejected").at(0).at("amount"), "12.250");
}

TEST_F(AnotherCurrency, RefusesDecimalsThatItDoesNotHave) {
  Make("JPY");

  for (const Outcome& outcome : {Book("12.50", "request-1"), Import("12.50"), Reject("12.50")}) {
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.err, HasSubstr("mount \"12.50\" has more decimals than JPY, which has none"));
  }

  EXPECT_EQ(Answer({"transactions", kOther}).at("transactions"), Json::array());
  EXPECT_EQ(Answer({"rejected", "list", kOther}).at("rejected"), Json::array());
}

TEST_F(AnotherCurrency, IsNotLookedAtForATextThatIsNoAmountOfAny) {
  const Outcome outcome = Run({"journal", "record", "missing.company", "--realm", "1001", "--amount", "12.34567",
                               "--request", "r", "--expense", "Utilities", "--name", "Northern Power"});

  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("amount \"12.34567\" is not acceptable"));
}

TEST_F(AnotherCurrency, ShowsItsDecimalsAmongTheSettings) {
  Make("KWD");

  EXPECT_THAT(Run({"settings", "show", kOther}).out, HasSubstr("\ndecimals          3\n"));
}

TEST_F(Books, DecimalsOfBeforeAreKeptAndToldAmongTheSettings) {
  ChangeTheFile("UPDATE company SET home_currency = 'JPY'");

  EXPECT_THAT(Run({"settings", "show", kFile}).out,
              HasSubstr("\ndecimals          2, kept from before; JPY has none\n"));
  EXPECT_EQ(Answer({"settings", "show", kFile}).at("settings").at("decimals"), 2);
  RelateBirch();
  Book("request-1");
  EXPECT_EQ(Answer({"transactions", kFile}).at("transactions").at(0).at("amount"), "40.00");
}
