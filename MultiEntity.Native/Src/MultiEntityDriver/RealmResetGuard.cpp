#include <algorithm>
#include <array>

#include "Frame/Operations.h"
#include "Frame/PluginCommands.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityUtils/MultiEntityUtils.h"

namespace {

constexpr std::uintptr_t kNoWindow = 0;
constexpr std::size_t kMessageTextSize = 1024;

// The buttons of the question whether a relation is to be set up.
constexpr std::int32_t kButtons = 2;
constexpr std::int32_t kGoOn = 0;
constexpr std::int32_t kDoNothing = 1;

void ShowNoRealmMessage() {
  std::array<char, kMessageTextSize> text{};
  Host().messages.GetIndStringC(text.data(), text.size(), Host().messages.GetKRWinInstance(), kNoRealmStrings,
                                kNoRealmText);
  const std::array<MessageArgument, 4> arguments{kMessageTextsFollow, Util::TString("Intercompany transactions"),
                                                 Util::TString(text.data()), kMessageEndOfArguments};
  Host().messages.KRMSG_MessageO(kNoWindow, kMessageIconNotice, kMessageButtonsOk, kNoRealmStrings, arguments);
}

YNC_Tag AskAboutRealmReset(const OperationLog& log) {
  return Host().messages.YesNoInfoMsgO({operations::kDriverSource, log.Name()}, Host().messages.GetKRWinInstance(),
                                       kRelationsStrings, kRelationsTitle, kRealmResetText, true, true);
}

std::int32_t ShowNoRelationsMessage() {
  const std::array<MessageArgument, 8> arguments{
      kRelationsTitle,       kButtons, kGoOn, kDoNothing, kSetUpNowButton, kNotNowButton, kNoRelationsText,
      kMessageEndOfArguments};
  return Host().messages.KRMSG_MessageO(kNoWindow, kMessageIconQuestion, kMessageButtonsOwn, kRelationsStrings,
                                        arguments);
}

bool MayDoInAccountList(CAccnt& element, UserAction action) {
  return Host().permissions.ListPermissionAvailable(kListAccounts, 0, action, element, 0, 0);
}

}  // namespace

bool MultiEntityDriver::IsRealmReset(Util::TString realmId) {
  bool ok = false;
  // This block is never given back.
  const char* remembered = GetMECacheRealmId(realmId, ok);
  return ok && remembered != nullptr && !realmId.empty() && realmId.view() != remembered;
}

bool MultiEntityDriver::BlockUserIfRealmReset(Util::TString realmId) {
  const OperationLog log{operations::BlockUserIfRealmReset};
  try {
    if (realmId.empty()) {
      ShowNoRealmMessage();
      return true;
    }
    if (!MultiEntityUtils::NeedToCheckForMERealmReset() || !IsRealmReset(realmId)) return false;
    if (AskAboutRealmReset(log) == kAnswerYes) LaunchPlugin(kLaunchPluginForRealmReset);
    return true;
  } catch (...) {
    log.Error("MULTIENTITY_ERROR::Exiting %s, due to generic exception", log.Name());
    return false;
  }
}

bool MultiEntityDriver::CheckForPluginNavigation() {
  const OperationLog log{operations::CheckForPluginNavigation};
  try {
    std::vector<DBMultiEntityRelation> relations;
    const MEStatusCode status = GetRelationsList(relations);
    if (status != MEStatusSuccess) {
      log.Note("MULTIENTITY::Exiting %s, due to Error %d", log.Name(), static_cast<std::int32_t>(status));
      return true;
    }
    if (std::ranges::any_of(relations, [](const auto& relation) { return relation.state == MEStateEstablished; })) {
      return true;
    }
    if (ShowNoRelationsMessage() != kGoOn) return true;
    LaunchPlugin(kLaunchPluginForNoRelations);
    return false;
  } catch (...) {
    log.Error("MULTIENTITY_ERROR::Exiting %s, due to generic exception", log.Name());
    return true;
  }
}

SybaseRelationsUserPersona MultiEntityDriver::SybaseRelationsUserPersonaForRole(int role) {
  const OperationLog log{operations::SybaseRelationsUserPersonaForRole};
  try {
    if (role == 0 || role == 15) return SybaseRelationsPersonaManager;

    CAccnt element(Host().accounts, kFeatureTypeStandard);
    if (role == 1) {
      if (MayDoInAccountList(element, kActionDelete)) return SybaseRelationsPersonaManager;
      return MayDoInAccountList(element, kActionView) ? SybaseRelationsPersonaContributor : SybaseRelationsPersonaNone;
    }
    return MayDoInAccountList(element, kActionView) ? SybaseRelationsPersonaViewer : SybaseRelationsPersonaNone;
  } catch (...) {
    log.Error("MULTIENTITY_ERROR::Exiting %s, due to generic exception", log.Name());
    return SybaseRelationsPersonaNone;
  }
}
