#pragma once

#include <functional>
#include <string_view>

#include "standalone/app/terminal/Output.h"

namespace app {

// Where a command tells what happens while it runs: a text for people, printed at once, or an event for programs.
class Screen {
 public:
  using Events = std::function<void(const Json& event)>;

  // With `events`, each event goes there and nothing is printed.
  explicit Screen(Events events = {}) : events_(std::move(events)) {}

  void Tell(const Json& event, std::string_view forPeople) const;
  bool IsForPeople() const noexcept { return !events_; }

 private:
  Events events_;
};

}  // namespace app
