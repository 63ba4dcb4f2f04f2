#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include <nlohmann/json.hpp>

#include "exchange/Companies.h"

// exchange_envelopes FOLDER writes envelopes for Birch: N.identity, N.envelope and N.json, what a reader has to find.

namespace {

using exchange::Fact;
using exchange::Hash;
using exchange::Letter;
using exchange::testing::Alder;
using exchange::testing::Birch;
using exchange::testing::kPairing;
using exchange::testing::LetterToBirch;
using nlohmann::json;

json Shown(const exchange::Remark& remark) {
  return {{"about", remark.request},
          {"asker", remark.asker == exchange::Asker::kAuthor ? "author" : "partner"},
          {"text", remark.text}};
}

json Shown(const Fact& fact) {
  json shown{{"hash", fact.Id().Hex()},  {"pairing", fact.What().pairing}, {"author", fact.What().author.Hex()},
             {"kind", fact.What().kind}, {"name", fact.What().name},       {"month", fact.What().month},
             {"fields", json::object()}};
  for (const auto& [name, value] : fact.What().fields) {
    if (name == "proposal") {
      shown["answers"] = Shown(Fact::VerifiedFromWire(value));
    } else {
      shown["fields"][name] = value;
    }
  }
  const std::string& kind = fact.What().kind;
  if (kind == exchange::kinds::kDispute || kind == exchange::kinds::kNote) shown["remark"] = Shown(RemarkOf(fact));
  return shown;
}

json Shown(const Letter& letter) {
  json shown{{"pairing", letter.pairing},
             {"sender", letter.sender.Hex()},
             {"receiver", letter.receiver.Hex()},
             {"fingerprint", exchange::Fingerprint(letter.sender)},
             {"word", letter.word},
             {"summary", letter.summary.Text()},
             {"months", json::object()},
             {"hashes", json::object()},
             {"facts", json::array()}};
  if (!letter.echo.empty()) shown["echo"] = letter.echo;
  for (const auto& [month, summary] : letter.months) shown["months"][month] = summary.Text();
  for (const auto& [month, hashes] : letter.hashes) {
    json& list = shown["hashes"][month] = json::array();
    for (const Hash& hash : hashes) list.push_back(hash.Hex());
  }
  for (const std::string& wire : letter.facts) shown["facts"].push_back(Shown(Fact::VerifiedFromWire(wire)));
  return shown;
}

Letter WithoutFacts() {
  Letter letter = LetterToBirch();
  letter.echo.clear();
  letter.months.clear();
  letter.hashes.clear();
  letter.facts.clear();
  letter.summary = exchange::SummaryOf({});
  return letter;
}

Letter WithAllKinds() {
  Letter letter = LetterToBirch();
  exchange::PairingOffer offer;
  offer.company = "Alder Supply Company";
  offer.realm = "5120774003618";
  offer.currency = "KWD";
  offer.decimals = standalone::Decimals(3);
  letter.facts.push_back(MakeFact(offer, kPairing, Alder()).Wire());
  offer.step = exchange::PairingStep::kConfirmation;
  offer.replyTo = exchange::HashOf("an acceptance");
  letter.facts.push_back(MakeFact(offer, kPairing, Alder()).Wire());
  letter.facts.push_back(
      MakeFact(exchange::Withdrawal{.request = "REQ-1", .month = "2026-11"}, kPairing, Alder()).Wire());
  exchange::Remark remark{.isDispute = true,
                          .id = exchange::testing::kOwnId,
                          .request = "Übertrag 東京",
                          .month = "2026-11",
                          .asker = exchange::Asker::kPartner,
                          .text = "Not ours"};
  letter.facts.push_back(MakeFact(remark, kPairing, Alder()).Wire());
  remark.isDispute = false;
  letter.facts.push_back(MakeFact(remark, kPairing, Alder()).Wire());
  exchange::Proposal theirs = exchange::testing::Rent();
  theirs.request = "Übertrag 東京";
  theirs.earlier.reset();
  letter.facts.push_back(MakeFact(exchange::testing::Accepted(MakeFact(theirs, kPairing, Birch())), Alder()).Wire());
  return letter;
}

Letter OfManyFacts() {
  Letter letter = LetterToBirch();
  exchange::Proposal proposal = exchange::testing::Rent();
  proposal.memo = std::string(4000, 'm');
  for (int i = 0; i < 1000; ++i) {
    proposal.request = "REQ-" + std::to_string(i + 1);
    letter.facts.push_back(MakeFact(proposal, kPairing, Alder()).Wire());
  }
  return letter;
}

void Write(const std::filesystem::path& folder, std::size_t number, const std::string& envelope) {
  const std::string name = std::to_string(number);
  std::ofstream(folder / (name + ".identity")) << "multientity-identity 1\nseed " << Birch().HexSeed() << "\n";
  std::ofstream(folder / (name + ".envelope"), std::ios::binary) << envelope;
  std::ofstream(folder / (name + ".json")) << Shown(exchange::Open(envelope, Birch()));
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: exchange_envelopes FOLDER\n";
    return 2;
  }
  std::size_t number = 0;
  for (const Letter& letter : {LetterToBirch(), WithoutFacts(), WithAllKinds(), OfManyFacts()}) {
    for (const std::string& envelope : exchange::Seal(letter, Alder())) Write(arguments[1], number++, envelope);
  }
  return 0;
}
