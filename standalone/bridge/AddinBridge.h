#pragma once

#include <cstdint>

// The library through which the intercompany module asks the host. It knows nothing itself: the host loads it first,
// hands it the functions that answer, and takes them back before it lets go of it. One thread uses it.
extern "C" {

// The functions that answer, each called with `host`. What they throw ends in the library, as an answer of 0.
struct BridgeAnswers {
  void* host;
  std::uint8_t (*isSybaseAccountant)(void* host);
  std::int32_t (*needDataSyncUp)(void* host);
};

// Copies `answers`; null takes them back.
void SetBridgeAnswers(const BridgeAnswers* answers);

// 1 when the user is an accountant, 0 when not or when there is nobody to ask.
std::uint8_t IsSybaseAccountant();

// 1 when intercompany transactions wait, 2 when a relation does, 3 when both do, 0 when nothing waits or there is
// nobody to ask.
std::int32_t NeedDataSyncUp();
}
