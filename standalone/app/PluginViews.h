#pragma once

#include <string_view>

#include "standalone/services/ApplicationService.h"

namespace app {

class Company;
class Screen;

// What the command line shows when the host opens a view of the intercompany plug-in: the transactions and relations
// that wait, the relations with the question about the realm, or how to set up the first relation. Reads the company
// file in a unit of work of its own.
void ShowPluginView(Company& company, const Screen& screen, standalone::PluginView view, std::string_view url);

}  // namespace app
