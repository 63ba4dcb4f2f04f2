#include "standalone/company/Backup.h"

#include <system_error>

#include "standalone/company/FileNames.h"
#include "standalone/storage/sqlite/DraftFile.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

[[noreturn]] void ThrowNoBackup(const std::filesystem::path& backup, const std::string& reason) {
  throw CompanyFileError("The backup " + PathText(backup) + " was not made. " + reason);
}

[[noreturn]] void ThrowTaken(const std::filesystem::path& backup) {
  ThrowNoBackup(backup, "There is a file of that name; choose another name, or move that file away first.");
}

DraftFile DraftOf(const std::filesystem::path& backup) {
  try {
    return DraftFile(backup);
  } catch (const std::system_error& error) {
    ThrowNoBackup(backup,
                  "Check that its folder exists and that you may write there (" + error.code().message() + ").");
  }
}

}  // namespace

void RequireFreeForBackup(const std::filesystem::path& backup, const std::filesystem::path& company) {
  RequireFileName(backup);
  if (IsBesideCompany(backup, company)) {
    ThrowNoBackup(backup, "That is the name of what belongs to the company " + PathText(company) +
                              " and lies beside it; choose another name.");
  }
  if (IsThere(backup)) ThrowTaken(backup);
  const std::filesystem::path left = LeftBeside(backup);
  if (left.empty()) return;
  ThrowNoBackup(backup, PathText(left) +
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
  RequireFreeForBackup(backup, company.Name());
  DraftFile draft = DraftOf(backup);
  bool isPublished = false;
  Backup made;
  try {
    company.CopyInto(draft.Path());
    AuditCheck trail = TrailOfDraft(draft.Path(), backup, schema);
    made = {
        .bytes = std::filesystem::file_size(draft.Path()), .auditLines = trail.lines, .head = std::move(trail.head)};
    isPublished = draft.Publish(backup);
  } catch (const DamagedFile& damage) {
    ThrowNoBackup(
        backup, "What was copied is damaged (" + damage.Reason() + "). Check the company and the disk of the backup.");
  } catch (const std::exception& error) {
    ThrowNoBackup(backup, error.what());
  }
  if (!isPublished) ThrowTaken(backup);
  return made;
}

}  // namespace standalone
