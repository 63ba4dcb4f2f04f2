#include "standalone/storage/sqlite/OpenAlone.h"

#include <chrono>

#include "standalone/values/Errors.h"

namespace standalone {

std::unique_ptr<SqliteDatabase> OpenAlone(const std::filesystem::path& file, const std::filesystem::path& name) {
  auto database = std::make_unique<SqliteDatabase>(file, std::chrono::milliseconds::zero());
  database->SetName(name);
  database->AllowCheckpointOnClose(false);
  try {
    database->Execute("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT");
  } catch (const FileInUse&) {
    return nullptr;
  }
  database->Execute("PRAGMA synchronous = FULL; PRAGMA trusted_schema = OFF");
  return database;
}

}  // namespace standalone
