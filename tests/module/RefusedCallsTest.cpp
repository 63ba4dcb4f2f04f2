#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHostHelpers/AbsentServices.h"
#include "support/AbsentPlatform.h"
#include "support/MultiEntityPrivateAccess.h"

// Everything that this program and the library allocate with new passes here.
namespace {
std::size_t allocations = 0;
}

void* operator new(std::size_t size) {
  ++allocations;
  void* const block = std::malloc(size != 0 ? size : 1);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
  std::free(block);
}

namespace {

constexpr std::int32_t kNoAccount = 9;

// A host whose user may do everything, with every line of the log wanted. It has what its fields say, declines what is
// to be created, changed or deleted, and allocates nothing but the rows that it hands out as a list.
class DecliningHost final : public Absent::Host,
                            public Absent::MultiEntityDBManager,
                            private DBMgr::FileMgr,
                            private AbsentPlatform {
 public:
  bool isFeatureOn = true;
  bool grantsRights = true;
  bool isFileOpen = true;
  std::optional<DBMultiEntityRelation> relation;
  std::optional<DBMultiEntityTransaction> row;
  bool isAccountUsed = false;
  bool isAccountDeleted = false;
  KrEnumerations::AccntTypeType accountType = KrEnumerations::kOtherCurrentAsset;
  EdListStatus nameCreated = kEdListFailure;
  EdListStatus entryCreated = kEdListFailure;
  EdListStatus entryDeleted = kEdListFailure;

  // With a platform that loads nothing: to search for the bridge would allocate.
  HostServices Services() noexcept { return Absent::Host::Services(*this, this); }

  bool Wants(Level) const noexcept override { return true; }
  bool IsFeatureEnabled(const char*, const char*) override { return isFeatureOn; }
  bool CurrentUserIsAdminUser() override { return grantsRights; }
  bool FeaturePermissionAvailable(ProgramFeature, UserAction, unsigned char) override { return grantsRights; }
  bool ListPermissionAvailable(ListType, std::int32_t, UserAction, CAccnt&, std::int32_t, std::int32_t) override {
    return grantsRights;
  }
  bool SystemIsOpen() override { return isFileOpen; }
  DBMgr::FileMgr* GetActiveFileMgr() override { return isFileOpen ? this : nullptr; }
  std::int32_t GetFileState() override { return 0; }

  Util::Status GetRelation(Util::TString, DBMultiEntityRelation& out) override { return Fill(out, relation); }
  Util::Status GetRelationById(long, DBMultiEntityRelation& out) override { return Fill(out, relation); }
  bool HasAnyMatchingRecord(Util::TString, long, long) override { return isAccountUsed; }
  bool HasAnyMatchingAccRecordExclRealm(Util::TString, long, long) override { return isAccountUsed; }
  bool HasAnyMatchingTransaction(long) override { return row.has_value(); }
  bool HasAnyMatchingTransaction(Util::TString, std::int32_t) override { return row.has_value(); }
  Util::Status GetTransaction(std::int32_t, std::int32_t, DBMultiEntityTransaction& out) override {
    return Fill(out, row);
  }
  Util::Status GetTransactionWithRequestId(std::int32_t, Util::TString, DBMultiEntityTransaction& out) override {
    return Fill(out, row);
  }
  Util::Status GetTransactionWithTargets(long, std::vector<DBMultiEntityTransaction>& out) override {
    return row ? Fill(out.emplace_back(), row) : Absent::kNothingThere;
  }

  EdListStatus GetAccountForRecnum(long recnum, CAccnt&) override {
    return recnum == kNoAccount ? kEdListFailure : kEdListSuccess;
  }
  bool GetDeleted(AccountHandle) override { return isAccountDeleted; }
  KrEnumerations::AccntTypeType GetType(AccountHandle) override { return accountType; }
  EdListStatus CreateCName(Util::TString&, NameType, std::int32_t&) override { return nameCreated; }
  EdListStatus CreateGeneralJournalEntry(CAccnt&, CAccnt&, Util::TString, JournalEntryIds&, std::int32_t,
                                         Util::TString) override {
    return entryCreated;
  }
  EdListStatus DeleteGeneralJournalEntry(std::uint32_t) override { return entryDeleted; }

 private:
  template <typename Row>
  static Util::Status Fill(Row& out, const std::optional<Row>& row) {
    if (!row) return Absent::kNothingThere;
    out = *row;
    return Util::Status(Util::Status::kSuccess);
  }
};

class ARefusedCall : public testing::Test {
 protected:
  ARefusedCall() {
    host_.relation.emplace().relationId = 1;
    host_.relation->state = MEStateEstablished;
    host_.row.emplace().txnId = 7;
    host_.row->relationId = 1;
    host_.row->targetId = 13;
    host_.row->txnType = kTxnTypeJournalEntry;
    EXPECT_EQ(AttachHost(host_.Services()), MEAttachDone);
    named_.nameId = 1;
  }
  ~ARefusedCall() override { DetachHost(); }

  // Which is done once per process.
  static void ReadSwitches() { MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal); }

  template <typename Call>
  static std::size_t AllocationsOf(Call&& call) {
    const std::size_t before = allocations;
    call();
    return allocations - before;
  }

  // The caller's lists are its own, made before anything is counted.
  static std::vector<MEAccountInfo> Accounts(std::int32_t dueFrom, std::int32_t dueTo) {
    return {{.name = {}, .type = 0, .accountId = dueFrom, .role = MEAccountRoleDueFrom},
            {.name = {}, .type = 0, .accountId = dueTo, .role = MEAccountRoleDueTo}};
  }

  MEStatusCode Create(const Util::TString& realm, const Util::TString& partner, std::vector<MEAccountInfo> accounts) {
    return MultiEntityDriver::CreateRelation(realm, partner, {}, MEStateEstablished, std::move(accounts));
  }
  MEStatusCode Update(const Util::TString& realm, std::vector<MEAccountInfo> accounts) {
    return MultiEntityDriver::UpdateRelation({.realmId = realm, .updateRealm = {}, .accounts = std::move(accounts)});
  }
  MEStatusCode Book(std::int32_t expense, std::int32_t dueTo, const MECNameInfo& name) {
    return MultiEntityDriver::RecordGeneralJournalEntry(realm_, {.name = {}, .accountId = expense}, dueTo, amount_,
                                                        request_, name, txnId_);
  }
  MEStatusCode Reject(std::int16_t txnType) {
    return MultiEntityDriver::SaveRejectedTransaction(request_, txnType, realm_, amount_, request_);
  }
  MEStatusCode Change(MEState state) { return MultiEntityDriver::UpdateTransactionWithState(realm_, request_, state); }

  DecliningHost host_;
  const Util::TString empty_;
  const Util::TString realm_{"9130000000000001"};
  const Util::TString tooLong_{"91300000000000012345"};
  const Util::TString partner_{"Birch Services"};
  const Util::TString tooLongPartner_{std::string(60, 'B')};
  const Util::TString request_{"0b8e3a60-0000-4000-8000-000000000001"};
  const Util::TString tooLongRequest_{"0b8e3a60-0000-4000-8000-0000000000012"};
  const Util::TString amount_{"1,234.50"};
  const MECNameInfo unnamed_;
  MECNameInfo named_;
  DBMultiEntityRelation relation_{};
  std::uint32_t txnId_ = 0;
  std::vector<DBMultiEntityRelation> relations_;
  std::vector<std::string> realms_;
  std::vector<MERejectedTxnInfo> rejected_;
  std::vector<METxnInfo> lines_;
  std::unordered_map<long, std::pair<std::string, std::string>> accounts_;
  std::vector<std::pair<std::string, long>> accountsOfType_;
};

TEST_F(ARefusedCall, AllocatesNothingWhileTheFeatureIsOff) {
  host_.isFeatureOn = false;
  ReadSwitches();

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_FALSE(MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchBills));
    EXPECT_FALSE(MultiEntityDriver::IsAccountTypeEnabledForME(KrEnumerations::kBank));
    EXPECT_EQ(Create(realm_, partner_, {}), MEStatusFeatureDisabled);
    EXPECT_EQ(Update(realm_, {}), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::DeleteRelation(realm_, true), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetRelation(realm_, relation_), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetRelationById(1, relation_), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetRelationsList(relations_), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetRelationRealmIdList(realms_, true), MEStatusFeatureDisabled);
    EXPECT_EQ(Change(MEStateEstablished), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetAllRejectedTransaction(rejected_), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetAccountsList(accounts_, MEAccountFilterUnused, {}), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetAccountListByType(0, accountsOfType_), MEStatusFeatureDisabled);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingWithoutTheRight) {
  ReadSwitches();
  host_.grantsRights = false;

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionManageRelations, kFeatureNone));
    EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionCreateTransactions, kFeatureBills));
    EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionReceiveReminder, kFeatureJournalEntries));
    EXPECT_FALSE(MultiEntityDriver::HasMEPermission(MEPermissionType{7}, kFeatureBills));
    EXPECT_EQ(Create(realm_, partner_, {}), MEStatusPermissionDenied);
    EXPECT_EQ(Update(realm_, {}), MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::DeleteRelation(realm_, true), MEStatusPermissionDenied);
    EXPECT_EQ(Book(3, 2, named_), MEStatusPermissionDenied);
    EXPECT_EQ(Reject(kTxnTypeBill), MEStatusPermissionDenied);
    EXPECT_EQ(Reject(kTxnTypeCheck), MEStatusPermissionDenied);
    EXPECT_EQ(Reject(kTxnTypeJournalEntry), MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::SybaseRelationsUserPersonaForRole(1), SybaseRelationsPersonaNone);
    EXPECT_EQ(MultiEntityDriver::SybaseRelationsUserPersonaForRole(2), SybaseRelationsPersonaNone);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingWithoutTheRightToChangeTransactionsOfThatType) {
  ReadSwitches();
  host_.grantsRights = false;

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(Change(MEStateEstablished), MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(7, 13, MEStateEstablished), MEStatusPermissionDenied);
    host_.row->txnType = kTxnTypeBill;
    EXPECT_EQ(Change(MEStateEstablished), MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(7, 13, MEStateEstablished), MEStatusPermissionDenied);
    host_.row->txnType = kTxnTypeCheck;
    EXPECT_EQ(Change(MEStateEstablished), MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(7, 13, MEStateEstablished), MEStatusPermissionDenied);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingForATextThatIsEmptyOrTooLong) {
  ReadSwitches();

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(Create(tooLong_, partner_, {}), MEStatusInvalidData);
    EXPECT_EQ(Create(empty_, partner_, {}), MEStatusInvalidData);
    EXPECT_EQ(Create(realm_, tooLongPartner_, {}), MEStatusInvalidData);
    EXPECT_EQ(Create(realm_, empty_, {}), MEStatusInvalidData);
    EXPECT_EQ(Update(tooLong_, {}), MEStatusInvalidData);
    EXPECT_EQ(Update(empty_, {}), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::DeleteRelation(tooLong_, true), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::DeleteRelation(empty_, true), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::GetRelation(tooLong_, relation_), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::GetRelation(empty_, relation_), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(tooLong_, request_, MEStateEstablished),
              MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(empty_, request_, MEStateEstablished), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(realm_, tooLongRequest_, MEStateEstablished),
              MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(realm_, empty_, MEStateEstablished), MEStatusInvalidData);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingForAPartnerWithoutARelation) {
  ReadSwitches();
  host_.relation.reset();

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(Update(realm_, {}), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::DeleteRelation(realm_, true), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::GetRelation(realm_, relation_), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::GetRelationById(1, relation_), MEStatusReadFailed);
    EXPECT_EQ(Book(3, 2, named_), MEStatusInvalidData);
    EXPECT_EQ(Reject(kTxnTypeBill), MEStatusInvalidData);
    EXPECT_EQ(Change(MEStateEstablished), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::DoesTransactionExist(realm_, request_), MEStatusDeclined);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingForARelationInAnotherState) {
  ReadSwitches();

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(Create(realm_, partner_, {}), MEStatusConflict);
    host_.relation->state = MEStatePending;
    EXPECT_EQ(MultiEntityDriver::DeleteRelation(realm_, false), MEStatusRelationPending);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingForATransactionThatIsNotThere) {
  ReadSwitches();

  const std::size_t counted = AllocationsOf([&] {
    host_.row->txnType = kTxnTypeNone;
    EXPECT_EQ(Change(MEStateEstablished), MEStatusInvalidData);
    host_.row.reset();
    EXPECT_EQ(Change(MEStateEstablished), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(7, 13, MEStateEstablished), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::DoesTransactionExist(realm_, request_), MEStatusDeclined);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingForAccountsThatDoNotServe) {
  ReadSwitches();
  std::vector<MEAccountInfo> one(1);
  std::vector<MEAccountInfo> oneOfARelation(1);
  std::vector<MEAccountInfo> used = Accounts(1, 2);
  std::vector<MEAccountInfo> usedElsewhere = Accounts(1, 2);
  std::vector<MEAccountInfo> missing = Accounts(1, kNoAccount);
  std::vector<MEAccountInfo> deleted = Accounts(1, 2);
  std::vector<MEAccountInfo> ineligible = Accounts(1, 2);
  const std::optional<DBMultiEntityRelation> related = std::exchange(host_.relation, std::nullopt);

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(Create(realm_, partner_, std::move(one)), MEStatusInvalidData);
    host_.isAccountUsed = true;
    EXPECT_EQ(Create(realm_, partner_, std::move(used)), MEStatusConflict);
    host_.relation = related;
    EXPECT_EQ(Update(realm_, std::move(oneOfARelation)), MEStatusInvalidData);
    EXPECT_EQ(Update(realm_, std::move(usedElsewhere)), MEStatusConflict);
    host_.isAccountUsed = false;
    EXPECT_EQ(Update(realm_, std::move(missing)), MEStatusAccountUnusable);
    host_.isAccountDeleted = true;
    host_.relation.reset();
    EXPECT_EQ(Create(realm_, partner_, std::move(deleted)), MEStatusAccountUnusable);
    host_.isAccountDeleted = false;
    host_.accountType = KrEnumerations::kAccountsReceivable;
    EXPECT_EQ(MultiEntityDriver::PopulateCOAInRelation(relation_, std::move(ineligible)), MEStatusAccountUnusable);
    CAccnt receivable(host_, 1, kFeatureTypeStandard);
    EXPECT_FALSE(MultiEntityDriver::IsCOAValidForMultiEntity(&receivable));
    EXPECT_FALSE(MultiEntityDriver::IsCOAValidForMultiEntity(nullptr));
    EXPECT_FALSE(MultiEntityDriver::IsAccountTypeEnabledForME(KrEnumerations::AccntTypeType{16}));
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingForABookingThatTheHostDeclines) {
  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(Book(kNoAccount, 2, named_), MEStatusAccountFailed);
    EXPECT_EQ(Book(3, kNoAccount, named_), MEStatusAccountFailed);
    EXPECT_EQ(Book(3, 2, unnamed_), MEStatusNameFailed);
    host_.nameCreated = kEdListDuplicateName;
    EXPECT_EQ(Book(3, 2, unnamed_), MEStatusNameRefused);
    EXPECT_EQ(Book(3, 2, named_), MEStatusDeclined);
    host_.entryCreated = kEdListSuccess;
    EXPECT_EQ(Book(3, 2, named_), MEStatusJournalEntryNotRemoved);
    EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(7), MEStatusJournalEntryNotRemoved);
    host_.entryDeleted = kEdListSuccess;
    EXPECT_EQ(Book(3, 2, named_), MEStatusDeclined);
    EXPECT_EQ(MultiEntityDriver::RemoveGeneralJournalEntry(7), MEStatusRowsNotRemoved);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingForAChangeThatTheHostDeclines) {
  ReadSwitches();
  std::vector<MEAccountInfo> accounts = Accounts(1, 2);

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(Update(realm_, {}), MEStatusWriteFailed);
    EXPECT_EQ(MultiEntityDriver::DeleteRelation(realm_, true), MEStatusWriteFailed);
    EXPECT_EQ(Change(MEStateEstablished), MEStatusRowsNotRemoved);
    EXPECT_EQ(Change(MEStateDeactivated), MEStatusReadFailed);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(7, 13, MEStateEstablished), MEStatusWriteFailed);
    EXPECT_EQ(Reject(kTxnTypeBill), MEStatusDeclined);
    EXPECT_EQ(MultiEntityDriver::DeleteRejectedTransaction(request_), MEStatusDeclined);
    host_.relation->state = MEStatePending;
    EXPECT_EQ(Create(realm_, partner_, {}), MEStatusWriteFailed);
    host_.relation.reset();
    EXPECT_EQ(Create(realm_, partner_, std::move(accounts)), MEStatusWriteFailed);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingForAListThatTheHostCannotRead) {
  ReadSwitches();
  host_.row.reset();
  std::vector<unsigned long> txns;

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(MultiEntityDriver::GetRelationsList(relations_), MEStatusReadFailed);
    EXPECT_EQ(MultiEntityDriver::GetRelationRealmIdList(realms_, true), MEStatusReadFailed);
    EXPECT_EQ(MultiEntityDriver::GetAllRejectedTransaction(rejected_), MEStatusReadFailed);
    EXPECT_EQ(MultiEntityDriver::GetListOfTxnTargetEntries(lines_, 7), MEStatusReadFailed);
    EXPECT_FALSE(MultiEntityPrivateAccess::GetTxns(1, txns));
    EXPECT_FALSE(MultiEntityPrivateAccess::GetTxnsForPeriod(NullDate(), NullDate(), 1, 2, txns));
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingWithoutACompanyFile) {
  host_.isFileOpen = false;
  std::string realm(realm_.view());
  bool ok = false;

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(MultiEntityDriver::GetMECacheRealmId(realm_, ok), nullptr);
    EXPECT_FALSE(MultiEntityDriver::SetMECacheRealmId(realm.data()));
    EXPECT_FALSE(MESchedulerUtil::CanProcessSchedulerMsg());
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingWithoutAHost) {
  DetachHost();

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(Create(realm_, partner_, {}), MEStatusFeatureDisabled);
    EXPECT_EQ(Change(MEStateEstablished), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetAccountsList(accounts_, MEAccountFilterUnused, {}), MEStatusFeatureDisabled);
    EXPECT_EQ(Book(3, 2, named_), MEStatusPermissionDenied);
    EXPECT_EQ(Reject(kTxnTypeBill), MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(7, 13, MEStateEstablished), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::GetListOfTxnTargetEntries(lines_, 7), MEStatusReadFailed);
    EXPECT_EQ(MultiEntityDriver::DoesTransactionExist(realm_, request_), MEStatusDeclined);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingForAHostThatDoesNotFit) {
  HostServices larger = host_.Services();
  ++larger.size;
  HostServices newer = host_.Services();
  ++newer.version;
  HostServices foreign = host_.Services();
  ++foreign.abiTag;

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(AttachHost(larger), MEAttachSizeUnknown);
    EXPECT_EQ(AttachHost(newer), MEAttachVersionUnknown);
    EXPECT_EQ(AttachHost(foreign), MEAttachAbiUnknown);
    EXPECT_EQ(AttachHost(host_.Services()), MEAttachAlreadyAttached);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, IsCountedWithWhatTheLibraryAllocates) {
  EXPECT_GT(AllocationsOf([&] { MultiEntityDriver::GetListOfTxnTargetEntries(lines_, 7); }), 1U);
  EXPECT_EQ(lines_.size(), 1U);
}

}  // namespace
