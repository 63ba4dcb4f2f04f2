#pragma once

#include "standalone/storage/sqlite/SqliteDatabase.h"

struct sqlite3_backup;

namespace standalone {

// Puts the content of one database into the file of another in the place of its own, as one transaction: whoever has
// that file open sees the old content or the new one, and goes on with the new one.
class Overwriting {
 public:
  // Begins as a unit of work that writes does, waiting for others as long as `target` does: until this is finished or
  // gone they only read. Nothing is asked of `target` meanwhile; `source` may still be changed by its own connection.
  // Both outlive this and have pages of the same size. Throws CompanyFileError, FileInUse among them.
  Overwriting(SqliteDatabase& source, SqliteDatabase& target);
  Overwriting(const Overwriting&) = delete;
  Overwriting& operator=(const Overwriting&) = delete;
  // Leaves the file as it was unless this was finished.
  ~Overwriting();

  // Once this returns, the new content is on the disk. Throws CompanyFileError: the file is as it was then, unless the
  // disk failed at the very end.
  void Finish();

 private:
  void Step(int pages, int wanted);

  SqliteDatabase& target_;
  sqlite3_backup* copying_;
};

// Brings both to pages of the same size by writing the source anew.
void TakePageSizeOf(SqliteDatabase& target, SqliteDatabase& source);

}  // namespace standalone
