// The loop on Windows: the thread's own messages, among which are those of its timers.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <system_error>

#include "platform/LoopEvents.h"

namespace platform {

namespace {

class ThreadMessages final : public LoopEvents {
 public:
  ThreadMessages() : woken_(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    if (woken_ == nullptr) {
      throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), "The message loop");
    }
  }
  ~ThreadMessages() override { ::CloseHandle(woken_); }

  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override {
    return ::SetTimer(nullptr, timer, milliseconds, procedure);
  }
  void KillTimer(TimerId timer) noexcept override { ::KillTimer(nullptr, timer); }

  bool RunDue(const Dispatch& dispatch) override {
    MSG message;
    if (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) == 0) return false;
    dispatch(
        [&message] {
          ::TranslateMessage(&message);
          ::DispatchMessageW(&message);
        },
        message.message == WM_TIMER && message.hwnd == nullptr ? Due::kTimer : Due::kOther);
    return true;
  }

  void Sleep(std::optional<std::chrono::milliseconds> longest) override {
    const DWORD milliseconds = longest ? static_cast<DWORD>(longest->count()) : INFINITE;
    ::MsgWaitForMultipleObjectsEx(1, &woken_, milliseconds, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
  }

  void Wake() noexcept override { ::SetEvent(woken_); }

 private:
  HANDLE woken_;
};

}  // namespace

std::unique_ptr<LoopEvents> MakeLoopEvents(LoopClock& /*clock*/) {
  return std::make_unique<ThreadMessages>();
}

}  // namespace platform
