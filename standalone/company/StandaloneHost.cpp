#include "standalone/company/StandaloneHost.h"

#include <stdexcept>
#include <string>

#include "platform/LoopPlatform.h"
#include "standalone/books/LinesAhead.h"
#include "standalone/services/ChartOfAccountsService.h"
#include "standalone/services/MoneyService.h"
#include "standalone/services/MultiEntityStore.h"
#include "standalone/services/NameListService.h"
#include "standalone/services/PermissionsService.h"
#include "standalone/services/PreferencesService.h"
#include "standalone/services/QueryEngineService.h"
#include "standalone/services/RemoteConfiguration.h"
#include "standalone/services/RuntimeService.h"
#include "standalone/services/TargetLinesService.h"
#include "standalone/storage/ReadOnce.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

User SelectUser(CompanyFile& file, UserTable& users, const std::string& name) {
  UnitOfWork unit(file.Data(), Access::kRead);
  User user = users.Require(name);
  unit.Commit();
  if (file.IsWorkedOnAlone() && !user.administrator) {
    throw InvalidInput("The user " + Quoted(user.name) + " is no administrator. The company file " +
                       PathText(file.Path()) +
                       " lies on a network share; only an administrator may insist on working there.");
  }
  return user;
}

OpenOptions WithClock(OpenOptions options, const TrailClock& clock) {
  options.clock = clock;
  return options;
}

// Before anything is opened: a year that does not fit would be cut to another one.
platform::Clock& RightClock(platform::Clock& clock) {
  if (platform::CanDateBy(clock.Now())) return clock;
  throw std::runtime_error("The clock of this machine shows no time of the years from " +
                           std::to_string(platform::kFirstYearOfDates) + " to " + std::to_string(platform::kLastYear) +
                           "; set it right before you work on a company.");
}

// None for a company that is only read: nothing is written beside it.
std::filesystem::path LogPathOf(const CompanyFile& file) {
  return file.IsOnlyRead() ? std::filesystem::path() : CompanyFile::LogPath(file.Path());
}

}  // namespace

// In the order in which they are built upon each other.
struct StandaloneHost::Parts {
  Parts(StandaloneHost& host, const std::filesystem::path& companyFile, const std::string& userName,
        HostOptions options)
      : trailClock{.clock = options.clock, .setTo = options.clockSetTo},
        clock(RightClock(trailClock.clock != nullptr ? *trailClock.clock : platform::SystemClock())),
        file(companyFile, WithClock(options.file, trailClock)),
        users(file.Data()),
        user(SelectUser(file, users, userName)),
        log(LogPathOf(file), user.name, options.log, clock),
        remote(CompanyFile::RemotePath(file.Path()), file.Data()),
        messages(file.Data(), std::move(options.answerer)),
        application(file.Data(), log, std::move(options.commandRunner)),
        events(
            platform::MakeLoopEvents(options.loopClock != nullptr ? *options.loopClock : platform::SteadyLoopClock())),
        loop(host, *events) {}

  TrailClock trailClock;
  platform::Clock& clock;
  CompanyFile file;
  UserTable users;
  User user;
  ReadOnce<bool> foundUser{file.Data()};
  OperationsLog log;
  RemoteConfiguration remote;
  MessagesService messages;
  AccountTable accounts{file.Data()};
  NameTable names{file.Data()};
  SettingsTable settings{file.Data()};
  TransactionTable transactions{file.Data()};
  LinesAhead linesAhead{file.Data()};
  PreferenceTable preferenceTable{file.Data()};
  AuditTable audit{file.Data()};
  bool hasRecorded = false;  // in the unit of work that is open
  ImportedFileTable importedFiles{file.Data()};
  LedgerQueries ledger{file.Data()};
  LinkTable links{file.Data()};
  OwnRequestTable ownRequests{file.Data()};
  AttachmentTable attachments{file.Data()};
  PairingTable pairings{file.Data()};
  FactTable facts{file.Data()};
  InboxTable inbox{file.Data()};
  RuleTable rules{file.Data()};
  OutboxTable outbox{file.Data()};
  RemarkTable remarks{file.Data()};
  standalone::ClosedBooks closedBooks{file.Data()};
  RelationTable relations{file.Data()};
  IntercompanyTable intercompany{file.Data(), linesAhead};
  RejectedRequestTable rejected{file.Data()};
  ApplicationService application;
  std::unique_ptr<platform::LoopEvents> events;
  platform::LoopPlatform system{*events, clock};
  MessageLoop loop;
  PendingWork pending{
      file.Data(),
      {.relations = relations, .intercompany = intercompany, .pairings = pairings, .inbox = inbox, .facts = facts}};
  RuntimeService runtime;
  DatabasePreferencesService databasePreferences{preferenceTable};
  PreferencesService preferences{settings, application};
  MultiEntityStore multiEntity{relations, intercompany, rejected, clock};
  PermissionsService permissions{file.Data(), users, user};
  ChartOfAccountsService chart{file.Data(), accounts};
  NameListService nameList{file.Data(), names};
  JournalService journal{file.Data(), chart, names, transactions, intercompany, settings, clock};
  TargetLinesService lines{transactions, linesAhead, accounts, nameList};
  QueryEngineService queries{transactions};
  MoneyService money{settings};
  HostServices services{.ops = log,
                        .runtime = runtime,
                        .killSwitches = remote,
                        .remoteValues = remote,
                        .databasePreferences = databasePreferences,
                        .preferences = preferences,
                        .multiEntity = multiEntity,
                        .permissions = permissions,
                        .accounts = chart,
                        .names = nameList,
                        .journal = journal,
                        .lines = lines,
                        .queries = queries,
                        .money = money,
                        .application = application,
                        .messages = messages,
                        .platform = &system};
};

StandaloneHost::StandaloneHost(const std::filesystem::path& companyFile, const std::string& userName,
                               HostOptions options)
    : parts_(std::make_unique<Parts>(*this, companyFile, userName, std::move(options))) {
  parts_->messages.SetWaiting([this] { return WaitingText(parts_->pending.Count()); });
}

StandaloneHost::~StandaloneHost() = default;

const HostServices& StandaloneHost::Services() const noexcept {
  return parts_->services;
}

const User& StandaloneHost::CurrentUser() const noexcept {
  return parts_->user;
}

User StandaloneHost::Become(User user) noexcept {
  parts_->foundUser.Forget();
  parts_->permissions.ForgetUser();
  return std::exchange(parts_->user, std::move(user));
}

StandaloneHost::ActingAs::ActingAs(StandaloneHost& host, User user)
    : host_(host), selected_(host.Become(std::move(user))) {}

StandaloneHost::ActingAs::~ActingAs() {
  host_.Become(std::move(selected_));
}

void StandaloneHost::FindUserAgain() {
  if (parts_->foundUser.Held() != nullptr) return;
  std::optional<User> found = parts_->users.Find(parts_->user.name);
  if (!found) {
    throw UnitOfWorkError("The company file " + PathText(CompanyFilePath()) + " has no user " +
                          Quoted(parts_->user.name) +
                          " any more, as after a restore. Nothing can be done in it; open it again as another user.");
  }
  parts_->user = *std::move(found);
  parts_->foundUser.Hold(true);
}

bool StandaloneHost::CurrentUserIsAccountant() {
  return InReadingUnit(Data(), [this] {
    FindUserAgain();
    return parts_->users.IsAccountant(parts_->user.id);
  });
}

const std::filesystem::path& StandaloneHost::CompanyFilePath() const noexcept {
  return parts_->file.Path();
}

CompanyFile& StandaloneHost::File() noexcept {
  return parts_->file;
}

Database& StandaloneHost::Data() noexcept {
  return parts_->file.Data();
}

AccountTable& StandaloneHost::Accounts() noexcept {
  return parts_->accounts;
}

NameTable& StandaloneHost::Names() noexcept {
  return parts_->names;
}

UserTable& StandaloneHost::Users() noexcept {
  return parts_->users;
}

SettingsTable& StandaloneHost::Settings() noexcept {
  return parts_->settings;
}

TransactionTable& StandaloneHost::Transactions() noexcept {
  return parts_->transactions;
}

RelationTable& StandaloneHost::Relations() noexcept {
  return parts_->relations;
}

IntercompanyTable& StandaloneHost::Intercompany() noexcept {
  return parts_->intercompany;
}

RejectedRequestTable& StandaloneHost::Rejected() noexcept {
  return parts_->rejected;
}

ApplicationService& StandaloneHost::App() noexcept {
  return parts_->application;
}

MessageLoop& StandaloneHost::Loop() noexcept {
  return parts_->loop;
}

PreferenceTable& StandaloneHost::Preferences() noexcept {
  return parts_->preferenceTable;
}

PendingWork& StandaloneHost::Pending() noexcept {
  return parts_->pending;
}

AuditTable& StandaloneHost::Audit() noexcept {
  return parts_->audit;
}

ImportedFileTable& StandaloneHost::ImportedFiles() noexcept {
  return parts_->importedFiles;
}

LedgerQueries& StandaloneHost::Ledger() noexcept {
  return parts_->ledger;
}

LinkTable& StandaloneHost::Links() noexcept {
  return parts_->links;
}

OwnRequestTable& StandaloneHost::OwnRequests() noexcept {
  return parts_->ownRequests;
}

AttachmentTable& StandaloneHost::Attachments() noexcept {
  return parts_->attachments;
}

PairingTable& StandaloneHost::Pairings() noexcept {
  return parts_->pairings;
}

FactTable& StandaloneHost::Facts() noexcept {
  return parts_->facts;
}

InboxTable& StandaloneHost::Inbox() noexcept {
  return parts_->inbox;
}

RuleTable& StandaloneHost::Rules() noexcept {
  return parts_->rules;
}

OutboxTable& StandaloneHost::Outbox() noexcept {
  return parts_->outbox;
}

RemarkTable& StandaloneHost::Remarks() noexcept {
  return parts_->remarks;
}

ClosedBooks& StandaloneHost::ClosedBooks() noexcept {
  return parts_->closedBooks;
}

std::int64_t StandaloneHost::Record(const AuditDeed& deed) {
  // Whoever opens the company after a crash relies on it.
  if (std::exchange(parts_->hasRecorded, true)) throw std::logic_error("a unit of work adds one line to the trail");
  return parts_->audit.Append(StampNow(parts_->trailClock, parts_->user.name), deed);
}

platform::Clock& StandaloneHost::Clock() noexcept {
  return parts_->clock;
}

void StandaloneHost::SetTimerObserver(TimerObserver observer) {
  parts_->system.SetArmingObserver(std::move(observer.onArmed));
  parts_->loop.SetTimerObserver(std::move(observer.onDue));
}

MessagesService& StandaloneHost::MessageBoxes() noexcept {
  return parts_->messages;
}

OperationsLog& StandaloneHost::Log() noexcept {
  return parts_->log;
}

void StandaloneHost::SetRemovalUnderWay(std::function<bool()> predicate) {
  parts_->journal.SetRemovalUnderWay(std::move(predicate));
}

void StandaloneHost::DeleteRejectedOf(std::optional<std::int32_t> relationId) noexcept {
  parts_->multiEntity.DeleteRejectedOf(relationId);
}

void StandaloneHost::BookAs(BookingWish wish) {
  parts_->journal.BookAs(std::move(wish));
}

StandaloneHost::LoggedUnit::~LoggedUnit() {
  host_.parts_->hasRecorded = false;
  host_.parts_->log.EndUnit();
}

}  // namespace standalone
