#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "standalone/desk/Company.h"

namespace partners {

// A request that some company has entered, whether it was sent or not.
struct Entered {
  std::size_t from = 0;
  std::size_t to = 0;
  std::string request;
  std::int64_t amount = 0;  // minor units
};

// Companies that are all paired with each other over one folder, each in a folder of its own, as on machines of their
// own. One is open at a time.
class Group {
 public:
  // Makes them where they are played with, and keeps a copy from which Begin() begins each history.
  Group(const std::filesystem::path& folder, std::size_t companies);

  // All of them as they were paired.
  void Begin();
  void CloseAll() { open_.reset(); }

  // To a local time such as 2026-06-01T09:00:00, at which all of them begin.
  void SetClock(std::size_t who, const std::string& time);

  std::size_t Size() const noexcept { return size_; }
  desk::Company& Open(std::size_t who);
  std::filesystem::path FileOf(std::size_t who) const;
  std::filesystem::path FolderOf(std::size_t who) const;
  std::filesystem::path Shared() const { return play_ / "shared"; }

  std::vector<Entered>& Requests() noexcept { return requests_; }

 private:
  void Make(std::size_t who);
  void Pair(std::size_t inviter, std::size_t accepter);

  std::filesystem::path play_;
  std::filesystem::path paired_;
  std::size_t size_;
  std::size_t openFor_ = 0;
  std::unique_ptr<desk::Company> open_;
  std::map<std::size_t, std::string> clocks_;
  std::vector<Entered> requests_;
};

}  // namespace partners
