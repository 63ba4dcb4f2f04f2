#include "standalone/desk/inside/Behind.h"

#include <algorithm>
#include <utility>

#include "standalone/books/FactTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Carrying.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/exchange/IdentityFile.h"
#include "standalone/values/Counted.h"

namespace desk {

namespace {

using standalone::Pairing;
using standalone::PairingState;

struct Left {
  std::uint64_t count = 0;  // of all lines that tell of a fact that left
  std::uint64_t known = 0;  // of those that need not be looked for
  std::size_t missing = 0;  // among the others
};

Left LookAtWhatLeft(Work& work) {
  const exchange::IdentityFile identity(IdentityFileOf(work));
  const std::uint64_t known = work.Host().Pairings().LookedFor();
  Left left{.count = identity.LeftCount(), .known = known};
  if (known >= left.count) return left;
  const std::vector<Pairing> pairings = work.Host().Pairings().List();
  const auto isHeld = [&](const exchange::Hash& hash) {
    return std::ranges::any_of(
        pairings, [&](const Pairing& pairing) { return work.Host().Facts().Has(pairing.id, hash.Bytes()); });
  };
  std::uint64_t line = 0;
  identity.ForEachLeft([&](const exchange::Hash& hash) {
    if (++line > known && !isHeld(hash)) ++left.missing;
  });
  return left;
}

// The same as long as these books are behind, whatever comes back to them meanwhile and whatever leaves once more.
std::string SinceOf(const Left& left) {
  return "has what left up to " + std::to_string(left.known);
}

std::vector<Pairing> PartnersToCompareWith(Work& work) {
  std::vector<Pairing> pairings = work.Host().Pairings().List();
  std::erase_if(pairings, [](const Pairing& pairing) {
    return pairing.partnerKey.empty() || pairing.state == PairingState::kBlocked ||
           pairing.state == PairingState::kRemoved;
  });
  return pairings;
}

std::optional<Behind> BehindOf(Work& work, const Left& left) {
  if (left.missing == 0) return std::nullopt;
  Behind behind{.missing = left.missing, .since = SinceOf(left)};
  const std::vector<Pairing> partners = PartnersToCompareWith(work);
  const bool areAllCompared =
      std::ranges::all_of(partners, [&](const Pairing& pairing) { return IsCompared(work, pairing, behind.since); });
  if (areAllCompared) return std::nullopt;
  return behind;
}

}  // namespace

std::optional<Behind> FindBehind(Work& work) {
  if (!HasOwnKey(work)) return std::nullopt;
  return BehindOf(work, LookAtWhatLeft(work));
}

void RequireNotBehind(Work& work) {
  const std::optional<Behind> behind = FindBehind(work);
  if (!behind) return;
  work.Refuse("these books lack " + standalone::Counted(static_cast<std::int64_t>(behind->missing), "fact") +
                  " that this company told its partners, as books of before have been restored",
              Remedy::kCarryUntilCompared);
}

void RequireNotBehindWith(Work& work, const std::vector<DBMultiEntityTransaction>& rows) {
  const bool isWithAPartner = std::ranges::any_of(rows, [&](const DBMultiEntityTransaction& row) {
    return work.Host().Pairings().FindLiveOf(row.relationId).has_value();
  });
  if (isWithAPartner) RequireNotBehind(work);
}

void FollowUp(Work& work) {
  const Left left = LookAtWhatLeft(work);
  const std::optional<Behind> behind = BehindOf(work, left);
  if (!behind) {
    if (work.Host().Pairings().LookedFor() < left.count) work.Host().Pairings().SetLookedFor(left.count);
    return;
  }
  for (const Pairing& pairing : PartnersToCompareWith(work)) AskToCompare(work, pairing, behind->since);
}

void Insist(Work& work) {
  work.Host().Pairings().SetLookedFor(LookAtWhatLeft(work).count);
}

}  // namespace desk
