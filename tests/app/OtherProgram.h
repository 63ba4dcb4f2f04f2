#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>

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

 private:
  sqlite3* database_ = nullptr;
};
