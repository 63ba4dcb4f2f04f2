#include <functional>
#include <future>

#include "tests/desk/DeskFixture.h"
#include "tests/support/Thrown.h"

namespace desk {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

std::vector<std::string> RightsOf(const User& user) {
  std::vector<std::string> rights;
  for (const standalone::Right& right : user.rights) rights.push_back(right.Text());
  return rights;
}

class TheUsers : public DeskFixture {
 protected:
  User Listed(std::string_view name) {
    for (const User& user : ListUsers(*company_)) {
      if (user.name == name) return user;
    }
    ADD_FAILURE() << "there is no user " << name;
    return {};
  }

  std::vector<Refusal> RefusalsOfAllChanges() {
    return {RefusalOf([&] { AddUser(*company_, UserWith("Kim", {"bills:view"})); }),
            RefusalOf([&] { ChangeUser(*company_, UserWith("Robin", {"bills:view"})); }),
            RefusalOf([&] { RemoveUser(*company_, "Robin"); })};
  }
};

TEST_F(TheUsers, AreAnAdministratorToBeginWith) {
  const std::vector<User> users = ListUsers(*company_);

  ASSERT_THAT(users, SizeIs(1));
  EXPECT_EQ(users[0].name, kFirstUser);
  EXPECT_TRUE(users[0].administrator);
  EXPECT_FALSE(users[0].accountant);
  EXPECT_THAT(
      RightsOf(users[0]),
      ElementsAre("checks:create", "checks:view", "checks:delete", "checks:modify", "journal:create", "journal:view",
                  "journal:delete", "journal:modify", "bills:create", "bills:view", "bills:delete", "bills:modify",
                  "accounts:create", "accounts:view", "accounts:delete", "accounts:modify"));
}

TEST_F(TheUsers, AreAddedWithMarksAndRights) {
  User robin = UserWith("Robin", {"bills:create", "accounts:view"});
  robin.accountant = true;

  const User added = AddUser(*company_, robin);

  EXPECT_EQ(added.name, "Robin");
  EXPECT_FALSE(added.administrator);
  EXPECT_TRUE(added.accountant);
  EXPECT_THAT(RightsOf(added), ElementsAre("bills:create", "accounts:view"));
  EXPECT_EQ(JsonOf(Listed("Robin")), JsonOf(added));
}

TEST_F(TheUsers, AreAnsweredAsTheyAreListedWhateverWasGivenTwiceOrInAnotherCase) {
  const User added =
      AddUser(*company_, UserWith("Robin", {"accounts:view", "Journal:View", "bills:create", "journal:view"}));

  EXPECT_EQ(JsonOf(added), JsonOf(Listed("Robin")));
  EXPECT_THAT(RightsOf(added), ElementsAre("journal:view", "bills:create", "accounts:view"));
}

TEST_F(TheUsers, HaveTheirMarksAndRightsReplaced) {
  AddUser(*company_, UserWith("Robin", {"bills:create"}));

  const User changed = ChangeUser(*company_, UserWith("robin", {"checks:view"}));

  EXPECT_EQ(changed.name, "Robin");
  EXPECT_THAT(RightsOf(changed), ElementsAre("checks:view"));
  EXPECT_EQ(JsonOf(Listed("Robin")), JsonOf(changed));
}

TEST_F(TheUsers, TellTheTrailNothingOfMarksAndRightsThatAreTheSame) {
  AddUser(*company_, UserWith("Robin", {"bills:create", "journal:view", "accounts:view"}));
  const std::string before = WholeFile();

  EXPECT_FALSE(ChangeUser(*company_, UserWith("Robin", {"accounts:view", "journal:view", "bills:create"})).hasChanged);

  EXPECT_EQ(WholeFile(), before);
  EXPECT_TRUE(ChangeUser(*company_, UserWith("Robin", {"bills:create"})).hasChanged);
}

TEST_F(TheUsers, GetTheirOwnRightsBackWhenTheyAreNoAdministratorsAnyMore) {
  User robin = UserWith("Robin", {"checks:view"});
  robin.administrator = true;
  AddUser(*company_, robin);
  EXPECT_THAT(Listed("Robin").rights, SizeIs(16));

  ChangeUser(*company_, UserWith("Robin", {"checks:view"}));

  EXPECT_THAT(RightsOf(Listed("Robin")), ElementsAre("checks:view"));
}

TEST_F(TheUsers, AreGoneWhenTheyAreRemoved) {
  AddUser(*company_, UserWith("Robin", {}));

  RemoveUser(*company_, "Robin");

  EXPECT_THAT(ListUsers(*company_), SizeIs(1));
}

TEST_F(TheUsers, HaveNamesOfTheirOwn) {
  const std::string before = Everything();

  EXPECT_THAT(MessageOf<standalone::InvalidInput>([&] { AddUser(*company_, UserWith("ADMIN", {})); }),
              HasSubstr("\"ADMIN\""));
  EXPECT_THROW(AddUser(*company_, UserWith("  ", {})), standalone::InvalidInput);
  EXPECT_THROW(AddUser(*company_, UserWith(std::string(61, 'u'), {})), standalone::InvalidInput);
  EXPECT_THROW(ChangeUser(*company_, UserWith("Nobody", {})), standalone::InvalidInput);
  EXPECT_THROW(RemoveUser(*company_, "Nobody"), standalone::InvalidInput);

  EXPECT_EQ(Everything(), before);
}

TEST_F(TheUsers, AlwaysHaveAnAdministratorAmongThem) {
  AddUser(*company_, UserWith("Robin", {}));
  const std::string before = Everything();

  EXPECT_THROW(ChangeUser(*company_, UserWith(kFirstUser, {"bills:view"})), standalone::InvalidInput);
  EXPECT_THROW(RemoveUser(*company_, kFirstUser), standalone::InvalidInput);

  EXPECT_EQ(Everything(), before);
}

TEST_F(TheUsers, AreSeenByAdministratorsAndAccountantsOnly) {
  AddUser(*company_, {.name = "Lee", .administrator = false, .accountant = true, .rights = {}});
  OpenFor("Robin", {"accounts:view"});

  const Refusal refusal = RefusalOf([&] { ListUsers(*company_); });

  EXPECT_THAT(refusal, IsForAdministrators());
  EXPECT_EQ(refusal.what, UseCase::kListUsers);
  EXPECT_THAT(refusal.why, HasSubstr("\"Robin\""));
  Open("Lee");
  EXPECT_THAT(ListUsers(*company_), SizeIs(3));
}

TEST_F(TheUsers, AreChangedByAdministratorsOnly) {
  OpenFor("Robin", {"accounts:create", "accounts:modify", "accounts:delete"});
  const std::string before = Everything();
  answers_.clear();

  const std::vector<Refusal> refusals = RefusalsOfAllChanges();

  EXPECT_THAT(refusals, Each(IsForAdministrators()));
  EXPECT_THAT(refusals, Each(testing::Field(&Refusal::what, UseCase::kChangeUsers)));
  EXPECT_THAT(refusals, Each(testing::Field(&Refusal::why, HasSubstr("\"Robin\""))));
  EXPECT_THAT(answers_, testing::IsEmpty());
  EXPECT_EQ(Everything(), before);
}

TEST_F(TheUsers, AreNotChangedByAnAccountant) {
  AddUser(*company_, {.name = "Robin", .administrator = false, .accountant = true, .rights = {}});
  Open("Robin");

  EXPECT_THAT(RefusalsOfAllChanges(), Each(IsForAdministrators()));
}

TEST_F(TheUsers, AreNotChangedByWhoIsNoAdministratorAnyMore) {
  AddUser(*company_, UserWith("Robin", {}));
  LetAnotherProgramTakeTheAdministratorsMark();
  const std::string before = Everything();

  EXPECT_THAT(RefusalsOfAllChanges(), Each(IsForAdministrators()));

  EXPECT_EQ(Everything(), before);
}

TEST_F(TheUsers, AreNotChangedByWhoHasGivenTheMarkAway) {
  User deputy = UserWith("Deputy", {});
  deputy.administrator = true;
  AddUser(*company_, deputy);
  ChangeUser(*company_, UserWith(kFirstUser, {}));

  const std::string before = Everything();

  const Refusal refusal = RefusalOf([&] { RemoveUser(*company_, "Deputy"); });

  EXPECT_THAT(refusal, IsForAdministrators());
  EXPECT_EQ(Everything(), before);
}

TEST_F(TheUsers, AreNotChangedByWhoIsNotAmongThemAnyMore) {
  AddUser(*company_, UserWith("Robin", {}));
  LetAnotherProgramTakeTheAdministratorsMark();
  {
    standalone::StandaloneHost other(path_, "Deputy");
    other.Request(standalone::Access::kWrite, [&] { other.Users().Remove(kFirstUser); });
  }

  for (const std::function<void()>& change : std::vector<std::function<void()>>{
           [&] { AddUser(*company_, UserWith("Anna", {})); },
           [&] { ChangeUser(*company_, UserWith("Robin", {})); },
           [&] { RemoveUser(*company_, "Robin"); },
       }) {
    EXPECT_THAT(MessageOf<standalone::UnitOfWorkError>(change), testing::HasSubstr("has no user \"Admin\" any more"));
  }
}

// The change waits while the other program holds the file; whichever comes first, nothing may be changed after it.
TEST_F(TheUsers, AreNotChangedByWhoWaitedWhileTheMarkWasTaken) {
  std::promise<void> held;
  std::thread other([&] {
    standalone::StandaloneHost host(path_);
    host.Request(standalone::Access::kWrite, [&] {
      TakeTheMark(host);
      held.set_value();
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
    });
  });
  held.get_future().wait();

  const Refusal refusal = RefusalOf([&] { AddUser(*company_, UserWith("Kim", {})); });

  other.join();
  EXPECT_THAT(refusal, IsForAdministrators());
  EXPECT_THAT(Everything(), testing::Not(HasSubstr("Kim")));
}

TEST_F(TheUsers, WorkWithTheRelationsInTheirRolesAsTheirRightsSay) {
  OpenFor("Robin", {"accounts:view"});

  EXPECT_EQ(PersonaInRole(*company_, 0), Persona::kManager);
  EXPECT_EQ(PersonaInRole(*company_, 1), Persona::kContributor);
  EXPECT_EQ(PersonaInRole(*company_, 2), Persona::kViewer);
}

TEST_F(TheUsers, HaveNoPersonaWithoutARightToTheAccounts) {
  OpenFor("Robin", {"bills:view"});

  EXPECT_EQ(PersonaInRole(*company_, 1), Persona::kNone);
  EXPECT_EQ(PersonaInRole(*company_, 2), Persona::kNone);
}

}  // namespace
}  // namespace desk
