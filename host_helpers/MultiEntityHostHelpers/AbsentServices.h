#pragma once

#include "MultiEntityHost/HostServices.h"

// A service for whatever a host does not have: it finds, grants and shows nothing, and whatever is to be written fails.
// A host derives its own services from these and overrides what it has. The library itself answers with them while no
// host is attached.
namespace Absent {

inline constexpr Util::Status kNothingThere{-1};

class Ops : public Util::Ops {
 public:
  bool Wants(Level) const noexcept override { return false; }
  void Write(const Line&) noexcept override {}

 protected:
  ~Ops() = default;
};

class Runtime : public Util::Runtime, public Util::MemoryManager {
 public:
  char* FormatStringV(const char*, std::va_list) override { return nullptr; }
  Util::MemoryManager& GetMemoryManager() noexcept override { return *this; }
  void Release(void*) noexcept override {}

 protected:
  ~Runtime() = default;
};

class KillSwitchHelper : public ::KillSwitchHelper {
 public:
  bool IsFeatureEnabled(const char*, const char*) override { return false; }

 protected:
  ~KillSwitchHelper() = default;
};

class DCE : public FileSystem::DCE {
 public:
  bool GetValue2(Util::TString, Util::TString, Util::TString&) override { return false; }

 protected:
  ~DCE() = default;
};

class DBPreferences : public ::DBPreferences {
 public:
  Util::Status GetCompanyDBPreference(Util::TString, Util::TString&) override { return kNothingThere; }
  Util::Status SetCompanyDBPreference(Util::TString, Util::TString) override { return kNothingThere; }

 protected:
  ~DBPreferences() = default;
};

class PrefsTag : public ::PrefsTag {
 public:
  bool PrefGetPrefHandle() override { return false; }
  bool GetCurrentFileIsSample() override { return false; }
  std::int32_t GetIsAccntntCopy() override { return 0; }
  bool GetUseMultiCurrency() override { return false; }
  void GetHomeCurrency(CCurrency&) override {}
  CurrencyHandle OpenCurrency(FeatureType) override { return {}; }
  bool IsValidCurrency(CurrencyHandle) override { return false; }
  Util::TString GetCurrencyCode(CurrencyHandle) override { return {}; }
  void ReleaseCurrency(CurrencyHandle) noexcept override {}

 protected:
  ~PrefsTag() = default;
};

class Permissions : public ::Permissions {
 public:
  bool CurrentUserIsAdminUser() override { return false; }
  bool FeaturePermissionAvailable(ProgramFeature, UserAction, unsigned char) override { return false; }
  bool ListPermissionAvailable(ListType, std::int32_t, UserAction, CAccnt&, std::int32_t, std::int32_t) override {
    return false;
  }

 protected:
  ~Permissions() = default;
};

class ChartOfAccounts : public ::ChartOfAccounts {
 public:
  AccountListHandle GetAccntListPtr() override { return {}; }
  void EdListRefreshList(AccountListHandle, std::int32_t) override {}
  EdListStatus GetAccountForRecnum(long, CAccnt&) override { return kEdListFailure; }
  EdListStatus CreateNewChartOfAccount(char*, std::int16_t, std::int32_t&, bool) override { return kEdListFailure; }
  std::unordered_map<long, std::pair<std::string, std::string>> GetAllAccounts() override { return {}; }
  std::vector<std::pair<std::string, long>> GetListOfAccounts(std::int16_t) override { return {}; }
  AccountHandle OpenAccount(FeatureType) override { return {}; }
  AccountHandle OpenAccount(long, FeatureType) override { return {}; }
  bool GetDeleted(AccountHandle) override { return false; }
  KrEnumerations::AccntTypeType GetType(AccountHandle) override { return {}; }
  bool GetIsSubAccnt(AccountHandle) override { return false; }
  bool IsSpecial(AccountHandle, KrEnumerations::SpecialAccountTypeType) override { return false; }
  void ReleaseAccount(AccountHandle) noexcept override {}

 protected:
  ~ChartOfAccounts() = default;
};

class NameList : public ::NameList {
 public:
  EdListStatus CreateCName(Util::TString&, NameType, std::int32_t&) override { return kEdListFailure; }
  bool IsValidName(NameHandle) override { return false; }
  Util::TString GetName(NameHandle, char*, std::int32_t) override { return {}; }
  NameHandle GetParent(NameHandle) override { return NameHandle::kNone; }
  void ReleaseName(NameHandle) noexcept override {}

 protected:
  ~NameList() = default;
};

class Journal : public ::Journal {
 public:
  EdListStatus CreateGeneralJournalEntry(CAccnt&, CAccnt&, Util::TString, JournalEntryIds&, std::int32_t,
                                         Util::TString) override {
    return kEdListFailure;
  }
  EdListStatus DeleteGeneralJournalEntry(std::uint32_t) override { return kEdListFailure; }
  EdListStatus UpdateMETransaction(std::int32_t, std::int32_t) override { return kEdListFailure; }

 protected:
  ~Journal() = default;
};

class TargetLines : public ::TargetLines {
 public:
  bool TargExists(std::int32_t, TViewType) override { return false; }
  LineHandle OpenLine(std::int32_t, FeatureType, ReadFailSafeType, TViewType) override { return {}; }
  DateType32 GetDate(LineHandle) override { return NullDate(); }
  BalType GetAmount(LineHandle) override { return {}; }
  const char* GetAccountName(LineHandle, std::int32_t, std::int32_t) override { return ""; }
  Util::TString GetStrMemo(LineHandle) override { return {}; }
  CName GetTransactionName(LineHandle) override { return {names_, NameHandle::kNone}; }
  void ReleaseLine(LineHandle) noexcept override {}

 protected:
  ~TargetLines() = default;

 private:
  struct NoNames final : NameList {};

  NoNames names_;
};

class QueryEngine : public ::QueryEngine {
 public:
  QueryHandle OpenQuery() override { return {}; }
  Util::Status SetSelect(QueryHandle, unsigned int) override { return kNothingThere; }
  long SetStatement(QueryHandle, unsigned int, DQE::SelectOp, DateType32) override { return 0; }
  long SetStatement(QueryHandle, long, DQE::SelectOp, long) override { return 0; }
  Util::Status DoQuery(QueryHandle) override { return kNothingThere; }
  bool ResultExists(QueryHandle) override { return false; }
  const DQE::IDBResultSetRow* First(QueryHandle) override { return nullptr; }
  const DQE::IDBResultSetRow* Next(QueryHandle) override { return nullptr; }
  unsigned long GetTransPtrType(QueryHandle, const DQE::IDBResultSetRow*, std::int32_t) override { return 0; }
  void ReleaseQuery(QueryHandle) noexcept override {}

 protected:
  ~QueryEngine() = default;
};

class Money : public ::Money {
 public:
  void String2Dollar(BalType&, const char*) override {}
  void Money2Str_s(char* buffer, std::size_t, BalType, MoneyFormat) override { *buffer = '\0'; }

 protected:
  ~Money() = default;
};

class Application : public ::Application {
 public:
  bool IsServerMode(bool) override { return false; }
  bool SystemIsOpen() override { return false; }
  bool SystemIsClosing() override { return false; }
  DBMgr::FileMgr* GetActiveFileMgr() override { return nullptr; }
  // A host that makes messages has a queue, which owns them.
  void Enqueue(AppMsg*) noexcept override {}
  void SubscribeCloseSystem(CNotifyCloseSystem&) noexcept override {}
  void UnsubscribeCloseSystem(CNotifyCloseSystem&) noexcept override {}
  void ExecuteCommand(const CCommandAndArgs&) override {}

 protected:
  ~Application() = default;
};

class Messages : public ::Messages {
 public:
  ResourceInstance GetKRWinInstance() override { return {}; }
  void GetIndStringC(char* buffer, std::size_t, ResourceInstance, std::int32_t, std::int32_t) override {
    *buffer = '\0';
  }
  YNC_Tag YesNoInfoMsgO(const Util::SourceContext&, ResourceInstance, std::int32_t, std::int32_t, std::int32_t, bool,
                        bool) override {
    return {};
  }
  // 0 is an answer that acts; this one is none that the library knows.
  std::int32_t KRMSG_MessageO(std::uintptr_t, std::int32_t, std::int32_t, std::int32_t,
                              std::span<const MessageArgument>) override {
    return -1;
  }
  void KRWarnMsgWithTitle02(std::uintptr_t, const Util::SourceContext&, const char*, const char*, bool) override {}

 protected:
  ~Messages() = default;
};

class MultiEntityDBManager : public ::MultiEntityDBManager {
 public:
  Util::Status GetRelation(Util::TString, DBMultiEntityRelation&) override { return kNothingThere; }
  Util::Status GetRelationById(long, DBMultiEntityRelation&) override { return kNothingThere; }
  Util::Status GetAllRelations(std::vector<DBMultiEntityRelation>&) override { return kNothingThere; }
  Util::Status SaveRelation(DBMultiEntityRelation&) override { return kNothingThere; }
  Util::Status UpdateRelationForRealm(DBMultiEntityRelation&, Util::TString) override { return kNothingThere; }
  Util::Status DeleteRelation(Util::TString) override { return kNothingThere; }
  bool HasAnyMatchingRecord(Util::TString, long, long) override { return false; }
  bool HasAnyMatchingAccRecordExclRealm(Util::TString, long, long) override { return false; }
  bool HasAnyMatchingTransaction(long) override { return false; }
  Util::Status SaveTransaction(DBMultiEntityTransaction&) override { return kNothingThere; }
  Util::Status GetTransaction(std::int32_t, std::int32_t, DBMultiEntityTransaction&) override { return kNothingThere; }
  Util::Status GetTransactionWithRequestId(std::int32_t, Util::TString, DBMultiEntityTransaction&) override {
    return kNothingThere;
  }
  Util::Status UpdateTransaction(DBMultiEntityTransaction&) override { return kNothingThere; }
  Util::Status DeleteTransaction(std::int32_t) override { return kNothingThere; }
  Util::Status GetTransactionWithTargets(long, std::vector<DBMultiEntityTransaction>&) override {
    return kNothingThere;
  }
  Util::Status GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>&) override { return kNothingThere; }
  bool HasAnyMatchingTransaction(Util::TString, std::int32_t) override { return false; }
  Util::Status SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver&) override { return kNothingThere; }
  Util::Status GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>&) override {
    return kNothingThere;
  }
  Util::Status DeleteRejectedTransaction(Util::TString) override { return kNothingThere; }
  bool HasAnyMatchingRejectedTransaction(Util::TString) override { return false; }

 protected:
  ~MultiEntityDBManager() = default;
};

// All but the tables in one object, for a host that is small enough to be one class.
class Host : public Ops,
             public Runtime,
             public KillSwitchHelper,
             public DCE,
             public DBPreferences,
             public PrefsTag,
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
  // What to attach; without a platform the library uses its own native one.
  constexpr HostServices Services(::MultiEntityDBManager& multiEntity, Platform* platform = nullptr) noexcept {
    return {.ops = *this,
            .runtime = *this,
            .killSwitches = *this,
            .remoteValues = *this,
            .databasePreferences = *this,
            .preferences = *this,
            .multiEntity = multiEntity,
            .permissions = *this,
            .accounts = *this,
            .names = *this,
            .journal = *this,
            .lines = *this,
            .queries = *this,
            .money = *this,
            .application = *this,
            .messages = *this,
            .platform = platform};
  }

 protected:
  ~Host() = default;
};

}  // namespace Absent
