#include "standalone/app/RequestTexts.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "standalone/app/PartnerTexts.h"
#include "standalone/app/Values.h"
#include "standalone/app/terminal/Table.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/States.h"
#include "standalone/values/Suggestions.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

using desk::InboxRequest;
using desk::OutboxRequest;
using standalone::FormatIsoDate;
using standalone::InboxState;
using standalone::Shown;
using standalone::TransactionState;

const char* TypeText(std::int16_t type) {
  return desk::NounOf(desk::EnteredType{type});
}

template <typename Request>
const char* DisputedText(const Request& request) {
  return request.isDisputed ? ", disputed" : "";
}

std::string StateOfInbox(const InboxRequest& request) {
  return std::string(NameOf(request.state)) + DisputedText(request);
}

std::string StateOfOutbox(const OutboxRequest& request) {
  const std::string state = request.isLost || !request.state ? "lost"
                            : request.isWithdrawing          ? "withdrawing"
                                                             : standalone::MarkedStateName(*request.state);
  return state + DisputedText(request);
}

bool IsOpen(const OutboxRequest& request) {
  if (request.isLost || !request.state || request.state->ofBefore) return false;
  const TransactionState state = request.state->number;
  return state == TransactionState::kEntered || state == TransactionState::kSent ||
         state == TransactionState::kCameBack;
}

// Of those that count; none when there are none, or when they are more than can be counted.
template <typename Request, typename Counts>
std::optional<standalone::Money> SumOf(const std::vector<Request>& requests, Counts counts) {
  std::optional<standalone::Money> sum;
  for (const Request& request : requests) {
    if (!counts(request)) continue;
    if (!sum) {
      sum = request.amount;
      continue;
    }
    const std::optional<std::int64_t> more = standalone::AddAmounts(sum->minorUnits, request.amount.minorUnits);
    if (!more) return std::nullopt;
    sum->minorUnits = *more;
  }
  return sum;
}

template <typename Request>
std::string WhoSays(const Request& request, const desk::Remark& remark) {
  return remark.isOurs ? "this company" : request.partner;
}

// What was said last in a dispute, with whoever began it.
template <typename Request>
std::string DisputeText(const Request& request) {
  const auto dispute = std::ranges::find(request.remarks, true, &desk::Remark::isDispute);
  const desk::Remark& last = request.remarks.back();
  const std::string disputed = "disputed by " + WhoSays(request, *dispute);
  return last.isDispute ? disputed + ": " + last.text
                        : disputed + "; " + WhoSays(request, last) + " says: " + last.text;
}

// A sentence for each that a person has to look at closely, and for each that is disputed.
template <typename Request>
std::string MarksOf(const std::vector<Request>& requests) {
  std::string text;
  const auto add = [&text](const Request& request, const std::string& what) {
    text += Wrapped(fmt::format("{} of {}: {}", Shown(request.requestId), Shown(request.partner), Shown(what))) + '\n';
  };
  for (const Request& request : requests) {
    if (!request.mark.empty()) add(request, request.mark);
    if (request.isDisputed) add(request, DisputeText(request));
  }
  return text;
}

std::string OrAny(const std::string& condition) {
  return condition.empty() ? "any" : condition;
}

void AddValue(std::string& text, std::string_view what, std::string_view value) {
  if (!value.empty()) text += fmt::format("{:<14} {}\n", fmt::format("{}:", what), Shown(value));
}

// What both kinds of requests have.
template <typename Request>
void AddCommonValues(std::string& text, const Request& request) {
  AddValue(text, "Request", request.requestId);
  AddValue(text, "Partner", fmt::format("{} (realm {})", request.partner, request.realm));
  AddValue(text, "Type", TypeText(request.type));
  AddValue(text, "Date", FormatIsoDate(request.date));
  AddValue(text, "Amount", AmountWithCurrency(request.amount));
  AddValue(text, "Name", request.name);
  AddValue(text, "Memo", request.memo);
}

template <typename Request>
void AddRemarks(std::string& text, const Request& request) {
  for (const desk::Remark& remark : request.remarks) {
    AddValue(text, remark.isDispute ? "Dispute" : "Note", fmt::format("{}: {}", WhoSays(request, remark), remark.text));
  }
}

// "FILE REQUEST --partner PARTNER", as a command takes them.
template <typename Request>
std::string WhichRequest(const Request& request, const std::string& file) {
  return fmt::format("{} {} --partner {}", AsTyped(file), AsTyped(request.requestId), AsTyped(request.partner));
}

std::string EntryText(const std::optional<desk::EntryOfRequest>& entry) {
  return entry ? fmt::format("journal entry {} of {}", entry->txnId, FormatIsoDate(entry->day)) : "";
}

std::string EarlierText(const desk::EarlierOfPartner& earlier) {
  return earlier.reverses ? fmt::format("takes back request {}", earlier.requestId)
                          : fmt::format("stands in the place of request {}", earlier.requestId);
}

bool TakesBack(const InboxRequest& request) {
  return request.earlier && request.earlier->reverses;
}

// The entry that one takes back says where, or a rule does.
std::string HowToBook(const InboxRequest& request, const std::string& file) {
  const char* const where = request.rule ? " --by rule" : TakesBack(request) ? "" : " --expense ACCOUNT";
  return fmt::format("multientity inbox accept {}{}", WhichRequest(request, file), where);
}

std::string HowToReject(const InboxRequest& request, const std::string& file) {
  return fmt::format("multientity inbox reject {} --reason TEXT", WhichRequest(request, file));
}

std::string NextOfDisputed(const InboxRequest& request, const std::string& file) {
  return fmt::format(
      "wait for what {} does; or answer with: multientity inbox note {} --text TEXT; or decide it: {}reject it with: "
      "{}",
      request.partner, WhichRequest(request, file),
      request.state == InboxState::kNew ? fmt::format("book it with: {}; or ", HowToBook(request, file)) : "",
      HowToReject(request, file));
}

// What a rule says of a request.
std::string TargetText(const desk::Rule& rule) {
  return fmt::format("{}{}, to {}, {}", rule.id, rule.isLearned ? " (learned)" : "", rule.account.name,
                     rule.bookedAs ? "as " + rule.bookedAs->name : "under its own name");
}

std::string NextOfInbox(const InboxRequest& request, const std::string& file) {
  if (request.isDisputed) return NextOfDisputed(request, file);
  switch (request.state) {
    case InboxState::kNew:
      return fmt::format(
          "book it with: {}{}; or reject it with: {}", HowToBook(request, file),
          TakesBack(request) || request.rule ? "" : ", and --new-name for a name that is not in these books",
          HowToReject(request, file));
    case InboxState::kHeld:
      return fmt::format(
          "nothing until the request that it takes back is booked here; if it never will be, reject it with: {}",
          HowToReject(request, file));
    case InboxState::kToBookAgain:
      return fmt::format(
          "the partner was told that it is booked, and these books lost the entry; book it again with: {}",
          HowToBook(request, file));
    case InboxState::kAccepted:
      return request.entry ? fmt::format("nothing; see the entry with: multientity show {} {}", AsTyped(file),
                                         request.entry->txnId)
                           : "nothing";
    case InboxState::kRejected:
      return "nothing; the partner may correct it and send another request";
    case InboxState::kRefused:
      return "nothing; the partner may enter it anew, which gives it another request id";
    case InboxState::kWithdrawn:
      break;
  }
  return "nothing; the partner does not want it any more";
}

// By which transactions of that type are entered.
std::string CommandOf(std::int16_t txnType) {
  const std::string type = standalone::TransactionTypeName(txnType);
  return type == "journal" ? "entry" : type;
}

std::string CorrectionsOf(const OutboxRequest& request, const std::string& file) {
  return fmt::format("correct it with: multientity {} correct {} {}; or take it back with: multientity reverse {} {}",
                     CommandOf(request.type), AsTyped(file), request.txnId, AsTyped(file), request.txnId);
}

std::string NextOfOutbox(const OutboxRequest& request, const std::string& file) {
  if (request.isLost || !request.state) {
    return fmt::format(
        "enter it once more under the request that the partner knows: multientity {} record {} --lost {} --line "
        "ACCOUNT AMOUNT --partner {} --share {}",
        CommandOf(request.type), AsTyped(file), AsTyped(request.requestId), AsTyped(request.partner),
        standalone::FormatAmount(request.amount));
  }
  if (request.isWithdrawing) return "nothing until the partner answers; what it has decided stands";
  if (request.state->ofBefore) return "nothing; it was booked with version 1.0, and is settled by hand";
  switch (request.state->number) {
    case TransactionState::kEntered:
      return fmt::format("send it with: multientity exchange send {}", WhichRequest(request, file));
    case TransactionState::kSent:
      if (request.isDisputed) {
        return fmt::format(
            "answer with: multientity outbox note {} --text TEXT; or take it back with: multientity outbox withdraw {}",
            WhichRequest(request, file), WhichRequest(request, file));
      }
      return fmt::format("nothing until the partner answers; to take it back: multientity outbox withdraw {}",
                         WhichRequest(request, file));
    case TransactionState::kCameBack:
      return CorrectionsOf(request, file);
    case TransactionState::kEstablished:
      return "nothing; it is in the books of both companies";
    case TransactionState::kClosed:
    case TransactionState::kRejected:
      break;
  }
  return "nothing; it is without effect";
}

template <typename Request>
std::string Called(const Request& request, std::string_view how) {
  return fmt::format("request {} {} {}, a {} of {} over {}", Shown(request.requestId), how, Shown(request.partner),
                     TypeText(request.type), FormatIsoDate(request.date), AmountWithCurrency(request.amount));
}

bool IsAnsweredByTheModule(const desk::Refusal& refusal) {
  return refusal.status.has_value();
}

}  // namespace

desk::RequestSelection SelectionOf(const SelectionOptions& options) {
  desk::RequestSelection selection;
  for (const std::string& request : options.requests) selection.requests.emplace_back(request);
  if (options.partner) selection.partner.emplace(*options.partner);
  if (options.upTo) selection.upTo.emplace(*options.upTo);
  return selection;
}

std::string InboxListText(const std::vector<InboxRequest>& requests) {
  if (requests.empty()) return "No requests.\n";
  using enum Importance;
  Table table({{.title = "Partner"},
               {.title = "Date", .fit = Fit::kWhole},
               {.title = "Type", .importance = kMinor, .fit = Fit::kWhole},
               {.title = "Document", .importance = kMinor},
               {.title = "Name", .importance = kMajor},
               {.title = "Amount", .align = Align::kRight},
               {.title = "Cur", .importance = kDetail, .fit = Fit::kWhole},
               {.title = "State", .fit = Fit::kWhole},
               {.title = "Request", .importance = kMajor, .fit = Fit::kWhole}});
  for (const InboxRequest& request : requests) {
    table.Add({request.partner, FormatIsoDate(request.date), standalone::TransactionTypeName(request.type),
               request.document, request.name, standalone::FormatAmount(request.amount), request.amount.currency,
               StateOfInbox(request), request.requestId});
  }
  const auto isNew = [](const InboxRequest& request) {
    return request.state == InboxState::kNew;
  };
  if (const auto sum = SumOf(requests, isNew)) {
    table.AddTotal({"New in all", "", "", "", "", standalone::FormatAmount(*sum), sum->currency, "", ""});
  }
  return table.Text() + MarksOf(requests);
}

std::string RulesText(const std::vector<desk::Rule>& rules) {
  if (rules.empty()) return "No rules.\n";
  using enum Importance;
  Table table({{.title = "Rule", .align = Align::kRight},
               {.title = "Partner"},
               {.title = "Name", .importance = kMajor},
               {.title = "Their account", .importance = kMajor},
               {.title = "Memo with", .importance = kMinor},
               {.title = "Account"},
               {.title = "Booked as", .importance = kMajor},
               {.title = "From", .importance = kMinor, .fit = Fit::kWhole}});
  std::string unfit;
  for (const desk::Rule& rule : rules) {
    table.Add({std::to_string(rule.id), rule.partner, OrAny(rule.name), OrAny(rule.hint), OrAny(rule.memo),
               rule.account.name, rule.bookedAs ? rule.bookedAs->name : "its own name",
               rule.isLearned ? "learned" : "added"});
    if (rule.unfit.empty()) continue;
    unfit += Wrapped(fmt::format("Rule {} fits nothing: {}", rule.id, Shown(rule.unfit))) + '\n';
  }
  return table.Text() + unfit;
}

std::string CalledRule(const desk::Rule& rule) {
  return fmt::format("rule {} for requests of {}", rule.id, Shown(rule.partner));
}

std::string OutboxListText(const std::vector<OutboxRequest>& requests) {
  if (requests.empty()) return "No requests.\n";
  using enum Importance;
  Table table({{.title = "Partner"},
               {.title = "Date", .fit = Fit::kWhole},
               {.title = "Type", .importance = kMinor, .fit = Fit::kWhole},
               {.title = "Txn", .align = Align::kRight},
               {.title = "Name", .importance = kMajor},
               {.title = "Amount", .align = Align::kRight},
               {.title = "Cur", .importance = kDetail, .fit = Fit::kWhole},
               {.title = "State", .fit = Fit::kWhole},
               {.title = "Reason", .importance = kMinor},
               {.title = "Request", .importance = kMajor, .fit = Fit::kWhole}});
  for (const OutboxRequest& request : requests) {
    table.Add({request.partner, FormatIsoDate(request.date), standalone::TransactionTypeName(request.type),
               request.txnId == 0 ? "" : std::to_string(request.txnId), request.name,
               standalone::FormatAmount(request.amount), request.amount.currency, StateOfOutbox(request),
               request.reason, request.requestId});
  }
  if (const auto sum = SumOf(requests, IsOpen)) {
    table.AddTotal({"Not agreed in all", "", "", "", "", standalone::FormatAmount(*sum), sum->currency, "", "", ""});
  }
  return table.Text() + MarksOf(requests);
}

std::string InboxRequestText(const InboxRequest& request, const std::string& file) {
  std::string text;
  AddCommonValues(text, request);
  AddValue(text, "Document", request.document);
  AddValue(text, "Their account", request.hint);
  if (request.earlier) AddValue(text, "Earlier", EarlierText(*request.earlier));
  AddValue(text, "State", StateOfInbox(request));
  AddValue(text, "Reason", request.reason);
  AddValue(text, "Booked", EntryText(request.entry));
  AddValue(text, "Booked before", EntryText(request.entryBefore));
  AddValue(text, "Look closely", request.mark);
  if (request.rule) AddValue(text, "Rule", TargetText(*request.rule));
  AddValue(text, "No rule", request.ruleMark);
  AddRemarks(text, request);
  return text + fmt::format("{:<14} {}\n", "Next:", NextOfInbox(request, file));
}

std::string OutboxRequestText(const OutboxRequest& request, const std::string& file) {
  std::string text;
  AddCommonValues(text, request);
  if (request.txnId != 0) AddValue(text, "Transaction", fmt::format("{}, line {}", request.txnId, request.lineId));
  AddValue(text, "State", StateOfOutbox(request));
  AddValue(text, "Reason", request.reason);
  AddValue(text, "Look closely", request.mark);
  AddRemarks(text, request);
  return text + fmt::format("{:<14} {}\n", "Next:", NextOfOutbox(request, file));
}

std::string CalledRequest(const InboxRequest& request) {
  return Called(request, "of");
}

std::string CalledRequest(const OutboxRequest& request) {
  return Called(request, "to");
}

std::string RemarkLeavesText(const std::string& file) {
  return fmt::format("That leaves with the next letters: multientity exchange run {}, or exchange export.\n",
                     AsTyped(file));
}

std::string AmountWithCurrency(const standalone::Money& amount) {
  const std::string text = standalone::FormatAmount(amount);
  return amount.currency.empty() ? text : text + ' ' + amount.currency;
}

std::string LeftText(std::string_view called, const desk::Refusal& refusal) {
  const std::string_view hint = HintFor(refusal.remedy);
  return fmt::format("Left {}: {}\n{}", called, Shown(refusal.why), hint.empty() ? "" : fmt::format("  {}\n", hint));
}

void FailForLeft(std::size_t doneCount, const std::vector<desk::Refusal>& left) {
  if (left.empty()) return;
  const auto count = static_cast<std::int64_t>(left.size());
  const std::string all = standalone::Counted(count + static_cast<std::int64_t>(doneCount), "request");
  if (doneCount != 0) {
    throw std::runtime_error(fmt::format("{} of {} left as before; why is told of each", count, all));
  }
  if (count == 1) throw desk::Refused(left.front());
  const auto answered = std::ranges::find_if(left, IsAnsweredByTheModule);
  desk::Refusal refusal = answered == left.end() ? left.front() : *answered;
  refusal.why = fmt::format("all {} left as before; of one of them: {}", all, refusal.why);
  throw desk::Refused(refusal);
}

standalone::InboxState ParseInboxState(const std::string& text) {
  if (const auto state = standalone::InboxStateOf(text)) return *state;
  std::vector<std::string> known;
  std::istringstream words(kInboxStates);
  for (std::string word; std::getline(words, word, kBetweenWords);) known.push_back(word);
  const std::string suggestion = standalone::DidYouMean(text, known);
  throw standalone::InvalidInput(fmt::format("state {} is not acceptable; give one of {}{}{}", standalone::Quoted(text),
                                             fmt::join(known, ", "), suggestion.empty() ? "" : ".", suggestion));
}

}  // namespace app
