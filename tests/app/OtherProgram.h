#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

// A program of others that works on a company file.
class OtherProgram {
 public:
  explicit OtherProgram(const std::filesystem::path& file) {
    EXPECT_EQ(sqlite3_open(file.c_str(), &database_), SQLITE_OK);
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram() { sqlite3_close(database_); }

  void Runs(const char* sql) const {
    EXPECT_EQ(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database_);
  }

  // Hands the text and the number of each row to `take`.
  void ForEachRow(const std::string& sql,
                  const std::function<void(const std::string& text, std::int64_t number)>& take) const {
    sqlite3_stmt* statement = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database_);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      // SQLite hands out its texts as bytes.
      // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
      take(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)), sqlite3_column_int64(statement, 1));
    }
    sqlite3_finalize(statement);
  }

 private:
  sqlite3* database_ = nullptr;
};
