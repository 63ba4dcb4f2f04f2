#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace partners {

// How a process comes to its end in the middle of what it does.
struct Death {
  int atWriting = 0;         // the one of which it dies, counted from 1
  bool isPowerLost = false;  // of what was written and not brought to the disk, a part is lost
  std::uint32_t chance = 0;  // how much of the last writing is done, and what is lost
};

struct Ended {
  bool hasDied = false;
  int code = 0;      // that `act` returned, if it has not died
  std::string text;  // that it left; of a process that has died, what it wrote into
};

// Does `act` in a process of its own, which dies as soon as it has written to disks so often: bytes, lengths and names
// of files, and what it brings to the disk. So the files are left as a program leaves them that is killed, or a machine
// whose power fails. No company may be open meanwhile.
Ended DieDuring(const Death& death, const std::function<int(std::string& text)>& act);

}  // namespace partners
