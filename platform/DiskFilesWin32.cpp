#include <windows.h>

#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/DiskFiles.h"

namespace platform {

namespace {

[[noreturn]] void ThrowSystemError(const std::filesystem::path& file) {
  throw std::filesystem::filesystem_error("A file", file,
                                          std::error_code(static_cast<int>(GetLastError()), std::system_category()));
}

// To be asked about, beside others who have it open; its handle is none when it cannot be opened with such rights.
class OpenFile {
 public:
  explicit OpenFile(const std::filesystem::path& file, DWORD rights = FILE_READ_ATTRIBUTES) noexcept
      : handle_(CreateFileW(file.c_str(), rights, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr)) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (IsOpen()) CloseHandle(handle_);
  }

  HANDLE Handle() const noexcept { return handle_; }
  bool IsOpen() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }

 private:
  HANDLE handle_;
};

}  // namespace

// What stands before the last separator may begin with a drive.
bool NamesAStream(const std::filesystem::path& name) noexcept {
  const std::wstring_view text = name.native();
  const std::size_t separator = text.find_last_of(L"\\/");
  const std::size_t drive = text.size() > 1 && text[1] == L':' ? 2 : 0;
  return text.substr(separator == std::wstring_view::npos ? drive : separator).find(L':') != std::wstring_view::npos;
}

void MakeFile(const std::filesystem::path& file) {
  const HANDLE made = CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (made == INVALID_HANDLE_VALUE) ThrowSystemError(file);
  CloseHandle(made);
}

std::filesystem::path MakeTemporaryFolder() {
  std::random_device random;
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("multientity-" + std::to_string(random()) + std::to_string(random()));
  if (CreateDirectoryW(folder.c_str(), nullptr) == 0) ThrowSystemError(folder);
  return folder;
}

void TakeRightsOf(const std::filesystem::path& /*model*/, const std::filesystem::path& /*file*/) {}

bool RenameUnlessTaken(const std::filesystem::path& file, const std::filesystem::path& name) {
  if (MoveFileExW(file.c_str(), name.c_str(), MOVEFILE_WRITE_THROUGH) != 0) return true;
  const DWORD error = GetLastError();
  if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS) return false;
  ThrowSystemError(name);
}

void RenameOver(const std::filesystem::path& file, const std::filesystem::path& name) {
  if (MoveFileExW(file.c_str(), name.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0) {
    ThrowSystemError(name);
  }
}

void BringToDisk(const std::filesystem::path& file) {
  const OpenFile opened(file, GENERIC_WRITE);
  if (!opened.IsOpen() || FlushFileBuffers(opened.Handle()) == 0) ThrowSystemError(file);
}

// The file system brings the changes of names to the disk in their order.
void Remove(const std::filesystem::path& file) {
  if (DeleteFileW(file.c_str()) == 0) ThrowSystemError(file);
}

bool HasOtherNames(const std::filesystem::path& file) {
  const OpenFile opened(file);
  BY_HANDLE_FILE_INFORMATION information{};
  if (GetFileInformationByHandle(opened.Handle(), &information) == 0) ThrowSystemError(file);
  return information.nNumberOfLinks > 1;
}

bool MayWrite(const std::filesystem::path& file) noexcept {
  return OpenFile(file, FILE_WRITE_DATA).IsOpen() || GetLastError() == ERROR_SHARING_VIOLATION;
}

bool MayMakeFilesIn(const std::filesystem::path& folder) noexcept {
  return OpenFile(folder.empty() ? L"." : folder, FILE_ADD_FILE).IsOpen();
}

bool IsOnReadOnlyMedium(const std::filesystem::path& file) noexcept {
  const OpenFile opened(file);
  DWORD flags = 0;
  return GetVolumeInformationByHandleW(opened.Handle(), nullptr, 0, nullptr, nullptr, &flags, nullptr, 0) != 0 &&
         (flags & FILE_READ_ONLY_VOLUME) != 0;
}

}  // namespace platform
