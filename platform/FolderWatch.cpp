#include "platform/FolderWatch.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// After which it is looked whether a folder is there, and still the same: the system need not tell that another one has
// its name now, such as that of a disk that was connected.
constexpr std::chrono::milliseconds kUntilLookedFor{1000};
// Without a change, for which changes count as being over; and how long they are waited for at most.
constexpr std::chrono::milliseconds kRest{150};
constexpr std::chrono::milliseconds kMostUnrest{600};

}  // namespace

FolderWatch::FolderWatch(Matters matters) : matters_(std::move(matters)), events_(MakeFolderEvents()) {}

FolderWatch::~FolderWatch() = default;

void FolderWatch::Watch(std::vector<std::filesystem::path> folders) {
  for (const std::filesystem::path& folder : folders_) {
    if (std::ranges::count(folders, folder) == 0) events_->Remove(folder);
  }
  folders_ = std::move(folders);
  AddAll();
}

FolderWatch::Woken FolderWatch::WaitFor(std::chrono::milliseconds longest) {
  const Clock::time_point latest = Clock::now() + longest;
  while (true) {
    AddAll();
    Take(std::chrono::milliseconds(0));
    if (isChanged_) LetItComeToRest();
    if (isEnded_) return Woken::kByEnd;
    if (std::exchange(isChanged_, false)) return Woken::kByChange;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(latest - Clock::now());
    if (left <= std::chrono::milliseconds::zero()) return Woken::kByTime;
    Take(std::min(left, kUntilLookedFor));
  }
}

void FolderWatch::End() noexcept {
  isEnded_ = true;
  events_->End();
}

void FolderWatch::AddAll() {
  for (const std::filesystem::path& folder : folders_) {
    if (events_->Add(folder) == FolderEvents::Watching::kFromNow && matters_(folder, {})) isChanged_ = true;
  }
}

void FolderWatch::Take(std::chrono::milliseconds longest) {
  for (const FolderEvents::Event& event : events_->Wait(longest)) {
    if (matters_(event.folder, event.name)) isChanged_ = true;
  }
}

void FolderWatch::LetItComeToRest() {
  const Clock::time_point latest = Clock::now() + kMostUnrest;
  Clock::time_point rested = Clock::now() + kRest;
  for (Clock::time_point now = Clock::now(); now < std::min(rested, latest) && !isEnded_; now = Clock::now()) {
    isChanged_ = false;
    Take(std::chrono::ceil<std::chrono::milliseconds>(std::min(rested, latest) - now));
    if (isChanged_) rested = Clock::now() + kRest;
  }
  isChanged_ = true;
}

}  // namespace platform
