#include "fuzz/ExchangeFuzzing.h"
#include "standalone/exchange/EnvelopeFile.h"

// Envelopes of a partner: as files, as what is behind the seal, and as texts that the partner has signed.

namespace {

using exchange::KeyPair;
using exchange::Letter;
using fuzzing::Require;
using fuzzing::Tried;

const KeyPair& Sender() {
  static const KeyPair alder = exchange::testing::Alder();
  return alder;
}

const KeyPair& Receiver() {
  static const KeyPair birch = exchange::testing::Birch();
  return birch;
}

void CheckContent(std::string_view content) {
  const std::optional<Letter> letter = Tried([&] { return exchange::LetterOf(content, Receiver().Public()); });
  if (!letter) return;
  for (const std::string& wire : letter->facts) Tried([&] { return exchange::Fact::FromWire(wire); });
  if (letter->sender != Sender().Public()) return;
  const std::vector<std::string> envelopes = Seal(*letter, Sender());
  Require(envelopes.size() == 1 && Open(envelopes.front(), Receiver()) == *letter, "a letter is read as it was sent");
}

void CheckFile(std::string_view content) {
  using exchange::Completeness;
  const exchange::EnvelopeFile file = exchange::ReadEnvelopeFile(content);
  if (file.completeness == Completeness::kComplete) {
    Require(exchange::HeadOf(file.bytes.size()) + std::string(file.bytes) + exchange::kTail == content,
            "an envelope has one file");
  }
  if (content.empty()) return;
  const Completeness before = exchange::ReadEnvelopeFile(content.substr(0, content.size() - 1)).completeness;
  Require(before != Completeness::kNever || file.completeness == Completeness::kNever,
          "what can never be an envelope is none whatever comes behind it");
  Require(before != Completeness::kComplete || file.completeness == Completeness::kNever,
          "nothing comes behind an envelope");
}

std::string SignedBySender(std::string content) {
  exchange::AppendNetstring(content, Sender().Sign(content));
  return content;
}

std::string Head() {
  std::string head;
  for (const std::string& text : {std::string("multientity-envelope-1"), std::string(exchange::testing::kPairing),
                                  Sender().Public().Hex(), Receiver().Public().Hex()}) {
    exchange::AppendNetstring(head, text);
  }
  return head;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text = fuzzing::Text(bytes, size);
  Tried([&] { return exchange::Open(text, Receiver()); });
  CheckFile(text);
  CheckFile(exchange::HeadOf(text.size()) + std::string(text) + exchange::kTail);
  CheckContent(text);
  CheckContent(SignedBySender(std::string(text)));
  CheckContent(SignedBySender(Head() + fuzzing::NetstringsOf(text, '\n')));
  return 0;
}
