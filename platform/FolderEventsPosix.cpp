// Linux tells of changes in folders by a queue that can be waited for.
#include <limits.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <utility>

#include "platform/DescriptorPosix.h"
#include "platform/FolderEvents.h"

namespace platform {

namespace {

constexpr std::uint32_t kOfFiles = IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_MOVED_TO;
constexpr std::uint32_t kIsElsewhere = IN_DELETE_SELF | IN_MOVE_SELF;
constexpr int kNobodys = -1;

class FolderQueue final : public FolderEvents {
 public:
  Watching Add(const std::filesystem::path& folder) override {
    const int number = inotify_add_watch(queue_.Number(), folder.c_str(), kOfFiles | kIsElsewhere | IN_ONLYDIR);
    const auto known = numbers_.find(folder);
    const int before = known == numbers_.end() ? kNobodys : known->second;
    if (number == before) return number < 0 ? Watching::kNot : Watching::kAsBefore;
    Remove(folder);
    if (number < 0) return Watching::kNot;
    numbers_[folder] = number;
    return Watching::kFromNow;
  }

  void Remove(const std::filesystem::path& folder) override {
    const auto known = numbers_.find(folder);
    if (known == numbers_.end()) return;
    const int number = known->second;
    numbers_.erase(known);
    const bool isShared = std::ranges::any_of(numbers_, [&](const auto& entry) { return entry.second == number; });
    if (!isShared) inotify_rm_watch(queue_.Number(), number);
  }

  std::vector<Event> Wait(std::chrono::milliseconds longest) override {
    // What has no number is passed over.
    std::array<pollfd, 2> waited{pollfd{end_.readEnd.Number(), POLLIN, 0}, pollfd{queue_.Number(), POLLIN, 0}};
    const auto most = static_cast<int>(std::min<std::int64_t>(longest.count(), INT_MAX));
    if (poll(waited.data(), waited.size(), most) <= 0 || waited[0].revents != 0) return {};
    return TakeAll();
  }

  void End() noexcept override {
    constexpr char kEnd = 0;
    static_cast<void>(!write(end_.writeEnd.Number(), &kEnd, sizeof kEnd));
  }

 private:
  std::vector<Event> TakeAll() {
    std::vector<Event> events;
    alignas(inotify_event) std::array<char, 16'384> bytes;
    ssize_t count = 0;
    while ((count = read(queue_.Number(), bytes.data(), bytes.size())) > 0) {
      for (std::size_t offset = 0; offset < static_cast<std::size_t>(count);) {
        inotify_event event{};
        std::memcpy(&event, bytes.data() + offset, sizeof event);
        TakeOne(event, bytes.data() + offset + sizeof event, events);
        offset += sizeof event + event.len;
      }
    }
    return events;
  }

  void TakeOne(const inotify_event& event, const char* name, std::vector<Event>& events) {
    const bool hasOverflowed = (event.mask & IN_Q_OVERFLOW) != 0;
    const bool isGone = (event.mask & (kIsElsewhere | IN_IGNORED | IN_UNMOUNT)) != 0;
    for (auto entry = numbers_.begin(); entry != numbers_.end();) {
      const bool isIt = entry->second == event.wd;
      if (hasOverflowed) events.push_back({.folder = entry->first, .name = {}});
      if (isIt && event.len > 0) events.push_back({.folder = entry->first, .name = name});
      entry = isIt && isGone ? numbers_.erase(entry) : std::next(entry);
    }
    // What was moved is still watched where it is now.
    if ((event.mask & IN_MOVE_SELF) != 0) inotify_rm_watch(queue_.Number(), event.wd);
  }

  Pipe end_;
  Descriptor queue_{inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
  std::map<std::filesystem::path, int> numbers_;
};

}  // namespace

std::unique_ptr<FolderEvents> MakeFolderEvents() {
  return std::make_unique<FolderQueue>();
}

}  // namespace platform
