#include "standalone/app/terminal/Table.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "standalone/values/Characters.h"
#include "standalone/values/Text.h"
#include "standalone/values/Unicode.h"

namespace app {

namespace {

constexpr std::string_view kGap = "  ";
constexpr std::string_view kCut = "\u2026";
// What is shorter is hardly recognised any more.
constexpr std::size_t kLeastWidth = 10;
// And this is what is left of it on the narrowest terminals.
constexpr std::size_t kLeastWidthAtAll = 4;
constexpr std::size_t kLeastColumns = 2;
// Where there is less room, a sentence goes beyond the end of the line rather than down the screen.
constexpr std::size_t kLeastLine = 40;

std::optional<std::size_t> cellsToFit;

// The text in at most so many cells, with a mark where it is cut.
std::string Shortened(std::string_view text, std::size_t width) {
  if (standalone::CellsIn(text) <= width) return std::string(text);
  std::size_t bytes = 0;
  for (std::size_t cells = 1; bytes < text.size();) {
    const standalone::Character next = standalone::FirstCharacter(text.substr(bytes));
    cells += standalone::CellsOf(next.number);
    if (cells > width) break;
    bytes += next.length;
  }
  return std::string(text.substr(0, bytes)).append(kCut);
}

std::string Padded(std::string_view text, std::size_t width, Align align) {
  std::string shown = Shortened(text, width);
  const std::string blanks(width - standalone::CellsIn(shown), ' ');
  return align == Align::kLeft ? shown + blanks : blanks + shown;
}

std::string WithoutTrailingBlanks(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

template <typename Places>
std::size_t WidthOf(const Places& places) {
  std::size_t width = places.empty() ? 0 : (places.size() - 1) * kGap.size();
  for (const auto& place : places) width += place.width;
  return width;
}

// Returns whether they have no more than so many cells then.
template <typename Places>
bool Shorten(Places& places, std::size_t cells) {
  const auto spare = [](const auto& place) {
    return place.width > place.least ? place.width : 0;
  };
  for (std::size_t width = WidthOf(places); width > cells; --width) {
    const auto widest = std::ranges::max_element(places, {}, spare);
    if (widest == places.end() || spare(*widest) == 0) return false;
    --widest->width;
  }
  return true;
}

}  // namespace

void Table::Add(std::vector<std::string> cells) {
  for (std::string& cell : cells) cell = standalone::Shown(cell);
  rows_.push_back(std::move(cells));
}

void Table::AddTotal(std::vector<std::string> cells) {
  for (std::string& cell : cells) cell = standalone::Shown(cell);
  totals_.push_back(std::move(cells));
}

std::vector<Table::Place> Table::AllPlaces() const {
  std::vector<Place> places;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    std::size_t width = standalone::CellsIn(columns_[column].title);
    for (const auto& row : rows_) width = std::max(width, standalone::CellsIn(row[column]));
    for (const auto& row : totals_) width = std::max(width, standalone::CellsIn(row[column]));
    const bool isWhole = columns_[column].align == Align::kRight || columns_[column].fit == Fit::kWhole;
    places.push_back({.column = column, .width = width, .least = isWhole ? width : std::min(width, kLeastWidth)});
  }
  return places;
}

std::vector<Table::Place> Table::PlacesWithin(std::size_t cells) const {
  std::vector<Place> left = AllPlaces();
  std::vector<Place> places = left;
  while (!Shorten(places, cells) && LeaveOneOut(left, Importance::kKey)) places = left;
  if (WidthOf(places) <= cells) return places;
  for (Place& place : left) {
    if (place.least < place.width) place.least = std::min(place.least, kLeastWidthAtAll);
  }
  places = left;
  while (!Shorten(places, cells) && LeaveOneOut(left, Importance::kEssential)) places = left;
  return places;
}

// The last one among those that matter least, and no more than `most`.
bool Table::LeaveOneOut(std::vector<Place>& places, Importance most) const {
  const auto importance = [this](const Place& place) {
    return columns_[place.column].importance;
  };
  const auto least = std::min_element(places.rbegin(), places.rend(), [&](const Place& left, const Place& right) {
    return importance(left) < importance(right);
  });
  if (places.size() <= kLeastColumns || importance(*least) > most) return false;
  places.erase(std::prev(least.base()));
  return true;
}

std::string Table::Line(const std::vector<Place>& places, const std::vector<std::string>& cells) const {
  std::string text;
  for (const Place& place : places) {
    if (&place != &places.front()) text += kGap;
    text += Padded(cells[place.column], place.width, columns_[place.column].align);
  }
  return WithoutTrailingBlanks(std::move(text)) + '\n';
}

std::string Table::LeftOutText(const std::vector<Place>& places) const {
  std::string titles;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    if (std::ranges::find(places, column, &Place::column) != places.end()) continue;
    titles.append(titles.empty() ? "" : ", ").append(columns_[column].title);
  }
  return titles.empty() ? titles : "(--wide shows also: " + titles + ")";
}

std::string Table::Text(std::optional<std::size_t> cells) const {
  const std::vector<Place> places = cells ? PlacesWithin(*cells) : AllPlaces();
  std::vector<std::string> titles;
  std::vector<std::string> dashes(columns_.size());
  for (const Column& column : columns_) titles.push_back(column.title);
  for (const Place& place : places) dashes[place.column] = std::string(place.width, '-');
  std::string text = Line(places, titles) + Line(places, dashes);
  for (const auto& row : rows_) text += Line(places, row);
  if (!totals_.empty()) text += Line(places, dashes);
  for (const auto& row : totals_) text += Line(places, row);
  const std::string leftOut = LeftOutText(places);
  return leftOut.empty() ? text : text + Wrapped(leftOut, cells) + '\n';
}

std::string Table::Text() const {
  return Text(cellsToFit);
}

std::string Wrapped(std::string_view text, std::optional<std::size_t> cells) {
  std::string lines;
  std::size_t width = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' ', 1), text.size());
    std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    if (width != 0 && cells && width + standalone::CellsIn(word) > std::max(*cells, kLeastLine)) {
      lines += '\n';
      width = 0;
      word.remove_prefix(1);
    }
    lines += word;
    width += standalone::CellsIn(word);
  }
  return lines;
}

std::string Wrapped(std::string_view text) {
  return Wrapped(text, cellsToFit);
}

void FitTablesTo(std::optional<std::size_t> cells) noexcept {
  cellsToFit = cells;
}

}  // namespace app
