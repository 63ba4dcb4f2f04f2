#include <cstring>

#include "standalone/reports/OpenItems.h"
#include "tests/reports/LedgerFixture.h"

namespace standalone {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TheOpenItems : public LedgerFixture {
 protected:
  TheOpenItems() { relationId_ = Relate("1001", dueFrom_, dueTo_); }

  std::int32_t Relate(const char* realm, std::int32_t dueFrom, std::int32_t dueTo) {
    DBMultiEntityRelation relation{};
    std::strcpy(relation.realmId, realm);
    std::strcpy(relation.partnerName, "Cedar Leasing");
    relation.state = static_cast<std::int16_t>(RelationState::kEstablished);
    relation.dueFromAccountId = dueFrom;
    relation.dueToAccountId = dueTo;
    host_.Relations().Add(relation, 0);
    return relation.relationId;
  }

  // A bill of which the partner owes that much; a negative amount is what the partner has paid.
  std::int32_t Claim(DateType32 date, std::int64_t amount) {
    return Post(date, {{bank_, -amount}, {dueFrom_, amount}}, kTxnTypeBill);
  }
  // The same with a request in a state.
  std::int32_t Request(DateType32 date, std::int64_t amount, TransactionState state) {
    const std::int32_t txnId = Claim(date, amount);
    AddRow(txnId, host_.Transactions().LinesOf(txnId).at(1).id, kTxnTypeBill, state);
    return txnId;
  }
  void AddRow(std::int32_t txnId, std::int32_t lineId, std::int16_t type, TransactionState state) {
    AddRowOf(relationId_, txnId, lineId, type, state);
  }
  void AddRowOf(std::int32_t relationId, std::int32_t txnId, std::int32_t lineId, std::int16_t type,
                TransactionState state) {
    DBMultiEntityTransaction row{};
    row.txnId = txnId;
    row.targetId = lineId;
    row.relationId = relationId;
    row.txnType = type;
    row.state = static_cast<std::int16_t>(state);
    std::strcpy(row.requestId, ("request " + std::to_string(lineId)).c_str());
    host_.Intercompany().Add(row);
  }
  std::int32_t Reverse(std::int32_t txnId, DateType32 date) {
    Lines lines;
    for (const PostedLine& line : host_.Transactions().LinesOf(txnId)) lines.emplace_back(line.accountId, -line.amount);
    const std::int32_t reversal = Post(date, lines, kTxnTypeBill);
    host_.Links().Add({.txnId = reversal, .kind = LinkKind::kReverses, .earlierTxnId = txnId});
    return reversal;
  }
  // The same with a request of its own in a state.
  std::int32_t ReverseAs(std::int32_t txnId, DateType32 date, TransactionState state) {
    const std::int32_t reversal = Reverse(txnId, date);
    AddRow(reversal, host_.Transactions().LinesOf(reversal).at(1).id, kTxnTypeBill, state);
    return reversal;
  }

  OpenItems ReadAsOf(DateType32 asOf, Owed owed = Owed::kToUs) {
    return ReadOf(relationId_, owed == Owed::kToUs ? dueFrom_ : dueTo_, asOf, owed);
  }
  OpenItems ReadFrom(DateType32 from, DateType32 asOf) {
    return ReadOpenItems(
        Ledger(), Ledger().Reversals(),
        {.relationId = relationId_, .accountId = dueFrom_, .owed = Owed::kToUs, .asOf = asOf, .from = from});
  }
  OpenItems ReadOf(std::int32_t relationId, std::int32_t accountId, DateType32 asOf, Owed owed) {
    return ReadOpenItems(Ledger(), Ledger().Reversals(),
                         {.relationId = relationId, .accountId = accountId, .owed = owed, .asOf = asOf});
  }

  // Its transaction and what is open of it.
  using Open = std::pair<std::int32_t, std::int64_t>;
  static std::vector<Open> OpenIn(const OpenItems& items) {
    std::vector<Open> open;
    for (const OpenItem& item : items.items) open.emplace_back(item.txnId, item.open);
    return open;
  }
  static std::int64_t SumOf(const OpenItems& items) {
    return items.agreed + items.noRequest + items.notAnswered + items.closed;
  }

  static constexpr DateType32 kDay{2025, 12, 31};
  const std::int32_t bank_ = AddAccount("Bank");
  const std::int32_t dueFrom_ = AddAccount("Due from Cedar");
  const std::int32_t dueTo_ = AddAccount("Due to Cedar");
  std::int32_t relationId_ = 0;
};

TEST_F(TheOpenItems, AreSettledFromTheOldestOn) {
  const std::int32_t second = Claim({2025, 2, 1}, 200);
  Claim({2025, 1, 1}, 100);
  const std::int32_t third = Claim({2025, 3, 1}, 300);
  Claim({2025, 4, 1}, -150);

  const OpenItems items = ReadAsOf(kDay);

  EXPECT_THAT(OpenIn(items), ElementsAre(Open(second, 150), Open(third, 300)));
  EXPECT_EQ(items.items.front().amount, 200);
  EXPECT_EQ(items.noRequest, 450);
}

TEST_F(TheOpenItems, AreNoneWhenAllIsPaid) {
  Claim({2025, 1, 1}, 100);
  Claim({2025, 2, 1}, -100);

  EXPECT_THAT(ReadAsOf(kDay).items, IsEmpty());
}

TEST_F(TheOpenItems, TellWhatWasPaidBeyondWhatIsOwed) {
  Claim({2025, 1, 1}, 100);
  const std::int32_t paid = Claim({2025, 2, 1}, -130);

  EXPECT_THAT(OpenIn(ReadAsOf(kDay)), ElementsAre(Open(paid, -30)));
}

TEST_F(TheOpenItems, AreThoseOfTheDayAndBefore) {
  const std::int32_t first = Claim({2025, 1, 1}, 100);
  Claim({2025, 1, 2}, 7);
  Claim({2025, 1, 2}, -50);

  EXPECT_THAT(OpenIn(ReadAsOf({2025, 1, 1})), ElementsAre(Open(first, 100)));
}

TEST_F(TheOpenItems, LeaveOutAReversedOneWithItsReversal) {
  const std::int32_t old = Claim({2025, 1, 1}, 100);
  const std::int32_t reversed = Claim({2025, 2, 1}, 100);
  Reverse(reversed, {2025, 3, 1});

  EXPECT_THAT(OpenIn(ReadAsOf(kDay)), ElementsAre(Open(old, 100)));
}

TEST_F(TheOpenItems, HaveAReversedOneUpToTheDayOfItsReversal) {
  const std::int32_t reversed = Claim({2025, 2, 1}, 100);
  Reverse(reversed, {2025, 3, 1});

  EXPECT_THAT(OpenIn(ReadAsOf({2025, 2, 28})), ElementsAre(Open(reversed, 100)));
}

TEST_F(TheOpenItems, HaveTheFirstOneAgainWhenItsReversalIsReversed) {
  const std::int32_t first = Claim({2025, 1, 1}, 100);
  const std::int32_t reversal = Reverse(first, {2025, 2, 1});
  Reverse(reversal, {2025, 3, 1});

  EXPECT_THAT(OpenIn(ReadAsOf(kDay)), ElementsAre(Open(first, 100)));
}

TEST_F(TheOpenItems, KeepWhatThePartnerHasTakenUntilThePartnerTakesItsReversal) {
  for (const TransactionState state :
       {TransactionState::kEntered, TransactionState::kSent, TransactionState::kCameBack}) {
    const std::int32_t taken = Request({2025, 1, 1}, 100, TransactionState::kEstablished);
    const std::int32_t reversal = ReverseAs(taken, {2025, 2, 1}, state);

    const OpenItems items = ReadAsOf(kDay);

    EXPECT_THAT(OpenIn(items), ElementsAre(Open(taken, 100), Open(reversal, -100)));
    EXPECT_EQ(items.agreed, 100);
    EXPECT_EQ(items.notAnswered, -100);
    EXPECT_EQ(items.items.at(1).state, BookedState(state));
    host_.Transactions().Delete(reversal);
    host_.Transactions().Delete(taken);
  }
}

TEST_F(TheOpenItems, KeepWhatThePartnerHasTakenBesideAReversalThatWasClosedHere) {
  const std::int32_t taken = Request({2025, 1, 1}, 100, TransactionState::kEstablished);
  const std::int32_t reversal = ReverseAs(taken, {2025, 2, 1}, TransactionState::kClosed);

  const OpenItems items = ReadAsOf(kDay);

  EXPECT_THAT(OpenIn(items), ElementsAre(Open(taken, 100), Open(reversal, -100)));
  EXPECT_EQ(items.agreed, 100);
  EXPECT_EQ(items.closed, -100);
}

TEST_F(TheOpenItems, LeaveOutAReversedOneOnceThePartnerHasTakenItsReversal) {
  ReverseAs(Request({2025, 1, 1}, 100, TransactionState::kEstablished), {2025, 2, 1}, TransactionState::kEstablished);

  EXPECT_THAT(ReadAsOf(kDay).items, IsEmpty());
}

TEST_F(TheOpenItems, LeaveOutWhatNoPartnerHasTakenWithTheReversalThatClosedIt) {
  ReverseAs(Request({2025, 1, 1}, 100, TransactionState::kClosed), {2025, 2, 1}, TransactionState::kClosed);

  EXPECT_THAT(ReadAsOf(kDay).items, IsEmpty());
}

TEST_F(TheOpenItems, HaveWhatALaterReversalHasClosedAsNotAnsweredUntilThen) {
  const std::int32_t reversed = Request({2025, 1, 1}, 100, TransactionState::kClosed);
  ReverseAs(reversed, {2025, 3, 1}, TransactionState::kClosed);
  const std::int32_t withdrawn = Request({2025, 1, 2}, 30, TransactionState::kClosed);

  const OpenItems items = ReadAsOf({2025, 2, 28});

  EXPECT_THAT(OpenIn(items), ElementsAre(Open(reversed, 100), Open(withdrawn, 30)));
  EXPECT_EQ(items.notAnswered, 100);
  EXPECT_EQ(items.closed, 30);
}

TEST_F(TheOpenItems, LeaveWhatIsNotAnsweredWholeWhenSomethingIsPaid) {
  const std::int32_t entered = Request({2025, 1, 1}, 10, TransactionState::kEntered);
  const std::int32_t sent = Request({2025, 1, 2}, 20, TransactionState::kSent);
  const std::int32_t cameBack = Request({2025, 1, 3}, 40, TransactionState::kCameBack);
  const std::int32_t agreed = Request({2025, 1, 4}, 80, TransactionState::kEstablished);
  Claim({2025, 1, 5}, -50);

  EXPECT_THAT(OpenIn(ReadAsOf(kDay)),
              ElementsAre(Open(entered, 10), Open(sent, 20), Open(cameBack, 40), Open(agreed, 30)));
}

TEST_F(TheOpenItems, SetApartWhatIsBookedWithoutARequest) {
  Claim({2025, 1, 1}, 100);
  Request({2025, 1, 2}, 30, TransactionState::kEstablished);

  const OpenItems items = ReadAsOf(kDay);

  EXPECT_EQ(items.items.at(0).standing, Standing::kNoRequest);
  EXPECT_EQ(items.noRequest, 100);
  EXPECT_EQ(items.agreed, 30);
}

TEST_F(TheOpenItems, AreThoseOfThePartnerWhoseRequestStandsOnAnAccountOfAnother) {
  const std::int32_t otherDueFrom = AddAccount("Due from Birch");
  const std::int32_t birch = Relate("1002", otherDueFrom, AddAccount("Due to Birch"));
  const std::int32_t ofBirch = Claim({2025, 1, 2}, 100);
  AddRowOf(birch, ofBirch, host_.Transactions().LinesOf(ofBirch).at(1).id, kTxnTypeBill,
           TransactionState::kEstablished);
  const std::int32_t early = Post({2025, 1, 1}, {{bank_, -7}, {otherDueFrom, 7}});
  const std::int32_t ofCedar = Claim({2025, 1, 3}, 30);

  EXPECT_THAT(OpenIn(ReadAsOf(kDay)), ElementsAre(Open(ofCedar, 30)));
  EXPECT_THAT(OpenIn(ReadOf(birch, otherDueFrom, kDay, Owed::kToUs)), ElementsAre(Open(early, 7), Open(ofBirch, 100)));
}

TEST_F(TheOpenItems, OfADueToAccountAreThoseOfThePartnerWhoseRequestWasBooked) {
  const std::int32_t otherDueTo = AddAccount("Due to Birch");
  const std::int32_t birch = Relate("1002", AddAccount("Due from Birch"), otherDueTo);
  const std::int32_t ofBirch = Post({2025, 1, 1}, {{bank_, 100}, {dueTo_, -100}});
  AddRowOf(birch, ofBirch, host_.Transactions().LinesOf(ofBirch).at(0).id, kTxnTypeJournalEntry,
           TransactionState::kEstablished);

  EXPECT_THAT(ReadAsOf(kDay, Owed::kByUs).items, IsEmpty());
  EXPECT_THAT(OpenIn(ReadOf(birch, otherDueTo, kDay, Owed::kByUs)), ElementsAre(Open(ofBirch, 100)));
}

TEST_F(TheOpenItems, OfAnAccountThatAnotherPartnersRequestIsBookedAsAnExpenseOfStandWithoutARequest) {
  const std::int32_t otherDueTo = AddAccount("Due to Birch");
  const std::int32_t birch = Relate("1002", AddAccount("Due from Birch"), otherDueTo);
  const std::int32_t passedOn = Post({2025, 1, 1}, {{dueFrom_, 100}, {otherDueTo, -100}});
  AddRowOf(birch, passedOn, host_.Transactions().LinesOf(passedOn).at(0).id, kTxnTypeJournalEntry,
           TransactionState::kEstablished);

  const OpenItems items = ReadAsOf(kDay);

  EXPECT_THAT(OpenIn(items), ElementsAre(Open(passedOn, 100)));
  EXPECT_EQ(items.noRequest, 100);
}

TEST_F(TheOpenItems, SetApartWhatTheOtherSideHasNotAnswered) {
  Request({2025, 1, 1}, 10, TransactionState::kEntered);
  Request({2025, 1, 2}, 20, TransactionState::kSent);
  Request({2025, 1, 3}, 40, TransactionState::kCameBack);
  Request({2025, 1, 4}, 80, TransactionState::kEstablished);

  const OpenItems items = ReadAsOf(kDay);

  EXPECT_EQ(items.notAnswered, 70);
  EXPECT_EQ(items.agreed, 80);
  EXPECT_EQ(items.items.at(1).standing, Standing::kNotAnswered);
  EXPECT_EQ(items.items.at(1).state, BookedState(TransactionState::kSent));
}

TEST_F(TheOpenItems, KeepWhatWasClosedHereApartAndSettleNothingWithIt) {
  const std::int32_t closed = Request({2025, 1, 1}, 10, TransactionState::kClosed);
  const std::int32_t owed = Request({2025, 1, 2}, 20, TransactionState::kEstablished);
  Claim({2025, 1, 3}, -5);

  const OpenItems items = ReadAsOf({2025, 1, 3});

  EXPECT_THAT(OpenIn(items), ElementsAre(Open(closed, 10), Open(owed, 15)));
  EXPECT_EQ(items.closed, 10);
  EXPECT_EQ(items.agreed, 15);
  EXPECT_EQ(items.byAge[0], 15);
}

TEST_F(TheOpenItems, AreAgedByTheirDate) {
  for (const int days : {0, 30, 31, 60, 61, 90, 91, 1000}) {
    const std::chrono::year_month_day date = kDay.Days() - std::chrono::days(days);
    Claim({static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
           static_cast<int>(static_cast<unsigned>(date.day()))},
          100 + days);
  }

  const OpenItems items = ReadAsOf(kDay);

  EXPECT_THAT(items.byAge, ElementsAre(100 + 130, 131 + 160, 161 + 190, 191 + 1100));
}

TEST_F(TheOpenItems, AreOneSumOfTheDaysBeforeTheFirstOne) {
  Claim({2025, 1, 1}, 100);
  Claim({2025, 1, 31}, 7);
  const std::int32_t ofTheDay = Claim({2025, 2, 1}, 200);

  const OpenItems items = ReadFrom({2025, 2, 1}, kDay);

  EXPECT_EQ(items.earlier.count, 2U);
  EXPECT_EQ(items.earlier.open, 107);
  EXPECT_THAT(OpenIn(items), ElementsAre(Open(ofTheDay, 200)));
  EXPECT_EQ(items.noRequest, 307);
}

TEST_F(TheOpenItems, FromADayOnAreSettledByWhatWasPaidAsAllAre) {
  Claim({2025, 1, 1}, 100);
  Claim({2025, 2, 1}, -130);
  const std::int32_t later = Claim({2025, 3, 1}, 50);

  const OpenItems items = ReadFrom({2025, 2, 2}, kDay);

  EXPECT_EQ(items.earlier.count, 0U);
  EXPECT_THAT(OpenIn(items), ElementsAre(Open(later, 20)));
}

TEST_F(TheOpenItems, OfADueToAccountAreItsCredits) {
  const std::int32_t debt = Post({2025, 1, 1}, {{bank_, 100}, {dueTo_, -100}});
  Post({2025, 2, 1}, {{bank_, -40}, {dueTo_, 40}});

  const OpenItems items = ReadAsOf(kDay, Owed::kByUs);

  EXPECT_THAT(OpenIn(items), ElementsAre(Open(debt, 60)));
  EXPECT_EQ(items.items.front().amount, 100);
}

TEST_F(TheOpenItems, OfADueToAccountHaveTheStateOfThePartnersRequest) {
  const std::int32_t txnId = Post({2025, 1, 1}, {{bank_, 100}, {dueTo_, -100}});
  AddRow(txnId, host_.Transactions().LinesOf(txnId).at(0).id, kTxnTypeJournalEntry, TransactionState::kEstablished);

  EXPECT_EQ(ReadAsOf(kDay, Owed::kByUs).items.at(0).state, BookedState(TransactionState::kEstablished));
}

TEST_F(TheOpenItems, HaveNoStateOfAnOwnRequestOnTheLineBefore) {
  const std::int32_t txnId = Post({2025, 1, 1}, {{dueFrom_, 100}, {dueTo_, -100}});
  const std::int32_t lineId = host_.Transactions().LinesOf(txnId).at(0).id;
  AddRow(txnId, lineId, kTxnTypeJournalEntry, TransactionState::kSent);
  host_.OwnRequests().Add(lineId, std::nullopt);

  EXPECT_EQ(ReadAsOf(kDay, Owed::kByUs).items.at(0).state, std::nullopt);
  EXPECT_EQ(ReadAsOf(kDay, Owed::kToUs).items.at(0).state, BookedState(TransactionState::kSent));
}

TEST_F(TheOpenItems, OfAnyBooksAddUpToWhatTheAccountHolds) {
  std::mt19937 random(20250303);
  const auto upTo = [&random](int most) {
    return static_cast<int>(random() % static_cast<unsigned>(most));
  };
  std::vector<std::int32_t> claims;
  for (int i = 0; i < 300; ++i) {
    const DateType32 date{2025, 1 + upTo(12), 1 + upTo(28)};
    if (i % 5 == 4) {
      const std::int32_t reversed = claims[static_cast<std::size_t>(upTo(static_cast<int>(claims.size())))];
      if (host_.Links().ReversalOf(reversed)) continue;
      const TransactionState state{static_cast<std::int16_t>(upTo(7))};
      claims.push_back(i % 2 == 0 ? Reverse(reversed, date) : ReverseAs(reversed, date, state));
    } else {
      claims.push_back(Request(date, upTo(10'000) - 3'000, TransactionState{static_cast<std::int16_t>(upTo(7))}));
    }
  }

  for (int month = 1; month <= 12; ++month) {
    const DateType32 day{2025, month, 17};
    const OpenItems items = ReadAsOf(day);

    EXPECT_EQ(SumOf(items), Ledger().SumOf(dueFrom_, /*withSubAccounts=*/false, {.from = {}, .to = day}));
    EXPECT_EQ(items.byAge[0] + items.byAge[1] + items.byAge[2] + items.byAge[3],
              items.agreed + items.noRequest + items.notAnswered);
    EXPECT_FALSE(items.items.empty());

    const OpenItems fromADay = ReadFrom({2025, 1 + month / 2, 5}, day);
    std::int64_t open = fromADay.earlier.open;
    for (const OpenItem& item : fromADay.items) open += item.open;
    EXPECT_EQ(fromADay.earlier.count + fromADay.items.size(), items.items.size());
    EXPECT_EQ(open, SumOf(items));
    EXPECT_EQ(SumOf(fromADay), SumOf(items));
    EXPECT_EQ(fromADay.byAge, items.byAge);
  }
}

}  // namespace
}  // namespace standalone
