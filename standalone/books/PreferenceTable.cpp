#include "standalone/books/PreferenceTable.h"

#include "standalone/values/Text.h"

namespace standalone {

PreferenceTable::PreferenceTable(Database& database)
    : byKey_(database, "SELECT value FROM preference WHERE key = ?1"),
      set_(database, Writes::kLists,
           "INSERT INTO preference VALUES (?1, ?2) ON CONFLICT (key) DO UPDATE SET value = excluded.value"),
      delete_(database, Writes::kLists, "DELETE FROM preference WHERE key = ?1") {}

std::optional<std::string> PreferenceTable::Find(std::string_view key) {
  Rows rows = byKey_.Query(key);
  if (!rows.Step()) return std::nullopt;
  return std::string(rows.Text(0));
}

void PreferenceTable::Set(std::string_view key, std::string_view value) {
  RequireText("The preference key", key, 1, kPreferenceKeyLength);
  set_.Run(key, value);
}

void PreferenceTable::Forget(std::string_view key) {
  delete_.Run(key);
}

}  // namespace standalone
