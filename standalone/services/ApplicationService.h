#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "MultiEntityHost/Application.h"
#include "MultiEntityHost/Ops.h"
#include "standalone/storage/Database.h"

namespace standalone {

// What the intercompany plug-in shows.
enum class PluginView {
  kPendingTransactions,       // the transactions that wait for an answer
  kRelationsAfterRealmReset,  // the relations, with the question what becomes of them now that the realm is another one
  kRelationSetUp,             // how to set up the first relation
};

// Opens a view of the plug-in for the command URL that asked for it; modal, on the user-interface thread.
using CommandRunner = std::function<void(PluginView view, std::string_view url)>;

// Told of each message right before it is processed.
using MessageObserver = std::function<void(const AppMsg& message)>;

// The application around one company file: open from its construction until it is closed.
class ApplicationService final : public Application {
 public:
  ApplicationService(Database& database, Util::Ops& log, CommandRunner runner);
  ApplicationService(const ApplicationService&) = delete;
  ApplicationService& operator=(const ApplicationService&) = delete;
  ~ApplicationService();

  bool IsServerMode(bool option) override;
  bool SystemIsOpen() override;
  bool SystemIsClosing() override;
  DBMgr::FileMgr* GetActiveFileMgr() override;
  void Enqueue(AppMsg* message) noexcept override;
  void SubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept override;
  void UnsubscribeCloseSystem(CNotify<CNotifyDataCloseSystem>& listener) noexcept override;
  // Throws std::runtime_error, which names the URL, for one that opens none of the plug-in's views and while there is
  // no runner. The unit of work is committed before the command runs, and another one begins after it.
  void ExecuteCommand(const CCommandAndArgs& command) override;

  void SetCommandRunner(CommandRunner runner) { runner_ = std::move(runner); }
  void SetMessageObserver(MessageObserver observer) { onDelivery_ = std::move(observer); }

  bool HasMessages() const noexcept { return state_ == State::kOpen && !queue_.empty(); }
  // Processes the oldest message and destroys it, also when it throws. There is one.
  void DeliverNextMessage();

  // Closes the company: it takes no more work, each listener that is still subscribed is told once, and the messages
  // that were not delivered are destroyed. Closing again does nothing.
  void Close() noexcept;

 private:
  enum class State { kOpen, kClosing, kClosed };
  class FileManager final : public DBMgr::FileMgr {
   public:
    explicit FileManager(const State& state) noexcept : state_(state) {}
    std::int32_t GetFileState() override;

   private:
    const State& state_;
  };

  void Tell(CNotify<CNotifyDataCloseSystem>& listener) noexcept;

  Database& database_;
  Util::Ops& log_;
  CommandRunner runner_;
  MessageObserver onDelivery_;
  State state_ = State::kOpen;
  FileManager fileManager_{state_};
  // Also keeps a message that comes after the close, as it is still being constructed.
  std::deque<std::unique_ptr<AppMsg>> queue_;
  std::vector<CNotify<CNotifyDataCloseSystem>*> listeners_;
};

}  // namespace standalone
