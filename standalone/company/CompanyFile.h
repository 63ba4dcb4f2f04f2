#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "standalone/company/Trail.h"
#include "standalone/storage/sqlite/Migration.h"
#include "standalone/storage/sqlite/Schema.h"
#include "standalone/storage/sqlite/SqliteDatabase.h"
#include "standalone/storage/sqlite/TemporaryCopy.h"

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
  bool readsACopy = false;  // in a temporary folder, as the file lies on a read-only medium
};

struct OpenOptions {
  std::chrono::milliseconds busyTimeout = kBusyTimeout;
  // What the program knows of company files; another version of it would know other steps.
  SchemaSpan schema = SchemaSteps();
  TrailClock clock = {};
  // Called as soon as it is done, when there is anything to tell.
  std::function<void(const Opening& opening)> tell = nullptr;
};

// A company's books in one SQLite file, beside which lie its operations log and its remote switches.
class CompanyFile {
 public:
  // Makes the file with the user Admin, an administrator, and no account. CompanyFileError when something of that name
  // exists already or the file cannot be made; InvalidInput for the company's own values and for a name that is none.
  // Leaves no half-made file.
  static void Create(const std::filesystem::path& path, const NewCompany& company);

  // Opens a file and brings one of an older program up to date; one that lies on a read-only medium is copied first,
  // and units of work only read the copy. Throws CompanyFileError, and InvalidInput for a name that is none.
  explicit CompanyFile(const std::filesystem::path& path, const OpenOptions& options = {});

  // Of the file itself, where a link led to it.
  const std::filesystem::path& Path() const noexcept { return path_; }
  SqliteDatabase& Data() noexcept { return *database_; }

  static std::filesystem::path LogPath(const std::filesystem::path& companyFile);
  static std::filesystem::path RemotePath(const std::filesystem::path& companyFile);

 private:
  std::filesystem::path FileToOpen(const OpenOptions& options);

  std::filesystem::path path_;
  std::optional<TemporaryCopy> copy_;
  std::unique_ptr<SqliteDatabase> database_;
};

}  // namespace standalone
