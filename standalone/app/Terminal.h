#pragma once

namespace app {

// Whether standard error goes to a person's terminal.
bool ErrorsGoToATerminal() noexcept;
// Whether standard input comes from a person's terminal.
bool InputComesFromATerminal() noexcept;

// Lets a write to a closed pipe fail like any other write instead of ending the program.
void IgnoreClosedPipes() noexcept;

}  // namespace app
