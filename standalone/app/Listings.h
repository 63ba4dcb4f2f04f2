#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/app/terminal/Output.h"
#include "standalone/desk/Relations.h"
#include "standalone/desk/Transactions.h"
#include "standalone/desk/results/ListItem.h"

namespace app {

Table LinesTable(const std::vector<desk::IntercompanyLine>& lines);
Table RelationsTable(const std::vector<desk::Relation>& relations);

// The name of an account; what to say of one that is not there any more; empty for none.
std::string AccountText(const std::optional<desk::ListItem>& account);

}  // namespace app
