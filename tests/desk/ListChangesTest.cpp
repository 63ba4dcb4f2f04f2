#include "standalone/desk/Entering.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/Thrown.h"

namespace desk {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

// The chart of accounts and the names as they are kept at the desk.
class TheKeepingOfLists : public DeskFixture {
 protected:
  Account Add(const std::string& name, std::optional<std::string> number = std::nullopt) {
    std::optional<standalone::AccountNumber> checked;
    if (number) checked.emplace(*number);
    return AddAccount(*company_, {.name = name, .type = KrEnumerations::kExpense, .number = checked});
  }

  AuditedDeed LastDeed() {
    return ListAudit(*company_, {.user = "", .action = "", .period = {NullDate(), NullDate()}, .txnId = {}}).back();
  }
  static auto Changed(const std::string& field, std::optional<std::string> before, std::optional<std::string> after) {
    return AllOf(testing::Field(&AuditedChange::field, field), testing::Field(&AuditedChange::before, before),
                 testing::Field(&AuditedChange::after, after));
  }

  // The desk refuses it before anything is written, so that not even a number is used up.
  template <typename Ask>
  Refusal RefusedWithNothingLeft(Ask&& ask) {
    const std::string before = WholeFile();
    const Refusal refusal = RefusalOf(std::forward<Ask>(ask));
    EXPECT_EQ(WholeFile(), before);
    return refusal;
  }
  template <typename Ask>
  std::string NotAcceptedWithNothingLeft(Ask&& ask) {
    const std::string before = WholeFile();
    std::string message = MessageOf<standalone::InvalidInput>(std::forward<Ask>(ask));
    EXPECT_EQ(WholeFile(), before);
    return message;
  }
};

TEST_F(TheKeepingOfLists, AddsAnAccountAndTellsTheTrail) {
  const Account added = Add("Utilities : Gas", "6120");

  EXPECT_EQ(added.name, "Utilities:Gas");
  EXPECT_EQ(added.number, "6120");
  EXPECT_EQ(AccountId("Utilities:Gas"), added.id);
  EXPECT_EQ(LastDeed().action, "account.add");
  EXPECT_EQ(LastDeed().subject, "the account Utilities:Gas, #" + std::to_string(added.id));
  EXPECT_THAT(LastDeed().changes, Contains(Changed("number", {}, "6120")));
  EXPECT_THAT(LastDeed().changes, Contains(Changed("type", {}, "Expense")));
}

TEST_F(TheKeepingOfLists, AddsNoAccountTwiceAndNoneWithoutItsParent) {
  EXPECT_THAT(NotAcceptedWithNothingLeft([&] { Add("UTILITIES"); }), HasSubstr("already an account \"Utilities\""));
  EXPECT_THAT(NotAcceptedWithNothingLeft([&] { Add("Insurance:Car"); }),
              HasSubstr("\"Insurance\", which does not exist"));
  Add("Insurance", "6130");
  EXPECT_THAT(NotAcceptedWithNothingLeft([&] { Add("Gas", "6130"); }), HasSubstr("\"Insurance\" has the number 6130"));
}

TEST_F(TheKeepingOfLists, RenamesAnAccountForWhatIsBookedToItToo) {
  RelateBirch();
  ImportMarch();

  const RenamedAccount renamed = RenameAccount(*company_, "Utilities", "Energy");

  EXPECT_EQ(renamed.account.name, "Energy");
  EXPECT_EQ(renamed.before, "Utilities");
  EXPECT_EQ(renamed.subAccounts, 1);
  EXPECT_EQ(AccountId("Energy:Power"), AccountId("Energy") + 1);
  EXPECT_EQ(ListIntercompanyLines(*company_, 3).at(0).account->name, "Energy");
  EXPECT_EQ(LastDeed().action, "account.rename");
  EXPECT_EQ(LastDeed().subject, "the account Utilities, #" + std::to_string(renamed.account.id));
  EXPECT_THAT(LastDeed().changes,
              testing::ElementsAre(Changed("name", "Utilities", "Energy"), Changed("sub-accounts", {}, "1")));
}

TEST_F(TheKeepingOfLists, TellsTheTrailNothingOfANameOrNumberThatIsTheSame) {
  SetAccountNumber(*company_, "Utilities", standalone::AccountNumber("6100"));
  const std::string before = WholeFile();

  const RenamedAccount account = RenameAccount(*company_, "Utilities", "Utilities");
  const RenumberedAccount number = SetAccountNumber(*company_, "Utilities", standalone::AccountNumber("6100"));
  const RenumberedAccount none = SetAccountNumber(*company_, "Checking", std::nullopt);
  const RenamedName name = RenameName(*company_, "Walker", "Walker");

  EXPECT_EQ(account.account.name, account.before);
  EXPECT_EQ(account.subAccounts, 0);
  EXPECT_EQ(number.before, "6100");
  EXPECT_EQ(none.before, "");
  EXPECT_EQ(name.name.name, name.before);
  EXPECT_EQ(name.subNames, 0);
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheKeepingOfLists, RenamesNoAccountAsAnotherIsCalled) {
  EXPECT_THAT(NotAcceptedWithNothingLeft([&] { RenameAccount(*company_, "Utilities", "checking"); }),
              HasSubstr("already an account \"Checking\""));
  EXPECT_THAT(NotAcceptedWithNothingLeft([&] { RenameAccount(*company_, "Utilities", "Energy:Gas"); }),
              HasSubstr("has a colon"));
  EXPECT_THAT(RefusedWithNothingLeft([&] {
                RenameAccount(*company_, "#" + std::to_string(AccountId("Old Rent")), "Rent");
              }).why,
              HasSubstr("\"Old Rent\" is marked deleted"));
}

TEST_F(TheKeepingOfLists, GivesAnAccountANumberAndTakesItBack) {
  const Account numbered = SetAccountNumber(*company_, "Utilities:Power", standalone::AccountNumber("6110.1"));

  EXPECT_EQ(numbered.number, "6110.1");
  EXPECT_EQ(LastDeed().action, "account.number");
  EXPECT_THAT(LastDeed().changes, testing::ElementsAre(Changed("number", {}, "6110.1")));
  EXPECT_EQ(RenameAccount(*company_, "6110.1", "Electricity").account.name, "Utilities:Electricity");

  EXPECT_EQ(SetAccountNumber(*company_, "6110.1", std::nullopt).number, "");
  EXPECT_THAT(LastDeed().changes, testing::ElementsAre(Changed("number", "6110.1", {})));
}

TEST_F(TheKeepingOfLists, AsksWhichAccountIsMeantRatherThanBookToEither) {
  RelateBirch();
  const std::string number = std::to_string(AccountId("Utilities"));
  SetAccountNumber(*company_, "Checking", standalone::AccountNumber(number));
  EntryToRecord entry = Entry("request-1");
  entry.expense = Existing{number};

  EXPECT_THAT(NotAcceptedWithNothingLeft([&] { RecordJournalEntry(*company_, entry); }),
              AllOf(HasSubstr("\"Checking\""), HasSubstr("\"Utilities\"")));
  EXPECT_THAT(NotAcceptedWithNothingLeft([&] {
                UpdateRelation(*company_, {.partner = standalone::RealmId("1001"),
                                           .state = {},
                                           .accounts = {.dueFrom = number, .dueTo = "Due to Birch"}});
              }),
              AllOf(HasSubstr("\"Checking\""), HasSubstr("\"Utilities\"")));

  entry.expense = Existing{"#" + number};
  const std::int32_t txnId = RecordJournalEntry(*company_, entry);
  EXPECT_EQ(ListIntercompanyLines(*company_, txnId).at(0).account->name, "Utilities");
}

TEST_F(TheKeepingOfLists, MarksAnUnusedAccountDeleted) {
  SetAccountNumber(*company_, "Utilities:Power", standalone::AccountNumber("6110"));

  EXPECT_TRUE(DeleteAccount(*company_, "6110").deleted);

  EXPECT_EQ(LastDeed().action, "account.delete");
  EXPECT_THAT(LastDeed().changes, testing::ElementsAre(Changed("deleted", "no", "yes")));
  EXPECT_EQ(Add("Utilities:Power", "6110").number, "6110");
  EXPECT_TRUE(DeleteAccount(*company_, "Utilities:Power").deleted);
  EXPECT_TRUE(DeleteAccount(*company_, "Utilities").deleted);
}

TEST_F(TheKeepingOfLists, DeletesNoAccountThatIsUsed) {
  RelateBirch();
  ImportMarch();

  const Refusal booked = RefusedWithNothingLeft([&] { DeleteAccount(*company_, "Checking"); });
  const Refusal related = RefusedWithNothingLeft([&] { DeleteAccount(*company_, "Due from Birch"); });
  const Refusal parent = RefusedWithNothingLeft([&] { DeleteAccount(*company_, "Utilities"); });

  EXPECT_EQ(booked.why, "the account \"Checking\" has 1 line");
  EXPECT_EQ(booked.remedy, Remedy::kRenameInstead);
  EXPECT_EQ(related.why,
            "the account \"Due from Birch\" is the due-from account of Birch Services Company (realm 1001)");
  EXPECT_EQ(related.remedy, Remedy::kChangeTheRelation);
  EXPECT_EQ(parent.why, "the account \"Utilities\" has sub-accounts");
  EXPECT_EQ(parent.remedy, Remedy::kDeleteTheLowerFirst);
  EXPECT_EQ(RefusedWithNothingLeft([&] { DeleteAccount(*company_, "Due to Birch"); }).remedy,
            Remedy::kChangeTheRelation);
}

TEST_F(TheKeepingOfLists, OfAccountsNeedsTheRightOfTheListForEach) {
  OpenFor("Robin", {"accounts:create", "bills:modify"});
  Add("Insurance");
  EXPECT_EQ(RefusedWithNothingLeft([&] { RenameAccount(*company_, "Nowhere", "Energy"); }).why,
            "The user \"Robin\" has no right accounts:modify.");
  EXPECT_EQ(RefusedWithNothingLeft([&] { SetAccountNumber(*company_, "Nowhere", std::nullopt); }).remedy,
            Remedy::kAskForTheRight);
  EXPECT_EQ(RefusedWithNothingLeft([&] { DeleteAccount(*company_, "Nowhere"); }).why,
            "The user \"Robin\" has no right accounts:delete.");
  Open();

  OpenFor("Vera", {"accounts:modify", "accounts:delete"});
  RenameAccount(*company_, "Insurance", "Cover");
  DeleteAccount(*company_, "Cover");
  EXPECT_EQ(RefusedWithNothingLeft([&] { Add("Rent"); }).why, "The user \"Vera\" has no right accounts:create.");
}

TEST_F(TheKeepingOfLists, AddsRenamesAndDeletesNames) {
  const Name added = AddName(*company_, {.name = "Stone Insurance", .kind = "Vendor"});
  EXPECT_EQ(added.kind, "vendor");
  EXPECT_EQ(LastDeed().action, "name.add");
  EXPECT_THAT(LastDeed().changes, Contains(Changed("kind", {}, "vendor")));

  const RenamedName renamed = RenameName(*company_, "Walker", "Walker & Daughter");
  EXPECT_EQ(renamed.name.name, "Walker & Daughter");
  EXPECT_EQ(renamed.subNames, 1);
  EXPECT_GT(NameId("Walker & Daughter:Depot"), 0);
  EXPECT_EQ(LastDeed().action, "name.rename");
  EXPECT_THAT(LastDeed().changes, Contains(Changed("name", "Walker", "Walker & Daughter")));

  EXPECT_EQ(DeleteName(*company_, "#" + std::to_string(added.id)).name, "Stone Insurance");
  EXPECT_EQ(LastDeed().action, "name.delete");
  EXPECT_THAT(LastDeed().changes, Contains(Changed("name", "Stone Insurance", {})));
  EXPECT_THAT(Names(), testing::Not(HasSubstr("Stone Insurance")));
}

TEST_F(TheKeepingOfLists, DeletesNoNameThatIsUsedAndTakesNoneTwice) {
  RelateBirch();
  ImportMarch();

  const Refusal carried = RefusedWithNothingLeft([&] { DeleteName(*company_, "Northern Power"); });
  const Refusal parent = RefusedWithNothingLeft([&] { DeleteName(*company_, "Walker"); });

  EXPECT_EQ(carried.why, "the name \"Northern Power\" has 1 transaction");
  EXPECT_EQ(carried.remedy, Remedy::kRenameInstead);
  EXPECT_EQ(parent.why, "the name \"Walker\" has names below it");
  EXPECT_EQ(parent.remedy, Remedy::kDeleteTheLowerFirst);
  EXPECT_THAT(NotAcceptedWithNothingLeft([&] { AddName(*company_, {.name = "WALKER", .kind = "other"}); }),
              HasSubstr("already a name"));
  EXPECT_THAT(NotAcceptedWithNothingLeft([&] { RenameName(*company_, "Walker", "northern power"); }),
              HasSubstr("already a name"));
}

TEST_F(TheKeepingOfLists, OfNamesIsForWhoEntersButRenamingAndDeletingForAccountants) {
  User ines = UserWith("Ines", {});
  ines.accountant = true;
  AddUser(*company_, ines);
  OpenFor("Robin", {"checks:create"});
  AddName(*company_, {.name = "Elm Freight", .kind = "vendor"});
  EXPECT_THAT(RefusedWithNothingLeft([&] { RenameName(*company_, "Nobody", "Somebody"); }), IsForAdministrators());
  EXPECT_THAT(RefusedWithNothingLeft([&] { DeleteName(*company_, "Nobody"); }), IsForAdministrators());

  Open("Ines");
  RenameName(*company_, "Elm Freight", "Elm");
  DeleteName(*company_, "Elm");
  EXPECT_THAT(RefusedWithNothingLeft([&] { AddName(*company_, {.name = "Elm", .kind = "vendor"}); }).why,
              HasSubstr("no right bills:create or checks:create or journal:create"));
}

TEST_F(TheKeepingOfLists, TellsOfAccountsAndNamesThatAreCalledAlike) {
  Add("Caf\u00e9");
  AddName(*company_, {.name = "Stra\u00dfenbau", .kind = "vendor"});
  EXPECT_THAT(lookalikes_, IsEmpty());

  Add("CAFE\u0301");
  RenameName(*company_, "Walker", "STRASSENBAU");

  ASSERT_EQ(lookalikes_.size(), 2U);
  EXPECT_EQ(lookalikes_[0].list, Lookalikes::List::kAccounts);
  EXPECT_EQ(lookalikes_[0].count, 1);
  EXPECT_EQ(lookalikes_[0].first.at(0).name, "CAFE\u0301");
  EXPECT_EQ(lookalikes_[0].first.at(0).other, "Caf\u00e9");
  EXPECT_EQ(lookalikes_[1].list, Lookalikes::List::kNames);
  EXPECT_EQ(lookalikes_[1].first.at(0).other, "Stra\u00dfenbau");
}

TEST_F(TheKeepingOfLists, DoesNotCallARenamedAccountLikeItself) {
  Add("Caf\u00e9");

  RenameAccount(*company_, "Caf\u00e9", "CAF\u00c9");

  EXPECT_THAT(lookalikes_, IsEmpty());
}

TEST_F(TheKeepingOfLists, TellsWhatABookingMadeThatIsCalledAlikeOnceItIsBooked) {
  RelateBirch();
  Add("Caf\u00e9");
  AddName(*company_, {.name = "\u00c4rzte", .kind = "vendor"});
  EntryToRecord entry = Entry("request-1");
  entry.expense = NewAccount{.name = standalone::NewAccountName("CAF\u00c9"), .type = KrEnumerations::kExpense};
  entry.name = NewVendor{standalone::NewListName("A\u0308rzte")};
  EntryToRecord refused = entry;
  refused.request = standalone::RequestId(" ");

  RefusalOf([&] { RecordJournalEntry(*company_, refused); });
  EXPECT_THAT(lookalikes_, IsEmpty());
  RecordJournalEntry(*company_, entry);

  ASSERT_EQ(lookalikes_.size(), 2U);
  EXPECT_EQ(lookalikes_[0].first.at(0).other, "Caf\u00e9");
  EXPECT_EQ(lookalikes_[1].first.at(0).other, "\u00c4rzte");
}

TEST_F(TheKeepingOfLists, TellsOfTheVendorOfABillThatIsCalledAlikeOnceItIsPosted) {
  AddName(*company_, {.name = "Caf\u00e9", .kind = "vendor"});
  const TransactionToRecord bill{
      .type = EnteredType::kBill,
      .date = DateType32(2024, 4, 5),
      .name = NewVendor{standalone::NewListName("CAF\u00c9")},
      .memo = standalone::Memo(""),
      .lines = {{.account = "Utilities", .amount = standalone::LineAmount("90.00"), .memo = standalone::Memo("")}},
      .shares = {},
      .attachments = {}};

  RecordTransaction(*company_, bill, Posting::kPreviewOnly);
  EXPECT_THAT(lookalikes_, IsEmpty());
  RecordTransaction(*company_, bill, Posting::kPost);

  ASSERT_EQ(lookalikes_.size(), 1U);
  EXPECT_EQ(lookalikes_[0].first.at(0).other, "Caf\u00e9");
}

TEST_F(TheKeepingOfLists, CountsWhatAnImportMadeThatIsCalledAlike) {
  Import(*company_, Importable::kNames, Csv("name,kind\nCaf\u00e9,vendor\nCAF\u00c9,vendor\ncafe\u0301,vendor\n"));

  ASSERT_EQ(lookalikes_.size(), 1U);
  EXPECT_EQ(lookalikes_[0].list, Lookalikes::List::kNames);
  EXPECT_EQ(lookalikes_[0].count, 2);
  EXPECT_EQ(lookalikes_[0].first.at(1).name, "cafe\u0301");
}

TEST_F(TheKeepingOfLists, TellsOfTheVendorOfACorrectionThatIsCalledAlikeOnceItIsPosted) {
  RelateBirch();
  Import(*company_, Importable::kTransactions,
         Csv("transaction,type,date,name,memo,account,amount\n"
             "1,bill,2024-03-01,Northern Power,,Utilities,90.00\n1,bill,,,,Payables,-90.00\n"));
  AddName(*company_, {.name = "Caf\u00e9", .kind = "vendor"});
  const TransactionToCorrect correction{
      .type = EnteredType::kBill, .txnId = 1, .name = NewVendor{standalone::NewListName("CAF\u00c9")}};

  CorrectTransaction(*company_, correction, Posting::kPreviewOnly);
  EXPECT_THAT(lookalikes_, IsEmpty());
  CorrectTransaction(*company_, correction, Posting::kPost);

  ASSERT_EQ(lookalikes_.size(), 1U);
  EXPECT_EQ(lookalikes_[0].first.at(0).other, "Caf\u00e9");
}

}  // namespace
}  // namespace desk
