#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/company/StandaloneHost.h"
#include "standalone/desk/Accounts.h"
#include "standalone/desk/Audit.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/Import.h"
#include "standalone/desk/Journal.h"
#include "standalone/desk/Names.h"
#include "standalone/desk/Realm.h"
#include "standalone/desk/Rejections.h"
#include "standalone/desk/Relations.h"
#include "standalone/desk/Settings.h"
#include "standalone/desk/Transactions.h"
#include "standalone/desk/Users.h"
#include "standalone/desk/json/Json.h"
#include "standalone/desk/results/Refusal.h"
#include "tests/company/CompanyFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace desk {

// What a use case is refused with; a failure of the test when it is not.
template <typename Ask>
Refusal RefusalOf(Ask&& ask) {
  try {
    std::forward<Ask>(ask)();
  } catch (const Refused& refused) {
    return refused.Value();
  }
  ADD_FAILURE() << "nothing was refused";
  return {};
}

MATCHER(IsForAdministrators, "asks for an administrator, without an answer of the module") {
  return arg.remedy == Remedy::kAskAnAdministrator && !arg.status;
}

// The books of Alder Supply Company, open for its administrator: a chart of accounts, three names, nothing booked yet.
class DeskFixture : public testing::Test {
 protected:
  explicit DeskFixture(const std::string& homeCurrency = "USD") {
    CreateCompany({.file = path_, .name = "Alder Supply Company", .homeCurrency = homeCurrency});
    Open();
    Import(*company_, Importable::kAccounts, Csv(kAccounts));
    Import(*company_, Importable::kNames, Csv(kNames));
  }

  void Open(const std::string& user = kFirstUser) {
    company_.reset();
    company_.emplace(path_, CompanyOptions{.user = user,
                                           .onOpened = {},
                                           .onLogLine = {},
                                           .onAnswer = [this](std::int32_t status) { answers_.push_back(status); },
                                           .onSaved = nullptr,
                                           .onLookalikes =
                                               [this](const Lookalikes& found) {
                                                 lookalikes_.push_back(found);
                                               }});
  }
  // For a user who is no administrator and has these rights.
  void OpenFor(const std::string& user, const std::vector<std::string>& rights) {
    AddUser(*company_, UserWith(user, rights));
    Open(user);
  }
  static User UserWith(const std::string& name, const std::vector<std::string>& rights) {
    User user{.name = name, .administrator = false, .accountant = false, .rights = {}};
    for (const std::string& right : rights) user.rights.emplace_back(right);
    return user;
  }

  // Birch Services Company, realm 1001, with the accounts "Due from Birch" and "Due to Birch".
  void RelateBirch() {
    CreateRelation(*company_, {.realm = standalone::RealmId("1001"),
                               .partner = standalone::PartnerName("Birch Services Company"),
                               .type = 0,
                               .state = standalone::RelationState::kEstablished,
                               .accounts = {.dueFrom = "Due from Birch", .dueTo = "Due to Birch"}});
  }
  // Cedar Leasing, realm 1002, with the accounts "Due from Cedar" and "Due to Cedar".
  void RelateCedar() {
    CreateRelation(*company_, {.realm = standalone::RealmId("1002"),
                               .partner = standalone::PartnerName("Cedar Leasing"),
                               .type = 0,
                               .state = standalone::RelationState::kEstablished,
                               .accounts = {.dueFrom = "Due from Cedar", .dueTo = "Due to Cedar"}});
  }
  // Birch has rejected a bill of 20.00.
  void SaveRejectionOf(std::string_view request) {
    SaveRejection(*company_, {.partner = standalone::RealmId("1001"),
                              .request = standalone::RequestId(request),
                              .type = standalone::RejectableType::kBill,
                              .amount = standalone::RejectedAmount("20.00"),
                              .partnerTxnId = standalone::PartnerTxnId("B-77")});
  }
  // A bill (1), a check (2) and a journal entry (3) of March 2024, each with one intercompany line.
  void ImportMarch() { Import(*company_, Importable::kTransactions, Csv(kMarch)); }

  static EntryToRecord Entry(std::string_view request) {
    return {.partner = standalone::RealmId("1001"),
            .request = standalone::RequestId(request),
            .amount = standalone::LineAmount("40.00"),
            .expense = Existing{"Utilities"},
            .dueTo = {},
            .name = Existing{"Northern Power"}};
  }

  std::filesystem::path Csv(std::string_view text) const {
    const std::filesystem::path csv = folder_ / "rows.csv";
    standalone::WriteFile(csv, text);
    return csv;
  }

  std::int32_t AccountId(std::string_view name) {
    for (const Account& account : ListAccounts(*company_)) {
      if (account.name == name) return account.id;
    }
    ADD_FAILURE() << "there is no account " << name;
    return 0;
  }
  std::int32_t NameId(std::string_view text) {
    for (const Name& name : ListNames(*company_)) {
      if (name.name == text) return name.id;
    }
    ADD_FAILURE() << "there is no name " << text;
    return 0;
  }

  std::string Accounts() { return JsonOf(ListAccounts(*company_)).dump(1); }
  std::string Names() { return JsonOf(ListNames(*company_)).dump(1); }
  // All that the company keeps, as another program reads it.
  std::string Everything() {
    standalone::StandaloneHost other(path_);
    return Records() + "\naudit: " + std::to_string(standalone::Count(other, "SELECT count(*) FROM audit"));
  }
  // The same without the trail of what was done.
  std::string Records() {
    standalone::StandaloneHost other(path_);
    std::string text =
        Accounts() + Names() + UsersAndSettingsOf(other) + RememberedRealm(*company_).value_or("no realm");
    for (const char* const count :
         {"SELECT count(*) FROM txn", "SELECT count(*) FROM txn_line", "SELECT count(*) FROM me_transaction",
          "SELECT count(*) FROM me_relation", "SELECT count(*) FROM me_rejected_transaction"}) {
      text += std::string("\n") + count + ": " + std::to_string(standalone::Count(other, count));
    }
    return text;
  }

  // Every row of every table, with the numbers that were given last.
  std::string WholeFile() const {
    standalone::SqliteDatabase file(path_, std::chrono::seconds(5));
    std::string text;
    for (const std::string& table :
         TextsOf(file, "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
      const std::string columns = file.QueryText(
          ("SELECT group_concat('quote(' || name || ')', ' || '','' || ') FROM pragma_table_info('" + table + "')")
              .c_str());
      for (const std::string& row : TextsOf(file, "SELECT " + columns + " FROM " + table + " ORDER BY 1")) {
        text.append(table).append(": ").append(row).append("\n");
      }
    }
    return text;
  }
  static std::vector<std::string> TextsOf(standalone::SqliteDatabase& file, const std::string& sql) {
    std::vector<std::string> texts;
    file.ForEachRow(sql.c_str(), [&texts](const standalone::Rows& row) { texts.emplace_back(row.Text(0)); });
    return texts;
  }

  // Who may read them and who may not.
  static std::string UsersAndSettingsOf(standalone::StandaloneHost& other) {
    return other.Request(standalone::Access::kRead, [&] {
      std::string text = other.Settings().Get().companyName + '\n' + other.Settings().Get().homeCurrency;
      for (const standalone::User& user : other.Users().List()) {
        text +=
            '\n' + user.name + (user.administrator ? " administrator" : "") + (user.accountant ? " accountant" : "");
        for (const auto& right : user.featureRights) text += ' ' + standalone::FeatureRightText(right);
        for (const auto& right : user.listRights) text += ' ' + standalone::ListRightText(right);
      }
      return text;
    });
  }

  // Another program makes somebody else the administrator in the place of the one who works here.
  void LetAnotherProgramTakeTheAdministratorsMark() {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite, [&] { TakeTheMark(other); });
  }
  static void TakeTheMark(standalone::StandaloneHost& other) {
    standalone::User deputy;
    deputy.name = "Deputy";
    deputy.administrator = true;
    other.Users().Add(deputy);
    standalone::User admin = other.Users().Require(kFirstUser);
    admin.administrator = false;
    other.Users().Change(admin);
  }

  static constexpr std::string_view kAccounts =
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
      "Old Rent,Expense,,yes\n";
  static constexpr std::string_view kNames =
      "name,kind\n"
      "Northern Power,vendor\n"
      "Walker,customer\n"
      "Walker:Depot,customer\n";
  static constexpr std::string_view kMarch =
      "transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n"
      "B1,bill,2024-03-01,Northern Power,March power,Payables,-100.00,,,,\n"
      "B1,bill,,,,Utilities:Power,60.00,,,,\n"
      "B1,bill,,,,Due from Birch,40.00,,1001,request-bill,1\n"
      "C1,check,2024-03-15,Walker:Depot,Refund,Checking,1250.00,,,,\n"
      "C1,check,,,,Due from Birch,-1250.00,,1001,request-check,3\n"
      "J1,journal,2024-03-31,,Birch paid for us,Utilities,75.50,Heating,1001,request-journal,3\n"
      "J1,journal,,,,Due to Birch,-75.50,,,,\n";

  standalone::TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_ / "alder.company";
  std::vector<std::int32_t> answers_;
  std::vector<Lookalikes> lookalikes_;
  std::optional<Company> company_;
};

}  // namespace desk
