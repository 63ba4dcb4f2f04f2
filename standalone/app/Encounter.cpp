#include "standalone/app/Encounter.h"

#include <utility>

#include "standalone/app/Invocation.h"
#include "standalone/app/PluginScreens.h"

namespace app {

Encounter::Encounter(const Invocation& invocation, std::string file, std::optional<bool> answer)
    : file_(std::move(file)),
      screen_(invocation.options.json ? Screen([this](const Json& event) { events_.push_back(event); }) : Screen()),
      dialogue_(screen_, "message-shown", answer, PersonAtTheTerminal(screen_)) {}

desk::Person Encounter::Person() {
  return {.answer =
              [this](const desk::Question& question) {
                hasAsked_ = true;
                return dialogue_.Answer(question);
              },
          .show =
              [this](std::string_view url, const desk::PluginScreen& shown) {
                ShowPluginScreen(screen_, file_, url, shown);
              }};
}

}  // namespace app
