#include "partners/BadFolder.h"

#include <algorithm>

#include "tests/support/TemporaryFolder.h"

namespace partners {

namespace {

constexpr std::size_t kAddress = 16;
constexpr std::string_view kEnding = ".envelope";

std::size_t Below(std::mt19937& random, std::size_t limit) {
  return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

}  // namespace

std::vector<std::filesystem::path> BadFolder::Lying() const {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    if (entry.is_regular_file() && entry.path().extension() == kEnding) files.push_back(entry.path());
  }
  std::ranges::sort(files);
  return files;
}

std::filesystem::path BadFolder::Any(std::mt19937& random) const {
  const std::vector<std::filesystem::path> files = Lying();
  return files.empty() ? std::filesystem::path() : files[Below(random, files.size())];
}

// Of any form behind the address, as copies and mail programs give them.
std::string BadFolder::NewName(std::string_view address) {
  return std::string(address) + "-copy " + std::to_string(++names_) + std::string(kEnding);
}

void BadFolder::Put(const std::string& name, const std::string& bytes) const {
  standalone::WriteFile(folder_ / name, bytes);
}

void BadFolder::Lose(std::mt19937& random) {
  std::filesystem::remove(Any(random));
}

void BadFolder::Double(std::mt19937& random) {
  const std::filesystem::path file = Any(random);
  if (!file.empty()) Put(NewName(file.filename().string().substr(0, kAddress)), standalone::ReadFile(file));
}

void BadFolder::Delay(std::mt19937& random) {
  const std::filesystem::path file = Any(random);
  if (file.empty()) return;
  delayed_.push_back({.name = file.filename().string(), .bytes = standalone::ReadFile(file)});
  std::filesystem::remove(file);
}

void BadFolder::Arrive(std::mt19937& random) {
  if (delayed_.empty()) return;
  const auto letter = delayed_.begin() + static_cast<std::ptrdiff_t>(Below(random, delayed_.size()));
  Put(letter->name, letter->bytes);
  delayed_.erase(letter);
}

void BadFolder::Truncate(std::mt19937& random) {
  const std::filesystem::path file = Any(random);
  if (file.empty()) return;
  std::filesystem::resize_file(file, Below(random, std::filesystem::file_size(file) + 1));
}

void BadFolder::Corrupt(std::mt19937& random) {
  const std::filesystem::path file = Any(random);
  if (file.empty()) return;
  std::string bytes = standalone::ReadFile(file);
  if (bytes.empty()) return;
  char& one = bytes[Below(random, bytes.size())];
  one = static_cast<char>(one ^ (1 << Below(random, 8)));
  standalone::WriteFile(file, bytes);
}

void BadFolder::Replay(std::mt19937& random) {
  if (seen_.empty()) return;
  const Letter& letter = seen_[Below(random, seen_.size())];
  Put(Below(random, 2) == 0 ? letter.name : NewName(letter.name.substr(0, kAddress)), letter.bytes);
}

void BadFolder::Misdirect(std::mt19937& random) {
  const std::filesystem::path file = Any(random);
  if (file.empty() || seen_.empty()) return;
  std::filesystem::rename(file, folder_ / NewName(seen_[Below(random, seen_.size())].name.substr(0, kAddress)));
}

void BadFolder::Remember() {
  for (const std::filesystem::path& file : Lying()) {
    const std::string name = file.filename().string();
    if (std::ranges::find(seen_, name, &Letter::name) == seen_.end()) {
      seen_.push_back({.name = name, .bytes = standalone::ReadFile(file)});
    }
  }
}

void BadFolder::LetTimePass() {
  for (const std::filesystem::path& file : Lying()) {
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - std::chrono::hours(24));
  }
}

}  // namespace partners
