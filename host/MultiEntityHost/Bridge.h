#pragma once

#include <cstdint>

// The library of its own beside the program through which the module asks what only the host's other parts know. The
// module loads it by this name each time it asks, and lets go of it before it shows anything; without it nobody is an
// accountant and no reminder comes.
inline constexpr const char* kBridgeLibrary = "AddinBridge.DLL";

// The entries, plain C functions without arguments that throw nothing.
//
// Whether the signed-in user is an accountant: `unsigned char ()`, any other answer than 0 is yes.
inline constexpr const char* kBridgeIsAccountant = "IsSybaseAccountant";
// What needs the user's attention: `std::int32_t ()`, a SyncNeed; any other number is nothing.
inline constexpr const char* kBridgeNeedsSync = "NeedDataSyncUp";

enum SyncNeed : std::int32_t {
  kNothingWaits = 0,
  kTransactionsWait = 1,
  kRelationsWait = 2,
  kTransactionsAndRelationsWait = 3,
};
