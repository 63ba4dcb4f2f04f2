#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "standalone/desk/Company.h"

namespace desk {

struct BackedUp {
  std::filesystem::path file;
  std::uintmax_t bytes = 0;
  std::int64_t auditLines = 0;
  std::string head;  // the SHA-256 of the last audit line
};

// Makes a backup of all that is committed, while others may work on the company, and searches through it; the company's
// audit trail tells of it. For administrators and accountants. standalone::CompanyFileError when there is a file of
// that name or it cannot be made; nothing is left behind then.
BackedUp BackUp(Company& company, const std::filesystem::path& to);

struct RestoreOrder {
  std::filesystem::path backup;
  std::filesystem::path file;  // the company; it need not be there
  std::string user = kFirstUser;
  // Also when what the company has beyond the backup is given up for it, or when the file can be opened no more.
  bool replaces = false;
  bool networkShare = false;  // see CompanyOptions
  std::function<void(const Opening& opening)> onOpened;
};

struct Restored {
  std::filesystem::path file;
  std::int64_t auditLines = 0;  // with the one that tells of the restore
  std::string head;
  std::int64_t givenUp = 0;     // audit lines of the company that the backup lacked
  std::filesystem::path aside;  // where the file lies that could be opened no more; empty when there was none
};

// Puts a backup in the place of a company, or makes the company of it. Programs that have the company open go on with
// what is restored. For administrators of the company, and of the backup where there is no company that can be opened.
// Nothing is changed when it throws, the backup never.
Restored Restore(const RestoreOrder& order);

}  // namespace desk
