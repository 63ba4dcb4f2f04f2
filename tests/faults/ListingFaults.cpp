#include "faults/Scenario.h"

namespace faults {

namespace {

const std::string kList = "MultiEntityDriver::GetListOfTxnTargetEntries";

void WithManyCurrencies(Company& company) {
  company.host.preferences.multiCurrency = true;
}

Handling Caught(Thrown /*thrown*/) {
  return Ends("14", {Error("MULTIENTITY_ERROR:: exception occured during fetching data  " + kList)});
}

// Only the listing of one transaction tells what a standard exception says.
Handling CaughtAndTold(Thrown thrown) {
  if (thrown == Thrown::kNoException) return Caught(thrown);
  const std::string what = thrown == Thrown::kOutOfRange ? kWhatOfOutOfRange : kWhatOfTheException;
  return Ends("14", {Error("MULTIENTITY_ERROR::Exiting " + kList + ", due to exception: " + what)});
}

Table Throwing(Table table, Handling (*handling)(Thrown)) {
  for (Row& row : table) row.throwing = WhenThrowing(handling);
  return table;
}

// The bill's name is Child, which stands under Mid, which stands under Top.
Table NameUnderItsParents() {
  return {{"GetTransactionName", NoSuchFailure(), Passes()},
          {"GetName", NoSuchFailure(), Passes()},
          {"GetParent", NoSuchFailure(), Passes()},
          {"IsValidName(32)", GoesOn().With("Top:Mid:Child", "Child"), Passes()},
          {"IsValidName(31)", GoesOn().With("Top:Mid:Child", "Mid:Child"), Passes()},
          {"IsValidName(0)", GoesOn(), Passes()},
          {"FormatStringV#1", GoesOn().With("Top:Mid:Child", "Top:Child"), Passes()},
          {"FormatStringV#2", GoesOn().With("Top:Mid:Child", "Mid:Child"), Passes()},
          {"FormatStringV#3", GoesOn().With("Top:Mid:Child", "\"\""), Passes()}};
}

Table Line() {
  return {{"OpenLine", NoSuchFailure(), Passes()},   {"GetDate", NoSuchFailure(), Passes()},
          {"GetAmount", NoSuchFailure(), Passes()},  {"Money2Str_s", NoSuchFailure(), Passes()},
          {"GetStrMemo", NoSuchFailure(), Passes()}, {"GetAccountName", NoSuchFailure(), Passes()}};
}

}  // namespace

Table HomeCurrency() {
  const Handling dollars = GoesOn().With("EUR", "USD");
  return {{"PrefGetPrefHandle", dollars, Passes()},    {"GetUseMultiCurrency", dollars, Passes()},
          {"OpenCurrency", NoSuchFailure(), Passes()}, {"GetHomeCurrency", dollars, Passes()},
          {"IsValidCurrency", dollars, Passes()},      {"GetCurrencyCode", NoSuchFailure(), Passes()}};
}

std::vector<Scenario> ListingScenarios() {
  const auto listTransaction = [](const std::string& note, const std::string& txnId) {
    return Right("3", note) +
           Throwing(Table{{"GetTransactionWithTargets",
                           Ends("8", {Error("MULTIENTITY_ERROR::GetTransactionWithTargets failed for txnId [" + txnId +
                                            "]  " + kList)}),
                           Passes()},
                          {"GetRelationById",
                           Ends("8", {Error("MULTIENTITY_ERROR::Invalid relation for the meTxn with relationId [5] for "
                                            "txnId [" +
                                            txnId + "]  " + kList + " ")}),
                           Passes()},
                          {"TargExists", GoesOn(), Passes()}} +
                        Line() + NameUnderItsParents() + HomeCurrency(),
                    CaughtAndTold);
  };
  const auto hidden = [](const std::string& kind, const std::string& entry) {
    return GoesOn().Finally({Trace("MULTIENTITY: No permission to view " + kind)}).Without(entry);
  };
  const Handling billsHidden = hidden("Bills", "entry 10 101 ");
  const Handling entriesHidden = hidden("GJE", "entry 30 301 ");
  const Handling checksHidden = hidden("Checks", "entry 20 201 ");
  const Table listPeriod =
      Table{{"FeaturePermissionAvailable(20, 2, 0)", billsHidden, billsHidden},
            {"FeaturePermissionAvailable(16, 2, 0)", GoesOn(), GoesOn()},
            {"FeaturePermissionAvailable(19, 2, 0)", entriesHidden, entriesHidden}} +
      Throwing(Table{{"GetAllRelations",
                      Ends("8", {Error("MULTIENTITY_ERROR:: Not able to fetch relation data with id [5] from relation "
                                       "table " +
                                       kList)})
                          .AfterAsking({"GetAllTransactionWithTargets"}),
                      Passes()},
                     {"GetAllTransactionWithTargets", Ends("1"), Passes()},
                     {"TargExists(101, 9)",
                      GoesOn({Warning("MULTIENTITY_WARNING:: Not able to fetch data for targetId [101] in " + kList)})
                          .Without("entry 10 101 "),
                      Passes()},
                     {"TargExists(301, 8)",
                      GoesOn({Warning("MULTIENTITY_WARNING:: Not able to fetch data for targetId [301] in " + kList)})
                          .Without("entry 30 301 "),
                      Passes()},
                     {"TargExists(302, 8)",
                      GoesOn({Error("MULTIENTITY_ERROR::" + kList +
                                    ", Failed to fetch liability account name from account recnum 302")})
                          .With("Due to North", "\"\""),
                      Passes()}} +
                   Line() + NameUnderItsParents() + HomeCurrency(),
               Caught);

  return {
      {"ListingABill", "MultiEntityDriver::GetListOfTxnTargetEntries(long)", WithManyCurrencies,
       [](Company& company) { return Text(MultiEntityDriver::GetListOfTxnTargetEntries(company.results.entries, 10)); },
       listTransaction("MULTIENTITY: No permission to view Bills", "10")},
      {"ListingACheck", "MultiEntityDriver::GetListOfTxnTargetEntries(long)",
       [](Company& company) {
         WithManyCurrencies(company);
         AddACheck(company);
       },
       [](Company& company) { return Text(MultiEntityDriver::GetListOfTxnTargetEntries(company.results.entries, 20)); },
       listTransaction("MULTIENTITY: No permission to view Checks", "20")},
      {"ListingAnEntry", "MultiEntityDriver::GetListOfTxnTargetEntries(long)", Nothing,
       [](Company& company) { return Text(MultiEntityDriver::GetListOfTxnTargetEntries(company.results.entries, 30)); },
       listTransaction("MULTIENTITY: No permission to view GJE", "30")},
      {"ListingAPeriod", "MultiEntityDriver::GetListOfTxnTargetEntries(DateType32, DateType32)", WithManyCurrencies,
       [](Company& company) {
         company.results.entries.resize(1);
         return Text(
             MultiEntityDriver::GetListOfTxnTargetEntries(company.results.entries, {2024, 3, 1}, {2024, 3, 31}));
       },
       listPeriod},
      {"ListingAPeriodWithACheckInsteadOfABill", "MultiEntityDriver::GetListOfTxnTargetEntries(DateType32, DateType32)",
       [](Company& company) {
         AddACheck(company);
         company.host.store.transactions.erase(company.host.store.transactions.begin());
       },
       [](Company& company) {
         return Text(
             MultiEntityDriver::GetListOfTxnTargetEntries(company.results.entries, {2024, 3, 1}, {2024, 3, 31}));
       },
       Table{{"FeaturePermissionAvailable(20, 2, 0)", GoesOn(), GoesOn()},
             {"FeaturePermissionAvailable(16, 2, 0)", checksHidden, checksHidden}} +
           Throwing(
               Table{{"TargExists(201, 3)",
                      GoesOn({Warning("MULTIENTITY_WARNING:: Not able to fetch data for targetId [201] in " + kList)})
                          .Without("entry 20 201 "),
                      Passes()}},
               Caught) +
           listPeriod},
  };
}

}  // namespace faults
