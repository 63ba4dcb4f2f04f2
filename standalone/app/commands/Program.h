#pragma once

namespace app {

// Does what the command line asks for; the arguments are those of main. Returns an exit code that the help documents
// and throws nothing. On the thread that the program starts with.
int RunProgram(int argumentCount, char** arguments);

}  // namespace app
