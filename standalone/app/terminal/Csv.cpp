#include "standalone/app/terminal/Csv.h"

#include <string_view>

namespace app {

namespace {

std::string Quoted(std::string_view text) {
  if (text.find_first_of("\",\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

std::string TextOf(const Json& value) {
  if (value.is_null()) return {};
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_array()) return value.dump();
  std::string text;
  for (const Json& element : value) text.append(text.empty() ? "" : " ").append(TextOf(element));
  return text;
}

std::string TextAt(const Json& element, std::string_view way) {
  const Json* value = &element;
  while (true) {
    const std::size_t point = way.find('.');
    if (!value->is_object()) return {};
    const auto found = value->find(std::string(way.substr(0, point)));
    if (found == value->end()) return {};
    value = &*found;
    if (point == std::string_view::npos) return TextOf(*value);
    way.remove_prefix(point + 1);
  }
}

template <typename FieldOf>
std::string Line(CsvColumns columns, FieldOf&& fieldOf) {
  std::string line;
  for (const char* const& column : columns) {
    if (&column != &columns.front()) line += ',';
    line += Quoted(fieldOf(column));
  }
  return line + '\n';
}

}  // namespace

std::string CsvText(CsvColumns columns, const Json& list) {
  std::string text = Line(columns, [](const char* column) { return std::string(column); });
  for (const Json& element : list) {
    text += Line(columns, [&element](const char* column) { return TextAt(element, column); });
  }
  return text;
}

}  // namespace app
