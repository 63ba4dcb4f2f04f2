#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include "MultiEntity/Records.h"

namespace app {

// What the program ends with.
enum ExitCode : int {
  kExitDone = 0,
  kExitNotDone = 1,      // the module answered something else than 1, or the work could not be finished
  kExitBadInput = 2,     // usage, or a value that is not acceptable
  kExitCompanyFile = 3,  // the company file cannot be opened or created
};

// The module declined a request: its answer, what that means here and what to do about it.
class Declined : public std::runtime_error {
 public:
  Declined(MEStatusCode answer, std::string meaning, std::string hint)
      : std::runtime_error("status " + std::to_string(static_cast<std::int32_t>(answer)) + ": " + meaning),
        status(answer),
        meaning_(std::move(meaning)),
        hint_(std::move(hint)) {}

  const MEStatusCode status;
  const std::string& Meaning() const noexcept { return meaning_; }
  const std::string& Hint() const noexcept { return hint_; }

 private:
  std::string meaning_;
  std::string hint_;
};

}  // namespace app
