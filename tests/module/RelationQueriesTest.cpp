#include <stdexcept>
#include <string>
#include <vector>

#include "module/Arrangements.h"

namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

const std::string kGet = "MultiEntityDriver::GetRelation";
const std::string kGetById = "MultiEntityDriver::GetRelationById";
const std::string kGetList = "MultiEntityDriver::GetRelationsList";
const std::string kGetRealms = "MultiEntityDriver::GetRelationRealmIdList";

class RelationQuery : public AttachedTest {
 protected:
  // Three relations: pending, without accounts, deactivated.
  void KeepThree() {
    host.store.relations = {RelationRow({.relationId = 3, .realmId = "9133", .state = 1}),
                            RelationRow({.relationId = 1, .realmId = "9131", .state = 4}),
                            RelationRow({.relationId = 2, .realmId = "9132", .state = 5})};
  }

  std::vector<std::string> StoreCalls() const {
    return host.CallsOf({"GetRelation", "GetRelationById", "GetAllRelations"});
  }

  // What the caller has before it asks.
  DBMultiEntityRelation row = RelationRow({.relationId = 77});
  std::vector<DBMultiEntityRelation> rows{RelationRow({.relationId = 77}), RelationRow({.relationId = 78})};
  std::vector<std::string> realmIds{"9177"};
};

testing::Matcher<DBMultiEntityRelation> WithId(std::int32_t relationId) {
  return Field("relationId", &DBMultiEntityRelation::relationId, relationId);
}

testing::Matcher<std::vector<DBMultiEntityRelation>> TheCallersOwn() {
  return ElementsAre(WithId(77), WithId(78));
}

TEST_F(RelationQuery, ByRealmIsRefusedWhileTheFeatureIsOff) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  EXPECT_EQ(MultiEntityDriver::GetRelation("9131", row), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kGet, "MULTIENTITY: GetRelation :Feature is disabled"));
  EXPECT_THAT(row, WithId(77));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationQuery, ByRealmGivesTheRowWithAnExitLine) {
  KeepThree();

  EXPECT_EQ(MultiEntityDriver::GetRelation("9131", row), MEStatusSuccess);

  EXPECT_THAT(row, WithId(1));
  EXPECT_THAT(host.Lines(), InOrder(Entering(kGet), FeatureAsked(), RightAsked(), RightAnswered(), Exiting(kGet)));
}

TEST_F(RelationQuery, ByRealmNeedsARealmId) {
  EXPECT_EQ(MultiEntityDriver::GetRelation("", row), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(), InOrder(Entering(kGet), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR::GetRelation failed as Invalid data for realm []")));
  EXPECT_THAT(row, WithId(77));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationQuery, ByRealmRefusesTwentyCharactersBeforeTheStoreIsAsked) {
  EXPECT_EQ(MultiEntityDriver::GetRelation(Characters(20), row), MEStatusInvalidData);

  EXPECT_THAT(host.LinesOf(kGet),
              InOrder(Entering(kGet), Error("MULTIENTITY_ERROR::GetRelation failed as Invalid data for realm "
                                            "[77777777777777777777]")));
  EXPECT_THAT(row, WithId(77));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationQuery, ByRealmTakesNineteenCharacters) {
  host.store.relations = {RelationRow({.relationId = 8, .realmId = "7777777777777777777"})};

  EXPECT_EQ(MultiEntityDriver::GetRelation(Characters(19), row), MEStatusSuccess);

  EXPECT_THAT(row, WithId(8));
}

TEST_F(RelationQuery, ByRealmWarnsOfAPartnerWithoutRelation) {
  EXPECT_EQ(MultiEntityDriver::GetRelation("9139", row), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kGet), FeatureAsked(), RightAsked(), RightAnswered(),
                      Warning("MULTIENTITY_WARNING:: not able to get the relation as it is not part of table realm "
                              "[9139]")));
}

TEST_F(RelationQuery, ByRealmLetsTheStoresExceptionThrough) {
  host.ThrowAt("GetRelation", std::runtime_error("the file is locked"));

  EXPECT_THROW(MultiEntityDriver::GetRelation("9131", row), std::runtime_error);
}

TEST_F(RelationQuery, ByIdIsRefusedWhileTheFeatureIsOff) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  EXPECT_EQ(MultiEntityDriver::GetRelationById(1, row), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kGetById, "MULTIENTITY: GetRelationById :Feature is disabled"));
  EXPECT_THAT(row, WithId(77));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationQuery, ByIdGivesTheRowWithoutAnExitLine) {
  KeepThree();

  EXPECT_EQ(MultiEntityDriver::GetRelationById(2, row), MEStatusSuccess);

  EXPECT_THAT(row, WithId(2));
  EXPECT_STREQ(row.realmId, "9132");
  EXPECT_THAT(host.Lines(), InOrder(Entering(kGetById), FeatureAsked(), RightAsked(), RightAnswered()));
}

TEST_F(RelationQuery, ByIdAsksTheStoreForAnyIdAndReportsAMissingOne) {
  KeepThree();

  EXPECT_EQ(MultiEntityDriver::GetRelationById(-4, row), MEStatusReadFailed);

  EXPECT_THAT(StoreCalls(), InOrder("GetRelationById(-4)"));
  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kGetById), FeatureAsked(), RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR:: GetRelationById :Not able to fetch data from relation table")));
}

TEST_F(RelationQuery, ByIdLetsTheStoresExceptionThrough) {
  host.ThrowAt("GetRelationById", 42);

  EXPECT_THROW(MultiEntityDriver::GetRelationById(1, row), int);
}

TEST_F(RelationQuery, OfAllIsRefusedWhileTheFeatureIsOff) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  EXPECT_EQ(MultiEntityDriver::GetRelationsList(rows), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kGetList, "MULTIENTITY: GetAllRelations :Feature is disabled"));
  EXPECT_THAT(rows, TheCallersOwn());
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationQuery, OfAllReplacesTheCallersRowsByTheStoresInItsOrderWithoutAnExitLine) {
  KeepThree();

  EXPECT_EQ(MultiEntityDriver::GetRelationsList(rows), MEStatusSuccess);

  EXPECT_THAT(rows, ElementsAre(WithId(3), WithId(1), WithId(2)));
  EXPECT_THAT(host.Lines(), InOrder(Entering(kGetList), FeatureAsked(), RightAsked(), RightAnswered()));
}

TEST_F(RelationQuery, OfAllLeavesTheCallerNothingFromAnEmptyTable) {
  EXPECT_EQ(MultiEntityDriver::GetRelationsList(rows), MEStatusSuccess);

  EXPECT_THAT(rows, IsEmpty());
}

TEST_F(RelationQuery, OfAllReportsATableThatCannotBeRead) {
  host.FailAt("GetAllRelations");

  EXPECT_EQ(MultiEntityDriver::GetRelationsList(rows), MEStatusReadFailed);

  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kGetList), FeatureAsked(), RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR:: GetAllRelations :Not able to fetch data from relation table")));
}

TEST_F(RelationQuery, OfAllLetsTheStoresExceptionThrough) {
  host.ThrowAt("GetAllRelations", std::out_of_range("row"));

  EXPECT_THROW(MultiEntityDriver::GetRelationsList(rows), std::out_of_range);
}

TEST_F(RelationQuery, OfRealmIdsIsRefusedWhileTheFeatureIsOff) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  EXPECT_EQ(MultiEntityDriver::GetRelationRealmIdList(realmIds, false), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kGetRealms, "MULTIENTITY: GetRelationRealmIdList :Feature is disabled"));
  EXPECT_THAT(realmIds, InOrder("9177"));
  EXPECT_THAT(StoreCalls(), IsEmpty());
}

TEST_F(RelationQuery, OfRealmIdsAppendsThoseOfAllRelationsInTableOrderWithoutAnExitLine) {
  KeepThree();

  EXPECT_EQ(MultiEntityDriver::GetRelationRealmIdList(realmIds, false), MEStatusSuccess);

  EXPECT_THAT(realmIds, InOrder("9177", "9133", "9131", "9132"));
  EXPECT_THAT(host.Lines(), InOrder(Entering(kGetRealms), FeatureAsked(), RightAsked(), RightAnswered()));
}

TEST_F(RelationQuery, OfRealmIdsLeavesOutOnlyTheRelationsWithoutAccountsOnRequest) {
  KeepThree();

  EXPECT_EQ(MultiEntityDriver::GetRelationRealmIdList(realmIds, true), MEStatusSuccess);

  EXPECT_THAT(realmIds, InOrder("9177", "9133", "9132"));
}

TEST_F(RelationQuery, OfRealmIdsAppendsAlsoThoseThatTheCallerHas) {
  KeepThree();

  MultiEntityDriver::GetRelationRealmIdList(realmIds, true);
  MultiEntityDriver::GetRelationRealmIdList(realmIds, true);

  EXPECT_THAT(realmIds, InOrder("9177", "9133", "9132", "9133", "9132"));
}

TEST_F(RelationQuery, OfRealmIdsTakesAnIdThatFillsItsField) {
  host.store.relations = {RelationRow({.realmId = "7777777777777777777"})};

  MultiEntityDriver::GetRelationRealmIdList(realmIds, false);

  EXPECT_THAT(realmIds, InOrder("9177", "7777777777777777777"));
}

TEST_F(RelationQuery, OfRealmIdsAppendsNothingFromAnEmptyTable) {
  EXPECT_EQ(MultiEntityDriver::GetRelationRealmIdList(realmIds, false), MEStatusSuccess);

  EXPECT_THAT(realmIds, InOrder("9177"));
}

TEST_F(RelationQuery, OfRealmIdsLeavesTheCallersListWhenTheTableCannotBeRead) {
  host.FailAt("GetAllRelations");

  EXPECT_EQ(MultiEntityDriver::GetRelationRealmIdList(realmIds, false), MEStatusReadFailed);

  EXPECT_THAT(realmIds, InOrder("9177"));
  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kGetRealms), FeatureAsked(), RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR:: GetRelationRealmIdList :Not able to fetch data from relation "
                            "table")));
}

TEST_F(RelationQuery, OfRealmIdsLetsTheStoresExceptionThroughAndLeavesTheCallersList) {
  host.ThrowAt("GetAllRelations", std::runtime_error("the file is locked"));

  EXPECT_THROW(MultiEntityDriver::GetRelationRealmIdList(realmIds, false), std::runtime_error);

  EXPECT_THAT(realmIds, InOrder("9177"));
}

}  // namespace
