// Facts of a company that come back to books that never made them: as a backup was restored, or a copy is at work.
#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "standalone/desk/Audit.h"
#include "standalone/desk/Correcting.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Reports.h"
#include "standalone/desk/Rules.h"
#include "standalone/desk/Settings.h"
#include "standalone/desk/Users.h"
#include "standalone/desk/inside/Carrying.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Work.h"
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

class WhatCameBack : public PairedCompanies {
 protected:
  WhatCameBack() : PairedCompanies({"Alder", "Birch"}) {
    PairOverTheFolder();
    CarryUntilAtRest();
  }

  // Each over another amount, half of which is the partner's; the request.
  std::string EnterBill(const std::string& who, const std::string& partner, const std::string& document) {
    const std::string amount = std::to_string(480 + 10 * ++bills_) + ".00";
    const RecordedTransaction bill = At(who, [&](Company& company) {
      return RecordTransaction(company,
                               {.type = EnteredType::kBill,
                                .date = DateType32{2026, 11, 2},
                                .name = NewVendor{standalone::NewListName("Hillcrest for " + document)},
                                .documentNumber = standalone::DocumentNumber(document),
                                .lines = {{.account = "Maintenance", .amount = LineAmount(amount)}},
                                .shares = {{.partner = partner, .share = standalone::ShareText("50%")}},
                                .attachments = {}},
                               Posting::kPost);
    });
    return std::ranges::find_if(bill.lines, [](const RecordedLine& line) { return line.partners.has_value(); })
        ->partners->requestId;
  }
  void CarryUntilAtRest() { CarryInTurns("Alder", "Birch", 4); }

  std::vector<std::string> InboxOf(const std::string& who) {
    std::vector<std::string> requests;
    for (const InboxRequest& request : At(who, [](Company& company) {
           return ListInbox(company, {.partner = std::nullopt, .state = std::nullopt, .decided = true});
         })) {
      requests.push_back(request.requestId);
    }
    return requests;
  }
  std::optional<Awaited> AwaitedBy(const std::string& who) {
    return At(who, [](Company& company) { return TellAwaited(company); });
  }
  std::int64_t ConfirmAt(const std::string& who, WhyCameBack why = WhyCameBack::kRestored,
                         const std::string& user = kFirstUser) {
    return At(who, [&](Company& company) { return ConfirmCameBack(company, why); }, user);
  }
  Refusal RefusalOfConfirmingAt(const std::string& who, const std::string& user = kFirstUser) {
    return RefusalOf([&] { ConfirmAt(who, WhyCameBack::kRestored, user); });
  }
  SentRequests SendAt(const std::string& who) {
    return At(who, [](Company& company) { return SendRequests(company); });
  }
  BookedRequests AcceptAt(const std::string& who, const std::string& request) {
    return At(who, [&](Company& company) {
      return AcceptRequests(company, {.requests = {RequestId(request)}, .partner = std::nullopt, .upTo = std::nullopt},
                            {.expense = Existing{"Maintenance"},
                             .name = NewVendor{standalone::NewListName("Booked " + request)},
                             .date = std::nullopt});
    });
  }

  // Whether the partner is to say that it has read the next letter, and with it what it holds.
  bool AsksForAReply(const std::string& who) {
    return At(who, [](Company& company) {
      Work work(company.Opened(), UseCase::kExchange);
      return work.Write([&] {
        const standalone::Pairing pairing = work.Host().Pairings().List().at(0);
        return !LettersFor(work, pairing, RequireKeys(work)).value().letter.word.empty();
      });
    });
  }

  // What lies beside a company, its identity too, as somebody takes it to another machine.
  struct Whole {
    std::string books;
    std::string identity;
  };
  std::filesystem::path IdentityOf(const std::string& who) const { return FileOf(who).string() + ".identity"; }
  Whole Take(const std::string& who) const {
    return {.books = Books(who), .identity = standalone::ReadFile(IdentityOf(who))};
  }
  void Put(const std::string& who, const Whole& whole) {
    Restore(who, whole.books);
    standalone::WriteFile(IdentityOf(who), whole.identity);
  }

 private:
  int bills_ = 0;
};

// Alder's bill was sent and is with Birch; Alder's books are those of before it.
class ARestoredBackup : public WhatCameBack {
 protected:
  ARestoredBackup() {
    const std::string before = Books("Alder");
    lost_ = EnterBill("Alder", "Birch", "HL-1");
    CarryInTurns("Alder", "Birch", 1);
    Restore("Alder", before);
  }

  std::string lost_;
};

TEST_F(ARestoredBackup, IsToldWithWhatCameBackOnceThePartnerWasCompared) {
  CarryUntilAtRest();

  const std::optional<Awaited> awaited = AwaitedBy("Alder");

  ASSERT_TRUE(awaited.has_value());
  EXPECT_EQ(awaited->missing, 0);
  EXPECT_EQ(awaited->cameBack, 1);
  EXPECT_EQ(awaited->fromElsewhere, 0);
  EXPECT_THAT(awaited->firstThatCameBack, ElementsAre("the proposal " + lost_ + " to Birch"));
  EXPECT_THAT(awaited->toCompare, IsEmpty());
  EXPECT_THAT(CameBackText(*awaited), HasSubstr("so that a backup was restored"));
}

TEST_F(ARestoredBackup, SendsNothingBeforeAPersonHasConfirmedIt) {
  const std::string anew = EnterBill("Alder", "Birch", "HL-2");
  CarryUntilAtRest();

  const Refusal refusal = RefusalOf([&] { SendAt("Alder"); });

  EXPECT_EQ(refusal.remedy, Remedy::kConfirmWhatCameBack);
  EXPECT_THAT(refusal.why, HasSubstr("1 fact that this company signed and these books never made has come back: the "
                                     "proposal " +
                                     lost_ + " to Birch"));
  EXPECT_THAT(InboxOf("Birch"), ElementsAre(lost_));
  EXPECT_EQ(ConfirmAt("Alder"), 1);
  EXPECT_FALSE(AwaitedBy("Alder").has_value());
  EXPECT_THAT(SendAt("Alder").sent, SizeIs(1));
  CarryUntilAtRest();
  EXPECT_THAT(InboxOf("Birch"), testing::UnorderedElementsAre(lost_, anew));
}

TEST_F(ARestoredBackup, IsNotConfirmedBeforeThePartnerHasShownWhatItHolds) {
  const Refusal refusal = RefusalOfConfirmingAt("Alder");

  EXPECT_EQ(refusal.remedy, Remedy::kCarryUntilCompared);
  EXPECT_THAT(refusal.why, HasSubstr("partners that have yet to show what they hold: Birch"));
}

TEST_F(ARestoredBackup, DecidesNothingMeanwhileAndAllAfterwards) {
  const std::string request = EnterBill("Birch", "Alder", "B-1");
  CarryUntilAtRest();
  EXPECT_THAT(InboxOf("Alder"), IsEmpty());
  EXPECT_THAT(Seen("Alder", "Birch").outstanding, ElementsAre(HasSubstr("it waits until these books were compared")));

  ConfirmAt("Alder");
  Carry("Alder");

  ASSERT_THAT(InboxOf("Alder"), ElementsAre(request));
  EXPECT_THAT(AcceptAt("Alder", request).booked, SizeIs(1));
  EXPECT_THAT(Seen("Alder", "Birch").outstanding, IsEmpty());
}

TEST_F(ARestoredBackup, HasNoRuleBookAnythingMeanwhile) {
  At("Alder", [](Company& company) {
    SetBookedUpTo(company, "Birch", LineAmount("1000.00"));
    AddRule(company, {.partner = Partner("Birch"),
                      .name = std::nullopt,
                      .hint = "Maintenance",
                      .memo = std::nullopt,
                      .expense = "Maintenance"});
  });
  const std::string request = EnterBill("Birch", "Alder", "B-1");
  CarryUntilAtRest();
  EXPECT_THAT(InboxOf("Alder"), IsEmpty());

  ConfirmAt("Alder");
  Carry("Alder");

  EXPECT_EQ(At("Alder", [&](Company& company) { return ShowInbox(company, RequestId(request)).state; }),
            InboxState::kAccepted);
}

TEST_F(ARestoredBackup, AsksThePartnerWhatItHoldsAlsoOnceAnAdministratorInsists) {
  At("Alder", [](Company& company) { InsistOnBooks(company); });

  EXPECT_EQ(AwaitedBy("Alder"), std::nullopt);
  EXPECT_TRUE(AsksForAReply("Alder"));
  CarryUntilAtRest();
  ConfirmAt("Alder");
  CarryUntilAtRest();
  EXPECT_FALSE(AsksForAReply("Alder"));
}

TEST_F(ARestoredBackup, IsConfirmedOnceAndInTheTrail) {
  CarryUntilAtRest();
  ConfirmAt("Alder");

  EXPECT_THAT(RefusalOfConfirmingAt("Alder").why, HasSubstr("there is nothing to confirm"));

  const std::vector<AuditedDeed> confirmed = At("Alder", [](Company& company) {
    return ListAudit(
        company, {.user = {}, .action = "exchange.confirm", .period = {NullDate(), NullDate()}, .txnId = std::nullopt});
  });
  ASSERT_THAT(confirmed, SizeIs(1));
  EXPECT_EQ(confirmed[0].changes.back().after, "a backup was restored");
}

TEST_F(ARestoredBackup, IsToldAgainWhenItIsRestoredOnceMore) {
  const std::string before = Books("Alder");
  CarryUntilAtRest();
  ConfirmAt("Alder");

  Restore("Alder", before);
  CarryUntilAtRest();

  EXPECT_EQ(RefusalOf([&] { SendAt("Alder"); }).remedy, Remedy::kConfirmWhatCameBack);
}

TEST_F(WhatCameBack, IsNothingForBooksThatHaveAllAndNobodyConfirmsIt) {
  EnterBill("Alder", "Birch", "HL-1");
  CarryUntilAtRest();

  EXPECT_FALSE(AwaitedBy("Alder").has_value());
  EXPECT_THAT(RefusalOfConfirmingAt("Alder").why, HasSubstr("there is nothing to confirm"));
}

TEST_F(WhatCameBack, IsNothingForACompanyThatHasMovedWithItsIdentity) {
  const std::string request = EnterBill("Alder", "Birch", "HL-1");
  CarryUntilAtRest();
  const Whole alder = Take("Alder");

  Put("Alder", alder);
  CarryUntilAtRest();

  EXPECT_FALSE(AwaitedBy("Alder").has_value());
}

// Nothing else knows what left.
TEST_F(WhatCameBack, CannotBeToldWithoutTheIdentitySoThatNothingThatAPartnerMayKnowIsTakenBack) {
  const std::string request = EnterBill("Alder", "Birch", "HL-1");
  CarryUntilAtRest();
  std::filesystem::remove(IdentityOf("Alder"));
  const std::string books = Books("Alder");

  At("Alder", [&](Company& company) {
    const std::int32_t bill = ShowOutbox(company, RequestId(request)).txnId;
    const Refusal refusal = RefusalOf(
        [&] { ReverseTransaction(company, {.txnId = bill, .date = DateType32{2026, 11, 5}, .memo = std::nullopt}); });
    EXPECT_EQ(refusal.remedy, Remedy::kBringTheIdentity);
    EXPECT_THAT(refusal.why, HasSubstr("the identity of this company is not beside it"));
    EXPECT_EQ(RefusalOf([&] { RemoveTransaction(company, bill); }).remedy, Remedy::kBringTheIdentity);
    EXPECT_EQ(RefusalOf([&] { WithdrawRequest(company, RequestId(request)); }).remedy, Remedy::kBringTheIdentity);
    EXPECT_EQ(RefusalOf([&] { InsistOnBooks(company); }).remedy, Remedy::kBringTheIdentity);
  });
  EXPECT_EQ(RefusalOfConfirmingAt("Alder").remedy, Remedy::kBringTheIdentity);

  EXPECT_EQ(Books("Alder"), books);
}

TEST_F(WhatCameBack, IsNotAskedForWhereNoPartnerIsTold) {
  std::filesystem::remove(IdentityOf("Alder"));

  EXPECT_THAT(EnterBill("Alder", "Birch", "HL-1"), testing::Not(IsEmpty()));
  EXPECT_FALSE(AwaitedBy("Alder").has_value());
}

// Alder's company was copied with its identity. Here it works on, there it has sent a bill.
class ACopyAtWork : public WhatCameBack {
 protected:
  ACopyAtWork() : here_(Take("Alder")) {
    elsewheres_ = EnterBill("Alder", "Birch", "ELSEWHERE");
    CarryInTurns("Alder", "Birch", 1);
    elsewhere_ = Take("Alder");
    Put("Alder", here_);
  }
  void WorkElsewhere() {
    here_ = Take("Alder");
    Put("Alder", elsewhere_);
  }
  void WorkHere() {
    elsewhere_ = Take("Alder");
    Put("Alder", here_);
  }

  std::string elsewheres_;
  Whole here_;
  Whole elsewhere_;
};

TEST_F(ACopyAtWork, IsSuspectedFromFactsThatDidNotLeaveFromHere) {
  CarryUntilAtRest();

  const std::optional<Awaited> awaited = AwaitedBy("Alder");

  ASSERT_TRUE(awaited.has_value());
  EXPECT_EQ(awaited->cameBack, 1);
  EXPECT_EQ(awaited->fromElsewhere, 1);
  EXPECT_THAT(CameBackText(*awaited), HasSubstr("a copy of this company is at work elsewhere"));
}

TEST_F(ACopyAtWork, HasNothingLeaveThatWasMadeBeforeItShowed) {
  CarryInTurns("Alder", "Birch", 1);
  ASSERT_FALSE(AwaitedBy("Alder").has_value());
  const std::string heres = EnterBill("Alder", "Birch", "HERE");
  EXPECT_THAT(SendAt("Alder").sent, SizeIs(1));

  Carry("Alder");
  ASSERT_TRUE(AwaitedBy("Alder").has_value());
  CarryUntilAtRest();

  EXPECT_THAT(InboxOf("Birch"), ElementsAre(elsewheres_));
  EXPECT_FALSE(AwaitedBy("Birch").has_value());
  ConfirmAt("Alder", WhyCameBack::kCopyEnded);
  CarryUntilAtRest();
  EXPECT_THAT(InboxOf("Birch"), testing::UnorderedElementsAre(elsewheres_, heres));
  EXPECT_FALSE(Seen("Alder", "Birch").hasLetterToSend);
}

TEST_F(ACopyAtWork, ShowsOnBothSidesOfTheCopyAndOnceMoreWhenItGoesOn) {
  CarryUntilAtRest();
  ConfirmAt("Alder", WhyCameBack::kCopyEnded);
  const std::string heres = EnterBill("Alder", "Birch", "HERE");
  CarryUntilAtRest();
  EXPECT_THAT(InboxOf("Birch"), testing::UnorderedElementsAre(elsewheres_, heres));

  WorkElsewhere();
  CarryUntilAtRest();
  EXPECT_THAT(AwaitedBy("Alder")->firstThatCameBack, ElementsAre("the proposal " + heres + " to Birch"));
  ConfirmAt("Alder");
  const std::string later = EnterBill("Alder", "Birch", "ELSEWHERE-2");
  CarryUntilAtRest();

  WorkHere();
  CarryUntilAtRest();
  EXPECT_THAT(AwaitedBy("Alder")->firstThatCameBack, ElementsAre("the proposal " + later + " to Birch"));
}

TEST_F(ACopyAtWork, IsConfirmedByAnAdministratorOnly) {
  CarryUntilAtRest();
  At("Alder", [](Company& company) {
    AddUser(company, {.name = "Clerk", .administrator = false, .accountant = true, .rights = {}});
  });

  EXPECT_EQ(RefusalOfConfirmingAt("Alder", "Clerk").remedy, Remedy::kAskAnAdministrator);
  EXPECT_TRUE(AwaitedBy("Alder").has_value());
}

TEST_F(ACopyAtWork, OfAPartnerThatIsNotThereIsConfirmedWhenAnAdministratorInsists) {
  Carry("Birch");
  Carry("Alder");
  std::optional<Awaited> awaited = AwaitedBy("Alder");
  while (!awaited) {
    CarryInTurns("Birch", "Alder", 1);
    awaited = AwaitedBy("Alder");
  }
  ASSERT_THAT(awaited->toCompare, ElementsAre("Birch"));
  EXPECT_EQ(RefusalOfConfirmingAt("Alder").remedy, Remedy::kCarryUntilCompared);

  At("Alder", [](Company& company) { InsistOnBooks(company); });

  EXPECT_EQ(ConfirmAt("Alder", WhyCameBack::kCopyEnded), 1);
}

// Alder's bill was sent by a copy of the company. Here it was reversed as one that was sent to nobody.
class ABillThatWasTakenBackHere : public WhatCameBack {
 protected:
  ABillThatWasTakenBackHere() : request_(EnterBill("Alder", "Birch", "HL-1")) {
    const Whole here = Take("Alder");
    CarryInTurns("Alder", "Birch", 1);
    Put("Alder", here);
    At("Alder", [&](Company& company) {
      ReverseTransaction(company, {.txnId = 1, .date = DateType32{2026, 11, 5}, .memo = std::nullopt});
    });
  }

  TransactionState StateAtAlder() {
    return At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request_)).state.value().number; });
  }
  InboxState StateAtBirch() {
    return At("Birch", [&](Company& company) { return ShowInbox(company, RequestId(request_)).state; });
  }

  std::string request_;
};

TEST_F(ABillThatWasTakenBackHere, IsWithdrawnOnceItShowsThatItWasSentAndThatIsConfirmed) {
  CarryUntilAtRest();
  EXPECT_EQ(StateAtBirch(), InboxState::kNew);

  ConfirmAt("Alder", WhyCameBack::kCopyEnded);
  CarryUntilAtRest();

  EXPECT_EQ(StateAtBirch(), InboxState::kWithdrawn);
  EXPECT_EQ(StateAtAlder(), TransactionState::kClosed);
  EXPECT_FALSE(Seen("Alder", "Birch").hasLetterToSend);
}

TEST_F(ABillThatWasTakenBackHere, IsPutBackWhereThePartnerHasBookedIt) {
  AcceptAt("Birch", request_);
  CarryUntilAtRest();
  ConfirmAt("Alder", WhyCameBack::kCopyEnded);
  CarryUntilAtRest();

  EXPECT_EQ(StateAtBirch(), InboxState::kAccepted);
  EXPECT_EQ(StateAtAlder(), TransactionState::kEstablished);
}

// Birch has rejected Alder's bill, and books it after all from a copy of before.
class ARejectionThatIsOvertaken : public WhatCameBack {
 protected:
  ARejectionThatIsOvertaken() : request_(EnterBill("Alder", "Birch", "HL-1")) {
    CarryInTurns("Alder", "Birch", 1);
    asked_ = Take("Birch");
    At("Birch", [&](Company& company) {
      return RejectRequests(company, {.requests = {RequestId(request_)}, .partner = std::nullopt, .upTo = std::nullopt},
                            standalone::Memo("Not ours"));
    });
    CarryUntilAtRest();
  }

  OutboxRequest Sent() {
    return At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request_)); });
  }
  std::int32_t ReverseAtAlder(std::int32_t txnId, DateType32 date = {2026, 11, 5}) {
    return At("Alder", [&](Company& company) {
      return ReverseTransaction(company, {.txnId = txnId, .date = date, .memo = std::nullopt}).reversal.txnId;
    });
  }
  CorrectedTransaction CorrectAtAlder() {
    TransactionToCorrect correction{.type = EnteredType::kBill, .txnId = Sent().txnId, .date = DateType32(2026, 11, 5)};
    correction.lines = {{.account = "Maintenance", .amount = LineAmount("480.00")}};
    correction.shares = std::vector<PartnersShare>{{.partner = "Birch", .share = standalone::ShareText("100.00")}};
    return At("Alder", [&](Company& company) { return CorrectTransaction(company, correction, Posting::kPost); });
  }
  // What Alder is told meanwhile.
  std::vector<std::string> BookAtBirchAfterAll() {
    Put("Birch", asked_);
    EXPECT_THAT(AcceptAt("Birch", request_).booked, SizeIs(1));
    std::vector<std::string> told;
    for (int round = 0; round < 8; ++round) {
      Carry("Birch");
      for (const CarriedWith& carried : Carry("Alder")) {
        for (const TakenLetter& letter : carried.taken) {
          told.insert(told.end(), letter.done.begin(), letter.done.end());
        }
      }
      const std::optional<Awaited> awaited = AwaitedBy("Birch");
      if (awaited && awaited->toCompare.empty()) ConfirmAt("Birch", WhyCameBack::kCopyEnded);
    }
    return told;
  }
  ShownTransaction ShownAtAlder(std::int32_t txnId) {
    return At("Alder", [&](Company& company) { return ShowTransaction(company, txnId); });
  }
  // What reverses the transaction; 0 for nothing.
  std::int32_t ReversalOf(std::int32_t txnId) {
    for (const ShownLink& link : ShownAtAlder(txnId).links) {
      if (link.kind == ShownLink::Kind::kReverses && !link.isLater) return link.otherTxnId;
    }
    return 0;
  }

  std::string request_;
  Whole asked_;
};

TEST_F(ARejectionThatIsOvertaken, LeavesTheBillAsItStandsWhereNothingWasDoneUponIt) {
  BookAtBirchAfterAll();

  EXPECT_EQ(Sent().state->number, TransactionState::kEstablished);
  EXPECT_THAT(Sent().mark, IsEmpty());
}

TEST_F(ARejectionThatIsOvertaken, PutsBackTheBillThatWasReversed) {
  const std::int32_t reversal = ReverseAtAlder(Sent().txnId);

  const std::vector<std::string> told = BookAtBirchAfterAll();

  const std::int32_t putBack = ReversalOf(reversal);
  ASSERT_NE(putBack, 0);
  EXPECT_EQ(ShownAtAlder(putBack).date, DateType32(2026, 11, 5));
  EXPECT_EQ(Sent().state->number, TransactionState::kEstablished);
  EXPECT_THAT(Sent().mark, IsEmpty());
  EXPECT_THAT(told,
              testing::Contains(HasSubstr("bill " + std::to_string(putBack) + " puts back what was reversed here")));
  const std::vector<AuditedDeed> trail = At("Alder", [&](Company& company) {
    return ListAudit(company,
                     {.user = {}, .action = "exchange.take", .period = {NullDate(), NullDate()}, .txnId = putBack});
  });
  EXPECT_THAT(trail, SizeIs(1));
  EXPECT_FALSE(At("Alder", [](Company& company) { return VerifyAudit(company); }).breakAt.has_value());
}

TEST_F(ARejectionThatIsOvertaken, PutsItBackOnTheFirstOpenDayWhereTheBooksAreClosed) {
  const std::int32_t reversal = ReverseAtAlder(Sent().txnId);
  At("Alder", [](Company& company) { return ChangeSetting(company, "closing-date", "2026-11-30"); });

  BookAtBirchAfterAll();

  ASSERT_NE(ReversalOf(reversal), 0);
  EXPECT_EQ(ShownAtAlder(ReversalOf(reversal)).date, DateType32(2026, 12, 1));
}

TEST_F(ARejectionThatIsOvertaken, AsksAPersonWhereACorrectionStandsInItsPlace) {
  const std::int32_t bill = Sent().txnId;
  const CorrectedTransaction corrected = CorrectAtAlder();
  const std::int32_t correction = corrected.correction.txnId;
  const std::int32_t reversal = ReversalOf(bill);

  BookAtBirchAfterAll();

  EXPECT_EQ(Sent().state->number, TransactionState::kEstablished);
  EXPECT_EQ(Sent().mark, "the partner has booked it, although bill " + std::to_string(correction) +
                             " stands in its place here: withdraw what of bill " + std::to_string(correction) +
                             " is sent and not answered, reverse bill " + std::to_string(correction) +
                             ", and then bill " + std::to_string(reversal) + ", which took it back");
  EXPECT_EQ(ReversalOf(reversal), 0);
  for (const RecordedLine& line : corrected.correction.lines) {
    if (!line.partners) continue;
    const RequestId wrong(line.partners->requestId);
    At("Alder", [&](Company& company) { return WithdrawRequest(company, wrong); });
  }
  CarryUntilAtRest();
  ReverseAtAlder(correction);
  EXPECT_EQ(Sent().mark, "the partner has booked it, although bill " + std::to_string(reversal) +
                             " took it back here: reverse bill " + std::to_string(reversal));
  ReverseAtAlder(reversal);
  EXPECT_THAT(Sent().mark, IsEmpty());
  EXPECT_NE(ReversalOf(reversal), 0);
}

}  // namespace
}  // namespace desk
