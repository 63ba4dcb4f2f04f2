#include "standalone/app/Dialogue.h"

#include <fmt/format.h>

#include <iostream>
#include <utility>

#include <CLI/CLI.hpp>

#include "standalone/app/terminal/Screen.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

// Either the word on a button, or yes or no, in any case and by its first letter.
std::optional<bool> ReadAnswer(const desk::Question& question, std::string_view line) {
  const std::string_view typed = standalone::Trimmed(line);
  const auto isOneOf = [typed](const std::string& button, std::string_view word, std::string_view letter) {
    return standalone::EqualIgnoringCase(typed, button) || standalone::EqualIgnoringCase(typed, word) ||
           standalone::EqualIgnoringCase(typed, letter);
  };
  if (isOneOf(question.accept, "yes", "y")) return true;
  if (isOneOf(question.decline, "no", "n")) return false;
  return std::nullopt;
}

std::optional<std::string> ReadStandardInput(const std::string& prompt) {
  ShowPrompt(prompt);
  std::string line;
  if (!std::getline(std::cin, line)) return std::nullopt;
  return line;
}

}  // namespace

void ShowPrompt(const std::string& prompt) {
  Print(prompt);
  FinishPrinting();
}

Dialogue::Dialogue(const Screen& screen, const char* shown, std::optional<bool> given, ReadLine person)
    : screen_(screen), shown_(shown), given_(given), person_(std::move(person)) {}

bool Dialogue::Answer(const desk::Question& question) const {
  Json event{{"event", shown_}};
  event.update(desk::JsonOf(question));
  screen_.Tell(event, fmt::format("[{}] {}\n  {}\n", desk::NameOf(question.kind), question.title, question.text));
  if (question.kind != desk::Question::Kind::kYesNo) return true;
  if (given_) {
    TellAnswer(question, *given_, "option");
    return *given_;
  }
  if (person_) return AskThePerson(question);
  TellAnswer(question, false, "nobody");
  return false;
}

bool Dialogue::AskThePerson(const desk::Question& question) const {
  while (true) {
    const std::optional<std::string> line =
        person_(fmt::format("  {} or {}? [y/N] ", question.accept, question.decline));
    const std::optional<bool> answer = line ? ReadAnswer(question, *line) : false;
    if (!answer) continue;
    TellAnswer(question, *answer, line ? "person" : "nobody");
    return *answer;
  }
}

void Dialogue::TellAnswer(const desk::Question& question, bool accepted, const char* by) const {
  screen_.Tell({{"event", "answered"}, {"answer", standalone::YesOrNo(accepted)}, {"by", by}},
               fmt::format("  Answered: {} ({})\n", accepted ? question.accept : question.decline, by));
}

ReadLine PersonAtTheTerminal(const Screen& screen) {
  return screen.IsForPeople() && InputComesFromATerminal() ? ReadStandardInput : ReadLine();
}

void AddAnswerOption(CLI::App& command, std::optional<std::string>& answer) {
  command.add_option("--answer", answer,
                     "How to answer a question, yes or no; when left out, a person at a terminal is asked, and without "
                     "one the answer is no");
}

std::optional<bool> GivenAnswer(const std::optional<std::string>& answer) {
  if (!answer) return std::nullopt;
  return standalone::ParseYesNo("--answer", *answer);
}

}  // namespace app
