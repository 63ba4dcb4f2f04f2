#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "MultiEntity/Records.h"
#include "MultiEntityHost/HostServices.h"
#include "platform/Clock.h"
#include "platform/LoopEvents.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/AttachmentTable.h"
#include "standalone/books/AuditTable.h"
#include "standalone/books/ClosedBooks.h"
#include "standalone/books/FactTable.h"
#include "standalone/books/ImportedFileTable.h"
#include "standalone/books/InboxTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/LedgerQueries.h"
#include "standalone/books/LinkTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/OutboxTable.h"
#include "standalone/books/OwnRequestTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/books/PendingWork.h"
#include "standalone/books/PreferenceTable.h"
#include "standalone/books/RejectedRequestTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/RemarkTable.h"
#include "standalone/books/RuleTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/books/UserTable.h"
#include "standalone/company/CompanyFile.h"
#include "standalone/company/MessageLoop.h"
#include "standalone/company/OperationsLog.h"
#include "standalone/services/ApplicationService.h"
#include "standalone/services/JournalService.h"
#include "standalone/services/MessagesService.h"
#include "standalone/values/Errors.h"

namespace standalone {

struct HostOptions {
  Answerer answerer;
  LogLimits log;
  OpenOptions file;
  CommandRunner commandRunner;
  // Tells every "now" and "today", also the file's; null for the machine's own.
  platform::Clock* clock = nullptr;
  std::string clockSetTo;  // by people; empty for the machine's own
  // By which the loop's timers are due, where the loop keeps them itself; null for the machine's own.
  platform::LoopClock* loopClock = nullptr;
};

// A complete host on one machine around one company file, for one user and on one thread. Whoever calls an operation
// that works on the company file does so within Request().
class StandaloneHost {
 public:
  // Throws CompanyFileError, or InvalidInput when the file has no such user.
  explicit StandaloneHost(const std::filesystem::path& companyFile, const std::string& userName = kAdministratorName,
                          HostOptions options = {});
  StandaloneHost(const StandaloneHost&) = delete;
  StandaloneHost& operator=(const StandaloneHost&) = delete;
  ~StandaloneHost();

  // What AttachHost is given; valid as long as the host lives.
  const HostServices& Services() const noexcept;

  // Runs `operation` as one unit of work and returns what it returns. The unit is taken back when the operation throws
  // and, if it might have written, when it answers a status of the module other than success, so that a refusal leaves
  // nothing behind; otherwise it is committed. UnitOfWorkError when the unit cannot begin or be committed, or when the
  // engine failed in one that is taken back. Units do not nest; questions and commands are put outside of the one that
  // is open, after what was done so far has been committed. The log's lines are in its file by then, too, unless units
  // follow each other in quick succession.
  template <typename Operation>
  auto Request(Access access, Operation&& operation) {
    const LoggedUnit loggedUnit(*this);
    UnitOfWork unit(Data(), access);
    FindUserAgain();
    if constexpr (std::is_void_v<std::invoke_result_t<Operation>>) {
      std::forward<Operation>(operation)();
      unit.Commit();
    } else {
      auto result = std::forward<Operation>(operation)();
      if (access == Access::kRead || IsDone(result)) {
        unit.Commit();
      } else {
        unit.TakeBack();
      }
      return result;
    }
  }

  // Runs `operation` in a unit of work that may write and is always taken back; returns what it returns.
  template <typename Operation>
  auto Rehearse(Operation&& operation) {
    const LoggedUnit loggedUnit(*this);
    UnitOfWork unit(Data(), Access::kWrite);
    FindUserAgain();
    auto result = std::forward<Operation>(operation)();
    unit.TakeBack();
    return result;
  }

  // Writes down what the current user has just done, in the unit of work that does it, once in each; returns the number
  // of the line.
  std::int64_t Record(const AuditDeed& deed);

  // The user that was selected, or as whom is acted, as the file had it when it was last looked at.
  const User& CurrentUser() const noexcept;
  // Has all be done as another user than the one that was selected, as long as it lives: by that user's rights, and in
  // the audit trail under that user's name. Made and gone outside of units of work; one at a time.
  class ActingAs {
   public:
    ActingAs(StandaloneHost& host, User user);
    ActingAs(const ActingAs&) = delete;
    ActingAs& operator=(const ActingAs&) = delete;
    ~ActingAs();

   private:
    StandaloneHost& host_;
    User selected_;
  };
  // Looks, within a unit of work and by the name: what others have put in the place of the company, as by a restore,
  // may give the user's number to somebody else. Every request begins with it. Throws UnitOfWorkError when there is no
  // user of that name any more.
  void FindUserAgain();
  // Whether that user is marked an accountant now.
  bool CurrentUserIsAccountant();

  const std::filesystem::path& CompanyFilePath() const noexcept;
  CompanyFile& File() noexcept;
  Database& Data() noexcept;
  AccountTable& Accounts() noexcept;
  NameTable& Names() noexcept;
  UserTable& Users() noexcept;
  SettingsTable& Settings() noexcept;
  TransactionTable& Transactions() noexcept;
  RelationTable& Relations() noexcept;
  IntercompanyTable& Intercompany() noexcept;
  RejectedRequestTable& Rejected() noexcept;
  ApplicationService& App() noexcept;
  // The loop of a host that stays open. Nobody has to run it.
  MessageLoop& Loop() noexcept;
  platform::Clock& Clock() noexcept;
  MessagesService& MessageBoxes() noexcept;
  PreferenceTable& Preferences() noexcept;
  PendingWork& Pending() noexcept;
  AuditTable& Audit() noexcept;
  ImportedFileTable& ImportedFiles() noexcept;
  LedgerQueries& Ledger() noexcept;
  LinkTable& Links() noexcept;
  OwnRequestTable& OwnRequests() noexcept;
  AttachmentTable& Attachments() noexcept;
  PairingTable& Pairings() noexcept;
  FactTable& Facts() noexcept;
  InboxTable& Inbox() noexcept;
  RuleTable& Rules() noexcept;
  OutboxTable& Outbox() noexcept;
  RemarkTable& Remarks() noexcept;
  standalone::ClosedBooks& ClosedBooks() noexcept;
  OperationsLog& Log() noexcept;

  // Told, on the thread of the loop, of each timer that the module arms and of each that is due, right before its
  // procedure runs.
  struct TimerObserver {
    std::function<void(std::chrono::milliseconds period)> onArmed;
    std::function<void()> onDue;
  };
  void SetTimerObserver(TimerObserver observer);

  // Whose rejected transactions the module deletes, by the relation with the partner; everybody's without one.
  void DeleteRejectedOf(std::optional<std::int32_t> relationId) noexcept;

  // How the module books journal entries from now on.
  void BookAs(BookingWish wish);

  // Answers whether the module is just removing a journal entry, which alone may delete one that carries an
  // intercompany row. Without a predicate nobody may.
  void SetRemovalUnderWay(std::function<bool()> predicate);

 private:
  struct Parts;

  // The one before.
  User Become(User user) noexcept;

  class LoggedUnit {
   public:
    explicit LoggedUnit(StandaloneHost& host) noexcept : host_(host) {}
    LoggedUnit(const LoggedUnit&) = delete;
    LoggedUnit& operator=(const LoggedUnit&) = delete;
    ~LoggedUnit();

   private:
    StandaloneHost& host_;
  };

  template <typename Result>
  static bool IsDone(const Result& result) noexcept {
    if constexpr (std::is_same_v<Result, MEStatusCode>) return result == MEStatusSuccess;
    return true;
  }

  std::unique_ptr<Parts> parts_;
};

}  // namespace standalone
