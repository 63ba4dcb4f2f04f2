#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <limits>
#include <string>
#include <vector>

#include "standalone/services/Guard.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::ElementsAre;

// How many statements the host runs on its company file while it does `work`.
template <typename Work>
int CountStatements(StandaloneHost& host, Work&& work) {
  int statements = 0;
  const auto count = [](unsigned, void* counter, void*, void*) {
    ++*static_cast<int*>(counter);
    return 0;
  };
  sqlite3_trace_v2(FileOf(host).Handle(), SQLITE_TRACE_STMT, count, &statements);
  work();
  sqlite3_trace_v2(FileOf(host).Handle(), 0, nullptr, nullptr);
  return statements;
}

// What a listing asks of the host: all rows first, then their lines one by one.
class LinesReadAhead : public CompanyFixture {
 protected:
  LinesReadAhead() {
    host_.Request(Access::kWrite, [&] {
      rent_ = host_.Accounts().Create({"Rent", KrEnumerations::kExpense, 0, false}).id;
      dueTo_ = host_.Accounts().Create({"Due to Alder", KrEnumerations::kOtherCurrentLiability, 0, false}).id;
      DBMultiEntityRelation relation{};
      relation.realmId[0] = '9';
      Store().SaveRelation(relation);
      relation_ = relation.relationId;
      firstEntry_ = Book(kTxnTypeJournalEntry, 100, "Rent of May");
      bill_ = Book(kTxnTypeBill, 200, "Power");
      secondEntry_ = Book(kTxnTypeJournalEntry, 300, "Rent of June");
    });
  }

  MultiEntityDBManager& Store() { return host_.Services().multiEntity; }
  TargetLines& Lines() { return host_.Services().lines; }

  // Books a transaction of two lines with a row for the first one, whose id it returns.
  std::int32_t Book(std::int16_t type, std::int64_t amount, const char* memo) {
    const std::int32_t txnId = host_.Transactions().AddHeader(
        {.type = type, .date = {2025, 6, 30}, .nameId = 0, .memo = "", .documentNumber = ""});
    const std::int32_t line = host_.Transactions().AddLine(txnId, {rent_, amount, memo});
    host_.Transactions().AddLine(txnId, {dueTo_, -amount, "Settlement"});
    host_.Transactions().Post(txnId);
    Save(txnId, line, type);
    return line;
  }

  void Save(std::int32_t txnId, std::int32_t targetId, std::int16_t type) {
    DBMultiEntityTransaction row{};
    row.txnId = txnId;
    row.targetId = targetId;
    row.relationId = relation_;
    row.txnType = type;
    ASSERT_TRUE(Store().SaveTransaction(row).Succeeded());
  }

  // Returns their target lines.
  std::vector<std::int32_t> ReadRows() {
    std::vector<DBMultiEntityTransaction> rows;
    EXPECT_TRUE(Store().GetAllTransactionWithTargets(rows).Succeeded());
    std::vector<std::int32_t> targets;
    for (const DBMultiEntityTransaction& row : rows) targets.push_back(row.targetId);
    return targets;
  }

  // A line of a posted transaction, which the file's rules protect.
  void LoseLine(std::int32_t lineId) {
    FileOf(host_).Execute("DROP TRIGGER IF EXISTS txn_line_delete_posted");
    FileOf(host_).Execute(("DELETE FROM txn_line WHERE id = " + std::to_string(lineId)).c_str());
  }

  std::int64_t AmountOf(std::int32_t lineId) {
    const TargType line(Lines(), lineId, kFeatureTypeStandard, kReadFailSafeDefault, kViewAny);
    return line.GetAmount().minorUnits;
  }

  std::string MemoOf(std::int32_t lineId) {
    const TargType line(Lines(), lineId, kFeatureTypeStandard, kReadFailSafeDefault, kViewAny);
    return std::string(line.GetStrMemo().view());
  }

  std::string AccountOf(std::int32_t lineId) {
    const TargType line(Lines(), lineId, kFeatureTypeStandard, kReadFailSafeDefault, kViewAny);
    return line.GetAccountName(0, 0);
  }

  StandaloneHost host_{path_};
  std::int32_t rent_ = 0;
  std::int32_t dueTo_ = 0;
  std::int32_t relation_ = 0;
  std::int32_t firstEntry_ = 0;
  std::int32_t bill_ = 0;
  std::int32_t secondEntry_ = 0;
};

TEST_F(LinesReadAhead, ComeWithTheMarkOfThoseOfBeforeWithoutAnotherLookAtTheFile) {
  FileOf(host_).Execute(("UPDATE me_transaction SET of_before = 1 WHERE target_id = " + std::to_string(bill_)).c_str());
  host_.Request(Access::kRead, [&] {
    std::vector<DBMultiEntityTransaction> rows;
    host_.Intercompany().List(rows);

    std::vector<bool> ofBefore;
    const int statements = CountStatements(host_, [&] {
      for (const DBMultiEntityTransaction& row : rows) {
        ofBefore.push_back(host_.Intercompany().IsOfBefore(row.txnId, row.targetId));
      }
    });

    EXPECT_THAT(ofBefore, ElementsAre(false, true, false));
    EXPECT_EQ(statements, 0);
  });
}

TEST_F(LinesReadAhead, KeepTheMarkOfThoseOfBeforeWhenTheirStateChanges) {
  FileOf(host_).Execute(("UPDATE me_transaction SET of_before = 1 WHERE target_id = " + std::to_string(bill_)).c_str());
  host_.Request(Access::kWrite, [&] {
    std::vector<DBMultiEntityTransaction> rows;
    host_.Intercompany().List(rows);
    DBMultiEntityTransaction bill = rows.at(1);
    bill.state = 3;
    ASSERT_TRUE(Store().UpdateTransaction(bill).Succeeded());
    const std::int32_t later = Book(kTxnTypeBill, 400, "Water");

    EXPECT_TRUE(host_.Intercompany().IsOfBefore(bill.txnId, bill_));
    EXPECT_FALSE(host_.Intercompany().IsOfBefore(bill.txnId + 1, bill_));
    EXPECT_FALSE(host_.Intercompany().IsOfBefore(rows.back().txnId + 1, later));
  });
}

TEST_F(LinesReadAhead, AreTheLinesOfTheFile) {
  host_.Request(Access::kRead, [&] {
    ReadRows();

    EXPECT_THAT((std::vector{AmountOf(firstEntry_), AmountOf(firstEntry_ + 1), AmountOf(bill_), AmountOf(bill_ + 1),
                             AmountOf(secondEntry_), AmountOf(secondEntry_ + 1)}),
                ElementsAre(100, -100, 200, -200, 300, -300));
    EXPECT_EQ(AccountOf(secondEntry_), "Rent");
    EXPECT_EQ(AccountOf(secondEntry_ + 1), "Due to Alder");
    EXPECT_EQ(MemoOf(secondEntry_), "Rent of June");
    EXPECT_EQ(MemoOf(secondEntry_ + 1), "Settlement");
    EXPECT_EQ(MemoOf(bill_), "Power");
  });
}

TEST_F(LinesReadAhead, AreFoundInAnyOrderAndMoreThanOnce) {
  host_.Request(Access::kRead, [&] {
    ReadRows();

    EXPECT_THAT((std::vector{AmountOf(secondEntry_), AmountOf(bill_), AmountOf(firstEntry_), AmountOf(secondEntry_),
                             AmountOf(firstEntry_ + 1), AmountOf(secondEntry_ + 1), AmountOf(secondEntry_)}),
                ElementsAre(300, 200, 100, 300, -100, -300, 300));
  });
}

TEST_F(LinesReadAhead, NeedOneLookAtTheFileInTheOrderOfTheRows) {
  host_.Request(Access::kRead, [&] {
    ASSERT_THAT(ReadRows(), ElementsAre(firstEntry_, bill_, secondEntry_));

    const int statements = CountStatements(host_, [&] {
      EXPECT_TRUE(Lines().TargExists(firstEntry_, kTxnTypeJournalEntry));
      EXPECT_EQ(MemoOf(firstEntry_), "Rent of May");
      EXPECT_TRUE(Lines().TargExists(firstEntry_ + 1, kTxnTypeJournalEntry));
      EXPECT_EQ(AmountOf(firstEntry_ + 1), -100);
      EXPECT_EQ(MemoOf(secondEntry_), "Rent of June");
      EXPECT_EQ(AmountOf(secondEntry_ + 1), -300);
    });
    EXPECT_EQ(statements, 1);
  });
}

TEST_F(LinesReadAhead, AreReadPageByPageInALongListing) {
  host_.Request(Access::kWrite, [&] {
    for (int count = 0; count < 1'000; ++count) Book(kTxnTypeJournalEntry, 1'000 + count, "Rent");
    const std::vector<std::int32_t> targets = ReadRows();
    ASSERT_EQ(targets.size(), 1'003U);

    const int statements = CountStatements(host_, [&] {
      // Its one line lets a page end between the two lines of an entry.
      ASSERT_EQ(AmountOf(bill_), 200);
      for (std::size_t row = 3; row < targets.size(); ++row) {
        const auto amount = static_cast<std::int64_t>(997 + row);
        ASSERT_TRUE(Lines().TargExists(targets[row], kTxnTypeJournalEntry));
        ASSERT_EQ(AmountOf(targets[row]), amount);
        ASSERT_TRUE(Lines().TargExists(targets[row] + 1, kTxnTypeJournalEntry));
        ASSERT_EQ(AmountOf(targets[row] + 1), -amount);
      }
    });
    EXPECT_LT(statements, 20);
  });
}

TEST_F(LinesReadAhead, AreNotReadForAQuestionWithoutAListing) {
  host_.Request(Access::kRead, [&] {
    EXPECT_EQ(CountStatements(host_, [&] { EXPECT_EQ(AmountOf(firstEntry_), 100); }), 1);
    EXPECT_EQ(CountStatements(host_, [&] { EXPECT_EQ(AmountOf(bill_), 200); }), 1);
  });
}

TEST_F(LinesReadAhead, AreHeldForOneUnitOfWorkOnly) {
  host_.Request(Access::kRead, [&] {
    ReadRows();
    ASSERT_EQ(AmountOf(firstEntry_), 100);
  });

  host_.Request(Access::kRead, [&] {
    host_.Data().ReadVersion(Writes::kBookings);
    EXPECT_EQ(CountStatements(host_, [&] { EXPECT_EQ(AmountOf(firstEntry_), 100); }), 1);
    EXPECT_EQ(CountStatements(host_, [&] { EXPECT_EQ(AmountOf(firstEntry_), 100); }), 1);
  });
}

TEST_F(LinesReadAhead, AreReadAgainWithTheRows) {
  host_.Request(Access::kWrite, [&] {
    ReadRows();
    ASSERT_EQ(AmountOf(firstEntry_), 100);
    const std::int32_t added = Book(kTxnTypeJournalEntry, 500, "Rent of July");

    ASSERT_THAT(ReadRows(), ElementsAre(firstEntry_, bill_, secondEntry_, added));
    const int statements = CountStatements(host_, [&] {
      EXPECT_EQ(AmountOf(firstEntry_), 100);
      EXPECT_EQ(AmountOf(added), 500);
    });
    EXPECT_EQ(statements, 1);
  });
}

TEST_F(LinesReadAhead, KeepTheirMemosHoweverOftenTheyAreOpened) {
  host_.Request(Access::kRead, [&] {
    ReadRows();

    EXPECT_EQ(MemoOf(firstEntry_), "Rent of May");
    EXPECT_EQ(MemoOf(firstEntry_), "Rent of May");
  });
}

TEST_F(LinesReadAhead, MayBelongToTwoRows) {
  host_.Request(Access::kWrite, [&] {
    Save(1, firstEntry_ + 1, kTxnTypeJournalEntry);

    ASSERT_THAT(ReadRows(), ElementsAre(firstEntry_, bill_, secondEntry_, firstEntry_ + 1));
    EXPECT_EQ(AmountOf(firstEntry_), 100);
    EXPECT_EQ(AmountOf(firstEntry_ + 1), -100);
    EXPECT_EQ(AmountOf(secondEntry_), 300);
    EXPECT_EQ(MemoOf(firstEntry_ + 1), "Settlement");
    EXPECT_EQ(AmountOf(bill_), 200);
  });
}

TEST_F(LinesReadAhead, GoOnAfterATargetLineThatIsGone) {
  host_.Request(Access::kWrite, [&] {
    LoseLine(firstEntry_);

    ASSERT_THAT(ReadRows(), ElementsAre(firstEntry_, bill_, secondEntry_));
    EXPECT_FALSE(Lines().TargExists(firstEntry_, kTxnTypeJournalEntry));
    EXPECT_FALSE(Lines().TargExists(firstEntry_, kViewAny));
    const int statements = CountStatements(host_, [&] {
      EXPECT_EQ(AmountOf(firstEntry_ + 1), -100);
      EXPECT_EQ(AmountOf(bill_), 200);
    });
    EXPECT_EQ(statements, 0);
  });
}

TEST_F(LinesReadAhead, GoOnAfterALiabilityLineThatIsGone) {
  host_.Request(Access::kWrite, [&] {
    LoseLine(firstEntry_ + 1);
    LoseLine(secondEntry_ + 1);

    ASSERT_THAT(ReadRows(), ElementsAre(firstEntry_, bill_, secondEntry_));
    EXPECT_EQ(AmountOf(firstEntry_), 100);
    EXPECT_FALSE(Lines().TargExists(firstEntry_ + 1, kTxnTypeJournalEntry));
    const int statements = CountStatements(host_, [&] {
      EXPECT_EQ(AmountOf(bill_), 200);
      EXPECT_EQ(MemoOf(secondEntry_), "Rent of June");
    });
    EXPECT_EQ(statements, 0);
    EXPECT_FALSE(Lines().TargExists(secondEntry_ + 1, kTxnTypeJournalEntry));
  });
}

TEST_F(LinesReadAhead, AreSeenUnderTheirOwnTypeOnly) {
  host_.Request(Access::kRead, [&] {
    ReadRows();

    EXPECT_TRUE(Lines().TargExists(bill_, kTxnTypeBill));
    EXPECT_TRUE(Lines().TargExists(bill_, kViewAny));
    EXPECT_FALSE(Lines().TargExists(bill_, kTxnTypeCheck));
    const TargType line(Lines(), bill_, kFeatureTypeStandard, kReadFailSafeDefault, kTxnTypeCheck);
    EXPECT_EQ(line.GetAmount().minorUnits, 0);
    EXPECT_EQ(line.GetDate(), NullDate());
    EXPECT_TRUE(line.GetStrMemo().empty());
  });
}

TEST_F(LinesReadAhead, DoNotMakeUpALineThatIsGone) {
  host_.Request(Access::kWrite, [&] {
    Save(4711, 4711, kTxnTypeJournalEntry);
    const std::int32_t last = Book(kTxnTypeCheck, 400, "");
    ReadRows();

    EXPECT_TRUE(Lines().TargExists(firstEntry_, kTxnTypeJournalEntry));
    EXPECT_FALSE(Lines().TargExists(4711, kTxnTypeJournalEntry));
    EXPECT_FALSE(Lines().TargExists(4712, kTxnTypeJournalEntry));
    EXPECT_FALSE(Lines().TargExists(last + 100, kViewAny));
    EXPECT_FALSE(Lines().TargExists(0, kViewAny));
    EXPECT_FALSE(Lines().TargExists(std::numeric_limits<std::int32_t>::min(), kViewAny));
    EXPECT_EQ(AmountOf(last), 400);
    EXPECT_EQ(AmountOf(bill_), 200);
  });
}

TEST_F(LinesReadAhead, AreForgottenWhenTheUnitOfWorkWrites) {
  host_.Request(Access::kWrite, [&] {
    ReadRows();
    ASSERT_TRUE(Lines().TargExists(firstEntry_, kTxnTypeJournalEntry));

    ASSERT_TRUE(host_.Transactions().Delete(1));
    EXPECT_FALSE(Lines().TargExists(firstEntry_, kTxnTypeJournalEntry));
    EXPECT_EQ(AmountOf(bill_), 200);
    const std::int32_t added = Book(kTxnTypeBill, 500, "");
    EXPECT_EQ(AmountOf(added), 500);
  });
}

TEST_F(LinesReadAhead, DoNotHoldBackTheNextUnitOfWorkFromWhatAnotherProgramWrote) {
  StandaloneHost other(path_);
  host_.Request(Access::kRead, [&] {
    ReadRows();
    ASSERT_EQ(AmountOf(firstEntry_), 100);
    other.Request(Access::kWrite, [&] { ASSERT_TRUE(other.Transactions().Delete(1)); });
    EXPECT_TRUE(Lines().TargExists(firstEntry_, kTxnTypeJournalEntry));
    EXPECT_EQ(AmountOf(secondEntry_), 300);
  });

  host_.Request(Access::kRead, [&] {
    EXPECT_FALSE(Lines().TargExists(firstEntry_, kTxnTypeJournalEntry));
    ReadRows();
    EXPECT_FALSE(Lines().TargExists(firstEntry_, kTxnTypeJournalEntry));
  });
}

TEST_F(LinesReadAhead, LeaveNoReaderBehindThatKeepsTheOldStateOfTheFile) {
  host_.Request(Access::kRead, [&] {
    ReadRows();
    ASSERT_EQ(AmountOf(firstEntry_), 100);
  });

  EXPECT_EQ(sqlite3_txn_state(FileOf(host_).Handle(), "main"), SQLITE_TXN_NONE);
}

// What is asked of a name or an account again and again in one request.
class ListsReadOnce : public CompanyFixture {
 protected:
  std::string NameOf(std::int32_t id) {
    return std::string(names_.GetName(NameHandle{static_cast<std::uint64_t>(id)}, nullptr, 0).view());
  }

  // Account N has the number N and the type N % 15.
  void AddAccounts(int count) {
    for (int number = 1; number <= count; ++number) {
      host_.Accounts().Create({"Account " + std::to_string(number), static_cast<std::int16_t>(number % 15), 0, false});
    }
  }

  StandaloneHost host_{path_};
  NameList& names_ = host_.Services().names;
};

TEST_F(ListsReadOnce, KnowAtOnceWhatTheirOwnUnitOfWorkAdds) {
  host_.Request(Access::kWrite, [&] {
    EXPECT_FALSE(names_.IsValidName(NameHandle{1}));
    EXPECT_EQ(host_.Accounts().FullNameOf(1).view(), "");

    host_.Names().Create("Region", NameKind::kVendor);
    const Name branch = host_.Names().Create("Region:Branch", NameKind::kVendor);
    host_.Accounts().Create({"Rent", KrEnumerations::kExpense, 0, false});

    EXPECT_EQ(NameOf(branch.id), "Branch");
    EXPECT_EQ(names_.GetParent(NameHandle{2}), NameHandle{1});
    EXPECT_EQ(NameOf(1), "Region");
    EXPECT_EQ(host_.Accounts().FullNameOf(1).view(), "Rent");
  });
}

TEST_F(ListsReadOnce, KnowInTheNextUnitOfWorkWhatAnotherProgramAdded) {
  host_.Request(Access::kRead, [&] {
    EXPECT_FALSE(names_.IsValidName(NameHandle{1}));
    EXPECT_FALSE(host_.Settings().Get().multiCurrency);
  });
  StandaloneHost other(path_);
  other.Request(Access::kWrite, [&] {
    other.Names().Create("Region", NameKind::kVendor);
    other.Settings().Set("multi-currency", "yes");
  });

  host_.Request(Access::kRead, [&] {
    EXPECT_EQ(NameOf(1), "Region");
    EXPECT_TRUE(host_.Settings().Get().multiCurrency);
  });
}

TEST_F(ListsReadOnce, ForgetWhatTheirOwnUnitOfWorkUndid) {
  const auto addAndUndo = [&] {
    host_.Request(Access::kWrite, [&] {
      host_.Names().Create("Region", NameKind::kVendor);
      EXPECT_EQ(NameOf(1), "Region");
      throw std::runtime_error("undo");
    });
  };

  EXPECT_THROW(addAndUndo(), std::runtime_error);

  EXPECT_FALSE(host_.Request(Access::kRead, [&] { return names_.IsValidName(NameHandle{1}); }));
}

TEST_F(ListsReadOnce, AreNotGivenOutsideOfAUnitOfWork) {
  host_.Request(Access::kRead, [&] { host_.Settings().Get(); });

  EXPECT_THROW(host_.Settings().Get(), UnitOfWorkError);
}

TEST_F(ListsReadOnce, FollowWhateverAnotherProgramRenames) {
  host_.Request(Access::kWrite, [&] {
    FileOf(host_).Execute("INSERT INTO name (id, name, full_name, kind) VALUES (1, 'Region', 'Region', 1)");
    FileOf(host_).Execute("INSERT INTO name (id, name, full_name, kind) VALUES (60000, 'Branch', 'Branch', 1)");
  });
  host_.Request(Access::kRead, [&] {
    ASSERT_EQ(NameOf(60'000), "Branch");
    ASSERT_EQ(NameOf(1), "Region");
  });
  StandaloneHost other(path_);

  other.Request(Access::kWrite, [&] { FileOf(other).Execute("UPDATE name SET name = 'Old ' || name"); });

  host_.Request(Access::kRead, [&] {
    EXPECT_EQ(NameOf(1), "Old Region");
    EXPECT_EQ(NameOf(60'000), "Old Branch");
  });
}

TEST_F(ListsReadOnce, FollowAPartnerThatAnotherProgramChanges) {
  MultiEntityDBManager& store = host_.Services().multiEntity;
  StandaloneHost other(path_);
  DBMultiEntityRelation relation{};
  relation.realmId[0] = '9';
  relation.partnerName[0] = 'A';
  host_.Request(Access::kWrite, [&] { ASSERT_TRUE(store.SaveRelation(relation).Succeeded()); });
  const auto nameOfPartner = [&] {
    DBMultiEntityRelation found{};
    const Util::Status status = store.GetRelation("9", found);
    return status.Succeeded() ? std::string(found.partnerName) : "none";
  };
  ASSERT_EQ(host_.Request(Access::kRead, nameOfPartner), "A");

  relation.partnerName[0] = 'B';
  host_.Request(Access::kRead, [&] {
    ASSERT_EQ(nameOfPartner(), "A");
    other.Request(Access::kWrite, [&] { other.Services().multiEntity.UpdateRelationForRealm(relation, {}); });
    EXPECT_EQ(nameOfPartner(), "A");
  });
  EXPECT_EQ(host_.Request(Access::kRead, nameOfPartner), "B");
  relation.partnerName[0] = 'C';
  host_.Request(Access::kWrite, [&] {
    ASSERT_EQ(nameOfPartner(), "B");
    store.UpdateRelationForRealm(relation, {});
    EXPECT_EQ(nameOfPartner(), "C");
  });
  other.Request(Access::kWrite, [&] { other.Services().multiEntity.DeleteRelation("9"); });
  EXPECT_EQ(host_.Request(Access::kRead, nameOfPartner), "none");
}

TEST_F(ListsReadOnce, FollowTheRightsThatAnotherProgramWithdraws) {
  host_.Request(Access::kWrite, [&] {
    User second;
    second.name = "Chief";
    second.administrator = true;
    host_.Users().Add(second);
  });
  StandaloneHost chief(path_, "Chief");
  const auto mayManage = [&] {
    return chief.Services().permissions.CurrentUserIsAdminUser();
  };
  ASSERT_TRUE(chief.Request(Access::kRead, mayManage));

  host_.Request(Access::kWrite,
                [&] { FileOf(host_).Execute("UPDATE user SET administrator = 0 WHERE name = 'Chief'"); });

  EXPECT_FALSE(chief.Request(Access::kRead, mayManage));
}

TEST_F(ListsReadOnce, FollowWhatTheirOwnUnitOfWorkChangesBetweenBookings) {
  MultiEntityDBManager& store = host_.Services().multiEntity;
  Permissions& permissions = host_.Services().permissions;
  host_.Request(Access::kWrite, [&] {
    User second;
    second.name = "Chief";
    second.administrator = true;
    host_.Users().Add(second);
    ASSERT_TRUE(permissions.CurrentUserIsAdminUser());
    DBMultiEntityRelation relation{};
    relation.realmId[0] = '9';
    ASSERT_TRUE(store.SaveRelation(relation).Succeeded());
    ASSERT_TRUE(store.GetRelation("9", relation).Succeeded());

    DBMultiEntityTransaction row{};
    row.relationId = relation.relationId;
    ASSERT_TRUE(store.SaveTransaction(row).Succeeded());
    User withdrawn = host_.CurrentUser();
    withdrawn.administrator = false;
    host_.Users().Change(withdrawn);
    EXPECT_FALSE(permissions.CurrentUserIsAdminUser());
    ASSERT_TRUE(store.DeleteTransaction(row.txnId).Succeeded());
    ASSERT_TRUE(store.DeleteRelation("9").Succeeded());
    EXPECT_EQ(store.GetRelation("9", relation).GetStatusCode(), kStatusNotFound);
  });
}

TEST_F(ListsReadOnce, AreNotReadAgainBecauseOfABooking) {
  const std::int32_t name =
      host_.Request(Access::kWrite, [&] { return host_.Names().Create("Region", NameKind::kVendor).id; });
  host_.Request(Access::kWrite, [&] {
    ASSERT_TRUE(host_.Services().permissions.CurrentUserIsAdminUser());
    ASSERT_EQ(NameOf(name), "Region");
    host_.Transactions().AddHeader(
        {.type = kTxnTypeBill, .date = DateType32(2024, 3, 1), .nameId = name, .memo = "", .documentNumber = ""});

    const int statements = CountStatements(host_, [&] {
      EXPECT_TRUE(host_.Services().permissions.CurrentUserIsAdminUser());
      EXPECT_EQ(NameOf(name), "Region");
    });
    EXPECT_EQ(statements, 0);
  });
}

TEST_F(ListsReadOnce, AreNotGivenAnyMoreOnceTheFileCannotBeRead) {
  host_.Request(Access::kWrite, [&] {
    host_.Names().Create("Region", NameKind::kVendor);
    host_.Accounts().Create({"Rent", KrEnumerations::kExpense, 0, false});
  });
  const auto breakOff = [](void*) {
    return 1;
  };

  EXPECT_THROW(host_.Request(Access::kRead,
                             [&] {
                               EXPECT_EQ(NameOf(1), "Region");
                               EXPECT_EQ(host_.Accounts().FullNameOf(1).view(), "Rent");
                               sqlite3_progress_handler(FileOf(host_).Handle(), 1, breakOff, nullptr);
                               EXPECT_THROW(host_.Accounts().List(true), UnitOfWorkError);
                               sqlite3_progress_handler(FileOf(host_).Handle(), 0, nullptr, nullptr);

                               EXPECT_THROW(NameOf(1), UnitOfWorkError);
                               EXPECT_THROW(host_.Accounts().FullNameOf(1), UnitOfWorkError);
                             }),
               UnitOfWorkError);
}

TEST_F(ListsReadOnce, OpenEveryAccountOfTheChartThatWasHandedOut) {
  ChartOfAccounts& chart = host_.Services().accounts;
  host_.Request(Access::kWrite, [&] {
    AddAccounts(40);
    FileOf(host_).Execute("DELETE FROM account WHERE id BETWEEN 10 AND 30");
    EXPECT_EQ(chart.GetAllAccounts().size(), 19U);

    EXPECT_EQ(CAccnt(chart, 40, kFeatureTypeStandard).GetType(), 40 % 15);
    EXPECT_EQ(CAccnt(chart, 9, kFeatureTypeStandard).GetType(), 9);
    EXPECT_EQ(CAccnt(chart, 31, kFeatureTypeStandard).GetType(), 1);
    EXPECT_EQ(CAccnt(chart, 1, kFeatureTypeStandard).GetType(), 1);
    CAccnt none(chart, kFeatureTypeStandard);
    EXPECT_EQ(chart.GetAccountForRecnum(20, none), kEdListFailure);
    EXPECT_EQ(chart.GetAccountForRecnum(41, none), kEdListFailure);
    EXPECT_EQ(chart.GetAccountForRecnum(0, none), kEdListFailure);
    host_.Accounts().Create({"Account 41", 8, 0, false});
    EXPECT_EQ(CAccnt(chart, 41, kFeatureTypeStandard).GetType(), 8);
  });
}

TEST_F(ListsReadOnce, AskTheRemoteSwitchesAfreshInEachUnitOfWork) {
  KillSwitchHelper& switches = host_.Services().killSwitches;
  const auto isOn = [&] {
    return switches.IsFeatureEnabled("MultiEntityAccounts", "Bank");
  };
  const std::filesystem::path file = CompanyFile::RemotePath(path_);
  EXPECT_TRUE(host_.Request(Access::kRead, isOn));

  WriteFile(file, "[switches.MultiEntityAccounts]\nBank = false\n");
  EXPECT_FALSE(isOn());
  EXPECT_FALSE(host_.Request(Access::kRead, isOn));

  WriteFile(file, "[switches\n");
  EXPECT_THROW(host_.Request(Access::kRead, isOn), std::runtime_error);
  EXPECT_THROW(host_.Request(Access::kRead, isOn), std::runtime_error);
}

}  // namespace
}  // namespace standalone
