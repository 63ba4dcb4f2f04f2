#include "model/World.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace model {

namespace {

constexpr AccountListHandle kAccountList{77};
constexpr ResourceInstance kResources{42};
constexpr std::int64_t kStoreTime = 1'700'000'000'000;

const Util::Status kDone{Util::Status::kSuccess};
const Util::Status kDeclined{-1};

// What was to be filled is unspecified after a failure, so that nobody can rely on it.
template <class Row>
Util::Status Spoiled(Row& row) {
  std::memset(&row, 'Z', sizeof row);
  return kDeclined;
}

template <class Row>
Util::Status Spoiled(std::vector<Row>& rows) {
  return Spoiled(rows.emplace_back());
}

// Realm ids are keys blind to upper and lower case, as a database's may be.
bool SameRealm(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right,
                            [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

auto OfRealm(std::string_view realmId) {
  return [realmId](const DBMultiEntityRelation& row) {
    return SameRealm(row.realmId, realmId);
  };
}

auto OfLine(std::int32_t txnId, std::int32_t targetId) {
  return [=](const DBMultiEntityTransaction& row) {
    return row.txnId == txnId && row.targetId == targetId;
  };
}

auto OfRequest(std::string_view requestId, std::int32_t relationId) {
  return [=](const DBMultiEntityTransaction& row) {
    return row.relationId == relationId && row.requestId == requestId;
  };
}

auto OfRejected(std::string_view requestId) {
  return [=](const DBMultiEntityRejectedTxnReceiver& row) {
    return row.requestId == requestId;
  };
}

bool UsesOneOf(const DBMultiEntityRelation& row, long account1, long account2) {
  const auto uses = [&](long account) {
    return account != 0 && (row.dueFromAccountId == account || row.dueToAccountId == account);
  };
  return uses(account1) || uses(account2);
}

template <class Row, class Test>
Util::Status CopyFirst(const std::vector<Row>& rows, Row& out, Test test) {
  const auto found = std::ranges::find_if(rows, test);
  if (found == rows.end()) return Spoiled(out);
  out = *found;
  return kDone;
}

template <class Row>
bool SameRows(const std::vector<Row>& left, const std::vector<Row>& right) {
  return std::ranges::equal(left, right, [](const Row& a, const Row& b) { return text::Of(a) == text::Of(b); });
}

bool SameQueryRows(const std::vector<QueryRow>& left, const std::vector<QueryRow>& right) {
  return std::ranges::equal(left, right, [](const QueryRow& a, const QueryRow& b) {
    return a.selection == b.selection && a.date == b.date && a.txnId == b.txnId;
  });
}

}  // namespace

bool ReadAmount(std::string_view text, std::int64_t& minorUnits) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const std::size_t point = text.find('.');
  std::string digits(text.substr(0, point));
  if (digits.empty()) return false;
  digits += point == std::string_view::npos ? "00" : text.substr(point + 1);
  if (point != std::string_view::npos && text.size() - point != 3) return false;
  std::int64_t read = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), read);
  if (error != std::errc{} || end != digits.data() + digits.size() || read < 0) return false;
  minorUnits = negative ? -read : read;
  return true;
}

std::string AmountText(std::int64_t minorUnits) {
  char read[40];
  const std::int64_t magnitude = minorUnits < 0 ? -minorUnits : minorUnits;
  std::snprintf(read, sizeof read, "%s%lld.%02lld", minorUnits < 0 ? "-" : "", static_cast<long long>(magnitude / 100),
                static_cast<long long>(magnitude % 100));
  return read;
}

void World::Begin(const Fault& laid) {
  fault_ = laid;
  played_ = false;
  calls_ = 0;
  events_.clear();
}

bool World::Play() {
  played_ = true;
  switch (fault_.kind) {
    case FaultKind::kRefuse:
      return true;
    case FaultKind::kThrowStandard:
      throw std::runtime_error("the host cannot");
    case FaultKind::kThrowOutOfRange:
      throw std::out_of_range("the host has no such record");
    case FaultKind::kThrowOther:
      throw 42;
  }
  return true;
}

void World::Log(std::int32_t level, std::int32_t eventType, std::string_view sourceFile, std::string_view shortName,
                std::string_view message) {
  if (unwantedLevels.contains(level)) return;
  std::string line = std::to_string(level) + '/' + std::to_string(eventType) + ' ';
  line += sourceFile;
  line += ' ';
  line += shortName;
  line += ' ';
  line += text::Of(message);
  events_.push_back(std::move(line));
}

std::string World::DifferenceFrom(const World& other) const {
  if (!SameRows(relations, other.relations)) return "the relations";
  if (!SameRows(transactions, other.transactions)) return "the transaction rows";
  if (!SameRows(rejected, other.rejected)) return "the rejected transactions";
  if (accounts != other.accounts) return "the chart of accounts";
  if (names != other.names) return "the names";
  if (lines != other.lines) return "the lines";
  if (!SameQueryRows(queryRows, other.queryRows)) return "the rows of queries";
  if (preferences != other.preferences) return "the company-database preferences";
  if (queue != other.queue) return "the message queue";
  if (timers != other.timers) return "the timers";
  if (confirmed != other.confirmed) return "the confirmed transactions";
  if (commands != other.commands) return "the commands";
  if (blocksOut != other.blocksOut) return "the blocks handed out";
  return {};
}

bool World::IsReferredTo(long relationId) const {
  return std::ranges::any_of(transactions, [=](const auto& row) { return row.relationId == relationId; });
}

std::int32_t World::NextRelationId() const {
  std::int32_t largest = lastRelationId_;
  for (const auto& row : relations) largest = std::max(largest, row.relationId);
  return largest + 1;
}

Util::Status World::GetRelation(std::string_view realmId, DBMultiEntityRelation& row) {
  if (Refused("GetRelation", realmId)) return Spoiled(row);
  return CopyFirst(relations, row, OfRealm(realmId));
}

Util::Status World::GetRelationById(long relationId, DBMultiEntityRelation& row) {
  if (Refused("GetRelationById", relationId)) return Spoiled(row);
  return CopyFirst(relations, row, [=](const auto& candidate) { return candidate.relationId == relationId; });
}

Util::Status World::GetAllRelations(std::vector<DBMultiEntityRelation>& rows) {
  if (Refused("GetAllRelations")) return Refusal();
  rows = relations;
  return kDone;
}

Util::Status World::SaveRelation(DBMultiEntityRelation& row) {
  if (Refused("SaveRelation", row)) return Refusal();
  if (std::ranges::any_of(relations, OfRealm(row.realmId))) return kDeclined;
  row.relationId = lastRelationId_ = NextRelationId();
  row.revision = 1;
  row.createdAt = row.changedAt = kStoreTime;
  relations.push_back(row);
  return kDone;
}

Util::Status World::UpdateRelationForRealm(DBMultiEntityRelation& row, std::string_view realm) {
  if (Refused("UpdateRelationForRealm", row, realm)) return Refusal();
  const auto stored = std::ranges::find_if(relations, OfRealm(row.realmId));
  if (stored == relations.end()) return kDeclined;
  row.relationId = stored->relationId;
  row.revision = stored->revision + 1;
  row.createdAt = stored->createdAt;
  row.changedAt = stored->changedAt + 1;
  *stored = row;
  return kDone;
}

Util::Status World::DeleteRelation(std::string_view realmId) {
  if (Refused("DeleteRelation", realmId)) return Refusal();
  const auto stored = std::ranges::find_if(relations, OfRealm(realmId));
  if (stored == relations.end() || IsReferredTo(stored->relationId)) return kDeclined;
  relations.erase(stored);
  return kDone;
}

bool World::HasAnyMatchingRecord(std::string_view realmId, long account1, long account2) {
  if (Refused("HasAnyMatchingRecord", realmId, account1, account2)) return false;
  return std::ranges::any_of(relations, [&](const auto& row) { return UsesOneOf(row, account1, account2); });
}

bool World::HasAnyMatchingAccRecordExclRealm(std::string_view realmId, long account1, long account2) {
  if (Refused("HasAnyMatchingAccRecordExclRealm", realmId, account1, account2)) return false;
  return std::ranges::any_of(
      relations, [&](const auto& row) { return !OfRealm(realmId)(row) && UsesOneOf(row, account1, account2); });
}

bool World::HasAnyMatchingTransaction(long relationId) {
  return !Refused("HasAnyMatchingTransaction", relationId) && IsReferredTo(relationId);
}

Util::Status World::SaveTransaction(DBMultiEntityTransaction& row) {
  if (Refused("SaveTransaction", row)) return Refusal();
  const bool lineTaken = std::ranges::any_of(transactions, OfLine(row.txnId, row.targetId));
  const bool requestTaken =
      row.requestId[0] != '\0' && std::ranges::any_of(transactions, OfRequest(row.requestId, row.relationId));
  if (lineTaken || requestTaken) return kDeclined;
  transactions.push_back(row);
  return kDone;
}

Util::Status World::GetTransaction(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row) {
  if (Refused("GetTransaction", txnId, targetId)) return Spoiled(row);
  return CopyFirst(transactions, row, OfLine(txnId, targetId));
}

Util::Status World::GetTransactionWithRequestId(std::int32_t relationId, std::string_view requestId,
                                                DBMultiEntityTransaction& row) {
  if (Refused("GetTransactionWithRequestId", relationId, requestId)) return Spoiled(row);
  return CopyFirst(transactions, row, OfRequest(requestId, relationId));
}

Util::Status World::UpdateTransaction(DBMultiEntityTransaction& row) {
  if (Refused("UpdateTransaction", row)) return Refusal();
  const auto stored = std::ranges::find_if(transactions, OfLine(row.txnId, row.targetId));
  if (stored == transactions.end()) return kDeclined;
  *stored = row;
  return kDone;
}

Util::Status World::DeleteTransaction(std::int32_t txnId) {
  if (Refused("DeleteTransaction", txnId)) return Refusal();
  std::erase_if(transactions, [=](const auto& row) { return row.txnId == txnId; });
  return kDone;
}

Util::Status World::GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows) {
  if (Refused("GetTransactionWithTargets", txnId)) return Spoiled(rows);
  rows.clear();
  std::ranges::copy_if(transactions, std::back_inserter(rows), [=](const auto& row) { return row.txnId == txnId; });
  return kDone;
}

Util::Status World::GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows) {
  if (Refused("GetAllTransactionWithTargets")) return Spoiled(rows);
  rows = transactions;
  return kDone;
}

bool World::HasAnyMatchingTransaction(std::string_view requestId, std::int32_t relationId) {
  return !Refused("HasAnyMatchingTransaction", requestId, relationId) &&
         std::ranges::any_of(transactions, OfRequest(requestId, relationId));
}

Util::Status World::SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row) {
  if (Refused("SaveRejectedTransaction", row)) return Refusal();
  rejected.push_back(row);
  return kDone;
}

Util::Status World::GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) {
  if (Refused("GetAllRejectedTransaction")) return Spoiled(rows);
  rows = rejected;
  return kDone;
}

Util::Status World::DeleteRejectedTransaction(std::string_view requestId) {
  if (Refused("DeleteRejectedTransaction", requestId)) return Refusal();
  return std::erase_if(rejected, OfRejected(requestId)) != 0 ? kDone : kDeclined;
}

bool World::HasAnyMatchingRejectedTransaction(std::string_view requestId) {
  return !Refused("HasAnyMatchingRejectedTransaction", requestId) &&
         std::ranges::any_of(rejected, OfRejected(requestId));
}

AccountListHandle World::GetAccntListPtr() {
  Refused("GetAccntListPtr");
  return kAccountList;
}

void World::EdListRefreshList(AccountListHandle list, std::int32_t option) {
  Refused("EdListRefreshList", list, option);
}

EdListStatus World::GetAccountForRecnum(long recnum) {
  if (Refused("GetAccountForRecnum", recnum)) return ListRefusal();
  return accounts.contains(static_cast<std::int32_t>(recnum)) ? kEdListSuccess : kEdListFailure;
}

EdListStatus World::CreateNewChartOfAccount(char* name, std::int16_t type, std::int32_t& recnum, bool option) {
  if (Refused("CreateNewChartOfAccount", name, type, option)) return ListRefusal();
  if (*name == '\0' || type < 0) return kEdListFailure;
  const bool taken = std::ranges::any_of(accounts, [=](const auto& entry) { return entry.second.name == name; });
  if (taken) return kEdListDuplicateAccount;
  recnum = accounts.empty() ? 1 : accounts.rbegin()->first + 1;
  accounts.emplace(recnum, Account{.name = name, .type = type});
  *name = static_cast<char>(std::toupper(static_cast<unsigned char>(*name)));
  return kEdListSuccess;
}

std::unordered_map<long, std::pair<std::string, std::string>> World::GetAllAccounts() {
  std::unordered_map<long, std::pair<std::string, std::string>> all;
  if (Refused("GetAllAccounts")) return all;
  all.max_load_factor(accountMapLoadFactor);
  for (const auto& [recnum, account] : accounts) all.try_emplace(recnum, account.name, text::Of(account.type));
  return all;
}

std::vector<std::pair<std::string, long>> World::GetListOfAccounts(std::int16_t type) {
  std::vector<std::pair<std::string, long>> found;
  if (Refused("GetListOfAccounts", type)) return found;
  for (const auto& [recnum, account] : accounts) {
    if (account.type == type) found.emplace_back(account.name, recnum);
  }
  return found;
}

void World::OpenAccount(long recnum, FeatureType feature) {
  Refused("OpenAccount", recnum, feature);
}

bool World::GetDeleted(long recnum) {
  if (Refused("GetDeleted", recnum)) return false;
  const auto found = accounts.find(static_cast<std::int32_t>(recnum));
  return found != accounts.end() && found->second.deleted;
}

KrEnumerations::AccntTypeType World::GetType(long recnum) {
  Refused("GetType", recnum);
  const auto found = accounts.find(static_cast<std::int32_t>(recnum));
  return static_cast<KrEnumerations::AccntTypeType>(found == accounts.end() ? 0 : found->second.type);
}

bool World::GetIsSubAccnt(long recnum) {
  if (Refused("GetIsSubAccnt", recnum)) return false;
  const auto found = accounts.find(static_cast<std::int32_t>(recnum));
  return found != accounts.end() && found->second.subAccount;
}

bool World::IsSpecial(long recnum, KrEnumerations::SpecialAccountTypeType kind) {
  if (Refused("IsSpecial", recnum, kind)) return false;
  const auto found = accounts.find(static_cast<std::int32_t>(recnum));
  return found != accounts.end() && found->second.special;
}

EdListStatus World::CreateCName(Util::TString& name, NameType type, std::int32_t& nameId) {
  if (Refused("CreateCName", name, type)) return ListRefusal();
  if (name.empty()) return kEdListFailure;
  const bool taken = std::ranges::any_of(names, [&](const auto& entry) { return entry.second.text == name.view(); });
  if (taken) return kEdListDuplicateName;
  nameId = names.empty() ? 1 : names.rbegin()->first + 1;
  names.emplace(nameId, Name{.text = std::string(name.view())});
  name = Util::TString(std::string(name.view()) + " (new)");
  return kEdListSuccess;
}

bool World::IsValidName(std::int32_t name) {
  return !Refused("IsValidName", name) && names.contains(name);
}

std::string World::GetName(std::int32_t name, const char* buffer, std::int32_t modifier) {
  if (Refused("GetName", name, buffer, modifier)) return {};
  const auto found = names.find(name);
  return found == names.end() ? std::string() : found->second.text;
}

std::int32_t World::GetParent(std::int32_t name) {
  if (Refused("GetParent", name)) return 0;
  const auto found = names.find(name);
  return found == names.end() ? 0 : found->second.parent;
}

bool World::CanBePosted(long recnum) const {
  const auto found = accounts.find(static_cast<std::int32_t>(recnum));
  return found != accounts.end() && !found->second.deleted;
}

EdListStatus World::CreateGeneralJournalEntry(long first, long second, std::string_view amount, JournalEntryIds& ids,
                                              std::int32_t nameId, std::string_view name) {
  if (Refused("CreateGeneralJournalEntry", first, second, amount, nameId, name)) return ListRefusal();
  std::int64_t minorUnits = 0;
  if (!CanBePosted(first) || !CanBePosted(second) || !ReadAmount(amount, minorUnits)) return kEdListFailure;
  for (const auto& [targetId, line] : lines) {
    lastTxnId_ = std::max(lastTxnId_, line.txnId);
    lastTargetId_ = std::max(lastTargetId_, targetId);
  }
  const std::int32_t txnId = ++lastTxnId_;
  const std::int32_t targetId = lastTargetId_ + 1;
  lastTargetId_ += 2;
  Line line{.txnId = txnId,
            .txnType = kTxnTypeJournalEntry,
            .date = {now.wYear, now.wMonth, now.wDay},
            .minorUnits = minorUnits,
            .accountName = accounts.at(static_cast<std::int32_t>(second)).name,
            .memo = std::string(name),
            .nameId = nameId};
  lines.insert_or_assign(targetId, line);
  line.minorUnits = -minorUnits;
  line.accountName = accounts.at(static_cast<std::int32_t>(first)).name;
  lines.insert_or_assign(targetId + 1, line);
  ids = {static_cast<std::uint32_t>(txnId), static_cast<std::uint32_t>(targetId)};
  return kEdListSuccess;
}

EdListStatus World::DeleteGeneralJournalEntry(std::uint32_t txnId, bool removalUnderWay) {
  if (Refused("DeleteGeneralJournalEntry", txnId, removalUnderWay)) return ListRefusal();
  const bool intercompany =
      std::ranges::any_of(transactions, [=](const auto& row) { return std::cmp_equal(row.txnId, txnId); });
  if (intercompany && !removalUnderWay) return kEdListFailure;
  const auto erased = std::erase_if(lines, [=](const auto& entry) {
    return entry.second.txnType == kTxnTypeJournalEntry && std::cmp_equal(entry.second.txnId, txnId);
  });
  return erased != 0 ? kEdListSuccess : kEdListFailure;
}

EdListStatus World::UpdateMETransaction(std::int32_t txnId, std::int32_t viewType) {
  if (Refused("UpdateMETransaction", txnId, viewType)) return ListRefusal();
  const bool exists = std::ranges::any_of(
      lines, [=](const auto& entry) { return entry.second.txnId == txnId && entry.second.txnType == viewType; });
  if (!exists) return kEdListFailure;
  confirmed.push_back(txnId);
  return kEdListSuccess;
}

const Line& World::LineOf(std::int32_t targetId) const {
  static const Line kNothing{};
  const auto found = lines.find(targetId);
  return found == lines.end() ? kNothing : found->second;
}

bool World::TargExists(std::int32_t targetId, TViewType view) {
  if (Refused("TargExists", targetId, view)) return false;
  const auto found = lines.find(targetId);
  return found != lines.end() && (view == kViewAny || view == found->second.txnType);
}

void World::OpenLine(std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe, TViewType view) {
  Refused("OpenLine", targetId, feature, failSafe, view);
}

DateType32 World::GetDate(std::int32_t targetId) {
  return Refused("GetDate", targetId) ? DateType32() : LineOf(targetId).date;
}

std::int64_t World::GetAmount(std::int32_t targetId) {
  return Refused("GetAmount", targetId) ? 0 : LineOf(targetId).minorUnits;
}

const char* World::GetAccountName(std::int32_t targetId, std::int32_t option1, std::int32_t option2) {
  return Refused("GetAccountName", targetId, option1, option2) ? "" : LineOf(targetId).accountName.c_str();
}

std::string World::GetStrMemo(std::int32_t targetId) {
  return Refused("GetStrMemo", targetId) ? std::string() : LineOf(targetId).memo;
}

std::int32_t World::GetTransactionName(std::int32_t targetId) {
  return Refused("GetTransactionName", targetId) ? 0 : LineOf(targetId).nameId;
}

void World::OpenQuery() {
  Refused("OpenQuery");
}

Util::Status World::SetSelect(Query& query, unsigned int selection) {
  if (Refused("SetSelect", selection)) return Refusal();
  query.selection = selection;
  return kDone;
}

long World::SetStatement(Query& query, unsigned int field, DQE::SelectOp op, DateType32 date) {
  Refused("SetStatement", field, op, date);
  query.conditions.push_back({op, date});
  return static_cast<long>(query.conditions.size()) + 100;
}

long World::SetStatement(long left, DQE::SelectOp op, long right) {
  Refused("SetStatement", left, op, right);
  return left + right;
}

Util::Status World::DoQuery(Query& query) {
  if (Refused("DoQuery")) return Refusal();
  for (const QueryRow& row : queryRows) {
    const bool meets = std::ranges::all_of(query.conditions, [&](const Query::Condition& condition) {
      const int order = row.date.Compare(condition.date);
      return condition.op == DQE::kNotBefore ? order >= 0 : order <= 0;
    });
    if (row.selection == query.selection && meets) query.found.push_back(&row);
  }
  return kDone;
}

bool World::ResultExists(const Query& query) {
  return !Refused("ResultExists") && !query.found.empty();
}

const QueryRow* World::First(Query& query) {
  if (Refused("First")) return nullptr;
  query.next = 0;
  return NextRow(query);
}

const QueryRow* World::Next(Query& query) {
  return Refused("Next") ? nullptr : NextRow(query);
}

const QueryRow* World::NextRow(Query& query) {
  return query.next == query.found.size() ? nullptr : query.found[query.next++];
}

unsigned long World::GetTransPtrType(const QueryRow& row, std::int32_t column) {
  return Refused("GetTransPtrType", row.txnId, column) ? 0 : row.txnId;
}

void World::String2Dollar(std::int64_t& minorUnits, std::string_view text) {
  if (!Refused("String2Dollar", minorUnits, text)) ReadAmount(text, minorUnits);
}

void World::Money2Str_s(char* buffer, std::size_t size, std::int64_t minorUnits, std::uint32_t format) {
  const bool zeroed = std::all_of(buffer, buffer + size, [](char c) { return c == '\0'; });
  if (Refused("Money2Str_s", zeroed, size, minorUnits, format)) return;
  std::snprintf(buffer, size, "%s", AmountText(minorUnits).c_str());
}

bool World::IsFeatureEnabled(const char* section, const char* flag) {
  return !Refused("IsFeatureEnabled", section, flag) && !switchesOff.contains({section, flag});
}

bool World::GetValue2(std::string_view section, std::string_view key, std::string& value) {
  if (Refused("GetValue2", section, key, value)) return false;
  const auto found = remoteValues.find(std::string(key));
  if (section != "MultiEntity" || found == remoteValues.end()) return false;
  value = found->second;
  return true;
}

Util::Status World::GetCompanyDBPreference(std::string_view key, std::string& value) {
  if (Refused("GetCompanyDBPreference", key)) {
    return Util::Status(fault_.preferenceMissing ? Util::Status::kPreferenceMissing : -1);
  }
  const auto found = preferences.find(std::string(key));
  if (found == preferences.end()) return Util::Status(Util::Status::kPreferenceMissing);
  value = found->second;
  return kDone;
}

Util::Status World::SetCompanyDBPreference(std::string_view key, std::string_view value) {
  if (Refused("SetCompanyDBPreference", key, value)) return Refusal();
  preferences.insert_or_assign(std::string(key), std::string(value));
  return kDone;
}

bool World::PrefGetPrefHandle() {
  return !Refused("PrefGetPrefHandle") && preferencesAvailable;
}

bool World::GetCurrentFileIsSample() {
  return !Refused("GetCurrentFileIsSample") && sampleFile;
}

std::int32_t World::GetIsAccntntCopy() {
  return Refused("GetIsAccntntCopy") ? 0 : accountantsCopy;
}

bool World::GetUseMultiCurrency() {
  return !Refused("GetUseMultiCurrency") && multiCurrency;
}

void World::OpenCurrency(FeatureType feature) {
  Refused("OpenCurrency", feature);
}

std::string World::GetHomeCurrency() {
  return Refused("GetHomeCurrency") ? std::string() : homeCurrency;
}

bool World::IsValidCurrency(const std::string& code) {
  return !Refused("IsValidCurrency", code) && !code.empty();
}

std::string World::GetCurrencyCode(const std::string& code) {
  return Refused("GetCurrencyCode", code) ? std::string() : code;
}

bool World::CurrentUserIsAdminUser() {
  return !Refused("CurrentUserIsAdminUser") && administrator;
}

bool World::FeaturePermissionAvailable(std::int32_t feature, std::int32_t action, unsigned char option) {
  return !Refused("FeaturePermissionAvailable", feature, action, option) && !rightsMissing.contains({feature, action});
}

bool World::ListPermissionAvailable(std::int32_t list, std::int32_t option1, std::int32_t action, std::int32_t option2,
                                    std::int32_t option3) {
  return !Refused("ListPermissionAvailable", list, option1, action, option2, option3) &&
         !listRightsMissing.contains(action);
}

bool World::IsServerMode(bool option) {
  return !Refused("IsServerMode", option) && serverMode;
}

bool World::SystemIsOpen() {
  return !Refused("SystemIsOpen") && open;
}

bool World::SystemIsClosing() {
  return !Refused("SystemIsClosing") && closing;
}

bool World::GetActiveFileMgr() {
  return !Refused("GetActiveFileMgr") && hasActiveFile;
}

std::int32_t World::GetFileState() {
  return Refused("GetFileState") ? DBMgr::kFileStateNoDatabaseWork : fileState;
}

void World::Enqueue(MessageKind kind) noexcept {
  Note("Enqueue");
  queue.push_back(kind);
}

void World::ExecuteCommand(std::string_view url) {
  if (!Refused("ExecuteCommand", url)) commands.emplace_back(url);
}

ResourceInstance World::GetKRWinInstance() {
  Refused("GetKRWinInstance");
  return kResources;
}

std::string World::GetIndStringC(ResourceInstance instance, std::int32_t list, std::int32_t index) {
  if (Refused("GetIndStringC", instance, list, index)) return {};
  return "string " + std::to_string(list) + "." + std::to_string(index);
}

YNC_Tag World::YesNoInfoMsgO(const char* sourceFile, const char* operation, ResourceInstance instance,
                             std::int32_t list, std::int32_t firstIndex, std::int32_t secondIndex, bool flag1,
                             bool flag2) {
  const bool refused =
      Refused("YesNoInfoMsgO", sourceFile, operation, instance, list, firstIndex, secondIndex, flag1, flag2);
  return static_cast<YNC_Tag>(refused ? 0 : yesNoAnswer);
}

std::int32_t World::KRMSG_MessageO(std::uintptr_t window, std::int32_t icon, std::int32_t buttons, std::int32_t list,
                                   const std::string& arguments) {
  return Refused("KRMSG_MessageO", window, icon, buttons, list, arguments) ? -1 : messageAnswer;
}

void World::KRWarnMsgWithTitle02(std::uintptr_t window, const char* sourceFile, const char* operation,
                                 const char* first, const char* second, bool flag) {
  Refused("KRWarnMsgWithTitle02", window, sourceFile, operation, first, second, flag);
}

SYSTEMTIME World::GetLocalTime() {
  Refused("GetLocalTime");
  return now;
}

TimerId World::SetTimer(TimerId timer, std::uint32_t milliseconds) {
  if (Refused("SetTimer", timer, milliseconds)) return 0;
  timers.emplace(++lastTimer, milliseconds);
  return lastTimer;
}

void World::KillTimer(TimerId timer) noexcept {
  Note("KillTimer", timer);
  timers.erase(timer);
}

bool World::LoadLibraryA(const char* fileName) {
  return !Refused("LoadLibraryA", fileName) && bridgeThere;
}

bool World::GetProcAddress(const char* entry) {
  if (Refused("GetProcAddress", entry)) return false;
  const std::string_view name(entry);
  return (name == "IsSybaseAccountant" && accountantEntryThere) || (name == "NeedDataSyncUp" && attentionEntryThere);
}

bool World::IsSybaseAccountant() {
  return !Refused("IsSybaseAccountant") && accountant;
}

std::int32_t World::NeedDataSyncUp() {
  return Refused("NeedDataSyncUp") ? 0 : attention;
}

void World::LocalAlloc(std::uint32_t flags, std::size_t bytes) {
  if (Refused("LocalAlloc", flags, bytes)) throw std::bad_alloc();
  ++blocksOut;
}

bool World::FormatStringV(const char* pattern, std::va_list arguments, std::string& formatted) {
  char buffer[1024];
  std::vsnprintf(buffer, sizeof buffer, pattern, arguments);
  if (Refused("FormatStringV", pattern, buffer)) return false;
  formatted = buffer;
  return true;
}

bool World::FormatStringV(std::string& formatted, const char* pattern, ...) {
  std::va_list arguments;
  va_start(arguments, pattern);
  char buffer[1024];
  std::vsnprintf(buffer, sizeof buffer, pattern, arguments);
  va_end(arguments);
  if (Refused("FormatStringV", pattern, buffer)) return false;
  formatted = buffer;
  return true;
}

}  // namespace model
