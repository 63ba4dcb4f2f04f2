#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Listings.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Correcting.h"
#include "standalone/desk/Journal.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"

namespace app {

namespace {

struct RecordOptions {
  std::string file;
  std::string partner;
  std::string expense;  // unless there is a new one
  std::optional<std::string> newExpense;
  std::string newExpenseType = "Expense";
  std::optional<std::string> dueTo;
  std::string amount;
  std::string request;
  std::string name;  // unless there is a new one
  std::optional<std::string> newName;
  std::optional<std::string> date;
  std::optional<std::string> memo;
  desk::ClosedDays closedDays = desk::ClosedDays::kRefused;
};

struct RemoveOptions {
  std::string file;
  std::string txn;
  desk::ClosedDays closedDays = desk::ClosedDays::kRefused;
};

struct MoveOptions {
  std::string file;
  std::string txn;
  std::string expense;
  std::optional<std::string> date;
  desk::ClosedDays closedDays = desk::ClosedDays::kRefused;
};

std::variant<desk::Existing, desk::NewAccount> ExpenseOf(const RecordOptions& options) {
  if (!options.newExpense) return desk::Existing{options.expense};
  return desk::NewAccount{.name = standalone::NewAccountName(*options.newExpense),
                          .type = standalone::ParseAccountType(options.newExpenseType)};
}

std::variant<desk::Existing, desk::NewVendor> NameOf(const RecordOptions& options) {
  if (!options.newName) return desk::Existing{options.name};
  return desk::NewVendor{.name = standalone::NewListName(*options.newName)};
}

void Record(Invocation& invocation, const RecordOptions& options) {
  desk::EntryToRecord entry{.partner = desk::Partner(options.partner),
                            .request = standalone::RequestId(options.request),
                            .amount = standalone::LineAmount(options.amount),
                            .expense = ExpenseOf(options),
                            .dueTo = options.dueTo,
                            .name = NameOf(options)};
  if (options.date) entry.date = standalone::ParseDate("The date", *options.date);
  entry.closedDays = options.closedDays;
  if (options.memo) entry.memo = standalone::Memo(*options.memo);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::int32_t txnId = desk::RecordJournalEntry(company, entry);
  invocation.Report({{"transaction", txnId}}, fmt::format("Booked journal entry {}.\n", txnId));
}

void Remove(Invocation& invocation, const RemoveOptions& options) {
  const std::int32_t txnId = RecordId("transaction id", options.txn);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::IntercompanyLine> removed = desk::RemoveJournalEntry(company, txnId, options.closedDays);
  invocation.Report({{"transaction", txnId}, {"removed", desk::JsonOf(removed)}},
                    fmt::format("Removed journal entry {}:\n{}", txnId, LinesTable(removed).Text()));
}

void Move(Invocation& invocation, const MoveOptions& options) {
  desk::ExpenseToMove given{
      .txnId = RecordId("transaction id", options.txn), .account = options.expense, .closedDays = options.closedDays};
  if (options.date) given.date = standalone::ParseDate("The date", *options.date);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::MovedExpense moved = desk::MoveExpense(company, given);
  invocation.Report(desk::JsonOf(moved), fmt::format("Moved the expense of journal entry {} from {} to {} with journal "
                                                     "entry {} of {}.\n",
                                                     moved.txnId, moved.from.name, moved.to.name, moved.move.txnId,
                                                     standalone::FormatIsoDate(moved.move.date)));
}

void AddRecord(CLI::App& journal, Invocation& invocation) {
  const auto options = std::make_shared<RecordOptions>();
  CLI::App& command =
      AddFileCommand(journal, "record", "Book a partner's bill or check: debit the expense, credit the due-to account",
                     "journal record birch.company --partner Alder --amount 480.00 --request R-1017 \\\n"
                     "    --new-expense \"Elevator Maintenance\" --new-name \"Cold Spring Elevator Company\"",
                     options->file);
  command.add_option(kPartnerOption, options->partner, kPartnerHelp)->required();
  command
      .add_option("--amount", options->amount,
                  "The amount, such as 1234.50 or 1,234.50, with no more decimals than the company's; a credit of the "
                  "partner's is negative")
      ->required();
  command.add_option("--request", options->request, kRequestHelp)->required();
  CLI::Option_group* expense = command.add_option_group("Expense", "The account that is debited");
  expense->add_option("--expense", options->expense, kAccountHelp);
  expense->add_option("--new-expense", options->newExpense, "The name of an account that is to be created");
  expense->require_option(1);
  command.add_option("--new-expense-type", options->newExpenseType, "The type of the new account")
      ->capture_default_str();
  command.add_option("--due-to", options->dueTo,
                     "The account that is credited: the relation's due-to account, "
                     "as when left out; another one is refused");
  CLI::Option_group* name = command.add_option_group("Name", "The name under which the entry is booked");
  name->add_option("--name", options->name, "A name, by record number, such as #12, or colon-separated");
  name->add_option("--new-name", options->newName, "A vendor that is to be created");
  name->require_option(1);
  command.add_option("--date", options->date, "The day of the entry, YYYY-MM-DD; today when left out");
  command.add_option("--memo", options->memo, "The memo of the entry; the name when left out, as on its lines");
  AddAfterClose(command, options->closedDays);
  invocation.When(command, [options](Invocation& run) { Record(run, *options); });
}

void AddRemove(CLI::App& journal, Invocation& invocation) {
  const auto options = std::make_shared<RemoveOptions>();
  CLI::App& command = AddFileCommand(journal, "remove", "Remove an intercompany journal entry with its rows",
                                     "journal remove birch.company 601", options->file);
  CLI::Option_group* which = command.add_option_group("Transaction", "The journal entry");
  which->add_option("TXN", options->txn, "The journal entry's transaction id");
  which->add_option("--txn", options->txn, "The same");
  which->require_option(1);
  AddAfterClose(command, options->closedDays);
  invocation.When(command, [options](Invocation& run) { Remove(run, *options); });
}

void AddMove(CLI::App& journal, Invocation& invocation) {
  const auto options = std::make_shared<MoveOptions>();
  CLI::App& command = AddFileCommand(
      journal, "move", "Move the expense of an entry that was booked from a partner's request to another account",
      "journal move birch.company 601 --expense Repairs", options->file);
  command.add_option("TXN", options->txn, "The journal entry's transaction id")->required();
  command.add_option("--expense", options->expense, kAccountHelp)->required();
  command.add_option("--date", options->date, "The day of the move, YYYY-MM-DD; today when left out");
  AddAfterClose(command, options->closedDays);
  invocation.When(command, [options](Invocation& run) { Move(run, *options); });
}

}  // namespace

void AddJournal(CLI::App& program, Invocation& invocation) {
  CLI::App& journal = AddGroup(program, "journal", "Book, remove and move the expense of intercompany journal entries",
                               "journal remove birch.company --txn 601");
  AddRecord(journal, invocation);
  AddRemove(journal, invocation);
  AddMove(journal, invocation);
}

}  // namespace app
