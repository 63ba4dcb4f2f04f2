#include "standalone/values/PairingState.h"

#include <array>
#include <utility>

namespace standalone {

namespace {

constexpr std::array<std::pair<PairingState, std::string_view>, 6> kNames{{{PairingState::kInvited, "invited"},
                                                                           {PairingState::kAnswered, "answered"},
                                                                           {PairingState::kAccepted, "accepted"},
                                                                           {PairingState::kEstablished, "established"},
                                                                           {PairingState::kBlocked, "blocked"},
                                                                           {PairingState::kRemoved, "removed"}}};

}  // namespace

std::string_view NameOf(PairingState state) noexcept {
  for (const auto& [known, name] : kNames) {
    if (known == state) return name;
  }
  return {};
}

std::optional<PairingState> PairingStateOf(std::string_view name) noexcept {
  for (const auto& [state, known] : kNames) {
    if (known == name) return state;
  }
  return std::nullopt;
}

}  // namespace standalone
