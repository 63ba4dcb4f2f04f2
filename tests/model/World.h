#pragma once

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntityHost/Application.h"
#include "MultiEntityHost/DateType32.h"
#include "MultiEntityHost/Enumerations.h"
#include "MultiEntityHost/Journal.h"
#include "MultiEntityHost/Messages.h"
#include "MultiEntityHost/MultiEntityRows.h"
#include "MultiEntityHost/Platform.h"
#include "MultiEntityHost/QueryEngine.h"
#include "MultiEntityHost/Status.h"
#include "MultiEntityHost/TString.h"
#include "MultiEntityHost/TargetLines.h"
#include "model/CallText.h"
#include "platform/SystemTime.h"

namespace model {

// One call of an operation into its host that goes wrong: the call with that number, counted from 1; 0 is none.
enum class FaultKind : std::uint8_t { kRefuse, kThrowStandard, kThrowOutOfRange, kThrowOther };
struct Fault {
  int call = 0;
  FaultKind kind = FaultKind::kRefuse;
  int code = kEdListFailure;  // what a refused call of the host's lists answers
  bool preferenceMissing = false;

  friend bool operator==(const Fault&, const Fault&) = default;
};

struct Account {
  std::string name;
  std::int16_t type = 0;
  bool subAccount = false;
  bool deleted = false;
  bool special = false;

  friend bool operator==(const Account&, const Account&) = default;
};

struct Name {
  std::string text;  // without its parents
  std::int32_t parent = 0;

  friend bool operator==(const Name&, const Name&) = default;
};

struct Line {
  std::int32_t txnId = 0;
  std::int16_t txnType = 0;
  DateType32 date;
  std::int64_t minorUnits = 0;
  std::string accountName;
  std::string memo;
  std::int32_t nameId = 0;

  friend bool operator==(const Line&, const Line&) = default;
};

struct QueryRow {
  unsigned int selection = 0;
  DateType32 date;
  unsigned long txnId = 0;
};

// A query of the host's engine as far as it has been built and walked.
struct Query {
  struct Condition {
    DQE::SelectOp op;
    DateType32 date;
  };
  unsigned int selection = 0;
  std::vector<Condition> conditions;
  std::vector<const QueryRow*> found;
  std::size_t next = 0;
};

enum class MessageKind : std::uint8_t { kScheduler, kPrompt };

// A host's data and what its services do with it, in memory. The module works on one such world, through WorldHost, and
// the model on another that is equal to it when an operation begins; when it ends the two must be equal again and have
// seen the same calls and log lines in the same order.
//
// An operation's name is that of the host's own operation. Records are named by their numbers; what is open is
// WorldHost's matter. Every call that may fail passes through Refused(), where it is noted and the fault of this
// operation is played.
class World {
 public:
  // The multi-entity tables.
  Util::Status GetRelation(std::string_view realmId, DBMultiEntityRelation& row);
  Util::Status GetRelationById(long relationId, DBMultiEntityRelation& row);
  Util::Status GetAllRelations(std::vector<DBMultiEntityRelation>& rows);
  Util::Status SaveRelation(DBMultiEntityRelation& row);
  Util::Status UpdateRelationForRealm(DBMultiEntityRelation& row, std::string_view realm);
  Util::Status DeleteRelation(std::string_view realmId);
  bool HasAnyMatchingRecord(std::string_view realmId, long account1, long account2);
  bool HasAnyMatchingAccRecordExclRealm(std::string_view realmId, long account1, long account2);
  bool HasAnyMatchingTransaction(long relationId);
  Util::Status SaveTransaction(DBMultiEntityTransaction& row);
  Util::Status GetTransaction(std::int32_t txnId, std::int32_t targetId, DBMultiEntityTransaction& row);
  Util::Status GetTransactionWithRequestId(std::int32_t relationId, std::string_view requestId,
                                           DBMultiEntityTransaction& row);
  Util::Status UpdateTransaction(DBMultiEntityTransaction& row);
  Util::Status DeleteTransaction(std::int32_t txnId);
  Util::Status GetTransactionWithTargets(long txnId, std::vector<DBMultiEntityTransaction>& rows);
  Util::Status GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& rows);
  bool HasAnyMatchingTransaction(std::string_view requestId, std::int32_t relationId);
  Util::Status SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver& row);
  Util::Status GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& rows);
  Util::Status DeleteRejectedTransaction(std::string_view requestId);
  bool HasAnyMatchingRejectedTransaction(std::string_view requestId);

  // The chart of accounts.
  AccountListHandle GetAccntListPtr();
  void EdListRefreshList(AccountListHandle list, std::int32_t option);
  EdListStatus GetAccountForRecnum(long recnum);
  EdListStatus CreateNewChartOfAccount(char* name, std::int16_t type, std::int32_t& recnum, bool option);
  std::unordered_map<long, std::pair<std::string, std::string>> GetAllAccounts();
  std::vector<std::pair<std::string, long>> GetListOfAccounts(std::int16_t type);
  void OpenAccount(long recnum, FeatureType feature);
  bool GetDeleted(long recnum);
  KrEnumerations::AccntTypeType GetType(long recnum);
  bool GetIsSubAccnt(long recnum);
  bool IsSpecial(long recnum, KrEnumerations::SpecialAccountTypeType kind);

  // Names. 0 is no name.
  EdListStatus CreateCName(Util::TString& name, NameType type, std::int32_t& nameId);
  bool IsValidName(std::int32_t name);
  std::string GetName(std::int32_t name, const char* buffer, std::int32_t modifier);
  std::int32_t GetParent(std::int32_t name);

  // Journal, lines, queries and money texts.
  EdListStatus CreateGeneralJournalEntry(long first, long second, std::string_view amount, JournalEntryIds& ids,
                                         std::int32_t nameId, std::string_view name);
  EdListStatus DeleteGeneralJournalEntry(std::uint32_t txnId, bool removalUnderWay);
  EdListStatus UpdateMETransaction(std::int32_t txnId, std::int32_t viewType);
  bool TargExists(std::int32_t targetId, TViewType view);
  void OpenLine(std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe, TViewType view);
  DateType32 GetDate(std::int32_t targetId);
  std::int64_t GetAmount(std::int32_t targetId);
  const char* GetAccountName(std::int32_t targetId, std::int32_t option1, std::int32_t option2);
  std::string GetStrMemo(std::int32_t targetId);
  std::int32_t GetTransactionName(std::int32_t targetId);
  void OpenQuery();
  Util::Status SetSelect(Query& query, unsigned int selection);
  long SetStatement(Query& query, unsigned int field, DQE::SelectOp op, DateType32 date);
  long SetStatement(long left, DQE::SelectOp op, long right);
  Util::Status DoQuery(Query& query);
  bool ResultExists(const Query& query);
  const QueryRow* First(Query& query);
  const QueryRow* Next(Query& query);
  unsigned long GetTransPtrType(const QueryRow& row, std::int32_t column);
  void String2Dollar(std::int64_t& minorUnits, std::string_view text);
  void Money2Str_s(char* buffer, std::size_t size, std::int64_t minorUnits, std::uint32_t format);

  // Configuration and rights.
  bool IsFeatureEnabled(const char* section, const char* flag);
  bool GetValue2(std::string_view section, std::string_view key, std::string& value);
  Util::Status GetCompanyDBPreference(std::string_view key, std::string& value);
  Util::Status SetCompanyDBPreference(std::string_view key, std::string_view value);
  bool PrefGetPrefHandle();
  bool GetCurrentFileIsSample();
  std::int32_t GetIsAccntntCopy();
  bool GetUseMultiCurrency();
  void OpenCurrency(FeatureType feature);
  std::string GetHomeCurrency();
  bool IsValidCurrency(const std::string& code);
  std::string GetCurrencyCode(const std::string& code);
  bool CurrentUserIsAdminUser();
  bool FeaturePermissionAvailable(std::int32_t feature, std::int32_t action, unsigned char option);
  bool ListPermissionAvailable(std::int32_t list, std::int32_t option1, std::int32_t action, std::int32_t option2,
                               std::int32_t option3);

  // The application, its messages and the system.
  bool IsServerMode(bool option);
  bool SystemIsOpen();
  bool SystemIsClosing();
  bool GetActiveFileMgr();
  std::int32_t GetFileState();
  void Enqueue(MessageKind kind) noexcept;
  void SubscribeCloseSystem() noexcept { Note("SubscribeCloseSystem"); }
  void UnsubscribeCloseSystem() noexcept { Note("UnsubscribeCloseSystem"); }
  void ExecuteCommand(std::string_view url);
  ResourceInstance GetKRWinInstance();
  std::string GetIndStringC(ResourceInstance instance, std::int32_t list, std::int32_t index);
  YNC_Tag YesNoInfoMsgO(const char* sourceFile, const char* operation, ResourceInstance instance, std::int32_t list,
                        std::int32_t firstIndex, std::int32_t secondIndex, bool flag1, bool flag2);
  std::int32_t KRMSG_MessageO(std::uintptr_t window, std::int32_t icon, std::int32_t buttons, std::int32_t list,
                              const std::string& arguments);
  void KRWarnMsgWithTitle02(std::uintptr_t window, const char* sourceFile, const char* operation, const char* first,
                            const char* second, bool flag);
  SYSTEMTIME GetLocalTime();
  TimerId SetTimer(TimerId timer, std::uint32_t milliseconds);
  void KillTimer(TimerId timer) noexcept;
  bool LoadLibraryA(const char* fileName);
  bool GetProcAddress(const char* entry);
  void FreeLibrary() noexcept { Note("FreeLibrary"); }
  bool IsSybaseAccountant();
  std::int32_t NeedDataSyncUp();
  void LocalAlloc(std::uint32_t flags, std::size_t bytes);
  bool FormatStringV(const char* pattern, std::va_list arguments, std::string& formatted);
  bool FormatStringV(std::string& formatted, const char* pattern, ...);
  void InvalidParameter() { Refused("InvalidParameter"); }

  // A line of the operations log.
  void Log(std::int32_t level, std::int32_t eventType, std::string_view sourceFile, std::string_view shortName,
           std::string_view message);

  // Begins an operation: what happened before is forgotten, and the fault is laid.
  void Begin(const Fault& laid);

  // What this operation has asked and logged so far.
  const std::vector<std::string>& Events() const noexcept { return events_; }
  bool FaultPlayed() const noexcept { return played_; }

  // The first table in which two worlds differ; empty when they are equal.
  std::string DifferenceFrom(const World& other) const;

  std::vector<DBMultiEntityRelation> relations;
  std::vector<DBMultiEntityTransaction> transactions;
  std::vector<DBMultiEntityRejectedTxnReceiver> rejected;
  std::map<std::int32_t, Account> accounts;
  float accountMapLoadFactor = 1.0F;
  std::map<std::int32_t, Name> names;
  std::map<std::int32_t, Line> lines;
  std::vector<QueryRow> queryRows;
  std::set<std::pair<std::string, std::string>> switchesOff;
  std::map<std::string, std::string> remoteValues;  // in the section MultiEntity
  std::map<std::string, std::string> preferences;
  bool preferencesAvailable = true;
  bool sampleFile = false;
  std::int32_t accountantsCopy = 0;
  bool multiCurrency = false;
  std::string homeCurrency = "EUR";
  bool administrator = true;
  std::set<std::pair<std::int32_t, std::int32_t>> rightsMissing;  // feature and action
  std::set<std::int32_t> listRightsMissing;                       // actions
  bool serverMode = false;
  bool open = true;
  bool closing = false;
  bool hasActiveFile = true;
  std::int32_t fileState = 0;
  std::vector<MessageKind> queue;
  std::map<TimerId, std::uint32_t> timers;
  TimerId lastTimer = 0;
  SYSTEMTIME now{2024, 3, 0, 3, 8, 30, 15, 0};
  bool bridgeThere = true;
  bool accountantEntryThere = true;
  bool attentionEntryThere = true;
  bool accountant = false;
  std::int32_t attention = 0;
  std::int32_t yesNoAnswer = 1;
  std::int32_t messageAnswer = 0;
  std::set<std::int32_t> unwantedLevels;
  std::vector<std::int32_t> confirmed;
  std::vector<std::string> commands;
  std::size_t blocksOut = 0;  // of LocalAlloc

 private:
  // Notes a call that may fail and plays the operation's fault if it is laid here: throws, or answers true for a call
  // that is to be refused.
  template <class... Arguments>
  bool Refused(const char* name, const Arguments&... arguments) {
    Note(name, arguments...);
    return ++calls_ == fault_.call && Play();
  }

  template <class... Arguments>
  void Note(const char* name, const Arguments&... arguments) {
    events_.push_back(text::OfCall(name, arguments...));
  }

  bool Play();
  Util::Status Refusal() const { return Util::Status(-1); }
  EdListStatus ListRefusal() const { return static_cast<EdListStatus>(fault_.code); }

  bool IsReferredTo(long relationId) const;
  std::int32_t NextRelationId() const;
  bool CanBePosted(long recnum) const;
  const Line& LineOf(std::int32_t targetId) const;
  const QueryRow* NextRow(Query& query);

  Fault fault_;
  bool played_ = false;
  int calls_ = 0;
  std::int32_t lastRelationId_ = 0;
  std::int32_t lastTxnId_ = 0;
  std::int32_t lastTargetId_ = 0;
  std::vector<std::string> events_;
};

// Amount texts of this host: an optional minus, digits and an optional point with two decimals.
bool ReadAmount(std::string_view text, std::int64_t& minorUnits);
std::string AmountText(std::int64_t minorUnits);

}  // namespace model
