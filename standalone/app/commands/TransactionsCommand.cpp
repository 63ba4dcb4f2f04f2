#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Listings.h"
#include "standalone/app/Statuses.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"

namespace app {

namespace {

struct TransactionsOptions {
  std::string file;
  std::optional<std::string> txn;
  std::optional<std::string> from;
  std::optional<std::string> to;
};

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
  const Listing listing = ListEntries(entries);
  invocation.Report({{"status", status}, {"transactions", listing.json}},
                    listing.table.Empty() ? "No intercompany transactions.\n" : listing.table.Text());
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
