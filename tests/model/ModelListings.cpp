#include <stdexcept>
#include <string>

#include "model/Model.h"

namespace model {

namespace {

const std::string kListing = "MultiEntityDriver::GetListOfTxnTargetEntries";

std::string InBrackets(std::int64_t number) {
  return "[" + std::to_string(number) + "]";
}

std::string TwoDigits(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

Util::TString DateText(DateType32 date) {
  if (!date.ValidDate()) return {};
  return {TwoDigits(date.GetMonth()) + "/" + TwoDigits(date.GetDay()) + "/" + std::to_string(date.GetYear())};
}

METxnInfo FromRow(const DBMultiEntityTransaction& row) {
  METxnInfo entry;
  entry.txnId = row.txnId;
  entry.targetId = row.targetId;
  entry.txnType = row.txnType;
  entry.state = row.state;
  entry.requestId = Util::TString(row.requestId);
  return entry;
}

}  // namespace

std::string Model::DisplayAmount(std::int64_t minorUnits) {
  char buffer[30] = {};
  world_.Money2Str_s(buffer, sizeof buffer, minorUnits, 65536);
  return buffer;
}

std::string Model::HomeCurrencyCode() {
  if (!world_.PrefGetPrefHandle() || !world_.GetUseMultiCurrency()) return "USD";
  world_.OpenCurrency(kFeatureTypeStandard);
  const std::string currency = world_.GetHomeCurrency();
  return world_.IsValidCurrency(currency) ? world_.GetCurrencyCode(currency) : "USD";
}

std::string Model::QualifiedName(std::int32_t targetId, std::int32_t txnType) {
  if (txnType == 8) return world_.GetStrMemo(targetId);
  const std::int32_t name = world_.GetTransactionName(targetId);
  const std::string own = world_.GetName(name, nullptr, 0);
  std::string prefix;
  for (std::int32_t parent = world_.GetParent(name); world_.IsValidName(parent); parent = world_.GetParent(parent)) {
    const std::string parentName = world_.GetName(parent, nullptr, 0);
    world_.FormatStringV(prefix, "%s%s%s", parentName.c_str(), ":", std::string(prefix).c_str());
  }
  std::string whole;
  world_.FormatStringV(whole, "%s%s", prefix.c_str(), own.c_str());
  return whole;
}

MEStatusCode Model::GetListOfTxnTargetEntries(std::vector<METxnInfo>& list, long txnId) {
  try {
    return ListTransaction(list, txnId);
  } catch (const std::exception& exception) {
    Error(kListing, "MULTIENTITY_ERROR::Exiting " + kListing + ", due to exception: " + exception.what());
    return MEStatusCode{14};
  } catch (...) {
    Error(kListing, "MULTIENTITY_ERROR:: exception occured during fetching data  " + kListing);
    return MEStatusCode{14};
  }
}

MEStatusCode Model::ListTransaction(std::vector<METxnInfo>& list, long txnId) {
  list.clear();
  std::vector<DBMultiEntityTransaction> rows;
  if (!world_.GetTransactionWithTargets(txnId, rows).Succeeded()) {
    Error(kListing,
          "MULTIENTITY_ERROR::GetTransactionWithTargets failed for txnId " + InBrackets(txnId) + "  " + kListing);
    return MEStatusCode{8};
  }
  for (const DBMultiEntityTransaction& row : rows) {
    if (!MayHandle(4, row.txnType)) {
      Trace(kListing, "MULTIENTITY: No permission to view " + std::string(*KindOf(row.txnType)));
      return MEStatusCode{3};
    }
    DBMultiEntityRelation relation{};
    if (!world_.GetRelationById(row.relationId, relation).Succeeded()) {
      Error(kListing, "MULTIENTITY_ERROR::Invalid relation for the meTxn with relationId " +
                          InBrackets(row.relationId) + " for txnId " + InBrackets(row.txnId) + "  " + kListing + " ");
      return MEStatusCode{8};
    }
    world_.TargExists(row.targetId, 0);
    if (row.txnType == 0) {
      Error(kListing,
            "MULTIENTITY_ERROR:: Not able to fetch data for targetId " + InBrackets(row.targetId) + " in " + kListing);
      return MEStatusCode{12};
    }
    world_.OpenLine(row.targetId, kFeatureTypeStandard, kReadFailSafeDefault, row.txnType);
    const DateType32 date = world_.GetDate(row.targetId);
    METxnInfo entry = FromRow(row);
    entry.amount = Util::TString(DisplayAmount(world_.GetAmount(row.targetId)));
    entry.partnerName = Util::TString(relation.partnerName);
    entry.realmId = Util::TString(relation.realmId);
    entry.currencyCode = Util::TString(HomeCurrencyCode());
    entry.txnName = Util::TString(QualifiedName(row.targetId, row.txnType));
    entry.txnDate = DateText(date);
    list.push_back(entry);
  }
  return MEStatusCode{1};
}

MEStatusCode Model::GetListOfTxnTargetEntries(std::vector<METxnInfo>& list, DateType32 from, DateType32 to) {
  try {
    return ListPeriod(list, from, to);
  } catch (...) {
    Error(kListing, "MULTIENTITY_ERROR:: exception occured during fetching data  " + kListing);
    return MEStatusCode{14};
  }
}

MEStatusCode Model::ListPeriod(std::vector<METxnInfo>& list, DateType32 from, DateType32 to) {
  list.clear();
  std::map<std::int32_t, bool> visible;
  for (const std::int32_t type : {9, 3, 8}) visible[type] = MayHandle(4, type);

  std::vector<DBMultiEntityRelation> relationRows;
  world_.GetAllRelations(relationRows);
  std::map<std::int32_t, DBMultiEntityRelation> relations;
  for (const DBMultiEntityRelation& row : relationRows) relations.emplace(row.relationId, row);

  std::vector<DBMultiEntityTransaction> rows;
  if (!world_.GetAllTransactionWithTargets(rows).Succeeded()) return MEStatusCode{1};
  for (const DBMultiEntityTransaction& row : rows) {
    const auto right = visible.find(row.txnType);
    if (right != visible.end() && !right->second) {
      Trace(kListing, "MULTIENTITY: No permission to view " + std::string(*KindOf(row.txnType)));
      continue;
    }
    const auto relation = relations.find(row.relationId);
    if (relation == relations.end()) {
      Error(kListing, "MULTIENTITY_ERROR:: Not able to fetch relation data with id " + InBrackets(row.relationId) +
                          " from relation table " + kListing);
      return MEStatusCode{8};
    }
    if (!world_.TargExists(row.targetId, row.txnType)) {
      Warning(kListing, "MULTIENTITY_WARNING:: Not able to fetch data for targetId " + InBrackets(row.targetId) +
                            " in " + kListing);
      continue;
    }
    world_.OpenLine(row.targetId, kFeatureTypeStandard, kReadFailSafeDefault, row.txnType);
    const DateType32 date = world_.GetDate(row.targetId);
    const bool early = from.Value() != 0 && date.Value() < from.Value();
    const bool late = to.Value() != 0 && date.Value() > to.Value();
    if (early || late) {
      Warning(kListing, "MULTIENTITY_WARNING: This transaction is not in desired period");
      continue;
    }
    METxnInfo entry = FromRow(row);
    entry.amount = Util::TString(DisplayAmount(world_.GetAmount(row.targetId)));
    entry.partnerName = Util::TString(relation->second.partnerName);
    entry.realmId = Util::TString(relation->second.realmId);
    entry.txnDate = DateText(date);
    if (row.txnType == 3 || row.txnType == 9) {
      entry.billCheckAccountName = Util::TString(world_.GetAccountName(row.targetId, 0, 0));
    } else if (row.txnType == 8) {
      const std::int32_t following = row.targetId + 1;
      if (world_.TargExists(following, 8)) {
        world_.OpenLine(following, kFeatureTypeStandard, kReadFailSafeDefault, 8);
        entry.liabilityAccountName = Util::TString(world_.GetAccountName(following, 0, 0));
      } else {
        Error(kListing, "MULTIENTITY_ERROR::" + kListing +
                            ", Failed to fetch liability account name from account recnum " +
                            std::to_string(following));
      }
      entry.entryAccountName = Util::TString(world_.GetAccountName(row.targetId, 0, 0));
    } else {
      Error(kListing, "MULTIENTITY_ERROR:: " + kListing + " Unsupported txn type " + std::to_string(row.txnType));
    }
    entry.currencyCode = Util::TString(HomeCurrencyCode());
    entry.txnName = Util::TString(QualifiedName(row.targetId, row.txnType));
    list.push_back(entry);
  }
  return MEStatusCode{1};
}

bool Model::RunQuery(Query& query, std::string_view shortName, std::vector<unsigned long>& txns) {
  if (world_.DoQuery(query).Failed()) {
    Error(shortName, "MULTIENTITY_ERROR::DQE query execution failed for " + std::string(shortName));
    return false;
  }
  if (!world_.ResultExists(query)) return true;
  for (const QueryRow* row = world_.First(query); row != nullptr; row = world_.Next(query)) {
    txns.push_back(world_.GetTransPtrType(*row, 0));
  }
  return true;
}

bool Model::GetTxns(unsigned int selection, std::vector<unsigned long>& txns) {
  Query query;
  world_.OpenQuery();
  world_.SetSelect(query, selection);
  return RunQuery(query, "MultiEntityDriver::GetTxns", txns);
}

bool Model::GetTxnsForPeriod(DateType32 from, DateType32 to, unsigned int selection, unsigned int dateField,
                             std::vector<unsigned long>& txns) {
  Query query;
  world_.OpenQuery();
  world_.SetSelect(query, selection);
  const long notBefore = world_.SetStatement(query, dateField, static_cast<DQE::SelectOp>(10), from);
  const long notAfter = world_.SetStatement(query, dateField, static_cast<DQE::SelectOp>(11), to);
  world_.SetStatement(notBefore, static_cast<DQE::SelectOp>(2), notAfter);
  return RunQuery(query, "MultiEntityDriver::GetTxnsForPeriod", txns);
}

}  // namespace model
