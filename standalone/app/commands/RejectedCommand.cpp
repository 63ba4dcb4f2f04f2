#include <fmt/format.h>

#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Statuses.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/values/AccountTypes.h"

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
  const Util::TString realm = RealmId(options.realm);
  const Util::TString request = RequestId(options.request);
  const std::int16_t type = RejectedType(options.type);
  const Util::TString amount = RejectedAmount(options.amount);
  const Util::TString partnerTxn = PartnerTxnId(options.partnerTxn);
  Company company(invocation, options.file);
  const MEStatusCode status = company.Write(
      [&] { return MultiEntityDriver::SaveRejectedTransaction(request, type, realm, amount, partnerTxn); });
  invocation.Accept(Request::kSaveRejection, status);
  invocation.Report({{"status", status}, {"realm", options.realm}, {"requestId", options.request}},
                    fmt::format("Saved the rejected {} with request id {}.\n", standalone::TransactionTypeName(type),
                                options.request));
}

Json RejectedJson(const MERejectedTxnInfo& rejected) {
  return {{"type", standalone::TransactionTypeName(rejected.txnType)},
          {"typeNumber", rejected.txnType},
          {"state", rejected.state},
          {"stateText", TransactionStateText(rejected.state)},
          {"realm", rejected.realmId.view()},
          {"partner", rejected.partnerName.view()},
          {"requestId", rejected.requestId.view()},
          {"amount", rejected.amount.view()},
          {"currency", rejected.currencyCode.view()},
          {"partnerTransaction", rejected.partnerTxnId.view()}};
}

void ListRejected(Invocation& invocation, const RejectedOptions& options) {
  Company company(invocation, options.file);
  std::vector<MERejectedTxnInfo> rejections;
  const MEStatusCode status = company.Read([&] { return MultiEntityDriver::GetAllRejectedTransaction(rejections); });
  invocation.Accept(Request::kListRejections, status);
  const auto text = [](const Util::TString& value) {
    return std::string(value.view());
  };
  Json list = Json::array();
  Table table({{"Type"}, {"Partner"}, {"Realm"}, {"Amount", Align::kRight}, {"Cur"}, {"Request"}, {"Partner's id"}});
  for (const MERejectedTxnInfo& rejected : rejections) {
    list.push_back(RejectedJson(rejected));
    table.Add({standalone::TransactionTypeName(rejected.txnType), text(rejected.partnerName), text(rejected.realmId),
               text(rejected.amount), text(rejected.currencyCode), text(rejected.requestId),
               text(rejected.partnerTxnId)});
  }
  invocation.Report({{"status", status}, {"rejected", list}},
                    table.Empty() ? "No rejected transactions.\n" : table.Text());
}

void DeleteRejected(Invocation& invocation, const RejectedOptions& options) {
  const Util::TString request = RequestId(options.request);
  Company company(invocation, options.file);
  const MEStatusCode status = company.Write([&] { return MultiEntityDriver::DeleteRejectedTransaction(request); });
  invocation.Accept(Request::kDeleteRejection, status);
  invocation.Report({{"status", status}, {"requestId", options.request}},
                    fmt::format("Deleted the rejected transaction with request id {}.\n", options.request));
}

void AddSave(CLI::App& rejected, Invocation& invocation) {
  const auto options = std::make_shared<RejectedOptions>();
  CLI::App& command =
      AddFileCommand(rejected, "save", "Keep a bill or check that the partner company rejected",
                     "rejected save alder.company --realm 5120918846275 --request R-1018 --type bill \\\n"
                     "    --amount 125.00 --partner-txn 4711",
                     options->file);
  command.add_option("--realm", options->realm, "The partner company's realm id, 1 to 19 characters")->required();
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

  CLI::App& remove = AddFileCommand(rejected, "delete", "Forget a rejected transaction",
                                    "rejected delete alder.company --request R-1018", options->file);
  remove.add_option("--request", options->request, kRequestHelp)->required();
  invocation.When(remove, [options](Invocation& run) { DeleteRejected(run, *options); });
}

}  // namespace app
