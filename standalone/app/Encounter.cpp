#include "standalone/app/Encounter.h"

#include "standalone/app/Company.h"
#include "standalone/app/PluginViews.h"

namespace app {

Encounter::Encounter(const Invocation& invocation, Company& company, std::optional<bool> answer)
    : company_(company),
      screen_(invocation.options.json ? Screen([this](const Json& event) { events_.push_back(event); }) : Screen()),
      dialogue_(screen_, "message-shown", answer, PersonAtTheTerminal(screen_)) {
  company_.Host().MessageBoxes().SetAnswerer(
      [this](const standalone::Question& question) { return dialogue_.Answer(question); });
  company_.Host().App().SetCommandRunner(
      [this](standalone::PluginView view, std::string_view url) { ShowPluginView(company_, screen_, view, url); });
}

Encounter::~Encounter() {
  company_.Host().MessageBoxes().SetAnswerer({});
  company_.Host().App().SetCommandRunner({});
}

}  // namespace app
