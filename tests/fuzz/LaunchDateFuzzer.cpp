#include <stdexcept>

#include "MultiEntity/MESchedulerUtil.h"
#include "fuzz/ModuleFuzzing.h"

// The date that the company file remembers for the next reminder. What the standard's own conversions make of its three
// fields is what the module must make of them.

namespace {

using fuzzing::Require;

struct Reading {
  DateType32 date{};
  std::string error;

  friend bool operator==(const Reading&, const Reading&) = default;
};

template <class Read>
Reading Caught(Read read) {
  try {
    return {read(), {}};
  } catch (const std::invalid_argument&) {
    return {{}, "no number"};
  } catch (const std::out_of_range&) {
    return {{}, "out of range"};
  }
}

int Field(const std::string& text, std::size_t at) {
  if (at >= text.size()) throw std::out_of_range("the text ends before the field");
  return std::stoi(text.substr(at, 2));
}

DateType32 ByTheStandard(const std::string& text) {
  const int year = std::stoi(text.substr(0, 4));
  const int month = Field(text, 4);
  return {year, month, Field(text, 6)};
}

void RequireThatAValidDateComesBack(const std::string& text, const Reading& read) {
  const bool digitsOnly = text.size() == 8 && text.find_first_not_of("0123456789") == std::string::npos;
  if (!digitsOnly || text[0] == '0' || !read.date.ValidDate()) return;
  Require(MESchedulerUtil::DateToString(read.date) == text, "a date that was read is written as it was");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string text(fuzzing::Text(bytes, size));
  const Reading expected = Caught([&] { return ByTheStandard(text); });

  const Reading read = Caught([&] { return MESchedulerUtil::StringToDate(text); });
  Require(read == expected, "a date is read as the standard reads its fields");
  RequireThatAValidDateComesBack(text, read);

  fuzzing::Host host;
  host.databasePreferences.values["MEPromptLaunchDate"] = text;
  Require(Caught(MESchedulerUtil::GetNextSchedulerTimeFromPrefDb) == expected, "the remembered date is read the same");

  MESchedulerUtil::StartScheduler();
  Require(host.platform.timers.size() == (expected.error.empty() ? 1U : 0U),
          "the timer is armed exactly when the date can be read");
  Require(host.Logged("MULTIENTITY:: Exception occured in StartScheduler API") == !expected.error.empty(),
          "a date that cannot be read is reported");
  return 0;
}
