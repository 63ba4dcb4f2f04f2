#include "standalone/desk/inside/Carrying.h"

#include <algorithm>
#include <utility>

#include "standalone/books/FactTable.h"
#include "standalone/desk/inside/Comparing.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Fact.h"
#include "standalone/exchange/Netstrings.h"
#include "standalone/exchange/Summary.h"

namespace desk {

namespace {

using exchange::Fact;
using standalone::Carrying;
using standalone::FactOrigin;
using standalone::Pairing;
using standalone::PairingState;
using standalone::StoredFact;

// Of a fact as it travels, whatever its signature; none for what has no body.
std::optional<exchange::Hash> HashOfWire(const std::string& wire) {
  try {
    return exchange::HashOf(exchange::NetstringReader("The fact", wire).Take());
  } catch (const exchange::Malformed&) {
    return std::nullopt;
  }
}

bool IsOfThePairing(const Pairing& pairing, const StoredFact& fact) {
  return std::ranges::count(KindsOfThePairing(), fact.kind) != 0 && fact.name == pairing.pairingId;
}

// What those before say of the key of now, and then what that says of them.
std::vector<std::string> FactsOfTheKey(Work& work, const Pairing& pairing, const exchange::PublicKey& now) {
  std::vector<std::string> facts;
  std::vector<std::string> keys = work.Host().Pairings().OwnKeys();
  if (keys.size() == 1) return facts;
  std::ranges::reverse(keys);
  for (const std::string& key : keys) {
    const std::string name = exchange::NameOfNewKey(pairing.pairingId, exchange::PublicKey::FromBytes(key));
    work.Host().Facts().ForEachOf(pairing.id, exchange::kinds::kNewKey, name, [&](const StoredFact& stored) {
      const Fact fact(stored.body, stored.signature);
      const bool isOfNow = key == now.Bytes() || fact.What().author == now;
      if (stored.origin != FactOrigin::kPartners && isOfNow) facts.push_back(fact.Wire());
    });
  }
  return facts;
}

// They go with each letter: whoever has lost them could read no other.
std::vector<std::string> FactsOfThePairing(Work& work, const Pairing& pairing, const exchange::PublicKey& now) {
  std::vector<std::string> facts;
  for (const std::string_view kind : KindsOfThePairing()) {
    work.Host().Facts().ForEachOf(pairing.id, kind, pairing.pairingId, [&facts](const StoredFact& fact) {
      facts.push_back(Fact(fact.body, fact.signature).Wire());
    });
  }
  for (std::string& fact : FactsOfTheKey(work, pairing, now)) facts.push_back(std::move(fact));
  return facts;
}

// Whether the partner is to say that it has read the next letter.
bool AsksForAReply(Work& work, const Pairing& pairing, const Carrying& carrying) {
  const bool wantsToCompare = !carrying.comparedSince.empty() && !carrying.isCompared;
  return !carrying.telling.empty() || wantsToCompare || work.Host().Facts().HasNotShown(pairing.id);
}

// A word stands for what is told: another one is made when that has grown.
void RenewWord(const exchange::Summary& held, Carrying& carrying) {
  if (!carrying.word.empty() && carrying.wordFor == held.Text()) return;
  carrying.word = exchange::MakeRandomWord();
  carrying.wordFor = held.Text();
  carrying.isEchoed = false;
}

// Whoever tells a fact holds it. Those that are not held here are added to `notTaken`.
void MarkTold(Work& work, const Pairing& pairing, const exchange::Letter& letter, std::set<exchange::Hash>& notTaken) {
  for (const std::string& wire : letter.facts) {
    const std::optional<exchange::Hash> hash = HashOfWire(wire);
    if (!hash) continue;
    if (work.Host().Facts().Has(pairing.id, hash->Bytes())) {
      work.Host().Facts().MarkShown(pairing.id, hash->Bytes());
    } else {
      notTaken.insert(*hash);
    }
  }
}

bool HoldsAllOf(Work& work, const Pairing& pairing, const std::vector<std::string>& wires) {
  return std::ranges::all_of(wires, [&](const std::string& wire) {
    const std::optional<exchange::Hash> hash = HashOfWire(wire);
    return hash && work.Host().Facts().Has(pairing.id, hash->Bytes());
  });
}

bool IsEchoOf(const Carrying& carrying, const exchange::Letter& letter) {
  return !carrying.word.empty() && letter.echo == carrying.word;
}

void SetIfChanged(Work& work, const Pairing& pairing, const Carrying& carrying) {
  standalone::PairingTable& pairings = work.Host().Pairings();
  if (carrying != pairings.CarryingOf(pairing.id)) pairings.SetCarrying(pairing.id, carrying);
}

}  // namespace

std::optional<LettersToSend> LettersFor(Work& work, const Pairing& pairing, const exchange::KeyPair& keys) {
  if (pairing.partnerKey.empty() || pairing.state == PairingState::kBlocked ||
      pairing.state == PairingState::kRemoved) {
    return std::nullopt;
  }
  const exchange::Summary held = SummaryOfHeld(work, pairing);
  Carrying carrying = work.Host().Pairings().CarryingOf(pairing.id);
  BeginComparing(work, pairing, held, carrying);
  const bool asks = AsksForAReply(work, pairing, carrying);
  if (asks) RenewWord(held, carrying);
  SetIfChanged(work, pairing, carrying);
  exchange::Letter letter{.pairing = pairing.pairingId,
                          .sender = keys.Public(),
                          .receiver = KeyOf(pairing),
                          .word = asks && !carrying.isEchoed ? carrying.word : std::string(),
                          .echo = carrying.theirWord,
                          .summary = held,
                          .months = {},
                          .hashes = {},
                          .facts = FactsOfThePairing(work, pairing, keys.Public())};
  if (!letter.word.empty()) TellOfMonths(work, pairing, carrying, letter);
  std::string says = letter.word + ' ' + letter.echo + ' ' + held.Text();
  const bool isDue = carrying.owesReply || !letter.word.empty();
  return LettersToSend{.letter = std::move(letter),
                       .lastFact = work.Host().Facts().LastNumber(),
                       .says = std::move(says),
                       .isDue = isDue};
}

void SealLetters(Work& work, const Pairing& pairing, const exchange::KeyPair& keys, const LettersToSend& letters,
                 const std::function<void(const std::string& envelope, const std::vector<exchange::Hash>& own)>& take) {
  std::vector<exchange::Hash> own;
  exchange::Sealing sealing(letters.letter, keys, [&](const std::string& envelope) {
    take(envelope, own);
    own.clear();
  });
  work.Host().Facts().ForEachNotShown(pairing.id, letters.lastFact, [&](const StoredFact& fact) {
    const bool isTold = !letters.letter.word.empty() && !IsOfThePairing(pairing, fact);
    if (isTold) sealing.AddFact(Fact(fact.body, fact.signature).Wire());
    if (fact.origin == FactOrigin::kMade) own.push_back(exchange::Hash::FromBytes(fact.hash));
  });
  sealing.Finish();
}

void NoteSent(Work& work, const Pairing& pairing, const LettersToSend& sent, const std::vector<std::string>& names) {
  Carrying carrying = work.Host().Pairings().CarryingOf(pairing.id);
  carrying.owesReply = false;
  carrying.lettersFor = sent.says;
  carrying.letters.clear();
  for (const std::string& name : names) carrying.letters += name + '\n';
  work.Host().Pairings().SetCarrying(pairing.id, carrying);
}

void NoteRead(Work& work, const Pairing& pairing, const exchange::Letter& letter, std::set<exchange::Hash>& notTaken) {
  Carrying carrying = work.Host().Pairings().CarryingOf(pairing.id);
  const bool isEcho = IsEchoOf(carrying, letter);
  if (isEcho && !carrying.isEchoed) {
    carrying.isEchoed = true;
    carrying.telling.clear();
  }
  if (!letter.word.empty()) {
    carrying.theirWord = letter.word;
    carrying.owesReply = true;
  }
  carrying.theirSummary = letter.summary.Text();
  MarkTold(work, pairing, letter, notTaken);
  const bool isEqual = IsSummaryOfHeld(work, pairing, letter.summary);
  if (isEqual) {
    // One that has not read what is told may be of before: books that were restored since have left it in the folder.
    if (!carrying.word.empty()) work.Host().Facts().MarkAllShown(pairing.id);
  } else {
    if (!letter.months.empty()) carrying.workedThrough = PairOf(SummaryOfHeld(work, pairing), carrying.theirSummary);
    TakeMonths(work, pairing, letter, carrying);
    TakeLists(work, pairing, letter, notTaken, carrying);
  }
  if (isEcho && (isEqual || HoldsAllThatIsListed(work, pairing, letter))) carrying.isCompared = true;
  SetIfChanged(work, pairing, carrying);
}

bool SaysNothingNew(Work& work, const Pairing& pairing, const exchange::Letter& letter) {
  const bool isPlain = letter.word.empty() && letter.months.empty() && letter.hashes.empty();
  const Carrying carrying = work.Host().Pairings().CarryingOf(pairing.id);
  if (!isPlain || letter.summary.Text() != carrying.theirSummary) return false;
  if (IsEchoOf(carrying, letter) && !carrying.isEchoed) return false;
  if (!HoldsAllOf(work, pairing, letter.facts)) return false;
  const exchange::Summary held = SummaryOfHeld(work, pairing);
  if (letter.summary == held) return !work.Host().Facts().HasNotShown(pairing.id);
  return PairOf(held, carrying.theirSummary) == carrying.workedThrough && carrying.telling.empty();
}

void AskToCompare(Work& work, const Pairing& pairing, const std::string& why) {
  Carrying carrying = work.Host().Pairings().CarryingOf(pairing.id);
  if (carrying.comparedSince == why) return;
  carrying.comparedSince = why;
  carrying.isCompared = false;
  carrying.workedThrough.clear();
  carrying.word.clear();
  work.Host().Pairings().SetCarrying(pairing.id, carrying);
}

bool IsCompared(Work& work, const Pairing& pairing, std::string_view why) {
  const Carrying carrying = work.Host().Pairings().CarryingOf(pairing.id);
  return carrying.comparedSince == why && carrying.isCompared;
}

}  // namespace desk
