#include "standalone/desk/inside/WaitingPartners.h"

#include <utility>

#include "standalone/books/InboxTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Composing.h"
#include "standalone/desk/inside/HeldRequests.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/ReadRequests.h"

namespace desk {

std::vector<WaitingRequest> RequestsToAnswer(Work& work) {
  std::vector<WaitingRequest> requests;
  for (const standalone::Pairing& pairing : PairingsOf(work, std::nullopt)) {
    std::vector<standalone::InboxRow> rows;
    work.Host().Inbox().ForEach(pairing.id, /*decided=*/false, [&rows](const standalone::InboxRow& row) {
      if (row.state != standalone::InboxState::kHeld) rows.push_back(row);
    });
    for (standalone::InboxRow& row : rows) {
      const HeldRequest held = HeldAbout(work, pairing, RequestOf::kPartner, row.requestId);
      const exchange::Proposal& says = held.Proposal()->says;
      const std::int16_t type = TxnTypeOf(says.type);
      if (!MaySee(work, type)) continue;
      requests.push_back({.partner = pairing.partnerName,
                          .realm = pairing.partnerRealm,
                          .requestId = std::move(row.requestId),
                          .type = type,
                          .date = says.date,
                          .amount = MoneyOf(work, says.amount),
                          .name = says.name,
                          .state = row.state});
    }
  }
  return requests;
}

std::vector<PairedPartner> PartnersToLookAfter(Work& work) {
  std::vector<PairedPartner> partners;
  if (!work.MayManageRelations()) return partners;
  for (const standalone::Pairing& pairing : work.Host().Pairings().List()) {
    if (pairing.state == standalone::PairingState::kRemoved) continue;
    PairedPartner partner = PairedPartnerOf(work, pairing);
    const bool isToConfirm = pairing.state == standalone::PairingState::kAnswered || !partner.offeredKeys.empty();
    if (isToConfirm || !partner.outstanding.empty()) partners.push_back(std::move(partner));
  }
  return partners;
}

}  // namespace desk
