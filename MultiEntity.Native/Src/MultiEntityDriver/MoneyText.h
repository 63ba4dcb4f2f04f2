#pragma once

#include <array>
#include <cstddef>

#include "Frame/AttachedHost.h"
#include "MultiEntityHost/TString.h"

// An amount as the screens show it.
inline Util::TString MoneyText(BalType amount) {
  constexpr std::size_t kSize = 30;
  std::array<char, kSize> text{};
  Host().money.Money2Str_s(text.data(), text.size(), amount, kMoneyFormatDisplay);
  return text.data();
}
