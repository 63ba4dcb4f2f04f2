#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

enum class Ending {
  kByItself,
  kKilled,   // by us
  kCrashed,  // by a signal that we did not send
};

// One run of a program.
struct ProgramRun {
  Ending ending = Ending::kByItself;
  int code = 0;              // the exit code, or the signal
  bool hadFileOpen = false;  // the watched file, right before the program was killed
  std::string out{};         // all that it printed, however it ended
  std::string err{};
  std::chrono::nanoseconds took{};
  int changes = 0;  // how often something was seen to have changed in the watched folders
};

struct RunOptions {
  std::filesystem::path directory{};    // where it works
  std::filesystem::path watchedFile{};  // see ProgramRun::hadFileOpen
  // SIGKILL, counted from its start, or kWhenItPrints; never when left out.
  std::optional<std::chrono::nanoseconds> killAfter{};
  std::vector<std::filesystem::path> watchedFolders{};
  // SIGKILL once so many changes were seen in these.
  std::optional<int> killAtChange{};
};

// How soon a program is killed that is killed as soon as it prints.
inline constexpr std::chrono::nanoseconds kWhenItPrints{-1};

// Runs `words` (the program's full path first) without input and waits for the end, also of programs that it started.
ProgramRun Run(const std::vector<std::string>& words, const RunOptions& options);
