#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace app {

enum class Align { kLeft, kRight };

// Which columns a narrow terminal goes without first.
enum class Importance { kDetail, kMinor, kMajor, kKey, kEssential };

// What may be done to the texts of a column where there is no room for them.
enum class Fit { kShorten, kWhole };

// Numbers and amounts, which stand at the right, are never shortened.
struct Column {
  std::string title;
  Align align = Align::kLeft;
  Importance importance = Importance::kEssential;
  Fit fit = Fit::kShorten;
};

// Rows under a header, for people. All columns are there, whatever is in them. What would steer a terminal is shown as
// standalone::Shown has it.
class Table {
 public:
  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  // As many cells as there are columns.
  void Add(std::vector<std::string> cells);
  // What stands under a line at the end.
  void AddTotal(std::vector<std::string> cells);
  bool Empty() const noexcept { return rows_.empty(); }

  // On a terminal of so many cells, the widest texts are shortened first; then the least important columns are left
  // out, of which the last line tells. Where there is no room even for the essential ones, their texts are shortened
  // further, and those at the right are left out. Without a number all of it is there.
  std::string Text(std::optional<std::size_t> cells) const;
  // The same for where the program prints to; see FitTablesTo().
  std::string Text() const;

 private:
  struct Place {
    std::size_t column;
    std::size_t width;
    std::size_t least;
  };

  std::vector<Place> AllPlaces() const;
  std::vector<Place> PlacesWithin(std::size_t cells) const;
  bool LeaveOneOut(std::vector<Place>& places, Importance most) const;
  std::string Line(const std::vector<Place>& places, const std::vector<std::string>& cells) const;
  std::string LeftOutText(const std::vector<Place>& places) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
  std::vector<std::vector<std::string>> totals_;
};

// The text in lines of at most so many cells, as far as its words allow; without a number in one.
std::string Wrapped(std::string_view text, std::optional<std::size_t> cells);
// The same for where the program prints to.
std::string Wrapped(std::string_view text);

// How many cells the tables of this program have from now on; none for tables that are whole, as they are at first.
void FitTablesTo(std::optional<std::size_t> cells) noexcept;

}  // namespace app
