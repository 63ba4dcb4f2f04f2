#pragma once

#include <gtest/gtest.h>

#include <future>
#include <string>
#include <utility>
#include <vector>

#include "standalone/app/terminal/Termination.h"

namespace app {

// What a watch for termination tells.
class TerminationRecord : public testing::Test {
 protected:
  TerminationHandlers Handlers() {
    return {[this](std::string line) { lines_.push_back(std::move(line)); },
            [this](TerminationCause cause) { ended_.set_value(cause); },
            [this] {
              ++longLines_;
            }};
  }

  TerminationCause Cause() { return ended_.get_future().get(); }

  std::vector<std::string> lines_;
  int longLines_ = 0;
  std::promise<TerminationCause> ended_;
};

}  // namespace app
