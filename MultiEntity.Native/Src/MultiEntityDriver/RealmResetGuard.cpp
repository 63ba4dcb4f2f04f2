#include <algorithm>
#include <array>

#include "Frame/Operations.h"
#include "Frame/PluginCommands.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityUtils/MultiEntityUtils.h"

namespace {

// The numbers of the host's string lists and message boxes, passed on as the host defines them.
constexpr std::uintptr_t kNoWindow = 0;
constexpr std::int32_t kEndOfArguments = -1;
constexpr std::size_t kMessageTextSize = 1024;

constexpr std::int32_t kNoRealmList = 2003;
constexpr std::int32_t kNoRealmText = 3023;
constexpr std::int32_t kNoRealmIcon = 3;
constexpr std::int32_t kNoRealmButtons = 3;
constexpr std::int32_t kTitleAndTextFollow = -7;

constexpr std::int32_t kRelationsList = 14717;
constexpr std::int32_t kRealmResetFirstText = 1;
constexpr std::int32_t kRealmResetSecondText = 2;
constexpr std::int32_t kNoRelationsIcon = 4;
constexpr std::int32_t kNoRelationsButtons = 0;
constexpr std::int32_t kNoRelationsAnswerToLaunch = 0;

void ShowNoRealmMessage() {
  std::array<char, kMessageTextSize> text{};
  Host().messages.GetIndStringC(text.data(), text.size(), Host().messages.GetKRWinInstance(), kNoRealmList,
                                kNoRealmText);
  const std::array<MessageArgument, 4> arguments{kTitleAndTextFollow, Util::TString("Intercompany transactions"),
                                                 Util::TString(text.data()), kEndOfArguments};
  Host().messages.KRMSG_MessageO(kNoWindow, kNoRealmIcon, kNoRealmButtons, kNoRealmList, arguments);
}

YNC_Tag AskAboutRealmReset(const OperationLog& log) {
  return Host().messages.YesNoInfoMsgO({operations::kDriverSource, log.Name()}, Host().messages.GetKRWinInstance(),
                                       kRelationsList, kRealmResetFirstText, kRealmResetSecondText, true, true);
}

std::int32_t ShowNoRelationsMessage() {
  const std::array<MessageArgument, 8> arguments{1, 2, 0, 1, 4, 5, 3, kEndOfArguments};
  return Host().messages.KRMSG_MessageO(kNoWindow, kNoRelationsIcon, kNoRelationsButtons, kRelationsList, arguments);
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
    if (ShowNoRelationsMessage() != kNoRelationsAnswerToLaunch) return true;
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
