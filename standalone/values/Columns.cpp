#include "standalone/values/Columns.h"

#include "standalone/values/Characters.h"

namespace standalone {

namespace {

// The letter that stands for a character behind a backslash; none for most.
char LetterFor(char32_t number) {
  switch (number) {
    case U'\t':
      return 't';
    case U'\n':
      return 'n';
    case U'\r':
      return 'r';
    case U'\\':
      return '\\';
    default:
      return '\0';
  }
}

void AppendEscaped(std::string& out, const Character& character, std::string_view bytes) {
  if (const char letter = LetterFor(character.number); letter != '\0') {
    out += {'\\', letter};
  } else if (character.kind == CharacterKind::kPlain) {
    out += bytes;
  } else {
    AppendBytesInHex(out, bytes);
  }
}

int HexDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

}  // namespace

void AppendEscaped(std::string& out, std::string_view text) {
  if (IsPrintableAscii(text) && text.find('\\') == std::string_view::npos) {
    out += text;
    return;
  }
  while (!text.empty()) {
    const Character character = FirstCharacter(text);
    AppendEscaped(out, character, text.substr(0, character.length));
    text.remove_prefix(character.length);
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
