#include "standalone/desk/Backup.h"

#include <exception>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "standalone/company/Backup.h"
#include "standalone/company/FileNames.h"
#include "standalone/company/Restore.h"
#include "standalone/desk/Openings.h"
#include "standalone/desk/inside/LocalTimes.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::PathText;

void RecordBackup(Work& work, const char* action, const std::filesystem::path& to) {
  work.Write([&] {
    work.RequireAdministratorOrAccountant("a backup", "made");
    work.Host().Record({.action = action, .subject = PathText(to.filename()), .transactions = {}, .changes = {}});
  });
}

// As far as the company can be written.
void TryToRecordFailure(Work& work, const std::filesystem::path& to) noexcept {
  try {
    RecordBackup(work, "company.backup.fail", to);
  } catch (const std::exception&) {
    // Whoever asked for the backup is told of it in any case.
    return;
  }
}

[[noreturn]] void Refuse(std::string why, Remedy remedy) {
  throw Refused({.what = UseCase::kRestore, .status = {}, .why = std::move(why), .remedy = remedy});
}

void RequireAdministrator(bool isOne, const std::string& user, const std::filesystem::path& file) {
  if (isOne) return;
  Refuse("The user " + standalone::Quoted(user) + " is no administrator of " + PathText(file) +
             "; a restore may only be done by one.",
         Remedy::kAskAnAdministrator);
}

std::string Described(const standalone::AuditLine& line) {
  return "line " + std::to_string(line.number) + " of " + standalone::FormatDayAndTime(LocalTimeAt(line.at), ' ') +
         ", by " + (line.user.empty() ? "the program" : line.user) + ": " + line.action + " " + line.subject;
}

void RequireNothingToGiveUp(const standalone::BeforeRestore& before, const std::filesystem::path& file) {
  if (before.linesToGiveUp == 0) return;
  const bool isOne = before.linesToGiveUp == 1;
  Refuse("The audit trail of " + PathText(file) + " has " + standalone::Counted(before.linesToGiveUp, "line") +
             " that the backup lacks, so what " + (isOne ? "it tells" : "they tell") +
             " of would be given up. The last one is " + Described(*before.lastToGiveUp) + ".",
         Remedy::kBackUpThenReplace);
}

void RequireOtherFile(const RestoreOrder& order) {
  std::error_code ignored;
  if (!std::filesystem::equivalent(order.backup, order.file, ignored)) return;
  throw standalone::InvalidInput("The backup " + PathText(order.backup) + " and the company " + PathText(order.file) +
                                 " are the same file; name the company that the backup is to be restored to.");
}

void RequireReplacing(const RestoreOrder& order, const std::string& why) {
  if (!order.replaces) Refuse(why, Remedy::kReplace);
  if (std::filesystem::is_regular_file(order.file)) return;
  throw standalone::CompanyFileError(PathText(order.file) + " is no file, and is not replaced. Choose another name.");
}

standalone::Restored PutInto(standalone::CompanyFile& company, standalone::BackupCopy& backup,
                             const RestoreOrder& order) {
  RequireAdministrator(standalone::IsAdministrator(company.Data(), order.user), order.user, order.file);
  return backup.PutInto(company, order.user, [&order](const standalone::BeforeRestore& before) {
    RequireAdministrator(before.userIsAdministrator, order.user, order.file);
    if (!order.replaces) RequireNothingToGiveUp(before, order.file);
  });
}

// Nothing when there is no company, or none that can be opened and the order replaces it.
std::optional<standalone::Restored> PutIntoWhatIsThere(standalone::BackupCopy& backup, const RestoreOrder& order,
                                                       const standalone::OpenOptions& options) {
  if (!standalone::IsThere(order.file)) return std::nullopt;
  try {
    standalone::CompanyFile company(order.file, options);
    return PutInto(company, backup, order);
  } catch (const standalone::DamagedFile& damaged) {
    RequireReplacing(order, "The company file " + PathText(order.file) + " is damaged (" + damaged.Reason() + ").");
  } catch (const standalone::NotACompanyFile&) {
    RequireReplacing(order, PathText(order.file) + " is not a company file.");
  }
  return std::nullopt;
}

standalone::Restored MakeCompanyOf(standalone::BackupCopy& backup, const RestoreOrder& order) {
  RequireAdministrator(standalone::IsAdministrator(backup.Data(), order.user), order.user, order.backup);
  const std::filesystem::path left = standalone::LeftBeside(order.file);
  if (!order.replaces && !left.empty()) {
    Refuse(PathText(left) + " is left of another company of that name.", Remedy::kReplace);
  }
  // The file behind a link is replaced, not the link.
  return backup.PutInPlaceOf(standalone::BehindItsLinks(order.file), order.user);
}

}  // namespace

BackedUp BackUp(Company& company, const std::filesystem::path& to) {
  Work work(company.Opened(), UseCase::kBackUp);
  work.RequireAdministratorOrAccountant("a backup", "made");
  standalone::RequireFreeForBackup(to, work.Host().CompanyFilePath());
  RecordBackup(work, "company.backup", to);
  try {
    standalone::Backup made = standalone::MakeBackup(work.Host().File().Data(), to);
    return {.file = to, .bytes = made.bytes, .auditLines = made.auditLines, .head = std::move(made.head)};
  } catch (...) {
    TryToRecordFailure(work, to);
    throw;
  }
}

Restored Restore(const RestoreOrder& order) {
  RequireOtherFile(order);
  const std::unique_ptr<platform::Clock> clock = GivenClock();
  standalone::OpenOptions options = HowToOpen(order.networkShare, order.onOpened);
  options.clock = {.clock = clock.get(), .setTo = ClockSetTo()};
  standalone::BackupCopy backup(order.backup, options);
  std::optional<standalone::Restored> restored = PutIntoWhatIsThere(backup, order, options);
  standalone::Restored done = restored ? *std::move(restored) : MakeCompanyOf(backup, order);
  return {.file = order.file,
          .auditLines = done.auditLines,
          .head = std::move(done.head),
          .givenUp = done.givenUp,
          .aside = std::move(done.aside)};
}

}  // namespace desk
