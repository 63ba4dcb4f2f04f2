#include "standalone/services/ChartOfAccountsService.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "standalone/services/Guard.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/ListNames.h"

namespace standalone {

namespace {

constexpr AccountListHandle kAccountList{1};
// Types above it come from the import only: an account that is made on the way of a booking has one of the known types.
constexpr std::int16_t kLastCreatedType = KrEnumerations::kNonPosting;

bool IsRecordNumber(long recnum) {
  return recnum >= 1 && recnum <= std::numeric_limits<std::int32_t>::max();
}

}  // namespace

AccountListHandle ChartOfAccountsService::GetAccntListPtr() {
  return kAccountList;
}

// Every question is answered from the file within the unit of work, so that there is nothing to bring up to date.
void ChartOfAccountsService::EdListRefreshList(AccountListHandle /*list*/, std::int32_t /*option*/) {}

EdListStatus ChartOfAccountsService::GetAccountForRecnum(long recnum, CAccnt& account) {
  return AsEdListStatus([&] {
    const AccountFacts found = Find(recnum);
    if (found.id == 0) return kEdListFailure;
    open_.At(static_cast<std::uint64_t>(account.Handle())) = found;
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
  Chart chart;
  accounts_.ForEach([&](const AccountFacts& account, std::string_view fullName) {
    chart.accounts.push_back(account);
    all.try_emplace(account.id, fullName, AccountTypeName(account.type));
  });
  chart_.Hold(std::move(chart));
  return all;
}

std::vector<std::pair<std::string, long>> ChartOfAccountsService::GetListOfAccounts(std::int16_t type) {
  std::vector<std::pair<std::string, long>> list;
  for (Account& account : accounts_.ListOfType(type)) list.emplace_back(std::move(account.fullName), account.id);
  return list;
}

AccountHandle ChartOfAccountsService::OpenAccount(FeatureType /*feature*/) {
  const std::uint64_t handle = open_.Open();
  open_.At(handle) = AccountFacts{};
  return AccountHandle{handle};
}

AccountHandle ChartOfAccountsService::OpenAccount(long recnum, FeatureType /*feature*/) {
  const AccountFacts account = Find(recnum);
  const std::uint64_t handle = open_.Open();
  open_.At(handle) = account;
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
  const AccountFacts& record = RecordOf(account);
  return record.id != 0 && record.specialKind == static_cast<std::int32_t>(kind);
}

void ChartOfAccountsService::ReleaseAccount(AccountHandle account) noexcept {
  open_.Release(static_cast<std::uint64_t>(account));
}

AccountFacts ChartOfAccountsService::Find(long recnum) {
  if (!IsRecordNumber(recnum)) return {};
  const auto id = static_cast<std::int32_t>(recnum);
  Chart* const chart = chart_.Held();
  return chart != nullptr ? chart->Find(id) : accounts_.FactsOf(id);
}

// A caller who goes through the list asks for neighbours, upwards or downwards.
AccountFacts ChartOfAccountsService::Chart::Find(std::int32_t id) {
  constexpr std::size_t kNear = 8;
  std::size_t at = lastFound;
  for (std::size_t steps = 0; steps < kNear && at < accounts.size() && accounts[at].id < id; ++steps) ++at;
  for (std::size_t steps = 0; steps < kNear && at < accounts.size() && at > 0 && accounts[at].id > id; ++steps) --at;
  if (at >= accounts.size() || accounts[at].id != id) {
    const auto found = std::ranges::lower_bound(accounts, id, {}, &AccountFacts::id);
    if (found == accounts.end() || found->id != id) return {};
    at = static_cast<std::size_t>(found - accounts.begin());
  }
  lastFound = at;
  return accounts[at];
}

const AccountFacts& ChartOfAccountsService::RecordOf(AccountHandle account) {
  return open_.At(static_cast<std::uint64_t>(account));
}

}  // namespace standalone
