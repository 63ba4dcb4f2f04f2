#include "standalone/values/Unicode.h"

#include <UnicodeTables.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "standalone/values/Characters.h"

namespace standalone {

namespace {

// Below it, all take one cell.
constexpr char32_t kFirstCombiningMark = 0x0300;

template <std::size_t kCount>
bool IsIn(const std::array<CharacterRange, kCount>& table, char32_t character) noexcept {
  const auto* const range = std::ranges::lower_bound(table, character, {}, &CharacterRange::last);
  return range != table.end() && range->first <= character;
}

template <std::size_t kCount, std::size_t kCountTo>
void AppendMapped(std::u32string& out, const std::array<CharacterMapping, kCount>& table,
                  const std::array<char32_t, kCountTo>& to, char32_t character) {
  const auto* const found = std::ranges::lower_bound(table, character, {}, &CharacterMapping::character);
  if (found != table.end() && found->character == character) {
    out.append(to.data() + found->first, found->count);
  } else {
    out += character;
  }
}

// A syllable is numbered by its leading consonant, vowel and final consonant, of which it may have none.
bool AppendHangul(std::u32string& out, char32_t character) {
  constexpr char32_t kFirstSyllable = 0xAC00;
  constexpr char32_t kLastSyllable = 0xD7A3;
  constexpr char32_t kFirstLeading = 0x1100;
  constexpr char32_t kFirstVowel = 0x1161;
  constexpr char32_t kBeforeFirstFinal = 0x11A7;
  constexpr char32_t kVowels = 21;
  constexpr char32_t kFinals = 28;
  if (character < kFirstSyllable || character > kLastSyllable) return false;
  const char32_t number = character - kFirstSyllable;
  out += kFirstLeading + number / (kVowels * kFinals);
  out += kFirstVowel + number / kFinals % kVowels;
  if (number % kFinals != 0) out += kBeforeFirstFinal + number % kFinals;
  return true;
}

std::uint8_t CombiningClassOf(char32_t character) noexcept {
  if (character < kFirstCombiningMark) return 0;
  const auto* const found = std::ranges::lower_bound(kCombiningClasses, character, {}, &CharacterClass::character);
  return found != kCombiningClasses.end() && found->character == character ? found->number : 0;
}

// Accents of different classes may have been typed in any order.
void OrderAccents(std::u32string& text) {
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t end = begin;
    while (end < text.size() && CombiningClassOf(text[end]) != 0) ++end;
    std::stable_sort(text.begin() + static_cast<std::ptrdiff_t>(begin), text.begin() + static_cast<std::ptrdiff_t>(end),
                     [](char32_t one, char32_t other) { return CombiningClassOf(one) < CombiningClassOf(other); });
    begin = end + 1;
  }
}

std::u32string DecomposedForm(std::string_view text) {
  constexpr char32_t kNoCharacter = 0xDC00;  // with the byte that is not UTF-8
  std::u32string decomposed;
  while (!text.empty()) {
    const Character character = FirstCharacter(text);
    if (character.kind == CharacterKind::kNoText) {
      decomposed += kNoCharacter | character.number;
    } else if (!AppendHangul(decomposed, character.number)) {
      AppendMapped(decomposed, kDecompositions, kDecompositionsTo, character.number);
    }
    text.remove_prefix(character.length);
  }
  OrderAccents(decomposed);
  return decomposed;
}

std::string InSmallLetters(std::string_view ascii) {
  std::string small(ascii);
  for (char& letter : small) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return small;
}

}  // namespace

std::size_t CellsOf(char32_t character) noexcept {
  if (character < kFirstCombiningMark) return 1;
  if (IsIn(kWithoutACell, character)) return 0;
  return IsIn(kWithTwoCells, character) ? 2 : 1;
}

std::size_t CellsIn(std::string_view text) noexcept {
  if (IsPrintableAscii(text)) return text.size();
  std::size_t cells = 0;
  while (!text.empty()) {
    const Character character = FirstCharacter(text);
    cells += character.kind == CharacterKind::kNoText ? 1 : CellsOf(character.number);
    text.remove_prefix(character.length);
  }
  return cells;
}

// In this order, as a mark that stands below a letter may fold to a letter that stands behind it.
std::string FoldedForm(std::string_view text) {
  if (IsPrintableAscii(text)) return InSmallLetters(text);
  std::u32string folded;
  for (const char32_t character : DecomposedForm(text)) AppendMapped(folded, kFoldings, kFoldingsTo, character);
  OrderAccents(folded);
  std::string form;
  for (const char32_t character : folded) AppendCharacter(form, character);
  return form;
}

}  // namespace standalone
