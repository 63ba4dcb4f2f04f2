#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Listings.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Correcting.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Dates.h"

namespace app {

namespace {

struct ReverseOptions {
  std::string file;
  std::string txn;
  std::optional<std::string> date;
  std::optional<std::string> memo;
  desk::ClosedDays closedDays = desk::ClosedDays::kRefused;
};

struct RemoveTransactionOptions {
  std::string file;
  std::string txn;
  desk::ClosedDays closedDays = desk::ClosedDays::kRefused;
};

// Whom the reversal asks to book it, and whom somebody has to tell.
std::string PartnersText(const desk::ReversedTransaction& reversed) {
  std::string text;
  for (const desk::RecordedLine& line : reversed.reversal.lines) {
    if (!line.partners || line.partners->state != standalone::TransactionState::kEntered) continue;
    text += fmt::format("{} (realm {}) is to be sent the request {}.\n", line.partners->partner, line.partners->realm,
                        line.partners->requestId);
  }
  return text + ToTellText(reversed.toTell);
}

void Reverse(Invocation& invocation, const ReverseOptions& options) {
  desk::TransactionToReverse given{.txnId = RecordId("transaction id", options.txn), .closedDays = options.closedDays};
  if (options.date) given.date = standalone::ParseDate("The date", *options.date);
  if (options.memo) given.memo = standalone::Memo(*options.memo);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::ReversedTransaction reversed = desk::ReverseTransaction(company, given);
  const char* const kind = NounOf(reversed.reversal.type);
  invocation.Report(
      desk::JsonOf(reversed),
      fmt::format("Reversed {} {} with {} {} of {}.\n{}", kind, reversed.txnId, kind, reversed.reversal.txnId,
                  standalone::FormatIsoDate(reversed.reversal.date), PartnersText(reversed)));
}

void RemoveTransaction(Invocation& invocation, const RemoveTransactionOptions& options) {
  const std::int32_t txnId = RecordId("transaction id", options.txn);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::RecordedTransaction removed = desk::RemoveTransaction(company, txnId, options.closedDays);
  invocation.Report(
      {{"transaction", txnId}, {"removed", desk::JsonOf(removed)}},
      fmt::format("Removed {} {} of {}.\n", NounOf(removed.type), txnId, standalone::FormatIsoDate(removed.date)));
}

}  // namespace

void AddReverse(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<ReverseOptions>();
  CLI::App& command = AddFileCommand(
      program, "reverse",
      "Take back a bill, check or journal entry that was entered here, with one that has its amounts negated",
      "reverse alder.company 17 --date 2026-03-31", options->file);
  command.add_option("TXN", options->txn, "Its transaction id")->required();
  command.add_option("--date", options->date, "The day of the reversal, YYYY-MM-DD; today when left out");
  command.add_option("--memo", options->memo,
                     "The memo of the reversal and of what partners bear; the original's when left out");
  AddAfterClose(command, options->closedDays);
  invocation.When(command, [options](Invocation& run) { Reverse(run, *options); });
}

void AddRemoveTransaction(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<RemoveTransactionOptions>();
  CLI::App& command = AddFileCommand(
      program, "remove", "Remove a bill, check or journal entry that was entered here and that no partner was sent",
      "remove alder.company 17", options->file);
  command.add_option("TXN", options->txn, "Its transaction id")->required();
  AddAfterClose(command, options->closedDays);
  invocation.When(command, [options](Invocation& run) { RemoveTransaction(run, *options); });
}

}  // namespace app
