#pragma once

#include <optional>
#include <string_view>

namespace standalone {

// How far this company and a partner have got to know each other.
enum class PairingState {
  kInvited,   // this company has invited somebody
  kAnswered,  // somebody has accepted, and a person has to see that it is the partner
  kAccepted,  // this company has accepted an invitation, and the partner has to confirm
  kEstablished,
  kBlocked,  // nothing is sent, nothing is taken
  kRemoved,
};

// "invited", "answered", "accepted", "established", "blocked", "removed".
std::string_view NameOf(PairingState state) noexcept;
// None for another text.
std::optional<PairingState> PairingStateOf(std::string_view name) noexcept;

}  // namespace standalone
