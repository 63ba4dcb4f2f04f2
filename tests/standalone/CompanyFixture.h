#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "standalone/StandaloneHost.h"
#include "tests/standalone/TemporaryFolder.h"

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

// The message of the exception of type Error that `work` throws; a failure when it throws none.
template <typename Error, typename Work>
std::string MessageOf(Work&& work) {
  try {
    work();
  } catch (const Error& error) {
    return error.what();
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}

// One number, read in a unit of work of its own.
inline std::int64_t Count(StandaloneHost& host, const char* sql) {
  return host.Request(Access::kRead, [&] { return host.Data().QueryNumber(sql); });
}

}  // namespace standalone
