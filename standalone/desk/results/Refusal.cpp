#include "standalone/desk/results/Refusal.h"

#include <string_view>

#include "MultiEntity/Records.h"

namespace desk {

namespace {

// Why, and what would be right.
struct Reason {
  std::string_view why;  // empty where a number means what it means in general
  Remedy remedy = Remedy::kNone;
};

std::string_view GeneralMeaningOf(std::int32_t status) noexcept {
  switch (status) {
    case MEStatusDeclined:
      return "nothing was done";
    case MEStatusFeatureDisabled:
      return "the multi-entity feature is switched off";
    case MEStatusPermissionDenied:
      return "the user has no right to do this";
    case MEStatusExpenseAccountRefused:
      return "the expense account was not created, its name is taken";
    case MEStatusAccountFailed:
      return "the expense account could not be created, or the expense or the due-to account was not found";
    case MEStatusReadFailed:
      return "the relations or intercompany transactions could not be read, or there is no such relation";
    case MEStatusRelationPending:
      return "the relation is pending and was not deleted";
    case MEStatusWriteFailed:
      return "the relation or transaction could not be written";
    case MEStatusDeleteFailed:
      return "the relation could not be deleted";
    case MEStatusInvalidData:
      return "invalid data or no such row";
    case MEStatusConflict:
      return "the partner is related already, or another relation uses the accounts";
    case MEStatusException:
      return "the data could not be read because of an error";
    case MEStatusNameRefused:
      return "the name was not created, it is taken";
    case MEStatusNameFailed:
      return "the name could not be created";
    case MEStatusJournalEntryNotRemoved:
      return "the journal entry could not be removed";
    case MEStatusRowsNotRemoved:
      return "the intercompany rows of the journal entry could not be removed";
    case MEStatusAccountUnusable:
      return "an account does not exist, is deleted or cannot carry an intercompany balance";
    default:
      return "an answer without a known meaning";
  }
}

Reason ReasonOfRelation(UseCase what, std::int32_t status) noexcept {
  const bool isAboutOne = what == UseCase::kReadRelations || what == UseCase::kDeleteRelation;
  switch (status) {
    case MEStatusPermissionDenied:
      return {.why = "the user is no administrator and no accountant; relations are changed by them only",
              .remedy = Remedy::kAskAnAdministrator};
    case MEStatusInvalidData:
      return {.why = {}, .remedy = isAboutOne ? Remedy::kSeeRelations : Remedy::kGiveBothAccounts};
    case MEStatusConflict:
      return {.why = {}, .remedy = Remedy::kChooseFreePartnerOrAccounts};
    case MEStatusRelationPending:
      return {.why = {}, .remedy = Remedy::kForceOrWait};
    case MEStatusAccountUnusable:
      return {.why = {}, .remedy = Remedy::kChooseUsableAccounts};
    default:
      return {};
  }
}

Reason ReasonOfBooking(std::int32_t status) noexcept {
  switch (status) {
    case MEStatusDeclined:
      return {.why = "nothing was booked", .remedy = Remedy::kCheckTheEntry};
    case MEStatusPermissionDenied:
      return {.why = "the user has no right journal:create", .remedy = Remedy::kAskForTheRight};
    case MEStatusExpenseAccountRefused:
      return {.why = {}, .remedy = Remedy::kUseTheAccountOfThatName};
    case MEStatusAccountFailed:
      return {.why = {}, .remedy = Remedy::kCheckTheAccounts};
    case MEStatusInvalidData:
      return {.why = {}, .remedy = Remedy::kMakeARelation};
    case MEStatusNameRefused:
      return {.why = {}, .remedy = Remedy::kUseTheNameLikeThat};
    case MEStatusNameFailed:
      return {.why = {}, .remedy = Remedy::kMakeTheUpperNameFirst};
    case MEStatusJournalEntryNotRemoved:
      return {.why = "the journal entry's intercompany row could not be saved",
              .remedy = Remedy::kReadTheLogBooksUnchanged};
    case MEStatusException:
      return {.why = "nothing was booked because of an error", .remedy = Remedy::kReadTheLog};
    default:
      return {};
  }
}

Reason ReasonOfRemoval(std::int32_t status) noexcept {
  switch (status) {
    case MEStatusJournalEntryNotRemoved:
    case MEStatusRowsNotRemoved:
      return {.why = {}, .remedy = Remedy::kReadTheLogBooksUnchanged};
    default:
      return {};
  }
}

Reason ReasonOfState(std::int32_t status) noexcept {
  switch (status) {
    case MEStatusPermissionDenied:
      return {.why = "the user has no right to move transactions of that type to another state",
              .remedy = Remedy::kAskForTheRight};
    case MEStatusInvalidData:
      return {.why = "there is no such relation or intercompany transaction",
              .remedy = Remedy::kSeeRelationsAndRequests};
    case MEStatusReadFailed:
    case MEStatusWriteFailed:
      return {.why = "the new state could not be written", .remedy = Remedy::kReadTheLogStateUnchanged};
    case MEStatusRowsNotRemoved:
      return {.why = "the transaction itself could not be marked as confirmed",
              .remedy = Remedy::kTransactionHasChanged};
    default:
      return {};
  }
}

Reason ReasonOfSaving(std::int32_t status) noexcept {
  switch (status) {
    case MEStatusPermissionDenied:
      return {.why = "the user has no right to view transactions of that type", .remedy = Remedy::kAskForTheRight};
    case MEStatusDeclined:
      return {.why = "the rejected transaction could not be saved"};
    case MEStatusInvalidData:
      return {.why = "there is no relation with the partner", .remedy = Remedy::kSeeRelations};
    case MEStatusException:
      return {.why = "the rejected transaction could not be saved because of an error", .remedy = Remedy::kReadTheLog};
    default:
      return {};
  }
}

Reason ReasonOfCarrying(std::int32_t status) noexcept {
  if (status != MEStatusFeatureDisabled) return {};
  return {.why = "the multi-entity feature is switched off; letters stay where they lie, and none are made"};
}

Reason OwnReasonOf(UseCase what, std::int32_t status) noexcept {
  switch (what) {
    case UseCase::kCreateRelation:
    case UseCase::kUpdateRelation:
    case UseCase::kDeleteRelation:
    case UseCase::kReadRelations:
      return ReasonOfRelation(what, status);
    case UseCase::kRecordJournalEntry:
    case UseCase::kAcceptRequest:
      return ReasonOfBooking(status);
    case UseCase::kRemoveJournalEntry:
      return ReasonOfRemoval(status);
    case UseCase::kSetTransactionState:
    case UseCase::kSendRequest:
    case UseCase::kWithdrawRequest:
      return ReasonOfState(status);
    case UseCase::kSaveRejection:
    case UseCase::kRejectRequest:
      return ReasonOfSaving(status);
    case UseCase::kListRejections:
      if (status != MEStatusReadFailed) return {};
      return {.why = "the rejected transactions could not be read, or one of them has no relation any more",
              .remedy = Remedy::kReadTheLog};
    case UseCase::kDeleteRejection:
      if (status != MEStatusDeclined) return {};
      return {.why = "there is no rejected transaction with that request id", .remedy = Remedy::kSeeRejections};
    case UseCase::kExchange:
      return ReasonOfCarrying(status);
    case UseCase::kFindRequest:
      if (status == MEStatusDeclined)
        return {.why = "the request is not known, or there is no relation with the partner"};
      return {};
    default:
      return {};
  }
}

Remedy GeneralRemedyOf(std::int32_t status) noexcept {
  switch (status) {
    case MEStatusFeatureDisabled:
      return Remedy::kAskWhoKeepsTheSwitches;
    case MEStatusPermissionDenied:
      return Remedy::kAskForTheRight;
    case MEStatusException:
      return Remedy::kReadTheLog;
    default:
      return Remedy::kNone;
  }
}

}  // namespace

Refusal RefusalFor(UseCase what, std::int32_t status) {
  const Reason own = OwnReasonOf(what, status);
  return {.what = what,
          .status = status,
          .why = std::string(own.why.empty() ? GeneralMeaningOf(status) : own.why),
          .remedy = own.remedy == Remedy::kNone ? GeneralRemedyOf(status) : own.remedy};
}

}  // namespace desk
