#include "standalone/desk/inside/Letters.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/FactTable.h"
#include "standalone/books/InboxTable.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Remarks.h"
#include "standalone/desk/inside/Requests.h"
#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Fact.h"
#include "standalone/exchange/Kinds.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using exchange::Fact;
using standalone::FactOrigin;
using standalone::Pairing;
using standalone::PairingState;
using standalone::StoredFact;

// The module has refused what a fact asks for, and may have begun to do it.
class NotApplied : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A request could not be booked at once; it waits for a person instead.
class NotBookedAtOnce : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Of a remark that is understood.
std::string AboutText(const Fact& fact) {
  if (!IsRemark(fact) || !WhyNotUnderstood(fact).empty()) return {};
  return " about request " + exchange::RemarkOf(fact).request;
}

std::string FactText(const Fact& fact, const Pairing& pairing, bool isOwn) {
  const std::string request = IsAboutARequest(fact) ? " " + fact.What().name : AboutText(fact);
  return "the " + fact.What().kind + request + (isOwn ? " that was sent to " : " of ") + PartnerText(pairing);
}

// What a fact comes to when it is applied.
struct Applied {
  std::string done;
  std::string outstanding;
  std::optional<Pairing> after;                                                          // when the pairing has changed
  std::vector<standalone::AuditChange> changes{std::vector<standalone::AuditChange>()};  // of requests
  std::optional<std::int32_t> txnId{std::optional<std::int32_t>()};  // whose line has changed, or that was booked
  bool cameBack = false;  // the fact, or the proposal that it carries, is one of this company that its books lacked
};

Applied Outstanding(std::string why) {
  return {.done = {}, .outstanding = std::move(why), .after = {}};
}

// Whether this company said what a fact of the partner replies to.
bool RepliesToUs(Work& work, const Pairing& pairing, std::string_view kind, const exchange::PairingOffer& offer) {
  const auto said = work.Host().Facts().Find(pairing.id, offer.replyTo.value().Bytes());
  return said && said->kind == kind && said->origin != FactOrigin::kPartners;
}

Applied ApplyAcceptance(Work& work, const Pairing& pairing, const Fact& fact) {
  const exchange::PairingOffer offer = exchange::PairingOfferOf(fact);
  if (!RepliesToUs(work, pairing, exchange::kinds::kInvitation, offer)) {
    return Outstanding("it accepts another invitation");
  }
  const std::string key(fact.What().author.Bytes());
  if (!pairing.partnerKey.empty()) {
    return Outstanding(pairing.partnerKey == key
                           ? "the same company has accepted the invitation before, in other words"
                           : "somebody else has accepted the invitation before, whose key is another one");
  }
  if (std::string why = WhyNotToPair(work, offer, pairing.id); !why.empty()) return Outstanding(std::move(why));
  Pairing after = pairing;
  after.state = PairingState::kAnswered;
  after.partnerKey = key;
  after.partnerRealm = offer.realm;
  return {.done = standalone::Quoted(offer.company) + " has accepted the invitation for " +
                  standalone::Quoted(pairing.partnerName) + ", and waits until the fingerprint " +
                  exchange::Fingerprint(fact.What().author) + " is compared and confirmed",
          .outstanding = {},
          .after = std::move(after)};
}

Applied ApplyConfirmation(Work& work, const Pairing& pairing, const Fact& fact) {
  const exchange::PairingOffer offer = exchange::PairingOfferOf(fact);
  if (!RepliesToUs(work, pairing, exchange::kinds::kAcceptance, offer)) {
    return Outstanding("it confirms another acceptance");
  }
  if (offer.realm != pairing.partnerRealm) return Outstanding("it is of another realm than the invitation");
  if (std::string why = WhyNotToPair(work, offer, pairing.id); !why.empty()) return Outstanding(std::move(why));
  if (pairing.state != PairingState::kAccepted) return {};
  if (!work.MayManageRelations()) return Outstanding(work.WhyNotManageRelations());
  MERelationInfo info;
  info.realmId = std::string_view(pairing.partnerRealm);
  info.state = static_cast<MEState>(standalone::RelationState::kEstablished);
  const MEStatusCode answer = MultiEntityDriver::UpdateRelation(info);
  if (answer != MEStatusSuccess) throw NotApplied(RefusalFor(UseCase::kUpdateRelation, answer).why);
  Pairing after = pairing;
  after.state = PairingState::kEstablished;
  return {.done = standalone::Quoted(pairing.partnerName) + " has confirmed, and the relation is established",
          .outstanding = {},
          .after = std::move(after)};
}

// The books were restored to before a person here confirmed the partner, and the partner hands the confirmation back.
Applied ConfirmAgain(Work& work, const Pairing& pairing, const Fact& fact) {
  if (pairing.state == PairingState::kEstablished) return {};
  const exchange::Hash acceptance = exchange::PairingOfferOf(fact).replyTo.value();
  if (pairing.state != PairingState::kAnswered || !work.Host().Facts().Has(pairing.id, acceptance.Bytes())) {
    return Outstanding("the acceptance that it confirms is not here yet");
  }
  if (!work.MayManageRelations()) return Outstanding(work.WhyNotManageRelations());
  Pairing after = pairing;
  const MEStatusCode answer = MakeRelation(
      work, {.realm = pairing.partnerRealm, .state = standalone::RelationState::kEstablished, .useExisting = true},
      after);
  if (answer != MEStatusSuccess)
    return Outstanding("the relation could not be made: " + RefusalFor(UseCase::kCreateRelation, answer).why);
  after.state = PairingState::kEstablished;
  return {.done = "the relation with " + standalone::Quoted(pairing.partnerName) +
                  " is established again, as it was confirmed here before",
          .outstanding = {},
          .after = std::move(after)};
}

// What these books sign with stays as it is where one came after that: they were restored together with an identity of
// before.
Applied ApplyOwn(Work& work, const Pairing& pairing, const Fact& fact) {
  if (fact.What().kind == exchange::kinds::kConfirmation && pairing.invitedByUs) {
    return ConfirmAgain(work, pairing, fact);
  }
  if (fact.What().kind == exchange::kinds::kNewKey) {
    const exchange::PublicKey key = exchange::NewKeyOf(fact).key;
    if (IsOtherPartnersKey(work, key)) return Outstanding("it names a partner's key as this company's");
    work.Host().Pairings().KnowOwnKey(key.Bytes());
  }
  return {.done = "the " + fact.What().kind + " that this company sent to " + PartnerText(pairing) +
                  " came back: these books were restored, or a copy of the company is at work",
          .outstanding = {},
          .after = {}};
}

// What announces a key proves nothing: a person compares fingerprints. What the partner's key says that it has replaced
// is the partner's word like all under it.
Applied ApplyNewKey(Work& work, const Pairing& pairing, const Fact& fact) {
  const exchange::NewKey says = exchange::NewKeyOf(fact);
  if (IsPartnersKey(work, pairing, says.key)) return {};
  if (IsOwnKey(work, says.key) || IsOtherPartnersKey(work, says.key, pairing.id)) {
    return Outstanding("it names the key of another company");
  }
  if (!says.isFormer) {
    return Outstanding("it announces a key that nobody here has confirmed, whose fingerprint is " +
                       exchange::Fingerprint(says.key));
  }
  NoteFormerKey(work, pairing, says.key);
  return {};
}

Applied Apply(Work& work, const Pairing& pairing, const Fact& fact) {
  try {
    const std::string& kind = fact.What().kind;
    if (IsOwnKey(work, fact.What().author)) return ApplyOwn(work, pairing, fact);
    if (kind == exchange::kinds::kAcceptance && pairing.invitedByUs) return ApplyAcceptance(work, pairing, fact);
    if (kind == exchange::kinds::kConfirmation && !pairing.invitedByUs) return ApplyConfirmation(work, pairing, fact);
    if (kind == exchange::kinds::kInvitation && !pairing.invitedByUs) return {};
    if (kind == exchange::kinds::kNewKey) return ApplyNewKey(work, pairing, fact);
    return Outstanding("this version of the program does not know what to do with it");
  } catch (const exchange::NotUnderstood& notUnderstood) {
    return Outstanding(notUnderstood.what());
  }
}

// Of both companies, and of nobody else: until a person has confirmed the partner, whoever accepts.
bool IsOfThePair(Work& work, const Pairing& pairing, const Fact& fact) {
  const exchange::PublicKey& author = fact.What().author;
  if (IsOwnKey(work, author)) return true;
  if (!pairing.partnerKey.empty()) return IsPartnersKey(work, pairing, author);
  return fact.What().kind == exchange::kinds::kAcceptance;
}

void Change(Work& work, const Pairing& pairing, const Fact& fact, const Applied& applied) {
  if (applied.after) work.Host().Pairings().Change(*applied.after);
  standalone::AuditDeed deed = DeedOfPairing(work, "exchange.take", pairing, applied.after ? *applied.after : pairing);
  deed.subject = FactText(fact, pairing, IsOwnKey(work, fact.What().author));
  deed.changes.insert(deed.changes.end(), applied.changes.begin(), applied.changes.end());
  if (applied.txnId) deed.transactions = {.first = *applied.txnId, .last = *applied.txnId};
  if (!applied.outstanding.empty()) deed.changes.push_back({"outstanding", std::nullopt, applied.outstanding});
  work.Host().Record(deed);
}

Pairing Now(Work& work, const Pairing& pairing) {
  return work.Host().Pairings().Find(pairing.id).value();
}

bool IsLive(const Pairing& pairing) noexcept {
  return pairing.state != PairingState::kRemoved && pairing.state != PairingState::kBlocked;
}

std::string Joined(const std::vector<std::string>& sentences) {
  std::string joined;
  for (const std::string& sentence : sentences) joined += (joined.empty() ? "" : "; ") + sentence;
  return joined;
}

// Why a fact about a request says nothing here; an answer is one to a proposal of the other company.
std::string WhyNothing(Work& work, const Pairing& pairing, const Fact& fact) {
  if (std::string why = WhyNotUnderstood(fact); !why.empty()) return why;
  if (fact.What().kind == exchange::kinds::kProposal) {
    const std::string& currency = exchange::ProposalOf(fact).currency;
    const std::string& home = work.Host().Settings().Get().homeCurrency;
    return currency == home ? "" : "it is in " + currency + ", and these books are in " + home;
  }
  if (fact.What().kind != exchange::kinds::kAnswer) return {};
  const exchange::PublicKey asked = exchange::AnswerOf(fact).proposal.What().author;
  const bool isToTheOther =
      IsOwnKey(work, fact.What().author) ? IsPartnersKey(work, pairing, asked) : IsOwnKey(work, asked);
  return isToTheOther ? "" : "it answers a proposal of somebody else";
}

constexpr std::string_view kHeldWhileWaiting =
    "it waits until these books were compared with all partners and it is confirmed why facts of this company came "
    "back";

void BookNow(Work& work, const Pairing& pairing, const Answering& answering, const std::string& request,
             DecidedRequest& decided) {
  if (answering.bookAtOnce == nullptr) return;
  try {
    answering.bookAtOnce(work, pairing, answering.keys, request, decided);
  } catch (const Refused& refused) {
    throw NotBookedAtOnce(refused.what());
  } catch (const standalone::InvalidInput& invalid) {
    throw NotBookedAtOnce(invalid.what());
  } catch (const standalone::ConstraintViolation& violation) {
    throw NotBookedAtOnce(violation.what());
  }
}

// A person has to look at what could not be booked.
void MarkNotBooked(Work& work, const Pairing& pairing, const Answering& answering, const std::string& request,
                   DecidedRequest& decided) {
  if (answering.notBooked.empty()) return;
  std::optional<standalone::InboxRow> row = work.Host().Inbox().Find(pairing.id, request);
  if (!row || row->state != standalone::InboxState::kNew) return;
  row->mark = "it could not be booked by a rule: " + answering.notBooked;
  work.Host().Inbox().Set(*row);
  decided.done.push_back(row->mark);
  decided.changes.push_back({"not booked by a rule", std::nullopt, answering.notBooked});
}

// Throws NotApplied for what the module refuses, NotBookedAtOnce where a request should wait for a person after all.
Applied Decided(Work& work, const Pairing& pairing, const Answering& answering, const Fact& fact) {
  const RequestOf whose = WhoseRequest(fact, IsOwnKey(work, fact.What().author));
  const std::string& request = fact.What().name;
  DecidedRequest decided = DecideRequest(work, pairing, answering.keys, whose, request);
  if (!decided.outstanding.empty()) throw NotApplied(decided.outstanding);
  if (whose == RequestOf::kPartner && fact.What().kind == exchange::kinds::kProposal) {
    BookNow(work, pairing, answering, request, decided);
    MarkNotBooked(work, pairing, answering, request, decided);
  }
  return {.done = Joined(decided.done),
          .outstanding = {},
          .after = {},
          .changes = std::move(decided.changes),
          .txnId = decided.txnId};
}

// Together with the proposal that an answer carries, so that both companies hold it whatever was lost.
Applied KeepAndDecide(Work& work, const Pairing& pairing, const Answering& answering, const Fact& fact,
                      const std::string& refused) {
  const bool isOwn = IsOwnKey(work, fact.What().author);
  std::string why = WhyNothing(work, pairing, fact);
  const bool saysNothing = !why.empty();
  if (!saysNothing) why = answering.isWaiting && !isOwn ? std::string(kHeldWhileWaiting) : refused;
  bool cameBack = Keep(work, pairing, fact, isOwn ? FactOrigin::kCameBack : FactOrigin::kPartners, why) && isOwn;
  if (!saysNothing && fact.What().kind == exchange::kinds::kAnswer) {
    const FactOrigin origin = isOwn ? FactOrigin::kPartners : FactOrigin::kCameBack;
    cameBack = (Keep(work, pairing, exchange::AnswerOf(fact).proposal, origin) && !isOwn) || cameBack;
  }
  Applied applied = why.empty() ? Decided(work, pairing, answering, fact) : Outstanding(std::move(why));
  applied.cameBack = cameBack;
  return applied;
}

Applied Told(Work& work, const Pairing& pairing, const Fact& fact) {
  ToldRemark told = TellRemark(work, pairing, fact);
  return {.done = std::move(told.done),
          .outstanding = std::move(told.outstanding),
          .after = {},
          .changes = {{"text", std::nullopt, exchange::RemarkOf(fact).text}}};
}

Applied KeepAndTell(Work& work, const Pairing& pairing, const Answering& answering, const Fact& fact) {
  const bool isOwn = IsOwnKey(work, fact.What().author);
  std::string why = WhyNotUnderstood(fact);
  if (why.empty() && answering.isWaiting && !isOwn) why = kHeldWhileWaiting;
  Keep(work, pairing, fact, isOwn ? FactOrigin::kCameBack : FactOrigin::kPartners, why);
  if (!why.empty()) return Outstanding(std::move(why));
  Applied told = Told(work, pairing, fact);
  if (!told.outstanding.empty()) work.Host().Facts().SetAside(pairing.id, fact.Id().Bytes(), told.outstanding);
  return told;
}

// Within the unit of work that takes it; `refused` says why it could not be applied in one before. Of who is not the
// partner yet nothing is kept but what makes it the partner: anybody may have the invitation.
TakenFact TakeNow(Work& work, const Pairing& pairing, const Answering& answering, const Fact& fact,
                  const std::string& refused) {
  const Pairing now = Now(work, pairing);
  if (fact.What().pairing != now.pairingId) throw exchange::Malformed("A fact in it is of another pairing.");
  if (!IsLive(now) || work.Host().Facts().Has(now.id, fact.Id().Bytes())) return {};
  if (!IsOfThePair(work, now, fact)) {
    return {.isNew = false,
            .cameBack = false,
            .done = {},
            .outstanding = "a fact in it is of neither company: " + exchange::Fingerprint(fact.What().author)};
  }
  const bool isOwn = IsOwnKey(work, fact.What().author);
  const bool isAboutARequest = IsAboutARequest(fact);
  const bool isRemark = IsRemark(fact);
  const Applied applied = isAboutARequest   ? KeepAndDecide(work, now, answering, fact, refused)
                          : isRemark        ? KeepAndTell(work, now, answering, fact)
                          : refused.empty() ? Apply(work, now, fact)
                                            : Outstanding(refused);
  TakenFact taken{.isNew = isOwn || !now.partnerKey.empty() || applied.after,
                  .cameBack = isAboutARequest ? applied.cameBack : isOwn,
                  .done = applied.done,
                  .outstanding = {}};
  if (!applied.outstanding.empty()) taken.outstanding = FactText(fact, now, isOwn) + ": " + applied.outstanding;
  if (!taken.isNew) return taken;
  if (!isAboutARequest && !isRemark) {
    Keep(work, now, fact, isOwn ? FactOrigin::kCameBack : FactOrigin::kPartners, applied.outstanding);
  }
  Change(work, now, fact, applied);
  return taken;
}

// A remark that was not understood before waits for its request from now on.
void WaitFor(Work& work, const Pairing& pairing, const Fact& fact, const Applied& applied) {
  const std::string_view hash = fact.Id().Bytes();
  if (work.Host().Facts().Find(pairing.id, hash).value().setAside == applied.outstanding) return;
  work.Host().Facts().SetAside(pairing.id, hash, applied.outstanding);
  Change(work, pairing, fact, applied);
}

// Within a unit of work; what was done, for people.
std::string TryNow(Work& work, const Pairing& pairing, const Answering& answering, const Fact& fact) {
  const Pairing now = Now(work, pairing);
  if (!IsLive(now)) return {};
  const Applied applied = IsAboutARequest(fact) ? Decided(work, now, answering, fact)
                          : IsRemark(fact)      ? Told(work, now, fact)
                                                : Apply(work, now, fact);
  if (!applied.outstanding.empty()) {
    if (IsRemark(fact)) WaitFor(work, now, fact, applied);
    return {};
  }
  work.Host().Facts().SetAside(now.id, fact.Id().Bytes(), "");
  Change(work, now, fact, applied);
  return applied.done;
}

bool MayBeTriedAgain(Work& work, const Pairing& pairing, const Answering& answering, const StoredFact& stored) {
  if (std::ranges::count(KindsOfThePairing(), stored.kind) != 0) return true;
  if (answering.isWaiting && stored.origin == FactOrigin::kPartners) return false;
  const Fact fact(stored.body, stored.signature);
  if (IsRemark(fact)) return WhyNotUnderstood(fact).empty();
  return IsAboutARequest(fact) && WhyNothing(work, pairing, fact).empty();
}

// Whether a fact says, under the partner's key of now, that this is the one from now on.
bool IsAnnouncement(const std::string& wire, const Pairing& pairing, const exchange::PublicKey& key) {
  try {
    const Fact fact = Fact::VerifiedFromWire(wire);
    return fact.What().pairing == pairing.pairingId && fact.What().author.Bytes() == pairing.partnerKey &&
           exchange::NewKeyOf(fact) == exchange::NewKey{.key = key};
  } catch (const standalone::InvalidInput&) {
    return false;
  }
}

bool IsAnnounced(const Pairing& pairing, const exchange::Letter& letter) {
  return std::ranges::any_of(letter.facts,
                             [&](const std::string& wire) { return IsAnnouncement(wire, pairing, letter.sender); });
}

// Whoever accepts an invitation is one of whom nothing but that is known until a person has confirmed it; that under
// another key only the same one can announce.
bool MayOfferAKey(Work& work, const Pairing& pairing, const exchange::Letter& letter) {
  const bool isOfAnother = IsOwnKey(work, letter.sender) || IsOtherPartnersKey(work, letter.sender, pairing.id);
  if (pairing.state == PairingState::kRemoved || isOfAnother) return false;
  return pairing.state != PairingState::kAnswered || IsAnnounced(pairing, letter);
}

[[noreturn]] void ThrowFromAnotherKey(Work& work, const Pairing& pairing, const exchange::Letter& letter) {
  const std::string partner = PartnerText(pairing);
  const std::string fingerprint = exchange::Fingerprint(letter.sender);
  const std::optional<standalone::KeyStanding> standing = StandingOf(work, pairing, letter.sender);
  if (standing == standalone::KeyStanding::kFormer) {
    throw standalone::InvalidInput(
        "It is under a former key of " + partner + ", whose fingerprint is " + fingerprint +
        "; its letters come under the one of now. Where a backup with the former one was restored, that "
        "is to be replaced once more.");
  }
  if (standing == standalone::KeyStanding::kDeclined) {
    throw standalone::InvalidInput("It is of somebody who writes as " + partner + " under a key whose fingerprint is " +
                                   fingerprint + "; a person here has confirmed another one.");
  }
  if (MayOfferAKey(work, pairing, letter)) {
    throw FromAnotherKey(pairing, "It is of somebody who writes as " + partner +
                                      " under another key, whose fingerprint is " + fingerprint +
                                      ", and waits until that is compared and confirmed.");
  }
  throw standalone::InvalidInput("It is not of " + partner + ", but of somebody whose fingerprint is " + fingerprint +
                                 ".");
}

// A unit of work in which the module or the desk refuses is taken back, and what remains is done in another one.
template <typename Attempt, typename Otherwise>
auto WhateverTheModuleSays(Attempt&& attempt, Otherwise&& otherwise) {
  std::string why;
  try {
    return std::forward<Attempt>(attempt)();
  } catch (const NotApplied& refused) {
    why = refused.what();
  } catch (const Refused& refused) {
    why = refused.what();
  } catch (const standalone::ConstraintViolation& refused) {
    why = refused.what();
  }
  return std::forward<Otherwise>(otherwise)(why);
}

// The same once more without booking anything at once where that could not be done.
template <typename Attempt>
auto WithoutBookingIfNeedBe(const Answering& answering, Attempt&& attempt) {
  Answering without = answering;
  try {
    return attempt(answering);
  } catch (const NotBookedAtOnce& refused) {
    without.bookAtOnce = nullptr;
    without.notBooked = refused.what();
  }
  return std::forward<Attempt>(attempt)(without);
}

}  // namespace

TakenFact TakeFact(Work& work, const Pairing& pairing, const Answering& answering, const std::string& wire) {
  const Fact fact = Fact::VerifiedFromWire(wire);
  return WithoutBookingIfNeedBe(answering, [&](const Answering& now) {
    const auto take = [&](const std::string& refused) {
      return work.Write([&] { return TakeNow(work, pairing, now, fact, refused); });
    };
    return WhateverTheModuleSays([&] { return take({}); }, take);
  });
}

std::vector<std::string> RetryOutstanding(Work& work, const Pairing& pairing, const Answering& answering) {
  std::vector<Fact> facts;
  work.Read([&] {
    work.Host().Facts().ForEachSetAside(pairing.id, [&](const StoredFact& fact) {
      if (MayBeTriedAgain(work, pairing, answering, fact)) facts.emplace_back(fact.body, fact.signature);
    });
  });
  std::vector<std::string> done;
  for (const Fact& fact : facts) {
    std::string told = WithoutBookingIfNeedBe(answering, [&](const Answering& now) {
      return WhateverTheModuleSays([&] { return work.Write([&] { return TryNow(work, pairing, now, fact); }); },
                                   [](const std::string&) { return std::string(); });
    });
    if (!told.empty()) done.push_back(std::move(told));
  }
  return done;
}

void NoteAnotherKey(Work& work, const Pairing& pairing, const exchange::Letter& letter) {
  const bool isAnnounced = IsAnnounced(pairing, letter);
  if (!NoteOfferedKey(work, pairing, letter.sender, isAnnounced)) return;
  work.Host().Record({.action = "exchange.take",
                      .subject = "a letter under another key of " + PartnerText(pairing),
                      .transactions = {},
                      .changes = {{"offered fingerprint", std::nullopt, exchange::Fingerprint(letter.sender)},
                                  {"announced", std::nullopt, standalone::YesOrNo(isAnnounced)}}});
}

Pairing RequirePairingOf(Work& work, const exchange::Letter& letter) {
  const std::optional<Pairing> pairing = work.Host().Pairings().FindByPairingId(letter.pairing);
  if (!pairing) throw standalone::InvalidInput("It is of a pairing that this company does not have.");
  const bool isKnown = !pairing->partnerKey.empty();
  if (isKnown && letter.sender.Bytes() != pairing->partnerKey) ThrowFromAnotherKey(work, *pairing, letter);
  if (!IsLive(*pairing)) {
    throw NotTakenNow("The pairing with " + PartnerText(*pairing) + " is " + std::string(NameOf(pairing->state)) + ".");
  }
  return *pairing;
}

}  // namespace desk
