#include "standalone/desk/Exchange.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "standalone/company/FileNames.h"
#include "standalone/desk/Accepting.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Awaiting.h"
#include "standalone/desk/inside/Carrying.h"
#include "standalone/desk/inside/ExchangeUser.h"
#include "standalone/desk/inside/Letters.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Sending.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/CarrierLock.h"
#include "standalone/exchange/Envelope.h"
#include "standalone/exchange/Errors.h"
#include "standalone/exchange/FolderMailbox.h"
#include "standalone/exchange/IdentityFile.h"
#include "standalone/exchange/Netstrings.h"
#include "standalone/exchange/TextBlock.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::Pairing;
using standalone::PairingState;

constexpr std::string_view kLetterLabel = "MULTIENTITY LETTER";

// A letter that was read.
struct Taken {
  TakenLetter letter;
  std::int32_t pairing = 0;
  bool wasNew = true;
  bool stays = false;  // where it lies: it says what the partner holds, and asks for nothing
};

std::optional<exchange::Letter> OpenedWith(const exchange::KeyPair& former, std::string_view envelope) {
  try {
    return exchange::Open(envelope, former);
  } catch (const exchange::Malformed&) {
    return std::nullopt;
  }
}

// What carries for one company, as the only one. Whoever starts it needs the right to; what it does then, it does as
// the company's own user for that.
class Carrier {
 public:
  explicit Carrier(Company& company)
      : company_(company.Opened()),
        work_(company_, UseCase::kExchange),
        lock_(TakeLock()),
        acting_(work_.Host(), RequireExchangeUser(work_)),
        identity_(Identity()) {
    LookForAwaited();
  }

  Work& AtWork() noexcept { return work_; }
  const exchange::KeyPair& OwnKeys() const { return identity_.Keys(); }
  // Of the keys before that of now, to which partners write until they have confirmed it, and of that; the oldest
  // first, like what lies there.
  std::vector<std::string> Addresses() const {
    std::vector<std::string> addresses{exchange::AddressOf(OwnKeys().Public())};
    for (const exchange::KeyPair& former : identity_.FormerKeys()) {
      addresses.push_back(exchange::AddressOf(former.Public()));
    }
    std::ranges::reverse(addresses);
    return addresses;
  }
  Answering Answers() const {
    return {.keys = OwnKeys(), .isWaiting = awaited_.has_value(), .bookAtOnce = AcceptAtOnce};
  }
  // Why nothing is decided or sent.
  const std::optional<Awaited>& WhatIsAwaited() const noexcept { return awaited_; }

  std::vector<Pairing> Live() {
    std::vector<Pairing> pairings = work_.Read([&] { return work_.Host().Pairings().List(); });
    std::erase_if(pairings, [](const Pairing& pairing) { return pairing.state == PairingState::kRemoved; });
    return pairings;
  }

  // Before anybody else may have them.
  void NoteLeaving(const std::vector<exchange::Hash>& own) { identity_.AddLeft(lock_, own); }

  // Throws standalone::InvalidInput, with the reason, for a letter that is not taken.
  Taken Take(std::string_view envelope) {
    const exchange::Letter letter = Opened(envelope);
    const Pairing pairing = PairingOf(letter);
    Taken taken{.letter = {.partner = pairing.partnerName, .facts = 0, .done = {}, .outstanding = {}},
                .pairing = pairing.id,
                .wasNew = !IsNothingNew(pairing, letter),
                .stays = false};
    if (taken.wasNew) {
      for (const std::string& wire : letter.facts) TakeOne(pairing, wire, taken.letter);
    }
    for (std::string& done : RetryOutstanding(work_, pairing, Answers())) taken.letter.done.push_back(std::move(done));
    const std::optional<Pairing> now = work_.Read([&] { return work_.Host().Pairings().Find(pairing.id); });
    if (taken.wasNew && now && now->partnerKey == letter.sender.Bytes()) {
      work_.Write([&] { NoteRead(work_, *now, letter, notTaken_[now->id]); });
    }
    taken.stays = now && IsNothingNew(*now, letter);
    if (awaited_) LookForAwaited();
    return taken;
  }

  // Whether a letter that asks for nothing is put once more, as the one that said so lies there no more: once in each
  // start, so that a partner who removes it does not get it for ever.
  bool IsFirstInThisStart(const Pairing& pairing) { return company_.IsFirstOpeningTo(pairing.id); }
  // Whether a letter that waits, as it is under another key of the partner, echoes the word: only who can open letters
  // to the partner knows it.
  bool IsEchoedUnderAnotherKey(const Pairing& pairing, const std::string& word) const {
    const auto echoes = echoesThatWait_.find(pairing.id);
    return !word.empty() && echoes != echoesThatWait_.end() && echoes->second.contains(word);
  }

 private:
  bool IsNothingNew(const Pairing& pairing, const exchange::Letter& letter) {
    return pairing.partnerKey == letter.sender.Bytes() &&
           work_.Read([&] { return SaysNothingNew(work_, pairing, letter); });
  }
  void LookForAwaited() {
    awaited_ = work_.Read([&] { return FindAwaited(work_); });
  }
  exchange::IdentityFile Identity() {
    if (work_.Read([&] { return HasNewerKeys(work_); })) {
      work_.Write([&] { work_.Host().Record(TakeUpKeys(work_)); });
    }
    return work_.Read([&] { return RequireIdentity(work_); });
  }
  exchange::Letter Opened(std::string_view envelope) const {
    try {
      return exchange::Open(envelope, OwnKeys());
    } catch (const exchange::Malformed&) {
      for (const exchange::KeyPair& former : identity_.FormerKeys()) {
        if (std::optional<exchange::Letter> letter = OpenedWith(former, envelope)) return *std::move(letter);
      }
      throw;
    }
  }
  Pairing PairingOf(const exchange::Letter& letter) {
    try {
      return work_.Read([&] { return RequirePairingOf(work_, letter); });
    } catch (const FromAnotherKey& another) {
      work_.Write([&] { NoteAnotherKey(work_, another.OfPairing(), letter); });
      echoesThatWait_[another.OfPairing().id].insert(letter.echo);
      throw;
    }
  }
  // Before the keys are read, which nobody replaces meanwhile.
  exchange::CarrierLock TakeLock() {
    work_.Read([&] {
      work_.RequireFeature();
      if (!work_.MayManageRelations()) work_.Accept(MEStatusPermissionDenied);
      RequireAnIdentity(work_);
    });
    return RequireCarrierLock(work_);
  }
  void TakeOne(const Pairing& pairing, const std::string& wire, TakenLetter& taken) {
    try {
      TakenFact fact = TakeFact(work_, pairing, Answers(), wire);
      if (fact.isNew) ++taken.facts;
      if (fact.cameBack && !awaited_) LookForAwaited();
      if (!fact.done.empty()) taken.done.push_back(std::move(fact.done));
      if (!fact.outstanding.empty()) taken.outstanding.push_back(std::move(fact.outstanding));
    } catch (const exchange::Malformed& malformed) {
      taken.outstanding.emplace_back(malformed.what());
    }
  }

  OpenCompany& company_;
  Work work_;
  exchange::CarrierLock lock_;
  standalone::StandaloneHost::ActingAs acting_;
  exchange::IdentityFile identity_;
  std::optional<Awaited> awaited_;
  std::map<std::int32_t, std::set<exchange::Hash>> notTaken_;     // by pairing
  std::map<std::int32_t, std::set<std::string>> echoesThatWait_;  // the same
};

// What a run tells of one partner's letters, so that it holds no more; the trail and the lists have each.
constexpr std::size_t kMostDone = 1'000;

void LeaveOutTooMany(const std::vector<TakenLetter>& before, TakenLetter& letter) {
  std::size_t told = 0;
  for (const TakenLetter& one : before) told += one.done.size();
  const std::size_t room = kMostDone - told;
  if (letter.done.size() <= room) return;
  letter.moreDone = letter.done.size() - room;
  letter.done.resize(room);
  letter.done.shrink_to_fit();
}

struct Found {
  const std::string& name;
  const exchange::TakenEnvelope& envelope;
};

// The letters of a pairing that were read and stay where they lie.
struct Left {
  std::vector<std::string> names;
  bool wereOthers = false;  // that say something else
};
using Staying = std::map<std::int32_t, Left>;

// Those that stay go as soon as one was read that says something else, before or after: none of their names tells which
// is the last, and that is put again by its sender. Of several that say the same nobody here knows for which one their
// sender looks, who would put it again whenever it is gone.
void Leave(exchange::Mailbox& mailbox, const std::string& name, const Taken& taken, Staying& staying) {
  Left& left = staying[taken.pairing];
  if (taken.wasNew || !taken.stays) {
    left.wereOthers = left.wereOthers || !left.names.empty();
    for (const std::string& stayed : std::exchange(left.names, {})) mailbox.Acknowledge(stayed);
  }
  if (taken.stays && !left.wereOthers) {
    left.names.push_back(name);
  } else {
    mailbox.Acknowledge(name);
    left.wereOthers = true;
  }
}

void TakeOneFrom(Carrier& carrier, exchange::Mailbox& mailbox, const Found& found, CarriedWith& carried,
                 Staying& staying) {
  try {
    if (found.envelope.finding != exchange::Finding::kWhole) throw exchange::Malformed(found.envelope.reason);
    Taken taken = carrier.Take(found.envelope.bytes);
    Leave(mailbox, found.name, taken, staying);
    if (!taken.wasNew && taken.letter.done.empty()) return;
    LeaveOutTooMany(carried.taken, taken.letter);
    carried.taken.push_back(std::move(taken.letter));
  } catch (const FromAnotherKey& another) {
    if (std::ranges::count(carried.waiting, another.what()) == 0) carried.waiting.emplace_back(another.what());
  } catch (const NotTakenNow&) {
    return;
  } catch (const standalone::InvalidInput& notTaken) {
    mailbox.SetAside(found.name, notTaken.what());
    carried.setAside.push_back(found.name + ": " + notTaken.what());
  }
}

std::vector<std::string> LyingFor(const Carrier& carrier, exchange::Mailbox& mailbox) {
  std::vector<std::string> names;
  for (const std::string& address : carrier.Addresses()) {
    std::ranges::copy(mailbox.List(address), std::back_inserter(names));
  }
  return names;
}

void TakeFrom(Carrier& carrier, exchange::Mailbox& mailbox, CarriedWith& carried) {
  Staying staying;
  for (const std::string& name : LyingFor(carrier, mailbox)) {
    const exchange::TakenEnvelope envelope = mailbox.Take(name, exchange::kMostEnvelopeBytes);
    if (envelope.finding == exchange::Finding::kGone || envelope.finding == exchange::Finding::kUnfinished) continue;
    if (envelope.finding == exchange::Finding::kUnreadable) {
      carried.setAside.push_back(name + ": " + envelope.reason);
      continue;
    }
    try {
      TakeOneFrom(carrier, mailbox, {.name = name, .envelope = envelope}, carried, staying);
    } catch (const exchange::MailboxError& failure) {
      carried.setAside.push_back(name + ": " + failure.what());
    }
  }
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

void PutFor(Carrier& carrier, exchange::Mailbox& mailbox, const Pairing& pairing, CarriedWith& carried) {
  Work& work = carrier.AtWork();
  standalone::Carrying before;
  const std::optional<LettersToSend> letters = work.Write([&] {
    FollowUp(work);
    std::optional<LettersToSend> made = LettersFor(work, pairing, carrier.OwnKeys());
    before = work.Host().Pairings().CarryingOf(pairing.id);
    return made;
  });
  if (!letters) return;
  const std::vector<std::string> lying = LinesOf(before.letters);
  const bool allLieThere =
      !lying.empty() && std::ranges::all_of(lying, [&](const std::string& name) { return mailbox.LiesThere(name); });
  const bool isSaid = before.lettersFor == letters->says;
  // What was read is not said again where the answer waits for a person.
  if (isSaid && (allLieThere || carrier.IsEchoedUnderAnotherKey(pairing, before.word))) return;
  // What it answers lies there unread until a person has compared its other key, however often it is asked.
  const bool isDue = letters->isDue && carried.waiting.empty();
  if (isSaid && !isDue && !carrier.IsFirstInThisStart(pairing)) return;
  const std::string address = exchange::AddressOf(KeyOf(pairing));
  std::vector<std::string> names;
  work.Read([&] {
    SealLetters(work, pairing, carrier.OwnKeys(), *letters, [&](const std::string& envelope, const auto& own) {
      carrier.NoteLeaving(own);
      names.push_back(mailbox.Put(address, envelope));
    });
  });
  work.Write([&] { NoteSent(work, pairing, *letters, names); });
  for (const std::string& name : lying) mailbox.Acknowledge(name);
  carried.put = names.size();
}

LetterPlaces PlacesOf(const Carrier& carrier, const std::vector<Pairing>& pairings) {
  LetterPlaces places{.folders = {}, .addresses = carrier.Addresses()};
  for (const Pairing& pairing : pairings) places.folders.push_back(standalone::PathOfText(pairing.folder));
  return places;
}

CarriedWith CarryWith(Carrier& carrier, const Pairing& pairing) {
  CarriedWith carried{.partner = pairing.partnerName,
                      .folder = standalone::PathOfText(pairing.folder),
                      .taken = {},
                      .put = 0,
                      .setAside = {},
                      .failure = {}};
  try {
    exchange::FolderMailbox mailbox(carried.folder, carrier.AtWork().Host().Clock());
    TakeFrom(carrier, mailbox, carried);
    const std::optional<Pairing> now =
        carrier.AtWork().Read([&] { return carrier.AtWork().Host().Pairings().Find(pairing.id); });
    if (!now) return carried;
    carried.triedAgain = RetryOutstanding(carrier.AtWork(), *now, carrier.Answers());
    carried.awaited = carrier.WhatIsAwaited();
    if (!carried.awaited) {
      SentOfPartner sent = SendAllOf(carrier.AtWork(), *now, carrier.OwnKeys());
      carried.sent = sent.sent;
      carried.notSent = std::move(sent.left);
      carried.remedies = std::move(sent.remedies);
    }
    PutFor(carrier, mailbox, *now, carried);
  } catch (const exchange::MailboxError& failure) {
    carried.failure = failure.what();
  } catch (const exchange::IdentityError& failure) {
    carried.failure = failure.what();
  }
  return carried;
}

}  // namespace

std::string ExportLetters(Company& company, const std::string& partner) {
  Carrier carrier(company);
  Work& work = carrier.AtWork();
  std::string text;
  if (!carrier.WhatIsAwaited()) {
    const Pairing pairing = work.Read([&] { return RequirePairing(work, partner); });
    static_cast<void>(SendAllOf(work, pairing, carrier.OwnKeys()));
  }
  work.Write([&] {
    FollowUp(work);
    const Pairing pairing = RequirePairing(work, partner);
    const std::optional<LettersToSend> letters = LettersFor(work, pairing, carrier.OwnKeys());
    if (!letters) return;
    std::string block;
    SealLetters(work, pairing, carrier.OwnKeys(), *letters, [&](const std::string& envelope, const auto& own) {
      carrier.NoteLeaving(own);
      exchange::AppendNetstring(block, envelope);
    });
    text = exchange::TextBlockOf(kLetterLabel, block);
    NoteSent(work, pairing, *letters, {});
  });
  return text;
}

std::vector<TakenLetter> ImportLetters(Company& company, const std::string& text) {
  const std::string block = exchange::BytesOfTextBlock(kLetterLabel, text);
  std::vector<std::string> envelopes;
  for (exchange::NetstringReader reader("The text", block); !reader.AtEnd();) envelopes.emplace_back(reader.Take());
  Carrier carrier(company);
  std::vector<TakenLetter> taken;
  std::exception_ptr firstFailure;
  for (const std::string& envelope : envelopes) {
    try {
      taken.push_back(carrier.Take(envelope).letter);
    } catch (const standalone::InvalidInput& notTaken) {
      if (!firstFailure) firstFailure = std::current_exception();
      taken.push_back({.partner = {}, .facts = 0, .done = {}, .outstanding = {notTaken.what()}});
    }
  }
  const bool isNoneTaken = std::ranges::all_of(taken, [](const TakenLetter& letter) { return letter.partner.empty(); });
  if (firstFailure && isNoneTaken) std::rethrow_exception(firstFailure);
  return taken;
}

std::optional<Awaited> TellAwaited(Company& company) {
  Work work(company.Opened(), UseCase::kExchange);
  return work.Read([&]() -> std::optional<Awaited> {
    if (!standalone::IsThere(IdentityFileOf(work))) return std::nullopt;
    return FindAwaited(work);
  });
}

void InsistOnBooks(Company& company) {
  Work work(company.Opened(), UseCase::kExchange);
  work.WriteAsAdministrator("going on with books that lack what was told to partners", [&] {
    const std::optional<Awaited> awaited = FindAwaited(work);
    if (!awaited || awaited->toCompare.empty()) {
      work.Refuse("no partner has yet to show what it holds before these books are worked on",
                  awaited ? Remedy::kConfirmWhatCameBack : Remedy::kNone);
    }
    Insist(work);
    work.Host().Record({.action = "exchange.insist",
                        .subject = "books that lack what was told to partners",
                        .transactions = {},
                        .changes = {{"missing", std::to_string(awaited->missing), "let go"},
                                    {"compared with", std::nullopt, "all but " + ToCompareText(*awaited)}}});
  });
}

std::int64_t ConfirmCameBack(Company& company, WhyCameBack why) {
  Work work(company.Opened(), UseCase::kExchange);
  return work.WriteAsAdministrator("confirming why facts of this company came back", [&] {
    const std::optional<Awaited> awaited = FindAwaited(work);
    if (!awaited) {
      work.Refuse("no facts of this company have come back that its books never made; there is nothing to confirm");
    }
    if (!awaited->toCompare.empty()) {
      work.Refuse("more may come back from partners that have yet to show what they hold: " + ToCompareText(*awaited),
                  Remedy::kCarryUntilCompared);
    }
    Confirm(work);
    work.Host().Record(
        {.action = "exchange.confirm",
         .subject = "what came back to these books",
         .transactions = {},
         .changes = {{"facts that came back", std::nullopt, std::to_string(awaited->cameBack)},
                     {"as", std::nullopt,
                      why == WhyCameBack::kRestored ? "a backup was restored" : "a copy was at work, and has ended"}}});
    return awaited->cameBack;
  });
}

std::vector<CarriedWith> RunExchange(Company& company, const RunEvents& events) {
  Carrier carrier(company);
  std::vector<Pairing> pairings = carrier.Live();
  std::erase_if(pairings, [](const Pairing& pairing) { return pairing.folder.empty(); });
  if (events.onBegun) events.onBegun(PlacesOf(carrier, pairings));
  std::vector<CarriedWith> run;
  for (const Pairing& pairing : pairings) {
    CarriedWith carried = CarryWith(carrier, pairing);
    if (events.onPartner) events.onPartner(carried);
    run.push_back(std::move(carried));
  }
  return run;
}

}  // namespace desk
