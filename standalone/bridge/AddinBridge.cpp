#include "standalone/bridge/AddinBridge.h"

#if defined(_WIN32)
#define BRIDGE_ENTRY __declspec(dllexport)
#else
#define BRIDGE_ENTRY [[gnu::visibility("default")]]
#endif

namespace {

constinit BridgeAnswers currentAnswers{};

// Nothing is thrown through the entries: who calls them knows no exceptions.
template <typename Answer>
Answer Ask(Answer (*answer)(void* host)) noexcept {
  if (answer == nullptr) return 0;
  try {
    return answer(currentAnswers.host);
  } catch (...) {
    return 0;
  }
}

}  // namespace

extern "C" {

BRIDGE_ENTRY void SetBridgeAnswers(const BridgeAnswers* answers) {
  currentAnswers = answers != nullptr ? *answers : BridgeAnswers{};
}

BRIDGE_ENTRY std::uint8_t IsSybaseAccountant() {
  return Ask(currentAnswers.isSybaseAccountant);
}

BRIDGE_ENTRY std::int32_t NeedDataSyncUp() {
  return Ask(currentAnswers.needDataSyncUp);
}
}
