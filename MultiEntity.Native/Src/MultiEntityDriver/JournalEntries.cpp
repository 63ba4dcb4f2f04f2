#include "Frame/CallFrame.h"
#include "Frame/Operations.h"
#include "MultiEntityDriver/BoundedCopy.h"

namespace {

bool journalEntryDeletionFlag = false;

EdListStatus CreateExpenseAccount(MEAccountInfo& account) {
  std::int32_t recnum = kToBeCreated;
  const EdListStatus created =
      Host().accounts.CreateNewChartOfAccount(account.name.GetBuffer(), account.type, recnum, false);
  // The host may have rewritten the name in place.
  account.name.ReleaseBuffer();
  if (created == kEdListSuccess) account.accountId = recnum;
  return created;
}

EdListStatus CreateName(MECNameInfo& name) {
  std::int32_t nameId = kToBeCreated;
  const EdListStatus created = Host().names.CreateCName(name.name, kNameTypeVendor, nameId);
  if (created == kEdListSuccess) name.nameId = nameId;
  return created;
}

DBMultiEntityTransaction JournalEntryRow(const JournalEntryIds& ids, std::int32_t relationId,
                                         const Util::TString& requestId) {
  DBMultiEntityTransaction row{};
  row.txnId = static_cast<std::int32_t>(ids.first);
  row.relationId = relationId;
  row.targetId = static_cast<std::int32_t>(ids.second);
  BoundedCopy(row.requestId, requestId);
  row.txnType = kTxnTypeJournalEntry;
  row.state = MEStateEstablished;
  return row;
}

// Lets the host know, while it deletes the entry, that this module asked for it.
class DeletionUnderWay {
 public:
  DeletionUnderWay() noexcept { MultiEntityDriver::SetGJEDeletionDueToFDPFailure(true); }
  DeletionUnderWay(const DeletionUnderWay&) = delete;
  DeletionUnderWay& operator=(const DeletionUnderWay&) = delete;
  ~DeletionUnderWay() { MultiEntityDriver::SetGJEDeletionDueToFDPFailure(false); }
};

bool DeleteJournalEntry(std::uint32_t txnId) noexcept {
  try {
    const DeletionUnderWay underWay;
    return Host().journal.DeleteGeneralJournalEntry(txnId) == kEdListSuccess;
  } catch (...) {
    return false;
  }
}

bool DeleteRows(std::uint32_t txnId) noexcept {
  try {
    return Host().multiEntity.DeleteTransaction(static_cast<std::int32_t>(txnId)).Succeeded();
  } catch (...) {
    return false;
  }
}

}  // namespace

MEStatusCode MultiEntityDriver::RecordGeneralJournalEntry(Util::TString partnerRealmId, MEAccountInfo expenseAccount,
                                                          std::int32_t dueToAccountId, Util::TString amount,
                                                          Util::TString requestId, MECNameInfo name,
                                                          std::uint32_t& txnId) {
  const OperationLog log{operations::RecordGeneralJournalEntry};
  try {
    if (!HasMEPermission(MEPermissionCreateTransactions, kFeatureJournalEntries)) {
      log.Note("MULTIENTITY: No permission to record GJE");
      return MEStatusPermissionDenied;
    }

    if (expenseAccount.accountId == kToBeCreated) {
      const EdListStatus created = CreateExpenseAccount(expenseAccount);
      if (created == kEdListDuplicateAccount) return MEStatusExpenseAccountRefused;
      if (created != kEdListSuccess) return MEStatusAccountFailed;
    }
    CAccnt expense(Host().accounts, kFeatureTypeStandard);
    if (Host().accounts.GetAccountForRecnum(expenseAccount.accountId, expense) != kEdListSuccess) {
      log.Error("MULTIENTITY_ERROR:: no matching Expense Accnt for id [%d] in  %s", expenseAccount.accountId,
                log.Name());
      return MEStatusAccountFailed;
    }

    DBMultiEntityRelation relation{};
    if (Host().multiEntity.GetRelation(partnerRealmId, relation).Failed() || relation.relationId < 1) {
      log.Error("MULTIENTITY_ERROR:: Relation fatching failed for realm [%s] in %s", partnerRealmId.c_str(),
                log.Name());
      return MEStatusInvalidData;
    }

    CAccnt dueTo(Host().accounts, kFeatureTypeStandard);
    if (Host().accounts.GetAccountForRecnum(dueToAccountId, dueTo) != kEdListSuccess) {
      log.Error("MULTIENTITY_ERROR:: no matching Due to Accnt for id [%d] in  %s", dueToAccountId, log.Name());
      return MEStatusAccountFailed;
    }

    if (name.nameId == kToBeCreated) {
      const EdListStatus created = CreateName(name);
      if (created == kEdListDuplicateName) return MEStatusNameRefused;
      if (created != kEdListSuccess) return MEStatusNameFailed;
    }

    JournalEntryIds ids{};
    if (Host().journal.CreateGeneralJournalEntry(dueTo, expense, amount, ids, name.nameId, name.name) !=
        kEdListSuccess) {
      log.Error("MULTIENTITY_ERROR:: Not able to create GJE in  %s", log.Name());
      return MEStatusDeclined;
    }

    DBMultiEntityTransaction row = JournalEntryRow(ids, relation.relationId, requestId);
    txnId = ids.first;
    if (Host().multiEntity.SaveTransaction(row).Succeeded()) return MEStatusSuccess;

    log.Error("MULTIENTITY_ERROR:: Not able to save GJE data in ME Txn table in  %s", log.Name());
    if (Host().journal.DeleteGeneralJournalEntry(ids.first) == kEdListSuccess) return MEStatusDeclined;
    log.Error("MULTIENTITY_ERROR:: Not able to delete GJE in  %s", log.Name());
    return MEStatusJournalEntryNotRemoved;
  } catch (...) {
    log.Error("MULTIENTITY_ERROR:: exception occured during fetching data  %s", log.Name());
    return MEStatusException;
  }
}

MEStatusCode MultiEntityDriver::RemoveGeneralJournalEntry(std::uint32_t txnId) {
  const OperationLog log{operations::RemoveGeneralJournalEntry};
  if (!DeleteJournalEntry(txnId)) {
    log.Error("MULTIENTITY_ERROR:: Not able to delete GJE in  %s", log.Name());
    return MEStatusJournalEntryNotRemoved;
  }
  if (!DeleteRows(txnId)) {
    // A failed deletion is told with the words of a failed save, on purpose.
    log.Error("MULTIENTITY_ERROR:: Not able to save GJE data in ME Txn table in  %s", log.Name());
    return MEStatusRowsNotRemoved;
  }
  return MEStatusSuccess;
}

void MultiEntityDriver::SetGJEDeletionDueToFDPFailure(bool deleting) {
  journalEntryDeletionFlag = deleting;
}

bool MultiEntityDriver::GetGJEDeletionDueToFDPFailure() {
  return journalEntryDeletionFlag;
}
