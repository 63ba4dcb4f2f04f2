#include <array>
#include <cstdarg>
#include <new>
#include <string>
#include <vector>

#include "Frame/NullHost.h"
#include "module/Arrangements.h"

namespace {

using testing::IsEmpty;

char* Format(Util::Runtime& runtime, const char* pattern, ...) {
  std::va_list arguments;
  va_start(arguments, pattern);
  char* formatted = runtime.FormatStringV(pattern, arguments);
  va_end(arguments);
  return formatted;
}

// What stands in for a host while none is attached. The library asks it little; whatever it came to ask, it would be
// answered as by a company without books, users and screens.
class NullHostAnswers : public testing::Test {
 protected:
  const HostServices& services = NullHostServices();
};

TEST_F(NullHostAnswers, NoLineIsWantedByTheLogAndOneThatComesIsDropped) {
  EXPECT_FALSE(services.ops.Wants(Util::Ops::Level::kTrace));
  EXPECT_FALSE(services.ops.Wants(Util::Ops::Level::kError));

  services.ops.Write({});
}

TEST_F(NullHostAnswers, NoTextIsFormatted) {
  char block = 'x';

  EXPECT_EQ(Format(services.runtime, "%d", 1), nullptr);

  services.runtime.GetMemoryManager().Release(&block);
  EXPECT_EQ(block, 'x');
}

TEST_F(NullHostAnswers, EverySwitchIsOffAndNoRemoteValueSet) {
  Util::TString value = "as before";

  EXPECT_FALSE(services.killSwitches.IsFeatureEnabled(kFeatureSection, "ME_FOR_ALL"));
  EXPECT_FALSE(services.remoteValues.GetValue2("MultiEntity", "HoursToLaunchDay", value));
  EXPECT_EQ(value, "as before");
}

// A preference that is missing would be written; one that cannot be read is let be.
TEST_F(NullHostAnswers, NoPreferenceOfTheDatabaseIsReadOrWrittenAndNoneIsCalledMissing) {
  Util::TString value = "as before";

  const Util::Status read = services.databasePreferences.GetCompanyDBPreference("MERealmId", value);
  const Util::Status written = services.databasePreferences.SetCompanyDBPreference("MERealmId", "9130");

  EXPECT_TRUE(read.Failed());
  EXPECT_NE(read.GetStatusCode(), Util::Status::kPreferenceMissing);
  EXPECT_TRUE(written.Failed());
  EXPECT_EQ(value, "as before");
}

TEST_F(NullHostAnswers, TheCompanyHasNoPreferences) {
  EXPECT_FALSE(services.preferences.PrefGetPrefHandle());
  EXPECT_FALSE(services.preferences.GetCurrentFileIsSample());
  EXPECT_EQ(services.preferences.GetIsAccntntCopy(), 0);
  EXPECT_FALSE(services.preferences.GetUseMultiCurrency());
}

TEST_F(NullHostAnswers, TheCompanyHasNoHomeCurrency) {
  CCurrency currency(services.preferences, kFeatureTypeStandard);

  services.preferences.GetHomeCurrency(currency);

  EXPECT_FALSE(currency.IsValid());
  EXPECT_EQ(currency.GetCode(), "");
}

TEST_F(NullHostAnswers, NoRelationIsReadOrWritten) {
  DBMultiEntityRelation row{};
  std::vector<DBMultiEntityRelation> rows;
  MultiEntityDBManager& store = services.multiEntity;

  EXPECT_TRUE(store.GetRelation("9130", row).Failed());
  EXPECT_TRUE(store.GetRelationById(1, row).Failed());
  EXPECT_TRUE(store.GetAllRelations(rows).Failed());
  EXPECT_TRUE(store.SaveRelation(row).Failed());
  EXPECT_TRUE(store.UpdateRelationForRealm(row, "9130").Failed());
  EXPECT_TRUE(store.DeleteRelation("9130").Failed());
  EXPECT_THAT(rows, IsEmpty());
  EXPECT_EQ(row.relationId, 0);
}

TEST_F(NullHostAnswers, NoRelationMatchesAnything) {
  MultiEntityDBManager& store = services.multiEntity;

  EXPECT_FALSE(store.HasAnyMatchingRecord("9130", 11, 12));
  EXPECT_FALSE(store.HasAnyMatchingAccRecordExclRealm("9130", 11, 12));
  EXPECT_FALSE(store.HasAnyMatchingTransaction(1));
}

TEST_F(NullHostAnswers, NoTransactionRowIsReadOrWritten) {
  DBMultiEntityTransaction row{};
  std::vector<DBMultiEntityTransaction> rows;
  MultiEntityDBManager& store = services.multiEntity;

  EXPECT_TRUE(store.SaveTransaction(row).Failed());
  EXPECT_TRUE(store.GetTransaction(71, 501, row).Failed());
  EXPECT_TRUE(store.GetTransactionWithRequestId(1, "request-1", row).Failed());
  EXPECT_TRUE(store.UpdateTransaction(row).Failed());
  EXPECT_TRUE(store.DeleteTransaction(71).Failed());
  EXPECT_TRUE(store.GetTransactionWithTargets(71, rows).Failed());
  EXPECT_TRUE(store.GetAllTransactionWithTargets(rows).Failed());
  EXPECT_FALSE(store.HasAnyMatchingTransaction("request-1", 1));
  EXPECT_THAT(rows, IsEmpty());
}

TEST_F(NullHostAnswers, NoRejectedTransactionIsReadOrWritten) {
  DBMultiEntityRejectedTxnReceiver row{};
  std::vector<DBMultiEntityRejectedTxnReceiver> rows;
  MultiEntityDBManager& store = services.multiEntity;

  EXPECT_TRUE(store.SaveRejectedTransaction(row).Failed());
  EXPECT_TRUE(store.GetAllRejectedTransaction(rows).Failed());
  EXPECT_TRUE(store.DeleteRejectedTransaction("request-1").Failed());
  EXPECT_FALSE(store.HasAnyMatchingRejectedTransaction("request-1"));
  EXPECT_THAT(rows, IsEmpty());
}

TEST_F(NullHostAnswers, NobodyMayDoAnything) {
  CAccnt element(services.accounts, kFeatureTypeStandard);

  EXPECT_FALSE(services.permissions.CurrentUserIsAdminUser());
  EXPECT_FALSE(services.permissions.FeaturePermissionAvailable(kFeatureBills, kActionView, 0));
  EXPECT_FALSE(services.permissions.ListPermissionAvailable(kListAccounts, 0, kActionView, element, 0, 0));
}

TEST_F(NullHostAnswers, TheChartHasNoAccountAndTakesNone) {
  CAccnt account(services.accounts, kFeatureTypeStandard);
  std::string name = "Rent";
  std::int32_t recnum = 7;

  services.accounts.EdListRefreshList(services.accounts.GetAccntListPtr(), 1);

  EXPECT_NE(services.accounts.GetAccountForRecnum(11, account), kEdListSuccess);
  EXPECT_NE(services.accounts.CreateNewChartOfAccount(name.data(), KrEnumerations::kExpense, recnum, false),
            kEdListSuccess);
  EXPECT_EQ(recnum, 7);
  EXPECT_THAT(services.accounts.GetAllAccounts(), IsEmpty());
  EXPECT_THAT(services.accounts.GetListOfAccounts(KrEnumerations::kBank), IsEmpty());
}

TEST_F(NullHostAnswers, AnAccountIsBlank) {
  const CAccnt account(services.accounts, 11, kFeatureTypeStandard);

  EXPECT_FALSE(account.GetDeleted());
  EXPECT_EQ(account.GetType(), KrEnumerations::AccntTypeType{});
  EXPECT_FALSE(account.GetIsSubAccnt());
  EXPECT_FALSE(account.IsSpecial(KrEnumerations::kSpecialNotForMultiEntity));
}

TEST_F(NullHostAnswers, NoNameIsKnownOrCreated) {
  Util::TString text = "Landlord";
  std::int32_t nameId = 7;
  NameList& names = services.names;

  EXPECT_NE(names.CreateCName(text, kNameTypeVendor, nameId), kEdListSuccess);
  EXPECT_EQ(nameId, 7);
  EXPECT_FALSE(names.IsValidName(NameHandle{1}));
  EXPECT_EQ(names.GetName(NameHandle{1}, nullptr, 0), "");
  EXPECT_EQ(names.GetParent(NameHandle{1}), NameHandle::kNone);
  names.ReleaseName(NameHandle{1});
}

TEST_F(NullHostAnswers, NoJournalEntryIsBookedDeletedOrUpdated) {
  CAccnt first(services.accounts, kFeatureTypeStandard);
  CAccnt second(services.accounts, kFeatureTypeStandard);
  JournalEntryIds ids{};

  EXPECT_NE(services.journal.CreateGeneralJournalEntry(first, second, "1.00", ids, 31, "Landlord"), kEdListSuccess);
  EXPECT_NE(services.journal.DeleteGeneralJournalEntry(71), kEdListSuccess);
  EXPECT_NE(services.journal.UpdateMETransaction(71, kTxnTypeJournalEntry), kEdListSuccess);
  EXPECT_EQ(ids, JournalEntryIds{});
}

TEST_F(NullHostAnswers, ALineIsEmpty) {
  const TargType line(services.lines, 501, kFeatureTypeStandard, kReadFailSafeDefault, kTxnTypeBill);

  EXPECT_FALSE(services.lines.TargExists(501, kViewAny));
  EXPECT_EQ(line.GetDate(), NullDate());
  EXPECT_EQ(line.GetAmount().minorUnits, 0);
  EXPECT_STREQ(line.GetAccountName(0, 0), "");
  EXPECT_EQ(line.GetStrMemo(), "");
  EXPECT_FALSE(line.GetTransactionName().IsValid());
}

TEST_F(NullHostAnswers, AQueryFailsAndFindsNothing) {
  DQEWrapper query(services.queries);

  EXPECT_TRUE(query.SetSelect(12).Failed());
  EXPECT_EQ(query.SetStatement(7U, DQE::kNotBefore, NullDate()), 0);
  EXPECT_EQ(query.SetStatement(1L, DQE::kAnd, 2L), 0);
  EXPECT_TRUE(query.DoQuery().Failed());
  EXPECT_FALSE(query.ResultExists());
  EXPECT_EQ(query.First(), nullptr);
  EXPECT_EQ(query.Next(), nullptr);
  EXPECT_EQ(query.GetTransPtrType(nullptr, 0), 0U);
}

TEST_F(NullHostAnswers, NoAmountIsReadAndEveryAmountIsWrittenAsAnEmptyText) {
  BalType amount{.minorUnits = 5};
  std::array<char, 4> text{'x', 'x', 'x', 'x'};

  services.money.String2Dollar(amount, "1.00");
  services.money.Money2Str_s(text.data(), text.size(), amount, kMoneyFormatDisplay);

  EXPECT_EQ(amount.minorUnits, 5);
  EXPECT_STREQ(text.data(), "");
}

TEST_F(NullHostAnswers, NoCompanyIsOpenNoMessageIsQueuedAndNoCommandRun) {
  Application& application = services.application;

  EXPECT_FALSE(application.IsServerMode(false));
  EXPECT_FALSE(application.SystemIsOpen());
  EXPECT_FALSE(application.SystemIsClosing());
  EXPECT_EQ(application.GetActiveFileMgr(), nullptr);
  application.Enqueue(nullptr);
  application.ExecuteCommand(CCommandAndArgs("krw:LaunchMEPlugin"));
}

TEST_F(NullHostAnswers, NothingIsShownAndNoQuestionIsAnsweredWithWhatWouldAct) {
  std::array<char, 4> text{'x', 'x', 'x', 'x'};
  Messages& messages = services.messages;
  const ResourceInstance instance = messages.GetKRWinInstance();

  messages.GetIndStringC(text.data(), text.size(), instance, 14717, 1);
  messages.KRWarnMsgWithTitle02(0, {"source", "operation"}, "title", "text", true);

  EXPECT_STREQ(text.data(), "");
  EXPECT_NE(messages.YesNoInfoMsgO({"source", "operation"}, instance, 14717, 1, 2, true, true), kAnswerYes);
  EXPECT_NE(messages.KRMSG_MessageO(0, 4, 0, 14717, {}), 0);
}

TEST_F(NullHostAnswers, NoTimerIsArmed) {
  EXPECT_EQ(services.platform->SetTimer(0, 1000, nullptr), 0U);
  services.platform->KillTimer(1);
}

TEST_F(NullHostAnswers, TheClockStands) {
  SYSTEMTIME now{};

  services.platform->GetLocalTime(now);

  EXPECT_EQ(now.wYear, 0);
  EXPECT_EQ(now.wHour, 0);
}

TEST_F(NullHostAnswers, NoLibraryIsLoaded) {
  EXPECT_EQ(services.platform->LoadLibraryA("AddinBridge.DLL"), nullptr);
  EXPECT_EQ(services.platform->GetProcAddress(nullptr, "NeedDataSyncUp"), nullptr);
  services.platform->FreeLibrary(nullptr);
}

TEST_F(NullHostAnswers, NoBlockIsHandedOut) {
  EXPECT_THROW(services.platform->LocalAlloc(kLocalAllocZeroInitialised, 1), std::bad_alloc);
  services.platform->LocalFree(nullptr);
}

}  // namespace
