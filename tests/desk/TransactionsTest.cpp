#include "standalone/values/Dates.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::Money;
using standalone::TransactionState;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int32_t kBill = 1;
constexpr std::int32_t kCheck = 2;
constexpr std::int32_t kJournalEntry = 3;

// A company that keeps its books in Canadian dollars.
class TheTransactions : public DeskFixture {
 protected:
  TheTransactions() : DeskFixture("CAD") {
    RelateBirch();
    ImportMarch();
  }

  IntercompanyLine LineOf(std::int32_t txnId) {
    const std::vector<IntercompanyLine> lines = ListIntercompanyLines(*company_, txnId);
    EXPECT_THAT(lines, SizeIs(1));
    return lines.at(0);
  }
  std::vector<std::int32_t> Transactions(DateType32 from, DateType32 to) {
    std::vector<std::int32_t> ids;
    for (const IntercompanyLine& line : ListIntercompanyLines(*company_, Period(from, to))) ids.push_back(line.txnId);
    return ids;
  }
  void ChangeFile(const char* sql) {
    standalone::StandaloneHost other(path_);
    standalone::FileOf(other).Execute(sql);
  }
};

TEST_F(TheTransactions, ShowABillWithDateAmountAccountAndName) {
  const IntercompanyLine line = LineOf(kBill);

  EXPECT_EQ(line.type, kTxnTypeBill);
  EXPECT_EQ(line.date, DateType32(2024, 3, 1));
  EXPECT_EQ(line.amount, (Money{4000, "CAD"}));
  EXPECT_EQ(line.account, (ListItem{AccountId("Due from Birch"), "Due from Birch"}));
  EXPECT_EQ(line.otherAccount, std::nullopt);
  EXPECT_EQ(line.name->id, NameId("Northern Power"));
  EXPECT_EQ(line.name->name, "Northern Power");
  EXPECT_EQ(line.state, TransactionState::kPending);
  EXPECT_EQ(line.requestId, "request-bill");
}

TEST_F(TheTransactions, ShowACheckWhoseLineIsACreditWithANegativeAmount) {
  const IntercompanyLine line = LineOf(kCheck);

  EXPECT_EQ(line.type, kTxnTypeCheck);
  EXPECT_EQ(line.date, DateType32(2024, 3, 15));
  EXPECT_EQ(line.amount, (Money{-125000, "CAD"}));
  EXPECT_EQ(line.account, (ListItem{AccountId("Due from Birch"), "Due from Birch"}));
  EXPECT_EQ(line.otherAccount, std::nullopt);
  EXPECT_EQ(line.name->id, NameId("Walker:Depot"));
  EXPECT_EQ(line.state, TransactionState::kEstablished);
  EXPECT_EQ(line.requestId, "request-check");
}

TEST_F(TheTransactions, ShowAJournalEntryWithTheAccountThatCarriesWhatIsDue) {
  const IntercompanyLine line = LineOf(kJournalEntry);

  EXPECT_EQ(line.type, kTxnTypeJournalEntry);
  EXPECT_EQ(line.date, DateType32(2024, 3, 31));
  EXPECT_EQ(line.amount, (Money{7550, "CAD"}));
  EXPECT_EQ(line.account, (ListItem{AccountId("Utilities"), "Utilities"}));
  EXPECT_EQ(line.otherAccount, (ListItem{AccountId("Due to Birch"), "Due to Birch"}));
  EXPECT_EQ(line.name, std::nullopt);
  EXPECT_EQ(line.memo, "Heating");
  EXPECT_EQ(line.requestId, "request-journal");
}

TEST_F(TheTransactions, ShowThePartnerOnEachLine) {
  EXPECT_THAT(ListIntercompanyLines(*company_, Period(NullDate(), NullDate())),
              AllOf(SizeIs(3), Each(AllOf(Field(&IntercompanyLine::realm, "1001"),
                                          Field(&IntercompanyLine::partner, "Birch Services Company")))));
}

TEST_F(TheTransactions, ShowTheSameLinesByTransactionAndByPeriod) {
  std::vector<IntercompanyLine> byTransaction;
  for (const std::int32_t txnId : {kBill, kCheck, kJournalEntry}) byTransaction.push_back(LineOf(txnId));

  const std::vector<IntercompanyLine> byPeriod = ListIntercompanyLines(*company_, Period({2024, 3, 1}, {2024, 3, 31}));

  EXPECT_EQ(JsonOf(byPeriod).dump(1), JsonOf(byTransaction).dump(1));
}

TEST_F(TheTransactions, OfAPeriodIncludeBothItsDays) {
  EXPECT_THAT(Transactions({2024, 3, 1}, {2024, 3, 15}), ElementsAre(kBill, kCheck));
  EXPECT_THAT(Transactions({2024, 3, 2}, {2024, 3, 30}), ElementsAre(kCheck));
  EXPECT_THAT(Transactions({2024, 3, 15}, {2024, 3, 15}), ElementsAre(kCheck));
  EXPECT_THAT(Transactions({2024, 3, 16}, NullDate()), ElementsAre(kJournalEntry));
  EXPECT_THAT(Transactions(NullDate(), {2024, 3, 14}), ElementsAre(kBill));
  EXPECT_THAT(Transactions({2024, 4, 1}, NullDate()), IsEmpty());
}

TEST_F(TheTransactions, HaveNoPeriodThatEndsBeforeItBegins) {
  EXPECT_THAT(MessageOf<standalone::InvalidInput>([] { Period({2024, 3, 2}, {2024, 3, 1}); }),
              AllOf(HasSubstr("2024-03-02"), HasSubstr("2024-03-01")));
  EXPECT_NO_THROW(Period({2024, 3, 1}, {2024, 3, 1}));
}

TEST_F(TheTransactions, LeaveOutWhatTheBooksDoNotHaveAnyMore) {
  ChangeFile("DELETE FROM me_transaction WHERE txn_id = 3; UPDATE me_transaction SET target_id = 99 WHERE txn_id = 1");

  const IntercompanyLine line = LineOf(kBill);

  EXPECT_EQ(line.date, std::nullopt);
  EXPECT_EQ(line.name, std::nullopt);
  EXPECT_EQ(line.account, std::nullopt);
  EXPECT_EQ(line.otherAccount, std::nullopt);
  EXPECT_EQ(line.amount, std::nullopt);
  EXPECT_EQ(line.requestId, "request-bill");
}

TEST_F(TheTransactions, AreShownAsFarAsTheUserMaySeeThem) {
  OpenFor("Robin", {"checks:view"});

  EXPECT_THAT(Transactions(NullDate(), NullDate()), ElementsAre(kCheck));
}

TEST_F(TheTransactions, MoveToTheStateThatThePartnerAnswers) {
  SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-bill"),
           TransactionState::kEstablished);

  EXPECT_EQ(LineOf(kBill).state, TransactionState::kEstablished);
  standalone::StandaloneHost other(path_);
  EXPECT_EQ(standalone::Count(other, "SELECT partner_confirmed FROM txn WHERE id = 1"), 1);
}

TEST_F(TheTransactions, MoveToTheStateThatTheBooksSayWithoutBeingConfirmed) {
  SetState(*company_, kBill, LineOf(kBill).lineId, TransactionState{2});

  EXPECT_EQ(LineOf(kBill).state, TransactionState{2});
  standalone::StandaloneHost other(path_);
  EXPECT_EQ(standalone::Count(other, "SELECT partner_confirmed FROM txn WHERE id = 1"), 0);
}

TEST_F(TheTransactions, KeepTheirStateWhenTheRequestIsNotKnown) {
  const Refusal refusal = RefusalOf([&] {
    SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-none"),
             TransactionState::kEstablished);
  });

  EXPECT_EQ(refusal.what, UseCase::kSetTransactionState);
  EXPECT_EQ(refusal.status, 12);
  EXPECT_EQ(refusal.remedy, Remedy::kSeeRelationsAndRequests);
  EXPECT_EQ(LineOf(kBill).state, TransactionState::kPending);
}

TEST_F(TheTransactions, KeepTheirStateWhenTheTransactionIsGone) {
  ChangeFile("UPDATE me_transaction SET txn_type = 3 WHERE txn_id = 1");

  const Refusal refusal = RefusalOf([&] {
    SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-bill"),
             TransactionState::kEstablished);
  });

  EXPECT_EQ(refusal.status, 19);
  EXPECT_EQ(refusal.remedy, Remedy::kTransactionHasChanged);
  EXPECT_EQ(LineOf(kBill).state, TransactionState::kPending);
}

TEST_F(TheTransactions, KeepTheirStateForWhoMayNotChangeThem) {
  OpenFor("Robin", {"bills:view"});

  const Refusal refusal = RefusalOf([&] {
    SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-bill"),
             TransactionState::kEstablished);
  });

  EXPECT_EQ(refusal.status, 3);
  EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  EXPECT_EQ(LineOf(kBill).state, TransactionState::kPending);
}

TEST_F(TheTransactions, AreToldToNobodyWhoMayMoveNone) {
  const std::int32_t line = LineOf(kBill).lineId;
  OpenFor("Robin", {"bills:view", "accounts:modify"});

  for (const auto& [realm, request] :
       {std::pair{"1001", "request-bill"}, {"1001", "request-none"}, {"1009", "request-bill"}}) {
    const Refusal refusal = RefusalOf([&] {
      SetState(*company_, standalone::RealmId(realm), standalone::RequestId(request), TransactionState::kEstablished);
    });

    EXPECT_EQ(refusal.status, 3);
    EXPECT_EQ(refusal.why, "the user has no right to move transactions of that type to another state");
    EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  }
  Open();
  OpenFor("Kim", {"bills:delete", "journal:delete"});
  for (const auto& [txnId, lineId] : {std::pair{kBill, line}, {kBill, 4711}, {4711, line}}) {
    EXPECT_EQ(RefusalOf([&] { SetState(*company_, txnId, lineId, TransactionState::kEstablished); }).status, 3);
  }
  Open();
  EXPECT_EQ(LineOf(kBill).state, TransactionState::kPending);
}

TEST_F(TheTransactions, AreMovedByWhoeverHasTheRightToOneOfTheirTypes) {
  OpenFor("Robin", {"checks:modify"});

  EXPECT_NO_THROW(SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-check"),
                           TransactionState::kPending));
  EXPECT_EQ(RefusalOf([&] {
              SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-none"),
                       TransactionState::kPending);
            }).status,
            12);
}

TEST_F(TheTransactions, AreKnownByThePartnersRequest) {
  EXPECT_NO_THROW(RequireKnownRequest(*company_, standalone::RealmId("1001"), standalone::RequestId("request-bill")));

  const Refusal unknown = RefusalOf(
      [&] { RequireKnownRequest(*company_, standalone::RealmId("1001"), standalone::RequestId("request-none")); });
  const Refusal ofAnother = RefusalOf(
      [&] { RequireKnownRequest(*company_, standalone::RealmId("2002"), standalone::RequestId("request-bill")); });

  EXPECT_EQ(unknown.what, UseCase::kFindRequest);
  EXPECT_EQ(unknown.status, 0);
  EXPECT_EQ(ofAnother.status, 0);
}

TEST_F(TheTransactions, ThatAUserMayNotSeeAreNamed) {
  EXPECT_THAT(TypesNotShown(*company_), testing::IsEmpty());
  OpenFor("Robin", {"checks:view", "bills:create"});

  EXPECT_THAT(TypesNotShown(*company_), testing::ElementsAre(kTxnTypeBill, kTxnTypeJournalEntry));
}

}  // namespace
}  // namespace desk
