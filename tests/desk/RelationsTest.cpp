#include "MultiEntityHost/Preferences.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::RealmId;
using standalone::RelationState;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class TheRelations : public DeskFixture {
 protected:
  static NewRelation Cedar() {
    return {.realm = RealmId("2002"),
            .partner = standalone::PartnerName("Cedar Haulage"),
            .type = 7,
            .state = RelationState::kPending,
            .accounts = {.dueFrom = "Due from Cedar", .dueTo = "Due to Cedar"}};
  }
  // Which took a partner's realm id for the company's own, too.
  void RememberAsOlderProgramsDid(std::string_view realm) {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite, [&] { other.Preferences().Set(kRealmIdPreference, realm); });
  }
};

TEST_F(TheRelations, AreShownWithTheirAccountsByIdAndName) {
  const auto before = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  CreateRelation(*company_, Cedar());

  const Relation relation = ShowRelation(*company_, RealmId("2002"));

  EXPECT_EQ(relation.realm, "2002");
  EXPECT_EQ(relation.partner, "Cedar Haulage");
  EXPECT_EQ(relation.type, 7);
  EXPECT_EQ(relation.state, RelationState::kPending);
  EXPECT_EQ(relation.dueFrom, (ListItem{AccountId("Due from Cedar"), "Due from Cedar"}));
  EXPECT_EQ(relation.dueTo, (ListItem{AccountId("Due to Cedar"), "Due to Cedar"}));
  EXPECT_EQ(relation.revision, 1);
  EXPECT_GE(relation.createdAt, before);
  EXPECT_EQ(relation.changedAt, relation.createdAt);
}

TEST_F(TheRelations, AreShownByNumberToo) {
  RelateBirch();
  const std::int32_t id = ShowRelation(*company_, RealmId("1001")).id;

  EXPECT_EQ(ShowRelation(*company_, id).partner, "Birch Services Company");
}

TEST_F(TheRelations, AreListedInTheOrderInWhichTheyWereMade) {
  CreateRelation(*company_, Cedar());
  RelateBirch();

  const std::vector<Relation> relations = ListRelations(*company_);

  ASSERT_THAT(relations, SizeIs(2));
  EXPECT_EQ(relations[0].partner, "Cedar Haulage");
  EXPECT_EQ(relations[1].partner, "Birch Services Company");
}

TEST_F(TheRelations, TellTheRealmsOfThosePartnersThatHaveAccounts) {
  RelateBirch();
  NewRelation cedar = Cedar();
  cedar.state = RelationState::kWithoutAccounts;
  cedar.accounts = {};
  CreateRelation(*company_, cedar);

  EXPECT_THAT(ListRealms(*company_, /*withAccountsOnly=*/false), testing::UnorderedElementsAre("1001", "2002"));
  EXPECT_THAT(ListRealms(*company_, /*withAccountsOnly=*/true), ElementsAre("1001"));
  EXPECT_EQ(ShowRelation(*company_, RealmId("2002")).dueFrom, std::nullopt);
  EXPECT_EQ(ShowRelation(*company_, RealmId("2002")).dueTo, std::nullopt);
}

TEST_F(TheRelations, KeepWhatAChangeLeavesOutAndCountTheChange) {
  CreateRelation(*company_, Cedar());

  UpdateRelation(*company_, {.partner = RealmId("2002"), .state = RelationState::kEstablished, .accounts = {}});

  const Relation relation = ShowRelation(*company_, RealmId("2002"));
  EXPECT_EQ(relation.state, RelationState::kEstablished);
  EXPECT_EQ(relation.dueFrom, (ListItem{AccountId("Due from Cedar"), "Due from Cedar"}));
  EXPECT_EQ(relation.revision, 2);
}

TEST_F(TheRelations, KeepTheirStateWhenOnlyTheAccountsChange) {
  CreateRelation(*company_, Cedar());

  UpdateRelation(
      *company_,
      {.partner = RealmId("2002"), .state = {}, .accounts = {.dueFrom = "Due from Birch", .dueTo = "Due to Birch"}});

  const Relation relation = ShowRelation(*company_, RealmId("2002"));
  EXPECT_EQ(relation.state, RelationState::kPending);
  EXPECT_EQ(relation.dueFrom, (ListItem{AccountId("Due from Birch"), "Due from Birch"}));
  EXPECT_EQ(relation.dueTo, (ListItem{AccountId("Due to Birch"), "Due to Birch"}));
}

TEST_F(TheRelations, AreNeverInTheStateThatAsksToKeepTheState) {
  RelateBirch();
  NewRelation cedar = Cedar();
  cedar.state = RelationState{6};
  const std::string before = Everything();

  EXPECT_THROW(CreateRelation(*company_, cedar), standalone::InvalidInput);
  EXPECT_THROW(UpdateRelation(*company_, {.partner = RealmId("1001"), .state = RelationState{6}, .accounts = {}}),
               standalone::InvalidInput);

  EXPECT_EQ(Everything(), before);
  EXPECT_EQ(ShowRelation(*company_, RealmId("1001")).revision, 1);
}

TEST_F(TheRelations, AreTakenUpAgainWhileTheyArePending) {
  CreateRelation(*company_, Cedar());
  NewRelation again = Cedar();
  again.state = RelationState::kEstablished;

  CreateRelation(*company_, again);

  EXPECT_EQ(ShowRelation(*company_, RealmId("2002")).state, RelationState::kEstablished);
  EXPECT_THAT(ListRelations(*company_), SizeIs(1));
}

TEST_F(TheRelations, ShareNoAccounts) {
  RelateBirch();
  NewRelation cedar = Cedar();
  cedar.accounts.dueTo = "Due to Birch";

  const Refusal refusal = RefusalOf([&] { CreateRelation(*company_, cedar); });

  EXPECT_EQ(refusal.what, UseCase::kCreateRelation);
  EXPECT_EQ(refusal.status, 13);
  EXPECT_EQ(refusal.remedy, Remedy::kChooseFreePartnerOrAccounts);
  EXPECT_THAT(ListRelations(*company_), SizeIs(1));
}

TEST_F(TheRelations, NeedBothAccounts) {
  NewRelation cedar = Cedar();
  cedar.accounts.dueTo.reset();

  const Refusal refusal = RefusalOf([&] { CreateRelation(*company_, cedar); });

  EXPECT_EQ(refusal.status, 12);
  EXPECT_EQ(refusal.remedy, Remedy::kGiveBothAccounts);
  EXPECT_THAT(ListRelations(*company_), IsEmpty());
}

TEST_F(TheRelations, AreGivenBothAccountsOrKeepBoth) {
  CreateRelation(*company_, Cedar());
  answers_.clear();

  const Refusal dueFrom = RefusalOf([&] {
    UpdateRelation(*company_,
                   {.partner = RealmId("2002"), .state = {}, .accounts = {.dueFrom = "Checking", .dueTo = {}}});
  });
  const Refusal dueTo = RefusalOf([&] {
    UpdateRelation(*company_,
                   {.partner = RealmId("2002"), .state = {}, .accounts = {.dueFrom = {}, .dueTo = "Due to Birch"}});
  });

  EXPECT_EQ(dueFrom.why, "only the due-from account is given; a relation is given both or keeps both");
  EXPECT_EQ(dueTo.why, "only the due-to account is given; a relation is given both or keeps both");
  for (const Refusal& refusal : {dueFrom, dueTo}) {
    EXPECT_EQ(refusal.status, std::nullopt);
    EXPECT_EQ(refusal.remedy, Remedy::kGiveBothAccounts);
  }
  EXPECT_THAT(answers_, IsEmpty());
  EXPECT_EQ(ShowRelation(*company_, RealmId("2002")).revision, 1);
}

TEST_F(TheRelations, UseNoAccountThatIsMarkedDeletedOrOfAnotherKind) {
  Import(*company_, Importable::kAccounts, Csv("name,type,deleted\nOld Deposits,Other Asset,yes\n"));
  for (const char* const account : {"Old Deposits", "Receivables", "Undeposited Funds"}) {
    NewRelation cedar = Cedar();
    cedar.accounts.dueFrom = std::to_string(AccountId(account));

    const Refusal refusal = RefusalOf([&] { CreateRelation(*company_, cedar); });

    EXPECT_EQ(refusal.status, 28) << account;
    EXPECT_EQ(refusal.remedy, Remedy::kChooseUsableAccounts) << account;
  }
  EXPECT_THAT(ListRelations(*company_), IsEmpty());
}

TEST_F(TheRelations, AreMadeChangedAndDeletedByAdministratorsAndAccountants) {
  RelateBirch();
  OpenFor("Robin", {"journal:create", "bills:modify", "accounts:modify"});

  const Refusal created = RefusalOf([&] { CreateRelation(*company_, Cedar()); });
  const Refusal updated = RefusalOf([&] {
    UpdateRelation(*company_, {.partner = RealmId("1001"), .state = RelationState::kPending, .accounts = {}});
  });
  const Refusal deleted = RefusalOf([&] { DeleteRelation(*company_, RealmId("1001"), true); });

  EXPECT_EQ(created.status, 3);
  EXPECT_EQ(updated.status, 3);
  EXPECT_EQ(deleted.status, 3);
  EXPECT_EQ(updated.remedy, Remedy::kAskAnAdministrator);
  EXPECT_EQ(ShowRelation(*company_, RealmId("1001")).revision, 1);
  EXPECT_THAT(ListRelations(*company_), SizeIs(1));
}

TEST_F(TheRelations, AreToldToNobodyWhoMayNotChangeThem) {
  RelateBirch();
  RememberRealm(*company_, RealmId("9130"));
  OpenFor("Robin", {"journal:create"});
  const std::string before = WholeFile();
  NewRelation misspelt = Cedar();
  misspelt.accounts.dueFrom = "Due from Nobody";
  NewRelation own = Cedar();
  own.realm = RealmId("9130");
  NewRelation wrongType = Cedar();
  wrongType.accounts.dueFrom = "Utilities";

  for (const NewRelation& relation : {misspelt, own, wrongType}) {
    const Refusal created = RefusalOf([&] { CreateRelation(*company_, relation); });
    const Refusal updated = RefusalOf(
        [&] { UpdateRelation(*company_, {.partner = relation.realm, .state = {}, .accounts = relation.accounts}); });

    EXPECT_EQ(created.status, 3);
    EXPECT_EQ(updated.status, 3);
    EXPECT_EQ(created.why, "the user is no administrator and no accountant; relations are changed by them only");
    EXPECT_EQ(updated.why, created.why);
  }
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheRelations, AreNotMadeWithTheCompanyItself) {
  RememberRealm(*company_, RealmId("2002"));
  const std::string before = WholeFile();
  for (const char* const realm : {"2002", " 2002", "2002 "}) {
    NewRelation own = Cedar();
    own.realm = RealmId(realm);

    const Refusal refusal = RefusalOf([&] { CreateRelation(*company_, own); });

    EXPECT_EQ(refusal.what, UseCase::kCreateRelation);
    EXPECT_EQ(refusal.status, std::nullopt);
    EXPECT_EQ(refusal.remedy, Remedy::kNameThePartnersRealm);
    EXPECT_EQ(refusal.why, "the realm " + standalone::Quoted(realm) +
                               " is this company's own, and a relation is with another company");
  }
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheRelations, AreNotChangedForTheCompanyItself) {
  CreateRelation(*company_, Cedar());
  RememberAsOlderProgramsDid("2002");
  const std::string before = WholeFile();

  const Refusal refusal = RefusalOf([&] {
    UpdateRelation(*company_, {.partner = RealmId("2002"), .state = RelationState::kEstablished, .accounts = {}});
  });

  EXPECT_EQ(refusal.what, UseCase::kUpdateRelation);
  EXPECT_EQ(refusal.status, std::nullopt);
  EXPECT_EQ(refusal.remedy, Remedy::kNameThePartnersRealm);
  EXPECT_EQ(WholeFile(), before);
  EXPECT_FALSE(DeleteRelation(*company_, RealmId("2002"), /*force=*/true).deactivated);
}

TEST_F(TheRelations, NeedAnAssetForWhatThePartnerOwesAndALiabilityForWhatIsOwed) {
  RelateBirch();
  const std::string before = WholeFile();
  NewRelation noAsset = Cedar();
  noAsset.accounts.dueFrom = "Utilities";
  NewRelation noLiability = Cedar();
  noLiability.accounts.dueTo = "Checking";
  const std::pair<NewRelation, const char*> wrongs[] = {
      {noAsset, "the due-from account \"Utilities\" is of the type Expense, which is no asset"},
      {noLiability, "the due-to account \"Checking\" is of the type Bank, which is no liability"}};

  for (const auto& [wrong, why] : wrongs) {
    const Refusal created = RefusalOf([&] { CreateRelation(*company_, wrong); });
    const Refusal updated = RefusalOf(
        [&] { UpdateRelation(*company_, {.partner = RealmId("1001"), .state = {}, .accounts = wrong.accounts}); });

    for (const Refusal& refusal : {created, updated}) {
      EXPECT_EQ(refusal.status, std::nullopt);
      EXPECT_EQ(refusal.remedy, Remedy::kChooseAssetAndLiability);
      EXPECT_EQ(refusal.why, why);
    }
  }
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheRelations, TakeAccountsOfAnyTypeWhenAPersonSaysSo) {
  RelateBirch();
  const RelationAccounts accounts{.dueFrom = "Utilities", .dueTo = "Checking", .ofAnyType = true};
  NewRelation cedar = Cedar();
  cedar.accounts = accounts;
  CreateRelation(*company_, cedar);
  DeleteRelation(*company_, RealmId("2002"), /*force=*/true);

  UpdateRelation(*company_, {.partner = RealmId("1001"), .state = {}, .accounts = accounts});

  EXPECT_EQ(ShowRelation(*company_, RealmId("1001")).dueFrom, (ListItem{AccountId("Utilities"), "Utilities"}));
  EXPECT_EQ(ShowRelation(*company_, RealmId("1001")).dueTo, (ListItem{AccountId("Checking"), "Checking"}));
}

TEST_F(TheRelations, TakeNoAccountsThatTheModuleRefusesWhateverAPersonSays) {
  NewRelation cedar = Cedar();
  cedar.accounts = {.dueFrom = "Receivables", .dueTo = "Utilities", .ofAnyType = true};

  EXPECT_EQ(RefusalOf([&] { CreateRelation(*company_, cedar); }).status, 28);
}

TEST_F(TheRelations, HaveTwoAccountsThatAreNotOne) {
  RelateBirch();
  const std::string before = WholeFile();
  NewRelation cedar = Cedar();
  cedar.accounts = {.dueFrom = "Due to Cedar", .dueTo = "due to cedar", .ofAnyType = true};

  const Refusal created = RefusalOf([&] { CreateRelation(*company_, cedar); });
  const Refusal updated = RefusalOf(
      [&] { UpdateRelation(*company_, {.partner = RealmId("1001"), .state = {}, .accounts = cedar.accounts}); });

  for (const Refusal& refusal : {created, updated}) {
    EXPECT_EQ(refusal.status, std::nullopt);
    EXPECT_EQ(refusal.remedy, Remedy::kGiveTwoAccounts);
    EXPECT_EQ(refusal.why, "the due-from and the due-to account are one, \"Due to Cedar\"");
  }
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheRelations, AreNotTakenUpAgainWithTheOtherOfTheirAccounts) {
  CreateRelation(*company_, Cedar());
  NewRelation again = Cedar();
  again.accounts = {.dueFrom = {}, .dueTo = "Due from Cedar", .ofAnyType = true};

  const Refusal refusal = RefusalOf([&] { CreateRelation(*company_, again); });

  EXPECT_EQ(refusal.remedy, Remedy::kGiveTwoAccounts);
  EXPECT_EQ(ShowRelation(*company_, RealmId("2002")).revision, 1);
}

TEST_F(TheRelations, KeepTheAccountsOnWhichSomethingIsBookedWithThePartner) {
  RelateBirch();
  ImportMarch();
  const std::string before = WholeFile();
  answers_.clear();

  const Refusal dueFrom = RefusalOf([&] {
    UpdateRelation(
        *company_,
        {.partner = RealmId("1001"), .state = {}, .accounts = {.dueFrom = "Due from Cedar", .dueTo = "Due to Birch"}});
  });
  const Refusal dueTo = RefusalOf([&] {
    UpdateRelation(*company_, {.partner = RealmId("1001"),
                               .state = RelationState::kPending,
                               .accounts = {.dueFrom = "Due from Birch", .dueTo = "Due to Cedar"}});
  });

  for (const Refusal& refusal : {dueFrom, dueTo}) {
    EXPECT_EQ(refusal.what, UseCase::kUpdateRelation);
    EXPECT_EQ(refusal.status, std::nullopt);
    EXPECT_EQ(refusal.remedy, Remedy::kKeepTheAccount);
  }
  EXPECT_EQ(dueFrom.why,
            "the due-from account of Birch Services Company (realm 1001) stays \"Due from Birch\", on which bill 1 is "
            "booked");
  EXPECT_EQ(
      dueTo.why,
      "the due-to account of Birch Services Company (realm 1001) stays \"Due to Birch\", on which journal entry 3 "
      "is booked");
  EXPECT_THAT(answers_, IsEmpty());
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheRelations, AreNotTakenUpAgainWithOtherAccountsThanThoseOnWhichSomethingIsBooked) {
  RelateBirch();
  ImportMarch();
  UpdateRelation(*company_, {.partner = RealmId("1001"), .state = RelationState::kPending, .accounts = {}});
  NewRelation again = Cedar();
  again.realm = RealmId("1001");
  const std::string before = WholeFile();

  const Refusal refusal = RefusalOf([&] { CreateRelation(*company_, again); });

  EXPECT_EQ(refusal.remedy, Remedy::kKeepTheAccount);
  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheRelations, MayBeGivenTheAccountsThatTheyHaveWhateverIsBooked) {
  RelateBirch();
  ImportMarch();

  UpdateRelation(*company_, {.partner = RealmId("1001"),
                             .state = RelationState::kPending,
                             .accounts = {.dueFrom = "due from birch", .dueTo = "Due to Birch"}});

  EXPECT_EQ(ShowRelation(*company_, RealmId("1001")).state, RelationState::kPending);
}

TEST_F(TheRelations, GetOtherAccountsWhileNothingIsBookedWithThePartner) {
  RelateBirch();
  CreateRelation(*company_, Cedar());
  ImportMarch();
  Import(*company_, Importable::kAccounts, Csv("name,type\nFrom Cedar,Other Asset\n"));

  UpdateRelation(
      *company_,
      {.partner = RealmId("2002"), .state = {}, .accounts = {.dueFrom = "From Cedar", .dueTo = "Due to Cedar"}});

  EXPECT_EQ(ShowRelation(*company_, RealmId("2002")).dueFrom->name, "From Cedar");
}

TEST_F(TheRelations, MayBeMadeByAnAccountant) {
  AddUser(*company_, {.name = "Robin", .administrator = false, .accountant = true, .rights = {}});
  Open("Robin");

  RelateBirch();

  EXPECT_THAT(ListRelations(*company_), SizeIs(1));
}

TEST_F(TheRelations, AreRemovedWhenNothingRefersToThem) {
  RelateBirch();

  EXPECT_FALSE(DeleteRelation(*company_, RealmId("1001"), /*force=*/false).deactivated);

  EXPECT_THAT(ListRelations(*company_), IsEmpty());
}

TEST_F(TheRelations, AreDeactivatedWhileTransactionsReferToThem) {
  RelateBirch();
  ImportMarch();

  EXPECT_TRUE(DeleteRelation(*company_, RealmId("1001"), /*force=*/false).deactivated);

  EXPECT_EQ(ShowRelation(*company_, RealmId("1001")).state, RelationState::kDeactivated);
}

TEST_F(TheRelations, AreDeletedWhilePendingOnlyByForce) {
  CreateRelation(*company_, Cedar());

  const Refusal refusal = RefusalOf([&] { DeleteRelation(*company_, RealmId("2002"), /*force=*/false); });

  EXPECT_EQ(refusal.what, UseCase::kDeleteRelation);
  EXPECT_EQ(refusal.status, 9);
  EXPECT_EQ(refusal.remedy, Remedy::kForceOrWait);
  EXPECT_THAT(ListRelations(*company_), SizeIs(1));
  EXPECT_FALSE(DeleteRelation(*company_, RealmId("2002"), /*force=*/true).deactivated);
}

TEST_F(TheRelations, AreNotShownWhenThereIsNone) {
  const Refusal byRealm = RefusalOf([&] { ShowRelation(*company_, RealmId("1001")); });
  const Refusal byNumber = RefusalOf([&] { ShowRelation(*company_, 77); });
  const Refusal deleted = RefusalOf([&] { DeleteRelation(*company_, RealmId("1001"), false); });

  EXPECT_EQ(byRealm.what, UseCase::kReadRelations);
  EXPECT_NE(byRealm.status, std::nullopt);
  EXPECT_NE(byNumber.status, std::nullopt);
  EXPECT_EQ(deleted.status, 12);
  EXPECT_EQ(deleted.remedy, Remedy::kSeeRelations);
}

}  // namespace
}  // namespace desk
