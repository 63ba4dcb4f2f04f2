#include "standalone/values/Sha256.h"

#include <sodium.h>

#include <array>

namespace standalone {

namespace {

using Digest = std::array<unsigned char, crypto_hash_sha256_BYTES>;

static_assert(kSha256Digits == std::size_t{2} * crypto_hash_sha256_BYTES);

const unsigned char* BytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

std::string DigitsOf(const Digest& digest) {
  std::array<char, kSha256Digits + 1> digits{};
  sodium_bin2hex(digits.data(), digits.size(), digest.data(), digest.size());
  return digits.data();
}

}  // namespace

struct Sha256::State {
  crypto_hash_sha256_state value;
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
  crypto_hash_sha256_init(&state_->value);
}

Sha256::~Sha256() = default;

void Sha256::Add(std::string_view bytes) {
  crypto_hash_sha256_update(&state_->value, BytesOf(bytes), bytes.size());
}

std::string Sha256::Finish() {
  Digest digest;
  crypto_hash_sha256_final(&state_->value, digest.data());
  return DigitsOf(digest);
}

std::string Sha256Of(std::string_view bytes) {
  Digest digest;
  crypto_hash_sha256(digest.data(), BytesOf(bytes), bytes.size());
  return DigitsOf(digest);
}

}  // namespace standalone
