#pragma once

#include <optional>

#include "standalone/app/Dialogue.h"
#include "standalone/app/terminal/Output.h"
#include "standalone/app/terminal/Screen.h"

namespace app {

class Company;
class Invocation;

// Lets the host of a command show message boxes and open views of the plug-in: at once for people, for programs as a
// list of events. The company outlives this.
class Encounter {
 public:
  Encounter(const Invocation& invocation, Company& company, std::optional<bool> answer);
  Encounter(const Encounter&) = delete;
  Encounter& operator=(const Encounter&) = delete;
  // Nobody is there any more.
  ~Encounter();

  // In the order in which they happened; empty when they were printed.
  const Json& Events() const noexcept { return events_; }

 private:
  Company& company_;
  Json events_ = Json::array();
  Screen screen_;
  Dialogue dialogue_;
};

}  // namespace app
