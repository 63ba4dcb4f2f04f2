#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace exchange {

// A file of one envelope: a netstring, so that it tells itself whether all of it is there. The comma, which is written
// last, tells that also of a file whose length was set before its bytes came.

enum class Completeness {
  kComplete,
  // It may become complete when more is written.
  kIncomplete,
  // It cannot, whatever is written behind it.
  kNever,
};

// What stands before and behind the bytes.
std::string HeadOf(std::size_t bytes);
inline constexpr char kTail = ',';
// Of both together, at most.
inline constexpr std::size_t kMostAround = 12;

struct EnvelopeFile {
  Completeness completeness = Completeness::kIncomplete;
  // Those of a complete one.
  std::string_view bytes;
};

// The bytes are views into what is read.
EnvelopeFile ReadEnvelopeFile(std::string_view file) noexcept;

}  // namespace exchange
