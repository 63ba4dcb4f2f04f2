#include <fmt/format.h>

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
#include "standalone/values/Amount.h"

namespace app {

namespace {

struct RejectedOptions {
  std::string file;
  std::string realm;
  std::string request;
  std::string type;
  std::string amount;
  std::string partnerTxn;
};

void SaveRejected(Invocation& invocation, const RejectedOptions& options) {
  const desk::RejectionToSave rejection{.realm = standalone::RealmId(options.realm),
                                        .request = standalone::RequestId(options.request),
                                        .type = standalone::ParseRejectableType(options.type),
                                        .amount = standalone::RejectedAmount(options.amount),
                                        .partnerTxnId = standalone::PartnerTxnId(options.partnerTxn)};
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  desk::SaveRejection(company, rejection);
  invocation.Report(
      {{"realm", options.realm}, {"requestId", options.request}},
      fmt::format("Saved the rejected {} with request id {}.\n",
                  standalone::TransactionTypeName(static_cast<std::int16_t>(rejection.type)), options.request));
}

void ListRejected(Invocation& invocation, const RejectedOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::Rejection> rejections = desk::ListRejections(company);
  Table table({{"Type"}, {"Partner"}, {"Realm"}, {"Amount", Align::kRight}, {"Cur"}, {"Request"}, {"Partner's id"}});
  for (const desk::Rejection& rejection : rejections) {
    table.Add({standalone::TransactionTypeName(rejection.type), rejection.partner, rejection.realm,
               rejection.amount ? standalone::FormatAmount(rejection.amount->minorUnits) : rejection.writtenAmount,
               rejection.amount ? rejection.amount->currency : "", rejection.requestId, rejection.partnerTxnId});
  }
  invocation.Report({{"rejected", desk::JsonOf(rejections)}},
                    table.Empty() ? "No rejected transactions.\n" : table.Text());
}

void DeleteRejected(Invocation& invocation, const RejectedOptions& options) {
  const standalone::RealmId realm(options.realm);
  const standalone::RequestId request(options.request);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  desk::DeleteRejection(company, realm, request);
  invocation.Report({{"realm", options.realm}, {"requestId", options.request}},
                    fmt::format("Deleted the rejected transaction with request id {} of realm {}.\n", options.request,
                                options.realm));
}

void AddSave(CLI::App& rejected, Invocation& invocation) {
  const auto options = std::make_shared<RejectedOptions>();
  CLI::App& command =
      AddFileCommand(rejected, "save", "Keep a bill or check that the partner company rejected",
                     "rejected save alder.company --realm 5120918846275 --request R-1018 --type bill \\\n"
                     "    --amount 125.00 --partner-txn 4711",
                     options->file);
  command.add_option("--realm", options->realm, kRealmHelp)->required();
  command.add_option("--request", options->request, kRequestHelp)->required();
  command.add_option("--type", options->type, "bill or check")->required();
  command.add_option("--amount", options->amount, "The amount, such as 1234.50 or 1,234.50, up to 22 characters")
      ->required();
  command.add_option("--partner-txn", options->partnerTxn, "The partner's own id of it, 1 to 36 characters")
      ->required();
  invocation.When(command, [options](Invocation& run) { SaveRejected(run, *options); });
}

}  // namespace

void AddRejected(CLI::App& program, Invocation& invocation) {
  CLI::App& rejected = *program.add_subcommand("rejected", "Keep the transactions that partner companies rejected");
  rejected.require_subcommand(1);
  rejected.footer("Example:\n  multientity rejected list alder.company");
  AddSave(rejected, invocation);

  const auto options = std::make_shared<RejectedOptions>();
  CLI::App& list =
      AddFileCommand(rejected, "list", "List the rejected transactions", "rejected list alder.company", options->file);
  invocation.When(list, [options](Invocation& run) { ListRejected(run, *options); });

  CLI::App& remove =
      AddFileCommand(rejected, "delete", "Forget a rejected transaction",
                     "rejected delete alder.company --realm 5120918846275 --request R-1018", options->file);
  remove.add_option("--realm", options->realm, kRealmHelp)->required();
  remove.add_option("--request", options->request, kRequestHelp)->required();
  invocation.When(remove, [options](Invocation& run) { DeleteRejected(run, *options); });
}

}  // namespace app
