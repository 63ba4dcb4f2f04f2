#include "standalone/values/Characters.h"

#include <algorithm>
#include <array>

namespace standalone {

namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

unsigned char Byte(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

bool IsContinuation(std::string_view text, std::size_t index, unsigned char from = 0x80, unsigned char to = 0xBF) {
  return index < text.size() && Byte(text, index) >= from && Byte(text, index) <= to;
}

// The length of the well-formed sequence that the text begins with; 0 when there is none.
std::size_t SequenceLength(std::string_view text) {
  const unsigned char lead = Byte(text, 0);
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return IsContinuation(text, 1) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    const unsigned char from = lead == 0xE0 ? 0xA0 : 0x80;
    const unsigned char to = lead == 0xED ? 0x9F : 0xBF;
    return IsContinuation(text, 1, from, to) && IsContinuation(text, 2) ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    const unsigned char from = lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char to = lead == 0xF4 ? 0x8F : 0xBF;
    return IsContinuation(text, 1, from, to) && IsContinuation(text, 2) && IsContinuation(text, 3) ? 4 : 0;
  }
  return 0;
}

char32_t CodePointOf(std::string_view sequence) {
  if (sequence.size() == 1) return Byte(sequence, 0);
  constexpr unsigned kBitsOfAContinuation = 6;
  char32_t number = Byte(sequence, 0) & (0x7FU >> sequence.size());
  for (std::size_t index = 1; index < sequence.size(); ++index) {
    number = (number << kBitsOfAContinuation) | (Byte(sequence, index) & 0x3FU);
  }
  return number;
}

CharacterKind KindOf(char32_t number) {
  if (number < 0x20 || (number >= 0x7F && number <= 0x9F)) return CharacterKind::kControl;
  if (number == 0x2028 || number == 0x2029) return CharacterKind::kLineSeparator;
  const bool turns = number == 0x061C || number == 0x200E || number == 0x200F ||
                     (number >= 0x202A && number <= 0x202E) || (number >= 0x2066 && number <= 0x2069);
  return turns ? CharacterKind::kDirectionMark : CharacterKind::kPlain;
}

}  // namespace

Character FirstCharacter(std::string_view text) noexcept {
  const std::size_t length = SequenceLength(text);
  if (length == 0) return {.kind = CharacterKind::kNoText, .number = Byte(text, 0), .length = 1};
  const char32_t number = CodePointOf(text.substr(0, length));
  return {.kind = KindOf(number), .number = number, .length = length};
}

// Goes on to the end, which compilers turn into wide steps.
bool IsPrintableAscii(std::string_view text) noexcept {
  unsigned char odd = 0;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    odd |= static_cast<unsigned char>((byte < 0x20) | (byte > 0x7E));
  }
  return odd == 0;
}

void AppendCharacter(std::string& out, char32_t number) {
  constexpr unsigned kBitsOfAContinuation = 6;
  constexpr std::array<char32_t, 3> kBeyond{0x80, 0x800, 0x10000};  // what one, two and three bytes have room for
  const auto continuations = static_cast<unsigned>(std::ranges::upper_bound(kBeyond, number) - kBeyond.begin());
  constexpr std::array<unsigned, 4> kLeads{0x00, 0xC0, 0xE0, 0xF0};
  out += static_cast<char>(kLeads.at(continuations) | number >> (continuations * kBitsOfAContinuation));
  for (unsigned left = continuations; left-- > 0;) {
    out += static_cast<char>(0x80U | (number >> (left * kBitsOfAContinuation) & 0x3FU));
  }
}

void AppendBytesInHex(std::string& out, std::string_view bytes) {
  for (const char byte : bytes) {
    const auto number = static_cast<unsigned char>(byte);
    out += {'\\', 'x', kDigits[number >> 4U], kDigits[number & 0xFU]};
  }
}

void AppendNumberInHex(std::string& out, char32_t number) {
  constexpr std::size_t kLeastDigits = 4;
  std::string digits;
  for (; number != 0 || digits.size() < kLeastDigits; number >>= 4U) digits += kDigits[number & 0xFU];
  std::reverse(digits.begin(), digits.end());
  out += digits;
}

}  // namespace standalone
