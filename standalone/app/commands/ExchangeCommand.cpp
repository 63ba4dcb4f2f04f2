#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/CarriedTexts.h"
#include "standalone/app/CompanyWatch.h"
#include "standalone/app/ExchangeTexts.h"
#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/PartnerTexts.h"
#include "standalone/app/RequestTexts.h"
#include "standalone/app/Seconds.h"
#include "standalone/app/TextInput.h"
#include "standalone/app/Values.h"
#include "standalone/app/Workers.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/app/terminal/Termination.h"
#include "standalone/desk/Exchange.h"
#include "standalone/desk/ExchangeStatus.h"
#include "standalone/desk/NewFiles.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Pairing.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

constexpr std::size_t kLongestLetters = std::size_t{8} << 20;

struct ExchangeOptions {
  std::string file;
  std::string partner;
  std::string letters;
  std::optional<std::string> output;
};

struct RunOptions {
  std::vector<std::string> files;
  bool quiet = false;
  bool watch = false;
  bool tellPlaces = false;
  std::optional<std::string> every;
};

struct ConfirmOptions {
  std::string file;
  bool restored = false;
  bool copyEnded = false;
};

struct SendOptions {
  std::string file;
  SelectionOptions selection;
};

std::int64_t FailuresAmong(const std::vector<desk::CarriedWith>& all) {
  return std::ranges::count_if(all, [](const desk::CarriedWith& carried) { return !carried.failure.empty(); });
}

std::string SummaryOf(const std::vector<desk::CarriedWith>& all) {
  if (all.empty()) {
    return "No partner has a folder; give it one with partner folder, or use exchange export and exchange import.\n";
  }
  std::size_t taken = 0;
  std::size_t put = 0;
  for (const desk::CarriedWith& carried : all) {
    taken += carried.taken.size();
    put += carried.put;
  }
  return fmt::format("Carried for {}: {} taken, {} put.\n",
                     standalone::Counted(static_cast<std::int64_t>(all.size()), "partner"),
                     standalone::Counted(static_cast<std::int64_t>(taken), "letter"), put);
}

bool IsNews(const desk::CarriedWith& carried) {
  const bool hasTravelled =
      !carried.taken.empty() || !carried.triedAgain.empty() || carried.sent != 0 || carried.put != 0;
  const bool isAmiss = !carried.failure.empty() || !carried.setAside.empty() || !carried.waiting.empty() ||
                       !carried.notSent.empty() || carried.awaited;
  return hasTravelled || isAmiss;
}

void RunForOne(Invocation& invocation, const RunOptions& options) {
  const std::string& file = options.files.front();
  const bool quiet = options.quiet;
  desk::Company company(FilePath(file), HowToOpen(invocation, file));
  desk::RunEvents events;
  if (options.tellPlaces) {
    events.onBegun = [](const desk::LetterPlaces& places) {
      Print(PlacesLine(places));
    };
  }
  if (!invocation.options.json) {
    events.onPartner = [&](const desk::CarriedWith& carried) {
      if (quiet && !IsNews(carried)) return;
      Print(CarriedText(CarriedJson(carried), file));
      FinishPrinting();
    };
  }
  std::vector<desk::CarriedWith> all = desk::RunExchange(company, events);
  if (quiet) std::erase_if(all, [](const desk::CarriedWith& carried) { return !IsNews(carried); });
  invocation.Report({{"partners", CarriedJson(all)}}, quiet ? "" : SummaryOf(all));
  if (const std::int64_t failures = FailuresAmong(all); failures != 0) {
    throw std::runtime_error(fmt::format(
        "{} could not be reached; the other partners were served. Look whether the disk or the share is there and may "
        "be written, and carry once more; another folder is set with: multientity partner folder {} PARTNER DIR",
        standalone::Counted(failures, "folder"), AsTyped(file)));
  }
}

void RefuseOneTwice(const std::vector<std::string>& files) {
  for (auto file = files.begin(); file != files.end(); ++file) {
    if (std::find(files.begin(), file, *file) == file) continue;
    throw standalone::InvalidInput(fmt::format("{} is given twice; give each company once", standalone::Quoted(*file)));
  }
}

std::vector<std::vector<std::string>> WorkersFor(const Invocation& invocation, const RunOptions& options) {
  RefuseOneTwice(options.files);
  std::vector<std::vector<std::string>> workers;
  for (const std::string& file : options.files) {
    workers.push_back(ArgumentsToCarry(invocation.options, options.quiet || options.watch, file));
  }
  return workers;
}

void RunForAll(Invocation& invocation, const RunOptions& options) {
  WorkersTold told(invocation.options.json);
  RunSideBySide(WorkersFor(invocation, options), [&](std::size_t worker, const platform::EndedProcess& ended) {
    invocation.TakeSaved();
    told.Add(options.files[worker], ended);
  });
  if (invocation.options.json) invocation.Report({{"companies", told.Companies()}}, {});
  told.FailIfOneDid();
}

void Watch(Invocation& invocation, const RunOptions& options) {
  const std::chrono::seconds every = HowOften(options.every);
  std::vector<Carrying> companies;
  for (std::vector<std::string>& arguments : WorkersFor(invocation, options)) {
    companies.push_back({.file = options.files[companies.size()], .arguments = std::move(arguments)});
  }
  std::stop_source end;
  TerminationHandlers handlers;
  handlers.onEnd = [&end](TerminationCause) {
    end.request_stop();
  };
  handlers.watchesInput = false;
  const Termination termination(std::move(handlers));
  const bool json = invocation.options.json;
  if (!json) {
    Print(fmt::format(
        "Letters are carried for {} until Ctrl-C ends it, as soon as something changes and {} after each "
        "run.\n",
        standalone::Counted(static_cast<std::int64_t>(companies.size()), "company", "companies"), SecondsText(every)));
    FinishPrinting();
  }
  CarryAgainAndAgain(companies, every, end, [&](std::size_t worker, const platform::EndedProcess& ended) {
    TellWorker(json, options.files[worker], ended);
  });
}

void Run(Invocation& invocation, const RunOptions& options) {
  if (options.every && !options.watch) {
    throw standalone::InvalidInput("--every says how often --watch looks; give --watch, too");
  }
  if (options.watch) return Watch(invocation, options);
  if (options.files.size() == 1) return RunForOne(invocation, options);
  RunForAll(invocation, options);
}

void ExportLetters(Invocation& invocation, const ExchangeOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  if (options.output) desk::RequireNewFile(company, FilePath(*options.output));
  const std::string text = desk::ExportLetters(company, options.partner);
  const desk::PairedPartner partner = desk::ShowPairedPartner(company, options.partner);
  const bool isWritten = options.output && !text.empty();
  if (isWritten) desk::WriteNewFile(company, FilePath(*options.output), text);
  if (invocation.options.json) {
    invocation.Report({{"partner", partner.name},
                       {"letters", text.empty() ? Json() : Json(text)},
                       {"file", isWritten ? Json(*options.output) : Json()}},
                      {});
    return;
  }
  const std::string name = standalone::Shown(partner.name);
  if (text.empty()) {
    PrintError(fmt::format("There is nothing to tell {}: {}.\n", name, NextStepWith(partner, options.file).why));
  } else if (isWritten) {
    Print(
        fmt::format("Wrote the letters for {} to {}; send it that file.\n", name, standalone::Shown(*options.output)));
  } else {
    PrintData(text);
  }
}

std::string LetterText(const desk::TakenLetter& letter) {
  const std::string whose = letter.partner.empty() ? "a partner that is not known" : standalone::Shown(letter.partner);
  const std::string news =
      letter.facts == 0 ? "nothing new" : standalone::Counted(static_cast<std::int64_t>(letter.facts), "new fact");
  return fmt::format("Took a letter of {}: {}.\n{}", whose, news, TakenText(desk::JsonOf(letter), "  "));
}

void ImportLetters(Invocation& invocation, const ExchangeOptions& options) {
  const std::string text = ReadText("letter", options.letters, kLongestLetters);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::TakenLetter> taken = desk::ImportLetters(company, text);
  std::string told;
  for (const desk::TakenLetter& letter : taken) told += LetterText(letter);
  invocation.Report({{"letters", desk::JsonOf(taken)}}, told);
}

std::string SentText(const std::vector<desk::OutboxRequest>& sent, const std::string& file) {
  std::string text;
  for (const desk::OutboxRequest& request : sent) text += fmt::format("Sent {}.\n", CalledRequest(request));
  if (sent.empty()) return text;
  return text + fmt::format("{} with the next letters: multientity exchange run {}, or exchange export.\n",
                            sent.size() == 1 ? "It leaves" : "They leave", AsTyped(file));
}

void SendRequestsToPartners(Invocation& invocation, const SendOptions& options) {
  const desk::RequestSelection selection = SelectionOf(options.selection);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::SentRequests done = desk::SendRequests(company, selection);
  const bool isNothing = done.sent.empty() && done.left.empty();
  invocation.Report({{"sent", desk::JsonOf(done.sent)}, {"left", LeftJson(done.left)}},
                    isNothing ? "There is nothing to send.\n"
                              : SentText(done.sent, options.file) + LeftTexts(done.sent.size(), done.left));
  FailForLeft(done.sent.size(), RefusalsOf(done.left));
}

constexpr std::array kStatusColumns{"partner",
                                    "realm",
                                    "state",
                                    "waitsFor",
                                    "why",
                                    "toDo",
                                    "hasLetterToSend",
                                    "outstanding",
                                    "notUnderstood",
                                    "folder",
                                    "outbox.entered.count",
                                    "outbox.entered.amount",
                                    "outbox.unanswered.count",
                                    "outbox.unanswered.amount",
                                    "outbox.unanswered.oldest",
                                    "outbox.disputed.count",
                                    "outbox.disputed.amount",
                                    "outbox.disputed.toAnswer",
                                    "outbox.withdrawing.count",
                                    "outbox.withdrawing.amount",
                                    "outbox.cameBack.count",
                                    "outbox.cameBack.amount",
                                    "outbox.lost.count",
                                    "outbox.lost.amount",
                                    "inbox.new.count",
                                    "inbox.new.amount",
                                    "inbox.disputed.count",
                                    "inbox.disputed.amount",
                                    "inbox.disputed.toAnswer",
                                    "inbox.held.count",
                                    "inbox.held.amount",
                                    "inbox.toBookAgain.count",
                                    "inbox.toBookAgain.amount",
                                    "inbox.marked"};

std::string StatusText(const desk::PairedPartner& partner, const StandingWith& standing) {
  std::string text = fmt::format("{}: {}\n", standalone::Shown(partner.name), standing.why);
  for (const std::string& requests : standing.requests) text += fmt::format("  {}\n", requests);
  for (const std::string& outstanding : partner.outstanding) {
    text += fmt::format("  outstanding: {}\n", standalone::Shown(outstanding));
  }
  for (const std::string& notUnderstood : partner.notUnderstood) {
    text += fmt::format("  not understood before a later version reads it: {}\n", standalone::Shown(notUnderstood));
  }
  for (const std::string& step : standing.toDo) text += fmt::format("  {}\n", step);
  return text;
}

Json StatusJson(const desk::ExchangeStatus& status, const StandingWith& standing) {
  Json row = desk::JsonOf(status.partner);
  row["waitsFor"] = standing.waitsFor;
  row["why"] = standing.why;
  row["toDo"] = standing.toDo.empty() ? Json() : Json(standing.toDo.front());
  row["allToDo"] = standing.toDo;
  row["outbox"] = status.outbox ? desk::JsonOf(*status.outbox) : Json();
  row["inbox"] = status.inbox ? desk::JsonOf(*status.inbox) : Json();
  return row;
}

void ShowStatus(Invocation& invocation, const ExchangeOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::optional<desk::Awaited> awaited = desk::TellAwaited(company);
  Json rows = Json::array();
  std::string text;
  for (const desk::ExchangeStatus& status : desk::TellExchangeStatus(company)) {
    const StandingWith standing = StandingOf(status, options.file);
    rows.push_back(StatusJson(status, standing));
    text += StatusText(status.partner, standing);
  }
  if (text.empty()) {
    text = fmt::format(
        "No partners are paired; invite the first one with: multientity partner invite {} --name NAME "
        "--due-from ACCOUNT --due-to ACCOUNT\n",
        AsTyped(options.file));
  }
  if (awaited) text = AwaitedText(*awaited, options.file, "") + text;
  invocation.ReportList({{"partners", rows}, {"awaited", awaited ? desk::JsonOf(*awaited) : Json()}}, kStatusColumns,
                        text);
}

void AddExchangeSend(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<SendOptions>();
  CLI::App& command = AddFileCommand(group, "send",
                                     "Have what was entered with a partner's share go to the partner with the next "
                                     "letters: all that was entered since\n"
                                     "the pairing, or what is named",
                                     "exchange send alder.company --partner Birch", options->file);
  command.add_option("REQUEST", options->selection.requests,
                     "Request ids, as outbox list shows them, behind FILE, whenever they were entered");
  command.add_option(kPartnerOption, options->selection.partner, "Only to this partner: its realm id or its name");
  invocation.When(command, [options](Invocation& run) { SendRequestsToPartners(run, *options); });
}

void AddExchangeRun(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<RunOptions>();
  CLI::App& command = AddFilesCommand(
      group, "run",
      "Carry letters once: take all that lies in the partners' folders for each company, and put what is to be told.\n"
      "Several companies are carried for side by side, and none stops another one. Ends with 1 when a folder could "
      "not\nbe reached, once the other partners were served",
      "exchange run alder.company birch.company", options->files);
  command.add_flag("--quiet", options->quiet, "Only of partners of whom there is something to tell");
  command.add_flag(
      "--watch", options->watch,
      "Go on until Ctrl-C or a request to terminate: carry as soon as a letter comes or the books change, and "
      "again and\nagain, tell as with --quiet");
  command.add_option("--every", options->every,
                     "With --watch: how many seconds after a run the next one comes in any case (60)");
  command.add_flag(kTellPlaces, options->tellPlaces)->group("");
  invocation.When(command, [options](Invocation& run) { Run(run, *options); });
}

void AddExchangeExport(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<ExchangeOptions>();
  CLI::App& command =
      AddFileCommand(group, "export", "Write the letters for a partner as a block of text, for a mail or a stick",
                     "exchange export alder.company \"Birch Services Company\" --output birch.letters", options->file);
  command.add_option("PARTNER", options->partner, "The partner: its realm id, or its name")->required();
  command.add_option("--output", options->output, "A new file for the letters; standard output when left out");
  invocation.When(command, [options](Invocation& run) { ExportLetters(run, *options); });
}

void AddExchangeImport(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<ExchangeOptions>();
  CLI::App& command = AddFileCommand(group, "import", "Take the letters of a block of text, or of a mail with it",
                                     "exchange import alder.company birch.letters", options->file);
  command.add_option("LETTERS", options->letters, "The file with the letters, or the mail; - for standard input")
      ->required();
  invocation.When(command, [options](Invocation& run) { ImportLetters(run, *options); });
}

void InsistOn(Invocation& invocation, const ExchangeOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  desk::InsistOnBooks(company);
  invocation.Report({{"insisted", true}}, "The books go on as they are, although partners may hold what they lack.\n");
}

void ConfirmCameBack(Invocation& invocation, const ConfirmOptions& options) {
  if (options.restored == options.copyEnded) {
    throw standalone::InvalidInput(
        "say which it was: --restored if a backup was restored here, or --copy-ended once a copy of the company that "
        "was at work does not work any more");
  }
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::int64_t confirmed =
      desk::ConfirmCameBack(company, options.restored ? desk::WhyCameBack::kRestored : desk::WhyCameBack::kCopyEnded);
  invocation.Report({{"confirmed", confirmed}, {"as", options.restored ? "restored" : "copy-ended"}},
                    fmt::format("Confirmed that {} came back because {}; what was held up goes on with: multientity "
                                "exchange run {}\n",
                                standalone::Counted(confirmed, "fact"),
                                options.restored ? "a backup was restored" : "a copy was at work, which has ended",
                                AsTyped(options.file)));
}

void AddExchangeConfirm(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<ConfirmOptions>();
  CLI::App& command = AddFileCommand(
      group, "confirm",
      "Confirm why facts of this company came back from its partners that its books never made, so that things are\n"
      "decided and sent again; for administrators. Give one of both options",
      "exchange confirm alder.company --restored", options->file);
  command.add_flag("--restored", options->restored, "A backup was restored here");
  command.add_flag("--copy-ended", options->copyEnded,
                   "A copy of the company was at work elsewhere, and does not work any more");
  invocation.When(command, [options](Invocation& run) { ConfirmCameBack(run, *options); });
}

void AddExchangeInsist(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<ExchangeOptions>();
  CLI::App& command = AddFileCommand(
      group, "insist",
      "Go on with restored books that lack what partners were told, without waiting until each partner has shown what\n"
      "it holds; for administrators",
      "exchange insist alder.company", options->file);
  invocation.When(command, [options](Invocation& run) { InsistOn(run, *options); });
}

void AddExchangeStatus(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<ExchangeOptions>();
  CLI::App& command = AddFileCommand(group, "status", "Tell of each partner what waits for whom, and what to do next",
                                     "exchange status alder.company", options->file);
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { ShowStatus(run, *options); });
}

}  // namespace

void AddExchange(CLI::App& program, Invocation& invocation) {
  CLI::App& group = AddGroup(program, "exchange", "Exchange signed and sealed letters with partner companies",
                             "exchange run alder.company");
  AddExchangeSend(group, invocation);
  AddExchangeRun(group, invocation);
  AddExchangeExport(group, invocation);
  AddExchangeImport(group, invocation);
  AddExchangeStatus(group, invocation);
  AddExchangeConfirm(group, invocation);
  AddExchangeInsist(group, invocation);
}

}  // namespace app
