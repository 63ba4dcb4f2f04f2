#pragma once

#include <gmock/gmock.h>

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntityHost/HostServices.h"
#include "platform/SystemTime.h"

namespace forwarding {

class MockOps : public Util::Ops {
 public:
  virtual ~MockOps() = default;
  MOCK_METHOD(bool, Wants, (Level), (const, noexcept, override));
  MOCK_METHOD(void, Write, (const Line&), (noexcept, override));
};

class MockMemoryManager : public Util::MemoryManager {
 public:
  virtual ~MockMemoryManager() = default;
  MOCK_METHOD(void, Release, (void*), (noexcept, override));
};

class MockRuntime : public Util::Runtime {
 public:
  virtual ~MockRuntime() = default;
  MOCK_METHOD(char*, FormatStringV, (const char*, std::va_list), (override));
  MOCK_METHOD(Util::MemoryManager&, GetMemoryManager, (), (noexcept, override));
  MOCK_METHOD(void, InvalidParameter, (), (override));
};

class MockKillSwitchHelper : public KillSwitchHelper {
 public:
  virtual ~MockKillSwitchHelper() = default;
  MOCK_METHOD(bool, IsFeatureEnabled, (const char*, const char*), (override));
};

class MockDCE : public FileSystem::DCE {
 public:
  virtual ~MockDCE() = default;
  MOCK_METHOD(bool, GetValue2, (Util::TString, Util::TString, Util::TString&), (override));
};

class MockDBPreferences : public DBPreferences {
 public:
  virtual ~MockDBPreferences() = default;
  MOCK_METHOD(Util::Status, GetCompanyDBPreference, (Util::TString, Util::TString&), (override));
  MOCK_METHOD(Util::Status, SetCompanyDBPreference, (Util::TString, Util::TString), (override));
};

class MockPrefsTag : public PrefsTag {
 public:
  virtual ~MockPrefsTag() = default;
  MOCK_METHOD(bool, PrefGetPrefHandle, (), (override));
  MOCK_METHOD(bool, GetCurrentFileIsSample, (), (override));
  MOCK_METHOD(std::int32_t, GetIsAccntntCopy, (), (override));
  MOCK_METHOD(bool, GetUseMultiCurrency, (), (override));
  MOCK_METHOD(void, GetHomeCurrency, (CCurrency&), (override));
  MOCK_METHOD(CurrencyHandle, OpenCurrency, (FeatureType), (override));
  MOCK_METHOD(bool, IsValidCurrency, (CurrencyHandle), (override));
  MOCK_METHOD(Util::TString, GetCurrencyCode, (CurrencyHandle), (override));
  MOCK_METHOD(void, ReleaseCurrency, (CurrencyHandle), (noexcept, override));
};

class MockPermissions : public Permissions {
 public:
  virtual ~MockPermissions() = default;
  MOCK_METHOD(bool, CurrentUserIsAdminUser, (), (override));
  MOCK_METHOD(bool, FeaturePermissionAvailable, (ProgramFeature, UserAction, unsigned char), (override));
  MOCK_METHOD(bool, ListPermissionAvailable, (ListType, std::int32_t, UserAction, CAccnt&, std::int32_t, std::int32_t),
              (override));
};

class MockChartOfAccounts : public ChartOfAccounts {
 public:
  using Texts = std::unordered_map<long, std::pair<std::string, std::string>>;
  using Listed = std::vector<std::pair<std::string, long>>;

  virtual ~MockChartOfAccounts() = default;
  MOCK_METHOD(AccountListHandle, GetAccntListPtr, (), (override));
  MOCK_METHOD(void, EdListRefreshList, (AccountListHandle, std::int32_t), (override));
  MOCK_METHOD(EdListStatus, GetAccountForRecnum, (long, CAccnt&), (override));
  MOCK_METHOD(EdListStatus, CreateNewChartOfAccount, (char*, std::int16_t, std::int32_t&, bool), (override));
  MOCK_METHOD(Texts, GetAllAccounts, (), (override));
  MOCK_METHOD(Listed, GetListOfAccounts, (std::int16_t), (override));
  MOCK_METHOD(AccountHandle, OpenAccount, (FeatureType), (override));
  MOCK_METHOD(AccountHandle, OpenAccount, (long, FeatureType), (override));
  MOCK_METHOD(bool, GetDeleted, (AccountHandle), (override));
  MOCK_METHOD(KrEnumerations::AccntTypeType, GetType, (AccountHandle), (override));
  MOCK_METHOD(bool, GetIsSubAccnt, (AccountHandle), (override));
  MOCK_METHOD(bool, IsSpecial, (AccountHandle, KrEnumerations::SpecialAccountTypeType), (override));
  MOCK_METHOD(void, ReleaseAccount, (AccountHandle), (noexcept, override));
};

class MockNameList : public NameList {
 public:
  virtual ~MockNameList() = default;
  MOCK_METHOD(EdListStatus, CreateCName, (Util::TString&, NameType, std::int32_t&), (override));
  MOCK_METHOD(bool, IsValidName, (NameHandle), (override));
  MOCK_METHOD(Util::TString, GetName, (NameHandle, char*, std::int32_t), (override));
  MOCK_METHOD(NameHandle, GetParent, (NameHandle), (override));
  MOCK_METHOD(void, ReleaseName, (NameHandle), (noexcept, override));
};

class MockJournal : public Journal {
 public:
  virtual ~MockJournal() = default;
  MOCK_METHOD(EdListStatus, CreateGeneralJournalEntry,
              (CAccnt&, CAccnt&, Util::TString, JournalEntryIds&, std::int32_t, Util::TString), (override));
  MOCK_METHOD(EdListStatus, DeleteGeneralJournalEntry, (std::uint32_t), (override));
  MOCK_METHOD(EdListStatus, UpdateMETransaction, (std::int32_t, std::int32_t), (override));
};

class MockTargetLines : public TargetLines {
 public:
  virtual ~MockTargetLines() = default;
  MOCK_METHOD(bool, TargExists, (std::int32_t, TViewType), (override));
  MOCK_METHOD(LineHandle, OpenLine, (std::int32_t, FeatureType, ReadFailSafeType, TViewType), (override));
  MOCK_METHOD(DateType32, GetDate, (LineHandle), (override));
  MOCK_METHOD(BalType, GetAmount, (LineHandle), (override));
  MOCK_METHOD(const char*, GetAccountName, (LineHandle, std::int32_t, std::int32_t), (override));
  MOCK_METHOD(Util::TString, GetStrMemo, (LineHandle), (override));
  MOCK_METHOD(CName, GetTransactionName, (LineHandle), (override));
  MOCK_METHOD(void, ReleaseLine, (LineHandle), (noexcept, override));
};

class MockQueryEngine : public QueryEngine {
 public:
  virtual ~MockQueryEngine() = default;
  MOCK_METHOD(QueryHandle, OpenQuery, (), (override));
  MOCK_METHOD(Util::Status, SetSelect, (QueryHandle, unsigned int), (override));
  MOCK_METHOD(long, SetStatement, (QueryHandle, unsigned int, DQE::SelectOp, DateType32), (override));
  MOCK_METHOD(long, SetStatement, (QueryHandle, long, DQE::SelectOp, long), (override));
  MOCK_METHOD(Util::Status, DoQuery, (QueryHandle), (override));
  MOCK_METHOD(bool, ResultExists, (QueryHandle), (override));
  MOCK_METHOD(const DQE::IDBResultSetRow*, First, (QueryHandle), (override));
  MOCK_METHOD(const DQE::IDBResultSetRow*, Next, (QueryHandle), (override));
  MOCK_METHOD(unsigned long, GetTransPtrType, (QueryHandle, const DQE::IDBResultSetRow*, std::int32_t), (override));
  MOCK_METHOD(void, ReleaseQuery, (QueryHandle), (noexcept, override));
};

class MockMoney : public Money {
 public:
  virtual ~MockMoney() = default;
  MOCK_METHOD(void, String2Dollar, (BalType&, const char*), (override));
  MOCK_METHOD(void, Money2Str_s, (char*, std::size_t, BalType, MoneyFormat), (override));
};

class MockApplication : public Application {
 public:
  virtual ~MockApplication() = default;
  MOCK_METHOD(bool, IsServerMode, (bool), (override));
  MOCK_METHOD(bool, SystemIsOpen, (), (override));
  MOCK_METHOD(bool, SystemIsClosing, (), (override));
  MOCK_METHOD(DBMgr::FileMgr*, GetActiveFileMgr, (), (override));
  MOCK_METHOD(void, Enqueue, (AppMsg*), (noexcept, override));
  MOCK_METHOD(void, SubscribeCloseSystem, (CNotifyCloseSystem&), (noexcept, override));
  MOCK_METHOD(void, UnsubscribeCloseSystem, (CNotifyCloseSystem&), (noexcept, override));
  MOCK_METHOD(void, ExecuteCommand, (const CCommandAndArgs&), (override));
};

class MockMessages : public Messages {
 public:
  virtual ~MockMessages() = default;
  MOCK_METHOD(ResourceInstance, GetKRWinInstance, (), (override));
  MOCK_METHOD(void, GetIndStringC, (char*, std::size_t, ResourceInstance, std::int32_t, std::int32_t), (override));
  MOCK_METHOD(YNC_Tag, YesNoInfoMsgO,
              (const Util::SourceContext&, ResourceInstance, std::int32_t, std::int32_t, std::int32_t, bool, bool),
              (override));
  MOCK_METHOD(std::int32_t, KRMSG_MessageO,
              (std::uintptr_t, std::int32_t, std::int32_t, std::int32_t, std::span<const MessageArgument>), (override));
  MOCK_METHOD(void, KRWarnMsgWithTitle02, (std::uintptr_t, const Util::SourceContext&, const char*, const char*, bool),
              (override));
};

class MockMultiEntityDBManager : public MultiEntityDBManager {
 public:
  virtual ~MockMultiEntityDBManager() = default;
  MOCK_METHOD(Util::Status, GetRelation, (Util::TString, DBMultiEntityRelation&), (override));
  MOCK_METHOD(Util::Status, GetRelationById, (long, DBMultiEntityRelation&), (override));
  MOCK_METHOD(Util::Status, GetAllRelations, (std::vector<DBMultiEntityRelation>&), (override));
  MOCK_METHOD(Util::Status, SaveRelation, (DBMultiEntityRelation&), (override));
  MOCK_METHOD(Util::Status, UpdateRelationForRealm, (DBMultiEntityRelation&, Util::TString), (override));
  MOCK_METHOD(Util::Status, DeleteRelation, (Util::TString), (override));
  MOCK_METHOD(bool, HasAnyMatchingRecord, (Util::TString, long, long), (override));
  MOCK_METHOD(bool, HasAnyMatchingAccRecordExclRealm, (Util::TString, long, long), (override));
  MOCK_METHOD(bool, HasAnyMatchingTransaction, (long), (override));
  MOCK_METHOD(Util::Status, SaveTransaction, (DBMultiEntityTransaction&), (override));
  MOCK_METHOD(Util::Status, GetTransaction, (std::int32_t, std::int32_t, DBMultiEntityTransaction&), (override));
  MOCK_METHOD(Util::Status, GetTransactionWithRequestId, (std::int32_t, Util::TString, DBMultiEntityTransaction&),
              (override));
  MOCK_METHOD(Util::Status, UpdateTransaction, (DBMultiEntityTransaction&), (override));
  MOCK_METHOD(Util::Status, DeleteTransaction, (std::int32_t), (override));
  MOCK_METHOD(Util::Status, GetTransactionWithTargets, (long, std::vector<DBMultiEntityTransaction>&), (override));
  MOCK_METHOD(Util::Status, GetAllTransactionWithTargets, (std::vector<DBMultiEntityTransaction>&), (override));
  MOCK_METHOD(bool, HasAnyMatchingTransaction, (Util::TString, std::int32_t), (override));
  MOCK_METHOD(Util::Status, SaveRejectedTransaction, (DBMultiEntityRejectedTxnReceiver&), (override));
  MOCK_METHOD(Util::Status, GetAllRejectedTransaction, (std::vector<DBMultiEntityRejectedTxnReceiver>&), (override));
  MOCK_METHOD(Util::Status, DeleteRejectedTransaction, (Util::TString), (override));
  MOCK_METHOD(bool, HasAnyMatchingRejectedTransaction, (Util::TString), (override));
};

class MockPlatform : public Platform {
 public:
  virtual ~MockPlatform() = default;
  MOCK_METHOD(void, GetLocalTime, (_SYSTEMTIME&), (override));
  MOCK_METHOD(TimerId, SetTimer, (TimerId, std::uint32_t, TimerProcedure), (override));
  MOCK_METHOD(void, KillTimer, (TimerId), (noexcept, override));
  MOCK_METHOD(LibraryHandle, LoadLibraryA, (const char*), (override));
  MOCK_METHOD(LibraryEntry, GetProcAddress, (LibraryHandle, const char*), (override));
  MOCK_METHOD(void, FreeLibrary, (LibraryHandle), (noexcept, override));
  MOCK_METHOD(void*, LocalAlloc, (std::uint32_t, std::size_t), (override));
  MOCK_METHOD(void, LocalFree, (void*), (noexcept, override));
};

}  // namespace forwarding
