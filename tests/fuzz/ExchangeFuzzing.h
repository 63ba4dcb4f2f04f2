#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "exchange/Companies.h"
#include "fuzz/Fuzzing.h"
#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Netstrings.h"

namespace fuzzing {

// What `work` gives, or nothing when it refuses its input. Any other exception ends the run.
template <typename Work>
auto Tried(Work&& work) -> std::optional<decltype(work())> {
  try {
    return work();
  } catch (const standalone::InvalidInput&) {
    return std::nullopt;
  }
}

// Each text before a `separator` as a netstring, so that inputs reach what is behind the lengths.
inline std::string NetstringsOf(std::string_view texts, char separator) {
  std::string bytes;
  while (!texts.empty()) {
    const std::size_t end = std::min(texts.find(separator), texts.size());
    exchange::AppendNetstring(bytes, texts.substr(0, end));
    texts.remove_prefix(std::min(end + 1, texts.size()));
  }
  return bytes;
}

}  // namespace fuzzing
