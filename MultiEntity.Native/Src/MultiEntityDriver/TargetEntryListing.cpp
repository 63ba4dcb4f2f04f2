#include <algorithm>
#include <exception>
#include <functional>
#include <string_view>

#include "Frame/CallFrame.h"
#include "Frame/Operations.h"
#include "MultiEntityDriver/BoundedCopy.h"
#include "MultiEntityDriver/MoneyText.h"
#include "MultiEntityDriver/TransactionTypes.h"
#include "MultiEntityUtils/MultiEntityUtils.h"

namespace {

// What the entries show of a relation. The texts are shared by all entries of the partner.
struct Partner {
  explicit Partner(const DBMultiEntityRelation& relation)
      : realmId(FieldText(relation.realmId)), name(FieldText(relation.partnerName)) {}

  Util::TString realmId;
  Util::TString name;
};

// Few accounts stand behind many lines, so that a long listing shares most of their names with an earlier line.
class AccountNames {
 public:
  explicit AccountNames(std::size_t lines) : held_(std::min(lines, kMostHeld)) {}

  Util::TString Get(std::string_view name) {
    Util::TString& held = held_[std::hash<std::string_view>{}(name) % held_.size()];
    if (held.view() != name) held = Util::TString(name);
    return held;
  }

 private:
  static constexpr std::size_t kMostHeld = 256;
  std::vector<Util::TString> held_;
};

using PartnersByRelation = std::unordered_map<std::int32_t, Partner>;

constexpr std::int32_t kDefaultAccountName = 0;

bool MayView(ProgramFeature feature) {
  return MultiEntityDriver::HasMEPermission(MEPermissionViewTransactions, feature);
}

// The three view rights, asked once for a whole listing.
class ViewRights {
 public:
  bool Cover(std::int16_t txnType) const noexcept {
    switch (FeatureOfTxnType(txnType)) {
      case kFeatureBills:
        return bills_;
      case kFeatureChecks:
        return checks_;
      case kFeatureJournalEntries:
        return journalEntries_;
      default:
        return true;
    }
  }

 private:
  bool bills_ = MayView(kFeatureBills);
  bool checks_ = MayView(kFeatureChecks);
  bool journalEntries_ = MayView(kFeatureJournalEntries);
};

void NoteRefusedView(const OperationLog& log, std::int16_t txnType) {
  switch (txnType) {
    case kTxnTypeBill:
      log.Note("MULTIENTITY: No permission to view Bills");
      break;
    case kTxnTypeCheck:
      log.Note("MULTIENTITY: No permission to view Checks");
      break;
    default:
      log.Note("MULTIENTITY: No permission to view GJE");
      break;
  }
}

PartnersByRelation ReadPartners() {
  std::vector<DBMultiEntityRelation> relations;
  // What a table that could not be read to its end has yielded is gone on with; the rest shows up as lines without a
  // relation.
  static_cast<void>(Host().multiEntity.GetAllRelations(relations));
  PartnersByRelation partners;
  partners.reserve(relations.size());
  for (const DBMultiEntityRelation& relation : relations) partners.try_emplace(relation.relationId, relation);
  return partners;
}

TargType OpenLine(std::int32_t targetId, std::int16_t txnType) {
  return {Host().lines, targetId, kFeatureTypeStandard, kReadFailSafeDefault, txnType};
}

bool IsInPeriod(DateType32 date, DateType32 from, DateType32 to) noexcept {
  return (from == NullDate() || date.Value() >= from.Value()) && (to == NullDate() || date.Value() <= to.Value());
}

// What both listings show of a line.
METxnInfo Describe(const DBMultiEntityTransaction& row, const Partner& partner, const TargType& line, DateType32 date) {
  METxnInfo info;
  info.txnId = row.txnId;
  info.targetId = row.targetId;
  info.txnType = row.txnType;
  info.state = row.state;
  info.requestId = FieldText(row.requestId);
  info.amount = MoneyText(line.GetAmount());
  info.partnerName = partner.name;
  info.realmId = partner.realmId;
  info.txnDate = MultiEntityUtils::FormatDate(date);
  return info;
}

// A journal entry's liability line is the one whose id follows the target line's.
std::int32_t LiabilityLineOf(std::int32_t targetId) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(targetId) + 1U);
}

void FillLiabilityAccountName(const OperationLog& log, AccountNames& names, METxnInfo& info) {
  const std::int32_t liabilityLineId = LiabilityLineOf(info.targetId);
  if (!Host().lines.TargExists(liabilityLineId, kTxnTypeJournalEntry)) {
    log.Error("MULTIENTITY_ERROR::%s, Failed to fetch liability account name from account recnum %d", log.Name(),
              liabilityLineId);
    return;
  }
  const TargType liabilityLine = OpenLine(liabilityLineId, kTxnTypeJournalEntry);
  info.liabilityAccountName = names.Get(liabilityLine.GetAccountName(kDefaultAccountName, kDefaultAccountName));
}

void FillAccountNames(const OperationLog& log, const TargType& line, AccountNames& names, METxnInfo& info) {
  switch (info.txnType) {
    case kTxnTypeCheck:
    case kTxnTypeBill:
      info.billCheckAccountName = names.Get(line.GetAccountName(kDefaultAccountName, kDefaultAccountName));
      break;
    case kTxnTypeJournalEntry:
      FillLiabilityAccountName(log, names, info);
      info.entryAccountName = names.Get(line.GetAccountName(kDefaultAccountName, kDefaultAccountName));
      break;
    default:
      log.Error("MULTIENTITY_ERROR:: %s Unsupported txn type %d", log.Name(), static_cast<std::int32_t>(info.txnType));
      break;
  }
}

MEStatusCode ListTransaction(const OperationLog& log, std::vector<METxnInfo>& list, long txnId) {
  list.clear();
  std::vector<DBMultiEntityTransaction> rows;
  if (Host().multiEntity.GetTransactionWithTargets(txnId, rows).Failed()) {
    log.Error("MULTIENTITY_ERROR::GetTransactionWithTargets failed for txnId [%d]  %s",
              static_cast<std::int32_t>(txnId), log.Name());
    return MEStatusReadFailed;
  }

  for (const DBMultiEntityTransaction& row : rows) {
    const ProgramFeature feature = FeatureOfTxnType(row.txnType);
    if (feature != kFeatureNone && !MayView(feature)) {
      NoteRefusedView(log, row.txnType);
      return MEStatusPermissionDenied;
    }

    DBMultiEntityRelation relation{};
    if (Host().multiEntity.GetRelationById(row.relationId, relation).Failed()) {
      log.Error("MULTIENTITY_ERROR::Invalid relation for the meTxn with relationId [%d] for txnId [%d]  %s ",
                row.relationId, row.txnId, log.Name());
      return MEStatusReadFailed;
    }

    // The host is asked for the line, but whether there is data is told by the row alone.
    static_cast<void>(Host().lines.TargExists(row.targetId, kViewAny));
    if (row.txnType == kTxnTypeNone) {
      log.Error("MULTIENTITY_ERROR:: Not able to fetch data for targetId [%d] in %s", row.targetId, log.Name());
      return MEStatusInvalidData;
    }

    const TargType line = OpenLine(row.targetId, row.txnType);
    METxnInfo info = Describe(row, Partner(relation), line, line.GetDate());
    info.currencyCode = MultiEntityUtils::GetHomeCurrencyCode();
    info.txnName = MultiEntityUtils::GetQualifiedTxnName(line, row.txnType);
    list.push_back(std::move(info));
  }
  return MEStatusSuccess;
}

MEStatusCode ListPeriod(const OperationLog& log, std::vector<METxnInfo>& list, DateType32 from, DateType32 to) {
  list.clear();
  const ViewRights rights;
  const PartnersByRelation partners = ReadPartners();
  std::vector<DBMultiEntityTransaction> rows;
  if (Host().multiEntity.GetAllTransactionWithTargets(rows).Failed()) return MEStatusSuccess;

  AccountNames accountNames(rows.size());
  list.reserve(rows.size());
  for (const DBMultiEntityTransaction& row : rows) {
    if (!rights.Cover(row.txnType)) {
      NoteRefusedView(log, row.txnType);
      continue;
    }

    const auto partner = partners.find(row.relationId);
    if (partner == partners.end()) {
      log.Error("MULTIENTITY_ERROR:: Not able to fetch relation data with id [%d] from relation table %s",
                row.relationId, log.Name());
      return MEStatusReadFailed;
    }

    if (!Host().lines.TargExists(row.targetId, row.txnType)) {
      log.Warning("MULTIENTITY_WARNING:: Not able to fetch data for targetId [%d] in %s", row.targetId, log.Name());
      continue;
    }

    const TargType line = OpenLine(row.targetId, row.txnType);
    const DateType32 date = line.GetDate();
    if (!IsInPeriod(date, from, to)) {
      log.Warning("MULTIENTITY_WARNING: This transaction is not in desired period");
      continue;
    }

    METxnInfo info = Describe(row, partner->second, line, date);
    FillAccountNames(log, line, accountNames, info);
    info.currencyCode = MultiEntityUtils::GetHomeCurrencyCode();
    info.txnName = MultiEntityUtils::GetQualifiedTxnName(line, row.txnType);
    list.push_back(std::move(info));
  }
  return MEStatusSuccess;
}

}  // namespace

MEStatusCode MultiEntityDriver::GetListOfTxnTargetEntries(std::vector<METxnInfo>& list, long txnId) {
  const OperationLog log{operations::GetListOfTxnTargetEntriesOfTxn};
  try {
    return ListTransaction(log, list, txnId);
  } catch (const std::exception& exception) {
    log.Error("MULTIENTITY_ERROR::Exiting %s, due to exception: %s", log.Name(), exception.what());
    return MEStatusException;
  } catch (...) {
    log.Error("MULTIENTITY_ERROR:: exception occured during fetching data  %s", log.Name());
    return MEStatusException;
  }
}

MEStatusCode MultiEntityDriver::GetListOfTxnTargetEntries(std::vector<METxnInfo>& list, DateType32 from,
                                                          DateType32 to) {
  const OperationLog log{operations::GetListOfTxnTargetEntriesOfPeriod};
  try {
    return ListPeriod(log, list, from, to);
  } catch (...) {
    log.Error("MULTIENTITY_ERROR:: exception occured during fetching data  %s", log.Name());
    return MEStatusException;
  }
}
