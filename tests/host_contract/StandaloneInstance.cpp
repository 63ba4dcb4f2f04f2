#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "standalone/company/StandaloneHost.h"
#include "tests/host_contract/HostUnderTest.h"
#include "tests/support/TemporaryFolder.h"

namespace host_contract {

namespace {

using standalone::StandaloneHost;

class StandaloneUnderTest final : public HostUnderTest {
 public:
  StandaloneUnderTest() {
    standalone::NewCompany company;
    company.name = "Birch Services";
    standalone::CompanyFile::Create(File(), company);
    Open();
  }

  ~StandaloneUnderTest() override { Close(); }

  const HostServices& Services() override { return host_->Services(); }

  std::int32_t SeedAccount(std::string_view fullName, std::int16_t type, std::int32_t specialKind,
                           bool deleted) override {
    return host_->Accounts().Create({std::string(fullName), type, specialKind, deleted}).id;
  }

  std::int32_t SeedName(std::string_view fullName) override {
    return host_->Names().Create(fullName, standalone::NameKind::kVendor).id;
  }

  void SetRemovalUnderWay(bool underWay) override {
    host_->SetRemovalUnderWay([underWay] { return underWay; });
  }

  void Reopen() override {
    Close();
    Open();
  }

 private:
  std::filesystem::path File() const { return folder_ / "birch.company"; }

  void Open() {
    host_.emplace(File());
    unit_.emplace(host_->Data(), standalone::Access::kWrite);
  }

  void Close() {
    unit_->Commit();
    unit_.reset();
    host_.reset();
  }

  standalone::TemporaryFolder folder_;
  std::optional<StandaloneHost> host_;
  std::optional<standalone::UnitOfWork> unit_;
};

constexpr HostMaker kStandalone{"Standalone", []() -> std::unique_ptr<HostUnderTest> {
                                  return std::make_unique<StandaloneUnderTest>();
                                }};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Host, RelationStore, testing::Values(kStandalone), NameOfHost);
INSTANTIATE_TEST_SUITE_P(Host, TransactionRowStore, testing::Values(kStandalone), NameOfHost);
INSTANTIATE_TEST_SUITE_P(Host, RejectedTransactionStore, testing::Values(kStandalone), NameOfHost);
INSTANTIATE_TEST_SUITE_P(Host, AccountList, testing::Values(kStandalone), NameOfHost);
INSTANTIATE_TEST_SUITE_P(Host, NameListing, testing::Values(kStandalone), NameOfHost);
INSTANTIATE_TEST_SUITE_P(Host, GeneralJournal, testing::Values(kStandalone), NameOfHost);
INSTANTIATE_TEST_SUITE_P(Host, TransactionLine, testing::Values(kStandalone), NameOfHost);
INSTANTIATE_TEST_SUITE_P(Host, MoneyText, testing::Values(kStandalone), NameOfHost);
INSTANTIATE_TEST_SUITE_P(Host, Preference, testing::Values(kStandalone), NameOfHost);

}  // namespace host_contract
