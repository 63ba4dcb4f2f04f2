#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

// libFuzzer calls it with one input after another.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace fuzzing {

// A property that an input has broken ends the run, and libFuzzer keeps the input.
inline void Require(bool holds, std::string_view property) {
  if (holds) return;
  std::fprintf(stderr, "broken: %.*s\n", static_cast<int>(property.size()), property.data());
  std::abort();
}

inline std::string_view Text(const std::uint8_t* bytes, std::size_t size) {
  return {reinterpret_cast<const char*>(bytes), size};
}

// Takes the text before the next line feed from `rest`.
inline std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  const std::string_view line = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  return line;
}

}  // namespace fuzzing
