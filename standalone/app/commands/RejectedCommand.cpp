#include <fmt/format.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Rejections.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Money.h"

namespace app {

namespace {

struct RejectedOptions {
  std::string file;
  std::string partner;
  std::string request;
  std::string type;
  std::string amount;
  std::string partnerTxn;
};

void SaveRejected(Invocation& invocation, const RejectedOptions& options) {
  const desk::RejectionToSave rejection{.partner = desk::Partner(options.partner),
                                        .request = standalone::RequestId(options.request),
                                        .type = standalone::ParseRejectableType(options.type),
                                        .amount = standalone::RejectedAmount(options.amount),
                                        .partnerTxnId = standalone::PartnerTxnId(options.partnerTxn)};
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::string realm = desk::SaveRejection(company, rejection);
  invocation.Report(
      {{"realm", realm}, {"requestId", options.request}},
      fmt::format("Saved the rejected {} with request id {}.\n",
                  standalone::TransactionTypeName(static_cast<std::int16_t>(rejection.type)), options.request));
}

constexpr std::array kRejectedColumns{
    "type",   "typeNumber", "state",         "stateNumber",       "realm", "partner", "requestId",
    "amount", "currency",   "writtenAmount", "partnerTransaction"};

void ListRejected(Invocation& invocation, const RejectedOptions& options) {
  desk::RejectionFilter filter;
  if (!options.partner.empty()) filter.partner.emplace(options.partner);
  if (!options.type.empty()) filter.type = standalone::ParseRejectableType(options.type);
  if (!options.request.empty()) filter.request.emplace(options.request);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::Rejection> rejections = desk::ListRejections(company, filter);
  using enum Importance;
  Table table({{.title = "Type", .importance = kMajor, .fit = Fit::kWhole},
               {.title = "Partner"},
               {.title = "Realm", .importance = kDetail, .fit = Fit::kWhole},
               {.title = "Amount", .align = Align::kRight},
               {.title = "Cur", .importance = kMinor, .fit = Fit::kWhole},
               {.title = "Request", .importance = kMajor, .fit = Fit::kWhole},
               {.title = "Partner's id", .importance = kDetail, .fit = Fit::kWhole}});
  for (const desk::Rejection& rejection : rejections) {
    table.Add({standalone::TransactionTypeName(rejection.type), rejection.partner, rejection.realm,
               rejection.amount ? standalone::FormatAmount(*rejection.amount) : rejection.writtenAmount,
               rejection.amount ? rejection.amount->currency : "", rejection.requestId, rejection.partnerTxnId});
  }
  invocation.ReportList({{"rejected", desk::JsonOf(rejections)}}, kRejectedColumns,
                        table.Empty() ? "No rejected transactions.\n" : table.Text());
}

void DeleteRejected(Invocation& invocation, const RejectedOptions& options) {
  const desk::Partner partner(options.partner);
  const standalone::RequestId request(options.request);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::string realm = desk::DeleteRejection(company, partner, request);
  invocation.Report(
      {{"realm", realm}, {"requestId", options.request}},
      fmt::format("Deleted the rejected transaction with request id {} of realm {}.\n", options.request, realm));
}

void AddSave(CLI::App& rejected, Invocation& invocation) {
  const auto options = std::make_shared<RejectedOptions>();
  CLI::App& command =
      AddFileCommand(rejected, "save", "Keep a bill or check that the partner company rejected",
                     "rejected save alder.company --realm 5120918846275 --request R-1018 --type bill \\\n"
                     "    --amount 125.00 --partner-txn 4711",
                     options->file);
  command.add_option(kPartnerOption, options->partner, kPartnerHelp)->required();
  command.add_option("--request", options->request, kRequestHelp)->required();
  command.add_option("--type", options->type, "bill or check")->required()->type_name(kRejectableTypes);
  command
      .add_option(
          "--amount", options->amount,
          "The amount, such as 1234.50 or 1,234.50, with no more decimals than the company's, up to 22 characters")
      ->required();
  command.add_option("--partner-txn", options->partnerTxn, "The partner's own id of it, 1 to 36 bytes")->required();
  invocation.When(command, [options](Invocation& run) { SaveRejected(run, *options); });
}

}  // namespace

void AddRejected(CLI::App& program, Invocation& invocation) {
  CLI::App& rejected = AddGroup(program, "rejected", "Keep the transactions that partner companies rejected",
                                "rejected list alder.company");
  AddSave(rejected, invocation);

  const auto options = std::make_shared<RejectedOptions>();
  CLI::App& list =
      AddFileCommand(rejected, "list", "List the rejected transactions", "rejected list alder.company", options->file);
  list.add_option(kPartnerOption, options->partner, "Only what this partner rejected: its realm id or its name");
  list.add_option("--type", options->type, "Only bills, or only checks: bill or check")->type_name(kRejectableTypes);
  list.add_option("--request", options->request, "Only what has this request id");
  AddCsvOption(list, invocation.options);
  invocation.When(list, [options](Invocation& run) { ListRejected(run, *options); });

  CLI::App& remove =
      AddFileCommand(rejected, "delete", "Forget a rejected transaction",
                     "rejected delete alder.company --realm 5120918846275 --request R-1018", options->file);
  remove.add_option(kPartnerOption, options->partner, kPartnerHelp)->required();
  remove.add_option("--request", options->request, kRequestHelp)->required();
  invocation.When(remove, [options](Invocation& run) { DeleteRejected(run, *options); });
}

}  // namespace app
