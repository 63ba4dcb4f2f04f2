#include "standalone/desk/inside/Awaiting.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <utility>

#include "standalone/books/FactTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Carrying.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Requests.h"
#include "standalone/exchange/IdentityFile.h"

namespace desk {

namespace {

using standalone::CameBackUpTo;
using standalone::FactOrigin;
using standalone::Pairing;
using standalone::PairingState;
using standalone::StoredFact;

constexpr std::size_t kMostNamed = 3;

// What the identity and the books tell of facts of this company.
struct Looked {
  std::uint64_t count = 0;  // of all lines that tell of a fact that left
  std::uint64_t known = 0;  // of those that need not be looked for
  std::size_t missing = 0;  // among the others
  bool isLost = false;      // what left before those is not known to anybody here, and has not been looked for
  std::int64_t lastCameBack = 0;
  CameBackUpTo cameBack;
};

std::size_t CountMissing(Work& work, const exchange::IdentityFile& identity, std::uint64_t known) {
  const std::vector<Pairing> pairings = work.Host().Pairings().List();
  const auto isHeld = [&](const exchange::Hash& hash) {
    return std::ranges::any_of(
        pairings, [&](const Pairing& pairing) { return work.Host().Facts().Has(pairing.id, hash.Bytes()); });
  };
  std::uint64_t line = identity.LostKeys().size();
  std::size_t missing = 0;
  identity.ForEachLeft([&](const exchange::Hash& hash) {
    if (++line > known && !isHeld(hash)) ++missing;
  });
  return missing;
}

Looked Look(Work& work) {
  RequireAnIdentity(work);
  const exchange::IdentityFile identity(IdentityFileOf(work));
  // Each lost identity stands for a line, before all others.
  Looked looked{.count = identity.LostKeys().size() + identity.LeftCount(),
                .known = work.Host().Pairings().LookedFor(),
                .missing = 0,
                .isLost = false,
                .lastCameBack = work.Host().Facts().LastCameBack(),
                .cameBack = work.Host().Pairings().CameBack()};
  looked.isLost = looked.known < identity.LostKeys().size();
  if (looked.known < looked.count) looked.missing = CountMissing(work, identity, looked.known);
  return looked;
}

// The same as long as one comparison is awaited, whatever comes back meanwhile and whatever leaves once more.
std::string SinceOf(const Looked& looked) {
  return "has what left up to " + std::to_string(looked.known) + " and came back up to " +
         std::to_string(looked.cameBack.compared);
}

std::vector<Pairing> PartnersToCompareWith(Work& work, const Looked& looked) {
  const bool isComplete = looked.missing == 0 && !looked.isLost;
  if (isComplete && looked.lastCameBack <= looked.cameBack.compared) return {};
  std::vector<Pairing> pairings = work.Host().Pairings().List();
  std::erase_if(pairings, [&](const Pairing& pairing) {
    return pairing.partnerKey.empty() || pairing.state == PairingState::kBlocked ||
           pairing.state == PairingState::kRemoved || IsCompared(work, pairing, SinceOf(looked));
  });
  return pairings;
}

std::string FactText(Work& work, const StoredFact& fact) {
  const std::optional<Pairing> pairing = work.Host().Pairings().Find(fact.pairing);
  const bool isOfThePairing = std::ranges::count(KindsOfThePairing(), fact.kind) != 0;
  return "the " + fact.kind + (isOfThePairing ? "" : " " + fact.name) + " to " + pairing.value().partnerName;
}

void TellWhatCameBack(Work& work, const Looked& looked, Awaited& awaited) {
  std::set<exchange::Hash> elsewhere;
  work.Host().Facts().ForEachCameBackAfter(looked.cameBack.confirmed, [&](const StoredFact& fact) {
    elsewhere.insert(exchange::Hash::FromBytes(fact.hash));
    if (awaited.firstThatCameBack.size() < kMostNamed) awaited.firstThatCameBack.push_back(FactText(work, fact));
  });
  awaited.cameBack = static_cast<std::int64_t>(elsewhere.size());
  if (elsewhere.empty()) return;
  const exchange::IdentityFile identity(IdentityFileOf(work));
  identity.ForEachLeft([&](const exchange::Hash& hash) { elsewhere.erase(hash); });
  awaited.fromElsewhere = static_cast<std::int64_t>(elsewhere.size());
}

bool IsConfirmed(const Looked& looked) noexcept {
  return looked.lastCameBack <= looked.cameBack.confirmed;
}

// Once for what left: it need not be looked for any more, and no comparison is awaited for what came back before.
void EndComparing(Work& work, const Looked& looked) {
  if (looked.known < looked.count) work.Host().Pairings().SetLookedFor(looked.count);
  const CameBackUpTo now{.compared = looked.lastCameBack, .confirmed = looked.cameBack.confirmed};
  if (now != looked.cameBack) work.Host().Pairings().SetCameBack(now);
}

// The facts of the pairing itself go with each letter: who has lost them could read no other.
void WithholdWhatHasNotLeft(Work& work) {
  std::set<exchange::Hash> made;
  const std::int64_t last = work.Host().Facts().LastNumber();
  for (const Pairing& pairing : work.Host().Pairings().List()) {
    work.Host().Facts().ForEachNotShown(pairing.id, last, [&](const StoredFact& fact) {
      const bool isOfThePairing = std::ranges::count(KindsOfThePairing(), fact.kind) != 0;
      if (fact.origin == FactOrigin::kMade && !isOfThePairing) made.insert(exchange::Hash::FromBytes(fact.hash));
    });
  }
  if (made.empty()) return;
  const exchange::IdentityFile identity(IdentityFileOf(work));
  identity.ForEachLeft([&](const exchange::Hash& hash) { made.erase(hash); });
  for (const exchange::Hash& hash : made) work.Host().Facts().Withhold(hash.Bytes());
}

[[noreturn]] void RefuseFor(Work& work, const Awaited& awaited) {
  work.Refuse(awaited.missing != 0 || awaited.isIdentityLost ? MissingText(awaited) : CameBackText(awaited),
              awaited.toCompare.empty() ? Remedy::kConfirmWhatCameBack : Remedy::kCarryUntilCompared);
}

}  // namespace

std::optional<Awaited> FindAwaited(Work& work) {
  if (!HasOwnKey(work)) return std::nullopt;
  const Looked looked = Look(work);
  Awaited awaited;
  for (const Pairing& pairing : PartnersToCompareWith(work, looked)) awaited.toCompare.push_back(pairing.partnerName);
  if (!awaited.toCompare.empty()) {
    awaited.missing = static_cast<std::int64_t>(looked.missing);
    awaited.isIdentityLost = looked.isLost;
  }
  TellWhatCameBack(work, looked, awaited);
  if (awaited.toCompare.empty() && awaited.cameBack == 0) return std::nullopt;
  return awaited;
}

void RequireNothingAwaited(Work& work) {
  const std::optional<Awaited> awaited = FindAwaited(work);
  if (awaited) RefuseFor(work, *awaited);
}

void RequireCompared(Work& work) {
  const std::optional<Awaited> awaited = FindAwaited(work);
  if (awaited && !awaited->toCompare.empty()) RefuseFor(work, *awaited);
}

void RequireComparedWith(Work& work, const std::vector<DBMultiEntityTransaction>& rows) {
  const bool isWithAPartner = std::ranges::any_of(rows, [&](const DBMultiEntityTransaction& row) {
    return work.Host().Pairings().FindLiveOf(row.relationId).has_value();
  });
  if (isWithAPartner) RequireCompared(work);
}

void FollowUp(Work& work) {
  const Looked looked = Look(work);
  const std::vector<Pairing> partners = PartnersToCompareWith(work, looked);
  for (const Pairing& pairing : partners) AskToCompare(work, pairing, SinceOf(looked));
  if (partners.empty()) EndComparing(work, looked);
  work.Host().Facts().WithholdNothing();
  if (!partners.empty() || !IsConfirmed(looked)) WithholdWhatHasNotLeft(work);
}

void Insist(Work& work) {
  const Looked looked = Look(work);
  for (const Pairing& pairing : PartnersToCompareWith(work, looked)) AskToCompare(work, pairing, SinceOf(looked));
  EndComparing(work, looked);
}

void Confirm(Work& work) {
  const Looked looked = Look(work);
  EndComparing(work, looked);
  work.Host().Pairings().SetCameBack({.compared = looked.lastCameBack, .confirmed = looked.lastCameBack});
}

}  // namespace desk
