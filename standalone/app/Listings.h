#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/app/terminal/Table.h"
#include "standalone/desk/Relations.h"
#include "standalone/desk/Transactions.h"
#include "standalone/desk/results/ListItem.h"
#include "standalone/desk/results/RecordedTransaction.h"

namespace app {

Table LinesTable(const std::vector<desk::IntercompanyLine>& lines);
Table RelationsTable(const std::vector<desk::Relation>& relations);

// Which partners have to be told that something they have in their books was reversed; nothing for none.
std::string ToTellText(const std::vector<desk::PartnersPart>& parts);

// The name of an account; what to say of one that is not there any more; empty for none.
std::string AccountText(const std::optional<desk::ListItem>& account);

}  // namespace app
