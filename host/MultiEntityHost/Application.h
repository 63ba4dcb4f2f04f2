#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "MultiEntityHost/TString.h"

namespace DBMgr {

// The host's manager of the open company file. Its file-state query is its first virtual operation.
class FileMgr {
 public:
  // 1 means that no database work may be done.
  virtual std::int32_t GetFileState() = 0;

 protected:
  ~FileMgr() = default;
};

inline constexpr std::int32_t kFileStateNoDatabaseWork = 1;

}  // namespace DBMgr

// A message that the host's loop delivers on the user-interface thread. Its destructor is its first virtual operation.
class AppMsg {
 public:
  virtual ~AppMsg() = default;
  virtual void ProcessMsg() = 0;

 protected:
  AppMsg() = default;
  AppMsg(const AppMsg&) = default;
  AppMsg(AppMsg&&) = default;
  AppMsg& operator=(const AppMsg&) = default;
  AppMsg& operator=(AppMsg&&) = default;
};

// A message for the queue that keeps the order in which messages were made. The heap block of one made by new and its
// plain constructor is handed to the attached host's queue while it is constructed; the queue owns it from then on and
// processes it no earlier than the host's next turn of its loop. A message on the stack, a copy, a moved one and
// any that is made while no host is attached stay their maker's.
class SequencedAppMsg : public AppMsg {
 public:
  ~SequencedAppMsg() override;

  static void* operator new(std::size_t size);
  static void operator delete(void* block) noexcept;

 protected:
  SequencedAppMsg();
  SequencedAppMsg(const SequencedAppMsg& other);
  SequencedAppMsg(SequencedAppMsg&& other) noexcept;
  SequencedAppMsg& operator=(const SequencedAppMsg& other);
  SequencedAppMsg& operator=(SequencedAppMsg&& other) noexcept;
};

// What the host's notifications know of a listener. The destructor is its first virtual operation.
class CNotificationBase {
 public:
  CNotificationBase(const CNotificationBase&) = delete;
  CNotificationBase& operator=(const CNotificationBase&) = delete;
  virtual ~CNotificationBase() = default;

  // Called when the notification ends before its listener does.
  virtual void NotificationEnded() {}

 protected:
  CNotificationBase() = default;
};

// What a listener is told when the host closes the company.
struct CNotifyDataCloseSystem {};

template <class Data>
class CNotify;

// A listener that exists is subscribed to the close-system notification of whichever host is attached, also of one that
// is attached after the listener was made.
template <>
class CNotify<CNotifyDataCloseSystem> : public CNotificationBase {
 public:
  CNotify(const CNotify&) = delete;
  CNotify& operator=(const CNotify&) = delete;
  ~CNotify() override;
  virtual void HandleNotification(const CNotifyDataCloseSystem& data) = 0;

 protected:
  CNotify();
};

using CNotifyCloseSystem = CNotify<CNotifyDataCloseSystem>;

// A command URL, such as krw:Command?name=value.
class CCommandAndArgs {
 public:
  explicit CCommandAndArgs(Util::TString url) noexcept : url_(std::move(url)) {}

  const Util::TString& Url() const noexcept { return url_; }

 private:
  Util::TString url_;
};

// The command URLs with which the module has the host open its intercompany plug-in: the transactions that wait, the
// relations after the company's realm has changed, and the set-up of a first relation.
inline constexpr const char* kLaunchPluginForReminder = "krw:LaunchMEPlugin?context=ICT_SCHEDULER";
inline constexpr const char* kLaunchPluginForRealmReset = "krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_REALM_RESET";
inline constexpr const char* kLaunchPluginForNoRelations = "krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_NORELATIONS";

// The host application: its state, its message queue, its close-system notification and its commands. A host implements
// it; the module calls it on the user-interface thread.
class Application {
 public:
  // Whether the application runs without a user; no reminder comes then. `option` is false.
  virtual bool IsServerMode(bool option) = 0;
  // Whether a company is open, and whether it is just being closed. The reminder does nothing but while one is open.
  virtual bool SystemIsOpen() = 0;
  virtual bool SystemIsClosing() = 0;
  // The manager of the open company file, the host's own; null while no file is open.
  virtual DBMgr::FileMgr* GetActiveFileMgr() = 0;

  // Takes over a message made on the heap, which is still being constructed. The host's loop calls its ProcessMsg()
  // once and then deletes it. Called from timer procedures, too, which nothing may be thrown through.
  virtual void Enqueue(AppMsg* message) noexcept = 0;

  // From Subscribe to Unsubscribe the host calls the listener's HandleNotification() when it closes the company. The
  // listener stays its maker's.
  virtual void SubscribeCloseSystem(CNotifyCloseSystem& listener) noexcept = 0;
  virtual void UnsubscribeCloseSystem(CNotifyCloseSystem& listener) noexcept = 0;

  // Runs one of the command URLs above and returns when the view is closed again. What it throws ends the operation or
  // the message that asked for it, as each says.
  virtual void ExecuteCommand(const CCommandAndArgs& command) = 0;

 protected:
  ~Application() = default;
};
