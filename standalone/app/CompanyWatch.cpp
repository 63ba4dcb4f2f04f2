#include "standalone/app/CompanyWatch.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "standalone/app/Values.h"
#include "standalone/app/terminal/Output.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

using std::chrono::steady_clock;
using Woken = platform::FolderWatch::Woken;

constexpr std::string_view kPlaces = "letterPlaces";

// As many runs in a row as an exchange with some partners takes, and then so far apart: two programs that answer each
// other for ever, such as those of two copies of one company, leave the machine to others.
constexpr int kRunsInARow = 10;
constexpr std::chrono::seconds kBetweenRuns{2};

}  // namespace

std::string PlacesLine(const desk::LetterPlaces& places) {
  desk::Json folders = desk::Json::array();
  for (const std::filesystem::path& folder : places.folders) folders.push_back(standalone::PathText(folder));
  return JsonLine({{kPlaces, {{"folders", folders}, {"addresses", places.addresses}}}});
}

CompanyWatch::CompanyWatch(std::filesystem::path company)
    : company_(std::move(company)),
      folderOfBooks_(desk::FolderOfBooks(company_)),
      books_(desk::BooksWrittenOf(company_)),
      pace_(kRunsInARow, kBetweenRuns),
      watch_([this](const auto& folder, const auto& name) { return Matters(folder, name); }) {
  WatchAll();
}

std::string CompanyWatch::TakePlaces(std::string output) {
  const std::size_t end = output.find('\n');
  if (end == std::string::npos) return output;
  const desk::Json line = desk::Json::parse(output.substr(0, end), nullptr, /*allow_exceptions=*/false);
  if (!line.is_object() || !line.contains(kPlaces)) return output;
  const desk::Json& places = line.at(kPlaces);
  places_ = {.folders = {}, .addresses = places.at("addresses").get<std::vector<std::string>>()};
  for (const desk::Json& folder : places.at("folders")) places_.folders.push_back(FilePath(folder.get<std::string>()));
  WatchAll();
  return output.substr(end + 1);
}

void CompanyWatch::NoteBooks() {
  books_ = desk::BooksWrittenOf(company_);
}

void CompanyWatch::WaitFor(std::chrono::milliseconds longest) {
  const steady_clock::time_point latest = steady_clock::now() + longest;
  if (watch_.WaitFor(longest) != Woken::kByChange) return;
  const steady_clock::time_point earliest = std::min(latest, pace_.Next(steady_clock::now()));
  for (auto now = steady_clock::now(); now < earliest; now = steady_clock::now()) {
    if (watch_.WaitFor(std::chrono::ceil<std::chrono::milliseconds>(earliest - now)) == Woken::kByEnd) return;
  }
}

bool CompanyWatch::Matters(const std::filesystem::path& folder, const std::filesystem::path& name) {
  const bool mayHaveLetters = std::ranges::count(places_.folders, folder) != 0;
  if (mayHaveLetters && (name.empty() || desk::IsLetterFor(places_.addresses, name))) return true;
  if (folder != folderOfBooks_) return false;
  return std::exchange(books_, desk::BooksWrittenOf(company_)) != books_;
}

void CompanyWatch::WatchAll() {
  std::vector<std::filesystem::path> folders = places_.folders;
  folders.push_back(folderOfBooks_);
  watch_.Watch(std::move(folders));
}

}  // namespace app
