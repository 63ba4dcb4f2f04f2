#include "standalone/values/Columns.h"

namespace standalone {

namespace {

// Whether a character stands in a column as it is.
constexpr bool IsPlain(char character) noexcept {
  const auto byte = static_cast<unsigned char>(character);
  return (byte >= 0x20) & (byte != 0x7F) & (byte != '\\');
}

// Goes on to the end, which compilers turn into wide steps.
bool IsPlain(std::string_view text) noexcept {
  unsigned char odd = 0;
  for (const char character : text) odd |= static_cast<unsigned char>(!IsPlain(character));
  return odd == 0;
}

// What stands for it behind a backslash: a letter of its own, or 'x' before its number.
char EscapeLetter(char character) {
  switch (character) {
    case '\t':
      return 't';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\\':
      return '\\';
    default:
      return 'x';
  }
}

void AppendHex(std::string& out, unsigned char byte) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  out.push_back(kDigits[byte / 16]);
  out.push_back(kDigits[byte % 16]);
}

void AppendEscaped(std::string& out, char character) {
  const char letter = EscapeLetter(character);
  out.push_back('\\');
  out.push_back(letter);
  if (letter == 'x') AppendHex(out, static_cast<unsigned char>(character));
}

int HexDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

}  // namespace

void AppendEscaped(std::string& out, std::string_view text) {
  if (IsPlain(text)) {
    out += text;
    return;
  }
  for (const char character : text) {
    if (IsPlain(character)) {
      out.push_back(character);
    } else {
      AppendEscaped(out, character);
    }
  }
}

std::string EscapeColumn(std::string_view text) {
  std::string escaped;
  AppendEscaped(escaped, text);
  return escaped;
}

std::string UnescapeColumn(std::string_view text) {
  std::string plain;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] != '\\' || index + 1 == text.size()) {
      plain += text[index];
      continue;
    }
    switch (const char kind = text[++index]) {
      case 't':
        plain += '\t';
        break;
      case 'n':
        plain += '\n';
        break;
      case 'r':
        plain += '\r';
        break;
      case 'x':
        if (index + 2 < text.size() && HexDigit(text[index + 1]) >= 0 && HexDigit(text[index + 2]) >= 0) {
          plain += static_cast<char>(HexDigit(text[index + 1]) * 16 + HexDigit(text[index + 2]));
          index += 2;
          break;
        }
        [[fallthrough]];
      default:
        plain += kind;
    }
  }
  return plain;
}

}  // namespace standalone
