#pragma once

#include <string>
#include <string_view>

namespace standalone {

// A text as it stands in a column of a line: tab, line feed, carriage return and backslash as \t \n \r \\, each byte of
// whatever else is not plain (Characters.h) as \xNN.
std::string EscapeColumn(std::string_view text);
void AppendEscaped(std::string& out, std::string_view text);
std::string UnescapeColumn(std::string_view text);

}  // namespace standalone
