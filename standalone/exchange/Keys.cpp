#include "standalone/exchange/Keys.h"

#include <algorithm>
#include <cstdint>

#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Sodium.h"

namespace exchange {

namespace {

static_assert(kSeedBytes == crypto_sign_SEEDBYTES && kSignatureBytes == crypto_sign_BYTES);
static_assert(kSealBytes == crypto_box_SEALBYTES && kOctets == crypto_sign_PUBLICKEYBYTES);

constexpr std::size_t kWordBytes = 16;
constexpr std::size_t kGroups = 6;
constexpr std::size_t kGroupBytes = 5;
constexpr std::size_t kGroupDigits = 5;
constexpr std::uint64_t kGroupsModulus = 100'000;

// Bytes that are wiped when they are no longer needed.
template <std::size_t kSize>
class SecretBytes {
 public:
  SecretBytes() = default;
  SecretBytes(const SecretBytes&) = delete;
  SecretBytes& operator=(const SecretBytes&) = delete;
  ~SecretBytes() { sodium_memzero(bytes_.data(), bytes_.size()); }

  unsigned char* Data() noexcept { return bytes_.data(); }
  std::string_view View() const noexcept { return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()}; }

 private:
  std::array<unsigned char, kSize> bytes_{};
};

using Seed = SecretBytes<kSeedBytes>;

}  // namespace

KeyPair::KeyPair() {
  RequireRandomNumbers();
  OctetArray octets{};
  crypto_sign_keypair(octets.data(), secret_.data());
  public_ = PublicKey(octets);
}

KeyPair::KeyPair(std::string_view seed) {
  if (seed.size() != kSeedBytes) {
    throw Malformed("The seed of a key has 32 bytes; this one has " + std::to_string(seed.size()) + ".");
  }
  OctetArray octets{};
  crypto_sign_seed_keypair(octets.data(), secret_.data(), BytesOf(seed));
  public_ = PublicKey(octets);
}

KeyPair KeyPair::FromHexSeed(std::string_view digits) {
  Seed seed;
  std::size_t length = 0;
  const bool areDigits =
      sodium_hex2bin(seed.Data(), kSeedBytes, digits.data(), digits.size(), nullptr, &length, nullptr) == 0;
  const bool areSmall = std::ranges::none_of(digits, [](char c) { return c >= 'A' && c <= 'F'; });
  if (!areDigits || !areSmall || digits.size() != 2 * kSeedBytes || length != kSeedBytes) {
    throw Malformed("The seed of a key is not 64 hexadecimal digits in small letters.");
  }
  return KeyPair(seed.View());
}

KeyPair::~KeyPair() {
  sodium_memzero(secret_.data(), secret_.size());
}

std::string KeyPair::HexSeed() const {
  std::string digits(2 * kSeedBytes + 1, '\0');
  sodium_bin2hex(digits.data(), digits.size(), secret_.data(), kSeedBytes);
  digits.pop_back();
  return digits;
}

std::string KeyPair::Sign(std::string_view message) const {
  std::string signature(kSignatureBytes, '\0');
  crypto_sign_detached(BytesOf(signature), nullptr, BytesOf(message), message.size(), secret_.data());
  return signature;
}

std::string KeyPair::Unseal(std::string_view sealed) const {
  SecretBytes<crypto_box_SECRETKEYBYTES> secret;
  OctetArray receiver{};
  std::string message(sealed.size() < kSealBytes ? 0 : sealed.size() - kSealBytes, '\0');
  const bool isOpen =
      sealed.size() >= kSealBytes && crypto_sign_ed25519_sk_to_curve25519(secret.Data(), secret_.data()) == 0 &&
      crypto_sign_ed25519_pk_to_curve25519(receiver.data(), public_.Data()) == 0 &&
      crypto_box_seal_open(BytesOf(message), BytesOf(sealed), sealed.size(), receiver.data(), secret.Data()) == 0;
  if (!isOpen) throw Malformed("It was sealed for another company, or was changed on its way.");
  return message;
}

bool Verify(const PublicKey& author, std::string_view message, std::string_view signature) noexcept {
  return signature.size() == kSignatureBytes &&
         crypto_sign_verify_detached(BytesOf(signature), BytesOf(message), message.size(), author.Data()) == 0;
}

std::string SealFor(const PublicKey& receiver, std::string_view message) {
  RequireRandomNumbers();
  OctetArray key{};
  if (crypto_sign_ed25519_pk_to_curve25519(key.data(), receiver.Data()) != 0) {
    throw Malformed("The key " + receiver.Hex() + " is none that a company can have.");
  }
  std::string sealed(message.size() + kSealBytes, '\0');
  if (crypto_box_seal(BytesOf(sealed), BytesOf(message), message.size(), key.data()) != 0) {
    throw Malformed("The key " + receiver.Hex() + " is none that a company can have.");
  }
  return sealed;
}

std::string Fingerprint(const PublicKey& key) {
  const Hash hash = HashOf(key.Bytes());
  std::string digits;
  for (std::size_t group = 0; group < kGroups; ++group) {
    std::uint64_t number = 0;
    for (std::size_t at = 0; at < kGroupBytes; ++at) number = number << 8U | hash.Data()[group * kGroupBytes + at];
    const std::string text = std::to_string(number % kGroupsModulus);
    if (group > 0) digits += ' ';
    digits.append(kGroupDigits - text.size(), '0').append(text);
  }
  return digits;
}

std::string MakeRandomWord() {
  RequireRandomNumbers();
  std::array<unsigned char, kWordBytes> bytes{};
  randombytes_buf(bytes.data(), bytes.size());
  std::string digits(2 * kWordBytes + 1, '\0');
  sodium_bin2hex(digits.data(), digits.size(), bytes.data(), bytes.size());
  digits.pop_back();
  return digits;
}

void Wipe(std::string& secret) noexcept {
  sodium_memzero(secret.data(), secret.size());
  secret.clear();
}

}  // namespace exchange
