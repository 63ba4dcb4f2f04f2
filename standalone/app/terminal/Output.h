#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace app {

// Keys stay in the order in which they were added.
using Json = nlohmann::ordered_json;

enum class Align { kLeft, kRight };

struct Column {
  std::string title;
  Align align = Align::kLeft;
};

// Rows under a header, for people. Columns in which every row is empty are left out. What would steer a terminal is
// shown as standalone::Shown has it.
class Table {
 public:
  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  // As many cells as there are columns.
  void Add(std::vector<std::string> cells);
  bool Empty() const noexcept { return rows_.empty(); }
  std::string Text() const;

 private:
  std::size_t WidthOf(std::size_t column) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

// An object whose lists have one element per line, so that line-wise tools can read them too. No text in it steers a
// terminal.
std::string JsonText(const Json& object);
// An object on one line.
std::string JsonLine(const Json& object);

// Of a text for people or of an error, lines are all that a terminal gets to see: what would steer it is shown as
// standalone::Shown has it.

// Standard output cannot be written.
class OutputFailed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Writes to standard output. Throws OutputFailed when it cannot be written, unless whoever read it has stopped reading:
// then the rest is not written.
void Print(std::string_view text);
// The same for what another program is to have byte by byte, such as CSV; it stays as it is.
void PrintData(std::string_view bytes);
// Makes sure that everything printed has arrived; throws like Print.
void FinishPrinting();
// Throws OutputFailed when something was not written as nobody reads any more; for who must not lose it.
void RequireAReader();

// Writes to standard error, as far as it goes.
void PrintError(std::string_view text);

}  // namespace app
