#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace standalone {

// What a character does where a text is shown. All but the plain ones steer what shows it, or are not text at all.
enum class CharacterKind {
  kPlain,
  kControl,        // U+0000 to U+001F, U+007F to U+009F
  kLineSeparator,  // U+2028, U+2029
  kDirectionMark,  // turns the direction of the text around it: U+061C, U+200E, U+200F, U+202A to U+202E,
                   // U+2066 to U+2069
  kNoText,         // a byte that is not UTF-8
};

struct Character {
  CharacterKind kind = CharacterKind::kPlain;
  char32_t number = 0;     // its code point, or the byte that is not UTF-8
  std::size_t length = 1;  // in bytes
};

// The first character of a text that is not empty.
Character FirstCharacter(std::string_view text) noexcept;

// Whether the text is printable ASCII, all of which is plain; quicker than looking at each character.
bool IsPrintableAscii(std::string_view text) noexcept;

constexpr bool IsAsciiDigit(char character) noexcept {
  return character >= '0' && character <= '9';
}

// Only letters A to Z become other ones.
constexpr char LowerAscii(char character) noexcept {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

// In UTF-8.
void AppendCharacter(std::string& out, char32_t number);

// Each byte as \xNN.
void AppendBytesInHex(std::string& out, std::string_view bytes);

// The number with at least four hexadecimal digits, as in U+202E.
void AppendNumberInHex(std::string& out, char32_t number);

}  // namespace standalone
