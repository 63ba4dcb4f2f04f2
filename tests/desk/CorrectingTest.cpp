#include "standalone/desk/Correcting.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Transactions.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::TransactionState;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Eq;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Ne;
using testing::Not;
using testing::SizeIs;

constexpr DateType32 kApril(2026, 4, 1);

// A bill (1) of 100.00 whose half Birch bears, a check (2) that Birch and Cedar share, an entry of the company's own
// (3) about what Birch owes, one booked from a request of Birch's (4), and a bill without partners (5), all of March
// 2026.
class InTheBooks : public DeskFixture {
 protected:
  InTheBooks() {
    RelateBirch();
    RelateCedar();
    Import(*company_, Importable::kTransactions,
           Csv("transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n"
               "1,bill,2026-03-02,Northern Power,March power,Utilities,50.00,Ours,,,\n"
               "1,bill,,,,Due from Birch,50.00,Theirs,1001,of-bill,\n"
               "1,bill,,,,Payables,-100.00,,,,\n"
               "2,check,2026-03-03,Walker,Repairs,Due from Birch,30.00,,1001,of-check-1,\n"
               "2,check,,,,Due from Cedar,20.00,,1002,of-check-2,\n"
               "2,check,,,,Checking,-50.00,,,,\n"
               "3,journal,2026-03-04,,Shared,Due from Birch,7.00,,1001,of-entry,\n"
               "3,journal,,,,Utilities,-7.00,,,,\n"
               "4,journal,2026-03-05,Northern Power,From Birch,Utilities,12.00,Heating,1001,from-birch,established\n"
               "4,journal,,,,Due to Birch,-12.00,,,,\n"
               "5,bill,2026-03-06,Northern Power,Water,Utilities,8.00,,,,\n"
               "5,bill,,,,Payables,-8.00,,,,\n"));
  }

  static constexpr std::int32_t kBill = 1;
  static constexpr DateType32 kDayOfTheBill{2026, 3, 2};
  static constexpr std::int32_t kCheck = 2;
  static constexpr std::int32_t kOwnEntry = 3;
  static constexpr std::int32_t kPartnersEntry = 4;
  static constexpr std::int32_t kPlainBill = 5;

  void ChangeFile(const std::string& sql) {
    standalone::StandaloneHost other(path_);
    standalone::FileOf(other).Execute(sql.c_str());
  }
  void SetStates(std::int32_t txnId, int state) {
    ChangeFile("UPDATE me_transaction SET state = " + std::to_string(state) +
               " WHERE txn_id = " + std::to_string(txnId));
  }
  std::int64_t Number(const std::string& sql) {
    standalone::StandaloneHost other(path_);
    return standalone::Count(other, sql.c_str());
  }
  std::vector<int> StatesOf(std::int32_t txnId) {
    standalone::StandaloneHost other(path_);
    std::vector<DBMultiEntityTransaction> rows;
    other.Request(standalone::Access::kRead, [&] { other.Intercompany().ListOf(txnId, rows); });
    std::vector<int> states;
    for (const DBMultiEntityTransaction& row : rows) states.push_back(row.state);
    return states;
  }

  // Of 100.00 in two lines, the second without a text of its own; Birch bears half.
  std::int32_t RecordInspection(const char* memo) {
    return RecordTransaction(*company_,
                             {.type = EnteredType::kBill,
                              .date = kDayOfTheBill,
                              .name = Existing{"Northern Power"},
                              .memo = standalone::Memo(memo),
                              .lines = {{.account = "Utilities",
                                         .amount = standalone::LineAmount("60.00"),
                                         .memo = standalone::Memo("Rope")},
                                        {.account = "Utilities:Power", .amount = standalone::LineAmount("40.00")}},
                              .shares = {{.partner = "1001", .share = standalone::ShareText("50%")}},
                              .attachments = {}},
                             Posting::kPost)
        .txnId;
  }

  ReversedTransaction Reverse(std::int32_t txnId) { return ReverseTransaction(*company_, {.txnId = txnId}); }
  // The company file is compared as it is before and after.
  template <typename Ask>
  Refusal RefusalThatLeavesNothing(Ask&& ask) {
    const std::string before = WholeFile();
    Refusal refusal = RefusalOf(std::forward<Ask>(ask));
    EXPECT_EQ(WholeFile(), before);
    EXPECT_EQ(refusal.status, std::nullopt);
    return refusal;
  }
  Refusal RefusalOfReversing(std::int32_t txnId) {
    return RefusalThatLeavesNothing([&] { Reverse(txnId); });
  }
  Refusal RefusalOfRemoving(std::int32_t txnId) {
    return RefusalThatLeavesNothing([&] { RemoveTransaction(*company_, txnId); });
  }

  std::vector<AuditedDeed> Trail() {
    return ListAudit(*company_, {.user = {}, .action = {}, .period = {NullDate(), NullDate()}, .txnId = {}});
  }
  static auto Tells(const std::string& field, std::optional<std::string> before, std::optional<std::string> after) {
    return Contains(AllOf(Field(&AuditedChange::field, field), Field(&AuditedChange::before, before),
                          Field(&AuditedChange::after, after)));
  }
  static auto Line(const char* account, std::int64_t amount, const char* memo) {
    return AllOf(Field(&RecordedLine::account, Field(&ListItem::name, account)),
                 Field(&RecordedLine::amount, Field(&standalone::Money::minorUnits, amount)),
                 Field(&RecordedLine::memo, memo));
  }
};

class AReversal : public InTheBooks {};

TEST_F(AReversal, HasTheLinesOfTheOriginalTheOtherWayRound) {
  const ReversedTransaction reversed =
      ReverseTransaction(*company_, {.txnId = kBill, .date = kApril, .memo = standalone::Memo("Billed twice")});

  EXPECT_EQ(reversed.txnId, kBill);
  EXPECT_EQ(reversed.reversal.type, EnteredType::kBill);
  EXPECT_EQ(reversed.reversal.date, kApril);
  EXPECT_EQ(reversed.reversal.memo, "Billed twice");
  EXPECT_EQ(reversed.reversal.name->name, "Northern Power");
  EXPECT_THAT(reversed.reversal.lines,
              ElementsAre(Line("Utilities", -5000, "Ours"), Line("Due from Birch", -5000, "Theirs"),
                          Line("Payables", 10000, "")));
}

TEST_F(AReversal, HasTheMemoAndTheDocumentNumberOfTheOriginalAndIsDatedTodayUnlessItIsSaidOtherwise) {
  const std::int32_t txnId =
      RecordTransaction(*company_,
                        {.type = EnteredType::kBill,
                         .name = Existing{"Northern Power"},
                         .memo = standalone::Memo("Water"),
                         .documentNumber = standalone::DocumentNumber("R-17"),
                         .lines = {{.account = "Utilities", .amount = standalone::LineAmount("8.00")}},
                         .shares = {},
                         .attachments = {}},
                        Posting::kPost)
          .txnId;

  const RecordedTransaction reversal = Reverse(txnId).reversal;

  EXPECT_EQ(reversal.documentNumber, "R-17");
  EXPECT_EQ(reversal.memo, "Water");
  standalone::StandaloneHost other(path_);
  EXPECT_EQ(reversal.date, platform::Today(other.Clock()));
}

TEST_F(AReversal, GivesItsMemoToTheLinesThatHadTheOriginalsAndLeavesOtherTexts) {
  const std::int32_t txnId = RecordInspection("Inspection of the lift");

  const RecordedTransaction reversal =
      ReverseTransaction(*company_, {.txnId = txnId, .memo = standalone::Memo("Never delivered")}).reversal;

  EXPECT_EQ(reversal.memo, "Never delivered");
  EXPECT_THAT(reversal.lines, ElementsAre(Line("Utilities", -3000, "Rope"), Line("Utilities:Power", -2000, ""),
                                          Line("Due from Birch", -5000, "Never delivered"),
                                          Line("Payables", 10000, "Never delivered")));
}

TEST_F(AReversal, OfWhatAPartnerHasIsSentToItAsARequestOfItsOwn) {
  SetStates(kBill, 3);

  const ReversedTransaction reversed = Reverse(kBill);

  EXPECT_THAT(StatesOf(kBill), ElementsAre(3));
  ASSERT_TRUE(reversed.reversal.lines.at(1).partners);
  const PartnersPart& part = *reversed.reversal.lines.at(1).partners;
  EXPECT_EQ(part.realm, "1001");
  EXPECT_EQ(part.state, TransactionState::kEntered);
  EXPECT_THAT(part.requestId, SizeIs(36));
  EXPECT_THAT(reversed.toTell, IsEmpty());
  standalone::StandaloneHost other(path_);
  const std::int32_t line = reversed.reversal.lines.at(1).lineId;
  const auto named = other.Request(standalone::Access::kRead, [&] { return other.OwnRequests().EarlierOf(line); });
  EXPECT_EQ(named, (standalone::EarlierRequest{.kind = standalone::EarlierRequest::Kind::kReverses, .targetId = 2}));
}

TEST_F(AReversal, OfWhatAPartnerHasNotClosesBothRequests) {
  for (const int state : {0, 2}) {
    const std::int32_t txnId = state == 0 ? kBill : kOwnEntry;
    SetStates(txnId, state);

    const ReversedTransaction reversed = Reverse(txnId);

    EXPECT_THAT(StatesOf(txnId), ElementsAre(5)) << state;
    EXPECT_THAT(StatesOf(reversed.reversal.txnId), ElementsAre(5)) << state;
    EXPECT_THAT(reversed.toTell, IsEmpty());
  }
}

TEST_F(AReversal, OfWhatWasWithdrawnIsClosedFromTheBeginning) {
  SetStates(kBill, 5);

  EXPECT_THAT(StatesOf(Reverse(kBill).reversal.txnId), ElementsAre(5));
  EXPECT_THAT(StatesOf(kBill), ElementsAre(5));
}

TEST_F(AReversal, AnswersEachPartnerAsItStands) {
  ChangeFile("UPDATE me_transaction SET state = CASE request_id WHEN 'of-check-1' THEN 3 ELSE 2 END WHERE txn_id = 2");

  const ReversedTransaction reversed = Reverse(kCheck);

  EXPECT_THAT(StatesOf(kCheck), ElementsAre(3, 5));
  EXPECT_THAT(StatesOf(reversed.reversal.txnId), ElementsAre(0, 5));
  EXPECT_NE(reversed.reversal.lines.at(0).partners->requestId, reversed.reversal.lines.at(1).partners->requestId);
}

TEST_F(AReversal, WaitsForThePartnersAnswer) {
  ChangeFile("UPDATE me_transaction SET state = 1 WHERE request_id = 'of-check-2'");

  const Refusal refusal = RefusalOfReversing(kCheck);

  EXPECT_EQ(refusal.what, UseCase::kReverseTransaction);
  EXPECT_EQ(refusal.remedy, Remedy::kWaitForThePartner);
  EXPECT_EQ(refusal.why,
            "line 5 of check 2 for Cedar Leasing (realm 1002) was sent and waits for the partner's answer");
}

TEST_F(AReversal, OfBeforeHasToBeToldToThePartnerThatHasIt) {
  ChangeFile("UPDATE me_transaction SET state = 3, of_before = 1 WHERE txn_id = 1");

  const ReversedTransaction reversed = Reverse(kBill);

  EXPECT_THAT(StatesOf(kBill), ElementsAre(3));
  EXPECT_THAT(StatesOf(reversed.reversal.txnId), ElementsAre(5));
  EXPECT_THAT(reversed.toTell, ElementsAre(AllOf(Field(&PartnersPart::partner, "Birch Services Company"),
                                                 Field(&PartnersPart::requestId, "of-bill"))));
}

TEST_F(AReversal, OfALineWithoutARequestIdHasToBeToldToThePartnerThatHasIt) {
  ChangeFile("UPDATE me_transaction SET state = 3, request_id = '' WHERE txn_id = 1");

  const ReversedTransaction reversed = Reverse(kBill);

  EXPECT_THAT(StatesOf(reversed.reversal.txnId), ElementsAre(5));
  EXPECT_THAT(reversed.toTell, SizeIs(1));
}

TEST_F(AReversal, OfBeforeNeedsItSettled) {
  for (const int state : {0, 1}) {
    ChangeFile("UPDATE me_transaction SET of_before = 1, state = " + std::to_string(state) + " WHERE txn_id = 1");

    EXPECT_EQ(RefusalOfReversing(kBill).remedy, Remedy::kSettleFirst) << state;
  }
}

TEST_F(AReversal, OfBeforeClosesWhatCameBackAndLeavesTheRestAsItWas) {
  for (const auto& [txnId, state, after] : {std::tuple(kBill, 2, 5), std::tuple(kOwnEntry, 4, 4)}) {
    ChangeFile("UPDATE me_transaction SET of_before = 1, state = " + std::to_string(state) +
               " WHERE txn_id = " + std::to_string(txnId));

    const ReversedTransaction reversed = Reverse(txnId);

    EXPECT_THAT(StatesOf(txnId), ElementsAre(after));
    EXPECT_THAT(StatesOf(reversed.reversal.txnId), ElementsAre(5));
    EXPECT_THAT(reversed.toTell, IsEmpty());
  }
}

TEST_F(AReversal, IsNotMadeOfAPartnersRequest) {
  EXPECT_EQ(RefusalOfReversing(kPartnersEntry).remedy, Remedy::kTakeBackTheEntry);
}

TEST_F(AReversal, IsMadeOnce) {
  const std::int32_t reversal = Reverse(kPlainBill).reversal.txnId;

  const Refusal refusal = RefusalOfReversing(kPlainBill);

  EXPECT_EQ(refusal.why, "bill 5 is reversed already, by bill " + std::to_string(reversal));
  EXPECT_EQ(refusal.remedy, Remedy::kSeeTheReversal);
}

TEST_F(AReversal, StaysUnlessAPartnerHasSentItBack) {
  SetStates(kBill, 3);
  const std::int32_t reversal = Reverse(kBill).reversal.txnId;
  const std::int32_t plain = Reverse(kPlainBill).reversal.txnId;

  for (const int state : {0, 3}) {
    SetStates(reversal, state);
    EXPECT_EQ(RefusalOfReversing(reversal).remedy, Remedy::kRemoveTheReversal) << state;
  }
  EXPECT_EQ(RefusalOfReversing(plain).remedy, Remedy::kRemoveTheReversal);
}

TEST_F(AReversal, StaysWhileAnotherPartnerMayStillTakeIt) {
  SetStates(kCheck, 3);
  const std::int32_t reversal = Reverse(kCheck).reversal.txnId;
  ChangeFile("UPDATE me_transaction SET state = 2 WHERE txn_id = " + std::to_string(reversal) + " AND relation_id = 1");

  EXPECT_EQ(RefusalOfReversing(reversal).remedy, Remedy::kWaitForThePartner);
}

TEST_F(AReversal, ThatWasWithdrawnIsReversedAsThePartnerStillHasTheOriginal) {
  SetStates(kBill, 3);
  const std::int32_t withdrawn = Reverse(kBill).reversal.txnId;
  SetStates(withdrawn, 5);

  const std::int32_t ofTheReversal = Reverse(withdrawn).reversal.txnId;

  EXPECT_THAT(StatesOf(ofTheReversal), ElementsAre(5));
  EXPECT_THAT(StatesOf(Reverse(kBill).reversal.txnId), ElementsAre(0));
}

TEST_F(AReversal, ThatAPartnerHasSentBackIsReversedAndTheOriginalMayBeOnceMore) {
  SetStates(kBill, 3);
  const std::int32_t first = Reverse(kBill).reversal.txnId;
  SetStates(first, 2);

  const std::int32_t ofTheReversal = Reverse(first).reversal.txnId;
  const ReversedTransaction again = Reverse(kBill);

  EXPECT_THAT(StatesOf(first), ElementsAre(5));
  EXPECT_THAT(StatesOf(ofTheReversal), ElementsAre(5));
  EXPECT_THAT(StatesOf(again.reversal.txnId), ElementsAre(0));
  EXPECT_EQ(
      Number("SELECT sum(amount) FROM txn_line WHERE account_id = " + std::to_string(AccountId("Due from Birch"))),
      3700);
}

TEST_F(AReversal, OfAReversalStays) {
  SetStates(kCheck, 3);
  const std::int32_t first = Reverse(kCheck).reversal.txnId;
  ChangeFile("UPDATE me_transaction SET state = 2 WHERE txn_id = " + std::to_string(first) + " AND relation_id = 1");
  ChangeFile("UPDATE me_transaction SET state = 3 WHERE txn_id = " + std::to_string(first) + " AND relation_id = 2");
  const std::int32_t second = Reverse(first).reversal.txnId;
  ChangeFile("UPDATE me_transaction SET state = 2 WHERE txn_id = " + std::to_string(second) + " AND relation_id = 2");

  const Refusal refusal = RefusalOfReversing(second);

  EXPECT_EQ(refusal.remedy, Remedy::kRemoveTheReversal);
  EXPECT_THAT(refusal.why, HasSubstr("a reversal itself"));
}

TEST_F(AReversal, NeedsARelationThatIsEstablishedWhereThePartnerHasToBookIt) {
  SetStates(kBill, 3);
  ChangeFile("UPDATE me_relation SET state = 1");

  EXPECT_EQ(RefusalOfReversing(kBill).remedy, Remedy::kEstablishTheRelation);
  SetStates(kBill, 2);
  EXPECT_NO_THROW(Reverse(kBill));
}

TEST_F(AReversal, IsNotDatedBeforeTheOriginal) {
  const Refusal refusal = RefusalThatLeavesNothing(
      [&] { ReverseTransaction(*company_, {.txnId = kPlainBill, .date = DateType32(2026, 3, 5)}); });

  EXPECT_EQ(refusal.remedy, Remedy::kGiveALaterDate);
  EXPECT_EQ(refusal.why, "the date 2026-03-05 is before that of bill 5, 2026-03-06");
  EXPECT_NO_THROW(ReverseTransaction(*company_, {.txnId = kPlainBill, .date = DateType32(2026, 3, 6)}));
}

TEST_F(AReversal, IsMadeOfWhatIsThere) {
  const Refusal refusal = RefusalOfReversing(77);

  EXPECT_EQ(refusal.why, "there is no transaction 77");
  EXPECT_EQ(refusal.remedy, Remedy::kSeeTransactions);
}

TEST_F(AReversal, NeedsTheRightsToCreateAndToModifyItsType) {
  OpenFor("Robin", {"bills:create", "bills:modify", "checks:create", "journal:modify"});

  EXPECT_EQ(RefusalOfReversing(kCheck).remedy, Remedy::kAskForTheRight);
  EXPECT_EQ(RefusalOfReversing(kOwnEntry).remedy, Remedy::kAskForTheRight);
  EXPECT_NO_THROW(Reverse(kBill));
}

TEST_F(AReversal, TellsWhoMayMakeNoneNotWhatIsThere) {
  OpenFor("Robin", {"bills:create", "checks:modify", "journal:create"});

  const std::string why = RefusalOfReversing(kBill).why;

  EXPECT_EQ(why,
            "The user \"Robin\" needs bills:create and bills:modify, or checks:create and checks:modify, or "
            "journal:create and journal:modify.");
  EXPECT_EQ(RefusalOfReversing(77).why, why);
  EXPECT_EQ(RefusalOfReversing(kPartnersEntry).why, why);
}

TEST_F(AReversal, IsNotDatedOnAClosedDay) {
  ChangeSetting(*company_, "closing-date", "2026-04-30");
  const TransactionToReverse inApril{.txnId = kPlainBill, .date = kApril};

  EXPECT_EQ(RefusalThatLeavesNothing([&] { ReverseTransaction(*company_, inApril); }).remedy,
            Remedy::kDateLaterOrReopen);
  TransactionToReverse allTheSame = inApril;
  allTheSame.closedDays = ClosedDays::kChangedAllTheSame;
  ReverseTransaction(*company_, allTheSame);
  EXPECT_THAT(Trail().back().changes, Tells("after close", {}, "yes"));
}

TEST_F(AReversal, OfAClosedDayIsDatedAfterIt) {
  ChangeSetting(*company_, "closing-date", "2026-03-31");

  EXPECT_EQ(ReverseTransaction(*company_, {.txnId = kPlainBill, .date = kApril}).reversal.date, kApril);
}

TEST_F(AReversal, IsOneLineOfTheTrailWithAllThatItDid) {
  SetStates(kBill, 2);
  const std::size_t before = Trail().size();

  const std::int32_t reversal = ReverseTransaction(*company_, {.txnId = kBill, .date = kApril}).reversal.txnId;

  const std::vector<AuditedDeed> trail = Trail();
  ASSERT_THAT(trail, SizeIs(before + 1));
  EXPECT_EQ(trail.back().action, "transaction.reverse");
  EXPECT_EQ(trail.back().subject, "bill " + std::to_string(reversal));
  EXPECT_EQ(trail.back().firstTxnId, reversal);
  EXPECT_THAT(trail.back().changes, Tells("reverses", {}, "1"));
  EXPECT_THAT(trail.back().changes, Tells("date", {}, "2026-04-01"));
  EXPECT_THAT(trail.back().changes,
              Tells("state of line 2 of bill 1 for Birch Services Company (realm 1001)", "came-back", "closed"));
}

class ACorrection : public InTheBooks {
 protected:
  static TransactionToCorrect OfTheBill() {
    return {.type = EnteredType::kBill, .txnId = kBill, .date = kApril, .memo = standalone::Memo("Power of March")};
  }
  CorrectedTransaction Correct(const TransactionToCorrect& given) {
    return CorrectTransaction(*company_, given, Posting::kPost);
  }
  Refusal RefusalOfCorrecting(const TransactionToCorrect& given) {
    Refusal refusal = RefusalThatLeavesNothing([&] { Correct(given); });
    EXPECT_EQ(refusal.what, UseCase::kCorrectTransaction);
    return refusal;
  }
  std::vector<std::optional<standalone::EarlierRequest>> EarlierOf(const RecordedTransaction& transaction) {
    standalone::StandaloneHost other(path_);
    std::vector<std::optional<standalone::EarlierRequest>> earlier;
    for (const RecordedLine& line : transaction.lines) {
      earlier.push_back(
          other.Request(standalone::Access::kRead, [&] { return other.OwnRequests().EarlierOf(line.lineId); }));
    }
    return earlier;
  }
};

TEST_F(ACorrection, TakesTheOriginalBackAndLeavesWhatIsNotGivenAsItWas) {
  SetStates(kBill, 3);

  const CorrectedTransaction corrected = Correct(OfTheBill());

  EXPECT_EQ(corrected.reversed.txnId, kBill);
  EXPECT_EQ(corrected.reversed.reversal.memo, "March power");
  EXPECT_THAT(corrected.reversed.reversal.lines,
              ElementsAre(Line("Utilities", -5000, "Ours"), Line("Due from Birch", -5000, "Theirs"),
                          Line("Payables", 10000, "")));
  EXPECT_EQ(corrected.correction.date, kApril);
  EXPECT_EQ(corrected.correction.memo, "Power of March");
  EXPECT_EQ(corrected.correction.name->name, "Northern Power");
  EXPECT_THAT(corrected.correction.lines,
              ElementsAre(Line("Utilities", 5000, "Ours"), Line("Due from Birch", 5000, "Theirs"),
                          Line("Payables", -10000, "")));
  EXPECT_THAT(StatesOf(kBill), ElementsAre(3));
  EXPECT_THAT(StatesOf(corrected.reversed.reversal.txnId), ElementsAre(0));
  EXPECT_THAT(StatesOf(corrected.correction.txnId), ElementsAre(0));
  EXPECT_EQ(Number("SELECT earlier_txn_id FROM txn_link WHERE kind = 'corrects' AND txn_id = " +
                   std::to_string(corrected.correction.txnId)),
            kBill);
}

TEST_F(ACorrection, GivesItsMemoToTheLinesThatHadTheOriginalsAndLeavesOtherTexts) {
  const std::int32_t txnId = RecordInspection("Inspection of the lift");

  const CorrectedTransaction corrected =
      Correct({.type = EnteredType::kBill, .txnId = txnId, .memo = standalone::Memo("Inspection of the WEST lift")});

  EXPECT_THAT(corrected.correction.lines,
              ElementsAre(Line("Utilities", 3000, "Rope"), Line("Utilities:Power", 2000, ""),
                          Line("Due from Birch", 5000, "Inspection of the WEST lift"),
                          Line("Payables", -10000, "Inspection of the WEST lift")));
  EXPECT_THAT(corrected.reversed.reversal.lines,
              ElementsAre(Line("Utilities", -3000, "Rope"), Line("Utilities:Power", -2000, ""),
                          Line("Due from Birch", -5000, "Inspection of the lift"),
                          Line("Payables", 10000, "Inspection of the lift")));
}

TEST_F(ACorrection, LeavesLinesWithoutATextWithoutOneWhereTheOriginalHadNoMemo) {
  const std::int32_t txnId = RecordInspection("");

  const RecordedTransaction correction =
      Correct({.type = EnteredType::kBill, .txnId = txnId, .memo = standalone::Memo("Inspection")}).correction;

  EXPECT_EQ(correction.memo, "Inspection");
  EXPECT_THAT(correction.lines, ElementsAre(Line("Utilities", 3000, "Rope"), Line("Utilities:Power", 2000, ""),
                                            Line("Due from Birch", 5000, ""), Line("Payables", -10000, "")));
}

TEST_F(ACorrection, NamesTheRequestOfTheSamePartnerThatItCorrects) {
  using Kind = standalone::EarlierRequest::Kind;
  const RecordedTransaction correction =
      Correct({.type = EnteredType::kCheck, .txnId = kCheck, .memo = standalone::Memo("Repairs of March")}).correction;

  EXPECT_THAT(EarlierOf(correction),
              ElementsAre(standalone::EarlierRequest{.kind = Kind::kCorrects, .targetId = 4},
                          standalone::EarlierRequest{.kind = Kind::kCorrects, .targetId = 5}, std::nullopt));
  EXPECT_NE(correction.lines.at(0).partners->requestId, "of-check-1");
}

TEST_F(ACorrection, TakesNewLinesWithNewShares) {
  TransactionToCorrect given = OfTheBill();
  given.lines = {{.account = "Utilities:Power", .amount = standalone::LineAmount("90.00")}};
  given.shares = {{.partner = "1002", .share = standalone::ShareText("1/3")}};

  const RecordedTransaction correction = Correct(given).correction;

  EXPECT_THAT(correction.lines,
              ElementsAre(Line("Utilities:Power", 6000, ""), Line("Due from Cedar", 3000, "Power of March"),
                          Line("Payables", -9000, "Power of March")));
  EXPECT_THAT(EarlierOf(correction), Each(std::nullopt));
}

TEST_F(ACorrection, CreditsTheAccountThatTheOriginalCredited) {
  Import(*company_, Importable::kAccounts, Csv("name,type\nOther Payables,Accounts Payable\n"));
  Import(*company_, Importable::kTransactions,
         Csv("transaction,type,date,name,memo,account,amount\n"
             "6,bill,2026-03-07,Northern Power,,Other Payables,-5.00\n6,bill,,,,Utilities,5.00\n"));

  const RecordedTransaction correction =
      Correct({.type = EnteredType::kBill,
               .txnId = 6,
               .lines = {{.account = "Utilities", .amount = standalone::LineAmount("6.00")}}})
          .correction;

  EXPECT_THAT(correction.lines, ElementsAre(Line("Utilities", 600, ""), Line("Other Payables", -600, "")));
}

TEST_F(ACorrection, LeavesALineOfAPartnerOnTheAccountOnWhichItWasImported) {
  Import(*company_, Importable::kTransactions,
         Csv("transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n"
             "6,bill,2026-03-07,Northern Power,,Payables,-100.00,,,,\n"
             "6,bill,,,,Utilities:Power,60.00,,,,\n6,bill,,,,Utilities,40.00,,1001,request-6,0\n"));

  const RecordedTransaction correction =
      Correct({.type = EnteredType::kBill, .txnId = 6, .memo = standalone::Memo("Power of March")}).correction;

  EXPECT_THAT(correction.lines,
              testing::UnorderedElementsAre(Line("Payables", -10000, ""), Line("Utilities:Power", 6000, ""),
                                            Line("Utilities", 4000, "")));
  EXPECT_EQ(RefusalOfCorrecting({.type = EnteredType::kBill, .txnId = correction.txnId}).remedy,
            Remedy::kSayWhatIsWrong);
}

TEST_F(ACorrection, LeavesThePartnersOutWhenItIsTold) {
  TransactionToCorrect given = OfTheBill();
  given.lines = {{.account = "Utilities", .amount = standalone::LineAmount("100.00")}};

  EXPECT_EQ(RefusalOfCorrecting(given).remedy, Remedy::kGiveTheSharesAgain);
  given.withoutPartners = true;

  EXPECT_THAT(Correct(given).correction.lines,
              ElementsAre(Line("Utilities", 10000, ""), Line("Payables", -10000, "Power of March")));
}

TEST_F(ACorrection, HasNoSharesWithoutLines) {
  TransactionToCorrect shares = OfTheBill();
  shares.shares = {{.partner = "1001", .share = standalone::ShareText("40%")}};
  TransactionToCorrect noPartners = OfTheBill();
  noPartners.withoutPartners = true;
  TransactionToCorrect credited = OfTheBill();
  credited.credited = "Payables";

  for (const TransactionToCorrect& given : {shares, noPartners, credited}) {
    EXPECT_EQ(RefusalOfCorrecting(given).remedy, Remedy::kGiveLines);
  }
}

TEST_F(ACorrection, SaysWhatIsAnother) {
  TransactionToCorrect nothing = OfTheBill();
  nothing.memo = std::nullopt;
  nothing.date = std::nullopt;
  TransactionToCorrect theSame = OfTheBill();
  theSame.date = kDayOfTheBill;
  theSame.memo = standalone::Memo("March power");
  theSame.name = Existing{"Northern Power"};

  for (const TransactionToCorrect& given : {nothing, theSame}) {
    EXPECT_EQ(RefusalOfCorrecting(given).remedy, Remedy::kSayWhatIsWrong);
  }
}

TEST_F(ACorrection, MakesANewVendorOnTheWay) {
  TransactionToCorrect given = OfTheBill();
  given.name = NewVendor{standalone::NewListName("Southern Power")};

  EXPECT_EQ(Correct(given).correction.name->name, "Southern Power");
  EXPECT_NE(NameId("Southern Power"), 0);
}

TEST_F(ACorrection, ChangesTheDocumentNumberAndThePapers) {
  TransactionToCorrect given{.type = EnteredType::kBill, .txnId = kPlainBill};
  given.documentNumber = standalone::DocumentNumber("W-9");
  given.attachments = {standalone::Attachment("water.pdf")};

  const CorrectedTransaction corrected = Correct(given);

  EXPECT_EQ(corrected.correction.documentNumber, "W-9");
  EXPECT_THAT(corrected.correction.attachments, ElementsAre("water.pdf"));
  EXPECT_EQ(corrected.reversed.reversal.documentNumber, "");
}

TEST_F(ACorrection, DoesNotEnterAPaperThatIsInTheBooksUnlessItIsAnother) {
  TransactionToCorrect given{.type = EnteredType::kBill, .txnId = kPlainBill};
  given.documentNumber = standalone::DocumentNumber("W-9");
  const std::int32_t first = Correct(given).correction.txnId;
  given.txnId = kBill;

  const Refusal refusal = RefusalOfCorrecting(given);

  EXPECT_EQ(refusal.remedy, Remedy::kRecordAgain);
  EXPECT_THAT(refusal.why, HasSubstr("bill " + std::to_string(first)));
  given.again = true;
  EXPECT_EQ(Correct(given).correction.documentNumber, "W-9");
}

TEST_F(ACorrection, OfSomethingElseKeepsTheDocumentNumberThatTwoHave) {
  TransactionToCorrect given{.type = EnteredType::kBill, .txnId = kPlainBill};
  given.documentNumber = standalone::DocumentNumber("W-9");
  Correct(given);
  given.txnId = kBill;
  given.again = true;
  const std::int32_t second = Correct(given).correction.txnId;

  const CorrectedTransaction corrected =
      Correct({.type = EnteredType::kBill, .txnId = second, .memo = standalone::Memo("Another one")});

  EXPECT_EQ(corrected.correction.documentNumber, "W-9");
}

TEST_F(ACorrection, IsMadeOfWhatWasEnteredHereAndStands) {
  const std::int32_t reversal = Reverse(kPlainBill).reversal.txnId;
  const std::int32_t move = MoveExpense(*company_, {.txnId = kPartnersEntry, .account = "Checking"}).move.txnId;
  const auto refusal = [this](EnteredType type, std::int32_t txnId) {
    return RefusalOfCorrecting({.type = type, .txnId = txnId, .memo = standalone::Memo("Corrected")}).remedy;
  };

  EXPECT_EQ(refusal(EnteredType::kBill, kPlainBill), Remedy::kSeeTheReversal);
  EXPECT_EQ(refusal(EnteredType::kBill, reversal), Remedy::kRemoveTheReversal);
  EXPECT_EQ(refusal(EnteredType::kEntry, move), Remedy::kMoveTheExpenseAgain);
  EXPECT_EQ(refusal(EnteredType::kEntry, kPartnersEntry), Remedy::kTakeBackTheEntry);
  EXPECT_EQ(refusal(EnteredType::kCheck, kBill), Remedy::kSeeTransactions);
  EXPECT_EQ(refusal(EnteredType::kBill, 77), Remedy::kSeeTransactions);
}

TEST_F(ACorrection, WaitsForThePartnersAnswer) {
  SetStates(kBill, 1);

  EXPECT_EQ(RefusalOfCorrecting(OfTheBill()).remedy, Remedy::kWaitForThePartner);
}

TEST_F(ACorrection, NeedsRelationsThatAreEstablished) {
  ChangeFile("UPDATE me_relation SET state = 1");

  EXPECT_EQ(RefusalOfCorrecting(OfTheBill()).remedy, Remedy::kEstablishTheRelation);
}

TEST_F(ACorrection, MovesABillToAnEarlierDayAndTakesItBackOnItsOwn) {
  const DateType32 earlier(2026, 3, 1);

  const CorrectedTransaction corrected = Correct({.type = EnteredType::kBill, .txnId = kBill, .date = earlier});

  EXPECT_EQ(corrected.correction.date, earlier);
  EXPECT_EQ(corrected.reversed.reversal.date, kDayOfTheBill);
}

TEST_F(ACorrection, OfABillThatIsDatedAfterTodayIsDatedToday) {
  const DateType32 ahead(2999, 12, 31);
  TransactionToCorrect given = OfTheBill();
  given.date = ahead;
  given.txnId = Correct(given).correction.txnId;
  given.date = std::nullopt;
  given.memo = standalone::Memo("Power of this month");

  const CorrectedTransaction corrected = Correct(given);

  EXPECT_LT(corrected.correction.date.Compare(ahead), 0);
  EXPECT_EQ(corrected.reversed.reversal.date, ahead);
}

TEST_F(ACorrection, IsNotDatedOnAClosedDayNorIsItsReversal) {
  ChangeSetting(*company_, "closing-date", "2026-03-01");
  TransactionToCorrect given = OfTheBill();
  given.date = DateType32(2026, 3, 1);
  EXPECT_EQ(RefusalOfCorrecting(given).remedy, Remedy::kDateLaterOrReopen);
  ChangeSetting(*company_, "closing-date", "2026-04-01");
  given = OfTheBill();
  EXPECT_EQ(RefusalOfCorrecting(given).remedy, Remedy::kDateLaterOrReopen);

  given.closedDays = ClosedDays::kChangedAllTheSame;
  Correct(given);

  EXPECT_THAT(Trail().back().changes, Tells("after close", {}, "yes"));
}

TEST_F(ACorrection, NeedsTheRightsToCreateAndToModifyItsType) {
  AddUser(*company_, UserWith("Robin", {"bills:create", "checks:modify"}));
  AddUser(*company_, UserWith("Kim", {"bills:create", "bills:modify"}));
  Open("Robin");
  EXPECT_EQ(RefusalOfCorrecting(OfTheBill()).remedy, Remedy::kAskForTheRight);

  Open("Kim");

  EXPECT_NO_THROW(Correct(OfTheBill()));
}

TEST_F(ACorrection, IsOneLineOfTheTrailWithBothTransactions) {
  SetStates(kBill, 2);
  const std::size_t before = Trail().size();

  const CorrectedTransaction corrected = Correct(OfTheBill());

  const std::vector<AuditedDeed> trail = Trail();
  ASSERT_THAT(trail, SizeIs(before + 1));
  EXPECT_EQ(trail.back().action, "bill.correct");
  EXPECT_EQ(trail.back().firstTxnId, corrected.reversed.reversal.txnId);
  EXPECT_EQ(trail.back().lastTxnId, corrected.correction.txnId);
  EXPECT_THAT(trail.back().changes, Tells("corrects", {}, "1"));
  EXPECT_THAT(trail.back().changes, Tells("reversal", {}, "bill " + std::to_string(corrected.reversed.reversal.txnId)));
  EXPECT_THAT(trail.back().changes,
              Tells("state of line 2 of bill 1 for Birch Services Company (realm 1001)", "came-back", "closed"));
}

TEST_F(ACorrection, ThatIsOnlySeenLeavesNothing) {
  const std::string before = WholeFile();

  const CorrectedTransaction seen = CorrectTransaction(*company_, OfTheBill(), Posting::kPreviewOnly);

  EXPECT_EQ(WholeFile(), before);
  EXPECT_EQ(seen.correction.txnId, 0);
  EXPECT_EQ(seen.reversed.reversal.txnId, 0);
  EXPECT_EQ(seen.correction.memo, "Power of March");
}

TEST_F(ACorrection, KeepsTheReversalThatItStandsUpon) {
  SetStates(kBill, 3);
  const std::int32_t reversal = Correct(OfTheBill()).reversed.reversal.txnId;

  EXPECT_EQ(RefusalOfRemoving(reversal).remedy, Remedy::kTakeBackTheLaterFirst);
  SetStates(reversal, 2);
  EXPECT_EQ(RefusalOfReversing(reversal).remedy, Remedy::kTakeBackTheLaterFirst);
}

TEST_F(ACorrection, LetsTheReversalGoOnceItIsReversedItself) {
  SetStates(kBill, 3);
  const CorrectedTransaction corrected = Correct(OfTheBill());
  SetStates(corrected.reversed.reversal.txnId, 2);

  Reverse(corrected.correction.txnId);

  EXPECT_NO_THROW(Reverse(corrected.reversed.reversal.txnId));
}

class ARemoval : public InTheBooks {};

TEST_F(ARemoval, LeavesNothingOfTheTransactionButItsLineOfTheTrail) {
  const std::size_t before = Trail().size();

  const RecordedTransaction removed = RemoveTransaction(*company_, kBill);

  EXPECT_THAT(removed.lines, SizeIs(3));
  EXPECT_EQ(removed.lines.at(1).partners->requestId, "of-bill");
  for (const char* const count :
       {"SELECT count(*) FROM txn WHERE id = 1", "SELECT count(*) FROM txn_line WHERE txn_id = 1",
        "SELECT count(*) FROM me_transaction WHERE txn_id = 1"}) {
    EXPECT_EQ(Number(count), 0) << count;
  }
  const std::vector<AuditedDeed> trail = Trail();
  ASSERT_THAT(trail, SizeIs(before + 1));
  EXPECT_EQ(trail.back().action, "transaction.remove");
  EXPECT_EQ(trail.back().subject, "bill 1");
  EXPECT_THAT(trail.back().changes, Tells("memo", "March power", {}));
  EXPECT_THAT(trail.back().changes,
              Contains(AllOf(Field(&AuditedChange::field, "line"), Field(&AuditedChange::after, Eq(std::nullopt)),
                             Field(&AuditedChange::before, testing::Optional(HasSubstr("of-bill"))))));
}

TEST_F(ARemoval, TakesAnEntryOfTheCompanysOwn) {
  RemoveTransaction(*company_, kOwnEntry);

  EXPECT_EQ(Number("SELECT count(*) FROM me_own_request"), 0);
}

TEST_F(ARemoval, TakesNothingThatSomebodyWasSent) {
  for (const int state : {1, 2, 3, 5}) {
    ChangeFile("UPDATE me_transaction SET state = " + std::to_string(state) + " WHERE request_id = 'of-check-2'");

    const Refusal refusal = RefusalOfRemoving(kCheck);

    EXPECT_EQ(refusal.what, UseCase::kRemoveTransaction);
    EXPECT_EQ(refusal.remedy, Remedy::kReverseInstead) << state;
    EXPECT_THAT(refusal.why, HasSubstr("line 5 of check 2 for Cedar Leasing (realm 1002)"));
  }
}

TEST_F(ARemoval, TakesNothingOfBefore) {
  ChangeFile("UPDATE me_transaction SET of_before = 1 WHERE txn_id = 1");

  EXPECT_EQ(RefusalOfRemoving(kBill).remedy, Remedy::kReverseInstead);
}

TEST_F(ARemoval, TakesNoPartnersRequest) {
  EXPECT_EQ(RefusalOfRemoving(kPartnersEntry).remedy, Remedy::kTakeBackTheEntry);
}

TEST_F(ARemoval, TakesNothingThatIsReversed) {
  Reverse(kPlainBill);

  EXPECT_EQ(RefusalOfRemoving(kPlainBill).remedy, Remedy::kTakeBackTheLaterFirst);
}

TEST_F(ARemoval, OfAReversalGivesTheOriginalBack) {
  SetStates(kBill, 3);
  const std::int32_t reversal = Reverse(kBill).reversal.txnId;

  RemoveTransaction(*company_, reversal);

  EXPECT_THAT(StatesOf(kBill), ElementsAre(3));
  EXPECT_NO_THROW(Reverse(kBill));
}

TEST_F(ARemoval, OfAReversalIsNoneWhereARequestWasClosedByIt) {
  const std::int32_t reversal = Reverse(kBill).reversal.txnId;

  EXPECT_EQ(RefusalOfRemoving(reversal).remedy, Remedy::kCopyTheOriginal);
}

TEST_F(ARemoval, LeavesClosedDaysAsTheyAre) {
  ChangeSetting(*company_, "closing-date", "2026-03-06");

  EXPECT_EQ(RefusalOfRemoving(kPlainBill).remedy, Remedy::kDateLaterOrReopen);
  RemoveTransaction(*company_, kPlainBill, ClosedDays::kChangedAllTheSame);
  EXPECT_THAT(Trail().back().changes, Tells("after close", {}, "yes"));
}

TEST_F(ARemoval, NeedsTheRightToDeleteItsType) {
  OpenFor("Robin", {"bills:delete"});

  EXPECT_EQ(RefusalOfRemoving(kCheck).remedy, Remedy::kAskForTheRight);
  EXPECT_NO_THROW(RemoveTransaction(*company_, kBill));
}

TEST_F(ARemoval, TellsWhoMayMakeNoneNotWhatIsThere) {
  OpenFor("Robin", {"bills:create", "bills:modify"});

  const std::string why = RefusalOfRemoving(kBill).why;

  EXPECT_EQ(why, "The user \"Robin\" needs bills:delete, or checks:delete, or journal:delete.");
  EXPECT_EQ(RefusalOfRemoving(77).why, why);
}

TEST_F(ARemoval, TakesWhatIsThere) {
  EXPECT_EQ(RefusalOfRemoving(77).why, "there is no transaction 77");
}

TEST_F(InTheBooks, NamesWhatCanGoFirstOfAllThatBelongsToATransaction) {
  const CorrectedTransaction corrected = CorrectTransaction(
      *company_,
      {.type = EnteredType::kBill, .txnId = kBill, .date = kApril, .memo = standalone::Memo("Power of March")},
      Posting::kPost);

  EXPECT_EQ(RefusalOfRemoving(kBill).why,
            "bill 1 stays as long as bill " + std::to_string(corrected.correction.txnId) + ", which belongs to it");
}

TEST_F(InTheBooks, AreAuditedTogetherWithWhatReversesCorrectsOrMovesThem) {
  const CorrectedTransaction corrected = CorrectTransaction(
      *company_,
      {.type = EnteredType::kBill, .txnId = kBill, .date = kApril, .memo = standalone::Memo("Power of March")},
      Posting::kPost);
  const std::int32_t again = Reverse(corrected.correction.txnId).reversal.txnId;
  const std::int32_t check = Reverse(kCheck).reversal.txnId;
  const std::int32_t move = MoveExpense(*company_, {.txnId = kPartnersEntry, .account = "Checking"}).move.txnId;
  RemoveTransaction(*company_, move);
  const auto actionsAbout = [&](std::int32_t txnId) {
    std::vector<std::string> actions;
    for (const AuditedDeed& deed :
         ListAudit(*company_, {.user = {}, .action = {}, .period = {NullDate(), NullDate()}, .txnId = txnId})) {
      actions.push_back(deed.action);
    }
    return actions;
  };

  for (const std::int32_t ofTheBill : {kBill, corrected.reversed.reversal.txnId, again}) {
    EXPECT_THAT(actionsAbout(ofTheBill), ElementsAre("import", "bill.correct", "transaction.reverse")) << ofTheBill;
  }
  EXPECT_THAT(actionsAbout(check), ElementsAre("import", "transaction.reverse"));
  EXPECT_THAT(actionsAbout(kPartnersEntry), ElementsAre("import", "journal.move", "transaction.remove"));
  EXPECT_THAT(actionsAbout(kPlainBill), ElementsAre("import"));
}

class AMove : public InTheBooks {
 protected:
  MovedExpense Move(const char* account, std::optional<DateType32> date = kApril) {
    return MoveExpense(*company_, {.txnId = kPartnersEntry, .account = account, .date = date});
  }
  Refusal RefusalOfMoving(const char* account) {
    return RefusalThatLeavesNothing([&] { Move(account); });
  }
};

TEST_F(AMove, DebitsTheNewAccountAndCreditsTheOldOne) {
  const MovedExpense moved = Move("Utilities:Power");

  EXPECT_EQ(moved.txnId, kPartnersEntry);
  EXPECT_EQ(moved.from.name, "Utilities");
  EXPECT_EQ(moved.to.name, "Utilities:Power");
  EXPECT_EQ(moved.move.type, EnteredType::kEntry);
  EXPECT_EQ(moved.move.date, kApril);
  EXPECT_THAT(moved.move.lines,
              ElementsAre(Line("Utilities:Power", 1200, "Heating"), Line("Utilities", -1200, "Heating")));
  EXPECT_EQ(Trail().back().action, "journal.move");
  EXPECT_THAT(Trail().back().changes, Tells("moves", {}, "4"));
}

TEST_F(AMove, GoesOnFromWhereTheLastOneWent) {
  Move("Utilities:Power");

  const MovedExpense back = Move("Utilities");

  EXPECT_EQ(back.from.name, "Utilities:Power");
  EXPECT_THAT(back.move.lines,
              ElementsAre(Line("Utilities", 1200, "Heating"), Line("Utilities:Power", -1200, "Heating")));
}

TEST_F(AMove, GoesOnFromTheEntryOnceTheLastOneWasReversed) {
  Reverse(Move("Utilities:Power").move.txnId);

  EXPECT_EQ(Move("Utilities:Power").from.name, "Utilities");
}

TEST_F(AMove, GoesNowhereWhereTheExpenseStandsAlready) {
  EXPECT_EQ(RefusalOfMoving("Utilities").remedy, Remedy::kNameAnExpenseAccount);
  Move("Utilities:Power");
  const Refusal refusal = RefusalOfMoving("utilities:power");
  EXPECT_EQ(refusal.what, UseCase::kMoveExpense);
  EXPECT_EQ(refusal.why, "the expense of journal entry 4 stands at \"Utilities:Power\" already");
}

TEST_F(AMove, DoesNotGoToTheAccountOfWhatIsDue) {
  EXPECT_EQ(RefusalOfMoving("Due to Birch").remedy, Remedy::kNameAnExpenseAccount);
}

TEST_F(AMove, DoesNotGoToAnAccountThatIsPairedWithAnyPartner) {
  for (const char* const paired : {"Due from Birch", "Due to Cedar"}) {
    const Refusal refusal = RefusalOfMoving(paired);

    EXPECT_EQ(refusal.remedy, Remedy::kNameAnExpenseAccount);
    EXPECT_THAT(refusal.why, HasSubstr("is paired with a partner"));
  }
}

TEST_F(AMove, DoesNotGoToAnAccountThatTakesNoAmounts) {
  const std::string before = WholeFile();
  const std::string deleted = std::to_string(Number("SELECT id FROM account WHERE full_name = 'Old Rent'"));

  EXPECT_THROW(Move(deleted.c_str()), standalone::InvalidInput);
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(AMove, IsOfAPartnersRequestOnly) {
  for (const std::int32_t own : {kBill, kOwnEntry}) {
    EXPECT_EQ(
        RefusalThatLeavesNothing([&] { MoveExpense(*company_, {.txnId = own, .account = "Utilities:Power"}); }).remedy,
        Remedy::kReverseOrRemove);
  }
}

TEST_F(AMove, IsOfOneExpense) {
  Import(*company_, Importable::kTransactions,
         Csv("transaction,type,date,name,memo,account,amount,partner_realm,request_id,state\n"
             "6,journal,2026-03-07,,,Utilities,5.00,1001,from-birch-2,3\n"
             "6,journal,,,,Utilities:Power,6.00,1001,from-birch-3,3\n"
             "6,journal,,,,Due to Birch,-11.00,,,\n"));

  EXPECT_EQ(RefusalThatLeavesNothing([&] { MoveExpense(*company_, {.txnId = 6, .account = "Checking"}); }).remedy,
            Remedy::kEnterAnEntry);
}

TEST_F(AMove, ThatIsReversedIsMadeAnewAndNotReversedOnceMore) {
  const std::int32_t move = Move("Utilities:Power").move.txnId;
  Reverse(move);

  const Refusal refusal = RefusalOfReversing(move);

  EXPECT_THAT(refusal.why, HasSubstr("is reversed already"));
  EXPECT_EQ(refusal.remedy, Remedy::kMoveTheExpenseAgain);
}

TEST_F(AMove, IsNotDatedBeforeTheEntryNorTheLastMove) {
  EXPECT_EQ(RefusalThatLeavesNothing([&] { Move("Checking", DateType32(2026, 3, 4)); }).remedy,
            Remedy::kGiveALaterDate);
  Move("Utilities:Power");
  EXPECT_EQ(RefusalThatLeavesNothing([&] { Move("Checking", DateType32(2026, 3, 31)); }).remedy,
            Remedy::kGiveALaterDate);
}

TEST_F(AMove, IsNotDatedOnAClosedDay) {
  ChangeSetting(*company_, "closing-date", "2026-04-01");

  EXPECT_EQ(RefusalOfMoving("Utilities:Power").remedy, Remedy::kDateLaterOrReopen);
  MoveExpense(*company_, {.txnId = kPartnersEntry,
                          .account = "Utilities:Power",
                          .date = kApril,
                          .closedDays = ClosedDays::kChangedAllTheSame});
  EXPECT_THAT(Trail().back().changes, Tells("after close", {}, "yes"));
}

TEST_F(AMove, NeedsTheRightsToCreateAndToModifyEntries) {
  AddUser(*company_, UserWith("Robin", {"journal:create"}));
  AddUser(*company_, UserWith("Lee", {"journal:modify"}));
  AddUser(*company_, UserWith("Kim", {"journal:modify", "journal:create"}));
  for (const char* const user : {"Robin", "Lee"}) {
    Open(user);
    EXPECT_EQ(RefusalOfMoving("Utilities:Power").remedy, Remedy::kAskForTheRight) << user;
    EXPECT_EQ(RefusalThatLeavesNothing([&] { MoveExpense(*company_, {.txnId = 77, .account = "Nowhere"}); }).remedy,
              Remedy::kAskForTheRight);
  }
  Open("Kim");
  EXPECT_NO_THROW(Move("Utilities:Power"));
}

TEST_F(AMove, TellsNothingOfABillToWhoHasNoRightToBills) {
  OpenFor("Robin", {"journal:create", "journal:modify", "journal:delete"});

  const Refusal moved =
      RefusalThatLeavesNothing([&] { MoveExpense(*company_, {.txnId = kBill, .account = "Checking"}); });
  const Refusal removed = RefusalThatLeavesNothing([&] { RemoveJournalEntry(*company_, kBill); });

  EXPECT_EQ(moved.why, "The user \"Robin\" has no right bills:create.");
  EXPECT_EQ(removed.why, "The user \"Robin\" has no right bills:delete.");
  EXPECT_EQ(RefusalThatLeavesNothing([&] { RemoveJournalEntry(*company_, kOwnEntry); }).remedy,
            Remedy::kReverseOrRemove);
}

TEST_F(AMove, KeepsTheEntryFromBeingRemoved) {
  const std::int32_t move = Move("Utilities:Power").move.txnId;

  const Refusal refusal = RefusalThatLeavesNothing([&] { RemoveJournalEntry(*company_, kPartnersEntry); });

  EXPECT_EQ(refusal.remedy, Remedy::kTakeBackTheLaterFirst);
  RemoveTransaction(*company_, move);
  EXPECT_NO_THROW(RemoveJournalEntry(*company_, kPartnersEntry));
}

TEST_F(AMove, IsTakenBackLastOneFirst) {
  const std::int32_t first = Move("Utilities:Power").move.txnId;
  const std::int32_t second = Move("Checking").move.txnId;

  EXPECT_EQ(RefusalOfReversing(first).remedy, Remedy::kTakeBackTheLaterFirst);
  EXPECT_EQ(RefusalOfRemoving(first).remedy, Remedy::kTakeBackTheLaterFirst);
  Reverse(second);
  EXPECT_NO_THROW(RemoveTransaction(*company_, first));
}

TEST_F(AMove, ThatWasReversedIsTakenBackAfterAllThatCameLater) {
  const std::int32_t first = Move("Utilities:Power").move.txnId;
  const std::int32_t reversal = Reverse(first).reversal.txnId;
  const std::int32_t second = Move("Checking").move.txnId;
  const auto refusalOfTheEntry = [&] {
    return RefusalThatLeavesNothing([&] { RemoveJournalEntry(*company_, kPartnersEntry); }).why;
  };

  EXPECT_EQ(refusalOfTheEntry(), "the expense of journal entry 4 was moved by journal entry " + std::to_string(second));
  EXPECT_THAT(RefusalOfRemoving(first).why, HasSubstr("journal entry " + std::to_string(second)));
  EXPECT_THAT(RefusalOfRemoving(reversal).why, HasSubstr("journal entry " + std::to_string(second)));
  RemoveTransaction(*company_, second);
  EXPECT_EQ(refusalOfTheEntry(),
            "the expense of journal entry 4 was moved and moved back by journal entry " + std::to_string(reversal));
  RemoveTransaction(*company_, reversal);
  RemoveTransaction(*company_, first);
  EXPECT_NO_THROW(RemoveJournalEntry(*company_, kPartnersEntry));
}

TEST_F(AMove, ThatIsReversedDoesNotComeBackBehindALaterOne) {
  const std::int32_t reversal = Reverse(Move("Utilities:Power").move.txnId).reversal.txnId;
  Move("Checking");

  EXPECT_EQ(RefusalOfRemoving(reversal).remedy, Remedy::kTakeBackTheLaterFirst);
}

}  // namespace
}  // namespace desk
