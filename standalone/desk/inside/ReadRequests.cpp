#include "standalone/desk/inside/ReadRequests.h"

#include <algorithm>
#include <cstdlib>

#include "MultiEntityHost/Enumerations.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/TypeRights.h"

namespace desk {

using standalone::Pairing;
using standalone::PairingState;

std::vector<Pairing> PairingsOf(Work& work, const std::optional<Partner>& partner) {
  if (partner) return {RequirePairing(work, partner->Text())};
  std::vector<Pairing> pairings = work.Host().Pairings().List();
  std::erase_if(pairings, [](const Pairing& pairing) {
    return pairing.state != PairingState::kEstablished && pairing.state != PairingState::kBlocked;
  });
  return pairings;
}

std::int16_t TxnTypeOf(exchange::RequestType type) noexcept {
  switch (type) {
    case exchange::RequestType::kBill:
      return kTxnTypeBill;
    case exchange::RequestType::kCheck:
      return kTxnTypeCheck;
    case exchange::RequestType::kEntry:
      break;
  }
  return kTxnTypeJournalEntry;
}

bool MaySee(Work& work, std::int16_t txnType) {
  return work.HasRight({FeatureOf(txnType), kActionView});
}

void RequireMaySeeSome(Work& work) {
  work.RequireOneOf(
      {{kFeatureBills, kActionView}, {kFeatureChecks, kActionView}, {kFeatureJournalEntries, kActionView}});
}

SelectedAmounts::SelectedAmounts(Work& work, const RequestSelection& selection) {
  if (!selection.upTo) return;
  const standalone::Settings& settings = work.Host().Settings().Get();
  upTo_ = standalone::RequireAmount(selection.upTo->Text(), settings.homeCurrency, settings.decimals);
}

bool SelectedAmounts::Hold(std::int64_t minorUnits) const noexcept {
  return !upTo_ || std::abs(minorUnits) <= std::abs(*upTo_);
}

bool IsNamed(const RequestSelection& selection, const std::string& request) {
  return std::ranges::any_of(selection.requests,
                             [&](const standalone::RequestId& named) { return named.Text() == request; });
}

}  // namespace desk
