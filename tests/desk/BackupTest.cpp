#include <algorithm>

#include "standalone/desk/Backup.h"
#include "standalone/values/Errors.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/Thrown.h"

namespace desk {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::SizeIs;

class TheBackupsOfADesk : public DeskFixture {
 protected:
  std::vector<AuditedDeed> Trail() {
    return ListAudit(*company_, {.user = {}, .action = {}, .period = {NullDate(), NullDate()}, .txnId = {}});
  }
  RestoreOrder Order(bool replaces = false, const std::string& user = kFirstUser) const {
    return {
        .backup = backup_, .file = path_, .user = user, .replaces = replaces, .networkShare = false, .onOpened = {}};
  }
  // The company that is open here is the only one that the process may have open.
  Restored RestoreClosed(const RestoreOrder& order) {
    company_.reset();
    return Restore(order);
  }
  static void Spoil(const std::filesystem::path& file) {
    std::string bytes = standalone::ReadFile(file);
    std::fill(bytes.begin() + 4096, bytes.begin() + 8192, 'x');
    standalone::WriteFile(file, bytes);
  }

  const std::filesystem::path backup_ = folder_ / "alder.backup";
};

TEST_F(TheBackupsOfADesk, HoldTheLineThatTellsOfThem) {
  const BackedUp made = BackUp(*company_, backup_);

  const std::vector<AuditedDeed> trail = Trail();
  EXPECT_EQ(trail.back().action, "company.backup");
  EXPECT_EQ(trail.back().subject, "alder.backup");
  EXPECT_EQ(made.auditLines, static_cast<std::int64_t>(trail.size()));
  EXPECT_EQ(made.head, VerifyAudit(*company_).head);
  EXPECT_EQ(made.bytes, std::filesystem::file_size(backup_));
}

TEST_F(TheBackupsOfADesk, TellInTheTrailWhenTheyCouldNotBeFinished) {
  EXPECT_THROW(BackUp(*company_, folder_ / "nowhere" / "alder.backup"), standalone::CompanyFileError);

  const std::vector<AuditedDeed> trail = Trail();
  EXPECT_EQ(trail.back().action, "company.backup.fail");
  EXPECT_EQ(trail.at(trail.size() - 2).action, "company.backup");
}

TEST_F(TheBackupsOfADesk, LeaveTheTrailAloneWhenTheNameIsTaken) {
  const std::size_t before = Trail().size();
  standalone::WriteFile(backup_, "an older one");

  EXPECT_THAT(MessageOf<standalone::CompanyFileError>([&] { BackUp(*company_, backup_); }),
              HasSubstr("There is a file of that name"));

  EXPECT_THAT(Trail(), SizeIs(before));
  EXPECT_EQ(standalone::ReadFile(backup_), "an older one");
}

TEST_F(TheBackupsOfADesk, DoNotTakeTheNameOfWhatLiesBesideTheCompany) {
  const std::size_t before = Trail().size();
  std::filesystem::create_directory(folder_ / "elsewhere");
  const std::filesystem::path roundabout = folder_ / "elsewhere" / "..";

  for (const char* const suffix : {"-journal", "-WAL", "-shm", ".log", ".1.log", ".12.LOG", ".remote.toml",
                                   ".Remote.toml. ", ".identity", ".Identity.lock"}) {
    EXPECT_THAT(MessageOf<standalone::CompanyFileError>(
                    [&] { BackUp(*company_, roundabout / (path_.filename().string() + suffix)); }),
                HasSubstr("belongs to the company"))
        << suffix;
  }

  EXPECT_THAT(Trail(), SizeIs(before));
  EXPECT_FALSE(std::filesystem::exists(path_.string() + "-journal"));
}

TEST_F(TheBackupsOfADesk, MayHaveTheNameOfTheCompanyWithAnotherEnding) {
  for (const char* const suffix : {".backup", ".x.log", ".2026.logs", "-wal2"}) {
    BackUp(*company_, path_.string() + suffix);

    EXPECT_TRUE(std::filesystem::exists(path_.string() + suffix));
  }
  std::filesystem::create_directory(folder_ / "elsewhere");
  BackUp(*company_, folder_ / "elsewhere" / (path_.filename().string() + ".log"));
}

TEST_F(TheBackupsOfADesk, AreForAdministratorsAndAccountants) {
  User accountant = UserWith("Anna", {});
  accountant.accountant = true;
  AddUser(*company_, accountant);
  OpenFor("Robin", {"bills:view"});

  const Refusal refusal = RefusalOf([&] { BackUp(*company_, backup_); });

  EXPECT_THAT(refusal, IsForAdministrators());
  EXPECT_THAT(refusal.why, HasSubstr("a backup may only be made by them"));
  EXPECT_FALSE(std::filesystem::exists(backup_));
  Open("Anna");
  BackUp(*company_, backup_);
  EXPECT_TRUE(std::filesystem::exists(backup_));
}

TEST_F(TheBackupsOfADesk, AreRestoredWhereNothingIsGivenUp) {
  BackUp(*company_, backup_);

  const Restored done = RestoreClosed(Order());

  EXPECT_EQ(done.givenUp, 0);
  Open();
  EXPECT_EQ(Trail().back().action, "company.restore");
  EXPECT_EQ(done.auditLines, static_cast<std::int64_t>(Trail().size()));
  EXPECT_EQ(done.head, VerifyAudit(*company_).head);
}

TEST_F(TheBackupsOfADesk, DoNotTakeThePlaceOfWhatWasDoneSinceUnlessTheyAreTo) {
  BackUp(*company_, backup_);
  AddUser(*company_, UserWith("Robin", {}));
  ChangeSetting(*company_, "company-name", "Alder Limited");

  const Refusal refusal = RefusalOf([&] { RestoreClosed(Order()); });

  EXPECT_EQ(refusal.remedy, Remedy::kBackUpThenReplace);
  EXPECT_EQ(refusal.what, UseCase::kRestore);
  EXPECT_THAT(refusal.why, AllOf(HasSubstr("2 lines that the backup lacks"), HasSubstr("by Admin: settings.change")));
  Open();
  EXPECT_THAT(ListUsers(*company_), SizeIs(2));

  EXPECT_EQ(RestoreClosed(Order(/*replaces=*/true)).givenUp, 2);

  Open();
  EXPECT_THAT(ListUsers(*company_), SizeIs(1));
}

TEST_F(TheBackupsOfADesk, AreRestoredByWhoIsAnAdministratorOfTheCompanyNow) {
  AddUser(*company_, UserWith("Deputy", {}));
  BackUp(*company_, backup_);
  User deputy = UserWith("Deputy", {});
  deputy.administrator = true;
  ChangeUser(*company_, deputy);
  User admin = UserWith(kFirstUser, {});
  ChangeUser(*company_, admin);

  EXPECT_THAT(RefusalOf([&] { RestoreClosed(Order(/*replaces=*/true)); }), IsForAdministrators());
  EXPECT_EQ(RestoreClosed(Order(/*replaces=*/true, "Deputy")).givenUp, 2);
}

TEST_F(TheBackupsOfADesk, MakeTheCompanyThatIsGone) {
  BackUp(*company_, backup_);
  company_.reset();
  std::filesystem::remove(path_);

  const Restored done = Restore(Order());

  Open();
  EXPECT_EQ(Trail().back().action, "company.restore");
  EXPECT_EQ(done.aside, std::filesystem::path());
}

TEST_F(TheBackupsOfADesk, AskForAnAdministratorOfTheirOwnWhereThereIsNoCompany) {
  AddUser(*company_, UserWith("Robin", {}));
  BackUp(*company_, backup_);
  company_.reset();
  std::filesystem::remove(path_);

  EXPECT_THAT(RefusalOf([&] { Restore(Order(/*replaces=*/false, "Robin")); }), IsForAdministrators());
  EXPECT_THROW(Restore(Order(/*replaces=*/false, "Nobody")), standalone::InvalidInput);

  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(TheBackupsOfADesk, TakeThePlaceOfADamagedFileWhenTheyAreTo) {
  BackUp(*company_, backup_);
  company_.reset();
  Spoil(path_);
  const std::string damaged = standalone::ReadFile(path_);

  EXPECT_EQ(RefusalOf([&] { Restore(Order()); }).remedy, Remedy::kReplace);
  EXPECT_EQ(standalone::ReadFile(path_), damaged);
  const Restored done = Restore(Order(/*replaces=*/true));

  EXPECT_EQ(done.aside.filename(), "alder.company.damaged");
  EXPECT_EQ(standalone::ReadFile(done.aside), damaged);
  Open();
  EXPECT_EQ(Trail().back().action, "company.restore");
}

TEST_F(TheBackupsOfADesk, TakeThePlaceOfAFileThatIsNoCompanyWhenTheyAreTo) {
  BackUp(*company_, backup_);
  const std::filesystem::path other = folder_ / "letter.txt";
  standalone::WriteFile(other, "Dear Sir");
  RestoreOrder order = Order(/*replaces=*/true);
  order.file = other;

  const Restored done = RestoreClosed(order);

  EXPECT_EQ(standalone::ReadFile(done.aside), "Dear Sir");
}

TEST_F(TheBackupsOfADesk, TakeThePlaceOfNoFolder) {
  BackUp(*company_, backup_);
  std::filesystem::create_directory(folder_ / "folder");
  RestoreOrder order = Order(/*replaces=*/true);
  order.file = folder_ / "folder";

  EXPECT_THROW(RestoreClosed(order), standalone::CompanyFileError);

  EXPECT_TRUE(std::filesystem::is_directory(folder_ / "folder"));
}

TEST_F(TheBackupsOfADesk, MoveAsideWhatIsLeftOfAnotherCompanyWhenTheyAreTo) {
  BackUp(*company_, backup_);
  RestoreOrder order = Order();
  order.file = folder_ / "new.company";
  standalone::WriteFile(order.file.string() + "-wal", "left");

  EXPECT_THAT(RefusalOf([&] { RestoreClosed(order); }).why, HasSubstr("new.company-wal is left"));
  order.replaces = true;
  const Restored done = RestoreClosed(order);

  EXPECT_EQ(standalone::ReadFile(done.aside.string() + "-wal"), "left");
}

TEST_F(TheBackupsOfADesk, AreNotRestoredIntoThemselves) {
  EXPECT_THAT(MessageOf<standalone::InvalidInput>([&] {
                RestoreOrder order = Order();
                order.backup = path_;
                RestoreClosed(order);
              }),
              HasSubstr("are the same file"));
}

TEST_F(TheBackupsOfADesk, AreWhatACompanyThatIsOpenGoesOnWith) {
  BackUp(*company_, backup_);
  AddUser(*company_, UserWith("Robin", {}));
  ASSERT_THAT(ListUsers(*company_), SizeIs(2));

  // Nothing of a restore asks the module, so that it may be done beside the company that is open.
  Restore(Order(/*replaces=*/true));

  EXPECT_THAT(ListUsers(*company_), SizeIs(1));
  AddUser(*company_, UserWith("Anna", {}));
  EXPECT_EQ(Trail().back().subject, "the user Anna");
  EXPECT_EQ(VerifyAudit(*company_).breakAt, std::nullopt);
}

TEST_F(TheBackupsOfADesk, AreWorkedOnByNameThoughTheyHaveTheNumberForSomebodyElse) {
  AddUser(*company_, UserWith("Robin", {}));
  User deputy = UserWith("Deputy", {});
  deputy.administrator = true;
  AddUser(*company_, deputy);
  BackUp(*company_, backup_);
  company_.reset();
  {
    standalone::SqliteDatabase backup(backup_, std::chrono::milliseconds::zero());
    backup.Execute("UPDATE user SET id = 4 WHERE name = 'Robin'; UPDATE user SET id = 2 WHERE name = 'Deputy'");
  }
  Open("Robin");

  Restore(Order(/*replaces=*/true));

  EXPECT_THAT(RefusalOf([&] { AddUser(*company_, UserWith("Anna", {})); }), IsForAdministrators());
  Open("Deputy");
  EXPECT_THAT(ListUsers(*company_), SizeIs(3));
}

TEST_F(TheBackupsOfADesk, LetNobodyWorkOnWhomTheyDoNotHave) {
  BackUp(*company_, backup_);
  User deputy = UserWith("Deputy", {});
  deputy.administrator = true;
  AddUser(*company_, deputy);
  Open("Deputy");
  Restore(Order(/*replaces=*/true));

  const auto isGone = AllOf(HasSubstr("has no user \"Deputy\" any more"), HasSubstr("open it again as another user"));
  EXPECT_THAT(MessageOf<standalone::UnitOfWorkError>([&] { AddUser(*company_, UserWith("Anna", {})); }), isGone);
  EXPECT_THAT(MessageOf<standalone::UnitOfWorkError>([&] { ListUsers(*company_); }), isGone);
  EXPECT_THAT(MessageOf<standalone::UnitOfWorkError>([&] { ListAccounts(*company_); }), isGone);

  Open();
  EXPECT_THAT(ListUsers(*company_), SizeIs(1));
}

}  // namespace
}  // namespace desk
