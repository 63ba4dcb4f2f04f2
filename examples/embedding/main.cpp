#include <sstream>

#include "MemoryHost.h"
#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntity/MultiEntityScheduler.h"

namespace {

constexpr auto kAlder = "5120774003618";
constexpr auto kRequest = "656ef942-843c-46a9-b23e-01d629b3c9f4";

// Shows what the library answered and what it lists afterwards; whether both are as expected.
bool Step(MemoryHost& host, const char* what, const char* expectedList, auto call) {
  const MEStatusCode status = host.UnitOfWork(call);
  std::vector<METxnInfo> lines;
  host.UnitOfWork([&] { return MultiEntityDriver::GetListOfTxnTargetEntries(lines, NullDate(), NullDate()); });
  std::ostringstream list;
  for (const METxnInfo& line : lines) {
    list << line.txnDate.c_str() << ", " << line.entryAccountName.c_str() << ", " << line.amount.c_str() << ' '
         << line.currencyCode.c_str() << ", state " << line.state;
  }
  const bool asExpected = status == MEStatusSuccess && list.str() == expectedList;
  std::printf("%s: status %d, list: %s%s\n", what, status, list.str().c_str(), asExpected ? "" : " NOT AS EXPECTED");
  return asExpected;
}

}  // namespace

int main() {
  MemoryHost host;
  host.company.today = {2026, 11, 21};
  host.company.accounts = {{1, {"Due from Alder", KrEnumerations::kOtherCurrentAsset}},
                           {2, {"Due to Alder", KrEnumerations::kOtherCurrentLiability}}};
  if (AttachHost(host.Services()) != MEAttachDone) return EXIT_FAILURE;

  const std::vector<MEAccountInfo> accounts{{{}, 0, 1, MEAccountRoleDueFrom}, {{}, 0, 2, MEAccountRoleDueTo}};
  bool asExpected = Step(host, "Alder is related", "", [&] {
    return MultiEntityDriver::CreateRelation(kAlder, "Alder Supply Company", {}, MEStateEstablished, accounts);
  });

  new MultiEntityScheduler;
  host.DeliverMessages();

  std::uint32_t entry = 0;
  asExpected &= Step(host, "The bill is booked", "11/21/2026, Elevator Maintenance, 480.00 USD, state 3", [&] {
    return MultiEntityDriver::RecordGeneralJournalEntry(kAlder, {"Elevator Maintenance", KrEnumerations::kExpense, -1},
                                                        2, "480.00", kRequest, {"Cold Spring Elevator Company"}, entry);
  });
  asExpected &= Step(host, "It is deactivated", "11/21/2026, Elevator Maintenance, 480.00 USD, state 5", [] {
    return MultiEntityDriver::UpdateTransactionWithState(kAlder, kRequest, MEStateDeactivated);
  });
  asExpected &= Step(host, "It is removed", "", [&] { return MultiEntityDriver::RemoveGeneralJournalEntry(entry); });

  host.CloseCompany();
  DetachHost();
  return asExpected ? EXIT_SUCCESS : EXIT_FAILURE;
}
