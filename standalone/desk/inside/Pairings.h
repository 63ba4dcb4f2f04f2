#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "standalone/books/AuditTable.h"
#include "standalone/books/FactTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/PairedPartner.h"
#include "standalone/exchange/Fact.h"
#include "standalone/exchange/Kinds.h"

// The partners with whom this company is paired, and the facts that both hold; within a unit of work.
namespace desk {

// By realm id or name, whose ASCII letters may have another case, among those that are not removed. Refused for one
// that there is not, and for what two are called.
standalone::Pairing RequirePairing(Work& work, std::string_view partner);
PairedPartner PairedPartnerOf(Work& work, const standalone::Pairing& pairing);
// Birch Services Company, with the realm id as far as it is known.
std::string PartnerText(const standalone::Pairing& pairing);

// What is not says nothing to anybody before a later version of the program reads it.
bool IsUnderstood(const standalone::StoredFact& fact);

// Of the facts by which a pairing comes about, and by which it is known who signs.
std::span<const std::string_view> KindsOfThePairing() noexcept;

exchange::PublicKey KeyOf(const standalone::Pairing& pairing);
// Whether it is one of this company, now or before.
bool IsOwnKey(Work& work, const exchange::PublicKey& key);

// Whether the partner signs with it, or has before.
bool IsPartnersKey(Work& work, const standalone::Pairing& pairing, const exchange::PublicKey& key);
// Of a key that is not that of the pairing; none for one that nobody here has heard of.
std::optional<standalone::KeyStanding> StandingOf(Work& work, const standalone::Pairing& pairing,
                                                  const exchange::PublicKey& key);
// Whether it is that of a partner but for this one; of any without one.
bool IsOtherPartnersKey(Work& work, const exchange::PublicKey& key, std::optional<std::int32_t> but = std::nullopt);
// Has what the key signed be the partner's; in a unit of work that writes, as below.
void NoteFormerKey(Work& work, const standalone::Pairing& pairing, const exchange::PublicKey& key);
// Has a person learn that somebody writes as the partner under another key, of which nothing else is used until it is
// confirmed; false when that is known.
bool NoteOfferedKey(Work& work, const standalone::Pairing& pairing, const exchange::PublicKey& key, bool isAnnounced);
bool HasOfferedKey(Work& work, const standalone::Pairing& pairing);
// Takes the key with that fingerprint, which was offered, as the partner's from now on, and has the next letter be for
// it; all others that are offered are declined. False when it is that of none.
bool TakeOfferedKey(Work& work, standalone::Pairing& pairing, std::string_view fingerprint);
// Has letters under keys that are offered wait no longer, as the partner's is that of the pairing.
void DeclineOfferedKeys(Work& work, const standalone::Pairing& pairing);
// Without what a person may have typed between the digits.
std::string DigitsOf(std::string_view fingerprint);
// Has the next letter be put whatever it says.
void PutLettersAnew(Work& work, const standalone::Pairing& pairing);

// What this company says of itself at a step of the pairing.
exchange::PairingOffer OwnOffer(Work& work, exchange::PairingStep step, const std::optional<exchange::Hash>& replyTo);
// Why a partner with that offer cannot be paired with: its currency, its decimals, its realm, if it has one; empty when
// it can.
// `pairing` is the one that is being made, 0 for one that is not in the books yet.
std::string WhyNotToPair(Work& work, const exchange::PairingOffer& offer, std::int32_t pairing);

// Has the books hold a fact; false when they do already. Why it is not applied, if it is not.
bool Keep(Work& work, const standalone::Pairing& pairing, const exchange::Fact& fact, standalone::FactOrigin origin,
          std::string_view setAside = {});
// The one of that kind, made here or by the partner; none when there is none that is applied.
std::optional<exchange::Fact> PairingFact(Work& work, const standalone::Pairing& pairing, std::string_view kind,
                                          standalone::FactOrigin origin);

// What the audit trail tells of a step: the pairing as it was, if it was, and as it is.
standalone::AuditDeed DeedOfPairing(Work& work, std::string action, const std::optional<standalone::Pairing>& before,
                                    const standalone::Pairing& after);

// The partner's relation from now on, established or pending; made, or the existing one with that realm if that was
// said. Answers what the module answers; on success `pairing` has the relation and its accounts.
struct RelationOfPartner {
  std::string realm;
  standalone::RelationState state = standalone::RelationState::kPending;
  bool useExisting = false;
};
MEStatusCode MakeRelation(Work& work, const RelationOfPartner& wanted, standalone::Pairing& pairing);
// Refused for one with that realm that is there, unless it was said and the relation has accounts.
void RefuseExistingRelation(Work& work, const RelationOfPartner& wanted);

// Refused while a pairing holds on to the relation with that realm.
void RefusePaired(Work& work, std::string_view realm);
// Whether the partner of the relation answers by the exchange, which alone moves its requests.
bool IsAnsweredByTheExchange(Work& work, std::int32_t relationId);
// Refused while it does.
void RefuseStateByHand(Work& work, std::int32_t relationId);
// Refused for a request that has come from the partner by the exchange.
void RefuseRejectionByHand(Work& work, std::int32_t relationId, std::string_view request);
// Refused while any pairing is live, whose partner knows this company by its realm id.
void RefuseWhilePaired(Work& work);
// Refused for accounts that an invitation has reserved.
void RefuseReserved(Work& work, std::int32_t accountId);

}  // namespace desk
