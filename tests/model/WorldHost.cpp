#include "model/WorldHost.h"

#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>
#include <variant>

#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntity/MultiEntityScheduler.h"

namespace model {

namespace {

// The world that the bridge's entries answer from: they are plain functions.
World* bridgeWorld = nullptr;

unsigned char IsSybaseAccountant() {
  return bridgeWorld->IsSybaseAccountant() ? 1 : 0;
}

std::int32_t NeedDataSyncUp() {
  return bridgeWorld->NeedDataSyncUp();
}

}  // namespace

WorldHost::WorldHost(World& world) : world_(world) {
  bridgeWorld = &world;
}

WorldHost::~WorldHost() {
  for (void* text : texts_) std::free(text);
  for (void* block : blocks_) std::free(block);
  bridgeWorld = nullptr;
}

std::string WorldHost::Complaints() const {
  std::string all = complaints_;
  const auto leftOpen = [&](std::size_t count, const char* kind) {
    if (count != 0) all += std::string(" left open: ") + kind;
  };
  leftOpen(accounts_.Count(), "accounts");
  leftOpen(names_.Count(), "names");
  leftOpen(lines_.Count(), "lines");
  leftOpen(currencies_.Count(), "currencies");
  leftOpen(queries_.Count(), "queries");
  leftOpen(texts_.size(), "formatted texts");
  leftOpen(static_cast<std::size_t>(loadedLibraries_), "libraries");
  return all;
}

void WorldHost::Expect(bool right, const char* complaint) noexcept {
  if (!right) complaints_ += complaint;
}

bool WorldHost::Wants(Level level) const noexcept {
  return !world_.unwantedLevels.contains(static_cast<std::int32_t>(level));
}

void WorldHost::Write(const Line& line) noexcept {
  world_.Log(static_cast<std::int32_t>(line.level), static_cast<std::int32_t>(line.eventType), line.sourceFile,
             line.shortName, line.message);
}

char* WorldHost::FormatStringV(const char* pattern, std::va_list arguments) {
  std::string formatted;
  if (!world_.FormatStringV(pattern, arguments, formatted)) return nullptr;
  auto* text = static_cast<char*>(std::malloc(formatted.size() + 1));
  std::memcpy(text, formatted.c_str(), formatted.size() + 1);
  texts_.insert(text);
  return text;
}

void WorldHost::Release(void* block) noexcept {
  Expect(texts_.erase(block) == 1, " a text was given back that was not handed out");
  std::free(block);
}

bool WorldHost::IsFeatureEnabled(const char* section, const char* flag) {
  return world_.IsFeatureEnabled(section, flag);
}

bool WorldHost::GetValue2(Util::TString section, Util::TString key, Util::TString& value) {
  std::string read(value.view());
  const bool found = world_.GetValue2(section.view(), key.view(), read);
  value = Util::TString(read);
  return found;
}

Util::Status WorldHost::GetCompanyDBPreference(Util::TString key, Util::TString& value) {
  std::string read(value.view());
  const Util::Status status = world_.GetCompanyDBPreference(key.view(), read);
  value = Util::TString(read);
  return status;
}

Util::Status WorldHost::SetCompanyDBPreference(Util::TString key, Util::TString value) {
  return world_.SetCompanyDBPreference(key.view(), value.view());
}

void WorldHost::GetHomeCurrency(CCurrency& currency) {
  currencies_.At(currency.Handle()) = world_.GetHomeCurrency();
}

CurrencyHandle WorldHost::OpenCurrency(FeatureType feature) {
  world_.OpenCurrency(feature);
  return currencies_.Add({});
}

bool WorldHost::IsValidCurrency(CurrencyHandle currency) {
  return world_.IsValidCurrency(currencies_.At(currency));
}

Util::TString WorldHost::GetCurrencyCode(CurrencyHandle currency) {
  return {world_.GetCurrencyCode(currencies_.At(currency))};
}

void WorldHost::ReleaseCurrency(CurrencyHandle currency) noexcept {
  Expect(currencies_.Remove(currency), " a currency was released that is not open");
}

Util::Status WorldHost::GetRelation(Util::TString realmId, DBMultiEntityRelation& row) {
  return world_.GetRelation(realmId.view(), row);
}

Util::Status WorldHost::GetRelationById(long relationId, DBMultiEntityRelation& row) {
  return world_.GetRelationById(relationId, row);
}

Util::Status WorldHost::GetAllRelations(std::vector<DBMultiEntityRelation>& rows) {
  return world_.GetAllRelations(rows);
}

Util::Status WorldHost::SaveRelation(DBMultiEntityRelation& row) {
  return world_.SaveRelation(row);
}

Util::Status WorldHost::UpdateRelationForRealm(DBMultiEntityRelation& row, Util::TString realm) {
  return world_.UpdateRelationForRealm(row, realm.view());
}

Util::Status WorldHost::DeleteRelation(Util::TString realmId) {
  return world_.DeleteRelation(realmId.view());
}

bool WorldHost::HasAnyMatchingRecord(Util::TString realmId, long account1, long account2) {
  return world_.HasAnyMatchingRecord(realmId.view(), account1, account2);
}

bool WorldHost::HasAnyMatchingAccRecordExclRealm(Util::TString realmId, long account1, long account2) {
  return world_.HasAnyMatchingAccRecordExclRealm(realmId.view(), account1, account2);
}

bool WorldHost::HasAnyMatchingTransaction(long relationId) {
  return world_.HasAnyMatchingTransaction(relationId);
}

Util::Status WorldHost::SaveTransaction(DBMultiEntityTransaction& row) {
  return world_.SaveTransaction(row);
}

Util::Status WorldHost::GetTransaction(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row) {
  return world_.GetTransaction(txnId, targetId, row);
}

Util::Status WorldHost::GetTransactionWithRequestId(std::int32_t relationId, Util::TString requestId,
                                                    DBMultiEntityTransaction& row) {
  return world_.GetTransactionWithRequestId(relationId, requestId.view(), row);
}

Util::Status WorldHost::UpdateTransaction(DBMultiEntityTransaction& row) {
  return world_.UpdateTransaction(row);
}

Util::Status WorldHost::DeleteTransaction(std::int32_t txnId) {
  return world_.DeleteTransaction(txnId);
}

Util::Status WorldHost::GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows) {
  return world_.GetTransactionWithTargets(txnId, rows);
}

Util::Status WorldHost::GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows) {
  return world_.GetAllTransactionWithTargets(rows);
}

bool WorldHost::HasAnyMatchingTransaction(Util::TString requestId, std::int32_t relationId) {
  return world_.HasAnyMatchingTransaction(requestId.view(), relationId);
}

Util::Status WorldHost::SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row) {
  return world_.SaveRejectedTransaction(row);
}

Util::Status WorldHost::GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) {
  return world_.GetAllRejectedTransaction(rows);
}

Util::Status WorldHost::DeleteRejectedTransaction(Util::TString requestId) {
  return world_.DeleteRejectedTransaction(requestId.view());
}

bool WorldHost::HasAnyMatchingRejectedTransaction(Util::TString requestId) {
  return world_.HasAnyMatchingRejectedTransaction(requestId.view());
}

bool WorldHost::FeaturePermissionAvailable(ProgramFeature feature, UserAction action, unsigned char option) {
  return world_.FeaturePermissionAvailable(feature, action, option);
}

bool WorldHost::ListPermissionAvailable(ListType list, std::int32_t option1, UserAction action, CAccnt& element,
                                        std::int32_t option2, std::int32_t option3) {
  Expect(accounts_.At(element.Handle()) == 0, " a list right was asked for an account that is not blank");
  return world_.ListPermissionAvailable(list, option1, action, option2, option3);
}

void WorldHost::EdListRefreshList(AccountListHandle list, std::int32_t option) {
  world_.EdListRefreshList(list, option);
}

EdListStatus WorldHost::GetAccountForRecnum(long recnum, CAccnt& account) {
  const EdListStatus status = world_.GetAccountForRecnum(recnum);
  if (status == kEdListSuccess) accounts_.At(account.Handle()) = recnum;
  return status;
}

EdListStatus WorldHost::CreateNewChartOfAccount(char* name, std::int16_t type, std::int32_t& recnum, bool option) {
  return world_.CreateNewChartOfAccount(name, type, recnum, option);
}

std::unordered_map<long, std::pair<std::string, std::string>> WorldHost::GetAllAccounts() {
  return world_.GetAllAccounts();
}

std::vector<std::pair<std::string, long>> WorldHost::GetListOfAccounts(std::int16_t type) {
  return world_.GetListOfAccounts(type);
}

// When a blank account is opened within an operation is the operation's own matter, so it is not noted.
AccountHandle WorldHost::OpenAccount(FeatureType feature) {
  Expect(feature == kFeatureTypeStandard, " an account was opened with another feature type");
  return accounts_.Add(0);
}

AccountHandle WorldHost::OpenAccount(long recnum, FeatureType feature) {
  world_.OpenAccount(recnum, feature);
  return accounts_.Add(recnum);
}

bool WorldHost::GetDeleted(AccountHandle account) {
  return world_.GetDeleted(accounts_.At(account));
}

KrEnumerations::AccntTypeType WorldHost::GetType(AccountHandle account) {
  return world_.GetType(accounts_.At(account));
}

bool WorldHost::GetIsSubAccnt(AccountHandle account) {
  return world_.GetIsSubAccnt(accounts_.At(account));
}

bool WorldHost::IsSpecial(AccountHandle account, KrEnumerations::SpecialAccountTypeType kind) {
  return world_.IsSpecial(accounts_.At(account), kind);
}

void WorldHost::ReleaseAccount(AccountHandle account) noexcept {
  Expect(accounts_.Remove(account), " an account was released that is not open");
}

EdListStatus WorldHost::CreateCName(Util::TString& name, NameType type, std::int32_t& nameId) {
  return world_.CreateCName(name, type, nameId);
}

bool WorldHost::IsValidName(NameHandle name) {
  return world_.IsValidName(names_.At(name));
}

Util::TString WorldHost::GetName(NameHandle name, char* buffer, std::int32_t modifier) {
  return {world_.GetName(names_.At(name), buffer, modifier)};
}

NameHandle WorldHost::GetParent(NameHandle name) {
  return names_.Add(world_.GetParent(names_.At(name)));
}

void WorldHost::ReleaseName(NameHandle name) noexcept {
  Expect(names_.Remove(name), " a name was released that is not open");
}

EdListStatus WorldHost::CreateGeneralJournalEntry(CAccnt& first, CAccnt& second, Util::TString amount,
                                                  JournalEntryIds& ids, std::int32_t nameId, Util::TString name) {
  return world_.CreateGeneralJournalEntry(accounts_.At(first.Handle()), accounts_.At(second.Handle()), amount.view(),
                                          ids, nameId, name.view());
}

EdListStatus WorldHost::DeleteGeneralJournalEntry(std::uint32_t txnId) {
  return world_.DeleteGeneralJournalEntry(txnId, MultiEntityDriver::GetGJEDeletionDueToFDPFailure());
}

EdListStatus WorldHost::UpdateMETransaction(std::int32_t txnId, std::int32_t viewType) {
  return world_.UpdateMETransaction(txnId, viewType);
}

bool WorldHost::TargExists(std::int32_t targetId, TViewType view) {
  return world_.TargExists(targetId, view);
}

LineHandle WorldHost::OpenLine(std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe, TViewType view) {
  world_.OpenLine(targetId, feature, failSafe, view);
  return lines_.Add(targetId);
}

DateType32 WorldHost::GetDate(LineHandle line) {
  return world_.GetDate(lines_.At(line));
}

BalType WorldHost::GetAmount(LineHandle line) {
  return {world_.GetAmount(lines_.At(line))};
}

const char* WorldHost::GetAccountName(LineHandle line, std::int32_t option1, std::int32_t option2) {
  return world_.GetAccountName(lines_.At(line), option1, option2);
}

Util::TString WorldHost::GetStrMemo(LineHandle line) {
  return {world_.GetStrMemo(lines_.At(line))};
}

CName WorldHost::GetTransactionName(LineHandle line) {
  return {*this, names_.Add(world_.GetTransactionName(lines_.At(line)))};
}

void WorldHost::ReleaseLine(LineHandle line) noexcept {
  Expect(lines_.Remove(line), " a line was released that is not open");
}

QueryHandle WorldHost::OpenQuery() {
  world_.OpenQuery();
  return queries_.Add({});
}

Util::Status WorldHost::SetSelect(QueryHandle query, unsigned int selection) {
  return world_.SetSelect(queries_.At(query), selection);
}

long WorldHost::SetStatement(QueryHandle query, unsigned int field, DQE::SelectOp op, DateType32 date) {
  return world_.SetStatement(queries_.At(query), field, op, date);
}

long WorldHost::SetStatement(QueryHandle /*query*/, long left, DQE::SelectOp op, long right) {
  return world_.SetStatement(left, op, right);
}

Util::Status WorldHost::DoQuery(QueryHandle query) {
  return world_.DoQuery(queries_.At(query));
}

bool WorldHost::ResultExists(QueryHandle query) {
  return world_.ResultExists(queries_.At(query));
}

const DQE::IDBResultSetRow* WorldHost::First(QueryHandle query) {
  return reinterpret_cast<const DQE::IDBResultSetRow*>(world_.First(queries_.At(query)));
}

const DQE::IDBResultSetRow* WorldHost::Next(QueryHandle query) {
  return reinterpret_cast<const DQE::IDBResultSetRow*>(world_.Next(queries_.At(query)));
}

unsigned long WorldHost::GetTransPtrType(QueryHandle /*query*/, const DQE::IDBResultSetRow* row, std::int32_t column) {
  return world_.GetTransPtrType(*reinterpret_cast<const QueryRow*>(row), column);
}

void WorldHost::ReleaseQuery(QueryHandle query) noexcept {
  Expect(queries_.Remove(query), " a query was released that is not open");
}

void WorldHost::String2Dollar(BalType& amount, const char* text) {
  world_.String2Dollar(amount.minorUnits, text);
}

void WorldHost::Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat format) {
  world_.Money2Str_s(buffer, size, amount.minorUnits, format);
}

void WorldHost::Enqueue(AppMsg* message) noexcept {
  queue_.emplace_back(message);
  // What it is shows only once it is made; the module's other message is known by the operation that makes it.
  world_.Enqueue(MessageKind::kPrompt);
}

std::unique_ptr<AppMsg> WorldHost::TakeMessage() {
  std::unique_ptr<AppMsg> message = std::move(queue_.front());
  queue_.pop_front();
  return message;
}

void WorldHost::DropMessages() {
  queue_.clear();
}

void WorldHost::SubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept {
  world_.SubscribeCloseSystem();
  listeners_.push_back(&listener);
}

void WorldHost::UnsubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept {
  world_.UnsubscribeCloseSystem();
  std::erase(listeners_, &listener);
}

void WorldHost::NotifyClose() {
  for (auto* listener : listeners_) listener->HandleNotification({});
}

void WorldHost::ExecuteCommand(const CCommandAndArgs& command) {
  world_.ExecuteCommand(command.Url().view());
}

void WorldHost::GetIndStringC(char* buffer, std::size_t size, ResourceInstance instance, std::int32_t list,
                              std::int32_t index) {
  const std::string text = world_.GetIndStringC(instance, list, index);
  Expect(text.size() < size, " a string resource does not fit its buffer");
  Expect(list != 14715 || size == 1024, " the warning's strings have another room");
  std::memcpy(buffer, text.c_str(), text.size() + 1);
}

YNC_Tag WorldHost::YesNoInfoMsgO(const Util::SourceContext& source, ResourceInstance instance, std::int32_t list,
                                 std::int32_t firstIndex, std::int32_t secondIndex, bool flag1, bool flag2) {
  return world_.YesNoInfoMsgO(source.sourceFile, source.operation, instance, list, firstIndex, secondIndex, flag1,
                              flag2);
}

std::int32_t WorldHost::KRMSG_MessageO(std::uintptr_t window, std::int32_t icon, std::int32_t buttons,
                                       std::int32_t list, std::span<const MessageArgument> arguments) {
  std::string all;
  for (const MessageArgument& argument : arguments) {
    all += std::visit([](const auto& value) { return text::Of(value); }, argument) + ';';
  }
  return world_.KRMSG_MessageO(window, icon, buttons, list, all);
}

void WorldHost::KRWarnMsgWithTitle02(std::uintptr_t window, const Util::SourceContext& source, const char* first,
                                     const char* second, bool flag) {
  world_.KRWarnMsgWithTitle02(window, source.sourceFile, source.operation, first, second, flag);
}

TimerId WorldHost::SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) {
  const TimerId armed = world_.SetTimer(timer, milliseconds);
  if (armed != 0) procedures_[armed] = procedure;
  return armed;
}

void WorldHost::KillTimer(TimerId timer) noexcept {
  world_.KillTimer(timer);
  procedures_.erase(timer);
}

void WorldHost::Fire(TimerId timer) {
  constexpr std::uint32_t kTimerMessage = 0x0113;
  const TimerProcedure procedure = procedures_.at(timer);
  procedure(nullptr, kTimerMessage, timer, 0);
}

LibraryHandle WorldHost::LoadLibraryA(const char* fileName) {
  if (!world_.LoadLibraryA(fileName)) return nullptr;
  ++loadedLibraries_;
  return this;
}

LibraryEntry WorldHost::GetProcAddress(LibraryHandle library, const char* entry) {
  Expect(library == this && loadedLibraries_ > 0, " an entry was looked up in a library that is not loaded");
  if (!world_.GetProcAddress(entry)) return nullptr;
  const bool asksForAccountant = std::string_view(entry) == "IsSybaseAccountant";
  return asksForAccountant ? reinterpret_cast<LibraryEntry>(&IsSybaseAccountant)
                           : reinterpret_cast<LibraryEntry>(&NeedDataSyncUp);
}

void WorldHost::FreeLibrary(LibraryHandle library) noexcept {
  Expect(library == this && loadedLibraries_ > 0, " a library was freed that is not loaded");
  --loadedLibraries_;
  world_.FreeLibrary();
}

void* WorldHost::LocalAlloc(std::uint32_t flags, std::size_t bytes) {
  world_.LocalAlloc(flags, bytes);
  void* block = std::calloc(bytes, 1);
  blocks_.insert(block);
  return block;
}

void WorldHost::LocalFree(void* block) noexcept {
  Expect(blocks_.erase(block) == 1, " a block was freed that was not handed out");
  --world_.blocksOut;
  std::free(block);
}

}  // namespace model
