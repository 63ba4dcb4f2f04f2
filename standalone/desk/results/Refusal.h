#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace desk {

// What a person asked for.
enum class UseCase {
  kBackUp,
  kRestore,
  kImport,
  kListAccounts,
  kListNames,
  kListUsers,
  kReadAudit,
  kChangeUsers,
  kReadSettings,
  kChangeSettings,
  kCreateRelation,
  kUpdateRelation,
  kDeleteRelation,
  kReadRelations,
  kRecordJournalEntry,
  kRemoveJournalEntry,
  kListTransactions,
  kSetTransactionState,
  kFindRequest,
  kSaveRejection,
  kListRejections,
  kDeleteRejection,
  kReadRealm,
  kChangeRealm,
  kCheckRealm,
  kCheckPlugin,
  kShowReminder,
  kResetReminder,
  kKeepOpen,
};

// What would be right instead. Each front end says it in its own words.
enum class Remedy {
  kNone,
  kAskAnAdministrator,  // who alone may do this
  kAskForTheRight,      // or an administrator
  kAskWhoKeepsTheSwitches,
  kReadTheLog,
  kReadTheLogBooksUnchanged,  // the books are as they were
  kReadTheLogStateUnchanged,  // the transaction is in the state that it was in
  kSeeRelations,
  kMakeARelation,
  kEstablishTheRelation,
  kNameThePartnersRealm,
  kGiveBothAccounts,             // the due-from and the due-to account, of a relation that exists
  kChooseFreePartnerOrAccounts,  // see what is related and which accounts are free
  kForceOrWait,                  // delete the relation all the same, or wait for the partner
  kChooseUsableAccounts,
  kChooseAssetAndLiability,
  kGiveTwoAccounts,
  kGiveTheRelationAccounts,  // before something is booked to it
  kLeaveOutTheDueToAccount,  // the relation's own is taken
  kNameAnExpenseAccount,
  kGiveAnAmount,
  kGiveTheRequestId,
  kWriteTheRequestIdAsKnown,
  kSeeTheBookedEntry,
  kSeeOwnTransactions,
  kDeleteTheRejection,  // to book what was rejected after all
  kCheckTheEntry,       // its amount and its accounts
  kCheckTheAccounts,
  kUseTheAccountOfThatName,
  kUseTheNameLikeThat,
  kMakeTheUpperNameFirst,
  kSeeJournalEntries,
  kSeeRelationsAndRequests,
  kTransactionHasChanged,  // it is gone from the books or of another type than its intercompany line says
  kSeeRejections,
  kMoveAsTheStateAllows,
  kImportAgain,         // if that is meant
  kBackUpThenReplace,   // what would be given up for the backup
  kMakeAnotherCompany,  // for another currency
  kReplace,             // what is there is kept beside it
};

struct Refusal {
  UseCase what = UseCase::kListAccounts;
  std::optional<std::int32_t> status;  // what the module answered; none when it was not asked
  std::string why;                     // in the terms of the accounting, for people
  Remedy remedy = Remedy::kNone;
};

// What the module's answer to a request means; not for MEStatusSuccess, 1.
Refusal RefusalFor(UseCase what, std::int32_t status);

// Nothing of what was asked for was done.
class Refused : public std::runtime_error {
 public:
  explicit Refused(Refusal refusal) : std::runtime_error(refusal.why), refusal_(std::move(refusal)) {}
  const Refusal& Value() const noexcept { return refusal_; }

 private:
  Refusal refusal_;
};

}  // namespace desk
