#pragma once

#include <gmock/gmock.h>

#include <concepts>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

// A line of the operations log with all its columns, as a scripted host keeps it.
struct LogLine {
  std::int32_t level;
  std::int32_t eventType;
  std::string sourceFile;
  std::int32_t sourceLine;
  std::string shortName;
  std::string signature;
  std::string message;
};

void PrintTo(const LogLine& line, std::ostream* out);

// Matchers for whole lines: the pair of level and event type, and the text from its first to its last character.
testing::Matcher<LogLine> Logged(std::int32_t level, std::int32_t eventType, const std::string& text);
testing::Matcher<LogLine> Trace(const std::string& text);
testing::Matcher<LogLine> Gate(const std::string& text);
testing::Matcher<LogLine> Warning(const std::string& text);
testing::Matcher<LogLine> Error(const std::string& text);

// The lines that most operations share.
testing::Matcher<LogLine> Entering(const std::string& shortName);
testing::Matcher<LogLine> Exiting(const std::string& shortName);
testing::Matcher<LogLine> Existing(const std::string& shortName);
testing::Matcher<LogLine> FeatureAsked();
testing::Matcher<LogLine> GlobalFeatureOff();
testing::Matcher<LogLine> FeatureRefused();
testing::Matcher<LogLine> RightAsked();
testing::Matcher<LogLine> RightAnswered();

// Where a line says that it comes from.
testing::Matcher<LogLine> ComesFrom(const std::string& sourceFile, const std::string& shortName,
                                    const std::string& signature);

testing::Matcher<std::vector<LogLine>> AllInOrder(const std::vector<testing::Matcher<LogLine>>& lines);
testing::Matcher<std::vector<std::string>> AllInOrder(const std::vector<std::string>& calls);

// A log that consists of these lines, or a record that consists of these calls. What gmock's own ElementsAre says, but
// compiled once for all of them.
template <std::convertible_to<testing::Matcher<LogLine>>... Lines>
testing::Matcher<std::vector<LogLine>> InOrder(Lines... lines) {
  return AllInOrder(std::vector<testing::Matcher<LogLine>>{std::move(lines)...});
}
template <std::convertible_to<std::string>... Calls>
testing::Matcher<std::vector<std::string>> InOrder(Calls... calls) {
  return AllInOrder(std::vector<std::string>{std::move(calls)...});
}
