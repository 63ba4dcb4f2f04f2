#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace platform {

// How a program ended, and what it printed.
struct EndedProcess {
  int exitCode = 0;  // of one that a signal ended 128 and its number; on Windows what it was ended with
  std::string output;
  std::string errors;
};

// A program that runs beside this one, without input; Ctrl-C does not reach it. It is ended at once when this one ends,
// however that comes about.
class ChildProcess {
 public:
  // Starts it; the arguments behind its name are in UTF-8. Throws std::system_error when it cannot be started.
  ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  // Ends it at once unless it has ended.
  ~ChildProcess();

  // Takes what it prints until it ends. Once, on the thread that started it, which does not end before.
  EndedProcess Wait();
  // Ends it at once; from any thread while this lives, also when it has ended by itself.
  void End() noexcept;

 private:
  class Child;

  std::unique_ptr<Child> child_;
};

}  // namespace platform
