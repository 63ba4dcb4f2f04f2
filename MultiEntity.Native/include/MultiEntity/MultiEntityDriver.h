#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/Export.h"
#include "MultiEntity/Records.h"
#include "host/ChartOfAccounts.h"
#include "host/DateType32.h"
#include "host/Enumerations.h"
#include "host/TString.h"

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
  // account, in any order, and is not looked at in state MEStateWithoutAccounts. A relation left pending or without
  // accounts is taken up again, with its name and type kept. Gated; needs the right to manage relations.
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

  // Whether an account may carry an intercompany balance. A null account may not.
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
  // account or name with the id -1 is created first, and stays also when a later step fails. `txnId` receives the
  // journal entry's id as soon as there is one. Not gated; needs the right to create journal entries; catches the
  // host's exceptions.
  MULTIENTITY_API static MEStatusCode RecordGeneralJournalEntry(Util::TString partnerRealmId,
                                                                MEAccountInfo expenseAccount,
                                                                std::int32_t dueToAccountId, Util::TString amount,
                                                                Util::TString requestId, MECNameInfo name,
                                                                std::uint32_t& txnId);

  // Deletes a journal entry and its rows. Neither gated nor bound to a right; catches the host's exceptions.
  MULTIENTITY_API static MEStatusCode RemoveGeneralJournalEntry(std::uint32_t txnId);

  // Whether a journal entry is just being deleted by RemoveGeneralJournalEntry, for the host to ask while it deletes
  // one.
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

 protected:
  MultiEntityDriver() = default;
  ~MultiEntityDriver() = default;
};
