#include "standalone/company/Backup.h"

#include <system_error>

#include "platform/DiskFiles.h"
#include "standalone/storage/sqlite/DraftFile.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

[[noreturn]] void ThrowNotMade(const std::filesystem::path& backup, const std::string& reason) {
  throw CompanyFileError("The backup " + PathText(backup) + " was not made. " + reason);
}

[[noreturn]] void ThrowTaken(const std::filesystem::path& backup) {
  ThrowNotMade(backup, "There is a file of that name; choose another name, or move that file away first.");
}

DraftFile MakeDraft(const std::filesystem::path& backup) {
  try {
    return DraftFile(backup);
  } catch (const std::system_error& error) {
    ThrowNotMade(backup, "Check that its folder exists and that you may write there (" + error.code().message() + ").");
  }
}

}  // namespace

std::filesystem::path LeftBeside(const std::filesystem::path& file) {
  for (const char* const suffix : {"-wal", "-shm", "-journal"}) {
    std::filesystem::path left = WithSuffix(file, suffix);
    std::error_code ignored;
    if (std::filesystem::exists(std::filesystem::symlink_status(left, ignored))) return left;
  }
  return {};
}

void RequireFileName(const std::filesystem::path& file) {
  const bool hasNul = file.native().find('\0') != std::filesystem::path::string_type::npos;
  if (!file.empty() && !hasNul && !platform::NamesAStream(file)) return;
  throw InvalidInput("The name " + Quoted(PathText(file)) + " is none of a file. Give the path of one.");
}

void RequireFreeForBackup(const std::filesystem::path& backup) {
  RequireFileName(backup);
  std::error_code ignored;
  if (std::filesystem::exists(std::filesystem::symlink_status(backup, ignored))) ThrowTaken(backup);
  const std::filesystem::path left = LeftBeside(backup);
  if (left.empty()) return;
  ThrowNotMade(backup, PathText(left) +
                           " is left of another company of that name; choose another name, or move that file away.");
}

AuditCheck TrailOfDraft(const std::filesystem::path& draft, const std::filesystem::path& name, SchemaSpan schema) {
  SqliteDatabase database(draft, std::chrono::milliseconds::zero());
  database.SetName(name);
  // On a network share there is no memory in common with others, which a write-ahead log would need.
  database.Execute("PRAGMA locking_mode = EXCLUSIVE");
  return RequireWhole(database, schema);
}

AuditCheck RequireWhole(SqliteDatabase& database, SchemaSpan schema) {
  std::string fault = FaultOf(database, schema, Search::kEverything);
  if (fault.empty()) fault = ImbalanceOf(database, Search::kEverything);
  if (!fault.empty()) ThrowDamaged(database.Name(), fault);
  AuditTable audit(database);
  AuditCheck trail = InReadingUnit(database, [&] { return audit.Check(); });
  if (trail.breakAt) {
    ThrowDamaged(database.Name(), "its audit trail breaks at line " + std::to_string(*trail.breakAt));
  }
  return trail;
}

Backup MakeBackup(SqliteDatabase& company, const std::filesystem::path& backup, SchemaSpan schema) {
  RequireFreeForBackup(backup);
  DraftFile draft = MakeDraft(backup);
  bool isPublished = false;
  Backup made;
  try {
    company.CopyInto(draft.Path());
    AuditCheck trail = TrailOfDraft(draft.Path(), backup, schema);
    made = {
        .bytes = std::filesystem::file_size(draft.Path()), .auditLines = trail.lines, .head = std::move(trail.head)};
    isPublished = draft.Publish(backup);
  } catch (const DamagedFile& damage) {
    ThrowNotMade(backup,
                 "What was copied is damaged (" + damage.Reason() + "). Check the company and the disk of the backup.");
  } catch (const std::exception& error) {
    ThrowNotMade(backup, error.what());
  }
  if (!isPublished) ThrowTaken(backup);
  return made;
}

}  // namespace standalone
