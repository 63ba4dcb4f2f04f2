#include "standalone/app/Remedies.h"

namespace app {

std::string_view HintFor(desk::Remedy remedy) noexcept {
  using desk::Remedy;
  switch (remedy) {
    case Remedy::kNone:
      break;
    case Remedy::kAskAnAdministrator:
      return "an administrator may do this; name one with --user";
    case Remedy::kAskForTheRight:
      return "an administrator may do this, or give the right with: multientity users change FILE NAME --right ...";
    case Remedy::kAskWhoKeepsTheSwitches:
      return "the remote switches beside the company file decide; ask who keeps them";
    case Remedy::kReadTheLog:
      return "the operations log says more: multientity log FILE";
    case Remedy::kReadTheLogBooksUnchanged:
      return "the books are as they were; the operations log says more: multientity log FILE";
    case Remedy::kReadTheLogStateUnchanged:
      return "the state is as it was; see the operations log: multientity log FILE";
    case Remedy::kSeeRelations:
      return "see the partners with: multientity relation list FILE";
    case Remedy::kMakeARelation:
      return "see the partners with: multientity relation list FILE; a new one is related with: multientity relation "
             "create FILE --realm REALM --partner NAME --due-from ACCOUNT --due-to ACCOUNT";
    case Remedy::kEstablishTheRelation:
      return "once the partner agrees, establish it with: multientity relation update FILE --realm REALM --state "
             "established; then book again";
    case Remedy::kNameThePartnersRealm:
      return "give the realm id of the partner company; this company's own is shown by: multientity realm show FILE";
    case Remedy::kNameTheCompanysRealm:
      return "give this company's own realm id; those of its partners are shown by: multientity relation list FILE";
    case Remedy::kGiveBothAccounts:
      return "give both --due-from and --due-to; an update needs a relation that exists (multientity relation "
             "list FILE)";
    case Remedy::kChooseFreePartnerOrAccounts:
      return "see what is related already with: multientity relation list FILE, and which accounts are free with: "
             "multientity accounts FILE --free";
    case Remedy::kForceOrWait:
      return "the partner has not answered yet; add --force to delete the relation all the same";
    case Remedy::kChooseUsableAccounts:
      return "see the accounts that can serve with: multientity accounts FILE --free --for REALM; sub-accounts, "
             "receivables, payables and non-posting accounts cannot";
    case Remedy::kChooseAssetAndLiability:
      return "see the accounts that are free with: multientity accounts FILE --free --for REALM; an account of another "
             "type is taken with --any-account";
    case Remedy::kGiveTwoAccounts:
      return "give two accounts: with --due-from an asset, what the partner owes this company; with --due-to a "
             "liability, what this company owes the partner";
    case Remedy::kKeepTheAccount:
      return "leave the relation that account, which may be called otherwise with: multientity account rename FILE "
             "ACCOUNT NEW-NAME; what no partner has seen can be removed first with: multientity remove FILE TXN, what "
             "was booked from a request with: multientity journal remove FILE TXN";
    case Remedy::kGiveTheRelationAccounts:
      return "give it both with: multientity relation update FILE --realm REALM --due-from ACCOUNT --due-to ACCOUNT; "
             "then book again";
    case Remedy::kLeaveOutTheDueToAccount:
      return "leave out --due-to; the relation gets another account with: multientity relation update FILE --realm "
             "REALM --due-from ACCOUNT --due-to ACCOUNT";
    case Remedy::kNameAnExpenseAccount:
      return "name with --expense the account that the partner's bill belongs to; the relation's due-to account is "
             "credited by itself";
    case Remedy::kGiveAnAmount:
      return "give with --amount what the partner paid, such as 480; a credit of the partner's is negative";
    case Remedy::kGiveTheRequestId:
      return "give with --request the id under which the partner knows the transaction";
    case Remedy::kWriteTheRequestIdAsKnown:
      return "if it is the same request, there is nothing to book; otherwise ask the partner for its own request id";
    case Remedy::kSeeTheBookedEntry:
      return "see it with: multientity transactions FILE --txn TXN; if it is wrong, take it back with: multientity "
             "journal remove FILE TXN, and book again";
    case Remedy::kSeeOwnTransactions:
      return "the partner books it, not this company; see the intercompany lines with their request ids with: "
             "multientity transactions FILE";
    case Remedy::kDeleteTheRejection:
      return "see it with: multientity rejected list FILE; to book it after all, delete the rejection first with: "
             "multientity rejected delete FILE --realm REALM --request REQUEST";
    case Remedy::kCheckTheEntry:
      return "check that the amount is within range and that both accounts take postings, with: multientity accounts "
             "FILE";
    case Remedy::kCheckTheAccounts:
      return "check the expense account and the due-to account with: multientity accounts FILE";
    case Remedy::kUseTheAccountOfThatName:
      return "there is an account of that name; book to it with --expense";
    case Remedy::kUseTheNameLikeThat:
      return "there is a name like that; book under it with --name";
    case Remedy::kMakeTheUpperNameFirst:
      return "a name under another one needs that one first; see: multientity names FILE";
    case Remedy::kRenameInstead:
      return "what is used stays in the list; give it another name with: multientity account rename FILE ACCOUNT "
             "NEW-NAME, or multientity name rename FILE NAME NEW-NAME";
    case Remedy::kDeleteTheLowerFirst:
      return "delete those below it first; see: multientity accounts FILE, multientity names FILE";
    case Remedy::kChangeTheRelation:
      return "give the relation other accounts first with: multientity relation update FILE --realm REALM --due-from "
             "ACCOUNT --due-to ACCOUNT";
    case Remedy::kSeeRelationsAndRequests:
      return "see the partners with: multientity relation list FILE, and the intercompany lines with their request ids "
             "with: multientity transactions FILE";
    case Remedy::kTransactionHasChanged:
      return "the transaction is gone from the books, or is of another type than its intercompany line says; its state "
             "is as it was";
    case Remedy::kSeeRejections:
      return "see what is kept with: multientity rejected list FILE";
    case Remedy::kMoveAsTheStateAllows:
      return "see which state it is in with: multientity transactions FILE; which moves each state allows, "
             "multientity transaction set-state --help tells";
    case Remedy::kImportAgain:
      return "if that is meant, import it once more with --again";
    case Remedy::kBackUpThenReplace:
      return "make a backup of it first with: multientity backup FILE TO, then add --replace to restore all the same";
    case Remedy::kMakeAnotherCompany:
      return "another currency needs a company of its own; make one with: multientity init FILE --name NAME "
             "--home-currency CODE";
    case Remedy::kNameWhom:
      return "give with --name whom it is for, or with --new-name a vendor that is to be created; see: multientity "
             "names FILE";
    case Remedy::kGiveLines:
      return "give each line with --line ACCOUNT AMOUNT, such as --line Utilities 480.00";
    case Remedy::kGiveOtherLines:
      return "name with --line what it is for, such as --line Utilities 480.00, or with --payable or --bank another "
             "account to credit";
    case Remedy::kBalanceTheEntry:
      return "debits are positive and credits negative; change or add a line with --line ACCOUNT AMOUNT";
    case Remedy::kNameThePayable:
      return "name with --payable an account of type Accounts Payable; see: multientity accounts FILE";
    case Remedy::kNameTheBank:
      return "name with --bank an account of type Bank or Credit Card; see: multientity accounts FILE";
    case Remedy::kGiveThePartner:
      return "what a partner bears is given with --partner NAME --share SHARE";
    case Remedy::kCheckTheShares:
      return "give each partner once with --partner NAME --share SHARE: a percentage like 50%, a fraction like 1/3, or "
             "an "
             "amount, together no more than the whole";
    case Remedy::kShareByAnAmount:
      return "give what the partner bears as an amount: above zero, such as --share 50.00, it is taken out of what is "
             "debited, below zero, such as --share -50.00, out of what is credited";
    case Remedy::kRecordAgain:
      return "if it is another one all the same, add --again";
    case Remedy::kCopyAnotherOne:
      return "copy one that was entered here and is no reversal";
    case Remedy::kSeeTransactions:
      return "see the intercompany ones with: multientity transactions FILE, and one of any kind, with what reverses "
             "it, with: multientity show FILE TXN";
    case Remedy::kSeeTheAttachments:
      return "see what is attached with: multientity show FILE TXN; give it as it stands there";
    case Remedy::kDateLaterOrReopen:
      return "date it after that day, and reverse what cannot be removed any more; an administrator may change closed "
             "days with --after-close, or open them with: multientity settings set FILE closing-date DATE";
    case Remedy::kTakeBackTheEntry:
      return "take it back with: multientity journal remove FILE TXN, or move its expense with: multientity "
             "journal move FILE TXN --expense ACCOUNT";
    case Remedy::kReverseOrRemove:
      return "take it back with: multientity reverse FILE TXN, or, while nobody was sent anything, with: multientity "
             "remove FILE TXN";
    case Remedy::kReverseInstead:
      return "reverse it instead with: multientity reverse FILE TXN";
    case Remedy::kSeeTheReversal:
      return "what stands in its place, if anything does, is corrected or reversed instead; see it with: multientity "
             "show FILE TXN, or enter the original once more with: multientity bill copy FILE TXN, or check copy, or "
             "entry copy";
    case Remedy::kCopyTheOriginal:
      return "enter the original once more with: multientity bill copy FILE TXN, or check copy, or entry copy";
    case Remedy::kRemoveTheReversal:
      return "while nobody was sent anything, take it back with: multientity remove FILE TXN; otherwise enter the "
             "original anew";
    case Remedy::kTakeBackTheLaterFirst:
      return "take that one back first with: multientity remove FILE TXN, or multientity reverse FILE TXN";
    case Remedy::kWaitForThePartner:
      return "wait for the answer, or ask for it not to be booked any more with: multientity outbox withdraw FILE "
             "REQUEST; of a partner that is not paired, withdraw it with: multientity transaction set-state FILE --txn "
             "TXN --target LINE --state closed";
    case Remedy::kSettleFirst:
      return "settle it first with: multientity transaction set-state FILE --txn TXN --target LINE --state "
             "established, "
             "rejected or deactivated";
    case Remedy::kGiveALaterDate:
      return "give that day or a later one with --date";
    case Remedy::kEnterAnEntry:
      return "enter an entry of your own that moves the expenses";
    case Remedy::kMoveTheExpenseAgain:
      return "move the expense once more with: multientity journal move FILE TXN --expense ACCOUNT, where TXN is the "
             "entry "
             "of the partner's request";
    case Remedy::kGiveTheSharesAgain:
      return "give each partner's share again with --partner NAME --share SHARE, or --no-partners";
    case Remedy::kSayWhatIsWrong:
      return "give what is to be another, such as --memo, --number, --date or --line";
    case Remedy::kReplace:
      return "add --replace to restore the backup in its place; what is there is moved aside, not deleted";
    case Remedy::kReplaceTheFile:
      return "choose another name, or add --replace to have that file replaced";
    case Remedy::kPairFirst:
      return "invite the first partner with: multientity partner invite FILE --name NAME --due-from ACCOUNT --due-to "
             "ACCOUNT, or accept its invitation with: multientity partner accept FILE INVITATION";
    case Remedy::kSeePartners:
      return "see with whom this company is paired, and how far, with: multientity partner list FILE";
    case Remedy::kMoveTheIdentityAway:
      return "leave out --lost to replace its key; if it is not this company's, move it to another place first";
    case Remedy::kTakeUpTheKey:
      return "these books take the key up when letters are carried: multientity exchange run FILE";
    case Remedy::kBringTheIdentity:
      return "bring the identity of this company from where it works with: multientity identity export FILE there, and "
             "multientity identity import FILE TEXT here";
    case Remedy::kSendItToThePartner:
      return "send it to the partner, which accepts it with: multientity partner accept FILE INVITATION";
    case Remedy::kTalkToThePartner:
      return "talk to the partner; one of both companies has to change that before they are paired";
    case Remedy::kCompareFingerprints:
      return "call the partner under a number that you know and have it read out what this prints there: multientity "
             "partner fingerprint FILE; if it is another one, somebody else has accepted";
    case Remedy::kUseTheExistingRelation:
      return "see it with: multientity relation list FILE; if it is the one with this partner, add "
             "--use-existing-relation";
    case Remedy::kLeaveOutTheAccounts:
      return "leave out --due-from and --due-to; the relation gets other accounts with: multientity relation update "
             "FILE";
    case Remedy::kRemoveThePairingFirst:
      return "end the pairing first with: multientity partner remove FILE PARTNER";
    case Remedy::kWaitForTheOtherProgram:
      return "wait until it is done, and carry once more";
    case Remedy::kAnswerInTheInbox:
      return "answer it, so that the partner learns of it, with: multientity inbox accept FILE REQUEST --expense "
             "ACCOUNT, "
             "or multientity inbox reject FILE REQUEST --reason TEXT";
    case Remedy::kWaitForTheReversal:
      return "ask the partner to reverse it, and accept the reversal; its expense moves to another account with: "
             "multientity journal move FILE TXN --expense ACCOUNT";
    case Remedy::kSendToThePartner:
      return "send the request with: multientity exchange send FILE REQUEST; the partner's answer moves it";
    case Remedy::kNameExpenseAndName:
      return "give the account with --expense, or a new one with --new-expense, and whom the entry is with, with "
             "--name "
             "or, as a new vendor, --new-name";
    case Remedy::kSeeTheInbox:
      return "see what partners ask for with: multientity inbox list FILE --all";
    case Remedy::kSeeTheOutbox:
      return "see what was sent, and how far it is, with: multientity outbox list FILE --all";
    case Remedy::kNameOnePartner:
      return "name the partner, too: --partner PARTNER";
    case Remedy::kGiveAnotherRequestId:
      return "enter it anew, which gives it a request id of its own: multientity bill correct FILE TXN, or check or "
             "entry";
    case Remedy::kCarryUntilCompared:
      return "carry letters until each partner has told what it holds, which brings back what is missing: multientity "
             "exchange run FILE here and there; an administrator who knows better goes on with: multientity exchange "
             "insist FILE";
    case Remedy::kConfirmWhatCameBack:
      return "see what came back with: multientity exchange status FILE; then an administrator confirms which it was: "
             "multientity exchange confirm FILE --restored if a backup was restored here; multientity exchange confirm "
             "FILE --copy-ended once a copy of this company that was at work does not work any more";
    case Remedy::kEnterWhatWasSent:
      return "see what the partner knows with: multientity outbox show FILE REQUEST";
    case Remedy::kEnterUnderTheLostRequest:
      return "enter it under the request that the partner knows with: multientity bill record FILE --lost REQUEST, or "
             "check or entry; a correction after its transaction was reversed; if it is another one all the same, add "
             "--again";
    case Remedy::kSendByNameOrTakeBack:
      return "if it is that one, take it back with: multientity remove FILE TXN, and enter it under the request that "
             "the partner knows with: multientity bill record FILE --lost REQUEST, or check or entry; if it is another "
             "one, send it with: multientity exchange send FILE REQUEST";
    case Remedy::kAddARule:
      return "book it with: multientity inbox accept FILE REQUEST --expense ACCOUNT, where a request that takes back "
             "another one needs no account; or add a rule for those like it with: multientity rules add FILE --partner "
             "PARTNER --name NAME --expense ACCOUNT";
    case Remedy::kSeeTheRules:
      return "see the rules with: multientity rules list FILE, and take out one with: multientity rules remove FILE "
             "RULE; what is to be otherwise is added anew with: multientity rules add FILE";
  }
  return {};
}

std::string_view HintWhenDamaged() noexcept {
  return "multientity restore BACKUP FILE --replace";
}

std::string_view HintWhenNotKnown() noexcept {
  return "look whether it is there, and do it again only if it is not; see: multientity transactions FILE, for a "
         "partner's request: multientity transaction exists FILE --realm ID --request ID";
}

}  // namespace app
