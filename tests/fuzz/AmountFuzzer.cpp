#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "fuzz/BooksFuzzing.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Currency.h"

// Amount texts of people, files and partners.

namespace {

using fuzzing::Require;
using standalone::Decimals;
using standalone::FormatAmount;
using standalone::HasAmountForm;
using standalone::kLargestAmount;
using standalone::ParseAmount;

// Sign, whole digits without leading zeros and all decimals, found without arithmetic.
std::string Canonical(std::string text, Decimals count) {
  std::erase(text, ',');
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.erase(0, 1);
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string whole = text.substr(0, point);
  std::string decimals = point < text.size() ? text.substr(point + 1) : "";
  decimals.resize(count.Count(), '0');
  whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size() - 1));
  const bool isZero = whole == "0" && decimals.find_first_not_of('0') == std::string::npos;
  return (isNegative && !isZero ? "-" : "") + whole + (decimals.empty() ? "" : "." + decimals);
}

void CheckText(std::string_view text, Decimals decimals) {
  const std::optional<std::int64_t> amount = ParseAmount(text, decimals);
  if (!amount) return;

  Require(HasAmountForm(text), "an amount of a currency is one of some currency");
  Require(*amount >= -kLargestAmount && *amount <= kLargestAmount, "an amount is not beyond the largest");
  const std::string shown = FormatAmount(*amount, decimals);
  Require(Canonical(std::string(text), decimals) == Canonical(shown, decimals),
          "an amount is printed as it was written");
  Require(ParseAmount(shown, decimals) == *amount, "a printed amount is read back");
}

void CheckNumber(std::int64_t number, Decimals decimals) {
  const bool isAmount = number >= -kLargestAmount && number <= kLargestAmount;
  Require(ParseAmount(FormatAmount(number, decimals), decimals) == (isAmount ? std::optional(number) : std::nullopt),
          "any number is printed for reading");
}

// A company of each number of decimals that a currency has.
struct Company {
  fuzzing::Books books;
  Decimals decimals;

  explicit Company(const char* currency) : books(currency), decimals(standalone::DecimalsOf(currency)) {}
};

void CheckService(Company& company, std::string_view text, std::int64_t number) {
  standalone::StandaloneHost& host = company.books.Host();
  host.Request(standalone::Access::kRead, [&] {
    constexpr std::int64_t kBefore = 4711;
    BalType money{kBefore};
    Money& service = host.Services().money;
    service.String2Dollar(money, std::string(text).c_str());
    const bool hasNul = text.find('\0') != std::string_view::npos;
    if (!hasNul) {
      Require(money.minorUnits == ParseAmount(text, company.decimals).value_or(kBefore),
              "the host's money reads what the amount is");
    }

    constexpr std::size_t kScreenWidth = 30;
    std::array<char, kScreenWidth> buffer{};
    service.Money2Str_s(buffer.data(), buffer.size(), BalType{number}, kMoneyFormatDisplay);
    Require(FormatAmount(number, company.decimals) == buffer.data(), "any number fits the screen's text");
  });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static std::array<Company, 4> companies{Company("JPY"), Company("USD"), Company("KWD"), Company("CLF")};
  const std::string_view text = fuzzing::Text(bytes, size);
  std::int64_t number = 0;
  std::memcpy(&number, bytes, std::min(size, sizeof number));
  for (std::int64_t count = 0; count <= Decimals::kMost; ++count) {
    CheckText(text, Decimals(count));
    CheckNumber(number, Decimals(count));
  }
  for (Company& company : companies) CheckService(company, text, number);
  return 0;
}
