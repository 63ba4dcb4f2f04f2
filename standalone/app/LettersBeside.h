#pragma once

#include <chrono>
#include <functional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "platform/ChildProcess.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Workers.h"
#include "standalone/desk/json/Json.h"

namespace app {

// Letters that another run of this program has carried, or why it could not; neither when there is nothing to tell.
struct CarriedBeside {
  desk::Json partners = desk::Json::array();
  std::string failure;
};

// Carries the letters of a company that this program keeps open, by this program once more: at once, again as soon as
// there may be something to carry, and so long after each run. Nobody waits for it, and each run reads the switches
// anew, which the module keeps. While another program carries for the company, the user may not, the feature is off or
// nobody is paired, it is left at that.
class LettersBeside {
 public:
  // Told on a thread of this, of one run at a time; of what is amiss once as long as it stays the same.
  using OnCarried = std::function<void(CarriedBeside carried)>;

  LettersBeside(const GlobalOptions& options, std::string file, std::chrono::seconds every, OnCarried onCarried);
  LettersBeside(const LettersBeside&) = delete;
  LettersBeside& operator=(const LettersBeside&) = delete;
  // Ends a run that is under way, at once.
  ~LettersBeside();

  // Ends what is under way and carries once more, for so long at most; on this thread. For good.
  void CarryAtLast(std::chrono::seconds most);

 private:
  void Keep();
  void End();
  void Tell(const platform::EndedProcess& ended);

  std::string file_;
  std::vector<Carrying> carrying_;
  std::chrono::seconds every_;
  OnCarried onCarried_;
  CarriedBeside last_;
  std::stop_source end_;
  std::jthread thread_;
};

}  // namespace app
