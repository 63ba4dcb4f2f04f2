#pragma once

#include <optional>
#include <string_view>

namespace standalone {

// What has become of a partner's request here.
enum class InboxState {
  kNew,          // waits for a person or a rule
  kHeld,         // takes back a request that is not booked here, so that there is nothing to take back yet
  kAccepted,     // and booked
  kToBookAgain,  // was accepted, and these books lost the entry
  kRejected,
  kRefused,  // its request id belongs to something else
  kWithdrawn,
};

// "new", "held", "accepted", "to-book-again", "rejected", "refused", "withdrawn".
std::string_view NameOf(InboxState state) noexcept;
// None for another text.
std::optional<InboxState> InboxStateOf(std::string_view name) noexcept;

}  // namespace standalone
