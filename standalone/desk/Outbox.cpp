#include "standalone/desk/Outbox.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/OutboxTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Awaiting.h"
#include "standalone/desk/inside/Composing.h"
#include "standalone/desk/inside/HeldRequests.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/LostRequests.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/ReadRequests.h"
#include "standalone/desk/inside/Remarks.h"
#include "standalone/desk/inside/Sending.h"
#include "standalone/desk/inside/TypeRights.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::OutboxRow;
using standalone::Pairing;
using standalone::Quoted;
using standalone::TransactionState;

void FillFromLine(Work& work, const DBMultiEntityTransaction& row, OutboxRequest& request) {
  const auto header = work.Host().Transactions().FindHeader(row.txnId);
  const standalone::LineView line = work.Host().Transactions().FindLineOf(row.txnId, row.targetId);
  request.requestId = standalone::Field(row.requestId);
  request.txnId = row.txnId;
  request.lineId = row.targetId;
  request.type = row.txnType;
  request.amount = MoneyOf(work, line.amount);
  request.state = StateOf(work, row);
  if (!header) return;
  request.date = header->date;
  request.memo = line.hasMemo && !line.memo.view().empty() ? std::string(line.memo.view()) : header->memo;
  if (const auto name = work.Host().Names().Find(header->nameId)) request.name = name->fullName;
}

void FillFromProposal(Work& work, const exchange::Proposal& proposal, OutboxRequest& request) {
  request.type = TxnTypeOf(proposal.type);
  request.date = proposal.date;
  request.amount = MoneyOf(work, proposal.amount);
  request.name = proposal.name;
  request.memo = proposal.memo;
  request.isLost = true;
}

OutboxRequest RequestWith(const Pairing& pairing) {
  OutboxRequest request;
  request.partner = pairing.partnerName;
  request.realm = pairing.partnerRealm;
  return request;
}

OutboxRequest RequestOfEntered(Work& work, const Pairing& pairing, const DBMultiEntityTransaction& row) {
  OutboxRequest request = RequestWith(pairing);
  FillFromLine(work, row, request);
  return request;
}

OutboxRequest RequestOfSent(Work& work, const Pairing& pairing, const OutboxRow& sent) {
  OutboxRequest request = RequestWith(pairing);
  request.requestId = sent.requestId;
  const HeldRequest held = HeldAbout(work, pairing, RequestOf::kUs, sent.requestId);
  DBMultiEntityTransaction row{};
  if (sent.targetId && work.Host().Intercompany().FindLine(*sent.targetId, row)) {
    FillFromLine(work, row, request);
  } else if (const HeldProposal* proposal = held.Proposal()) {
    FillFromProposal(work, proposal->says, request);
  }
  request.isSent = true;
  request.mark = sent.mark;
  request.isWithdrawing = held.facts.withdrawal && request.state && request.state->number == TransactionState::kSent;
  request.remarks = RemarksAbout(work, pairing, RequestOf::kUs, sent.requestId);
  const exchange::Answer* answer = held.Answer();
  request.isDisputed = answer == nullptr && IsAnyDispute(request.remarks);
  if (answer != nullptr) request.reason = answer->reason;
  return request;
}

bool IsSettled(const OutboxRequest& request) {
  return request.state && request.mark.empty() &&
         (request.state->number == TransactionState::kEstablished ||
          request.state->number == TransactionState::kClosed);
}

bool IsEarlierRequest(const OutboxRequest& left, const OutboxRequest& right) {
  if (left.partner != right.partner) return left.partner < right.partner;
  const std::int32_t order = left.date.Compare(right.date);
  if (order != 0) return order < 0;
  return std::tie(left.txnId, left.lineId, left.requestId) < std::tie(right.txnId, right.lineId, right.requestId);
}

std::vector<OutboxRequest> ListOf(Work& work, const Pairing& pairing) {
  std::vector<OutboxRequest> requests;
  for (const DBMultiEntityTransaction& row : LinesToSend(work, pairing)) {
    requests.push_back(RequestOfEntered(work, pairing, row));
  }
  work.Host().Outbox().ForEach(pairing.id,
                               [&](const OutboxRow& sent) { requests.push_back(RequestOfSent(work, pairing, sent)); });
  std::erase_if(requests, [&](const OutboxRequest& request) { return !MaySee(work, request.type); });
  return requests;
}

// A line with its partner that is to be sent.
struct LineOfPartner {
  Pairing pairing;
  DBMultiEntityTransaction row{};
};

// Those that are named, whenever they were entered.
std::vector<LineOfPartner> NamedLines(Work& work, const RequestSelection& selection) {
  std::vector<LineOfPartner> lines;
  for (const standalone::RequestId& request : selection.requests) {
    const std::size_t before = lines.size();
    for (const Pairing& pairing : PairingsOf(work, selection.partner)) {
      LineOfPartner line{.pairing = pairing};
      if (pairing.relationId && work.Host().Intercompany().FindRequest(*pairing.relationId, request.Text(), line.row)) {
        lines.push_back(std::move(line));
      }
    }
    if (lines.size() == before) {
      work.Refuse("there is no line with the request id " + Quoted(request.Text()) + " and a partner with whom this " +
                      "company is paired",
                  Remedy::kSeeTheOutbox);
    }
  }
  return lines;
}

std::vector<LineOfPartner> SelectedLines(Work& work, const RequestSelection& selection) {
  std::vector<LineOfPartner> lines;
  if (!selection.requests.empty()) {
    lines = NamedLines(work, selection);
  } else {
    for (const Pairing& pairing : PairingsOf(work, selection.partner)) {
      for (const DBMultiEntityTransaction& row : LinesToSend(work, pairing)) {
        lines.push_back({.pairing = pairing, .row = row});
      }
    }
  }
  const SelectedAmounts amounts(work, selection);
  std::erase_if(lines, [&](const LineOfPartner& line) {
    return !amounts.Hold(work.Host().Transactions().FindLineOf(line.row.txnId, line.row.targetId).amount);
  });
  return lines;
}

OutboxRequest ReadLine(Work& work, const LineOfPartner& line) {
  const auto sent = work.Host().Outbox().FindByLine(line.row.targetId);
  return sent && sent->pairing == line.pairing.id ? RequestOfSent(work, line.pairing, *sent)
                                                  : RequestOfEntered(work, line.pairing, line.row);
}

struct FoundRequest {
  Pairing pairing;
  OutboxRow row;
};

FoundRequest RequireSent(Work& work, const standalone::RequestId& request, const std::optional<Partner>& partner) {
  std::vector<FoundRequest> found;
  for (const Pairing& pairing : PairingsOf(work, partner)) {
    if (auto row = work.Host().Outbox().Find(pairing.id, request.Text())) found.push_back({pairing, *std::move(row)});
  }
  if (found.size() == 1) return found.front();
  if (found.empty()) {
    work.Refuse("no request " + Quoted(request.Text()) + " was sent to a partner with whom this company is paired",
                Remedy::kSeeTheOutbox);
  }
  work.Refuse("the request " + Quoted(request.Text()) + " was sent to " + found[0].pairing.partnerName + " and to " +
                  found[1].pairing.partnerName,
              Remedy::kNameOnePartner);
}

OutboxRequest ReadSent(Work& work, const standalone::RequestId& request, const std::optional<Partner>& partner) {
  const FoundRequest sent = RequireSent(work, request, partner);
  return RequestOfSent(work, sent.pairing, sent.row);
}

// Lines with that request id that wait to be sent.
std::vector<LineOfPartner> EnteredAs(Work& work, const standalone::RequestId& request,
                                     const std::optional<Partner>& partner) {
  std::vector<LineOfPartner> lines;
  for (const Pairing& pairing : PairingsOf(work, partner)) {
    for (const DBMultiEntityTransaction& row : LinesToSend(work, pairing)) {
      if (standalone::Field(row.requestId) == request.Text()) lines.push_back({.pairing = pairing, .row = row});
    }
  }
  return lines;
}

// Throws Refused.
void RequireWithdrawable(const Work& work, const OutboxRequest& request) {
  if (request.isWithdrawing) {
    work.Refuse("the partner was asked before to let go of the request " + Quoted(request.requestId),
                Remedy::kWaitForThePartner);
  }
  if (request.state && request.state->number == TransactionState::kSent) return;
  work.Refuse("the request " + Quoted(request.requestId) + " is " +
                  (request.state ? standalone::StateName(*request.state) : "not in these books") +
                  "; only one that is sent can be withdrawn",
              Remedy::kSeeTheOutbox);
}

}  // namespace

std::vector<OutboxRequest> ListOutbox(Company& company, const OutboxFilter& filter) {
  Work work(company.Opened(), UseCase::kReadOutbox);
  std::vector<OutboxRequest> requests;
  work.Read([&] {
    RequireMaySeeSome(work);
    for (const Pairing& pairing : PairingsOf(work, filter.partner)) {
      std::ranges::move(ListOf(work, pairing), std::back_inserter(requests));
    }
  });
  if (!filter.settled) std::erase_if(requests, IsSettled);
  std::ranges::stable_sort(requests, IsEarlierRequest);
  return requests;
}

OutboxRequest ShowOutbox(Company& company, const standalone::RequestId& request,
                         const std::optional<Partner>& partner) {
  Work work(company.Opened(), UseCase::kReadOutbox);
  return work.Read([&] {
    RequireMaySeeSome(work);
    const std::vector<LineOfPartner> entered = EnteredAs(work, request, partner);
    OutboxRequest shown = entered.size() == 1 ? ReadLine(work, entered.front()) : ReadSent(work, request, partner);
    RequireRightsToType(work, shown.type, {kActionView});
    return shown;
  });
}

SentRequests SendRequests(Company& company, const RequestSelection& selection) {
  Work work(company.Opened(), UseCase::kSendRequest);
  const auto [keys, lines] = work.Read([&] {
    work.RequireFeature();
    RequireRightsToSomeType(work, {kActionModify});
    exchange::KeyPair own = RequireKeys(work);
    RequireNothingAwaited(work);
    return std::pair(std::move(own), SelectedLines(work, selection));
  });
  SentRequests sent;
  for (const LineOfPartner& line : lines) {
    std::optional<Refusal> refusal;
    try {
      work.AskToWrite([&] {
        if (selection.requests.empty()) RefuseToSendTwice(work, line.row);
        return SendLine(work, line.pairing, keys, line.row);
      });
    } catch (const Refused& refused) {
      refusal = refused.Value();
    } catch (const standalone::InvalidInput& unspeakable) {
      refusal = Refusal{.what = UseCase::kSendRequest, .status = {}, .why = unspeakable.what()};
    }
    OutboxRequest request = work.Read([&] { return ReadLine(work, line); });
    if (!refusal) {
      sent.sent.push_back(std::move(request));
    } else {
      sent.left.push_back({.request = std::move(request), .refusal = *std::move(refusal)});
    }
  }
  return sent;
}

OutboxRequest WithdrawRequest(Company& company, const standalone::RequestId& request,
                              const std::optional<Partner>& partner) {
  Work work(company.Opened(), UseCase::kWithdrawRequest);
  return work.Write([&] {
    work.RequireFeature();
    RequireRightsToSomeType(work, {kActionModify});
    const FoundRequest found = RequireSent(work, request, partner);
    const OutboxRequest before = RequestOfSent(work, found.pairing, found.row);
    RequireRightsToType(work, before.type, {kActionModify});
    RequireNothingAwaited(work);
    RequireWithdrawable(work, before);
    const HeldRequest held = HeldAbout(work, found.pairing, RequestOf::kUs, request.Text());
    MakeWithdrawal(work, found.pairing, RequireKeys(work), held.Proposal()->says);
    work.Host().Record({.action = "outbox.withdraw",
                        .subject = "the request " + Quoted(request.Text()) + " to " + PartnerText(found.pairing),
                        .transactions = standalone::TransactionRange{.first = before.txnId, .last = before.txnId},
                        .changes = {{"withdrawing", "no", "yes"}}});
    return RequestOfSent(work, found.pairing, found.row);
  });
}

OutboxRequest NoteOnOwnRequest(Company& company, const standalone::RequestId& request,
                               const standalone::RemarkText& text, const std::optional<Partner>& partner) {
  Work work(company.Opened(), UseCase::kNoteOnRequest);
  return work.Write([&] {
    work.RequireFeature();
    RequireMaySeeSome(work);
    const FoundRequest found = RequireSent(work, request, partner);
    RequireRightsToType(work, RequestOfSent(work, found.pairing, found.row).type, {kActionView});
    const exchange::KeyPair keys = RequireKeys(work);
    RequireNothingAwaited(work);
    const HeldRequest held = HeldAbout(work, found.pairing, RequestOf::kUs, request.Text());
    work.Host().Record(MakeRemark(work, found.pairing, keys,
                                  {.isDispute = false,
                                   .whose = RequestOf::kUs,
                                   .request = request.Text(),
                                   .month = exchange::MonthOf(held.Proposal()->says.date),
                                   .text = text.Text()}));
    return RequestOfSent(work, found.pairing, found.row);
  });
}

}  // namespace desk
