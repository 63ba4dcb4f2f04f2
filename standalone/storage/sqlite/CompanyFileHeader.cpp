#include "standalone/storage/sqlite/CompanyFileHeader.h"

#include <array>
#include <bit>
#include <fstream>
#include <string>

#include "standalone/storage/sqlite/Journals.h"
#include "standalone/storage/sqlite/Schema.h"
#include "standalone/storage/sqlite/WriteAheadLog.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::size_t kHeaderLength = 100;
constexpr std::string_view kMagic{"SQLite format 3\0", 16};

using Header = std::array<char, kHeaderLength>;

std::uint32_t HeaderNumber(const Header& header, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8U | static_cast<unsigned char>(header[offset + i]);
  return value;
}

[[noreturn]] void ThrowNotOurs(const std::filesystem::path& file) {
  throw NotACompanyFile(PathText(file) + " is not a company file. Name a file that was made by 'init'.");
}

[[noreturn]] void ThrowNotReadable(const std::filesystem::path& file) {
  throw CompanyFileError("The company file " + PathText(file) +
                         " cannot be opened. Check that you may read and write it, and enter its folder.");
}

std::uint32_t PageSize(const Header& header) {
  const std::uint32_t stored = HeaderNumber(header, 16) >> 16U;
  return stored == 1 ? 65536 : stored;
}

bool IsPageSize(std::uint32_t bytes) {
  return bytes >= 512 && bytes <= 65536 && std::has_single_bit(bytes);
}

Header ReadHeader(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) ThrowNotReadable(file);
  Header header{};
  stream.read(header.data(), header.size());
  if (stream.gcount() != static_cast<std::streamsize>(header.size())) ThrowNotOurs(file);
  return header;
}

bool HasLogToReplay(const std::filesystem::path& file) {
  std::error_code ignored;
  const std::uintmax_t size = std::filesystem::file_size(WithSuffix(file, kLogSuffix), ignored);
  return !ignored && size != 0;
}

// The page count in the header, unless an older program left it stale; 0 then.
std::uint64_t ExpectedBytes(const Header& header) {
  const bool isCurrent = HeaderNumber(header, 24) == HeaderNumber(header, 92);
  return isCurrent ? std::uint64_t{PageSize(header)} * HeaderNumber(header, 28) : 0;
}

}  // namespace

std::uint32_t RequireCompanyFileHeader(const std::filesystem::path& file, std::size_t newestVersion) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  if (status.type() == std::filesystem::file_type::none) ThrowNotReadable(file);
  if (!std::filesystem::exists(status)) {
    throw CompanyFileError("There is no company file " + PathText(file) + ". Check the name, or make it with 'init'.");
  }
  if (!std::filesystem::is_regular_file(status)) ThrowNotOurs(file);

  const Header header = ReadHeader(file);
  if (std::string_view(header.data(), kMagic.size()) != kMagic) ThrowNotOurs(file);
  if (HeaderNumber(header, 68) != static_cast<std::uint32_t>(kApplicationId)) ThrowNotOurs(file);

  const std::uint32_t version = HeaderNumber(header, 60);
  if (version > newestVersion) ThrowNewer(file, version, newestVersion);
  if (version == 0) ThrowDamaged(file, "its schema version is missing");
  const std::uint32_t pageSize = PageSize(header);
  if (!IsPageSize(pageSize)) ThrowDamaged(file, "its page size is " + std::to_string(pageSize));
  if (HasLogToReplay(file)) {
    // The log may hold the pages that are missing.
    if (IsLogDamaged(file, pageSize)) ThrowDamaged(file, "its write-ahead log is broken");
  } else if (std::filesystem::file_size(file) < ExpectedBytes(header)) {
    // What makes a file smaller has written its header before it cuts the end off, so that the header tells.
    if (ReadHeader(file) != header) return RequireCompanyFileHeader(file, newestVersion);
    ThrowDamaged(file, "its end is missing");
  }
  return version;
}

}  // namespace standalone
