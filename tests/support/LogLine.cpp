#include "support/LogLine.h"

using testing::AllOf;
using testing::Field;
using testing::Matcher;

void PrintTo(const LogLine& line, std::ostream* out) {
  *out << line.level << '/' << line.eventType << ' ' << line.shortName << " \"" << line.message << '"';
}

Matcher<LogLine> Logged(std::int32_t level, std::int32_t eventType, const std::string& text) {
  return AllOf(Field("level", &LogLine::level, level), Field("eventType", &LogLine::eventType, eventType),
               Field("message", &LogLine::message, text));
}

Matcher<LogLine> Trace(const std::string& text) {
  return Logged(0, 6, text);
}

Matcher<LogLine> Gate(const std::string& text) {
  return Logged(1, 5, text);
}

Matcher<LogLine> Warning(const std::string& text) {
  return Logged(3, 5, text);
}

Matcher<LogLine> Error(const std::string& text) {
  return Logged(4, 5, text);
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

Matcher<LogLine> ComesFrom(const std::string& sourceFile, const std::string& shortName, const std::string& signature) {
  return AllOf(Field("sourceFile", &LogLine::sourceFile, sourceFile),
               Field("shortName", &LogLine::shortName, shortName), Field("signature", &LogLine::signature, signature));
}

Matcher<std::vector<LogLine>> AllInOrder(const std::vector<Matcher<LogLine>>& lines) {
  return testing::ElementsAreArray(lines);
}

Matcher<std::vector<std::string>> AllInOrder(const std::vector<std::string>& calls) {
  return testing::ElementsAreArray(calls);
}
