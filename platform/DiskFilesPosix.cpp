#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <system_error>

#include "platform/DescriptorPosix.h"
#include "platform/DiskFiles.h"

namespace platform {

namespace {

[[noreturn]] void ThrowSystemError(const std::filesystem::path& file) {
  throw std::system_error(errno, std::generic_category(), file.string());
}

struct stat StatusOf(const std::filesystem::path& file) {
  struct stat status{};
  if (stat(file.c_str(), &status) != 0) ThrowSystemError(file);
  return status;
}

Descriptor Opened(const std::filesystem::path& file, int flags, mode_t mode = 0) {
  return Descriptor(open(file.c_str(), flags | O_CLOEXEC, mode));
}

// A folder that cannot be brought to the disk by itself, as on some network disks, is left to the system.
void BringFolderToDisk(const std::filesystem::path& folder) {
  const Descriptor descriptor = Opened(folder.empty() ? "." : folder, O_RDONLY | O_DIRECTORY);
  if (descriptor.IsOpen()) fsync(descriptor.Number());
}

}  // namespace

bool NamesAStream(const std::filesystem::path& /*name*/) noexcept {
  return false;
}

void MakeFile(const std::filesystem::path& file) {
  constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;
  const Descriptor made = Opened(file, O_WRONLY | O_CREAT | O_EXCL, kOwnerOnly);
  if (!made.IsOpen()) ThrowSystemError(file);
  // The user's mask may have taken rights of the owner's. Some disks give all files the same rights.
  static_cast<void>(fchmod(made.Number(), kOwnerOnly));
}

std::filesystem::path MakeTemporaryFolder() {
  std::string folder = (std::filesystem::temp_directory_path() / "multientity-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) ThrowSystemError(folder);
  // The user's mask may have taken rights of the owner's.
  static_cast<void>(chmod(folder.c_str(), S_IRWXU));
  return folder;
}

void TakeRightsOf(const std::filesystem::path& model, const std::filesystem::path& file) {
  constexpr mode_t kAllRights = S_IRWXU | S_IRWXG | S_IRWXO;
  constexpr auto kSameOwner = static_cast<uid_t>(-1);
  const struct stat wanted = StatusOf(model);
  const bool isGroupGiven = chown(file.c_str(), wanted.st_uid, wanted.st_gid) == 0 ||
                            chown(file.c_str(), kSameOwner, wanted.st_gid) == 0 ||
                            StatusOf(file).st_gid == wanted.st_gid;
  const mode_t rights = wanted.st_mode & (isGroupGiven ? kAllRights : kAllRights & ~static_cast<mode_t>(S_IRWXG));
  if (chmod(file.c_str(), rights) == 0) return;
  // Some disks give all files the same rights, which do no harm unless they are wider.
  if ((StatusOf(file).st_mode & kAllRights & ~rights) != 0) ThrowSystemError(file);
}

bool RenameUnlessTaken(const std::filesystem::path& file, const std::filesystem::path& name) {
  // Where the system can, the file never has two names, which a program that is killed would leave it.
  if (renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) != 0) {
    if (errno == EEXIST) return false;
    if (link(file.c_str(), name.c_str()) != 0) {
      if (errno == EEXIST) return false;
      ThrowSystemError(name);
    }
    unlink(file.c_str());
  }
  BringFolderToDisk(name.parent_path());
  return true;
}

void RenameOver(const std::filesystem::path& file, const std::filesystem::path& name) {
  if (std::rename(file.c_str(), name.c_str()) != 0) ThrowSystemError(name);
  BringFolderToDisk(name.parent_path());
}

void BringToDisk(const std::filesystem::path& file) {
  const Descriptor descriptor = Opened(file, O_RDONLY);
  if (!descriptor.IsOpen() || fsync(descriptor.Number()) != 0) ThrowSystemError(file);
}

void Remove(const std::filesystem::path& file) {
  if (unlink(file.c_str()) != 0) ThrowSystemError(file);
  BringFolderToDisk(file.parent_path());
}

bool HasOtherNames(const std::filesystem::path& file) {
  return StatusOf(file).st_nlink > 1;
}

// To open the file and close it again would end the locks that this process has on it.
bool MayWrite(const std::filesystem::path& file) noexcept {
  return faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) == 0;
}

bool MayMakeFilesIn(const std::filesystem::path& folder) noexcept {
  return faccessat(AT_FDCWD, folder.empty() ? "." : folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

bool IsOnReadOnlyMedium(const std::filesystem::path& file) noexcept {
  struct statvfs medium{};
  return statvfs(file.c_str(), &medium) == 0 && (medium.f_flag & ST_RDONLY) != 0;
}

}  // namespace platform
