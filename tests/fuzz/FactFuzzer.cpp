#include "fuzz/ExchangeFuzzing.h"

// Facts of a partner: as bytes, and as texts that are signed as they are.

namespace {

using exchange::Fact;
using exchange::KeyPair;
using fuzzing::Require;
using fuzzing::Tried;

std::string BodyOf(const KeyPair& author, std::string_view texts, char separator) {
  std::string head;
  for (const std::string& text :
       {std::string("multientity-fact-1"), std::string(exchange::testing::kPairing), author.Public().Hex()}) {
    exchange::AppendNetstring(head, text);
  }
  return head + fuzzing::NetstringsOf(texts, separator);
}

std::optional<Fact> SignedAsItIs(const KeyPair& author, const std::string& body) {
  return Tried([&] { return Fact(body, author.Sign(body)); });
}

struct Remaking {
  const KeyPair& author;

  Fact operator()(const exchange::Answer& answer) const { return MakeFact(answer, author); }
  Fact operator()(const auto& meaning) const { return MakeFact(meaning, exchange::testing::kPairing, author); }
};

void CheckMeaning(const Fact& fact, const KeyPair& author) {
  const auto meaning = Tried([&] { return exchange::MeaningOf(fact); });
  if (!meaning) return;
  Require(std::visit(Remaking{author}, *meaning) == fact, "what is understood makes the same fact again");
}

void CheckBytes(std::string_view bytes) {
  if (const auto statement = Tried([&] { return exchange::StatementOf(bytes); })) {
    Require(exchange::BodyOf(*statement) == bytes, "a fact has one body");
  }
  if (const auto fact = Tried([&] { return Fact::FromWire(bytes); })) {
    Require(fact->Wire() == bytes, "a fact travels in one form");
    Tried([&] { return exchange::MeaningOf(*fact); });
  }
}

// Alder's, by lines; behind the line "proposal" stand the texts of a proposal of Birch's, between tabs.
void CheckTexts(std::string_view text) {
  static const KeyPair alder = exchange::testing::Alder();
  static const KeyPair birch = exchange::testing::Birch();
  std::string body = BodyOf(alder, {}, '\n');
  bool isProposal = false;
  while (!text.empty()) {
    const std::string_view line = fuzzing::TakeLine(text);
    const auto proposal = isProposal ? SignedAsItIs(birch, BodyOf(birch, line, '\t')) : std::nullopt;
    exchange::AppendNetstring(body, proposal ? proposal->Wire() : std::string(line));
    isProposal = line == "proposal" && !isProposal;
  }
  const std::optional<Fact> fact = SignedAsItIs(alder, body);
  if (!fact) return;
  Require(fact->IsVerified() && Fact::VerifiedFromWire(fact->Wire()) == *fact, "a signed fact is read back");
  CheckMeaning(*fact, alder);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  CheckBytes(fuzzing::Text(bytes, size));
  CheckTexts(fuzzing::Text(bytes, size));
  return 0;
}
