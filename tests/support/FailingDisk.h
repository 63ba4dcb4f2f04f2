#pragma once

#include <sqlite3.h>

#include <functional>

// A disk that fails as the test wants it to when a write-ahead log is written. One at a time in a process; files that
// are opened while it is there belong to it.
class FailingDisk {
 public:
  // What the next writing answers, and what the next bringing to the disk; SQLITE_OK for what the disk really answers.
  std::function<int()> onWrite;
  std::function<int()> onSync;

  FailingDisk() {
    real_ = sqlite3_vfs_find(nullptr);
    system_ = *real_;
    system_.zName = "failing-disk";
    system_.xOpen = &Open;
    sqlite3_vfs_register(&system_, /*makeDflt=*/1);
    there_ = this;
  }
  FailingDisk(const FailingDisk&) = delete;
  FailingDisk& operator=(const FailingDisk&) = delete;
  ~FailingDisk() {
    there_ = nullptr;
    sqlite3_vfs_unregister(&system_);
    sqlite3_vfs_register(real_, /*makeDflt=*/1);
  }

 private:
  static int Open(sqlite3_vfs* /*system*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    const int code = real_->xOpen(real_, name, file, flags, outFlags);
    if (code != SQLITE_OK || (flags & SQLITE_OPEN_WAL) == 0) return code;
    realLog_ = file->pMethods;
    log_ = *realLog_;
    log_.xWrite = &Write;
    log_.xSync = &Sync;
    file->pMethods = &log_;
    return code;
  }

  static int Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
    const int code = there_ != nullptr && there_->onWrite ? there_->onWrite() : SQLITE_OK;
    return code != SQLITE_OK ? code : realLog_->xWrite(file, bytes, count, offset);
  }

  static int Sync(sqlite3_file* file, int flags) {
    const int code = there_ != nullptr && there_->onSync ? there_->onSync() : SQLITE_OK;
    return code != SQLITE_OK ? code : realLog_->xSync(file, flags);
  }

  inline static FailingDisk* there_ = nullptr;
  inline static sqlite3_vfs* real_ = nullptr;
  inline static const sqlite3_io_methods* realLog_ = nullptr;
  inline static sqlite3_io_methods log_{};
  sqlite3_vfs system_{};
};
