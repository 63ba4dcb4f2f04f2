#include "standalone/storage/sqlite/TemporaryCopy.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/DiskFiles.h"
#include "standalone/storage/sqlite/Journals.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

// The journals that SQLite leaves beside a file when its program is killed; they belong to its content.
constexpr const char* kSuffixes[] = {"", kLogSuffix, kRollbackSuffix};

constexpr std::size_t kPieceBytes = 64 << 10;

// What could not be done, before who asked for the copy calls the company by its name.
class NotCopied : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

std::string RoomAdviceFor(const std::filesystem::path& folder) {
  return "Make room in the temporary folder " + PathText(folder) +
         ", or let the environment name another one (TMPDIR, on Windows TMP).";
}

std::string CheckAdviceFor(const std::filesystem::path& folder) {
  return "Check the temporary folder " + PathText(folder) +
         ", or let the environment name another one (TMPDIR, on Windows TMP).";
}

bool IsLackOfRoom(const std::error_code& error) {
#ifdef EDQUOT
  if (error == std::error_code(EDQUOT, std::generic_category())) return true;
#endif
  return error == std::errc::no_space_on_device;
}

[[noreturn]] void ThrowNotRead(const std::filesystem::path& part, const std::error_code& error) {
  const std::string what = ", as " + PathText(part) + " cannot be read";
  if (error == std::errc::permission_denied) throw NotCopied(what + ". Give yourself the right to read it.");
  throw NotCopied(what + " (" + error.message() + "). Check the disk on which it lies.");
}

[[noreturn]] void ThrowNotWritten(const std::filesystem::path& folder, const std::error_code& error) {
  const std::string what = " (" + error.message() + "). ";
  throw NotCopied(what + (IsLackOfRoom(error) ? RoomAdviceFor(folder) : CheckAdviceFor(folder)));
}

// Of temporary files, in which the copy has a folder of its own.
std::filesystem::path FolderAround(const std::filesystem::path& copy) {
  return copy.parent_path().parent_path();
}

std::error_code LastError() {
  return {errno, std::generic_category()};
}

// None where there is no such part; its program may just have removed it.
std::optional<std::ifstream> OpenPart(const std::filesystem::path& part) {
  std::ifstream stream(part, std::ios::binary);
  if (stream) return stream;
  if (errno == ENOENT) return std::nullopt;
  ThrowNotRead(part, LastError());
}

std::streamsize ReadPiece(std::istream& stream, std::vector<char>& piece) {
  return stream.read(piece.data(), static_cast<std::streamsize>(piece.size())).gcount();
}

std::ofstream MakeCopy(const std::filesystem::path& copy) {
  try {
    std::filesystem::remove(copy);
    platform::MakeFile(copy);
  } catch (const std::system_error& error) {
    ThrowNotWritten(FolderAround(copy), error.code());
  }
  std::ofstream made(copy, std::ios::binary);
  if (!made) ThrowNotWritten(FolderAround(copy), LastError());
  return made;
}

void CopyPart(const std::filesystem::path& part, const std::filesystem::path& copy) {
  std::optional<std::ifstream> original = OpenPart(part);
  if (!original) {
    std::error_code ignored;
    std::filesystem::remove(copy, ignored);
    return;
  }
  std::ofstream copied = MakeCopy(copy);
  std::vector<char> piece(kPieceBytes);
  while (const std::streamsize length = ReadPiece(*original, piece)) {
    if (!copied.write(piece.data(), length)) ThrowNotWritten(FolderAround(copy), LastError());
  }
  if (original->bad()) ThrowNotRead(part, LastError());
  if (!copied.flush()) ThrowNotWritten(FolderAround(copy), LastError());
}

// What stood in it at both times when it was read stood in it at one moment between them.
bool IsStillTheSame(const std::filesystem::path& part, const std::filesystem::path& copy) {
  std::optional<std::ifstream> original = OpenPart(part);
  std::optional<std::ifstream> copied = OpenPart(copy);
  if (!original || !copied) return original.has_value() == copied.has_value();
  std::vector<char> one(kPieceBytes);
  std::vector<char> other(kPieceBytes);
  std::streamsize length = 0;
  do {
    length = ReadPiece(*original, one);
    if (ReadPiece(*copied, other) != length) return false;
    if (!std::equal(one.begin(), one.begin() + length, other.begin())) return false;
  } while (length != 0);
  return true;
}

// Whether the copy is one of a moment; others may be writing.
bool Copy(const std::filesystem::path& file, const std::filesystem::path& copy) {
  for (const char* suffix : kSuffixes) CopyPart(WithSuffix(file, suffix), WithSuffix(copy, suffix));
  return std::ranges::all_of(kSuffixes, [&](const char* suffix) {
    return IsStillTheSame(WithSuffix(file, suffix), WithSuffix(copy, suffix));
  });
}

// As far as it can be told.
std::filesystem::path TemporaryFolder() {
  std::error_code ignored;
  return std::filesystem::temp_directory_path(ignored);
}

std::filesystem::path MakeFolder() {
  try {
    return platform::MakeTemporaryFolder();
  } catch (const std::system_error& error) {
    const std::filesystem::path folder = TemporaryFolder();
    if (!folder.empty()) ThrowNotWritten(folder, error.code());
    throw NotCopied(" (" + error.code().message() +
                    "). Let the environment name a folder that is there (TMPDIR, on Windows TMP).");
  }
}

}  // namespace

TemporaryCopy::TemporaryCopy(const std::filesystem::path& file, std::chrono::milliseconds patience)
    : name_(file.filename()) {
  constexpr std::chrono::milliseconds kPause{20};
  const auto deadline = std::chrono::steady_clock::now() + patience;
  bool isWhole = false;
  try {
    folder_ = MakeFolder();
    while (!(isWhole = Copy(file, File())) && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::sleep_for(kPause);
    }
  } catch (const NotCopied& error) {
    Remove();
    throw CompanyFileError("The company file " + PathText(file) + " cannot be copied to a temporary folder" +
                           error.what());
  }
  if (isWhole) return;
  Remove();
  throw FileInUse("The company file " + PathText(file) + " is being changed by another program. Try again later.");
}

TemporaryCopy::~TemporaryCopy() {
  Remove();
}

std::string TemporaryCopy::RoomAdvice() const {
  return RoomAdviceFor(folder_.parent_path());
}

std::string TemporaryCopy::CheckAdvice() const {
  return CheckAdviceFor(folder_.parent_path());
}

void TemporaryCopy::Remove() noexcept {
  std::error_code ignored;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

}  // namespace standalone
