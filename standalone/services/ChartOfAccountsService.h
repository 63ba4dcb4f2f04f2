#pragma once

#include <vector>

#include "MultiEntityHost/ChartOfAccounts.h"
#include "standalone/books/AccountTable.h"
#include "standalone/services/HandleTable.h"

namespace standalone {

// The chart of accounts as the module sees it. Reading failures of the operations without a status are thrown.
class ChartOfAccountsService final : public ChartOfAccounts {
 public:
  ChartOfAccountsService(Database& database, AccountTable& accounts) : accounts_(accounts), chart_(database) {}

  AccountListHandle GetAccntListPtr() override;
  void EdListRefreshList(AccountListHandle list, std::int32_t option) override;
  EdListStatus GetAccountForRecnum(long recnum, CAccnt& account) override;
  EdListStatus CreateNewChartOfAccount(char* name, std::int16_t type, std::int32_t& recnum, bool option) override;
  std::unordered_map<long, std::pair<std::string, std::string>> GetAllAccounts() override;
  std::vector<std::pair<std::string, long>> GetListOfAccounts(std::int16_t type) override;
  AccountHandle OpenAccount(FeatureType feature) override;
  AccountHandle OpenAccount(long recnum, FeatureType feature) override;
  bool GetDeleted(AccountHandle account) override;
  KrEnumerations::AccntTypeType GetType(AccountHandle account) override;
  bool GetIsSubAccnt(AccountHandle account) override;
  bool IsSpecial(AccountHandle account, KrEnumerations::SpecialAccountTypeType kind) override;
  void ReleaseAccount(AccountHandle account) noexcept override;

  // What stands behind an open account; id 0 when it is blank.
  const AccountFacts& RecordOf(AccountHandle account);

 private:
  // The whole chart, kept when all accounts were handed out: they are then opened one by one.
  struct Chart {
    AccountFacts Find(std::int32_t id);

    std::vector<AccountFacts> accounts;  // by record number
    std::size_t lastFound = 0;
  };

  AccountFacts Find(long recnum);

  AccountTable& accounts_;
  HandleTable<AccountFacts> open_;
  ReadOnce<Chart> chart_;
};

}  // namespace standalone
