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
#include "standalone/desk/Journal.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"

namespace app {

namespace {

struct RecordOptions {
  std::string file;
  std::string realm;
  std::string expense;  // unless there is a new one
  std::optional<std::string> newExpense;
  std::string newExpenseType = "Expense";
  std::optional<std::string> dueTo;
  std::string amount;
  std::string request;
  std::string name;  // unless there is a new one
  std::optional<std::string> newName;
};

struct RemoveOptions {
  std::string file;
  std::string txn;
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
  const desk::EntryToRecord entry{.realm = standalone::RealmId(options.realm),
                                  .request = standalone::RequestId(options.request),
                                  .amount = standalone::LineAmount(options.amount),
                                  .expense = ExpenseOf(options),
                                  .dueTo = options.dueTo,
                                  .name = NameOf(options)};
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::int32_t txnId = desk::RecordJournalEntry(company, entry);
  invocation.Report({{"transaction", txnId}}, fmt::format("Booked journal entry {}.\n", txnId));
}

void Remove(Invocation& invocation, const RemoveOptions& options) {
  const std::int32_t txnId = RecordId("transaction id", options.txn);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::IntercompanyLine> removed = desk::RemoveJournalEntry(company, txnId);
  invocation.Report({{"transaction", txnId}, {"removed", desk::JsonOf(removed)}},
                    fmt::format("Removed journal entry {}:\n{}", txnId, LinesTable(removed).Text()));
}

void AddRecord(CLI::App& journal, Invocation& invocation) {
  const auto options = std::make_shared<RecordOptions>();
  CLI::App& command = AddFileCommand(
      journal, "record", "Book a partner's bill or check, dated today: debit the expense, credit the due-to account",
      "journal record birch.company --realm 5120774003618 --amount 480.00 --request R-1017 \\\n"
      "    --new-expense \"Elevator Maintenance\" --new-name \"Cold Spring Elevator Company\"",
      options->file);
  command.add_option("--realm", options->realm, kRealmHelp)->required();
  command
      .add_option("--amount", options->amount,
                  "The amount, such as 1234.50 or 1,234.50; a credit of the partner's is negative")
      ->required();
  command.add_option("--request", options->request, kRequestHelp)->required();
  CLI::Option_group* expense = command.add_option_group("Expense", "The account that is debited");
  expense->add_option("--expense", options->expense, "An account, by id or by colon-separated name");
  expense->add_option("--new-expense", options->newExpense, "The name of an account that is to be created");
  expense->require_option(1);
  command.add_option("--new-expense-type", options->newExpenseType, "The type of the new account")
      ->capture_default_str();
  command.add_option("--due-to", options->dueTo,
                     "The account that is credited, by id or by colon-separated name: the relation's due-to account, "
                     "as when left out; another one is refused");
  CLI::Option_group* name = command.add_option_group("Name", "The name under which the entry is booked");
  name->add_option("--name", options->name, "A name, by id or colon-separated");
  name->add_option("--new-name", options->newName, "A vendor that is to be created");
  name->require_option(1);
  invocation.When(command, [options](Invocation& run) { Record(run, *options); });
}

void AddRemove(CLI::App& journal, Invocation& invocation) {
  const auto options = std::make_shared<RemoveOptions>();
  CLI::App& command = AddFileCommand(journal, "remove", "Remove an intercompany journal entry with its rows",
                                     "journal remove birch.company --txn 601", options->file);
  command.add_option("--txn", options->txn, "The journal entry's transaction id")->required();
  invocation.When(command, [options](Invocation& run) { Remove(run, *options); });
}

}  // namespace

void AddJournal(CLI::App& program, Invocation& invocation) {
  CLI::App& journal = *program.add_subcommand("journal", "Book and remove intercompany journal entries");
  journal.require_subcommand(1);
  journal.footer("Example:\n  multientity journal remove birch.company --txn 601");
  AddRecord(journal, invocation);
  AddRemove(journal, invocation);
}

}  // namespace app
