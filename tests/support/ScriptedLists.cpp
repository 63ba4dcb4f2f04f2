#include "support/ScriptedLists.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <vector>

namespace {

constexpr AccountListHandle kAccountList{77};

std::string Folded(std::string_view text) {
  std::string folded(text);
  std::ranges::transform(folded, folded.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return folded;
}

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string OwnPartOf(const std::string& fullName) {
  return fullName.substr(fullName.rfind(':') + 1);
}

template <class Table>
typename Table::key_type NextId(const Table& records) {
  return records.empty() ? 1 : records.rbegin()->first + 1;
}

std::string TypeName(std::int16_t type) {
  static constexpr std::array<const char*, 16> kNames{"Bank",
                                                      "Accounts Receivable",
                                                      "Other Current Asset",
                                                      "Fixed Asset",
                                                      "Other Asset",
                                                      "Accounts Payable",
                                                      "Credit Card",
                                                      "Other Current Liability",
                                                      "Long Term Liability",
                                                      "Equity",
                                                      "Income",
                                                      "Cost of Goods Sold",
                                                      "Expense",
                                                      "Other Income",
                                                      "Other Expense",
                                                      "Non-Posting"};
  return type >= 0 && type < 16 ? kNames[static_cast<std::size_t>(type)] : "Type " + std::to_string(type);
}

}  // namespace

std::optional<std::string> StoredFullName(std::string_view text) {
  std::string stored;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(':', start), text.size());
    const std::string_view part = Trimmed(text.substr(start, end - start));
    if (part.empty() || std::ranges::any_of(part, [](unsigned char c) { return std::iscntrl(c) != 0; })) return {};
    stored.append(stored.empty() ? "" : ":").append(part);
    start = end + 1;
  }
  return stored;
}

std::string ParentOf(const std::string& fullName) {
  const std::size_t colon = fullName.rfind(':');
  return colon == std::string::npos ? "" : fullName.substr(0, colon);
}

AccountListHandle ScriptedChart::GetAccntListPtr() {
  script_.Call("GetAccntListPtr");
  return kAccountList;
}

void ScriptedChart::EdListRefreshList(AccountListHandle list, std::int32_t option) {
  script_.Call("EdListRefreshList", list == kAccountList ? "list" : "another list", option);
}

EdListStatus ScriptedChart::GetAccountForRecnum(long recnum, CAccnt& account) {
  if (const auto failure = script_.Call("GetAccountForRecnum", recnum)) return Failed(*failure);
  if (Find(recnum) == nullptr) return kEdListFailure;
  open[account.Handle()] = recnum;
  return kEdListSuccess;
}

EdListStatus ScriptedChart::CreateNewChartOfAccount(char* name, std::int16_t type, std::int32_t& recnum, bool option) {
  const auto failure = script_.Call("CreateNewChartOfAccount", name, type, option);
  if (failure) return Failed(*failure);
  const auto stored = StoredFullName(name);
  if (!stored || type < 0 || type > KrEnumerations::kNonPosting) return kEdListFailure;
  if (HasAccount(*stored)) return kEdListDuplicateAccount;
  const std::string parent = ParentOf(*stored);
  if (!parent.empty() && !HasAccount(parent)) return kEdListFailure;

  recnum = static_cast<std::int32_t>(NextId(accounts));
  accounts.emplace(recnum, ScriptedAccount{.name = *stored, .type = type, .isSubAccount = !parent.empty()});
  *std::ranges::copy(*stored, name).out = '\0';
  return kEdListSuccess;
}

std::unordered_map<long, std::pair<std::string, std::string>> ScriptedChart::GetAllAccounts() {
  script_.Call("GetAllAccounts");
  std::unordered_map<long, std::pair<std::string, std::string>> all;
  all.max_load_factor(accountMapLoadFactor);
  for (const auto& [recnum, account] : accounts) all.try_emplace(recnum, account.name, TypeName(account.type));
  return all;
}

std::vector<std::pair<std::string, long>> ScriptedChart::GetListOfAccounts(std::int16_t type) {
  script_.Call("GetListOfAccounts", type);
  std::vector<std::pair<std::string, long>> found;
  for (const auto& [recnum, account] : accounts) {
    if (account.type == type && !account.deleted) found.emplace_back(account.name, recnum);
  }
  std::ranges::sort(found, {}, [](const auto& entry) { return Folded(entry.first); });
  return found;
}

AccountHandle ScriptedChart::OpenAccount(FeatureType feature) {
  script_.Call("OpenAccount", feature);
  return open.Open(0);
}

AccountHandle ScriptedChart::OpenAccount(long recnum, FeatureType feature) {
  script_.Call("OpenAccount", recnum, feature);
  return open.Open(recnum);
}

bool ScriptedChart::GetDeleted(AccountHandle account) {
  const long recnum = open[account];
  if (script_.Call("GetDeleted", recnum)) return false;
  const auto* found = Find(recnum);
  return found != nullptr && found->deleted;
}

KrEnumerations::AccntTypeType ScriptedChart::GetType(AccountHandle account) {
  const long recnum = open[account];
  script_.Call("GetType", recnum);
  const auto* found = Find(recnum);
  return static_cast<KrEnumerations::AccntTypeType>(found == nullptr ? 0 : found->type);
}

bool ScriptedChart::GetIsSubAccnt(AccountHandle account) {
  const long recnum = open[account];
  if (script_.Call("GetIsSubAccnt", recnum)) return false;
  const auto* found = Find(recnum);
  return found != nullptr && found->isSubAccount;
}

bool ScriptedChart::IsSpecial(AccountHandle account, KrEnumerations::SpecialAccountTypeType kind) {
  const long recnum = open[account];
  if (script_.Call("IsSpecial", recnum, kind)) return false;
  const auto* found = Find(recnum);
  return found != nullptr && found->specialKinds.contains(kind);
}

void ScriptedChart::ReleaseAccount(AccountHandle account) noexcept {
  script_.Note("ReleaseAccount", open.Release(account));
}

const ScriptedAccount* ScriptedChart::Find(long recnum) const {
  const auto found = accounts.find(recnum);
  return found == accounts.end() ? nullptr : &found->second;
}

bool ScriptedChart::HasAccount(std::string_view fullName) const {
  return std::ranges::any_of(accounts, [wanted = Folded(fullName)](const auto& entry) {
    return !entry.second.deleted && Folded(entry.second.name) == wanted;
  });
}

EdListStatus ScriptedNames::CreateCName(Util::TString& name, NameType type, std::int32_t& nameId) {
  if (const auto failure = script_.Call("CreateCName", name, type)) return Failed(*failure);
  const auto stored = StoredFullName(name.view());
  if (!stored) return kEdListFailure;
  if (Find(*stored) != 0) return kEdListDuplicateName;
  const std::string parent = ParentOf(*stored);
  const std::int32_t parentId = Find(parent);
  if (!parent.empty() && parentId == 0) return kEdListFailure;

  nameId = NextId(names);
  names.emplace(nameId, ScriptedName{.text = OwnPartOf(*stored), .parent = parentId});
  name = Util::TString(*stored);
  return kEdListSuccess;
}

bool ScriptedNames::IsValidName(NameHandle name) {
  if (name == NameHandle::kNone) return false;
  const std::int32_t id = open[name];
  return !script_.Call("IsValidName", id) && names.contains(id);
}

Util::TString ScriptedNames::GetName(NameHandle name, char* buffer, std::int32_t modifier) {
  if (name == NameHandle::kNone) return {};
  const std::int32_t id = open[name];
  script_.Call("GetName", id, buffer, modifier);
  const auto found = names.find(id);
  return found == names.end() ? Util::TString() : Util::TString(found->second.text);
}

NameHandle ScriptedNames::GetParent(NameHandle name) {
  if (name == NameHandle::kNone) return NameHandle::kNone;
  const std::int32_t id = open[name];
  script_.Call("GetParent", id);
  const auto found = names.find(id);
  return open.Open(found == names.end() ? 0 : found->second.parent);
}

void ScriptedNames::ReleaseName(NameHandle name) noexcept {
  script_.Note("ReleaseName", open.Release(name));
}

std::int32_t ScriptedNames::Find(std::string_view fullName) const {
  const auto found = std::ranges::find_if(
      names, [&, wanted = Folded(fullName)](const auto& entry) { return Folded(FullName(entry.second)) == wanted; });
  return found == names.end() ? 0 : found->first;
}

std::string ScriptedNames::FullName(const ScriptedName& name) const {
  const auto parent = names.find(name.parent);
  return parent == names.end() ? name.text : FullName(parent->second) + ":" + name.text;
}
