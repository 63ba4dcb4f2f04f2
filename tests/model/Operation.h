#pragma once

#include <rapidcheck.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/World.h"

namespace model {

// What a step of a history does: an operation of the module, or something that the host's users, clock or remote stores
// do meanwhile.
enum class Kind : std::uint8_t {
  kIsFeatureEnabled,
  kHasMEPermission,
  kIsAccountTypeEnabledForME,
  kCreateRelation,
  kPopulateCOAInRelation,
  kUpdateRelation,
  kDeleteRelation,
  kGetRelation,
  kGetRelationById,
  kGetRelationsList,
  kGetRelationRealmIdList,
  kIsCOAValidForMultiEntity,
  kGetAccountsList,
  kGetAccountListByType,
  kRecordGeneralJournalEntry,
  kRemoveGeneralJournalEntry,
  kSetGJEDeletionDueToFDPFailure,
  kGetGJEDeletionDueToFDPFailure,
  kUpdateTransactionOfRequest,
  kUpdateTransactionOfLine,
  kDoesTransactionExist,
  kSaveRejectedTransaction,
  kGetAllRejectedTransaction,
  kDeleteRejectedTransaction,
  kListEntriesOfTransaction,
  kListEntriesOfPeriod,
  kGetTxns,
  kGetTxnsForPeriod,
  kGetMECacheRealmId,
  kSetMECacheRealmId,
  kIsRealmReset,
  kBlockUserIfRealmReset,
  kCheckForPluginNavigation,
  kSybaseRelationsUserPersonaForRole,
  kGetDelayInSecondsFromDCE,
  kGetHoursToLaunchFromDCE,
  kGetNextSchedulerTimeFromPrefDb,
  kSetNextSchedulerTimeToPrefDb,
  kGetSchedulerLaunchDelayInSeconds,
  kIsTimerLaunchDateToday,
  kDateToString,
  kStringToDate,
  kSystemTimeToDate,
  kCanProcessSchedulerMsg,
  kStartScheduler,
  kOnTimerElapsed,
  kKillAnyExistingScheduler,
  kMakeSchedulerMessage,
  kProcessSchedulerMessage,
  kDeliverFirstMessage,
  kFireTimer,
  kNotifyClose,
  // The host's doings from here on.
  kSetFeatureSwitch,
  kSetAccountSwitch,
  kSetRight,
  kSetListRight,
  kSetAdministrator,
  kSetClock,
  kSetRemoteValue,
  kSetStoredDate,
  kSetStoredRealm,
  kPutRelation,
  kDropRelation,
  kPutTransaction,
  kPutLine,
  kDropLine,
  kPutRejected,
  kSetAccount,
  kSetApplication,
  kSetCompany,
  kSetBridge,
  kSetAnswers,
  kPutQueryRow,
  kSetLogLevel,
  kSetLastTimer,
};
constexpr std::size_t kOperationKinds = static_cast<std::size_t>(Kind::kSetFeatureSwitch);
constexpr std::size_t kKinds = static_cast<std::size_t>(Kind::kSetLastTimer) + 1;

// One step. What its arguments mean is read out of plain numbers, of which 0 stands for the most ordinary value, so
// that a failing step shrinks towards one that anybody would write.
struct Operation {
  static constexpr std::size_t kArguments = 10;

  Kind kind = Kind::kIsFeatureEnabled;
  std::array<std::uint16_t, kArguments> arguments{};
  Fault fault{};
};

using History = std::vector<Operation>;

// Histories of so many operations each. The first one of a process decides what the process remembers for good, so it
// begins with the remote switches.
rc::Gen<History> AHistory(std::size_t operations, bool firstOfProcess);

// The company that every history begins with.
World FreshWorld();

// Lets the host do a step that is none of the module's.
void Change(World& world, const Operation& operation);

}  // namespace model
