#pragma once

#include <memory>

#include "fuzz/Fuzzing.h"
#include "standalone/company/StandaloneHost.h"
#include "tests/support/TemporaryFolder.h"

namespace fuzzing {

// A company file that inputs may change; it begins anew when one has.
class Books {
 public:
  explicit Books(const std::string& currency = "USD") {
    standalone::NewCompany company;
    company.name = "Birch Services";
    company.homeCurrency = currency;
    standalone::CompanyFile::Create(path_, company);
    Open();
    host_->Request(standalone::Access::kWrite, [this] { Fill(); });
    host_.reset();
    std::filesystem::copy_file(path_, seed_);
    Open();
  }

  standalone::StandaloneHost& Host() { return *host_; }
  standalone::SqliteDatabase& Data() { return dynamic_cast<standalone::SqliteDatabase&>(host_->Data()); }
  const std::filesystem::path& Path() const { return path_; }
  std::filesystem::path File(std::string_view name) const { return folder_ / name; }

  void BeginAnew() {
    host_.reset();
    std::filesystem::copy_file(seed_, path_, std::filesystem::copy_options::overwrite_existing);
    for (const char* suffix : {"-wal", "-shm"}) std::filesystem::remove(path_.string() + suffix);
    Open();
  }

  // Whether somebody else's connection has changed the file since this was last asked.
  bool IsChangedSinceLastAsked() {
    const std::int64_t version = Number("PRAGMA data_version");
    return std::exchange(version_, version) != version;
  }

  void RequireSound() {
    Require(
        host_->Request(standalone::Access::kRead, [this] { return Data().QueryText("PRAGMA quick_check"); }) == "ok",
        "the company file is sound");
    Require(Number("SELECT count(*) FROM (SELECT 1 FROM txn_line GROUP BY txn_id HAVING sum(amount) <> 0)") == 0,
            "every transaction sums to zero");
    Require(Number("SELECT count(*) FROM txn WHERE posted = 0") == 0, "no transaction is half entered");
    Require(Number("SELECT count(*) FROM pragma_foreign_key_check") == 0, "every row has what it refers to");
  }

  std::int64_t Number(const char* sql) {
    return host_->Request(standalone::Access::kRead, [&] { return Data().QueryNumber(sql); });
  }

 private:
  void Open() {
    host_ = std::make_unique<standalone::StandaloneHost>(path_);
    IsChangedSinceLastAsked();
  }

  void Fill() {
    for (const char* name : {"Rent", "Due to Alder", "Due from Alder", "Checking"}) {
      host_->Accounts().Create({name, KrEnumerations::kExpense, 0, false});
    }
    host_->Names().Create("Northfield", standalone::NameKind::kVendor);
    DBMultiEntityRelation relation{};
    relation.realmId[0] = '9';
    Require(host_->Services().multiEntity.SaveRelation(relation).Succeeded(), "the books are filled");
  }

  standalone::TemporaryFolder folder_;
  std::filesystem::path path_ = folder_ / "birch.company";
  std::filesystem::path seed_ = folder_ / "seed.company";
  std::unique_ptr<standalone::StandaloneHost> host_;
  std::int64_t version_ = 0;
};

}  // namespace fuzzing
