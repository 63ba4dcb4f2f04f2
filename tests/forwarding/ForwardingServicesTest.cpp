#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <span>
#include <stdexcept>
#include <vector>

#include "MultiEntityHostHelpers/AbsentServices.h"
#include "MultiEntityHostHelpers/ForwardingServices.h"
#include "tests/forwarding/MockServices.h"

namespace forwarding {

namespace {

using testing::Eq;
using testing::Field;
using testing::Ref;
using testing::Return;
using testing::ReturnRef;
using testing::StrEq;
using testing::Truly;
using testing::TypedEq;

template <class Service>
struct AsItIs final : Service {
  using Service::Service;
};

// A service in front of one that is asked nothing but what a test expects.
template <class Service, class Behind>
class InFront : public testing::Test {
 protected:
  testing::StrictMock<Behind> behind;
  AsItIs<Service> front{behind};
};

using OpsInFront = InFront<Forwarding::Ops, MockOps>;
using MemoryManagerInFront = InFront<Forwarding::MemoryManager, MockMemoryManager>;
using RuntimeInFront = InFront<Forwarding::Runtime, MockRuntime>;
using KillSwitchHelperInFront = InFront<Forwarding::KillSwitchHelper, MockKillSwitchHelper>;
using DCEInFront = InFront<Forwarding::DCE, MockDCE>;
using DBPreferencesInFront = InFront<Forwarding::DBPreferences, MockDBPreferences>;
using PrefsTagInFront = InFront<Forwarding::PrefsTag, MockPrefsTag>;
using PermissionsInFront = InFront<Forwarding::Permissions, MockPermissions>;
using ChartOfAccountsInFront = InFront<Forwarding::ChartOfAccounts, MockChartOfAccounts>;
using NameListInFront = InFront<Forwarding::NameList, MockNameList>;
using JournalInFront = InFront<Forwarding::Journal, MockJournal>;
using TargetLinesInFront = InFront<Forwarding::TargetLines, MockTargetLines>;
using QueryEngineInFront = InFront<Forwarding::QueryEngine, MockQueryEngine>;
using MoneyInFront = InFront<Forwarding::Money, MockMoney>;
using ApplicationInFront = InFront<Forwarding::Application, MockApplication>;
using MessagesInFront = InFront<Forwarding::Messages, MockMessages>;
using MultiEntityDBManagerInFront = InFront<Forwarding::MultiEntityDBManager, MockMultiEntityDBManager>;
using PlatformInFront = InFront<Forwarding::Platform, MockPlatform>;

constexpr Util::Status kAnswer{-7};

template <class Call>
void ExpectAnswer(const Call& call) {
  EXPECT_EQ(call().GetStatusCode(), kAnswer.GetStatusCode());
}

// Asked twice, as an answer that is always the same would be right once.
template <class Expectation>
void AnswersYesThenNo(Expectation& expectation) {
  expectation.WillOnce(Return(true)).WillOnce(Return(false));
}

template <class Call>
void ExpectYesThenNo(const Call& call) {
  EXPECT_TRUE(call());
  EXPECT_FALSE(call());
}

// Accounts to pass on.
class TwoAccounts {
  AsItIs<Absent::ChartOfAccounts> none_;

 public:
  CAccnt first{none_, kFeatureTypeStandard};
  CAccnt second{none_, kFeatureTypeStandard};
};

TEST_F(OpsInFront, LinesAreWantedAndWritten) {
  AnswersYesThenNo(EXPECT_CALL(behind, Wants(Util::Ops::Level::kWarning)));
  ExpectYesThenNo([&] { return front.Wants(Util::Ops::Level::kWarning); });

  const Util::Ops::Line line{};
  EXPECT_CALL(behind, Write(Ref(line)));
  front.Write(line);
}

TEST_F(MemoryManagerInFront, BlocksAreReleased) {
  char block = 'x';
  EXPECT_CALL(behind, Release(&block));
  front.Release(&block);
}

char* Format(Util::Runtime& runtime, const char* pattern, ...) {
  std::va_list arguments;
  va_start(arguments, pattern);
  char* formatted = runtime.FormatStringV(pattern, arguments);
  va_end(arguments);
  return formatted;
}

TEST_F(RuntimeInFront, TextsAreFormattedWithTheirArguments) {
  char text[16];
  EXPECT_CALL(behind, FormatStringV).WillOnce([&](const char* pattern, std::va_list arguments) {
    std::vsnprintf(text, sizeof text, pattern, arguments);
    return text;
  });

  EXPECT_EQ(Format(front, "%d of %s", 3, "Alder"), text);
  EXPECT_STREQ(text, "3 of Alder");
}

TEST_F(RuntimeInFront, TextsAreGivenBackToTheMemoryManagerBehind) {
  testing::StrictMock<MockMemoryManager> manager;
  EXPECT_CALL(behind, GetMemoryManager()).WillOnce(ReturnRef(manager));
  EXPECT_EQ(&front.GetMemoryManager(), &manager);
}

TEST_F(RuntimeInFront, TextsThatDoNotFitAreTold) {
  EXPECT_CALL(behind, InvalidParameter());
  front.InvalidParameter();
}

TEST_F(KillSwitchHelperInFront, SwitchesAreAsked) {
  AnswersYesThenNo(EXPECT_CALL(behind, IsFeatureEnabled(StrEq(kAccountSwitches), StrEq("Bank"))));
  ExpectYesThenNo([&] { return front.IsFeatureEnabled(kAccountSwitches, "Bank"); });
}

TEST_F(KillSwitchHelperInFront, SwitchesThatCannotBeReadAreThrown) {
  EXPECT_CALL(behind, IsFeatureEnabled).WillOnce(testing::Throw(std::runtime_error("no network")));
  EXPECT_THROW(front.IsFeatureEnabled(kFeatureSwitches, kSwitchForAll), std::runtime_error);
}

TEST_F(DCEInFront, ValuesAreFilledIn) {
  Util::TString value;
  AnswersYesThenNo(EXPECT_CALL(behind, GetValue2(Eq("section"), Eq("key"), Ref(value))));
  ExpectYesThenNo([&] { return front.GetValue2("section", "key", value); });
}

TEST_F(DBPreferencesInFront, PreferencesAreReadAndStored) {
  Util::TString value;
  EXPECT_CALL(behind, GetCompanyDBPreference(Eq("key"), Ref(value))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.GetCompanyDBPreference("key", value); });

  EXPECT_CALL(behind, SetCompanyDBPreference(Eq("key"), Eq("value"))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.SetCompanyDBPreference("key", "value"); });
}

TEST_F(PrefsTagInFront, TheCompanyIsAsked) {
  AnswersYesThenNo(EXPECT_CALL(behind, PrefGetPrefHandle()));
  ExpectYesThenNo([&] { return front.PrefGetPrefHandle(); });

  AnswersYesThenNo(EXPECT_CALL(behind, GetCurrentFileIsSample()));
  ExpectYesThenNo([&] { return front.GetCurrentFileIsSample(); });

  EXPECT_CALL(behind, GetIsAccntntCopy()).WillOnce(Return(2));
  EXPECT_EQ(front.GetIsAccntntCopy(), 2);

  AnswersYesThenNo(EXPECT_CALL(behind, GetUseMultiCurrency()));
  ExpectYesThenNo([&] { return front.GetUseMultiCurrency(); });
}

TEST_F(PrefsTagInFront, CurrenciesAreOpenedAskedAndReleased) {
  constexpr CurrencyHandle kHandle{4};
  EXPECT_CALL(behind, OpenCurrency(kFeatureTypeStandard)).WillOnce(Return(kHandle));
  CCurrency currency(front, kFeatureTypeStandard);
  EXPECT_EQ(currency.Handle(), kHandle);

  EXPECT_CALL(behind, GetHomeCurrency(Ref(currency)));
  front.GetHomeCurrency(currency);

  AnswersYesThenNo(EXPECT_CALL(behind, IsValidCurrency(kHandle)));
  ExpectYesThenNo([&] { return currency.IsValid(); });

  EXPECT_CALL(behind, GetCurrencyCode(kHandle)).WillOnce(Return("EUR"));
  EXPECT_EQ(currency.GetCode(), "EUR");

  EXPECT_CALL(behind, ReleaseCurrency(kHandle));
}

TEST_F(PermissionsInFront, RightsAreAsked) {
  AnswersYesThenNo(EXPECT_CALL(behind, CurrentUserIsAdminUser()));
  ExpectYesThenNo([&] { return front.CurrentUserIsAdminUser(); });

  AnswersYesThenNo(EXPECT_CALL(behind, FeaturePermissionAvailable(kFeatureBills, kActionDelete, 3)));
  ExpectYesThenNo([&] { return front.FeaturePermissionAvailable(kFeatureBills, kActionDelete, 3); });

  TwoAccounts accounts;
  AnswersYesThenNo(
      EXPECT_CALL(behind, ListPermissionAvailable(kListAccounts, 1, kActionView, Ref(accounts.second), 2, 3)));
  ExpectYesThenNo([&] { return front.ListPermissionAvailable(kListAccounts, 1, kActionView, accounts.second, 2, 3); });
}

TEST_F(ChartOfAccountsInFront, TheListIsBroughtUpToDate) {
  constexpr AccountListHandle kList{6};
  EXPECT_CALL(behind, GetAccntListPtr()).WillOnce(Return(kList));
  EXPECT_EQ(front.GetAccntListPtr(), kList);

  EXPECT_CALL(behind, EdListRefreshList(kList, 1));
  front.EdListRefreshList(kList, 1);
}

TEST_F(ChartOfAccountsInFront, AccountsAreLoadedAndCreated) {
  TwoAccounts accounts;
  EXPECT_CALL(behind, GetAccountForRecnum(12, Ref(accounts.first))).WillOnce(Return(kEdListDuplicateName));
  EXPECT_EQ(front.GetAccountForRecnum(12, accounts.first), kEdListDuplicateName);

  char name[] = "Due from Alder";
  std::int32_t recnum = 0;
  EXPECT_CALL(behind, CreateNewChartOfAccount(name, 2, Ref(recnum), true)).WillOnce(Return(kEdListDuplicateAccount));
  EXPECT_EQ(front.CreateNewChartOfAccount(name, 2, recnum, true), kEdListDuplicateAccount);
  EXPECT_CALL(behind, CreateNewChartOfAccount(name, 2, Ref(recnum), false)).WillOnce(Return(kEdListSuccess));
  EXPECT_EQ(front.CreateNewChartOfAccount(name, 2, recnum, false), kEdListSuccess);
}

TEST_F(ChartOfAccountsInFront, AccountsAreListed) {
  const MockChartOfAccounts::Texts texts{{5, {"Due to Alder", "Equity"}}};
  EXPECT_CALL(behind, GetAllAccounts()).WillOnce(Return(texts));
  EXPECT_EQ(front.GetAllAccounts(), texts);

  const MockChartOfAccounts::Listed listed{{"Due to Alder", 5}};
  EXPECT_CALL(behind, GetListOfAccounts(7)).WillOnce(Return(listed));
  EXPECT_EQ(front.GetListOfAccounts(7), listed);
}

TEST_F(ChartOfAccountsInFront, AccountsAreOpenedAndReleased) {
  EXPECT_CALL(behind, OpenAccount(kFeatureTypeStandard)).WillOnce(Return(AccountHandle{1}));
  EXPECT_CALL(behind, OpenAccount(12, kFeatureTypeStandard)).WillOnce(Return(AccountHandle{2}));
  const CAccnt blank(front, kFeatureTypeStandard);
  const CAccnt twelfth(front, 12, kFeatureTypeStandard);
  EXPECT_EQ(blank.Handle(), AccountHandle{1});
  EXPECT_EQ(twelfth.Handle(), AccountHandle{2});

  EXPECT_CALL(behind, ReleaseAccount(AccountHandle{1}));
  EXPECT_CALL(behind, ReleaseAccount(AccountHandle{2}));
}

TEST_F(ChartOfAccountsInFront, AnOpenAccountIsAsked) {
  constexpr AccountHandle kHandle{3};
  AnswersYesThenNo(EXPECT_CALL(behind, GetDeleted(kHandle)));
  ExpectYesThenNo([&] { return front.GetDeleted(kHandle); });

  EXPECT_CALL(behind, GetType(kHandle)).WillOnce(Return(KrEnumerations::kExpense));
  EXPECT_EQ(front.GetType(kHandle), KrEnumerations::kExpense);

  AnswersYesThenNo(EXPECT_CALL(behind, GetIsSubAccnt(kHandle)));
  ExpectYesThenNo([&] { return front.GetIsSubAccnt(kHandle); });

  AnswersYesThenNo(EXPECT_CALL(behind, IsSpecial(kHandle, KrEnumerations::kSpecialNotForMultiEntity)));
  ExpectYesThenNo([&] { return front.IsSpecial(kHandle, KrEnumerations::kSpecialNotForMultiEntity); });
}

TEST_F(NameListInFront, NamesAreCreated) {
  Util::TString text("Alder");
  std::int32_t id = 0;
  EXPECT_CALL(behind, CreateCName(Ref(text), kNameTypeVendor, Ref(id))).WillOnce(Return(kEdListDuplicateName));
  EXPECT_EQ(front.CreateCName(text, kNameTypeVendor, id), kEdListDuplicateName);
}

TEST_F(NameListInFront, NamesAreAskedAndReleased) {
  constexpr NameHandle kHandle{3};
  AnswersYesThenNo(EXPECT_CALL(behind, IsValidName(kHandle)));
  ExpectYesThenNo([&] { return front.IsValidName(kHandle); });

  char buffer[4];
  EXPECT_CALL(behind, GetName(kHandle, buffer, 2)).WillOnce(Return("Alder"));
  EXPECT_EQ(front.GetName(kHandle, buffer, 2), "Alder");

  EXPECT_CALL(behind, GetParent(kHandle)).WillOnce(Return(NameHandle{9}));
  EXPECT_EQ(front.GetParent(kHandle), NameHandle{9});

  EXPECT_CALL(behind, ReleaseName(kHandle));
  front.ReleaseName(kHandle);
}

TEST_F(JournalInFront, EntriesAreBookedDeletedAndConfirmed) {
  TwoAccounts accounts;
  JournalEntryIds ids;
  EXPECT_CALL(behind, CreateGeneralJournalEntry(Ref(accounts.first), Ref(accounts.second), Eq("12.50"), Ref(ids), 4,
                                                Eq("Alder")))
      .WillOnce(Return(kEdListDuplicateName));
  EXPECT_EQ(front.CreateGeneralJournalEntry(accounts.first, accounts.second, "12.50", ids, 4, "Alder"),
            kEdListDuplicateName);

  EXPECT_CALL(behind, DeleteGeneralJournalEntry(41)).WillOnce(Return(kEdListFailure));
  EXPECT_EQ(front.DeleteGeneralJournalEntry(41), kEdListFailure);

  EXPECT_CALL(behind, UpdateMETransaction(41, kTxnTypeBill)).WillOnce(Return(kEdListSuccess));
  EXPECT_EQ(front.UpdateMETransaction(41, kTxnTypeBill), kEdListSuccess);
}

TEST_F(TargetLinesInFront, LinesAreLookedForOpenedAndReleased) {
  AnswersYesThenNo(EXPECT_CALL(behind, TargExists(41, kTxnTypeBill)));
  ExpectYesThenNo([&] { return front.TargExists(41, kTxnTypeBill); });

  EXPECT_CALL(behind, OpenLine(41, kFeatureTypeStandard, kReadFailSafeDefault, kTxnTypeBill))
      .WillOnce(Return(LineHandle{7}));
  EXPECT_EQ(front.OpenLine(41, kFeatureTypeStandard, kReadFailSafeDefault, kTxnTypeBill), LineHandle{7});

  EXPECT_CALL(behind, ReleaseLine(LineHandle{7}));
  front.ReleaseLine(LineHandle{7});
}

TEST_F(TargetLinesInFront, AnOpenLineIsAsked) {
  constexpr LineHandle kHandle{7};
  constexpr DateType32 kDay(2026, 11, 21);
  EXPECT_CALL(behind, GetDate(kHandle)).WillOnce(Return(kDay));
  EXPECT_EQ(front.GetDate(kHandle), kDay);

  EXPECT_CALL(behind, GetAmount(kHandle)).WillOnce(Return(BalType{1250}));
  EXPECT_EQ(front.GetAmount(kHandle).minorUnits, 1250);

  const char* const account = "Utilities:Water";
  EXPECT_CALL(behind, GetAccountName(kHandle, 1, 2)).WillOnce(Return(account));
  EXPECT_EQ(front.GetAccountName(kHandle, 1, 2), account);

  EXPECT_CALL(behind, GetStrMemo(kHandle)).WillOnce(Return("October"));
  EXPECT_EQ(front.GetStrMemo(kHandle), "October");
}

TEST_F(TargetLinesInFront, TheNameOnATransactionIsReleasedThroughItsOwnList) {
  testing::StrictMock<MockNameList> names;
  EXPECT_CALL(behind, GetTransactionName(LineHandle{7})).WillOnce([&](LineHandle) {
    return CName(names, NameHandle{8});
  });
  EXPECT_CALL(names, IsValidName(NameHandle{8})).WillOnce(Return(true));
  EXPECT_CALL(names, ReleaseName(NameHandle{8}));

  EXPECT_TRUE(front.GetTransactionName(LineHandle{7}).IsValid());
}

constexpr QueryHandle kQuery{5};

TEST_F(QueryEngineInFront, QueriesAreOpenedToldAndReleased) {
  EXPECT_CALL(behind, OpenQuery()).WillOnce(Return(kQuery));
  EXPECT_EQ(front.OpenQuery(), kQuery);

  EXPECT_CALL(behind, SetSelect(kQuery, 3)).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.SetSelect(kQuery, 3); });

  constexpr DateType32 kDay(2026, 11, 21);
  EXPECT_CALL(behind, SetStatement(kQuery, TypedEq<unsigned int>(3), DQE::kNotBefore, TypedEq<DateType32>(kDay)))
      .WillOnce(Return(11));
  EXPECT_EQ(front.SetStatement(kQuery, 3U, DQE::kNotBefore, kDay), 11);

  EXPECT_CALL(behind, SetStatement(kQuery, TypedEq<long>(11), DQE::kAnd, TypedEq<long>(12))).WillOnce(Return(13));
  EXPECT_EQ(front.SetStatement(kQuery, 11L, DQE::kAnd, 12L), 13);

  EXPECT_CALL(behind, ReleaseQuery(kQuery));
  front.ReleaseQuery(kQuery);
}

TEST_F(QueryEngineInFront, QueriesAreRunAndWalkedThrough) {
  EXPECT_CALL(behind, DoQuery(kQuery)).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.DoQuery(kQuery); });

  AnswersYesThenNo(EXPECT_CALL(behind, ResultExists(kQuery)));
  ExpectYesThenNo([&] { return front.ResultExists(kQuery); });

  // Rows are the host's own and never looked into.
  const std::array<char, 2> rows{};
  const auto* const first = reinterpret_cast<const DQE::IDBResultSetRow*>(&rows[0]);
  const auto* const second = reinterpret_cast<const DQE::IDBResultSetRow*>(&rows[1]);
  EXPECT_CALL(behind, First(kQuery)).WillOnce(Return(first));
  EXPECT_EQ(front.First(kQuery), first);

  EXPECT_CALL(behind, Next(kQuery)).WillOnce(Return(second));
  EXPECT_EQ(front.Next(kQuery), second);

  EXPECT_CALL(behind, GetTransPtrType(kQuery, second, 2)).WillOnce(Return(41));
  EXPECT_EQ(front.GetTransPtrType(kQuery, second, 2), 41U);
}

TEST_F(MoneyInFront, AmountsAreReadAndWritten) {
  BalType amount;
  const char* const text = "12.50";
  EXPECT_CALL(behind, String2Dollar(Ref(amount), text));
  front.String2Dollar(amount, text);

  char buffer[16];
  EXPECT_CALL(behind, Money2Str_s(buffer, sizeof buffer, Field(&BalType::minorUnits, 1250), kMoneyFormatDisplay));
  front.Money2Str_s(buffer, sizeof buffer, {1250}, kMoneyFormatDisplay);
}

class OpenFile final : public DBMgr::FileMgr {
 public:
  std::int32_t GetFileState() override { return 0; }
};

TEST_F(ApplicationInFront, TheApplicationIsAsked) {
  AnswersYesThenNo(EXPECT_CALL(behind, IsServerMode(true)));
  ExpectYesThenNo([&] { return front.IsServerMode(true); });
  AnswersYesThenNo(EXPECT_CALL(behind, IsServerMode(false)));
  ExpectYesThenNo([&] { return front.IsServerMode(false); });

  AnswersYesThenNo(EXPECT_CALL(behind, SystemIsOpen()));
  ExpectYesThenNo([&] { return front.SystemIsOpen(); });

  AnswersYesThenNo(EXPECT_CALL(behind, SystemIsClosing()));
  ExpectYesThenNo([&] { return front.SystemIsClosing(); });

  OpenFile file;
  EXPECT_CALL(behind, GetActiveFileMgr()).WillOnce(Return(&file));
  EXPECT_EQ(front.GetActiveFileMgr(), &file);
}

class QuietMessage final : public AppMsg {
 public:
  void ProcessMsg() override {}
};

class QuietListener final : public CNotifyCloseSystem {
 public:
  void HandleNotification(const CNotifyDataCloseSystem&) override {}
};

TEST_F(ApplicationInFront, MessagesListenersAndCommandsAreHandedOver) {
  QuietMessage message;
  EXPECT_CALL(behind, Enqueue(&message));
  front.Enqueue(&message);

  QuietListener listener;
  EXPECT_CALL(behind, SubscribeCloseSystem(Ref(listener)));
  front.SubscribeCloseSystem(listener);
  EXPECT_CALL(behind, UnsubscribeCloseSystem(Ref(listener)));
  front.UnsubscribeCloseSystem(listener);

  const CCommandAndArgs command(kLaunchPluginForReminder);
  EXPECT_CALL(behind, ExecuteCommand(Ref(command)));
  front.ExecuteCommand(command);
}

constexpr ResourceInstance kInstance{6};
constexpr Util::SourceContext kSource{"Src/MultiEntityDriver", "Operation"};

TEST_F(MessagesInFront, StringsAreCopied) {
  EXPECT_CALL(behind, GetKRWinInstance()).WillOnce(Return(kInstance));
  EXPECT_EQ(front.GetKRWinInstance(), kInstance);

  char buffer[16];
  EXPECT_CALL(behind, GetIndStringC(buffer, sizeof buffer, kInstance, kReminderStrings, 2));
  front.GetIndStringC(buffer, sizeof buffer, kInstance, kReminderStrings, 2);
}

TEST_F(MessagesInFront, QuestionsAreAsked) {
  constexpr YNC_Tag kNo{2};
  EXPECT_CALL(behind, YesNoInfoMsgO(Ref(kSource), kInstance, 1, 2, 3, true, false)).WillOnce(Return(kAnswerYes));
  EXPECT_EQ(front.YesNoInfoMsgO(kSource, kInstance, 1, 2, 3, true, false), kAnswerYes);
  EXPECT_CALL(behind, YesNoInfoMsgO(Ref(kSource), kInstance, 1, 2, 3, false, true)).WillOnce(Return(kNo));
  EXPECT_EQ(front.YesNoInfoMsgO(kSource, kInstance, 1, 2, 3, false, true), kNo);
}

TEST_F(MessagesInFront, BoxesAreShown) {
  const std::array<MessageArgument, 2> arguments{kMessageTextsFollow, kMessageEndOfArguments};
  const auto areThose = [&](std::span<const MessageArgument> passed) {
    return passed.data() == arguments.data() && passed.size() == arguments.size();
  };
  EXPECT_CALL(behind, KRMSG_MessageO(1, kMessageIconQuestion, kMessageButtonsOk, 2, Truly(areThose)))
      .WillOnce(Return(5));
  EXPECT_EQ(front.KRMSG_MessageO(1, kMessageIconQuestion, kMessageButtonsOk, 2, arguments), 5);

  const char* const first = "first";
  const char* const second = "second";
  EXPECT_CALL(behind, KRWarnMsgWithTitle02(1, Ref(kSource), first, second, true));
  front.KRWarnMsgWithTitle02(1, kSource, first, second, true);
  EXPECT_CALL(behind, KRWarnMsgWithTitle02(1, Ref(kSource), first, second, false));
  front.KRWarnMsgWithTitle02(1, kSource, first, second, false);
}

TEST_F(MultiEntityDBManagerInFront, RelationsAreRead) {
  DBMultiEntityRelation row{};
  EXPECT_CALL(behind, GetRelation(Eq("realm"), Ref(row))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.GetRelation("realm", row); });

  EXPECT_CALL(behind, GetRelationById(3, Ref(row))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.GetRelationById(3, row); });

  std::vector<DBMultiEntityRelation> rows;
  EXPECT_CALL(behind, GetAllRelations(Ref(rows))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.GetAllRelations(rows); });
}

TEST_F(MultiEntityDBManagerInFront, RelationsAreWritten) {
  DBMultiEntityRelation row{};
  EXPECT_CALL(behind, SaveRelation(Ref(row))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.SaveRelation(row); });

  EXPECT_CALL(behind, UpdateRelationForRealm(Ref(row), Eq("realm"))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.UpdateRelationForRealm(row, "realm"); });

  EXPECT_CALL(behind, DeleteRelation(Eq("realm"))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.DeleteRelation("realm"); });
}

TEST_F(MultiEntityDBManagerInFront, WhatMatchesIsAsked) {
  AnswersYesThenNo(EXPECT_CALL(behind, HasAnyMatchingRecord(Eq("realm"), 1, 2)));
  ExpectYesThenNo([&] { return front.HasAnyMatchingRecord("realm", 1, 2); });

  AnswersYesThenNo(EXPECT_CALL(behind, HasAnyMatchingAccRecordExclRealm(Eq("realm"), 1, 2)));
  ExpectYesThenNo([&] { return front.HasAnyMatchingAccRecordExclRealm("realm", 1, 2); });

  AnswersYesThenNo(EXPECT_CALL(behind, HasAnyMatchingTransaction(3)));
  ExpectYesThenNo([&] { return front.HasAnyMatchingTransaction(3); });

  AnswersYesThenNo(EXPECT_CALL(behind, HasAnyMatchingTransaction(Eq("request"), 3)));
  ExpectYesThenNo([&] { return front.HasAnyMatchingTransaction("request", 3); });

  AnswersYesThenNo(EXPECT_CALL(behind, HasAnyMatchingRejectedTransaction(Eq("request"))));
  ExpectYesThenNo([&] { return front.HasAnyMatchingRejectedTransaction("request"); });
}

TEST_F(MultiEntityDBManagerInFront, TransactionsAreRead) {
  DBMultiEntityTransaction row{};
  EXPECT_CALL(behind, GetTransaction(41, 42, Ref(row))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.GetTransaction(41, 42, row); });

  EXPECT_CALL(behind, GetTransactionWithRequestId(3, Eq("request"), Ref(row))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.GetTransactionWithRequestId(3, "request", row); });

  std::vector<DBMultiEntityTransaction> rows;
  EXPECT_CALL(behind, GetTransactionWithTargets(41, Ref(rows))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.GetTransactionWithTargets(41, rows); });

  EXPECT_CALL(behind, GetAllTransactionWithTargets(Ref(rows))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.GetAllTransactionWithTargets(rows); });
}

TEST_F(MultiEntityDBManagerInFront, TransactionsAreWritten) {
  DBMultiEntityTransaction row{};
  EXPECT_CALL(behind, SaveTransaction(Ref(row))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.SaveTransaction(row); });

  EXPECT_CALL(behind, UpdateTransaction(Ref(row))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.UpdateTransaction(row); });

  EXPECT_CALL(behind, DeleteTransaction(41)).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.DeleteTransaction(41); });
}

TEST_F(MultiEntityDBManagerInFront, RejectedTransactionsAreReadAndWritten) {
  DBMultiEntityRejectedTxnReceiver row{};
  EXPECT_CALL(behind, SaveRejectedTransaction(Ref(row))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.SaveRejectedTransaction(row); });

  std::vector<DBMultiEntityRejectedTxnReceiver> rows;
  EXPECT_CALL(behind, GetAllRejectedTransaction(Ref(rows))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.GetAllRejectedTransaction(rows); });

  EXPECT_CALL(behind, DeleteRejectedTransaction(Eq("request"))).WillOnce(Return(kAnswer));
  ExpectAnswer([&] { return front.DeleteRejectedTransaction("request"); });
}

TEST_F(PlatformInFront, TheClockAndTheTimersAreAsked) {
  _SYSTEMTIME now{};
  EXPECT_CALL(behind, GetLocalTime(Ref(now)));
  front.GetLocalTime(now);

  const TimerProcedure procedure = [](HWND__*, std::uint32_t, TimerId, unsigned long) {
  };
  EXPECT_CALL(behind, SetTimer(3, 500, procedure)).WillOnce(Return(TimerId{4}));
  EXPECT_EQ(front.SetTimer(3, 500, procedure), 4U);

  EXPECT_CALL(behind, KillTimer(4));
  front.KillTimer(4);
}

TEST_F(PlatformInFront, LibrariesAreLoadedAskedAndFreed) {
  char image = 'x';
  const char* const file = "Bridge.DLL";
  EXPECT_CALL(behind, LoadLibraryA(file)).WillOnce(Return(&image));
  EXPECT_EQ(front.LoadLibraryA(file), &image);

  const LibraryEntry entry = [] {
  };
  const char* const name = "Entry";
  EXPECT_CALL(behind, GetProcAddress(&image, name)).WillOnce(Return(entry));
  EXPECT_EQ(front.GetProcAddress(&image, name), entry);

  EXPECT_CALL(behind, FreeLibrary(&image));
  front.FreeLibrary(&image);
}

TEST_F(PlatformInFront, BlocksAreAllocatedAndFreed) {
  char block = 'x';
  EXPECT_CALL(behind, LocalAlloc(kLocalAllocZeroInitialised, 24)).WillOnce(Return(&block));
  EXPECT_EQ(front.LocalAlloc(kLocalAllocZeroInitialised, 24), &block);

  EXPECT_CALL(behind, LocalFree(&block));
  front.LocalFree(&block);
}

// A host of services each of which is asked nothing but what a test expects.
class HostInFront : public testing::Test {
 protected:
  testing::StrictMock<MockOps> ops;
  testing::StrictMock<MockRuntime> runtime;
  testing::StrictMock<MockKillSwitchHelper> killSwitches;
  testing::StrictMock<MockDCE> remoteValues;
  testing::StrictMock<MockDBPreferences> databasePreferences;
  testing::StrictMock<MockPrefsTag> preferences;
  testing::StrictMock<MockMultiEntityDBManager> multiEntity;
  testing::StrictMock<MockPermissions> permissions;
  testing::StrictMock<MockChartOfAccounts> accounts;
  testing::StrictMock<MockNameList> names;
  testing::StrictMock<MockJournal> journal;
  testing::StrictMock<MockTargetLines> lines;
  testing::StrictMock<MockQueryEngine> queries;
  testing::StrictMock<MockMoney> money;
  testing::StrictMock<MockApplication> application;
  testing::StrictMock<MockMessages> messages;
  testing::StrictMock<MockPlatform> platform;

  HostServices behind{.ops = ops,
                      .runtime = runtime,
                      .killSwitches = killSwitches,
                      .remoteValues = remoteValues,
                      .databasePreferences = databasePreferences,
                      .preferences = preferences,
                      .multiEntity = multiEntity,
                      .permissions = permissions,
                      .accounts = accounts,
                      .names = names,
                      .journal = journal,
                      .lines = lines,
                      .queries = queries,
                      .money = money,
                      .application = application,
                      .messages = messages,
                      .platform = &platform};
};

TEST_F(HostInFront, EachServiceReachesItsOwn) {
  AsItIs<Forwarding::Host> front(behind);
  const HostServices services = front.Services();
  testing::InSequence inSequence;
  EXPECT_CALL(ops, Write);
  EXPECT_CALL(runtime, InvalidParameter);
  EXPECT_CALL(killSwitches, IsFeatureEnabled);
  EXPECT_CALL(remoteValues, GetValue2);
  EXPECT_CALL(databasePreferences, SetCompanyDBPreference).WillOnce(Return(kAnswer));
  EXPECT_CALL(preferences, PrefGetPrefHandle);
  EXPECT_CALL(multiEntity, DeleteTransaction).WillOnce(Return(kAnswer));
  EXPECT_CALL(permissions, CurrentUserIsAdminUser);
  EXPECT_CALL(accounts, GetAllAccounts);
  EXPECT_CALL(names, ReleaseName);
  EXPECT_CALL(journal, DeleteGeneralJournalEntry);
  EXPECT_CALL(lines, TargExists);
  EXPECT_CALL(queries, OpenQuery);
  EXPECT_CALL(money, String2Dollar);
  EXPECT_CALL(application, SystemIsOpen);
  EXPECT_CALL(messages, GetKRWinInstance);

  Util::TString value;
  BalType amount;
  services.ops.Write({});
  services.runtime.InvalidParameter();
  services.killSwitches.IsFeatureEnabled(kFeatureSwitches, kSwitchForAll);
  services.remoteValues.GetValue2(kRemoteValues, kCheckForRealmReset, value);
  services.databasePreferences.SetCompanyDBPreference(kRealmIdPreference, "realm");
  services.preferences.PrefGetPrefHandle();
  services.multiEntity.DeleteTransaction(41);
  services.permissions.CurrentUserIsAdminUser();
  services.accounts.GetAllAccounts();
  services.names.ReleaseName(NameHandle{3});
  services.journal.DeleteGeneralJournalEntry(41);
  services.lines.TargExists(41, kViewAny);
  services.queries.OpenQuery();
  services.money.String2Dollar(amount, "12.50");
  services.application.SystemIsOpen();
  services.messages.GetKRWinInstance();
  EXPECT_EQ(services.platform, &platform);
}

TEST_F(HostInFront, AHostWithoutAPlatformStaysWithoutOne) {
  behind.platform = nullptr;
  AsItIs<Forwarding::Host> front(behind);
  EXPECT_EQ(front.Services().platform, nullptr);
}

// Keeps the entry of the last audit.
class AuditedHost final : public Forwarding::Host {
 public:
  using Host::Host;

  EdListStatus DeleteGeneralJournalEntry(std::uint32_t txnId) override {
    return txnId == kAudited ? kEdListFailure : Host::DeleteGeneralJournalEntry(txnId);
  }

  static constexpr std::uint32_t kAudited = 40;
};

TEST_F(HostInFront, OnlyTheOverriddenOperationDiffers) {
  AuditedHost front(behind);
  const HostServices services = front.Services();
  EXPECT_CALL(journal, DeleteGeneralJournalEntry(41)).WillOnce(Return(kEdListSuccess));
  EXPECT_CALL(journal, UpdateMETransaction(40, kTxnTypeBill)).WillOnce(Return(kEdListSuccess));

  EXPECT_EQ(services.journal.DeleteGeneralJournalEntry(AuditedHost::kAudited), kEdListFailure);
  EXPECT_EQ(services.journal.DeleteGeneralJournalEntry(41), kEdListSuccess);
  EXPECT_EQ(services.journal.UpdateMETransaction(40, kTxnTypeBill), kEdListSuccess);
}

}  // namespace

}  // namespace forwarding
