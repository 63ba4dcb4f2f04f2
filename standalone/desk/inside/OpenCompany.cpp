#include "standalone/desk/inside/OpenCompany.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "standalone/desk/inside/Pairings.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"

namespace desk {

namespace {

constexpr const char* kClockVariable = "MULTIENTITY_NOW";

void LogTheClock(standalone::OperationsLog& log) {
  using Util::Ops;
  Ops::MessageFunctor(log, Ops::Level::kTrace, Ops::EventType::kFlow, "multientity", __LINE__, "OpenCompany",
                      "OpenCompany::OpenCompany(const std::filesystem::path& file, const std::string& user)")(
      "HOST:: the clock was set to %s by %s", ClockSetTo().c_str(), kClockVariable);
}

standalone::HostOptions HostOptionsOf(platform::Clock* clock, standalone::OpenOptions how, standalone::LogLimits log) {
  standalone::HostOptions options;
  options.log = log;
  options.clock = clock;
  options.clockSetTo = ClockSetTo();
  options.file = std::move(how);
  return options;
}

}  // namespace

std::unique_ptr<platform::Clock> GivenClock() {
  const char* const text = std::getenv(kClockVariable);
  if (text == nullptr || *text == '\0') return nullptr;
  const standalone::DayAndTime given = standalone::ParseDayAndTime(kClockVariable, text);
  const std::optional<platform::Clock::TimePoint> moment = platform::MomentOf(given.day, given.sinceMidnight);
  if (!moment) {
    throw standalone::InvalidInput(std::string(kClockVariable) + " \"" + text + "\" is no time of this place from " +
                                   std::to_string(platform::kFirstYear) + " to " + std::to_string(platform::kLastYear) +
                                   "; choose another one");
  }
  return std::make_unique<platform::ClockFrom>(*moment);
}

std::string ClockSetTo() {
  const char* const text = std::getenv(kClockVariable);
  return text != nullptr ? text : "";
}

OpenCompany::OpenCompany(const std::filesystem::path& file, const std::string& user, standalone::OpenOptions how,
                         std::function<void(std::int32_t status)> onAnswer, std::function<void()> onSaved,
                         standalone::LogLimits log)
    : clock_(GivenClock()),
      onAnswer_(std::move(onAnswer)),
      host_(file, user, HostOptionsOf(clock_.get(), std::move(how), log)),
      session_(host_) {
  host_.Data().SetSavedObserver(std::move(onSaved));
  host_.Pending().CountAsOutstanding(IsUnderstood);
  if (clock_ != nullptr) LogTheClock(host_.Log());
}

}  // namespace desk
