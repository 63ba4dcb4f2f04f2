#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::RealmId;
using standalone::RequestId;
using testing::IsEmpty;

class ThePartner : public DeskFixture {
 protected:
  ThePartner() {
    RelateBirch();
    ImportMarch();
  }

  void RelateAs(const char* name) {
    CreateRelation(*company_, {.realm = RealmId("1002"),
                               .partner = standalone::PartnerName(name),
                               .type = 0,
                               .state = standalone::RelationState::kEstablished,
                               .accounts = {.dueFrom = "Due from Cedar", .dueTo = "Due to Cedar"}});
  }
  std::string RealmOfPartner(const char* text) { return ShowRelation(*company_, Partner(text)).realm; }
};

TEST_F(ThePartner, IsFoundByRealmByNameAndByNameInOtherLetters) {
  EXPECT_EQ(RealmOfPartner("1001"), "1001");
  EXPECT_EQ(RealmOfPartner("Birch Services Company"), "1001");
  EXPECT_EQ(RealmOfPartner("birch services COMPANY"), "1001");
}

TEST_F(ThePartner, IsTheOneOfThatRealmWhateverAnotherIsCalled) {
  RelateAs("1001");

  EXPECT_EQ(RealmOfPartner("1001"), "1001");
  EXPECT_EQ(RealmOfPartner("1002"), "1002");
}

TEST_F(ThePartner, IsTheOneOfExactlyThatNameBeforeOneInOtherLetters) {
  RelateAs("BIRCH Services Company");

  EXPECT_EQ(RealmOfPartner("BIRCH Services Company"), "1002");
  EXPECT_EQ(RealmOfPartner("Birch Services Company"), "1001");
}

TEST_F(ThePartner, IsRefusedByANameThatTwoHave) {
  RelateAs("Birch Services Company");
  const std::string before = WholeFile();
  EntryToRecord entry = Entry("request-1");
  entry.partner = Partner("Birch Services Company");

  const Refusal refusal = RefusalOf([&] { RecordJournalEntry(*company_, entry); });

  EXPECT_EQ(
      refusal.why,
      "several partners are called \"Birch Services Company\", those of the realms \"1001\" and \"1002\"; give the "
      "realm id of one of them");
  EXPECT_EQ(refusal.remedy, Remedy::kSeeRelations);
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(ThePartner, IsRefusedByANameThatNobodyHas) {
  const std::string before = WholeFile();
  EntryToRecord entry = Entry("request-1");
  entry.partner = Partner("Birch Sevices");
  EntryToRecord longer = Entry("request-1");
  longer.partner = Partner("1001 and what is too long for a realm");

  EXPECT_EQ(RefusalOf([&] { RecordJournalEntry(*company_, entry); }).why,
            "there is no relation with the partner \"Birch Sevices\". Did you mean \"Birch Services Company\"?");
  EXPECT_EQ(RefusalOf([&] { RecordJournalEntry(*company_, longer); }).why,
            "there is no relation with the partner \"1001 and what is too long for a realm\"");
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(ThePartner, IsSuggestedByTheRealmIdThatWasMistyped) {
  EntryToRecord entry = Entry("request-1");
  entry.partner = Partner("1010");

  EXPECT_EQ(RefusalOf([&] { RecordJournalEntry(*company_, entry); }).why,
            "there is no relation with the partner \"1010\". Did you mean \"1001\"?");
}

TEST_F(ThePartner, IsSuggestedWhereTheModuleKnowsNoneOfThatRealm) {
  const Refusal refusal = RefusalOf([&] { DeleteRelation(*company_, Partner("Birch"), /*force=*/false); });

  EXPECT_EQ(refusal.why, "invalid data or no such row. Did you mean \"Birch Services Company\"?");
}

TEST_F(ThePartner, IsNotLookedUpForWhoMayNotBookOrChangeRelations) {
  RelateAs("Birch Services Company");
  OpenFor("Robin", {"accounts:modify"});
  EntryToRecord entry = Entry("request-1");
  entry.partner = Partner("Birch Services Company");
  const Partner several("Birch Services Company");

  EXPECT_EQ(RefusalOf([&] { RecordJournalEntry(*company_, entry); }).status, MEStatusPermissionDenied);
  EXPECT_EQ(RefusalOf([&] { DeleteRelation(*company_, several, true); }).status, MEStatusPermissionDenied);
  EXPECT_EQ(RefusalOf([&] {
              UpdateRelation(*company_,
                             {.partner = several, .state = standalone::RelationState::kPending, .accounts = {}});
            }).status,
            MEStatusPermissionDenied);
  EXPECT_EQ(RefusalOf([&] {
              SetState(*company_, several, RequestId("request-bill"), standalone::TransactionState::kEstablished);
            }).status,
            MEStatusPermissionDenied);
  EXPECT_EQ(RefusalOf([&] {
              SaveRejection(*company_, {.partner = several,
                                        .request = RequestId("r"),
                                        .type = standalone::RejectableType::kBill,
                                        .amount = standalone::RejectedAmount("1.00"),
                                        .partnerTxnId = standalone::PartnerTxnId("1")});
            }).status,
            MEStatusPermissionDenied);
}

TEST_F(ThePartner, IsCalledByNameInEveryUseCase) {
  const Partner birch("Birch Services Company");
  const RequestId request("request-bill");
  EntryToRecord entry = Entry("request-1");
  entry.partner = birch;
  const RejectionToSave rejection{.partner = birch,
                                  .request = RequestId("rejected-1"),
                                  .type = standalone::RejectableType::kBill,
                                  .amount = standalone::RejectedAmount("1.00"),
                                  .partnerTxnId = standalone::PartnerTxnId("7")};

  EXPECT_GT(RecordJournalEntry(*company_, entry), 0);
  EXPECT_EQ(RequireKnownRequest(*company_, birch, request), "1001");
  EXPECT_EQ(SetState(*company_, birch, request, standalone::TransactionState::kEstablished).realm, "1001");
  EXPECT_EQ(SaveRejection(*company_, rejection), "1001");
  EXPECT_THAT(ListRejections(*company_, {.partner = birch, .type = {}, .request = {}}), testing::SizeIs(1));
  EXPECT_EQ(DeleteRejection(*company_, birch, RequestId("rejected-1")), "1001");
  EXPECT_EQ(
      UpdateRelation(*company_, {.partner = birch, .state = standalone::RelationState::kDeactivated, .accounts = {}}),
      "1001");
  EXPECT_EQ(DeleteRelation(*company_, birch, /*force=*/true).realm, "1001");
}

TEST_F(ThePartner, NarrowsAListDown) {
  RelateCedar();
  const auto with = [&](const char* partner) {
    return ListIntercompanyLines(*company_, Period(NullDate(), NullDate()),
                                 {.partner = Partner(partner), .type = {}, .state = {}, .request = {}, .account = {}});
  };

  EXPECT_THAT(with("birch services company"), testing::SizeIs(3));
  EXPECT_THAT(with("Cedar Leasing"), IsEmpty());
}

}  // namespace
}  // namespace desk
