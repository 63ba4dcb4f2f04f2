#include "Frame/NullHost.h"

#include <new>

#include "MultiEntityHostHelpers/AbsentServices.h"

namespace {

class NullHost final : public Absent::Host, public Absent::MultiEntityDBManager, public Platform {
 public:
  void GetLocalTime(_SYSTEMTIME&) override {}
  TimerId SetTimer(TimerId, std::uint32_t, TimerProcedure) override { return 0; }
  void KillTimer(TimerId) noexcept override {}
  LibraryHandle LoadLibraryA(const char*) override { return nullptr; }
  LibraryEntry GetProcAddress(LibraryHandle, const char*) override { return nullptr; }
  void FreeLibrary(LibraryHandle) noexcept override {}
  void* LocalAlloc(std::uint32_t, std::size_t) override { throw std::bad_alloc(); }
  void LocalFree(void*) noexcept override {}
};

constinit NullHost nullHost;

constinit const HostServices nullServices = nullHost.Services(nullHost, &nullHost);

}  // namespace

const HostServices& NullHostServices() noexcept {
  return nullServices;
}
