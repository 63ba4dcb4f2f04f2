#include "standalone/desk/Inbox.h"

#include <algorithm>
#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/InboxTable.h"
#include "standalone/desk/Accepting.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Awaiting.h"
#include "standalone/desk/inside/FittingRules.h"
#include "standalone/desk/inside/HeldRequests.h"
#include "standalone/desk/inside/NotedNames.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/ReadRequests.h"
#include "standalone/desk/inside/Remarks.h"
#include "standalone/desk/inside/Requests.h"
#include "standalone/desk/inside/TypeRights.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::InboxRow;
using standalone::InboxState;
using standalone::Pairing;
using standalone::Quoted;

std::vector<Received> ReadAll(Work& work, const std::optional<Partner>& partner, bool decided) {
  std::vector<Received> all;
  for (const Pairing& pairing : PairingsOf(work, partner)) {
    std::vector<InboxRow> rows;
    work.Host().Inbox().ForEach(pairing.id, decided, [&rows](const InboxRow& row) { rows.push_back(row); });
    for (const InboxRow& row : rows) all.push_back(ReadReceived(work, pairing, row));
  }
  std::erase_if(all, [&](const Received& received) { return !MaySee(work, received.request.type); });
  return all;
}

constexpr const char* kLeftToAPerson = "it is disputed, and left to a person";

void TellRule(Work& work, Received& received) {
  if (std::ranges::count(kToAccept, received.row.state) == 0) return;
  FoundRule found = FindRule(work, received.pairing, received.says);
  if (received.request.isDisputed && found.rule) found = {.rule = {}, .whyNone = kLeftToAPerson, .isForAPerson = true};
  if (found.rule) received.request.rule = RuleOf(work, *found.rule);
  if (found.isForAPerson) received.request.ruleMark = std::move(found.whyNone);
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
    if (row) found.push_back(ReadReceived(work, pairing, *row));
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
      return std::ranges::count(states, received.row.state) == 0 || !received.row.mark.empty() ||
             received.request.isDisputed;
    });
    std::ranges::stable_sort(selected, CameEarlier, &Received::request);
  }
  const SelectedAmounts amounts(work, selection);
  std::erase_if(selected, [&](const Received& received) { return !amounts.Hold(received.request.amount.minorUnits); });
  if (selected.empty()) work.Refuse("there is no request to which that applies", Remedy::kSeeTheInbox);
  return selected;
}

const std::vector<InboxState> kToReject{InboxState::kNew, InboxState::kHeld};

// How a person has requests booked.
struct Wish {
  const RequestBooking& booking;
  bool isLearned = false;
};

bool IsLearned(const RequestSelection& selection, const RequestBooking& booking) {
  return selection.requests.size() == 1 && booking.expense && booking.name;
}

standalone::RuleRow RequireRule(Work& work, const Received& received) {
  if (received.request.isDisputed) work.Refuse(kLeftToAPerson, Remedy::kAnswerInTheInbox);
  FoundRule found = FindRule(work, received.pairing, received.says);
  if (found.rule) return *std::move(found.rule);
  work.Refuse(std::move(found.whyNone), found.isForAPerson ? Remedy::kSeeTheRules : Remedy::kAddARule);
}

MEStatusCode AcceptNow(Work& work, const exchange::KeyPair& keys, const Received& now, const Wish& wish,
                       AcceptedRequest& accepted, BookedRequest& done) {
  if (wish.booking.byRule) {
    const standalone::RuleRow rule = RequireRule(work, now);
    done.rule = rule.id;
    return AcceptByRule(work, keys, now, rule, wish.booking.date, accepted);
  }
  const MEStatusCode answer = Accept(work, keys, now, wish.booking, accepted);
  const bool takesBack = now.request.earlier && now.request.earlier->reverses;
  if (answer == MEStatusSuccess && wish.isLearned && !takesBack) LearnFrom(work, now, accepted);
  return answer;
}

BookedRequest AcceptOne(Work& work, const exchange::KeyPair& keys, const Received& received, const Wish& wish) {
  NotedNames noted(work);
  BookedRequest done;
  work.AskToWrite([&] {
    AcceptedRequest accepted{.noted = noted};
    const MEStatusCode answer = AcceptNow(work, keys, ReadAgain(work, received), wish, accepted, done);
    done.isDateMoved = accepted.isDateMoved;
    return work.Recorded(answer, [&] { return DeedOfAccepting(work, accepted); });
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

InboxRequest Say(Work& work, const standalone::RequestId& request, const std::optional<Partner>& partner,
                 const standalone::RemarkText& text, bool isDispute) {
  return work.Write([&] {
    work.RequireFeature();
    RequireMaySeeSome(work);
    const Received received = RequireReceived(work, request, partner);
    RequireRightsToType(work, received.request.type, {kActionView});
    const exchange::KeyPair keys = RequireKeys(work);
    RequireNothingAwaited(work);
    if (isDispute) RequireInState(work, received, kToReject, "disputed");
    work.Host().Record(MakeRemark(work, received.pairing, keys,
                                  {.isDispute = isDispute,
                                   .whose = RequestOf::kPartner,
                                   .request = received.row.requestId,
                                   .month = exchange::MonthOf(received.says.date),
                                   .text = text.Text()}));
    return ReadAgain(work, received).request;
  });
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
      if (filter.state && received.row.state != *filter.state) continue;
      TellRule(work, received);
      requests.push_back(std::move(received.request));
    }
  });
  std::ranges::stable_sort(requests, CameEarlier);
  return requests;
}

InboxRequest ShowInbox(Company& company, const standalone::RequestId& request, const std::optional<Partner>& partner) {
  Work work(company.Opened(), UseCase::kReadInbox);
  return work.Read([&] {
    RequireMaySeeSome(work);
    Received shown = RequireReceived(work, request, partner);
    RequireRightsToType(work, shown.request.type, {kActionView});
    TellRule(work, shown);
    return std::move(shown.request);
  });
}

BookedRequests AcceptRequests(Company& company, const RequestSelection& selection, const RequestBooking& booking) {
  Work work(company.Opened(), UseCase::kAcceptRequest);
  const auto [keys, selected] = work.Read([&] {
    work.RequireFeature();
    work.RequireRight({kFeatureJournalEntries, kActionCreate});
    exchange::KeyPair own = RequireKeys(work);
    RequireNothingAwaited(work);
    return std::pair(std::move(own), Select(work, selection, kToAccept));
  });
  const Wish wish{.booking = booking, .isLearned = IsLearned(selection, booking)};
  BookedRequests accepted;
  for (const Received& received : selected) {
    std::optional<Refusal> refusal =
        RefusalOf(UseCase::kAcceptRequest, [&] { accepted.booked.push_back(AcceptOne(work, keys, received, wish)); });
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
    RequireNothingAwaited(work);
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

InboxRequest DisputeRequest(Company& company, const standalone::RequestId& request,
                            const standalone::RemarkText& reason, const std::optional<Partner>& partner) {
  Work work(company.Opened(), UseCase::kDisputeRequest);
  return Say(work, request, partner, reason, /*isDispute=*/true);
}

InboxRequest NoteOnRequest(Company& company, const standalone::RequestId& request, const standalone::RemarkText& text,
                           const std::optional<Partner>& partner) {
  Work work(company.Opened(), UseCase::kNoteOnRequest);
  return Say(work, request, partner, text, /*isDispute=*/false);
}

}  // namespace desk
