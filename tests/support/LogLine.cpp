#include "support/LogLine.h"

using testing::AllOf;
using testing::Field;
using testing::Matcher;

void PrintTo(const LogLine& line, std::ostream* out) {
  *out << line.level << '/' << line.eventType << ' ' << line.shortName << " \"" << line.message << '"';
}

Matcher<LogLine> Logged(std::int32_t level, std::int32_t eventType, std::string text) {
  return AllOf(Field("level", &LogLine::level, level), Field("eventType", &LogLine::eventType, eventType),
               Field("message", &LogLine::message, std::move(text)));
}

Matcher<LogLine> Trace(std::string text) {
  return Logged(0, 6, std::move(text));
}

Matcher<LogLine> Gate(std::string text) {
  return Logged(1, 5, std::move(text));
}

Matcher<LogLine> Warning(std::string text) {
  return Logged(3, 5, std::move(text));
}

Matcher<LogLine> Error(std::string text) {
  return Logged(4, 5, std::move(text));
}

Matcher<LogLine> Entering(const std::string& shortName) {
  return Trace("MULTIENTITY::Entering " + shortName);
}

Matcher<LogLine> Exiting(const std::string& shortName) {
  return Trace("MULTIENTITY::Exiting " + shortName);
}

Matcher<LogLine> Existing(const std::string& shortName) {
  return Trace("MULTIENTITY::Existing " + shortName);
}

Matcher<LogLine> FeatureAsked() {
  return Gate("MULTIENTITY::Entering MultiEntityDriver::IsFeatureEnabled");
}

Matcher<LogLine> GlobalFeatureOff() {
  return Trace("MULTIENTITY:: Global feature Off");
}

Matcher<LogLine> FeatureRefused() {
  return Gate("MULTIENTITY::Exiting MultiEntityDriver::IsFeatureEnabled, key 0, value 0 ");
}

Matcher<LogLine> RightAsked() {
  return Gate("MULTIENTITY::Entering MultiEntityDriver::HasMEPermission");
}

Matcher<LogLine> RightAnswered() {
  return Gate("MULTIENTITY::Exiting MultiEntityDriver::HasMEPermission");
}

Matcher<LogLine> ComesFrom(std::string sourceFile, std::string shortName, std::string signature) {
  return AllOf(Field("sourceFile", &LogLine::sourceFile, std::move(sourceFile)),
               Field("shortName", &LogLine::shortName, std::move(shortName)),
               Field("signature", &LogLine::signature, std::move(signature)));
}

Matcher<std::vector<LogLine>> AllInOrder(std::vector<Matcher<LogLine>> lines) {
  return testing::ElementsAreArray(lines);
}

Matcher<std::vector<std::string>> AllInOrder(std::vector<std::string> calls) {
  return testing::ElementsAreArray(calls);
}
