#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <regex>

#include "exchange/Companies.h"
#include "standalone/exchange/Errors.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using testing::Alder;
using testing::Birch;

constexpr const char* kMessage = "Alder owes Birch 1,250.00";

TEST(TheKeysOfACompany, AreTheSameForTheSameSeed) {
  const KeyPair again = KeyPair::FromHexSeed(Alder().HexSeed());

  EXPECT_EQ(again.Public(), Alder().Public());
  EXPECT_EQ(Alder().HexSeed(), "000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f");
}

TEST(TheKeysOfACompany, AreNewEachTimeWithoutASeed) {
  const KeyPair made;

  EXPECT_NE(made.Public(), KeyPair().Public());
  EXPECT_EQ(KeyPair::FromHexSeed(made.HexSeed()).Public(), made.Public());
}

TEST(TheKeysOfACompany, AreNotMadeOfASeedOfAnotherLength) {
  EXPECT_THROW(KeyPair(std::string(31, 's')), Malformed);
  EXPECT_THROW(KeyPair(std::string(33, 's')), Malformed);
  EXPECT_THROW(KeyPair(""), Malformed);
}

TEST(TheKeysOfACompany, AreNotReadFromASeedThatIsWrittenInAnotherWay) {
  const std::string seed(64, 'a');

  for (const std::string& text : {seed.substr(1), seed + "a", seed + "aa", std::string(64, 'A'), std::string(64, 'g'),
                                  " " + seed, seed + "\n", std::string(63, 'a') + '\0', std::string()}) {
    EXPECT_THROW(KeyPair::FromHexSeed(text), Malformed) << text;
  }
}

TEST(ARefusalOfASeed, DoesNotRepeatTheSecret) {
  const std::string secret = Alder().HexSeed().substr(1);

  const std::string message = MessageOf<Malformed>([&] { KeyPair::FromHexSeed(secret); });

  EXPECT_EQ(message, "The seed of a key is not 64 hexadecimal digits in small letters.");
}

TEST(AKey, IsReadAsItIsWritten) {
  const PublicKey key = Alder().Public();

  EXPECT_EQ(key.Hex(), "03a107bff3ce10be1d70dd18e74bc09967e4d6309ba50d5f1ddc8664125531b8");
  EXPECT_EQ(PublicKey::FromHex(key.Hex()), key);
  EXPECT_EQ(PublicKey::FromBytes(key.Bytes()), key);
}

TEST(AKey, IsNotReadFromWhatIsWrittenInAnotherWay) {
  const std::string digits = Alder().Public().Hex();

  EXPECT_THROW(PublicKey::FromHex(digits.substr(1)), Malformed);
  EXPECT_THROW(PublicKey::FromHex(digits + "0"), Malformed);
  EXPECT_THROW(PublicKey::FromHex("03A1" + digits.substr(4)), Malformed);
  EXPECT_THROW(PublicKey::FromHex(" " + digits.substr(1)), Malformed);
  EXPECT_THROW(PublicKey::FromBytes(std::string(31, 'k')), Malformed);
  EXPECT_THROW(PublicKey::FromBytes(std::string(33, 'k')), Malformed);
}

TEST(ASignature, IsThatOfOneCompanyOverOneMessage) {
  const std::string signature = Alder().Sign(kMessage);

  EXPECT_EQ(signature.size(), kSignatureBytes);
  EXPECT_EQ(signature, Alder().Sign(kMessage));
  EXPECT_TRUE(Verify(Alder().Public(), kMessage, signature));
  EXPECT_FALSE(Verify(Birch().Public(), kMessage, signature));
  EXPECT_FALSE(Verify(Alder().Public(), "Alder owes Birch 1,250.01", signature));
}

TEST(ASignature, OfAnotherLengthIsNone) {
  const std::string signature = Alder().Sign(kMessage);

  for (std::size_t length = 0; length < signature.size(); ++length) {
    EXPECT_FALSE(Verify(Alder().Public(), kMessage, signature.substr(0, length)));
  }
  EXPECT_FALSE(Verify(Alder().Public(), kMessage, signature + '\0'));
}

TEST(ASignature, WithAnyByteChangedIsNone) {
  const std::string signature = Alder().Sign(kMessage);

  for (std::size_t at = 0; at < signature.size(); ++at) {
    std::string changed = signature;
    changed[at] ^= 0x01;
    EXPECT_FALSE(Verify(Alder().Public(), kMessage, changed)) << at;
  }
}

// Keys of a small order would let anybody sign: one signature fits many messages.
TEST(ASignature, OfAKeyThatIsNoneIsNone) {
  EXPECT_FALSE(Verify(PublicKey(), kMessage, std::string(kSignatureBytes, '\0')));
  EXPECT_FALSE(Verify(PublicKey::FromHex("01" + std::string(62, '0')), kMessage, std::string(kSignatureBytes, '\0')));
}

TEST(ASealedMessage, IsReadByItsReceiverOnly) {
  const std::string sealed = SealFor(Birch().Public(), kMessage);

  EXPECT_EQ(Birch().Unseal(sealed), kMessage);
  EXPECT_THROW(Alder().Unseal(sealed), Malformed);
  EXPECT_NE(SealFor(Birch().Public(), kMessage), sealed);
}

TEST(ASealedMessage, MayBeEmptyButNotShorterThanItsSeal) {
  const std::string sealed = SealFor(Birch().Public(), "");

  EXPECT_EQ(sealed.size(), kSealBytes);
  EXPECT_EQ(Birch().Unseal(sealed), "");
  EXPECT_THROW(Birch().Unseal(sealed.substr(1)), Malformed);
  EXPECT_THROW(Birch().Unseal(""), Malformed);
}

TEST(ASealedMessage, IsNotMadeForAKeyThatIsNone) {
  EXPECT_THROW(SealFor(PublicKey(), kMessage), Malformed);
}

TEST(AFingerprint, IsSixGroupsOfFiveDigitsForTwoPeople) {
  const std::regex form("[0-9]{5}( [0-9]{5}){5}");

  for (unsigned char first = 0; first < 100; ++first) {
    EXPECT_TRUE(std::regex_match(Fingerprint(testing::KeysFrom(first).Public()), form)) << int{first};
  }
  EXPECT_NE(Fingerprint(Alder().Public()), Fingerprint(Birch().Public()));
}

TEST(ARandomWord, Is32DigitsAndNeverTheSame) {
  const std::string word = MakeRandomWord();

  EXPECT_TRUE(IsPairingId(word)) << word;
  EXPECT_NE(word, MakeRandomWord());
}

TEST(ASecret, IsOverwrittenWhenItIsWiped) {
  std::string secret = "hunter2, hunter2, hunter2, hunter2";
  const char* const where = secret.data();

  Wipe(secret);

  EXPECT_TRUE(secret.empty());
  EXPECT_EQ(std::string_view(where, 8), std::string_view("\0\0\0\0\0\0\0\0", 8));
}

TEST(TheSecretOfAKeyPair, IsOverwrittenWhenThePairEnds) {
  alignas(KeyPair) std::array<unsigned char, sizeof(KeyPair)> memory{};
  KeyPair* const pair = std::construct_at(reinterpret_cast<KeyPair*>(memory.data()), Alder());
  const auto holdsSeed = [&] {
    std::size_t found = 0;
    for (std::size_t at = 0; at + 1 < memory.size(); ++at) {
      found += memory[at] == 0x0A && memory[at + 1] == 0x0B ? 1 : 0;
    }
    return found > 0;
  };
  ASSERT_TRUE(holdsSeed());

  std::destroy_at(pair);

  EXPECT_FALSE(holdsSeed());
}

}  // namespace
}  // namespace exchange
