#include <cstdarg>
#include <memory>
#include <string>
#include <string_view>

#include "MultiEntityDriver/AttachedHost.h"
#include "MultiEntityUtils/MultiEntityUtils.h"
#include "MultiEntityUtils/TwoDigits.h"

namespace {

Util::TString OwnName(const CName& name) {
  return name.GetName(nullptr, 0);
}

}  // namespace

Util::TString MultiEntityUtils::FormatDate(DateType32 date) {
  if (!date.ValidDate()) return {};
  return std::string_view(TwoDigits(date.GetMonth()) + '/' + TwoDigits(date.GetDay()) + '/' +
                          std::to_string(date.GetYear()));
}

Util::TString MultiEntityUtils::GetHomeCurrencyCode() {
  PrefsTag& preferences = Host().preferences;
  if (preferences.PrefGetPrefHandle() && preferences.GetUseMultiCurrency()) {
    CCurrency currency(preferences, kFeatureTypeStandard);
    preferences.GetHomeCurrency(currency);
    if (currency.IsValid()) return currency.GetCode();
  }
  return "USD";
}

Util::TString MultiEntityUtils::GetQualifiedTxnName(const TargType& line, std::int16_t txnType) {
  if (txnType == kTxnTypeJournalEntry) return line.GetStrMemo();

  const CName name = line.GetTransactionName();
  const Util::TString ownName = OwnName(name);
  Util::TString prefix;
  for (CName parent = name.GetParent(); parent.IsValid(); parent = parent.GetParent()) {
    FormatString(prefix, "%s%s%s", OwnName(parent).c_str(), ":", prefix.c_str());
  }
  Util::TString qualifiedName;
  FormatString(qualifiedName, "%s%s", prefix.c_str(), ownName.c_str());
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
