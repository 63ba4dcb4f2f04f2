#include "standalone/CompanyFile.h"

#include <sqlite3.h>

#include <fstream>
#include <random>
#include <string_view>

#include "standalone/Errors.h"
#include "standalone/Schema.h"
#include "standalone/SettingsTable.h"
#include "standalone/Text.h"
#include "standalone/UserTable.h"

namespace standalone {

namespace {

std::filesystem::path WithSuffix(std::filesystem::path path, const char* suffix) {
  path += suffix;
  return path;
}

// A file that is being made, under a name of its own until it is complete; removed when it does not get there.
class DraftFile {
 public:
  explicit DraftFile(const std::filesystem::path& path)
      : path_(WithSuffix(path, ("." + std::to_string(std::random_device{}()) + ".new").c_str())) {
    if (!std::ofstream(path_, std::ios::binary)) {
      throw CompanyFileError("The company file " + PathText(path) +
                             " cannot be made. Check that its folder exists and that you may write there.");
    }
  }
  DraftFile(const DraftFile&) = delete;
  DraftFile& operator=(const DraftFile&) = delete;
  ~DraftFile() {
    std::error_code ignored;
    for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
      std::filesystem::remove(WithSuffix(path_, suffix), ignored);
    }
  }

  const std::filesystem::path& Path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

void InsertCompany(Database& database, const NewCompany& company) {
  UnitOfWork unit(database, Access::kWrite);
  Statement insert(database, "INSERT INTO company VALUES (1, ?1, ?2, ?3, ?4, ?5)");
  insert.Run(company.name, company.homeCurrency, company.multiCurrency, company.sampleFile, company.accountantsCopy);
  User administrator;
  administrator.name = kAdministratorName;
  administrator.administrator = true;
  UserTable(database).Add(administrator);
  unit.Commit();
}

// While the file is not yet known to be sound, closing it must not move what its write-ahead log holds.
void SetCheckpointOnClose(Database& database, bool allowed) {
  sqlite3_db_config(database.Handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, allowed ? 0 : 1, nullptr);
}

void Configure(Database& database) {
  // What was committed is on the disk also after a power failure.
  database.Execute("PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON; PRAGMA trusted_schema = OFF;");
}

[[noreturn]] void ThrowNotMade(const std::filesystem::path& path, const std::exception& reason) {
  throw CompanyFileError("The company file " + PathText(path) + " cannot be made. " + reason.what());
}

void FillDraft(const std::filesystem::path& draft, const NewCompany& company) {
  Database database(draft, kBusyTimeout);
  // A draft that a crash spoils is worth nothing; the last change below brings all of it to the disk.
  database.Execute("PRAGMA synchronous = OFF; PRAGMA foreign_keys = ON;");
  database.Execute(("PRAGMA application_id = " + std::to_string(kApplicationId)).c_str());
  Migrate(database, SchemaSteps());
  InsertCompany(database, company);
  Configure(database);
  // Kept in the file; done last, so that the header is complete in the file itself.
  database.Execute("PRAGMA journal_mode = WAL");
}

}  // namespace

void CompanyFile::Create(const std::filesystem::path& path, const NewCompany& company) {
  RequireText("The company name", company.name, 1, kCompanyNameLength);
  RequireCurrencyCode(company.homeCurrency);
  const auto refuseExisting = [&path] {
    std::error_code ignored;
    if (!std::filesystem::exists(std::filesystem::symlink_status(path, ignored))) return;
    throw CompanyFileError("There is already a file " + PathText(path) +
                           ". Choose another name, or move the file away first.");
  };
  refuseExisting();

  const DraftFile draft(path);
  try {
    FillDraft(draft.Path(), company);
  } catch (const UnitOfWorkError& error) {
    ThrowNotMade(path, error);
  } catch (const CompanyFileError& error) {
    ThrowNotMade(path, error);
  }
  refuseExisting();
  std::error_code error;
  // A hard link, unlike a rename, never replaces a file that somebody else made meanwhile.
  std::filesystem::create_hard_link(draft.Path(), path, error);
  if (error) {
    refuseExisting();
    std::filesystem::rename(draft.Path(), path, error);
  }
  if (error) throw CompanyFileError("The company file " + PathText(path) + " cannot be made: " + error.message() + ".");
}

CompanyFile::CompanyFile(const std::filesystem::path& path, std::chrono::milliseconds busyTimeout) : path_(path) {
  RequireCompanyFileHeader(path, SchemaSteps().size());
  database_ = std::make_unique<Database>(path, busyTimeout);
  SetCheckpointOnClose(*database_, false);
  Configure(*database_);
  Migrate(*database_, SchemaSteps());
  RequireSound(*database_);
  SetCheckpointOnClose(*database_, true);
}

std::filesystem::path CompanyFile::LogPath(const std::filesystem::path& companyFile) {
  return WithSuffix(companyFile, ".log");
}

std::filesystem::path CompanyFile::RemotePath(const std::filesystem::path& companyFile) {
  return WithSuffix(companyFile, ".remote.toml");
}

}  // namespace standalone
