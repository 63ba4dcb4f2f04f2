#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <ostream>
#include <string>

#include "standalone/exchange/Standing.h"

namespace exchange {
namespace {

using standalone::InboxState;
using standalone::TransactionState;

constexpr std::int64_t kAmount = 4000;
constexpr std::int64_t kOtherAmount = 5000;
// Their hashes ascend, as Ascending() has them.
constexpr std::size_t kProposalPlace = 0;
constexpr std::size_t kAnswerPlace = 10;

const std::vector<Hash>& Ascending() {
  static const std::vector<Hash> hashes = [] {
    std::vector<Hash> made;
    for (int number = 0; number < 20; ++number) made.push_back(HashOf(std::to_string(number)));
    std::ranges::sort(made);
    return made;
  }();
  return hashes;
}

HeldProposal ProposalNumber(std::size_t number, std::int64_t amount = kAmount) {
  return {.hash = Ascending().at(kProposalPlace + number), .amount = amount};
}

HeldAnswer AnswerNumber(std::size_t number, Outcome outcome, std::size_t proposal = 0) {
  return {.hash = Ascending().at(kAnswerPlace + number), .outcome = outcome, .proposal = ProposalNumber(proposal).hash};
}

// One proposal, and answers to it of these outcomes.
HeldFacts Asked(const std::vector<Outcome>& outcomes = {}) {
  HeldFacts held{.proposals = {ProposalNumber(0)}, .answers = {}};
  for (const Outcome outcome : outcomes) held.answers.push_back(AnswerNumber(held.answers.size(), outcome));
  return held;
}

HeldFacts AskedAndWithdrawn(const std::vector<Outcome>& outcomes = {}) {
  HeldFacts held = Asked(outcomes);
  held.withdrawal = true;
  return held;
}

// Both sides of a request, of which this one was entered or is in the inbox like that.
SendersStanding Sent(const HeldFacts& held, TransactionState row) {
  return StandingAtSender(held, {.row = row});
}

ReceiversStanding Got(const HeldFacts& held, std::optional<InboxState> inbox, std::optional<std::int64_t> booked = {}) {
  return StandingAtReceiver(held, {.inbox = inbox, .bookedAmount = booked});
}

const SendersStanding kAsItWasSent{.row = TransactionState::kSent};

// A request at its sender

TEST(ARequestAtItsSender, IsSentOnceItsProposalIsHeld) {
  EXPECT_EQ(Sent({}, TransactionState::kEntered), (SendersStanding{.row = TransactionState::kEntered}));
  EXPECT_EQ(Sent(Asked(), TransactionState::kEntered), kAsItWasSent);
  EXPECT_EQ(Sent(Asked(), TransactionState::kSent), kAsItWasSent);
}

TEST(ARequestAtItsSender, HasWhatWasAnsweredAtOnceWhenItsProposalComesBack) {
  EXPECT_EQ(Sent(Asked({Outcome::kAccepted}), TransactionState::kEntered).row, TransactionState::kEstablished);
  EXPECT_EQ(Sent(Asked({Outcome::kRejected}), TransactionState::kEntered).row, TransactionState::kCameBack);
  EXPECT_EQ(Sent(AskedAndWithdrawn(), TransactionState::kEntered),
            (SendersStanding{.row = TransactionState::kSent, .isWithdrawing = true}));
}

TEST(ARequestAtItsSender, IsEstablishedWhenThePartnerAccepts) {
  EXPECT_EQ(Sent(Asked({Outcome::kAccepted}), TransactionState::kSent),
            (SendersStanding{.row = TransactionState::kEstablished}));
}

TEST(ARequestAtItsSender, ComesBackWhenThePartnerRejectsOrRefuses) {
  for (const Outcome outcome : {Outcome::kRejected, Outcome::kRefused}) {
    EXPECT_EQ(Sent(Asked({outcome}), TransactionState::kSent), (SendersStanding{.row = TransactionState::kCameBack}));
  }
}

TEST(ARequestAtItsSender, StaysSentAndIsShownAsWithdrawingUntilThePartnerAnswers) {
  EXPECT_EQ(Sent(AskedAndWithdrawn(), TransactionState::kSent),
            (SendersStanding{.row = TransactionState::kSent, .isWithdrawing = true}));
  EXPECT_FALSE(Sent(AskedAndWithdrawn({Outcome::kAccepted}), TransactionState::kSent).isWithdrawing);
}

TEST(ARequestAtItsSender, IsClosedWhenThePartnerAnswersThatItWasWithdrawn) {
  EXPECT_EQ(Sent(AskedAndWithdrawn({Outcome::kWithdrawn}), TransactionState::kSent),
            (SendersStanding{.row = TransactionState::kClosed}));
}

TEST(ARequestAtItsSender, ComesBackWhenItsWithdrawalWasTooLateForARejection) {
  for (const Outcome outcome : {Outcome::kRejected, Outcome::kRefused}) {
    EXPECT_EQ(Sent(AskedAndWithdrawn({outcome}), TransactionState::kSent),
              (SendersStanding{.row = TransactionState::kCameBack}));
  }
}

// Nothing was booked for it at the partner, as it was asked for here: there is nothing left to do.
TEST(ARequestAtItsSender, StaysClosedWhenARejectionOvertakesThatItWasWithdrawn) {
  for (const Outcome outcome : {Outcome::kRejected, Outcome::kRefused}) {
    EXPECT_EQ(Sent(AskedAndWithdrawn({Outcome::kWithdrawn, outcome}), TransactionState::kClosed),
              (SendersStanding{.row = TransactionState::kClosed}));
  }
}

TEST(ARequestAtItsSender, StaysClosedOnceItWasCorrectedReversedOrRemovedAfterItCameBack) {
  EXPECT_EQ(Sent(Asked({Outcome::kRejected}), TransactionState::kClosed),
            (SendersStanding{.row = TransactionState::kClosed}));
}

TEST(ARequestAtItsSender, IsToBeWithdrawnWhenItWasClosedBeforeItsProposalCameBack) {
  EXPECT_EQ(Sent(Asked(), TransactionState::kClosed),
            (SendersStanding{.row = TransactionState::kClosed, .isToBeWithdrawn = true}));
  EXPECT_EQ(Sent(AskedAndWithdrawn(), TransactionState::kClosed), (SendersStanding{.row = TransactionState::kClosed}));
}

TEST(ARequestAtItsSender, StaysEstablishedWhateverElseIsHeld) {
  for (const Outcome other : {Outcome::kRejected, Outcome::kRefused, Outcome::kWithdrawn}) {
    EXPECT_EQ(Sent(AskedAndWithdrawn({other, Outcome::kAccepted}), TransactionState::kEstablished),
              (SendersStanding{.row = TransactionState::kEstablished}));
  }
}

TEST(ARequestAtItsSender, IsEstablishedAfterAllWhenAnAnswerOvertakesAndAPersonIsTold) {
  for (const TransactionState ended : {TransactionState::kCameBack, TransactionState::kClosed}) {
    EXPECT_EQ(Sent(Asked({Outcome::kRejected, Outcome::kAccepted}), ended),
              (SendersStanding{.row = TransactionState::kEstablished, .wasOvertaken = true}));
  }
}

TEST(ARequestAtItsSender, IsLostWhenItsProposalIsHeldAndTheBooksHaveNoTransaction) {
  EXPECT_EQ(StandingAtSender(Asked({Outcome::kAccepted}), {}), (SendersStanding{.isLost = true}));
  EXPECT_EQ(StandingAtSender({}, {}), SendersStanding{});
}

// A request at its receiver

TEST(ARequestAtItsReceiver, IsNewWhenItsIdIsUnknown) {
  EXPECT_EQ(Got(Asked(), std::nullopt), (ReceiversStanding{.inbox = InboxState::kNew}));
}

TEST(ARequestAtItsReceiver, IsNothingAsLongAsNobodyProposedIt) {
  EXPECT_EQ(Got({}, std::nullopt), ReceiversStanding{});
  EXPECT_EQ(Got({.proposals = {}, .answers = {}, .withdrawal = true}, std::nullopt), ReceiversStanding{});
}

TEST(ARequestAtItsReceiver, IsAsItWasAnsweredWhenAnAnswerIsHeld) {
  for (const std::optional<InboxState> inbox : {std::optional<InboxState>(), std::optional(InboxState::kNew)}) {
    EXPECT_EQ(Got(Asked({Outcome::kAccepted}), inbox), (ReceiversStanding{.inbox = InboxState::kToBookAgain}));
    EXPECT_EQ(Got(Asked({Outcome::kRejected}), inbox), (ReceiversStanding{.inbox = InboxState::kRejected}));
    EXPECT_EQ(Got(Asked({Outcome::kRefused}), inbox), (ReceiversStanding{.inbox = InboxState::kRefused}));
    EXPECT_EQ(Got(Asked({Outcome::kWithdrawn}), inbox), (ReceiversStanding{.inbox = InboxState::kWithdrawn}));
  }
}

TEST(ARequestAtItsReceiver, IsWithdrawnWhenAWithdrawalIsHeldBeforeItWasDecided) {
  const ReceiversStanding withdrawn{.inbox = InboxState::kWithdrawn, .answer = Outcome::kWithdrawn};
  for (const std::optional<InboxState> inbox :
       {std::optional<InboxState>(), std::optional(InboxState::kNew), std::optional(InboxState::kHeld)}) {
    EXPECT_EQ(Got(AskedAndWithdrawn(), inbox), withdrawn);
    EXPECT_EQ(StandingAtReceiver(AskedAndWithdrawn(), {.inbox = inbox, .reversed = Reversed::kNotBooked}), withdrawn);
  }
}

TEST(ARequestAtItsReceiver, CountsAsAcceptedWhenItWasBookedByHandWithTheSameAmount) {
  EXPECT_EQ(Got(Asked(), std::nullopt, kAmount),
            (ReceiversStanding{.inbox = InboxState::kAccepted, .answer = Outcome::kAccepted}));
}

TEST(ARequestAtItsReceiver, WaitsForAPersonWhenItWasBookedByHandWithAnotherAmount) {
  EXPECT_EQ(Got(Asked(), std::nullopt, kOtherAmount),
            (ReceiversStanding{.inbox = InboxState::kNew, .mark = Mark::kKnownWithAnotherAmount}));
}

TEST(ARequestAtItsReceiver, IsRejectedWhenItWasBeforeThereWasAnInbox) {
  EXPECT_EQ(StandingAtReceiver(Asked(), {.rejectionIsKept = true}),
            (ReceiversStanding{.inbox = InboxState::kRejected, .answer = Outcome::kRejected}));
}

TEST(ARequestAtItsReceiver, IsRefusedWhenItsIdBelongsToSomethingElse) {
  EXPECT_EQ(StandingAtReceiver(Asked(), {.isInUse = true}),
            (ReceiversStanding{.inbox = InboxState::kRefused, .answer = Outcome::kRefused}));
}

TEST(ARequestAtItsReceiver, IsHeldAsLongAsWhatItReversesIsNotBooked) {
  EXPECT_EQ(StandingAtReceiver(Asked(), {.reversed = Reversed::kNotBooked}),
            (ReceiversStanding{.inbox = InboxState::kHeld}));
  EXPECT_EQ(StandingAtReceiver(Asked(), {.inbox = InboxState::kHeld, .reversed = Reversed::kBooked}),
            (ReceiversStanding{.inbox = InboxState::kNew}));
}

TEST(ARequestAtItsReceiver, IsLeftToAPersonWhenItReversesWhatAnotherOneReversesAlready) {
  EXPECT_EQ(StandingAtReceiver(Asked(), {.reversed = Reversed::kBookedAndReversed}),
            (ReceiversStanding{.inbox = InboxState::kNew, .mark = Mark::kReversedAlready}));
}

TEST(ARequestAtItsReceiver, StaysDecidedWhenItsSenderWithdrawsItTooLate) {
  EXPECT_EQ(Got(AskedAndWithdrawn({Outcome::kAccepted}), InboxState::kAccepted, kAmount),
            (ReceiversStanding{.inbox = InboxState::kAccepted}));
  EXPECT_EQ(Got(AskedAndWithdrawn({Outcome::kRejected}), InboxState::kRejected),
            (ReceiversStanding{.inbox = InboxState::kRejected}));
}

TEST(ARequestAtItsReceiver, FollowsAnOwnAnswerThatComesBackAndRanksBefore) {
  EXPECT_EQ(Got(Asked({Outcome::kRejected, Outcome::kAccepted}), InboxState::kRejected),
            (ReceiversStanding{.inbox = InboxState::kToBookAgain}));
  EXPECT_EQ(Got(Asked({Outcome::kWithdrawn, Outcome::kRejected}), InboxState::kWithdrawn),
            (ReceiversStanding{.inbox = InboxState::kRejected}));
}

TEST(ARequestAtItsReceiver, StaysAcceptedWhenAnotherAnswerOfTheSameOutcomeComesBack) {
  EXPECT_EQ(Got(Asked({Outcome::kAccepted, Outcome::kAccepted}), InboxState::kAccepted, kAmount),
            (ReceiversStanding{.inbox = InboxState::kAccepted}));
}

// Of several answers and of two contents of one proposal

TEST(OfSeveralAnswers, TheOneThatRanksFirstCountsAndAmongEqualsTheOneWithTheLowerHash) {
  const HeldFacts held = Asked({Outcome::kWithdrawn, Outcome::kRefused, Outcome::kRejected, Outcome::kRejected});

  ASSERT_NE(AnswerThatCounts(held), nullptr);
  EXPECT_EQ(AnswerThatCounts(held)->hash, AnswerNumber(2, Outcome::kRejected).hash);
  EXPECT_EQ(AnswerThatCounts(Asked()), nullptr);
}

TEST(OfTwoContentsOfAProposal, TheOneWithTheLowerHashCountsUntilAnAnswerNamesTheOther) {
  HeldFacts held{.proposals = {ProposalNumber(1, kOtherAmount), ProposalNumber(0)}, .answers = {}};
  EXPECT_EQ(ProposalThatCounts(held)->amount, kAmount);

  held.answers.push_back(AnswerNumber(0, Outcome::kRejected, 1));

  EXPECT_EQ(ProposalThatCounts(held)->amount, kOtherAmount);
}

// All that can be held of a request, with up to two contents of its proposal and up to three answers, beside all that
// the books can have of it.

constexpr std::array kOutcomes{Outcome::kAccepted, Outcome::kRejected, Outcome::kRefused, Outcome::kWithdrawn};
constexpr std::array kRows{TransactionState::kEntered, TransactionState::kSent, TransactionState::kCameBack,
                           TransactionState::kEstablished, TransactionState::kClosed};
constexpr std::size_t kMostAnswers = 3;

struct Case {
  HeldFacts held;
  ReceiversBooks books;
};

std::ostream& operator<<(std::ostream& out, const Case& one) {
  out << one.held.proposals.size() << " proposals";
  for (const HeldAnswer& answer : one.held.answers) {
    out << ", " << WordOf(answer.outcome) << (answer.proposal == ProposalNumber(0).hash ? " the first" : " the second");
  }
  if (one.held.withdrawal) out << ", withdrawal";
  out << "; inbox " << (one.books.inbox ? NameOf(*one.books.inbox) : "-") << ", booked "
      << one.books.bookedAmount.value_or(0) << (one.books.rejectionIsKept ? ", rejection" : "")
      << (one.books.isInUse ? ", in use" : "") << ", reversed " << static_cast<int>(one.books.reversed);
  return out;
}

void WithAnswers(const HeldFacts& held, const std::function<void(const HeldFacts& held)>& take) {
  take(held);
  if (held.answers.size() == kMostAnswers) return;
  for (std::size_t proposal = 0; proposal < held.proposals.size(); ++proposal) {
    for (const Outcome outcome : kOutcomes) {
      HeldFacts more = held;
      // In descending order of their hashes, so that the first one is not the lowest.
      more.answers.push_back(AnswerNumber(2 * (kMostAnswers - held.answers.size()) - 1, outcome, proposal));
      WithAnswers(more, take);
    }
  }
}

void ForEachHeld(const std::function<void(const HeldFacts& held)>& take) {
  for (std::size_t proposals = 0; proposals <= 2; ++proposals) {
    for (const bool withdrawal : {false, true}) {
      HeldFacts held{.proposals = {}, .answers = {}, .withdrawal = withdrawal};
      if (proposals > 0) held.proposals.push_back(ProposalNumber(0));
      if (proposals > 1) held.proposals.push_back(ProposalNumber(1, kOtherAmount));
      WithAnswers(held, take);
    }
  }
}

std::vector<ReceiversBooks> AllBooks() {
  std::vector<std::optional<InboxState>> inboxes{std::nullopt};
  for (const InboxState state : {InboxState::kNew, InboxState::kHeld, InboxState::kAccepted, InboxState::kToBookAgain,
                                 InboxState::kRejected, InboxState::kRefused, InboxState::kWithdrawn}) {
    inboxes.emplace_back(state);
  }
  std::vector<ReceiversBooks> all;
  for (const std::optional<InboxState> inbox : inboxes) {
    for (const std::optional<std::int64_t> booked :
         {std::optional<std::int64_t>(), std::optional(kAmount), std::optional(kOtherAmount)}) {
      for (const Reversed reversed :
           {Reversed::kNothing, Reversed::kBooked, Reversed::kBookedAndReversed, Reversed::kNotBooked}) {
        all.push_back({.inbox = inbox, .bookedAmount = booked, .reversed = reversed});
        all.push_back({.inbox = inbox, .bookedAmount = booked, .isInUse = true, .reversed = reversed});
        // What is booked is not rejected.
        if (!booked) all.push_back({.inbox = inbox, .rejectionIsKept = true, .reversed = reversed});
      }
    }
  }
  return all;
}

void ForEachCase(const std::function<void(const Case& one)>& take) {
  const std::vector<ReceiversBooks> books = AllBooks();
  ForEachHeld([&](const HeldFacts& held) {
    for (const ReceiversBooks& one : books) take({.held = held, .books = one});
  });
}

// What the receiver has when it has done what the standing says; the hash of an answer that is made is any.
Case After(const Case& one, const ReceiversStanding& standing, std::size_t hashOfAnswer) {
  Case after = one;
  after.books.inbox = standing.inbox;
  if (standing.answer) {
    after.held.answers.push_back({.hash = Ascending().at(kAnswerPlace + hashOfAnswer),
                                  .outcome = *standing.answer,
                                  .proposal = ProposalThatCounts(one.held)->hash});
  }
  if (standing.answer == Outcome::kRejected) after.books.rejectionIsKept = true;
  return after;
}

bool IsDecided(InboxState state) {
  return state != InboxState::kNew && state != InboxState::kHeld;
}

TEST(WhatIsHeldOfARequest, SaysTheSameInWhateverOrderItCame) {
  int held = 0;
  ForEachHeld([&](const HeldFacts& facts) {
    ++held;
    HeldFacts other = facts;
    std::ranges::sort(other.answers, {}, &HeldAnswer::hash);
    do {
      std::ranges::reverse(other.proposals);
      for (const ReceiversBooks& books : AllBooks()) {
        ASSERT_EQ(StandingAtReceiver(other, books), StandingAtReceiver(facts, books))
            << Case{.held = facts, .books = books};
      }
      for (const TransactionState row : kRows) {
        ASSERT_EQ(StandingAtSender(other, {.row = row}), StandingAtSender(facts, {.row = row}));
      }
    } while (std::ranges::next_permutation(other.answers, {}, &HeldAnswer::hash).found);
  });
  EXPECT_EQ(held, 2 * (1 + (1 + 4 + 16 + 64) + (1 + 8 + 64 + 512)));
}

TEST(WhatIsHeldOfARequest, SaysNothingFurtherOnceItIsDone) {
  ForEachCase([](const Case& one) {
    const ReceiversStanding standing = StandingAtReceiver(one.held, one.books);
    for (const std::size_t hash : {std::size_t{0}, std::size_t{4}, std::size_t{9}}) {
      const Case after = After(one, standing, hash);
      const ReceiversStanding again = StandingAtReceiver(after.held, after.books);
      ASSERT_EQ(again.answer, std::nullopt) << one;
      ASSERT_EQ(again.inbox, standing.inbox) << one;
      ASSERT_EQ(again.mark, standing.mark) << one;
    }
  });
}

TEST(WhatIsHeldOfARequest, LetsItsReceiverAnswerWhatItAnsweredOnlyWhenItIsBooked) {
  ForEachCase([](const Case& one) {
    const ReceiversStanding standing = StandingAtReceiver(one.held, one.books);
    if (!standing.answer) return;
    ASSERT_NE(ProposalThatCounts(one.held), nullptr) << one;
    if (one.held.answers.empty()) return;
    ASSERT_EQ(standing.answer, Outcome::kAccepted) << one;
    ASSERT_EQ(one.books.bookedAmount, ProposalThatCounts(one.held)->amount) << one;
    ASSERT_NE(AnswerThatCounts(one.held)->outcome, Outcome::kAccepted) << one;
  });
}

TEST(WhatIsHeldOfARequest, IsAnsweredOnceItIsDecided) {
  ForEachCase([](const Case& one) {
    const ReceiversStanding standing = StandingAtReceiver(one.held, one.books);
    if (!standing.inbox || ProposalThatCounts(one.held) == nullptr) return;
    const bool isAnswered = standing.answer || !one.held.answers.empty();
    ASSERT_EQ(IsDecided(*standing.inbox), isAnswered) << one;
  });
}

TEST(WhatIsHeldOfARequest, IsCountedAsAcceptedOnlyWhereItIsBookedWithTheAmountThatCounts) {
  ForEachCase([](const Case& one) {
    const HeldProposal* proposal = ProposalThatCounts(one.held);
    if (proposal == nullptr) return;
    const ReceiversStanding standing = StandingAtReceiver(one.held, one.books);
    ASSERT_EQ(standing.inbox == InboxState::kAccepted, one.books.bookedAmount == proposal->amount) << one;
  });
}

// What the sender's row may be when the receiver has decided like this; a row that came back may have been closed
// since.
std::vector<TransactionState> RowsFor(InboxState inbox) {
  switch (inbox) {
    case InboxState::kNew:
    case InboxState::kHeld:
      return {TransactionState::kSent};
    case InboxState::kAccepted:
    case InboxState::kToBookAgain:
      return {TransactionState::kEstablished};
    case InboxState::kRejected:
    case InboxState::kRefused:
      return {TransactionState::kCameBack};
    case InboxState::kWithdrawn:
      return {TransactionState::kClosed};
  }
  return {};
}

TEST(BothSides, AgreeOnceTheyHoldTheSame) {
  ForEachCase([](const Case& one) {
    if (ProposalThatCounts(one.held) == nullptr) return;
    const ReceiversStanding here = StandingAtReceiver(one.held, one.books);
    const Case after = After(one, here, 0);
    for (const TransactionState row : {TransactionState::kEntered, TransactionState::kSent}) {
      const SendersStanding there = StandingAtSender(after.held, {.row = row});
      ASSERT_THAT(RowsFor(*here.inbox), ::testing::Contains(*there.row)) << one;
      ASSERT_EQ(ProposalThatCounts(after.held)->hash, ProposalThatCounts(one.held)->hash) << one;
    }
  });
}

// Whatever the sender has read of it already: the row follows what both hold in the end.
TEST(BothSides, AgreeInTheEndHoweverTheSenderGotThere) {
  ForEachHeld([](const HeldFacts& held) {
    if (ProposalThatCounts(held) == nullptr) return;
    const TransactionState atOnce = *StandingAtSender(held, {.row = TransactionState::kSent}).row;
    HeldFacts some{.proposals = held.proposals, .answers = {}, .withdrawal = held.withdrawal};
    TransactionState row = TransactionState::kSent;
    for (const HeldAnswer& answer : held.answers) {
      some.answers.push_back(answer);
      row = *StandingAtSender(some, {.row = row}).row;
    }
    ASSERT_EQ(row == TransactionState::kEstablished, atOnce == TransactionState::kEstablished);
    ASSERT_EQ(row == TransactionState::kSent, atOnce == TransactionState::kSent);
  });
}

TEST(ARowOfTheSender, IsAsItIsOnceItFollowsWhatIsHeld) {
  ForEachHeld([](const HeldFacts& held) {
    for (const TransactionState row : kRows) {
      const SendersStanding first = StandingAtSender(held, {.row = row});
      const SendersStanding again = StandingAtSender(held, {.row = first.row});
      ASSERT_EQ(again.row, first.row);
      ASSERT_EQ(again.isWithdrawing, first.isWithdrawing);
      ASSERT_FALSE(again.wasOvertaken);
    }
  });
}

}  // namespace
}  // namespace exchange
