#pragma once

#include <string>
#include <utility>
#include <vector>

#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Requests.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/Envelope.h"
#include "standalone/exchange/Keys.h"
#include "standalone/values/Errors.h"

// Letters of a partner that are taken: whose they are, and what becomes of the facts in them.
namespace desk {

// What taking a fact has come to.
struct TakenFact {
  bool isNew = false;
  bool cameBack = false;    // a fact of this company, which its books had not made
  std::string done;         // for people; empty when nothing changed
  std::string outstanding;  // why it is not applied; empty when it is
};
// Books a partner's request that has just become new, if that is meant to be done without a person; within the unit of
// work. Throws what a use case does when it is refused.
using BookAtOnce = void (*)(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys,
                            const std::string& request, DecidedRequest& decided);
// By which this company answers. While its books wait to be compared, or for what came back to be confirmed, what
// partners say of requests is kept and not applied.
struct Answering {
  const exchange::KeyPair& keys;
  bool isWaiting = false;
  BookAtOnce bookAtOnce = nullptr;
  std::string notBooked{std::string()};  // why a request could not be booked so in a unit of work before
};
// One unit of work. `wire` is a fact as it travels.
TakenFact TakeFact(Work& work, const standalone::Pairing& pairing, const Answering& answering, const std::string& wire);
// Tries again what could not be applied; tells what was done.
std::vector<std::string> RetryOutstanding(Work& work, const standalone::Pairing& pairing, const Answering& answering);

// A letter of who is blocked or not paired with any more, which is left where it is: a partner sends it again
// otherwise.
class NotTakenNow : public standalone::InvalidInput {
 public:
  using standalone::InvalidInput::InvalidInput;
};
// A letter of an established or accepted pairing from a key that is not the partner's.
class FromAnotherKey : public NotTakenNow {
 public:
  FromAnotherKey(standalone::Pairing pairing, const std::string& why)
      : NotTakenNow(why), pairing_(std::move(pairing)) {}
  const standalone::Pairing& OfPairing() const noexcept { return pairing_; }

 private:
  standalone::Pairing pairing_;
};
// Keeps the key of such a letter for a person to compare, in a unit of work that writes.
void NoteAnotherKey(Work& work, const standalone::Pairing& pairing, const exchange::Letter& letter);
// The pairing to which a letter belongs. Throws standalone::InvalidInput, with the reason, for one that is not taken.
standalone::Pairing RequirePairingOf(Work& work, const exchange::Letter& letter);

}  // namespace desk
