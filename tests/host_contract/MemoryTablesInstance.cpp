#include <gtest/gtest.h>

#include <memory>

#include "MultiEntityHostHelpers/AbsentServices.h"
#include "MultiEntityHostHelpers/MemoryTables.h"
#include "tests/host_contract/HostUnderTest.h"

namespace host_contract {

namespace {

class NothingBesidesTables final : public Absent::Host {};

// A host that has the tables and nothing else.
class MemoryTablesUnderTest final : public HostUnderTest {
 public:
  const HostServices& Services() override { return services_; }

  std::int32_t SeedAccount(std::string_view, std::int16_t, std::int32_t, bool) override { return 0; }
  std::int32_t SeedName(std::string_view) override { return 0; }
  void SetRemovalUnderWay(bool) override {}

  // As a unit of work that fails would: with a copy of the tables.
  void Reopen() override {
    const MemoryTables copy = tables_;
    tables_ = MemoryTables();
    tables_ = copy;
  }

 private:
  NothingBesidesTables others_;
  MemoryTables tables_;
  HostServices services_ = others_.Services(tables_);
};

constexpr HostMaker kMemoryTables{"MemoryTables", []() -> std::unique_ptr<HostUnderTest> {
                                    return std::make_unique<MemoryTablesUnderTest>();
                                  }};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Tables, RelationStore, testing::Values(kMemoryTables), NameOfHost);
INSTANTIATE_TEST_SUITE_P(Tables, TransactionRowStore, testing::Values(kMemoryTables), NameOfHost);
INSTANTIATE_TEST_SUITE_P(Tables, RejectedTransactionStore, testing::Values(kMemoryTables), NameOfHost);

}  // namespace host_contract
