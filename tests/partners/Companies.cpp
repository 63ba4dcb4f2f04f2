#include "partners/Companies.h"

#include <cstdlib>

#include "partners/Books.h"

namespace partners {

namespace {

// The clock of who is opened; empty for that of the machine.
constexpr const char* kClock = "MULTIENTITY_NOW";

std::string ClockOfTheProgram() {
  const char* clock = std::getenv(kClock);
  return clock == nullptr ? "" : clock;
}

}  // namespace

std::size_t CompanyNamed(std::string_view name) {
  for (std::size_t who = 0; who < kCompanies.size(); ++who) {
    if (name == kCompanies.at(who)) return who;
  }
  throw Violation("there is a partner " + std::string(name));
}

Companies::Companies(const std::filesystem::path& folder, std::size_t size)
    : play_(folder / "play"), kept_(folder / "paired"), size_(size), clock_(ClockOfTheProgram()) {
  std::filesystem::create_directories(Shared());
  for (std::size_t who = 0; who < size_; ++who) std::filesystem::create_directory(FolderOf(who));
}

void Companies::Keep() {
  CloseAll();
  std::filesystem::copy(play_, kept_, std::filesystem::copy_options::recursive);
}

void Companies::Begin() {
  CloseAll();
  clocks_.clear();
  std::filesystem::remove_all(play_);
  std::filesystem::copy(kept_, play_, std::filesystem::copy_options::recursive);
}

desk::Company& Companies::Open(std::size_t who) {
  if (!open_ || openFor_ != who) {
    open_.reset();
    const auto clock = clocks_.find(who);
    setenv(kClock, clock == clocks_.end() ? clock_.c_str() : clock->second.c_str(), /*overwrite=*/1);
    open_ = std::make_unique<desk::Company>(FileOf(who));
    openFor_ = who;
  }
  return *open_;
}

void Companies::SetClock(std::size_t who, const std::string& time) {
  clocks_[who] = time;
  CloseAll();
}

std::filesystem::path Companies::FolderOf(std::size_t who) const {
  return play_ / kCompanies.at(who);
}

std::filesystem::path Companies::FileOf(std::size_t who) const {
  return FolderOf(who) / "books.company";
}

}  // namespace partners
