#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/results/ListItem.h"
#include "standalone/values/Money.h"
#include "standalone/values/PairingState.h"

namespace desk {

// Under which somebody writes as the partner, and whose letters wait until a person has compared the fingerprint.
struct OfferedKey {
  std::string fingerprint;
  bool isAnnounced = false;  // by the partner's key of now; whoever has stolen that can do so, too
};

// A company with which this one is paired, or is about to be.
struct PairedPartner {
  std::int32_t id = 0;
  std::string name;   // as people call the partner here
  std::string realm;  // empty until the partner is known
  standalone::PairingState state{};
  bool invitedByUs = false;
  std::string fingerprint;  // of the partner's key; empty until the partner is known
  std::optional<ListItem> dueFrom;
  std::optional<ListItem> dueTo;
  std::filesystem::path folder;          // where letters are put and looked for; empty for none
  bool hasLetterToSend = false;          // what the partner has not shown to hold
  std::vector<std::string> outstanding;  // what came and could not be applied, and why
  // What came and says what only a later version understands, and why this one does not; it asks nothing of anybody.
  std::vector<std::string> notUnderstood{std::vector<std::string>()};
  std::vector<OfferedKey> offeredKeys{std::vector<OfferedKey>()};
  // Requests up to it that a rule fits are booked without a person; none of them without it.
  std::optional<standalone::Money> bookedUpTo = std::nullopt;
};

}  // namespace desk
