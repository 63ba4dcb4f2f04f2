#pragma once

#include <string>
#include <string_view>

#include "standalone/values/CheckedText.h"

namespace desk {

// A partner company as people call it: by its realm id, or by its name in the relation with it.
class Partner {
 public:
  // 1 to 59 bytes; throws standalone::InvalidInput.
  explicit Partner(std::string_view text) : text_(standalone::RequireText("The partner", text, 1, kLongest)) {}
  Partner(const standalone::RealmId& realm) : text_(realm.Text()) {}

  const std::string& Text() const noexcept { return text_; }

 private:
  static constexpr std::size_t kLongest = 59;

  std::string text_;
};

}  // namespace desk
