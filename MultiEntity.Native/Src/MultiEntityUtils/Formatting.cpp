#include <array>
#include <charconv>
#include <cstdarg>
#include <memory>
#include <string_view>

#include "Frame/AttachedHost.h"
#include "MultiEntityUtils/MultiEntityUtils.h"

namespace {

// Made once, so that handing them out copies no characters.
const Util::TString kDefaultCurrencyCode("USD");
const Util::TString kParentPattern("%s%s%s");
const Util::TString kNamePattern("%s%s");

// A valid day or month.
char* AppendTwoDigits(char* end, int number) noexcept {
  *end++ = static_cast<char>('0' + number / 10);
  *end++ = static_cast<char>('0' + number % 10);
  return end;
}

Util::TString OwnName(const CName& name) {
  return name.GetName(nullptr, 0);
}

}  // namespace

Util::TString MultiEntityUtils::FormatDate(DateType32 date) {
  if (!date.ValidDate()) return {};
  // A valid date's year has at most five digits.
  std::array<char, 16> text{};
  char* end = AppendTwoDigits(text.data(), date.GetMonth());
  *end++ = '/';
  end = AppendTwoDigits(end, date.GetDay());
  *end++ = '/';
  end = std::to_chars(end, text.data() + text.size(), date.GetYear()).ptr;
  return std::string_view(text.data(), static_cast<std::size_t>(end - text.data()));
}

Util::TString MultiEntityUtils::GetHomeCurrencyCode() {
  PrefsTag& preferences = Host().preferences;
  if (preferences.PrefGetPrefHandle() && preferences.GetUseMultiCurrency()) {
    CCurrency currency(preferences, kFeatureTypeStandard);
    preferences.GetHomeCurrency(currency);
    if (currency.IsValid()) return currency.GetCode();
  }
  return kDefaultCurrencyCode;
}

Util::TString MultiEntityUtils::GetQualifiedTxnName(const TargType& line, std::int16_t txnType) {
  if (txnType == kTxnTypeJournalEntry) return line.GetStrMemo();

  const CName name = line.GetTransactionName();
  const Util::TString ownName = OwnName(name);
  Util::TString prefix;
  for (CName parent = name.GetParent(); parent.IsValid(); parent = parent.GetParent()) {
    FormatString(prefix, kParentPattern, OwnName(parent).c_str(), ":", prefix.c_str());
  }
  Util::TString qualifiedName;
  FormatString(qualifiedName, kNamePattern, prefix.c_str(), ownName.c_str());
  return qualifiedName;
}

void MultiEntityUtils::FormatWithHost(Util::TString& target, const char* pattern, ...) {
  const auto release = [](char* text) noexcept {
    Host().runtime.GetMemoryManager().Release(text);
  };
  std::va_list arguments;
  va_start(arguments, pattern);
  const std::unique_ptr<char, decltype(release)> formatted(Host().runtime.FormatStringV(pattern, arguments), release);
  va_end(arguments);
  if (formatted != nullptr) target = Util::TString(formatted.get());
}
