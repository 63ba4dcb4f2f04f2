#pragma once

#include <string>
#include <string_view>

#include "standalone/values/Text.h"

namespace standalone {

// A text that has been found to be what its kind asks for, so that whoever is handed one need not look again.
template <std::string_view (*kRequire)(std::string_view text)>
class CheckedText {
 public:
  // Throws InvalidInput.
  explicit CheckedText(std::string_view text) : text_(kRequire(text)) {}

  const std::string& Text() const noexcept { return text_; }

 private:
  std::string text_;
};

// A company's realm id, 1 to 19 bytes.
using RealmId = CheckedText<RequireRealmId>;
// What both companies call a request, 1 to 36 bytes.
using RequestId = CheckedText<RequireRequestId>;
// 1 to 59 bytes.
using PartnerName = CheckedText<RequirePartnerName>;
// The partner's own id of a transaction, 1 to 36 bytes.
using PartnerTxnId = CheckedText<RequirePartnerTxnId>;

}  // namespace standalone
