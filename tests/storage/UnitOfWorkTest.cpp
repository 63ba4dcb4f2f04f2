#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <stdexcept>

#include "standalone/services/JournalService.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

constexpr const char* kReminderUrl = "krw:LaunchMEPlugin?context=ICT_SCHEDULER";

using testing::HasSubstr;

class AUnitOfWork : public CompanyFixture {
 protected:
  static void AddRent(StandaloneHost& host) { host.Accounts().Create({"Rent", KrEnumerations::kExpense, 0, false}); }

  static std::int64_t Accounts(StandaloneHost& host) { return Count(host, "SELECT count(*) FROM account"); }

  static HostOptions Impatient() {
    HostOptions options;
    options.file.busyTimeout = std::chrono::milliseconds(20);
    return options;
  }

  // Where a program that is to die is a new one, which begins the test again, it finds the path in its environment. Its
  // own company goes first, as nothing is cleared away when it dies.
  static std::filesystem::path SharedWithWhoDies(const std::filesystem::path& path) {
#ifdef _WIN32
    constexpr const char* kVariable = "MULTIENTITY_TEST_FILE";
    if (const char* shared = std::getenv(kVariable)) {
      std::filesystem::remove_all(path.parent_path());
      return shared;
    }
    _putenv_s(kVariable, path.string().c_str());
#endif
    return path;
  }

  static DBMultiEntityRelation Relation() {
    DBMultiEntityRelation row{};
    row.realmId[0] = '9';
    return row;
  }
};

TEST_F(AUnitOfWork, IsInTheFileOnceItsRequestReturned) {
  StandaloneHost host(path_);

  const int answer = host.Request(Access::kWrite, [&] {
    AddRent(host);
    return 12;
  });

  EXPECT_EQ(answer, 12);
  StandaloneHost another(path_);
  EXPECT_EQ(Accounts(another), 1);
}

TEST_F(AUnitOfWork, IsToldAsSavedOnlyWhenItHasWrittenSomething) {
  StandaloneHost host(path_);
  int saved = 0;
  host.Data().SetSavedObserver([&saved] { ++saved; });
  Statement refused(host.Data(), Writes::kLists, "INSERT INTO user_feature_right VALUES (?1, 16, 2)");
  Statement meetsNone(host.Data(), Writes::kLists, "DELETE FROM account WHERE id = ?1");

  host.Request(Access::kWrite, [&] { EXPECT_THROW(refused.Run(77), ConstraintViolation); });
  host.Request(Access::kWrite, [&] { meetsNone.Run(77); });
  EXPECT_EQ(saved, 0);

  host.Request(Access::kWrite, [&] { AddRent(host); });
  EXPECT_EQ(saved, 1);
}

TEST_F(AUnitOfWork, IsTakenBackWhenItsRequestAnswersAnythingButSuccess) {
  StandaloneHost host(path_);

  const MEStatusCode refused = host.Request(Access::kWrite, [&] {
    AddRent(host);
    return MEStatusDeclined;
  });

  EXPECT_EQ(refused, MEStatusDeclined);
  EXPECT_EQ(Accounts(host), 0);
}

TEST_F(AUnitOfWork, IsInTheFileWhenItsRequestAnswersSuccess) {
  StandaloneHost host(path_);

  host.Request(Access::kWrite, [&] {
    AddRent(host);
    return MEStatusSuccess;
  });

  EXPECT_EQ(Accounts(host), 1);
}

TEST_F(AUnitOfWork, ThatIsTakenBackGivesItsNumbersToTheNext) {
  StandaloneHost host(path_);
  host.Request(Access::kWrite, [&] {
    AddRent(host);
    return MEStatusDeclined;
  });

  const std::int32_t id = host.Request(
      Access::kWrite, [&] { return host.Accounts().Create({"Water", KrEnumerations::kExpense, 0, false}).id; });

  EXPECT_EQ(id, 1);
}

TEST_F(AUnitOfWork, ThatWritesWithoutSayingWhatIsRefusedEachTime) {
  StandaloneHost host(path_);
  host.Request(Access::kWrite, [&] {
    Statement silent(host.Data(), "DELETE FROM account");

    EXPECT_THROW(silent.Run(), std::logic_error);
    EXPECT_THROW(silent.Run(), std::logic_error);
  });
}

TEST_F(AUnitOfWork, IsUndoneWhenItsRequestThrows) {
  StandaloneHost host(path_);

  EXPECT_THROW(host.Request(Access::kWrite,
                            [&] {
                              AddRent(host);
                              throw std::logic_error("no");
                            }),
               std::logic_error);

  EXPECT_EQ(Accounts(host), 0);
}

TEST_F(AUnitOfWork, LeavesNothingWhenTheProgramDiesInTheMiddle) {
  const std::filesystem::path file = SharedWithWhoDies(path_);
  EXPECT_EXIT(
      {
        StandaloneHost host(file);
        host.Request(Access::kWrite, [&] {
          AddRent(host);
          std::_Exit(0);
        });
      },
      testing::ExitedWithCode(0), "");

  StandaloneHost host(path_);
  EXPECT_EQ(Accounts(host), 0);
}

TEST_F(AUnitOfWork, StaysInTheFileWhenTheProgramDiesAfterIt) {
  const std::filesystem::path file = SharedWithWhoDies(path_);
  EXPECT_EXIT(
      {
        StandaloneHost host(file);
        host.Request(Access::kWrite, [&] { AddRent(host); });
        std::_Exit(0);
      },
      testing::ExitedWithCode(0), "");

  StandaloneHost host(path_);
  EXPECT_EQ(Accounts(host), 1);
}

TEST_F(AUnitOfWork, IsNotSeenByOthersBeforeItIsCommitted) {
  StandaloneHost writer(path_);
  StandaloneHost reader(path_);

  const std::int64_t seen = writer.Request(Access::kWrite, [&] {
    AddRent(writer);
    return Accounts(reader);
  });

  EXPECT_EQ(seen, 0);
  EXPECT_EQ(Accounts(reader), 1);
}

TEST_F(AUnitOfWork, ForReadingSeesOneStateOfTheFile) {
  StandaloneHost writer(path_);
  StandaloneHost reader(path_);

  reader.Request(Access::kRead, [&] {
    EXPECT_TRUE(reader.Accounts().List().empty());
    writer.Request(Access::kWrite, [&] { AddRent(writer); });
    EXPECT_TRUE(reader.Accounts().List().empty());
  });

  EXPECT_EQ(Accounts(reader), 1);
}

TEST_F(AUnitOfWork, WaitsForTheOneOfAnotherProgram) {
  StandaloneHost first(path_);
  std::future<void> second;

  first.Request(Access::kWrite, [&] {
    std::promise<void> opened;
    second = std::async(std::launch::async, [&] {
      StandaloneHost other(path_);
      opened.set_value();
      other.Request(Access::kWrite, [&] { other.Names().Create("Northfield", NameKind::kVendor); });
    });
    opened.get_future().wait();
    AddRent(first);
  });
  second.get();

  EXPECT_EQ(Accounts(first), 1);
  EXPECT_EQ(Count(first, "SELECT count(*) FROM name"), 1);
}

TEST_F(AUnitOfWork, GivesUpOnAProgramThatNeverFinishes) {
  StandaloneHost first(path_);
  StandaloneHost second(path_, "Admin", Impatient());

  first.Request(Access::kWrite, [&] {
    EXPECT_THAT(MessageOf<UnitOfWorkError>([&] { second.Request(Access::kWrite, [] {}); }),
                HasSubstr("in use by another program"));
  });
}

TEST_F(AUnitOfWork, ForReadingDoesNotWrite) {
  StandaloneHost host(path_);
  DBMultiEntityRelation row = Relation();

  host.Request(Access::kRead, [&] {
    EXPECT_TRUE(host.Services().multiEntity.SaveRelation(row).Failed());
    EXPECT_THROW(AddRent(host), UnitOfWorkError);
  });

  EXPECT_EQ(Accounts(host), 0);
}

TEST_F(AUnitOfWork, IsNeededForAnyWork) {
  StandaloneHost host(path_);
  DBMultiEntityRelation row = Relation();

  EXPECT_THROW(host.Accounts().List(), UnitOfWorkError);
  EXPECT_TRUE(host.Services().multiEntity.GetRelation("9", row).Failed());
}

TEST_F(AUnitOfWork, DoesNotNest) {
  StandaloneHost host(path_);

  host.Request(Access::kWrite, [&] { EXPECT_THROW(host.Request(Access::kRead, [] {}), UnitOfWorkError); });
}

TEST_F(AUnitOfWork, GoesOnAfterAChangeThatTheFileRefused) {
  StandaloneHost host(path_);

  host.Request(Access::kWrite, [&] {
    AddRent(host);
    EXPECT_THROW(FileOf(host).Execute("INSERT INTO account SELECT * FROM account"), ConstraintViolation);
  });

  EXPECT_EQ(Accounts(host), 1);
}

// The engine undoes the whole transaction by itself here, as it does when a disk is full.
class AUnitThatTheEngineUndid : public AUnitOfWork {
 protected:
  AUnitThatTheEngineUndid() {
    SqliteDatabase database(path_, kBusyTimeout);
    database.Execute(
        "CREATE TRIGGER broken BEFORE INSERT ON preference BEGIN SELECT RAISE(ROLLBACK, 'disk is gone'); END");
  }

  static void Break(StandaloneHost& host) {
    EXPECT_TRUE(host.Services().databasePreferences.SetCompanyDBPreference("key", "value").Failed());
  }
};

TEST_F(AUnitThatTheEngineUndid, FailsAtEveryLaterCallInsteadOfFindingNothing) {
  StandaloneHost host(path_);
  DBMultiEntityRelation row = Relation();
  std::vector<DBMultiEntityRelation> rows;
  char name[] = "Rent";
  std::int32_t id = 0;

  EXPECT_THROW(host.Request(Access::kWrite,
                            [&] {
                              Break(host);
                              const HostServices& services = host.Services();
                              EXPECT_TRUE(services.multiEntity.GetAllRelations(rows).Failed());
                              EXPECT_TRUE(services.multiEntity.SaveRelation(row).Failed());
                              EXPECT_EQ(services.accounts.CreateNewChartOfAccount(name, 12, id, false), kEdListFailure);
                              EXPECT_THROW(services.accounts.GetAllAccounts(), UnitOfWorkError);
                              EXPECT_THROW(services.multiEntity.HasAnyMatchingTransaction(1), UnitOfWorkError);
                              EXPECT_THROW(services.lines.TargExists(1, kViewAny), UnitOfWorkError);
                            }),
               UnitOfWorkError);
}

TEST_F(AUnitThatTheEngineUndid, IsReportedByTheCommitAndLeavesNothing) {
  StandaloneHost host(path_);

  const std::string message = MessageOf<UnitOfWorkError>([&] {
    host.Request(Access::kWrite, [&] {
      AddRent(host);
      Break(host);
      return 1;
    });
  });

  EXPECT_THAT(message, AllOf(HasSubstr("Nothing was saved"), HasSubstr("disk is gone")));
  EXPECT_EQ(Accounts(host), 0);
}

TEST_F(AUnitThatTheEngineUndid, SaysSoAlsoWhenTheRequestIsRefusedForIt) {
  StandaloneHost host(path_);

  const std::string message = MessageOf<UnitOfWorkError>([&] {
    host.Request(Access::kWrite, [&] {
      Break(host);
      return MEStatusDeclined;
    });
  });

  EXPECT_THAT(message, AllOf(HasSubstr("Nothing was saved"), HasSubstr("disk is gone")));
}

TEST_F(AUnitThatTheEngineUndid, DoesNotSpoilTheNextOne) {
  StandaloneHost host(path_);
  EXPECT_THROW(host.Request(Access::kWrite, [&] { Break(host); }), UnitOfWorkError);

  host.Request(Access::kWrite, [&] { AddRent(host); });

  EXPECT_EQ(Accounts(host), 1);
}

TEST_F(AUnitOfWork, FailsAsAWholeWhenTheDiskIsFull) {
  StandaloneHost host(path_);
  const std::string pages = std::to_string(FileOf(host).QueryNumber("PRAGMA page_count"));
  FileOf(host).Execute(("PRAGMA max_page_count = " + pages).c_str());
  const std::string value(100'000, 'x');

  const std::string message = MessageOf<UnitOfWorkError>([&] {
    host.Request(Access::kWrite, [&] {
      AddRent(host);
      EXPECT_TRUE(host.Services().databasePreferences.SetCompanyDBPreference("key", std::string_view(value)).Failed());
    });
  });

  EXPECT_THAT(message, HasSubstr("full"));
  EXPECT_EQ(Accounts(host), 0);
}

TEST_F(AUnitOfWork, IsCommittedBeforeAQuestionAndAnotherBeginsAfterIt) {
  StandaloneHost host(path_);
  StandaloneHost other(path_, "Admin", Impatient());
  std::int64_t seenDuringQuestion = 0;
  host.MessageBoxes().SetAnswerer([&](const Question&) {
    seenDuringQuestion = Accounts(other);
    other.Request(Access::kWrite, [&] { other.Names().Create("Northfield", NameKind::kVendor); });
    return true;
  });

  host.Request(Access::kWrite, [&] {
    AddRent(host);
    const Util::SourceContext here{"file", "operation"};
    EXPECT_EQ(host.Services().messages.YesNoInfoMsgO(here, ResourceInstance{1}, 14715, 1, 2, true, true), kAnswerYes);
    EXPECT_TRUE(host.Names().FindByFullName("Northfield").has_value());
  });

  EXPECT_EQ(seenDuringQuestion, 1);
}

TEST_F(AUnitOfWork, OfACommandIsItsOwn) {
  StandaloneHost host(path_);
  std::string received;
  host.App().SetCommandRunner([&](PluginView, std::string_view url) {
    received = url;
    host.Request(Access::kWrite, [&] { host.Names().Create("Northfield", NameKind::kVendor); });
  });

  EXPECT_THROW(host.Request(Access::kWrite,
                            [&] {
                              host.Services().application.ExecuteCommand(CCommandAndArgs(kReminderUrl));
                              AddRent(host);
                              throw std::logic_error("no");
                            }),
               std::logic_error);

  EXPECT_EQ(received, kReminderUrl);
  EXPECT_EQ(Count(host, "SELECT count(*) FROM name"), 1);
  EXPECT_EQ(Accounts(host), 0);
}

TEST_F(AUnitOfWork, BeginsAgainAfterACommandThatFailed) {
  StandaloneHost host(path_);
  host.App().SetCommandRunner([](PluginView, std::string_view) { throw std::runtime_error("no plug-in"); });

  host.Request(Access::kWrite, [&] {
    EXPECT_THROW(host.Services().application.ExecuteCommand(CCommandAndArgs(kReminderUrl)), std::runtime_error);
    AddRent(host);
  });

  EXPECT_EQ(Accounts(host), 1);
}

class AUnitOfWorkWithABookingThatFailsHalfway : public AUnitOfWork {
 protected:
  // Triggers of a file that somebody else has changed.
  void Forbid(const char* change) {
    SqliteDatabase database(path_, kBusyTimeout);
    const std::string trigger = std::string("CREATE TRIGGER no_") + change + " BEFORE " + change +
                                " ON txn BEGIN SELECT RAISE(ABORT, 'not today'); END";
    database.Execute(trigger.c_str());
  }

  static void AddAccountsAndBook(StandaloneHost& host) {
    host.Request(Access::kWrite, [&] {
      const std::int32_t dueTo = host.Accounts().Create({"Due to", 7, 0, false}).id;
      const std::int32_t rent = host.Accounts().Create({"Rent", 12, 0, false}).id;
      const std::int32_t name = host.Names().Create("Northfield", NameKind::kVendor).id;
      CAccnt credited(host.Services().accounts, dueTo, kFeatureTypeStandard);
      CAccnt debited(host.Services().accounts, rent, kFeatureTypeStandard);
      JournalEntryIds ids;
      EXPECT_EQ(host.Services().journal.CreateGeneralJournalEntry(credited, debited, "10", ids, name, "Northfield"),
                kEdListFailure);
    });
  }
};

TEST_F(AUnitOfWorkWithABookingThatFailsHalfway, KeepsNoPartOfIt) {
  Forbid("UPDATE");
  StandaloneHost host(path_);

  AddAccountsAndBook(host);

  EXPECT_EQ(Accounts(host), 2);
  EXPECT_EQ(Count(host, "SELECT count(*) FROM txn"), 0);
  EXPECT_EQ(Count(host, "SELECT count(*) FROM txn_line"), 0);
}

TEST_F(AUnitOfWorkWithABookingThatFailsHalfway, IsGivenUpWhenThePartCannotBeTakenOut) {
  Forbid("UPDATE");
  Forbid("DELETE");
  StandaloneHost host(path_);

  EXPECT_THROW(AddAccountsAndBook(host), UnitOfWorkError);

  EXPECT_EQ(Accounts(host), 0);
  EXPECT_EQ(Count(host, "SELECT count(*) FROM txn"), 0);
}

}  // namespace
}  // namespace standalone
