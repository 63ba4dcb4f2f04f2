#include "fuzz/ExchangeFuzzing.h"
#include "standalone/exchange/TextBlock.h"

// Invitations that anybody may send: as texts, as what stands in one, and as lines that somebody has signed.

namespace {

using exchange::Fact;
using exchange::KeyPair;
using exchange::PairingOffer;
using fuzzing::Require;
using fuzzing::Tried;

constexpr std::string_view kLabel = "MULTIENTITY INVITATION";

const KeyPair& Inviter() {
  static const KeyPair alder = exchange::testing::Alder();
  return alder;
}

void CheckInvitation(const Fact& fact) {
  Require(fact.IsVerified(), "an invitation is signed by its author");
  const std::optional<PairingOffer> offer = Tried([&] { return exchange::PairingOfferOf(fact); });
  if (!offer) return;
  Require(!offer->company.empty() && !offer->realm.empty(), "an invitation says who invites");
  if (fact.What().author != Inviter().Public()) return;
  Require(MakeFact(*offer, fact.What().pairing, Inviter()) == fact, "what is understood makes the same fact again");
}

void CheckText(std::string_view text) {
  const std::optional<Fact> fact =
      Tried([&] { return Fact::VerifiedFromWire(exchange::BytesOfTextBlock(kLabel, text)); });
  if (!fact) return;
  CheckInvitation(*fact);
  const std::string again = exchange::TextBlockOf(kLabel, fact->Wire());
  Require(Fact::VerifiedFromWire(exchange::BytesOfTextBlock(kLabel, again)) == *fact, "it is read as it is written");
}

// The fields of an invitation, by lines.
std::string BodyOf(std::string_view lines) {
  std::string body;
  for (const std::string& text :
       {std::string("multientity-fact-1"), std::string(exchange::testing::kPairing), Inviter().Public().Hex(),
        std::string(exchange::kinds::kInvitation), std::string(exchange::testing::kPairing), std::string()}) {
    exchange::AppendNetstring(body, text);
  }
  return body + fuzzing::NetstringsOf(lines, '\n');
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text = fuzzing::Text(bytes, size);
  CheckText(text);
  CheckText(exchange::TextBlockOf(kLabel, text));
  const std::string body = BodyOf(text);
  std::string wire;
  exchange::AppendNetstring(wire, body);
  exchange::AppendNetstring(wire, Inviter().Sign(body));
  CheckText(exchange::TextBlockOf(kLabel, wire));
  return 0;
}
