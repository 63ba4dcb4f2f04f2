#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace app {

// The arguments behind the program's name, in UTF-8; those of main() are in whatever encoding the system has. Throws
// standalone::InvalidInput for one that is no text.
std::vector<std::string> ArgumentsInUtf8(int argumentCount, char** arguments);

// What the environment has under a name, in UTF-8; nothing when it is empty. Throws standalone::InvalidInput for what
// is no text.
std::optional<std::string> EnvironmentText(const char* name);

// Gives what is printed the same bytes on every system: line ends are not translated, and a console takes texts as
// UTF-8.
void PrintTheSameEverywhere() noexcept;

// Whether standard error goes to a person's terminal.
bool ErrorsGoToATerminal() noexcept;
// How many cells a line of the person's terminal has to which standard output goes; none when it goes elsewhere.
std::optional<std::size_t> OutputWidth() noexcept;
// Whether standard input comes from a person's terminal.
bool InputComesFromATerminal() noexcept;

// Up to so many bytes of standard input as they are, 0 at its end. Throws standalone::InvalidInput when it cannot be
// read.
std::size_t ReadInput(char* into, std::size_t most);

// Writes the prompt to standard error and reads the next line that the person at the terminal types, which is not
// shown; nothing when none will come. When a signal ends the program meanwhile, the terminal shows again what is typed.
std::optional<std::string> ReadHiddenLine(std::string_view prompt);

// Lets a write to a closed pipe fail like any other write instead of ending the program.
void IgnoreClosedPipes() noexcept;
// Asked right after a write that failed: whether it did because nobody reads the pipe any more.
bool ReaderHasGone() noexcept;

}  // namespace app
