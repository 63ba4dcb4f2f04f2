#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/exchange/Keys.h"
#include "standalone/exchange/Octets.h"
#include "standalone/exchange/Summary.h"

namespace exchange {

inline constexpr std::size_t kMostEnvelopeBytes = 4'194'304;
// A letter with more goes on in another envelope, as there are several copies of one while it is sealed or opened.
inline constexpr std::size_t kFullEnvelopeBytes = 1'048'576;

// What one carrying tells the partner.
struct Letter {
  std::string pairing;  // the pairing id
  PublicKey sender;
  PublicKey receiver;
  std::string word;  // 32 hexadecimal digits in small letters, new for each carrying
  std::string echo;  // the partner's word that was read last; empty when none was
  Summary summary;   // of all that the sender holds
  Months months;     // of some or all months
  HashLists hashes;  // of some months
  // As they travel (Fact::Wire()), in any order. Each is read on its own, so that one that is none holds up no other.
  std::vector<std::string> facts;

  friend bool operator==(const Letter&, const Letter&) = default;
};

// Envelopes that together say what the letter does: one when that fits into kFullEnvelopeBytes, otherwise several, each
// with the word, the echo and the summary, and with some of the months, hashes and facts. Throws Malformed when the
// letter has what nobody would read, std::invalid_argument when the keys are not those of its sender.
std::vector<std::string> Seal(const Letter& letter, const KeyPair& sender);

// The same for a letter with more facts than are to be held at once: they are added one by one, and each envelope is
// handed on as soon as the next fact does not fit into it. The keys have to stay for as long as this is used.
class Sealing {
 public:
  using Take = std::function<void(const std::string& envelope)>;

  Sealing(const Letter& letter, const KeyPair& sender, Take take);

  // As it travels, behind those of the letter.
  void AddFact(std::string_view wire);
  // Hands on the last envelope.
  void Finish();

 private:
  void Add(std::string_view field);
  void HandOn();

  PublicKey receiver_;
  const KeyPair& sender_;
  Take take_;
  std::string head_;
  std::string content_;
};

// Throws Malformed, which says what is wrong, unless the envelope was sealed for the owner of the keys, is signed by
// the sender that it names and has all that a letter needs. Whether that sender is a partner the caller has to see.
Letter Open(std::string_view envelope, const KeyPair& receiver);

// What is behind the seal of an envelope for this receiver.
Letter LetterOf(std::string_view content, const PublicKey& receiver);

}  // namespace exchange
