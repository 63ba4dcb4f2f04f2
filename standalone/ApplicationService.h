#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Application.h"
#include "standalone/Database.h"

namespace standalone {

// What a command URL such as krw:Name?key=value runs; it receives the text after the question mark.
using Command = std::function<void(std::string_view arguments)>;

// The application around one company file: open from its construction until it is closed.
class ApplicationService final : public Application {
 public:
  explicit ApplicationService(Database& database);
  ApplicationService(const ApplicationService&) = delete;
  ApplicationService& operator=(const ApplicationService&) = delete;
  ~ApplicationService();

  bool IsServerMode(bool option) override;
  bool SystemIsOpen() override;
  bool SystemIsClosing() override;
  DBMgr::FileMgr* GetActiveFileMgr() override;
  void Enqueue(AppMsg* message) override;
  void SubscribeCloseSystem(CNotificationBase& listener) override;
  void UnsubscribeCloseSystem(CNotificationBase& listener) noexcept override;
  // Throws std::runtime_error for a URL that names no command. The unit of work is committed before the command runs.
  void ExecuteCommand(const CCommandAndArgs& command) override;

  // `name` is the URL up to the question mark, such as krw:LaunchMEPlugin.
  void RegisterCommand(std::string name, Command command);

  // Delivers the queued messages in their order, those queued meanwhile included; returns how many.
  std::size_t DeliverMessages();

  // From now on the file takes no more work; calls `notify` for each listener that is still subscribed.
  void BeginClosing(const std::function<void(CNotificationBase&)>& notify);
  // Nothing is open any more; messages that were not delivered are destroyed.
  void EndClosing();

 private:
  enum class State { kOpen, kClosing, kClosed };
  class FileManager final : public DBMgr::FileMgr {
   public:
    explicit FileManager(const State& state) noexcept : state_(state) {}
    std::int32_t GetFileState() override;

   private:
    const State& state_;
  };

  Database& database_;
  State state_ = State::kOpen;
  FileManager fileManager_{state_};
  std::deque<std::unique_ptr<AppMsg>> queue_;
  std::vector<CNotificationBase*> listeners_;
  std::map<std::string, Command, std::less<>> commands_;
};

}  // namespace standalone
