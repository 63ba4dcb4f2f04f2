#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntity/MultiEntityScheduler.h"
#include "model/WorldHost.h"
#include "support/MultiEntityPrivateAccess.h"

namespace model {

// The module's exported operations as a performer of histories. Most are called as they are exported; those that hand
// over host objects, blocks or private members are wrapped here.
class Module : public MultiEntityDriver, public MESchedulerUtil {
 public:
  Module(World& world, WorldHost& host) : world_(world), host_(host) {}

  bool IsCOAValidForMultiEntity(std::optional<long> recnum) {
    if (!recnum.has_value()) return MultiEntityDriver::IsCOAValidForMultiEntity(nullptr);
    CAccnt account(host_, kFeatureTypeStandard);
    host_.Show(account, *recnum);
    return MultiEntityDriver::IsCOAValidForMultiEntity(&account);
  }

  static bool GetTxns(unsigned int selection, std::vector<unsigned long>& txns) {
    return MultiEntityPrivateAccess::GetTxns(selection, txns);
  }
  static bool GetTxnsForPeriod(DateType32 from, DateType32 to, unsigned int selection, unsigned int dateField,
                               std::vector<unsigned long>& txns) {
    return MultiEntityPrivateAccess::GetTxnsForPeriod(from, to, selection, dateField, txns);
  }
  static bool IsRealmReset(const Util::TString& realmId) { return MultiEntityPrivateAccess::IsRealmReset(realmId); }
  static bool IsTimerLaunchDateToday() { return MultiEntityPrivateAccess::IsTimerLaunchDateToday(); }

  std::optional<std::string> GetMECacheRealmId(const Util::TString& realmId, bool& ok) {
    block_ = MultiEntityDriver::GetMECacheRealmId(realmId, ok);
    return block_ == nullptr ? std::optional<std::string>() : block_;
  }
  void GiveBack(const std::optional<std::string>& block) {
    if (block.has_value()) host_.LocalFree(block_);
  }
  static bool SetMECacheRealmId(std::string realmId) { return MultiEntityDriver::SetMECacheRealmId(realmId.data()); }

  static void OnTimerElapsed() { MESchedulerUtil::OnTimerElapsed(nullptr, 0, 0, 0); }

  void MakeSchedulerMessage() {
    new MultiEntityScheduler;  // the host's queue owns it
    world_.queue.back() = MessageKind::kScheduler;
  }
  static void ProcessSchedulerMessage() {
    MultiEntityScheduler message;
    const MultiEntityScheduler copy(message);
    message = copy;
    message.ProcessMsg();
  }
  void DeliverFirstMessage() {
    if (world_.queue.empty()) return;
    world_.queue.erase(world_.queue.begin());
    host_.TakeMessage()->ProcessMsg();
  }
  void FireTimer() {
    if (!world_.timers.empty()) host_.Fire(world_.timers.begin()->first);
  }
  void NotifyClose() { host_.NotifyClose(); }

 private:
  World& world_;
  WorldHost& host_;
  char* block_ = nullptr;
};

}  // namespace model
