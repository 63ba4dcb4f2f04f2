#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "platform/FolderEvents.h"

namespace platform {

// Waits until files come or change in some folders, as far as the system tells of it: it tells nothing of what other
// machines do in a folder that they share. Every second it is looked whether a folder has come, or another one under
// its name; nothing is said of one that cannot be watched. Used on one thread at a time, except for End().
class FolderWatch {
 public:
  // Whether it is of interest that a file has come or changed in a folder; an empty name stands for any, as when the
  // folder is watched from now on.
  using Matters = std::function<bool(const std::filesystem::path& folder, const std::filesystem::path& name)>;
  enum class Woken { kByChange, kByTime, kByEnd };

  // Throws std::system_error when the system has nothing left to wait on.
  explicit FolderWatch(Matters matters);
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;
  ~FolderWatch();

  // These from now on, each as it was if it was watched before.
  void Watch(std::vector<std::filesystem::path> folders);

  // Returns at once for what changed since the last wait. Changes that come close together are one, for less than a
  // second.
  Woken WaitFor(std::chrono::milliseconds longest);
  // Ends this wait and all that follow; from any thread.
  void End() noexcept;

 private:
  using Clock = std::chrono::steady_clock;

  void AddAll();
  void Take(std::chrono::milliseconds longest);
  void LetItComeToRest();

  Matters matters_;
  std::unique_ptr<FolderEvents> events_;
  std::vector<std::filesystem::path> folders_;
  bool isChanged_ = false;
  std::atomic<bool> isEnded_ = false;
};

}  // namespace platform
