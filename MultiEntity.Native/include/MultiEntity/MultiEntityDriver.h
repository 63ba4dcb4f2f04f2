#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/Export.h"
#include "MultiEntity/Records.h"
#include "MultiEntityHost/ChartOfAccounts.h"
#include "MultiEntityHost/DateType32.h"
#include "MultiEntityHost/Enumerations.h"
#include "MultiEntityHost/TString.h"

// Intercompany accounting for one company file: what a host and its intercompany screens call. Every operation runs on
// the host's user-interface thread, works on the attached host's data and answers before it returns. Texts and lists
// passed by value are the operation's; results go into the caller's containers.
//
// A realm id names a partner company and has 1 to 19 characters. An operation "is gated" when it answers
// MEStatusFeatureDisabled while the remote switches turn the feature off. Unless an operation says that it catches the
// host's exceptions, they pass through it.
class MultiEntityDriver {
 public:
  // Whether the feature is on, for all or for bills or checks. The remote switches are read once per process; switches
  // that cannot be read leave the feature on.
  MULTIENTITY_API static bool IsFeatureEnabled(MESupportCheckKey supportKey, MEKillSwitchKey killKey);

  // Whether the signed-in user has a right. `feature` names what a transaction right is asked for.
  MULTIENTITY_API static bool HasMEPermission(MEPermissionType permission, ProgramFeature feature);

  // Whether the remote switches let accounts of that type be used; asked afresh each time. False outside 0 to 15.
  MULTIENTITY_API static bool IsAccountTypeEnabledForME(KrEnumerations::AccntTypeType type);

  // Relates this company to a partner, whose name has 1 to 59 characters. `accounts` holds one due-from and one due-to
  // account, in any order; a new relation in state MEStateWithoutAccounts needs none. A relation left pending or
  // without accounts is taken up again: its name and type are kept, the accounts given now are filled in. Gated; needs
  // the right to manage relations.
  MULTIENTITY_API static MEStatusCode CreateRelation(Util::TString realmId, Util::TString partnerName,
                                                     MERelationType relationType, MEState state,
                                                     std::vector<MEAccountInfo> accounts);

  // Puts the accounts' record numbers into `row` by their roles, after checking that each can serve in a relation. The
  // row is not written to the store; after a failure it holds the accounts before the failing one.
  MULTIENTITY_API static MEStatusCode PopulateCOAInRelation(DBMultiEntityRelation& row,
                                                            std::vector<MEAccountInfo> accounts);

  // Changes a relation's state and accounts. Gated; needs the right to manage relations unless `info` skips it.
  MULTIENTITY_API static MEStatusCode UpdateRelation(MERelationInfo info);

  // Deletes a relation, or deactivates it while transactions refer to it. A pending one only with `force`. Gated; needs
  // the right to manage relations.
  MULTIENTITY_API static MEStatusCode DeleteRelation(Util::TString realmId, bool force);

  // Fills `out` with the relation to that partner. Gated. After a failure `out` is unspecified.
  MULTIENTITY_API static MEStatusCode GetRelation(Util::TString realmId, DBMultiEntityRelation& out);
  MULTIENTITY_API static MEStatusCode GetRelationById(long relationId, DBMultiEntityRelation& out);
  // Hands `out` to the store, which fills it with every relation in its own order. Gated.
  MULTIENTITY_API static MEStatusCode GetRelationsList(std::vector<DBMultiEntityRelation>& out);
  // Appends the partners' realm ids to `out`, on request without the relations that carry no accounts. Gated.
  MULTIENTITY_API static MEStatusCode GetRelationRealmIdList(std::vector<std::string>& out, bool skipWithoutAccounts);

  // Whether an account may carry an intercompany balance. A null account may not, nor one for which the host cannot
  // answer. Catches the host's exceptions.
  MULTIENTITY_API static bool IsCOAValidForMultiEntity(CAccnt* account);

  // Replaces `accounts` by the eligible accounts that `filter` leaves, by record number, with the two texts of the
  // host's account pickers. `realmId` matters for MEAccountFilterUnusedOrOwn only. Gated; catches the host's
  // exceptions. After a failure `accounts` is as it was.
  MULTIENTITY_API static MEStatusCode GetAccountsList(
      std::unordered_map<long, std::pair<std::string, std::string>>& accounts, MEAccountFilter filter,
      std::string realmId);

  // Replaces `accounts` by all accounts of one type, eligible or not, in the host's order. Gated.
  MULTIENTITY_API static MEStatusCode GetAccountListByType(short type,
                                                           std::vector<std::pair<std::string, long>>& accounts);

  // Books an intercompany transaction as a general journal entry: `amount` from the due-to account to the expense
  // account, under a name, remembered under the request id (up to 36 characters) that both companies know. An expense
  // account or name with the id -1 is created first; when a later step fails, the host alone takes it back. `txnId`
  // receives the journal entry's id once the entry was made and its row could be filled. Not gated; needs the right to
  // create journal entries; catches the host's exceptions.
  MULTIENTITY_API static MEStatusCode RecordGeneralJournalEntry(Util::TString partnerRealmId,
                                                                MEAccountInfo expenseAccount,
                                                                std::int32_t dueToAccountId, Util::TString amount,
                                                                Util::TString requestId, MECNameInfo name,
                                                                std::uint32_t& txnId);

  // Deletes a journal entry and its rows. Neither gated nor bound to a right; catches the host's exceptions.
  MULTIENTITY_API static MEStatusCode RemoveGeneralJournalEntry(std::uint32_t txnId);

  // Whether a journal entry is just being deleted by RemoveGeneralJournalEntry, for the host to ask while it deletes
  // one. The removal sets the flag before and clears it after; a host that sets it itself vouches for its own deletion.
  MULTIENTITY_API static void SetGJEDeletionDueToFDPFailure(bool deleting);
  MULTIENTITY_API static bool GetGJEDeletionDueToFDPFailure();

  // Replaces `list` by the intercompany lines of one host transaction. Strict: a line that the user may not see,
  // without data or without a relation ends the listing, and the lines before it stay. The account names stay empty.
  // Not gated; catches the host's exceptions.
  MULTIENTITY_API static MEStatusCode GetListOfTxnTargetEntries(std::vector<METxnInfo>& list, long txnId);

  // Replaces `list` by the intercompany lines dated `from` to `to`, both included; a null date leaves that side open.
  // Lenient: lines that the user may not see, that are gone or that lie outside are left out; only a line without a
  // relation ends the listing, and the lines before it stay. Not gated; catches the host's exceptions.
  MULTIENTITY_API static MEStatusCode GetListOfTxnTargetEntries(std::vector<METxnInfo>& list, DateType32 from,
                                                                DateType32 to);

  // Moves an intercompany transaction to a state, named as the partner's messages name it: by realm and request id (1
  // to 36 characters). For MEStateEstablished the host first updates its own transaction. Gated; needs the right to
  // modify transactions of the row's type.
  MULTIENTITY_API static MEStatusCode UpdateTransactionWithState(Util::TString partnerRealmId, Util::TString requestId,
                                                                 MEState state);

  // The same, named as the host's screens name it: by a line of a host transaction. The host's transaction is left as
  // it is. Not gated; the right that is needed follows from the state before.
  MULTIENTITY_API static MEStatusCode UpdateTransactionWithState(std::int32_t txnId, std::int32_t targetId,
                                                                 MEState state);

  // MEStatusSuccess when a partner's request id is known, as a transaction of that partner or as a rejected one of any;
  // MEStatusDeclined when it is not. Not gated; catches the host's exceptions.
  MULTIENTITY_API static MEStatusCode DoesTransactionExist(Util::TString partnerRealmId, Util::TString requestId);

  // Remembers a bill (9) or check (3) that the partner rejected; other types are refused. Request id and partner's id
  // have up to 36 characters, the amount text up to 22. Needs the right to view such transactions; catches the host's
  // exceptions.
  MULTIENTITY_API static MEStatusCode SaveRejectedTransaction(Util::TString requestId, std::int16_t txnType,
                                                              Util::TString partnerRealmId, Util::TString amount,
                                                              Util::TString partnerTxnId);

  // Appends the rejected transactions that the user may view to `list`. A row without a relation ends the listing, and
  // the entries before it stay. Gated.
  MULTIENTITY_API static MEStatusCode GetAllRejectedTransaction(std::vector<MERejectedTxnInfo>& list);

  // Neither gated nor bound to a right.
  MULTIENTITY_API static MEStatusCode DeleteRejectedTransaction(Util::TString requestId);

  // The realm id that the company file remembers, or null. A file that remembers none is given `realmId` to remember.
  // `ok` is false when the preference could be neither read nor given. The caller owns the block and gives it back with
  // the platform's LocalFree. Catches the host's exceptions.
  MULTIENTITY_API static char* GetMECacheRealmId(Util::TString realmId, bool& ok);

  // Remembers `realmId`, a NUL-terminated text. False when it could not be stored. Catches the host's exceptions.
  MULTIENTITY_API static bool SetMECacheRealmId(char* realmId);

  // True when the caller must not go on: no realm id is known, or the company now reports another one than the file
  // remembers. The user has been told, and may have asked for the plug-in. Catches the host's exceptions.
  MULTIENTITY_API static bool BlockUserIfRealmReset(Util::TString realmId);

  // False when the user was told that there is no established relation and the plug-in was opened to set one up.
  // Catches the host's exceptions.
  MULTIENTITY_API static bool CheckForPluginNavigation();

  // The persona that belongs to a role of the relations screen. Catches the host's exceptions.
  MULTIENTITY_API static SybaseRelationsUserPersona SybaseRelationsUserPersonaForRole(int role);

 protected:
  MultiEntityDriver() = default;
  ~MultiEntityDriver() = default;

 private:
  friend struct MultiEntityPrivateAccess;

  // Append the ids of the host's transactions that a selection yields, on request of those only whose date field lies
  // between two dates. False when the query failed.
  MULTIENTITY_API static bool GetTxns(unsigned int selection, std::vector<unsigned long>& txns);
  MULTIENTITY_API static bool GetTxnsForPeriod(DateType32 from, DateType32 to, unsigned int selection,
                                               unsigned int dateField, std::vector<unsigned long>& txns);

  // Whether the company file remembers another realm id than `realmId`; it remembers `realmId` if it had none.
  MULTIENTITY_API static bool IsRealmReset(Util::TString realmId);
};
