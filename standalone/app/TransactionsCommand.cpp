#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/AccountTypes.h"
#include "standalone/app/Commands.h"
#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Statuses.h"
#include "standalone/app/Values.h"

namespace app {

namespace {

struct TransactionsOptions {
  std::string file;
  std::optional<std::string> txn;
  std::optional<std::string> from;
  std::optional<std::string> to;
};

Json EntryJson(const METxnInfo& entry) {
  return {{"transaction", entry.txnId},
          {"line", entry.targetId},
          {"type", standalone::TransactionTypeName(entry.txnType)},
          {"typeNumber", entry.txnType},
          {"date", entry.txnDate.view()},
          {"realm", entry.realmId.view()},
          {"partner", entry.partnerName.view()},
          {"name", entry.txnName.view()},
          {"billCheckAccount", entry.billCheckAccountName.view()},
          {"entryAccount", entry.entryAccountName.view()},
          {"liabilityAccount", entry.liabilityAccountName.view()},
          {"amount", entry.amount.view()},
          {"currency", entry.currencyCode.view()},
          {"state", entry.state},
          {"stateText", StateText(entry.state)},
          {"requestId", entry.requestId.view()}};
}

std::vector<std::string> EntryCells(const METxnInfo& entry) {
  const auto text = [](const Util::TString& value) {
    return std::string(value.view());
  };
  return {text(entry.txnDate),
          standalone::TransactionTypeName(entry.txnType),
          std::to_string(entry.txnId),
          std::to_string(entry.targetId),
          text(entry.partnerName),
          text(entry.txnName),
          text(entry.billCheckAccountName.empty() ? entry.entryAccountName : entry.billCheckAccountName),
          text(entry.liabilityAccountName),
          text(entry.amount),
          text(entry.currencyCode),
          StateText(entry.state),
          text(entry.requestId)};
}

void Transactions(Invocation& invocation, const TransactionsOptions& options) {
  std::optional<std::int32_t> txnId;
  if (options.txn) txnId = RecordId("transaction id", *options.txn);
  const DateType32 from = PeriodBound("--from", options.from);
  const DateType32 to = PeriodBound("--to", options.to);
  if (options.from && options.to && from.Compare(to) > 0) {
    throw standalone::InvalidInput(
        fmt::format("--from {} is after --to {}; give the earlier date first", *options.from, *options.to));
  }
  Company company(invocation, options.file);
  std::vector<METxnInfo> entries;
  const MEStatusCode status = company.Read([&] {
    return txnId ? MultiEntityDriver::GetListOfTxnTargetEntries(entries, *txnId)
                 : MultiEntityDriver::GetListOfTxnTargetEntries(entries, from, to);
  });
  invocation.Accept(Request::kListTransactions, status);
  Json list = Json::array();
  Table table({{"Date"},
               {"Type"},
               {"Txn", Align::kRight},
               {"Line", Align::kRight},
               {"Partner"},
               {"Name"},
               {"Account"},
               {"Liability account"},
               {"Amount", Align::kRight},
               {"Cur"},
               {"State"},
               {"Request"}});
  for (const METxnInfo& entry : entries) {
    list.push_back(EntryJson(entry));
    table.Add(EntryCells(entry));
  }
  invocation.Report({{"status", status}, {"transactions", list}},
                    table.Empty() ? "No intercompany transactions.\n" : table.Text());
}

}  // namespace

void AddTransactions(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<TransactionsOptions>();
  CLI::App& command =
      AddFileCommand(program, "transactions", "List the intercompany lines of one transaction, or of a period",
                     "transactions alder.company --from 2024-12-01 --to 2024-12-31", options->file);
  CLI::Option* txn = command.add_option("--txn", options->txn, "The id of one bill, check or journal entry");
  command.add_option("--from", options->from, "First day of the period, YYYY-MM-DD; open when left out")->excludes(txn);
  command.add_option("--to", options->to, "Last day of the period, YYYY-MM-DD; open when left out")->excludes(txn);
  invocation.When(command, [options](Invocation& run) { Transactions(run, *options); });
}

}  // namespace app
