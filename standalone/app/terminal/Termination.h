#pragma once

#include <functional>
#include <memory>
#include <string>

namespace app {

// What ends a program that stays open.
enum class TerminationCause {
  kEndOfInput,
  kInterrupt,  // Ctrl-C
  kTerminate,  // the system or another program asks it to end, or its terminal is gone
};

// All are called on the watching thread.
struct TerminationHandlers {
  // Each line of standard input, without its end.
  std::function<void(std::string line)> onLine;
  // Once.
  std::function<void(TerminationCause cause)> onEnd;
  // Each line that is longer than kLongestTypedLine, which is dropped; as soon as it is.
  std::function<void()> onLongLine = nullptr;
  // Otherwise standard input is left alone, and its end ends nothing: a service has none.
  bool watchesInput = true;
};

// Watches standard input and what asks the program to end, as long as this lives; one at a time. Afterwards the program
// is ended again as it was before.
class Termination {
 public:
  // Throws std::runtime_error when the system refuses.
  explicit Termination(TerminationHandlers handlers);
  Termination(const Termination&) = delete;
  Termination& operator=(const Termination&) = delete;
  ~Termination();

 private:
  class Watch;

  std::unique_ptr<Watch> watch_;
};

}  // namespace app
