#include "standalone/services/ApplicationService.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::int32_t kFileStateReady = 0;

constexpr const char* kSource = "standalone";

struct PluginCommand {
  std::string_view url;
  PluginView view;
};

constexpr std::array kPluginCommands{
    PluginCommand{kLaunchPluginForReminder, PluginView::kPendingTransactions},
    PluginCommand{kLaunchPluginForRealmReset, PluginView::kRelationsAfterRealmReset},
    PluginCommand{kLaunchPluginForNoRelations, PluginView::kRelationSetUp},
};

struct Operation {
  const char* shortName;
  const char* signature;
};

constexpr Operation kExecuteCommand{"Application::ExecuteCommand",
                                    "void Application::ExecuteCommand(const CCommandAndArgs& command)"};
constexpr Operation kClose{"Application::Close", "void Application::Close()"};

}  // namespace

ApplicationService::ApplicationService(Database& database, Util::Ops& log, CommandRunner runner)
    : database_(database), log_(log), runner_(std::move(runner)) {}

ApplicationService::~ApplicationService() = default;

bool ApplicationService::IsServerMode(bool /*option*/) {
  return false;
}

bool ApplicationService::SystemIsOpen() {
  return state_ == State::kOpen;
}

bool ApplicationService::SystemIsClosing() {
  return state_ == State::kClosing;
}

DBMgr::FileMgr* ApplicationService::GetActiveFileMgr() {
  return state_ == State::kClosed ? nullptr : &fileManager_;
}

void ApplicationService::Enqueue(AppMsg* message) noexcept {
  queue_.emplace_back(message);
}

void ApplicationService::SubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept {
  listeners_.push_back(&listener);
}

void ApplicationService::UnsubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept {
  std::erase(listeners_, &listener);
}

void ApplicationService::ExecuteCommand(const CCommandAndArgs& command) {
  const std::string_view url = command.Url().view();
  const auto* const known = std::ranges::find(kPluginCommands, url, &PluginCommand::url);
  if (known == kPluginCommands.end() || !runner_) {
    Util::Ops::MessageFunctor(log_, Util::Ops::Level::kError, Util::Ops::EventType::kDiagnostic, kSource, __LINE__,
                              kExecuteCommand.shortName,
                              kExecuteCommand.signature)("HOST:: command refused: %s", command.Url().c_str());
    throw std::runtime_error("The command " + Quoted(url) + " opens nothing in this program.");
  }
  Util::Ops::MessageFunctor(log_, Util::Ops::Level::kTrace, Util::Ops::EventType::kFlow, kSource, __LINE__,
                            kExecuteCommand.shortName,
                            kExecuteCommand.signature)("HOST:: running command %s", command.Url().c_str());
  OutsideUnit(database_, [&] { runner_(known->view, url); });
}

void ApplicationService::DeliverNextMessage() {
  const std::unique_ptr<AppMsg> message = std::move(queue_.front());
  queue_.pop_front();
  if (onDelivery_) onDelivery_(*message);
  message->ProcessMsg();
}

void ApplicationService::Close() noexcept {
  if (state_ != State::kOpen) return;
  state_ = State::kClosing;
  const std::vector<CNotify<CNotifyDataCloseSystem>*> listeners = listeners_;
  for (CNotify<CNotifyDataCloseSystem>* listener : listeners) {
    const bool isStillThere = std::ranges::find(listeners_, listener) != listeners_.end();
    if (isStillThere) Tell(*listener);
  }
  state_ = State::kClosed;
  queue_.clear();
}

// A listener that fails keeps neither the others from being told nor the company from being closed.
void ApplicationService::Tell(CNotify<CNotifyDataCloseSystem>& listener) noexcept {
  try {
    listener.HandleNotification({});
  } catch (const std::exception& error) {
    Util::Ops::MessageFunctor(log_, Util::Ops::Level::kError, Util::Ops::EventType::kDiagnostic, kSource, __LINE__,
                              kClose.shortName, kClose.signature)("HOST:: a listener failed: %s", error.what());
  }
}

std::int32_t ApplicationService::FileManager::GetFileState() {
  return state_ == State::kOpen ? kFileStateReady : DBMgr::kFileStateNoDatabaseWork;
}

}  // namespace standalone
