#include <array>
#include <optional>
#include <vector>

#include "Frame/BridgeLibrary.h"
#include "Frame/Operations.h"
#include "Frame/PluginCommands.h"
#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntity/MultiEntityScheduler.h"
#include "MultiEntityScheduler/UIPrompt.h"

namespace {

// In the place of an answer of the bridge; nothing is shown for it.
constexpr SyncNeed kNoSuchEntry{4};

constexpr std::size_t kWarningTextSize = 1024;

constexpr Util::SourceContext kPromptSource{operations::kSchedulerSource, operations::ProcessUIPrompt.shortName};

SyncNeed AskBridge(const BridgeLibrary& bridge) {
  using NeedDataSyncUp = std::int32_t (*)();
  const auto ask = bridge.Entry<NeedDataSyncUp>(kBridgeNeedsSync);
  return ask == nullptr ? kNoSuchEntry : static_cast<SyncNeed>(ask());
}

// The library is released before anything is shown. Nothing when it is not there.
std::optional<SyncNeed> AskBridgeOnce(const OperationLog& log) {
  const BridgeLibrary bridge;
  if (!bridge.IsLoaded()) {
    log.Error("MULTIENTITY::hBridgeDLL is null for NeedDataSyncUp");
    return std::nullopt;
  }
  return AskBridge(bridge);
}

void Remind(std::int32_t textIndex) {
  Messages& messages = Host().messages;
  const YNC_Tag answer = messages.YesNoInfoMsgO(kPromptSource, messages.GetKRWinInstance(), kReminderStrings,
                                                kReminderTitle, textIndex, true, true);
  if (answer == kAnswerYes) LaunchPlugin(kLaunchPluginForReminder);
}

void Warn() {
  Messages& messages = Host().messages;
  std::array<char, kWarningTextSize> title{};
  std::array<char, kWarningTextSize> text{};
  messages.GetIndStringC(title.data(), title.size(), messages.GetKRWinInstance(), kReminderStrings, kReminderTitle);
  messages.GetIndStringC(text.data(), text.size(), messages.GetKRWinInstance(), kReminderStrings,
                         kReminderOfRelationsText);
  messages.KRWarnMsgWithTitle02(0, kPromptSource, title.data(), text.data(), true);
}

bool IsReminderNeeded() {
  PrefsTag& preferences = Host().preferences;
  return !preferences.GetCurrentFileIsSample() && preferences.GetIsAccntntCopy() == 0 &&
         !preferences.GetUseMultiCurrency() &&
         MultiEntityDriver::HasMEPermission(MEPermissionReceiveReminder, kFeatureJournalEntries);
}

}  // namespace

MultiEntityScheduler::MultiEntityScheduler() = default;
MultiEntityScheduler::MultiEntityScheduler(const MultiEntityScheduler& other) = default;
MultiEntityScheduler::MultiEntityScheduler(MultiEntityScheduler&& other) noexcept = default;
MultiEntityScheduler& MultiEntityScheduler::operator=(const MultiEntityScheduler& other) = default;
MultiEntityScheduler& MultiEntityScheduler::operator=(MultiEntityScheduler&& other) noexcept = default;
MultiEntityScheduler::~MultiEntityScheduler() = default;

void* MultiEntityScheduler::operator new(std::size_t size) {
  return SequencedAppMsg::operator new(size);
}

void MultiEntityScheduler::operator delete(void* block) noexcept {
  SequencedAppMsg::operator delete(block);
}

void MultiEntityScheduler::ProcessMsg() {
  const OperationLog log{operations::ProcessScheduler};
  if (!MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) {
    log.Note("MULTIENTITY::MultiEntityScheduler: Feature not enabled");
    return;
  }
  if (!MESchedulerUtil::CanProcessSchedulerMsg()) return;
  if (!IsReminderNeeded()) {
    log.Note("MULTIENTITY::MultiEntityScheduler: ProcessMsg :: Skipping scheduler as not needed");
    return;
  }

  std::vector<DBMultiEntityRelation> relations;
  if (MultiEntityDriver::GetRelationsList(relations) != MEStatusSuccess || relations.empty()) return;
  log.Note("MULTIENTITY::MultiEntityScheduler: ProcessMsg ::scheduler trigger checks passed. Initiating timer");
  MESchedulerUtil::StartScheduler();
}

void MESchedulerUIPrompt::ProcessMsg() {
  const OperationLog log{operations::ProcessUIPrompt};
  if (!MESchedulerUtil::CanProcessSchedulerMsg()) return;
  const std::optional<SyncNeed> need = AskBridgeOnce(log);
  if (!need.has_value()) return;

  // The reminder counts as delivered once the bridge was asked, also when the user never answers.
  MESchedulerUtil::SetNextSchedulerTimeToPrefDb();
  MESchedulerUtil::StartScheduler();

  switch (*need) {
    case kTransactionsAndRelationsWait:
      Remind(kReminderOfBothText);
      break;
    case kTransactionsWait:
      Remind(kReminderOfTransactionsText);
      break;
    case kRelationsWait:
      Warn();
      break;
    default:
      break;
  }
}
