#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "standalone/storage/Statement.h"

namespace standalone {

// What the company remembers by key. Every operation needs an open unit of work.
class PreferenceTable {
 public:
  explicit PreferenceTable(Database& database);

  std::optional<std::string> Find(std::string_view key);
  // Throws InvalidInput for a key that is none.
  void Set(std::string_view key, std::string_view value);

 private:
  Statement byKey_;
  Statement set_;
};

}  // namespace standalone
