#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "standalone/books/AuditTable.h"
#include "standalone/company/CompanyFile.h"
#include "standalone/storage/sqlite/TemporaryCopy.h"

namespace standalone {

// What decides whether a backup takes the place of what a company holds.
struct BeforeRestore {
  bool userIsAdministrator = false;
  std::int64_t linesToGiveUp = 0;  // at the end of the company's audit trail, which the backup lacks
  std::optional<AuditLine> lastToGiveUp;
};

struct Restored {
  std::int64_t auditLines = 0;  // with the one that tells of the restore
  std::string head;             // the SHA-256 of the last one
  std::int64_t givenUp = 0;     // audit lines of the company
  std::filesystem::path aside;  // what was there before it could be opened no more; empty when nothing was moved
};

// Whether that user is an administrator now; InvalidInput when there is no such user.
bool IsAdministrator(Database& database, const std::string& user);

// A backup that is searched through and, if a former program made it, brought forward: all of it in a temporary folder,
// so that the backup stays as it is.
class BackupCopy {
 public:
  // Throws CompanyFileError, which tells why this backup cannot be restored.
  BackupCopy(const std::filesystem::path& backup, const OpenOptions& options);

  Database& Data() noexcept { return *database_; }

  // Puts it in the place of what the company holds, for whoever has the company open, too. `allow` is asked while
  // nobody else writes; when it throws, or anything fails, the company is as it was. Throws UnitOfWorkError when others
  // hold the company too long, CompanyFileError otherwise.
  Restored PutInto(CompanyFile& company, const std::string& user,
                   const std::function<void(const BeforeRestore& before)>& allow);
  // Makes it a company file of that name. What is there under the name, or left of it, is moved aside and lends its
  // rights. Throws CompanyFileError.
  Restored PutInPlaceOf(const std::filesystem::path& file, const std::string& user);

 private:
  // What has become of it in its temporary folder, in words; empty while nothing has.
  std::string Fault();
  // Throws CompanyFileError when that is why `what` ended as it did.
  void RequireSound(const std::string& what);
  AuditStamp Stamp(const std::string& user) const;
  // Records it, writes it to a draft of that name's, and searches through that.
  AuditCheck WriteTo(const std::filesystem::path& draft, const std::filesystem::path& name, const std::string& user);
  // `user` is called as the company calls them.
  void Record(const std::string& user, const std::optional<AuditCheck>& company, std::int64_t givenUp);

  std::filesystem::path backup_;
  OpenOptions options_;
  std::optional<TemporaryCopy> copy_;
  std::unique_ptr<SqliteDatabase> database_;
  std::size_t schemaVersion_ = 0;  // that the backup had
  AuditCheck trail_;
};

}  // namespace standalone
