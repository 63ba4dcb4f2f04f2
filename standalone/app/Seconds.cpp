#include "standalone/app/Seconds.h"

#include "standalone/values/Counted.h"

namespace app {

std::string SecondsText(std::chrono::seconds seconds) {
  return standalone::Counted(seconds.count(), "second");
}

}  // namespace app
