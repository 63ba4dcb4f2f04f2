#include "standalone/values/Shares.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <numeric>
#include <string>

#include "standalone/values/Amount.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

// The product of two amounts does not fit into 64 bits.
__extension__ using Wide = __int128;

constexpr std::size_t kMostDecimals = 6;
constexpr std::size_t kMostDigits = 6;
constexpr std::int64_t kHundred = 100;
// Times the largest amount it is far from the end of 128 bits.
constexpr std::int64_t kLargestDenominator = 1'000'000'000'000'000'000;

std::optional<std::int64_t> DigitsNumber(std::string_view digits) {
  if (digits.empty() || digits.size() > kMostDigits) return std::nullopt;
  if (digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  std::int64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

// The text without its sign.
std::optional<Fraction> PercentageOf(std::string_view text) {
  const std::size_t point = text.find('.');
  const std::optional<std::int64_t> whole = DigitsNumber(text.substr(0, point));
  if (!whole) return std::nullopt;
  Fraction fraction{.numerator = *whole, .denominator = kHundred};
  if (point == std::string_view::npos) return fraction;
  const std::string_view decimals = text.substr(point + 1);
  const std::optional<std::int64_t> parts = DigitsNumber(decimals);
  static_assert(kMostDecimals <= kMostDigits);
  if (!parts || decimals.size() > kMostDecimals) return std::nullopt;
  std::int64_t unit = 1;
  for (std::size_t i = 0; i < decimals.size(); ++i) unit *= 10;
  return Fraction{.numerator = *whole * unit + *parts, .denominator = kHundred * unit};
}

std::optional<Fraction> ReadFraction(std::string_view text) {
  if (text.ends_with('%')) return PercentageOf(text.substr(0, text.size() - 1));
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const std::optional<std::int64_t> numerator = DigitsNumber(text.substr(0, slash));
  const std::optional<std::int64_t> denominator = DigitsNumber(text.substr(slash + 1));
  if (!numerator || !denominator || *denominator == 0) return std::nullopt;
  return Fraction{.numerator = *numerator, .denominator = *denominator};
}

bool IsAmount(const Share& share) {
  return std::holds_alternative<std::int64_t>(share);
}

Wide FloorOf(Wide numerator, Wide denominator) {
  const Wide quotient = numerator / denominator;
  return numerator % denominator < 0 ? quotient - 1 : quotient;
}

// Whole numbers whose sum is `total`, each the exact one, numerator by denominator, rounded down or up: up where most
// would be lost. The exact ones sum to less than half a unit more or less than the total.
std::vector<std::int64_t> Round(std::int64_t total, std::span<const Wide> numerators, Wide denominator) {
  std::vector<std::int64_t> rounded;
  for (const Wide numerator : numerators) {
    rounded.push_back(static_cast<std::int64_t>(FloorOf(numerator, denominator)));
    total -= rounded.back();
  }
  const auto lossOf = [&](std::size_t index) {
    return numerators[index] - rounded[index] * denominator;
  };
  std::vector<std::size_t> byLoss(numerators.size());
  std::iota(byLoss.begin(), byLoss.end(), std::size_t{0});
  std::ranges::sort(byLoss, [&](std::size_t left, std::size_t right) {
    const Wide more = lossOf(left) - lossOf(right);
    return more != 0 ? more > 0 : left < right;
  });
  std::vector<std::int64_t> result = rounded;
  for (std::size_t i = 0; total > 0; ++i, --total) ++result[byLoss[i]];
  return result;
}

// The shares of a whole that is not negative.
class Sharing {
 public:
  Sharing(std::int64_t whole, std::span<const Share> shares) : whole_(whole), shares_(shares) {}

  std::optional<SplitFault> Check();
  std::vector<std::int64_t> Amounts() const;

 private:
  std::optional<SplitFault::Why> Take(const Share& share);
  std::optional<SplitFault::Why> Take(const Fraction& fraction);
  Wide NumeratorOf(const Fraction& fraction) const;
  std::int64_t SumOfFractions() const;

  std::int64_t whole_;
  std::span<const Share> shares_;
  std::int64_t amounts_ = 0;      // of those that are amounts
  std::int64_t denominator_ = 1;  // of all fractions
  std::int64_t numerators_ = 0;
};

std::optional<SplitFault> Sharing::Check() {
  for (std::size_t i = 0; i < shares_.size(); ++i) {
    if (const auto why = Take(shares_[i])) return SplitFault{.why = *why, .share = i};
    // In 128 bits, as what is left is less than a minor unit.
    const Wide taken = Wide{amounts_} * denominator_ + Wide{whole_} * numerators_;
    if (taken > Wide{whole_} * denominator_) return SplitFault{.why = SplitFault::Why::kBeyondTheWhole, .share = i};
  }
  const std::vector<std::int64_t> amounts = Amounts();
  const auto nothing = std::ranges::find(amounts, 0);
  if (nothing == amounts.end()) return std::nullopt;
  return SplitFault{.why = SplitFault::Why::kNothing, .share = static_cast<std::size_t>(nothing - amounts.begin())};
}

std::optional<SplitFault::Why> Sharing::Take(const Share& share) {
  if (whole_ == 0) return SplitFault::Why::kOfNothing;
  if (!IsAmount(share)) return Take(std::get<Fraction>(share));
  const std::int64_t amount = std::get<std::int64_t>(share);
  if (amount < 0) return SplitFault::Why::kOtherSign;
  amounts_ += amount;
  return std::nullopt;
}

std::optional<SplitFault::Why> Sharing::Take(const Fraction& fraction) {
  const std::int64_t factor = fraction.denominator / std::gcd(denominator_, fraction.denominator);
  if (Wide{denominator_} * factor > kLargestDenominator) return SplitFault::Why::kTooFine;
  denominator_ *= factor;
  numerators_ *= factor;
  numerators_ += fraction.numerator * (denominator_ / fraction.denominator);
  return std::nullopt;
}

Wide Sharing::NumeratorOf(const Fraction& fraction) const {
  return Wide{whole_} * fraction.numerator * (denominator_ / fraction.denominator);
}

std::int64_t Sharing::SumOfFractions() const {
  const Wide twice = 2 * Wide{whole_} * numerators_ + denominator_;
  return std::min(static_cast<std::int64_t>(twice / (2 * Wide{denominator_})), whole_ - amounts_);
}

std::vector<std::int64_t> Sharing::Amounts() const {
  std::vector<Wide> numerators;
  for (const Share& share : shares_) {
    if (!IsAmount(share)) numerators.push_back(NumeratorOf(std::get<Fraction>(share)));
  }
  const std::vector<std::int64_t> fractions = Round(SumOfFractions(), numerators, denominator_);
  std::vector<std::int64_t> amounts;
  auto next = fractions.begin();
  for (const Share& share : shares_) amounts.push_back(IsAmount(share) ? std::get<std::int64_t>(share) : *next++);
  return amounts;
}

// What is left of each line when `own` is left of all of them.
std::vector<std::int64_t> Reduce(std::span<const std::int64_t> lines, std::int64_t whole, std::int64_t own) {
  if (own == whole) return {lines.begin(), lines.end()};
  std::vector<Wide> numerators;
  for (const std::int64_t line : lines) numerators.push_back(Wide{line} * own);
  return Round(own, numerators, whole);
}

template <typename Values>
void Negate(Values& values) {
  for (auto& value : values) value = -value;
}

}  // namespace

std::string_view RequireShare(std::string_view text) {
  if (text.find_first_of("%/") == std::string_view::npos && HasAmountForm(text)) return text;
  const std::optional<Fraction> fraction = ReadFraction(text);
  if (!fraction && text.starts_with('-') && ReadFraction(text.substr(1))) {
    throw InvalidInput("share " + Quoted(text) +
                       " is below zero, and percentages and fractions are of what is debited; give what a partner "
                       "bears of what an entry credits as an amount like -120.00");
  }
  if (!fraction) {
    throw InvalidInput("share " + Quoted(text) +
                       " is not acceptable; write a percentage like 50% or 33.333333%, a fraction like 1/3, or an "
                       "amount like 120.00");
  }
  if (fraction->numerator == 0 || fraction->numerator > fraction->denominator) {
    throw InvalidInput("share " + Quoted(text) + " is " +
                       (fraction->numerator == 0 ? "nothing" : "more than the whole") +
                       "; give a part of it, up to 100%");
  }
  return text;
}

std::optional<Fraction> FractionOf(const ShareText& share) {
  return ReadFraction(share.Text());
}

std::variant<Split, SplitFault> SplitAmong(std::span<const std::int64_t> lines, std::span<const Share> shares) {
  std::vector<std::int64_t> parts(lines.begin(), lines.end());
  std::vector<Share> taken(shares.begin(), shares.end());
  std::int64_t whole = std::accumulate(parts.begin(), parts.end(), std::int64_t{0});
  const bool isNegative = whole < 0;
  if (isNegative) {
    whole = -whole;
    Negate(parts);
    for (Share& share : taken) {
      if (IsAmount(share)) share = -std::get<std::int64_t>(share);
    }
  }
  Sharing sharing(whole, taken);
  if (const auto fault = sharing.Check()) return *fault;
  Split split;
  split.partners = sharing.Amounts();
  split.own =
      Reduce(parts, whole, std::accumulate(split.partners.begin(), split.partners.end(), whole, std::minus<>()));
  if (isNegative) {
    Negate(split.partners);
    Negate(split.own);
  }
  return split;
}

}  // namespace standalone
