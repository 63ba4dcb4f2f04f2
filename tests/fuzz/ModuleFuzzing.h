#pragma once

#include "fuzz/Fuzzing.h"
#include "support/AttachedHost.h"

namespace fuzzing {

// A scripted host attached to the module for one input; an object that the module leaves open ends the run.
class Host : public ScriptedHost {
 public:
  Host() { Forget(); }

  std::size_t CountOf(std::string_view name) const { return CallsOf({name}).size(); }
  // Whether some line of the log is exactly that text.
  bool Logged(std::string_view text) const {
    for (const LogLine& line : Lines()) {
      if (line.message == text) return true;
    }
    return false;
  }

 private:
  Attachment attachment_{Services()};
};

}  // namespace fuzzing

extern "C" inline int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  GTEST_FLAG_SET(break_on_failure, true);
  return 0;
}
