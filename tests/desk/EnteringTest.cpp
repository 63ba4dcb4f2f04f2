#include <cstdlib>
#include <random>

#include "standalone/books/RowFields.h"
#include "standalone/desk/Entering.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::DocumentNumber;
using standalone::LineAmount;
using standalone::Memo;
using standalone::ShareText;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::vector<std::pair<std::string, std::int64_t>> AmountsOf(const RecordedTransaction& transaction) {
  std::vector<std::pair<std::string, std::int64_t>> amounts;
  for (const RecordedLine& line : transaction.lines) amounts.emplace_back(line.account.name, line.amount.minorUnits);
  return amounts;
}

auto Line(const std::string& account, std::int64_t amount) {
  return testing::Pair(account, amount);
}

// Birch and Cedar are related.
class Entering : public DeskFixture {
 protected:
  Entering() {
    RelateBirch();
    RelateCedar();
  }

  // As another program may leave a relation; its realm is 1003.
  void RelateWithoutAccounts(std::string_view partner) {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite, [&] {
      DBMultiEntityRelation relation{};
      standalone::Fill(relation.realmId, "1003");
      standalone::Fill(relation.partnerName, partner);
      relation.state = static_cast<std::int16_t>(standalone::RelationState::kEstablished);
      other.Relations().Add(relation, 0);
    });
  }

  static PartnersShare Share(const std::string& partner, std::string_view share) {
    return {.partner = partner, .share = ShareText(share)};
  }
  // Of Northern Power for March, of which Birch bears half.
  static TransactionToRecord Bill() {
    return {.type = EnteredType::kBill,
            .date = DateType32(2024, 4, 5),
            .name = Existing{"Northern Power"},
            .memo = Memo("March power"),
            .documentNumber = DocumentNumber("NP-4711"),
            .lines = {{.account = "Utilities:Power", .amount = LineAmount("90.00"), .memo = Memo("Meter 1")},
                      {.account = "Utilities", .amount = LineAmount("10.01")}},
            .shares = {Share("Birch Services Company", "50%")},
            .attachments = {}};
  }
  static TransactionToRecord Check() {
    TransactionToRecord check = Bill();
    check.type = EnteredType::kCheck;
    return check;
  }
  static TransactionToRecord JournalEntry() {
    return {.type = EnteredType::kEntry,
            .date = DateType32(2024, 4, 30),
            .name = {},
            .memo = Memo("Month end"),
            .documentNumber = DocumentNumber(""),
            .lines = {{.account = "Utilities", .amount = LineAmount("30.00")},
                      {.account = "Payables", .amount = LineAmount("-30.00")}},
            .shares = {Share("1001", "1/3")},
            .attachments = {}};
  }

  RecordedTransaction Record(const TransactionToRecord& transaction) {
    return RecordTransaction(*company_, transaction, Posting::kPost);
  }
  // What the transaction is refused with; nothing of it is left behind.
  Refusal RefusalOfRecording(const TransactionToRecord& transaction) {
    const std::string before = WholeFile();
    const Refusal refusal = RefusalOf([&] { Record(transaction); });
    EXPECT_EQ(WholeFile(), before);
    return refusal;
  }
  Refusal RefusalOfBill(const std::function<void(TransactionToRecord& bill)>& change) {
    TransactionToRecord bill = Bill();
    change(bill);
    return RefusalOfRecording(bill);
  }
  RecordedTransaction CopyOf(EnteredType type, std::int32_t txnId) {
    return CopyTransaction(
        *company_, {.type = type, .txnId = txnId, .date = DateType32(2024, 5, 5), .attachments = {}, .again = true},
        Posting::kPost);
  }

  static std::size_t PartnersLines(const RecordedTransaction& transaction) {
    return static_cast<std::size_t>(
        std::ranges::count_if(transaction.lines, [](const RecordedLine& line) { return line.partners.has_value(); }));
  }
  static const RecordedLine& PartnersLine(const RecordedTransaction& transaction) {
    return *std::ranges::find_if(transaction.lines, [](const RecordedLine& line) { return line.partners.has_value(); });
  }
};

TEST_F(Entering, ABillDebitsWhatIsLeftAndWhatPartnersOweAndCreditsThePayableAccount) {
  const RecordedTransaction bill = Record(Bill());

  EXPECT_THAT(AmountsOf(bill), ElementsAre(Line("Utilities:Power", 4'500), Line("Utilities", 500),
                                           Line("Due from Birch", 5'001), Line("Payables", -10'001)));
  EXPECT_EQ(bill.date, DateType32(2024, 4, 5));
  EXPECT_EQ(bill.name, (ListItem{NameId("Northern Power"), "Northern Power"}));
  EXPECT_EQ(bill.memo, "March power");
  EXPECT_EQ(bill.documentNumber, "NP-4711");
  EXPECT_EQ(bill.lines[0].memo, "Meter 1");
  EXPECT_EQ(bill.lines[2].memo, "March power");
}

TEST_F(Entering, MemosHaveNoBlanksAtTheirEnds) {
  TransactionToRecord bill = Bill();
  bill.memo = Memo("  March  power \t");
  bill.lines[0].memo = Memo("   ");

  const RecordedTransaction posted = Record(bill);

  EXPECT_EQ(posted.memo, "March  power");
  EXPECT_EQ(posted.lines[0].memo, "");
}

TEST_F(Entering, ACheckCreditsTheBankAccount) {
  const RecordedTransaction check = Record(Check());

  EXPECT_THAT(AmountsOf(check), testing::Contains(Line("Checking", -10'001)));
}

TEST_F(Entering, AJournalEntryEndsWithALineOfItsOwn) {
  const RecordedTransaction entry = Record(JournalEntry());

  EXPECT_THAT(AmountsOf(entry),
              ElementsAre(Line("Utilities", 2'000), Line("Due from Birch", 1'000), Line("Payables", -3'000)));
}

TEST_F(Entering, AnAmountBelowZeroIsTakenOutOfWhatAnEntryCredits) {
  TransactionToRecord entry = JournalEntry();
  entry.shares = {Share("1001", "-12.00")};

  EXPECT_THAT(AmountsOf(Record(entry)),
              ElementsAre(Line("Utilities", 3'000), Line("Due from Birch", -1'200), Line("Payables", -1'800)));
}

TEST_F(Entering, SharesOfAnEntryComeOutOfWhatPartnersCanBear) {
  TransactionToRecord entry = JournalEntry();
  entry.lines = {{.account = "Checking", .amount = LineAmount("40.00")},
                 {.account = "Utilities", .amount = LineAmount("20.00")},
                 {.account = "Due from Cedar", .amount = LineAmount("5.00")},
                 {.account = "Utilities:Power", .amount = LineAmount("10.00")},
                 {.account = "Payables", .amount = LineAmount("-75.00")}};
  entry.shares = {Share("1001", "50%")};

  EXPECT_THAT(AmountsOf(Record(entry)),
              ElementsAre(Line("Checking", 4'000), Line("Utilities", 1'000), Line("Due from Cedar", 500),
                          Line("Utilities:Power", 500), Line("Due from Birch", 1'500), Line("Payables", -7'500)));
  entry.shares = {Share("1001", "30.01")};
  EXPECT_EQ(RefusalOfRecording(entry).why,
            "with the share of Birch Services Company (realm 1001) the partners bear more than what partners can bear "
            "of the journal entry, which comes to 30.00");
}

TEST_F(Entering, APercentageOfAnEntryThatOnlyMovesMoneyIsRefusedAndAnAmountIsNot) {
  Import(*company_, Importable::kAccounts,
         Csv("name,type\nSavings,Bank\nVisa,Credit Card\nOwed,Accounts Receivable\n"));
  for (const char* const debited : {"Savings", "Visa", "Owed", "Payables", "Due to Cedar"}) {
    TransactionToRecord entry = JournalEntry();
    entry.lines[0].account = debited;
    entry.lines[1].account = "Checking";

    const Refusal refusal = RefusalOfRecording(entry);

    EXPECT_EQ(refusal.remedy, Remedy::kShareByAnAmount);
    EXPECT_EQ(refusal.why,
              "the share \"1/3\" of Birch Services Company (realm 1001) is of what the journal entry debits, and no "
              "partner bears a percentage or a fraction of what is debited to " +
                  standalone::Quoted(debited));
    entry.shares = {Share("1001", "10.00")};
    EXPECT_THAT(AmountsOf(Record(entry)),
                ElementsAre(Line(debited, 2'000), Line("Due from Birch", 1'000), Line("Checking", -3'000)));
  }
}

TEST_F(Entering, ALineThatPartnersBearWhollyIsLeftOut) {
  TransactionToRecord bill = Bill();
  bill.shares = {Share("1001", "50.01"), Share("Cedar Leasing", "50")};

  EXPECT_THAT(AmountsOf(Record(bill)),
              ElementsAre(Line("Due from Birch", 5'001), Line("Due from Cedar", 5'000), Line("Payables", -10'001)));
}

TEST_F(Entering, ASuppliersCreditIsABillWithTheOtherSigns) {
  TransactionToRecord bill = Bill();
  bill.lines = {{.account = "Utilities", .amount = LineAmount("-0.05")}};

  EXPECT_THAT(AmountsOf(Record(bill)),
              ElementsAre(Line("Utilities", -2), Line("Due from Birch", -3), Line("Payables", 5)));
}

TEST_F(Entering, EachPartnerIsToldOfARequestOfItsOwnThatWaitsToBeSent) {
  TransactionToRecord bill = Bill();
  bill.shares = {Share("1001", "1/3"), Share("1002", "1/3")};

  const RecordedTransaction posted = Record(bill);

  const std::vector<IntercompanyLine> lines = ListIntercompanyLines(*company_, posted.txnId);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].partner, "Birch Services Company");
  EXPECT_EQ(lines[1].partner, "Cedar Leasing");
  EXPECT_NE(lines[0].requestId, lines[1].requestId);
  for (const IntercompanyLine& line : lines) {
    EXPECT_EQ(line.requestId.size(), 36U);
    EXPECT_EQ(line.state, standalone::TransactionState::kEntered);
    EXPECT_EQ(line.otherAccount, std::nullopt);
  }
}

TEST_F(Entering, AnEntryOfTheCompanysOwnNamesNoLiabilityAccount) {
  const RecordedTransaction entry = Record(JournalEntry());

  EXPECT_EQ(ListIntercompanyLines(*company_, entry.txnId).at(0).otherAccount, std::nullopt);
}

TEST_F(Entering, IsDatedTodayWhenNothingElseIsSaid) {
  TransactionToRecord bill = Bill();
  bill.date = std::nullopt;
  standalone::StandaloneHost other(path_);

  EXPECT_EQ(Record(bill).date, platform::Today(other.Clock()));
}

TEST_F(Entering, MakesTheVendorWithTheBill) {
  TransactionToRecord bill = Bill();
  bill.name = NewVendor{standalone::NewListName("Cold Spring Elevator")};

  const RecordedTransaction posted = Record(bill);

  EXPECT_EQ(posted.name, (ListItem{NameId("Cold Spring Elevator"), "Cold Spring Elevator"}));
}

TEST_F(Entering, KeepsWhereThePapersAre) {
  TransactionToRecord bill = Bill();
  bill.attachments = {standalone::Attachment("scans/4711.pdf"), standalone::Attachment("https://papers/4711")};

  EXPECT_THAT(Record(bill).attachments, ElementsAre("scans/4711.pdf", "https://papers/4711"));
}

TEST_F(Entering, APreviewPostsNothingAndShowsWhatWouldBePosted) {
  TransactionToRecord bill = Bill();
  bill.name = NewVendor{standalone::NewListName("Cold Spring Elevator")};
  const std::string before = WholeFile();

  const RecordedTransaction preview = RecordTransaction(*company_, bill, Posting::kPreviewOnly);

  EXPECT_EQ(WholeFile(), before);
  EXPECT_EQ(preview.txnId, 0);
  EXPECT_EQ(preview.name, (ListItem{0, "Cold Spring Elevator"}));
  EXPECT_EQ(PartnersLine(preview).partners->requestId, "");
  EXPECT_EQ(AmountsOf(preview), AmountsOf(Record(bill)));
}

TEST_F(Entering, TheAuditTrailTellsOfAllOfIt) {
  TransactionToRecord bill = Bill();
  bill.attachments = {standalone::Attachment("scans/4711.pdf")};

  const RecordedTransaction posted = Record(bill);

  const AuditedDeed deed =
      ListAudit(*company_, {.user = {}, .action = "bill", .period = {NullDate(), NullDate()}, .txnId = posted.txnId})
          .at(0);
  EXPECT_EQ(deed.action, "bill.record");
  EXPECT_EQ(deed.subject, "bill " + std::to_string(posted.txnId));
  std::vector<std::string> told;
  for (const AuditedChange& change : deed.changes) told.push_back(change.field + ' ' + change.after.value());
  EXPECT_THAT(told, ElementsAre("date 2024-04-05", "name Northern Power", "document number NP-4711", "memo March power",
                                "line Utilities:Power 45.00 USD, memo Meter 1", "line Utilities 5.00 USD",
                                "line Due from Birch 50.01 USD for Birch Services Company (1001), request " +
                                    PartnersLine(posted).partners->requestId + ", entered, memo March power",
                                "line Payables -100.01 USD, memo March power", "attachment scans/4711.pdf"));
}

TEST_F(Entering, NeedsTheRightToCreateTransactionsOfTheType) {
  OpenFor("Clerk", {"checks:create", "journal:create", "bills:view", "bills:modify"});

  const Refusal refusal = RefusalOfRecording(Bill());

  EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  EXPECT_THAT(refusal.why, HasSubstr("bills:create"));
  EXPECT_GT(Record(Check()).txnId, 0);
  EXPECT_GT(Record(JournalEntry()).txnId, 0);
}

TEST_F(Entering, WhoHasNoRightLearnsNothingElse) {
  OpenFor("Clerk", {});
  TransactionToRecord bill = Bill();
  bill.lines[0].account = "No such account";
  bill.shares[0].partner = "Nobody";

  EXPECT_EQ(RefusalOfRecording(bill).remedy, Remedy::kAskForTheRight);
}

TEST_F(Entering, OnAClosedDayIsForAdministratorsWhoSaySo) {
  ChangeSetting(*company_, "closing-date", "2024-04-30");
  TransactionToRecord afterClose = Bill();
  afterClose.closedDays = ClosedDays::kChangedAllTheSame;

  EXPECT_EQ(RefusalOfRecording(Bill()).remedy, Remedy::kDateLaterOrReopen);
  const std::int32_t txnId = Record(afterClose).txnId;
  EXPECT_EQ(RefusalOf([&] {
              CopyTransaction(*company_,
                              {.type = EnteredType::kBill,
                               .txnId = txnId,
                               .date = DateType32(2024, 4, 30),
                               .attachments = {},
                               .again = true},
                              Posting::kPost);
            }).remedy,
            Remedy::kDateLaterOrReopen);
  OpenFor("Clerk", {"bills:create"});
  EXPECT_EQ(RefusalOfRecording(afterClose).remedy, Remedy::kAskAnAdministrator);
}

TEST_F(Entering, IsRefusedWithoutLinesOrOverNothing) {
  EXPECT_EQ(RefusalOfBill([](auto& bill) { bill.lines.clear(); }).remedy, Remedy::kGiveLines);
  EXPECT_EQ(RefusalOfBill([](auto& bill) { bill.lines[1].amount = LineAmount("0"); }).why,
            "the line for \"Utilities\" is 0.00, and a line over nothing is not booked");
  EXPECT_EQ(RefusalOfBill([](auto& bill) { bill.lines[1].amount = LineAmount("-90.00"); }).remedy, Remedy::kGiveLines);
}

TEST_F(Entering, IsRefusedBeyondTheLargestAmount) {
  const auto tooMuch = [](auto& bill) {
    for (EnteredLine& line : bill.lines) line.amount = LineAmount("99,999,999,999.99");
  };

  EXPECT_EQ(RefusalOfBill(tooMuch).why,
            "the lines of the bill come to 199,999,999,999.98, and no more than 99,999,999,999.99 can be booked");
}

TEST_F(Entering, ABillIsRefusedWithoutSomebodyWhomItIsFrom) {
  EXPECT_EQ(RefusalOfBill([](auto& bill) { bill.name = std::monostate(); }).remedy, Remedy::kNameWhom);
}

TEST_F(Entering, ANewVendorHasANameOfItsOwn) {
  const Refusal refusal =
      RefusalOfBill([](auto& bill) { bill.name = NewVendor{standalone::NewListName("northern power")}; });

  EXPECT_EQ(refusal.remedy, Remedy::kUseTheNameLikeThat);
}

TEST_F(Entering, ARefusalLeavesNoVendorBehind) {
  Record(Bill());
  TransactionToRecord bill = Bill();
  bill.name = NewVendor{standalone::NewListName("Cold Spring Elevator")};
  bill.lines[0].account = "Old Rent";
  const std::string before = WholeFile();

  EXPECT_THROW(Record(bill), standalone::InvalidInput);

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(Entering, IsRefusedOfAJournalEntryUnderThatName) {
  TransactionToRecord entry = JournalEntry();
  entry.lines.clear();

  EXPECT_EQ(RefusalOfRecording(entry).why, "the journal entry has no lines");
}

TEST_F(Entering, IsRefusedForAPartnerThatIsNone) {
  EXPECT_EQ(RefusalOfBill([](auto& bill) { bill.shares[0].partner = "Nobody"; }).remedy, Remedy::kMakeARelation);
}

TEST_F(Entering, IsRefusedUnlessTheRelationIsEstablished) {
  UpdateRelation(
      *company_,
      {.partner = standalone::RealmId("1001"), .state = standalone::RelationState::kPending, .accounts = {}});

  EXPECT_EQ(RefusalOfRecording(Bill()).remedy, Remedy::kEstablishTheRelation);
}

TEST_F(Entering, IsRefusedWithoutAnAccountForWhatThePartnerOwes) {
  RelateWithoutAccounts("Dogwood");

  EXPECT_EQ(RefusalOfBill([](auto& bill) { bill.shares[0].partner = "Dogwood"; }).remedy,
            Remedy::kGiveTheRelationAccounts);
}

TEST_F(Entering, APartnerIsNamedByItsRealmWhenTwoHaveItsName) {
  RelateWithoutAccounts("Birch Services Company");

  EXPECT_EQ(RefusalOfRecording(Bill()).remedy, Remedy::kSeeRelations);
  TransactionToRecord byRealm = Bill();
  byRealm.shares[0].partner = "1001";
  EXPECT_EQ(PartnersLine(Record(byRealm)).partners->realm, "1001");
}

TEST_F(Entering, ADueAccountIsRefusedInABillButSettlesByACheck) {
  EXPECT_EQ(RefusalOfBill([](auto& bill) { bill.lines[0].account = "Due from Cedar"; }).remedy,
            Remedy::kGiveThePartner);
  EXPECT_EQ(RefusalOfBill([](auto& bill) { bill.lines[0].account = "Due to Birch"; }).remedy, Remedy::kGiveThePartner);
  TransactionToRecord settlement = Check();
  settlement.shares.clear();
  settlement.lines[0].account = "Due to Birch";
  EXPECT_EQ(PartnersLines(Record(settlement)), 0U);
}

TEST_F(Entering, ALineOnTheAccountThatIsCreditedIsRefused) {
  Import(*company_, Importable::kAccounts, Csv("name,type\nSavings,Bank\n"));
  TransactionToRecord check = Check();
  check.lines[1].account = "Checking";
  check.credited = "Checking";

  const Refusal ofBill = RefusalOfBill([](auto& bill) { bill.lines[1].account = "Payables"; });
  const Refusal ofCheck = RefusalOfRecording(check);

  EXPECT_EQ(ofBill.why,
            "the line for \"Payables\" is on the account that the bill credits with what its lines come to");
  EXPECT_EQ(ofCheck.why,
            "the line for \"Checking\" is on the account that the check credits with what its lines come to");
  EXPECT_EQ(ofBill.remedy, Remedy::kGiveOtherLines);
  EXPECT_EQ(ofCheck.remedy, Remedy::kGiveOtherLines);
  check.credited = "Savings";
  EXPECT_THAT(AmountsOf(Record(check)), testing::Contains(Line("Savings", -10'001)));
}

TEST_F(Entering, SharesAreRefusedThatCannotBeTakenOut) {
  const std::vector<std::pair<std::vector<PartnersShare>, std::string>> refused{
      {{Share("1001", "60%"), Share("1002", "40.01")},
       "with the share of Cedar Leasing (realm 1002) the partners bear more than the bill, which comes to 100.01"},
      {{Share("1001", "0.000001%")},
       "the share of Birch Services Company (realm 1001) comes to 0.00 of the bill, which comes to 100.01"},
      {{Share("1001", "-1.00")},
       "the share of Birch Services Company (realm 1001) has not the sign of the bill, which comes to 100.01"},
      {{Share("1001", "1/3"), Share("Birch Services Company", "1/3")},
       "two shares are of Birch Services Company (realm 1001)"}};
  for (const auto& [shares, why] : refused) {
    const Refusal refusal = RefusalOfBill([&shares](auto& bill) { bill.shares = shares; });

    EXPECT_EQ(refusal.why, why);
    EXPECT_EQ(refusal.remedy, Remedy::kCheckTheShares);
  }
}

TEST_F(Entering, AnEntryIsRefusedThatDoesNotBalanceOrLeavesNothingHere) {
  TransactionToRecord lopsided = JournalEntry();
  lopsided.lines[1].amount = LineAmount("-29.99");
  TransactionToRecord borneByOthers = JournalEntry();
  borneByOthers.shares = {Share("1001", "100%"), Share("1002", "-30.00")};

  EXPECT_EQ(RefusalOfRecording(lopsided).why, "the lines of the entry sum to 0.01, not to 0.00");
  EXPECT_EQ(RefusalOfRecording(borneByOthers).remedy, Remedy::kCheckTheShares);
}

TEST_F(Entering, TheAccountThatIsCreditedIsNamedUnlessThereIsOneOnly) {
  Import(*company_, Importable::kAccounts,
         Csv("name,type\nOther Payables,Accounts Payable\nSavings,Bank\nVisa,Credit Card\n"));
  TransactionToRecord byCard = Check();
  byCard.credited = "Visa";

  EXPECT_EQ(RefusalOfRecording(Bill()).remedy, Remedy::kNameThePayable);
  EXPECT_EQ(RefusalOfRecording(Check()).remedy, Remedy::kNameTheBank);
  EXPECT_EQ(RefusalOfBill([](auto& bill) { bill.credited = "Checking"; }).remedy, Remedy::kNameThePayable);
  EXPECT_THAT(AmountsOf(Record(byCard)), testing::Contains(Line("Visa", -10'001)));
}

TEST_F(Entering, ADocumentOfThatNameIsRefusedTheSecondTimeUnlessItIsAnother) {
  const RecordedTransaction first = Record(Bill());
  TransactionToRecord another = Bill();
  another.documentNumber = DocumentNumber(" NP-4712 ");
  TransactionToRecord again = Bill();
  again.again = true;

  const Refusal refusal = RefusalOfRecording(Bill());

  EXPECT_EQ(refusal.remedy, Remedy::kRecordAgain);
  EXPECT_EQ(refusal.why,
            "the document number \"NP-4711\" of that name is in the books, as bill " + std::to_string(first.txnId));
  EXPECT_EQ(Record(another).documentNumber, "NP-4712");
  EXPECT_GT(Record(again).txnId, first.txnId);
  EXPECT_GT(Record(Check()).txnId, first.txnId);
}

TEST_F(Entering, ADocumentIsTheSameHoweverItsNumberIsWritten) {
  const std::int32_t first = Record(Bill()).txnId;
  TransactionToRecord accented = Bill();
  accented.documentNumber = DocumentNumber("\u00c9-12");
  const std::int32_t second = Record(accented).txnId;
  TransactionToRecord inSmallLetters = Bill();
  inSmallLetters.documentNumber = DocumentNumber("np-4711");
  TransactionToRecord wide = Bill();
  wide.documentNumber = DocumentNumber("NP-\uff14\uff17\uff11\uff11");
  TransactionToRecord inTwoCharacters = Bill();
  inTwoCharacters.documentNumber = DocumentNumber("e\u0301-12");

  EXPECT_EQ(RefusalOfRecording(inSmallLetters).why,
            "the document number \"np-4711\" of that name is in the books, written \"NP-4711\", as bill " +
                std::to_string(first));
  EXPECT_THAT(RefusalOfRecording(wide).why, testing::EndsWith("as bill " + std::to_string(first)));
  EXPECT_THAT(RefusalOfRecording(inTwoCharacters).why, testing::EndsWith("as bill " + std::to_string(second)));
  inSmallLetters.again = true;
  EXPECT_EQ(Record(inSmallLetters).documentNumber, "np-4711");
}

TEST_F(Entering, ACopyHasRequestsOfItsOwn) {
  const RecordedTransaction original = Record(Bill());
  SetState(*company_, original.txnId, PartnersLine(original).lineId, standalone::TransactionState::kSent);

  const RecordedTransaction copy = CopyOf(EnteredType::kBill, original.txnId);

  EXPECT_EQ(AmountsOf(copy), AmountsOf(original));
  EXPECT_EQ(copy.date, DateType32(2024, 5, 5));
  EXPECT_EQ(copy.name, original.name);
  EXPECT_EQ(copy.memo, original.memo);
  EXPECT_EQ(PartnersLine(copy).partners->state, standalone::TransactionState::kEntered);
  EXPECT_NE(PartnersLine(copy).partners->requestId, PartnersLine(original).partners->requestId);
}

TEST_F(Entering, AnImportedBillIsCopiedWithALineOfItsOwnAtTheEnd) {
  ImportMarch();

  const RecordedTransaction copy = CopyOf(EnteredType::kBill, 1);

  EXPECT_THAT(AmountsOf(copy),
              ElementsAre(Line("Payables", -10'000), Line("Due from Birch", 4'000), Line("Utilities:Power", 6'000)));
}

TEST_F(Entering, ACopyOfTheSameDocumentIsRefusedUnlessItHasAnotherNumber) {
  const RecordedTransaction original = Record(Bill());
  TransactionToCopy copy{.type = EnteredType::kBill, .txnId = original.txnId, .attachments = {}};
  const auto ask = [&] {
    return CopyTransaction(*company_, copy, Posting::kPost);
  };

  EXPECT_EQ(RefusalOf(ask).remedy, Remedy::kRecordAgain);
  copy.documentNumber = DocumentNumber("NP-4800");
  EXPECT_EQ(ask().documentNumber, "NP-4800");
}

TEST_F(Entering, OnlyWhatWasEnteredHereAndReversesNothingIsCopied) {
  const std::int32_t partners = RecordJournalEntry(*company_, Entry("request-1"));
  const std::int32_t bill = Record(Bill()).txnId;
  const auto refusal = [&](EnteredType type, std::int32_t txnId) {
    const std::string before = WholeFile();
    const Refusal refused = RefusalOf([&] { CopyOf(type, txnId); });
    EXPECT_EQ(WholeFile(), before);
    return refused.remedy;
  };

  EXPECT_EQ(refusal(EnteredType::kEntry, partners), Remedy::kCopyAnotherOne);
  EXPECT_EQ(refusal(EnteredType::kCheck, bill), Remedy::kSeeTransactions);
  EXPECT_EQ(refusal(EnteredType::kBill, bill + 1), Remedy::kSeeTransactions);
  OpenFor("Clerk", {"checks:create"});
  EXPECT_EQ(refusal(EnteredType::kBill, bill), Remedy::kAskForTheRight);
}

TEST_F(Entering, ACopyOfAMoveWouldMoveNothingAndIsRefused) {
  const std::int32_t partners = RecordJournalEntry(*company_, Entry("request-1"));
  const std::int32_t move = MoveExpense(*company_, {.txnId = partners, .account = "Utilities:Power"}).move.txnId;
  const std::string before = WholeFile();

  const Refusal refusal = RefusalOf([&] { CopyOf(EnteredType::kEntry, move); });

  EXPECT_EQ(refusal.remedy, Remedy::kMoveTheExpenseAgain);
  EXPECT_EQ(refusal.why, "journal entry " + std::to_string(move) + " moves an expense");
  EXPECT_EQ(WholeFile(), before);
}

// Whatever people type. Not by a distribution of the library, which each system has of its own.
class AnyTyping {
 public:
  TransactionToRecord Next() {
    TransactionToRecord typed{.type = AnyType(), .name = {}, .lines = {}, .shares = {}, .attachments = {}};
    if (Below(8) != 0) typed.name = Existing{"Walker"};
    if (Below(10) == 0) typed.name = NewVendor{standalone::NewListName("Vendor " + std::to_string(Below(50)))};
    if (Below(3) == 0) typed.documentNumber = DocumentNumber(std::to_string(Below(30)));
    std::int64_t sum = 0;
    for (std::uint64_t lines = 1 + Below(4); lines-- > 0;) sum += AddLine(typed, AnyAmount());
    if (typed.type == EnteredType::kEntry && Below(8) != 0) AddLine(typed, -sum);
    for (std::uint64_t shares = Below(4); shares-- > 0;) typed.shares.push_back(AnyShare());
    return typed;
  }

 private:
  std::uint64_t Below(std::uint64_t bound) { return random_() % bound; }
  template <std::size_t kSize>
  const char* OneOf(const char* const (&texts)[kSize]) {
    return texts[Below(kSize)];
  }
  EnteredType AnyType() {
    constexpr EnteredType kTypes[]{EnteredType::kBill, EnteredType::kCheck, EnteredType::kEntry};
    return kTypes[Below(std::size(kTypes))];
  }
  std::int64_t AnyAmount() { return static_cast<std::int64_t>(Below(200'000)) - 60'000; }
  std::int64_t AddLine(TransactionToRecord& typed, std::int64_t amount) {
    static constexpr const char* kAccounts[]{"Utilities",         "Utilities:Power", "Utilities", "Utilities:Power",
                                             "Undeposited Funds", "Due to Birch",    "Old Rent",  "Nowhere"};
    typed.lines.push_back({.account = kAccounts[Below(4) == 0 ? Below(std::size(kAccounts)) : Below(4)],
                           .amount = LineAmount(standalone::FormatPlainAmount(amount, standalone::kTwoDecimals))});
    return amount;
  }
  PartnersShare AnyShare() {
    static constexpr const char* kPartners[]{"1001", "1002", "Cedar Leasing", "Birch Services Company"};
    static constexpr const char* kShares[]{"50%", "33.33%", "1/3", "1/7", "12.34", "-5.00", "0.0001%", "100%"};
    return {.partner = OneOf(kPartners), .share = ShareText(OneOf(kShares))};
  }

  std::mt19937_64 random_{20'260'401};
};

TEST_F(Entering, WhateverIsTypedTheBooksBalanceAndARefusalLeavesThemAsTheyAre) {
  constexpr int kTransactions = 300;
  AnyTyping typing;
  int posted = 0;
  for (int i = 0; i < kTransactions && !HasFailure(); ++i) {
    SCOPED_TRACE("transaction " + std::to_string(i));
    const TransactionToRecord typed = typing.Next();
    const std::string before = WholeFile();
    try {
      const RecordedTransaction transaction = Record(typed);
      std::int64_t sum = 0;
      for (const RecordedLine& line : transaction.lines) sum += line.amount.minorUnits;
      EXPECT_EQ(sum, 0);
      EXPECT_EQ(PartnersLines(transaction), typed.shares.size());
      EXPECT_FALSE(transaction.lines.back().partners.has_value());
      ++posted;
    } catch (const Refused&) {
      EXPECT_EQ(WholeFile(), before);
    } catch (const standalone::InvalidInput&) {
      EXPECT_EQ(WholeFile(), before);
    }
  }
  EXPECT_GT(posted, kTransactions / 5);
  EXPECT_LT(posted, kTransactions);
  standalone::StandaloneHost other(path_);
  EXPECT_EQ(standalone::Count(other, "SELECT sum(amount) FROM txn_line"), 0);
  EXPECT_EQ(standalone::Count(other,
                              "SELECT count(*) FROM me_transaction WHERE txn_type <> 8 OR target_id IN "
                              "(SELECT target_id FROM me_own_request)"),
            standalone::Count(other, "SELECT count(*) FROM me_transaction"));
}

}  // namespace
}  // namespace desk
