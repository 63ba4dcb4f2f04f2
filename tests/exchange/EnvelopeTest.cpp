#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/Companies.h"
#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Netstrings.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using namespace std::string_view_literals;
using testing::Alder;
using testing::Birch;
using testing::Cedar;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::kOtherWord;
using testing::kPairing;
using testing::kWord;
using testing::LetterToBirch;

using Texts = std::vector<std::string>;

std::string Sealed(const Letter& letter) {
  return Seal(letter, Alder()).at(0);
}

std::string NetstringsOf(const Texts& texts) {
  std::string bytes;
  for (const std::string& text : texts) AppendNetstring(bytes, text);
  return bytes;
}

Texts Head() {
  return {"multientity-envelope-1", kPairing, Alder().Public().Hex(), Birch().Public().Hex()};
}

Texts Joined(Texts texts, const Texts& more) {
  texts.insert(texts.end(), more.begin(), more.end());
  return texts;
}

const Texts& WordAndSummary() {
  static const Texts fields{"word", kWord, "summary", SummaryOf({}).Text()};
  return fields;
}

// What these texts say with the signature behind them.
std::string ContentOf(const Texts& texts, const KeyPair& sender) {
  std::string content = NetstringsOf(texts);
  AppendNetstring(content, sender.Sign(content));
  return content;
}

Letter Read(const Texts& texts) {
  return LetterOf(ContentOf(texts, Alder()), Birch().Public());
}

std::string WhyUnread(const Texts& texts) {
  return MessageOf<Malformed>([&] { Read(texts); });
}

std::string WhyUnreadWith(const Texts& fields) {
  return WhyUnread(Joined(Joined(Head(), WordAndSummary()), fields));
}

std::string OpeningRefusal(std::string_view envelope, const KeyPair& receiver) {
  return MessageOf<Malformed>([&] { Open(envelope, receiver); });
}

TEST(AnEnvelope, IsOpenedByItsReceiverAsItWasWritten) {
  const Letter letter = LetterToBirch();

  const std::vector<std::string> envelopes = Seal(letter, Alder());

  ASSERT_EQ(envelopes.size(), 1);
  EXPECT_TRUE(envelopes[0].starts_with("multientity-sealed-1\n"));
  EXPECT_EQ(Open(envelopes[0], Birch()), letter);
}

TEST(AnEnvelope, MayHoldAWordAndASummaryOnly) {
  Letter letter = LetterToBirch();
  letter.echo.clear();
  letter.months.clear();
  letter.hashes.clear();
  letter.facts.clear();

  EXPECT_EQ(Open(Sealed(letter), Birch()), letter);
}

TEST(AnEnvelope, TellsNothingToOthers) {
  const std::string envelope = Sealed(LetterToBirch());

  EXPECT_EQ(OpeningRefusal(envelope, Cedar()), "It was sealed for another company, or was changed on its way.");
  EXPECT_EQ(OpeningRefusal(envelope, Alder()), "It was sealed for another company, or was changed on its way.");
  EXPECT_EQ(envelope.find(kPairing), std::string::npos);
  EXPECT_EQ(envelope.find(Alder().Public().Hex()), std::string::npos);
}

TEST(AnEnvelope, IsRefusedWithAnyByteChanged) {
  const std::string envelope = Sealed(LetterToBirch());

  for (std::size_t at = 0; at < envelope.size(); ++at) {
    for (const int mask : {0x01, 0x80}) {
      std::string changed = envelope;
      changed[at] = static_cast<char>(changed[at] ^ mask);
      EXPECT_THROW(Open(changed, Birch()), Malformed) << at;
    }
  }
}

TEST(AnEnvelope, IsRefusedWhereverItIsCutOffAndWithMoreBehindIt) {
  const std::string envelope = Sealed(LetterToBirch());

  for (std::size_t length = 0; length < envelope.size(); ++length) {
    EXPECT_THROW(Open(envelope.substr(0, length), Birch()), Malformed) << length;
  }
  EXPECT_THROW(Open(envelope + "\n", Birch()), Malformed);
}

TEST(AnEnvelope, OfAnotherFormIsRefusedByName) {
  EXPECT_THAT(OpeningRefusal("multientity-sealed-2\nwhatever", Birch()), HasSubstr("multientity-sealed-1"));
  EXPECT_THAT(OpeningRefusal("", Birch()), HasSubstr("multientity-sealed-1"));
}

TEST(AnEnvelope, LargerThan4MebibytesIsNotOpened) {
  const std::string whole = Sealed(LetterToBirch());

  EXPECT_EQ(OpeningRefusal(whole + std::string(kMostEnvelopeBytes - whole.size() + 1, 'x'), Birch()),
            "The envelope is larger than 4 MiB.");
  EXPECT_THAT(OpeningRefusal(whole + std::string(kMostEnvelopeBytes - whole.size(), 'x'), Birch()),
              HasSubstr("sealed for"));
}

TEST(WhatIsBehindTheSeal, IsRefusedWithAnyByteChanged) {
  const std::string content = ContentOf(Joined(Head(), WordAndSummary()), Alder());
  ASSERT_EQ(LetterOf(content, Birch().Public()).word, kWord);

  for (std::size_t at = 0; at < content.size(); ++at) {
    std::string changed = content;
    changed[at] ^= 0x01;
    EXPECT_THROW(LetterOf(changed, Birch().Public()), Malformed) << at;
  }
}

TEST(WhatIsBehindTheSeal, IsRefusedWhereverItIsCutOffAndWithMoreBehindIt) {
  const std::string content = ContentOf(Joined(Head(), WordAndSummary()), Alder());

  for (std::size_t length = 0; length < content.size(); ++length) {
    EXPECT_THROW(LetterOf(content.substr(0, length), Birch().Public()), Malformed) << length;
  }
  EXPECT_THROW(LetterOf(content + "0:,", Birch().Public()), Malformed);
  EXPECT_THROW(LetterOf(content + " ", Birch().Public()), Malformed);
}

TEST(AnEnvelope, WithoutASignatureIsRefusedAsSuch) {
  const std::string content = NetstringsOf(Joined(Head(), WordAndSummary()));

  EXPECT_EQ(MessageOf<Malformed>([&] { LetterOf(content, Birch().Public()); }),
            "The envelope ends without a signature.");
}

TEST(AnEnvelope, IsSignedByTheSenderThatItNames) {
  const std::string forged = ContentOf(Joined(Head(), WordAndSummary()), Cedar());

  EXPECT_EQ(MessageOf<Malformed>([&] { LetterOf(forged, Birch().Public()); }),
            "The envelope was not signed by the sender that it names, " + Alder().Public().Hex() + ".");
  EXPECT_THROW(Seal(LetterToBirch(), Cedar()), std::invalid_argument);
}

// Whoever opens a letter could else seal it again for another partner of the sender.
TEST(AnEnvelope, IsRefusedWhenItWasWrittenToAnotherCompany) {
  const std::string content = ContentOf(Joined(Head(), WordAndSummary()), Alder());

  const std::string passedOn = "multientity-sealed-1\n" + SealFor(Cedar().Public(), content);

  EXPECT_EQ(OpeningRefusal(passedOn, Cedar()),
            "The envelope was written to " + Birch().Public().Hex() + ", not to " + Cedar().Public().Hex() + ".");
}

TEST(AnEnvelope, IsRefusedWithSenderAndReceiverSwapped) {
  Texts head = Head();
  std::swap(head[2], head[3]);

  EXPECT_THAT(WhyUnread(Joined(head, WordAndSummary())), HasSubstr("was written to " + Alder().Public().Hex()));
}

TEST(AnEnvelope, IsRefusedWhenItsSenderIsItsReceiver) {
  Texts head = Head();
  head[2] = head[3];
  Letter letter = LetterToBirch();
  letter.receiver = Alder().Public();

  EXPECT_EQ(WhyUnread(Joined(head, WordAndSummary())), "The envelope was written by whom it is for.");
  EXPECT_THROW(Seal(letter, Alder()), Malformed);
}

TEST(AnEnvelope, NamesItsFormPairingAndKeys) {
  const auto changed = [](std::size_t at, std::string text) {
    Texts head = Head();
    head.at(at) = std::move(text);
    return WhyUnread(Joined(head, WordAndSummary()));
  };

  EXPECT_THAT(changed(0, "multientity-envelope-2"), HasSubstr("of the form \"multientity-envelope-2\""));
  EXPECT_THAT(changed(1, "0011"), HasSubstr("the pairing \"0011\", which is not 32 hexadecimal digits"));
  EXPECT_THAT(changed(2, "Alder"), HasSubstr("The key \"Alder\" is not 64 hexadecimal digits"));
  EXPECT_THAT(changed(3, "Birch"), HasSubstr("The key \"Birch\" is not 64 hexadecimal digits"));
}

TEST(AnEnvelope, HasOneSummaryAndUpToOneWordAndOneEcho) {
  EXPECT_EQ(Read(Joined(Head(), {"summary", SummaryOf({}).Text()})).word, "");
  EXPECT_EQ(WhyUnread(Joined(Head(), {"word", kWord})), "The envelope has no summary.");
  EXPECT_EQ(WhyUnreadWith({"word", kOtherWord}), "The envelope has the field \"word\" twice.");
  EXPECT_EQ(WhyUnreadWith({"summary", SummaryOf({}).Text()}), "The envelope has the field \"summary\" twice.");
  EXPECT_EQ(WhyUnreadWith({"echo", kWord, "echo", kWord}), "The envelope has the field \"echo\" twice.");
}

TEST(AnEnvelope, HasWordsOf32DigitsAndASummaryInItsForm) {
  EXPECT_THAT(WhyUnread(Joined(Head(), {"word", "hello", "summary", SummaryOf({}).Text()})),
              HasSubstr("the word \"hello\""));
  EXPECT_THAT(WhyUnreadWith({"echo", ""}), HasSubstr("the echo \"\""));
  EXPECT_THAT(WhyUnread(Joined(Head(), {"word", kWord, "summary", "12"})), HasSubstr("The summary \"12\""));
}

TEST(AnEnvelope, HasMonthsInTheirFormEachOnce) {
  const std::string nothing = SummaryOf({}).Text();

  EXPECT_EQ(
      Read(Joined(Joined(Head(), WordAndSummary()), {"month", " " + nothing, "month", "2026-11 " + nothing})).months,
      (Months{{"", SummaryOf({})}, {"2026-11", SummaryOf({})}}));
  EXPECT_THAT(WhyUnreadWith({"month", "2026-11 " + nothing, "month", "2026-11 " + nothing}), HasSubstr("twice"));
  EXPECT_THAT(WhyUnreadWith({"month", "2026-13 " + nothing}), HasSubstr("the month \"2026-13\""));
  EXPECT_THAT(WhyUnreadWith({"month", "2026-11"}), HasSubstr("without a blank"));
  EXPECT_THAT(WhyUnreadWith({"month", "2026-11 " + nothing + "0"}), HasSubstr("not 64 hexadecimal digits"));
}

TEST(AnEnvelope, HasListsOfHashesThatAscend) {
  std::vector<Hash> hashes{HashOf("a"), HashOf("b")};
  if (hashes[1] < hashes[0]) std::swap(hashes[0], hashes[1]);
  const std::string first(hashes[0].Bytes());
  const std::string second(hashes[1].Bytes());

  EXPECT_EQ(
      Read(Joined(Joined(Head(), WordAndSummary()), {"hashes", "2026-11 " + first, "hashes", "2026-11 " + second}))
          .hashes,
      (HashLists{{"2026-11", hashes}}));
  EXPECT_THAT(WhyUnreadWith({"hashes", "2026-11 " + second + first}), HasSubstr("do not ascend"));
  EXPECT_THAT(WhyUnreadWith({"hashes", "2026-11 " + first + first}), HasSubstr("do not ascend"));
  EXPECT_THAT(WhyUnreadWith({"hashes", "2026-11 " + second, "hashes", "2026-11 " + first}), HasSubstr("do not ascend"));
  EXPECT_THAT(WhyUnreadWith({"hashes", "2026-11 " + first.substr(1)}), HasSubstr("is cut off"));
  EXPECT_THAT(WhyUnreadWith({"hashes", "2026-11" + first.substr(1)}), ::testing::Not(HasSubstr("cut off within")));
}

TEST(AFieldOfALaterVersion, IsSkippedInAnEnvelope) {
  const Letter letter =
      Read(Joined(Joined(Head(), {"colour", "green"}), Joined(WordAndSummary(), {"", "", "Word", kOtherWord})));

  EXPECT_EQ(letter.word, kWord);
  EXPECT_TRUE(letter.facts.empty());
}

TEST(AFactThatIsNone, DoesNotKeepOthersFromBeingTaken) {
  Letter letter = LetterToBirch();
  letter.facts.insert(letter.facts.begin(), {"no fact", ""});

  EXPECT_EQ(Open(Sealed(letter), Birch()).facts, letter.facts);
}

TEST(ALetter, ThatNobodyWouldReadIsNotSent) {
  Letter wordless = LetterToBirch();
  wordless.word = "hello";
  Letter unpaired = LetterToBirch();
  unpaired.pairing = "";
  Letter misdated = LetterToBirch();
  misdated.months["2026-13"] = SummaryOf({});

  EXPECT_THROW(Seal(wordless, Alder()), Malformed);
  EXPECT_THROW(Seal(unpaired, Alder()), Malformed);
  EXPECT_THROW(Seal(misdated, Alder()), Malformed);
}

TEST(ALetterThatFillsMoreThanOneEnvelope, GoesIntoSeveral) {
  Letter letter = LetterToBirch();
  Proposal proposal = testing::Rent();
  proposal.memo = std::string(4000, 'm');
  for (int i = 0; i < 250; ++i) {
    proposal.request = "REQ-" + std::to_string(i + 1);
    letter.facts.push_back(MakeFact(proposal, kPairing, Alder()).Wire());
  }

  const std::vector<std::string> envelopes = Seal(letter, Alder());

  ASSERT_EQ(envelopes.size(), 2);
  EXPECT_LE(envelopes[0].size(), kFullEnvelopeBytes);
  const Letter first = Open(envelopes[0], Birch());
  const Letter second = Open(envelopes[1], Birch());
  EXPECT_EQ(second.word, letter.word);
  EXPECT_EQ(second.echo, letter.echo);
  EXPECT_EQ(second.summary, letter.summary);
  Letter together = first;
  together.facts.insert(together.facts.end(), second.facts.begin(), second.facts.end());
  EXPECT_EQ(together, letter);
}

TEST(ALetterThatFillsMoreThanOneEnvelope, IsTheSameWhenItsFactsAreAddedOneByOne) {
  Letter letter = LetterToBirch();
  letter.facts.clear();
  Proposal proposal = testing::Rent();
  proposal.memo = std::string(4000, 'm');
  std::vector<std::string> wires;
  for (int i = 0; i < 250; ++i) {
    proposal.request = "REQ-" + std::to_string(i + 1);
    wires.push_back(MakeFact(proposal, kPairing, Alder()).Wire());
  }
  std::vector<Letter> opened;
  const KeyPair keys = Alder();
  Sealing sealing(letter, keys, [&](const std::string& envelope) { opened.push_back(Open(envelope, Birch())); });

  for (const std::string& wire : wires) sealing.AddFact(wire);

  EXPECT_EQ(opened.size(), 1);
  sealing.Finish();
  ASSERT_EQ(opened.size(), 2);
  EXPECT_EQ(opened[0].word, letter.word);
  EXPECT_EQ(opened[1].word, letter.word);
  std::vector<std::string> together = opened[0].facts;
  together.insert(together.end(), opened[1].facts.begin(), opened[1].facts.end());
  EXPECT_EQ(together, wires);
}

TEST(AListOfHashesThatFillsMoreThanOneEnvelope, GoesIntoSeveral) {
  constexpr std::size_t kMany = 150'000;
  Letter letter = LetterToBirch();
  letter.facts.clear();
  std::vector<Hash>& hashes = letter.hashes["2026-11"];
  hashes.clear();
  for (std::size_t i = 0; i < kMany; ++i) {
    OctetArray octets{};
    octets[0] = static_cast<unsigned char>(i >> 16U);
    octets[1] = static_cast<unsigned char>(i >> 8U & 0xFFU);
    octets[2] = static_cast<unsigned char>(i & 0xFFU);
    hashes.emplace_back(octets);
  }

  std::vector<Hash> together;
  for (const std::string& envelope : Seal(letter, Alder())) {
    EXPECT_LE(envelope.size(), kFullEnvelopeBytes);
    const std::vector<Hash> part = Open(envelope, Birch()).hashes["2026-11"];
    together.insert(together.end(), part.begin(), part.end());
  }

  EXPECT_EQ(together, hashes);
}

TEST(AFactThatFillsAnEnvelope, GoesIntoOneOfItsOwn) {
  Letter letter = LetterToBirch();
  letter.months.clear();
  letter.hashes.clear();
  letter.facts = {std::string(kFullEnvelopeBytes, 'a'), "small", std::string(kFullEnvelopeBytes, 'b')};

  std::vector<std::vector<std::string>> facts;
  for (const std::string& envelope : Seal(letter, Alder())) facts.push_back(Open(envelope, Birch()).facts);

  EXPECT_THAT(facts, ElementsAre(ElementsAre(letter.facts[0]), ElementsAre("small"), ElementsAre(letter.facts[2])));
}

}  // namespace
}  // namespace exchange
