// Requests between companies that are paired: from the line that one of them enters to the answer of the other.
#include <string>
#include <utility>
#include <vector>

#include "standalone/desk/Audit.h"
#include "standalone/desk/Correcting.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Import.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Journal.h"
#include "standalone/desk/Names.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Rejections.h"
#include "standalone/desk/Reports.h"
#include "standalone/desk/Settings.h"
#include "standalone/desk/Transactions.h"
#include "tests/desk/PairedCompanies.h"

namespace desk {
namespace {

using standalone::InboxState;
using standalone::LineAmount;
using standalone::RequestId;
using standalone::TransactionState;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class TheRequest : public PairedCompanies {
 protected:
  TheRequest() : PairedCompanies({"Alder", "Birch"}) { PairOverTheFolder(); }

  // Alder's bill of 480.00, half of which is Birch's.
  RecordedTransaction EnterBill(const std::string& document = "HL-1") {
    return At("Alder", [&](Company& company) {
      return RecordTransaction(company,
                               {.type = EnteredType::kBill,
                                .date = DateType32{2026, 11, 2},
                                .name = NewVendorOrExisting(),
                                .memo = standalone::Memo("Inspection"),
                                .documentNumber = standalone::DocumentNumber(document),
                                .lines = {{.account = "Maintenance", .amount = LineAmount("480.00")}},
                                .shares = {{.partner = "Birch", .share = standalone::ShareText("50%")}},
                                .attachments = {}},
                               Posting::kPost);
    });
  }
  std::string EnterRequest(const std::string& document = "HL-1") {
    return PartnersLineOf(EnterBill(document)).partners->requestId;
  }
  static const RecordedLine& PartnersLineOf(const RecordedTransaction& transaction) {
    return *std::ranges::find_if(transaction.lines, [](const RecordedLine& line) { return line.partners.has_value(); });
  }

  std::vector<InboxRequest> InboxOf(const std::string& who, bool decided = true) {
    return At(who, [&](Company& company) {
      return ListInbox(company, {.partner = std::nullopt, .state = std::nullopt, .decided = decided});
    });
  }
  std::vector<OutboxRequest> OutboxOf(const std::string& who) {
    return At(who, [](Company& company) { return ListOutbox(company, {.partner = std::nullopt, .settled = true}); });
  }
  TransactionState StateAtAlder(const std::string& request) {
    return At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request)).state.value().number; });
  }

  static RequestSelection Only(const std::string& request) {
    return {.requests = {RequestId(request)}, .partner = std::nullopt, .upTo = std::nullopt};
  }
  static RequestBooking ToMaintenance() {
    return {.expense = Existing{"Maintenance"},
            .name = NewVendor{standalone::NewListName("Hillcrest at Birch")},
            .date = std::nullopt};
  }
  BookedRequests AcceptAtBirch(const std::string& request, const RequestBooking& booking = ToMaintenance()) {
    return At("Birch", [&](Company& company) { return AcceptRequests(company, Only(request), booking); });
  }
  RejectedRequests RejectAtBirch(const std::string& request, const std::string& reason) {
    return At("Birch",
              [&](Company& company) { return RejectRequests(company, Only(request), standalone::Memo(reason)); });
  }
  std::int32_t BookByHandAtBirch(const std::string& request, const std::string& amount) {
    return At("Birch", [&](Company& company) {
      return RecordJournalEntry(company, {.partner = Partner("Alder"),
                                          .request = RequestId(request),
                                          .amount = LineAmount(amount),
                                          .expense = Existing{"Maintenance"},
                                          .dueTo = std::nullopt,
                                          .name = NewVendor{standalone::NewListName("Hillcrest")}});
    });
  }
  void RelateBirchToCedar(const RelationAccounts& accounts) {
    At("Birch", [&](Company& company) {
      return CreateRelation(company, {.realm = standalone::RealmId("1002"),
                                      .partner = standalone::PartnerName("Cedar"),
                                      .type = 0,
                                      .state = standalone::RelationState::kEstablished,
                                      .accounts = accounts});
    });
  }
  void CarryUntilAtRest() { CarryInTurns("Alder", "Birch", 3); }
  void ConfirmRestored(const std::string& who) {
    At(who, [](Company& company) { return ConfirmCameBack(company, WhyCameBack::kRestored); });
  }

 private:
  std::variant<std::monostate, Existing, NewVendor> NewVendorOrExisting() {
    if (!std::exchange(hasVendor_, true)) return NewVendor{standalone::NewListName("Hillcrest")};
    return Existing{"Hillcrest"};
  }

  bool hasVendor_ = false;
};

TEST_F(TheRequest, StandsInThePartnersInboxWithAllThatTheBillSays) {
  const std::string request = EnterRequest();

  CarryInTurns("Alder", "Birch", 1);

  const std::vector<InboxRequest> inbox = InboxOf("Birch");
  ASSERT_THAT(inbox, SizeIs(1));
  EXPECT_EQ(inbox[0].partner, "Alder");
  EXPECT_EQ(inbox[0].requestId, request);
  EXPECT_EQ(inbox[0].type, kTxnTypeBill);
  EXPECT_EQ(inbox[0].date, DateType32(2026, 11, 2));
  EXPECT_EQ(inbox[0].amount.minorUnits, 24000);
  EXPECT_EQ(inbox[0].document, "HL-1");
  EXPECT_EQ(inbox[0].name, "Hillcrest");
  EXPECT_EQ(inbox[0].memo, "Inspection");
  EXPECT_EQ(inbox[0].hint, "Maintenance");
  EXPECT_EQ(inbox[0].state, InboxState::kNew);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kSent);
}

TEST_F(TheRequest, IsEstablishedOnBothSidesOnceItIsAccepted) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);

  const BookedRequests accepted = AcceptAtBirch(request);
  ASSERT_THAT(accepted.booked, SizeIs(1)) << accepted.left.at(0).refusal.why;
  CarryUntilAtRest();

  EXPECT_EQ(accepted.booked[0].request.state, InboxState::kAccepted);
  EXPECT_EQ(accepted.booked[0].request.entry->day, DateType32(2026, 11, 2));
  EXPECT_FALSE(accepted.booked[0].isDateMoved);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
  EXPECT_THAT(InboxOf("Birch", /*decided=*/false), IsEmpty());
}

TEST_F(TheRequest, ComesBackWithTheReasonOnceItIsRejected) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);

  ASSERT_THAT(RejectAtBirch(request, "not ours").rejected, SizeIs(1));
  CarryUntilAtRest();

  EXPECT_EQ(StateAtAlder(request), TransactionState::kCameBack);
  EXPECT_EQ(OutboxOf("Alder").at(0).reason, "not ours");
  EXPECT_THAT(At("Birch", [](Company& company) { return ListRejections(company); }), SizeIs(1));
}

TEST_F(TheRequest, IsClosedOnceItIsWithdrawnBeforeItIsAnswered) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);

  const OutboxRequest asked =
      At("Alder", [&](Company& company) { return WithdrawRequest(company, RequestId(request)); });
  EXPECT_TRUE(asked.isWithdrawing);
  CarryUntilAtRest();

  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kWithdrawn);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kClosed);
}

TEST_F(TheRequest, StaysAcceptedWhenTheWithdrawalComesTooLate) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);
  ASSERT_THAT(AcceptAtBirch(request).booked, SizeIs(1));

  At("Alder", [&](Company& company) { return WithdrawRequest(company, RequestId(request)); });
  CarryUntilAtRest();

  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kAccepted);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
}

TEST_F(TheRequest, ComesBackRejectedWhenTheWithdrawalComesTooLate) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);
  ASSERT_THAT(RejectAtBirch(request, "not ours").rejected, SizeIs(1));

  At("Alder", [&](Company& company) { return WithdrawRequest(company, RequestId(request)); });
  CarryUntilAtRest();

  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kRejected);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kCameBack);
}

TEST_F(TheRequest, IsNeverOnTheInboxWhenItsWithdrawalIsCarriedWithIt) {
  const std::string request = EnterRequest();
  At("Alder", [](Company& company) { return SendRequests(company); });
  At("Alder", [&](Company& company) { return WithdrawRequest(company, RequestId(request)); });

  CarryUntilAtRest();

  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kWithdrawn);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kClosed);
}

TEST_F(TheRequest, ThatWasBookedByHandIsEstablishedWithoutBeingBookedAgain) {
  const std::string request = EnterRequest();
  const std::int32_t entry = BookByHandAtBirch(request, "240.00");

  CarryUntilAtRest();

  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kAccepted);
  EXPECT_EQ(InboxOf("Birch").at(0).entry->txnId, entry);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
}

TEST_F(TheRequest, ThatWasBookedByHandWithAnotherAmountIsLeftToAPerson) {
  const std::string request = EnterRequest();
  const std::int32_t entry = BookByHandAtBirch(request, "24.00");

  CarryUntilAtRest();

  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kNew);
  EXPECT_THAT(InboxOf("Birch").at(0).mark, HasSubstr("over 24.00"));
  EXPECT_THAT(AcceptAtBirch(request).left, SizeIs(1));
  EXPECT_THAT(RejectAtBirch(request, "another amount").left, SizeIs(1));
  EXPECT_EQ(StateAtAlder(request), TransactionState::kSent);
  At("Birch", [&](Company& company) { return RemoveJournalEntry(company, entry); });
  ASSERT_THAT(RejectAtBirch(request, "another amount").rejected, SizeIs(1));
  CarryUntilAtRest();
  EXPECT_EQ(StateAtAlder(request), TransactionState::kCameBack);
}

TEST_F(TheRequest, ThatWasRejectedByHandIsAnsweredSo) {
  const std::string request = EnterRequest();
  At("Birch", [&](Company& company) {
    return SaveRejection(company, {.partner = Partner("Alder"),
                                   .request = RequestId(request),
                                   .type = standalone::RejectableType::kBill,
                                   .amount = standalone::RejectedAmount("240.00"),
                                   .partnerTxnId = standalone::PartnerTxnId("1")});
  });

  CarryUntilAtRest();

  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kRejected);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kCameBack);
}

TEST_F(TheRequest, ThatCameBackIsCorrectedByOneThatNamesIt) {
  const RecordedTransaction bill = EnterBill();
  const std::string request = PartnersLineOf(bill).partners->requestId;
  CarryInTurns("Alder", "Birch", 1);
  RejectAtBirch(request, "a third only");
  CarryUntilAtRest();

  At("Alder", [&](Company& company) {
    TransactionToCorrect correction{.type = EnteredType::kBill, .txnId = bill.txnId};
    correction.lines = std::vector<EnteredLine>{{.account = "Maintenance", .amount = LineAmount("480.00")}};
    correction.shares = std::vector<PartnersShare>{{.partner = "Birch", .share = standalone::ShareText("160.00")}};
    return CorrectTransaction(company, correction, Posting::kPost);
  });
  CarryUntilAtRest();

  EXPECT_EQ(StateAtAlder(request), TransactionState::kClosed);
  const std::vector<InboxRequest> waiting = InboxOf("Birch", /*decided=*/false);
  ASSERT_THAT(waiting, SizeIs(1));
  EXPECT_EQ(waiting[0].amount.minorUnits, 16000);
  ASSERT_TRUE(waiting[0].earlier.has_value());
  EXPECT_FALSE(waiting[0].earlier->reverses);
  EXPECT_EQ(waiting[0].earlier->requestId, request);
}

TEST_F(TheRequest, ThatIsEstablishedIsTakenBackByOneThatIsBookedToTheSameAccount) {
  const RecordedTransaction bill = EnterBill();
  const std::string request = PartnersLineOf(bill).partners->requestId;
  CarryInTurns("Alder", "Birch", 1);
  AcceptAtBirch(request);
  CarryUntilAtRest();

  At("Alder", [&](Company& company) {
    return ReverseTransaction(
        company, {.txnId = bill.txnId, .date = DateType32(2026, 11, 5), .memo = standalone::Memo("Never delivered")});
  });
  CarryUntilAtRest();
  const std::vector<InboxRequest> waiting = InboxOf("Birch", /*decided=*/false);
  ASSERT_THAT(waiting, SizeIs(1));
  EXPECT_EQ(waiting[0].amount.minorUnits, -24000);
  EXPECT_EQ(waiting[0].memo, "Never delivered");
  EXPECT_TRUE(waiting[0].earlier->reverses);
  const BookedRequests accepted = AcceptAtBirch(waiting[0].requestId, {});
  ASSERT_THAT(accepted.booked, SizeIs(1)) << accepted.left.at(0).refusal.why;
  CarryUntilAtRest();

  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
  EXPECT_EQ(StateAtAlder(waiting[0].requestId), TransactionState::kEstablished);
}

TEST_F(TheRequest, ThatIsTakenBackHasNoExpenseToMoveAnyMore) {
  const RecordedTransaction bill = EnterBill();
  CarryInTurns("Alder", "Birch", 1);
  const std::int32_t entry =
      AcceptAtBirch(PartnersLineOf(bill).partners->requestId).booked.at(0).request.entry.value().txnId;
  const auto moveTo = [&](const char* account) {
    return At("Birch", [&](Company& company) { return MoveExpense(company, {.txnId = entry, .account = account}); });
  };
  const std::int32_t move = moveTo("Checking").move.txnId;
  CarryUntilAtRest();
  At("Alder", [&](Company& company) {
    return ReverseTransaction(company, {.txnId = bill.txnId, .date = DateType32(2026, 11, 5), .memo = std::nullopt});
  });
  CarryUntilAtRest();
  ASSERT_THAT(AcceptAtBirch(InboxOf("Birch", /*decided=*/false).at(0).requestId, {}).booked, SizeIs(1));

  EXPECT_EQ(RefusalOf([&] { moveTo("Maintenance"); }).remedy, Remedy::kEnterAnEntry);
  At("Birch", [&](Company& company) {
    EXPECT_EQ(RefusalOf([&] { RemoveTransaction(company, move, {}); }).remedy, Remedy::kEnterAnEntry);
    EXPECT_EQ(RefusalOf([&] {
                ReverseTransaction(company, {.txnId = move, .date = std::nullopt, .memo = std::nullopt});
              }).remedy,
              Remedy::kEnterAnEntry);
  });
}

TEST_F(TheRequest, IsNotBookedToWhatAnyPartnerOwesOrIsOwed) {
  RelateBirchToCedar({.dueFrom = "Due from Cedar", .dueTo = "Due to Cedar"});
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);
  for (const char* const paired : {"Due from Alder", "Due from Cedar", "Due to Cedar"}) {
    RequestBooking booking = ToMaintenance();
    booking.expense = Existing{paired};

    const BookedRequests accepted = AcceptAtBirch(request, booking);

    ASSERT_THAT(accepted.left, SizeIs(1));
    EXPECT_EQ(accepted.left[0].refusal.remedy, Remedy::kNameAnExpenseAccount);
    EXPECT_EQ(accepted.left[0].refusal.why, "the account \"" + std::string(paired) + "\" is paired with a partner");
  }
  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kNew);
}

TEST_F(TheRequest, ThatTakesOneBackGoesWhereThatOneIsAlsoOnceTheAccountIsPairedWithAPartner) {
  const RecordedTransaction bill = EnterBill();
  CarryInTurns("Alder", "Birch", 1);
  AcceptAtBirch(PartnersLineOf(bill).partners->requestId);
  RelateBirchToCedar({.dueFrom = "Maintenance", .dueTo = "Due to Cedar", .ofAnyType = true});
  CarryUntilAtRest();
  At("Alder", [&](Company& company) {
    return ReverseTransaction(company, {.txnId = bill.txnId, .date = DateType32(2026, 11, 5), .memo = std::nullopt});
  });
  CarryUntilAtRest();

  const BookedRequests accepted = AcceptAtBirch(InboxOf("Birch", /*decided=*/false).at(0).requestId, {});

  EXPECT_THAT(accepted.left, IsEmpty());
  EXPECT_THAT(accepted.booked, SizeIs(1));
}

TEST_F(TheRequest, ThatTakesBackOneWhichIsNotBookedIsHeldUntilThatOneIs) {
  const RecordedTransaction bill = EnterBill();
  const std::string request = PartnersLineOf(bill).partners->requestId;
  CarryInTurns("Alder", "Birch", 1);
  const std::string before = Books("Birch");
  AcceptAtBirch(request);
  CarryUntilAtRest();
  At("Alder", [&](Company& company) {
    return ReverseTransaction(company, {.txnId = bill.txnId, .date = DateType32(2026, 11, 5), .memo = std::nullopt});
  });
  Restore("Birch", before);

  CarryUntilAtRest();
  ConfirmRestored("Birch");
  CarryUntilAtRest();

  EXPECT_THAT(InboxOf("Birch"), SizeIs(2));
  EXPECT_THAT(InboxOf("Birch").at(0).state, InboxState::kToBookAgain);
  EXPECT_THAT(InboxOf("Birch").at(1).state, InboxState::kHeld);
  ASSERT_THAT(AcceptAtBirch(request).booked, SizeIs(1));
  EXPECT_THAT(InboxOf("Birch").at(1).state, InboxState::kNew);
}

TEST_F(TheRequest, IsDatedOnTheFirstOpenDayWhereTheBooksAreClosed) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);
  At("Birch", [](Company& company) { return ChangeSetting(company, "closing-date", "2026-11-30"); });

  const BookedRequests accepted = AcceptAtBirch(request);

  ASSERT_THAT(accepted.booked, SizeIs(1)) << accepted.left.at(0).refusal.why;
  EXPECT_TRUE(accepted.booked[0].isDateMoved);
  EXPECT_EQ(accepted.booked[0].request.entry->day, DateType32(2026, 12, 1));
}

TEST_F(TheRequest, IsNotBookedWithoutAnAccountAndStaysAsItIs) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);

  const BookedRequests accepted = AcceptAtBirch(request, {});

  EXPECT_THAT(accepted.booked, IsEmpty());
  EXPECT_EQ(accepted.left.at(0).refusal.remedy, Remedy::kNameExpenseAndName);
  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kNew);
}

TEST_F(TheRequest, IsBookedUnderTheNameThatItTellsAlsoWhereThatLooksLikeTheNumberOfAnother) {
  At("Birch", [](Company& company) {
    AddName(company, {.name = "Walker", .kind = "vendor"});
    AddName(company, {.name = "1", .kind = "vendor"});
  });
  At("Alder", [](Company& company) { AddName(company, {.name = "1", .kind = "vendor"}); });
  At("Alder", [](Company& company) {
    return RecordTransaction(company,
                             {.type = EnteredType::kBill,
                              .name = Existing{"1"},
                              .lines = {{.account = "Maintenance", .amount = LineAmount("10.00")}},
                              .shares = {{.partner = "Birch", .share = standalone::ShareText("50%")}},
                              .attachments = {}},
                             Posting::kPost);
  });
  CarryInTurns("Alder", "Birch", 1);
  const std::string request = InboxOf("Birch").at(0).requestId;

  const BookedRequests accepted =
      AcceptAtBirch(request, {.expense = Existing{"Maintenance"}, .name = std::nullopt, .date = std::nullopt});

  ASSERT_THAT(accepted.booked, SizeIs(1)) << accepted.left.at(0).refusal.why;
  const std::int32_t entry = accepted.booked[0].request.entry->txnId;
  EXPECT_EQ(At("Birch", [&](Company& company) { return ShowTransaction(company, entry); }).name->name, "1");
}

TEST_F(TheRequest, IsToldWithItsAnswerInTheTrailOfItsTransaction) {
  const RecordedTransaction bill = EnterBill();
  CarryInTurns("Alder", "Birch", 1);
  RejectAtBirch(PartnersLineOf(bill).partners->requestId, "not ours");
  CarryUntilAtRest();

  const ShownTransaction shown = At("Alder", [&](Company& company) { return ShowTransaction(company, bill.txnId); });

  std::vector<std::string> actions;
  for (const AuditedDeed& deed : *shown.audit) actions.push_back(deed.action);
  EXPECT_THAT(actions, ElementsAre("bill.record", "exchange.send", "exchange.take"));
}

TEST_F(TheRequest, IsAnsweredOnce) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);
  AcceptAtBirch(request);

  EXPECT_EQ(RejectAtBirch(request, "after all").left.at(0).refusal.remedy, Remedy::kSeeTheInbox);
  EXPECT_EQ(AcceptAtBirch(request).left.at(0).refusal.remedy, Remedy::kSeeTheInbox);
}

TEST_F(TheRequest, IsNotUndoneByHandOnceThePartnerWasTold) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);
  const std::int32_t entry = AcceptAtBirch(request).booked.at(0).request.entry->txnId;

  EXPECT_EQ(
      At("Birch", [&](Company& company) { return RefusalOf([&] { RemoveJournalEntry(company, entry); }); }).remedy,
      Remedy::kWaitForTheReversal);
  EXPECT_EQ(At("Alder",
               [&](Company& company) {
                 return RefusalOf(
                     [&] { SetState(company, Partner("Birch"), RequestId(request), TransactionState::kEstablished); });
               })
                .remedy,
            Remedy::kSendToThePartner);
}

TEST_F(TheRequest, IsNotBookedOrRejectedPastTheInbox) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);

  EXPECT_EQ(RefusalOf([&] { BookByHandAtBirch(request, "240.00"); }).remedy, Remedy::kAnswerInTheInbox);
}

TEST_F(TheRequest, IsSentOnceAndNotWhereItIsAboveWhatIsAskedFor) {
  EnterRequest();
  const RequestSelection nothing{.requests = {}, .partner = std::nullopt, .upTo = LineAmount("1.00")};

  EXPECT_THAT(At("Alder", [&](Company& company) { return SendRequests(company, nothing); }).sent, IsEmpty());
  EXPECT_THAT(At("Alder", [&](Company& company) { return SendRequests(company); }).sent, SizeIs(1));
  EXPECT_THAT(At("Alder", [&](Company& company) { return SendRequests(company); }).sent, IsEmpty());
}

class WhatABackupForgot : public TheRequest {
 protected:
  // Birch has accepted and told so, and then its books are those of before.
  std::string AcceptedAndForgotten() {
    std::string request = EnterRequest();
    CarryInTurns("Alder", "Birch", 1);
    const std::string before = Books("Birch");
    EXPECT_THAT(AcceptAtBirch(request).booked, SizeIs(1));
    CarryUntilAtRest();
    Restore("Birch", before);
    return request;
  }
};

TEST_F(WhatABackupForgot, IsNotDecidedOtherwiseBeforeThePartnerWasAsked) {
  const std::string request = AcceptedAndForgotten();

  const Refusal refusal = RefusalOf([&] { RejectAtBirch(request, "not ours"); });

  EXPECT_EQ(refusal.remedy, Remedy::kCarryUntilCompared);
  EXPECT_EQ(RefusalOf([&] { AcceptAtBirch(request); }).remedy, Remedy::kCarryUntilCompared);
}

TEST_F(WhatABackupForgot, ComesBackAndIsToBeBookedAgainWithoutASecondAnswer) {
  const std::string request = AcceptedAndForgotten();

  CarryUntilAtRest();
  ConfirmRestored("Birch");

  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kToBookAgain);
  EXPECT_EQ(InboxOf("Birch").at(0).entryBefore->day, DateType32(2026, 11, 2));
  ASSERT_THAT(AcceptAtBirch(request).booked, SizeIs(1));
  CarryUntilAtRest();
  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kAccepted);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
  EXPECT_FALSE(Carry("Birch").at(0).awaited.has_value());
}

TEST_F(WhatABackupForgot, IsLetGoWhenAnAdministratorInsists) {
  const std::string request = AcceptedAndForgotten();

  At("Birch", [](Company& company) { InsistOnBooks(company); });

  EXPECT_THAT(RejectAtBirch(request, "not ours").rejected, SizeIs(1));
  CarryUntilAtRest();
  EXPECT_EQ(InboxOf("Birch").at(0).state, InboxState::kToBookAgain);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
}

TEST_F(WhatABackupForgot, OfOnesOwnRequestKeepsItFromBeingTakenBackBeforeThePartnerWasAsked) {
  const RecordedTransaction bill = EnterBill();
  const std::string before = Books("Alder");
  CarryInTurns("Alder", "Birch", 1);
  Restore("Alder", before);

  const auto reverse = [&] {
    At("Alder", [&](Company& company) {
      return ReverseTransaction(company, {.txnId = bill.txnId, .date = DateType32(2026, 11, 5), .memo = std::nullopt});
    });
  };

  EXPECT_EQ(RefusalOf(reverse).remedy, Remedy::kCarryUntilCompared);
  CarryUntilAtRest();
  EXPECT_EQ(StateAtAlder(PartnersLineOf(bill).partners->requestId), TransactionState::kSent);
}

TEST_F(TheRequest, IsNotImportedPastThePartnersAnswers) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);
  const std::string realm = RealmOf("Alder");
  const auto importAtBirch = [&](const std::string& id, const std::string& state) {
    standalone::WriteFile(folder_ / "entries.csv",
                          "transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n"
                          "1,journal,2026-11-02,,,Maintenance,240.00,," +
                              realm + "," + id + "," + state + "\n1,journal,2026-11-02,,,Due to Alder,-240.00,,,,\n");
    At("Birch", [&](Company& company) { Import(company, Importable::kTransactions, folder_ / "entries.csv"); });
  };

  EXPECT_THROW(importAtBirch(request, ""), standalone::InvalidInput);
  EXPECT_THROW(importAtBirch("R-9", "established"), standalone::InvalidInput);
  importAtBirch("R-9", "");

  // It is the partner's own, and not sent back to it.
  EXPECT_THAT(At("Birch", [](Company& company) { return SendRequests(company); }).sent, IsEmpty());
}

TEST_F(TheRequest, ThatMeetsARemovedEntryOfAnotherAmountIsNotMarkedAnyMore) {
  const std::string request = EnterRequest();
  const std::int32_t entry = BookByHandAtBirch(request, "24.00");
  CarryUntilAtRest();

  At("Birch", [&](Company& company) { return RemoveJournalEntry(company, entry); });

  EXPECT_THAT(InboxOf("Birch").at(0).mark, IsEmpty());
}

TEST_F(TheRequest, KeepsTheCurrencyInWhichBothCompaniesCount) {
  EXPECT_EQ(RefusalOf([&] {
              At("Birch", [](Company& company) { return ChangeSetting(company, "home-currency", "JPY"); });
            }).remedy,
            Remedy::kRemoveThePairingFirst);
}

TEST_F(TheRequest, LeavesATrailThatHolds) {
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);
  AcceptAtBirch(request);
  CarryUntilAtRest();

  for (const char* const who : {"Alder", "Birch"}) {
    EXPECT_FALSE(At(who, [](Company& company) { return VerifyAudit(company); }).breakAt.has_value()) << who;
  }
}

TEST_F(TheRequest, ThatTheSendersBooksLostIsToldAndAnsweredAllTheSame) {
  const std::string before = Books("Alder");
  const std::string request = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);
  AcceptAtBirch(request);

  Restore("Alder", before);
  CarryUntilAtRest();
  CarryUntilAtRest();

  const std::vector<OutboxRequest> outbox = OutboxOf("Alder");
  ASSERT_THAT(outbox, SizeIs(1));
  EXPECT_TRUE(outbox[0].isLost);
  EXPECT_EQ(outbox[0].amount.minorUnits, 24000);
}

// Alder's bill was sent; then its books were restored to what they were before the bill.
class ALostRequest : public TheRequest {
 protected:
  ALostRequest() : request_(SendAndLose()) {}

  // The bill as a person has it before them; what is left out is as it was sent.
  TransactionToRecord BillOnceMore(const std::string& share = "240.00") const {
    TransactionToRecord bill{.type = EnteredType::kBill,
                             .name = NewVendor{standalone::NewListName("Hillcrest")},
                             .lines = {{.account = "Maintenance", .amount = LineAmount("480.00")}},
                             .shares = {{.partner = "Birch", .share = standalone::ShareText(share)}},
                             .attachments = {}};
    bill.lost.emplace_back(request_);
    return bill;
  }
  // As if nobody had asked Birch for it.
  TransactionToRecord BillAnew(DateType32 date, const std::string& document,
                               const std::string& share = "240.00") const {
    TransactionToRecord bill = BillOnceMore(share);
    bill.date = date;
    bill.documentNumber = standalone::DocumentNumber(document);
    bill.lost.clear();
    return bill;
  }
  RecordedTransaction EnterOnceMore(const TransactionToRecord& bill, Posting how = Posting::kPost) {
    return At("Alder", [&](Company& company) { return RecordTransaction(company, bill, how); });
  }
  Refusal RefusalOfEntering(const TransactionToRecord& bill) {
    const std::string before = Books("Alder");
    Refusal refusal = RefusalOf([&] { EnterOnceMore(bill); });
    EXPECT_TRUE(Books("Alder") == before);
    return refusal;
  }

  const std::string request_;

 private:
  std::string SendAndLose() {
    const std::string before = Books("Alder");
    const std::string request = EnterRequest();
    CarryInTurns("Alder", "Birch", 1);
    Restore("Alder", before);
    CarryUntilAtRest();
    ConfirmRestored("Alder");
    return request;
  }
};

TEST_F(ALostRequest, IsEnteredOnceMoreUnderWhatThePartnerKnows) {
  const RecordedTransaction bill = EnterOnceMore(BillOnceMore());

  EXPECT_EQ(PartnersLineOf(bill).partners->requestId, request_);
  EXPECT_EQ(bill.date, DateType32(2026, 11, 2));
  EXPECT_EQ(bill.memo, "Inspection");
  EXPECT_EQ(bill.documentNumber, "HL-1");
  EXPECT_EQ(StateAtAlder(request_), TransactionState::kSent);
  EXPECT_FALSE(OutboxOf("Alder").at(0).isLost);
  EXPECT_THAT(OutboxOf("Alder").at(0).mark, IsEmpty());
}

TEST_F(ALostRequest, IsNotSentASecondTime) {
  EnterOnceMore(BillOnceMore());

  CarryUntilAtRest();

  EXPECT_THAT(At("Alder", [](Company& company) { return SendRequests(company); }).sent, IsEmpty());
  EXPECT_THAT(InboxOf("Birch"), SizeIs(1));
  ASSERT_THAT(AcceptAtBirch(request_).booked, SizeIs(1));
  CarryUntilAtRest();
  EXPECT_EQ(StateAtAlder(request_), TransactionState::kEstablished);
}

TEST_F(ALostRequest, HasThePartnersAnswerAtOnce) {
  ASSERT_THAT(AcceptAtBirch(request_).booked, SizeIs(1));
  CarryUntilAtRest();

  EnterOnceMore(BillOnceMore());

  EXPECT_EQ(StateAtAlder(request_), TransactionState::kEstablished);
  EXPECT_FALSE(At("Alder", [](Company& company) { return VerifyAudit(company); }).breakAt.has_value());
}

TEST_F(ALostRequest, ComesBackAtOnceIfItWasRejected) {
  ASSERT_THAT(RejectAtBirch(request_, "not ours").rejected, SizeIs(1));
  CarryUntilAtRest();

  EnterOnceMore(BillOnceMore());

  EXPECT_EQ(StateAtAlder(request_), TransactionState::kCameBack);
  EXPECT_EQ(OutboxOf("Alder").at(0).reason, "not ours");
}

TEST_F(ALostRequest, IsSeenBeforeItIsPosted) {
  const std::string before = Books("Alder");

  EnterOnceMore(BillOnceMore(), Posting::kPreviewOnly);

  EXPECT_TRUE(Books("Alder") == before);
  EXPECT_TRUE(OutboxOf("Alder").at(0).isLost);
}

TEST_F(ALostRequest, IsRefusedForWhatThePartnerWasToldOtherwise) {
  TransactionToRecord later = BillOnceMore();
  later.date = DateType32{2026, 11, 3};
  TransactionToRecord ofAnother = BillOnceMore();
  ofAnother.name = NewVendor{standalone::NewListName("Valley")};
  TransactionToRecord otherMemo = BillOnceMore();
  otherMemo.memo = standalone::Memo("Repair");
  TransactionToRecord otherNumber = BillOnceMore();
  otherNumber.documentNumber = standalone::DocumentNumber("HL-2");

  EXPECT_EQ(RefusalOfEntering(BillOnceMore("200.00")).why,
            "the request \"" + request_ + "\" asks Birch for 240.00, and no line does");
  EXPECT_THAT(RefusalOfEntering(later).why, HasSubstr("with the date \"2026-11-02\", not \"2026-11-03\""));
  EXPECT_THAT(RefusalOfEntering(ofAnother).why, HasSubstr("with the name \"Hillcrest\", not \"Valley\""));
  EXPECT_THAT(RefusalOfEntering(otherMemo).why, HasSubstr("with the memo \"Inspection\", not \"Repair\""));
  EXPECT_THAT(RefusalOfEntering(otherNumber).why, HasSubstr("with the document number \"HL-1\", not \"HL-2\""));
  EXPECT_EQ(RefusalOfEntering(otherNumber).remedy, Remedy::kEnterWhatWasSent);
}

TEST_F(ALostRequest, IsEnteredOnce) {
  EnterOnceMore(BillOnceMore());
  TransactionToRecord second = BillOnceMore();
  second.name = Existing{"Hillcrest"};
  second.again = true;

  EXPECT_EQ(RefusalOfEntering(second).why, "the request \"" + request_ + "\" is in these books, and was not lost");
}

TEST_F(ALostRequest, IsEnteredAsWhatItWas) {
  TransactionToRecord check = BillOnceMore();
  check.type = EnteredType::kCheck;
  TransactionToRecord unknown = BillOnceMore();
  unknown.lost = {RequestId("R-9")};
  TransactionToRecord twice = BillOnceMore();
  twice.lost.emplace_back(request_);

  EXPECT_EQ(RefusalOfEntering(check).why, "the request \"" + request_ + "\" is one of a bill, not of a check");
  EXPECT_EQ(RefusalOfEntering(unknown).why,
            "the request \"R-9\" was sent to no partner with whom this company is paired");
  EXPECT_EQ(RefusalOfEntering(twice).remedy, Remedy::kEnterWhatWasSent);
}

TEST_F(ALostRequest, IsNotAskedForAnewByMistake) {
  const Refusal ofTheDay = RefusalOfEntering(BillAnew({2026, 11, 2}, ""));
  const Refusal ofTheDocument = RefusalOfEntering(BillAnew({2026, 11, 9}, "HL-1"));
  const Refusal inSmallLetters = RefusalOfEntering(BillAnew({2026, 11, 9}, "hl-1"));

  EXPECT_EQ(ofTheDay.why, "Birch was sent the bill " + request_ +
                              " of 2026-11-02 over 240.00 USD, which these books lost; this bill asks for that amount "
                              "on the same day");
  EXPECT_THAT(ofTheDocument.why, HasSubstr("under the same document number, \"HL-1\""));
  EXPECT_EQ(ofTheDay.remedy, Remedy::kEnterUnderTheLostRequest);
  EXPECT_EQ(ofTheDocument.remedy, Remedy::kEnterUnderTheLostRequest);
  EXPECT_EQ(inSmallLetters.remedy, Remedy::kEnterUnderTheLostRequest);
}

TEST_F(ALostRequest, ThatThePartnerHasBookedIsNotAskedForAnewEither) {
  ASSERT_THAT(AcceptAtBirch(request_).booked, SizeIs(1));
  CarryUntilAtRest();

  EXPECT_EQ(RefusalOfEntering(BillAnew({2026, 11, 2}, "HL-1")).remedy, Remedy::kEnterUnderTheLostRequest);
}

TEST_F(ALostRequest, StandsBesideAnotherOneOfTheSameIfAPersonSaysSo) {
  TransactionToRecord another = BillAnew({2026, 11, 2}, "HL-1");
  another.again = true;

  const RecordedTransaction bill = EnterOnceMore(another);

  EXPECT_NE(PartnersLineOf(bill).partners->requestId, request_);
  EXPECT_THAT(OutboxOf("Alder"), SizeIs(2));
}

TEST_F(ALostRequest, KeepsNothingElseFromBeingEntered) {
  TransactionToRecord another = BillAnew({2026, 11, 2}, "HL-1", "120.00");
  const std::int32_t first = EnterOnceMore(another).txnId;
  another = BillAnew({2026, 11, 3}, "");
  another.name = Existing{"Hillcrest"};

  EXPECT_GT(EnterOnceMore(another).txnId, first);
}

TEST_F(ALostRequest, ThatHasComeToNothingKeepsNothingFromBeingEntered) {
  ASSERT_THAT(RejectAtBirch(request_, "not ours").rejected, SizeIs(1));
  CarryUntilAtRest();

  EXPECT_NE(PartnersLineOf(EnterOnceMore(BillAnew({2026, 11, 2}, "HL-1"))).partners->requestId, request_);
}

TEST_F(ALostRequest, ThatIsEnteredOnceMoreIsNoneAnyMore) {
  EnterOnceMore(BillOnceMore());
  TransactionToRecord another = BillAnew({2026, 11, 2}, "HL-2");
  another.name = Existing{"Hillcrest"};

  EXPECT_NE(PartnersLineOf(EnterOnceMore(another)).partners->requestId, request_);
}

TEST_F(TheRequest, ThatWasEnteredAnewBeforeTheLostOneCameBackIsSentOnlyWhenItIsNamed) {
  const std::string before = Books("Alder");
  const std::string lost = EnterRequest();
  CarryInTurns("Alder", "Birch", 1);
  Restore("Alder", before);
  const std::string anew =
      PartnersLineOf(At("Alder", [](Company& company) {
        return RecordTransaction(company,
                                 {.type = EnteredType::kBill,
                                  .date = DateType32{2026, 11, 2},
                                  .name = NewVendor{standalone::NewListName("Hillcrest")},
                                  .lines = {{.account = "Maintenance", .amount = LineAmount("480.00")}},
                                  .shares = {{.partner = "Birch", .share = standalone::ShareText("50%")}},
                                  .attachments = {}},
                                 Posting::kPost);
      })).partners->requestId;
  CarryUntilAtRest();
  ConfirmRestored("Alder");

  const SentRequests all = At("Alder", [](Company& company) { return SendRequests(company); });

  EXPECT_THAT(Carry("Alder").at(0).notSent, ElementsAre(HasSubstr("Birch was sent the bill " + lost + " of ")));
  EXPECT_THAT(all.sent, IsEmpty());
  ASSERT_THAT(all.left, SizeIs(1));
  EXPECT_EQ(all.left[0].refusal.remedy, Remedy::kSendByNameOrTakeBack);
  EXPECT_THAT(InboxOf("Birch"), SizeIs(1));
  EXPECT_THAT(At("Alder", [&](Company& company) { return SendRequests(company, Only(anew)); }).sent, SizeIs(1));
}

TEST_F(ALostRequest, IsNotAskedForAnewByACopyOrACorrection) {
  const std::int32_t other = EnterOnceMore(BillAnew({2026, 11, 3}, "")).txnId;
  const std::int32_t smaller = EnterOnceMore([&] {
                                 TransactionToRecord bill = BillAnew({2026, 11, 3}, "HL-2", "24.00");
                                 bill.name = Existing{"Hillcrest"};
                                 return bill;
                               }())
                                   .txnId;
  const auto copy = [&](bool again) {
    return At("Alder", [&](Company& company) {
      return CopyTransaction(company,
                             {.type = EnteredType::kBill,
                              .txnId = other,
                              .date = DateType32{2026, 11, 2},
                              .attachments = {},
                              .again = again},
                             Posting::kPost);
    });
  };
  const auto correct = [&](bool again) {
    return At("Alder", [&](Company& company) {
      return CorrectTransaction(company,
                                {.type = EnteredType::kBill,
                                 .txnId = smaller,
                                 .date = DateType32{2026, 11, 2},
                                 .lines = {{.account = "Maintenance", .amount = LineAmount("480.00")}},
                                 .shares = {{.partner = "Birch", .share = standalone::ShareText("50%")}},
                                 .again = again},
                                Posting::kPost);
    });
  };

  EXPECT_EQ(RefusalOf([&] { copy(false); }).remedy, Remedy::kEnterUnderTheLostRequest);
  EXPECT_EQ(RefusalOf([&] { correct(false); }).remedy, Remedy::kEnterUnderTheLostRequest);
  EXPECT_GT(copy(true).txnId, smaller);
  EXPECT_GT(correct(true).correction.txnId, smaller);
}

TEST_F(TheRequest, ThatTakesAnEarlierOneBackIsTakenUpAgainWhenItWasLost) {
  const RecordedTransaction bill = EnterBill();
  const std::string request = PartnersLineOf(bill).partners->requestId;
  CarryInTurns("Alder", "Birch", 1);
  AcceptAtBirch(request);
  CarryUntilAtRest();
  const std::string before = Books("Alder");
  const auto reverseOn = [&](DateType32 date, std::optional<standalone::Memo> memo = std::nullopt) {
    return At("Alder", [&](Company& company) {
      return ReverseTransaction(company, {.txnId = bill.txnId, .date = date, .memo = memo});
    });
  };
  const RecordedTransaction reversal = reverseOn({2026, 11, 5}, standalone::Memo("Never delivered")).reversal;
  const std::string takesBack = PartnersLineOf(reversal).partners->requestId;
  CarryInTurns("Alder", "Birch", 1);
  Restore("Alder", before);
  CarryUntilAtRest();
  ConfirmRestored("Alder");
  TransactionToRecord asABill{.type = EnteredType::kBill,
                              .name = Existing{"Hillcrest"},
                              .lines = {{.account = "Maintenance", .amount = LineAmount("-480.00")}},
                              .shares = {{.partner = "Birch", .share = standalone::ShareText("50%")}},
                              .attachments = {}};
  asABill.lost.emplace_back(takesBack);

  EXPECT_THAT(RefusalOf([&] {
                At("Alder", [&](Company& company) { return RecordTransaction(company, asABill, Posting::kPost); });
              }).why,
              HasSubstr("reverse the transaction of that one, with the date 2026-11-05"));
  EXPECT_EQ(RefusalOf([&] { reverseOn({2026, 11, 6}); }).remedy, Remedy::kEnterWhatWasSent);
  const Refusal otherMemo = RefusalOf([&] { reverseOn({2026, 11, 5}, standalone::Memo("Delivered late")); });
  EXPECT_EQ(otherMemo.remedy, Remedy::kEnterWhatWasSent);
  EXPECT_EQ(otherMemo.why, "Birch was asked to take it back with the memo \"Never delivered\", by the request " +
                               standalone::Quoted(takesBack) + ", which these books lost; not with \"Delivered late\"");
  const RecordedTransaction onceMore = reverseOn({2026, 11, 5}).reversal;
  EXPECT_EQ(PartnersLineOf(onceMore).partners->requestId, takesBack);
  EXPECT_EQ(PartnersLineOf(onceMore).memo, "Never delivered");
  CarryUntilAtRest();

  EXPECT_EQ(StateAtAlder(takesBack), TransactionState::kSent);
  EXPECT_THAT(InboxOf("Birch", /*decided=*/false), SizeIs(1));
  ASSERT_THAT(AcceptAtBirch(takesBack, {}).booked, SizeIs(1));
  CarryUntilAtRest();
  EXPECT_EQ(StateAtAlder(takesBack), TransactionState::kEstablished);
}

class WithTheFeatureSwitchedOff : public PairedCompanies {
 protected:
  WithTheFeatureSwitchedOff() : PairedCompanies({"Alder"}) {
    standalone::WriteFile(FileOf("Alder").string() + ".remote.toml",
                          "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  }
};

TEST_F(WithTheFeatureSwitchedOff, NothingIsCarriedSentOrDecidedWhateverElseIsMissing) {
  const auto statusOf = [&](auto&& ask) {
    return RefusalOf([&] { At("Alder", ask); }).status;
  };
  const RequestBooking booking{.expense = Existing{"Maintenance"}, .name = Existing{"Hillcrest"}, .date = std::nullopt};

  EXPECT_EQ(statusOf([](Company& company) { return RunExchange(company); }), MEStatusFeatureDisabled);
  EXPECT_EQ(statusOf([](Company& company) { return ExportLetters(company, "Birch"); }), MEStatusFeatureDisabled);
  EXPECT_EQ(statusOf([](Company& company) { return SendRequests(company); }), MEStatusFeatureDisabled);
  EXPECT_EQ(statusOf([](Company& company) { return WithdrawRequest(company, RequestId("R-1")); }),
            MEStatusFeatureDisabled);
  EXPECT_EQ(statusOf([&](Company& company) { return AcceptRequests(company, {}, booking); }), MEStatusFeatureDisabled);
  EXPECT_EQ(statusOf([](Company& company) { return RejectRequests(company, {}, standalone::Memo("No")); }),
            MEStatusFeatureDisabled);
  const standalone::RemarkText text("No");
  EXPECT_EQ(statusOf([&](Company& company) { return DisputeRequest(company, RequestId("R-1"), text); }),
            MEStatusFeatureDisabled);
  EXPECT_EQ(statusOf([&](Company& company) { return NoteOnRequest(company, RequestId("R-1"), text); }),
            MEStatusFeatureDisabled);
  EXPECT_EQ(statusOf([&](Company& company) { return NoteOnOwnRequest(company, RequestId("R-1"), text); }),
            MEStatusFeatureDisabled);
}

}  // namespace
}  // namespace desk
