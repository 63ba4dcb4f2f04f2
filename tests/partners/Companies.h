#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "standalone/desk/Company.h"

namespace partners {

inline constexpr std::array kCompanies{"Alder", "Birch", "Cedar", "Dogwood", "Elm", "Fir"};

// Throws Violation for another name.
std::size_t CompanyNamed(std::string_view name);

// Companies that are partners of each other over one folder, each in a folder of its own, as on machines of their own.
// One is open at a time.
class Companies {
 public:
  // Makes their folders below `folder`; who pairs them makes them there.
  Companies(const std::filesystem::path& folder, std::size_t size);

  // Keeps a copy of all as they are, from which Begin() begins.
  void Keep();
  void Begin();
  void CloseAll() { open_.reset(); }

  // To a local time such as 2026-06-01T09:00:00; until then, and after Begin(), it is the one that the program set.
  void SetClock(std::size_t who, const std::string& time);

  std::size_t Size() const noexcept { return size_; }
  desk::Company& Open(std::size_t who);
  std::filesystem::path FileOf(std::size_t who) const;
  std::filesystem::path FolderOf(std::size_t who) const;
  std::filesystem::path Shared() const { return play_ / "shared"; }

 private:
  std::filesystem::path play_;
  std::filesystem::path kept_;
  std::size_t size_;
  std::size_t openFor_ = 0;
  std::unique_ptr<desk::Company> open_;
  std::string clock_;
  std::map<std::size_t, std::string> clocks_;
};

}  // namespace partners
