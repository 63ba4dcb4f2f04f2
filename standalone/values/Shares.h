#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "standalone/values/CheckedText.h"

// How what is paid once is borne by several companies.
namespace standalone {

// A part of a whole: greater than 0, at most 1.
struct Fraction {
  std::int64_t numerator = 1;
  std::int64_t denominator = 1;
  friend bool operator==(const Fraction&, const Fraction&) = default;
};

// What a partner bears, as people write it: a percentage with up to six decimals, such as 33.33%, a fraction such as
// 1/3, or an amount of some currency. Throws InvalidInput.
std::string_view RequireShare(std::string_view text);
using ShareText = CheckedText<RequireShare>;
// None for an amount.
std::optional<Fraction> FractionOf(const ShareText& share);

// A fraction of the whole, or minor units of it.
using Share = std::variant<Fraction, std::int64_t>;

// Together the whole, to the minor unit.
struct Split {
  std::vector<std::int64_t> partners;  // in the order of the shares
  std::vector<std::int64_t> own;       // what is left of each line
};

// The first share that cannot be taken out of the whole.
struct SplitFault {
  enum class Why {
    kOfNothing,       // the whole is zero
    kOtherSign,       // an amount that would add to the whole
    kBeyondTheWhole,  // with those before it
    kNothing,         // less than half a minor unit, or an amount of zero
    kTooFine,         // no common denominator that can be reckoned with
  };

  Why why{};
  std::size_t share = 0;
  friend bool operator==(const SplitFault&, const SplitFault&) = default;
};

// Takes the shares out of the lines, whose sum is the whole. Fractions are of the whole; all of them together are
// rounded, half away from zero, and each is within one minor unit of what it is exactly. Amounts are what they are.
// What is left is spread over the lines as they are to each other. The minor units that rounding leaves go to who
// loses most by it, the first one among equals. No line and no sum of lines is beyond kLargestAmount.
std::variant<Split, SplitFault> SplitAmong(std::span<const std::int64_t> lines, std::span<const Share> shares);

}  // namespace standalone
