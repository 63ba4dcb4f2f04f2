#include "standalone/storage/sqlite/TemporaryCopy.h"

#include <cstdint>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/DiskFiles.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

// The journals that SQLite leaves beside a file when its program is killed; they belong to its content.
constexpr const char* kSuffixes[] = {"", "-wal", "-journal"};

using Stamp = std::pair<std::uintmax_t, std::filesystem::file_time_type>;

// Sizes and times of the file and its journals, zeros for one that is not there.
std::vector<Stamp> StampsOf(const std::filesystem::path& file) {
  std::vector<Stamp> stamps;
  for (const char* suffix : kSuffixes) {
    const std::filesystem::path part = WithSuffix(file, suffix);
    stamps.push_back(std::filesystem::exists(part)
                         ? Stamp(std::filesystem::file_size(part), std::filesystem::last_write_time(part))
                         : Stamp());
  }
  return stamps;
}

void Copy(const std::filesystem::path& from, const std::filesystem::path& to) {
  using std::filesystem::perms;
  for (const char* suffix : kSuffixes) {
    if (!std::filesystem::exists(WithSuffix(from, suffix))) continue;
    std::filesystem::copy_file(WithSuffix(from, suffix), WithSuffix(to, suffix));
    std::filesystem::permissions(WithSuffix(to, suffix), perms::owner_read | perms::owner_write);
  }
}

std::string AdviceFor(const std::filesystem::path& folder) {
  return "Make room in the temporary folder " + PathText(folder) +
         ", or let the environment name another one (TMPDIR, on Windows TMP).";
}

// As far as it can be told.
std::filesystem::path TemporaryFolder() {
  std::error_code ignored;
  return std::filesystem::temp_directory_path(ignored);
}

[[noreturn]] void ThrowNotCopied(const std::filesystem::path& file, const std::error_code& reason) {
  const std::filesystem::path folder = TemporaryFolder();
  const std::string why = "The company file " + PathText(file) +
                          " lies on a read-only medium and cannot be copied to a temporary folder (" +
                          reason.message() + "). ";
  if (!folder.empty()) throw CompanyFileError(why + AdviceFor(folder));
  throw CompanyFileError(why + "Let the environment name a folder that is there (TMPDIR, on Windows TMP).");
}

}  // namespace

TemporaryCopy::TemporaryCopy(const std::filesystem::path& file) : name_(file.filename()) {
  bool stayedTheSame = false;
  try {
    const std::vector<Stamp> before = StampsOf(file);
    folder_ = platform::MakeTemporaryFolder();
    Copy(file, File());
    stayedTheSame = StampsOf(file) == before;
  } catch (const std::system_error& error) {
    Remove();
    ThrowNotCopied(file, error.code());
  }
  if (stayedTheSame) return;
  Remove();
  throw FileInUse("The company file " + PathText(file) + " is being changed by another program. Try again later.");
}

TemporaryCopy::~TemporaryCopy() {
  Remove();
}

std::string TemporaryCopy::RoomAdvice() const {
  return AdviceFor(folder_.parent_path());
}

void TemporaryCopy::Remove() noexcept {
  std::error_code ignored;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

}  // namespace standalone
