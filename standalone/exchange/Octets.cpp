#include "standalone/exchange/Octets.h"

#include <sodium.h>

#include <algorithm>

#include "standalone/exchange/Errors.h"
#include "standalone/values/Text.h"

namespace exchange {

namespace {

constexpr std::size_t kHexDigits = 2 * kOctets;

bool IsSmallHexDigit(char character) {
  return standalone::IsAsciiDigit(character) || (character >= 'a' && character <= 'f');
}

}  // namespace

std::string HexOf(const OctetArray& octets) {
  std::array<char, kHexDigits + 1> digits{};
  sodium_bin2hex(digits.data(), digits.size(), octets.data(), octets.size());
  return digits.data();
}

OctetArray OctetsFromHex(std::string_view what, std::string_view digits) {
  if (digits.size() != kHexDigits || !std::ranges::all_of(digits, IsSmallHexDigit)) {
    throw Malformed(std::string(what) + " " + standalone::Quoted(digits) +
                    " is not 64 hexadecimal digits in small letters.");
  }
  OctetArray octets{};
  sodium_hex2bin(octets.data(), octets.size(), digits.data(), digits.size(), nullptr, nullptr, nullptr);
  return octets;
}

OctetArray OctetsFromBytes(std::string_view what, std::string_view bytes) {
  if (bytes.size() != kOctets) {
    throw Malformed(std::string(what) + " has " + std::to_string(bytes.size()) + " bytes; it has 32.");
  }
  OctetArray octets{};
  std::ranges::copy(bytes, octets.begin());
  return octets;
}

Hash HashOf(std::string_view bytes) {
  OctetArray octets{};
  crypto_hash_sha256(octets.data(), reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  return Hash(octets);
}

}  // namespace exchange
