#include "standalone/storage/sqlite/Overwriting.h"

#include <sqlite3.h>

#include <string>
#include <utility>

namespace standalone {

Overwriting::Overwriting(SqliteDatabase& source, SqliteDatabase& target)
    : target_(target), copying_(sqlite3_backup_init(target.Handle(), "main", source.Handle(), "main")) {
  if (copying_ == nullptr) target_.ThrowFailed(sqlite3_extended_errcode(target_.Handle()));
  constexpr int kOnlyTheLock = 0;
  Step(kOnlyTheLock, SQLITE_OK);
}

Overwriting::~Overwriting() {
  sqlite3_backup_finish(copying_);
}

void Overwriting::Finish() {
  constexpr int kAllPages = -1;
  Step(kAllPages, SQLITE_DONE);
}

void Overwriting::Step(int pages, int wanted) {
  const int code = sqlite3_backup_step(copying_, pages);
  if (code == wanted) return;
  sqlite3_backup_finish(std::exchange(copying_, nullptr));
  target_.ThrowFailed(code);
}

void TakePageSizeOf(SqliteDatabase& target, SqliteDatabase& source) {
  const std::int64_t size = target.QueryNumber("PRAGMA page_size");
  if (source.QueryNumber("PRAGMA page_size") == size) return;
  // With a write-ahead log the size would stay.
  source.Execute(("PRAGMA journal_mode = DELETE; PRAGMA page_size = " + std::to_string(size) + "; VACUUM").c_str());
}

}  // namespace standalone
