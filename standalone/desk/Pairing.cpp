#include "standalone/desk/Pairing.h"

#include <algorithm>
#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/ExchangeUser.h"
#include "standalone/desk/inside/NewPairings.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/RelationAccounts.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/Fact.h"
#include "standalone/exchange/Kinds.h"
#include "standalone/exchange/TextBlock.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using exchange::PairingStep;
using standalone::FactOrigin;
using standalone::Pairing;
using standalone::PairingState;
using standalone::Quoted;

constexpr std::string_view kInvitationLabel = "MULTIENTITY INVITATION";

// Returns the realm id if the company got one now.
std::optional<std::string> RequireRealm(Work& work, const exchange::PublicKey& key) {
  if (work.RememberedRealm()) return std::nullopt;
  std::string realm = RealmOfKey(key);
  DBMultiEntityRelation relation{};
  if (work.Host().Relations().Find(realm, relation)) {
    throw std::runtime_error("the realm id " + realm + " of this company's key is that of a partner");
  }
  if (!MultiEntityDriver::SetMECacheRealmId(realm.data())) {
    throw std::runtime_error("the realm id " + realm + " could not be stored in the company file");
  }
  return realm;
}

exchange::Fact ReadInvitation(const std::string& text) {
  return exchange::Fact::VerifiedFromWire(exchange::BytesOfTextBlock(kInvitationLabel, text));
}

void RefuseInvitation(Work& work, const exchange::Fact& invitation, const exchange::PairingOffer& offer) {
  const std::vector<std::string> ownKeys = work.Host().Pairings().OwnKeys();
  if (std::ranges::count(ownKeys, invitation.What().author.Bytes()) != 0) {
    work.Refuse("the invitation is this company's own; it is for the partner", Remedy::kSendItToThePartner);
  }
  if (work.Host().Pairings().FindByPairingId(invitation.What().pairing)) {
    work.Refuse("the invitation of " + Quoted(offer.company) + " was accepted here before", Remedy::kSeePartners);
  }
  if (const std::string why = WhyNotToPair(work, offer, 0); !why.empty()) {
    work.Refuse(Quoted(offer.company) + " cannot be paired with: " + why, Remedy::kTalkToThePartner);
  }
}

void RequireFingerprint(Work& work, const Pairing& pairing, const std::string& given) {
  const std::string fingerprint = exchange::Fingerprint(KeyOf(pairing));
  if (DigitsOf(given) == DigitsOf(fingerprint)) return;
  work.Refuse("the fingerprint " + Quoted(given) + " is not that of who accepted the invitation for " +
                  Quoted(pairing.partnerName) + ", which is " + fingerprint,
              Remedy::kCompareFingerprints);
}

void RequireState(Work& work, const Pairing& pairing, PairingState state, std::string_view whatFor) {
  if (pairing.state == state) return;
  work.Refuse("the pairing with " + PartnerText(pairing) + " is " + std::string(NameOf(pairing.state)) + "; only one " +
                  "that is " + std::string(NameOf(state)) + " can be " + std::string(whatFor),
              Remedy::kSeePartners);
}

// Of a partner as which somebody writes under another key: whether that it is settled now which one is the partner's,
// and no more is to be done. Refused for a fingerprint that is that of none of them.
bool ChoseAmongKeys(Work& work, Pairing& pairing, const std::string& given) {
  const bool isToConfirm = pairing.state == PairingState::kAnswered;
  if (TakeOfferedKey(work, pairing, given)) return !isToConfirm;
  if (!HasOfferedKey(work, pairing)) return false;
  if (DigitsOf(given) == DigitsOf(exchange::Fingerprint(KeyOf(pairing)))) {
    DeclineOfferedKeys(work, pairing);
    if (isToConfirm) return false;
    standalone::AuditDeed deed = DeedOfPairing(work, "partner.confirm", pairing, pairing);
    deed.changes.push_back({"other keys", "offered", "declined"});
    work.Host().Record(deed);
    return true;
  }
  std::string offered;
  for (const OfferedKey& key : PairedPartnerOf(work, pairing).offeredKeys) {
    offered += (offered.empty() ? "" : " or ") + key.fingerprint;
  }
  work.Refuse("the fingerprint " + Quoted(given) + " is neither that of the key of " + Quoted(pairing.partnerName) +
                  ", which is " + exchange::Fingerprint(KeyOf(pairing)) +
                  ", nor that of a key under which somebody writes as it, which is " + offered,
              Remedy::kCompareFingerprints);
}

void RecordBegun(Work& work, const char* action, const Pairing& pairing) {
  standalone::AuditDeed deed = DeedOfPairing(work, action, std::nullopt, pairing);
  HaveExchangeUser(work, deed);
  work.Host().Record(deed);
}

// What changes the pairing with a partner, and the audit trail tells.
template <typename Change>
PairedPartner ChangePairing(Company& company, const std::string& partner, const char* action, Change&& change) {
  Work work(company.Opened(), UseCase::kPair);
  PairedPartner changed;
  work.AskToWrite([&] {
    if (!work.MayManageRelations()) return MEStatusPermissionDenied;
    Pairing pairing = RequirePairing(work, partner);
    const Pairing before = pairing;
    const MEStatusCode answer = change(work, pairing);
    if (answer != MEStatusSuccess) return answer;
    changed = PairedPartnerOf(work, pairing);
    if (work.RecordChanges(DeedOfPairing(work, action, before, pairing))) work.Host().Pairings().Change(pairing);
    return answer;
  });
  return changed;
}

// One that was there before the pairing is as it was; another one goes.
MEStatusCode GiveBackRelation(Pairing& pairing) {
  if (!pairing.relationStateBefore) {
    pairing.relationId.reset();
    return MultiEntityDriver::DeleteRelation(std::string_view(pairing.partnerRealm), /*force=*/true);
  }
  MERelationInfo info;
  info.realmId = std::string_view(pairing.partnerRealm);
  info.state = static_cast<MEState>(*pairing.relationStateBefore);
  return MultiEntityDriver::UpdateRelation(info);
}

// All that may be refused before a company without an identity gets one.
void CheckInvitation(Work& work, const Invitation& invitation) {
  RefuseAnotherOfThatName(work, invitation.partner);
  Pairing pairing;
  ChooseAccountsFor(work, invitation.accounts, invitation.realm, pairing);
}

void CheckAcceptance(Work& work, const Acceptance& acceptance, const exchange::Fact& invitation,
                     const exchange::PairingOffer& offer) {
  RefuseInvitation(work, invitation, offer);
  RefuseAnotherOfThatName(work, acceptance.partner.value_or(standalone::PartnerName(offer.company)));
  RefuseOwnRealm(work, standalone::RealmId(offer.realm));
  RefuseExistingRelation(work, {.realm = offer.realm, .useExisting = acceptance.useExistingRelation});
  Pairing pairing;
  ChooseAccountsFor(work, acceptance.accounts, standalone::RealmId(offer.realm), pairing);
}

}  // namespace

InvitationText InvitePartner(Company& company, const Invitation& invitation) {
  Work work(company.Opened(), UseCase::kPair);
  RequireMayManage(work);
  work.Read([&] { CheckInvitation(work, invitation); });
  const exchange::KeyPair keys = RequireOrMakeKeys(work);
  InvitationText made;
  work.AskToWrite([&] {
    if (!work.MayManageRelations()) return MEStatusPermissionDenied;
    RefuseAnotherOfThatName(work, invitation.partner);
    Pairing pairing{.pairingId = exchange::MakeRandomWord(),
                    .invitedByUs = true,
                    .state = PairingState::kInvited,
                    .partnerName = invitation.partner.Text(),
                    .partnerRealm = {},
                    .partnerKey = {},
                    .relationId = {},
                    .relationStateBefore = {},
                    .folder = standalone::PathText(invitation.folder),
                    .firstTxnId = work.Host().Transactions().NextId()};
    ChooseAccountsFor(work, invitation.accounts, invitation.realm, pairing);
    made.newRealm = RequireRealm(work, keys.Public());
    RememberKeys(work, keys);
    pairing.id = work.Host().Pairings().Add(pairing);
    const exchange::Fact fact =
        exchange::MakeFact(OwnOffer(work, PairingStep::kInvitation, std::nullopt), pairing.pairingId, keys);
    Keep(work, pairing, fact, FactOrigin::kMade);
    made.text = exchange::TextBlockOf(kInvitationLabel, fact.Wire());
    RecordBegun(work, "partner.invite", pairing);
    return MEStatusSuccess;
  });
  made.fingerprint = exchange::Fingerprint(keys.Public());
  return made;
}

std::string InvitationOnceMore(Company& company, const std::string& partner) {
  Work work(company.Opened(), UseCase::kPair);
  RequireMayManage(work);
  return work.Read([&] {
    const Pairing pairing = RequirePairing(work, partner);
    const std::optional<exchange::Fact> invitation =
        PairingFact(work, pairing, exchange::kinds::kInvitation, FactOrigin::kMade);
    if (!invitation) {
      work.Refuse("these books do not have their invitation for " + Quoted(pairing.partnerName),
                  Remedy::kRemoveThePairingFirst);
    }
    return exchange::TextBlockOf(kInvitationLabel, invitation->Wire());
  });
}

AcceptedInvitation AcceptInvitation(Company& company, const Acceptance& acceptance) {
  const exchange::Fact invitation = ReadInvitation(acceptance.invitation);
  const exchange::PairingOffer offer = exchange::PairingOfferOf(invitation);
  if (offer.step != PairingStep::kInvitation) {
    throw standalone::InvalidInput("The text is no invitation. Give the one that 'partner invite' printed.");
  }
  Work work(company.Opened(), UseCase::kPair);
  RequireMayManage(work);
  work.Read([&] { CheckAcceptance(work, acceptance, invitation, offer); });
  const exchange::KeyPair keys = RequireOrMakeKeys(work);
  AcceptedInvitation accepted;
  work.AskToWrite([&] {
    if (!work.MayManageRelations()) return MEStatusPermissionDenied;
    RefuseInvitation(work, invitation, offer);
    const standalone::PartnerName partner =
        acceptance.partner ? *acceptance.partner : standalone::PartnerName(offer.company);
    RefuseAnotherOfThatName(work, partner);
    Pairing pairing{.pairingId = invitation.What().pairing,
                    .invitedByUs = false,
                    .state = PairingState::kAccepted,
                    .partnerName = partner.Text(),
                    .partnerRealm = offer.realm,
                    .partnerKey = std::string(invitation.What().author.Bytes()),
                    .relationId = {},
                    .relationStateBefore = {},
                    .folder = standalone::PathText(acceptance.folder),
                    .firstTxnId = work.Host().Transactions().NextId()};
    accepted.newRealm = RequireRealm(work, keys.Public());
    RefuseOwnRealm(work, standalone::RealmId(offer.realm));
    ChooseAccountsFor(work, acceptance.accounts, standalone::RealmId(offer.realm), pairing);
    const MEStatusCode answer = MakeRelation(work,
                                             {.realm = offer.realm,
                                              .state = standalone::RelationState::kPending,
                                              .useExisting = acceptance.useExistingRelation},
                                             pairing);
    if (answer != MEStatusSuccess) return answer;
    RememberKeys(work, keys);
    pairing.id = work.Host().Pairings().Add(pairing);
    Keep(work, pairing, invitation, FactOrigin::kPartners);
    Keep(work, pairing,
         exchange::MakeFact(OwnOffer(work, PairingStep::kAcceptance, invitation.Id()), pairing.pairingId, keys),
         FactOrigin::kMade);
    RecordBegun(work, "partner.accept", pairing);
    accepted.partner = PairedPartnerOf(work, pairing);
    return answer;
  });
  accepted.fingerprint = exchange::Fingerprint(keys.Public());
  return accepted;
}

PairedPartner ConfirmPartner(Company& company, const Confirmation& confirmation) {
  return ChangePairing(company, confirmation.partner, "partner.confirm", [&](Work& work, Pairing& pairing) {
    if (ChoseAmongKeys(work, pairing, confirmation.fingerprint)) return MEStatusCode{MEStatusSuccess};
    RequireState(work, pairing, PairingState::kAnswered, "confirmed");
    RequireFingerprint(work, pairing, confirmation.fingerprint);
    const exchange::Fact acceptance =
        PairingFact(work, pairing, exchange::kinds::kAcceptance, FactOrigin::kPartners).value();
    if (const std::string why = WhyNotToPair(work, exchange::PairingOfferOf(acceptance), pairing.id); !why.empty()) {
      work.Refuse(Quoted(pairing.partnerName) + " cannot be paired with: " + why, Remedy::kTalkToThePartner);
    }
    const exchange::KeyPair keys = RequireKeys(work);
    const MEStatusCode answer = MakeRelation(work,
                                             {.realm = pairing.partnerRealm,
                                              .state = standalone::RelationState::kEstablished,
                                              .useExisting = confirmation.useExistingRelation},
                                             pairing);
    if (answer != MEStatusSuccess) return answer;
    pairing.state = PairingState::kEstablished;
    Keep(work, pairing,
         exchange::MakeFact(OwnOffer(work, PairingStep::kConfirmation, acceptance.Id()), pairing.pairingId, keys),
         FactOrigin::kMade);
    return answer;
  });
}

std::vector<PairedPartner> ListPairedPartners(Company& company, bool withRemoved) {
  Work work(company.Opened(), UseCase::kReadPartners);
  std::vector<PairedPartner> partners;
  work.AskToRead([&] {
    if (!work.MayManageRelations()) return MEStatusPermissionDenied;
    for (const Pairing& pairing : work.Host().Pairings().List()) {
      if (withRemoved || pairing.state != PairingState::kRemoved) partners.push_back(PairedPartnerOf(work, pairing));
    }
    return MEStatusSuccess;
  });
  return partners;
}

PairedPartner ShowPairedPartner(Company& company, const std::string& partner) {
  Work work(company.Opened(), UseCase::kReadPartners);
  PairedPartner shown;
  work.AskToRead([&] {
    if (!work.MayManageRelations()) return MEStatusPermissionDenied;
    shown = PairedPartnerOf(work, RequirePairing(work, partner));
    return MEStatusSuccess;
  });
  return shown;
}

PairedPartner BlockPartner(Company& company, const std::string& partner) {
  return ChangePairing(company, partner, "partner.block", [](Work& work, Pairing& pairing) {
    RequireState(work, pairing, PairingState::kEstablished, "blocked");
    pairing.state = PairingState::kBlocked;
    return MEStatusSuccess;
  });
}

PairedPartner UnblockPartner(Company& company, const std::string& partner) {
  return ChangePairing(company, partner, "partner.unblock", [](Work& work, Pairing& pairing) {
    RequireState(work, pairing, PairingState::kBlocked, "unblocked");
    pairing.state = PairingState::kEstablished;
    return MEStatusSuccess;
  });
}

PairedPartner RemovePairing(Company& company, const std::string& partner) {
  return ChangePairing(company, partner, "partner.remove", [](Work&, Pairing& pairing) {
    const bool isPending = pairing.state == PairingState::kAccepted;
    pairing.state = PairingState::kRemoved;
    return isPending ? GiveBackRelation(pairing) : MEStatusSuccess;
  });
}

PairedPartner SetBookedUpTo(Company& company, const std::string& partner,
                            const std::optional<standalone::LineAmount>& upTo) {
  return ChangePairing(company, partner, "partner.auto", [&upTo](Work& work, Pairing& pairing) {
    pairing.bookedUpTo.reset();
    if (!upTo) return MEStatusSuccess;
    const standalone::Settings& settings = work.Host().Settings().Get();
    pairing.bookedUpTo = standalone::RequireAmount(upTo->Text(), settings.homeCurrency, settings.decimals);
    if (*pairing.bookedUpTo > 0) return MEStatusSuccess;
    throw standalone::InvalidInput("The amount " + Quoted(upTo->Text()) +
                                   " is not above nothing; give one up to which requests are booked, such as 500.");
  });
}

PairedPartner SetPartnerFolder(Company& company, const std::string& partner, const std::filesystem::path& folder) {
  return ChangePairing(company, partner, "partner.folder", [&folder](Work&, Pairing& pairing) {
    pairing.folder = standalone::PathText(folder);
    return MEStatusSuccess;
  });
}

}  // namespace desk
