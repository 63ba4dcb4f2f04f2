#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::RealmId;
using standalone::RequestId;
using testing::IsEmpty;
using testing::SizeIs;

class TheRejections : public DeskFixture {
 protected:
  static RejectionToSave Rejected(std::string_view request, std::string_view amount,
                                  standalone::RejectableType type = standalone::RejectableType::kBill) {
    return {.partner = RealmId("1001"),
            .request = RequestId(request),
            .type = type,
            .amount = standalone::RejectedAmount(amount),
            .partnerTxnId = standalone::PartnerTxnId("B-77")};
  }
};

TEST_F(TheRejections, AreListedWithPartnerAmountAndCurrency) {
  RelateBirch();
  ChangeSetting(*company_, "home-currency", "CAD");
  SaveRejection(*company_, Rejected("request-1", "1,234.50"));

  const std::vector<Rejection> rejections = ListRejections(*company_);

  ASSERT_THAT(rejections, SizeIs(1));
  EXPECT_EQ(rejections[0].type, kTxnTypeBill);
  EXPECT_EQ(rejections[0].state, standalone::TransactionState::kRejected);
  EXPECT_EQ(rejections[0].realm, "1001");
  EXPECT_EQ(rejections[0].partner, "Birch Services Company");
  EXPECT_EQ(rejections[0].requestId, "request-1");
  EXPECT_EQ(rejections[0].writtenAmount, "1,234.50");
  EXPECT_EQ(rejections[0].amount, (standalone::Money{123450, "CAD"}));
  EXPECT_EQ(rejections[0].partnerTxnId, "B-77");
}

TEST_F(TheRejections, AreKeptInTheOrderInWhichTheyWereSaved) {
  RelateBirch();
  SaveRejection(*company_, Rejected("request-2", "20.00"));
  SaveRejection(*company_, Rejected("request-1", "-10.00", standalone::RejectableType::kCheck));

  const std::vector<Rejection> rejections = ListRejections(*company_);

  ASSERT_THAT(rejections, SizeIs(2));
  EXPECT_EQ(rejections[0].requestId, "request-2");
  EXPECT_EQ(rejections[1].requestId, "request-1");
  EXPECT_EQ(rejections[1].type, kTxnTypeCheck);
  EXPECT_EQ(rejections[1].amount, (standalone::Money{-1000, "USD"}));
}

TEST_F(TheRejections, AreNotOfWhatIsBooked) {
  RelateBirch();
  RecordJournalEntry(*company_, Entry("request-1"));
  const std::string before = WholeFile();

  const Refusal refusal = RefusalOf([&] { SaveRejection(*company_, Rejected("request-1", "40.00")); });

  EXPECT_EQ(refusal.remedy, Remedy::kSeeTheBookedEntry);
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheRejections, MayBearTheIdOfARequestOfTheCompanysOwn) {
  RelateBirch();
  ImportMarch();

  SaveRejection(*company_, Rejected("request-bill", "40.00"));

  EXPECT_THAT(ListRejections(*company_), SizeIs(1));
}

TEST_F(TheRejections, KeepAnAmountAsThePartnerWroteIt) {
  RelateBirch();
  SaveRejection(*company_, Rejected("request-1", "20.00", standalone::RejectableType::kCheck));
  SaveRejection(*company_, Rejected("request-2", "1234.5"));
  SaveRejection(*company_, Rejected("request-2", "-7"));
  OpenFor("Robin", {"bills:view"});

  const std::vector<Rejection> rejections = ListRejections(*company_);

  ASSERT_THAT(rejections, SizeIs(2));
  EXPECT_EQ(rejections[0].writtenAmount, "1234.5");
  EXPECT_EQ(rejections[0].amount, (standalone::Money{123450, "USD"}));
  EXPECT_EQ(rejections[1].writtenAmount, "-7");
  EXPECT_EQ(rejections[1].amount, (standalone::Money{-700, "USD"}));
}

TEST_F(TheRejections, KeepAnAmountThatFillsItsField) {
  RelateBirch();
  SaveRejection(*company_, Rejected("request-1", "0000000000000000012.50"));

  EXPECT_EQ(ListRejections(*company_).at(0).amount, (standalone::Money{1250, "USD"}));
  EXPECT_EQ(ListRejections(*company_).at(0).partnerTxnId, "B-77");
}

TEST_F(TheRejections, AreShownAsFarAsTheUserMaySeeThem) {
  RelateBirch();
  SaveRejection(*company_, Rejected("request-1", "20.00"));
  SaveRejection(*company_, Rejected("request-2", "20.00", standalone::RejectableType::kCheck));
  OpenFor("Robin", {"checks:view"});

  const std::vector<Rejection> rejections = ListRejections(*company_);

  ASSERT_THAT(rejections, SizeIs(1));
  EXPECT_EQ(rejections[0].requestId, "request-2");
}

TEST_F(TheRejections, NeedARelationWithThePartner) {
  const Refusal refusal = RefusalOf([&] { SaveRejection(*company_, Rejected("request-1", "20.00")); });

  EXPECT_EQ(refusal.what, UseCase::kSaveRejection);
  EXPECT_EQ(refusal.status, 12);
  EXPECT_EQ(refusal.remedy, Remedy::kSeeRelations);
  EXPECT_THAT(ListRejections(*company_), IsEmpty());
}

TEST_F(TheRejections, NeedTheRightToSeeWhatWasRejected) {
  RelateBirch();
  OpenFor("Robin", {"checks:view", "journal:view", "bills:create"});

  const Refusal refusal = RefusalOf([&] { SaveRejection(*company_, Rejected("request-1", "20.00")); });

  EXPECT_EQ(refusal.status, 3);
  EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
}

TEST_F(TheRejections, MakeTheirRequestKnown) {
  RelateBirch();
  SaveRejection(*company_, Rejected("request-1", "20.00"));

  EXPECT_NO_THROW(RequireKnownRequest(*company_, RealmId("1001"), RequestId("request-1")));
}

TEST_F(TheRejections, AreDeletedByPartnerAndRequest) {
  RelateBirch();
  SaveRejection(*company_, Rejected("request-1", "20.00"));

  DeleteRejection(*company_, RealmId("1001"), RequestId("request-1"));

  EXPECT_THAT(ListRejections(*company_), IsEmpty());
  const Refusal again = RefusalOf([&] { DeleteRejection(*company_, RealmId("1001"), RequestId("request-1")); });
  EXPECT_EQ(again.what, UseCase::kDeleteRejection);
  EXPECT_EQ(again.status, 0);
  EXPECT_EQ(again.remedy, Remedy::kSeeRejections);
}

TEST_F(TheRejections, OfAnotherPartnersRequestOfTheSameIdStay) {
  RelateBirch();
  CreateRelation(*company_, {.realm = RealmId("1002"),
                             .partner = standalone::PartnerName("Cedar Leasing"),
                             .type = 0,
                             .state = standalone::RelationState::kEstablished,
                             .accounts = {.dueFrom = "Due from Cedar", .dueTo = "Due to Cedar"}});
  SaveRejection(*company_, Rejected("request-1", "20.00"));
  RejectionToSave cedars = Rejected("request-1", "30.00");
  cedars.partner = RealmId("1002");
  SaveRejection(*company_, cedars);

  DeleteRejection(*company_, RealmId("1001"), RequestId("request-1"));

  const std::vector<Rejection> left = ListRejections(*company_);
  ASSERT_THAT(left, SizeIs(1));
  EXPECT_EQ(left[0].realm, "1002");
  EXPECT_EQ(RefusalOf([&] { DeleteRejection(*company_, RealmId("1001"), RequestId("request-1")); }).status, 0);
  EXPECT_THAT(ListRejections(*company_), SizeIs(1));
}

TEST_F(TheRejections, AreNotDeletedOfACompanyThatIsNoPartner) {
  const Refusal refusal = RefusalOf([&] { DeleteRejection(*company_, RealmId("1009"), RequestId("request-1")); });

  EXPECT_EQ(refusal.status, std::nullopt);
  EXPECT_EQ(refusal.remedy, Remedy::kSeeRelations);
  EXPECT_THAT(refusal.why, testing::HasSubstr("1009"));
}

TEST_F(TheRejections, AreToldToNobodyWhoMaySeeNone) {
  RelateBirch();
  SaveRejection(*company_, Rejected("request-1", "20.00"));
  OpenFor("Robin", {"journal:view", "bills:delete", "checks:delete"});
  const std::string before = WholeFile();

  for (const auto& [realm, request] : {std::pair{"1001", "request-1"}, {"1001", "request-2"}, {"1009", "request-1"}}) {
    const Refusal deleted = RefusalOf([&] { DeleteRejection(*company_, RealmId(realm), RequestId(request)); });

    EXPECT_EQ(deleted.what, UseCase::kDeleteRejection);
    EXPECT_EQ(deleted.remedy, Remedy::kAskForTheRight);
    EXPECT_EQ(deleted.why, "The user \"Robin\" has no right bills:view or checks:view.");
  }
  RejectionToSave ofNobody = Rejected("request-1", "20.00");
  ofNobody.partner = RealmId("1009");
  EXPECT_EQ(RefusalOf([&] { SaveRejection(*company_, ofNobody); }).status, 3);
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheRejections, AreDeletedByWhoMaySeeThem) {
  RelateBirch();
  SaveRejection(*company_, Rejected("request-1", "20.00"));
  OpenFor("Robin", {"checks:view", "bills:delete"});

  const Refusal refusal = RefusalOf([&] { DeleteRejection(*company_, RealmId("1001"), RequestId("request-1")); });

  EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  EXPECT_THAT(refusal.why, testing::HasSubstr("bills:view"));
  Open();
  EXPECT_THAT(ListRejections(*company_), SizeIs(1));
}

}  // namespace
}  // namespace desk
