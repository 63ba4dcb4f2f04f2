#include "standalone/company/Restore.h"

#include <system_error>

#include "platform/DiskFiles.h"
#include "standalone/books/UserTable.h"
#include "standalone/company/Backup.h"
#include "standalone/company/FileNames.h"
#include "standalone/company/MovingAside.h"
#include "standalone/storage/sqlite/CompanyFileHeader.h"
#include "standalone/storage/sqlite/DraftFile.h"
#include "standalone/storage/sqlite/LogOrigin.h"
#include "standalone/storage/sqlite/OpenAlone.h"
#include "standalone/storage/sqlite/Overwriting.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

using std::chrono::milliseconds;

// `name` tells where it goes as soon as it does.
void MoveAside(const std::filesystem::path& file, std::filesystem::path& name) {
  MovingAside moving(file);
  name = moving.Name();
  try {
    bool goesOn = true;
    while (goesOn) goesOn = moving.Step();
  } catch (...) {
    moving.GiveUp();
    throw;
  }
}

// The file may have been on its way when another try ended.
void TakeRightsOfWhatIsThere(const std::filesystem::path& file, const std::filesystem::path& draft) {
  if (!IsAnythingThere(file)) return;
  const std::filesystem::path model = IsThere(file) ? file : MovingAside(file).Name();
  if (IsThere(model)) platform::TakeRightsOf(model, draft);
}

// Who works on a damaged company all the same would book into a file that is out of the way. What the engine cannot
// read nobody works on.
void RequireUnused(const std::filesystem::path& file) {
  if (!IsThere(file)) return;
  try {
    if (OpenAlone(file, file) != nullptr) return;
  } catch (const CompanyFileError&) {
    return;
  }
  throw FileInUse("The company file " + PathText(file) + " is in use by another program. Close it there first.");
}

// Through a connection of its own, but for a company that is kept for one program alone.
AuditCheck TrailAfterwards(CompanyFile& company, SchemaSpan schema) {
  if (company.IsWorkedOnAlone()) return RequireWhole(company.Data(), schema);
  SqliteDatabase database(company.Path(), kBusyTimeout);
  return RequireWhole(database, schema);
}

// After a failure of the disk that may have come before or after what was to be done.
bool IsAsItWas(CompanyFile& company, const std::string& headBefore, const std::string& failure) {
  try {
    AuditTable audit(company.Data());
    return InReadingUnit(company.Data(), [&] { return audit.Check(); }).head == headBefore;
  } catch (const std::exception&) {
    throw OutcomeUnknown("It is not known whether the company was restored. " + failure);
  }
}

struct Comparison {
  AuditCheck trail;  // of the company
  std::string user;  // as the company calls them
  BeforeRestore before;
};

// The company as it is now, and the backup.
Comparison Compare(Database& database, const std::string& user, Database& backup) {
  AuditTable own(database);
  AuditTable others(backup);
  const UnitOfWork reading(database, Access::kRead);
  const UnitOfWork readingBackup(backup, Access::kRead);
  User known = UserTable(database).Require(user);
  Comparison compared{.trail = own.Check(), .user = std::move(known.name), .before = {}};
  compared.before.userIsAdministrator = known.administrator;
  compared.before.linesToGiveUp = compared.trail.lines - own.CountLinesInCommon(others);
  if (compared.before.linesToGiveUp != 0) compared.before.lastToGiveUp = own.Last();
  return compared;
}

// On a read-only medium nobody does, and others who write are waited for.
void RequireWritable(Database& company) {
  const UnitOfWork writing(company, Access::kWrite);
}

}  // namespace

bool IsAdministrator(Database& database, const std::string& user) {
  UserTable users(database);
  return InReadingUnit(database, [&] { return users.Require(user).administrator; });
}

BackupCopy::BackupCopy(const std::filesystem::path& backup, const OpenOptions& options)
    : backup_(backup), options_(options) {
  try {
    // What lies beside a file lies beside the file itself, not beside a link to it.
    std::error_code error;
    std::filesystem::path original = std::filesystem::canonical(backup, error);
    if (error) original = backup;
    RequireCompanyFileHeader(original, options.schema.size());
    const std::filesystem::path file = copy_.emplace(original, options.busyTimeout).File();
    RequireOwnLog(file, backup);
    const std::optional<Migrated> migrated = BringForward(file, {.name = backup,
                                                                 .steps = options.schema,
                                                                 .patience = milliseconds::zero(),
                                                                 .keepsCopy = false,
                                                                 .roomAdvice = copy_->RoomAdvice()});
    schemaVersion_ = migrated ? migrated->from : options.schema.size();
    database_ = std::make_unique<SqliteDatabase>(file, milliseconds::zero());
    database_->SetName(backup);
    database_->SetRoomAdvice(copy_->RoomAdvice());
    trail_ = RequireWhole(*database_, options.schema);
  } catch (const DamagedFile& damage) {
    throw CompanyFileError("The backup " + PathText(backup) + " is damaged (" + damage.Reason() +
                           ") and was not restored. Choose another one.");
  }
}

std::string BackupCopy::Fault() {
  try {
    RequireWhole(*database_, options_.schema);
    return {};
  } catch (const DamagedFile& damage) {
    return damage.Reason();
  } catch (const std::exception& failure) {
    return failure.what();
  }
}

void BackupCopy::RequireSound(const std::string& what) {
  const std::string fault = Fault();
  if (fault.empty()) return;
  throw CompanyFileError(what + ": the copy of the backup " + PathText(backup_) +
                         " that is kept meanwhile is damaged (" + fault + "). " + copy_->CheckAdvice() +
                         " Then restore it once more.");
}

AuditStamp BackupCopy::Stamp(const std::string& user) const {
  return StampNow(options_.clock, user);
}

void BackupCopy::Record(const std::string& user, const std::optional<AuditCheck>& company, std::int64_t givenUp) {
  AuditDeed deed{
      .action = "company.restore", .subject = PathText(backup_.filename()), .transactions = {}, .changes = {}};
  const auto tell = [&deed](const char* field, std::optional<std::string> before, std::optional<std::string> after) {
    deed.changes.push_back({field, std::move(before), std::move(after)});
  };
  const auto before = [&company](const std::string& text) {
    return company ? std::optional(text) : std::nullopt;
  };
  const AuditCheck was = company.value_or(AuditCheck{});
  tell("audit lines", before(std::to_string(was.lines)), std::to_string(trail_.lines));
  tell("SHA-256 of the last one", before(was.head), trail_.head);
  if (givenUp != 0) tell("audit lines given up", {}, std::to_string(givenUp));
  if (schemaVersion_ != options_.schema.size()) {
    tell("schema version", std::to_string(schemaVersion_), std::to_string(options_.schema.size()));
  }
  UnitOfWork unit(*database_, Access::kWrite);
  AuditTable(*database_).Append(Stamp(user), deed);
  unit.Commit();
}

Restored BackupCopy::PutInto(CompanyFile& company, const std::string& user,
                             const std::function<void(const BeforeRestore& before)>& allow) {
  SqliteDatabase& target = company.Data();
  if (target.QueryText("PRAGMA journal_mode = WAL") != "wal") {
    throw CompanyFileError("The company file " + PathText(company.Path()) +
                           " was not restored: no write-ahead log can be kept beside it. Check its disk.");
  }
  RequireWritable(target);
  std::int64_t givenUp = 0;
  std::string headBefore;  // once it may be replaced
  const std::string whatWas = "The company file " + PathText(company.Path());
  try {
    TakePageSizeOf(target, *database_);
    std::optional<Comparison> compared;
    // Nobody else changes a company that this program keeps for itself alone.
    if (company.IsWorkedOnAlone()) compared = Compare(target, user, *database_);
    Overwriting overwriting(*database_, target);
    if (!compared) {
      SqliteDatabase reading(company.Path(), milliseconds::zero());
      compared = Compare(reading, user, *database_);
    }
    allow(compared->before);
    givenUp = compared->before.linesToGiveUp;
    Record(compared->user, compared->trail, givenUp);
    headBefore = compared->trail.head;
    overwriting.Finish();
  } catch (const FileInUse& inUse) {
    throw UnitOfWorkError(std::string("Nothing was restored. ") + inUse.what());
  } catch (const CompanyFileError& failure) {
    if (headBefore.empty() || IsAsItWas(company, headBefore, failure.what())) {
      RequireSound(whatWas + " was not restored");
      throw;
    }
  }
  try {
    AuditCheck trail = TrailAfterwards(company, options_.schema);
    return {.auditLines = trail.lines, .head = std::move(trail.head), .givenUp = givenUp, .aside = {}};
  } catch (const DamagedFile& damage) {
    RequireSound(whatWas + " was restored, but what was written is damaged");
    throw CompanyFileError(whatWas + " was restored, but what was written is damaged (" + damage.Reason() +
                           "). Check its disk, and restore it once more.");
  } catch (const std::exception& failure) {
    throw CompanyFileError(whatWas + " was restored, but could not be searched through (" + failure.what() + ").");
  }
}

AuditCheck BackupCopy::WriteTo(const std::filesystem::path& draft, const std::filesystem::path& name,
                               const std::string& user) {
  try {
    Record(InReadingUnit(*database_, [&] { return UserTable(*database_).Require(user).name; }), /*company=*/{},
           /*givenUp=*/0);
    database_->CopyInto(draft);
    return TrailOfDraft(draft, name, options_.schema);
  } catch (const CompanyFileError& failure) {
    RequireSound("What was to be written cannot be read");
    const auto* const damage = dynamic_cast<const DamagedFile*>(&failure);
    if (damage == nullptr) throw;
    throw CompanyFileError("What was written beside it is damaged (" + damage->Reason() + "). Check its disk.");
  }
}

Restored BackupCopy::PutInPlaceOf(const std::filesystem::path& file, const std::string& user) {
  RequireFileName(file);
  Restored restored;
  const auto fail = [&](const std::string& why) {
    const std::string where =
        restored.aside.empty() || IsThere(file) ? "" : " What was there lies in " + PathText(restored.aside) + ".";
    throw CompanyFileError("The company file " + PathText(file) + " was not restored. " + why + where);
  };
  try {
    DraftFile draft(file);
    TakeRightsOfWhatIsThere(file, draft.Path());
    AuditCheck trail = WriteTo(draft.Path(), file, user);
    restored.auditLines = trail.lines;
    restored.head = std::move(trail.head);
    RequireUnused(file);
    if (IsAnythingThere(file)) MoveAside(file, restored.aside);
    if (!draft.Publish(file)) throw CompanyFileError("Another program has just made a file of that name.");
  } catch (const std::system_error& error) {
    fail("Check that its folder exists, that you may write there and that nobody has the file open (" +
         error.code().message() + ").");
  } catch (const CompanyFileError& error) {
    fail(error.what());
  }
  return restored;
}

}  // namespace standalone
