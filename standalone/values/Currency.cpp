#include "standalone/values/Currency.h"

#include <algorithm>
#include <array>

namespace standalone {

namespace {

using namespace std::string_view_literals;

// ISO 4217 has two for all others but these.
constexpr std::array kOfNone{"BIF"sv, "CLP"sv, "DJF"sv, "GNF"sv, "ISK"sv, "JPY"sv, "KMF"sv, "KRW"sv, "PYG"sv,
                             "RWF"sv, "UGX"sv, "UYI"sv, "VND"sv, "VUV"sv, "XAF"sv, "XOF"sv, "XPF"sv};
constexpr std::array kOfThree{"BHD"sv, "IQD"sv, "JOD"sv, "KWD"sv, "LYD"sv, "OMR"sv, "TND"sv};
constexpr std::array kOfFour{"CLF"sv, "UYW"sv};

constexpr std::array<std::string_view, Decimals::kMost + 1> kWords{"none", "one", "two", "three", "four"};

template <typename Codes>
bool Has(const Codes& codes, std::string_view code) noexcept {
  return std::ranges::find(codes, code) != codes.end();
}

}  // namespace

Decimals DecimalsOf(std::string_view currency) noexcept {
  if (Has(kOfNone, currency)) return Decimals(0);
  if (Has(kOfThree, currency)) return Decimals(3);
  return Has(kOfFour, currency) ? Decimals(4) : kTwoDecimals;
}

std::string_view InWords(Decimals decimals) noexcept {
  return kWords.at(decimals.Count());
}

}  // namespace standalone
