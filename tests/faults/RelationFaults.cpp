#include "faults/Scenario.h"

namespace faults {

namespace {

Table Gate(const std::string& nameInTheNote) {
  return FeatureGate("2", "MULTIENTITY: " + nameInTheNote + " :Feature is disabled");
}

MEAccountInfo InRole(std::int32_t accountId, MEAccountRole role) {
  return {.name = {}, .type = 0, .accountId = accountId, .role = role};
}

std::vector<MEAccountInfo> SouthsAccounts() {
  return {InRole(13, MEAccountRoleDueFrom), InRole(14, MEAccountRoleDueTo)};
}

std::string CreateSouth(MEState state, std::vector<MEAccountInfo> accounts) {
  return Text(MultiEntityDriver::CreateRelation("9131", "South Ltd", static_cast<MERelationType>(2), state,
                                                std::move(accounts)));
}

const std::string kPopulate = "MultiEntityDriver::PopulateCOAInRelation";

Row AccountFound(const std::string& id) {
  return {"GetAccountForRecnum(" + id + ")",
          Ends("28", {Error("MULTIENTITY_ERROR:: no matching Accnt for id [" + id + "] in  " + kPopulate)}), Passes()};
}

Row TypeSwitchedOn(const std::string& flag, const std::string& id) {
  return {
      "IsFeatureEnabled(MultiEntityAccounts, " + flag + ")",
      Ends("28", {Error("MULTIENTITY_ERROR:: Can not use Accnt for MultiEntity for id [" + id + "] in  " + kPopulate)}),
      Passes()};
}

Table ReadingRelations(const std::string& name) {
  return {{"GetAllRelations",
           Ends("8", {Error("MULTIENTITY_ERROR:: " + name + " :Not able to fetch data from relation table")})
               .ResultsUnspecified(),
           Passes()}};
}

}  // namespace

// The answers to whether an account is deleted, a sub-account or special fail as no.
Table UsableAccounts() {
  return {{"GetAccntListPtr", NoSuchFailure(), Passes()},
          {"EdListRefreshList", NoSuchFailure(), Passes()},
          {"OpenAccount", NoSuchFailure(), Passes()},
          {"GetDeleted", GoesOn(), Passes()},
          {"GetType", NoSuchFailure(), Passes()},
          {"GetIsSubAccnt", GoesOn(), Passes()},
          {"IsSpecial", GoesOn(), Passes()}};
}

std::vector<Scenario> RelationScenarios() {
  const Table southsAccounts =
      UsableAccounts() + Table{AccountFound("13"), AccountFound("14"), TypeSwitchedOn("Other_Current_Asset", "13"),
                               TypeSwitchedOn("Other_Current_Liability", "14")};
  const Table create =
      Gate("CreateRelation") + RightToManageRelations("MULTIENTITY: No permission to create relation") + southsAccounts;
  const Handling createFailed =
      Ends("10", {Error("MULTIENTITY_ERROR:: Relation creation failed for realm [9131], due_from_accnt_id [13], "
                        "due_to_accnt_id [14]")});
  const Handling updateFailed = Ends("10", {Error("MULTIENTITY_ERROR:: not able to update relation, realm [9131]")});
  const Table update =
      Gate("UpdateRelationsWithState") + RightToManageRelations("MULTIENTITY: No permission to update relation") +
      southsAccounts +
      Table{
          {"GetRelation",
           Ends("12", {Error("MULTIENTITY_ERROR:: not able to update as relation is not part of table realm [9131]")}),
           Passes()},
          {"HasAnyMatchingAccRecordExclRealm", GoesOn(), Passes()},
          {"UpdateRelationForRealm", updateFailed, Passes()}};
  const Table remove =
      Gate("DeleteRelation") + RightToManageRelations("MULTIENTITY: No permission to delete relation") +
      Table{
          {"GetRelation",
           Ends("12", {Error("MULTIENTITY_ERROR:: not able to delete as relation is not part of table realm [9131]")}),
           Passes()}};
  const auto addSouth = [](Company& company) {
    company.host.store.relations.push_back(
        RelationRow({.relationId = 6, .realmId = "9131", .partnerName = "South Ltd", .state = 1}));
  };
  const auto addSouthWithABill = [addSouth](Company& company) {
    addSouth(company);
    company.host.store.transactions[0].relationId = 6;
  };

  return {
      // A relation that cannot be read is taken for none.
      {"CreatingARelation", "MultiEntityDriver::CreateRelation", Nothing,
       [](Company& /*company*/) { return CreateSouth(MEStateEstablished, SouthsAccounts()); },
       create + Table{{"GetRelation", GoesOn(), Passes()},
                      {"HasAnyMatchingRecord", GoesOn(), Passes()},
                      {"SaveRelation", createFailed, Passes()}}},
      {"CreatingARelationWithoutAccounts", "MultiEntityDriver::CreateRelation", Nothing,
       [](Company& /*company*/) { return CreateSouth(MEStateWithoutAccounts, {}); },
       create + Table{{"GetRelation", GoesOn(), Passes()},
                      {"SaveRelation",
                       Ends("10", {Error("MULTIENTITY_ERROR:: Relation creation failed for realm [9131], "
                                         "due_from_accnt_id [0], due_to_accnt_id [0]")}),
                       Passes()}}},
      // A pending relation that cannot be read is saved anew, which the store declines.
      {"CreatingAPendingRelationAgain", "MultiEntityDriver::CreateRelation", addSouth,
       [](Company& /*company*/) { return CreateSouth(MEStateEstablished, SouthsAccounts()); },
       create + Table{{"GetRelation",
                       Handling(createFailed)
                           .AfterAsking({"HasAnyMatchingRecord", "GetAccntListPtr", "EdListRefreshList", "OpenAccount",
                                         "GetAccountForRecnum", "GetDeleted", "GetType", "GetIsSubAccnt", "IsSpecial",
                                         "IsFeatureEnabled", "OpenAccount", "GetAccountForRecnum", "GetDeleted",
                                         "GetType", "GetIsSubAccnt", "IsSpecial", "IsFeatureEnabled", "SaveRelation"}),
                       Passes()},
                      {"UpdateRelationForRealm", updateFailed, Passes()}}},
      {"FillingARelationsAccounts", "MultiEntityDriver::PopulateCOAInRelation", Nothing,
       [](Company& company) {
         return Text(MultiEntityDriver::PopulateCOAInRelation(company.results.relation, SouthsAccounts()));
       },
       southsAccounts},
      {"UpdatingARelation", "MultiEntityDriver::UpdateRelation", addSouth,
       [](Company& /*company*/) {
         return Text(MultiEntityDriver::UpdateRelation({.realmId = "9131",
                                                        .updateRealm = "their-realm",
                                                        .state = MEStateEstablished,
                                                        .accounts = SouthsAccounts()}));
       },
       update},
      {"UpdatingARelationWithoutAskingForTheRight", "MultiEntityDriver::UpdateRelation", addSouth,
       [](Company& /*company*/) {
         return Text(MultiEntityDriver::UpdateRelation(
             {.realmId = "9131", .updateRealm = {}, .accounts = {}, .skipPermissionCheck = true}));
       },
       update},
      {"DeletingARelation", "MultiEntityDriver::DeleteRelation", addSouth,
       [](Company& /*company*/) { return Text(MultiEntityDriver::DeleteRelation("9131", true)); },
       remove + Table{{"HasAnyMatchingTransaction", GoesOn(), Passes()},
                      {"DeleteRelation",
                       Ends("11", {Error("MULTIENTITY_ERROR:: not able to delete relation from DB, realm [9131]")}),
                       Passes()}}},
      // A relation whose transactions cannot be found is deleted, which the store declines.
      {"DeletingARelationThatHasTransactions", "MultiEntityDriver::DeleteRelation", addSouthWithABill,
       [](Company& /*company*/) { return Text(MultiEntityDriver::DeleteRelation("9131", true)); },
       remove +
           Table{{"HasAnyMatchingTransaction",
                  Ends("11", {Error("MULTIENTITY_ERROR:: not able to delete relation from DB, realm [9131]")})
                      .AfterAsking({"DeleteRelation(9131)"}),
                  Passes()},
                 {"UpdateRelationForRealm",
                  Ends("10", {Error("MULTIENTITY_ERROR:: not able to deactivate relation, realm [9131]")}), Passes()}}},
      {"ReadingARelation", "MultiEntityDriver::GetRelation", Nothing,
       [](Company& company) { return Text(MultiEntityDriver::GetRelation("9130", company.results.relation)); },
       Gate("GetRelation") +
           Table{{"GetRelation",
                  Ends("12", {Warning("MULTIENTITY_WARNING:: not able to get the relation as it is not part of table "
                                      "realm [9130]")})
                      .ResultsUnspecified(),
                  Passes()}}},
      {"ReadingARelationById", "MultiEntityDriver::GetRelationById", Nothing,
       [](Company& company) { return Text(MultiEntityDriver::GetRelationById(5, company.results.relation)); },
       Gate("GetRelationById") +
           Table{{"GetRelationById",
                  Ends("8", {Error("MULTIENTITY_ERROR:: GetRelationById :Not able to fetch data from relation table")})
                      .ResultsUnspecified(),
                  Passes()}}},
      {"ReadingAllRelations", "MultiEntityDriver::GetRelationsList", Nothing,
       [](Company& company) { return Text(MultiEntityDriver::GetRelationsList(company.results.relations)); },
       Gate("GetAllRelations") + ReadingRelations("GetAllRelations")},
      {"ReadingTheRealmIds", "MultiEntityDriver::GetRelationRealmIdList",
       [](Company& company) { company.results.realmIds = {"9129"}; },
       [](Company& company) { return Text(MultiEntityDriver::GetRelationRealmIdList(company.results.realmIds, true)); },
       Gate("GetRelationRealmIdList") +
           Table{{"GetAllRelations",
                  Ends("8", {Error("MULTIENTITY_ERROR:: GetRelationRealmIdList :Not able to fetch data from relation "
                                   "table")}),
                  Passes()}}},
  };
}

}  // namespace faults
