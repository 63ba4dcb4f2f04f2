#include "standalone/export/JournalTexts.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "standalone/values/Characters.h"

namespace standalone {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

// Also begins what DeletedAccountText() adds.
constexpr std::string_view kDeletedMark = "(deleted #";

void AppendEscaped(std::string& out, std::string_view bytes) {
  for (const char byte : bytes) {
    const auto number = static_cast<unsigned char>(byte);
    out.append({'%', kHexDigits[number >> 4U], kHexDigits[number & 0xFU]});
  }
}

bool IsHexDigit(std::string_view text, std::size_t index) {
  return index < text.size() && kHexDigits.find(text[index]) != std::string_view::npos;
}

// The blanks of other scripts and of typesetters, which a journal's reader takes for blanks.
bool IsOtherBlank(char32_t number) {
  return number == 0xA0 || number == 0x1680 || (number >= 0x2000 && number <= 0x200A) || number == 0x202F ||
         number == 0x205F || number == 0x3000;
}

// Two blanks end an account's name, and those at the ends of a text are dropped.
bool IsBlankThatIsLost(std::string_view text, std::size_t index) {
  return text[index] == ' ' && (index == 0 || index + 1 == text.size() || text[index - 1] == ' ');
}

bool LooksEscaped(std::string_view text, std::size_t index) {
  return text[index] == '%' && IsHexDigit(text, index + 1) && IsHexDigit(text, index + 2);
}

// `isSyntax` is asked of ASCII characters by their place.
template <typename IsSyntax>
std::string Escaped(std::string_view text, IsSyntax&& isSyntax) {
  std::string out;
  for (std::size_t index = 0; index < text.size();) {
    const Character character = FirstCharacter(text.substr(index));
    const std::string_view bytes = text.substr(index, character.length);
    const bool isLost = character.kind != CharacterKind::kPlain || IsOtherBlank(character.number) ||
                        IsBlankThatIsLost(text, index) || LooksEscaped(text, index) || isSyntax(index);
    if (isLost) {
      AppendEscaped(out, bytes);
    } else {
      out.append(bytes);
    }
    index += character.length;
  }
  return out;
}

std::string EscapedBut(std::string_view text, std::string_view syntax) {
  return Escaped(text, [&](std::size_t index) { return syntax.find(text[index]) != std::string_view::npos; });
}

// A mark of a posting, a posting that does not count for balances, a comment, or a word that ledger has for checks
// within a transaction.
bool BeginsLikeSyntax(std::string_view name) {
  constexpr std::string_view kFirst = "*!([<";
  constexpr std::array<std::string_view, 3> kWords{"assert ", "check ", "expr "};
  return kFirst.find(name.front()) != std::string_view::npos ||
         std::ranges::any_of(kWords, [name](std::string_view word) { return name.starts_with(word); });
}

}  // namespace

std::string AccountText(std::string_view fullName) {
  return Escaped(fullName, [fullName](std::size_t index) {
    return (index == 0 && BeginsLikeSyntax(fullName)) || fullName[index] == ';' ||
           fullName.substr(index).starts_with(kDeletedMark);
  });
}

std::string DeletedAccountText(std::string_view fullName, std::int32_t id) {
  return AccountText(fullName).append(" ").append(kDeletedMark).append(std::to_string(id)).append(")");
}

std::string CodeText(std::string_view code) {
  return EscapedBut(code, "();");
}

std::string DescriptionText(std::string_view name, std::string_view memo) {
  std::string text = EscapedBut(name, "|;");
  if (!memo.empty()) text.append(text.empty() ? "| " : " | ").append(EscapedBut(memo, ";"));
  return text;
}

std::string CommentText(std::string_view text) {
  return EscapedBut(text, ":[");
}

std::string TagText(std::string_view value) {
  return EscapedBut(value, ",[");
}

}  // namespace standalone
