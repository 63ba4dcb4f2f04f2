#include <stdexcept>
#include <string>
#include <vector>

#include "module/Arrangements.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kListing = "MultiEntityDriver::GetAllRejectedTransaction";

// A field over its full width, the NULs included.
template <std::size_t kWidth>
std::string WholeField(const char (&field)[kWidth]) {
  return {field, kWidth};
}

// A text as a field of that width holds it.
std::string Padded(std::string text, std::size_t width) {
  text.resize(width, '\0');
  return text;
}

struct Rejection {
  Util::TString requestId = "request-1";
  std::int16_t txnType = 9;
  Util::TString realmId = "9130";
  Util::TString amount = "1,250.50";
  Util::TString partnerTxnId = "partner-1";
};

class RejectedTransaction : public AttachedTest {
 protected:
  RejectedTransaction() {
    host.permissions.Grant(kFeatureBills, kActionView);
    host.permissions.Grant(kFeatureChecks, kActionView);
    host.permissions.Grant(kFeatureJournalEntries, kActionView);
    host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130"})};
  }

  static MEStatusCode Save(const Rejection& rejection) {
    return MultiEntityDriver::SaveRejectedTransaction(rejection.requestId, rejection.txnType, rejection.realmId,
                                                      rejection.amount, rejection.partnerTxnId);
  }

  const DBMultiEntityRejectedTxnReceiver& Saved() const { return host.store.rejected.at(0); }
};

TEST_F(RejectedTransaction, IsRememberedInOneRow) {
  EXPECT_EQ(Save({}), MEStatusSuccess);

  ASSERT_THAT(host.store.rejected, SizeIs(1));
  EXPECT_EQ(WholeField(Saved().requestId), Padded("request-1", 37));
  EXPECT_EQ(Saved().txnType, 9);
  EXPECT_EQ(Saved().relationId, 5);
  EXPECT_EQ(WholeField(Saved().amount), Padded("1,250.50", 22));
  EXPECT_EQ(WholeField(Saved().partnerTxnId), Padded("partner-1", 37));
}

TEST_F(RejectedTransaction, IsRememberedInThisOrderWithoutALineOfItsOwn) {
  Save({});

  EXPECT_THAT(host.Calls(), InOrder("FeaturePermissionAvailable(20, 2, 0)", "GetRelation(9130)",
                                    "SaveRejectedTransaction(request-1)"));
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(RejectedTransaction, ThatIsACheckNeedsTheRightToViewChecks) {
  EXPECT_EQ(Save({.txnType = 3}), MEStatusSuccess);

  EXPECT_EQ(Saved().txnType, 3);
  EXPECT_THAT(host.CallsOf({"FeaturePermissionAvailable"}), InOrder("FeaturePermissionAvailable(16, 2, 0)"));
}

TEST_F(RejectedTransaction, IsNotRememberedForAUserWhoMayNotViewSuchTransactions) {
  host.permissions.features = {{kFeatureChecks, kActionView}, {kFeatureBills, kActionModify}};

  EXPECT_EQ(Save({}), MEStatusPermissionDenied);

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(), Trace("MULTIENTITY: No permission to record txn")));
  EXPECT_THAT(host.Calls(), InOrder("FeaturePermissionAvailable(20, 2, 0)"));
}

TEST_F(RejectedTransaction, IsNotRememberedWhenTheHostCannotTellTheRight) {
  host.ThrowAt("FeaturePermissionAvailable", std::runtime_error("nobody is signed in"));

  EXPECT_EQ(Save({}), MEStatusPermissionDenied);
}

TEST_F(RejectedTransaction, IsRememberedAlsoWhileTheFeatureIsOff) {
  HaveTheFeatureOff(host);

  EXPECT_EQ(Save({}), MEStatusSuccess);

  EXPECT_THAT(host.store.rejected, SizeIs(1));
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered()));
}

TEST_F(RejectedTransaction, NeedsARelationWithThePartner) {
  EXPECT_EQ(Save({.realmId = "9139"}), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: Relation fatching failed for realm [9139] in "
                                          "MultiEntityDriver::SaveRejectedTransaction")));
  EXPECT_THAT(host.CallsOf({"SaveRejectedTransaction"}), IsEmpty());
}

TEST_F(RejectedTransaction, HasFieldsForIdsOfThirtySixCharacters) {
  EXPECT_EQ(Save({.requestId = Characters(36), .partnerTxnId = Characters(36)}), MEStatusSuccess);

  EXPECT_EQ(WholeField(Saved().requestId), Padded(std::string(36, '7'), 37));
  EXPECT_EQ(WholeField(Saved().partnerTxnId), Padded(std::string(36, '7'), 37));
  EXPECT_THAT(host.CallsOf({"InvalidParameter"}), IsEmpty());
}

TEST_F(RejectedTransaction, IsRememberedWithoutARequestIdThatIsTooLong) {
  EXPECT_EQ(Save({.requestId = Characters(37)}), MEStatusSuccess);

  EXPECT_EQ(WholeField(Saved().requestId), Padded("", 37));
  EXPECT_EQ(WholeField(Saved().partnerTxnId), Padded("partner-1", 37));
  EXPECT_THAT(host.CallsOf({"InvalidParameter"}), InOrder("InvalidParameter()"));
}

TEST_F(RejectedTransaction, IsRememberedWithoutAPartnersIdThatIsTooLong) {
  EXPECT_EQ(Save({.partnerTxnId = Characters(37)}), MEStatusSuccess);

  EXPECT_EQ(WholeField(Saved().amount), Padded("1,250.50", 22));
  EXPECT_EQ(WholeField(Saved().partnerTxnId), Padded("", 37));
  EXPECT_THAT(host.CallsOf({"InvalidParameter"}), InOrder("InvalidParameter()"));
}

TEST_F(RejectedTransaction, HasAnAmountOfTwentyOneCharactersWithItsNul) {
  EXPECT_EQ(Save({.amount = "123456789012345678.90"}), MEStatusSuccess);

  EXPECT_EQ(WholeField(Saved().amount), Padded("123456789012345678.90", 22));
}

TEST_F(RejectedTransaction, HasAnAmountOfTwentyTwoCharactersRightBeforeThePartnersId) {
  EXPECT_EQ(Save({.amount = "1234567890123456789.00"}), MEStatusSuccess);

  EXPECT_EQ(WholeField(Saved().amount), "1234567890123456789.00");
  EXPECT_EQ(WholeField(Saved().partnerTxnId), Padded("partner-1", 37));
  EXPECT_THAT(host.CallsOf({"InvalidParameter"}), IsEmpty());
}

TEST_F(RejectedTransaction, HasAnAmountOfTwentyTwoCharactersBeforeAPartnersIdThatIsEmpty) {
  EXPECT_EQ(Save({.amount = "1234567890123456789.00", .partnerTxnId = ""}), MEStatusSuccess);

  EXPECT_EQ(WholeField(Saved().amount), "1234567890123456789.00");
  EXPECT_EQ(WholeField(Saved().partnerTxnId), Padded("", 37));
}

TEST_F(RejectedTransaction, IsRememberedWithoutAnAmountThatIsTooLong) {
  EXPECT_EQ(Save({.amount = "12345678901234567890.00"}), MEStatusSuccess);

  EXPECT_EQ(WholeField(Saved().amount), Padded("", 22));
  EXPECT_EQ(WholeField(Saved().partnerTxnId), Padded("partner-1", 37));
  EXPECT_THAT(host.CallsOf({"InvalidParameter"}), InOrder("InvalidParameter()"));
}

TEST_F(RejectedTransaction, TellsTheHostOfEachTextThatIsTooLong) {
  EXPECT_EQ(Save({.requestId = Characters(37), .amount = Characters(23), .partnerTxnId = Characters(37)}),
            MEStatusSuccess);

  EXPECT_THAT(host.CallsOf({"InvalidParameter"}),
              InOrder("InvalidParameter()", "InvalidParameter()", "InvalidParameter()"));
  EXPECT_EQ(Saved().relationId, 5);
}

TEST_F(RejectedTransaction, TakesAnyAmountTextAsItIs) {
  EXPECT_EQ(Save({.amount = "twelve pounds"}), MEStatusSuccess);

  EXPECT_EQ(WholeField(Saved().amount), Padded("twelve pounds", 22));
}

TEST_F(RejectedTransaction, ThatTheStoreDeclinesIsReported) {
  host.FailAt("SaveRejectedTransaction");

  EXPECT_EQ(Save({}), MEStatusDeclined);

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: Not able to save Rejected Transaction data in Rejected "
                                          "Txn table in  MultiEntityDriver::SaveRejectedTransaction")));
}

class RejectedType : public RejectedTransaction, public testing::WithParamInterface<std::int16_t> {};

TEST_P(RejectedType, OtherThanBillAndCheckIsRefusedAndTheHostIsNotAsked) {
  host.permissions.administrator = true;

  EXPECT_EQ(Save({.txnType = GetParam()}), MEStatusPermissionDenied);

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(), Trace("MULTIENTITY: No permission to record txn")));
  EXPECT_THAT(host.Calls(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Every, RejectedType,
                         testing::Values(std::int16_t{0}, std::int16_t{1}, std::int16_t{8}, std::int16_t{-9},
                                         std::int16_t{32767}));

class RelationWithoutAnId : public RejectedTransaction, public testing::WithParamInterface<std::int32_t> {};

TEST_P(RelationWithoutAnId, IsTakenAsNone) {
  host.store.relations = {RelationRow({.relationId = GetParam(), .realmId = "9130"})};

  EXPECT_EQ(Save({}), MEStatusInvalidData);

  EXPECT_THAT(host.store.rejected, IsEmpty());
  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: Relation fatching failed for realm [9130] in "
                                          "MultiEntityDriver::SaveRejectedTransaction")));
}

INSTANTIATE_TEST_SUITE_P(Every, RelationWithoutAnId, testing::Values(0, -1, -2147483647));

TEST_F(RejectedTransaction, IsRememberedForTheCompanysFirstRelation) {
  host.store.relations.front().relationId = 1;

  EXPECT_EQ(Save({}), MEStatusSuccess);

  EXPECT_EQ(Saved().relationId, 1);
}

class RejectedTransactionStep : public RejectedTransaction, public testing::WithParamInterface<const char*> {};

TEST_P(RejectedTransactionStep, ReportsWhateverTheHostThrowsAndRemembersNothing) {
  host.ThrowAt(GetParam(), 42);

  EXPECT_EQ(Save({.amount = Characters(23)}), MEStatusException);

  EXPECT_THAT(host.Lines(), InOrder(RightAsked(), RightAnswered(),
                                    Error("MULTIENTITY_ERROR:: exception occured during fetching data  "
                                          "MultiEntityDriver::SaveRejectedTransaction")));
  EXPECT_THAT(host.store.rejected, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Every, RejectedTransactionStep,
                         testing::Values("GetRelation", "InvalidParameter", "SaveRejectedTransaction"),
                         [](const auto& tested) { return std::string(tested.param); });

class RejectedTransactions : public RejectedTransaction {
 protected:
  RejectedTransactions() {
    host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130", .partnerName = "North Ltd"}),
                            RelationRow({.relationId = 6, .realmId = "9131", .partnerName = "South Ltd"})};
    host.store.rejected = {
        RejectedRow(
            {.requestId = "bill-1", .txnType = 9, .relationId = 5, .amount = "1250.5", .partnerTxnId = "partner-1"}),
        RejectedRow(
            {.requestId = "check-1", .txnType = 3, .relationId = 6, .amount = "-7", .partnerTxnId = "partner-2"})};
  }

  MEStatusCode List() { return MultiEntityDriver::GetAllRejectedTransaction(list); }

  std::vector<std::string> RequestIds() const {
    std::vector<std::string> ids;
    std::ranges::transform(list, std::back_inserter(ids),
                           [](const MERejectedTxnInfo& info) { return std::string(info.requestId.view()); });
    return ids;
  }

  std::vector<MERejectedTxnInfo> list;
};

TEST_F(RejectedTransactions, AreNotListedWhileTheFeatureIsOff) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  EXPECT_EQ(List(), MEStatusFeatureDisabled);

  EXPECT_THAT(host.Lines(), RefusedAsDisabled(kListing, "MULTIENTITY: GetAllRejectedTransaction :Feature is disabled"));
  EXPECT_THAT(host.CallsOf({"GetAllRejectedTransaction"}), IsEmpty());
}

TEST_F(RejectedTransactions, AreListedInTheStoresOrder) {
  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(RequestIds(), ElementsAre("bill-1", "check-1"));
  EXPECT_THAT(host.Lines(), InOrder(Entering(kListing), FeatureAsked(), RightAsked(), RightAnswered(), RightAsked(),
                                    RightAnswered()));
}

TEST_F(RejectedTransactions, AreListedAsTextForDisplay) {
  host.preferences.multiCurrency = true;
  host.preferences.homeCurrency = "EUR";

  List();

  ASSERT_THAT(list, SizeIs(2));
  EXPECT_EQ(list[0].txnType, 9);
  EXPECT_EQ(list[0].state, 4);
  EXPECT_EQ(list[0].realmId, "9130");
  EXPECT_EQ(list[0].partnerName, "North Ltd");
  EXPECT_EQ(list[0].requestId, "bill-1");
  EXPECT_EQ(list[0].currencyCode, "EUR");
  EXPECT_EQ(list[0].amount, "1,250.50");
  EXPECT_EQ(list[0].partnerTxnId, "partner-1");
  EXPECT_EQ(list[1].txnType, 3);
  EXPECT_EQ(list[1].state, 4);
  EXPECT_EQ(list[1].realmId, "9131");
  EXPECT_EQ(list[1].partnerName, "South Ltd");
  EXPECT_EQ(list[1].amount, "-7.00");
}

TEST_F(RejectedTransactions, AreAskedForInThisOrder) {
  host.store.rejected.resize(1);

  List();

  EXPECT_THAT(
      host.Calls(),
      InOrder("IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)", "IsFeatureEnabled(MultiEntityFeature, ME_FOR_BILLS)",
              "IsFeatureEnabled(MultiEntityFeature, ME_FOR_CHECKS)", "GetAllRejectedTransaction()",
              "FeaturePermissionAvailable(20, 2, 0)", "GetRelationById(5)", "PrefGetPrefHandle()",
              "GetUseMultiCurrency()", "String2Dollar(1250.5)", "Money2Str_s(30, 125050, 65536)"));
}

TEST_F(RejectedTransactions, AreAppendedToTheCallersList) {
  list.resize(1);
  list.front().requestId = "earlier";

  List();

  EXPECT_THAT(RequestIds(), ElementsAre("earlier", "bill-1", "check-1"));
}

TEST_F(RejectedTransactions, MayBeNone) {
  host.store.rejected.clear();

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(list, IsEmpty());
  EXPECT_THAT(host.Lines(), InOrder(Entering(kListing), FeatureAsked()));
}

TEST_F(RejectedTransactions, AreListedWithoutTheBillsThatTheUserMayNotView) {
  host.store.rejected.push_back(RejectedRow({.requestId = "bill-2", .txnType = 9, .relationId = 5}));
  host.permissions.features = {{kFeatureChecks, kActionView}};

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(RequestIds(), ElementsAre("check-1"));
  EXPECT_THAT(host.Lines(), InOrder(Entering(kListing), FeatureAsked(), RightAsked(), RightAnswered(),
                                    Trace("MULTIENTITY: No permission to update Bills for Request Id: bill-1"),
                                    RightAsked(), RightAnswered(), RightAsked(), RightAnswered(),
                                    Trace("MULTIENTITY: No permission to update Bills for Request Id: bill-2")));
}

TEST_F(RejectedTransactions, AreListedWithoutTheChecksThatTheUserMayNotView) {
  host.permissions.features = {{kFeatureBills, kActionView}};

  EXPECT_EQ(List(), MEStatusSuccess);

  EXPECT_THAT(RequestIds(), ElementsAre("bill-1"));
  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kListing), FeatureAsked(), RightAsked(), RightAnswered(), RightAsked(), RightAnswered(),
                      Trace("MULTIENTITY: No permission to update Checks for Request Id: check-1")));
  EXPECT_THAT(host.CallsOf({"GetRelationById"}), InOrder("GetRelationById(5)"));
}

TEST_F(RejectedTransactions, OfAnotherTypeAreListedWithoutARight) {
  host.permissions.features.clear();
  host.store.rejected = {RejectedRow({.requestId = "entry-1", .txnType = 8, .relationId = 5})};

  EXPECT_EQ(List(), MEStatusSuccess);

  ASSERT_THAT(list, SizeIs(1));
  EXPECT_EQ(list.front().txnType, 8);
  EXPECT_THAT(host.CallsOf({"FeaturePermissionAvailable"}), IsEmpty());
}

TEST_F(RejectedTransactions, EndAtARowWithoutARelation) {
  host.store.rejected.insert(host.store.rejected.begin() + 1,
                             RejectedRow({.requestId = "orphan", .txnType = 9, .relationId = 77}));

  EXPECT_EQ(List(), MEStatusReadFailed);

  EXPECT_THAT(RequestIds(), ElementsAre("bill-1"));
  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kListing), FeatureAsked(), RightAsked(), RightAnswered(), RightAsked(), RightAnswered(),
                      Error("MULTIENTITY_ERROR::Invalid relation for the meTxn with relationId [77]  "
                            "MultiEntityDriver::GetAllRejectedTransaction ")));
}

TEST_F(RejectedTransactions, ThatCannotBeReadAreReported) {
  host.FailAt("GetAllRejectedTransaction");

  EXPECT_EQ(List(), MEStatusReadFailed);

  EXPECT_THAT(list, IsEmpty());
  EXPECT_THAT(host.Lines(),
              InOrder(Entering(kListing), FeatureAsked(),
                      Error("MULTIENTITY_ERROR:: GetAllRejectedTransaction :Not able to fetch data from rejected txn "
                            "table")));
}

TEST_F(RejectedTransactions, HaveAnAmountThatFillsItsFieldReadToItsEndOnly) {
  host.store.rejected = {
      RejectedRow({.requestId = "bill-1", .relationId = 5, .amount = "0000000000000001234.56", .partnerTxnId = "99"})};

  List();

  ASSERT_THAT(list, SizeIs(1));
  EXPECT_EQ(list.front().amount, "1,234.56");
  EXPECT_EQ(list.front().partnerTxnId, "99");
  EXPECT_THAT(host.Calls(), Contains("String2Dollar(0000000000000001234.56)"));
}

TEST_F(RejectedTransactions, ShowATextThatIsNoAmountAsZero) {
  host.store.rejected = {RejectedRow({.relationId = 5, .amount = "1250.5"}),
                         RejectedRow({.relationId = 5, .amount = "twelve pounds"})};

  List();

  EXPECT_THAT(list, ElementsAre(Field(&MERejectedTxnInfo::amount, Util::TString("1,250.50")),
                                Field(&MERejectedTxnInfo::amount, Util::TString("0.00"))));
}

class RejectedTransactionsStep : public RejectedTransactions, public testing::WithParamInterface<const char*> {};

TEST_P(RejectedTransactionsStep, LetsAnExceptionOfTheHostPass) {
  host.ThrowAt(GetParam(), std::runtime_error("the file is damaged"));

  EXPECT_THROW(List(), std::runtime_error);

  EXPECT_THAT(list, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Every, RejectedTransactionsStep,
                         testing::Values("GetAllRejectedTransaction", "GetRelationById", "PrefGetPrefHandle",
                                         "String2Dollar", "Money2Str_s"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(RejectedTransactions, ThatWereListedBeforeAnExceptionStay) {
  host.ThrowAtNth("GetRelationById", 2, std::runtime_error("the file is damaged"));

  EXPECT_THROW(List(), std::runtime_error);

  EXPECT_THAT(RequestIds(), ElementsAre("bill-1"));
}

TEST_F(RejectedTransactions, AreDeletedByAnyoneAlsoWhileTheFeatureIsOff) {
  host.permissions.features.clear();
  HaveTheFeatureOff(host);

  EXPECT_EQ(MultiEntityDriver::DeleteRejectedTransaction("bill-1"), MEStatusSuccess);

  EXPECT_THAT(host.store.rejected, SizeIs(1));
  EXPECT_THAT(host.Calls(), InOrder("DeleteRejectedTransaction(bill-1)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RejectedTransactions, ThatCannotBeDeletedAreReportedInTheWordsOfTheSaving) {
  EXPECT_EQ(MultiEntityDriver::DeleteRejectedTransaction("bill-9"), MEStatusDeclined);

  EXPECT_THAT(host.store.rejected, SizeIs(2));
  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY_ERROR:: Not able to save Rejected Transaction data in ME Txn "
                                          "table in  MultiEntityDriver::DeleteRejectedTransaction")));
}

TEST_F(RejectedTransactions, LetAnExceptionOfTheHostPassWhenTheyAreDeleted) {
  host.ThrowAt("DeleteRejectedTransaction", std::runtime_error("the file is damaged"));

  EXPECT_THROW(MultiEntityDriver::DeleteRejectedTransaction("bill-1"), std::runtime_error);
}

}  // namespace
