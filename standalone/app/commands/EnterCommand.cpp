#include <fmt/format.h>

#include <array>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/EntryDialogue.h"
#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Listings.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/app/terminal/Screen.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"

namespace app {

namespace {

using desk::EnteredType;

// What is entered, as the command line has it.
struct Entered {
  EnteredType type;
  const char* command;
  const char* description;
  const char* record;  // what recording does
  const char* example;
  const char* linesHelp;
  const char* creditedOption;  // null when nothing is credited by itself
  const char* creditedHelp;
};

constexpr const char* kLinesOfAPayment =
    "An account, by number or colon-separated name, what it is debited with, the partners' parts included, and a memo "
    "of the line if it has one; again for each line";

constexpr std::array<Entered, 3> kEntered{
    {{.type = EnteredType::kBill,
      .command = "bill",
      .description = "Enter bills, shared with partners or not",
      .record = "Enter a bill: debit its lines and what partners owe, credit the payable account",
      .example = "bill record alder.company --name \"Cold Spring Elevator Company\" --number CS-1017 \\\n"
                 "    --line \"Elevator Maintenance\" 960.00 --partner \"Birch Services Company\" --share 50%",
      .linesHelp = kLinesOfAPayment,
      .creditedOption = "--payable",
      .creditedHelp = "The account of type Accounts Payable that is credited; the only one when left out"},
     {.type = EnteredType::kCheck,
      .command = "check",
      .description = "Enter checks, shared with partners or not",
      .record = "Enter a check: debit its lines and what partners owe, credit the bank account",
      .example = "check record alder.company --name \"Town of Millbrook\" --number 1042 --line Licences 300.00 \\\n"
                 "    --partner 5120774003618 --share 1/3",
      .linesHelp = kLinesOfAPayment,
      .creditedOption = "--bank",
      .creditedHelp = "The account of type Bank or Credit Card that is credited; the only bank account when left out"},
     {.type = EnteredType::kEntry,
      .command = "entry",
      .description = "Enter journal entries of this company's own, shared with partners or not",
      .record = "Enter a journal entry whose lines sum to zero",
      .example = "entry record alder.company --memo \"Insurance of the year\" --line Insurance 1200.00 \\\n"
                 "    --line \"Prepaid Insurance\" -1200.00 --partner \"Birch Services Company\" --share 400.00",
      .linesHelp = "An account, by number or colon-separated name, its debit, or its credit below zero, and a memo of "
                   "the line if it has one; again for each line",
      .creditedOption = nullptr,
      .creditedHelp = nullptr}}};

struct EnterOptions {
  std::string file;
  std::optional<std::string> date;
  std::optional<std::string> name;
  std::optional<std::string> newName;
  std::optional<std::string> memo;
  std::optional<std::string> number;
  std::vector<std::string> lines;  // account, amount and memo of each, a memo that is left out is empty
  std::vector<std::string> partners;
  std::vector<std::string> shares;
  std::optional<std::string> credited;
  std::vector<std::string> attachments;
  std::string txn;                // that is copied or corrected
  std::vector<std::string> lost;  // requests that are taken up again
  bool noPartners = false;
  bool again = false;
  bool dryRun = false;
  bool yes = false;
  desk::ClosedDays closedDays = desk::ClosedDays::kRefused;
};

constexpr std::size_t kFieldsOfALine = 3;

std::optional<DateType32> DateFrom(const EnterOptions& options) {
  if (!options.date) return std::nullopt;
  return standalone::ParseDate("The date", *options.date);
}

std::vector<standalone::Attachment> AttachmentsFrom(const EnterOptions& options) {
  return {options.attachments.begin(), options.attachments.end()};
}

std::vector<desk::EnteredLine> LinesFrom(const EnterOptions& options) {
  std::vector<desk::EnteredLine> lines;
  for (std::size_t at = 0; at + kFieldsOfALine <= options.lines.size(); at += kFieldsOfALine) {
    lines.push_back({.account = options.lines[at],
                     .amount = standalone::LineAmount(options.lines[at + 1]),
                     .memo = standalone::Memo(options.lines[at + 2])});
  }
  return lines;
}

std::vector<desk::PartnersShare> SharesFrom(const EnterOptions& options) {
  if (options.partners.size() != options.shares.size()) {
    throw standalone::InvalidInput(
        fmt::format("{} --partner and {} --share are given; give both for each partner, --partner NAME --share SHARE",
                    options.partners.size(), options.shares.size()));
  }
  std::vector<desk::PartnersShare> shares;
  for (std::size_t i = 0; i < options.partners.size(); ++i) {
    shares.push_back({.partner = options.partners[i], .share = standalone::ShareText(options.shares[i])});
  }
  return shares;
}

desk::TransactionToRecord TransactionFrom(EnteredType type, const EnterOptions& options) {
  desk::TransactionToRecord transaction{.type = type,
                                        .date = DateFrom(options),
                                        .name = {},
                                        .memo = standalone::Memo(options.memo.value_or("")),
                                        .documentNumber = standalone::DocumentNumber(options.number.value_or("")),
                                        .lines = LinesFrom(options),
                                        .shares = SharesFrom(options),
                                        .credited = options.credited,
                                        .attachments = AttachmentsFrom(options),
                                        .again = options.again,
                                        .closedDays = options.closedDays};
  for (const std::string& request : options.lost) transaction.lost.emplace_back(request);
  if (options.name) transaction.name = desk::Existing{*options.name};
  if (options.newName) transaction.name = desk::NewVendor{standalone::NewListName(*options.newName)};
  return transaction;
}

desk::TransactionToCorrect CorrectionFrom(EnteredType type, const EnterOptions& options) {
  desk::TransactionToCorrect given{.type = type,
                                   .txnId = RecordId("transaction id", options.txn),
                                   .date = DateFrom(options),
                                   .name = TransactionFrom(type, options).name,
                                   .lines = LinesFrom(options),
                                   .shares = SharesFrom(options),
                                   .withoutPartners = options.noPartners,
                                   .credited = options.credited,
                                   .attachments = AttachmentsFrom(options),
                                   .again = options.again,
                                   .closedDays = options.closedDays};
  if (options.memo) given.memo = standalone::Memo(*options.memo);
  if (options.number) given.documentNumber = standalone::DocumentNumber(*options.number);
  return given;
}

// Whom nobody can ask.
void RequireComplete(const desk::TransactionToRecord& transaction) {
  if (transaction.lines.empty()) {
    throw standalone::InvalidInput("--line is missing; give each line with --line ACCOUNT AMOUNT");
  }
  if (transaction.type != EnteredType::kEntry && transaction.lost.empty() &&
      std::holds_alternative<std::monostate>(transaction.name)) {
    throw standalone::InvalidInput("--name is missing; give with --name or --new-name whom the " +
                                   std::string(NounOf(transaction.type)) + " is with");
  }
}

const desk::RecordedTransaction& EnteredIn(const desk::RecordedTransaction& transaction) {
  return transaction;
}

const desk::RecordedTransaction& EnteredIn(const desk::CorrectedTransaction& corrected) {
  return corrected.correction;
}

std::string PostedText(const desk::RecordedTransaction& posted) {
  return fmt::format("Posted {} {}.\n", NounOf(posted.type), posted.txnId);
}

std::string PostedText(const desk::CorrectedTransaction& corrected) {
  const char* const noun = NounOf(corrected.correction.type);
  return fmt::format("Reversed {} {} with {} {} and posted {} {} in its place.\n{}", noun, corrected.reversed.txnId,
                     noun, corrected.reversed.reversal.txnId, noun, corrected.correction.txnId,
                     ToTellText(corrected.reversed.toTell));
}

template <typename Entered>
void Report(const Invocation& invocation, const Entered& entered, const std::string& text) {
  Json json = desk::JsonOf(entered);
  json["dryRun"] = EnteredIn(entered).txnId == 0;
  invocation.Report(json, text);
}

// At a terminal, a person sees first what will be posted.
template <typename Enter>
void PreviewAndPost(const Invocation& invocation, const EnterOptions& options, const ReadLine& person,
                    const EntryDialogue& dialogue, Enter&& enter) {
  if (options.dryRun) {
    const auto preview = enter(desk::Posting::kPreviewOnly);
    Report(invocation, preview, EnteredText(EnteredIn(preview)) + "Nothing was posted.\n");
    return;
  }
  const bool isConfirmed = person && !options.yes;
  if (isConfirmed && !dialogue.Confirm(EnteredIn(enter(desk::Posting::kPreviewOnly)))) {
    throw std::runtime_error("it was not confirmed; nothing was saved");
  }
  const auto posted = enter(desk::Posting::kPost);
  Report(invocation, posted, (isConfirmed ? "" : EnteredText(EnteredIn(posted))) + PostedText(posted));
}

ReadLine PersonToAsk(const Invocation& invocation) {
  return invocation.options.json ? ReadLine() : PersonAtTheTerminal(Screen());
}

void Record(Invocation& invocation, EnteredType type, const EnterOptions& options) {
  desk::TransactionToRecord transaction = TransactionFrom(type, options);
  const ReadLine person = PersonToAsk(invocation);
  if (!person) RequireComplete(transaction);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const EntryDialogue dialogue(person, company);
  if (person) {
    desk::RequireMayEnter(company, type);
    dialogue.Complete(transaction);
  }
  PreviewAndPost(invocation, options, person, dialogue,
                 [&](desk::Posting how) { return desk::RecordTransaction(company, transaction, how); });
}

void Copy(Invocation& invocation, EnteredType type, const EnterOptions& options) {
  desk::TransactionToCopy copy{.type = type,
                               .txnId = RecordId("transaction id", options.txn),
                               .date = DateFrom(options),
                               .attachments = AttachmentsFrom(options),
                               .again = options.again,
                               .closedDays = options.closedDays};
  if (options.number) copy.documentNumber = standalone::DocumentNumber(*options.number);
  const ReadLine person = PersonToAsk(invocation);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const EntryDialogue dialogue(person, company);
  PreviewAndPost(invocation, options, person, dialogue,
                 [&](desk::Posting how) { return desk::CopyTransaction(company, copy, how); });
}

void Correct(Invocation& invocation, EnteredType type, const EnterOptions& options) {
  const desk::TransactionToCorrect given = CorrectionFrom(type, options);
  const ReadLine person = PersonToAsk(invocation);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const EntryDialogue dialogue(person, company);
  PreviewAndPost(invocation, options, person, dialogue,
                 [&](desk::Posting how) { return desk::CorrectTransaction(company, given, how); });
}

void AddHowToPost(CLI::App& command, EnterOptions& options) {
  command.add_option("--date", options.date, "The day of the transaction, YYYY-MM-DD; today when left out");
  command.add_option("--attach", options.attachments, "Where a paper of it is, a path or a link; again for each")
      ->allow_extra_args(false);
  AddAfterClose(command, options.closedDays);
  command.add_flag("--dry-run", options.dryRun, "Show what would be posted, and post nothing");
  command.add_flag("--yes", options.yes, "At a terminal, post it without asking");
}

void AddAgain(CLI::App& command, EnterOptions& options) {
  command.add_flag("--again", options.again,
                   "Enter it although a transaction of that type, name and document number is in the books, or the "
                   "partner was sent the like by a request that these books lost");
}

void AddWhatToPost(CLI::App& command, const Entered& entered, const std::shared_ptr<EnterOptions>& options) {
  command.add_option("--name", options->name, "Whom it is with: a name, by number or colon-separated");
  command.add_option("--new-name", options->newName, "The same, a vendor that is to be created")->excludes("--name");
  command.add_option("--memo", options->memo, "The memo of the transaction and of what partners bear");
  command.add_option("--number", options->number, "What the paper calls itself, such as the supplier's bill number");
  command.add_option("--line", options->lines, entered.linesHelp)
      ->type_size(2, kFieldsOfALine)
      ->type_name("ACCOUNT AMOUNT [MEMO]")
      ->allow_extra_args(false);
  command.add_option("--partner", options->partners, "A partner who bears a part, by realm id or name; with a --share")
      ->allow_extra_args(false);
  command
      .add_option("--share", options->shares,
                  "What the partner before it bears: a percentage like 50%, a fraction like 1/3, or an amount")
      ->allow_extra_args(false);
  if (entered.creditedOption != nullptr) {
    command.add_option(entered.creditedOption, options->credited, entered.creditedHelp);
  }
}

void AddRecord(CLI::App& group, Invocation& invocation, const Entered& entered) {
  const auto options = std::make_shared<EnterOptions>();
  CLI::App& command = AddFileCommand(group, "record", entered.record, entered.example, options->file);
  AddWhatToPost(command, entered, options);
  command
      .add_option(
          "--lost", options->lost,
          "A request that the partner knows and these books lost: it is asked for under this one, and date, name, "
          "memo and number are those that were sent; again for each")
      ->type_name("REQUEST")
      ->allow_extra_args(false);
  AddHowToPost(command, *options);
  AddAgain(command, *options);
  invocation.When(command, [type = entered.type, options](Invocation& run) { Record(run, type, *options); });
}

void AddCopy(CLI::App& group, Invocation& invocation, const Entered& entered) {
  const auto options = std::make_shared<EnterOptions>();
  const std::string description =
      fmt::format("Enter a {} once more, with requests of its own to the partners", NounOf(entered.type));
  const std::string example = fmt::format("{} copy alder.company 17 --date 2026-12-01", entered.command);
  CLI::App& command = AddFileCommand(group, "copy", description.c_str(), example.c_str(), options->file);
  command.add_option("TXN", options->txn, "The transaction id of the one that is copied")->required();
  command.add_option("--number", options->number, "The document number of the copy; as the original's when left out");
  AddHowToPost(command, *options);
  AddAgain(command, *options);
  invocation.When(command, [type = entered.type, options](Invocation& run) { Copy(run, type, *options); });
}

void AddCorrect(CLI::App& group, Invocation& invocation, const Entered& entered) {
  const auto options = std::make_shared<EnterOptions>();
  const std::string description = fmt::format(
      "Reverse a {} that was entered here and enter it anew. What is left out stays as it was; new lines need the "
      "shares "
      "of the partners, too",
      NounOf(entered.type));
  const std::string example = fmt::format("{} correct alder.company 17 --memo \"Of March\"", entered.command);
  CLI::App& command = AddFileCommand(group, "correct", description.c_str(), example.c_str(), options->file);
  command.add_option("TXN", options->txn, "The transaction id of the one that is wrong")->required();
  AddWhatToPost(command, entered, options);
  command.add_flag("--no-partners", options->noPartners, "No partner bears a part of the new lines")
      ->excludes("--partner");
  AddHowToPost(command, *options);
  AddAgain(command, *options);
  invocation.When(command, [type = entered.type, options](Invocation& run) { Correct(run, type, *options); });
}

}  // namespace

void AddEnter(CLI::App& program, Invocation& invocation) {
  for (const Entered& entered : kEntered) {
    CLI::App& group = AddGroup(program, entered.command, entered.description, entered.example);
    AddRecord(group, invocation, entered);
    AddCopy(group, invocation, entered);
    AddCorrect(group, invocation, entered);
  }
}

}  // namespace app
