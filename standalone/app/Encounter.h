#pragma once

#include <optional>
#include <string>

#include "standalone/app/Dialogue.h"
#include "standalone/app/terminal/Output.h"
#include "standalone/app/terminal/Screen.h"
#include "standalone/desk/results/Person.h"

namespace app {

class Invocation;

// Whoever is asked and shown things while a command runs: at once for people, for programs as a list of events.
class Encounter {
 public:
  Encounter(const Invocation& invocation, std::string file, std::optional<bool> answer);
  Encounter(const Encounter&) = delete;
  Encounter& operator=(const Encounter&) = delete;
  ~Encounter() = default;

  // This outlives it.
  desk::Person Person();
  bool HasAsked() const noexcept { return hasAsked_; }
  // In the order in which they happened; empty when they were printed.
  const Json& Events() const noexcept { return events_; }

 private:
  std::string file_;
  bool hasAsked_ = false;
  Json events_ = Json::array();
  Screen screen_;
  Dialogue dialogue_;
};

}  // namespace app
