#include "standalone/storage/sqlite/WriteAheadLog.h"

#include <array>
#include <fstream>
#include <optional>
#include <span>
#include <vector>

#include "standalone/storage/sqlite/Journals.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

// See "The WAL file format" of SQLite's documentation.
constexpr std::size_t kLogHeaderLength = 32;
constexpr std::size_t kFrameHeaderLength = 24;
constexpr std::uint32_t kMagicLittleEndian = 0x377F0682;
constexpr std::uint32_t kMagicBigEndian = 0x377F0683;

using Bytes = std::span<const unsigned char>;

std::uint32_t BigEndian(Bytes bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8U | bytes[offset + i];
  return value;
}

std::uint32_t LittleEndian(Bytes bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8U | bytes[offset + i];
  return value;
}

// Each frame's checksum goes on from the one before it, the first one's from the header's.
struct Checksum {
  std::uint32_t first = 0;
  std::uint32_t second = 0;

  bool operator==(const Checksum&) const = default;
};

Checksum ChecksumAt(Bytes bytes, std::size_t offset) {
  return {BigEndian(bytes, offset), BigEndian(bytes, offset + 4)};
}

Checksum GoOn(Checksum checksum, Bytes bytes, bool bigEndian) {
  const auto word = bigEndian ? BigEndian : LittleEndian;
  for (std::size_t offset = 0; offset < bytes.size(); offset += 8) {
    checksum.first += word(bytes, offset) + checksum.second;
    checksum.second += word(bytes, offset + 4) + checksum.first;
  }
  return checksum;
}

// Frames of one generation of the log carry the same salt as its header; older ones behind them carry another.
using Salt = std::pair<std::uint32_t, std::uint32_t>;

Salt SaltAt(Bytes bytes, std::size_t offset) {
  return {BigEndian(bytes, offset), BigEndian(bytes, offset + 4)};
}

struct Frame {
  explicit Frame(std::uint32_t pageSize) : bytes(kFrameHeaderLength + pageSize) {}

  bool ReadFrom(std::istream& stream) {
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return stream.gcount() == static_cast<std::streamsize>(bytes.size());
  }
  bool EndsTransaction() const { return BigEndian(bytes, 4) != 0; }
  Salt OwnSalt() const { return SaltAt(bytes, 8); }
  Checksum Stored() const { return ChecksumAt(bytes, 16); }
  Checksum After(Checksum before, bool bigEndian) const {
    const Checksum header = GoOn(before, Bytes(bytes).first(8), bigEndian);
    return GoOn(header, Bytes(bytes).subspan(kFrameHeaderLength), bigEndian);
  }

  std::vector<unsigned char> bytes;
};

struct LogHeader {
  explicit LogHeader(std::istream& stream) {
    std::array<unsigned char, kLogHeaderLength> bytes{};
    stream.read(reinterpret_cast<char*>(bytes.data()), bytes.size());
    const std::uint32_t magic = BigEndian(bytes, 0);
    bigEndian = magic == kMagicBigEndian;
    salt = SaltAt(bytes, 16);
    checksum = ChecksumAt(bytes, 24);
    isWhole = (bigEndian || magic == kMagicLittleEndian) && GoOn({}, Bytes(bytes).first(24), bigEndian) == checksum;
  }

  bool bigEndian = false;
  Salt salt;
  Checksum checksum;
  bool isWhole = false;
};

// The number of the frame at which the log breaks although a transaction behind it was committed, which is known when a
// frame goes on from the one that ended it: nobody writes behind a transaction that he does not take for committed.
// What killed programs leave behind the end of the log may also end a transaction, but nothing goes on from there.
std::optional<std::uint64_t> FindBreak(const std::filesystem::path& log, std::uint32_t pageSize) {
  std::ifstream stream(log, std::ios::binary);
  const LogHeader header(stream);
  Frame frame(pageSize);
  Salt salt = header.salt;
  Checksum last = header.checksum;
  std::uint64_t number = 0;
  bool isWhole = header.isWhole;
  for (; isWhole && frame.ReadFrom(stream); ++number) {
    isWhole = frame.OwnSalt() == salt && frame.After(last, header.bigEndian) == frame.Stored();
    if (!isWhole) break;
    last = frame.Stored();
  }
  if (isWhole) return std::nullopt;
  if (!header.isWhole) {
    if (!frame.ReadFrom(stream)) return std::nullopt;
    salt = frame.OwnSalt();
  }

  // Either the frame itself is changed or the checksum that it carries.
  Checksum computed = frame.After(last, header.bigEndian);
  Checksum stored = frame.Stored();
  bool endsTransaction = frame.EndsTransaction();
  while (frame.ReadFrom(stream)) {
    const bool goesOn = frame.After(stored, header.bigEndian) == frame.Stored() ||
                        frame.After(computed, header.bigEndian) == frame.Stored();
    if (endsTransaction && goesOn && frame.OwnSalt() == salt) return number;
    computed = frame.After(stored, header.bigEndian);
    stored = frame.Stored();
    endsTransaction = frame.EndsTransaction();
  }
  return std::nullopt;
}

}  // namespace

void ForEachFrame(const std::filesystem::path& companyFile, std::uint32_t pageSize,
                  const std::function<void(const LogFrame& frame)>& take) {
  std::ifstream stream(WithSuffix(companyFile, kLogSuffix), std::ios::binary);
  const LogHeader header(stream);
  if (!header.isWhole) return;
  Frame frame(pageSize);
  Checksum last = header.checksum;
  std::uint64_t offset = kLogHeaderLength;
  while (frame.ReadFrom(stream) && frame.OwnSalt() == header.salt &&
         frame.After(last, header.bigEndian) == frame.Stored()) {
    take({.page = BigEndian(frame.bytes, 0),
          .pages = BigEndian(frame.bytes, 4),
          .offset = offset + kFrameHeaderLength,
          .content = Bytes(frame.bytes).subspan(kFrameHeaderLength)});
    last = frame.Stored();
    offset += frame.bytes.size();
  }
}

bool IsLogDamaged(const std::filesystem::path& companyFile, std::uint32_t pageSize) {
  const std::filesystem::path log = WithSuffix(companyFile, kLogSuffix);
  const std::optional<std::uint64_t> place = FindBreak(log, pageSize);
  // A frame that another program was just writing is whole by now.
  return place && FindBreak(log, pageSize) == place;
}

}  // namespace standalone
