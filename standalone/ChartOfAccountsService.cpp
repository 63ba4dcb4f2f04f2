#include "standalone/ChartOfAccountsService.h"

#include <cstring>
#include <limits>
#include <optional>

#include "standalone/AccountTypes.h"
#include "standalone/Guard.h"
#include "standalone/ListNames.h"

namespace standalone {

namespace {

constexpr AccountListHandle kAccountList{1};
// Types above it come from the import only: an account that is made on the way of a booking has one of the known types.
constexpr std::int16_t kLastCreatedType = KrEnumerations::kNonPosting;

std::optional<Account> FindByRecnum(AccountTable& accounts, long recnum) {
  if (recnum < 1 || recnum > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  return accounts.Find(static_cast<std::int32_t>(recnum));
}

}  // namespace

AccountListHandle ChartOfAccountsService::GetAccntListPtr() {
  return kAccountList;
}

// Every question is answered from the file within the unit of work, so that there is nothing to bring up to date.
void ChartOfAccountsService::EdListRefreshList(AccountListHandle /*list*/, std::int32_t /*option*/) {}

EdListStatus ChartOfAccountsService::GetAccountForRecnum(long recnum, CAccnt& account) {
  return AsEdListStatus([&] {
    std::optional<Account> found = FindByRecnum(accounts_, recnum);
    if (!found) return kEdListFailure;
    open_.At(static_cast<std::uint64_t>(account.Handle())) = *std::move(found);
    return kEdListSuccess;
  });
}

EdListStatus ChartOfAccountsService::CreateNewChartOfAccount(char* name, std::int16_t type, std::int32_t& recnum,
                                                             bool /*option*/) {
  return AsEdListStatus([&] {
    if (type < 0 || type > kLastCreatedType) return kEdListFailure;
    NewAccount account;
    account.fullName = NormalizedFullName("The account name", name);
    account.type = type;
    if (accounts_.FindByFullName(account.fullName)) return kEdListDuplicateAccount;
    recnum = accounts_.Create(account).id;
    std::memcpy(name, account.fullName.c_str(), account.fullName.size() + 1);
    return kEdListSuccess;
  });
}

std::unordered_map<long, std::pair<std::string, std::string>> ChartOfAccountsService::GetAllAccounts() {
  std::unordered_map<long, std::pair<std::string, std::string>> all;
  std::vector<Account> accounts = accounts_.List(/*withDeleted=*/true);
  all.reserve(accounts.size());
  for (Account& account : accounts) {
    all.try_emplace(account.id, std::move(account.fullName), AccountTypeName(account.type));
  }
  return all;
}

std::vector<std::pair<std::string, long>> ChartOfAccountsService::GetListOfAccounts(std::int16_t type) {
  std::vector<std::pair<std::string, long>> list;
  for (Account& account : accounts_.ListOfType(type)) list.emplace_back(std::move(account.fullName), account.id);
  return list;
}

AccountHandle ChartOfAccountsService::OpenAccount(FeatureType /*feature*/) {
  const std::uint64_t handle = open_.Open();
  open_.At(handle) = Account{};
  return AccountHandle{handle};
}

AccountHandle ChartOfAccountsService::OpenAccount(long recnum, FeatureType /*feature*/) {
  Account account = FindByRecnum(accounts_, recnum).value_or(Account{});
  const std::uint64_t handle = open_.Open();
  open_.At(handle) = std::move(account);
  return AccountHandle{handle};
}

bool ChartOfAccountsService::GetDeleted(AccountHandle account) {
  return RecordOf(account).deleted;
}

KrEnumerations::AccntTypeType ChartOfAccountsService::GetType(AccountHandle account) {
  return static_cast<KrEnumerations::AccntTypeType>(RecordOf(account).type);
}

bool ChartOfAccountsService::GetIsSubAccnt(AccountHandle account) {
  return RecordOf(account).parentId != 0;
}

bool ChartOfAccountsService::IsSpecial(AccountHandle account, KrEnumerations::SpecialAccountTypeType kind) {
  const Account& record = RecordOf(account);
  return record.id != 0 && record.specialKind == static_cast<std::int32_t>(kind);
}

void ChartOfAccountsService::ReleaseAccount(AccountHandle account) noexcept {
  open_.Release(static_cast<std::uint64_t>(account));
}

const Account& ChartOfAccountsService::RecordOf(AccountHandle account) {
  return open_.At(static_cast<std::uint64_t>(account));
}

}  // namespace standalone
