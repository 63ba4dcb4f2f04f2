#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace app {

// The arguments behind the program's name, in UTF-8; those of main() are in whatever encoding the system has. Throws
// standalone::InvalidInput for one that is no text.
std::vector<std::string> ArgumentsInUtf8(int argumentCount, char** arguments);

// Gives what is printed the same bytes on every system: line ends are not translated, and a console takes texts as
// UTF-8.
void PrintTheSameEverywhere() noexcept;

// Whether standard error goes to a person's terminal.
bool ErrorsGoToATerminal() noexcept;
// Whether standard input comes from a person's terminal.
bool InputComesFromATerminal() noexcept;

// Up to so many bytes of standard input as they are, 0 at its end. Throws standalone::InvalidInput when it cannot be
// read.
std::size_t ReadInput(char* into, std::size_t most);

// Lets a write to a closed pipe fail like any other write instead of ending the program.
void IgnoreClosedPipes() noexcept;
// Asked right after a write that failed: whether it did because nobody reads the pipe any more.
bool ReaderHasGone() noexcept;

}  // namespace app
