#include <stdexcept>

#include "standalone/desk/results/Person.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::RealmId;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class TheRealm : public DeskFixture {
 protected:
  // Somebody who answers all alike and remembers what was asked and shown.
  Person Answering(bool answer) {
    return {.answer =
                [this, answer](const Question& question) {
                  asked_.push_back(question);
                  return answer;
                },
            .show =
                [this](std::string_view url, const PluginScreen& screen) {
                  urls_.emplace_back(url);
                  shown_.push_back(screen);
                }};
  }
  static Person WhoLeavesWhenAsked() {
    return {.answer = [](const Question&) -> bool { throw std::runtime_error("the person has left"); }, .show = {}};
  }
  static Person WhoLeavesWhenShown() {
    return {.answer = [](const Question&) { return true; },
            .show =
                [](std::string_view, const PluginScreen&) {
                  throw std::runtime_error("the person has left");
                }};
  }

  // The company works for realm 9130 and is told that it is another one now.
  RealmCheck CheckAfterReset(const Person& person) {
    RememberRealm(*company_, RealmId("9130"));
    return CheckRealm(*company_, RealmId("9131"), person);
  }

  void ExpectSoundBooks() {
    RecordJournalEntry(*company_, Entry("request-after"));
    EXPECT_THAT(ListIntercompanyLines(*company_, Period(NullDate(), NullDate())), SizeIs(1));
    standalone::StandaloneHost other(path_);
    EXPECT_EQ(standalone::Count(other, "SELECT count(*) FROM txn"), 1);
  }

  std::vector<Question> asked_;
  std::vector<std::string> urls_;
  std::vector<PluginScreen> shown_;
};

TEST_F(TheRealm, IsNotRememberedByANewCompany) {
  EXPECT_EQ(RememberedRealm(*company_), std::nullopt);
  EXPECT_EQ(RememberedRealm(*company_), std::nullopt);
}

TEST_F(TheRealm, IsRememberedByAnAdministratorsWord) {
  RememberRealm(*company_, RealmId("9130"));
  EXPECT_EQ(RememberedRealm(*company_), "9130");

  RememberRealm(*company_, RealmId("1234567890123456789"));
  EXPECT_EQ(RememberedRealm(*company_), "1234567890123456789");
}

TEST_F(TheRealm, TellsTheTrailNothingOfTheOneThatIsRemembered) {
  EXPECT_TRUE(RememberRealm(*company_, RealmId("9130")));
  const std::string before = WholeFile();

  EXPECT_FALSE(RememberRealm(*company_, RealmId("9130")));

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(TheRealm, IsChangedByAdministratorsOnly) {
  OpenFor("Robin", {"accounts:modify"});
  const std::string before = Everything();

  const Refusal refusal = RefusalOf([&] { RememberRealm(*company_, RealmId("9130")); });

  EXPECT_THAT(refusal, IsForAdministrators());
  EXPECT_EQ(refusal.what, UseCase::kChangeRealm);
  EXPECT_EQ(Everything(), before);
}

TEST_F(TheRealm, IsNotChangedByWhoIsNoAdministratorAnyMore) {
  LetAnotherProgramTakeTheAdministratorsMark();

  EXPECT_THAT(RefusalOf([&] { RememberRealm(*company_, RealmId("9130")); }), IsForAdministrators());

  EXPECT_EQ(RememberedRealm(*company_), std::nullopt);
}

TEST_F(TheRealm, IsGivenToACompanyThatRemembersNone) {
  const RealmCheck check = CheckRealm(*company_, RealmId("9130"), Answering(true));

  EXPECT_FALSE(check.blocked);
  EXPECT_EQ(check.before, std::nullopt);
  EXPECT_EQ(check.after, "9130");
  EXPECT_EQ(RememberedRealm(*company_), "9130");
  EXPECT_THAT(asked_, IsEmpty());
}

TEST_F(TheRealm, IsFirstRememberedForAnAdministratorOnly) {
  OpenFor("Robin", {"accounts:modify"});

  const Refusal refusal = RefusalOf([&] { CheckRealm(*company_, RealmId("9130"), Answering(true)); });

  EXPECT_THAT(refusal, IsForAdministrators());
  EXPECT_EQ(refusal.what, UseCase::kCheckRealm);
  EXPECT_EQ(RememberedRealm(*company_), std::nullopt);
}

TEST_F(TheRealm, IsNeverThatOfAPartner) {
  RelateBirch();
  const std::string before = WholeFile();
  answers_.clear();
  for (const char* const realm : {"1001", " 1001", "1001 "}) {
    const Refusal refusal = RefusalOf([&] { RememberRealm(*company_, RealmId(realm)); });

    EXPECT_EQ(refusal.what, UseCase::kChangeRealm);
    EXPECT_EQ(refusal.status, std::nullopt);
    EXPECT_EQ(refusal.remedy, Remedy::kNameTheCompanysRealm);
    EXPECT_EQ(refusal.why, "the realm " + standalone::Quoted(realm) +
                               " is that of the partner \"Birch Services Company\", not this company's own");
  }
  EXPECT_EQ(WholeFile(), before);
  EXPECT_THAT(answers_, IsEmpty());
}

TEST_F(TheRealm, OfAPartnerIsNotRememberedByTheFirstCheckEither) {
  RelateBirch();
  const std::string before = WholeFile();

  const Refusal refusal = RefusalOf([&] { CheckRealm(*company_, RealmId("1001"), Answering(true)); });

  EXPECT_EQ(refusal.what, UseCase::kCheckRealm);
  EXPECT_EQ(refusal.status, std::nullopt);
  EXPECT_EQ(refusal.remedy, Remedy::kNameTheCompanysRealm);
  EXPECT_EQ(WholeFile(), before);
  EXPECT_THAT(asked_, IsEmpty());
}

TEST_F(TheRealm, OfAPartnerIsAResetOneToACompanyThatRemembersItsOwn) {
  RelateBirch();
  RememberRealm(*company_, RealmId("9130"));

  const RealmCheck check = CheckRealm(*company_, RealmId("1001"), Answering(false));

  EXPECT_TRUE(check.blocked);
  EXPECT_EQ(check.outcome, RealmOutcome::kReset);
  EXPECT_EQ(RememberedRealm(*company_), "9130");
}

TEST_F(TheRealm, OfAFormerPartnerIsFree) {
  RelateBirch();
  ASSERT_FALSE(DeleteRelation(*company_, RealmId("1001"), /*force=*/true).deactivated);

  RememberRealm(*company_, RealmId("1001"));

  EXPECT_EQ(RememberedRealm(*company_), "1001");
}

TEST_F(TheRealm, IsCheckedForAnyoneOnceItIsRemembered) {
  RememberRealm(*company_, RealmId("9130"));
  OpenFor("Robin", {});

  EXPECT_FALSE(CheckRealm(*company_, RealmId("9130"), Answering(true)).blocked);
  EXPECT_TRUE(CheckRealm(*company_, RealmId("9131"), Answering(false)).blocked);
}

TEST_F(TheRealm, ThatIsUnchangedLetsWorkGoOn) {
  RememberRealm(*company_, RealmId("9130"));

  const RealmCheck check = CheckRealm(*company_, RealmId("9130"), Answering(true));

  EXPECT_FALSE(check.blocked);
  EXPECT_EQ(check.after, "9130");
  EXPECT_THAT(asked_, IsEmpty());
}

TEST_F(TheRealm, ThatWasResetStopsWorkAndShowsTheRelationsOnAYes) {
  RelateBirch();

  const RealmCheck check = CheckAfterReset(Answering(true));

  EXPECT_TRUE(check.blocked);
  EXPECT_EQ(check.before, "9130");
  EXPECT_EQ(check.after, "9130");
  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].kind, Question::Kind::kYesNo);
  EXPECT_EQ(asked_[0].accept, "Yes");
  EXPECT_EQ(asked_[0].decline, "No");
  EXPECT_THAT(urls_, ElementsAre("krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_REALM_RESET"));
  const auto& screen = std::get<RelationsAfterRealmReset>(shown_.at(0));
  EXPECT_EQ(screen.rememberedRealm, "9130");
  EXPECT_EQ(screen.relations.refusal, std::nullopt);
  ASSERT_THAT(screen.relations.items, SizeIs(1));
  EXPECT_EQ(screen.relations.items[0].partner, "Birch Services Company");
  EXPECT_EQ(screen.relations.items[0].dueTo, (ListItem{AccountId("Due to Birch"), "Due to Birch"}));
}

TEST_F(TheRealm, ThatWasResetStopsWorkAlsoOnANo) {
  EXPECT_TRUE(CheckAfterReset(Answering(false)).blocked);

  EXPECT_THAT(asked_, SizeIs(1));
  EXPECT_THAT(shown_, IsEmpty());
}

TEST_F(TheRealm, ThatWasResetStopsWorkWithNobodyThere) {
  EXPECT_TRUE(CheckAfterReset({}).blocked);
}

TEST_F(TheRealm, ThatWasResetStopsWorkOfWhoCannotBeShownAnything) {
  Person person = Answering(true);
  person.show = {};

  EXPECT_TRUE(CheckAfterReset(person).blocked);

  EXPECT_THAT(asked_, SizeIs(1));
}

TEST_F(TheRealm, IsNotTakenForUnchangedWhenAskingFails) {
  RelateBirch();

  EXPECT_EQ(MessageOf<std::runtime_error>([&] { CheckAfterReset(WhoLeavesWhenAsked()); }), "the person has left");

  EXPECT_EQ(RememberedRealm(*company_), "9130");
  ExpectSoundBooks();
}

TEST_F(TheRealm, IsNotTakenForUnchangedWhenShowingFails) {
  RelateBirch();

  EXPECT_EQ(MessageOf<std::runtime_error>([&] { CheckAfterReset(WhoLeavesWhenShown()); }), "the person has left");

  EXPECT_EQ(RememberedRealm(*company_), "9130");
  ExpectSoundBooks();
}

TEST_F(TheRealm, IsAskedAboutAgainAfterAskingHasFailed) {
  EXPECT_THROW(CheckAfterReset(WhoLeavesWhenAsked()), std::runtime_error);

  EXPECT_TRUE(CheckRealm(*company_, RealmId("9131"), Answering(false)).blocked);

  EXPECT_THAT(asked_, SizeIs(1));
}

TEST_F(TheRealm, IsTheBusinessOfNobodyWhoIsGone) {
  CheckAfterReset(Answering(true));

  CheckRealm(*company_, RealmId("9131"), {});

  EXPECT_THAT(asked_, SizeIs(1));
  EXPECT_THAT(shown_, SizeIs(1));
}

TEST_F(TheRealm, ThatIsMissingStopsWorkWithANotice) {
  const RealmCheck check = CheckRealm(*company_, std::nullopt, Answering(true));

  EXPECT_TRUE(check.blocked);
  EXPECT_EQ(check.after, std::nullopt);
  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].kind, Question::Kind::kNotice);
  EXPECT_EQ(asked_[0].title, "Intercompany transactions");
  EXPECT_EQ(asked_[0].accept, "OK");
  EXPECT_EQ(asked_[0].decline, "");
  EXPECT_THAT(shown_, IsEmpty());
}

TEST_F(TheRealm, ThatIsMissingStopsWorkAlsoWhenTheNoticeFails) {
  EXPECT_THROW(CheckRealm(*company_, std::nullopt, WhoLeavesWhenAsked()), std::runtime_error);

  EXPECT_EQ(RememberedRealm(*company_), std::nullopt);
}

TEST_F(TheRealm, LetsOthersWorkOnTheCompanyWhileItIsAskedAbout) {
  Person person = Answering(false);
  person.answer = [this](const Question&) {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite, [&] { other.Settings().Set("company-name", "Alder & Sons"); });
    return false;
  };

  EXPECT_TRUE(CheckAfterReset(person).blocked);

  EXPECT_EQ(ReadSettings(*company_).companyName, "Alder & Sons");
}

using ThePlugin = TheRealm;

TEST_F(ThePlugin, IsOpenToACompanyWithAnEstablishedRelation) {
  RelateBirch();

  EXPECT_TRUE(CheckPlugin(*company_, Answering(true)));

  EXPECT_THAT(asked_, IsEmpty());
}

TEST_F(ThePlugin, OffersToSetUpTheFirstRelation) {
  CreateRelation(*company_, {.realm = RealmId("1001"),
                             .partner = standalone::PartnerName("Birch Services Company"),
                             .type = 0,
                             .state = standalone::RelationState::kPending,
                             .accounts = {.dueFrom = "Due from Birch", .dueTo = "Due to Birch"}});

  EXPECT_FALSE(CheckPlugin(*company_, Answering(true)));

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].accept, "Set up now");
  EXPECT_EQ(asked_[0].decline, "Not now");
  EXPECT_THAT(urls_, SizeIs(1));
  const auto& screen = std::get<RelationSetUp>(shown_.at(0));
  ASSERT_THAT(screen.relations.items, SizeIs(1));
  EXPECT_EQ(screen.relations.items[0].state, standalone::RelationState::kPending);
}

TEST_F(ThePlugin, IsOpenToWhoDeclinesToSetUpARelationNow) {
  EXPECT_TRUE(CheckPlugin(*company_, Answering(false)));

  EXPECT_THAT(asked_, SizeIs(1));
  EXPECT_THAT(shown_, IsEmpty());
}

TEST_F(ThePlugin, IsNotTakenForOpenWhenAskingOrShowingFails) {
  EXPECT_EQ(MessageOf<std::runtime_error>([&] { CheckPlugin(*company_, WhoLeavesWhenAsked()); }),
            "the person has left");
  EXPECT_EQ(MessageOf<std::runtime_error>([&] { CheckPlugin(*company_, WhoLeavesWhenShown()); }),
            "the person has left");

  RelateBirch();
  ExpectSoundBooks();
}

}  // namespace
}  // namespace desk
