#include <fmt/format.h>

#include <array>
#include <cstddef>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/ReportTexts.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Reports.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"

namespace app {

namespace {

struct RegisterOptions {
  std::string file;
  std::string account;
  PeriodOptions period;
  bool withSubAccounts = false;
};

std::string OtherAccountText(const desk::RegisterLine& line) {
  return line.otherAccount ? line.otherAccount->name : "split";
}

// The column of the line's own account is there when there are several. The type is what tells the balances before and
// after from the lines.
std::string RegisterText(const desk::Register& told, bool withSubAccounts) {
  const std::string period = PeriodText(told.period);
  using enum Importance;
  std::vector<Column> columns{{.title = "Date", .fit = Fit::kWhole},
                              {.title = "Type", .importance = kKey, .fit = Fit::kWhole},
                              {.title = "Txn", .align = Align::kRight},
                              {.title = "Number", .importance = kDetail, .fit = Fit::kWhole},
                              {.title = "Name", .importance = kMajor},
                              {.title = "Memo", .importance = kMinor},
                              {.title = "Other account", .importance = kMajor},
                              {.title = "Amount", .align = Align::kRight},
                              {.title = "Balance", .align = Align::kRight}};
  constexpr std::ptrdiff_t kBeforeOtherAccount = 6;
  if (withSubAccounts)
    columns.insert(columns.begin() + kBeforeOtherAccount, {.title = "Account", .importance = kMajor});
  Table table(std::move(columns));
  const auto add = [&](std::vector<std::string> cells, const std::string& account) {
    if (withSubAccounts) cells.insert(cells.begin() + kBeforeOtherAccount, account);
    table.Add(std::move(cells));
  };
  add({standalone::FormatIsoDate(told.period.From()), "opening", "", "", "", "", "", "",
       AmountText(told.currency, told.opening)},
      "");
  for (const desk::RegisterLine& line : told.lines) {
    add({standalone::FormatIsoDate(line.date), standalone::TransactionTypeName(line.type), std::to_string(line.txnId),
         line.documentNumber, line.name, MemoText(line.lineMemo, line.memo), OtherAccountText(line),
         AmountText(told.currency, line.amount), AmountText(told.currency, line.balance)},
        line.account);
  }
  add({standalone::FormatIsoDate(told.period.To()), "closing", "", "", "", "", "", "",
       AmountText(told.currency, told.closing)},
      "");
  return Wrapped(fmt::format("Register of {}{}{}{}", NumberedText(told.account), period.empty() ? "" : ' ' + period,
                             InCurrency(told.currency), told.lines.empty() ? "; no lines" : "")) +
         '\n' + table.Text();
}

constexpr std::array kRegisterColumns{"date",
                                      "type",
                                      "typeNumber",
                                      "transaction",
                                      "line",
                                      "documentNumber",
                                      "name",
                                      "memo",
                                      "lineMemo",
                                      "account",
                                      "otherAccount.id",
                                      "otherAccount.name",
                                      "amount",
                                      "balance",
                                      "currency",
                                      "accountId",
                                      "accountNumber"};

// From the opening to the closing balance.
Json RegisterRows(const desk::Register& told) {
  const Json json = desk::JsonOf(told);
  const auto end = [&](const char* what, const char* day, const char* balance) {
    return Json{{"date", json.at(day)},
                {"type", what},
                {"account", told.account.name},
                {"accountId", told.account.id},
                {"accountNumber", told.account.number},
                {"balance", json.at(balance)}};
  };
  Json rows = json.at("lines");
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i]["accountId"] = told.lines[i].accountId;
    rows[i]["accountNumber"] = told.lines[i].accountNumber;
  }
  rows.insert(rows.begin(), end("opening", "from", "opening"));
  rows.push_back(end("closing", "to", "closing"));
  for (Json& row : rows) row["currency"] = json.at("currency");
  return rows;
}

void ShowRegister(Invocation& invocation, const RegisterOptions& options) {
  const desk::RegisterQuery query{
      .account = options.account, .period = PeriodOf(options.period), .withSubAccounts = options.withSubAccounts};
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::Register told = desk::ReadRegister(company, query);
  invocation.ReportList(invocation.options.csv ? Json{{"rows", RegisterRows(told)}} : desk::JsonOf(told),
                        kRegisterColumns, RegisterText(told, options.withSubAccounts));
}

}  // namespace

void AddRegister(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<RegisterOptions>();
  CLI::App& command =
      AddFileCommand(program, "register", "List the lines of an account with what it holds after each",
                     "register alder.company Utilities --from 2024-12-01 --with-sub-accounts", options->file);
  command.add_option("ACCOUNT", options->account, "The account, by number, record number or colon-separated name")
      ->required();
  AddPeriod(command, options->period, /*withAsOf=*/false);
  command.add_flag("--with-sub-accounts", options->withSubAccounts, "Also the lines of the accounts below it");
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { ShowRegister(run, *options); });
}

}  // namespace app
