#include <fmt/format.h>

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Backup.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct BackupOptions {
  std::string file;
  std::string to;
};

struct RestoreOptions {
  std::string backup;
  std::string file;
  bool replace = false;
};

std::string TrailText(std::int64_t lines, const std::string& head) {
  return fmt::format("Its audit trail has {}; the SHA-256 of the last one is\n{}\n", standalone::Counted(lines, "line"),
                     head);
}

void BackUp(Invocation& invocation, const BackupOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::BackedUp made = desk::BackUp(company, FilePath(options.to));
  invocation.Report(desk::JsonOf(made), fmt::format("Made the backup {} of {}, {} bytes, and found it sound. {}",
                                                    standalone::Shown(options.to), standalone::Shown(options.file),
                                                    made.bytes, TrailText(made.auditLines, made.head)));
}

std::string RestoredText(const RestoreOptions& options, const desk::Restored& done) {
  std::string text = fmt::format("Restored {} from {}, and found it sound. ", standalone::Shown(options.file),
                                 standalone::Shown(options.backup));
  if (done.givenUp != 0) {
    text += fmt::format("What {} of its audit trail told of was given up. ", standalone::Counted(done.givenUp, "line"));
  }
  if (!done.aside.empty())
    text += fmt::format("What was there lies in {}. ", standalone::Shown(standalone::PathText(done.aside)));
  return text + TrailText(done.auditLines, done.head);
}

void Restore(Invocation& invocation, const RestoreOptions& options) {
  const desk::Restored done = desk::Restore({.backup = FilePath(options.backup),
                                             .file = FilePath(options.file),
                                             .user = invocation.options.user,
                                             .replaces = options.replace,
                                             .networkShare = invocation.options.networkShare,
                                             .onOpened = HowToOpen(invocation, options.file).onOpened});
  invocation.TakeSaved();
  invocation.Report(desk::JsonOf(done), RestoredText(options, done));
}

}  // namespace

void AddBackup(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<BackupOptions>();
  CLI::App& command = AddFileCommand(program, "backup",
                                     "Make a backup of a company, while others may work on it; for administrators and\n"
                                     "accountants",
                                     "backup alder.company /backups/alder-2024-12-31.company", options->file);
  command.add_option("TO", options->to, "The backup to make; no file of that name may be there")->required();
  invocation.When(command, [options](Invocation& run) { BackUp(run, *options); });
}

void AddRestore(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<RestoreOptions>();
  CLI::App& command =
      *program.add_subcommand("restore", "Put a backup in the place of a company, or make the company of it");
  command.add_option("BACKUP", options->backup, "The backup; it stays as it is")->required();
  command
      .add_option("FILE", options->file, "The company file; programs that have it open go on with the backup's books")
      ->required();
  command.add_flag("--replace", options->replace,
                   "Also give up what the company has beyond the backup, or move aside a file that cannot be opened");
  AddFooter(command, "restore /backups/alder-2024-12-31.company alder.company");
  invocation.When(command, [options](Invocation& run) { Restore(run, *options); });
}

}  // namespace app
