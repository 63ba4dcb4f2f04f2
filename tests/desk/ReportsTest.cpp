#include "standalone/desk/Reports.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::InvalidInput;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

Period AllDays() {
  return {NullDate(), NullDate()};
}

// A bill, a check and a journal entry of March 2024.
class Reports : public DeskFixture {
 protected:
  Reports() {
    RelateBirch();
    RelateCedar();
    ImportMarch();
  }

  Balances BalancesOf(std::optional<std::string> account = {}) {
    return ReadBalances(*company_,
                        {.period = AllDays(), .account = std::move(account), .depth = {}, .withUnused = false});
  }
  Register RegisterOf(const std::string& account, const Period& period = AllDays(), bool withSubAccounts = false) {
    return ReadRegister(*company_, {.account = account, .period = period, .withSubAccounts = withSubAccounts});
  }
  OpenItems OpenWith(std::optional<std::string> partner, DateType32 asOf = {2024, 5, 1}) {
    return ReadOpenItems(*company_, {.asOf = asOf, .partner = std::move(partner)});
  }

  OpenItems OpenFrom(DateType32 from, DateType32 asOf = {2024, 5, 1}) {
    return ReadOpenItems(*company_, {.asOf = asOf, .from = from, .partner = {}});
  }

  void GiveBirchOtherAccounts() {
    Import(*company_, Importable::kAccounts,
           Csv("name,type,special,deleted\nFrom Birch,Other Current Asset,,\nTo Birch,Other Current Liability,,\n"));
    GiveAsOlderProgramsDid("1001", "From Birch", "To Birch");
  }
  // Which did so although something was booked.
  void GiveAsOlderProgramsDid(std::string_view realm, std::string_view dueFrom, std::string_view dueTo) {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite, [&] {
      DBMultiEntityRelation relation{};
      ASSERT_TRUE(other.Relations().Find(realm, relation));
      relation.dueFromAccountId = other.Accounts().Require(dueFrom).id;
      relation.dueToAccountId = other.Accounts().Require(dueTo).id;
      other.Relations().Change(relation, /*now=*/1);
    });
  }

  // Transaction 4 reverses the bill, with a request that reverses the bill's, and has a paper.
  void ReverseTheBillInTheFile() {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite, [&] {
      standalone::TransactionTable& transactions = other.Transactions();
      const std::int32_t txnId = transactions.AddHeader(
          {.type = kTxnTypeBill, .date = {2024, 4, 1}, .nameId = 0, .memo = "Taken back", .documentNumber = "INV-7"});
      std::int32_t target = 0;
      std::int32_t earlier = 0;
      for (const standalone::PostedLine& line : transactions.LinesOf(1)) {
        target = transactions.AddLine(txnId, {.accountId = line.accountId, .amount = -line.amount, .memo = line.memo});
        earlier = line.id;
      }
      transactions.Post(txnId);
      other.OwnRequests().Add(
          target, standalone::EarlierRequest{.kind = standalone::EarlierRequest::Kind::kReverses, .targetId = earlier});
      DBMultiEntityTransaction row{};
      row.txnId = txnId;
      row.targetId = target;
      row.relationId = 1;
      row.txnType = kTxnTypeBill;
      std::string_view("request-back").copy(row.requestId, sizeof row.requestId - 1);
      other.Intercompany().Add(row);
      other.Links().Add({.txnId = txnId, .kind = standalone::LinkKind::kReverses, .earlierTxnId = 1});
      other.Attachments().Add(txnId, "papers/inv-7.pdf");
      other.Attachments().Add(txnId, "https://papers/7");
    });
  }
};

using TheBalances = Reports;
using TheRegister = Reports;
using TheOpenItems = Reports;
using TheShownTransaction = Reports;

TEST_F(TheBalances, HoldWhatWasBookedAndAddUp) {
  const Json json = JsonOf(BalancesOf());

  std::vector<std::string> lines;
  for (const Json& line : json.at("balances")) {
    lines.push_back(line.at("name").get<std::string>() + " " + line.at("debit").get<std::string>() + " " +
                    line.at("credit").get<std::string>() + " " + line.at("own").get<std::string>());
  }
  EXPECT_THAT(lines, ElementsAre("Checking 1250.00 0.00 1250.00", "Due from Birch 0.00 1210.00 -1210.00",
                                 "Due to Birch 0.00 75.50 -75.50", "Payables 0.00 100.00 -100.00",
                                 "Utilities 135.50 0.00 75.50", "Utilities:Power 60.00 0.00 60.00"));
  EXPECT_EQ(json.at("total").dump(), R"({"debit":"1385.50","credit":"1385.50"})");
  EXPECT_EQ(json.at("currency"), "USD");
}

TEST_F(TheBalances, SayOfAnAccountWhereItStands) {
  const Json power = JsonOf(BalancesOf()).at("balances").at(5);

  EXPECT_EQ(power.dump(), R"({"id":)" + std::to_string(AccountId("Utilities:Power")) +
                              R"(,"number":"","name":"Utilities:Power","type":"Expense","typeNumber":12,)"
                              R"("deleted":false,"level":1,"debit":"60.00","credit":"0.00","own":"60.00"})");
}

TEST_F(TheBalances, OfOneAccountHaveNoTotals) {
  const Balances balances = BalancesOf("Utilities");

  EXPECT_THAT(balances.lines, SizeIs(2));
  EXPECT_FALSE(balances.totals);
}

TEST_F(TheBalances, NameTheAccountThatThereIsNot) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { BalancesOf("Heating"); }), HasSubstr("no account \"Heating\""));
}

TEST_F(TheBalances, ShowTheNumbersOfAccounts) {
  {
    standalone::SqliteDatabase file(path_, std::chrono::seconds(5));
    file.Execute("UPDATE account SET number = '6100' WHERE full_name = 'Utilities'");
  }

  EXPECT_EQ(BalancesOf("Utilities").lines.front().account.number, "6100");
}

TEST_F(TheBalances, NeedTheRightsToViewAllTypes) {
  OpenFor("Robin", {"bills:view", "checks:view"});

  const Refusal refusal = RefusalOf([&] { BalancesOf("Heating"); });

  EXPECT_EQ(refusal.what, UseCase::kReadBalances);
  EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  EXPECT_THAT(refusal.why, AllOf(HasSubstr("journal:view"), Not(HasSubstr("bills:view"))));
}

TEST_F(TheBalances, AreForWhoMayViewAllTypes) {
  OpenFor("Robin", {"bills:view", "checks:view", "journal:view"});

  EXPECT_THAT(BalancesOf().lines, SizeIs(6));
}

TEST_F(Reports, ChangeNothing) {
  const std::string before = WholeFile();

  BalancesOf();
  RegisterOf("Checking");
  OpenWith({});
  ShowTransaction(*company_, 1);

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheRegister, TellsEachLineWithItsOtherAccount) {
  const Register told = RegisterOf("Due from Birch");

  ASSERT_THAT(told.lines, SizeIs(2));
  EXPECT_EQ(told.lines[0].name, "Northern Power");
  EXPECT_EQ(told.lines[0].memo, "March power");
  EXPECT_FALSE(told.lines[0].otherAccount);
  EXPECT_EQ(told.lines[1].otherAccount, (ListItem{AccountId("Checking"), "Checking"}));
  EXPECT_EQ(told.lines[1].balance, -121'000);
  EXPECT_EQ(told.closing, -121'000);
}

TEST_F(TheRegister, OfAPeriodOpensWithWhatCameBefore) {
  const Register told = RegisterOf("Due from Birch", {{2024, 3, 2}, NullDate()});

  EXPECT_THAT(told.lines, SizeIs(1));
  EXPECT_EQ(told.opening, 4'000);
  EXPECT_EQ(told.closing, -121'000);
}

TEST_F(TheRegister, ReadsTheSameForPrograms) {
  const Json json = JsonOf(RegisterOf("Utilities", AllDays(), /*withSubAccounts=*/true));

  EXPECT_EQ(json.at("account").at("name"), "Utilities");
  EXPECT_EQ(json.at("opening"), "0.00");
  EXPECT_EQ(json.at("closing"), "135.50");
  Json last = json.at("lines").at(1);
  last.erase("line");
  EXPECT_EQ(last.dump(), R"({"transaction":3,"type":"journal","typeNumber":8,"date":"2024-03-31","documentNumber":"",)"
                         R"("name":"","memo":"Birch paid for us","lineMemo":"Heating","account":"Utilities",)"
                         R"("otherAccount":{"id":)" +
                             std::to_string(AccountId("Due to Birch")) +
                             R"(,"name":"Due to Birch"},"amount":"75.50","balance":"135.50"})");
}

TEST_F(TheRegister, NamesTheAccountThatThereIsNot) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { RegisterOf("Heating"); }), HasSubstr("no account \"Heating\""));
}

TEST_F(TheRegister, NeedsTheRightsToViewAllTypes) {
  OpenFor("Robin", {"bills:view", "journal:view"});

  EXPECT_THAT(RefusalOf([&] { RegisterOf("Heating"); }).why, HasSubstr("checks:view"));
}

TEST_F(TheOpenItems, AreThoseOfPartnersWithWhomSomethingIsOpen) {
  const OpenItems open = OpenWith({});

  ASSERT_THAT(open.partners, SizeIs(1));
  EXPECT_EQ(open.partners[0].partner, "Birch Services Company");
  ASSERT_THAT(open.partners[0].owedToUs->items, SizeIs(2));
  EXPECT_EQ(open.partners[0].owedToUs->items[0].open, 4'000);
  EXPECT_EQ(open.partners[0].owedToUs->items[1].open, -125'000);
  EXPECT_EQ(open.partners[0].owedToUs->balance, -121'000);
  ASSERT_THAT(open.partners[0].owedByUs->items, SizeIs(1));
  EXPECT_EQ(open.partners[0].owedByUs->items[0].open, 7'550);
  EXPECT_EQ(open.partners[0].owedByUs->items[0].days, 31);
  EXPECT_EQ(open.partners[0].owedByUs->balance, 7'550);
  EXPECT_EQ(open.partners[0].owedByUs->Difference(), 0);
}

TEST_F(TheOpenItems, ReadTheSameForPrograms) {
  const Json side = JsonOf(OpenWith({}, {2024, 3, 14})).at("partners").at(0).at("owedToUs");

  Json item = side.at("items").at(0);
  item.erase("line");
  EXPECT_EQ(item.dump(),
            R"({"transaction":1,"type":"bill","typeNumber":9,"date":"2024-03-01","documentNumber":"",)"
            R"("name":"Northern Power","memo":"March power","lineMemo":"","amount":"40.00","open":"40.00","days":13,)"
            R"("age":"0-30","standing":"not-answered","state":"sent","stateNumber":1,"ofBefore":false})");
  EXPECT_EQ(side.at("byAge").dump(), R"({"0-30":"40.00","31-60":"0.00","61-90":"0.00","over-90":"0.00"})");
  EXPECT_EQ(side.at("agreed"), "0.00");
  EXPECT_EQ(side.at("noRequest"), "0.00");
  EXPECT_EQ(side.at("notAnswered"), "40.00");
  EXPECT_EQ(side.at("open"), "40.00");
  EXPECT_EQ(side.at("closed"), "0.00");
  EXPECT_EQ(side.at("balance"), "40.00");
  EXPECT_EQ(side.at("difference"), "0.00");
}

TEST_F(TheOpenItems, FromADayOnHaveWhatIsOlderAsOneSumOfEachSide) {
  Json all = JsonOf(OpenWith({}));
  Json fromADay = JsonOf(OpenFrom({2024, 3, 2}));

  Json& owedToUs = fromADay.at("partners").at(0).at("owedToUs");
  EXPECT_EQ(fromADay.at("from"), "2024-03-02");
  EXPECT_EQ(all.at("from"), nullptr);
  EXPECT_EQ(owedToUs.at("earlier").dump(), R"({"before":"2024-03-02","items":1,"open":"40.00"})");
  EXPECT_EQ(fromADay.at("partners").at(0).at("owedByUs").at("earlier").dump(),
            R"({"before":"2024-03-02","items":0,"open":"0.00"})");
  EXPECT_THAT(owedToUs.at("items"), SizeIs(1));
  Json& whole = all.at("partners").at(0).at("owedToUs");
  EXPECT_EQ(whole.at("earlier"), nullptr);
  for (Json* const side : {&owedToUs, &whole}) {
    side->erase("earlier");
    side->erase("items");
  }
  EXPECT_EQ(owedToUs, whole);
}

TEST_F(TheOpenItems, FromADayOnAreAlsoThoseOfPartnersWithWhomOnlyOlderOnesAreOpen) {
  GiveBirchOtherAccounts();

  const OpenItems open = OpenFrom({2024, 4, 1});

  ASSERT_THAT(open.partners, SizeIs(1));
  EXPECT_THAT(open.partners[0].owedToUs->items, IsEmpty());
  EXPECT_EQ(open.partners[0].owedToUs->balance, 0);
  EXPECT_EQ(open.partners[0].owedToUs->earlier.open, -121'000);
}

TEST_F(TheOpenItems, AreOfNoDaysThatEndBeforeTheyBegin) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { OpenFrom({2024, 5, 2}); }),
              AllOf(HasSubstr("2024-05-02"), HasSubstr("2024-05-01"), HasSubstr("ends before it begins")));
}

TEST_F(TheOpenItems, OfAPartnerAreFoundByRealmOrName) {
  EXPECT_EQ(OpenWith("1001").partners.at(0).partner, "Birch Services Company");
  EXPECT_EQ(OpenWith("birch services company").partners.at(0).realm, "1001");
}

TEST_F(TheOpenItems, TellOfThePartnerWhoWasAskedForThatNothingIsOpen) {
  const OpenItems open = OpenWith("Cedar Leasing");

  ASSERT_THAT(open.partners, SizeIs(1));
  EXPECT_THAT(open.partners[0].owedToUs->items, IsEmpty());
}

TEST_F(TheOpenItems, NameThePartnerThatThereIsNot) {
  EXPECT_THAT(RefusalOf([&] { OpenWith("Dogwood"); }).why, HasSubstr("partner \"Dogwood\""));
}

TEST_F(TheOpenItems, AskForTheRealmOfANameThatTwoPartnersHave) {
  {
    standalone::SqliteDatabase file(path_, std::chrono::seconds(5));
    file.Execute("UPDATE me_relation SET partner_name = 'Cedar Leasing'");
  }

  EXPECT_THAT(RefusalOf([&] { OpenWith("Cedar Leasing"); }).why,
              AllOf(HasSubstr("several partners"), HasSubstr("realm id")));
  EXPECT_EQ(OpenWith("1002").partners.at(0).realm, "1002");
}

TEST_F(TheOpenItems, LeaveOutWhatWasReversed) {
  ReverseTheBillInTheFile();

  const OpenItems open = OpenWith({});

  ASSERT_THAT(open.partners.at(0).owedToUs->items, SizeIs(1));
  EXPECT_EQ(open.partners.at(0).owedToUs->items[0].open, -125'000);
  EXPECT_EQ(open.partners.at(0).owedToUs->Difference(), 0);
}

TEST_F(TheOpenItems, KeepAnAgreedBillWhoseReversalThePartnerHasNotTaken) {
  {
    standalone::SqliteDatabase file(path_, std::chrono::seconds(5));
    file.Execute("UPDATE me_transaction SET state = 3 WHERE request_id = 'request-bill'");
  }
  ReverseTheBillInTheFile();

  const Json side = JsonOf(OpenWith("1001", {2024, 4, 2})).at("partners").at(0).at("owedToUs");

  std::vector<std::string> items;
  for (const Json& item : side.at("items")) {
    items.push_back(item.at("transaction").dump() + " " + item.at("open").get<std::string>() + " " +
                    item.at("standing").get<std::string>());
  }
  EXPECT_THAT(items, ElementsAre("2 -1210.00 agreed", "4 -40.00 not-answered"));
  EXPECT_EQ(side.at("balance"), "-1250.00");
  EXPECT_EQ(side.at("difference"), "0.00");
}

TEST_F(TheOpenItems, SetApartAPaymentThatNoPartnerHasSeen) {
  Import(*company_, Importable::kTransactions,
         Csv("transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n"
             "J2,journal,2024-04-01,,Cedar pays ahead,Checking,300.00,,,,\n"
             "J2,journal,,,,Due from Cedar,-300.00,,,,\n"));

  const Json side = JsonOf(OpenWith("1002")).at("partners").at(0).at("owedToUs");

  EXPECT_EQ(side.at("items").at(0).at("standing"), "no-request");
  EXPECT_EQ(side.at("noRequest"), "-300.00");
  EXPECT_EQ(side.at("agreed"), "0.00");
  EXPECT_EQ(side.at("open"), "-300.00");
}

TEST_F(TheOpenItems, StayThoseOfThePartnerWhoHadTheAccountsWhenTheyWereBooked) {
  GiveBirchOtherAccounts();
  GiveAsOlderProgramsDid("1002", "Due from Birch", "Due to Birch");

  const OpenItems open = OpenWith({});

  ASSERT_THAT(open.partners, SizeIs(2));
  EXPECT_THAT(open.partners[0].owedToUs->items, SizeIs(2));
  EXPECT_THAT(open.partners[0].owedByUs->items, SizeIs(1));
  EXPECT_EQ(open.partners[0].owedByUs->Difference(), -7'550);
  EXPECT_THAT(open.partners[1].owedToUs->items, IsEmpty());
  EXPECT_THAT(open.partners[1].owedByUs->items, IsEmpty());
  EXPECT_EQ(open.partners[1].owedByUs->Difference(), 7'550);
}

TEST_F(TheOpenItems, StayThoseOfThePartnerOnAccountsThatNobodyHasAnyMore) {
  GiveBirchOtherAccounts();

  const OpenWithPartner birch = OpenWith("1001").partners.at(0);

  EXPECT_EQ(birch.owedToUs->Open(), -121'000);
  EXPECT_EQ(birch.owedByUs->Open(), 7'550);
  EXPECT_EQ(birch.owedByUs->balance, 0);
}

TEST_F(TheOpenItems, NeedTheRightsToViewAllTypes) {
  OpenFor("Robin", {"checks:view", "journal:view"});

  EXPECT_THAT(RefusalOf([&] { OpenWith("Dogwood"); }).why, HasSubstr("bills:view"));
}

TEST_F(TheShownTransaction, HasItsHeaderAndLines) {
  const ShownTransaction shown = ShowTransaction(*company_, 1);

  EXPECT_EQ(shown.type, kTxnTypeBill);
  EXPECT_EQ(shown.date, DateType32(2024, 3, 1));
  EXPECT_EQ(shown.name, (ListItem{NameId("Northern Power"), "Northern Power"}));
  EXPECT_EQ(shown.memo, "March power");
  EXPECT_FALSE(shown.confirmed);
  ASSERT_THAT(shown.lines, SizeIs(3));
  EXPECT_EQ(shown.lines[0].account.name, "Payables");
  EXPECT_EQ(shown.lines[0].amount, -10'000);
  EXPECT_FALSE(shown.lines[0].request);
  ASSERT_TRUE(shown.lines[2].request);
  EXPECT_EQ(shown.lines[2].request->partner, "Birch Services Company");
  EXPECT_EQ(shown.lines[2].request->id, "request-bill");
  EXPECT_EQ(shown.lines[2].request->state, standalone::TransactionState::kSent);
}

TEST_F(TheShownTransaction, IsConfirmedWhenItWasImportedAsEstablished) {
  const ShownTransaction shown = ShowTransaction(*company_, 2);

  EXPECT_TRUE(shown.confirmed);
  EXPECT_EQ(JsonOf(shown).at("confirmed"), true);
}

TEST_F(TheShownTransaction, IsConfirmedWhenItWasBookedFromThePartnersRequest) {
  const std::int32_t txnId = RecordJournalEntry(*company_, Entry("request-of-birch"));

  EXPECT_TRUE(ShowTransaction(*company_, txnId).confirmed);
}

TEST_F(TheShownTransaction, IsConfirmedByTheLastPartnerWhoSharesIt) {
  Import(*company_, Importable::kTransactions,
         Csv("transaction,type,date,name,memo,account,amount,partner_realm,request_id,state\n"
             "S,bill,2024-04-01,Northern Power,,Due from Birch,40.00,1001,shared-birch,established\n"
             "S,bill,,,,Due from Cedar,30.00,1002,shared-cedar,sent\n"
             "S,bill,,,,Payables,-70.00,,,\n"));
  EXPECT_FALSE(ShowTransaction(*company_, 4).confirmed);

  SetState(*company_, standalone::RealmId("1002"), standalone::RequestId("shared-cedar"),
           standalone::TransactionState::kEstablished);

  EXPECT_TRUE(ShowTransaction(*company_, 4).confirmed);
}

TEST_F(TheShownTransaction, IsNotConfirmedWithoutARequest) {
  Import(*company_, Importable::kTransactions,
         Csv("transaction,type,date,name,memo,account,amount\n"
             "J2,journal,2024-04-01,,Own,Utilities,10.00\n"
             "J2,journal,,,,Checking,-10.00\n"));

  EXPECT_FALSE(ShowTransaction(*company_, 4).confirmed);
}

TEST_F(TheShownTransaction, TellsWhatItIsLinkedToFromBothSides) {
  ReverseTheBillInTheFile();

  const Json earlier = JsonOf(ShowTransaction(*company_, 1));
  const Json later = JsonOf(ShowTransaction(*company_, 4));

  EXPECT_EQ(earlier.at("links").dump(), R"([{"kind":"reversed-by","transaction":4}])");
  EXPECT_EQ(later.at("links").dump(), R"([{"kind":"reverses","transaction":1}])");
  EXPECT_EQ(later.at("attachments").dump(), R"(["papers/inv-7.pdf","https://papers/7"])");
  EXPECT_EQ(later.at("documentNumber"), "INV-7");
  EXPECT_EQ(later.at("lines").at(2).at("request").at("reversesLine"), earlier.at("lines").at(2).at("line"));
  EXPECT_EQ(later.at("lines").at(2).at("request").at("correctsLine"), nullptr);
}

TEST_F(TheShownTransaction, HasTheTrailForAdministratorsAndAccountants) {
  User accountant = UserWith("Ines", {"bills:view"});
  accountant.accountant = true;
  AddUser(*company_, accountant);

  ASSERT_TRUE(ShowTransaction(*company_, 1).audit);
  EXPECT_EQ(ShowTransaction(*company_, 1).audit->at(0).action, "import");
  Open("Ines");
  EXPECT_TRUE(ShowTransaction(*company_, 1).audit);
}

TEST_F(TheShownTransaction, HasTheTrailOfTheDaysThatAreAskedForAndIsItselfWhole) {
  const DateType32 day = ShowTransaction(*company_, 1).audit->at(0).localTime.day;

  EXPECT_THAT(*ShowTransaction(*company_, 1, {day, day}).audit, SizeIs(1));
  const ShownTransaction before = ShowTransaction(*company_, 1, {NullDate(), DateType32(1999, 12, 31)});
  EXPECT_THAT(*before.audit, IsEmpty());
  EXPECT_FALSE(before.lines.empty());
}

TEST_F(TheShownTransaction, HasNoTrailForOthers) {
  OpenFor("Robin", {"bills:view"});

  const ShownTransaction shown = ShowTransaction(*company_, 1);

  EXPECT_FALSE(shown.audit);
  EXPECT_EQ(JsonOf(shown).at("audit"), nullptr);
}

TEST_F(TheShownTransaction, NeedsTheRightToViewItsType) {
  OpenFor("Robin", {"bills:view"});

  const Refusal refusal = RefusalOf([&] { ShowTransaction(*company_, 2); });

  EXPECT_EQ(refusal.what, UseCase::kShowTransaction);
  EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  EXPECT_THAT(refusal.why, HasSubstr("checks:view"));
}

TEST_F(TheShownTransaction, IsNotSoughtForWhoMayViewNone) {
  OpenFor("Robin", {"bills:create"});

  EXPECT_EQ(RefusalOf([&] { ShowTransaction(*company_, 4711); }).remedy, Remedy::kAskForTheRight);
}

TEST_F(TheShownTransaction, ThatThereIsNotIsNamed) {
  EXPECT_THAT(MessageOf<InvalidInput>([&] { ShowTransaction(*company_, 4711); }), HasSubstr("no transaction 4711"));
}

}  // namespace
}  // namespace desk
