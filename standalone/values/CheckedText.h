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
// What a person says of a transaction or a line, 0 to 4000 bytes, without blanks at its ends.
using Memo = CheckedText<RequireMemo>;
// What a person says about a request to the partner, 1 to 4000 bytes, without blanks at its ends.
using RemarkText = CheckedText<RequireRemark>;
// What the paper of a transaction calls it, 0 to 100 bytes, without blanks at its ends.
using DocumentNumber = CheckedText<RequireDocumentNumber>;
// Where the paper is, 1 to 4000 bytes.
using Attachment = CheckedText<RequireAttachment>;

}  // namespace standalone
