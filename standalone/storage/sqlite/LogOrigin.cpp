#include "standalone/storage/sqlite/LogOrigin.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "standalone/storage/sqlite/Journals.h"
#include "standalone/storage/sqlite/OpenAlone.h"
#include "standalone/storage/sqlite/Schema.h"
#include "standalone/storage/sqlite/SqliteDatabase.h"
#include "standalone/storage/sqlite/WriteAheadLog.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

using Page = std::vector<unsigned char>;

// See "The B-tree page format" of SQLite's documentation.
constexpr unsigned char kInteriorPage = 5;
constexpr unsigned char kLeafPage = 13;
constexpr std::size_t kCellCount = 3;
constexpr std::size_t kRightmostChild = 8;
constexpr std::size_t kCellsOfLeaf = 8;
constexpr std::size_t kCellsOfInterior = 12;
// Deeper than any table grows.
constexpr int kDeepest = 20;
// A page of this place in a file the engine leaves alone.
constexpr std::uint64_t kLockByte = 0x40000000;
// Of the file's header.
constexpr std::size_t kHeaderBytes = 100;
constexpr std::size_t kPageSize = 16;
constexpr std::size_t kSchemaVersion = 60;
constexpr std::uint32_t kFirstVersionWithTrail = 2;

// What lies on the leaf itself of every row, however long it is.
std::size_t LocalBytes(std::size_t pageSize) {
  return (pageSize - 12) * 32 / 255 - 23;
}

std::uint32_t Number(const Page& page, std::size_t at, std::size_t bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < bytes; ++i) value = value << 8U | page.at(at + i);
  return value;
}

std::uint64_t VariableNumber(const Page& page, std::size_t& at) {
  constexpr int kLongest = 9;
  std::uint64_t value = 0;
  for (int byte = 1;; ++byte) {
    const unsigned char bits = page.at(at++);
    if (byte == kLongest) return value << 8U | bits;
    value = value << 7U | (bits & 0x7FU);
    if ((bits & 0x80U) == 0) return value;
  }
}

// A log that does not go on from where its company file's audit trail ends.
struct StrayLog {
  std::int64_t fileEndsWith = 0;   // the last line of the trail in the file
  std::int64_t logGoesOnWith = 0;  // a line that the log adds to one that neither of them has
};

struct Row {
  std::int64_t id = 0;  // 0 for none
  std::vector<unsigned char> beginning;
  bool operator==(const Row&) const = default;
};

// A company file as it is, with the pages over it that a part of its log holds.
class Pages {
 public:
  Pages(const std::filesystem::path& file, std::uint32_t pageSize)
      : file_(file, std::ios::binary), log_(WithSuffix(file, kLogSuffix), std::ios::binary), pageSize_(pageSize) {}

  void Lay(std::uint32_t page, std::uint64_t offset) { laid_[page] = offset; }

  // Empty for one that is not there.
  Page InFile(std::uint32_t page) {
    read_.insert(page);
    return Read(file_, std::uint64_t{page - 1} * pageSize_);
  }
  // The pages that were asked for of the file.
  const std::set<std::uint32_t>& ReadInFile() const noexcept { return read_; }
  Page Get(std::uint32_t page) {
    const auto found = laid_.find(page);
    return found == laid_.end() ? InFile(page) : Read(log_, found->second);
  }

 private:
  Page Read(std::ifstream& stream, std::uint64_t offset) const {
    Page page(pageSize_);
    stream.clear();
    stream.seekg(static_cast<std::streamoff>(offset));
    stream.read(reinterpret_cast<char*>(page.data()), static_cast<std::streamsize>(page.size()));
    if (stream.gcount() != static_cast<std::streamsize>(page.size())) page.clear();
    return page;
  }

  std::ifstream file_;
  std::ifstream log_;
  std::uint32_t pageSize_;
  std::map<std::uint32_t, std::uint64_t> laid_;
  std::set<std::uint32_t> read_;
};

Row RowAt(const Page& leaf, std::size_t cell) {
  std::size_t at = Number(leaf, kCellsOfLeaf + 2 * cell, 2);
  const std::uint64_t length = VariableNumber(leaf, at);
  Row row{.id = static_cast<std::int64_t>(VariableNumber(leaf, at)), .beginning = {}};
  const std::size_t kept = std::min<std::size_t>({length, LocalBytes(leaf.size()), leaf.size() - at});
  const auto begin = leaf.begin() + static_cast<std::ptrdiff_t>(at);
  row.beginning.assign(begin, begin + static_cast<std::ptrdiff_t>(kept));
  return row;
}

std::uint32_t ChildAt(const Page& interior, std::size_t cell, std::int64_t& largest) {
  std::size_t at = Number(interior, kCellsOfInterior + 2 * cell, 2);
  const std::uint32_t child = Number(interior, at, 4);
  at += 4;
  largest = static_cast<std::int64_t>(VariableNumber(interior, at));
  return child;
}

std::uint32_t ChildFor(const Page& interior, std::int64_t id) {
  for (std::size_t cell = 0; cell < Number(interior, kCellCount, 2); ++cell) {
    std::int64_t largest = 0;
    const std::uint32_t child = ChildAt(interior, cell, largest);
    if (id <= largest) return child;
  }
  return Number(interior, kRightmostChild, 4);
}

Row RowIn(const Page& leaf, std::int64_t id) {
  const std::size_t count = Number(leaf, kCellCount, 2);
  for (std::size_t cell = count; cell-- > 0;) {
    Row row = RowAt(leaf, cell);
    if (row.id <= id) return row;
  }
  return {};
}

// The row with the largest number up to `id`; nothing where the pages are no table.
std::optional<Row> FindRow(Pages& pages, std::uint32_t root, std::int64_t id) try {
  std::uint32_t number = root;
  for (int depth = 0; depth < kDeepest && number != 0; ++depth) {
    const Page page = pages.Get(number);
    if (page.empty()) return std::nullopt;
    if (page.front() == kLeafPage) return RowIn(page, id);
    if (page.front() != kInteriorPage) return std::nullopt;
    number = ChildFor(page, id);
  }
  return std::nullopt;
} catch (const std::out_of_range&) {
  return std::nullopt;
}

constexpr std::int64_t kLast = std::numeric_limits<std::int64_t>::max();

// A line of the trail has its number kept elsewhere, then the 64 bytes of a SHA-256. See "Record Format" of SQLite's
// documentation.
bool IsOfTheTrail(const Row& row) {
  constexpr std::array<unsigned char, 3> kTypes{0, 0x81, 0x0D};
  if (row.id == 0) return true;
  return row.beginning.size() > kTypes.size() && std::equal(kTypes.begin(), kTypes.end(), row.beginning.begin() + 1);
}

// Whether the rows of a leaf follow each other, and that one. Those of a page that was being written when the power
// went do not: it tells of rows that have not arrived.
bool IsInOrder(const Page& leaf, std::int64_t after) {
  for (std::size_t cell = 0; cell < Number(leaf, kCellCount, 2); ++cell) {
    const std::int64_t id = RowAt(leaf, cell).id;
    if (id <= after) return false;
    after = id;
  }
  return true;
}

// Likewise of all pages on the way to the last row. False where the pages are no table.
bool IsWholeAtItsEnd(Pages& pages, std::uint32_t root) try {
  std::uint32_t number = root;
  std::int64_t after = 0;
  for (int depth = 0; depth < kDeepest; ++depth) {
    const Page page = pages.Get(number);
    if (page.empty()) return false;
    if (page.front() == kLeafPage) return IsInOrder(page, after);
    if (page.front() != kInteriorPage) return false;
    for (std::size_t cell = 0; cell < Number(page, kCellCount, 2); ++cell) {
      std::int64_t largest = 0;
      ChildAt(page, cell, largest);
      if (largest <= after) return false;
      after = largest;
    }
    number = Number(page, kRightmostChild, 4);
    if (number == 0) return false;
  }
  return false;
} catch (const std::out_of_range&) {
  return false;
}

// Nothing where the trail's pages are still what they were before there was one, or are not wholly in the file.
std::optional<Row> LastLineInFile(Pages& pages, std::uint32_t root) {
  if (!IsWholeAtItsEnd(pages, root)) return std::nullopt;
  const std::optional<Row> last = FindRow(pages, root, kLast);
  return last && IsOfTheTrail(*last) ? last : std::nullopt;
}

// Whether so many pages are all of a file that has `pages`.
bool AreAll(std::size_t written, std::uint32_t pages, std::uint32_t pageSize) {
  const bool isLockPageAmong = pages > kLockByte / pageSize;
  return written + (isLockPageAmong ? 1 : 0) >= pages;
}

// Lays one transaction of the log after the other over the file, and looks at the trail after each.
class Replay {
 public:
  Replay(const std::filesystem::path& file, std::uint32_t pageSize, std::uint32_t root)
      : pageSize_(pageSize),
        pages_(file, pageSize),
        root_(root),
        inFile_(LastLineInFile(pages_, root)),
        end_(inFile_) {}

  void Take(const LogFrame& frame) {
    open_.emplace_back(frame.page, frame.offset);
    if (frame.pages != 0) EndTransaction(frame.pages);
  }

  std::optional<StrayLog> Finding() {
    if (!inFile_ || !end_ || stray_) return stray_;
    if (FindRow(pages_, root_, inFile_->id) != inFile_ && !isAnew_) {
      return StrayLog{.fileEndsWith = inFile_->id, .logGoesOnWith = inFile_->id};
    }
    return std::nullopt;
  }

  // What of the file tells where its trail ends.
  const std::set<std::uint32_t>& PagesOfTheTrail() const noexcept { return pages_.ReadInFile(); }

 private:
  void EndTransaction(std::uint32_t pages) {
    std::set<std::uint32_t> written;
    for (const auto& [page, offset] : open_) {
      pages_.Lay(page, offset);
      written.insert(page);
    }
    open_.clear();
    // One that writes every page asks nothing of the file before it, as when a backup is restored.
    if (AreAll(written.size(), pages, pageSize_)) {
      isAnew_ = true;
      stray_.reset();
    }
    const std::optional<Row> end = FindRow(pages_, root_, kLast);
    if (inFile_ && end && end_ && end->id > end_->id + 1 && !stray_ && !isAnew_) {
      stray_ = StrayLog{.fileEndsWith = inFile_->id, .logGoesOnWith = end->id};
    }
    end_ = end;
  }

  std::uint32_t pageSize_;
  Pages pages_;
  std::uint32_t root_;
  std::optional<Row> inFile_;
  std::optional<Row> end_;  // of the trail after what was laid
  std::vector<std::pair<std::uint32_t, std::uint64_t>> open_;
  bool isAnew_ = false;
  std::optional<StrayLog> stray_;
};

// A page of the trail that is in the file as the log has it was moved there: the log and the file belong together.
// Other pages may become what they once were; the trail only grows.
bool HasBegunToMove(const std::filesystem::path& file, std::uint32_t pageSize, const std::set<std::uint32_t>& trail) {
  Pages pages(file, pageSize);
  bool hasBegun = false;
  ForEachFrame(file, pageSize, [&](const LogFrame& frame) {
    if (hasBegun || !trail.contains(frame.page)) return;
    hasBegun = std::ranges::equal(pages.InFile(frame.page), frame.content);
  });
  return hasBegun;
}

// What the first page of a file tells.
class FirstPage {
 public:
  explicit FirstPage(std::span<const unsigned char> content) {
    std::ranges::copy(content.first(kHeaderBytes), bytes_.begin());
  }
  // Of a file that has none, it tells 0.
  explicit FirstPage(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    stream.read(reinterpret_cast<char*>(bytes_.data()), static_cast<std::streamsize>(bytes_.size()));
  }

  std::uint32_t Version() const { return Number(bytes_, kSchemaVersion, 4); }
  std::uint32_t PageSize() const {
    constexpr std::uint32_t kLargest = 65536;  // which two bytes do not hold
    const std::uint32_t stored = Number(bytes_, kPageSize, 2);
    return stored == 1 ? kLargest : stored;
  }

 private:
  Page bytes_ = Page(kHeaderBytes);
};

// The version to which the log brings its file; 0 when it does not hold the first page.
std::uint32_t VersionAfterLog(const std::filesystem::path& file, std::uint32_t pageSize) {
  std::uint32_t committed = 0;
  std::uint32_t open = 0;
  ForEachFrame(file, pageSize, [&](const LogFrame& frame) {
    if (frame.page == 1) open = FirstPage(frame.content).Version();
    if (frame.pages != 0) committed = open;
  });
  return committed;
}

// Lays a log over a file that has no trail yet. The transaction that brings such a file forward
// begins the trail, with one line at most; where another one is the first to tell of a trail, the log belongs to a file
// that had been brought forward before.
class ReplayOverNoTrail {
 public:
  ReplayOverNoTrail(const std::filesystem::path& file, std::uint32_t pageSize, std::uint32_t root)
      : pageSize_(pageSize), pages_(file, pageSize), root_(root) {}

  void Take(const LogFrame& frame) {
    pages_.Lay(frame.page, frame.offset);
    written_.insert(frame.page);
    if (frame.page == 1) isTold_ = FirstPage(frame.content).Version() >= kFirstVersionWithTrail;
    if (frame.pages != 0) EndTransaction(frame.pages);
  }

  bool IsStray() const noexcept { return isStray_; }

 private:
  void EndTransaction(std::uint32_t pages) {
    if (AreAll(written_.size(), pages, pageSize_)) {
      isThere_ = true;
      isStray_ = false;
    }
    if (isTold_ && !isThere_) {
      isThere_ = true;
      isStray_ = !HasBegunTheTrail();
    }
    written_.clear();
  }

  bool HasBegunTheTrail() {
    const std::optional<Row> last = FindRow(pages_, root_, kLast);
    return written_.contains(root_) && last && last->id <= 1;
  }

  std::uint32_t pageSize_;
  Pages pages_;
  std::uint32_t root_;
  std::set<std::uint32_t> written_;  // by the transaction
  bool isTold_ = false;
  bool isThere_ = false;
  bool isStray_ = false;
};

std::string OfAnotherVersion(std::uint32_t ofFile, std::uint32_t ofLog) {
  return "the file is of schema version " + std::to_string(ofFile) +
         ", and the log goes on from another state of it, of schema version " + std::to_string(ofLog);
}

// What is wrong, in words. `root` is the page at which the trail's table begins.
std::optional<std::string> FindStrayLog(const std::filesystem::path& companyFile, std::uint32_t pageSize,
                                        std::uint32_t root) {
  const std::uint32_t version = FirstPage(companyFile).Version();
  if (version < kFirstVersionWithTrail) {
    ReplayOverNoTrail replay(companyFile, pageSize, root);
    ForEachFrame(companyFile, pageSize, [&](const LogFrame& frame) { replay.Take(frame); });
    if (!replay.IsStray()) return std::nullopt;
    return OfAnotherVersion(version, VersionAfterLog(companyFile, pageSize));
  }
  Replay replay(companyFile, pageSize, root);
  ForEachFrame(companyFile, pageSize, [&](const LogFrame& frame) { replay.Take(frame); });
  const std::optional<StrayLog> stray = replay.Finding();
  if (!stray || HasBegunToMove(companyFile, pageSize, replay.PagesOfTheTrail())) return std::nullopt;
  return "the file's audit trail ends with line " + std::to_string(stray->fileEndsWith) +
         ", and the log goes on with line " + std::to_string(stray->logGoesOnWith) + " of another state";
}

std::optional<std::string> FindStrayLogOf(SqliteDatabase& database, const std::filesystem::path& file) {
  const std::int64_t root = database.QueryNumber("SELECT rootpage FROM sqlite_schema WHERE name = 'audit'");
  if (root == 0) return std::nullopt;
  return FindStrayLog(file, static_cast<std::uint32_t>(database.QueryNumber("PRAGMA page_size")),
                      static_cast<std::uint32_t>(root));
}

// False also while nobody may look.
bool LooksStray(const std::filesystem::path& file) {
  try {
    SqliteDatabase database(file, std::chrono::milliseconds::zero());
    database.AllowCheckpointOnClose(false);
    return FindStrayLogOf(database, file).has_value();
  } catch (const FileInUse&) {
    return false;
  }
}

[[noreturn]] void ThrowStray(const std::filesystem::path& name, const std::string& why) {
  throw CompanyFileError(
      "The company file " + PathText(name) + " and its write-ahead log " + PathText(WithSuffix(name, kLogSuffix)) +
      " do not belong together: " + why +
      ", as after a backup was copied over a company that had crashed. Nothing was changed. Put back "
      "the file to which the log belongs, or move the log away to go on from the file as it is.");
}

// DamagedFile where the schema cannot be read.
void RequireGoingOn(const std::filesystem::path& companyFile, const std::filesystem::path& name) {
  constexpr std::chrono::seconds kPatience{10};
  constexpr std::chrono::milliseconds kPause{20};
  for (const auto deadline = std::chrono::steady_clock::now() + kPatience;;) {
    if (const std::unique_ptr<SqliteDatabase> alone = OpenAlone(companyFile, name)) {
      if (const std::optional<std::string> stray = FindStrayLogOf(*alone, companyFile)) ThrowStray(name, *stray);
      return;
    }
    // Others may be writing, or looking as this does; what they refuse must not be opened beside them.
    if (!LooksStray(companyFile)) return;
    if (std::chrono::steady_clock::now() >= deadline) {
      throw FileInUse("The company file " + PathText(name) + " is in use by another program. Try again later.");
    }
    std::this_thread::sleep_for(kPause);
  }
}

// What a part of a later log makes of an older schema may still be readable, but is none that the steps leave.
// DamagedFile for such a one; whoever has the file open meanwhile has looked himself.
void RequireSchemaAfterLog(const std::filesystem::path& companyFile, const std::filesystem::path& name) {
  const FirstPage first(companyFile);
  const std::size_t version = VersionAfterLog(companyFile, first.PageSize());
  if (version <= first.Version() || version > SchemaSteps().size()) return;
  try {
    SqliteDatabase database(companyFile, std::chrono::milliseconds::zero());
    database.AllowCheckpointOnClose(false);
    const std::string fault = FaultOf(database, SchemaSteps().first(version), Search::kAsFarAsItIsFast);
    if (!fault.empty()) ThrowDamaged(name, fault);
  } catch (const FileInUse&) {
    return;
  }
}

}  // namespace

void RequireOwnLog(const std::filesystem::path& companyFile, const std::filesystem::path& name) {
  std::error_code none;
  if (std::filesystem::file_size(WithSuffix(companyFile, kLogSuffix), none) == 0 || none) return;
  try {
    RequireGoingOn(companyFile, name);
    RequireSchemaAfterLog(companyFile, name);
  } catch (const DamagedFile&) {
    // What brings a file forward leaves a schema that can be read, and writes all of it that it changes into the log. A
    // later log has a part of it only, which makes no schema together with the pages of an older one.
    const FirstPage first(companyFile);
    const std::uint32_t versionAfterLog = VersionAfterLog(companyFile, first.PageSize());
    if (versionAfterLog <= first.Version()) throw;
    ThrowStray(name, OfAnotherVersion(first.Version(), versionAfterLog));
  }
}

}  // namespace standalone
