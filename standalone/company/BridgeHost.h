#pragma once

#include "MultiEntityHost/Platform.h"
#include "standalone/bridge/AddinBridge.h"

namespace standalone {

class StandaloneHost;

// Keeps the bridge library loaded and lets it answer for a host, as long as this lives. Without the library beside the
// program there is nothing to keep, and nobody is an accountant. One at a time. Throws std::runtime_error for something
// else of its name there.
class BridgeHost {
 public:
  explicit BridgeHost(StandaloneHost& host);
  BridgeHost(const BridgeHost&) = delete;
  BridgeHost& operator=(const BridgeHost&) = delete;
  ~BridgeHost();

  bool IsLoaded() const noexcept { return library_ != nullptr; }

 private:
  void HandOver(const BridgeAnswers* answers) noexcept;

  LibraryHandle library_;
};

}  // namespace standalone
