#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/LogReader.h"
#include "standalone/Session.h"
#include "tests/standalone/CompanyFixture.h"

namespace standalone {
namespace {

using testing::Contains;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

// The module and the stand-alone host together, on a company that can book.
class ASession : public CompanyFixture {
 protected:
  ASession() {
    host_.Request(Access::kWrite, [&] {
      dueFrom_ = host_.Accounts().Create({"Due from Alder", KrEnumerations::kOtherCurrentAsset, 0, false}).id;
      dueTo_ = host_.Accounts().Create({"Due to Alder", KrEnumerations::kOtherCurrentLiability, 0, false}).id;
    });
  }

  MEStatusCode Relate() {
    MEAccountInfo dueFrom;
    dueFrom.accountId = dueFrom_;
    dueFrom.role = MEAccountRoleDueFrom;
    MEAccountInfo dueTo;
    dueTo.accountId = dueTo_;
    dueTo.role = MEAccountRoleDueTo;
    return host_.Request(Access::kWrite, [&] {
      return MultiEntityDriver::CreateRelation("9130347", "Alder Supply", MERelationType{}, MEStateEstablished,
                                               {dueFrom, dueTo});
    });
  }

  MEStatusCode Record(const char* requestId) {
    MEAccountInfo expense;
    expense.name = "Freight";
    expense.type = KrEnumerations::kExpense;
    expense.accountId = -1;
    return host_.Request(Access::kWrite, [&] {
      return MultiEntityDriver::RecordGeneralJournalEntry("9130347", expense, dueTo_, "1,234.50", requestId,
                                                          {"Northfield Power", -1}, txnId_);
    });
  }

  MEStatusCode Remove() {
    return host_.Request(Access::kWrite, [&] { return MultiEntityDriver::RemoveGeneralJournalEntry(txnId_); });
  }

  std::vector<METxnInfo> Listed() {
    std::vector<METxnInfo> list;
    host_.Request(Access::kRead, [&] {
      EXPECT_EQ(MultiEntityDriver::GetListOfTxnTargetEntries(list, NullDate(), NullDate()), MEStatusSuccess);
    });
    return list;
  }

  std::uint32_t txnId_ = 0;
  std::int32_t dueFrom_ = 0;
  std::int32_t dueTo_ = 0;
  StandaloneHost host_{path_};
  Session session_{host_};
};

TEST_F(ASession, BooksAnEntryThatTheListingShows) {
  ASSERT_EQ(Relate(), MEStatusSuccess);

  ASSERT_EQ(Record("req-1"), MEStatusSuccess);

  const std::vector<METxnInfo> list = Listed();
  ASSERT_THAT(list, SizeIs(1));
  EXPECT_EQ(list[0].amount.view(), "1,234.50");
  EXPECT_EQ(list[0].entryAccountName.view(), "Freight");
  EXPECT_EQ(list[0].liabilityAccountName.view(), "Due to Alder");
  EXPECT_EQ(list[0].txnName.view(), "Northfield Power");
  EXPECT_EQ(list[0].partnerName.view(), "Alder Supply");
}

TEST_F(ASession, LetsTheModuleAloneRemoveAnEntryWithAnIntercompanyRow) {
  ASSERT_EQ(Relate(), MEStatusSuccess);
  ASSERT_EQ(Record("req-1"), MEStatusSuccess);

  EXPECT_NE(host_.Request(Access::kWrite, [&] { return host_.Services().journal.DeleteGeneralJournalEntry(txnId_); }),
            kEdListSuccess);
  EXPECT_EQ(Remove(), MEStatusSuccess);

  EXPECT_THAT(Listed(), IsEmpty());
}

TEST_F(ASession, LetsTheModuleUndoABookingWhoseRowCannotBeSaved) {
  ASSERT_EQ(Relate(), MEStatusSuccess);
  host_.Data().Execute("CREATE TRIGGER refusing BEFORE INSERT ON me_transaction BEGIN SELECT RAISE(ABORT, 'no'); END");

  EXPECT_EQ(Record("req-1"), MEStatusDeclined);

  EXPECT_EQ(Count(host_, "SELECT count(*) FROM txn"), 0);
  EXPECT_EQ(Count(host_, "SELECT count(*) FROM name"), 1);
}

TEST_F(ASession, ReportsARequestThatTheEngineUndidWhateverTheModuleAnswers) {
  ASSERT_EQ(Relate(), MEStatusSuccess);
  host_.Data().Execute(
      "CREATE TRIGGER broken BEFORE INSERT ON me_transaction BEGIN SELECT RAISE(ROLLBACK, 'disk is gone'); END");

  EXPECT_THROW(Record("req-1"), UnitOfWorkError);

  EXPECT_EQ(Count(host_, "SELECT count(*) FROM txn"), 0);
  EXPECT_EQ(Count(host_, "SELECT count(*) FROM account"), 2);
}

TEST_F(ASession, WritesTheModulesLinesIntoTheOperationsLog) {
  ASSERT_EQ(Relate(), MEStatusSuccess);

  EXPECT_THAT(LogReader(CompanyFile::LogPath(path_)).LastLines(100),
              Contains(Field(&LogLine::message, "MULTIENTITY::Entering MultiEntityDriver::CreateRelation")));
}

TEST_F(ASession, HasTheModuleToItself) {
  EXPECT_THROW(Session second(host_), std::runtime_error);
}

}  // namespace
}  // namespace standalone
