#include "standalone/app/Statuses.h"

#include <string>

#include "standalone/app/Failure.h"

namespace app {

namespace {

std::string_view RelationHint(Request request, MEStatusCode status) noexcept {
  switch (status) {
    case MEStatusInvalidData:
      return request == Request::kReadRelations || request == Request::kDeleteRelation
                 ? "see the partners with: multientity relation list FILE"
                 : "give both --due-from and --due-to; an update needs a relation that exists (multientity relation "
                   "list FILE)";
    case MEStatusConflict:
      return "see what is related already with: multientity relation list FILE, and which accounts are free with: "
             "multientity accounts FILE --free";
    case MEStatusRelationPending:
      return "the partner has not answered yet; add --force to delete the relation all the same";
    case MEStatusAccountUnusable:
      return "see the accounts that can serve with: multientity accounts FILE --free --for REALM; sub-accounts, "
             "receivables, payables and non-posting accounts cannot";
    default:
      return {};
  }
}

std::string_view JournalHint(MEStatusCode status) noexcept {
  switch (status) {
    case MEStatusDeclined:
      return "check that the amount is within range, that both accounts take postings, and that no entry carries this "
             "request id already";
    case MEStatusExpenseAccountRefused:
      return "there is an account of that name; book to it with --expense";
    case MEStatusAccountFailed:
      return "check the expense account and the due-to account with: multientity accounts FILE";
    case MEStatusInvalidData:
      return "there is no relation with that partner; see: multientity relation list FILE";
    case MEStatusNameRefused:
      return "there is a name like that; book under it with --name";
    case MEStatusNameFailed:
      return "a name under another one needs that one first; see: multientity names FILE";
    case MEStatusJournalEntryNotRemoved:
      return "the books are as they were; the operations log says more: multientity log FILE";
    default:
      return {};
  }
}

std::string_view RemovalHint(MEStatusCode status) noexcept {
  switch (status) {
    case MEStatusJournalEntryNotRemoved:
      return "there is no journal entry with that id, or it may not be deleted; see: multientity transactions FILE";
    case MEStatusRowsNotRemoved:
      return "the books are as they were; the operations log says more: multientity log FILE";
    default:
      return {};
  }
}

std::string_view SetStateHint(MEStatusCode status) noexcept {
  switch (status) {
    case MEStatusInvalidData:
      return "see the partners with: multientity relation list FILE, and the intercompany lines with their request ids "
             "with: multientity transactions FILE";
    case MEStatusRowsNotRemoved:
      return "the transaction is gone from the books, or is of another type than its intercompany line says; its state "
             "is as it was";
    case MEStatusReadFailed:
    case MEStatusWriteFailed:
      return "the state is as it was; see the operations log: multientity log FILE";
    default:
      return {};
  }
}

std::string_view RejectionHint(Request request, MEStatusCode status) noexcept {
  switch (status) {
    case MEStatusInvalidData:
      return "see the partners with: multientity relation list FILE";
    case MEStatusReadFailed:
      return "see the operations log: multientity log FILE";
    case MEStatusDeclined:
      return request == Request::kDeleteRejection ? "see what is kept with: multientity rejected list FILE"
                                                  : std::string_view();
    default:
      return {};
  }
}

// Where a number says something else as the answer to one request than it does in general.
std::string_view OwnMeaningOf(Request request, MEStatusCode status) noexcept {
  switch (request) {
    case Request::kSetTransactionState:
      if (status == MEStatusInvalidData) return "there is no such relation or intercompany transaction";
      if (status == MEStatusReadFailed || status == MEStatusWriteFailed) return "the new state could not be written";
      if (status == MEStatusRowsNotRemoved) return "the transaction itself could not be marked as confirmed";
      return {};
    case Request::kRecordJournalEntry:
      if (status == MEStatusJournalEntryNotRemoved) return "the journal entry's intercompany row could not be saved";
      if (status == MEStatusException) return "nothing was booked because of an error";
      return {};
    case Request::kFindRequest:
      if (status == MEStatusSuccess) return "the request is known";
      if (status == MEStatusDeclined) return "the request is not known, or there is no relation with the partner";
      return {};
    case Request::kSaveRejection:
      if (status == MEStatusDeclined) return "the rejected transaction could not be saved";
      if (status == MEStatusInvalidData) return "there is no relation with the partner";
      if (status == MEStatusException) return "the rejected transaction could not be saved because of an error";
      return {};
    case Request::kListRejections:
      if (status == MEStatusReadFailed)
        return "the rejected transactions could not be read, or one of them has no relation any more";
      return {};
    case Request::kDeleteRejection:
      if (status == MEStatusDeclined) return "there is no rejected transaction with that request id";
      return {};
    default:
      return {};
  }
}

}  // namespace

std::string_view MeaningOf(Request request, MEStatusCode status) noexcept {
  const std::string_view own = OwnMeaningOf(request, status);
  return own.empty() ? MeaningOf(status) : own;
}

std::string_view MeaningOf(MEStatusCode status) noexcept {
  switch (status) {
    case MEStatusDeclined:
      return "nothing was done";
    case MEStatusSuccess:
      return "done";
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
  }
  return "an answer without a known meaning";
}

std::string_view HintFor(Request request, MEStatusCode status) noexcept {
  if (status == MEStatusFeatureDisabled)
    return "the remote switches beside the company file decide; ask who keeps them";
  if (status == MEStatusPermissionDenied) {
    return "an administrator may do this, or give the right with: multientity users change FILE NAME --right ...";
  }
  if (status == MEStatusException) return "the operations log says more: multientity log FILE";
  switch (request) {
    case Request::kCreateRelation:
    case Request::kUpdateRelation:
    case Request::kDeleteRelation:
    case Request::kReadRelations:
      return RelationHint(request, status);
    case Request::kRecordJournalEntry:
      return JournalHint(status);
    case Request::kRemoveJournalEntry:
      return RemovalHint(status);
    case Request::kSetTransactionState:
      return SetStateHint(status);
    case Request::kSaveRejection:
    case Request::kListRejections:
    case Request::kDeleteRejection:
      return RejectionHint(request, status);
    case Request::kListAccounts:
    case Request::kListTransactions:
    case Request::kFindRequest:
      return {};
  }
  return {};
}

void RequireSuccess(Request request, MEStatusCode status) {
  if (status == MEStatusSuccess) return;
  throw Declined(status, std::string(MeaningOf(request, status)), std::string(HintFor(request, status)));
}

std::string StateText(int state) {
  switch (state) {
    case MEStatePending:
      return "pending";
    case MEStateEstablished:
      return "established";
    case MEStateWithoutAccounts:
      return "without-accounts";
    case MEStateDeactivated:
      return "deactivated";
    default:
      return "state " + std::to_string(state);
  }
}

// The numbers are those of relations; 4 is the state in which rejected transactions are shown.
std::string TransactionStateText(int state) {
  return state == MEStateWithoutAccounts ? "rejected" : StateText(state);
}

}  // namespace app
