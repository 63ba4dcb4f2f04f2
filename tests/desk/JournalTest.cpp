#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class TheJournal : public DeskFixture {
 protected:
  static EntryToRecord EntryWithNew(std::string_view account, std::int16_t type, std::string_view name) {
    EntryToRecord entry = Entry("request-1");
    entry.expense = NewAccount{.name = standalone::NewAccountName(account), .type = type};
    entry.name = NewVendor{standalone::NewListName(name)};
    return entry;
  }

  // The company file is compared as it is before and after.
  Refusal RefusalThatLeavesNothing(const EntryToRecord& entry) {
    const std::string before = WholeFile();
    Refusal refusal = RefusalOf([&] { RecordJournalEntry(*company_, entry); });
    EXPECT_EQ(WholeFile(), before);
    EXPECT_EQ(refusal.what, UseCase::kRecordJournalEntry);
    return refusal;
  }
  // Refused by the desk, for an account and a vendor that are new.
  Refusal RefusalBeforeTheModuleIsAsked(EntryToRecord entry) {
    entry.name = NewVendor{standalone::NewListName("Cold Spring Elevator")};
    answers_.clear();
    Refusal refusal = RefusalThatLeavesNothing(entry);
    EXPECT_THAT(answers_, IsEmpty());
    EXPECT_EQ(refusal.status, std::nullopt);
    return refusal;
  }

  standalone::TransactionHeader HeaderOf(std::int32_t txnId) {
    standalone::StandaloneHost other(path_);
    return other.Request(standalone::Access::kRead, [&] { return other.Transactions().FindHeader(txnId).value(); });
  }
  std::vector<IntercompanyLine> Lines(std::int32_t txnId) {
    return ListIntercompanyLines(*company_, static_cast<std::int32_t>(txnId));
  }
};

TEST_F(TheJournal, BooksAPartnersBillToTheRelationsOwnDueToAccount) {
  RelateBirch();

  const std::int32_t txnId = RecordJournalEntry(*company_, Entry("request-1"));

  const std::vector<IntercompanyLine> lines = Lines(txnId);
  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_EQ(lines[0].account, (ListItem{AccountId("Utilities"), "Utilities"}));
  EXPECT_EQ(lines[0].otherAccount, (ListItem{AccountId("Due to Birch"), "Due to Birch"}));
  EXPECT_EQ(lines[0].amount, (standalone::Money{4000, "USD"}));
  EXPECT_EQ(lines[0].requestId, "request-1");
  EXPECT_EQ(lines[0].state, standalone::TransactionState::kEstablished);
}

TEST_F(TheJournal, TakesTheRelationsDueToAccountWhenItIsNamedToo) {
  RelateBirch();
  EntryToRecord entry = Entry("request-1");
  entry.dueTo = "due to birch";

  const std::int32_t txnId = RecordJournalEntry(*company_, entry);

  EXPECT_EQ(Lines(txnId).at(0).otherAccount, (ListItem{AccountId("Due to Birch"), "Due to Birch"}));
}

TEST_F(TheJournal, RefusesAnotherDueToAccountThanTheRelations) {
  RelateBirch();
  EntryToRecord entry = Entry("request-1");
  entry.dueTo = "Due to Cedar";

  const Refusal refusal = RefusalBeforeTheModuleIsAsked(entry);

  EXPECT_EQ(refusal.remedy, Remedy::kLeaveOutTheDueToAccount);
  EXPECT_EQ(refusal.why,
            "what this company owes Birch Services Company (realm 1001) is booked to the relation's account \"Due to "
            "Birch\", not to \"Due to Cedar\"");
}

TEST_F(TheJournal, RefusesToDebitTheAccountThatIsCredited) {
  RelateBirch();
  EntryToRecord entry = Entry("request-1");
  entry.expense = Existing{"Due to Birch"};

  const Refusal refusal = RefusalBeforeTheModuleIsAsked(entry);

  EXPECT_EQ(refusal.remedy, Remedy::kNameAnExpenseAccount);
  EXPECT_EQ(refusal.why,
            "the account \"Due to Birch\" would be both debited and credited, as it is the due-to account of Birch "
            "Services Company (realm 1001)");
}

TEST_F(TheJournal, RefusesToDebitWhatAnyPartnerOwesOrIsOwed) {
  RelateBirch();
  RelateCedar();
  for (const char* const paired : {"Due from Birch", "Due from Cedar", "Due to Cedar"}) {
    EntryToRecord entry = Entry("request-1");
    entry.expense = Existing{paired};

    const Refusal refusal = RefusalBeforeTheModuleIsAsked(entry);

    EXPECT_EQ(refusal.remedy, Remedy::kNameAnExpenseAccount);
    EXPECT_EQ(refusal.why, "the account " + standalone::Quoted(paired) + " is paired with a partner");
  }
}

TEST_F(TheJournal, RefusesAnAmountOfZero) {
  RelateBirch();
  for (const char* const nothing : {"0", "0.00", "-0.0", "000"}) {
    EntryToRecord entry = Entry("request-1");
    entry.amount = standalone::LineAmount(nothing);

    const Refusal refusal = RefusalBeforeTheModuleIsAsked(entry);

    EXPECT_EQ(refusal.remedy, Remedy::kGiveAnAmount) << nothing;
    EXPECT_EQ(refusal.why, "the amount is 0.00, and an entry over nothing is not booked") << nothing;
  }
}

TEST_F(TheJournal, RefusesToBookWhileTheRelationIsNotEstablished) {
  RelateBirch();
  for (const auto state : {standalone::RelationState::kPending, standalone::RelationState::kDeactivated,
                           standalone::RelationState::kWithoutAccounts, standalone::RelationState{2}}) {
    UpdateRelation(*company_, {.partner = standalone::RealmId("1001"), .state = state, .accounts = {}});

    const Refusal refusal = RefusalBeforeTheModuleIsAsked(Entry("request-1"));

    EXPECT_EQ(refusal.remedy, Remedy::kEstablishTheRelation);
    EXPECT_EQ(refusal.why, "the relation with Birch Services Company (realm 1001) is not established, but " +
                               standalone::StateName(state));
  }
}

TEST_F(TheJournal, RefusesABlankRequestId) {
  RelateBirch();

  for (const char* const blank : {" ", "   "}) {
    const Refusal refusal = RefusalBeforeTheModuleIsAsked(Entry(blank));

    EXPECT_EQ(refusal.remedy, Remedy::kGiveTheRequestId);
    EXPECT_EQ(refusal.why, "the request id is blank");
  }
}

TEST_F(TheJournal, RefusesARequestOfThePartnerThatWasRejected) {
  RelateBirch();
  SaveRejectionOf("request-1");

  const Refusal refusal = RefusalBeforeTheModuleIsAsked(Entry("request-1"));

  EXPECT_EQ(refusal.remedy, Remedy::kDeleteTheRejection);
  EXPECT_EQ(refusal.why, "the request \"request-1\" of Birch Services Company (realm 1001) was rejected");
}

TEST_F(TheJournal, BooksARejectedRequestOnceItsRejectionIsDeleted) {
  RelateBirch();
  SaveRejectionOf("request-1");
  DeleteRejection(*company_, standalone::RealmId("1001"), standalone::RequestId("request-1"));

  EXPECT_THAT(Lines(RecordJournalEntry(*company_, Entry("request-1"))), SizeIs(1));
}

TEST_F(TheJournal, RefusesARequestOfTheCompanysOwn) {
  RelateBirch();
  ImportMarch();

  for (const char* const own : {"request-bill", "request-check"}) {
    const Refusal refusal = RefusalBeforeTheModuleIsAsked(Entry(own));

    EXPECT_EQ(refusal.remedy, Remedy::kSeeOwnTransactions) << own;
    EXPECT_EQ(refusal.why, "the request " + standalone::Quoted(own) +
                               " is one of this company's own to Birch Services Company (realm 1001)");
  }
}

TEST_F(TheJournal, RefusesARequestOfAnEntryOfItsOwn) {
  RelateBirch();
  Import(*company_, Importable::kTransactions,
         Csv("transaction,type,date,name,memo,account,amount,partner_realm,request_id\n"
             "1,journal,2026-03-01,,,Due from Birch,10.00,1001,own\n1,journal,,,,Utilities,-10.00,,\n"));

  EXPECT_EQ(RefusalBeforeTheModuleIsAsked(Entry("own")).remedy, Remedy::kSeeOwnTransactions);
}

TEST_F(TheJournal, RefusesARequestIdThatDiffersFromABookedOneByBlanksOnly) {
  RelateBirch();
  RecordJournalEntry(*company_, Entry("request-1"));
  RecordJournalEntry(*company_, Entry("  request-2 "));

  for (const char* const request : {" request-1", "request-1 ", "  request-1  ", "request-2", " request-2"}) {
    const Refusal refusal = RefusalBeforeTheModuleIsAsked(Entry(request));

    EXPECT_EQ(refusal.remedy, Remedy::kWriteTheRequestIdAsKnown) << request;
    EXPECT_THAT(refusal.why, HasSubstr("the request id " + standalone::Quoted(request) + " differs from ")) << request;
    EXPECT_THAT(refusal.why, HasSubstr("of Birch Services Company (realm 1001), which is in the books already"));
  }
}

TEST_F(TheJournal, RefusesARequestIdThatDiffersFromARejectedOneByBlanksOnly) {
  RelateBirch();
  SaveRejectionOf("request-1");
  SaveRejectionOf(" request-2");

  for (const char* const request : {"request-1 ", " request-1", "request-2", "request-2 "}) {
    const Refusal refusal = RefusalBeforeTheModuleIsAsked(Entry(request));

    EXPECT_EQ(refusal.remedy, Remedy::kWriteTheRequestIdAsKnown) << request;
    EXPECT_THAT(refusal.why, HasSubstr("which was rejected, by nothing but blanks at its ends")) << request;
  }
}

TEST_F(TheJournal, RefusesARequestIdThatDiffersFromAKnownOneByTheCaseOfItsLettersOnly) {
  RelateBirch();
  RecordJournalEntry(*company_, Entry("0193b38b-6825-7b4c"));
  SaveRejectionOf("REQUEST-2");

  const Refusal booked = RefusalBeforeTheModuleIsAsked(Entry("0193B38B-6825-7B4C"));
  const Refusal rejected = RefusalBeforeTheModuleIsAsked(Entry("request-2"));

  EXPECT_EQ(booked.remedy, Remedy::kWriteTheRequestIdAsKnown);
  EXPECT_EQ(
      booked.why,
      "the request id \"0193B38B-6825-7B4C\" differs from \"0193b38b-6825-7b4c\" of Birch Services Company (realm "
      "1001), which is in the books already, by nothing but the case of its letters");
  EXPECT_EQ(rejected.remedy, Remedy::kWriteTheRequestIdAsKnown);
  EXPECT_THAT(rejected.why, HasSubstr("which was rejected, by nothing but the case of its letters"));
}

TEST_F(TheJournal, TellsRequestIdsApartThatDifferByMoreThanBlanksAtTheirEnds) {
  RelateBirch();
  RecordJournalEntry(*company_, Entry("request-1"));
  SaveRejectionOf("request-2");

  for (const char* const request :
       {"request 1", "request-1 b", "request-1!", "request-2b", "a request-2", " a request-1", "request-"}) {
    EXPECT_THAT(Lines(RecordJournalEntry(*company_, Entry(request))), SizeIs(1)) << request;
  }
}

TEST_F(TheJournal, BooksWhatAnotherPartnerCallsByARequestIdThatIsKnown) {
  RelateBirch();
  RelateCedar();
  for (const char* const request : {"request-1", "request-2"}) RecordJournalEntry(*company_, Entry(request));
  for (const char* const request : {"request-3", "request-4"}) SaveRejectionOf(request);

  for (const char* const request : {"request-1", " request-2", "request-3", "request-4 "}) {
    EntryToRecord entry = Entry(request);
    entry.partner = standalone::RealmId("1002");
    EXPECT_THAT(Lines(RecordJournalEntry(*company_, entry)), SizeIs(1)) << request;
  }
}

TEST_F(TheJournal, TakesAccountsAndNamesByRecordNumber) {
  RelateBirch();
  EntryToRecord entry = Entry("request-1");
  entry.expense = Existing{std::to_string(AccountId("Utilities:Power"))};
  entry.name = Existing{std::to_string(NameId("Walker:Depot"))};

  const std::int32_t txnId = RecordJournalEntry(*company_, entry);

  EXPECT_EQ(Lines(txnId).at(0).account, (ListItem{AccountId("Utilities:Power"), "Utilities:Power"}));
  EXPECT_EQ(Lines(txnId).at(0).name->id, NameId("Walker:Depot"));
}

TEST_F(TheJournal, MakesANewAccountAndANewVendorOnTheWay) {
  RelateBirch();

  const std::int32_t txnId =
      RecordJournalEntry(*company_, EntryWithNew("Utilities:Water", KrEnumerations::kExpense, "Well Works"));

  EXPECT_EQ(Lines(txnId).at(0).account, (ListItem{AccountId("Utilities:Water"), "Utilities:Water"}));
  EXPECT_EQ(Lines(txnId).at(0).name->id, NameId("Well Works"));
  EXPECT_THAT(Names(), HasSubstr(R"("name": "Well Works",
  "kind": "vendor")"));
}

TEST_F(TheJournal, BooksACreditOfAPartnerAsANegativeAmount) {
  RelateBirch();
  EntryToRecord entry = Entry("request-1");
  entry.amount = standalone::LineAmount("-12.50");

  const std::int32_t txnId = RecordJournalEntry(*company_, entry);

  EXPECT_EQ(Lines(txnId).at(0).amount, (standalone::Money{-1250, "USD"}));
}

TEST_F(TheJournal, BooksOnTheDayAndWithTheMemoThatThePersonNames) {
  RelateBirch();
  EntryToRecord entry = Entry("request-1");
  entry.date = DateType32(2026, 3, 31);
  entry.memo = standalone::Memo("March share");

  const std::int32_t txnId = RecordJournalEntry(*company_, entry);

  EXPECT_EQ(Lines(txnId).at(0).date, DateType32(2026, 3, 31));
  EXPECT_EQ(Lines(txnId).at(0).memo, "Northern Power");
  EXPECT_EQ(HeaderOf(txnId).memo, "March share");
}

TEST_F(TheJournal, BooksTodayUnderTheNameAgainAfterAnEntryThatWasWishedOtherwise) {
  RelateBirch();
  EntryToRecord entry = Entry("request-1");
  entry.date = DateType32(2026, 3, 31);
  entry.memo = standalone::Memo("March share");
  RecordJournalEntry(*company_, entry);
  entry.request = standalone::RequestId("request-1");
  RefusalOf([&] { RecordJournalEntry(*company_, entry); });

  const std::int32_t txnId = RecordJournalEntry(*company_, Entry("request-2"));

  EXPECT_NE(HeaderOf(txnId).date, DateType32(2026, 3, 31));
  EXPECT_EQ(HeaderOf(txnId).memo, "Northern Power");
}

TEST_F(TheJournal, BooksWithoutAMemoWhereThePersonWantsNone) {
  RelateBirch();
  EntryToRecord entry = Entry("request-1");
  entry.memo = standalone::Memo("");

  EXPECT_EQ(HeaderOf(RecordJournalEntry(*company_, entry)).memo, "");
}

TEST_F(TheJournal, RefusesANewAccountWhoseNameIsTaken) {
  RelateBirch();

  const Refusal refusal =
      RefusalThatLeavesNothing(EntryWithNew("utilities", KrEnumerations::kExpense, "Cold Spring Elevator"));

  EXPECT_EQ(refusal.status, 5);
  EXPECT_EQ(refusal.remedy, Remedy::kUseTheAccountOfThatName);
}

TEST_F(TheJournal, RefusesANewAccountBelowOneThatIsNotThere) {
  RelateBirch();

  const Refusal refusal =
      RefusalThatLeavesNothing(EntryWithNew("Nowhere:Lift", KrEnumerations::kExpense, "Cold Spring Elevator"));

  EXPECT_EQ(refusal.status, 6);
  EXPECT_EQ(refusal.remedy, Remedy::kCheckTheAccounts);
}

TEST_F(TheJournal, RefusesABookingForAPartnerWithoutRelation) {
  RelateCedar();

  const Refusal refusal =
      RefusalBeforeTheModuleIsAsked(EntryWithNew("Lift", KrEnumerations::kExpense, "Cold Spring Elevator"));

  EXPECT_EQ(refusal.remedy, Remedy::kMakeARelation);
  EXPECT_EQ(refusal.why, "there is no relation with the partner \"1001\". Did you mean \"1002\"?");
}

TEST_F(TheJournal, LeavesNoAccountOfABookingWhoseNewNameIsTaken) {
  RelateBirch();

  const Refusal refusal = RefusalThatLeavesNothing(EntryWithNew("Lift", KrEnumerations::kExpense, "northern power"));

  EXPECT_EQ(refusal.status, 16);
  EXPECT_EQ(refusal.remedy, Remedy::kUseTheNameLikeThat);
}

TEST_F(TheJournal, LeavesNoAccountOfABookingWhoseNewNameHasNoUpperName) {
  RelateBirch();

  const Refusal refusal = RefusalThatLeavesNothing(EntryWithNew("Lift", KrEnumerations::kExpense, "Nobody:Depot"));

  EXPECT_EQ(refusal.status, 17);
  EXPECT_EQ(refusal.remedy, Remedy::kMakeTheUpperNameFirst);
}

TEST_F(TheJournal, LeavesNeitherAccountNorNameOfABookingToAnAccountThatTakesNone) {
  RelateBirch();

  const Refusal refusal =
      RefusalThatLeavesNothing(EntryWithNew("Orders", KrEnumerations::kNonPosting, "Cold Spring Elevator"));

  EXPECT_EQ(refusal.status, 0);
  EXPECT_EQ(refusal.remedy, Remedy::kCheckTheEntry);
}

TEST_F(TheJournal, NamesTheEntryOfARequestThatIsBookedAlready) {
  RelateBirch();
  const std::int32_t txnId = RecordJournalEntry(*company_, Entry("request-1"));

  const Refusal refusal =
      RefusalThatLeavesNothing(EntryWithNew("Lift", KrEnumerations::kExpense, "Cold Spring Elevator"));

  EXPECT_EQ(refusal.status, 0);
  EXPECT_EQ(refusal.remedy, Remedy::kSeeTheBookedEntry);
  EXPECT_EQ(refusal.why,
            "the request \"request-1\" of Birch Services Company (realm 1001) is booked already, as journal entry " +
                std::to_string(txnId));
}

TEST_F(TheJournal, NamesTheEntryAlsoWhenItsNameOrAccountIsToBeMadeOnceMore) {
  RelateBirch();
  const EntryToRecord first = EntryWithNew("Lift", KrEnumerations::kExpense, "Cold Spring Elevator");
  RecordJournalEntry(*company_, first);
  const std::string before = WholeFile();
  EntryToRecord nameAgain = first;
  nameAgain.expense = Existing{"Lift"};

  const Refusal account = RefusalOf([&] { RecordJournalEntry(*company_, first); });
  const Refusal name = RefusalOf([&] { RecordJournalEntry(*company_, nameAgain); });

  for (const Refusal& refusal : {account, name}) {
    EXPECT_EQ(refusal.remedy, Remedy::kSeeTheBookedEntry);
    EXPECT_THAT(refusal.why, testing::HasSubstr("is booked already, as journal entry"));
  }
  EXPECT_EQ(account.status, 5);
  EXPECT_EQ(name.status, 16);
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheJournal, TellsTheModulesAnswerAlsoWhenItRefuses) {
  RelateBirch();
  RecordJournalEntry(*company_, Entry("request-1"));
  answers_.clear();

  RefusalOf([&] { RecordJournalEntry(*company_, Entry("request-1")); });
  RecordJournalEntry(*company_, Entry("request-2"));

  EXPECT_THAT(answers_, ElementsAre(0, 1));
}

TEST_F(TheJournal, NeedsTheRightToCreateEntries) {
  RelateBirch();
  OpenFor("Robin", {"journal:view", "journal:modify", "journal:delete", "bills:create", "checks:create"});

  const Refusal refusal =
      RefusalThatLeavesNothing(EntryWithNew("Lift", KrEnumerations::kExpense, "Cold Spring Elevator"));

  EXPECT_EQ(refusal.status, 3);
  EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
}

TEST_F(TheJournal, TellsWhoMayNotCreateEntriesNothingElse) {
  RelateBirch();
  RecordJournalEntry(*company_, Entry("request-1"));
  SaveRejectionOf("request-2");
  OpenFor("Robin", {"journal:view"});
  const auto with = [](auto change) {
    EntryToRecord entry = Entry("request-3");
    change(entry);
    return entry;
  };
  const std::vector<EntryToRecord> entries = {
      Entry("request-3"),
      Entry("request-1"),
      Entry("request-2"),
      Entry(" "),
      with([](EntryToRecord& entry) { entry.partner = standalone::RealmId("1009"); }),
      with([](EntryToRecord& entry) { entry.amount = standalone::LineAmount("0"); }),
      with([](EntryToRecord& entry) { entry.expense = Existing{"Freight"}; }),
      with([](EntryToRecord& entry) { entry.dueTo = "Due to Nobody"; }),
      with([](EntryToRecord& entry) { entry.name = Existing{"Nobody"}; }),
      with([](EntryToRecord& entry) {
        entry.expense = NewAccount{.name = standalone::NewAccountName("Utilities"), .type = KrEnumerations::kExpense};
      })};
  answers_.clear();

  for (const EntryToRecord& entry : entries) {
    const Refusal refusal = RefusalThatLeavesNothing(entry);

    EXPECT_EQ(refusal.status, 3);
    EXPECT_EQ(refusal.why, "the user has no right journal:create");
    EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  }
  EXPECT_THAT(answers_, AllOf(SizeIs(entries.size()), Each(3)));
}

TEST_F(TheJournal, IsOpenToWhoeverMayCreateEntries) {
  RelateBirch();
  OpenFor("Robin", {"journal:create", "journal:view"});

  const std::int32_t txnId = RecordJournalEntry(*company_, Entry("request-1"));

  EXPECT_THAT(Lines(txnId), SizeIs(1));
}

TEST_F(TheJournal, AsksForTheDueToAccountThatARelationHasNot) {
  const standalone::RealmId realm("1001");
  CreateRelation(*company_, {.realm = realm,
                             .partner = standalone::PartnerName("Birch Services Company"),
                             .type = 0,
                             .state = standalone::RelationState::kWithoutAccounts,
                             .accounts = {}});
  UpdateRelation(*company_, {.partner = realm, .state = standalone::RelationState::kEstablished, .accounts = {}});
  EntryToRecord entry = Entry("request-1");
  entry.dueTo = "Due to Birch";

  const Refusal refusal = RefusalBeforeTheModuleIsAsked(entry);

  EXPECT_EQ(refusal.remedy, Remedy::kGiveTheRelationAccounts);
  EXPECT_EQ(refusal.why, "the relation with Birch Services Company (realm 1001) has no due-to account");
}

TEST_F(TheJournal, NamesAnAccountThatIsNotThere) {
  RelateBirch();
  const std::string before = Everything();
  EntryToRecord entry = Entry("request-1");
  entry.expense = Existing{"Freight"};

  EXPECT_THAT(MessageOf<standalone::InvalidInput>([&] { RecordJournalEntry(*company_, entry); }),
              HasSubstr("\"Freight\""));

  EXPECT_EQ(Everything(), before);
}

TEST_F(TheJournal, ForgetsAnEntryThatIsRemovedWithItsIntercompanyRow) {
  RelateBirch();
  const std::string before = Records();
  const std::int32_t txnId = RecordJournalEntry(*company_, Entry("request-1"));

  RemoveJournalEntry(*company_, txnId);

  EXPECT_THAT(Lines(txnId), IsEmpty());
  EXPECT_EQ(Records(), before);
}

TEST_F(TheJournal, SaysWhatItRemoved) {
  RelateBirch();
  const std::int32_t txnId = RecordJournalEntry(*company_, Entry("request-1"));
  const std::vector<IntercompanyLine> listed = ListIntercompanyLines(*company_, txnId);

  const std::vector<IntercompanyLine> removed = RemoveJournalEntry(*company_, txnId);

  EXPECT_EQ(JsonOf(removed), JsonOf(listed));
}

TEST_F(TheJournal, RemovesNothingButEntriesOfAPartnersRequest) {
  RelateBirch();
  ImportMarch();
  Import(*company_, Importable::kTransactions,
         Csv("transaction,type,date,name,memo,account,amount\n"
             "O1,journal,2024-01-01,,Opening balances,Checking,900.00\n"
             "O1,journal,,,,Payables,-900.00\n"));
  const std::string before = Everything();

  constexpr std::int32_t kBillOfMarch = 1;
  constexpr std::int32_t kOpeningBalances = 4;
  for (const std::int32_t txnId : {kBillOfMarch, kOpeningBalances}) {
    const Refusal refusal = RefusalOf([&] { RemoveJournalEntry(*company_, txnId); });

    EXPECT_EQ(refusal.what, UseCase::kRemoveJournalEntry);
    EXPECT_EQ(refusal.remedy, Remedy::kReverseOrRemove);
    EXPECT_THAT(refusal.why, HasSubstr(std::to_string(txnId) + " was entered here"));
  }
  EXPECT_EQ(Everything(), before);
}

TEST_F(TheJournal, RemovesEntriesForWhoMayDeleteThem) {
  RelateBirch();
  const std::int32_t txnId = RecordJournalEntry(*company_, Entry("request-1"));
  OpenFor("Robin", {"journal:create", "journal:view", "journal:modify", "bills:delete"});
  const std::string before = Everything();

  const Refusal refusal = RefusalOf([&] { RemoveJournalEntry(*company_, txnId); });

  EXPECT_EQ(refusal.what, UseCase::kRemoveJournalEntry);
  EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  EXPECT_THAT(refusal.why, HasSubstr("journal:delete"));
  EXPECT_EQ(Everything(), before);
  Open();
  OpenFor("Kim", {"journal:delete"});
  EXPECT_THAT(RemoveJournalEntry(*company_, txnId), SizeIs(1));
}

TEST_F(TheJournal, RemovesNothingForWhoMayNotAndTellsNotWhatIsThere) {
  RelateBirch();
  ImportMarch();
  const std::int32_t txnId = RecordJournalEntry(*company_, Entry("request-1"));
  OpenFor("Robin", {"journal:create"});
  const std::string before = WholeFile();

  for (const std::int32_t id : {txnId, 1, 4711}) {
    EXPECT_EQ(RefusalOf([&] { RemoveJournalEntry(*company_, id); }).why,
              "The user \"Robin\" has no right journal:delete.");
  }

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheJournal, TellsOfAnEntryThatIsNotThere) {
  const std::string before = WholeFile();

  const Refusal refusal = RefusalOf([&] { RemoveJournalEntry(*company_, 4711); });

  EXPECT_EQ(refusal.status, std::nullopt);
  EXPECT_EQ(refusal.what, UseCase::kRemoveJournalEntry);
  EXPECT_EQ(refusal.why, "there is no transaction 4711");
  EXPECT_EQ(refusal.remedy, Remedy::kSeeTransactions);
  EXPECT_EQ(WholeFile(), before);
}

}  // namespace
}  // namespace desk
