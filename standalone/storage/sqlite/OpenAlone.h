#pragma once

#include <filesystem>
#include <memory>

#include "standalone/storage/sqlite/SqliteDatabase.h"

namespace standalone {

// A connection beside which there is no other one, of which none comes while it lives; null when there is. What is in
// the write-ahead log stays there when it is closed. `name` is what people call the file.
std::unique_ptr<SqliteDatabase> OpenAlone(const std::filesystem::path& file, const std::filesystem::path& name);

}  // namespace standalone
