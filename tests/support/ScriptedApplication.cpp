#include "support/ScriptedApplication.h"

#include <cstdio>

namespace {

constexpr ResourceInstance kResources{42};

}  // namespace

bool ScriptedApplication::IsServerMode(bool option) {
  return !script_.Call("IsServerMode", option) && serverMode;
}

bool ScriptedApplication::SystemIsOpen() {
  return !script_.Call("SystemIsOpen") && open;
}

bool ScriptedApplication::SystemIsClosing() {
  return !script_.Call("SystemIsClosing") && closing;
}

DBMgr::FileMgr* ScriptedApplication::GetActiveFileMgr() {
  const bool failed = script_.Call("GetActiveFileMgr").has_value();
  return failed || !hasActiveFile ? nullptr : this;
}

void ScriptedApplication::Enqueue(AppMsg* message) noexcept {
  std::unique_ptr<AppMsg> owned(message);
  script_.Note("Enqueue");
  queue.push_back(std::move(owned));
}

void ScriptedApplication::SubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept {
  script_.Note("SubscribeCloseSystem");
  closeListeners.push_back(&listener);
}

void ScriptedApplication::UnsubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept {
  script_.Note("UnsubscribeCloseSystem");
  std::erase(closeListeners, &listener);
}

void ScriptedApplication::ExecuteCommand(const CCommandAndArgs& command) {
  script_.Call("ExecuteCommand", command.Url());
}

void ScriptedApplication::DeliverMessages() {
  const auto messages = std::exchange(queue, {});
  for (const auto& message : messages) message->ProcessMsg();
}

void ScriptedApplication::NotifyClose() const {
  const auto listeners = closeListeners;
  for (auto* listener : listeners) listener->HandleNotification({});
}

std::int32_t ScriptedApplication::GetFileState() {
  const auto failure = script_.Call("GetFileState");
  return failure ? DBMgr::kFileStateNoDatabaseWork : fileState;
}

ResourceInstance ScriptedMessages::GetKRWinInstance() {
  script_.Call("GetKRWinInstance");
  return kResources;
}

void ScriptedMessages::GetIndStringC(char* buffer, std::size_t size, ResourceInstance instance, std::int32_t list,
                                     std::int32_t index) {
  script_.Call("GetIndStringC", size, instance, list, index);
  const auto found = strings.find({list, index});
  std::snprintf(buffer, size, "%s", found == strings.end() ? "" : found->second.c_str());
}

YNC_Tag ScriptedMessages::YesNoInfoMsgO(const Util::SourceContext& source, ResourceInstance instance, std::int32_t list,
                                        std::int32_t firstIndex, std::int32_t secondIndex, bool flag1, bool flag2) {
  const auto failure = script_.Call("YesNoInfoMsgO", source.sourceFile, source.operation, instance, list, firstIndex,
                                    secondIndex, flag1, flag2);
  return failure ? YNC_Tag{} : answer;
}

std::int32_t ScriptedMessages::KRMSG_MessageO(std::uintptr_t window, std::int32_t icon, std::int32_t buttons,
                                              std::int32_t list, std::span<const MessageArgument> arguments) {
  std::string text;
  for (const MessageArgument& argument : arguments) {
    text += text.empty() ? "" : "; ";
    text += std::visit([](const auto& value) { return call_text::Of(value); }, argument);
  }
  const auto failure = script_.Call("KRMSG_MessageO", window, icon, buttons, list, "[" + text + "]");
  return failure ? -1 : messageAnswer;
}

void ScriptedMessages::KRWarnMsgWithTitle02(std::uintptr_t window, const Util::SourceContext& source, const char* first,
                                            const char* second, bool flag) {
  script_.Call("KRWarnMsgWithTitle02", window, source.sourceFile, source.operation, first, second, flag);
}
