// The functions of the system by which a process writes are replaced here for this program and for all its libraries.
#include "partners/MortalDisk.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <utility>

namespace partners {

namespace {

// What a disk writes wholly or not at all: of a log and other files a sector, of the company file a page of it.
constexpr std::size_t kSector = 512;
constexpr std::size_t kPage = 4096;

MortalDisk* there = nullptr;

std::string NameOf(int file) {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), error).string();
}

struct stat StatusOf(int file) {
  struct stat status{};
  fstat(file, &status);
  return status;
}

// The index of a write-ahead log is memory that programs share; whoever opens the log anew makes it again.
bool IsMemory(std::string_view name) {
  return name.ends_with("-shm");
}

bool HasPages(int file) {
  return NameOf(file).ends_with(".company");
}

// None for what is no file on a disk, or while nobody dies.
MortalDisk* DiskOf(int file) {
  return there != nullptr && S_ISREG(StatusOf(file).st_mode) && !IsMemory(NameOf(file)) ? there : nullptr;
}
MortalDisk* DiskOf(const char* name) {
  return there != nullptr && !IsMemory(name) ? there : nullptr;
}

off_t EndOrPlaceOf(int file) {
  return (fcntl(file, F_GETFL) & O_APPEND) != 0 ? StatusOf(file).st_size : lseek(file, 0, SEEK_CUR);
}

std::string ContentOf(int file) {
  std::string content(static_cast<std::size_t>(StatusOf(file).st_size), '\0');
  const ssize_t count = pread(file, content.data(), content.size(), 0);
  content.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  return content;
}

void WriteAt(int file, off_t at, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = pwrite(file, bytes.data(), bytes.size(), at);
    if (count <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(count));
    at += count;
  }
}

void EndAt(int file, off_t length) {
  static_cast<void>(!ftruncate(file, length));
}

}  // namespace

void LiveWith(MortalDisk& disk) {
  there = &disk;
}

void MortalDisk::Write(int file, off_t at, std::string_view bytes) {
  const bool isLast = IsTheLast();
  const std::size_t unit = HasPages(file) ? kPage : 1;
  if (isLast) bytes = bytes.substr(0, UpTo(bytes.size() / unit) * unit);
  if (death_.isPowerLost) Remember(file, {.at = at, .bytes = std::string(bytes)});
  if (!isLast) return;
  there = nullptr;
  WriteAt(file, at, bytes);
  Die(NameOf(file));
}

void MortalDisk::Cut(int file, off_t length) {
  if (IsTheLast()) Die(NameOf(file));
  if (death_.isPowerLost) Remember(file, {.at = length, .bytes = {}, .isCut = true});
}

void MortalDisk::BringToDisk(int file) {
  if (IsTheLast()) Die(NameOf(file));
  const auto unsafe = unsafe_.find(StatusOf(file).st_ino);
  if (unsafe != unsafe_.end()) unsafe->second.pieces.clear();
}

void MortalDisk::Name(const char* name) {
  if (IsTheLast()) Die(name);
}

void MortalDisk::Remember(int file, Piece piece) {
  Unsafe& unsafe = unsafe_[StatusOf(file).st_ino];
  if (unsafe.file < 0) {
    unsafe.file = open(("/proc/self/fd/" + std::to_string(file)).c_str(), O_RDWR | O_CLOEXEC);
  }
  if (unsafe.pieces.empty()) unsafe.before = ContentOf(unsafe.file);
  unsafe.pieces.push_back(std::move(piece));
}

// What was written later may be on the disk without what was written before it, and the other way round.
void MortalDisk::LosePartOf(const Unsafe& unsafe) {
  if (unsafe.pieces.empty()) return;
  const std::size_t unit = HasPages(unsafe.file) ? kPage : kSector;
  EndAt(unsafe.file, 0);
  WriteAt(unsafe.file, 0, unsafe.before);
  for (const Piece& piece : unsafe.pieces) {
    const std::size_t most = piece.bytes.size() / unit + 1;
    const std::size_t units = UpTo(2) == 0 ? UpTo(most) : UpTo(1) * most;
    if (piece.isCut && units != 0) EndAt(unsafe.file, piece.at);
    WriteAt(unsafe.file, piece.at, std::string_view(piece.bytes).substr(0, units * unit));
  }
}

void MortalDisk::Die(const std::string& into) {
  there = nullptr;
  for (const auto& [number, unsafe] : unsafe_) LosePartOf(unsafe);
  static_cast<void>(!write(tell_, into.data(), into.size()));
  _exit(kDied);
}

}  // namespace partners

#pragma GCC visibility push(default)
extern "C" {

ssize_t pwrite64(int fd, const void* buf, size_t n, off64_t offset) {
  if (partners::MortalDisk* disk = partners::DiskOf(fd)) disk->Write(fd, offset, {static_cast<const char*>(buf), n});
  return syscall(SYS_pwrite64, fd, buf, n, offset);
}

ssize_t pwrite(int fd, const void* buf, size_t n, off_t offset) {
  return pwrite64(fd, buf, n, offset);
}

ssize_t write(int fd, const void* buf, size_t n) {
  if (partners::MortalDisk* disk = partners::DiskOf(fd)) {
    disk->Write(fd, partners::EndOrPlaceOf(fd), {static_cast<const char*>(buf), n});
  }
  return syscall(SYS_write, fd, buf, n);
}

ssize_t writev(int fd, const iovec* iovec, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes.append(static_cast<const char*>(iovec[i].iov_base), iovec[i].iov_len);
  return write(fd, bytes.data(), bytes.size());
}

int ftruncate64(int fd, off64_t length) noexcept {
  if (partners::MortalDisk* disk = partners::DiskOf(fd)) disk->Cut(fd, length);
  return static_cast<int>(syscall(SYS_ftruncate, fd, length));
}

int ftruncate(int fd, off_t length) noexcept {
  return ftruncate64(fd, length);
}

int truncate(const char* file, off_t length) noexcept {
  if (partners::MortalDisk* disk = partners::DiskOf(file)) disk->Name(file);
  return static_cast<int>(syscall(SYS_truncate, file, length));
}

int fsync(int fd) {
  if (partners::MortalDisk* disk = partners::DiskOf(fd)) disk->BringToDisk(fd);
  return static_cast<int>(syscall(SYS_fsync, fd));
}

int fdatasync(int fd) {
  if (partners::MortalDisk* disk = partners::DiskOf(fd)) disk->BringToDisk(fd);
  return static_cast<int>(syscall(SYS_fdatasync, fd));
}

int renameat2(int oldfd, const char* old, int newfd, const char* newName, unsigned int flags) noexcept {
  if (partners::MortalDisk* disk = partners::DiskOf(newName)) disk->Name(newName);
  return static_cast<int>(syscall(SYS_renameat2, oldfd, old, newfd, newName, flags));
}

int rename(const char* old, const char* newName) noexcept {
  return renameat2(AT_FDCWD, old, AT_FDCWD, newName, 0);
}

int unlink(const char* name) noexcept {
  if (partners::MortalDisk* disk = partners::DiskOf(name)) disk->Name(name);
  return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, name, 0));
}

int remove(const char* name) noexcept {
  if (unlink(name) == 0) return 0;
  return errno == EISDIR ? static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, name, AT_REMOVEDIR)) : -1;
}

}  // extern "C"
#pragma GCC visibility pop
