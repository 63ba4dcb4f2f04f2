#include "standalone/desk/Inbox.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/InboxTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/RejectedRequestTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/desk/Booking.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Behind.h"
#include "standalone/desk/inside/Composing.h"
#include "standalone/desk/inside/HeldRequests.h"
#include "standalone/desk/inside/NotedNames.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/ReadRequests.h"
#include "standalone/desk/inside/Requests.h"
#include "standalone/desk/inside/Reversing.h"
#include "standalone/desk/inside/TypeRights.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::InboxRow;
using standalone::InboxState;
using standalone::Pairing;
using standalone::Quoted;

// A request with the pairing by which it came.
struct Received {
  Pairing pairing;
  InboxRow row;
  InboxRequest request;
};

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

Received Read(Work& work, const Pairing& pairing, const InboxRow& row) {
  Received received{.pairing = pairing, .row = row, .request = {}};
  InboxRequest& request = received.request;
  request.partner = pairing.partnerName;
  request.realm = pairing.partnerRealm;
  request.requestId = row.requestId;
  request.state = row.state;
  request.mark = row.mark;
  const HeldRequest held = HeldAbout(work, pairing, RequestOf::kPartner, row.requestId);
  FillFromProposal(work, held.Proposal()->says, request);
  if (row.txnId) request.entry = EntryIn(work, *row.txnId);
  const exchange::Answer* answer = held.Answer();
  if (answer == nullptr) return received;
  request.reason = answer->reason;
  if (row.state == InboxState::kToBookAgain) request.entryBefore = {.txnId = answer->entry, .day = answer->day};
  return received;
}

Received ReadAgain(Work& work, const Received& received) {
  return Read(work, received.pairing, work.Host().Inbox().Find(received.pairing.id, received.row.requestId).value());
}

std::vector<Received> ReadAll(Work& work, const std::optional<Partner>& partner, bool decided) {
  std::vector<Received> all;
  for (const Pairing& pairing : PairingsOf(work, partner)) {
    std::vector<InboxRow> rows;
    work.Host().Inbox().ForEach(pairing.id, decided, [&rows](const InboxRow& row) { rows.push_back(row); });
    for (const InboxRow& row : rows) all.push_back(Read(work, pairing, row));
  }
  std::erase_if(all, [&](const Received& received) { return !MaySee(work, received.request.type); });
  return all;
}

bool CameEarlier(const InboxRequest& left, const InboxRequest& right) {
  if (left.partner != right.partner) return left.partner < right.partner;
  const std::int32_t order = left.date.Compare(right.date);
  return order != 0 ? order < 0 : left.requestId < right.requestId;
}

std::vector<Received> FindReceived(Work& work, const standalone::RequestId& request,
                                   const std::optional<Partner>& partner) {
  std::vector<Received> found;
  for (const Pairing& pairing : PairingsOf(work, partner)) {
    const std::optional<InboxRow> row = work.Host().Inbox().Find(pairing.id, request.Text());
    if (row) found.push_back(Read(work, pairing, *row));
  }
  return found;
}

Received RequireReceived(Work& work, const standalone::RequestId& request, const std::optional<Partner>& partner) {
  std::vector<Received> found = FindReceived(work, request, partner);
  if (found.size() == 1) return std::move(found.front());
  if (found.empty()) {
    work.Refuse("no partner has sent a request " + Quoted(request.Text()), Remedy::kSeeTheInbox);
  }
  work.Refuse("the request " + Quoted(request.Text()) + " is one of " + found[0].request.partner + " and one of " +
                  found[1].request.partner,
              Remedy::kNameOnePartner);
}

// With many at once, those at which a person has to look closely are left to be named.
std::vector<Received> Select(Work& work, const RequestSelection& selection, const std::vector<InboxState>& states) {
  std::vector<Received> selected;
  if (!selection.requests.empty()) {
    for (const standalone::RequestId& request : selection.requests) {
      selected.push_back(RequireReceived(work, request, selection.partner));
    }
  } else {
    selected = ReadAll(work, selection.partner, /*decided=*/false);
    std::erase_if(selected, [&](const Received& received) {
      return std::ranges::count(states, received.row.state) == 0 || !received.row.mark.empty();
    });
    std::ranges::stable_sort(selected, CameEarlier, &Received::request);
  }
  const SelectedAmounts amounts(work, selection);
  std::erase_if(selected, [&](const Received& received) { return !amounts.Hold(received.request.amount.minorUnits); });
  if (selected.empty()) work.Refuse("there is no request to which that applies", Remedy::kSeeTheInbox);
  return selected;
}

// As it is now: somebody else may have decided since.
InboxRow RequireInState(Work& work, const Received& received, const std::vector<InboxState>& states,
                        std::string_view what) {
  InboxRow row = work.Host().Inbox().Find(received.pairing.id, received.row.requestId).value();
  if (std::ranges::count(states, row.state) != 0) return row;
  work.Refuse("the request " + Quoted(row.requestId) + " of " + received.request.partner + " is " +
                  std::string(NameOf(row.state)) + ", and cannot be " + std::string(what),
              Remedy::kSeeTheInbox);
}

// What a request takes back is booked to where it stands now.
struct StandsAt {
  std::string expense;
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
  return StandsAt{.expense = "#" + std::to_string(expense), .name = "#" + std::to_string(header->nameId)};
}

EntryToRecord EntryFor(Work& work, const Received& received, const RequestBooking& booking) {
  const std::optional<StandsAt> reversed = WhereReversedStands(work, received);
  const InboxRequest& request = received.request;
  if (!booking.expense && !reversed) {
    work.Refuse("the account to which the request " + Quoted(request.requestId) + " of " + request.partner +
                    " is to be booked is not told",
                Remedy::kNameExpenseAndName);
  }
  std::variant<Existing, NewVendor> name = Existing{reversed ? reversed->name : request.name};
  if (booking.name) {
    name = *booking.name;
  } else if (!reversed && !work.Host().Names().FindByFullName(request.name)) {
    work.Refuse(
        (request.name.empty() ? "the request " + Quoted(request.requestId) + " of " + request.partner + " names nobody"
                              : "there is no name " + Quoted(request.name) + " in these books") +
            ", and whom the entry is with is not told",
        Remedy::kNameExpenseAndName);
  }
  EntryToRecord entry{
      .partner = Partner(request.realm),
      .request = standalone::RequestId(request.requestId),
      .amount = standalone::LineAmount(standalone::FormatPlainAmount(request.amount)),
      .expense = booking.expense ? *booking.expense : std::variant<Existing, NewAccount>(Existing{reversed->expense}),
      .dueTo = std::nullopt,
      .name = std::move(name)};
  if (!request.memo.empty()) entry.memo = standalone::Memo(standalone::Trimmed(request.memo));
  return entry;
}

// The first day on which the books are open, unless the one that is meant is.
DateType32 OpenDay(Work& work, DateType32 meant) {
  const DateType32 closed = work.Host().Settings().Get().closingDate;
  return meant.Value() > closed.Value() ? meant : standalone::DayAfter(closed);
}

// Books that took back a rejection still keep it, and the module books nothing that is rejected.
void ForgetRejection(Work& work, const Received& received) {
  const std::int32_t relation = received.pairing.relationId.value_or(0);
  if (work.Host().Rejected().Find(relation, received.row.requestId).relationId == 0) return;
  static_cast<void>(work.Host().Rejected().Remove(relation, received.row.requestId));
}

standalone::AuditDeed DeedOfAccepting(Work& work, const Received& received, const InboxRow& before, std::int32_t txnId,
                                      std::vector<standalone::AuditChange> changes) {
  standalone::AuditDeed deed = DeedOfBooked(work, txnId);
  deed.action = "inbox.accept";
  deed.changes.push_back({"request " + received.row.requestId, std::string(NameOf(before.state)), "accepted"});
  deed.changes.insert(deed.changes.end(), std::make_move_iterator(changes.begin()),
                      std::make_move_iterator(changes.end()));
  return deed;
}

const std::vector<InboxState> kToAccept{InboxState::kNew, InboxState::kToBookAgain};
const std::vector<InboxState> kToReject{InboxState::kNew, InboxState::kHeld};

// Within a unit of work. Answers what the module answers.
MEStatusCode Accept(Work& work, const exchange::KeyPair& keys, const Received& received, EntryToRecord entry,
                    BookedEntry& booked) {
  const InboxRow before = RequireInState(work, received, kToAccept, "accepted");
  const BookableRequest bookable = RequireBookable(work, entry);
  ForgetRejection(work, received);
  Closing closing(work, entry.closedDays);
  const MEStatusCode answer = Book(work, entry, bookable, closing, booked);
  if (answer != MEStatusSuccess) return answer;
  InboxRow now = before;
  now.state = InboxState::kAccepted;
  now.txnId = booked.txnId;
  now.mark.clear();
  work.Host().Inbox().Set(now);
  const HeldRequest held = HeldAbout(work, received.pairing, RequestOf::kPartner, now.requestId);
  if (before.state == InboxState::kNew) {
    MakeAnswer(work, received.pairing, keys,
               {.outcome = exchange::Outcome::kAccepted,
                .entry = booked.txnId,
                .day = entry.date.value(),
                .reason = {},
                .proposal = held.Proposal()->fact});
  }
  DecidedRequest others;
  DecideWhatNames(work, received.pairing, keys, now.requestId, others);
  work.Host().Record(DeedOfAccepting(work, received, before, booked.txnId, std::move(others.changes)));
  return answer;
}

BookedRequest AcceptOne(Work& work, const exchange::KeyPair& keys, const Received& received,
                        const RequestBooking& booking) {
  NotedNames noted(work);
  BookedEntry booked{.noted = noted};
  BookedRequest done;
  work.AskToWrite([&] {
    const Received now = ReadAgain(work, received);
    EntryToRecord entry = EntryFor(work, now, booking);
    const DateType32 meant =
        booking.date.value_or(now.request.entryBefore ? now.request.entryBefore->day : now.request.date);
    entry.date = OpenDay(work, meant);
    done.isDateMoved = entry.date != meant;
    return Accept(work, keys, now, std::move(entry), booked);
  });
  noted.Tell();
  done.request = work.Read([&] { return ReadAgain(work, received).request; });
  return done;
}

MEStatusCode KeepRejected(const Received& received) {
  const InboxRequest& request = received.request;
  const std::string amount = standalone::FormatPlainAmount(request.amount);
  return MultiEntityDriver::SaveRejectedTransaction(std::string_view(request.requestId), request.type,
                                                    std::string_view(request.realm), std::string_view(amount),
                                                    std::string_view(request.requestId));
}

InboxRequest RejectOne(Work& work, const exchange::KeyPair& keys, const Received& received,
                       const standalone::Memo& reason) {
  work.AskToWrite([&] {
    const Received now = ReadAgain(work, received);
    const InboxRow before = RequireInState(work, now, kToReject, "rejected");
    work.RequireRight({FeatureOf(now.request.type), kActionView});
    RefuseBooked(work, now.pairing.relationId.value_or(0), before.requestId);
    const bool isKeptByTheModule = now.request.type != kTxnTypeJournalEntry;
    const MEStatusCode answer = isKeptByTheModule ? KeepRejected(now) : MEStatusSuccess;
    if (answer != MEStatusSuccess) return answer;
    InboxRow row = before;
    row.state = InboxState::kRejected;
    row.mark.clear();
    work.Host().Inbox().Set(row);
    const HeldRequest held = HeldAbout(work, now.pairing, RequestOf::kPartner, row.requestId);
    MakeAnswer(work, now.pairing, keys,
               {.outcome = exchange::Outcome::kRejected,
                .entry = 0,
                .day = NullDate(),
                .reason = reason.Text(),
                .proposal = held.Proposal()->fact});
    DecidedRequest others;
    DecideWhatNames(work, now.pairing, keys, row.requestId, others);
    standalone::AuditDeed deed{.action = "inbox.reject",
                               .subject = "the request " + Quoted(row.requestId) + " of " + PartnerText(now.pairing),
                               .transactions = {},
                               .changes = {{"state", std::string(NameOf(before.state)), "rejected"}}};
    if (!reason.Text().empty()) deed.changes.push_back({"reason", std::nullopt, reason.Text()});
    deed.changes.insert(deed.changes.end(), others.changes.begin(), others.changes.end());
    work.Host().Record(deed);
    return answer;
  });
  return work.Read([&] { return ReadAgain(work, received).request; });
}

// Each is a unit of work of its own; one that is refused is left as it is.
template <typename Attempt>
std::optional<Refusal> RefusalOf(UseCase what, Attempt&& attempt) {
  try {
    std::forward<Attempt>(attempt)();
    return std::nullopt;
  } catch (const Refused& refused) {
    return refused.Value();
  } catch (const standalone::InvalidInput& invalid) {
    return Refusal{.what = what, .status = {}, .why = invalid.what()};
  }
}

}  // namespace

std::vector<InboxRequest> ListInbox(Company& company, const InboxFilter& filter) {
  Work work(company.Opened(), UseCase::kReadInbox);
  std::vector<InboxRequest> requests;
  work.Read([&] {
    RequireMaySeeSome(work);
    for (Received& received : ReadAll(work, filter.partner, filter.decided || filter.state)) {
      if (!filter.state || received.row.state == *filter.state) requests.push_back(std::move(received.request));
    }
  });
  std::ranges::stable_sort(requests, CameEarlier);
  return requests;
}

InboxRequest ShowInbox(Company& company, const standalone::RequestId& request, const std::optional<Partner>& partner) {
  Work work(company.Opened(), UseCase::kReadInbox);
  return work.Read([&] {
    RequireMaySeeSome(work);
    InboxRequest shown = RequireReceived(work, request, partner).request;
    RequireRightsToType(work, shown.type, {kActionView});
    return shown;
  });
}

BookedRequests AcceptRequests(Company& company, const RequestSelection& selection, const RequestBooking& booking) {
  Work work(company.Opened(), UseCase::kAcceptRequest);
  const auto [keys, selected] = work.Read([&] {
    work.RequireFeature();
    work.RequireRight({kFeatureJournalEntries, kActionCreate});
    exchange::KeyPair own = RequireKeys(work);
    RequireNotBehind(work);
    return std::pair(std::move(own), Select(work, selection, kToAccept));
  });
  BookedRequests accepted;
  for (const Received& received : selected) {
    std::optional<Refusal> refusal = RefusalOf(
        UseCase::kAcceptRequest, [&] { accepted.booked.push_back(AcceptOne(work, keys, received, booking)); });
    if (refusal) accepted.left.push_back({.request = received.request, .refusal = *std::move(refusal)});
  }
  return accepted;
}

RejectedRequests RejectRequests(Company& company, const RequestSelection& selection, const standalone::Memo& reason) {
  Work work(company.Opened(), UseCase::kRejectRequest);
  const auto [keys, selected] = work.Read([&] {
    work.RequireFeature();
    RequireMaySeeSome(work);
    exchange::KeyPair own = RequireKeys(work);
    RequireNotBehind(work);
    return std::pair(std::move(own), Select(work, selection, kToReject));
  });
  RejectedRequests rejected;
  for (const Received& received : selected) {
    std::optional<Refusal> refusal = RefusalOf(
        UseCase::kRejectRequest, [&] { rejected.rejected.push_back(RejectOne(work, keys, received, reason)); });
    if (refusal) rejected.left.push_back({.request = received.request, .refusal = *std::move(refusal)});
  }
  return rejected;
}

}  // namespace desk
