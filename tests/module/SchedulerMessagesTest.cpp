#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityScheduler.h"
#include "module/Arrangements.h"

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

static_assert(std::is_base_of_v<SequencedAppMsg, MultiEntityScheduler>);
static_assert(std::is_base_of_v<AppMsg, SequencedAppMsg>);
static_assert(sizeof(MultiEntityScheduler) == sizeof(SequencedAppMsg));
static_assert(std::has_virtual_destructor_v<MultiEntityScheduler>);

constexpr const char* kScheduler = "MultiEntityScheduler::ProcessMsg";
constexpr const char* kPrompt = "MESchedulerUIPrompt::ProcessMsg";

class SchedulerMessage : public AttachedTest {
 protected:
  std::size_t Queued() const { return host.application.queue.size(); }
};

TEST_F(SchedulerMessage, MadeOnTheHeapIsQueuedOnceAndBelongsToTheQueue) {
  auto* message = new MultiEntityScheduler;

  ASSERT_THAT(host.application.queue, SizeIs(1));
  EXPECT_EQ(host.application.queue.front().get(), message);
  EXPECT_THAT(host.Calls(), InOrder("Enqueue()"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(SchedulerMessage, IsDeletedByTheQueueWithoutHavingBeenProcessed) {
  new MultiEntityScheduler;
  host.Forget();

  host.application.queue.clear();

  EXPECT_THAT(host.Events(), IsEmpty());
}

TEST_F(SchedulerMessage, KeepsItsTurnAmongOthers) {
  auto* first = new MultiEntityScheduler;
  auto* second = new MultiEntityScheduler;

  ASSERT_THAT(host.application.queue, SizeIs(2));
  EXPECT_EQ(host.application.queue[0].get(), first);
  EXPECT_EQ(host.application.queue[1].get(), second);
}

TEST_F(SchedulerMessage, OnTheStackStaysItsMakers) {
  const MultiEntityScheduler message;

  EXPECT_EQ(Queued(), 0U);
}

TEST_F(SchedulerMessage, OnTheStackStaysItsMakersAlsoAfterOneOnTheHeap) {
  new MultiEntityScheduler;
  const MultiEntityScheduler message;

  EXPECT_EQ(Queued(), 1U);
}

TEST_F(SchedulerMessage, InsideAnotherObjectOnTheHeapStaysItsMakers) {
  const auto pair = std::make_unique<std::pair<MultiEntityScheduler, int>>();

  EXPECT_EQ(Queued(), 0U);
}

TEST_F(SchedulerMessage, InAListStaysItsMakers) {
  const std::vector<MultiEntityScheduler> messages(2);

  EXPECT_EQ(Queued(), 0U);
}

TEST_F(SchedulerMessage, ThatIsACopyStaysItsMakers) {
  const MultiEntityScheduler original;
  const MultiEntityScheduler copy(original);
  const std::unique_ptr<MultiEntityScheduler> copyOnTheHeap(new MultiEntityScheduler(original));

  EXPECT_EQ(Queued(), 0U);
}

TEST_F(SchedulerMessage, ThatWasMovedStaysItsMakers) {
  MultiEntityScheduler original;
  MultiEntityScheduler moved(std::move(original));
  const std::unique_ptr<MultiEntityScheduler> movedOnTheHeap(new MultiEntityScheduler(std::move(moved)));

  EXPECT_EQ(Queued(), 0U);
}

TEST_F(SchedulerMessage, OnTheStackStaysItsMakersAlsoAfterACopyOnTheHeap) {
  const MultiEntityScheduler original;
  const std::unique_ptr<MultiEntityScheduler> copy(new MultiEntityScheduler(original));
  const MultiEntityScheduler message;

  EXPECT_EQ(Queued(), 0U);
}

TEST_F(SchedulerMessage, MadeAnewInTheBlockOfACopyStaysItsMakers) {
  const MultiEntityScheduler original;
  const std::unique_ptr<MultiEntityScheduler> message(new MultiEntityScheduler(original));

  std::destroy_at(message.get());
  std::construct_at(message.get());

  EXPECT_EQ(Queued(), 0U);
}

TEST_F(SchedulerMessage, MadeAnewInTheBlockOfAMovedOneStaysItsMakers) {
  MultiEntityScheduler original;
  const std::unique_ptr<MultiEntityScheduler> message(new MultiEntityScheduler(std::move(original)));

  std::destroy_at(message.get());
  std::construct_at(message.get());

  EXPECT_EQ(Queued(), 0U);
}

TEST_F(SchedulerMessage, ThatIsAssignedStaysItsMakers) {
  MultiEntityScheduler message;
  const MultiEntityScheduler other;
  message = other;
  message = MultiEntityScheduler();

  EXPECT_EQ(Queued(), 0U);
}

TEST_F(SchedulerMessage, ThatIsQueuedMayBeTheOriginalOfACopy) {
  auto* queued = new MultiEntityScheduler;
  const MultiEntityScheduler copy(*queued);

  EXPECT_EQ(Queued(), 1U);
}

const MultiEntityScheduler& NoOriginal() {
  throw std::runtime_error("there is no message to copy");
}

// The allocator may give the block of the message that was not made to the pair.
TEST_F(SchedulerMessage, InsideAnotherObjectStaysItsMakersAlsoAfterOneOnTheHeapCouldNotBeMade) {
  EXPECT_THROW(new MultiEntityScheduler(NoOriginal()), std::runtime_error);
  const auto pair = std::make_unique<std::pair<MultiEntityScheduler, int>>();

  EXPECT_EQ(Queued(), 0U);
}

class SuccessorOf : public MultiEntityScheduler {
 public:
  explicit SuccessorOf(const std::unique_ptr<MultiEntityScheduler>& /*former*/) {}
};

TEST_F(SchedulerMessage, IsQueuedAlthoughItsMakingDeletesAnother) {
  const MultiEntityScheduler original;
  auto former = std::make_unique<MultiEntityScheduler>(original);

  new SuccessorOf(former = nullptr);

  EXPECT_EQ(Queued(), 1U);
}

// A company that needs the reminder: one relation, and a user who may be reminded. 3 March 2024 at noon.
class SchedulerProcessing : public AttachedTest {
 protected:
  SchedulerProcessing() {
    host.permissions.Grant(kFeatureJournalEntries, kActionCreate);
    host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130"})};
  }

  void Process() {
    new MultiEntityScheduler;
    host.Forget();
    host.application.DeliverMessages();
  }

  static testing::Matcher<LogLine> NotNeeded() {
    return Trace("MULTIENTITY::MultiEntityScheduler: ProcessMsg :: Skipping scheduler as not needed");
  }

  void ExpectNotNeeded() const {
    EXPECT_THAT(host.LinesOf(kScheduler), InOrder(NotNeeded()));
    EXPECT_THAT(host.CallsOf({"GetAllRelations", "SetTimer"}), IsEmpty());
  }

  void ExpectNoTimerAndNoLine() const {
    EXPECT_THAT(host.LinesOf(kScheduler), IsEmpty());
    EXPECT_THAT(host.CallsOf({"SetTimer"}), IsEmpty());
  }
};

TEST_F(SchedulerProcessing, ArmsTheTimerOnceEverythingIsChecked) {
  Process();

  EXPECT_THAT(
      host.Calls(),
      InOrder("IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)", "IsFeatureEnabled(MultiEntityFeature, ME_FOR_BILLS)",
              "IsFeatureEnabled(MultiEntityFeature, ME_FOR_CHECKS)", "IsServerMode(false)", "SystemIsOpen()",
              "SystemIsClosing()", "GetActiveFileMgr()", "GetFileState()", "GetCurrentFileIsSample()",
              "GetIsAccntntCopy()", "GetUseMultiCurrency()", "LoadLibraryA(AddinBridge.DLL)",
              "CurrentUserIsAdminUser()", "FeaturePermissionAvailable(19, 1, 0)", "GetAllRelations()",
              "GetValue2(MultiEntity, InitialDelayInSeconds)", "GetValue2(MultiEntity, HoursToLaunchDay)",
              "GetActiveFileMgr()", "GetFileState()", "GetCompanyDBPreference(MEPromptLaunchDate)", "GetLocalTime()",
              "GetLocalTime()", "SetTimer(0, 900000)"));
}

TEST_F(SchedulerProcessing, SaysThatItArmsTheTimerBeforeItDoes) {
  Process();

  EXPECT_THAT(host.LinesOf(kScheduler), InOrder(Trace("MULTIENTITY::MultiEntityScheduler: ProcessMsg ::scheduler "
                                                      "trigger checks passed. Initiating timer")));
  ASSERT_THAT(host.Lines(), SizeIs(testing::Gt(9U)));
  EXPECT_THAT(std::vector<LogLine>(host.Lines().begin(), host.Lines().begin() + 9),
              InOrder(FeatureAsked(), RightAsked(), RightAnswered(), Entering("MultiEntityDriver::GetRelationsList"),
                      FeatureAsked(), RightAsked(), RightAnswered(),
                      Trace("MULTIENTITY::MultiEntityScheduler: ProcessMsg ::scheduler trigger checks passed. "
                            "Initiating timer"),
                      Gate("MULTIENTITY::StartTimer: Entering function")));
}

TEST_F(SchedulerProcessing, HappensOnceForEachMessage) {
  Process();
  host.Forget();

  host.application.DeliverMessages();

  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST_F(SchedulerProcessing, OfTwoMessagesLeavesOneTimer) {
  new MultiEntityScheduler;
  Process();

  EXPECT_THAT(host.platform.timers, SizeIs(1));
}

TEST_F(SchedulerProcessing, StopsWhileTheFeatureIsOffAndAsksNothingElse) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  Process();

  EXPECT_THAT(host.Lines(), InOrder(FeatureAsked(), GlobalFeatureOff(), FeatureRefused(),
                                    Trace("MULTIENTITY::MultiEntityScheduler: Feature not enabled")));
  EXPECT_THAT(host.CallsOf({"IsFeatureEnabled"}), host.Calls());
}

TEST_F(SchedulerProcessing, StopsWhileTheSystemIsClosing) {
  host.application.closing = true;

  Process();

  EXPECT_THAT(host.Lines(),
              InOrder(FeatureAsked(), Trace("MULTIENTITY::System is closing or no active file manager and so skip DB "
                                            "operation")));
  EXPECT_THAT(host.CallsOf({"GetCurrentFileIsSample", "SetTimer"}), IsEmpty());
}

TEST_F(SchedulerProcessing, IsNotNeededForASampleFile) {
  host.preferences.sampleFile = true;

  Process();

  ExpectNotNeeded();
  EXPECT_THAT(host.CallsOf({"GetIsAccntntCopy", "GetUseMultiCurrency", "CurrentUserIsAdminUser"}), IsEmpty());
}

TEST_F(SchedulerProcessing, IsNotNeededForAnAccountantsCopy) {
  host.preferences.accountantsCopy = 2;

  Process();

  ExpectNotNeeded();
  EXPECT_THAT(host.CallsOf({"GetUseMultiCurrency", "CurrentUserIsAdminUser"}), IsEmpty());
}

TEST_F(SchedulerProcessing, IsNotNeededWithMultipleCurrencies) {
  host.preferences.multiCurrency = true;

  Process();

  ExpectNotNeeded();
  EXPECT_THAT(host.CallsOf({"CurrentUserIsAdminUser"}), IsEmpty());
}

TEST_F(SchedulerProcessing, IsNotNeededByAUserWhoMayNotBeReminded) {
  host.permissions.features.clear();

  Process();

  ExpectNotNeeded();
  EXPECT_THAT(host.Lines(), InOrder(FeatureAsked(), RightAsked(), RightAnswered(), NotNeeded()));
}

TEST_F(SchedulerProcessing, EndsSilentlyWithoutARelation) {
  host.store.relations.clear();

  Process();

  ExpectNoTimerAndNoLine();
}

TEST_F(SchedulerProcessing, EndsSilentlyWhenTheRelationsCannotBeRead) {
  host.FailAt("GetAllRelations");

  Process();

  ExpectNoTimerAndNoLine();
}

class StateOfTheOnlyRelation : public SchedulerProcessing, public testing::WithParamInterface<std::int16_t> {};

TEST_P(StateOfTheOnlyRelation, DoesNotMatterToTheReminder) {
  host.store.relations = {RelationRow({.relationId = 5, .realmId = "9130", .state = GetParam()})};

  Process();

  EXPECT_THAT(host.platform.timers, SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(Every, StateOfTheOnlyRelation,
                         testing::Values(std::int16_t{0}, std::int16_t{1}, std::int16_t{2}, std::int16_t{3},
                                         std::int16_t{4}, std::int16_t{5}));

class SchedulerProcessingStep : public SchedulerProcessing, public testing::WithParamInterface<const char*> {};

TEST_P(SchedulerProcessingStep, LetsAnExceptionOfTheHostPass) {
  host.ThrowAt(GetParam(), std::runtime_error("the file is damaged"));

  EXPECT_THROW(Process(), std::runtime_error);

  ExpectNoTimerAndNoLine();
}

INSTANTIATE_TEST_SUITE_P(Every, SchedulerProcessingStep,
                         testing::Values("IsServerMode", "SystemIsOpen", "SystemIsClosing", "GetActiveFileMgr",
                                         "GetFileState", "GetCurrentFileIsSample", "GetIsAccntntCopy",
                                         "GetUseMultiCurrency", "GetAllRelations"),
                         [](const auto& tested) { return std::string(tested.param); });

template <std::int32_t kAnswer>
std::int32_t Answers() {
  return kAnswer;
}

constexpr const char* kReminderSecondForm =
    "YesNoInfoMsgO(Src/MultiEntityScheduler, MESchedulerUIPrompt::ProcessMsg, 42, 14715, 1, 2, true, true)";
constexpr const char* kReminderFirstForm =
    "YesNoInfoMsgO(Src/MultiEntityScheduler, MESchedulerUIPrompt::ProcessMsg, 42, 14715, 1, 3, true, true)";
constexpr const char* kCommand = "ExecuteCommand(krw:LaunchMEPlugin?context=ICT_SCHEDULER)";
constexpr const char* kDateStored = "SetCompanyDBPreference(MEPromptLaunchDate, 20240304)";
constexpr const char* kTimerArmed = "SetTimer(0, 79200000)";

// 3 March 2024 at noon: the next launch is at ten o'clock on the following day.
class Reminder : public AttachedTest {
 protected:
  template <class Entry>
  void ProvideBridge(Entry* entry) {
    host.platform.Provide("AddinBridge.DLL", "NeedDataSyncUp", entry);
  }

  void Elapse() {
    MESchedulerUtil::OnTimerElapsed(nullptr, 0, 0, 0);
    host.Forget();
    host.ops.lines.clear();
    host.application.DeliverMessages();
  }

  // What is kept and what the user sees, in order.
  std::vector<std::string> Steps() const {
    return host.CallsOf({"SetCompanyDBPreference", "SetTimer", "YesNoInfoMsgO", "GetIndStringC", "KRWarnMsgWithTitle02",
                         "KRMSG_MessageO", "ExecuteCommand"});
  }
};

TEST_F(Reminder, IsShownOnceTheDateIsStoredAndTheTimerArmed) {
  ProvideBridge(Answers<3>);
  host.messages.answer = kAnswerYes;

  Elapse();

  EXPECT_THAT(
      host.Calls(),
      InOrder("IsServerMode(false)", "SystemIsOpen()", "SystemIsClosing()", "GetActiveFileMgr()", "GetFileState()",
              "LoadLibraryA(AddinBridge.DLL)", "GetProcAddress(AddinBridge.DLL, NeedDataSyncUp)",
              "FreeLibrary(AddinBridge.DLL)", "GetLocalTime()", "GetLocalTime()",
              "GetValue2(MultiEntity, HoursToLaunchDay)", "GetActiveFileMgr()", "GetFileState()", kDateStored,
              "GetValue2(MultiEntity, InitialDelayInSeconds)", "GetValue2(MultiEntity, HoursToLaunchDay)",
              "GetActiveFileMgr()", "GetFileState()", "GetCompanyDBPreference(MEPromptLaunchDate)", "GetLocalTime()",
              kTimerArmed, "GetKRWinInstance()", kReminderSecondForm, kCommand));
  EXPECT_THAT(host.LinesOf(kPrompt), IsEmpty());
}

TEST_F(Reminder, OfTheSecondFormRunsNoCommandOnNo) {
  ProvideBridge(Answers<3>);

  Elapse();

  EXPECT_THAT(Steps(), InOrder(kDateStored, kTimerArmed, kReminderSecondForm));
}

TEST_F(Reminder, OfTheFirstFormOpensThePluginOnYes) {
  ProvideBridge(Answers<1>);
  host.messages.answer = kAnswerYes;

  Elapse();

  EXPECT_THAT(Steps(), InOrder(kDateStored, kTimerArmed, kReminderFirstForm, kCommand));
}

TEST_F(Reminder, OfTheFirstFormRunsNoCommandOnNo) {
  ProvideBridge(Answers<1>);

  Elapse();

  EXPECT_THAT(Steps(), InOrder(kDateStored, kTimerArmed, kReminderFirstForm));
}

TEST_F(Reminder, MayBeAWarningWithoutACommand) {
  ProvideBridge(Answers<2>);
  host.messages.strings = {{{14715, 1}, "Intercompany"}, {{14715, 4}, "Set up your relations first."}};
  host.messages.answer = kAnswerYes;

  Elapse();

  EXPECT_THAT(Steps(), InOrder(kDateStored, kTimerArmed, "GetIndStringC(1024, 42, 14715, 1)",
                               "GetIndStringC(1024, 42, 14715, 4)",
                               "KRWarnMsgWithTitle02(0, Src/MultiEntityScheduler, MESchedulerUIPrompt::ProcessMsg, "
                               "Intercompany, Set up your relations first., true)"));
}

TEST_F(Reminder, CutsAWarningToItsBuffers) {
  ProvideBridge(Answers<2>);
  host.messages.strings = {{{14715, 1}, std::string(2000, 'a')}, {{14715, 4}, std::string(1023, 'b')}};

  Elapse();

  EXPECT_THAT(host.Calls(),
              Contains("KRWarnMsgWithTitle02(0, Src/MultiEntityScheduler, MESchedulerUIPrompt::ProcessMsg, " +
                       std::string(1023, 'a') + ", " + std::string(1023, 'b') + ", true)"));
}

TEST_F(Reminder, IsNotShownWithoutTheBridgesEntryButItsDateIsStored) {
  host.platform.Provide("AddinBridge.DLL", "IsSybaseAccountant", Answers<1>);

  Elapse();

  EXPECT_THAT(Steps(), InOrder(kDateStored, kTimerArmed));
  EXPECT_THAT(host.CallsOf({"FreeLibrary"}), InOrder("FreeLibrary(AddinBridge.DLL)"));
  EXPECT_THAT(host.LinesOf(kPrompt), IsEmpty());
}

TEST_F(Reminder, EndsTheChainWithoutTheBridge) {
  Elapse();

  EXPECT_THAT(host.Calls(), InOrder("IsServerMode(false)", "SystemIsOpen()", "SystemIsClosing()", "GetActiveFileMgr()",
                                    "GetFileState()", "LoadLibraryA(AddinBridge.DLL)"));
  EXPECT_THAT(host.Lines(), InOrder(Error("MULTIENTITY::hBridgeDLL is null for NeedDataSyncUp")));
  EXPECT_THAT(host.platform.timers, IsEmpty());
}

TEST_F(Reminder, EndsTheChainWhileTheSystemIsClosing) {
  ProvideBridge(Answers<3>);
  host.application.closing = true;

  Elapse();

  EXPECT_THAT(host.CallsOf({"LoadLibraryA", "SetCompanyDBPreference", "SetTimer", "YesNoInfoMsgO"}), IsEmpty());
  EXPECT_THAT(host.Lines(), InOrder(Trace("MULTIENTITY::System is closing or no active file manager and so skip DB "
                                          "operation")));
}

TEST_F(Reminder, IsShownAlsoWhenItsDateCannotBeStored) {
  ProvideBridge(Answers<3>);
  host.FailAt("SetCompanyDBPreference");

  Elapse();

  EXPECT_THAT(Steps(), InOrder(kDateStored, "SetTimer(0, 900000)", kReminderSecondForm));
}

TEST_F(Reminder, IsShownAlsoWhenNeitherItsDateNorItsTimerCanBeWorkedOut) {
  ProvideBridge(Answers<1>);
  host.ThrowAt("GetLocalTime", 42);

  Elapse();

  EXPECT_THAT(Steps(), InOrder(kReminderFirstForm));
}

TEST_F(Reminder, IsAskedOfTheBridgeAfreshEachTime) {
  ProvideBridge(Answers<3>);
  Elapse();
  ProvideBridge(Answers<0>);

  Elapse();

  EXPECT_THAT(Steps(), Not(Contains(kReminderSecondForm)));
}

TEST_F(Reminder, ComesEveryDay) {
  ProvideBridge(Answers<3>);
  Elapse();
  host.platform.now.wDay = 4;
  host.platform.now.wHour = 10;
  host.Forget();

  host.platform.Fire(host.platform.lastTimer);
  host.application.DeliverMessages();

  EXPECT_THAT(Steps(), InOrder("SetCompanyDBPreference(MEPromptLaunchDate, 20240305)", "SetTimer(0, 86400000)",
                               kReminderSecondForm));
  EXPECT_THAT(host.platform.timers, SizeIs(1));
}

struct BridgeAnswer {
  const char* name;
  std::int32_t (*entry)();
};

void PrintTo(const BridgeAnswer& answer, std::ostream* out) {
  *out << answer.name;
}

class OtherBridgeAnswer : public Reminder, public testing::WithParamInterface<BridgeAnswer> {};

TEST_P(OtherBridgeAnswer, ShowsNothingButStoresTheDateAndArmsTheTimer) {
  ProvideBridge(GetParam().entry);

  Elapse();

  EXPECT_THAT(Steps(), InOrder(kDateStored, kTimerArmed));
}

INSTANTIATE_TEST_SUITE_P(Every, OtherBridgeAnswer,
                         testing::Values(BridgeAnswer{"Zero", Answers<0>}, BridgeAnswer{"Four", Answers<4>},
                                         BridgeAnswer{"Five", Answers<5>}, BridgeAnswer{"MinusOne", Answers<-1>},
                                         BridgeAnswer{"ThreeInTheLowByteOnly", Answers<0x103>}),
                         [](const auto& tested) { return std::string(tested.param.name); });

class AnswerToTheReminder : public Reminder, public testing::WithParamInterface<std::int32_t> {};

TEST_P(AnswerToTheReminder, OtherThanYesRunsNoCommand) {
  ProvideBridge(Answers<3>);
  host.messages.answer = static_cast<YNC_Tag>(GetParam());

  Elapse();

  EXPECT_THAT(host.CallsOf({"YesNoInfoMsgO", "ExecuteCommand"}), InOrder(kReminderSecondForm));
}

INSTANTIATE_TEST_SUITE_P(Every, AnswerToTheReminder, testing::Values(0, 2, 3, -1, 257));

class ReminderStep : public Reminder, public testing::WithParamInterface<const char*> {};

TEST_P(ReminderStep, LetsAnExceptionOfTheHostPass) {
  ProvideBridge(Answers<3>);
  host.messages.answer = kAnswerYes;
  host.ThrowAt(GetParam(), std::runtime_error("the window is gone"));

  EXPECT_THROW(Elapse(), std::runtime_error);

  EXPECT_EQ(host.platform.LoadedLibraries(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Every, ReminderStep,
                         testing::Values("IsServerMode", "LoadLibraryA", "GetProcAddress", "GetKRWinInstance",
                                         "YesNoInfoMsgO", "ExecuteCommand"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(Reminder, StaysStoredAndArmedWhenItCannotBeShown) {
  ProvideBridge(Answers<3>);
  host.ThrowAt("YesNoInfoMsgO", std::runtime_error("the window is gone"));

  EXPECT_THROW(Elapse(), std::runtime_error);

  EXPECT_EQ(host.databasePreferences.values.at("MEPromptLaunchDate"), "20240304");
  EXPECT_THAT(host.platform.timers, SizeIs(1));
}

}  // namespace
