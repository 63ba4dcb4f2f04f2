#include "standalone/app/terminal/Screen.h"

namespace app {

void Screen::Tell(const Json& event, std::string_view forPeople) const {
  if (events_) {
    events_(event);
    return;
  }
  Print(forPeople);
  FinishPrinting();
}

}  // namespace app
