#pragma once

#include <cstdint>
#include <string>

namespace standalone {

// How much of what waits for a person of the company.
struct WaitingWork {
  std::int64_t requests = 0;     // of partners, to be accepted or rejected
  std::int64_t cameBack = 0;     // transactions, from partners
  std::int64_t ofBefore = 0;     // those of version 1.0 that were sent by partners or are pending
  std::int64_t partners = 0;     // that have accepted an invitation, to be confirmed
  std::int64_t outstanding = 0;  // what partners told and could not be applied
  std::int64_t relations = 0;    // that are pending

  friend bool operator==(const WaitingWork&, const WaitingWork&) = default;
};

// "2 requests of partners to answer, 1 transaction that came back"; empty for nothing.
std::string WaitingText(const WaitingWork& waiting);

}  // namespace standalone
