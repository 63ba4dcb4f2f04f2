#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/company/LogReader.h"
#include "standalone/company/Session.h"
#include "standalone/services/QueryEngineService.h"
#include "tests/company/CompanyFixture.h"
#include "tests/support/MultiEntityPrivateAccess.h"

namespace standalone {
namespace {

using testing::Contains;
using testing::ElementsAre;
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

  MEStatusCode Establish(const char* requestId) {
    return host_.Request(Access::kWrite, [&] {
      return MultiEntityDriver::UpdateTransactionWithState("9130347", requestId, MEStateEstablished);
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
  std::optional<Session> session_{std::in_place, host_};
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

TEST_F(ASession, LeavesNothingOfABookingWhoseRowCannotBeSaved) {
  ASSERT_EQ(Relate(), MEStatusSuccess);
  FileOf(host_).Execute("CREATE TRIGGER refusing BEFORE INSERT ON me_transaction BEGIN SELECT RAISE(ABORT, 'no'); END");

  EXPECT_EQ(Record("req-1"), MEStatusDeclined);

  EXPECT_EQ(Count(host_, "SELECT count(*) FROM txn"), 0);
  EXPECT_EQ(Count(host_, "SELECT count(*) FROM account"), 2);
  EXPECT_EQ(Count(host_, "SELECT count(*) FROM name"), 0);
}

TEST_F(ASession, ReportsARequestThatTheEngineUndidWhateverTheModuleAnswers) {
  ASSERT_EQ(Relate(), MEStatusSuccess);
  FileOf(host_).Execute(
      "CREATE TRIGGER broken BEFORE INSERT ON me_transaction BEGIN SELECT RAISE(ROLLBACK, 'disk is gone'); END");

  EXPECT_THROW(Record("req-1"), UnitOfWorkError);

  EXPECT_EQ(Count(host_, "SELECT count(*) FROM txn"), 0);
  EXPECT_EQ(Count(host_, "SELECT count(*) FROM account"), 2);
}

TEST_F(ASession, LetsWhoeverSetsTheModulesFlagVouchForADeletion) {
  ASSERT_EQ(Relate(), MEStatusSuccess);
  ASSERT_EQ(Record("req-1"), MEStatusSuccess);
  MultiEntityDriver::SetGJEDeletionDueToFDPFailure(true);

  const EdListStatus deleted =
      host_.Request(Access::kWrite, [&] { return host_.Services().journal.DeleteGeneralJournalEntry(txnId_); });

  EXPECT_EQ(deleted, kEdListSuccess);
}

TEST_F(ASession, MarksATransactionThatThePartnerConfirmed) {
  ASSERT_EQ(Relate(), MEStatusSuccess);
  ASSERT_EQ(Record("req-1"), MEStatusSuccess);

  EXPECT_EQ(Establish("req-1"), MEStatusSuccess);

  EXPECT_EQ(Count(host_, "SELECT partner_confirmed FROM txn"), 1);
}

TEST_F(ASession, KeepsTheStateOfATransactionWhoseEntryIsGone) {
  ASSERT_EQ(Relate(), MEStatusSuccess);
  ASSERT_EQ(Record("req-1"), MEStatusSuccess);
  FileOf(host_).Execute("UPDATE me_transaction SET state = 1; DELETE FROM txn");

  EXPECT_EQ(Establish("req-1"), MEStatusRowsNotRemoved);

  EXPECT_EQ(Count(host_, "SELECT state FROM me_transaction"), MEStatePending);
}

TEST_F(ASession, ConfirmsNoTransactionOfAnotherTypeThanItsRowSays) {
  ASSERT_EQ(Relate(), MEStatusSuccess);
  ASSERT_EQ(Record("req-1"), MEStatusSuccess);
  FileOf(host_).Execute("UPDATE me_transaction SET txn_type = 9, state = 1");

  EXPECT_EQ(Establish("req-1"), MEStatusRowsNotRemoved);

  EXPECT_EQ(Count(host_, "SELECT partner_confirmed FROM txn"), 0);
  EXPECT_EQ(Count(host_, "SELECT state FROM me_transaction"), MEStatePending);
}

TEST_F(ASession, FindsTransactionsByTypeAndPeriodWithBothDaysIncluded) {
  ASSERT_EQ(Relate(), MEStatusSuccess);
  ASSERT_EQ(Record("req-1"), MEStatusSuccess);
  const DateType32 today = platform::Today(platform::SystemClock());
  const unsigned int journal = kTxnTypeJournalEntry;
  std::vector<unsigned long> ofType;
  std::vector<unsigned long> ofOtherType;
  std::vector<unsigned long> ofToday;
  std::vector<unsigned long> ofTomorrow;

  host_.Request(Access::kRead, [&] {
    EXPECT_TRUE(MultiEntityPrivateAccess::GetTxns(journal, ofType));
    EXPECT_TRUE(MultiEntityPrivateAccess::GetTxns(kTxnTypeBill, ofOtherType));
    EXPECT_TRUE(MultiEntityPrivateAccess::GetTxnsForPeriod(today, today, journal, kFieldTransactionDate, ofToday));
    EXPECT_TRUE(MultiEntityPrivateAccess::GetTxnsForPeriod(DateAdd(today, 1), NullDate(), journal,
                                                           kFieldTransactionDate, ofTomorrow));
  });

  EXPECT_THAT(ofType, ElementsAre(txnId_));
  EXPECT_THAT(ofOtherType, IsEmpty());
  EXPECT_THAT(ofToday, ElementsAre(txnId_));
  EXPECT_THAT(ofTomorrow, IsEmpty());
}

TEST_F(ASession, FailsAQueryOfASelectionOrDateFieldThatDoesNotExist) {
  std::vector<unsigned long> found;

  host_.Request(Access::kRead, [&] {
    EXPECT_FALSE(MultiEntityPrivateAccess::GetTxns(77, found));
    EXPECT_FALSE(MultiEntityPrivateAccess::GetTxnsForPeriod(NullDate(), NullDate(), kSelectAllTransactions, 77, found));
  });

  EXPECT_THAT(found, IsEmpty());
}

TEST_F(ASession, ShowsTheRememberedRealmIdWithoutRememberingOne) {
  const auto remembered = [this] {
    return host_.Request(Access::kRead, [&] { return host_.Preferences().Find(kRealmIdPreference); });
  };
  ASSERT_EQ(remembered(), std::nullopt);

  EXPECT_FALSE(host_.Request(Access::kWrite, [] { return MultiEntityDriver::BlockUserIfRealmReset("9130"); }));

  EXPECT_EQ(remembered(), "9130");
}

TEST_F(ASession, AsksTheRemoteValueForTheRealmCheckAfreshEachTime) {
  const auto isBlocked = [this](const char* realmId) {
    return host_.Request(Access::kWrite, [=] { return MultiEntityDriver::BlockUserIfRealmReset(realmId); });
  };
  ASSERT_FALSE(isBlocked("111"));
  ASSERT_TRUE(isBlocked("222"));

  WriteFile(CompanyFile::RemotePath(path_), "[values.MultiEntity]\nCheckForRealmReset = \"0\"\n");

  EXPECT_FALSE(isBlocked("222"));
}

TEST_F(ASession, OpensTheRelationsOfARealmThatWasResetWhenTheUserWantsTo) {
  std::vector<PluginView> opened;
  host_.App().SetCommandRunner([&](PluginView view, std::string_view) { opened.push_back(view); });
  host_.MessageBoxes().SetAnswerer([](const Question&) { return true; });
  const auto isBlocked = [this](const char* realmId) {
    return host_.Request(Access::kWrite, [=] { return MultiEntityDriver::BlockUserIfRealmReset(realmId); });
  };
  ASSERT_FALSE(isBlocked("111"));

  EXPECT_TRUE(isBlocked("222"));

  EXPECT_THAT(opened, ElementsAre(PluginView::kRelationsAfterRealmReset));
}

TEST_F(ASession, OpensTheSetUpOfARelationWhenTheUserWantsTo) {
  std::vector<PluginView> opened;
  host_.App().SetCommandRunner([&](PluginView view, std::string_view) { opened.push_back(view); });
  host_.MessageBoxes().SetAnswerer([](const Question&) { return true; });

  EXPECT_FALSE(host_.Request(Access::kRead, [] { return MultiEntityDriver::CheckForPluginNavigation(); }));

  EXPECT_THAT(opened, ElementsAre(PluginView::kRelationSetUp));
}

TEST_F(ASession, GoesOnWithoutARelationWhenTheUserDeclinesToSetOneUp) {
  std::vector<PluginView> opened;
  host_.App().SetCommandRunner([&](PluginView view, std::string_view) { opened.push_back(view); });

  EXPECT_TRUE(host_.Request(Access::kRead, [] { return MultiEntityDriver::CheckForPluginNavigation(); }));

  EXPECT_THAT(opened, IsEmpty());
}

TEST_F(ASession, ClosesTheCompanyWhenItEnds) {
  StandaloneHost host(path_);
  session_.reset();
  {
    Session session(host);
    session.QueueReminder();
    EXPECT_TRUE(host.App().HasMessages());
  }

  EXPECT_FALSE(host.App().HasMessages());
  EXPECT_EQ(host.Services().application.GetActiveFileMgr(), nullptr);
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
