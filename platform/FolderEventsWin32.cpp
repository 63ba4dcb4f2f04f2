// Windows fills a buffer for each folder, and tells of it by one port for all of them.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <system_error>
#include <utility>

#include "platform/FolderEvents.h"

namespace platform {

namespace {

constexpr ULONG_PTR kEndKey = 0;
constexpr DWORD kOfFiles = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE;

class FolderHandle {
 public:
  // Nobody else is kept from moving or removing the folder.
  explicit FolderHandle(const std::filesystem::path& folder)
      : handle_(::CreateFileW(folder.c_str(), FILE_LIST_DIRECTORY,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED, nullptr)) {}
  FolderHandle(const FolderHandle&) = delete;
  FolderHandle& operator=(const FolderHandle&) = delete;
  FolderHandle(FolderHandle&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
  FolderHandle& operator=(FolderHandle&&) = delete;
  ~FolderHandle() {
    if (IsOpen()) ::CloseHandle(handle_);
  }

  HANDLE Get() const noexcept { return handle_; }
  bool IsOpen() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
  bool IsSameAs(const FolderHandle& other) const noexcept {
    BY_HANDLE_FILE_INFORMATION one{};
    BY_HANDLE_FILE_INFORMATION two{};
    return ::GetFileInformationByHandle(handle_, &one) != 0 && ::GetFileInformationByHandle(other.handle_, &two) != 0 &&
           one.dwVolumeSerialNumber == two.dwVolumeSerialNumber && one.nFileIndexHigh == two.nFileIndexHigh &&
           one.nFileIndexLow == two.nFileIndexLow;
  }

 private:
  HANDLE handle_;
};

// A folder whose changes the system writes into the buffer of this, until this has ended it.
class FilledFolder {
 public:
  explicit FilledFolder(FolderHandle handle) noexcept : handle_(std::move(handle)) {}
  FilledFolder(const FilledFolder&) = delete;
  FilledFolder& operator=(const FilledFolder&) = delete;
  ~FilledFolder() {
    if (!isBeingFilled_) return;
    DWORD ignored = 0;
    ::CancelIoEx(handle_.Get(), &state_);
    ::GetOverlappedResult(handle_.Get(), &state_, &ignored, TRUE);
  }

  const FolderHandle& Handle() const noexcept { return handle_; }

  bool Fill() {
    state_ = {};
    isBeingFilled_ = ::ReadDirectoryChangesW(handle_.Get(), buffer_.data(), static_cast<DWORD>(buffer_.size()), FALSE,
                                             kOfFiles, nullptr, &state_, nullptr) != 0;
    return isBeingFilled_;
  }

  // Of the files that have come or changed; an empty one when there were more than the buffer holds.
  std::vector<std::filesystem::path> Filled(DWORD count) {
    isBeingFilled_ = false;
    if (count == 0) return {std::filesystem::path()};
    std::vector<std::filesystem::path> names;
    for (std::size_t offset = 0;;) {
      FILE_NOTIFY_INFORMATION change{};
      constexpr std::size_t kHead = offsetof(FILE_NOTIFY_INFORMATION, FileName);
      std::memcpy(&change, buffer_.data() + offset, kHead);
      std::wstring name(change.FileNameLength / sizeof(wchar_t), L'\0');
      std::memcpy(name.data(), buffer_.data() + offset + kHead, change.FileNameLength);
      const bool isThere = change.Action != FILE_ACTION_REMOVED && change.Action != FILE_ACTION_RENAMED_OLD_NAME;
      if (isThere) names.emplace_back(std::move(name));
      if (change.NextEntryOffset == 0) return names;
      offset += change.NextEntryOffset;
    }
  }

 private:
  FolderHandle handle_;
  bool isBeingFilled_ = false;
  OVERLAPPED state_{};
  alignas(FILE_NOTIFY_INFORMATION) std::array<std::byte, 16 * 1024> buffer_{};
};

class FolderPort final : public FolderEvents {
 public:
  FolderPort() : port_(::CreateIoCompletionPort(INVALID_HANDLE_VALUE, nullptr, 0, 1)) {
    if (port_ == nullptr) {
      throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), "The watch for folders");
    }
  }
  ~FolderPort() override {
    folders_.clear();
    ::CloseHandle(port_);
  }

  Watching Add(const std::filesystem::path& folder) override {
    FolderHandle handle(folder);
    const auto before = Find(folder);
    if (before != folders_.end() && handle.IsOpen() && handle.IsSameAs(before->second.filled->Handle())) {
      return Watching::kAsBefore;
    }
    if (before != folders_.end()) folders_.erase(before);
    if (!handle.IsOpen()) return Watching::kNot;
    // What the port still holds of one that is not watched any more has a key that is nobody's.
    const ULONG_PTR key = ++lastKey_;
    auto filled = std::make_unique<FilledFolder>(std::move(handle));
    const bool isWatched = ::CreateIoCompletionPort(filled->Handle().Get(), port_, key, 0) != nullptr && filled->Fill();
    if (!isWatched) return Watching::kNot;
    folders_.emplace(key, Folder{.path = folder, .filled = std::move(filled)});
    return Watching::kFromNow;
  }

  void Remove(const std::filesystem::path& folder) override {
    if (const auto found = Find(folder); found != folders_.end()) folders_.erase(found);
  }

  std::vector<Event> Wait(std::chrono::milliseconds longest) override {
    std::vector<Event> events;
    auto most = static_cast<DWORD>(std::min<std::int64_t>(longest.count(), INFINITE - 1));
    while (TakeOne(most, events)) most = 0;
    return events;
  }

  void End() noexcept override { ::PostQueuedCompletionStatus(port_, 0, kEndKey, nullptr); }

 private:
  struct Folder {
    std::filesystem::path path;
    std::unique_ptr<FilledFolder> filled;
  };
  using Folders = std::map<ULONG_PTR, Folder>;

  Folders::iterator Find(const std::filesystem::path& folder) {
    return std::ranges::find_if(folders_, [&](const auto& entry) { return entry.second.path == folder; });
  }

  // False when there is nothing more to take.
  bool TakeOne(DWORD most, std::vector<Event>& events) {
    DWORD count = 0;
    ULONG_PTR key = kEndKey;
    OVERLAPPED* filled = nullptr;
    const bool isWell = ::GetQueuedCompletionStatus(port_, &count, &key, &filled, most) != 0;
    if (filled == nullptr) {
      // For whoever waits next.
      if (isWell) End();
      return false;
    }
    const auto folder = folders_.find(key);
    if (folder == folders_.end()) return true;
    for (const std::filesystem::path& name : folder->second.filled->Filled(isWell ? count : 0)) {
      events.push_back({.folder = folder->second.path, .name = name});
    }
    // One that is gone cannot be watched any longer.
    if (!isWell || !folder->second.filled->Fill()) folders_.erase(folder);
    return true;
  }

  HANDLE port_;
  ULONG_PTR lastKey_ = kEndKey;
  Folders folders_;
};

}  // namespace

std::unique_ptr<FolderEvents> MakeFolderEvents() {
  return std::make_unique<FolderPort>();
}

}  // namespace platform
