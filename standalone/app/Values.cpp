#include "standalone/app/Values.h"

#include <fmt/format.h>

#include <charconv>
#include <limits>
#include <string>

#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

constexpr std::int32_t kLargestId = std::numeric_limits<std::int32_t>::max() - 1;

}  // namespace

std::filesystem::path FilePath(std::string_view text) {
  if (text.empty()) throw standalone::InvalidInput("the file name is empty; give the path of a file");
  return standalone::PathOfText(text);
}

std::int32_t RecordId(std::string_view what, std::string_view text) {
  return WholeNumber(what, text, 1, kLargestId);
}

std::int32_t WholeNumber(std::string_view what, std::string_view text, std::int32_t least, std::int32_t most) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < least || number > most) {
    throw standalone::InvalidInput(fmt::format("{} {} is not acceptable; give a whole number from {} to {}", what,
                                               standalone::Quoted(text), least, most));
  }
  return number;
}

std::int16_t RelationType(std::string_view text) {
  return static_cast<std::int16_t>(WholeNumber("relation type", text, std::numeric_limits<std::int16_t>::min(),
                                               std::numeric_limits<std::int16_t>::max()));
}

DateType32 PeriodBound(std::string_view what, const std::optional<std::string>& text) {
  return text ? standalone::ParseDate(what, *text) : NullDate();
}

}  // namespace app
