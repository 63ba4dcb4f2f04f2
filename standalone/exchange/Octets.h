#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <string>
#include <string_view>

namespace exchange {

inline constexpr std::size_t kOctets = 32;
using OctetArray = std::array<unsigned char, kOctets>;

// 64 hexadecimal digits in small letters.
std::string HexOf(const OctetArray& octets);
// Exactly such digits; throws Malformed that calls them `what`.
OctetArray OctetsFromHex(std::string_view what, std::string_view digits);
// Exactly 32 bytes; throws Malformed that calls them `what`.
OctetArray OctetsFromBytes(std::string_view what, std::string_view bytes);

// 32 bytes of one meaning, ordered as their bytes are.
template <typename Meaning>
class Octets {
 public:
  Octets() = default;
  explicit Octets(const OctetArray& octets) : octets_(octets) {}

  // Both throw Malformed.
  static Octets FromHex(std::string_view digits) { return Octets(OctetsFromHex(Meaning::kName, digits)); }
  static Octets FromBytes(std::string_view bytes) { return Octets(OctetsFromBytes(Meaning::kName, bytes)); }

  std::string Hex() const { return HexOf(octets_); }
  const unsigned char* Data() const noexcept { return octets_.data(); }
  // For as long as this is there.
  std::string_view Bytes() const noexcept { return {reinterpret_cast<const char*>(octets_.data()), octets_.size()}; }

  friend auto operator<=>(const Octets&, const Octets&) = default;
  friend bool operator==(const Octets&, const Octets&) = default;

 private:
  OctetArray octets_{};
};

struct OfAKey {
  static constexpr std::string_view kName = "The key";
};
struct OfAHash {
  static constexpr std::string_view kName = "The hash";
};

// An Ed25519 key, by which a company is named.
using PublicKey = Octets<OfAKey>;
// SHA-256, by which a fact is identified.
using Hash = Octets<OfAHash>;

Hash HashOf(std::string_view bytes);

}  // namespace exchange
