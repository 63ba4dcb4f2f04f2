#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "standalone/company/StandaloneHost.h"
#include "standalone/storage/sqlite/SqliteDatabase.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

namespace standalone {

// A new company in a folder of its own.
class CompanyFixture : public testing::Test {
 protected:
  CompanyFixture() {
    NewCompany company;
    company.name = "Birch Services";
    CompanyFile::Create(path_, company);
  }

  std::filesystem::path WriteCsv(std::string_view text) const {
    const std::filesystem::path csv = folder_ / "rows.csv";
    WriteFile(csv, text);
    return csv;
  }

  TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_ / "birch.company";
};

// The company's file, for what only its engine tells.
inline SqliteDatabase& FileOf(StandaloneHost& host) {
  return dynamic_cast<SqliteDatabase&>(host.Data());
}

// One number, read in a unit of work of its own.
inline std::int64_t Count(StandaloneHost& host, const char* sql) {
  return host.Request(Access::kRead, [&] { return FileOf(host).QueryNumber(sql); });
}

}  // namespace standalone
