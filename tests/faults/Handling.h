#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace faults {

using Texts = std::vector<std::string>;
using Substitutions = std::vector<std::pair<std::string, std::string>>;

// Lines of the operations log as level/event type and text.
inline std::string Trace(const std::string& text) {
  return "0/6 " + text;
}
inline std::string Notice(const std::string& text) {
  return "1/5 " + text;
}
inline std::string Warning(const std::string& text) {
  return "3/5 " + text;
}
inline std::string Error(const std::string& text) {
  return "4/5 " + text;
}

// What the host throws into a call.
enum class Thrown { kException, kOutOfRange, kNoException };

inline constexpr const char* kWhatOfTheException = "the host has failed";
inline constexpr const char* kWhatOfOutOfRange = "the host went out of range";

// What an operation promises when a call into the host fails. Unless it says otherwise, the results and the host's
// tables are those of the moment of the call when the operation ends there, and those of the unharmed operation when it
// goes on; the log holds the lines of the unharmed operation before the call, then `lines`.
class Handling {
 public:
  enum class Ending { kNoSuchFailure, kPasses, kEnds, kGoesOn };

  Handling(Ending anEnding, std::string anAnswer, Texts theLines)
      : ending(anEnding), answer(std::move(anAnswer)), lines(std::move(theLines)) {}

  // That many of the unharmed lines after the call are not written.
  Handling&& InsteadOf(std::size_t count) && {
    replacedLines = count;
    return std::move(*this);
  }
  Handling&& InsteadOfTheRest() && { return std::move(*this).InsteadOf(std::string::npos); }
  // These lines follow the last of the unharmed ones.
  Handling&& Finally(Texts more) && {
    lastLines = std::move(more);
    return std::move(*this);
  }
  // The results have another text; where a row stands for several calls, the nth call changes the nth place.
  Handling&& With(std::string text, std::string instead) && {
    inResults.emplace_back(std::move(text), std::move(instead));
    return std::move(*this);
  }
  // The same in the tables.
  Handling&& WithRow(std::string text, std::string instead) && {
    inTables.emplace_back(std::move(text), std::move(instead));
    return std::move(*this);
  }
  // No result and no row of a table begins so.
  Handling&& Without(std::string beginning) && {
    missing.push_back(std::move(beginning));
    return std::move(*this);
  }
  // The tables are again as they were at the call before.
  Handling&& Undone(std::string call) && {
    undoneTo = std::move(call);
    return std::move(*this);
  }
  // Though the operation ends, it asks these of the host first.
  Handling&& AfterAsking(Texts calls) && {
    asked = std::move(calls);
    return std::move(*this);
  }
  // The caller must not look at the results.
  Handling&& ResultsUnspecified() && {
    resultsUnspecified = true;
    return std::move(*this);
  }
  // The answer was kept for the life of the process: the next call ends in the same way.
  Handling&& ForGood() && {
    forGood = true;
    return std::move(*this);
  }

  Ending ending;
  std::string answer;
  Texts lines;
  std::size_t replacedLines = 0;
  Texts lastLines;
  Substitutions inResults;
  Substitutions inTables;
  Texts missing;
  std::string undoneTo;
  Texts asked;
  bool resultsUnspecified = false;
  bool forGood = false;
};

// The service has no answer that means failure.
inline Handling NoSuchFailure() {
  return {Handling::Ending::kNoSuchFailure, {}, {}};
}
// What was thrown arrives at the caller.
inline Handling Passes() {
  return {Handling::Ending::kPasses, {}, {}};
}
inline Handling Ends(std::string answer, Texts lines = {}) {
  return {Handling::Ending::kEnds, std::move(answer), std::move(lines)};
}
inline Handling GoesOn(Texts lines = {}) {
  return {Handling::Ending::kGoesOn, {}, std::move(lines)};
}

// The failing answers of a service by their codes; no code is the service's usual failure.
struct WhenFailing {
  WhenFailing(Handling handling) { byCode.emplace_back(std::nullopt, std::move(handling)); }
  WhenFailing&& Or(long code, Handling handling) && {
    byCode.emplace_back(code, std::move(handling));
    return std::move(*this);
  }

  std::vector<std::pair<std::optional<long>, Handling>> byCode;
};

struct WhenThrowing {
  WhenThrowing(const Handling& handling) : of([handling](Thrown /*thrown*/) { return handling; }) {}
  WhenThrowing(Handling (*handling)(Thrown)) : of(handling) {}

  std::function<Handling(Thrown)> of;
};

// What an operation promises for one of its calls: a call's whole text such as GetName(31), a name, or a name's nth
// call such as GetFileState#2. The first row that fits counts.
struct Row {
  std::string call;
  WhenFailing failing;
  WhenThrowing throwing;
};

using Table = std::vector<Row>;

inline Table operator+(Table left, const Table& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

}  // namespace faults
