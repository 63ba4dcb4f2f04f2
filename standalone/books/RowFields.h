#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace standalone {

// A text field of a row of the host contract, which may be filled to its last character.
template <std::size_t kSize>
std::string_view Field(const char (&field)[kSize]) {
  return {field, static_cast<std::size_t>(std::find(field, field + kSize, '\0') - field)};
}

// Into the field of a row that is all zeros. The company holds no text that is too long; see the checks of its tables.
template <std::size_t kSize>
void Fill(char (&field)[kSize], std::string_view text) {
  std::copy_n(text.begin(), std::min(text.size(), kSize), field);
}

}  // namespace standalone
