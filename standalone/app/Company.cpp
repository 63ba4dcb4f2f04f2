#include "standalone/app/Company.h"

#include <fmt/format.h>

#include <cstdlib>
#include <optional>

#include "standalone/app/Values.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

using standalone::Opening;
using standalone::PathText;

std::string MigrationText(const std::string& what, const standalone::Migrated& migrated) {
  std::string text = fmt::format("{} was brought from schema version {} to {}.", what, migrated.from, migrated.to);
  if (!migrated.before.empty()) {
    text +=
        fmt::format(" As it was before it is kept in {}, which the older program opens.", PathText(migrated.before));
  }
  if (!migrated.left.empty()) {
    text += fmt::format(" What others had added to it and does not fit any more was left out: {}.",
                        fmt::join(migrated.left, ", "));
  }
  return text;
}

std::string OpeningText(const std::string& file, const Opening& opening) {
  if (!opening.readsACopy) return MigrationText(file, *opening.migrated);
  return fmt::format(
             "{} lies on a read-only medium and is read from a copy in a temporary folder; nothing can be saved.",
             file) +
         (opening.migrated ? ' ' + MigrationText("The copy", *opening.migrated) : "");
}

Json OpeningJson(const std::string& file, const Opening& opening) {
  Json json{{"message", OpeningText(file, opening)},
            {"file", file},
            {"readsACopy", opening.readsACopy},
            {"from", nullptr},
            {"to", nullptr},
            {"before", nullptr},
            {"left", Json::array()}};
  if (!opening.migrated) return json;
  const standalone::Migrated& migrated = *opening.migrated;
  json["from"] = migrated.from;
  json["to"] = migrated.to;
  if (!migrated.before.empty()) json["before"] = PathText(migrated.before);
  json["left"] = migrated.left;
  return json;
}

void Tell(bool json, const std::string& file, const Opening& opening) {
  PrintError(json ? JsonText({{"note", OpeningJson(file, opening)}})
                  : fmt::format("note: {}\n", OpeningText(file, opening)));
}

constexpr const char* kClockVariable = "MULTIENTITY_NOW";

std::unique_ptr<platform::Clock> GivenClock() {
  const char* const text = std::getenv(kClockVariable);
  if (text == nullptr || *text == '\0') return nullptr;
  const standalone::DayAndTime given = standalone::ParseDayAndTime(kClockVariable, text);
  const std::optional<platform::Clock::TimePoint> moment = platform::MomentOf(given.day, given.sinceMidnight);
  if (!moment) {
    throw standalone::InvalidInput(fmt::format("{} \"{}\" is no time of this place from {} to {}; choose another one",
                                               kClockVariable, text, platform::kFirstYear, platform::kLastYear));
  }
  return std::make_unique<platform::ClockFrom>(*moment);
}

void LogTheClock(standalone::OperationsLog& log) {
  using Util::Ops;
  Ops::MessageFunctor(log, Ops::Level::kTrace, Ops::EventType::kFlow, "multientity", __LINE__, "Company",
                      "Company::Company(Invocation& invocation, const std::string& file)")(
      "HOST:: the clock was set to %s by %s", std::getenv(kClockVariable), kClockVariable);
}

standalone::HostOptions OptionsFor(const Invocation& invocation, const std::string& file, platform::Clock* clock) {
  standalone::HostOptions options;
  options.clock = clock;
  options.file.tell = [json = invocation.options.json, file](const Opening& opening) {
    Tell(json, file, opening);
  };
  return options;
}

}  // namespace

Company::Company(Invocation& invocation, const std::string& file)
    : clock_(GivenClock()),
      host_(FilePath(file), invocation.options.user, OptionsFor(invocation, file, clock_.get())),
      session_(host_) {
  if (clock_ != nullptr) LogTheClock(host_.Log());
  if (!invocation.options.trace) return;
  host_.Log().SetObserver(
      [&trace = invocation.trace](const Util::Ops::Line& line) { trace.push_back(TraceLineOf(line)); });
}

}  // namespace app
