#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "standalone/Database.h"

namespace standalone {

struct NewCompany {
  std::string name;                  // 1 to 59 bytes of UTF-8 without control characters
  std::string homeCurrency = "USD";  // ISO 4217: three capital letters
  bool multiCurrency = false;
  bool sampleFile = false;
  bool accountantsCopy = false;
};

inline constexpr std::chrono::milliseconds kBusyTimeout{10'000};

// A company's books in one SQLite file, beside which lie its operations log and its remote switches.
class CompanyFile {
 public:
  // Makes the file with the user Admin, an administrator, and no account. CompanyFileError when something of that name
  // exists already or the file cannot be made; InvalidInput for the company's own values. Leaves no half-made file.
  static void Create(const std::filesystem::path& path, const NewCompany& company);

  // Opens a file and brings one of an older program up to date. Throws CompanyFileError.
  explicit CompanyFile(const std::filesystem::path& path, std::chrono::milliseconds busyTimeout = kBusyTimeout);

  const std::filesystem::path& Path() const noexcept { return path_; }
  Database& Data() noexcept { return *database_; }

  static std::filesystem::path LogPath(const std::filesystem::path& companyFile);
  static std::filesystem::path RemotePath(const std::filesystem::path& companyFile);

 private:
  std::filesystem::path path_;
  std::unique_ptr<Database> database_;
};

}  // namespace standalone
