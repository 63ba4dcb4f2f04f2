#pragma once

#include <functional>
#include <optional>
#include <string>

#include "standalone/desk/results/Person.h"

namespace CLI {
class App;
}

namespace app {

class Screen;

// Shows the prompt and reads the next line that the person at the terminal types; nothing when none will come.
using ReadLine = std::function<std::optional<std::string>(const std::string& prompt)>;

void ShowPrompt(const std::string& prompt);

// Shows message boxes on a screen and answers them: as an option of the command says, or by the person at the terminal,
// or, when there is nobody, by the button that does nothing further.
class Dialogue {
 public:
  // `shown` is the event that a box is for programs. Without `person` nobody is there. The screen outlives this.
  Dialogue(const Screen& screen, const char* shown, std::optional<bool> given, ReadLine person);

  bool Answer(const desk::Question& question) const;

 private:
  bool AskThePerson(const desk::Question& question) const;
  void TellAnswer(const desk::Question& question, bool accepted, const char* by) const;

  const Screen& screen_;
  const char* shown_;
  std::optional<bool> given_;
  ReadLine person_;
};

// Whoever types at the terminal from which the program was started; nobody when there is none, or when the answers are
// for a program.
ReadLine PersonAtTheTerminal(const Screen& screen);

void AddAnswerOption(CLI::App& command, std::optional<std::string>& answer);
// Throws standalone::InvalidInput unless the option is left out, yes or no.
std::optional<bool> GivenAnswer(const std::optional<std::string>& answer);

}  // namespace app
