#pragma once

#include <cstdint>
#include <utility>

#include "host/TString.h"

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

// What a listener is told when the host closes the company.
struct CNotifyDataCloseSystem {};

// What the host's notification calls. The destructor is its first virtual operation.
class CNotificationBase {
 public:
  virtual ~CNotificationBase() = default;

 protected:
  CNotificationBase() = default;
  CNotificationBase(const CNotificationBase&) = default;
  CNotificationBase(CNotificationBase&&) = default;
  CNotificationBase& operator=(const CNotificationBase&) = default;
  CNotificationBase& operator=(CNotificationBase&&) = default;
};

// A command URL, such as krw:Command?name=value.
class CCommandAndArgs {
 public:
  explicit CCommandAndArgs(Util::TString url) noexcept : url_(std::move(url)) {}

  const Util::TString& Url() const noexcept { return url_; }

 private:
  Util::TString url_;
};

// The host application: its state, its message queue, its close-system notification and its commands. A host implements
// it; the module calls it on the user-interface thread.
class Application {
 public:
  virtual bool IsServerMode(bool option) = 0;
  virtual bool SystemIsOpen() = 0;
  virtual bool SystemIsClosing() = 0;
  // The manager of the open company file, the host's own; null while no file is open.
  virtual DBMgr::FileMgr* GetActiveFileMgr() = 0;

  // Takes over a message made on the heap. The host's loop calls its ProcessMsg() once and then deletes it.
  virtual void Enqueue(AppMsg* message) = 0;

  // From Subscribe to Unsubscribe the host calls the listener's handler when it closes the company. The listener stays
  // its maker's.
  virtual void SubscribeCloseSystem(CNotificationBase& listener) = 0;
  virtual void UnsubscribeCloseSystem(CNotificationBase& listener) noexcept = 0;

  virtual void ExecuteCommand(const CCommandAndArgs& command) = 0;

 protected:
  ~Application() = default;
};
