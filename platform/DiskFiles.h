#pragma once

#include <filesystem>

namespace platform {

// What the operating system knows of files and the standard library does not tell. All throw std::system_error unless
// they say otherwise.

// Whether the name is one of a stream within a file, which is listed nowhere and is lost when the file is copied: only
// on Windows, where it has a colon. Never throws.
bool NamesAStream(const std::filesystem::path& name) noexcept;

// Makes an empty file that only its owner may read and write, whatever the user's other files are made with; never over
// one that is there. On Windows the rights of its folder hold.
void MakeFile(const std::filesystem::path& file);

// A new folder for temporary files, which only its owner may enter.
std::filesystem::path MakeTemporaryFolder();

// Gives `file` the rights of `model`, and its owner and group where the system lets this user do so; nothing to a group
// that is not the same.
void TakeRightsOf(const std::filesystem::path& model, const std::filesystem::path& file);

// Gives a file another name in its folder and brings that to the disk; false, and nothing is changed, when the name is
// taken.
bool RenameUnlessTaken(const std::filesystem::path& file, const std::filesystem::path& name);

// The same in the place of a file that has that name.
void RenameOver(const std::filesystem::path& file, const std::filesystem::path& name);

// Brings to the disk what was written to a file.
void BringToDisk(const std::filesystem::path& file);

// Removes a file and brings that to the disk.
void Remove(const std::filesystem::path& file);

// Whether the file has more than one name on its disk.
bool HasOtherNames(const std::filesystem::path& file);

// Whether this program may write a file that is there, or make files in a folder. Never throw.
bool MayWrite(const std::filesystem::path& file) noexcept;
bool MayMakeFilesIn(const std::filesystem::path& folder) noexcept;

// Whether nothing can be written where the file lies, whoever tries. False when the system does not tell; never throws.
bool IsOnReadOnlyMedium(const std::filesystem::path& file) noexcept;

}  // namespace platform
