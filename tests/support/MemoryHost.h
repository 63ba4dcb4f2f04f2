#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "MultiEntityHostHelpers/AbsentServices.h"
#include "support/AbsentPlatform.h"

// A host that answers from a few fields at once and remembers nothing of the questions, for counting what an operation
// itself costs. It allocates nothing but the texts and lists that it hands out.
class MemoryHost final : public Absent::Host,
                         public Absent::MultiEntityDBManager,
                         public DBMgr::FileMgr,
                         public AbsentPlatform {
 public:
  bool wantsLog = false;
  bool isFeatureOn = true;
  bool grantsRights = true;
  bool isRequestKnown = true;
  std::uint64_t writtenCharacters = 0;
  DBMultiEntityRelation relation{};
  DBMultiEntityTransaction row{};
  std::vector<DBMultiEntityTransaction> rows;
  std::vector<DBMultiEntityRejectedTxnReceiver> rejected;

  // With one relation, one journal entry's row and one rejected bill.
  MemoryHost();
  const HostServices& Services() const noexcept { return services_; }

  bool Wants(Level) const noexcept override { return wantsLog; }
  void Write(const Line& line) noexcept override { writtenCharacters += line.message.size(); }

  char* FormatStringV(const char* pattern, std::va_list arguments) override;
  void Release(void* block) noexcept override { std::free(block); }

  bool IsFeatureEnabled(const char*, const char*) override { return isFeatureOn; }

  Util::Status GetCompanyDBPreference(Util::TString key, Util::TString& value) override;
  Util::Status SetCompanyDBPreference(Util::TString, Util::TString) override { return kDone; }

  bool PrefGetPrefHandle() override { return true; }

  Util::Status GetRelation(Util::TString, DBMultiEntityRelation& out) override { return Fill(out, relation); }
  Util::Status GetRelationById(long, DBMultiEntityRelation& out) override { return Fill(out, relation); }
  Util::Status GetAllRelations(std::vector<DBMultiEntityRelation>& out) override;
  Util::Status SaveRelation(DBMultiEntityRelation&) override { return kDone; }
  Util::Status UpdateRelationForRealm(DBMultiEntityRelation&, Util::TString) override { return kDone; }
  Util::Status DeleteRelation(Util::TString) override { return kDone; }
  bool HasAnyMatchingTransaction(long) override { return false; }
  Util::Status SaveTransaction(DBMultiEntityTransaction&) override { return kDone; }
  Util::Status GetTransaction(std::int32_t, std::int32_t, DBMultiEntityTransaction& out) override {
    return Fill(out, row);
  }
  Util::Status GetTransactionWithRequestId(std::int32_t, Util::TString, DBMultiEntityTransaction& out) override {
    return Fill(out, row);
  }
  Util::Status UpdateTransaction(DBMultiEntityTransaction&) override { return kDone; }
  Util::Status DeleteTransaction(std::int32_t) override { return kDone; }
  Util::Status GetTransactionWithTargets(long, std::vector<DBMultiEntityTransaction>& out) override;
  Util::Status GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& out) override;
  bool HasAnyMatchingTransaction(Util::TString, std::int32_t) override { return isRequestKnown; }
  Util::Status SaveRejectedTransaction(DBMultiEntityRejectedTxnReceiver&) override { return kDone; }
  Util::Status GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& out) override;
  Util::Status DeleteRejectedTransaction(Util::TString) override { return kDone; }

  bool CurrentUserIsAdminUser() override { return grantsRights; }
  bool FeaturePermissionAvailable(ProgramFeature, UserAction, unsigned char) override { return grantsRights; }
  bool ListPermissionAvailable(ListType, std::int32_t, UserAction, CAccnt&, std::int32_t, std::int32_t) override {
    return grantsRights;
  }

  EdListStatus GetAccountForRecnum(long, CAccnt&) override { return kEdListSuccess; }
  EdListStatus CreateNewChartOfAccount(char*, std::int16_t, std::int32_t& recnum, bool) override;
  std::unordered_map<long, std::pair<std::string, std::string>> GetAllAccounts() override;
  std::vector<std::pair<std::string, long>> GetListOfAccounts(std::int16_t) override { return {{"Checking", 1}}; }
  KrEnumerations::AccntTypeType GetType(AccountHandle) override { return KrEnumerations::kOtherCurrentAsset; }

  EdListStatus CreateCName(Util::TString&, NameType, std::int32_t& nameId) override;
  bool IsValidName(NameHandle name) override { return name != NameHandle::kNone; }
  Util::TString GetName(NameHandle, char*, std::int32_t) override { return "Utility"; }

  EdListStatus CreateGeneralJournalEntry(CAccnt&, CAccnt&, Util::TString, JournalEntryIds& ids, std::int32_t,
                                         Util::TString) override;
  EdListStatus DeleteGeneralJournalEntry(std::uint32_t) override { return kEdListSuccess; }
  EdListStatus UpdateMETransaction(std::int32_t, std::int32_t) override { return kEdListSuccess; }

  bool TargExists(std::int32_t, TViewType) override { return true; }
  LineHandle OpenLine(std::int32_t, FeatureType, ReadFailSafeType, TViewType) override { return LineHandle{1}; }
  DateType32 GetDate(LineHandle) override { return {2025, 6, 30}; }
  BalType GetAmount(LineHandle) override { return {123'450}; }
  const char* GetAccountName(LineHandle, std::int32_t, std::int32_t) override { return "Operating Expenses:Rent"; }
  Util::TString GetStrMemo(LineHandle) override { return "Rent of June"; }
  CName GetTransactionName(LineHandle) override { return {*this, NameHandle{1}}; }

  Util::Status SetSelect(QueryHandle, unsigned int) override { return kDone; }
  long SetStatement(QueryHandle, unsigned int, DQE::SelectOp, DateType32) override { return 1; }
  long SetStatement(QueryHandle, long, DQE::SelectOp, long) override { return 3; }
  Util::Status DoQuery(QueryHandle) override { return kDone; }

  void String2Dollar(BalType& amount, const char*) override { amount.minorUnits = 123'450; }
  void Money2Str_s(char* buffer, std::size_t, BalType, MoneyFormat) override { std::memcpy(buffer, "1,234.50", 9); }

  std::int32_t GetFileState() override { return 0; }
  bool SystemIsOpen() override { return true; }
  DBMgr::FileMgr* GetActiveFileMgr() override { return this; }
  void Enqueue(AppMsg* message) noexcept override { queued_.reset(message); }

  void GetLocalTime(_SYSTEMTIME& now) override;
  TimerId SetTimer(TimerId, std::uint32_t, TimerProcedure) override { return 1; }
  void* LocalAlloc(std::uint32_t, std::size_t bytes) override { return std::calloc(1, bytes); }
  void LocalFree(void* block) noexcept override { std::free(block); }

 private:
  static constexpr Util::Status kDone{Util::Status::kSuccess};

  template <typename Row>
  static Util::Status Fill(Row& out, const Row& row) {
    out = row;
    return kDone;
  }

  HostServices services_;
  // The one that came last.
  std::unique_ptr<AppMsg> queued_;
};
