#include "standalone/app/Program.h"

int main(int argumentCount, char** arguments) {
  return app::RunProgram(argumentCount, arguments);
}
