#include "standalone/storage/sqlite/TemporaryCopy.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/DiskFiles.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

// The journals that SQLite leaves beside a file when its program is killed; they belong to its content.
constexpr const char* kSuffixes[] = {"", "-wal", "-journal"};

constexpr std::size_t kPieceBytes = 64 << 10;

[[noreturn]] void ThrowSystemError() {
  throw std::system_error(errno, std::generic_category());
}

// None where there is no such part; its program may just have removed it.
std::optional<std::ifstream> OpenPart(const std::filesystem::path& part) {
  std::ifstream stream(part, std::ios::binary);
  if (stream) return stream;
  if (errno == ENOENT) return std::nullopt;
  ThrowSystemError();
}

std::streamsize ReadPiece(std::istream& stream, std::vector<char>& piece) {
  return stream.read(piece.data(), static_cast<std::streamsize>(piece.size())).gcount();
}

void CopyPart(const std::filesystem::path& part, const std::filesystem::path& copy) {
  std::filesystem::remove(copy);
  std::optional<std::ifstream> original = OpenPart(part);
  if (!original) return;
  platform::MakeFile(copy);
  std::ofstream copied(copy, std::ios::binary);
  std::vector<char> piece(kPieceBytes);
  while (const std::streamsize length = ReadPiece(*original, piece)) copied.write(piece.data(), length);
  if (original->bad() || !copied.flush()) ThrowSystemError();
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

bool MayRead(const std::filesystem::path& part) {
  return !std::filesystem::exists(part) || std::ifstream(part, std::ios::binary);
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

[[noreturn]] void ThrowNotCopied(const std::filesystem::path& file, const std::error_code& error) {
  const std::string what = "The company file " + PathText(file) + " cannot be copied to a temporary folder";
  for (const char* suffix : kSuffixes) {
    const std::filesystem::path part = WithSuffix(file, suffix);
    if (!MayRead(part)) {
      throw CompanyFileError(what + ", as " + PathText(part) + " cannot be read. Give yourself the right to read it.");
    }
  }
  const std::string why = what + " (" + error.message() + "). ";
  const std::filesystem::path folder = TemporaryFolder();
  if (!folder.empty()) throw CompanyFileError(why + AdviceFor(folder));
  throw CompanyFileError(why + "Let the environment name a folder that is there (TMPDIR, on Windows TMP).");
}

}  // namespace

TemporaryCopy::TemporaryCopy(const std::filesystem::path& file, std::chrono::milliseconds patience)
    : name_(file.filename()) {
  constexpr std::chrono::milliseconds kPause{20};
  const auto deadline = std::chrono::steady_clock::now() + patience;
  bool isWhole = false;
  try {
    folder_ = platform::MakeTemporaryFolder();
    while (!(isWhole = Copy(file, File())) && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::sleep_for(kPause);
    }
  } catch (const std::system_error& error) {
    Remove();
    ThrowNotCopied(file, error.code());
  }
  if (isWhole) return;
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
