#pragma once

#include <concepts>
#include <cstddef>
#include <exception>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "MultiEntityHost/MultiEntityRows.h"
#include "MultiEntityHost/TString.h"

namespace Util {

inline void PrintTo(const TString& text, std::ostream* out) {
  *out << '"' << text.view() << '"';
}

}  // namespace Util

// How a call or one of its arguments reads in a record: numbers and enumerators as numbers, texts as they are (empty
// ones as ""), dates as year-month-day, rows by their keys.
namespace call_text {

std::string Of(std::string_view text);
std::string Of(const Util::TString& text);
std::string Of(DateType32 date);
std::string Of(const DBMultiEntityRelation& row);
std::string Of(const DBMultiEntityTransaction& row);
std::string Of(const DBMultiEntityRejectedTxnReceiver& row);

inline std::string Of(const char* text) {
  return text == nullptr ? "null" : Of(std::string_view(text));
}
inline std::string Of(std::same_as<bool> auto value) {
  return value ? "true" : "false";
}
template <class Number>
  requires(std::is_arithmetic_v<Number> && !std::same_as<Number, bool>)
std::string Of(Number value) {
  return std::to_string(value);
}
template <class Enumeration>
  requires std::is_enum_v<Enumeration>
std::string Of(Enumeration value) {
  return std::to_string(static_cast<std::underlying_type_t<Enumeration>>(value));
}

}  // namespace call_text

// A scripted failure as the failing call sees it: the code to answer, where the test asks for a particular one.
struct ScriptedFailure {
  std::optional<long> code;
};

// What a scripted host was asked, in order, and where it is to fail. Every call that a host serves passes through
// Call() or, when it cannot fail, through Note().
class CallScript {
 public:
  // Every call of that name fails: a status with `code`, a question with false, a pointer with null.
  void FailAt(std::string name, std::optional<long> code = std::nullopt);
  // Only the nth call of that name fails, counted from 1.
  void FailAtNth(std::string name, std::size_t nth, std::optional<long> code = std::nullopt);

  // Every call of that name throws `exception`, of whatever type.
  template <class Exception>
  void ThrowAt(std::string name, Exception exception) {
    ThrowAtNth(std::move(name), 0, std::move(exception));
  }
  template <class Exception>
  void ThrowAtNth(std::string name, std::size_t nth, Exception exception) {
    AddException(std::move(name), nth, std::make_exception_ptr(std::move(exception)));
  }

  // The nth call of all, whatever its name, counted from 1.
  void FailAtCall(std::size_t nth, std::optional<long> code = std::nullopt) { FailAtNth(kAnyCall, nth, code); }
  template <class Exception>
  void ThrowAtCall(std::size_t nth, Exception exception) {
    ThrowAtNth(kAnyCall, nth, std::move(exception));
  }

  // From here on nothing fails.
  void ClearFaults() { faults_.clear(); }

  // Runs `action` inside every call of that name, before it is served.
  void OnCall(std::string name, std::function<void()> action);
  // Runs `action` inside every call that can fail, before it is served.
  void OnEveryCall(std::function<void()> action);

  template <class... Arguments>
  std::optional<ScriptedFailure> Call(const char* name, const Arguments&... arguments) {
    Note(name, arguments...);
    return Play(name);
  }

  template <class... Arguments>
  void Note(const char* name, const Arguments&... arguments) {
    std::string text;
    ((text += (text.empty() ? "" : ", ") + call_text::Of(arguments)), ...);
    Add(name, std::string(name) + "(" + text + ")");
  }

  // A line of the operations log, which stands among the calls in Events() only.
  void NoteLine(std::string_view message) { events_.emplace_back(message); }

  // Every call so far, such as GetRelation(9130).
  const std::vector<std::string>& Calls() const noexcept { return calls_; }
  // The calls whose name is one of `names`.
  std::vector<std::string> CallsOf(std::initializer_list<std::string_view> names) const;
  // The calls and the messages of the log's lines, in the order in which they came.
  const std::vector<std::string>& Events() const noexcept { return events_; }
  void Forget();

 private:
  struct Fault {
    std::string name;
    std::size_t nth;  // 0: every call
    std::exception_ptr exception;
    ScriptedFailure failure;
  };

  static constexpr const char* kAnyCall = "";

  void AddException(std::string name, std::size_t nth, std::exception_ptr exception);
  void Add(const char* name, std::string text);
  std::optional<ScriptedFailure> Play(const std::string& name);
  bool IsDue(const Fault& fault, const std::string& name) const;

  std::vector<Fault> faults_;
  std::vector<std::function<void()>> actionsOfEveryCall_;
  std::multimap<std::string, std::function<void()>> actions_;
  std::map<std::string, std::size_t> counts_;
  std::vector<std::string> calls_;
  std::vector<std::string> events_;
};
