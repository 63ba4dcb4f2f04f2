#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/Envelope.h"
#include "standalone/exchange/Keys.h"

// Letters between this company and its partners: each has the summary of what is held here, so that one that is lost,
// doubled or late changes nothing. As long as there is something to tell - facts that the partner has not shown to
// hold, months or hashes - letters have a word, which the partner's next letter echoes; one without a word asks for
// nothing.
namespace desk {

// What is to be told, but for the facts that the partner has not shown to hold.
struct LettersToSend {
  exchange::Letter letter;
  std::int64_t lastFact = 0;  // the number of the last one that its summary is of
  std::string says;           // the same for letters that say the same
  bool isDue = false;         // it asks for a reply, or is one; any other may be put again but need not
};
// In a unit of work that writes. None for a partner that is not known yet or is blocked.
std::optional<LettersToSend> LettersFor(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys);
// Within a unit of work, maybe another one: hands on the sealed parts, one after the other, with those facts of this
// company that leave with each, so that no more is held than one part.
void SealLetters(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys,
                 const LettersToSend& letters,
                 const std::function<void(const std::string& envelope, const std::vector<exchange::Hash>& own)>& take);
// After they have been put, or given to a person; `names` are those under which they lie in the mailbox.
void NoteSent(Work& work, const standalone::Pairing& pairing, const LettersToSend& sent,
              const std::vector<std::string>& names);
// After a letter has been read and its facts were taken. `notTaken` are those that were not, of all letters of the
// partner that were read together.
void NoteRead(Work& work, const standalone::Pairing& pairing, const exchange::Letter& letter,
              std::set<exchange::Hash>& notTaken);
// Whether reading the letter again would change nothing, and nothing is to be done about it.
bool SaysNothingNew(Work& work, const standalone::Pairing& pairing, const exchange::Letter& letter);

// Asks the partner for a comparison of what both hold from now on; once for one reason, however often it is said.
void AskToCompare(Work& work, const standalone::Pairing& pairing, const std::string& why);
// Whether since then a letter of the partner that had read one of after that either had the summary of what was held
// here, or listed all that the partner holds and all of it was held.
bool IsCompared(Work& work, const standalone::Pairing& pairing, std::string_view why);

}  // namespace desk
