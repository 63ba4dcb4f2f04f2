#include "standalone/company/BridgeHost.h"

#include <exception>

#include "MultiEntityHost/Bridge.h"
#include "platform/NativePlatform.h"
#include "standalone/company/StandaloneHost.h"

namespace standalone {

namespace {

std::uint8_t IsAccountant(void* host) {
  return static_cast<StandaloneHost*>(host)->CurrentUserIsAccountant() ? 1 : 0;
}

std::int32_t SyncNeedOf(void* host) {
  return static_cast<StandaloneHost*>(host)->Pending().Need();
}

}  // namespace

BridgeHost::BridgeHost(StandaloneHost& host) : library_(NativePlatform().LoadLibraryA(kBridgeLibrary)) {
  const BridgeAnswers answers{&host, &IsAccountant, &SyncNeedOf};
  HandOver(&answers);
}

BridgeHost::~BridgeHost() {
  HandOver(nullptr);
  if (library_ != nullptr) NativePlatform().FreeLibrary(library_);
}

void BridgeHost::HandOver(const BridgeAnswers* answers) noexcept {
  if (library_ == nullptr) return;
  const auto setAnswers =
      reinterpret_cast<decltype(&SetBridgeAnswers)>(NativePlatform().GetProcAddress(library_, "SetBridgeAnswers"));
  if (setAnswers != nullptr) setAnswers(answers);
}

}  // namespace standalone
