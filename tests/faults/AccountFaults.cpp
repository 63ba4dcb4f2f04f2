#include "faults/Scenario.h"

namespace faults {

namespace {

// The listing tells apart what goes out of range.
Handling CaughtWhileListing(Thrown thrown) {
  if (thrown != Thrown::kOutOfRange) {
    return Ends("14", {Error("MULTIENTITY_ERROR:: GetAllUnusedAccounts: Unknown Exception ")});
  }
  return Ends("14", {Error("MULTIENTITY_ERROR:: GetAllUnusedAccounts: Exception as out of range " +
                           std::string(kWhatOfOutOfRange))});
}

std::function<std::string(Company&)> List(MEAccountFilter filter) {
  return [=](Company& company) {
    company.results.accounts = {{99, {"what the caller had", ""}}};
    return Text(MultiEntityDriver::GetAccountsList(company.results.accounts, filter, "9130"));
  };
}

Row TypeSwitch(const std::string& flag, const std::string& dropped) {
  return {"IsFeatureEnabled(MultiEntityAccounts, " + flag + ")", GoesOn().Without(dropped), CaughtWhileListing};
}

}  // namespace

// Which account is asked about first is the map's choice, so the switches stand for the accounts of their type.
std::vector<Scenario> AccountScenarios() {
  const Table list =
      FeatureGate("2", "MULTIENTITY: GetAllUnusedAccounts :Feature is disabled") +
      Table{{"GetAllAccounts", NoSuchFailure(), CaughtWhileListing},
            {"GetAllRelations",
             Ends("8", {Error("MULTIENTITY_ERROR:: GetAllRelations :Not able to fetch data from relation "
                              "table")}),
             CaughtWhileListing},
            {"OpenAccount", NoSuchFailure(), CaughtWhileListing},
            {"GetType", NoSuchFailure(), CaughtWhileListing},
            {"GetIsSubAccnt", GoesOn(), CaughtWhileListing},
            {"IsSpecial", GoesOn(), CaughtWhileListing},
            TypeSwitch("Expense", "15 ")};
  return {
      {"ListingTheUnusedAccounts", "MultiEntityDriver::GetAccountsList",
       [](Company& company) {
         company.host.chart.accounts.erase(13);
         company.host.chart.accounts.erase(14);
       },
       List(MEAccountFilterUnused), list},
      {"ListingTheUnusedAccountsAndTheRelationsOwn", "MultiEntityDriver::GetAccountsList",
       [](Company& company) {
         company.host.chart.accounts.erase(13);
         company.host.chart.accounts.erase(14);
       },
       List(MEAccountFilterUnusedOrOwn),
       list + Table{TypeSwitch("Other_Current_Asset", "11 "), TypeSwitch("Other_Current_Liability", "12 ")}},
      {"ListingTheAccountsOfAType", "MultiEntityDriver::GetAccountListByType", Nothing,
       [](Company& company) {
         return Text(MultiEntityDriver::GetAccountListByType(KrEnumerations::kExpense, company.results.accountsOfType));
       },
       FeatureGate("2", "MULTIENTITY: GetAccountList :Feature is disabled") +
           Table{{"GetListOfAccounts", NoSuchFailure(), Passes()}}},
      {"AskingWhetherAnAccountMayServe", "MultiEntityDriver::IsCOAValidForMultiEntity", Nothing,
       [](Company& company) {
         CAccnt account(company.host.chart, 15, kFeatureTypeStandard);
         return Text(MultiEntityDriver::IsCOAValidForMultiEntity(&account));
       },
       Table{{"OpenAccount", NoSuchFailure(), Passes()},
             {"GetType", NoSuchFailure(), Ends("false")},
             {"GetIsSubAccnt", GoesOn(), Ends("false")},
             {"IsSpecial", GoesOn(), Ends("false")},
             {"IsFeatureEnabled(MultiEntityAccounts, Expense)", Ends("false"), Ends("false")}}},
  };
}

}  // namespace faults
