#pragma once

#include <stdexcept>
#include <string>

namespace app {

// What the program ends with.
enum ExitCode : int {
  kExitDone = 0,
  kExitNotDone = 1,      // the module answered something else than 1, or the work could not be finished
  kExitBadInput = 2,     // usage, or a value that is not acceptable
  kExitCompanyFile = 3,  // the company file cannot be opened or created
  kExitNotTold = 4,      // the work is saved, but what it came to could not be printed
  kExitNotKnown = 5,     // the disk failed while the work was saved, which may be there or not
};

// A failure that is told like any other and ends the program with a code of its own.
class FailedWith : public std::runtime_error {
 public:
  FailedWith(ExitCode code, const std::string& what) : std::runtime_error(what), code_(code) {}
  ExitCode Code() const noexcept { return code_; }

 private:
  ExitCode code_;
};

}  // namespace app
