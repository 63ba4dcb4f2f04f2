#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "MultiEntityHostHelpers/AbsentServices.h"
#include "model/World.h"

namespace model {

// A world as a host that the module can be attached to: one object stands behind every service, hands out what the
// module opens, and reports what it uses wrongly or leaves open.
class WorldHost final : public Absent::Host,
                        public Absent::MultiEntityDBManager,
                        public DBMgr::FileMgr,
                        public Platform {
 public:
  explicit WorldHost(World& world);
  WorldHost(const WorldHost&) = delete;
  WorldHost& operator=(const WorldHost&) = delete;
  ~WorldHost();

  HostServices Services() noexcept { return Absent::Host::Services(*this, this); }

  // Lets a blank account stand for a record.
  void Show(const CAccnt& account, long recnum) { accounts_.At(account.Handle()) = recnum; }

  // The host's side of the message queue, the timers and the close-system notification.
  std::unique_ptr<AppMsg> TakeMessage();
  void DropMessages();
  void Fire(TimerId timer);
  void NotifyClose();

  // What is still open or was used wrongly; empty when nothing is.
  std::string Complaints() const;

  // Util::Ops
  bool Wants(Level level) const noexcept override;
  void Write(const Line& line) noexcept override;

  // Util::Runtime, Util::MemoryManager
  char* FormatStringV(const char* pattern, std::va_list arguments) override;
  void InvalidParameter() override { world_.InvalidParameter(); }
  void Release(void* block) noexcept override;

  // KillSwitchHelper, FileSystem::DCE
  bool IsFeatureEnabled(const char* section, const char* flag) override;
  bool GetValue2(Util::TString section, Util::TString key, Util::TString& value) override;

  // DBPreferences, PrefsTag
  Util::Status GetCompanyDBPreference(Util::TString key, Util::TString& value) override;
  Util::Status SetCompanyDBPreference(Util::TString key, Util::TString value) override;
  bool PrefGetPrefHandle() override { return world_.PrefGetPrefHandle(); }
  bool GetCurrentFileIsSample() override { return world_.GetCurrentFileIsSample(); }
  std::int32_t GetIsAccntntCopy() override { return world_.GetIsAccntntCopy(); }
  bool GetUseMultiCurrency() override { return world_.GetUseMultiCurrency(); }
  void GetHomeCurrency(CCurrency& currency) override;
  CurrencyHandle OpenCurrency(FeatureType feature) override;
  bool IsValidCurrency(CurrencyHandle currency) override;
  Util::TString GetCurrencyCode(CurrencyHandle currency) override;
  void ReleaseCurrency(CurrencyHandle currency) noexcept override;

  // MultiEntityDBManager
  Util::Status GetRelation(Util::TString realmId, DBMultiEntityRelation& row) override;
  Util::Status GetRelationById(long relationId, DBMultiEntityRelation& row) override;
  Util::Status GetAllRelations(std::vector<DBMultiEntityRelation>& rows) override;
  Util::Status SaveRelation(DBMultiEntityRelation& row) override;
  Util::Status UpdateRelationForRealm(DBMultiEntityRelation& row, Util::TString realm) override;
  Util::Status DeleteRelation(Util::TString realmId) override;
  bool HasAnyMatchingRecord(Util::TString realmId, long account1, long account2) override;
  bool HasAnyMatchingAccRecordExclRealm(Util::TString realmId, long account1, long account2) override;
  bool HasAnyMatchingTransaction(long relationId) override;
  Util::Status SaveTransaction(DBMultiEntityTransaction& row) override;
  Util::Status GetTransaction(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row) override;
  Util::Status GetTransactionWithRequestId(std::int32_t relationId, Util::TString requestId,
                                           DBMultiEntityTransaction& row) override;
  Util::Status UpdateTransaction(DBMultiEntityTransaction& row) override;
  Util::Status DeleteTransaction(std::int32_t txnId) override;
  Util::Status GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows) override;
  Util::Status GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows) override;
  bool HasAnyMatchingTransaction(Util::TString requestId, std::int32_t relationId) override;
  Util::Status SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row) override;
  Util::Status GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) override;
  Util::Status DeleteRejectedTransaction(Util::TString requestId) override;
  bool HasAnyMatchingRejectedTransaction(Util::TString requestId) override;

  // Permissions
  bool CurrentUserIsAdminUser() override { return world_.CurrentUserIsAdminUser(); }
  bool FeaturePermissionAvailable(ProgramFeature feature, UserAction action, unsigned char option) override;
  bool ListPermissionAvailable(ListType list, std::int32_t option1, UserAction action, CAccnt& element,
                               std::int32_t option2, std::int32_t option3) override;

  // ChartOfAccounts
  AccountListHandle GetAccntListPtr() override { return world_.GetAccntListPtr(); }
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

  // NameList
  EdListStatus CreateCName(Util::TString& name, NameType type, std::int32_t& nameId) override;
  bool IsValidName(NameHandle name) override;
  Util::TString GetName(NameHandle name, char* buffer, std::int32_t modifier) override;
  NameHandle GetParent(NameHandle name) override;
  void ReleaseName(NameHandle name) noexcept override;

  // Journal
  EdListStatus CreateGeneralJournalEntry(CAccnt& first, CAccnt& second, Util::TString amount, JournalEntryIds& ids,
                                         std::int32_t nameId, Util::TString name) override;
  EdListStatus DeleteGeneralJournalEntry(std::uint32_t txnId) override;
  EdListStatus UpdateMETransaction(std::int32_t txnId, std::int32_t viewType) override;

  // TargetLines
  bool TargExists(std::int32_t targetId, TViewType view) override;
  LineHandle OpenLine(std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe, TViewType view) override;
  DateType32 GetDate(LineHandle line) override;
  BalType GetAmount(LineHandle line) override;
  const char* GetAccountName(LineHandle line, std::int32_t option1, std::int32_t option2) override;
  Util::TString GetStrMemo(LineHandle line) override;
  CName GetTransactionName(LineHandle line) override;
  void ReleaseLine(LineHandle line) noexcept override;

  // QueryEngine
  QueryHandle OpenQuery() override;
  Util::Status SetSelect(QueryHandle query, unsigned int selection) override;
  long SetStatement(QueryHandle query, unsigned int field, DQE::SelectOp op, DateType32 date) override;
  long SetStatement(QueryHandle query, long left, DQE::SelectOp op, long right) override;
  Util::Status DoQuery(QueryHandle query) override;
  bool ResultExists(QueryHandle query) override;
  const DQE::IDBResultSetRow* First(QueryHandle query) override;
  const DQE::IDBResultSetRow* Next(QueryHandle query) override;
  unsigned long GetTransPtrType(QueryHandle query, const DQE::IDBResultSetRow* row, std::int32_t column) override;
  void ReleaseQuery(QueryHandle query) noexcept override;

  // Money
  void String2Dollar(BalType& amount, const char* text) override;
  void Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat format) override;

  // Application, DBMgr::FileMgr
  bool IsServerMode(bool option) override { return world_.IsServerMode(option); }
  bool SystemIsOpen() override { return world_.SystemIsOpen(); }
  bool SystemIsClosing() override { return world_.SystemIsClosing(); }
  DBMgr::FileMgr* GetActiveFileMgr() override { return world_.GetActiveFileMgr() ? this : nullptr; }
  void Enqueue(AppMsg* message) noexcept override;
  void SubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept override;
  void UnsubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept override;
  void ExecuteCommand(const CCommandAndArgs& command) override;
  std::int32_t GetFileState() override { return world_.GetFileState(); }

  // Messages
  ResourceInstance GetKRWinInstance() override { return world_.GetKRWinInstance(); }
  void GetIndStringC(char* buffer, std::size_t size, ResourceInstance instance, std::int32_t list,
                     std::int32_t index) override;
  YNC_Tag YesNoInfoMsgO(const Util::SourceContext& source, ResourceInstance instance, std::int32_t list,
                        std::int32_t firstIndex, std::int32_t secondIndex, bool flag1, bool flag2) override;
  std::int32_t KRMSG_MessageO(std::uintptr_t window, std::int32_t icon, std::int32_t buttons, std::int32_t list,
                              std::span<const MessageArgument> arguments) override;
  void KRWarnMsgWithTitle02(std::uintptr_t window, const Util::SourceContext& source, const char* first,
                            const char* second, bool flag) override;

  // Platform
  void GetLocalTime(_SYSTEMTIME& time) override { time = world_.GetLocalTime(); }
  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override;
  void KillTimer(TimerId timer) noexcept override;
  LibraryHandle LoadLibraryA(const char* fileName) override;
  LibraryEntry GetProcAddress(LibraryHandle library, const char* entry) override;
  void FreeLibrary(LibraryHandle library) noexcept override;
  void* LocalAlloc(std::uint32_t flags, std::size_t bytes) override;
  void LocalFree(void* block) noexcept override;

 private:
  // Objects of one kind that are open just now, by their number.
  template <class Handle, class Object>
  class Open {
   public:
    Handle Add(Object object) {
      const Handle handle{++last_};
      objects_.emplace(handle, std::move(object));
      return handle;
    }
    Object& At(Handle handle) { return objects_.at(handle); }
    bool Remove(Handle handle) noexcept { return objects_.erase(handle) == 1; }
    std::size_t Count() const noexcept { return objects_.size(); }

   private:
    std::uint64_t last_ = 0;
    std::map<Handle, Object> objects_;
  };

  void Expect(bool right, const char* complaint) noexcept;

  World& world_;
  Open<AccountHandle, long> accounts_;
  Open<NameHandle, std::int32_t> names_;
  Open<LineHandle, std::int32_t> lines_;
  Open<CurrencyHandle, std::string> currencies_;
  Open<QueryHandle, Query> queries_;
  std::set<void*> texts_;
  std::set<void*> blocks_;
  int loadedLibraries_ = 0;
  std::deque<std::unique_ptr<AppMsg>> queue_;
  std::map<TimerId, TimerProcedure> procedures_;
  std::vector<CNotify<CNotifyDataCloseSystem>*> listeners_;
  std::string complaints_;
};

}  // namespace model
