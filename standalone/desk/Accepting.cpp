#include "standalone/desk/Accepting.h"

#include <algorithm>
#include <string>
#include <utility>

#include "standalone/books/FactTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/RejectedRequestTable.h"
#include "standalone/desk/Booking.h"
#include "standalone/desk/inside/Closing.h"
#include "standalone/desk/inside/Composing.h"
#include "standalone/desk/inside/FittingRules.h"
#include "standalone/desk/inside/HeldRequests.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/ReadRequests.h"
#include "standalone/desk/inside/Remarks.h"
#include "standalone/desk/inside/Requests.h"
#include "standalone/desk/inside/Reversing.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::InboxRow;
using standalone::InboxState;
using standalone::Pairing;
using standalone::Quoted;

EntryOfRequest EntryIn(Work& work, std::int32_t txnId) {
  return {.txnId = txnId, .day = work.Host().Transactions().FindHeader(txnId).value().date};
}

void FillFromProposal(Work& work, const exchange::Proposal& proposal, InboxRequest& request) {
  request.type = TxnTypeOf(proposal.type);
  request.date = proposal.date;
  request.amount = MoneyOf(work, proposal.amount);
  request.document = proposal.document;
  request.name = proposal.name;
  request.memo = proposal.memo;
  request.hint = proposal.hint;
  if (!proposal.earlier) return;
  request.earlier = {.reverses = proposal.earlier->how == exchange::EarlierRequest::kReversed,
                     .requestId = proposal.earlier->request};
}

std::string RecordText(std::int32_t id) {
  return "#" + std::to_string(id);
}

// What a request takes back is booked to where it stands now.
struct StandsAt {
  std::int32_t expenseId = 0;
  std::string name;
};

std::optional<StandsAt> WhereReversedStands(Work& work, const Received& received) {
  if (!received.request.earlier || !received.request.earlier->reverses) return std::nullopt;
  DBMultiEntityTransaction row{};
  if (!work.Host().Intercompany().FindRequest(received.pairing.relationId.value_or(0),
                                              received.request.earlier->requestId, row)) {
    return std::nullopt;
  }
  const auto header = work.Host().Transactions().FindHeader(row.txnId);
  if (!header || IsOwn(work, row.txnId)) return std::nullopt;
  const std::vector<std::int32_t> moves = LiveMovesOf(work, row.txnId);
  const std::int32_t expense = moves.empty() ? work.Host().Transactions().FindLineOf(row.txnId, row.targetId).accountId
                                             : work.Host().Transactions().LinesOf(moves.back()).front().accountId;
  return StandsAt{.expenseId = expense, .name = RecordText(header->nameId)};
}

// By its record number, as a name of digits only may look like that of another one.
Existing NameTold(Work& work, const InboxRequest& request) {
  const std::optional<standalone::Name> known = work.Host().Names().FindByFullName(request.name);
  if (known) return Existing{RecordText(known->id)};
  work.Refuse(
      (request.name.empty() ? "the request " + Quoted(request.requestId) + " of " + request.partner + " names nobody"
                            : "there is no name " + Quoted(request.name) + " in these books") +
          ", and whom the entry is with is not told",
      Remedy::kNameExpenseAndName);
}

std::variant<Existing, NewVendor> NameFor(Work& work, const Received& received, const RequestBooking& booking,
                                          const std::optional<StandsAt>& reversed) {
  if (booking.name) return *booking.name;
  return reversed ? Existing{reversed->name} : NameTold(work, received.request);
}

EntryToRecord EntryFor(Work& work, const Received& received, const RequestBooking& booking,
                       const std::optional<StandsAt>& reversed) {
  const InboxRequest& request = received.request;
  if (!booking.expense && !reversed) {
    work.Refuse("the account to which the request " + Quoted(request.requestId) + " of " + request.partner +
                    " is to be booked is not told",
                Remedy::kNameExpenseAndName);
  }
  EntryToRecord entry{.partner = Partner(request.realm),
                      .request = standalone::RequestId(request.requestId),
                      .amount = standalone::LineAmount(standalone::FormatPlainAmount(request.amount)),
                      .expense = booking.expense
                                     ? *booking.expense
                                     : std::variant<Existing, NewAccount>(Existing{RecordText(reversed->expenseId)}),
                      .dueTo = std::nullopt,
                      .name = NameFor(work, received, booking, reversed)};
  if (!request.memo.empty()) entry.memo = standalone::Memo(standalone::Trimmed(request.memo));
  return entry;
}

// Where a rule says none, the name is the one that the request tells, which is made where there is none like it.
std::variant<Existing, NewVendor> NameByRule(Work& work, const Received& received, const standalone::RuleRow& rule) {
  if (rule.nameId) return Existing{RecordText(*rule.nameId)};
  const std::optional<standalone::Name> known = work.Host().Names().FindByFullName(received.says.name);
  if (known) return Existing{RecordText(known->id)};
  return NewVendor{standalone::NewListName(received.says.name)};
}

// Books that took back a rejection still keep it, and the module books nothing that is rejected.
void ForgetRejection(Work& work, const Received& received) {
  const std::int32_t relation = received.pairing.relationId.value_or(0);
  if (work.Host().Rejected().Find(relation, received.row.requestId).relationId == 0) return;
  static_cast<void>(work.Host().Rejected().Remove(relation, received.row.requestId));
}

}  // namespace

Received ReadReceived(Work& work, const Pairing& pairing, const InboxRow& row) {
  Received received{.pairing = pairing, .row = row, .says = {}, .request = {}};
  InboxRequest& request = received.request;
  request.partner = pairing.partnerName;
  request.realm = pairing.partnerRealm;
  request.requestId = row.requestId;
  request.state = row.state;
  request.mark = row.mark;
  const HeldRequest held = HeldAbout(work, pairing, RequestOf::kPartner, row.requestId);
  received.says = held.Proposal()->says;
  FillFromProposal(work, received.says, request);
  request.remarks = RemarksAbout(work, pairing, RequestOf::kPartner, row.requestId);
  request.isDisputed =
      (row.state == InboxState::kNew || row.state == InboxState::kHeld) && IsAnyDispute(request.remarks);
  if (row.txnId) request.entry = EntryIn(work, *row.txnId);
  const exchange::Answer* answer = held.Answer();
  if (answer == nullptr) return received;
  request.reason = answer->reason;
  if (row.state == InboxState::kToBookAgain) request.entryBefore = {.txnId = answer->entry, .day = answer->day};
  return received;
}

Received ReadAgain(Work& work, const Received& received) {
  return ReadReceived(work, received.pairing,
                      work.Host().Inbox().Find(received.pairing.id, received.row.requestId).value());
}

InboxRow RequireInState(Work& work, const Received& received, const std::vector<InboxState>& states,
                        std::string_view what) {
  InboxRow row = work.Host().Inbox().Find(received.pairing.id, received.row.requestId).value();
  if (std::ranges::count(states, row.state) != 0) return row;
  work.Refuse("the request " + Quoted(row.requestId) + " of " + received.request.partner + " is " +
                  std::string(NameOf(row.state)) + ", and cannot be " + std::string(what),
              Remedy::kSeeTheInbox);
}

MEStatusCode Accept(Work& work, const exchange::KeyPair& keys, const Received& received, const RequestBooking& booking,
                    AcceptedRequest& accepted) {
  const std::optional<StandsAt> reversed = WhereReversedStands(work, received);
  EntryToRecord entry = EntryFor(work, received, booking, reversed);
  const InboxRequest& request = received.request;
  const DateType32 meant = booking.date.value_or(request.entryBefore ? request.entryBefore->day : request.date);
  entry.date = OpenDay(work, meant);
  const InboxRow before = RequireInState(work, received, kToAccept, "accepted");
  BookableRequest bookable = RequireBookable(work, entry);
  if (reversed) bookable.standsAt = reversed->expenseId;
  ForgetRejection(work, received);
  Closing closing(work, entry.closedDays);
  BookedEntry booked{.noted = accepted.noted};
  const MEStatusCode answer = Book(work, entry, bookable, closing, booked);
  if (answer != MEStatusSuccess) return answer;
  InboxRow now = before;
  now.state = InboxState::kAccepted;
  now.txnId = booked.txnId;
  now.mark.clear();
  work.Host().Inbox().Set(now);
  if (before.state == InboxState::kNew) {
    const standalone::StoredFact asked = work.Host().Facts().Find(received.pairing.id, now.proposal).value();
    MakeAnswer(work, received.pairing, keys,
               {.outcome = exchange::Outcome::kAccepted,
                .entry = booked.txnId,
                .day = entry.date.value(),
                .reason = {},
                .proposal = exchange::Fact(asked.body, asked.signature)});
  }
  accepted.txnId = booked.txnId;
  accepted.isDateMoved = entry.date != meant;
  accepted.changes.push_back({"request " + now.requestId, std::string(NameOf(before.state)), "accepted"});
  DecidedRequest others;
  DecideWhatNames(work, received.pairing, keys, now.requestId, others);
  accepted.changes.insert(accepted.changes.end(), others.changes.begin(), others.changes.end());
  return answer;
}

MEStatusCode AcceptByRule(Work& work, const exchange::KeyPair& keys, const Received& received,
                          const standalone::RuleRow& rule, std::optional<DateType32> date, AcceptedRequest& accepted) {
  const RequestBooking booking{
      .expense = Existing{RecordText(rule.accountId)}, .name = NameByRule(work, received, rule), .date = date};
  const MEStatusCode answer = Accept(work, keys, received, booking, accepted);
  accepted.changes.push_back({"by rule", std::nullopt, std::to_string(rule.id)});
  return answer;
}

void AcceptAtOnce(Work& work, const Pairing& pairing, const exchange::KeyPair& keys, const std::string& request,
                  DecidedRequest& decided) {
  if (!pairing.bookedUpTo) return;
  const std::optional<InboxRow> row = work.Host().Inbox().Find(pairing.id, request);
  if (!row || row->state != InboxState::kNew || !row->mark.empty()) return;
  const Received received = ReadReceived(work, pairing, *row);
  if (received.request.isDisputed) return;
  if (received.says.amount <= 0 || received.says.amount > *pairing.bookedUpTo) return;
  const FoundRule found = FindRule(work, pairing, received.says);
  if (!found.rule) return;
  NotedNames noted(work);
  AcceptedRequest accepted{.noted = noted};
  const MEStatusCode answer = AcceptByRule(work, keys, received, *found.rule, std::nullopt, accepted);
  if (answer != MEStatusSuccess) {
    throw Refused(
        {.what = UseCase::kAcceptRequest, .status = answer, .why = work.WhyNotDone(UseCase::kAcceptRequest, answer)});
  }
  const standalone::AuditDeed booked = DeedOfAccepting(work, accepted);
  decided.changes.insert(decided.changes.end(), booked.changes.begin(), booked.changes.end());
  decided.txnId = accepted.txnId;
  std::erase(decided.done, DecidedText(work, received.says, InboxState::kNew));
  decided.done.push_back(DecidedText(work, received.says, InboxState::kAccepted) + " by rule " +
                         std::to_string(found.rule->id) + ", as journal entry " + std::to_string(accepted.txnId));
}

void LearnFrom(Work& work, const Received& received, AcceptedRequest& accepted) {
  const std::int32_t nameId = work.Host().Transactions().FindHeader(accepted.txnId).value().nameId;
  const standalone::RuleRow learned{.pairing = received.pairing.id,
                                    .name = received.says.name,
                                    .hint = received.says.hint,
                                    .memo = {},
                                    .accountId = work.Host().Transactions().LinesOf(accepted.txnId).front().accountId,
                                    .nameId = nameId,
                                    .learned = true};
  std::optional<standalone::AuditChange> change = LearnRule(work, learned);
  if (change) accepted.changes.push_back(*std::move(change));
}

standalone::AuditDeed DeedOfAccepting(Work& work, const AcceptedRequest& accepted) {
  standalone::AuditDeed deed = DeedOfBooked(work, accepted.txnId);
  deed.action = "inbox.accept";
  deed.changes.insert(deed.changes.end(), accepted.changes.begin(), accepted.changes.end());
  return deed;
}

}  // namespace desk
