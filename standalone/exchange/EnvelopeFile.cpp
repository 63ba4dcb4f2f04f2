#include "standalone/exchange/EnvelopeFile.h"

#include <algorithm>

namespace exchange {

namespace {

constexpr std::string_view kDigitsOfLengths = "0123456789";
// More than any envelope has.
constexpr std::size_t kMostDigitsOfLengths = 10;
constexpr std::size_t kBase = 10;

// What a program has reserved and not filled yet.
bool IsUnfilled(std::string_view file) noexcept {
  return file.empty() || file.front() == '\0';
}

}  // namespace

std::string HeadOf(std::size_t bytes) {
  return std::to_string(bytes) + ':';
}

EnvelopeFile ReadEnvelopeFile(std::string_view file) noexcept {
  if (IsUnfilled(file)) return {.completeness = Completeness::kIncomplete, .bytes = {}};
  const std::size_t digits = std::min(file.find_first_not_of(kDigitsOfLengths), file.size());
  const bool hasLeadingZero = digits > 1 && file.front() == '0';
  if (digits == 0 || digits > kMostDigitsOfLengths || hasLeadingZero)
    return {.completeness = Completeness::kNever, .bytes = {}};
  const std::string_view rest = file.substr(digits);
  if (IsUnfilled(rest)) return {.completeness = Completeness::kIncomplete, .bytes = {}};
  std::size_t count = 0;
  for (const char digit : file.substr(0, digits)) count = kBase * count + static_cast<std::size_t>(digit - '0');
  const std::size_t whole = count + 2;
  if (rest.front() != ':' || rest.size() > whole) return {.completeness = Completeness::kNever, .bytes = {}};
  if (rest.size() < whole || rest.back() == '\0') return {.completeness = Completeness::kIncomplete, .bytes = {}};
  if (rest.back() != kTail) return {.completeness = Completeness::kNever, .bytes = {}};
  return {.completeness = Completeness::kComplete, .bytes = rest.substr(1, count)};
}

}  // namespace exchange
