#include "standalone/app/terminal/Output.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "standalone/app/terminal/Terminal.h"
#include "standalone/values/Characters.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

std::size_t CharactersIn(std::string_view text) noexcept {
  const auto continues = [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
  };
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues));
}

std::string Padded(std::string_view text, std::size_t width, Align align) {
  const std::string blanks(width - CharactersIn(text), ' ');
  return align == Align::kLeft ? std::string(text) + blanks : blanks + std::string(text);
}

std::string WithoutTrailingBlanks(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

// JSON in which what would steer a terminal is \uXXXX, which programs read as the same character.
std::string ForTerminals(std::string json) {
  if (standalone::IsPrintableAscii(json)) return json;
  std::string escaped;
  for (std::string_view rest = json; !rest.empty();) {
    const standalone::Character character = standalone::FirstCharacter(rest);
    if (character.kind == standalone::CharacterKind::kPlain) {
      escaped += rest.substr(0, character.length);
    } else {
      escaped += "\\u";
      standalone::AppendNumberInHex(escaped, character.number);
    }
    rest.remove_prefix(character.length);
  }
  return escaped;
}

std::string Compact(const Json& value) {
  return ForTerminals(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

std::string ElementPerLine(const Json& list) {
  if (list.empty()) return "[]";
  std::string text = "[\n";
  for (const Json& element : list) {
    if (&element != &list.front()) text += ",\n";
    text += Compact(element);
  }
  return text + "\n]";
}

[[noreturn]] void ThrowNotWritten(int error) {
  throw OutputFailed("standard output cannot be written: " + std::generic_category().message(error));
}

bool nobodyReads = false;

void CheckWritten(bool written) {
  if (written) return;
  if (!ReaderHasGone()) ThrowNotWritten(errno);
  nobodyReads = true;
}

}  // namespace

void Table::Add(std::vector<std::string> cells) {
  for (std::string& cell : cells) cell = standalone::Shown(cell);
  rows_.push_back(std::move(cells));
}

std::size_t Table::WidthOf(std::size_t column) const {
  std::size_t width = 0;
  for (const auto& row : rows_) width = std::max(width, CharactersIn(row[column]));
  return width == 0 ? 0 : std::max(width, CharactersIn(columns_[column].title));
}

std::string Table::Text() const {
  std::vector<std::size_t> shown;
  std::vector<std::size_t> widths(columns_.size());
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    widths[column] = WidthOf(column);
    if (widths[column] != 0) shown.push_back(column);
  }
  const auto line = [&](const auto& cellOf) {
    std::string text;
    for (const std::size_t column : shown) {
      if (column != shown.front()) text += "  ";
      text += Padded(cellOf(column), widths[column], columns_[column].align);
    }
    return WithoutTrailingBlanks(std::move(text)) + '\n';
  };
  std::string text = line([&](std::size_t column) { return columns_[column].title; });
  text += line([&](std::size_t column) { return std::string(widths[column], '-'); });
  for (const auto& row : rows_) text += line([&](std::size_t column) { return row[column]; });
  return text;
}

std::string JsonText(const Json& object) {
  std::string text = "{";
  for (const auto& [key, value] : object.items()) {
    if (text.size() > 1) text += ',';
    text += Compact(Json(key)) + ':' + (value.is_array() ? ElementPerLine(value) : Compact(value));
  }
  return text + "}\n";
}

std::string JsonLine(const Json& object) {
  return Compact(object) + '\n';
}

void Print(std::string_view text) {
  PrintData(standalone::ShownLines(text));
}

void PrintData(std::string_view bytes) {
  if (nobodyReads) return;
  CheckWritten(std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size());
}

void FinishPrinting() {
  if (nobodyReads) return;
  CheckWritten(std::fflush(stdout) == 0);
}

void RequireAReader() {
  if (nobodyReads) throw OutputFailed("standard output cannot be written: nobody reads it any more");
}

void PrintError(std::string_view text) {
  const std::string shown = standalone::ShownLines(text);
  std::fwrite(shown.data(), 1, shown.size(), stderr);
  std::fflush(stderr);
}

}  // namespace app
