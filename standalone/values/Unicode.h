#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace standalone {

// How many cells of a terminal a character takes: none when it is drawn onto its neighbour, such as an accent, two when
// it is a wide one of East Asia or an emoji, otherwise one.
std::size_t CellsOf(char32_t character) noexcept;
// Of a whole text; a byte that is not UTF-8 takes one.
std::size_t CellsIn(std::string_view text) noexcept;

// The same for all texts that a reader takes for one but for capitals: with Unicode's full case folding, whether an
// accented letter is written as one character or as two, a letter wide or narrow, a blank so that it does not break,
// and without what is not drawn. For comparing only; that of an ASCII text is its small letters.
std::string FoldedForm(std::string_view text);

}  // namespace standalone
