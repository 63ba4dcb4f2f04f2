#include <array>
#include <utility>

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
  std::vector<std::int32_t> Those(const LineFilter& filter) {
    std::vector<std::int32_t> ids;
    for (const IntercompanyLine& line : ListIntercompanyLines(*company_, Period(NullDate(), NullDate()), filter)) {
      ids.push_back(line.txnId);
    }
    return ids;
  }
  standalone::BookedState MoveBill(TransactionState state) {
    return SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-bill"), state).state;
  }
  void ChangeFile(const char* sql) {
    standalone::StandaloneHost other(path_);
    standalone::FileOf(other).Execute(sql);
  }
};

TEST_F(TheTransactions, MayBeThoseOfOneTypeOnly) {
  EXPECT_THAT(Those({.partner = {}, .type = kTxnTypeCheck, .state = {}, .request = {}, .account = {}}),
              ElementsAre(kCheck));
}

TEST_F(TheTransactions, MayBeThoseOfOneRequestOnly) {
  EXPECT_THAT(
      Those({.partner = {}, .type = {}, .state = {}, .request = standalone::RequestId("request-bill"), .account = {}}),
      ElementsAre(kBill));
}

TEST_F(TheTransactions, MayBeThoseInOneStateOnlyByNameOrByNumber) {
  EXPECT_THAT(Those({.partner = {}, .type = {}, .state = WantedState("sent"), .request = {}, .account = {}}),
              ElementsAre(kBill));
  EXPECT_THAT(Those({.partner = {}, .type = {}, .state = WantedState("1"), .request = {}, .account = {}}),
              ElementsAre(kBill));
}

TEST_F(TheTransactions, OfBeforeAreFoundByTheNameThatTheyHaveInTheList) {
  ChangeFile("UPDATE me_transaction SET of_before = 1 WHERE txn_id = 1");

  EXPECT_THAT(Those({.partner = {}, .type = {}, .state = WantedState("sent"), .request = {}, .account = {}}),
              IsEmpty());
  EXPECT_THAT(Those({.partner = {}, .type = {}, .state = WantedState("pending"), .request = {}, .account = {}}),
              ElementsAre(kBill));
  EXPECT_THAT(Those({.partner = {}, .type = {}, .state = WantedState("1"), .request = {}, .account = {}}),
              ElementsAre(kBill));
}

TEST_F(TheTransactions, MayBeThoseOfOneAccountOnlyOnEitherSide) {
  EXPECT_THAT(Those({.partner = {}, .type = {}, .state = {}, .request = {}, .account = "Due from Birch"}),
              ElementsAre(kBill, kCheck));
  EXPECT_THAT(Those({.partner = {}, .type = {}, .state = {}, .request = {}, .account = "due to birch"}),
              ElementsAre(kJournalEntry));
  EXPECT_THROW(Those({.partner = {}, .type = {}, .state = {}, .request = {}, .account = "Nowhere"}),
               standalone::InvalidInput);
}

TEST_F(TheTransactions, ShowABillWithDateAmountAccountAndName) {
  const IntercompanyLine line = LineOf(kBill);

  EXPECT_EQ(line.type, kTxnTypeBill);
  EXPECT_EQ(line.date, DateType32(2024, 3, 1));
  EXPECT_EQ(line.amount, (Money{4000, "CAD"}));
  EXPECT_EQ(line.account, (ListItem{AccountId("Due from Birch"), "Due from Birch"}));
  EXPECT_EQ(line.otherAccount, std::nullopt);
  EXPECT_EQ(line.name->id, NameId("Northern Power"));
  EXPECT_EQ(line.name->name, "Northern Power");
  EXPECT_EQ(line.state, TransactionState::kSent);
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
  const standalone::BookedState now = SetState(*company_, kBill, LineOf(kBill).lineId, TransactionState::kCameBack);

  EXPECT_EQ(now, TransactionState::kCameBack);
  EXPECT_EQ(LineOf(kBill).state, TransactionState::kCameBack);
  standalone::StandaloneHost other(path_);
  EXPECT_EQ(standalone::Count(other, "SELECT partner_confirmed FROM txn WHERE id = 1"), 0);
}

TEST_F(TheTransactions, AreConfirmedByTheirLineToo) {
  SetState(*company_, kBill, LineOf(kBill).lineId, TransactionState::kEstablished);

  standalone::StandaloneHost other(path_);
  EXPECT_EQ(standalone::Count(other, "SELECT partner_confirmed FROM txn WHERE id = 1"), 1);
}

// A bill (4) that both partners share.
class ASharedBill : public TheTransactions {
 protected:
  ASharedBill() {
    RelateCedar();
    Import(*company_, Importable::kTransactions,
           Csv("transaction,type,date,name,memo,account,amount,partner_realm,request_id,state\n"
               "S,bill,2024-04-01,Northern Power,,Due from Birch,40.00,1001,shared-birch,sent\n"
               "S,bill,,,,Due from Cedar,30.00,1002,shared-cedar,sent\n"
               "S,bill,,,,Payables,-70.00,,,\n"));
    lines_ = ListIntercompanyLines(*company_, kShared);
  }
  bool IsConfirmed() {
    standalone::StandaloneHost other(path_);
    return standalone::Count(other, "SELECT partner_confirmed FROM txn WHERE id = 4") != 0;
  }
  void EstablishByRequest(const char* realm, const char* request) {
    SetState(*company_, standalone::RealmId(realm), standalone::RequestId(request), TransactionState::kEstablished);
  }
  void EstablishByLine(std::size_t number) {
    SetState(*company_, kShared, lines_.at(number).lineId, TransactionState::kEstablished);
  }

  static constexpr std::int32_t kShared = 4;
  std::vector<IntercompanyLine> lines_;
};

TEST_F(ASharedBill, IsConfirmedByTheRequestOfTheLastPartner) {
  EstablishByRequest("1001", "shared-birch");
  EXPECT_FALSE(IsConfirmed());

  EstablishByRequest("1002", "shared-cedar");

  EXPECT_TRUE(IsConfirmed());
}

TEST_F(ASharedBill, IsConfirmedByTheLineOfTheLastPartner) {
  EstablishByRequest("1002", "shared-cedar");
  EXPECT_FALSE(IsConfirmed());

  EstablishByLine(0);

  EXPECT_TRUE(IsConfirmed());
}

TEST_F(ASharedBill, IsConfirmedByARequestAfterALine) {
  EstablishByLine(0);
  EXPECT_FALSE(IsConfirmed());

  EstablishByRequest("1002", "shared-cedar");

  EXPECT_TRUE(IsConfirmed());
}

TEST_F(ASharedBill, IsNotConfirmedWhileAPartnerHasSentItBack) {
  SetState(*company_, kShared, lines_.at(1).lineId, TransactionState::kCameBack);

  EstablishByRequest("1001", "shared-birch");

  EXPECT_FALSE(IsConfirmed());
}

TEST_F(TheTransactions, MoveAlongTheWayOfAnExchange) {
  ChangeFile("UPDATE me_transaction SET state = 0 WHERE txn_id = 1");

  for (const TransactionState next : {TransactionState::kSent, TransactionState::kCameBack, TransactionState::kSent,
                                      TransactionState::kCameBack, TransactionState::kClosed}) {
    MoveBill(next);
    EXPECT_EQ(LineOf(kBill).state, next);
  }
}

TEST_F(TheTransactions, MoveNowhereElseByRequestNorByLine) {
  constexpr std::array<std::pair<int, int>, 11> kNoMoves{
      {{0, 0}, {0, 2}, {0, 4}, {1, 0}, {1, 1}, {2, 3}, {3, 1}, {3, 5}, {4, 5}, {5, 0}, {1, 7}}};
  const std::int32_t line = LineOf(kBill).lineId;
  for (const auto& [from, to] : kNoMoves) {
    ChangeFile(("UPDATE me_transaction SET state = " + std::to_string(from) + " WHERE txn_id = 1").c_str());
    const std::string before = Everything();
    const auto state = TransactionState{static_cast<std::int16_t>(to)};

    const Refusal byRequest = RefusalOf([&] { MoveBill(state); });
    const Refusal byLine = RefusalOf([&] { SetState(*company_, kBill, line, state); });

    EXPECT_EQ(byRequest.what, UseCase::kSetTransactionState);
    EXPECT_EQ(byRequest.status, std::nullopt);
    EXPECT_EQ(byRequest.remedy, Remedy::kMoveAsTheStateAllows);
    EXPECT_EQ(byLine.why, byRequest.why);
    EXPECT_EQ(byLine.status, std::nullopt);
    EXPECT_EQ(LineOf(kBill).state, TransactionState{static_cast<std::int16_t>(from)}) << from << " to " << to;
    EXPECT_EQ(Everything(), before);
  }
}

TEST_F(TheTransactions, SayWhereTheyAreWhatWasAskedAndWhereTheyMayGo) {
  EXPECT_EQ(RefusalOf([&] { MoveBill(TransactionState::kEntered); }).why,
            "Line 3 of bill 1 is in state 1 (sent) and cannot be moved to 0 (entered); from there it may move to "
            "2 (came-back), 3 (established) or 5 (closed).");
  MoveBill(TransactionState::kEstablished);
  EXPECT_EQ(RefusalOf([&] { MoveBill(TransactionState::kSent); }).why,
            "Line 3 of bill 1 is in state 3 (established) and cannot be moved to 1 (sent); it stays there.");
}

TEST_F(TheTransactions, AreRefusedToWhoLacksTheRightBeforeTheMoveIs) {
  const std::int32_t line = LineOf(kBill).lineId;
  OpenFor("Robin", {"bills:view"});

  const Refusal byRequest = RefusalOf([&] { MoveBill(TransactionState::kEntered); });
  ChangeFile("UPDATE me_transaction SET state = 0 WHERE txn_id = 1");
  const Refusal toCreate = RefusalOf([&] { SetState(*company_, kBill, line, TransactionState::kCameBack); });
  ChangeFile("UPDATE me_transaction SET state = 2 WHERE txn_id = 1");
  const Refusal toModify = RefusalOf([&] { SetState(*company_, kBill, line, TransactionState::kEstablished); });
  ChangeFile("UPDATE me_transaction SET state = 3 WHERE txn_id = 1");
  const Refusal toView = RefusalOf([&] { SetState(*company_, kBill, line, TransactionState::kSent); });

  for (const Refusal& refusal : {byRequest, toCreate, toModify}) {
    EXPECT_EQ(refusal.status, 3);
    EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  }
  EXPECT_EQ(toView.remedy, Remedy::kMoveAsTheStateAllows);
}

// The rows that were in the books when they were brought forward from version 1.0.
class TheTransactionsOfBefore : public TheTransactions {
 protected:
  TheTransactionsOfBefore() { ChangeFile("UPDATE me_transaction SET of_before = 1"); }
};

TEST_F(TheTransactionsOfBefore, KeepTheirStateAndItsWord) {
  const standalone::BookedState pending{TransactionState{1}, true};

  const std::vector<IntercompanyLine> byPeriod = ListIntercompanyLines(*company_, Period({2024, 3, 1}, {2024, 3, 1}));

  EXPECT_EQ(LineOf(kBill).state, pending);
  ASSERT_THAT(byPeriod, SizeIs(1));
  EXPECT_EQ(byPeriod[0].state, pending);
  EXPECT_THAT(JsonOf(byPeriod[0]).dump(), HasSubstr(R"("state":"pending","stateNumber":1,"ofBefore":true)"));
}

TEST_F(TheTransactionsOfBefore, AreToldFromThoseOfToday) {
  const std::int32_t entry = RecordJournalEntry(*company_, Entry("request-new"));

  EXPECT_EQ(LineOf(entry).state, TransactionState::kEstablished);
  EXPECT_EQ(ListIntercompanyLines(*company_, Period(NullDate(), NullDate())).back().state,
            TransactionState::kEstablished);
  EXPECT_TRUE(LineOf(kJournalEntry).state.ofBefore);
}

TEST_F(TheTransactionsOfBefore, CanBeSettledAndStayMarked) {
  const standalone::BookedState now = MoveBill(TransactionState::kEstablished);

  EXPECT_EQ(now, (standalone::BookedState{TransactionState::kEstablished, true}));
  EXPECT_EQ(LineOf(kBill).state, now);
}

TEST_F(TheTransactionsOfBefore, MayBeRejectedAsVersion1HadIt) {
  MoveBill(TransactionState::kRejected);

  EXPECT_EQ(LineOf(kBill).state, (standalone::BookedState{TransactionState{4}, true}));
}

TEST_F(TheTransactionsOfBefore, SayInTheirOldWordsWhereTheyMayGo) {
  EXPECT_EQ(RefusalOf([&] { MoveBill(TransactionState{0}); }).why,
            "Line 3 of bill 1, booked with version 1.0, is in state 1 (pending) and cannot be moved to 0 (sent by the "
            "partner); from there it may move to 2 (came back), 3 (established), 4 (rejected) or 5 (deactivated).");
}

TEST_F(TheTransactions, KeepTheirStateWhenTheRequestIsNotKnown) {
  const Refusal refusal = RefusalOf([&] {
    SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-none"),
             TransactionState::kEstablished);
  });

  EXPECT_EQ(refusal.what, UseCase::kSetTransactionState);
  EXPECT_EQ(refusal.status, 12);
  EXPECT_EQ(refusal.remedy, Remedy::kSeeRelationsAndRequests);
  EXPECT_EQ(LineOf(kBill).state, TransactionState::kSent);
}

TEST_F(TheTransactions, KeepTheirStateWhenTheTransactionIsGone) {
  ChangeFile("UPDATE me_transaction SET txn_type = 3 WHERE txn_id = 1");

  const Refusal refusal = RefusalOf([&] {
    SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-bill"),
             TransactionState::kEstablished);
  });

  EXPECT_EQ(refusal.status, 19);
  EXPECT_EQ(refusal.remedy, Remedy::kTransactionHasChanged);
  EXPECT_EQ(LineOf(kBill).state, TransactionState::kSent);
}

TEST_F(TheTransactions, KeepTheirStateForWhoMayNotChangeThem) {
  OpenFor("Robin", {"bills:view"});

  const Refusal refusal = RefusalOf([&] {
    SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-bill"),
             TransactionState::kEstablished);
  });

  EXPECT_EQ(refusal.status, 3);
  EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  EXPECT_EQ(LineOf(kBill).state, TransactionState::kSent);
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
  EXPECT_EQ(LineOf(kBill).state, TransactionState::kSent);
}

TEST_F(TheTransactions, AreMovedByWhoeverHasTheRightToOneOfTheirTypes) {
  ChangeFile("UPDATE me_transaction SET state = 1 WHERE txn_id = 2");
  OpenFor("Robin", {"checks:modify"});

  EXPECT_NO_THROW(SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-check"),
                           TransactionState::kEstablished));
  EXPECT_EQ(RefusalOf([&] {
              SetState(*company_, standalone::RealmId("1001"), standalone::RequestId("request-none"),
                       TransactionState::kEstablished);
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
