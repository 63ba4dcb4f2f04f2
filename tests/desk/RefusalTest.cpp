#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "MultiEntity/Records.h"
#include "standalone/desk/results/Refusal.h"

namespace desk {
namespace {

using testing::HasSubstr;

constexpr std::array kStatuses{MEStatusDeclined,
                               MEStatusFeatureDisabled,
                               MEStatusPermissionDenied,
                               MEStatusExpenseAccountRefused,
                               MEStatusAccountFailed,
                               MEStatusReadFailed,
                               MEStatusRelationPending,
                               MEStatusWriteFailed,
                               MEStatusDeleteFailed,
                               MEStatusInvalidData,
                               MEStatusConflict,
                               MEStatusException,
                               MEStatusNameRefused,
                               MEStatusNameFailed,
                               MEStatusJournalEntryNotRemoved,
                               MEStatusRowsNotRemoved,
                               MEStatusAccountUnusable};

TEST(ARefusal, SaysWhatWasAskedWhatWasAnsweredAndWhy) {
  for (const MEStatusCode status : kStatuses) {
    const Refusal refusal = RefusalFor(UseCase::kUpdateRelation, status);

    EXPECT_EQ(refusal.what, UseCase::kUpdateRelation);
    EXPECT_EQ(refusal.status, status);
    EXPECT_FALSE(refusal.why.empty()) << status;
    EXPECT_NE(refusal.why, "an answer without a known meaning") << status;
  }
}

TEST(ARefusal, SaysSoWhenTheAnswerHasNoMeaning) {
  const Refusal refusal = RefusalFor(UseCase::kListTransactions, 77);

  EXPECT_EQ(refusal.status, 77);
  EXPECT_EQ(refusal.why, "an answer without a known meaning");
  EXPECT_EQ(refusal.remedy, Remedy::kNone);
}

TEST(ARefusal, HasTheRemedyOfItsStatusInEveryUseCase) {
  for (const UseCase what : {UseCase::kListTransactions, UseCase::kListAccounts, UseCase::kRecordJournalEntry,
                             UseCase::kSetTransactionState, UseCase::kListRejections, UseCase::kFindRequest}) {
    EXPECT_EQ(RefusalFor(what, MEStatusFeatureDisabled).remedy, Remedy::kAskWhoKeepsTheSwitches);
    EXPECT_EQ(RefusalFor(what, MEStatusPermissionDenied).remedy, Remedy::kAskForTheRight);
    EXPECT_EQ(RefusalFor(what, MEStatusException).remedy, Remedy::kReadTheLog);
  }
}

TEST(ARefusal, OfAChangeOfRelationsAsksForAnAdministratorAsNoRightAllowsIt) {
  for (const UseCase what : {UseCase::kCreateRelation, UseCase::kUpdateRelation, UseCase::kDeleteRelation}) {
    EXPECT_EQ(RefusalFor(what, MEStatusPermissionDenied).remedy, Remedy::kAskAnAdministrator);
  }
}

TEST(ARefusal, OfABookingSaysWhatToDoInstead) {
  const auto remedy = [](std::int32_t status) {
    return RefusalFor(UseCase::kRecordJournalEntry, status).remedy;
  };

  EXPECT_EQ(remedy(MEStatusDeclined), Remedy::kCheckTheEntry);
  EXPECT_EQ(remedy(MEStatusExpenseAccountRefused), Remedy::kUseTheAccountOfThatName);
  EXPECT_EQ(remedy(MEStatusAccountFailed), Remedy::kCheckTheAccounts);
  EXPECT_EQ(remedy(MEStatusInvalidData), Remedy::kMakeARelation);
  EXPECT_EQ(remedy(MEStatusNameRefused), Remedy::kUseTheNameLikeThat);
  EXPECT_EQ(remedy(MEStatusNameFailed), Remedy::kMakeTheUpperNameFirst);
  EXPECT_EQ(remedy(MEStatusJournalEntryNotRemoved), Remedy::kReadTheLogBooksUnchanged);
}

TEST(ARefusal, OfARelationSaysWhatToDoInstead) {
  EXPECT_EQ(RefusalFor(UseCase::kCreateRelation, MEStatusInvalidData).remedy, Remedy::kGiveBothAccounts);
  EXPECT_EQ(RefusalFor(UseCase::kUpdateRelation, MEStatusInvalidData).remedy, Remedy::kGiveBothAccounts);
  EXPECT_EQ(RefusalFor(UseCase::kDeleteRelation, MEStatusInvalidData).remedy, Remedy::kSeeRelations);
  EXPECT_EQ(RefusalFor(UseCase::kReadRelations, MEStatusInvalidData).remedy, Remedy::kSeeRelations);
  EXPECT_EQ(RefusalFor(UseCase::kCreateRelation, MEStatusConflict).remedy, Remedy::kChooseFreePartnerOrAccounts);
  EXPECT_EQ(RefusalFor(UseCase::kDeleteRelation, MEStatusRelationPending).remedy, Remedy::kForceOrWait);
  EXPECT_EQ(RefusalFor(UseCase::kCreateRelation, MEStatusAccountUnusable).remedy, Remedy::kChooseUsableAccounts);
}

TEST(ARefusal, OfAStateSaysThatTheStateIsUnchanged) {
  const auto remedy = [](std::int32_t status) {
    return RefusalFor(UseCase::kSetTransactionState, status).remedy;
  };

  EXPECT_EQ(remedy(MEStatusInvalidData), Remedy::kSeeRelationsAndRequests);
  EXPECT_EQ(remedy(MEStatusReadFailed), Remedy::kReadTheLogStateUnchanged);
  EXPECT_EQ(remedy(MEStatusWriteFailed), Remedy::kReadTheLogStateUnchanged);
  EXPECT_EQ(remedy(MEStatusRowsNotRemoved), Remedy::kTransactionHasChanged);
}

TEST(ARefusal, OfARemovalSaysWhatIsInTheBooks) {
  EXPECT_EQ(RefusalFor(UseCase::kRemoveJournalEntry, MEStatusJournalEntryNotRemoved).remedy,
            Remedy::kReadTheLogBooksUnchanged);
  EXPECT_EQ(RefusalFor(UseCase::kRemoveJournalEntry, MEStatusRowsNotRemoved).remedy, Remedy::kReadTheLogBooksUnchanged);
}

TEST(ARefusal, OfARejectionTellsSavingFromDeleting) {
  EXPECT_EQ(RefusalFor(UseCase::kSaveRejection, MEStatusDeclined).why, "the rejected transaction could not be saved");
  EXPECT_EQ(RefusalFor(UseCase::kSaveRejection, MEStatusDeclined).remedy, Remedy::kNone);
  EXPECT_EQ(RefusalFor(UseCase::kDeleteRejection, MEStatusDeclined).remedy, Remedy::kSeeRejections);
  EXPECT_EQ(RefusalFor(UseCase::kSaveRejection, MEStatusInvalidData).remedy, Remedy::kSeeRelations);
  EXPECT_EQ(RefusalFor(UseCase::kListRejections, MEStatusReadFailed).remedy, Remedy::kReadTheLog);
}

TEST(ARefusal, OfAnUnknownRequestSaysThatItIsNotKnown) {
  EXPECT_THAT(RefusalFor(UseCase::kFindRequest, MEStatusDeclined).why, HasSubstr("not known"));
  EXPECT_EQ(RefusalFor(UseCase::kListTransactions, MEStatusDeclined).why, "nothing was done");
}

TEST(ARefusal, IsThrownWithItsReason) {
  const Refused refused(RefusalFor(UseCase::kCreateRelation, MEStatusConflict));

  EXPECT_STREQ(refused.what(), "the partner is related already, or another relation uses the accounts");
  EXPECT_EQ(refused.Value().status, MEStatusConflict);
}

}  // namespace
}  // namespace desk
