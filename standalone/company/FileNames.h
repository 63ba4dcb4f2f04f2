#pragma once

#include <filesystem>
#include <vector>

namespace standalone {

// Of the operations log, the remote switches, who the company is to its partners, and the lock of who carries for it.
inline constexpr const char* kLogFileSuffix = ".log";
inline constexpr const char* kRemoteFileSuffix = ".remote.toml";
inline constexpr const char* kIdentityFileSuffix = ".identity";
inline constexpr const char* kCarrierLockSuffix = ".identity.lock";

// What lies beside a company has its name with a suffix. Throws InvalidInput for a name that is none of a file.
const std::filesystem::path& RequireFileName(const std::filesystem::path& file);

// In which a file of that name lies.
std::filesystem::path FolderOf(const std::filesystem::path& file);

// Whatever it is, also a link to nothing.
bool IsThere(const std::filesystem::path& file);

// The file to which a link leads, beside which lies what belongs to it: the engine's log, the operations log, the
// remote switches. What is no link stays as it is.
std::filesystem::path BehindItsLinks(const std::filesystem::path& path);

// Whether a name, of a file that need not be there, is one that a company gives to what lies beside it: the engine's
// journals, the operations log with its older ones, the remote switches, the identity. Whatever the way to its folder
// is; and letters are the same in capitals, as they are on some disks.
bool IsBesideCompany(const std::filesystem::path& name, const std::filesystem::path& company);

// In which its books are: the file to which its links lead, and the engine's log, which need not be there.
std::vector<std::filesystem::path> FilesOfBooks(const std::filesystem::path& company);

// The identity of a company, beside the file to which its links lead, so that each way to a company leads to one.
std::filesystem::path IdentityOf(const std::filesystem::path& company);

// What an engine has left beside a company that is gone, and would take for that of a new one of that name; empty when
// nothing is.
std::filesystem::path LeftBeside(const std::filesystem::path& file);

}  // namespace standalone
