#include "standalone/desk/inside/Pairings.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/desk/inside/Composing.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Texts.h"
#include "standalone/exchange/Errors.h"
#include "standalone/values/Suggestions.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::KeyStanding;
using standalone::Pairing;
using standalone::PairingState;
using standalone::Quoted;

std::string AccountName(Work& work, std::int32_t id) {
  return TextOf(work.Host().Accounts().FullNameOf(id));
}

Facts FactsOf(Work& work, const std::optional<Pairing>& pairing) {
  if (!pairing) return {};
  const std::string fingerprint = pairing->partnerKey.empty() ? "" : exchange::Fingerprint(KeyOf(*pairing));
  return {{"state", std::string(NameOf(pairing->state))},
          {"partner", pairing->partnerName},
          {"realm", pairing->partnerRealm},
          {"fingerprint", fingerprint},
          {"due-from account", AccountName(work, pairing->dueFromAccountId)},
          {"due-to account", AccountName(work, pairing->dueToAccountId)},
          {"folder", pairing->folder},
          {"booked by rule up to", pairing->bookedUpTo ? FormatPlainAmount(MoneyOf(work, *pairing->bookedUpTo)) : ""}};
}

template <typename IsIt>
std::vector<Pairing> Those(const std::vector<Pairing>& pairings, IsIt&& isIt) {
  std::vector<Pairing> found;
  std::ranges::copy_if(pairings, std::back_inserter(found), isIt);
  return found;
}

std::vector<Pairing> ThoseCalled(const std::vector<Pairing>& pairings, std::string_view text) {
  if (text.empty()) return {};
  std::vector<Pairing> found = Those(
      pairings, [&](const Pairing& pairing) { return pairing.partnerRealm == text || pairing.partnerName == text; });
  if (!found.empty()) return found;
  return Those(pairings,
               [&](const Pairing& pairing) { return standalone::EqualIgnoringCase(pairing.partnerName, text); });
}

std::vector<std::string> NamesAndRealmsOf(const std::vector<Pairing>& pairings) {
  std::vector<std::string> texts;
  for (const Pairing& pairing : pairings) {
    texts.push_back(pairing.partnerName);
    if (!pairing.partnerRealm.empty()) texts.push_back(pairing.partnerRealm);
  }
  return texts;
}

std::optional<Pairing> LivePairingWithRealm(Work& work, std::string_view realm) {
  const std::vector<Pairing> all = work.Host().Pairings().List();
  const auto found = std::ranges::find_if(all, [realm](const Pairing& pairing) {
    return pairing.state != PairingState::kRemoved && pairing.partnerRealm == realm;
  });
  if (found == all.end()) return std::nullopt;
  return *found;
}

// The earlier request that a fact is about.
std::string NamedBy(const exchange::Fact& fact) {
  if (fact.What().kind != exchange::kinds::kProposal) return {};
  try {
    const std::optional<exchange::EarlierLink> earlier = exchange::ProposalOf(fact).earlier;
    return earlier ? earlier->request : std::string();
  } catch (const exchange::NotUnderstood&) {
    return {};
  }
}

// One that was made by hand is taken with the accounts that it has.
MEStatusCode TakeUp(const DBMultiEntityRelation& relation, standalone::RelationState state) {
  MERelationInfo info;
  info.realmId = std::string_view(relation.realmId);
  info.state = static_cast<MEState>(state);
  return MultiEntityDriver::UpdateRelation(info);
}

MEStatusCode MakeAnew(Work& work, const RelationOfPartner& wanted, const Pairing& pairing) {
  const auto account = [&work](std::int32_t id, MEAccountRole role) {
    const standalone::Account found = work.Host().Accounts().Find(id).value();
    return MEAccountInfo{
        .name = std::string_view(found.fullName), .type = found.type, .accountId = found.id, .role = role};
  };
  const std::vector<MEAccountInfo> accounts{account(pairing.dueFromAccountId, MEAccountRoleDueFrom),
                                            account(pairing.dueToAccountId, MEAccountRoleDueTo)};
  return MultiEntityDriver::CreateRelation(std::string_view(wanted.realm), std::string_view(pairing.partnerName),
                                           MERelationType{0}, static_cast<MEState>(wanted.state), accounts);
}

std::vector<standalone::PartnerKey> OfferedKeysOf(Work& work, const Pairing& pairing) {
  std::vector<standalone::PartnerKey> keys = work.Host().Pairings().PartnerKeysOf(pairing.id);
  std::erase_if(keys, [](const standalone::PartnerKey& key) { return key.standing != KeyStanding::kOffered; });
  return keys;
}

std::string FingerprintOf(const standalone::PartnerKey& key) {
  return exchange::Fingerprint(exchange::PublicKey::FromBytes(key.key));
}

}  // namespace

Pairing RequirePairing(Work& work, std::string_view partner) {
  const std::vector<Pairing> live =
      Those(work.Host().Pairings().List(), [](const Pairing& one) { return one.state != PairingState::kRemoved; });
  const std::vector<Pairing> called = ThoseCalled(live, partner);
  if (called.size() == 1) return called.front();
  if (!called.empty()) {
    work.Refuse(Quoted(partner) + " is both " + PartnerText(called[0]) + " and " + PartnerText(called[1]),
                Remedy::kSeePartners);
  }
  work.Suggest(standalone::DidYouMean(partner, NamesAndRealmsOf(live)));
  work.Refuse("this company is not paired with anybody called " + Quoted(partner), Remedy::kSeePartners);
}

PairedPartner PairedPartnerOf(Work& work, const Pairing& pairing) {
  const bool hasLetter =
      work.Host().Facts().HasNotShown(pairing.id) || !work.Host().Pairings().CarryingOf(pairing.id).telling.empty();
  std::vector<std::string> outstanding;
  std::vector<std::string> notUnderstood;
  work.Host().Facts().ForEachSetAside(pairing.id, [&](const standalone::StoredFact& fact) {
    (IsUnderstood(fact) ? outstanding : notUnderstood).push_back(fact.kind + ": " + fact.setAside);
  });
  std::vector<OfferedKey> offered;
  for (const standalone::PartnerKey& key : OfferedKeysOf(work, pairing)) {
    offered.push_back({.fingerprint = FingerprintOf(key), .isAnnounced = key.isAnnounced});
  }
  const auto account = [&work](std::int32_t id) {
    return ListItem{.id = id, .name = AccountName(work, id)};
  };
  return {.id = pairing.id,
          .name = pairing.partnerName,
          .realm = pairing.partnerRealm,
          .state = pairing.state,
          .invitedByUs = pairing.invitedByUs,
          .fingerprint = pairing.partnerKey.empty() ? "" : exchange::Fingerprint(KeyOf(pairing)),
          .dueFrom = account(pairing.dueFromAccountId),
          .dueTo = account(pairing.dueToAccountId),
          .folder = standalone::PathOfText(pairing.folder),
          .hasLetterToSend = hasLetter,
          .outstanding = std::move(outstanding),
          .notUnderstood = std::move(notUnderstood),
          .offeredKeys = std::move(offered),
          .bookedUpTo = pairing.bookedUpTo ? std::optional(MoneyOf(work, *pairing.bookedUpTo)) : std::nullopt};
}

bool IsUnderstood(const standalone::StoredFact& fact) {
  try {
    static_cast<void>(exchange::MeaningOf(exchange::Fact(fact.body, fact.signature)));
    return true;
  } catch (const exchange::NotUnderstood&) {
    return false;
  }
}

std::string PartnerText(const Pairing& pairing) {
  if (pairing.partnerRealm.empty()) return pairing.partnerName;
  return pairing.partnerName + " (realm " + pairing.partnerRealm + ")";
}

std::span<const std::string_view> KindsOfThePairing() noexcept {
  static constexpr std::array kKinds{exchange::kinds::kInvitation, exchange::kinds::kAcceptance,
                                     exchange::kinds::kConfirmation, exchange::kinds::kNewKey};
  return kKinds;
}

exchange::PublicKey KeyOf(const Pairing& pairing) {
  return exchange::PublicKey::FromBytes(pairing.partnerKey);
}

bool IsOwnKey(Work& work, const exchange::PublicKey& key) {
  const std::vector<std::string> keys = work.Host().Pairings().OwnKeys();
  return std::ranges::count(keys, key.Bytes()) != 0;
}

bool IsPartnersKey(Work& work, const Pairing& pairing, const exchange::PublicKey& key) {
  return key.Bytes() == pairing.partnerKey || StandingOf(work, pairing, key) == KeyStanding::kFormer;
}

std::optional<KeyStanding> StandingOf(Work& work, const Pairing& pairing, const exchange::PublicKey& key) {
  const std::vector<standalone::PartnerKey> keys = work.Host().Pairings().PartnerKeysOf(pairing.id);
  const auto known = std::ranges::find(keys, key.Bytes(), &standalone::PartnerKey::key);
  if (known == keys.end()) return std::nullopt;
  return known->standing;
}

bool IsOtherPartnersKey(Work& work, const exchange::PublicKey& key, std::optional<std::int32_t> but) {
  return std::ranges::any_of(work.Host().Pairings().List(), [&](const Pairing& other) {
    return other.id != but && other.state != PairingState::kRemoved && IsPartnersKey(work, other, key);
  });
}

void NoteFormerKey(Work& work, const Pairing& pairing, const exchange::PublicKey& key) {
  work.Host().Pairings().SetPartnerKey(pairing.id, {.key = std::string(key.Bytes()), .standing = KeyStanding::kFormer});
}

bool NoteOfferedKey(Work& work, const Pairing& pairing, const exchange::PublicKey& key, bool isAnnounced) {
  const standalone::PartnerKey offered{
      .key = std::string(key.Bytes()), .standing = KeyStanding::kOffered, .isAnnounced = isAnnounced};
  for (const standalone::PartnerKey& known : work.Host().Pairings().PartnerKeysOf(pairing.id)) {
    if (known.key == offered.key && (known.isAnnounced || !isAnnounced)) return false;
  }
  work.Host().Pairings().SetPartnerKey(pairing.id, offered);
  return true;
}

bool HasOfferedKey(Work& work, const Pairing& pairing) {
  return !OfferedKeysOf(work, pairing).empty();
}

// One that was declined may be taken after all; one that was replaced may not, as somebody else may have it.
bool TakeOfferedKey(Work& work, Pairing& pairing, std::string_view fingerprint) {
  const std::vector<standalone::PartnerKey> keys = work.Host().Pairings().PartnerKeysOf(pairing.id);
  const auto taken = std::ranges::find_if(keys, [&](const standalone::PartnerKey& known) {
    return known.standing != KeyStanding::kFormer && DigitsOf(FingerprintOf(known)) == DigitsOf(fingerprint);
  });
  if (taken == keys.end()) return false;
  DeclineOfferedKeys(work, pairing);
  NoteFormerKey(work, pairing, KeyOf(pairing));
  pairing.partnerKey = taken->key;
  PutLettersAnew(work, pairing);
  return true;
}

void DeclineOfferedKeys(Work& work, const Pairing& pairing) {
  for (const standalone::PartnerKey& offered : OfferedKeysOf(work, pairing)) {
    work.Host().Pairings().SetPartnerKey(pairing.id, {.key = offered.key, .standing = KeyStanding::kDeclined});
  }
}

std::string DigitsOf(std::string_view fingerprint) {
  std::string digits;
  for (const char character : fingerprint) {
    if (character >= '0' && character <= '9') digits += character;
  }
  return digits;
}

void PutLettersAnew(Work& work, const Pairing& pairing) {
  standalone::Carrying carrying = work.Host().Pairings().CarryingOf(pairing.id);
  if (carrying.lettersFor.empty()) return;
  carrying.lettersFor.clear();
  work.Host().Pairings().SetCarrying(pairing.id, carrying);
}

exchange::PairingOffer OwnOffer(Work& work, exchange::PairingStep step, const std::optional<exchange::Hash>& replyTo) {
  const standalone::Settings& settings = work.Host().Settings().Get();
  return {.step = step,
          .company = settings.companyName,
          .realm = work.RememberedRealm().value_or(""),
          .currency = settings.homeCurrency,
          .decimals = settings.decimals,
          .replyTo = replyTo};
}

std::string WhyNotToPair(Work& work, const exchange::PairingOffer& offer, std::int32_t pairing) {
  const standalone::Settings& settings = work.Host().Settings().Get();
  if (offer.currency != settings.homeCurrency) {
    return "its books are in " + offer.currency + " and these in " + settings.homeCurrency +
           ", so that no amount would be the same on both sides";
  }
  if (offer.decimals != settings.decimals) {
    return "its amounts have " + std::to_string(offer.decimals.Count()) + " decimals and these " +
           std::to_string(settings.decimals.Count());
  }
  if (offer.realm.empty()) return {};
  if (offer.realm == work.RememberedRealm()) return "its realm id " + Quoted(offer.realm) + " is this company's own";
  const std::optional<Pairing> other = LivePairingWithRealm(work, offer.realm);
  if (other && other->id != pairing) {
    return "its realm id " + Quoted(offer.realm) + " is that of " + Quoted(other->partnerName) +
           ", with whom this company is paired";
  }
  return {};
}

bool Keep(Work& work, const Pairing& pairing, const exchange::Fact& fact, standalone::FactOrigin origin,
          std::string_view setAside) {
  const exchange::Statement& what = fact.What();
  return work.Host().Facts().Add({.pairing = pairing.id,
                                  .hash = std::string(fact.Id().Bytes()),
                                  .origin = origin,
                                  .kind = what.kind,
                                  .name = what.name,
                                  .names = NamedBy(fact),
                                  .month = what.month,
                                  .body = fact.Body(),
                                  .signature = fact.Signature(),
                                  .shown = false,
                                  .setAside = std::string(setAside)});
}

std::optional<exchange::Fact> PairingFact(Work& work, const Pairing& pairing, std::string_view kind,
                                          standalone::FactOrigin origin) {
  std::optional<exchange::Fact> found;
  work.Host().Facts().ForEachOf(pairing.id, kind, pairing.pairingId, [&](const standalone::StoredFact& stored) {
    if (!found && stored.origin == origin && stored.setAside.empty()) found.emplace(stored.body, stored.signature);
  });
  return found;
}

standalone::AuditDeed DeedOfPairing(Work& work, std::string action, const std::optional<Pairing>& before,
                                    const Pairing& after) {
  return DeedOf(std::move(action), "the pairing with " + PartnerText(after), FactsOf(work, before),
                FactsOf(work, after));
}

void RefuseExistingRelation(Work& work, const RelationOfPartner& wanted) {
  DBMultiEntityRelation relation{};
  if (!work.Host().Relations().Find(wanted.realm, relation)) return;
  if (!wanted.useExisting) {
    work.Refuse("there is a relation with the realm " + Quoted(wanted.realm) + " already, called " +
                    Quoted(standalone::Field(relation.partnerName)),
                Remedy::kUseTheExistingRelation);
  }
  if (relation.dueFromAccountId != 0 && relation.dueToAccountId != 0) return;
  work.Refuse("the relation with the realm " + Quoted(wanted.realm) + " has no accounts",
              Remedy::kGiveTheRelationAccounts);
}

MEStatusCode MakeRelation(Work& work, const RelationOfPartner& wanted, Pairing& pairing) {
  RefuseExistingRelation(work, wanted);
  DBMultiEntityRelation relation{};
  const bool exists = work.Host().Relations().Find(wanted.realm, relation);
  if (exists) pairing.relationStateBefore = relation.state;
  const MEStatusCode answer = exists ? TakeUp(relation, wanted.state) : MakeAnew(work, wanted, pairing);
  if (answer != MEStatusSuccess) return answer;
  static_cast<void>(work.Host().Relations().Find(wanted.realm, relation));
  pairing.relationId = relation.relationId;
  pairing.dueFromAccountId = relation.dueFromAccountId;
  pairing.dueToAccountId = relation.dueToAccountId;
  return answer;
}

void RefusePaired(Work& work, std::string_view realm) {
  const std::optional<Pairing> pairing = LivePairingWithRealm(work, realm);
  if (!pairing || !pairing->relationId) return;
  work.Refuse("this company is paired with " + PartnerText(*pairing) + ", and both sides rely on the relation",
              Remedy::kRemoveThePairingFirst);
}

bool IsAnsweredByTheExchange(Work& work, std::int32_t relationId) {
  const std::optional<Pairing> pairing = work.Host().Pairings().FindLiveOf(relationId);
  return pairing && (pairing->state == PairingState::kEstablished || pairing->state == PairingState::kBlocked);
}

void RefuseStateByHand(Work& work, std::int32_t relationId) {
  if (!IsAnsweredByTheExchange(work, relationId)) return;
  const std::optional<Pairing> pairing = work.Host().Pairings().FindLiveOf(relationId);
  work.Refuse("this company is paired with " + PartnerText(*pairing) + ", whose answers alone move its requests",
              Remedy::kSendToThePartner);
}

void RefuseRejectionByHand(Work& work, std::int32_t relationId, std::string_view request) {
  if (!work.Host().Inbox().FindOfRelation(relationId, request)) return;
  work.Refuse("the request " + Quoted(request) + " has come by the exchange, where it is answered",
              Remedy::kAnswerInTheInbox);
}

void RefuseWhilePaired(Work& work) {
  for (const Pairing& pairing : work.Host().Pairings().List()) {
    if (pairing.state == PairingState::kRemoved) continue;
    work.Refuse(
        "this company's realm id and currency are known to " + PartnerText(pairing) + ", with whom it is paired",
        Remedy::kRemoveThePairingFirst);
  }
}

void RefuseReserved(Work& work, std::int32_t accountId) {
  if (!work.Host().Pairings().IsReserved(accountId)) return;
  work.Refuse("the account " + Quoted(AccountName(work, accountId)) + " is reserved by an invitation",
              Remedy::kChooseFreePartnerOrAccounts);
}

}  // namespace desk
