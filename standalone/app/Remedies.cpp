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
      return "give with --amount what the partner paid, such as 480.00; a credit of the partner's is negative";
    case Remedy::kGiveTheRequestId:
      return "give with --request the id under which the partner knows the transaction";
    case Remedy::kWriteTheRequestIdAsKnown:
      return "if it is the same request, there is nothing to book; otherwise ask the partner for its own request id";
    case Remedy::kSeeTheBookedEntry:
      return "see it with: multientity transactions FILE --txn TXN; if it is wrong, take it back with: multientity "
             "journal remove FILE --txn TXN, and book again";
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
    case Remedy::kSeeJournalEntries:
      return "there is no journal entry with that id, or it may not be deleted; see: multientity transactions FILE";
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
    case Remedy::kReplace:
      return "add --replace to restore the backup in its place; what is there is moved aside, not deleted";
  }
  return {};
}

std::string_view HintWhenNotKnown() noexcept {
  return "look whether it is there, and do it again only if it is not; see: multientity transactions FILE, for a "
         "partner's request: multientity transaction exists FILE --realm ID --request ID";
}

}  // namespace app
