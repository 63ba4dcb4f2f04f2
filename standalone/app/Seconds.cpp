#include "standalone/app/Seconds.h"

namespace app {

std::string SecondsText(std::chrono::seconds seconds) {
  return std::to_string(seconds.count()) + (seconds.count() == 1 ? " second" : " seconds");
}

}  // namespace app
