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
#include "standalone/desk/Outbox.h"
#include "standalone/desk/json/Json.h"

namespace app {

namespace {

struct OutboxListOptions {
  std::string file;
  std::optional<std::string> partner;
  bool all = false;
};

struct OutboxRequestOptions {
  std::string file;
  std::string request;
  std::optional<std::string> partner;
  std::string text{std::string()};
};

constexpr std::array kOutboxColumns{"partner",    "realm",       "requestId", "transaction", "line",        "type",
                                    "typeNumber", "date",        "amount",    "currency",    "name",        "memo",
                                    "state",      "stateNumber", "ofBefore",  "sent",        "withdrawing", "lost",
                                    "reason",     "mark",        "disputed"};

void ListOutboxRequests(Invocation& invocation, const OutboxListOptions& options) {
  desk::OutboxFilter filter;
  if (options.partner) filter.partner.emplace(*options.partner);
  filter.settled = options.all;
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::OutboxRequest> requests = desk::ListOutbox(company, filter);
  invocation.ReportList({{"requests", desk::JsonOf(requests)}}, kOutboxColumns, OutboxListText(requests));
}

std::optional<desk::Partner> PartnerOfRequest(const OutboxRequestOptions& options) {
  if (!options.partner) return std::nullopt;
  return desk::Partner(*options.partner);
}

void ShowOutboxRequest(Invocation& invocation, const OutboxRequestOptions& options) {
  const standalone::RequestId request(options.request);
  const std::optional<desk::Partner> partner = PartnerOfRequest(options);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::OutboxRequest shown = desk::ShowOutbox(company, request, partner);
  invocation.Report({{"request", desk::JsonOf(shown)}}, OutboxRequestText(shown, options.file));
}

void WithdrawOutboxRequest(Invocation& invocation, const OutboxRequestOptions& options) {
  const standalone::RequestId request(options.request);
  const std::optional<desk::Partner> partner = PartnerOfRequest(options);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::OutboxRequest withdrawn = desk::WithdrawRequest(company, request, partner);
  invocation.Report({{"request", desk::JsonOf(withdrawn)}},
                    fmt::format("Withdrawing {}. That leaves with the next letters (multientity exchange run {}, or "
                                "exchange export); what the partner has decided by then stands.\n",
                                CalledRequest(withdrawn), AsTyped(options.file)));
}

void NoteOnOutboxRequest(Invocation& invocation, const OutboxRequestOptions& options) {
  const standalone::RequestId request(options.request);
  const standalone::RemarkText text(options.text);
  const std::optional<desk::Partner> partner = PartnerOfRequest(options);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::OutboxRequest noted = desk::NoteOnOwnRequest(company, request, text, partner);
  invocation.Report({{"request", desk::JsonOf(noted)}},
                    fmt::format("Noted on {}.\n", CalledRequest(noted)) + RemarkLeavesText(options.file));
}

CLI::App& AddOutboxRequestCommand(CLI::App& outbox, const char* name, const char* description, const char* example,
                                  OutboxRequestOptions& options) {
  CLI::App& command = AddFileCommand(outbox, name, description, example, options.file);
  command.add_option("REQUEST", options.request, kRequestHelp)->required();
  command.add_option(kPartnerOption, options.partner, kWhichPartnerHelp);
  return command;
}

}  // namespace

void AddOutbox(CLI::App& program, Invocation& invocation) {
  CLI::App& outbox =
      AddGroup(program, "outbox", "See, withdraw and explain what this company asks its partners to book",
               "outbox list alder.company");

  const auto list = std::make_shared<OutboxListOptions>();
  CLI::App& listed = AddFileCommand(outbox, "list", "List the requests to partners that are not settled",
                                    "outbox list alder.company", list->file);
  listed.add_option(kPartnerOption, list->partner, "Only those to this partner: its realm id or its name");
  listed.add_flag("--all", list->all, "Those that are established or closed, too");
  AddCsvOption(listed, invocation.options);
  invocation.When(listed, [list](Invocation& run) { ListOutboxRequests(run, *list); });

  const auto show = std::make_shared<OutboxRequestOptions>();
  CLI::App& shown = AddOutboxRequestCommand(outbox, "show", "Show one request, how far it is and what to do next",
                                            "outbox show alder.company b38b6825-fb4c-418a-b472-4fc5a6afe048", *show);
  invocation.When(shown, [show](Invocation& run) { ShowOutboxRequest(run, *show); });

  const auto withdraw = std::make_shared<OutboxRequestOptions>();
  CLI::App& withdrawn = AddOutboxRequestCommand(
      outbox, "withdraw", "Ask the partner not to book a request that was sent; what it has decided stands",
      "outbox withdraw alder.company b38b6825-fb4c-418a-b472-4fc5a6afe048", *withdraw);
  invocation.When(withdrawn, [withdraw](Invocation& run) { WithdrawOutboxRequest(run, *withdraw); });

  const auto note = std::make_shared<OutboxRequestOptions>();
  CLI::App& noted = AddOutboxRequestCommand(
      outbox, "note", "Tell the partner something about a request that was sent, such as one that it disputes",
      "outbox note alder.company b38b6825-fb4c-418a-b472-4fc5a6afe048 \\\n"
      "    --text \"It is half of the yearly inspection\"",
      *note);
  noted.add_option("--text", note->text, kRemarkHelp)->required();
  invocation.When(noted, [note](Invocation& run) { NoteOnOutboxRequest(run, *note); });
}

}  // namespace app
