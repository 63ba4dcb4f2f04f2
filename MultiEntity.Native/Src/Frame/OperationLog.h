#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <source_location>
#include <string_view>
#include <type_traits>

#include "Frame/AttachedHost.h"
#include "MultiEntityHost/Ops.h"

// What the operations log calls an operation; all literals, the same on every compiler.
struct Operation {
  const char* shortName;
  const char* signature;
  const char* sourceFile;
};

// How printf writes a value of that type; only these types are written.
template <class Argument>
struct Conversion;
template <>
struct Conversion<const char*> {
  static constexpr std::string_view kText = "%s";
};
template <>
struct Conversion<std::int32_t> {
  static constexpr std::string_view kText = "%d";
};
template <>
struct Conversion<unsigned long> {
  static constexpr std::string_view kText = "%lu";
};

consteval bool HasConversions(std::string_view text, std::initializer_list<std::string_view> conversions) {
  std::size_t at = 0;
  for (const std::string_view conversion : conversions) {
    at = text.find('%', at);
    if (at == std::string_view::npos || text.substr(at, conversion.size()) != conversion) return false;
    at += conversion.size();
  }
  return text.find('%', at) == std::string_view::npos;
}

// A literal whose conversions fit the arguments that are written with it, and the line it stands on.
template <class... Arguments>
struct MessageText {
  consteval MessageText(const char* literal, std::source_location where = std::source_location::current())
      : text(literal), line(static_cast<std::int32_t>(where.line())) {
    if (!HasConversions(literal, {Conversion<Arguments>::kText...})) throw "the conversions do not fit the arguments";
  }

  const char* text;
  std::int32_t line;
};

// Carries an operation's identity and writes its lines to the host's operations log. Each kind of line has the level
// and event type that the log's readers know it by.
class OperationLog {
 public:
  constexpr explicit OperationLog(const Operation& operation) noexcept : operation_(operation) {}

  const char* Name() const noexcept { return operation_.shortName; }

  void Entering() const noexcept { Note("MULTIENTITY::Entering %s", Name()); }
  void Exiting() const noexcept { Note("MULTIENTITY::Exiting %s", Name()); }

  template <class... Arguments>
  void Note(MessageText<std::type_identity_t<Arguments>...> text, Arguments... arguments) const noexcept {
    Write(Util::Ops::Level::kTrace, Util::Ops::EventType::kFlow, text, arguments...);
  }
  template <class... Arguments>
  void Notice(MessageText<std::type_identity_t<Arguments>...> text, Arguments... arguments) const noexcept {
    Write(Util::Ops::Level::kNotice, Util::Ops::EventType::kDiagnostic, text, arguments...);
  }
  template <class... Arguments>
  void Warning(MessageText<std::type_identity_t<Arguments>...> text, Arguments... arguments) const noexcept {
    Write(Util::Ops::Level::kWarning, Util::Ops::EventType::kDiagnostic, text, arguments...);
  }
  template <class... Arguments>
  void Error(MessageText<std::type_identity_t<Arguments>...> text, Arguments... arguments) const noexcept {
    Write(Util::Ops::Level::kError, Util::Ops::EventType::kDiagnostic, text, arguments...);
  }

 private:
  template <class... Arguments>
  void Write(Util::Ops::Level level, Util::Ops::EventType eventType, const MessageText<Arguments...>& text,
             Arguments... arguments) const noexcept {
    Util::Ops::MessageFunctor(Host().ops, level, eventType, operation_.sourceFile, text.line, operation_.shortName,
                              operation_.signature)(text.text, arguments...);
  }

  const Operation& operation_;
};
