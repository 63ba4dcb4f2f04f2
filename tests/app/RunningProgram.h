#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "app/Program.h"

// Where a running program gets its input from and prints to.
enum class Console {
  kPipes,     // two pipes, as in a script
  kTerminal,  // one terminal for both, as with a person
};

// What a terminal shows of the bytes that it gets. Wine's console draws each text by steering the terminal's cursor.
class ShownText {
 public:
  std::string Add(std::string_view bytes);

 private:
  enum class State { kText, kEscape, kSequence };

  void Add(char byte, std::string& shown);

  State state_ = State::kText;
};

// A run of multientity that goes on beside the test. What it prints is waited for, never how long it takes.
class RunningProgram {
 public:
  RunningProgram(const std::filesystem::path& directory, const std::vector<std::string>& arguments,
                 Console console = Console::kPipes);
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;
  // Kills a program that has not ended.
  ~RunningProgram();

  // Waits until it has printed `text` after what was waited for before, and returns all that came with it up to the end
  // of `text`. Throws std::runtime_error when it ends, or prints nothing for a minute, before that.
  std::string WaitFor(const std::string& text);

  // Types into it; a line feed is the Enter key of a terminal.
  void Type(const std::string& typed) const;
  // Ends its input.
  void EndInput();
  void Signal(int signal) const;

  // Waits for its end; the rest of what it printed is in Outcome::out.
  Outcome End();

 private:
  bool ReadMore();

  std::filesystem::path errors_;
  Console console_;
  ShownText terminal_;
  pid_t child_ = 0;
  int input_ = -1;
  int output_ = -1;
  std::string unread_;
};
