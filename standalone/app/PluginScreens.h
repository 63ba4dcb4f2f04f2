#pragma once

#include <string>
#include <string_view>

#include "standalone/desk/results/Person.h"

namespace app {

class Screen;

// What the command line shows when a screen of the intercompany plug-in is opened. `file` is the company file as people
// type it.
void ShowPluginScreen(const Screen& screen, const std::string& file, std::string_view url,
                      const desk::PluginScreen& shown);

}  // namespace app
