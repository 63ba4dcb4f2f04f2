#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "standalone/exchange/Octets.h"

namespace exchange {

inline constexpr std::size_t kSeedBytes = 32;
inline constexpr std::size_t kSignatureBytes = 64;

// A company's Ed25519 key pair, made of a seed of 32 bytes. Its secrets are wiped when it ends.
class KeyPair {
 public:
  // Of a new random seed.
  KeyPair();
  // Throws Malformed unless the seed has 32 bytes.
  explicit KeyPair(std::string_view seed);
  // Of 64 hexadecimal digits in small letters; throws Malformed, which does not repeat them.
  static KeyPair FromHexSeed(std::string_view digits);
  KeyPair(const KeyPair& other) = default;
  KeyPair& operator=(const KeyPair& other) = default;
  ~KeyPair();

  const PublicKey& Public() const noexcept { return public_; }
  // 64 hexadecimal digits. The caller keeps them secret and wipes them.
  std::string HexSeed() const;

  // 64 bytes, the same for the same message.
  std::string Sign(std::string_view message) const;

  // What a message that was sealed for this key says; throws Malformed when it was not, or was changed.
  std::string Unseal(std::string_view sealed) const;

 private:
  static constexpr std::size_t kSecretBytes = 64;

  std::array<unsigned char, kSecretBytes> secret_{};  // the seed, then the public key
  PublicKey public_;
};

// Whether the signature is that of the key's owner over the message. False for bytes that are no signature or no key.
bool Verify(const PublicKey& author, std::string_view message, std::string_view signature) noexcept;

inline constexpr std::size_t kSealBytes = 48;

// Only the owner of the key reads it; differs each time. Throws Malformed for 32 bytes that are no key.
std::string SealFor(const PublicKey& receiver, std::string_view message);

// What two people read to each other: six groups of five decimal digits, such as "12345 67890 12345 67890 12345 67890".
std::string Fingerprint(const PublicKey& key);

// 16 random bytes as 32 hexadecimal digits in small letters: a pairing id or a word.
std::string MakeRandomWord();

// Overwrites a text that was secret.
void Wipe(std::string& secret) noexcept;

}  // namespace exchange
