#include "standalone/app/commands/Program.h"

int main(int argumentCount, char** arguments) {
  return app::RunProgram(argumentCount, arguments);
}
