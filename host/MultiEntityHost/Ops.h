#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>
#include <string_view>

namespace Util {

// The host's operations log. A host implements it; the module writes to it on the thread that called the module, from
// the moment the host is attached. Nothing that is handed over may be kept after the call.
class Ops {
 public:
  // The numbers are the log's own.
  enum class Level : std::int32_t { kTrace = 0, kNotice = 1, kWarning = 3, kError = 4 };
  enum class EventType : std::int32_t { kDiagnostic = 5, kFlow = 6 };

  // The texts but the message are fixed: printable ASCII without backslash.
  struct Line {
    Level level;
    EventType eventType;
    const char* sourceFile;  // the room of the source, such as Src/MultiEntityDriver
    std::int32_t sourceLine;
    const char* shortName;  // Class::Operation
    const char* signature;  // the operation's full declared signature
    std::string_view message;
  };

  // Whether lines of that level are wanted at all. Lines that are not wanted are never formatted.
  virtual bool Wants(Level level) const noexcept = 0;

  // Takes one line. Cannot fail: a log that cannot be written is the host's own trouble.
  virtual void Write(const Line& line) noexcept = 0;

  class MessageFunctor;

 protected:
  ~Ops() = default;
};

// One line about to be written: built with all but its message, called once, then destroyed.
class Ops::MessageFunctor {
 public:
  MessageFunctor(Ops& ops, Level level, EventType eventType, const char* sourceFile, std::int32_t sourceLine,
                 const char* shortName, const char* signature) noexcept
      : ops_(ops), line_{level, eventType, sourceFile, sourceLine, shortName, signature, {}} {}
  MessageFunctor(const MessageFunctor&) = delete;
  MessageFunctor& operator=(const MessageFunctor&) = delete;
  ~MessageFunctor() = default;

  // printf's rules. A message that does not fit the frame is formatted on the heap; without memory for it, its
  // beginning is written.
  void operator()(const char* format, ...) noexcept {
    if (!ops_.Wants(line_.level)) return;
    char usual[kUsualLength];
    std::va_list arguments;
    std::va_list again;
    va_start(arguments, format);
    va_copy(again, arguments);
    const int length = std::vsnprintf(usual, sizeof usual, format, arguments);
    va_end(arguments);
    if (length >= 0) Deliver(usual, static_cast<std::size_t>(length), format, again);
    va_end(again);
  }

 private:
  static constexpr std::size_t kUsualLength = 512;

  void Deliver(const char* usual, std::size_t length, const char* format, std::va_list arguments) noexcept {
    std::unique_ptr<char[]> whole;
    if (length >= kUsualLength) whole.reset(new (std::nothrow) char[length + 1]);
    if (whole != nullptr) {
      std::vsnprintf(whole.get(), length + 1, format, arguments);
      line_.message = {whole.get(), length};
    } else {
      line_.message = {usual, length < kUsualLength ? length : kUsualLength - 1};
    }
    ops_.Write(line_);
  }

  Ops& ops_;
  Line line_;
};

}  // namespace Util
