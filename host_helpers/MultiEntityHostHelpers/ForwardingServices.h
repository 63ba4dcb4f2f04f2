#pragma once

#include <utility>

#include "MultiEntityHost/HostServices.h"

// Services in front of other ones: each hands every operation on to the service that it was made with, and answers and
// throws what that one does. A host developer derives from these what is to count, refuse, log or change single
// operations of a host that exists already, and overrides those. What the host behind asks of itself does not pass
// here.
//
// The service behind has to outlive the one in front, which knows it by reference and owns nothing. Both are called on
// the thread that the contract names. Handles, messages, listeners and rows pass as they are: what the service behind
// has opened it is asked for, and releases.
namespace Forwarding {

class Ops : public Util::Ops {
 public:
  explicit Ops(Util::Ops& behind) noexcept : behind_(behind) {}

  bool Wants(Level level) const noexcept override { return behind_.Wants(level); }
  void Write(const Line& line) noexcept override { behind_.Write(line); }

 protected:
  ~Ops() = default;

 private:
  Util::Ops& behind_;
};

class MemoryManager : public Util::MemoryManager {
 public:
  explicit MemoryManager(Util::MemoryManager& behind) noexcept : behind_(behind) {}

  void Release(void* block) noexcept override { behind_.Release(block); }

 protected:
  ~MemoryManager() = default;

 private:
  Util::MemoryManager& behind_;
};

// Its texts are given back to the memory manager of the runtime behind, unless GetMemoryManager() is overridden to put
// a MemoryManager in front of that one.
class Runtime : public Util::Runtime {
 public:
  explicit Runtime(Util::Runtime& behind) noexcept : behind_(behind) {}

  char* FormatStringV(const char* pattern, std::va_list arguments) override {
    return behind_.FormatStringV(pattern, arguments);
  }
  Util::MemoryManager& GetMemoryManager() noexcept override { return behind_.GetMemoryManager(); }
  void InvalidParameter() override { behind_.InvalidParameter(); }

 protected:
  ~Runtime() = default;

 private:
  Util::Runtime& behind_;
};

class KillSwitchHelper : public ::KillSwitchHelper {
 public:
  explicit KillSwitchHelper(::KillSwitchHelper& behind) noexcept : behind_(behind) {}

  bool IsFeatureEnabled(const char* section, const char* flag) override {
    return behind_.IsFeatureEnabled(section, flag);
  }

 protected:
  ~KillSwitchHelper() = default;

 private:
  ::KillSwitchHelper& behind_;
};

class DCE : public FileSystem::DCE {
 public:
  explicit DCE(FileSystem::DCE& behind) noexcept : behind_(behind) {}

  bool GetValue2(Util::TString section, Util::TString key, Util::TString& value) override {
    return behind_.GetValue2(std::move(section), std::move(key), value);
  }

 protected:
  ~DCE() = default;

 private:
  FileSystem::DCE& behind_;
};

class DBPreferences : public ::DBPreferences {
 public:
  explicit DBPreferences(::DBPreferences& behind) noexcept : behind_(behind) {}

  Util::Status GetCompanyDBPreference(Util::TString key, Util::TString& value) override {
    return behind_.GetCompanyDBPreference(std::move(key), value);
  }
  Util::Status SetCompanyDBPreference(Util::TString key, Util::TString value) override {
    return behind_.SetCompanyDBPreference(std::move(key), std::move(value));
  }

 protected:
  ~DBPreferences() = default;

 private:
  ::DBPreferences& behind_;
};

class PrefsTag : public ::PrefsTag {
 public:
  explicit PrefsTag(::PrefsTag& behind) noexcept : behind_(behind) {}

  bool PrefGetPrefHandle() override { return behind_.PrefGetPrefHandle(); }
  bool GetCurrentFileIsSample() override { return behind_.GetCurrentFileIsSample(); }
  std::int32_t GetIsAccntntCopy() override { return behind_.GetIsAccntntCopy(); }
  bool GetUseMultiCurrency() override { return behind_.GetUseMultiCurrency(); }
  void GetHomeCurrency(CCurrency& currency) override { behind_.GetHomeCurrency(currency); }
  CurrencyHandle OpenCurrency(FeatureType feature) override { return behind_.OpenCurrency(feature); }
  bool IsValidCurrency(CurrencyHandle currency) override { return behind_.IsValidCurrency(currency); }
  Util::TString GetCurrencyCode(CurrencyHandle currency) override { return behind_.GetCurrencyCode(currency); }
  void ReleaseCurrency(CurrencyHandle currency) noexcept override { behind_.ReleaseCurrency(currency); }

 protected:
  ~PrefsTag() = default;

 private:
  ::PrefsTag& behind_;
};

class Permissions : public ::Permissions {
 public:
  explicit Permissions(::Permissions& behind) noexcept : behind_(behind) {}

  bool CurrentUserIsAdminUser() override { return behind_.CurrentUserIsAdminUser(); }
  bool FeaturePermissionAvailable(ProgramFeature feature, UserAction action, unsigned char option) override {
    return behind_.FeaturePermissionAvailable(feature, action, option);
  }
  bool ListPermissionAvailable(ListType list, std::int32_t option1, UserAction action, CAccnt& element,
                               std::int32_t option2, std::int32_t option3) override {
    return behind_.ListPermissionAvailable(list, option1, action, element, option2, option3);
  }

 protected:
  ~Permissions() = default;

 private:
  ::Permissions& behind_;
};

class ChartOfAccounts : public ::ChartOfAccounts {
 public:
  explicit ChartOfAccounts(::ChartOfAccounts& behind) noexcept : behind_(behind) {}

  AccountListHandle GetAccntListPtr() override { return behind_.GetAccntListPtr(); }
  void EdListRefreshList(AccountListHandle list, std::int32_t option) override {
    behind_.EdListRefreshList(list, option);
  }
  EdListStatus GetAccountForRecnum(long recnum, CAccnt& account) override {
    return behind_.GetAccountForRecnum(recnum, account);
  }
  EdListStatus CreateNewChartOfAccount(char* name, std::int16_t type, std::int32_t& recnum, bool option) override {
    return behind_.CreateNewChartOfAccount(name, type, recnum, option);
  }
  std::unordered_map<long, std::pair<std::string, std::string>> GetAllAccounts() override {
    return behind_.GetAllAccounts();
  }
  std::vector<std::pair<std::string, long>> GetListOfAccounts(std::int16_t type) override {
    return behind_.GetListOfAccounts(type);
  }
  AccountHandle OpenAccount(FeatureType feature) override { return behind_.OpenAccount(feature); }
  AccountHandle OpenAccount(long recnum, FeatureType feature) override { return behind_.OpenAccount(recnum, feature); }
  bool GetDeleted(AccountHandle account) override { return behind_.GetDeleted(account); }
  KrEnumerations::AccntTypeType GetType(AccountHandle account) override { return behind_.GetType(account); }
  bool GetIsSubAccnt(AccountHandle account) override { return behind_.GetIsSubAccnt(account); }
  bool IsSpecial(AccountHandle account, KrEnumerations::SpecialAccountTypeType kind) override {
    return behind_.IsSpecial(account, kind);
  }
  void ReleaseAccount(AccountHandle account) noexcept override { behind_.ReleaseAccount(account); }

 protected:
  ~ChartOfAccounts() = default;

 private:
  ::ChartOfAccounts& behind_;
};

class NameList : public ::NameList {
 public:
  explicit NameList(::NameList& behind) noexcept : behind_(behind) {}

  EdListStatus CreateCName(Util::TString& name, NameType type, std::int32_t& nameId) override {
    return behind_.CreateCName(name, type, nameId);
  }
  bool IsValidName(NameHandle name) override { return behind_.IsValidName(name); }
  Util::TString GetName(NameHandle name, char* buffer, std::int32_t modifier) override {
    return behind_.GetName(name, buffer, modifier);
  }
  NameHandle GetParent(NameHandle name) override { return behind_.GetParent(name); }
  void ReleaseName(NameHandle name) noexcept override { behind_.ReleaseName(name); }

 protected:
  ~NameList() = default;

 private:
  ::NameList& behind_;
};

class Journal : public ::Journal {
 public:
  explicit Journal(::Journal& behind) noexcept : behind_(behind) {}

  EdListStatus CreateGeneralJournalEntry(CAccnt& first, CAccnt& second, Util::TString amount, JournalEntryIds& ids,
                                         std::int32_t nameId, Util::TString name) override {
    return behind_.CreateGeneralJournalEntry(first, second, std::move(amount), ids, nameId, std::move(name));
  }
  EdListStatus DeleteGeneralJournalEntry(std::uint32_t txnId) override {
    return behind_.DeleteGeneralJournalEntry(txnId);
  }
  EdListStatus UpdateMETransaction(std::int32_t txnId, std::int32_t viewType) override {
    return behind_.UpdateMETransaction(txnId, viewType);
  }

 protected:
  ~Journal() = default;

 private:
  ::Journal& behind_;
};

// The name on a transaction is asked and released through the list that the lines behind took it from. A NameList in
// front of that list sees it only when GetTransactionName() is overridden, too.
class TargetLines : public ::TargetLines {
 public:
  explicit TargetLines(::TargetLines& behind) noexcept : behind_(behind) {}

  bool TargExists(std::int32_t targetId, TViewType view) override { return behind_.TargExists(targetId, view); }
  LineHandle OpenLine(std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe, TViewType view) override {
    return behind_.OpenLine(targetId, feature, failSafe, view);
  }
  DateType32 GetDate(LineHandle line) override { return behind_.GetDate(line); }
  BalType GetAmount(LineHandle line) override { return behind_.GetAmount(line); }
  const char* GetAccountName(LineHandle line, std::int32_t option1, std::int32_t option2) override {
    return behind_.GetAccountName(line, option1, option2);
  }
  Util::TString GetStrMemo(LineHandle line) override { return behind_.GetStrMemo(line); }
  CName GetTransactionName(LineHandle line) override { return behind_.GetTransactionName(line); }
  void ReleaseLine(LineHandle line) noexcept override { behind_.ReleaseLine(line); }

 protected:
  ~TargetLines() = default;

 private:
  ::TargetLines& behind_;
};

class QueryEngine : public ::QueryEngine {
 public:
  explicit QueryEngine(::QueryEngine& behind) noexcept : behind_(behind) {}

  QueryHandle OpenQuery() override { return behind_.OpenQuery(); }
  Util::Status SetSelect(QueryHandle query, unsigned int selection) override {
    return behind_.SetSelect(query, selection);
  }
  long SetStatement(QueryHandle query, unsigned int field, DQE::SelectOp op, DateType32 date) override {
    return behind_.SetStatement(query, field, op, date);
  }
  long SetStatement(QueryHandle query, long left, DQE::SelectOp op, long right) override {
    return behind_.SetStatement(query, left, op, right);
  }
  Util::Status DoQuery(QueryHandle query) override { return behind_.DoQuery(query); }
  bool ResultExists(QueryHandle query) override { return behind_.ResultExists(query); }
  const DQE::IDBResultSetRow* First(QueryHandle query) override { return behind_.First(query); }
  const DQE::IDBResultSetRow* Next(QueryHandle query) override { return behind_.Next(query); }
  unsigned long GetTransPtrType(QueryHandle query, const DQE::IDBResultSetRow* row, std::int32_t column) override {
    return behind_.GetTransPtrType(query, row, column);
  }
  void ReleaseQuery(QueryHandle query) noexcept override { behind_.ReleaseQuery(query); }

 protected:
  ~QueryEngine() = default;

 private:
  ::QueryEngine& behind_;
};

class Money : public ::Money {
 public:
  explicit Money(::Money& behind) noexcept : behind_(behind) {}

  void String2Dollar(BalType& amount, const char* text) override { behind_.String2Dollar(amount, text); }
  void Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat format) override {
    behind_.Money2Str_s(buffer, size, amount, format);
  }

 protected:
  ~Money() = default;

 private:
  ::Money& behind_;
};

class Application : public ::Application {
 public:
  explicit Application(::Application& behind) noexcept : behind_(behind) {}

  bool IsServerMode(bool option) override { return behind_.IsServerMode(option); }
  bool SystemIsOpen() override { return behind_.SystemIsOpen(); }
  bool SystemIsClosing() override { return behind_.SystemIsClosing(); }
  DBMgr::FileMgr* GetActiveFileMgr() override { return behind_.GetActiveFileMgr(); }
  void Enqueue(AppMsg* message) noexcept override { behind_.Enqueue(message); }
  void SubscribeCloseSystem(CNotifyCloseSystem& listener) noexcept override { behind_.SubscribeCloseSystem(listener); }
  void UnsubscribeCloseSystem(CNotifyCloseSystem& listener) noexcept override {
    behind_.UnsubscribeCloseSystem(listener);
  }
  void ExecuteCommand(const CCommandAndArgs& command) override { behind_.ExecuteCommand(command); }

 protected:
  ~Application() = default;

 private:
  ::Application& behind_;
};

class Messages : public ::Messages {
 public:
  explicit Messages(::Messages& behind) noexcept : behind_(behind) {}

  ResourceInstance GetKRWinInstance() override { return behind_.GetKRWinInstance(); }
  void GetIndStringC(char* buffer, std::size_t size, ResourceInstance instance, std::int32_t list,
                     std::int32_t index) override {
    behind_.GetIndStringC(buffer, size, instance, list, index);
  }
  YNC_Tag YesNoInfoMsgO(const Util::SourceContext& source, ResourceInstance instance, std::int32_t list,
                        std::int32_t firstIndex, std::int32_t secondIndex, bool flag1, bool flag2) override {
    return behind_.YesNoInfoMsgO(source, instance, list, firstIndex, secondIndex, flag1, flag2);
  }
  std::int32_t KRMSG_MessageO(std::uintptr_t window, std::int32_t icon, std::int32_t buttons, std::int32_t list,
                              std::span<const MessageArgument> arguments) override {
    return behind_.KRMSG_MessageO(window, icon, buttons, list, arguments);
  }
  void KRWarnMsgWithTitle02(std::uintptr_t window, const Util::SourceContext& source, const char* first,
                            const char* second, bool flag) override {
    behind_.KRWarnMsgWithTitle02(window, source, first, second, flag);
  }

 protected:
  ~Messages() = default;

 private:
  ::Messages& behind_;
};

class MultiEntityDBManager : public ::MultiEntityDBManager {
 public:
  explicit MultiEntityDBManager(::MultiEntityDBManager& behind) noexcept : behind_(behind) {}

  Util::Status GetRelation(Util::TString realmId, DBMultiEntityRelation& row) override {
    return behind_.GetRelation(std::move(realmId), row);
  }
  Util::Status GetRelationById(long relationId, DBMultiEntityRelation& row) override {
    return behind_.GetRelationById(relationId, row);
  }
  Util::Status GetAllRelations(std::vector<DBMultiEntityRelation>& rows) override {
    return behind_.GetAllRelations(rows);
  }
  Util::Status SaveRelation(DBMultiEntityRelation& row) override { return behind_.SaveRelation(row); }
  Util::Status UpdateRelationForRealm(DBMultiEntityRelation& row, Util::TString realm) override {
    return behind_.UpdateRelationForRealm(row, std::move(realm));
  }
  Util::Status DeleteRelation(Util::TString realmId) override { return behind_.DeleteRelation(std::move(realmId)); }
  bool HasAnyMatchingRecord(Util::TString realmId, long account1, long account2) override {
    return behind_.HasAnyMatchingRecord(std::move(realmId), account1, account2);
  }
  bool HasAnyMatchingAccRecordExclRealm(Util::TString realmId, long account1, long account2) override {
    return behind_.HasAnyMatchingAccRecordExclRealm(std::move(realmId), account1, account2);
  }
  bool HasAnyMatchingTransaction(long relationId) override { return behind_.HasAnyMatchingTransaction(relationId); }
  Util::Status SaveTransaction(DBMultiEntityTransaction& row) override { return behind_.SaveTransaction(row); }
  Util::Status GetTransaction(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row) override {
    return behind_.GetTransaction(txnId, targetId, row);
  }
  Util::Status GetTransactionWithRequestId(std::int32_t relationId, Util::TString requestId,
                                           DBMultiEntityTransaction& row) override {
    return behind_.GetTransactionWithRequestId(relationId, std::move(requestId), row);
  }
  Util::Status UpdateTransaction(DBMultiEntityTransaction& row) override { return behind_.UpdateTransaction(row); }
  Util::Status DeleteTransaction(std::int32_t txnId) override { return behind_.DeleteTransaction(txnId); }
  Util::Status GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows) override {
    return behind_.GetTransactionWithTargets(txnId, rows);
  }
  Util::Status GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows) override {
    return behind_.GetAllTransactionWithTargets(rows);
  }
  bool HasAnyMatchingTransaction(Util::TString requestId, std::int32_t relationId) override {
    return behind_.HasAnyMatchingTransaction(std::move(requestId), relationId);
  }
  Util::Status SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row) override {
    return behind_.SaveRejectedTransaction(row);
  }
  Util::Status GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows) override {
    return behind_.GetAllRejectedTransaction(rows);
  }
  Util::Status DeleteRejectedTransaction(Util::TString requestId) override {
    return behind_.DeleteRejectedTransaction(std::move(requestId));
  }
  bool HasAnyMatchingRejectedTransaction(Util::TString requestId) override {
    return behind_.HasAnyMatchingRejectedTransaction(std::move(requestId));
  }

 protected:
  ~MultiEntityDBManager() = default;

 private:
  ::MultiEntityDBManager& behind_;
};

// Only for a host that hands in a platform: the library's own native one is nobody's to stand in front of.
class Platform : public ::Platform {
 public:
  explicit Platform(::Platform& behind) noexcept : behind_(behind) {}

  void GetLocalTime(_SYSTEMTIME& now) override { behind_.GetLocalTime(now); }
  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds, TimerProcedure procedure) override {
    return behind_.SetTimer(timer, milliseconds, procedure);
  }
  void KillTimer(TimerId timer) noexcept override { behind_.KillTimer(timer); }
  LibraryHandle LoadLibraryA(const char* fileName) override { return behind_.LoadLibraryA(fileName); }
  LibraryEntry GetProcAddress(LibraryHandle library, const char* entry) override {
    return behind_.GetProcAddress(library, entry);
  }
  void FreeLibrary(LibraryHandle library) noexcept override { behind_.FreeLibrary(library); }
  void* LocalAlloc(std::uint32_t flags, std::size_t bytes) override { return behind_.LocalAlloc(flags, bytes); }
  void LocalFree(void* block) noexcept override { behind_.LocalFree(block); }

 protected:
  ~Platform() = default;

 private:
  ::Platform& behind_;
};

// A host in front of another one, in one object. It copies what it needs of the other host's record, and hands on the
// platform itself.
class Host : public Ops,
             public Runtime,
             public KillSwitchHelper,
             public DCE,
             public DBPreferences,
             public PrefsTag,
             public MultiEntityDBManager,
             public Permissions,
             public ChartOfAccounts,
             public NameList,
             public Journal,
             public TargetLines,
             public QueryEngine,
             public Money,
             public Application,
             public Messages {
 public:
  explicit Host(const HostServices& behind) noexcept
      : Ops(behind.ops),
        Runtime(behind.runtime),
        KillSwitchHelper(behind.killSwitches),
        DCE(behind.remoteValues),
        DBPreferences(behind.databasePreferences),
        PrefsTag(behind.preferences),
        MultiEntityDBManager(behind.multiEntity),
        Permissions(behind.permissions),
        ChartOfAccounts(behind.accounts),
        NameList(behind.names),
        Journal(behind.journal),
        TargetLines(behind.lines),
        QueryEngine(behind.queries),
        Money(behind.money),
        Application(behind.application),
        Messages(behind.messages),
        platform_(behind.platform) {}

  // What to attach.
  HostServices Services() noexcept {
    return {.ops = *this,
            .runtime = *this,
            .killSwitches = *this,
            .remoteValues = *this,
            .databasePreferences = *this,
            .preferences = *this,
            .multiEntity = *this,
            .permissions = *this,
            .accounts = *this,
            .names = *this,
            .journal = *this,
            .lines = *this,
            .queries = *this,
            .money = *this,
            .application = *this,
            .messages = *this,
            .platform = platform_};
  }

 protected:
  ~Host() = default;

 private:
  ::Platform* platform_;
};

}  // namespace Forwarding
