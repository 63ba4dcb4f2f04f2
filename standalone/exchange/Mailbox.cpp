#include "standalone/exchange/Mailbox.h"

namespace exchange {

std::string AddressOf(const PublicKey& key) {
  return HashOf(key.Bytes()).Hex().substr(0, kAddressDigits);
}

bool IsAddress(std::string_view text) noexcept {
  return text.size() == kAddressDigits && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

}  // namespace exchange
