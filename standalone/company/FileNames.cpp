#include "standalone/company/FileNames.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/DiskFiles.h"
#include "standalone/storage/sqlite/Journals.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

// Of a name, on Windows.
constexpr const char* kDroppedAtTheEnd = ". ";

constexpr std::array kOwnSuffixes = {kLogFileSuffix, kRemoteFileSuffix, kIdentityFileSuffix, kCarrierLockSuffix};

bool IsSuffixOfCompany(std::string_view suffix) {
  const auto isIt = [suffix](std::string_view own) {
    return EqualIgnoringCase(suffix, own);
  };
  if (std::ranges::any_of(kJournalSuffixes, isIt) || std::ranges::any_of(kOwnSuffixes, isIt)) return true;
  // An older log has a number before that.
  const std::string_view log = kLogFileSuffix;
  if (suffix.size() < log.size() + 2 || suffix.front() != '.') return false;
  const std::string_view number = suffix.substr(1, suffix.size() - log.size() - 1);
  return EqualIgnoringCase(suffix.substr(1 + number.size()), log) &&
         number.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

const std::filesystem::path& RequireFileName(const std::filesystem::path& file) {
  if (file.empty()) throw InvalidInput("The name of the file is empty. Give the path of a file.");
  // It would cut the suffix off.
  if (file.native().find('\0') != std::filesystem::path::string_type::npos) {
    throw InvalidInput("The name of the file " + Quoted(PathText(file)) + " holds a NUL. Leave it out.");
  }
  if (platform::NamesAStream(file)) {
    throw InvalidInput("The name of the file " + Quoted(PathText(file)) +
                       " has a colon, which names a stream within a file on this system. Choose a name without one.");
  }
  return file;
}

std::filesystem::path FolderOf(const std::filesystem::path& file) {
  const std::filesystem::path folder = file.parent_path();
  return folder.empty() ? "." : folder;
}

bool IsThere(const std::filesystem::path& file) {
  std::error_code ignored;
  return std::filesystem::exists(std::filesystem::symlink_status(file, ignored));
}

std::filesystem::path BehindItsLinks(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_symlink(std::filesystem::symlink_status(path, error))) return path;
  std::filesystem::path file = std::filesystem::canonical(path, error);
  return error ? path : file;
}

bool IsBesideCompany(const std::filesystem::path& name, const std::filesystem::path& company) {
  std::error_code ignored;
  if (!std::filesystem::equivalent(FolderOf(name), FolderOf(BehindItsLinks(company)), ignored)) return false;
  const std::string text = PathText(name.filename());
  const std::string own = PathText(BehindItsLinks(company).filename());
  const std::size_t end = text.find_last_not_of(kDroppedAtTheEnd) + 1;
  if (end < own.size() || !EqualIgnoringCase(std::string_view(text).substr(0, own.size()), own)) return false;
  return IsSuffixOfCompany(std::string_view(text).substr(own.size(), end - own.size()));
}

std::vector<std::filesystem::path> FilesOfBooks(const std::filesystem::path& company) {
  const std::filesystem::path file = BehindItsLinks(company);
  return {file, WithSuffix(file, kLogSuffix)};
}

std::filesystem::path IdentityOf(const std::filesystem::path& company) {
  return WithSuffix(BehindItsLinks(company), kIdentityFileSuffix);
}

std::filesystem::path LeftBeside(const std::filesystem::path& file) {
  for (const char* const suffix : kJournalSuffixes) {
    std::filesystem::path left = WithSuffix(file, suffix);
    if (IsThere(left)) return left;
  }
  return {};
}

}  // namespace standalone
