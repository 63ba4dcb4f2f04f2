#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace exchange {

// Of a text that a block is looked for in, unless its caller knows better.
inline constexpr std::size_t kMostTextBytes = 8'388'608;

// Bytes for a mail or a sheet of paper: a line "-----BEGIN LABEL-----", base64 in lines of 64 characters, and a line
// "-----END LABEL-----", each ending in a line feed. The label is of capital letters and blanks, such as "MULTIENTITY
// INVITATION".
std::string TextBlockOf(std::string_view label, std::string_view bytes);

// The bytes of the one block with this label in a text. What stands before and behind it is skipped, and so are
// carriage returns, blanks at the ends of lines and empty lines; lines may be of any length. Throws Malformed, which
// says what is wrong, when there is no such block or a second one, or it is none that TextBlockOf() makes, or the text
// is larger than `most` bytes.
std::string BytesOfTextBlock(std::string_view label, std::string_view text, std::size_t most = kMostTextBytes);

}  // namespace exchange
