#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "crash/Wish.h"
#include "support/TemporaryFolder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Transaction Entry(const std::string& request, std::int64_t amount) {
  return {.type = 8,
          .date = 1,
          .name = "Walker",
          .memo = "Walker",
          .posted = true,
          .lines = {{10, "Rent", amount}, {11, kDueTo, -amount}},
          .rows = {{10, kRealm, request, 8, 3}}};
}

Contents BooksWith(const std::map<std::int64_t, Transaction>& transactions) {
  return {.transactions = transactions, .accounts = {"Rent", kDueTo}, .names = {"Walker"}};
}

Report Done(std::int64_t transaction) {
  return {.kind = Report::Kind::kDone, .transaction = transaction};
}

Report Refused() {
  return {.kind = Report::Kind::kRefused, .status = 0};
}

constexpr std::int64_t kBillId = 5;

// What a bill of 200 is that two companies share, entered as `key`, and what takes it back and stands in its place.
Transaction Bill(const std::string& key, int state) {
  return {.type = kBill,
          .date = 1,
          .name = "Walker",
          .memo = key,
          .posted = true,
          .lines = {{10, "Rent", 100}, {11, kDueFrom, 100}, {12, "Payables", -200}},
          .rows = {{11, kRealm, "of-" + key, kBill, state}}};
}
Transaction ReversalOfTheBill(int state) {
  Transaction reversal = Bill("bill", state);
  for (EntryLine& line : reversal.lines) line = {line.id + 10, line.account, -line.amount};
  reversal.rows = {{21, kRealm, "of-reversal", kBill, state, "reverses", 11}};
  reversal.links = {{"reverses", kBillId}};
  return reversal;
}
Transaction CorrectionOfTheBill() {
  Transaction correction = Bill("better", 0);
  for (EntryLine& line : correction.lines) line.id += 20;
  correction.rows = {{31, kRealm, "of-better", kBill, 0, "corrects", 11}};
  correction.links = {{"corrects", kBillId}};
  return correction;
}

class AWish : public testing::Test {
 protected:
  static std::unique_ptr<Wish> Booking() {
    return BookingWish("alder.company", {.request = "request", .amount = 100, .expense = "Rent", .name = "Walker"});
  }

  static std::vector<std::string> Faults(Wish& wish, const std::vector<Report>& reports, const Contents& before,
                                         const Contents& after) {
    std::vector<std::string> faults;
    Change change(before, after);
    wish.Judge(reports, change, faults);
    for (const std::string& fault : change.Unclaimed()) faults.push_back(fault);
    return faults;
  }

  static BillOrder OrderOf(const std::string& key) {
    return {.key = key, .half = 100, .expense = "Rent", .name = "Walker"};
  }
  static std::unique_ptr<Wish> BillOf(const std::string& key) { return BillWish("alder.company", OrderOf(key)); }
  static std::unique_ptr<Wish> CorrectionOf(const Transaction& before) {
    return CorrectionWish("alder.company", kBillId, before, OrderOf("better"));
  }
  // With what stands after a correction of a bill in that state.
  static Contents Corrected(int stateOfTheOriginal, int stateOfTheReversal) {
    return BooksWith({{kBillId, Bill("bill", stateOfTheOriginal)},
                      {6, ReversalOfTheBill(stateOfTheReversal)},
                      {7, CorrectionOfTheBill()}});
  }
  static std::vector<std::string> FaultsOfCorrecting(int state, const Contents& after) {
    const Transaction before = Bill("bill", state);
    return Faults(*CorrectionOf(before), {Report{}}, BooksWith({{kBillId, before}}), after);
  }

  const Contents empty_ = BooksWith({});
  const Contents booked_ = BooksWith({{5, Entry("request", 100)}});
};

TEST_F(AWish, ToBookMayBeThereOrNotWhenNothingWasReported) {
  EXPECT_THAT(Faults(*Booking(), {Report{}}, empty_, empty_), IsEmpty());
  EXPECT_THAT(Faults(*Booking(), {Report{}}, empty_, booked_), IsEmpty());
}

TEST_F(AWish, ThatWasReportedAsDoneHasToBeThere) {
  EXPECT_THAT(Faults(*Booking(), {Done(5)}, empty_, empty_),
              ElementsAre(HasSubstr("another transaction"), HasSubstr("reported as done, but it is not there")));
}

TEST_F(AWish, ToBookIsBookedUnderTheReportedNumber) {
  EXPECT_THAT(Faults(*Booking(), {Done(5)}, empty_, booked_), IsEmpty());
  EXPECT_THAT(Faults(*Booking(), {Done(6)}, empty_, booked_), ElementsAre(HasSubstr("another transaction")));
}

TEST_F(AWish, ToBookIsBookedWithItsAmount) {
  EXPECT_THAT(Faults(*Booking(), {Done(5)}, empty_, BooksWith({{5, Entry("request", 99)}})),
              ElementsAre(HasSubstr("not booked as ordered")));
}

TEST_F(AWish, ToBookIsFulfilledOnce) {
  const Contents twice = BooksWith({{5, Entry("request", 100)}, {6, Entry("request", 100)}});

  EXPECT_THAT(Faults(*Booking(), {Done(5)}, empty_, twice), ElementsAre("nobody booked transaction 6"));
}

TEST_F(AWish, IsNotFulfilledAgainLater) {
  const std::unique_ptr<Wish> wish = Booking();
  Faults(*wish, {Report{}}, empty_, booked_);

  EXPECT_THAT(Faults(*wish, {Done(6)}, booked_, BooksWith({{5, Entry("request", 100)}, {6, Entry("request", 100)}})),
              ElementsAre("done a second time: journal record"));
}

TEST_F(AWish, IsOnlyRefusedWhenItIsFulfilledAlready) {
  EXPECT_THAT(Faults(*Booking(), {Refused()}, empty_, empty_), ElementsAre(HasSubstr("refused without a reason")));
  EXPECT_THAT(Faults(*Booking(), {Report{}, Refused()}, empty_, booked_), IsEmpty());
}

TEST_F(AWish, ThatFailedIsAFault) {
  const Report failed{.kind = Report::Kind::kFailed, .text = "signal 11"};

  EXPECT_THAT(Faults(*Booking(), {failed}, empty_, empty_), ElementsAre("journal record failed: signal 11"));
}

TEST_F(AWish, ToBookUnderANewAccountComesWithTheAccount) {
  Contents after = BooksWith({{5, Entry("request", 100)}});
  after.accounts.insert("Roof");
  after.transactions.at(5).lines[0].account = "Roof";
  const auto wish =
      BookingWish("alder.company",
                  {.request = "request", .amount = 100, .expense = "Roof", .expenseIsNew = true, .name = "Walker"});

  EXPECT_THAT(Faults(*wish, {Done(5)}, empty_, after), IsEmpty());
}

TEST_F(AWish, LeavesNoNewAccountBehindWithoutItsEntry) {
  Contents after = empty_;
  after.accounts.insert("Roof");

  EXPECT_THAT(Faults(*Booking(), {Report{}}, empty_, after),
              ElementsAre("nobody has an entry for the new account Roof"));
}

TEST_F(AWish, ToRemoveTakesTheWholeEntry) {
  EXPECT_THAT(Faults(*RemovalWish("alder.company", 5), {Done(5)}, booked_, empty_), IsEmpty());
  EXPECT_THAT(Faults(*RemovalWish("alder.company", 5), {Done(5)}, booked_, booked_),
              ElementsAre(HasSubstr("not there")));
}

TEST_F(AWish, ToEstablishChangesRowAndConfirmationTogether) {
  Contents pending = booked_;
  pending.transactions.at(5).rows[0].state = 1;
  Contents half = booked_;
  Contents whole = booked_;
  whole.transactions.at(5).confirmed = true;
  const auto wish = [&] {
    return StateWish("alder.company", 5, pending.transactions.at(5).rows[0], 3);
  };

  EXPECT_THAT(Faults(*wish(), {Report{}}, pending, whole), IsEmpty());
  EXPECT_THAT(Faults(*wish(), {Report{}}, pending, half), ElementsAre("the state is changed by half: transaction 5"));
}

TEST_F(AWish, ToImportIsFulfilledWhollyOrNotAtAll) {
  const standalone::TemporaryFolder folder;
  Transaction imported = Entry("key-0", 100);
  imported.memo = "key";
  const auto wish = [&] {
    return ImportWish("alder.company", folder / "rows.csv", "key", 2);
  };

  EXPECT_THAT(Faults(*wish(), {Report{}}, empty_, BooksWith({{5, imported}, {6, imported}})), IsEmpty());
  EXPECT_THAT(Faults(*wish(), {Report{}}, empty_, BooksWith({{5, imported}})),
              ElementsAre(HasSubstr("imported in part: 1 of 2")));
}

TEST_F(AWish, ToEnterABillMayBeThereOrNotWhenNothingWasReported) {
  EXPECT_THAT(Faults(*BillOf("bill"), {Report{}}, empty_, empty_), IsEmpty());
  EXPECT_THAT(Faults(*BillOf("bill"), {Report{}}, empty_, BooksWith({{kBillId, Bill("bill", 0)}})), IsEmpty());
  EXPECT_THAT(Faults(*BillOf("bill"), {Done(kBillId)}, empty_, empty_),
              ElementsAre(HasSubstr("another transaction"), HasSubstr("reported as done, but it is not there")));
}

TEST_F(AWish, ToEnterABillIsEnteredWithThePartnersPart) {
  Transaction withoutRow = Bill("bill", 0);
  withoutRow.rows.clear();
  Transaction rowOfAnotherLine = Bill("bill", 0);
  rowOfAnotherLine.rows[0].line = 10;
  Transaction withoutShare = Bill("bill", 0);
  withoutShare.lines = {{10, "Rent", 200}, {12, "Payables", -200}};

  for (const Transaction& bill : {withoutRow, rowOfAnotherLine, withoutShare}) {
    EXPECT_THAT(Faults(*BillOf("bill"), {Report{}}, empty_, BooksWith({{kBillId, bill}})),
                ElementsAre("not entered as ordered: bill bill"));
  }
}

TEST_F(AWish, ToEnterABillIsFulfilledOnce) {
  const std::unique_ptr<Wish> wish = BillOf("bill");
  const Contents once = BooksWith({{kBillId, Bill("bill", 0)}});
  Faults(*wish, {Report{}}, empty_, once);

  EXPECT_THAT(Faults(*wish, {Report{}}, once, BooksWith({{kBillId, Bill("bill", 0)}, {6, Bill("bill", 0)}})),
              ElementsAre("done a second time: bill record"));
}

TEST_F(AWish, ToCorrectABillClosesWhatThePartnerHasNotAndKeepsWhatItHas) {
  EXPECT_THAT(FaultsOfCorrecting(0, Corrected(5, 5)), IsEmpty());
  EXPECT_THAT(FaultsOfCorrecting(2, Corrected(5, 5)), IsEmpty());
  EXPECT_THAT(FaultsOfCorrecting(3, Corrected(3, 0)), IsEmpty());
  EXPECT_THAT(FaultsOfCorrecting(0, BooksWith({{kBillId, Bill("bill", 0)}})), IsEmpty());
  EXPECT_THAT(FaultsOfCorrecting(0, Corrected(0, 5)), ElementsAre(HasSubstr("as if nothing had been done")));
  EXPECT_THAT(FaultsOfCorrecting(3, Corrected(3, 5)), ElementsAre(HasSubstr("not reversed as it was")));
}

TEST_F(AWish, ToCorrectABillIsFulfilledWhollyOrNotAtAll) {
  for (const std::int64_t missing : {6, 7}) {
    Contents half = Corrected(5, 5);
    half.transactions.erase(missing);

    EXPECT_THAT(FaultsOfCorrecting(0, half), ElementsAre("corrected by half: transaction 5"));
  }
}

TEST_F(AWish, ToCorrectABillIsDoneAsOrdered) {
  Contents another = Corrected(5, 5);
  another.transactions.at(7).lines[0].account = "Utilities";
  Contents unnamed = Corrected(5, 5);
  unnamed.transactions.at(7).rows[0].names.clear();
  Contents notNegated = Corrected(5, 5);
  notNegated.transactions.at(6).lines[0].amount = 100;

  EXPECT_THAT(FaultsOfCorrecting(0, another), ElementsAre(HasSubstr("not corrected as ordered")));
  EXPECT_THAT(FaultsOfCorrecting(0, unnamed), ElementsAre(HasSubstr("not corrected as ordered")));
  EXPECT_THAT(FaultsOfCorrecting(0, notNegated), ElementsAre(HasSubstr("not reversed as it was")));
}

TEST_F(AWish, ToCorrectABillIsForOneThatIsNotSentAndHasNoReversal) {
  Contents books = Corrected(5, 5);
  books.transactions.insert({{8, Bill("sent", 1)}, {9, Bill("open", 0)}, {10, Entry("request", 100)}});

  EXPECT_THAT(CorrectableBills(books.transactions), ElementsAre(7, 9));
}

TEST_F(AWish, ToImportLeavesTheReversalOfAnImportedBillToWhoCorrectsIt) {
  const standalone::TemporaryFolder folder;
  const std::unique_ptr<Wish> wish = ImportWish("alder.company", folder / "rows.csv", "bill", 1);

  EXPECT_THAT(Faults(*wish, {Report{}}, empty_, BooksWith({{6, ReversalOfTheBill(5)}})),
              ElementsAre("nobody booked transaction 6"));
}

TEST_F(AWish, OfNobodyIsFoundByWhatItChanged) {
  EXPECT_THAT(Change(booked_, empty_).Unclaimed(), ElementsAre("nobody removed transaction 5"));
}

TEST(TheReport, CountsWhatWasPrintedEvenOfAProgramThatWasKilledThen) {
  const ProgramRun run{.ending = Ending::kKilled, .out = "{\"status\":1,\"transaction\":601}\n"};

  const Report report = ReportOf(run);

  EXPECT_EQ(report.kind, Report::Kind::kDone);
  EXPECT_EQ(report.transaction, 601);
}

TEST(TheReport, OfAProgramThatWasKilledInTheMiddleOfALineIsNone) {
  EXPECT_EQ(ReportOf({.ending = Ending::kKilled, .out = "{\"status\":1,\"trans"}).kind, Report::Kind::kNone);
}

TEST(TheReport, TellsARefusalFromAFailure) {
  const ProgramRun declined{.code = 1, .err = "{\"error\":{\"exit\":1,\"message\":\"no\",\"status\":18}}\n"};
  const ProgramRun broken{.code = 3, .err = "{\"error\":{\"exit\":3,\"message\":\"damaged\"}}\n"};
  const ProgramRun crashed{.ending = Ending::kCrashed, .code = 11};

  EXPECT_EQ(ReportOf(declined).kind, Report::Kind::kRefused);
  EXPECT_EQ(ReportOf(declined).status, 18);
  EXPECT_EQ(ReportOf(broken).kind, Report::Kind::kFailed);
  EXPECT_EQ(ReportOf(crashed).kind, Report::Kind::kFailed);
}

}  // namespace
