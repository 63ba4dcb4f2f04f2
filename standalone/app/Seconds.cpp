#include "standalone/app/Seconds.h"

#include <cstdint>

#include "standalone/app/Values.h"
#include "standalone/values/Counted.h"

namespace app {

std::string SecondsText(std::chrono::seconds seconds) {
  return standalone::Counted(seconds.count(), "second");
}

std::chrono::seconds HowOften(const std::optional<std::string>& every) {
  constexpr std::int32_t kMinute = 60;
  constexpr std::int32_t kDay = 24 * 60 * kMinute;
  return std::chrono::seconds(every ? WholeNumber("--every", *every, 1, kDay) : kMinute);
}

}  // namespace app
