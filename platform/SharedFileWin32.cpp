#include <windows.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/SharedFile.h"

namespace platform {

namespace {

// What is deleted or renamed meanwhile stays open.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// One call reads or writes no more.
constexpr std::size_t kMostAtOnce = 1U << 30U;

HANDLE Native(std::intptr_t handle) noexcept {
  return reinterpret_cast<HANDLE>(handle);
}

std::intptr_t Closed() noexcept {
  return reinterpret_cast<std::intptr_t>(INVALID_HANDLE_VALUE);
}

[[noreturn]] void ThrowFailure(const std::string& what) {
  throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

std::intptr_t Open(const std::filesystem::path& file, DWORD access, DWORD disposition) {
  const HANDLE opened =
      CreateFileW(file.c_str(), access, kShareAll, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (opened == INVALID_HANDLE_VALUE) ThrowFailure("A file");
  return reinterpret_cast<std::intptr_t>(opened);
}

OVERLAPPED At(std::uint64_t offset) noexcept {
  constexpr unsigned kBitsOfAHalf = 32;
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> kBitsOfAHalf);
  return place;
}

// Locks keep others from reading and writing what they cover, so this one lies far behind what any file has.
constexpr std::uint64_t kLockedByte = std::uint64_t{1} << 62U;

bool IsSame(const BY_HANDLE_FILE_INFORMATION& one, const BY_HANDLE_FILE_INFORMATION& other) noexcept {
  return one.dwVolumeSerialNumber == other.dwVolumeSerialNumber && one.nFileIndexHigh == other.nFileIndexHigh &&
         one.nFileIndexLow == other.nFileIndexLow;
}

}  // namespace

SharedFile SharedFile::OpenToRead(const std::filesystem::path& file) {
  SharedFile opened(Open(file, GENERIC_READ, OPEN_EXISTING));
  opened.RequireRegular(file);
  return opened;
}

// Who may append and not write at will appends behind what others have appended meanwhile; who may not read may not
// lock.
SharedFile SharedFile::OpenToAppend(const std::filesystem::path& file) {
  SharedFile opened(Open(file, GENERIC_READ | FILE_APPEND_DATA, OPEN_ALWAYS));
  opened.RequireRegular(file);
  return opened;
}

SharedFile::SharedFile(SharedFile&& other) noexcept : handle_(std::exchange(other.handle_, Closed())) {}

SharedFile& SharedFile::operator=(SharedFile&& other) noexcept {
  std::swap(handle_, other.handle_);
  return *this;
}

SharedFile::~SharedFile() {
  if (handle_ != Closed()) CloseHandle(Native(handle_));
}

void SharedFile::RequireRegular(const std::filesystem::path& /*file*/) const {
  if (GetFileType(Native(handle_)) == FILE_TYPE_DISK) return;
  throw std::system_error(std::make_error_code(std::errc::invalid_argument), "A file");
}

std::uint64_t SharedFile::Size() const {
  LARGE_INTEGER size{};
  if (GetFileSizeEx(Native(handle_), &size) == 0) ThrowFailure("A file's size");
  return static_cast<std::uint64_t>(size.QuadPart);
}

bool SharedFile::HasName(const std::filesystem::path& name) const noexcept {
  const HANDLE opened = CreateFileW(name.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return false;
  BY_HANDLE_FILE_INFORMATION own{};
  BY_HANDLE_FILE_INFORMATION named{};
  const bool isSame = GetFileInformationByHandle(Native(handle_), &own) != 0 &&
                      GetFileInformationByHandle(opened, &named) != 0 && IsSame(own, named);
  CloseHandle(opened);
  return isSame;
}

std::size_t SharedFile::Read(std::uint64_t offset, std::span<char> bytes) const {
  std::size_t count = 0;
  while (count < bytes.size()) {
    OVERLAPPED place = At(offset + count);
    DWORD more = 0;
    const auto wanted = static_cast<DWORD>(std::min(bytes.size() - count, kMostAtOnce));
    if (ReadFile(Native(handle_), bytes.data() + count, wanted, &more, &place) == 0) {
      if (GetLastError() == ERROR_HANDLE_EOF) break;
      ThrowFailure("A file that is read");
    }
    if (more == 0) break;
    count += more;
  }
  return count;
}

void SharedFile::Append(std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
    if (WriteFile(Native(handle_), bytes.data(), wanted, &written, nullptr) == 0) {
      ThrowFailure("A file that is written");
    }
    bytes.remove_prefix(written);
  }
}

bool SharedFile::TryLock() noexcept {
  OVERLAPPED place = At(kLockedByte);
  return LockFileEx(Native(handle_), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0;
}

void SharedFile::Unlock() noexcept {
  OVERLAPPED place = At(kLockedByte);
  UnlockFileEx(Native(handle_), 0, 1, 0, &place);
}

}  // namespace platform
