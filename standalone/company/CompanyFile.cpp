#include "standalone/company/CompanyFile.h"

#include <string_view>
#include <system_error>

#include "platform/DiskFiles.h"
#include "standalone/books/AuditTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/books/UserTable.h"
#include "standalone/storage/sqlite/CompanyFileHeader.h"
#include "standalone/storage/sqlite/DraftFile.h"
#include "standalone/storage/sqlite/LogOrigin.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr const char* YesOrNo(bool value) {
  return value ? "yes" : "no";
}

constexpr const char* kMakeCompany = "company.make";
constexpr const char* kMigrateCompany = "company.migrate";

AuditDeed DeedOf(const NewCompany& company) {
  return {.action = kMakeCompany,
          .subject = "the company",
          .transactions = {},
          .changes = {{.field = "company-name", .before = {}, .after = company.name},
                      {.field = "home-currency", .before = {}, .after = company.homeCurrency},
                      {.field = "multi-currency", .before = {}, .after = YesOrNo(company.multiCurrency)},
                      {.field = "sample-file", .before = {}, .after = YesOrNo(company.sampleFile)},
                      {.field = "accountants-copy", .before = {}, .after = YesOrNo(company.accountantsCopy)},
                      {.field = "user", .before = {}, .after = kAdministratorName}}};
}

AuditDeed DeedOf(const Migrated& done) {
  const auto count = [](const char* what, std::int64_t number) {
    return AuditChange{.field = what, .before = std::to_string(number), .after = {}};
  };
  return {
      .action = kMigrateCompany,
      .subject = "the company",
      .transactions = {},
      .changes = {{.field = "schema version", .before = std::to_string(done.from), .after = std::to_string(done.to)},
                  count("transactions", done.held.transactions),
                  count("lines", done.held.lines),
                  count("intercompany rows", done.held.intercompanyRows),
                  count("relations", done.held.relations),
                  {.field = "copy of before", .before = {}, .after = PathText(done.before.filename())},
                  {.field = "SHA-256 of the copy", .before = done.beforeSha256, .after = {}}}};
}

void InsertCompany(Database& database, const NewCompany& company) {
  UnitOfWork unit(database, Access::kWrite);
  SettingsTable(database).Begin({.companyName = company.name,
                                 .homeCurrency = company.homeCurrency,
                                 .multiCurrency = company.multiCurrency,
                                 .sampleFile = company.sampleFile,
                                 .accountantsCopy = company.accountantsCopy});
  User administrator;
  administrator.name = kAdministratorName;
  administrator.administrator = true;
  UserTable(database).Add(administrator);
  AuditTable(database).Append(StampNow(company.clock, /*user=*/{}), DeedOf(company));
  unit.Commit();
}

void Configure(SqliteDatabase& database) {
  // What was committed is on the disk also after a power failure.
  database.Execute("PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON; PRAGMA trusted_schema = OFF;");
}

[[noreturn]] void ThrowNotMade(const std::filesystem::path& path, const std::string& reason) {
  throw CompanyFileError("The company file " + PathText(path) + " cannot be made. " + reason);
}

[[noreturn]] void ThrowThere(const std::filesystem::path& path) {
  throw CompanyFileError("There is already a file " + PathText(path) +
                         ". Choose another name, or move the file away first.");
}

// What an engine has left beside a company that is gone it would take for the new one's.
void RequireNothingLeft(const std::filesystem::path& path) {
  for (const char* const suffix : {"-wal", "-shm", "-journal"}) {
    const std::filesystem::path left = WithSuffix(path, suffix);
    std::error_code ignored;
    if (!std::filesystem::exists(std::filesystem::symlink_status(left, ignored))) continue;
    throw CompanyFileError("The company file " + PathText(path) + " cannot be made: " + PathText(left) +
                           " is left of another company of that name. Choose another name, or move that file away.");
  }
}

DraftFile MakeDraft(const std::filesystem::path& path) {
  try {
    return DraftFile(path);
  } catch (const std::system_error&) {
    ThrowNotMade(path, "Check that its folder exists and that you may write there.");
  }
}

void RequireSound(SqliteDatabase& database, SchemaSpan schema) {
  std::string fault = FaultOf(database, schema, Search::kAsFarAsItIsFast);
  if (fault.empty()) fault = ImbalanceOf(database, Search::kAsFarAsItIsFast);
  if (!fault.empty()) ThrowDamaged(database.Name(), fault);
}

void MakeSchema(SqliteDatabase& database) {
  PrepareForSteps(database);
  UnitOfWork unit(database, Access::kWrite);
  TakeSteps(database, SchemaSteps(), 0);
  unit.Commit();
}

void FillDraft(const std::filesystem::path& draft, const NewCompany& company) {
  SqliteDatabase database(draft, std::chrono::milliseconds::zero());
  // A draft that a crash spoils is worth nothing; the last change below brings all of it to the disk.
  database.Execute("PRAGMA synchronous = OFF");
  database.Execute(("PRAGMA application_id = " + std::to_string(kApplicationId)).c_str());
  MakeSchema(database);
  Configure(database);
  InsertCompany(database, company);
  // Kept in the file; done last, so that the header is complete in the file itself.
  database.Execute("PRAGMA journal_mode = WAL");
}

// What lies beside a company has its name with a suffix, which a NUL would cut off again.
const std::filesystem::path& RequireFileName(const std::filesystem::path& path) {
  if (path.empty()) throw InvalidInput("The name of the company file is empty. Give the path of a file.");
  if (path.native().find('\0') != std::filesystem::path::string_type::npos) {
    throw InvalidInput("The name of the company file " + Quoted(PathText(path)) + " holds a NUL. Leave it out.");
  }
  if (platform::NamesAStream(path)) {
    throw InvalidInput("The name of the company file " + Quoted(PathText(path)) +
                       " has a colon, which names a stream within a file on this system. Choose a name without one.");
  }
  return path;
}

// What lies beside a company lies beside its file: the engine's log, the operations log, the remote switches.
std::filesystem::path BehindItsLinks(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_symlink(std::filesystem::symlink_status(path, error))) return path;
  std::filesystem::path file = std::filesystem::canonical(path, error);
  return error ? path : file;
}

}  // namespace

void CompanyFile::Create(const std::filesystem::path& path, const NewCompany& company) {
  RequireFileName(path);
  RequireText("The company name", company.name, 1, kCompanyNameLength);
  RequireCurrencyCode(company.homeCurrency);
  std::error_code ignored;
  if (std::filesystem::exists(std::filesystem::symlink_status(path, ignored))) ThrowThere(path);
  RequireNothingLeft(path);

  DraftFile draft = MakeDraft(path);
  bool isPublished = false;
  try {
    FillDraft(draft.Path(), company);
    isPublished = draft.Publish(path);
  } catch (const std::exception& error) {
    ThrowNotMade(path, error.what());
  }
  if (!isPublished) ThrowThere(path);
}

CompanyFile::CompanyFile(const std::filesystem::path& path, const OpenOptions& options)
    : path_(BehindItsLinks(RequireFileName(path))) {
  const std::size_t newest = options.schema.size();
  const bool isOlder = RequireCompanyFileHeader(path_, newest) < newest;
  const std::filesystem::path file = isOlder ? FileToOpen(options) : path_;
  if (!isOlder) RequireOwnLog(path_, path_);
  database_ = std::make_unique<SqliteDatabase>(file, options.busyTimeout);
  database_->SetName(path_);
  if (copy_) database_->SetRoomAdvice(copy_->RoomAdvice());
  database_->AllowCheckpointOnClose(false);
  Configure(*database_);
  RequireKnownVersion(*database_, newest);
  RequireSound(*database_, options.schema);
  database_->HoldToVersion(newest);
  database_->AllowCheckpointOnClose(true);
  if (copy_) {
    database_->RefuseWriting("Nothing was saved. The company file " + PathText(path_) +
                             " is on a read-only medium. Copy it to a disk to work on it.");
  }
}

// The file to open: the company's own, or a copy of it.
std::filesystem::path CompanyFile::FileToOpen(const OpenOptions& options) {
  // What lies beside a file lies beside the file itself, not beside a link to it.
  std::error_code error;
  std::filesystem::path file = std::filesystem::canonical(path_, error);
  if (error) file = std::filesystem::absolute(path_);
  if (platform::IsOnReadOnlyMedium(file)) file = copy_.emplace(file).File();
  const bool isCopy = copy_.has_value();
  const Opening opening{.migrated = BringForward(file, {.name = path_,
                                                        .steps = options.schema,
                                                        .patience = options.busyTimeout,
                                                        .keepsCopy = !isCopy,
                                                        .record =
                                                            [&options](const Migrated& done, Database& database) {
                                                              AuditTable(database).Append(
                                                                  StampNow(options.clock, /*user=*/{}), DeedOf(done));
                                                            },
                                                        .roomAdvice = isCopy ? copy_->RoomAdvice() : std::string()}),
                        .readsACopy = isCopy};
  if (options.tell && (opening.migrated || isCopy)) options.tell(opening);
  return isCopy ? file : path_;
}

std::filesystem::path CompanyFile::LogPath(const std::filesystem::path& companyFile) {
  return WithSuffix(companyFile, ".log");
}

std::filesystem::path CompanyFile::RemotePath(const std::filesystem::path& companyFile) {
  return WithSuffix(companyFile, ".remote.toml");
}

}  // namespace standalone
