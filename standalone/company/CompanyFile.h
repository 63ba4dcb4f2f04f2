#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/NetworkShare.h"
#include "standalone/company/Trail.h"
#include "standalone/storage/sqlite/Migration.h"
#include "standalone/storage/sqlite/Schema.h"
#include "standalone/storage/sqlite/SqliteDatabase.h"
#include "standalone/storage/sqlite/TemporaryCopy.h"
#include "standalone/values/OnlyRead.h"

namespace standalone {

struct NewCompany {
  std::string name;                  // 1 to 59 bytes of UTF-8 without control characters
  std::string homeCurrency = "USD";  // ISO 4217: three capital letters
  bool multiCurrency = false;
  bool sampleFile = false;
  bool accountantsCopy = false;
  TrailClock clock = {};
};

inline constexpr std::chrono::milliseconds kBusyTimeout{10'000};

// What opening a company file does besides, for people to be told.
struct Opening {
  std::optional<Migrated> migrated;
  std::optional<OnlyRead> onlyRead;  // why a copy in a temporary folder is read instead
};

// A write-ahead log has an index in memory that is common to all programs that have the file open, so that those of
// several machines would not see each other's work. On a network share a company is only read, unless an administrator
// insists; each program then keeps it for itself alone while it has it open.
struct NetworkShares {
  bool mayBeWorkedOn = false;
  // Whether a file or folder lies on one.
  std::function<bool(const std::filesystem::path& place)> isOne = &platform::IsOnNetworkShare;
};

struct OpenOptions {
  std::chrono::milliseconds busyTimeout = kBusyTimeout;
  // What the program knows of company files; another version of it would know other steps.
  SchemaSpan schema = SchemaSteps();
  TrailClock clock = {};
  // Called as soon as it is done, when there is anything to tell.
  std::function<void(const Opening& opening)> tell = nullptr;
  NetworkShares networkShares = {};
};

// A company's books in one SQLite file, beside which lie its operations log and its remote switches.
class CompanyFile {
 public:
  // Makes the file with the user Admin, an administrator, and no account. CompanyFileError when something of that name
  // exists already or the file cannot be made; InvalidInput for the company's own values and for a name that is none.
  // Leaves no half-made file.
  static void Create(const std::filesystem::path& path, const NewCompany& company, const NetworkShares& shares = {});

  // Opens a file and brings one of an older program up to date. One that cannot be worked on where it lies is left as
  // it is, with all that lies beside it: units of work only read a copy. Throws CompanyFileError, and InvalidInput for
  // a name that is none.
  explicit CompanyFile(const std::filesystem::path& path, const OpenOptions& options = {});

  // Of the file itself, where a link led to it.
  const std::filesystem::path& Path() const noexcept { return path_; }
  SqliteDatabase& Data() noexcept { return *database_; }
  bool IsOnlyRead() const noexcept { return copy_.has_value(); }
  // Whether it is worked on although it lies on a network share, as an administrator insists.
  bool IsWorkedOnAlone() const noexcept { return isAlone_; }

  static std::filesystem::path LogPath(const std::filesystem::path& companyFile);
  static std::filesystem::path RemotePath(const std::filesystem::path& companyFile);

 private:
  std::filesystem::path FileToOpen(const OpenOptions& options, const std::optional<OnlyRead>& onlyRead, bool isOlder);

  std::filesystem::path path_;
  bool isAlone_ = false;
  std::optional<TemporaryCopy> copy_;
  std::unique_ptr<SqliteDatabase> database_;
};

}  // namespace standalone
