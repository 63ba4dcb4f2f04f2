#include "standalone/desk/PairingBoth.h"

#include <algorithm>
#include <cstdint>
#include <system_error>
#include <utility>
#include <vector>

#include "MultiEntityHost/Switches.h"
#include "standalone/desk/Exchange.h"
#include "standalone/desk/Identity.h"
#include "standalone/desk/Pairing.h"
#include "standalone/desk/inside/NewPairings.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::Pairing;
using standalone::PairingState;
using standalone::PartnerName;
using standalone::PathText;
using standalone::Quoted;

// What one of them refuses would not say otherwise which of them it is.
template <typename Does>
auto AtCompany(const CompanyToPair& place, Does&& does) {
  const auto named = [&place](const std::string& what) {
    return PathText(place.file) + ": " + what;
  };
  try {
    Company company(place.file, place.options);
    return std::forward<Does>(does)(company);
  } catch (const Refused& refused) {
    Refusal refusal = refused.Value();
    refusal.why = named(refusal.why);
    throw Refused(std::move(refusal));
  } catch (const standalone::InvalidInput& error) {
    throw standalone::InvalidInput(named(error.what()));
  } catch (const standalone::OutcomeUnknown& error) {
    throw standalone::OutcomeUnknown(named(error.what()));
  } catch (const standalone::UnitOfWorkError& error) {
    throw standalone::UnitOfWorkError(named(error.what()));
  }
}

// One of both before anything is done.
struct FoundCompany {
  exchange::PairingOffer offer;  // its realm is empty while it has none
  std::vector<Pairing> pairings;
};

// The module keeps the switches of the company that it has seen first.
void RequireFeature(Work& work) {
  if (work.Host().Services().killSwitches.IsFeatureEnabled(kFeatureSwitches, kSwitchForAll)) return;
  work.Accept(MEStatusFeatureDisabled);
}

// In a unit of work like those that will write, so that what may not be written is told now.
FoundCompany LookAt(const CompanyToPair& place) {
  return AtCompany(place, [](Company& company) {
    Work work(company.Opened(), UseCase::kPair);
    RequireMayManage(work);
    return work.Host().Rehearse([&] {
      RequireFeature(work);
      if (HasOwnKey(work)) static_cast<void>(RequireKeys(work));
      return FoundCompany{.offer = OwnOffer(work, exchange::PairingStep::kInvitation, std::nullopt),
                          .pairings = work.Host().Pairings().List()};
    });
  });
}

// What one of them is for the other, as far as that has come.
struct PairingSide {
  const CompanyToPair& place;
  const FoundCompany& found;
  std::optional<Pairing> begun;
};

bool IsLivePairing(const Pairing& pairing) {
  return pairing.state != PairingState::kRemoved;
}

// Fills in, as far as the inviter has begun to pair with the accepter, the pairing of each.
bool FindBegun(PairingSide& inviter, PairingSide& accepter) {
  for (const Pairing& pairing : inviter.found.pairings) {
    if (!pairing.invitedByUs || !IsLivePairing(pairing)) continue;
    const auto isTheSame = [&pairing](const Pairing& other) {
      return other.pairingId == pairing.pairingId && !other.invitedByUs && IsLivePairing(other);
    };
    const auto accepted = std::ranges::find_if(accepter.found.pairings, isTheSame);
    const bool isAccepted = accepted != accepter.found.pairings.end();
    const bool isForIt = pairing.state == PairingState::kInvited && pairing.partnerName == accepter.found.offer.company;
    if (!isAccepted && !isForIt) continue;
    inviter.begun = pairing;
    if (isAccepted) accepter.begun = *accepted;
    return true;
  }
  return false;
}

std::optional<standalone::RealmId> RealmFoundAt(const FoundCompany& found) {
  if (found.offer.realm.empty()) return std::nullopt;
  return standalone::RealmId(found.offer.realm);
}

bool IsAnother(Work& work, const std::optional<std::string>& given, std::int32_t accountId) {
  return given && work.Host().Accounts().Require(*given).id != accountId;
}

void RefuseOtherAccounts(Work& work, const RelationAccounts& given, const Pairing& begun) {
  const bool areOthers =
      IsAnother(work, given.dueFrom, begun.dueFromAccountId) || IsAnother(work, given.dueTo, begun.dueToAccountId);
  if (!areOthers) return;
  work.Refuse("the pairing with " + PartnerText(begun) + " was begun with other accounts and is " +
                  std::string(NameOf(begun.state)),
              Remedy::kRemoveThePairingFirst);
}

// All that one of them may refuse the other one for.
void RefuseWhatCannotBe(const PairingSide& side, const FoundCompany& other, bool useExistingRelations) {
  AtCompany(side.place, [&](Company& company) {
    Work work(company.Opened(), UseCase::kPair);
    work.Read([&] {
      const exchange::PairingOffer& offer = other.offer;
      const std::optional<standalone::RealmId> realm = RealmFoundAt(other);
      if (const std::string why = WhyNotToPair(work, offer, side.begun ? side.begun->id : 0); !why.empty()) {
        work.Refuse(Quoted(offer.company) + " cannot be paired with: " + why, Remedy::kTalkToThePartner);
      }
      const bool hasMadeTheRelation = side.begun && side.begun->relationId;
      if (realm && !hasMadeTheRelation) {
        RefuseExistingRelation(work, {.realm = offer.realm, .useExisting = useExistingRelations});
      }
      if (side.begun) {
        RefuseOtherAccounts(work, side.place.accounts, *side.begun);
        return;
      }
      RefuseAnotherOfThatName(work, PartnerName(offer.company));
      Pairing pairing;
      ChooseAccountsFor(work, side.place.accounts, realm, pairing);
    });
  });
}

[[noreturn]] void RefuseBoth(std::string why, Remedy remedy) {
  throw Refused({.what = UseCase::kPair, .status = {}, .why = std::move(why), .remedy = remedy});
}

void RefuseOneCompanyTwice(const CompaniesToPair& companies) {
  std::error_code ignored;
  if (!std::filesystem::equivalent(companies.one.file, companies.other.file, ignored)) return;
  throw standalone::InvalidInput(PathText(companies.one.file) + " and " + PathText(companies.other.file) +
                                 " are one company; give two.");
}

void RefuseWhatIsOver(const PairingSide& inviter, const PairingSide& accepter) {
  const auto isIn = [](const PairingSide& side, PairingState state) {
    return side.begun && side.begun->state == state;
  };
  for (const PairingSide* const side : {&inviter, &accepter}) {
    if (!isIn(*side, PairingState::kBlocked)) continue;
    RefuseBoth(PathText(side->place.file) + ": the pairing with " + PartnerText(*side->begun) + " is blocked",
               Remedy::kSeePartners);
  }
  if (!isIn(inviter, PairingState::kEstablished) || !isIn(accepter, PairingState::kEstablished)) return;
  RefuseBoth(PathText(inviter.place.file) + " and " + PathText(accepter.place.file) + " are paired already",
             Remedy::kSeePartners);
}

// What the one calls the other.
std::string CalledBy(const PairingSide& side, const FoundCompany& other) {
  return side.begun ? side.begun->partnerName : other.offer.company;
}

// Letters go as texts, so that nobody waits for what is in the folder.
void TakeLetters(Company& company, const std::string& letters) {
  for (const TakenLetter& letter : ImportLetters(company, letters)) {
    if (!letter.outstanding.empty()) RefuseBoth(letter.outstanding.front(), Remedy::kSeePartners);
  }
}

void HaveFolder(Company& company, const std::string& partner, const std::filesystem::path& folder) {
  if (folder.empty() || ShowPairedPartner(company, partner).folder == folder) return;
  SetPartnerFolder(company, partner, folder);
}

// One step after the other, each of which the next run finds done.
class Pairer {
 public:
  Pairer(const PairingSide& inviter, const PairingSide& accepter, const CompaniesToPair& companies)
      : inviter_(inviter),
        accepter_(accepter),
        companies_(companies),
        accepterAtInviter_(CalledBy(inviter, accepter.found)),
        inviterAtAccepter_(CalledBy(accepter, inviter.found)) {}

  void Run();

  PairedCompany& Inviter() noexcept { return invited_; }
  PairedCompany& Accepter() noexcept { return accepted_; }

 private:
  template <typename Does>
  auto AtInviter(Does&& does) {
    return AtCompany(inviter_.place, std::forward<Does>(does));
  }
  template <typename Does>
  auto AtAccepter(Does&& does) {
    return AtCompany(accepter_.place, std::forward<Does>(does));
  }

  // The text of the invitation.
  std::string Invite() {
    return AtInviter([this](Company& company) {
      if (inviter_.begun) {
        HaveFolder(company, accepterAtInviter_, companies_.folder);
        return InvitationOnceMore(company, accepterAtInviter_);
      }
      return InvitePartner(company, {.partner = PartnerName(accepterAtInviter_),
                                     .accounts = inviter_.place.accounts,
                                     .folder = companies_.folder,
                                     .realm = RealmFoundAt(accepter_.found)})
          .text;
    });
  }
  void Accept(const std::string& invitation) {
    AtAccepter([&](Company& company) {
      AcceptInvitation(company, {.invitation = invitation,
                                 .partner = PartnerName(inviterAtAccepter_),
                                 .accounts = accepter_.place.accounts,
                                 .folder = companies_.folder,
                                 .useExistingRelation = companies_.useExistingRelations});
    });
  }
  std::string FirstLetters(Company& company) {
    HaveFolder(company, inviterAtAccepter_, companies_.folder);
    fingerprint_ = ShowIdentity(company).value().fingerprint;
    return ExportLetters(company, inviterAtAccepter_);
  }
  // By the key that is the accepter's own.
  void Confirm(Company& company) {
    HaveFolder(company, accepterAtInviter_, companies_.folder);
    if (ShowPairedPartner(company, accepterAtInviter_).state == PairingState::kEstablished) return;
    ConfirmPartner(company, {.partner = accepterAtInviter_,
                             .fingerprint = fingerprint_,
                             .useExistingRelation = companies_.useExistingRelations});
  }

  static PairedCompany PairedAt(Company& company, const PairingSide& side, const std::string& partner) {
    const OwnIdentity own = ShowIdentity(company).value();
    PairedCompany paired{.name = side.found.offer.company,
                         .fingerprint = own.fingerprint,
                         .newRealm = {},
                         .partner = ShowPairedPartner(company, partner)};
    if (side.found.offer.realm.empty()) paired.newRealm = own.realm;
    return paired;
  }

  const PairingSide& inviter_;
  const PairingSide& accepter_;
  const CompaniesToPair& companies_;
  std::string accepterAtInviter_;
  std::string inviterAtAccepter_;
  std::string fingerprint_;  // the accepter's
  PairedCompany invited_;
  PairedCompany accepted_;
};

void Pairer::Run() {
  if (!accepter_.begun) Accept(Invite());
  std::string letters = AtAccepter([this](Company& company) { return FirstLetters(company); });
  letters = AtInviter([&](Company& company) {
    TakeLetters(company, letters);
    Confirm(company);
    return ExportLetters(company, accepterAtInviter_);
  });
  letters = AtAccepter([&](Company& company) {
    TakeLetters(company, letters);
    return ExportLetters(company, inviterAtAccepter_);
  });
  letters = AtInviter([&](Company& company) {
    TakeLetters(company, letters);
    invited_ = PairedAt(company, inviter_, accepterAtInviter_);
    return ExportLetters(company, accepterAtInviter_);
  });
  AtAccepter([&](Company& company) {
    TakeLetters(company, letters);
    accepted_ = PairedAt(company, accepter_, inviterAtAccepter_);
  });
}

}  // namespace

PairedBoth PairBoth(const CompaniesToPair& companies) {
  RefuseOneCompanyTwice(companies);
  const FoundCompany foundOne = LookAt(companies.one);
  const FoundCompany foundOther = LookAt(companies.other);
  PairingSide one{.place = companies.one, .found = foundOne, .begun = {}};
  PairingSide other{.place = companies.other, .found = foundOther, .begun = {}};
  const bool isTheOtherWayRound = !FindBegun(one, other) && FindBegun(other, one);
  RefuseWhatIsOver(one, other);
  RefuseWhatCannotBe(one, foundOther, companies.useExistingRelations);
  RefuseWhatCannotBe(other, foundOne, companies.useExistingRelations);
  Pairer pairer(isTheOtherWayRound ? other : one, isTheOtherWayRound ? one : other, companies);
  pairer.Run();
  PairedBoth paired{.one = std::move(pairer.Inviter()), .other = std::move(pairer.Accepter())};
  if (isTheOtherWayRound) std::swap(paired.one, paired.other);
  return paired;
}

}  // namespace desk
