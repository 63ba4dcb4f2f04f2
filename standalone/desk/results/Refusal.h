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
  kExport,
  kImport,
  kListAccounts,
  kChangeAccounts,
  kListNames,
  kChangeNames,
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
  kMoveExpense,
  kReverseTransaction,
  kCorrectTransaction,
  kRemoveTransaction,
  kAttach,
  kDetach,
  kRecordTransaction,
  kCopyTransaction,
  kReadBalances,
  kReadRegister,
  kReadOpenItems,
  kShowTransaction,
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
  kPair,
  kReadPartners,
  kUseIdentity,
  kExchange,
  kReadInbox,
  kAcceptRequest,
  kRejectRequest,
  kDisputeRequest,
  kNoteOnRequest,
  kReadOutbox,
  kSendRequest,
  kWithdrawRequest,
  kReadRules,
  kChangeRules,
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
  kNameTheCompanysRealm,
  kGiveBothAccounts,             // the due-from and the due-to account, of a relation that exists
  kChooseFreePartnerOrAccounts,  // see what is related and which accounts are free
  kForceOrWait,                  // delete the relation all the same, or wait for the partner
  kChooseUsableAccounts,
  kChooseAssetAndLiability,
  kGiveTwoAccounts,
  kKeepTheAccount,           // of a relation, as something is booked on it
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
  kRenameInstead,        // what is used stays
  kDeleteTheLowerFirst,  // what stands below it in the list
  kChangeTheRelation,    // which uses the account
  kSeeRelationsAndRequests,
  kTransactionHasChanged,  // it is gone from the books or of another type than its intercompany line says
  kSeeRejections,
  kMoveAsTheStateAllows,
  kImportAgain,         // if that is meant
  kBackUpThenReplace,   // what would be given up for the backup
  kMakeAnotherCompany,  // for another currency
  kDateLaterOrReopen,   // the books are closed on that day
  kTakeBackTheEntry,    // of a partner's request, or move its expense
  kReverseOrRemove,     // what was entered here
  kReverseInstead,
  kRemoveTheReversal,      // or enter the original anew
  kSeeTheReversal,         // and what may stand in the place of the original
  kCopyTheOriginal,        // which a reversal has closed for good
  kTakeBackTheLaterFirst,  // which stands upon this one
  kWaitForThePartner,
  kSettleFirst,  // by hand, as an exchange will not
  kGiveALaterDate,
  kEnterAnEntry,
  kMoveTheExpenseAgain,
  kGiveTheSharesAgain,  // or say that no partner shares it any more
  kSayWhatIsWrong,
  kReplace,         // what is there is kept beside it
  kNameWhom,        // the bill or the check is for
  kGiveLines,       // with amounts that come to something
  kGiveOtherLines,  // than on the account that is credited, or credit another one
  kBalanceTheEntry,
  kNameThePayable,  // an account of type Accounts Payable
  kNameTheBank,     // or the credit card
  kGiveThePartner,  // in the place of an account that is paired with one
  kCheckTheShares,
  kShareByAnAmount,  // of what is debited or credited
  kRecordAgain,      // if it is another transaction
  kCopyAnotherOne,   // that was entered here and reverses none
  kSeeTransactions,
  kSeeTheAttachments,
  kReplaceTheFile,  // which is gone then, or choose another name
  kPairFirst,
  kSeePartners,
  kMoveTheIdentityAway,
  kTakeUpTheKey,            // of the identity, with the next letters
  kBringTheIdentity,        // from where it is, or from its export
  kSendItToThePartner,      // who accepts it
  kTalkToThePartner,        // whose books or whose key are other ones
  kCompareFingerprints,     // with the partner, on the telephone
  kUseTheExistingRelation,  // if it is the partner's
  kLeaveOutTheAccounts,
  kRemoveThePairingFirst,
  kWaitForTheOtherProgram,
  kAnswerInTheInbox,    // with the request
  kWaitForTheReversal,  // of the partner's request, or move the expense
  kSendToThePartner,    // whose answer moves it
  kNameExpenseAndName,  // to which a request is to be booked
  kSeeTheInbox,
  kSeeTheOutbox,
  kNameOnePartner,
  kGiveAnotherRequestId,      // by entering the line anew
  kCarryUntilCompared,        // with the partners, or insist
  kConfirmWhatCameBack,       // as a backup was restored, or a copy was at work
  kEnterWhatWasSent,          // as these books lost it
  kEnterUnderTheLostRequest,  // or as another one
  kSendByNameOrTakeBack,      // what may have been sent before
  kAddARule,                  // or say where the request is to be booked
  kSeeTheRules,               // and take out the one that is wrong
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
