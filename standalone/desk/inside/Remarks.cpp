#include "standalone/desk/inside/Remarks.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "standalone/books/FactTable.h"
#include "standalone/books/InboxTable.h"
#include "standalone/books/OutboxTable.h"
#include "standalone/books/RemarkTable.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Requests.h"
#include "standalone/exchange/Kinds.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using exchange::Fact;
using standalone::FactOrigin;
using standalone::Pairing;
using standalone::Quoted;

RequestOf WhoseIsIt(const exchange::Remark& remark, bool isOurs) noexcept {
  return isOurs == (remark.asker == exchange::Asker::kAuthor) ? RequestOf::kUs : RequestOf::kPartner;
}

void Note(Work& work, const Pairing& pairing, const Fact& fact, RequestOf whose, const std::string& request) {
  work.Host().Remarks().Add({.pairing = pairing.id,
                             .hash = std::string(fact.Id().Bytes()),
                             .requestId = request,
                             .askedByUs = whose == RequestOf::kUs});
}

bool IsHere(Work& work, const Pairing& pairing, RequestOf whose, const std::string& request) {
  return whose == RequestOf::kUs ? work.Host().Outbox().Find(pairing.id, request).has_value()
                                 : work.Host().Inbox().Find(pairing.id, request).has_value();
}

// "Birch disputes bill R-1 of 2026-11-02 over 33.33 USD: our half is 30.00".
std::string SaidByPartner(Work& work, const Pairing& pairing, const exchange::Remark& remark, RequestOf whose) {
  const HeldRequest held = HeldAbout(work, pairing, whose, remark.request);
  const HeldProposal* proposal = held.Proposal();
  const std::string request = proposal == nullptr ? "request " + remark.request : RequestText(work, proposal->says);
  return pairing.partnerName + (remark.isDispute ? " disputes " : " says of ") + request + ": " + remark.text;
}

}  // namespace

bool IsRemark(const Fact& fact) noexcept {
  return fact.What().kind == exchange::kinds::kDispute || fact.What().kind == exchange::kinds::kNote;
}

std::vector<Remark> RemarksAbout(Work& work, const Pairing& pairing, RequestOf whose, std::string_view request) {
  std::vector<Remark> remarks;
  for (const std::string& hash : work.Host().Remarks().About(pairing.id, request, whose == RequestOf::kUs)) {
    const standalone::StoredFact stored = work.Host().Facts().Find(pairing.id, hash).value();
    exchange::Remark says = exchange::RemarkOf(Fact(stored.body, stored.signature));
    remarks.push_back({.id = std::move(says.id),
                       .isDispute = says.isDispute,
                       .isOurs = stored.origin != FactOrigin::kPartners,
                       .text = std::move(says.text)});
  }
  return remarks;
}

bool IsAnyDispute(const std::vector<Remark>& remarks) noexcept {
  return std::ranges::any_of(remarks, &Remark::isDispute);
}

ToldRemark TellRemark(Work& work, const Pairing& pairing, const Fact& fact) {
  const exchange::Remark remark = exchange::RemarkOf(fact);
  const bool isOurs = IsOwnKey(work, fact.What().author);
  const RequestOf whose = WhoseIsIt(remark, isOurs);
  Note(work, pairing, fact, whose, remark.request);
  if (!IsHere(work, pairing, whose, remark.request)) {
    return {.done = {}, .outstanding = "the request " + Quoted(remark.request) + " that it is about is not here yet"};
  }
  return {.done = isOurs ? "the " + fact.What().kind + " about request " + remark.request +
                               " that this company sent to " + PartnerText(pairing) +
                               " came back: these books were restored, or a copy of the company is at work"
                         : SaidByPartner(work, pairing, remark, whose),
          .outstanding = {}};
}

standalone::AuditDeed MakeRemark(Work& work, const Pairing& pairing, const exchange::KeyPair& keys,
                                 const RemarkToMake& remark) {
  const bool isAskedByUs = remark.whose == RequestOf::kUs;
  const Fact fact = exchange::MakeFact({.isDispute = remark.isDispute,
                                        .id = exchange::MakeRandomWord(),
                                        .request = remark.request,
                                        .month = remark.month,
                                        .asker = isAskedByUs ? exchange::Asker::kAuthor : exchange::Asker::kPartner,
                                        .text = remark.text},
                                       pairing.pairingId, keys);
  Keep(work, pairing, fact, FactOrigin::kMade);
  Note(work, pairing, fact, remark.whose, remark.request);
  return {.action = std::string(isAskedByUs ? "outbox." : "inbox.") + fact.What().kind,
          .subject = "the request " + Quoted(remark.request) + (isAskedByUs ? " to " : " of ") + PartnerText(pairing),
          .transactions = {},
          .changes = {{remark.isDispute ? "reason" : "text", std::nullopt, remark.text}}};
}

}  // namespace desk
