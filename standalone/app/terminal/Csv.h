#pragma once

#include <span>
#include <string>

#include "standalone/app/terminal/Output.h"

namespace app {

// What the columns of a list are called in CSV: keys of its elements, or ways to one, such as "account.name".
using CsvColumns = std::span<const char* const>;

// A header, then a row for each element of the list. Texts are as they are; what is not there is empty; the texts of a
// list within an element stand one after the other with blanks between them.
std::string CsvText(CsvColumns columns, const Json& list);

}  // namespace app
