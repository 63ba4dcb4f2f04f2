#include "standalone/company/CompanyFile.h"

#include <optional>
#include <string_view>
#include <system_error>

#include "platform/DiskFiles.h"
#include "standalone/books/AuditTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/books/UserTable.h"
#include "standalone/company/FileNames.h"
#include "standalone/storage/sqlite/CompanyFileHeader.h"
#include "standalone/storage/sqlite/DraftFile.h"
#include "standalone/storage/sqlite/Journals.h"
#include "standalone/storage/sqlite/LogOrigin.h"
#include "standalone/values/Currency.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr const char* kMakeCompany = "company.make";
constexpr const char* kMigrateCompany = "company.migrate";

AuditDeed DeedOf(const NewCompany& company) {
  return {.action = kMakeCompany,
          .subject = "the company",
          .transactions = {},
          .changes = {
              {.field = "company-name", .before = {}, .after = company.name},
              {.field = "home-currency", .before = {}, .after = company.homeCurrency},
              {.field = "decimals", .before = {}, .after = std::to_string(DecimalsOf(company.homeCurrency).Count())},
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
                                 .decimals = DecimalsOf(company.homeCurrency),
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

void RequireNothingLeft(const std::filesystem::path& path) {
  const std::filesystem::path left = LeftBeside(path);
  if (left.empty()) return;
  throw CompanyFileError("The company file " + PathText(path) + " cannot be made: " + PathText(left) +
                         " is left of another company of that name. Choose another name, or move that file away.");
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
  // Kept in the file; done last, so that the header is complete in the file itself. No other program opens a draft, and
  // a write-ahead log of one program alone needs no memory in common, which a network share does not have.
  database.Execute("PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = WAL");
}

// What the engine writes: the file, its journals and new ones beside it. The first that may not be written.
std::optional<std::filesystem::path> WriteProtectedPart(const std::filesystem::path& path) {
  const auto isWriteProtected = [](const std::filesystem::path& part) {
    std::error_code ignored;
    return std::filesystem::exists(part, ignored) && !platform::MayWrite(part);
  };
  if (isWriteProtected(path)) return path;
  for (const char* const suffix : kJournalSuffixes) {
    std::filesystem::path part = WithSuffix(path, suffix);
    if (isWriteProtected(part)) return part;
  }
  return std::nullopt;
}

bool HasOtherNames(const std::filesystem::path& path) {
  try {
    return platform::HasOtherNames(path);
  } catch (const std::system_error& error) {
    throw CompanyFileError("The company file " + PathText(path) + " cannot be opened (" + error.code().message() +
                           "). Check that it exists and that you may read and write it.");
  }
}

// Nothing when the company can be worked on where it lies.
std::optional<OnlyRead> WhyOnlyRead(const std::filesystem::path& path, const NetworkShares& shares) {
  if (platform::IsOnReadOnlyMedium(path)) return OnlyRead::kReadOnlyMedium;
  if (!shares.mayBeWorkedOn && shares.isOne(path)) return OnlyRead::kNetworkShare;
  if (HasOtherNames(path)) return OnlyRead::kOtherNames;
  if (WriteProtectedPart(path)) return OnlyRead::kWriteProtected;
  if (!platform::MayMakeFilesIn(FolderOf(path))) return OnlyRead::kWriteProtectedFolder;
  return std::nullopt;
}

constexpr std::string_view kWhyNotOnAShare =
    "where programs on two machines would not see each other's work and damage it. ";
constexpr std::string_view kHowOnAShare =
    "; an administrator who insists on working there adds --network-share, with which one program at a time has it "
    "open.";

// With what to do about it.
std::string WhyNotWorkedOn(const std::filesystem::path& path, OnlyRead why) {
  const std::string name = PathText(path);
  const std::string company = "The company file " + name + " ";
  const std::string reason = company + std::string(OnlyReadText(why));
  switch (why) {
    case OnlyRead::kReadOnlyMedium:
      return reason + ". Copy it to a disk to work on it.";
    case OnlyRead::kNetworkShare:
      return reason + ", " + std::string(kWhyNotOnAShare) + "Move it to a disk of this machine to work on it" +
             std::string(kHowOnAShare);
    case OnlyRead::kOtherNames:
      return reason +
             ". Programs that work on it under two names keep two write-ahead logs, and what one saves the other "
             "destroys. Remove the other name, or copy the file and work on the copy.";
    case OnlyRead::kWriteProtected:
      return company + "cannot be written, as " + PathText(WriteProtectedPart(path).value_or(path)) +
             " is write-protected. Give yourself the right to write it.";
    case OnlyRead::kWriteProtectedFolder:
      return reason + ", where no write-ahead log can be kept beside it. Give yourself the right to write in " +
             PathText(FolderOf(path)) + ".";
  }
  return reason + ".";
}

// A company that could only be read there is of no use.
void RequirePlaceToWork(const std::filesystem::path& path, const NetworkShares& shares) {
  if (shares.mayBeWorkedOn || !shares.isOne(FolderOf(path))) return;
  throw CompanyFileError("The company file " + PathText(path) + " cannot be made: it would lie on a network share, " +
                         std::string(kWhyNotOnAShare) + "Make it on a disk of this machine" +
                         std::string(kHowOnAShare));
}

}  // namespace

void CompanyFile::Create(const std::filesystem::path& path, const NewCompany& company, const NetworkShares& shares) {
  RequireFileName(path);
  RequireText("The company name", company.name, 1, kCompanyNameLength);
  RequireCurrencyCode(company.homeCurrency);
  if (IsThere(path)) ThrowThere(path);
  RequirePlaceToWork(path, shares);
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
  const std::optional<OnlyRead> onlyRead = WhyOnlyRead(path_, options.networkShares);
  isAlone_ = !onlyRead && options.networkShares.mayBeWorkedOn && options.networkShares.isOne(path_);
  const std::filesystem::path file = FileToOpen(options, onlyRead, isOlder);
  database_ = std::make_unique<SqliteDatabase>(file, options.busyTimeout);
  database_->SetName(path_);
  if (copy_) database_->SetRoomAdvice(copy_->RoomAdvice());
  database_->AllowCheckpointOnClose(false);
  if (isAlone_) database_->Execute("PRAGMA locking_mode = EXCLUSIVE");
  Configure(*database_);
  RequireKnownVersion(*database_, newest);
  RequireSound(*database_, options.schema);
  database_->HoldToVersion(newest);
  database_->AllowCheckpointOnClose(true);
  if (onlyRead) database_->RefuseWriting("Nothing was saved. " + WhyNotWorkedOn(path_, *onlyRead));
}

// The file to open: the company's own, or a copy of it.
std::filesystem::path CompanyFile::FileToOpen(const OpenOptions& options, const std::optional<OnlyRead>& onlyRead,
                                              bool isOlder) {
  if (!onlyRead && !isOlder) {
    RequireOwnLog(path_, path_);
    return path_;
  }
  // What lies beside a file lies beside the file itself, not beside a link to it.
  std::error_code error;
  std::filesystem::path file = std::filesystem::canonical(path_, error);
  if (error) file = std::filesystem::absolute(path_);
  if (onlyRead) file = copy_.emplace(file, options.busyTimeout).File();
  RequireOwnLog(file, path_);
  Opening opening{.migrated = {}, .onlyRead = onlyRead};
  if (isOlder) {
    opening.migrated =
        BringForward(file, {.name = path_,
                            .steps = options.schema,
                            .patience = options.busyTimeout,
                            .keepsCopy = !onlyRead,
                            .record =
                                [&options](const Migrated& done, Database& database) {
                                  AuditTable(database).Append(StampNow(options.clock, /*user=*/{}), DeedOf(done));
                                },
                            .roomAdvice = onlyRead ? std::optional(copy_->RoomAdvice()) : std::nullopt});
  }
  if (options.tell && (opening.migrated || onlyRead)) options.tell(opening);
  return onlyRead ? file : path_;
}

std::filesystem::path CompanyFile::LogPath(const std::filesystem::path& companyFile) {
  return WithSuffix(companyFile, kLogFileSuffix);
}

std::filesystem::path CompanyFile::RemotePath(const std::filesystem::path& companyFile) {
  return WithSuffix(companyFile, kRemoteFileSuffix);
}

}  // namespace standalone
