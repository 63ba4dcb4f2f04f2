#pragma once

#include "Frame/AttachedHost.h"
#include "MultiEntityHost/Bridge.h"

// The host's bridge library, loaded for as long as this object lives.
class BridgeLibrary {
 public:
  BridgeLibrary() : handle_(Host().platform->LoadLibraryA(kBridgeLibrary)) {}
  BridgeLibrary(const BridgeLibrary&) = delete;
  BridgeLibrary& operator=(const BridgeLibrary&) = delete;
  ~BridgeLibrary() {
    if (handle_ != nullptr) Host().platform->FreeLibrary(handle_);
  }

  bool IsLoaded() const noexcept { return handle_ != nullptr; }

  // Null when the loaded library has no such entry.
  template <class Procedure>
  Procedure Entry(const char* name) const {
    return reinterpret_cast<Procedure>(Host().platform->GetProcAddress(handle_, name));
  }

 private:
  LibraryHandle handle_;
};
