#include "faults/Scenario.h"
#include "support/MultiEntityPrivateAccess.h"

namespace faults {

namespace {

std::function<std::string(Company&)> UpdateByRequest(const char* requestId, MEState state) {
  return [=](Company& /*company*/) {
    return Text(MultiEntityDriver::UpdateTransactionWithState("9130", requestId, state));
  };
}

std::function<std::string(Company&)> UpdateByLine(std::int32_t txnId, std::int32_t targetId, MEState state) {
  return [=](Company& /*company*/) {
    return Text(MultiEntityDriver::UpdateTransactionWithState(txnId, targetId, state));
  };
}

std::function<std::string(Company&)> AskForRequest(const char* requestId) {
  return [=](Company& /*company*/) {
    return Text(MultiEntityDriver::DoesTransactionExist("9130", requestId));
  };
}

std::function<std::string(Company&)> SaveRejectedBill(const char* requestId, const char* amount) {
  return [=](Company& /*company*/) {
    return Text(MultiEntityDriver::SaveRejectedTransaction(requestId, kTxnTypeBill, "9130", amount, "their-new-bill"));
  };
}

Table Query(const std::string& name) {
  return {{"OpenQuery", NoSuchFailure(), Passes()},
          {"SetSelect", GoesOn().Without("10").Without("30"), Passes()},
          {"SetStatement", NoSuchFailure(), Passes()},
          {"DoQuery", Ends("false", {Error("MULTIENTITY_ERROR::DQE query execution failed for " + name)}), Passes()},
          {"ResultExists", Ends("true"), Passes()},
          {"First", Ends("true"), Passes()},
          {"Next", Ends("true"), Passes()},
          {"GetTransPtrType", NoSuchFailure(), Passes()}};
}

}  // namespace

std::vector<Scenario> TransactionScenarios() {
  const std::string update = "MultiEntityDriver::UpdateTransactionWithState";
  const auto updateByRequest = [&](const std::string& kind, const std::string& txnId) {
    return FeatureGate("2", "MULTIENTITY: UpdateRelationsWithState :Feature is disabled") +
           Right("3", "MULTIENTITY_ERROR: No permission to update " + kind) +
           Table{{"GetRelation",
                  Ends("12",
                       {Error("MULTIENTITY_ERROR:: not able to update as relation is not part of table realm [9130]")}),
                  Passes()},
                 {"GetTransactionWithRequestId",
                  Ends("12", {Warning("MULTIENTITY_WARNING:: not able to update as transaction is not part of table "
                                      "realm [9130]")}),
                  Passes()},
                 {"TargExists", GoesOn(), Passes()},
                 {"UpdateMETransaction",
                  Ends("19", {Error("MULTIENTITY_ERROR:: Not able to delete GJE in  " + update)}), Passes()},
                 {"UpdateTransaction",
                  Ends("8", {Error("MULTIENTITY_ERROR:: Not able to update transaction data with id [" + txnId +
                                   "] from transaction table " + update)}),
                  Passes()}};
  };
  const auto updateByLine = [&](const std::string& kind, const std::string& txnId, const std::string& targetId) {
    return Right("3", "MULTIENTITY: No permission to update " + kind) +
           Table{{"GetTransaction",
                  Ends("12", {Error("MULTIENTITY_ERROR::GetTransaction failed for txnId [" + txnId + "] , targetId [" +
                                    targetId + "],  " + update)}),
                  Passes()},
                 {"UpdateTransaction",
                  Ends("10", {Error("MULTIENTITY_ERROR:not able to UpdateTransaction for txnid [" + txnId +
                                    "] and targetId [" + targetId + "]")}),
                  Passes()}};
  };
  const Handling existenceCaught = Ends(
      "14",
      {Error("MULTIENTITY_ERROR:: exception occured during fetching data  MultiEntityDriver::DoesTransactionExist")});
  const Table ofATransaction{
      {"GetRelation", Ends("0"), existenceCaught},
      {"HasAnyMatchingTransaction", Ends("0").AfterAsking({"HasAnyMatchingRejectedTransaction"}), existenceCaught}};
  const Table ofARejectedOne{{"GetRelation", Ends("0"), existenceCaught},
                             {"HasAnyMatchingTransaction", GoesOn(), existenceCaught},
                             {"HasAnyMatchingRejectedTransaction", Ends("0"), existenceCaught}};
  const std::string save = "MultiEntityDriver::SaveRejectedTransaction";
  const Handling saveCaught =
      Ends("14", {Error("MULTIENTITY_ERROR:: exception occured during fetching data  " + save)});
  const Table saveRejected =
      Right("3", "MULTIENTITY: No permission to record txn") +
      Table{
          {"GetRelation",
           Ends("12", {Error("MULTIENTITY_ERROR:: Relation fatching failed for realm [9130] in " + save)}), saveCaught},
          {"InvalidParameter", NoSuchFailure(), saveCaught},
          {"SaveRejectedTransaction",
           Ends("0",
                {Error("MULTIENTITY_ERROR:: Not able to save Rejected Transaction data in Rejected Txn table in  " +
                       save)}),
           saveCaught}};
  const auto skipped = [](const std::string& kind, const std::string& requestId) {
    return GoesOn({Notice("MULTIENTITY::Exiting MultiEntityDriver::HasMEPermission"),
                   Trace("MULTIENTITY: No permission to update " + kind + " for Request Id: " + requestId)})
        .InsteadOf(1)
        .Without("rejected " + std::string(kind == "Bills" ? "9" : "3") + " 4 ");
  };

  return {
      {"ConfirmingAnEntryByItsRequest",
       "MultiEntityDriver::UpdateTransactionWithState(Util::TString, Util::TString, MEState)", Nothing,
       UpdateByRequest("entry-request", MEStateEstablished), updateByRequest("GJE", "30")},
      {"MovingABillByItsRequest",
       "MultiEntityDriver::UpdateTransactionWithState(Util::TString, Util::TString, MEState)", Nothing,
       UpdateByRequest("bill-request", MEStateDeactivated), updateByRequest("Bills", "10")},
      {"MovingAnEntryByItsLine", "MultiEntityDriver::UpdateTransactionWithState(int, int, MEState)", Nothing,
       UpdateByLine(30, 301, MEStateEstablished), updateByLine("GJE", "30", "301")},
      {"MovingABillByItsLine", "MultiEntityDriver::UpdateTransactionWithState(int, int, MEState)", Nothing,
       UpdateByLine(10, 101, MEStatePending), updateByLine("Bills", "10", "101")},
      {"MovingACheckByItsRequest",
       "MultiEntityDriver::UpdateTransactionWithState(Util::TString, Util::TString, MEState)", AddACheck,
       UpdateByRequest("check-request", MEStateDeactivated), updateByRequest("Checks", "20")},
      {"MovingACheckByItsLine", "MultiEntityDriver::UpdateTransactionWithState(int, int, MEState)", AddACheck,
       UpdateByLine(20, 201, MEStatePending), updateByLine("Checks", "20", "201")},
      {"LookingForARequestThatIsBooked", "MultiEntityDriver::DoesTransactionExist", Nothing,
       AskForRequest("entry-request"), ofATransaction},
      {"LookingForARequestThatWasRejected", "MultiEntityDriver::DoesTransactionExist", Nothing,
       AskForRequest("rejected-bill"), ofARejectedOne},
      {"LookingForARequestThatIsNotKnown",
       "MultiEntityDriver::DoesTransactionExist",
       Nothing,
       AskForRequest("new-request"),
       {{"GetRelation", Ends("0"), existenceCaught},
        {"HasAnyMatchingTransaction", GoesOn(), existenceCaught},
        {"HasAnyMatchingRejectedTransaction", GoesOn(), existenceCaught}}},
      {"RememberingARejectedBill", "MultiEntityDriver::SaveRejectedTransaction", Nothing,
       SaveRejectedBill("new-request", "12.00"), saveRejected},
      {"RememberingARejectedBillWhoseTextsDoNotFit", "MultiEntityDriver::SaveRejectedTransaction", Nothing,
       SaveRejectedBill("7777777777777777777777777777777777777", "00000000000000000000001"), saveRejected},
      {"ListingRejectedTransactions", "MultiEntityDriver::GetAllRejectedTransaction",
       [](Company& company) { company.host.preferences.multiCurrency = true; },
       [](Company& company) { return Text(MultiEntityDriver::GetAllRejectedTransaction(company.results.rejected)); },
       FeatureGate("2", "MULTIENTITY: GetAllRejectedTransaction :Feature is disabled") + HomeCurrency() +
           Table{
               {"GetAllRejectedTransaction",
                Ends("8", {Error("MULTIENTITY_ERROR:: GetAllRejectedTransaction :Not able to fetch data from rejected "
                                 "txn table")}),
                Passes()},
               {"FeaturePermissionAvailable(20, 2, 0)", skipped("Bills", "rejected-bill"),
                skipped("Bills", "rejected-bill")},
               {"FeaturePermissionAvailable(16, 2, 0)", skipped("Checks", "rejected-check"),
                skipped("Checks", "rejected-check")},
               {"GetRelationById",
                Ends("8", {Error("MULTIENTITY_ERROR::Invalid relation for the meTxn with relationId [5]  "
                                 "MultiEntityDriver::GetAllRejectedTransaction ")}),
                Passes()},
               {"String2Dollar(1250.50)", GoesOn().With("1,250.50", "0.00"), Passes()},
               {"String2Dollar(7)", GoesOn().With("7.00", "0.00"), Passes()},
               {"Money2Str_s", NoSuchFailure(), Passes()}}},
      {"ForgettingARejectedTransaction",
       "MultiEntityDriver::DeleteRejectedTransaction",
       Nothing,
       [](Company& /*company*/) { return Text(MultiEntityDriver::DeleteRejectedTransaction("rejected-bill")); },
       {{"DeleteRejectedTransaction",
         Ends("0", {Error("MULTIENTITY_ERROR:: Not able to save Rejected Transaction data in ME Txn table in  "
                          "MultiEntityDriver::DeleteRejectedTransaction")}),
         Passes()}}},
      {"FindingTransactions", "MultiEntityDriver::GetTxns", [](Company& company) { company.results.txns = {7}; },
       [](Company& company) { return Text(MultiEntityPrivateAccess::GetTxns(4, company.results.txns)); },
       Query("MultiEntityDriver::GetTxns")},
      {"FindingTheTransactionsOfAPeriod", "MultiEntityDriver::GetTxnsForPeriod",
       [](Company& company) { company.results.txns = {7}; },
       [](Company& company) {
         return Text(
             MultiEntityPrivateAccess::GetTxnsForPeriod({2024, 3, 1}, {2024, 3, 31}, 4, 2, company.results.txns));
       },
       Query("MultiEntityDriver::GetTxnsForPeriod")},
  };
}

}  // namespace faults
