#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "platform/DiskFiles.h"
#include "platform/SharedFile.h"

namespace platform {

namespace {

constexpr std::intptr_t kClosed = -1;

// A pipe is not waited for, a terminal does not become this program's.
constexpr int kWithoutWaiting = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

int Number(std::intptr_t handle) noexcept {
  return static_cast<int>(handle);
}

[[noreturn]] void ThrowFailure(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

[[noreturn]] void ThrowNotRegular(const std::filesystem::path& file) {
  throw std::system_error(std::make_error_code(std::errc::invalid_argument), file.string());
}

// Asked before a device is opened, as some do something when they are.
void RequireNothingElse(const std::filesystem::path& file) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) ThrowNotRegular(file);
}

std::intptr_t Open(const std::filesystem::path& file, int flags) {
  constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;
  RequireNothingElse(file);
  const int number = open(file.c_str(), flags | kWithoutWaiting, kOwnerOnly);
  if (number < 0) ThrowFailure(file.string());
  return number;
}

// What cannot be made is told when it is opened.
void MakeUnlessThere(const std::filesystem::path& file) {
  try {
    if (!std::filesystem::exists(file)) MakeFile(file);
  } catch (const std::system_error&) {
  }
}

struct stat StatusOf(std::intptr_t handle) {
  struct stat status{};
  if (fstat(Number(handle), &status) != 0) ThrowFailure("A file's status");
  return status;
}

}  // namespace

SharedFile SharedFile::OpenToRead(const std::filesystem::path& file) {
  SharedFile opened(Open(file, O_RDONLY));
  opened.RequireRegular(file);
  return opened;
}

SharedFile SharedFile::OpenToAppend(const std::filesystem::path& file) {
  MakeUnlessThere(file);
  SharedFile opened(Open(file, O_WRONLY | O_APPEND | O_CREAT));
  opened.RequireRegular(file);
  return opened;
}

SharedFile::SharedFile(SharedFile&& other) noexcept : handle_(std::exchange(other.handle_, kClosed)) {}

SharedFile& SharedFile::operator=(SharedFile&& other) noexcept {
  std::swap(handle_, other.handle_);
  return *this;
}

SharedFile::~SharedFile() {
  if (handle_ != kClosed) close(Number(handle_));
}

void SharedFile::RequireRegular(const std::filesystem::path& file) const {
  if (!S_ISREG(StatusOf(handle_).st_mode)) ThrowNotRegular(file);
}

std::uint64_t SharedFile::Size() const {
  return static_cast<std::uint64_t>(StatusOf(handle_).st_size);
}

bool SharedFile::HasName(const std::filesystem::path& name) const noexcept {
  struct stat own{};
  struct stat named{};
  return fstat(Number(handle_), &own) == 0 && stat(name.c_str(), &named) == 0 && own.st_dev == named.st_dev &&
         own.st_ino == named.st_ino;
}

std::size_t SharedFile::Read(std::uint64_t offset, std::span<char> bytes) const {
  std::size_t count = 0;
  while (count < bytes.size()) {
    const ssize_t more =
        pread(Number(handle_), bytes.data() + count, bytes.size() - count, static_cast<off_t>(offset + count));
    if (more < 0 && errno == EINTR) continue;
    if (more < 0) ThrowFailure("A file that is read");
    if (more == 0) break;
    count += static_cast<std::size_t>(more);
  }
  return count;
}

void SharedFile::Append(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(Number(handle_), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) ThrowFailure("A file that is written");
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

bool SharedFile::TryLock() noexcept {
  return flock(Number(handle_), LOCK_EX | LOCK_NB) == 0;
}

void SharedFile::Unlock() noexcept {
  flock(Number(handle_), LOCK_UN);
}

}  // namespace platform
