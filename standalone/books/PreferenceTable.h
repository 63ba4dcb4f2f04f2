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
  void Forget(std::string_view key);

 private:
  Statement byKey_;
  Statement set_;
  Statement delete_;
};

}  // namespace standalone
