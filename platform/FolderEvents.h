#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <vector>

namespace platform {

// What the system tells of files that come or change in some folders. Used on one thread, except for End().
class FolderEvents {
 public:
  enum class Watching { kNot, kAsBefore, kFromNow };
  struct Event {
    std::filesystem::path folder;
    std::filesystem::path name;  // of the file; empty when any may have changed
  };

  FolderEvents(const FolderEvents&) = delete;
  FolderEvents& operator=(const FolderEvents&) = delete;
  virtual ~FolderEvents() = default;

  // Watches a folder unless it does, from now on if another one had its name before. Not one that is not there, or that
  // the system cannot watch.
  virtual Watching Add(const std::filesystem::path& folder) = 0;
  virtual void Remove(const std::filesystem::path& folder) = 0;

  // What has come since the last call, or waits for it so long; nothing from End() on.
  virtual std::vector<Event> Wait(std::chrono::milliseconds longest) = 0;
  // From any thread, and for good.
  virtual void End() noexcept = 0;

 protected:
  FolderEvents() = default;
};

// Those of this operating system. Throws std::system_error when it has nothing left to wait on.
std::unique_ptr<FolderEvents> MakeFolderEvents();

}  // namespace platform
