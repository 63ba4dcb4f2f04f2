// Disputes and notes: what partners say about requests, and what decides nothing.
#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "standalone/desk/Audit.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/ExchangeStatus.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Names.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Rules.h"
#include "standalone/desk/Users.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Remarks.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/storage/sqlite/SqliteDatabase.h"
#include "tests/desk/PairedCompanies.h"

namespace desk {
namespace {

using standalone::InboxState;
using standalone::LineAmount;
using standalone::RemarkText;
using standalone::RequestId;
using standalone::TransactionState;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Alder asks Birch to bear half of what it pays.
class TheRemark : public PairedCompanies {
 protected:
  TheRemark() : PairedCompanies({"Alder", "Birch"}) {
    PairOverTheFolder();
    for (const char* const who : {"Alder", "Birch"}) {
      At(who, [](Company& company) { return AddName(company, {.name = "Hillcrest", .kind = "vendor"}); });
    }
  }

  std::string EnterBill(const std::string& amount = "480.00") {
    const RecordedTransaction bill = At("Alder", [&](Company& company) {
      return RecordTransaction(company,
                               {.type = EnteredType::kBill,
                                .date = DateType32{2026, 11, 2},
                                .name = Existing{"Hillcrest"},
                                .lines = {{.account = "Maintenance", .amount = LineAmount(amount)}},
                                .shares = {{.partner = "Birch", .share = standalone::ShareText("50%")}},
                                .attachments = {}},
                               Posting::kPost);
    });
    for (const RecordedLine& line : bill.lines) {
      if (line.partners) return line.partners->requestId;
    }
    ADD_FAILURE() << "no line has a request";
    return {};
  }
  // Once it is in Birch's inbox.
  std::string Ask(const std::string& amount = "480.00") {
    std::string request = EnterBill(amount);
    CarryInTurns("Alder", "Birch", 1);
    return request;
  }

  InboxRequest Dispute(const std::string& request, const std::string& reason = "Our half is 200.00") {
    return At("Birch",
              [&](Company& company) { return DisputeRequest(company, RequestId(request), RemarkText(reason)); });
  }
  InboxRequest NoteAtBirch(const std::string& request, const std::string& text) {
    return At("Birch", [&](Company& company) { return NoteOnRequest(company, RequestId(request), RemarkText(text)); });
  }
  OutboxRequest NoteAtAlder(const std::string& request, const std::string& text) {
    return At("Alder",
              [&](Company& company) { return NoteOnOwnRequest(company, RequestId(request), RemarkText(text)); });
  }
  InboxRequest AtBirch(const std::string& request) {
    return At("Birch", [&](Company& company) { return ShowInbox(company, RequestId(request)); });
  }
  OutboxRequest AtAlder(const std::string& request) {
    return At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request)); });
  }
  static std::vector<std::string> Texts(const std::vector<Remark>& remarks) {
    std::vector<std::string> texts;
    for (const Remark& remark : remarks) {
      texts.push_back((remark.isDispute ? "dispute" : "note") + std::string(remark.isOurs ? " of us: " : ": ") +
                      remark.text);
    }
    return texts;
  }

  static RequestSelection Only(const std::string& request) {
    return {.requests = {RequestId(request)}, .partner = std::nullopt, .upTo = std::nullopt};
  }
  BookedRequests Accept(const RequestSelection& selection, const RequestBooking& booking) {
    return At("Birch", [&](Company& company) { return AcceptRequests(company, selection, booking); });
  }
  BookedRequests AcceptByHand(const RequestSelection& selection) {
    return Accept(selection, {.expense = Existing{"Maintenance"}, .name = Existing{"Hillcrest"}, .date = {}});
  }
  static RequestBooking ByRule() { return {.expense = {}, .name = {}, .date = {}, .byRule = true}; }
  void AddRuleForHillcrest() {
    At("Birch", [](Company& company) {
      return AddRule(
          company,
          {.partner = Partner("Alder"), .name = "Hillcrest", .hint = {}, .memo = {}, .expense = "Maintenance"});
    });
  }
  void BookUpTo(const std::optional<std::string>& amount) {
    std::optional<LineAmount> upTo;
    if (amount) upTo.emplace(*amount);
    At("Birch", [&](Company& company) { return SetBookedUpTo(company, "Alder", upTo); });
  }

  ExchangeStatus StatusAt(const std::string& who) {
    return At(who, [](Company& company) { return TellExchangeStatus(company); }).at(0);
  }
  std::vector<AuditedDeed> TrailOf(const std::string& who, const std::string& action) {
    return At(who, [&](Company& company) {
      return ListAudit(company, {.user = {}, .action = action, .period = {NullDate(), NullDate()}, .txnId = {}});
    });
  }
  std::vector<std::string> OutstandingAt(const std::string& who, const std::string& whom) {
    return Seen(who, whom).outstanding;
  }

  // Has `who` hold a fact as if it had been made there.
  void Hold(const std::string& who,
            const std::function<exchange::Fact(const std::string&, const exchange::KeyPair&)>& make) {
    At(who, [&](Company& company) {
      Work work(company.Opened(), UseCase::kExchange);
      work.Write([&] {
        const standalone::Pairing pairing = work.Host().Pairings().List().at(0);
        Keep(work, pairing, make(pairing.pairingId, RequireKeys(work)), standalone::FactOrigin::kMade);
      });
    });
  }
  void HoldRemark(const std::string& who, const exchange::Remark& remark) {
    Hold(who, [&](const std::string& pairing, const exchange::KeyPair& keys) {
      return exchange::MakeFact(remark, pairing, keys);
    });
  }
};

TEST_F(TheRemark, ThatDisputesARequestIsToldToItsSenderAndDecidesNothing) {
  const std::string request = Ask();

  const InboxRequest disputed = Dispute(request);
  CarryInTurns("Birch", "Alder", 1);

  EXPECT_TRUE(disputed.isDisputed);
  EXPECT_EQ(AtBirch(request).state, InboxState::kNew);
  EXPECT_THAT(Texts(AtBirch(request).remarks), ElementsAre("dispute of us: Our half is 200.00"));
  EXPECT_EQ(AtAlder(request).state.value().number, TransactionState::kSent);
  EXPECT_TRUE(AtAlder(request).isDisputed);
  EXPECT_THAT(Texts(AtAlder(request).remarks), ElementsAre("dispute: Our half is 200.00"));
}

TEST_F(TheRemark, ThatDisputesIsToldByTheCarryingWithTheRequestThatItIsAbout) {
  const std::string request = Ask();
  Dispute(request);
  Carry("Birch");

  const std::vector<CarriedWith> carried = Carry("Alder");

  EXPECT_THAT(carried.at(0).taken.at(0).done,
              ElementsAre("Birch disputes bill " + request + " of 2026-11-02 over 240.00 USD: Our half is 200.00"));
}

TEST_F(TheRemark, StandsAtItsRequestAlsoWhenThatIsDecidedAndNotDisputedAnyMore) {
  const std::string request = Ask();
  Dispute(request);
  CarryInTurns("Birch", "Alder", 1);

  ASSERT_THAT(AcceptByHand(Only(request)).booked, SizeIs(1));
  CarryInTurns("Birch", "Alder", 2);

  EXPECT_FALSE(AtBirch(request).isDisputed);
  EXPECT_FALSE(AtAlder(request).isDisputed);
  EXPECT_EQ(AtAlder(request).state.value().number, TransactionState::kEstablished);
  EXPECT_THAT(AtBirch(request).remarks, SizeIs(1));
  EXPECT_THAT(AtAlder(request).remarks, SizeIs(1));
}

TEST_F(TheRemark, IsAnsweredByTheOtherOneInBothDirections) {
  const std::string request = Ask();
  Dispute(request);
  CarryInTurns("Birch", "Alder", 1);
  NoteAtAlder(request, "The tax is in it");
  CarryInTurns("Alder", "Birch", 1);
  NoteAtBirch(request, "Then it is right");
  CarryInTurns("Birch", "Alder", 1);

  EXPECT_THAT(Texts(AtBirch(request).remarks), ElementsAre("dispute of us: Our half is 200.00",
                                                           "note: The tax is in it", "note of us: Then it is right"));
  EXPECT_THAT(Texts(AtAlder(request).remarks),
              ElementsAre("dispute: Our half is 200.00", "note of us: The tax is in it", "note: Then it is right"));
  EXPECT_TRUE(AtAlder(request).isDisputed);
}

TEST_F(TheRemark, ThatDisputesHasTheSenderWithdrawItsRequest) {
  const std::string request = Ask();
  Dispute(request);
  CarryInTurns("Birch", "Alder", 1);

  At("Alder", [&](Company& company) { return WithdrawRequest(company, RequestId(request)); });
  CarryInTurns("Alder", "Birch", 2);

  EXPECT_EQ(AtBirch(request).state, InboxState::kWithdrawn);
  EXPECT_EQ(AtAlder(request).state.value().number, TransactionState::kClosed);
  EXPECT_FALSE(AtAlder(request).isDisputed);
}

TEST_F(TheRemark, ThatDisputesKeepsEveryRuleFromItsRequest) {
  AddRuleForHillcrest();
  const std::string request = Ask();
  const std::string other = Ask("500.00");
  Dispute(request);

  const BookedRequests byRule = Accept({}, ByRule());

  EXPECT_THAT(byRule.booked, SizeIs(1));
  EXPECT_EQ(byRule.booked.at(0).request.requestId, other);
  EXPECT_THAT(byRule.left, IsEmpty());
  const BookedRequests named = Accept(Only(request), ByRule());
  ASSERT_THAT(named.left, SizeIs(1));
  EXPECT_EQ(named.left[0].refusal.why, "it is disputed, and left to a person");
  EXPECT_EQ(AtBirch(request).rule, std::nullopt);
  EXPECT_EQ(AtBirch(request).ruleMark, "it is disputed, and left to a person");
  EXPECT_THAT(AcceptByHand(Only(request)).booked, SizeIs(1));
}

TEST_F(TheRemark, ThatDisputesHasItsRequestLeftOutOfWhatIsDecidedForManyAtOnce) {
  const std::string request = Ask();
  Dispute(request);

  EXPECT_THAT(RefusalOf([&] { AcceptByHand({}); }).why, HasSubstr("there is no request to which that applies"));
  EXPECT_THAT(RefusalOf([&] {
                At("Birch", [](Company& company) { return RejectRequests(company, {}, standalone::Memo("Not ours")); });
              }).why,
              HasSubstr("there is no request to which that applies"));
  EXPECT_EQ(AtBirch(request).state, InboxState::kNew);
}

TEST_F(TheRemark, OfBooksThatWereRestoredComesBackBeforeARuleBooksItsRequest) {
  AddRuleForHillcrest();
  BookUpTo("500");
  const std::string before = Books("Birch");
  BookUpTo({});
  const std::string request = Ask();
  Dispute(request);
  CarryInTurns("Birch", "Alder", 1);
  Restore("Birch", before);

  CarryInTurns("Birch", "Alder", 3);
  At("Birch", [](Company& company) { return ConfirmCameBack(company, WhyCameBack::kRestored); });
  CarryInTurns("Birch", "Alder", 1);

  EXPECT_EQ(AtBirch(request).state, InboxState::kNew);
  EXPECT_TRUE(AtBirch(request).isDisputed);
  EXPECT_THAT(Texts(AtBirch(request).remarks), ElementsAre("dispute of us: Our half is 200.00"));
  EXPECT_THAT(OutstandingAt("Birch", "Alder"), IsEmpty());
  EXPECT_EQ(AtBirch(Ask("100.00")).state, InboxState::kAccepted);
}

TEST_F(TheRemark, OfThePartnerIsTherePlainlyInBooksThatWereRestored) {
  const std::string before = Books("Alder");
  const std::string request = Ask();
  Dispute(request);
  CarryInTurns("Birch", "Alder", 1);
  NoteAtAlder(request, "The tax is in it");
  CarryInTurns("Alder", "Birch", 1);
  Restore("Alder", before);

  CarryInTurns("Alder", "Birch", 3);
  At("Alder", [](Company& company) { return ConfirmCameBack(company, WhyCameBack::kRestored); });
  CarryInTurns("Alder", "Birch", 1);

  const OutboxRequest lost = AtAlder(request);
  EXPECT_TRUE(lost.isLost);
  EXPECT_TRUE(lost.isDisputed);
  EXPECT_THAT(Texts(lost.remarks),
              testing::UnorderedElementsAre("dispute: Our half is 200.00", "note of us: The tax is in it"));
  EXPECT_THAT(OutstandingAt("Alder", "Birch"), IsEmpty());
}

TEST_F(TheRemark, ThatComesTwiceStandsOnce) {
  const std::string request = Ask();
  Dispute(request);
  const std::string letters = At("Birch", [](Company& company) { return ExportLetters(company, "Alder"); });

  for (int times = 0; times < 2; ++times) {
    At("Alder", [&](Company& company) { return ImportLetters(company, letters); });
  }

  EXPECT_THAT(AtAlder(request).remarks, SizeIs(1));
}

TEST_F(TheRemark, AboutARequestThatIsNotHereWaitsForIt) {
  HoldRemark("Alder", {.isDispute = false,
                       .id = "102132435465768798a9bacbdcedfe0f",
                       .request = "R-9",
                       .month = "2026-11",
                       .asker = exchange::Asker::kAuthor,
                       .text = "It comes soon"});
  CarryInTurns("Alder", "Birch", 1);
  EXPECT_THAT(OutstandingAt("Birch", "Alder"),
              ElementsAre("note: the request \"R-9\" that it is about is not here yet"));
  const std::size_t lines = TrailOf("Birch", "exchange.take").size();
  CarryInTurns("Alder", "Birch", 1);
  EXPECT_THAT(TrailOf("Birch", "exchange.take"), SizeIs(lines));

  Hold("Alder", [](const std::string& pairing, const exchange::KeyPair& keys) {
    exchange::Proposal proposal;
    proposal.request = "R-9";
    proposal.type = exchange::RequestType::kBill;
    proposal.date = DateType32(2026, 11, 2);
    proposal.amount = 24'000;
    proposal.currency = "USD";
    return exchange::MakeFact(proposal, pairing, keys);
  });
  Carry("Alder");
  const std::vector<CarriedWith> carried = Carry("Birch");

  EXPECT_THAT(Texts(AtBirch("R-9").remarks), ElementsAre("note: It comes soon"));
  EXPECT_THAT(OutstandingAt("Birch", "Alder"), IsEmpty());
  EXPECT_THAT(carried.at(0).taken.at(0).done, Contains(HasSubstr("Alder says of bill R-9 of 2026-11-02")));
}

TEST_F(TheRemark, IsAboutTheRequestOfWhomItSaysAndNotAboutOneOfTheSameIdOfTheOtherOne) {
  const std::string request = Ask();
  HoldRemark("Alder", {.isDispute = true,
                       .id = "102132435465768798a9bacbdcedfe0f",
                       .request = request,
                       .month = "2026-11",
                       .asker = exchange::Asker::kPartner,
                       .text = "Not ours"});

  CarryInTurns("Alder", "Birch", 1);

  EXPECT_THAT(AtBirch(request).remarks, IsEmpty());
  EXPECT_FALSE(AtBirch(request).isDisputed);
  EXPECT_THAT(OutstandingAt("Birch", "Alder"), ElementsAre(HasSubstr("is not here yet")));
}

TEST_F(TheRemark, ThatAnEarlierVersionDidNotUnderstandIsTakenUpByThisOne) {
  const std::string request = Ask();
  Dispute(request);
  CarryInTurns("Birch", "Alder", 1);
  {
    standalone::SqliteDatabase books(FileOf("Alder"), std::chrono::seconds(5));
    books.Execute("DELETE FROM exchange_remark");
    books.Execute(
        "UPDATE exchange_fact SET set_aside = 'This version does not know facts of kind \"dispute\".' "
        "WHERE kind = 'dispute'");
  }
  ASSERT_THAT(AtAlder(request).remarks, IsEmpty());

  const std::vector<CarriedWith> carried = Carry("Alder");

  EXPECT_THAT(Texts(AtAlder(request).remarks), ElementsAre("dispute: Our half is 200.00"));
  EXPECT_THAT(OutstandingAt("Alder", "Birch"), IsEmpty());
  EXPECT_THAT(carried.at(0).triedAgain, ElementsAre(HasSubstr("Birch disputes bill " + request)));
}

TEST_F(TheRemark, IsCountedInTheStatusWithWhoHasToSaySomething) {
  const std::string request = Ask();
  Dispute(request);
  CarryInTurns("Birch", "Alder", 1);

  const InboxStatus disputed = StatusAt("Birch").inbox.value();
  const OutboxStatus told = StatusAt("Alder").outbox.value();
  NoteAtAlder(request, "The tax is in it");
  CarryInTurns("Alder", "Birch", 1);
  const InboxStatus answered = StatusAt("Birch").inbox.value();
  const OutboxStatus waiting = StatusAt("Alder").outbox.value();

  EXPECT_EQ(disputed.waiting.count, 0);
  EXPECT_EQ(disputed.disputed.requests.count, 1);
  EXPECT_EQ(disputed.disputed.requests.sum.value().minorUnits, 24'000);
  EXPECT_EQ(disputed.disputed.toAnswer, 0);
  EXPECT_EQ(told.unanswered.count, 0);
  EXPECT_EQ(told.disputed.requests.count, 1);
  EXPECT_EQ(told.disputed.toAnswer, 1);
  EXPECT_EQ(answered.disputed.toAnswer, 1);
  EXPECT_EQ(waiting.disputed.toAnswer, 0);
}

TEST_F(TheRemark, IsOneLineInTheAuditTrailOfBoth) {
  const std::string request = Ask();
  Dispute(request);
  CarryInTurns("Birch", "Alder", 1);
  NoteAtAlder(request, "The tax is in it");
  NoteAtBirch(request, "We look at it");

  const std::vector<AuditedDeed> disputed = TrailOf("Birch", "inbox.dispute");
  ASSERT_THAT(disputed, SizeIs(1));
  EXPECT_THAT(disputed[0].subject, HasSubstr("the request \"" + request + "\" of Alder (realm "));
  EXPECT_THAT(disputed[0].changes, ElementsAre(AllOf(testing::Field(&AuditedChange::field, "reason"),
                                                     testing::Field(&AuditedChange::after, "Our half is 200.00"))));
  EXPECT_THAT(TrailOf("Birch", "inbox.note"), SizeIs(1));
  const std::vector<AuditedDeed> noted = TrailOf("Alder", "outbox.note");
  ASSERT_THAT(noted, SizeIs(1));
  EXPECT_THAT(noted[0].subject, HasSubstr("the request \"" + request + "\" to Birch (realm "));
  const AuditedDeed taken = TrailOf("Alder", "exchange.take").back();
  EXPECT_THAT(taken.subject, HasSubstr("the dispute about request " + request + " of Birch"));
  EXPECT_THAT(taken.changes, Contains(testing::Field(&AuditedChange::after, "Our half is 200.00")));
}

TEST_F(TheRemark, DisputesNothingThatIsDecidedOrThatThereIsNot) {
  const std::string request = Ask();
  AcceptByHand(Only(request));
  const std::string books = Books("Birch");

  EXPECT_THAT(RefusalOf([&] { Dispute(request); }).why, HasSubstr("is accepted, and cannot be disputed"));
  EXPECT_EQ(RefusalOf([&] { Dispute("R-9"); }).remedy, Remedy::kSeeTheInbox);
  EXPECT_EQ(RefusalOf([&] { NoteAtBirch("R-9", "What is it?"); }).remedy, Remedy::kSeeTheInbox);
  EXPECT_EQ(RefusalOf([&] { NoteAtAlder("R-9", "What is it?"); }).remedy, Remedy::kSeeTheOutbox);
  EXPECT_EQ(Books("Birch"), books);
  EXPECT_THAT(Texts(NoteAtBirch(request, "Booked, but it is late").remarks),
              ElementsAre("note of us: Booked, but it is late"));
}

TEST_F(TheRemark, HasATextOfPlainCharactersOfUpTo4000Bytes) {
  EXPECT_THROW(RemarkText("  "), standalone::InvalidInput);
  EXPECT_THROW(RemarkText(std::string(4001, 't')), standalone::InvalidInput);
  EXPECT_THROW(RemarkText("two\nlines"), standalone::InvalidInput);
  EXPECT_EQ(RemarkText(" Our half \t").Text(), "Our half");
}

TEST_F(TheRemark, NeedsTheRightToViewTransactionsOfTheTypeOfItsRequest) {
  const std::string request = Ask();
  for (const char* const who : {"Alder", "Birch"}) {
    At(who, [](Company& company) {
      User robin{.name = "Robin", .administrator = false, .accountant = false, .rights = {}};
      robin.rights.emplace_back("checks:view");
      return AddUser(company, robin);
    });
  }
  const auto asRobin = [&](const std::string& who, auto&& says) {
    return RefusalOf([&] { At(who, says, "Robin"); }).remedy;
  };

  EXPECT_EQ(
      asRobin("Birch", [&](Company& company) { return DisputeRequest(company, RequestId(request), RemarkText("No")); }),
      Remedy::kAskForTheRight);
  EXPECT_EQ(
      asRobin("Birch", [&](Company& company) { return NoteOnRequest(company, RequestId(request), RemarkText("No")); }),
      Remedy::kAskForTheRight);
  EXPECT_EQ(asRobin("Alder",
                    [&](Company& company) { return NoteOnOwnRequest(company, RequestId(request), RemarkText("No")); }),
            Remedy::kAskForTheRight);
}

TEST_F(TheRemark, WaitsLikeADecisionUntilRestoredBooksWereCompared) {
  const std::string request = Ask();
  const std::string before = Books("Birch");
  Dispute(request);
  Carry("Birch");
  Restore("Birch", before);

  EXPECT_EQ(RefusalOf([&] { Dispute(request, "Not at all"); }).remedy, Remedy::kCarryUntilCompared);
  EXPECT_EQ(RefusalOf([&] { NoteAtBirch(request, "Not at all"); }).remedy, Remedy::kCarryUntilCompared);
}

}  // namespace
}  // namespace desk
