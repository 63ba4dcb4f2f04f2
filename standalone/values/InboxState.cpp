#include "standalone/values/InboxState.h"

#include <array>
#include <utility>

namespace standalone {

namespace {

constexpr std::array<std::pair<InboxState, std::string_view>, 7> kNamesOfInbox{
    {{InboxState::kNew, "new"},
     {InboxState::kHeld, "held"},
     {InboxState::kAccepted, "accepted"},
     {InboxState::kToBookAgain, "to-book-again"},
     {InboxState::kRejected, "rejected"},
     {InboxState::kRefused, "refused"},
     {InboxState::kWithdrawn, "withdrawn"}}};

}  // namespace

std::string_view NameOf(InboxState state) noexcept {
  for (const auto& [known, name] : kNamesOfInbox) {
    if (known == state) return name;
  }
  return {};
}

std::optional<InboxState> InboxStateOf(std::string_view name) noexcept {
  for (const auto& [state, known] : kNamesOfInbox) {
    if (known == name) return state;
  }
  return std::nullopt;
}

}  // namespace standalone
