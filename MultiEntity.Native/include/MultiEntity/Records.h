#pragma once

#include <cstdint>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "MultiEntityHost/TString.h"

// The vocabulary of every exported operation. The numbers are part of the interface; the gaps between the
// status codes are never produced.

enum MEStatusCode : std::int32_t {
  // Nothing matched, the store declined the change, or a journal entry was not created or was removed again.
  MEStatusDeclined = 0,
  MEStatusSuccess = 1,
  MEStatusFeatureDisabled = 2,
  MEStatusPermissionDenied = 3,
  MEStatusExpenseAccountRefused = 5,
  // The expense account could not be created, or the expense or the due-to account was not found.
  MEStatusAccountFailed = 6,
  MEStatusReadFailed = 8,
  MEStatusRelationPending = 9,
  // A relation, or the transaction row of a line, could not be written.
  MEStatusWriteFailed = 10,
  MEStatusDeleteFailed = 11,
  // Invalid input, or no row for the given key.
  MEStatusInvalidData = 12,
  // The realm is already related, or another relation uses the accounts.
  MEStatusConflict = 13,
  MEStatusException = 14,
  MEStatusNameRefused = 16,
  MEStatusNameFailed = 17,
  MEStatusJournalEntryNotRemoved = 18,
  // The journal entry was removed but its rows were not, or the host did not update its transaction.
  MEStatusRowsNotRemoved = 19,
  // An account named for a relation does not exist, is marked deleted or is not eligible.
  MEStatusAccountUnusable = 28,
};

// The state of a relation or of an intercompany transaction. Other values are stored and returned unchanged.
enum MEState : std::int32_t {
  MEStatePending = 1,
  MEStateEstablished = 3,
  MEStateWithoutAccounts = 4,
  MEStateDeactivated = 5,
  // In MERelationInfo only: leave the stored state as it is.
  MEStateKeepStored = 6,
};

// The kind of a relation. It is stored as given, in 16 bits; its meaning is the host's.
enum MERelationType : std::int32_t {};

enum MEPermissionType : std::int32_t {
  MEPermissionManageRelations = 0,
  MEPermissionViewRelations = 1,
  MEPermissionCreateTransactions = 2,
  MEPermissionModifyTransactions = 3,
  MEPermissionViewTransactions = 4,
  MEPermissionAlwaysGranted = 5,
  MEPermissionReceiveReminder = 6,
};

enum MESupportCheckKey : std::int32_t {
  MESupportCheckMultiEntity = 1,
};

enum MEKillSwitchKey : std::int32_t {
  MEKillSwitchGlobal = 0,
  MEKillSwitchBills = 1,
  MEKillSwitchChecks = 2,
};

// Which relations' accounts count as used. Other values: none.
enum MEAccountFilter : std::int32_t {
  MEAccountFilterUnused = 1,
  MEAccountFilterUnusedOrOwn = 2,
};

// The part that an account plays in a relation. Other values are ignored.
enum MEAccountRole : std::int32_t {
  MEAccountRoleDueFrom = 0,
  MEAccountRoleDueTo = 1,
};

// One account as the host's screens hand it in.
struct MEAccountInfo {
  Util::TString name;          // used when the account has to be created
  std::int16_t type = 0;       // KrEnumerations::AccntTypeType
  std::int32_t accountId = 0;  // record number in the chart of accounts; -1 for an account still to be created
  MEAccountRole role = MEAccountRoleDueFrom;
};

// The argument of MultiEntityDriver::UpdateRelation.
struct MERelationInfo {
  Util::TString realmId;      // the partner company; 1 to 19 characters
  Util::TString updateRealm;  // handed unchanged to the store's update
  MEState state = MEStateKeepStored;
  std::vector<MEAccountInfo> accounts;  // the new due-from and due-to pair; empty keeps the stored accounts
  bool skipPermissionCheck = false;
};

// The name under which a journal entry is booked.
struct MECNameInfo {
  Util::TString name;
  std::int32_t nameId = -1;  // record number in the name list; -1 for a name still to be created
};

// One line of an intercompany transaction, as text for display. Texts that a listing does not fill are empty.
struct METxnInfo {
  std::int32_t txnId = 0;
  std::int32_t targetId = 0;
  std::int16_t txnType = 0;
  std::int16_t state = 0;
  Util::TString realmId;
  Util::TString partnerName;
  Util::TString requestId;
  Util::TString amount;
  Util::TString currencyCode;
  Util::TString txnName;  // a journal entry's line memo; otherwise the name with its parents, separated by colons
  Util::TString billCheckAccountName;  // in the period listing, for bills and checks
  Util::TString liabilityAccountName;  // in the period listing, for journal entries: the account of the line after it
  Util::TString entryAccountName;      // in the period listing, for journal entries
  Util::TString txnDate;               // MM/DD/year
};

// A rejected transaction, as text for display.
struct MERejectedTxnInfo {
  std::int16_t txnType = 0;  // 3 check, 9 bill
  std::int16_t state = 0;    // always 4
  Util::TString realmId;
  Util::TString partnerName;
  Util::TString requestId;
  Util::TString currencyCode;
  Util::TString amount;
  Util::TString partnerTxnId;
};

// The persona with which the relations screen works.
enum SybaseRelationsUserPersona : std::int32_t {
  SybaseRelationsPersonaNone = 0,
  SybaseRelationsPersonaViewer = 1,
  SybaseRelationsPersonaContributor = 2,
  SybaseRelationsPersonaManager = 3,
};
