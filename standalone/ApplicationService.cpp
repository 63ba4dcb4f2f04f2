#include "standalone/ApplicationService.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "standalone/Text.h"

namespace standalone {

namespace {

constexpr std::int32_t kFileStateReady = 0;

}  // namespace

ApplicationService::ApplicationService(Database& database) : database_(database) {}

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

void ApplicationService::Enqueue(AppMsg* message) {
  std::unique_ptr<AppMsg> owned(message);
  if (state_ != State::kClosed) queue_.push_back(std::move(owned));
}

void ApplicationService::SubscribeCloseSystem(CNotificationBase& listener) {
  listeners_.push_back(&listener);
}

void ApplicationService::UnsubscribeCloseSystem(CNotificationBase& listener) noexcept {
  std::erase(listeners_, &listener);
}

void ApplicationService::ExecuteCommand(const CCommandAndArgs& command) {
  const std::string url(command.Url().view());
  const std::size_t mark = std::min(url.find('?'), url.size());
  const auto found = commands_.find(std::string_view(url).substr(0, mark));
  if (found == commands_.end()) {
    throw std::runtime_error("There is no command " + Quoted(url) + " in this program.");
  }
  const std::string_view arguments = std::string_view(url).substr(std::min(mark + 1, url.size()));
  OutsideUnit(database_, [&] { found->second(arguments); });
}

void ApplicationService::RegisterCommand(std::string name, Command command) {
  commands_.insert_or_assign(std::move(name), std::move(command));
}

std::size_t ApplicationService::DeliverMessages() {
  std::size_t delivered = 0;
  while (!queue_.empty()) {
    const std::unique_ptr<AppMsg> message = std::move(queue_.front());
    queue_.pop_front();
    ++delivered;
    message->ProcessMsg();
  }
  return delivered;
}

void ApplicationService::BeginClosing(const std::function<void(CNotificationBase&)>& notify) {
  if (state_ != State::kOpen) return;
  state_ = State::kClosing;
  const std::vector<CNotificationBase*> listeners = listeners_;
  for (CNotificationBase* listener : listeners) {
    const bool isStillThere = std::find(listeners_.begin(), listeners_.end(), listener) != listeners_.end();
    if (isStillThere) notify(*listener);
  }
}

void ApplicationService::EndClosing() {
  state_ = State::kClosed;
  queue_.clear();
}

std::int32_t ApplicationService::FileManager::GetFileState() {
  return state_ == State::kOpen ? kFileStateReady : DBMgr::kFileStateNoDatabaseWork;
}

}  // namespace standalone
