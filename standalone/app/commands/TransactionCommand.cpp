#include <fmt/format.h>

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Transactions.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Errors.h"

namespace app {

namespace {

struct SetStateOptions {
  std::string file;
  std::string partner;
  std::string request;
  std::string txn;  // instead of partner and request
  std::string target;
  std::string state;
};

struct ExistsOptions {
  std::string file;
  std::string partner;
  std::string request;
};

std::string StateText(standalone::BookedState state) {
  return fmt::format("{} ({})", static_cast<int>(state.number), standalone::StateName(state));
}

void SetStateOfRequest(Invocation& invocation, const SetStateOptions& options) {
  const desk::Partner partner(options.partner);
  const standalone::RequestId request(options.request);
  const standalone::TransactionState state = standalone::ParseTransactionState(options.state);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::MovedRequest moved = desk::SetState(company, partner, request, state);
  Json json{{"realm", moved.realm}, {"requestId", options.request}};
  json.update(desk::JsonOf(moved.state));
  invocation.Report(json, fmt::format("The transaction with request id {} of realm {} is now in state {}.\n",
                                      options.request, moved.realm, StateText(moved.state)));
}

void SetStateOfLine(Invocation& invocation, const SetStateOptions& options) {
  const std::int32_t txnId = RecordId("transaction id", options.txn);
  const std::int32_t lineId = RecordId("line id", options.target);
  const standalone::TransactionState state = standalone::ParseTransactionState(options.state);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const standalone::BookedState now = desk::SetState(company, txnId, lineId, state);
  Json json{{"transaction", txnId}, {"line", lineId}};
  json.update(desk::JsonOf(now));
  invocation.Report(json,
                    fmt::format("Line {} of transaction {} is now in state {}.\n", lineId, txnId, StateText(now)));
}

void Exists(Invocation& invocation, const ExistsOptions& options) {
  const desk::Partner partner(options.partner);
  const standalone::RequestId request(options.request);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::string realm = desk::RequireKnownRequest(company, partner, request);
  invocation.Report(
      {{"realm", realm}, {"requestId", options.request}},
      fmt::format("The request id {} is known for realm {}: it is booked or was rejected.\n", options.request, realm));
}

void AddSetState(CLI::App& transaction, Invocation& invocation) {
  const auto options = std::make_shared<SetStateOptions>();
  CLI::App& command = AddFileCommand(
      transaction, "set-state",
      "Move an intercompany transaction to a state, as the partner's answer names it (--partner and --request) or as "
      "the\n"
      "books name it (--txn and --target). Once all of its lines are established, the transaction is marked in the\n"
      "books as confirmed.\n"
      "It moves from entered to sent, established or closed, from sent to came-back, established or closed, and from\n"
      "came-back to sent or closed; established and closed ones stay. One that was booked with version 1.0 and is not\n"
      "settled moves to established, rejected or deactivated",
      "transaction set-state birch.company --partner \"Alder Supply Company\" --request R-1017 --state established",
      options->file);
  CLI::Option* partner = command.add_option(kPartnerOption, options->partner, kPartnerHelp);
  CLI::Option* request = command.add_option("--request", options->request, kRequestHelp)->needs(partner);
  partner->needs(request);
  CLI::Option* txn = command.add_option("--txn", options->txn, "The id of the bill, check or journal entry")
                         ->excludes(partner, request);
  CLI::Option* target = command.add_option("--target", options->target, "The id of its intercompany line")->needs(txn);
  txn->needs(target);
  CLI::Option* state =
      command.add_option("--state", options->state, "entered, sent, came-back, established, closed, or the number");
  state->required()->type_name(kTransactionStates);
  invocation.When(command, [options, partner, txn](Invocation& run) {
    if (partner->empty() && txn->empty()) {
      throw standalone::InvalidInput("which transaction? Give --partner and --request, or --txn and --target");
    }
    if (txn->empty()) {
      SetStateOfRequest(run, *options);
    } else {
      SetStateOfLine(run, *options);
    }
  });
}

void AddExists(CLI::App& transaction, Invocation& invocation) {
  const auto options = std::make_shared<ExistsOptions>();
  CLI::App& command = AddFileCommand(
      transaction, "exists",
      "Tell whether a partner's request id is known, as a transaction of that partner or as a rejected "
      "one: ends with 0 if so, with 1 if not",
      "transaction exists birch.company --partner \"Alder Supply Company\" --request R-1017", options->file);
  command.add_option(kPartnerOption, options->partner, kPartnerHelp)->required();
  command.add_option("--request", options->request, kRequestHelp)->required();
  invocation.When(command, [options](Invocation& run) { Exists(run, *options); });
}

}  // namespace

void AddTransaction(CLI::App& program, Invocation& invocation) {
  CLI::App& transaction =
      *program.add_subcommand("transaction", "Move intercompany transactions through their states, and find them");
  transaction.require_subcommand(1);
  transaction.footer(
      "Example:\n  multientity transaction exists birch.company --partner \"Alder Supply Company\" --request R-1017\n\n"
      "multientity transactions lists them.");
  AddSetState(transaction, invocation);
  AddExists(transaction, invocation);
}

}  // namespace app
