#include "app/Books.h"

#include <sqlite3.h>

#include <algorithm>
#include <random>
#include <sstream>

namespace {

std::filesystem::path NewDirectory() {
  std::random_device random;
  std::ostringstream name;
  name << "multientity-test-" << std::hex << random() << random();
  const std::filesystem::path directory = std::filesystem::temp_directory_path() / name.str();
  std::filesystem::create_directory(directory);
  return directory;
}

constexpr std::string_view kAccounts =
    "name,type,special,deleted\n"
    "Checking,Bank,,\n"
    "Receivables,Accounts Receivable,,\n"
    "Undeposited Funds,Other Current Asset,5,\n"
    "Due from Birch,Other Current Asset,,\n"
    "Due from Cedar,Other Current Asset,,\n"
    "Payables,Accounts Payable,,\n"
    "Due to Birch,Other Current Liability,,\n"
    "Due to Cedar,Other Current Liability,,\n"
    "Utilities,Expense,,\n"
    "Utilities:Power,Expense,,\n"
    "Old Rent,Expense,,yes\n"
    "Purchase Orders,Non-Posting,,\n";

constexpr std::string_view kNames =
    "name,kind\n"
    "Northern Power,vendor\n"
    "Walker,customer\n"
    "Walker:Depot,customer\n";

constexpr std::string_view kMarch =
    "transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n"
    "B1,bill,2024-03-01,Northern Power,March power,Payables,-100.00,,,,\n"
    "B1,bill,,,,Utilities:Power,60.00,,,,\n"
    "B1,bill,,,,Due from Birch,40.00,,1001,request-bill,1\n"
    "C1,check,2024-03-15,Walker:Depot,Refund,Checking,-1250.00,,,,\n"
    "C1,check,,,,Due from Birch,1250.00,,1001,request-check,3\n"
    "J1,journal,2024-03-31,,Birch paid for us,Utilities,75.50,Heating,1001,request-journal,3\n"
    "J1,journal,,,,Due to Birch,-75.50,,,,\n";

}  // namespace

EmptyDirectory::EmptyDirectory() : directory_(NewDirectory()) {}

EmptyDirectory::~EmptyDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(directory_, ignored);
}

Json EmptyDirectory::Answer(std::vector<std::string> arguments) const {
  arguments.emplace_back("--json");
  const Outcome outcome = Run(arguments);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  return Json::parse(outcome.out);
}

Json EmptyDirectory::ErrorOf(std::vector<std::string> arguments) const {
  arguments.emplace_back("--json");
  const Outcome outcome = Run(arguments);
  EXPECT_EQ(outcome.out, "");
  const Json error = Json::parse(outcome.err).at("error");
  EXPECT_EQ(error.at("exit"), outcome.exitCode);
  return error;
}

void EmptyDirectory::Done(const std::vector<std::string>& arguments) const {
  const Outcome outcome = Run(arguments);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
}

Books::Books() {
  WriteFile("accounts.csv", kAccounts);
  WriteFile("names.csv", kNames);
  WriteFile("march.csv", kMarch);
  Done({"init", kFile, "--name", "Alder Supply Company"});
  Done({"import", "accounts", kFile, "accounts.csv"});
  Done({"import", "names", kFile, "names.csv"});
}

void Books::RelateBirch() const {
  Done({"relation", "create", kFile, "--realm", "1001", "--partner", "Birch Services Company", "--due-from",
        "Due from Birch", "--due-to", "Due to Birch"});
}

void Books::ImportMarch() const {
  Done({"import", "transactions", kFile, "march.csv"});
}

int Books::Book(const std::string& request) const {
  return Answer({"journal", "record", kFile, "--realm", "1001", "--amount", "40.00", "--request", request, "--expense",
                 "Utilities", "--name", "Northern Power"})
      .at("transaction");
}

void Books::Remember(const std::string& key, const std::string& text) const {
  ChangeTheFile("INSERT INTO preference VALUES ('" + key + "', '" + text + "')");
}

void Books::ChangeTheFile(const std::string& sql) const {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(In(kFile).c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
  sqlite3_close(database);
}

void Books::LetTheReminderComeAtOnce() const {
  WriteFile("alder.company.remote.toml",
            "[values.MultiEntity]\nInitialDelayInSeconds = \"1\"\nHoursToLaunchDay = \"0\"\n");
}

int Books::AccountId(const std::string& name) const {
  const Json accounts = Answer({"accounts", kFile}).at("accounts");
  const auto found = std::ranges::find_if(accounts, [&](const Json& account) { return account.at("name") == name; });
  EXPECT_NE(found, accounts.end()) << name;
  return found->at("id");
}
