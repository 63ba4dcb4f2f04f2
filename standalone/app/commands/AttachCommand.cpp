#include <fmt/format.h>

#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Attachments.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct AttachOptions {
  std::string file;
  std::string txn;
  std::vector<std::string> attachments;
};

std::string NowAttached(const desk::ChangedAttachments& changed) {
  std::string text;
  for (const std::string& attachment : changed.attachments) {
    text += fmt::format("attached: {}\n", standalone::Shown(attachment));
  }
  return text;
}

Json AnswerOf(const desk::ChangedAttachments& changed, const char* what) {
  Json json = desk::JsonOf(changed);
  json[what] = changed.changed;
  return json;
}

void Attach(Invocation& invocation, const AttachOptions& options) {
  const std::int32_t txnId = RecordId("transaction id", options.txn);
  const std::vector<standalone::Attachment> attachments(options.attachments.begin(), options.attachments.end());
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::ChangedAttachments changed = desk::AttachTo(company, txnId, attachments);
  const std::string done =
      changed.changed.empty()
          ? fmt::format("{}: {} {} has that already.\n", kNothingHasChanged, desk::NounOf(changed.type), txnId)
          : fmt::format("Attached {} to {} {}.\n",
                        standalone::Counted(static_cast<std::int64_t>(changed.changed.size()), "paper"),
                        desk::NounOf(changed.type), txnId);
  invocation.Report(AnswerOf(changed, "attached"), done + NowAttached(changed));
}

void Detach(Invocation& invocation, const AttachOptions& options) {
  const std::int32_t txnId = RecordId("transaction id", options.txn);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::ChangedAttachments changed = desk::DetachFrom(company, txnId, options.attachments);
  invocation.Report(AnswerOf(changed, "detached"),
                    fmt::format("Detached {} from {} {}.\n",
                                standalone::Counted(static_cast<std::int64_t>(changed.changed.size()), "paper"),
                                desk::NounOf(changed.type), txnId) +
                        NowAttached(changed));
}

}  // namespace

void AddAttach(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<AttachOptions>();
  CLI::App& command = AddFileCommand(
      program, "attach", "Keep where papers of a bill, check or journal entry are that is in the books already",
      "attach alder.company 17 scans/cs-1017.pdf", options->file);
  command.add_option("TXN", options->txn, "Its transaction id")->required();
  command.add_option("PAPER", options->attachments, "Where a paper of it is, a path or a link, which nobody opens")
      ->required();
  invocation.When(command, [options](Invocation& run) { Attach(run, *options); });
}

void AddDetach(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<AttachOptions>();
  CLI::App& command =
      AddFileCommand(program, "detach", "Keep no longer where papers of a bill, check or journal entry are",
                     "detach alder.company 17 scans/cs-1017.pdf", options->file);
  command.add_option("TXN", options->txn, "Its transaction id")->required();
  command.add_option("PAPER", options->attachments, "What is attached, as show has it")->required();
  invocation.When(command, [options](Invocation& run) { Detach(run, *options); });
}

}  // namespace app
