#include "standalone/values/Uuid.h"

#include <sodium.h>

#include <array>
#include <cstdint>
#include <stdexcept>

namespace standalone {

namespace {

constexpr std::size_t kBytes = 16;
constexpr std::size_t kBytesOfTheMoment = 6;
// RFC 9562: the version stands in the upper half of byte 6, the variant in the upper two bits of byte 8.
constexpr std::size_t kVersionAt = 6;
constexpr std::size_t kVariantAt = 8;

using Bytes = std::array<unsigned char, kBytes>;

std::string TextOf(const Bytes& bytes) {
  std::array<char, 2 * kBytes + 1> digits{};
  sodium_bin2hex(digits.data(), digits.size(), bytes.data(), bytes.size());
  std::string text = digits.data();
  for (const std::size_t dash : std::array<std::size_t, 4>{20, 16, 12, 8}) text.insert(dash, 1, '-');
  return text;
}

}  // namespace

std::string MakeUuid(std::chrono::sys_time<std::chrono::milliseconds> moment) {
  if (sodium_init() < 0) throw std::runtime_error("this machine gives no random numbers");
  Bytes bytes{};
  randombytes_buf(bytes.data(), bytes.size());
  auto milliseconds = static_cast<std::uint64_t>(moment.time_since_epoch().count());
  for (std::size_t at = kBytesOfTheMoment; at-- > 0; milliseconds >>= 8U) {
    bytes[at] = static_cast<unsigned char>(milliseconds & 0xFFU);
  }
  bytes[kVersionAt] = static_cast<unsigned char>((bytes[kVersionAt] & 0x0FU) | 0x70U);
  bytes[kVariantAt] = static_cast<unsigned char>((bytes[kVariantAt] & 0x3FU) | 0x80U);
  return TextOf(bytes);
}

}  // namespace standalone
