#include "standalone/company/BridgeHost.h"

#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

#include "MultiEntityHost/Bridge.h"
#include "platform/NativePlatform.h"
#include "standalone/company/StandaloneHost.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

std::uint8_t IsAccountant(void* host) {
  return static_cast<StandaloneHost*>(host)->CurrentUserIsAccountant() ? 1 : 0;
}

std::int32_t SyncNeedOf(void* host) {
  return static_cast<StandaloneHost*>(host)->Pending().Need();
}

constexpr const char* kSetAnswers = "SetBridgeAnswers";

[[noreturn]] void RefuseBridge(const std::filesystem::path& library, const std::string& why) {
  throw std::runtime_error("The bridge library " + PathText(library) + " " + why +
                           "; install the one of the same release as this program, or take it away.");
}

// Null without one.
LibraryHandle LoadBridge() {
  const std::optional<std::filesystem::path> library = platform::BesideTheProgram(kBridgeLibrary);
  if (!library) return nullptr;
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(*library, error);
  if (status.type() == std::filesystem::file_type::not_found) return nullptr;
  if (!std::filesystem::is_regular_file(status)) RefuseBridge(*library, "is no file");
  const LibraryHandle loaded = NativePlatform().LoadLibraryA(kBridgeLibrary);
  if (loaded == nullptr) RefuseBridge(*library, "cannot be loaded");
  for (const char* const entry : {kBridgeIsAccountant, kBridgeNeedsSync, kSetAnswers}) {
    if (NativePlatform().GetProcAddress(loaded, entry) != nullptr) continue;
    NativePlatform().FreeLibrary(loaded);
    RefuseBridge(*library, std::string("has no entry ") + entry);
  }
  return loaded;
}

}  // namespace

BridgeHost::BridgeHost(StandaloneHost& host) : library_(LoadBridge()) {
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
      reinterpret_cast<decltype(&SetBridgeAnswers)>(NativePlatform().GetProcAddress(library_, kSetAnswers));
  setAnswers(answers);
}

}  // namespace standalone
