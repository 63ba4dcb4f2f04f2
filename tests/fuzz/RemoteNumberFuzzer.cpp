#include <cctype>
#include <cerrno>
#include <cstring>
#include <limits>
#include <optional>

#include "MultiEntity/MESchedulerUtil.h"
#include "fuzz/ModuleFuzzing.h"

// The two numbers that the remote configuration may hold: any text gives a number or the default, and is told to the
// log as it is.

namespace {

using fuzzing::Require;

// As the C library reads a number; nothing when there is none or it does not fit 32 bits.
std::optional<std::uint32_t> ByTheLibrary(const std::string& text) {
  const char* digits = text.c_str() + std::strspn(text.c_str(), " \t\n\v\f\r");
  const bool isNegative = *digits == '-';
  if (*digits == '-' || *digits == '+') ++digits;
  if (std::isdigit(static_cast<unsigned char>(*digits)) == 0) return std::nullopt;
  errno = 0;
  const unsigned long long value = std::strtoull(digits, nullptr, 10);
  if (errno == ERANGE || value > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  const auto magnitude = static_cast<std::uint32_t>(value);
  return isNegative ? 0U - magnitude : magnitude;
}

void Check(const std::string& text, std::uint32_t read, std::uint32_t byDefault, const fuzzing::Host& host,
           const std::string& valueLine, const std::string& errorLine) {
  const std::optional<std::uint32_t> expected = ByTheLibrary(text);
  Require(read == expected.value_or(byDefault), "a number is read as the C library reads it, or is the default");
  Require(host.Logged(valueLine + text.c_str()), "the value reaches the log unchanged");
  Require(host.Logged(errorLine) == (!text.empty() && !expected), "a value that is no number is reported");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string text(fuzzing::Text(bytes, size));
  fuzzing::Host host;
  host.values.values = {{{"MultiEntity", "InitialDelayInSeconds"}, text}, {{"MultiEntity", "HoursToLaunchDay"}, text}};

  Check(text, MESchedulerUtil::GetDelayInSecondsFromDCE(), 900, host,
        "MULTIENTITY::GetDelayInSecondsFromDCE: Value of initial delay for timer fetched from DCE: ",
        "MULTIENTITY::GetDelayInSecondsFromDCE: Unable to fetch initial delay from DCE");
  Check(text, MESchedulerUtil::GetHoursToLaunchFromDCE(), 10, host,
        "MULTIENTITY::GetHoursToLaunchFromDCE: Value of hours to launch for timer fetched from DCE: ",
        "MULTIENTITY::GetHoursToLaunchFromDCE: Unable to fetch hours to launch from DCE");
  return 0;
}
