#include <fmt/format.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/PartnerTexts.h"
#include "standalone/app/RequestTexts.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

struct InboxListOptions {
  std::string file;
  std::optional<std::string> partner;
  std::optional<std::string> state;
  bool all = false;
};

struct InboxShowOptions {
  std::string file;
  std::string request;
  std::optional<std::string> partner;
};

struct InboxAcceptOptions {
  std::string file;
  SelectionOptions selection;
  std::optional<std::string> expense;
  std::optional<std::string> newExpense;
  std::string newExpenseType = "Expense";
  std::optional<std::string> name;
  std::optional<std::string> newName;
  std::optional<std::string> date;
  std::optional<std::string> by;
};

struct InboxRejectOptions {
  std::string file;
  SelectionOptions selection;
  std::string reason;
};

struct InboxRemarkOptions {
  std::string file;
  std::string request;
  std::optional<std::string> partner;
  std::string text;
};

constexpr const char* kByRule = "rule";

constexpr std::array kInboxColumns{"partner",
                                   "realm",
                                   "requestId",
                                   "type",
                                   "typeNumber",
                                   "date",
                                   "amount",
                                   "currency",
                                   "documentNumber",
                                   "name",
                                   "memo",
                                   "hint",
                                   "reverses",
                                   "corrects",
                                   "state",
                                   "disputed",
                                   "mark",
                                   "reason",
                                   "entry.transaction",
                                   "entry.date",
                                   "entryBefore.transaction",
                                   "entryBefore.date",
                                   "rule.id",
                                   "ruleMark"};

void ListInboxRequests(Invocation& invocation, const InboxListOptions& options) {
  desk::InboxFilter filter;
  if (options.partner) filter.partner.emplace(*options.partner);
  if (options.state) filter.state = ParseInboxState(*options.state);
  filter.decided = options.all;
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::InboxRequest> requests = desk::ListInbox(company, filter);
  invocation.ReportList({{"requests", desk::JsonOf(requests)}}, kInboxColumns, InboxListText(requests));
}

void ShowInboxRequest(Invocation& invocation, const InboxShowOptions& options) {
  const standalone::RequestId request(options.request);
  std::optional<desk::Partner> partner;
  if (options.partner) partner.emplace(*options.partner);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::InboxRequest shown = desk::ShowInbox(company, request, partner);
  invocation.Report({{"request", desk::JsonOf(shown)}}, InboxRequestText(shown, options.file));
}

bool IsByRule(const InboxAcceptOptions& options) {
  if (options.by && *options.by != kByRule) {
    throw standalone::InvalidInput(
        fmt::format("--by {} is not acceptable; requests are booked by a rule with --by {}, or without --by",
                    standalone::Quoted(*options.by), kByRule));
  }
  return options.by.has_value();
}

desk::RequestBooking BookingOf(const InboxAcceptOptions& options) {
  desk::RequestBooking booking;
  if (options.expense) booking.expense = desk::Existing{*options.expense};
  if (options.newExpense) {
    booking.expense = desk::NewAccount{.name = standalone::NewAccountName(*options.newExpense),
                                       .type = standalone::ParseAccountType(options.newExpenseType)};
  }
  if (options.name) booking.name = desk::Existing{*options.name};
  if (options.newName) booking.name = desk::NewVendor{.name = standalone::NewListName(*options.newName)};
  if (options.date) booking.date = standalone::ParseDate("The date", *options.date);
  booking.byRule = IsByRule(options);
  return booking;
}

// Where and when, and why on another day than the one that was meant.
std::string BookedText(const desk::BookedRequest& booked, const desk::RequestBooking& booking) {
  const desk::InboxRequest& request = booked.request;
  std::string text = fmt::format("Booked {}", CalledRequest(request));
  if (request.entry) {
    text +=
        fmt::format(", as journal entry {} of {}", request.entry->txnId, standalone::FormatIsoDate(request.entry->day));
  }
  if (booked.rule) text += fmt::format(", by rule {}", *booked.rule);
  if (booked.isDateMoved) {
    text += fmt::format("; the books are closed on {}, which was meant",
                        standalone::FormatIsoDate(booking.date.value_or(request.date)));
  }
  return text + ".\n";
}

std::string LettersText(std::size_t decided, const std::string& file) {
  if (decided == 0) return {};
  return fmt::format("{} with the next letters: multientity exchange run {}, or exchange export.\n",
                     decided == 1 ? "The answer leaves" : "The answers leave", AsTyped(file));
}

void AcceptInboxRequests(Invocation& invocation, const InboxAcceptOptions& options) {
  const desk::RequestSelection selection = SelectionOf(options.selection);
  const desk::RequestBooking booking = BookingOf(options);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::BookedRequests done = desk::AcceptRequests(company, selection, booking);
  std::string text;
  for (const desk::BookedRequest& booked : done.booked) text += BookedText(booked, booking);
  invocation.Report({{"booked", desk::JsonOf(done.booked)}, {"left", LeftJson(done.left)}},
                    text + LeftTexts(done.booked.size(), done.left) + LettersText(done.booked.size(), options.file));
  FailForLeft(done.booked.size(), RefusalsOf(done.left));
}

void RejectInboxRequests(Invocation& invocation, const InboxRejectOptions& options) {
  const desk::RequestSelection selection = SelectionOf(options.selection);
  const standalone::Memo reason(options.reason);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::RejectedRequests done = desk::RejectRequests(company, selection, reason);
  std::string text;
  for (const desk::InboxRequest& request : done.rejected) text += fmt::format("Rejected {}.\n", CalledRequest(request));
  invocation.Report(
      {{"rejected", desk::JsonOf(done.rejected)}, {"left", LeftJson(done.left)}},
      text + LeftTexts(done.rejected.size(), done.left) + LettersText(done.rejected.size(), options.file));
  FailForLeft(done.rejected.size(), RefusalsOf(done.left));
}

// DisputeRequest() or NoteOnRequest().
using SaysOfRequest = desk::InboxRequest (*)(desk::Company& company, const standalone::RequestId& request,
                                             const standalone::RemarkText& text,
                                             const std::optional<desk::Partner>& partner);

void SayOfInboxRequest(Invocation& invocation, const InboxRemarkOptions& options, SaysOfRequest says,
                       std::string_view said) {
  const standalone::RequestId request(options.request);
  const standalone::RemarkText text(options.text);
  std::optional<desk::Partner> partner;
  if (options.partner) partner.emplace(*options.partner);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::InboxRequest told = says(company, request, text, partner);
  invocation.Report({{"request", desk::JsonOf(told)}},
                    fmt::format("{} {}.\n", said, CalledRequest(told)) + RemarkLeavesText(options.file));
}

// More than what is named is only meant when that is said.
void AddInboxSelection(CLI::App& command, SelectionOptions& selection) {
  CLI::Option_group* const which =
      command.add_option_group("Requests", "Which ones; one of these has to be given, also for all that wait");
  CLI::Option* const requests =
      which->add_option("REQUEST", selection.requests, "Request ids, as inbox list shows them, behind FILE");
  which->add_option(kPartnerOption, selection.partner, "Of this partner: its realm id or its name");
  which->add_option("--up-to", selection.upTo, "Up to this amount, whatever its sign");
  which->add_flag("--all", selection.all, "All that wait")->excludes(requests);
  which->require_option(1, 0);
}

void AddInboxList(CLI::App& inbox, Invocation& invocation) {
  const auto options = std::make_shared<InboxListOptions>();
  CLI::App& command = AddFileCommand(inbox, "list", "List the requests of partners with which something is left to do",
                                     "inbox list birch.company", options->file);
  command.add_option(kPartnerOption, options->partner, "Only those of this partner: its realm id or its name");
  command.add_option("--state", options->state, "Only those in this state, such as new")->type_name(kInboxStates);
  command.add_flag("--all", options->all, "Those with which nothing is left to do, too");
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { ListInboxRequests(run, *options); });
}

CLI::App& AddInboxRemark(CLI::App& inbox, const char* name, const char* description, const char* example,
                         InboxRemarkOptions& options) {
  CLI::App& command = AddFileCommand(inbox, name, description, example, options.file);
  command.add_option("REQUEST", options.request, kRequestHelp)->required();
  command.add_option(kPartnerOption, options.partner, kWhichPartnerHelp);
  return command;
}

void AddInboxRemarks(CLI::App& inbox, Invocation& invocation) {
  const auto disputed = std::make_shared<InboxRemarkOptions>();
  CLI::App& dispute = AddInboxRemark(
      inbox, "dispute",
      "Tell the partner why a request is not going to be booked as it is, without deciding it.\n"
      "No rule books it any more; accept or reject it when that is settled",
      "inbox dispute birch.company b38b6825-fb4c-418a-b472-4fc5a6afe048 \\\n    --reason \"Our half is 240.00\"",
      *disputed);
  dispute.add_option("--reason", disputed->text, kRemarkHelp)->required();
  invocation.When(dispute,
                  [disputed](Invocation& run) { SayOfInboxRequest(run, *disputed, desk::DisputeRequest, "Disputed"); });

  const auto noted = std::make_shared<InboxRemarkOptions>();
  CLI::App& note = AddInboxRemark(inbox, "note", "Tell the partner something about a request",
                                  "inbox note birch.company b38b6825-fb4c-418a-b472-4fc5a6afe048 \\\n"
                                  "    --text \"We book it as soon as the paper is here\"",
                                  *noted);
  note.add_option("--text", noted->text, kRemarkHelp)->required();
  invocation.When(note, [noted](Invocation& run) { SayOfInboxRequest(run, *noted, desk::NoteOnRequest, "Noted on"); });
}

void AddInboxShow(CLI::App& inbox, Invocation& invocation) {
  const auto options = std::make_shared<InboxShowOptions>();
  CLI::App& command = AddFileCommand(inbox, "show", "Show one request, what has become of it and what to do next",
                                     "inbox show birch.company b38b6825-fb4c-418a-b472-4fc5a6afe048", options->file);
  command.add_option("REQUEST", options->request, kRequestHelp)->required();
  command.add_option(kPartnerOption, options->partner, kWhichPartnerHelp);
  invocation.When(command, [options](Invocation& run) { ShowInboxRequest(run, *options); });
}

void AddInboxAccept(CLI::App& inbox, Invocation& invocation) {
  const auto options = std::make_shared<InboxAcceptOptions>();
  CLI::App& command = AddFileCommand(
      inbox, "accept",
      "Book requests of partners, each as journal entry: debit the expense, credit the due-to account of the "
      "relation.\n"
      "What cannot be booked stays as it is, with the reason",
      "inbox accept birch.company --partner Alder --up-to 500 --new-expense \"Elevator Maintenance\" \\\n"
      "    --new-name \"Cold Spring Elevator Company\"",
      options->file);
  AddInboxSelection(command, options->selection);
  CLI::Option* const by = command
                              .add_option("--by", options->by,
                                          "To the account and the name of the rule that fits each, as rules list "
                                          "shows them")
                              ->type_name(kByRule);
  CLI::Option_group* const expense = command.add_option_group(
      "Expense", "The account that is debited; when left out, that of the entry that a request takes back");
  expense->add_option("--expense", options->expense, kAccountHelp)->excludes(by);
  expense->add_option("--new-expense", options->newExpense, "The name of an account that is to be created")
      ->excludes(by);
  expense->require_option(0, 1);
  command.add_option("--new-expense-type", options->newExpenseType, "The type of the new account")
      ->capture_default_str();
  CLI::Option_group* const name = command.add_option_group(
      "Name", "The name under which they are booked; when left out, the one that each request tells");
  name->add_option("--name", options->name, "A name, by record number, such as #12, or colon-separated")->excludes(by);
  name->add_option("--new-name", options->newName, "A vendor that is to be created")->excludes(by);
  name->require_option(0, 1);
  command.add_option("--date", options->date,
                     "The day of the entries, YYYY-MM-DD; that of each request when left out, or the first day after "
                     "it on which the books are open");
  invocation.When(command, [options](Invocation& run) { AcceptInboxRequests(run, *options); });
}

void AddInboxReject(CLI::App& inbox, Invocation& invocation) {
  const auto options = std::make_shared<InboxRejectOptions>();
  CLI::App& command = AddFileCommand(inbox, "reject", "Reject requests of partners, which are told so",
                                     "inbox reject birch.company b38b6825-fb4c-418a-b472-4fc5a6afe048 \\\n"
                                     "    --reason \"Our half is 240.00\"",
                                     options->file);
  AddInboxSelection(command, options->selection);
  command.add_option("--reason", options->reason, "Why, for the partner, up to 4000 bytes");
  invocation.When(command, [options](Invocation& run) { RejectInboxRequests(run, *options); });
}

}  // namespace

void AddInbox(CLI::App& program, Invocation& invocation) {
  CLI::App& inbox =
      AddGroup(program, "inbox", "See, book, reject and dispute what partner companies ask this one to book",
               "inbox list birch.company");
  AddInboxList(inbox, invocation);
  AddInboxShow(inbox, invocation);
  AddInboxAccept(inbox, invocation);
  AddInboxReject(inbox, invocation);
  AddInboxRemarks(inbox, invocation);
}

}  // namespace app
