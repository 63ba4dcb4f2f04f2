#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "support/MemoryHost.h"

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

// Refusals on a host that costs nothing, with every line of the log wanted.
class ARefusedCall : public testing::Test {
 protected:
  ARefusedCall() {
    host_.wantsLog = true;
    EXPECT_EQ(AttachHost(host_.Services()), MEAttachDone);
  }
  ~ARefusedCall() override { DetachHost(); }

  // The switches are read once per process.
  void SwitchFeatureOff() {
    host_.isFeatureOn = false;
    MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal);
  }

  void SwitchFeatureOn() { MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal); }

  template <typename Call>
  static std::size_t AllocationsOf(Call&& call) {
    const std::size_t before = allocations;
    call();
    return allocations - before;
  }

  MemoryHost host_;
  const Util::TString realm_{"9130000000000001"};
  const Util::TString tooLong_{"91300000000000012345"};
  const Util::TString request_{"0b8e3a60-0000-4000-8000-000000000001"};
  const Util::TString tooLongRequest_{"0b8e3a60-0000-4000-8000-0000000000012"};
  const Util::TString amount_{"1,234.50"};
  DBMultiEntityRelation relation_{};
};

TEST_F(ARefusedCall, AllocatesNothingWhileTheFeatureIsOff) {
  SwitchFeatureOff();
  std::vector<DBMultiEntityRelation> relations;
  std::vector<std::string> realms;
  std::vector<MERejectedTxnInfo> rejected;
  std::unordered_map<long, std::pair<std::string, std::string>> accounts;
  std::vector<std::pair<std::string, long>> accountsOfType;

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(MultiEntityDriver::CreateRelation(realm_, realm_, {}, {}, {}), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::UpdateRelation({.realmId = realm_, .updateRealm = {}, .accounts = {}}),
              MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::DeleteRelation(realm_, true), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetRelation(realm_, relation_), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetRelationById(1, relation_), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetRelationsList(relations), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetRelationRealmIdList(realms, true), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(realm_, request_, MEStateEstablished),
              MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetAllRejectedTransaction(rejected), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetAccountsList(accounts, MEAccountFilterUnused, {}), MEStatusFeatureDisabled);
    EXPECT_EQ(MultiEntityDriver::GetAccountListByType(0, accountsOfType), MEStatusFeatureDisabled);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingWithoutTheRight) {
  SwitchFeatureOn();
  host_.grantsRights = false;
  std::uint32_t txnId = 0;

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(MultiEntityDriver::CreateRelation(realm_, realm_, {}, {}, {}), MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::UpdateRelation({.realmId = realm_, .updateRealm = {}, .accounts = {}}),
              MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::DeleteRelation(realm_, true), MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(realm_, request_, MEStateEstablished),
              MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(7, 13, MEStateEstablished), MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::RecordGeneralJournalEntry(realm_, {}, 2, amount_, request_, {}, txnId),
              MEStatusPermissionDenied);
    EXPECT_EQ(MultiEntityDriver::SaveRejectedTransaction(request_, kTxnTypeBill, realm_, amount_, request_),
              MEStatusPermissionDenied);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, AllocatesNothingForAnIdThatIsTooLong) {
  SwitchFeatureOn();

  const std::size_t counted = AllocationsOf([&] {
    EXPECT_EQ(MultiEntityDriver::CreateRelation(tooLong_, realm_, {}, {}, {}), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::UpdateRelation({.realmId = tooLong_, .updateRealm = {}, .accounts = {}}),
              MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::GetRelation(tooLong_, relation_), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::DeleteRelation(tooLong_, true), MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(tooLong_, request_, MEStateEstablished),
              MEStatusInvalidData);
    EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState(realm_, tooLongRequest_, MEStateEstablished),
              MEStatusInvalidData);
  });

  EXPECT_EQ(counted, 0U);
}

TEST_F(ARefusedCall, IsCountedWithWhatTheLibraryAllocates) {
  std::vector<METxnInfo> list;

  EXPECT_GT(AllocationsOf([&] { MultiEntityDriver::GetListOfTxnTargetEntries(list, 7); }), 0U);
}

}  // namespace
