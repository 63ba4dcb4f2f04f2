#include <gtest/gtest.h>

#include <fstream>

#include <nlohmann/json.hpp>

#include "exchange/Companies.h"
#include "standalone/exchange/Errors.h"
#include "standalone/exchange/TextBlock.h"

// The examples by which another program is held to docs/exchange.md. They were made by another one than this.

namespace exchange {
namespace {

using nlohmann::json;

json Vectors(const std::string& name) {
  std::ifstream file(std::string(MULTIENTITY_EXCHANGE_VECTORS) + "/" + name);
  return json::parse(file);
}

std::string Text(const json& value) {
  return value.get<std::string>();
}

std::string FromHex(const json& digits) {
  const std::string text = Text(digits);
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); at += 2)
    bytes += static_cast<char>(std::stoi(text.substr(at, 2), nullptr, 16));
  return bytes;
}

std::string Hex(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const char byte : bytes) {
    const auto number = static_cast<unsigned char>(byte);
    text += kDigits[number >> 4U];
    text += kDigits[number & 0x0FU];
  }
  return text;
}

KeyPair KeysOf(const json& seed) {
  return KeyPair::FromHexSeed(Text(seed));
}

Statement StatementIn(const json& vector) {
  Statement statement{.pairing = Text(vector["pairing"]),
                      .author = PublicKey::FromHex(Text(vector["author"])),
                      .kind = Text(vector["kind"]),
                      .name = Text(vector["name"]),
                      .month = Text(vector["month"]),
                      .fields = {}};
  for (const auto& [name, value] : vector["fields"].items()) {
    statement.fields[name] = value.is_string() ? Text(value) : FromHex(value["hex"]);
  }
  return statement;
}

std::vector<Hash> HashesIn(const json& list) {
  std::vector<Hash> hashes;
  for (const json& digits : list) hashes.push_back(Hash::FromHex(Text(digits)));
  return hashes;
}

TEST(TheVectorsOfKeys, HaveTheirKeysFingerprintsAndSignatures) {
  for (const json& vector : Vectors("keys.json")) {
    const KeyPair keys = KeysOf(vector["seed"]);
    EXPECT_EQ(keys.Public().Hex(), Text(vector["key"]));
    EXPECT_EQ(Fingerprint(keys.Public()), Text(vector["fingerprint"]));
    EXPECT_EQ(Hex(keys.Sign(FromHex(vector["message"]))), Text(vector["signature"]));
  }
}

TEST(TheVectorsOfFacts, AreMadeAndReadExactly) {
  for (const json& vector : Vectors("facts.json")) {
    SCOPED_TRACE(Text(vector["about"]));
    const Fact made = Fact::Signed(StatementIn(vector), KeysOf(vector["seed"]));
    EXPECT_EQ(Hex(made.Body()), Text(vector["body"]));
    EXPECT_EQ(made.Id().Hex(), Text(vector["hash"]));
    EXPECT_EQ(Hex(made.Signature()), Text(vector["signature"]));
    EXPECT_EQ(Hex(made.Wire()), Text(vector["wire"]));
    EXPECT_EQ(Fact::VerifiedFromWire(FromHex(vector["wire"])), made);
  }
}

// What a fact says, made into a fact again.
struct Remaking {
  const Fact& fact;
  const KeyPair& author;

  Fact operator()(const Answer& answer) const { return MakeFact(answer, author); }
  Fact operator()(const auto& meaning) const { return MakeFact(meaning, fact.What().pairing, author); }
};

TEST(TheVectorsOfFacts, AreUnderstoodAndMadeAgainOfWhatTheySay) {
  for (const json& vector : Vectors("facts.json")) {
    SCOPED_TRACE(Text(vector["about"]));
    const Fact fact = Fact::VerifiedFromWire(FromHex(vector["wire"]));
    if (vector.contains("not_understood")) {
      EXPECT_THROW(MeaningOf(fact), NotUnderstood);
      continue;
    }
    const KeyPair author = KeysOf(vector["seed"]);
    EXPECT_EQ(std::visit(Remaking{.fact = fact, .author = author}, MeaningOf(fact)), fact);
  }
}

TEST(TheVectorsOfWhatIsNoFact, AreRefused) {
  for (const json& vector : Vectors("refused_facts.json")) {
    EXPECT_THROW(Fact::VerifiedFromWire(FromHex(vector["wire"])), Malformed) << vector["about"];
  }
}

TEST(TheVectorsOfSummaries, HaveTheirDigests) {
  for (const json& vector : Vectors("summaries.json")) {
    EXPECT_EQ(SummaryOf(HashesIn(vector["hashes"])).Text(), Text(vector["summary"]));
  }
}

TEST(TheVectorOfAnEnvelope, IsOpenedAndHoldsItsLetter) {
  const json vector = Vectors("envelope.json");
  const json& expected = vector["letter"];

  const Letter letter = Open(FromHex(vector["envelope"]), KeysOf(vector["receiver_seed"]));

  EXPECT_EQ(letter, LetterOf(FromHex(vector["content"]), letter.receiver));
  EXPECT_EQ(letter.pairing, Text(expected["pairing"]));
  EXPECT_EQ(letter.sender.Hex(), Text(expected["sender"]));
  EXPECT_EQ(Fingerprint(letter.sender), Text(expected["fingerprint"]));
  EXPECT_EQ(letter.receiver.Hex(), Text(expected["receiver"]));
  EXPECT_EQ(letter.word, Text(expected["word"]));
  EXPECT_EQ(letter.echo, Text(expected["echo"]));
  EXPECT_EQ(letter.summary.Text(), Text(expected["summary"]));
  ASSERT_EQ(letter.months.size(), expected["months"].size());
  for (const auto& [month, summary] : letter.months) EXPECT_EQ(summary.Text(), Text(expected["months"][month]));
  ASSERT_EQ(letter.hashes.size(), expected["hashes"].size());
  for (const auto& [month, hashes] : letter.hashes) EXPECT_EQ(hashes, HashesIn(expected["hashes"][month]));
  ASSERT_EQ(letter.facts.size(), expected["facts"].size());
  for (std::size_t i = 0; i < letter.facts.size(); ++i) {
    const Fact fact = Fact::VerifiedFromWire(letter.facts[i]);
    EXPECT_EQ(fact.What(), StatementIn(expected["facts"][i]));
    EXPECT_EQ(fact.Id().Hex(), Text(expected["facts"][i]["hash"]));
  }
}

TEST(TheVectorOfAnInvitation, IsTheTextOfItsFact) {
  const json vector = Vectors("invitation.json");
  const std::string wire = FromHex(vector["fact"]);

  EXPECT_EQ(TextBlockOf("MULTIENTITY INVITATION", wire), Text(vector["text"]));
  EXPECT_EQ(BytesOfTextBlock("MULTIENTITY INVITATION", Text(vector["text"])), wire);
}

}  // namespace
}  // namespace exchange
