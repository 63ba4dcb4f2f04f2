#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "MultiEntityHost/Application.h"
#include "MultiEntityHost/Messages.h"
#include "support/CallScript.h"

class ScriptedApplication final : public Application, private DBMgr::FileMgr {
 public:
  explicit ScriptedApplication(CallScript& script) : script_(script) {}

  bool IsServerMode(bool option) override;
  bool SystemIsOpen() override;
  bool SystemIsClosing() override;
  DBMgr::FileMgr* GetActiveFileMgr() override;
  void Enqueue(AppMsg* message) noexcept override;
  void SubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept override;
  void UnsubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept override;
  void ExecuteCommand(const CCommandAndArgs& command) override;

  // Delivers the messages that are queued now, the first first; those that they queue wait for the next time.
  void DeliverMessages();

  // Tells every listener that the company is being closed.
  void NotifyClose() const;

  bool serverMode = false;
  bool open = true;
  bool closing = false;
  bool hasActiveFile = true;
  std::int32_t fileState = 0;
  std::deque<std::unique_ptr<AppMsg>> queue;
  std::vector<CNotify<CNotifyDataCloseSystem>*> closeListeners;

 private:
  std::int32_t GetFileState() override;

  CallScript& script_;
};

class ScriptedMessages final : public Messages {
 public:
  explicit ScriptedMessages(CallScript& script) : script_(script) {}

  ResourceInstance GetKRWinInstance() override;
  void GetIndStringC(char* buffer, std::size_t size, ResourceInstance instance, std::int32_t list,
                     std::int32_t index) override;
  YNC_Tag YesNoInfoMsgO(const Util::SourceContext& source, ResourceInstance instance, std::int32_t list,
                        std::int32_t firstIndex, std::int32_t secondIndex, bool flag1, bool flag2) override;
  std::int32_t KRMSG_MessageO(std::uintptr_t window, std::int32_t icon, std::int32_t buttons, std::int32_t list,
                              std::span<const MessageArgument> arguments) override;
  void KRWarnMsgWithTitle02(std::uintptr_t window, const Util::SourceContext& source, const char* first,
                            const char* second, bool flag) override;

  std::map<std::pair<std::int32_t, std::int32_t>, std::string> strings;  // by list and index
  YNC_Tag answer = static_cast<YNC_Tag>(2);                              // to a yes/no question: not yes
  std::int32_t messageAnswer = 0;

 private:
  CallScript& script_;
};
