#pragma once

#include <map>
#include <string>

#include "partners/Group.h"
#include "partners/History.h"

namespace partners {

// How often acts were done and refused, had nothing to be done to, or ended in the middle.
struct Tally {
  struct Times {
    int done = 0;
    int refused = 0;
    int idle = 0;
    int died = 0;
  };
  std::map<Act, Times> times;
  std::map<std::string, int> diedWriting;  // into what
};

// Plays the history with the group, looks at the books after each step, and in the end at all of them when nothing is
// on its way any more. Throws Violation, or what a use case threw that is no refusal.
void PlayHistory(Group& group, const History& history, Tally& tally);

}  // namespace partners
