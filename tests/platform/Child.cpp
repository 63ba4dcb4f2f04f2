// What ChildProcessTest starts: does what its first argument says.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "platform/ChildProcess.h"
#include "platform/NativePlatform.h"
#include "platform/SharedFile.h"

namespace {

[[noreturn]] void NeverEnd() {
  while (true) std::this_thread::sleep_for(std::chrono::hours(1));
}

// An argument to each line.
int Tell(int count, char** arguments) {
  for (int i = 2; i < count; ++i) std::printf("%s\n", arguments[i]);
  return EXIT_SUCCESS;
}

// More than any pipe holds, now to the one and now to the other.
int Print(const char* kibibytes) {
  const std::string much(1024, 'm');
  for (int i = 0; i < std::atoi(kibibytes); ++i) {
    std::fwrite(much.data(), 1, much.size(), stdout);
    std::fwrite(much.data(), 1, much.size(), stderr);
  }
  return EXIT_SUCCESS;
}

// Whoever looks whether it is held has it for a moment.
[[noreturn]] void Hold(const char* file) {
  platform::SharedFile held = platform::SharedFile::OpenToAppend(file);
  while (!held.TryLock()) std::this_thread::yield();
  NeverEnd();
}

// As a child of its own.
int HaveHeld(const char* file) {
  return platform::ChildProcess(platform::OwnProgram().value(), {"hold", file}).Wait().exitCode;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string what = count > 1 ? arguments[1] : "";
  if (what == "tell") return Tell(count, arguments);
  if (what == "print") return Print(arguments[2]);
  if (what == "end-with") return std::atoi(arguments[2]);
  if (what == "crash") std::abort();
  if (what == "read") return std::getchar() == EOF ? EXIT_SUCCESS : EXIT_FAILURE;
  if (what == "hold") Hold(arguments[2]);
  if (what == "have-held") return HaveHeld(arguments[2]);
  NeverEnd();
}
