#include "standalone/desk/inside/Sending.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHost/Enumerations.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/OutboxTable.h"
#include "standalone/books/OwnRequestTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/desk/inside/LostRequests.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Partners.h"
#include "standalone/exchange/Errors.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::Pairing;
using standalone::PairingState;
using standalone::Quoted;
using standalone::TransactionState;

constexpr std::int64_t kLinesReadAtOnce = 512;

std::string RequestOfLine(const DBMultiEntityTransaction& row) {
  return std::string(standalone::Field(row.requestId));
}

std::string LineText(const DBMultiEntityTransaction& row) {
  return "the request " + Quoted(RequestOfLine(row)) + " of " + TransactionText(EnteredType{row.txnType}, row.txnId);
}

exchange::RequestType RequestTypeOf(std::int16_t txnType) noexcept {
  switch (txnType) {
    case kTxnTypeBill:
      return exchange::RequestType::kBill;
    case kTxnTypeCheck:
      return exchange::RequestType::kCheck;
    default:
      return exchange::RequestType::kEntry;
  }
}

// A reversal takes back what the partner has booked, whoever told it; a correction stands for what came back from it.
std::optional<exchange::EarlierLink> EarlierOf(Work& work, const Pairing& pairing, std::int32_t targetId) {
  const std::optional<standalone::EarlierRequest> earlier = work.Host().OwnRequests().EarlierOf(targetId);
  if (!earlier) return std::nullopt;
  const bool reverses = earlier->kind == standalone::EarlierRequest::Kind::kReverses;
  if (const auto sent = work.Host().Outbox().FindByLine(earlier->targetId); sent && sent->pairing == pairing.id) {
    return exchange::EarlierLink{
        .how = reverses ? exchange::EarlierRequest::kReversed : exchange::EarlierRequest::kCorrected,
        .request = sent->requestId};
  }
  if (!reverses) return std::nullopt;
  const std::optional<std::string> request = work.Host().Intercompany().RequestOfLine(earlier->targetId);
  if (!request) return std::nullopt;
  return exchange::EarlierLink{.how = exchange::EarlierRequest::kReversed, .request = *request};
}

// What the company books for itself beside what it asks of partners.
std::string HintOf(Work& work, const std::vector<standalone::PostedLine>& lines, std::int64_t amount) {
  const auto isOwnSide = [&](const standalone::PostedLine& line) {
    return (line.amount < 0) == (amount < 0) && !work.Host().Intercompany().RequestOfLine(line.id);
  };
  const auto own = std::ranges::find_if(lines, isOwnSide);
  if (own == lines.end()) return {};
  const std::optional<standalone::Account> account = work.Host().Accounts().Find(own->accountId);
  constexpr std::size_t kLongestHint = 100;
  return account && account->name.size() <= kLongestHint ? account->name : std::string();
}

exchange::Proposal ProposalFor(Work& work, const Pairing& pairing, const DBMultiEntityTransaction& row) {
  const standalone::TransactionHeader header = work.Host().Transactions().FindHeader(row.txnId).value();
  const std::vector<standalone::PostedLine> lines = work.Host().Transactions().LinesOf(row.txnId);
  const standalone::PostedLine& line = *std::ranges::find(lines, row.targetId, &standalone::PostedLine::id);
  const std::optional<standalone::Name> name = work.Host().Names().Find(header.nameId);
  return {.request = RequestOfLine(row),
          .type = RequestTypeOf(row.txnType),
          .date = header.date,
          .amount = line.amount,
          .currency = work.Host().Settings().Get().homeCurrency,
          .document = header.documentNumber,
          .name = name ? name->fullName : "",
          .memo = line.memo.empty() ? header.memo : line.memo,
          .hint = HintOf(work, lines, line.amount),
          .earlier = EarlierOf(work, pairing, row.targetId)};
}

void RequireRequestOfItsOwn(Work& work, const Pairing& pairing, const DBMultiEntityTransaction& row) {
  const std::string request = RequestOfLine(row);
  const bool isAlone = work.Host().Intercompany().CountWithRequest(row.relationId, request) == 1 &&
                       standalone::Trimmed(request) == request &&
                       !work.Host().Intercompany().FindRequestButForCase(row.relationId, request) &&
                       !work.Host().Outbox().Find(pairing.id, request);
  if (isAlone) return;
  work.Refuse(LineText(row) + " cannot be told from another one with " + pairing.partnerName,
              Remedy::kGiveAnotherRequestId);
}

// Somebody else may have moved it since it was listed. One that was marked as sent by hand has no proposal yet.
void RequireNotSent(Work& work, const DBMultiEntityTransaction& row) {
  DBMultiEntityTransaction now{};
  const bool isThere = work.Host().Intercompany().Find(row.txnId, row.targetId, now);
  const TransactionState state{now.state};
  if (!IsOwn(work, row.txnId)) {
    work.Refuse(LineText(row) + " is one of the partner's own", Remedy::kSeeTheInbox);
  }
  const bool isOfBefore = work.Host().Intercompany().IsOfBefore(row.txnId, row.targetId);
  if (isOfBefore) work.Refuse(LineText(row) + " was booked with version 1.0", Remedy::kSeeTheOutbox);
  if (isThere && (state == TransactionState::kEntered || state == TransactionState::kSent)) return;
  work.Refuse(LineText(row) + (isThere ? " is " + standalone::StateName(state) : " is gone"), Remedy::kSeeTheOutbox);
}

void RequireConnected(Work& work, const Pairing& pairing) {
  if (pairing.state != PairingState::kEstablished) {
    work.Refuse("the pairing with " + PartnerText(pairing) + " is " + std::string(NameOf(pairing.state)),
                Remedy::kSeePartners);
  }
  DBMultiEntityRelation relation{};
  static_cast<void>(work.Host().Relations().FindById(pairing.relationId.value_or(0), relation));
  RequireEstablished(work, relation);
}

bool IsConnected(const Pairing& pairing) noexcept {
  return pairing.state == PairingState::kEstablished && pairing.relationId;
}

void LeaveOutWhatIsNotSent(Work& work, const Pairing& pairing, std::vector<DBMultiEntityTransaction>& entered) {
  std::erase_if(entered, [&](const DBMultiEntityTransaction& row) {
    return row.txnId < pairing.firstTxnId || !IsOwn(work, row.txnId);
  });
}

void SendOneOf(Work& work, const Pairing& pairing, const exchange::KeyPair& keys, const DBMultiEntityTransaction& row,
               SentOfPartner& sent) {
  try {
    work.AskToWrite([&] {
      RefuseToSendTwice(work, row);
      return SendLine(work, pairing, keys, row);
    });
    ++sent.sent;
  } catch (const Refused& refused) {
    sent.left.push_back(LineText(row) + ": " + refused.what());
    const Remedy remedy = refused.Value().remedy;
    if (std::ranges::count(sent.remedies, remedy) == 0) sent.remedies.push_back(remedy);
  } catch (const standalone::InvalidInput& unspeakable) {
    sent.left.push_back(LineText(row) + ": " + unspeakable.what());
  }
}

}  // namespace

std::vector<DBMultiEntityTransaction> LinesToSend(Work& work, const Pairing& pairing) {
  if (!IsConnected(pairing)) return {};
  std::vector<DBMultiEntityTransaction> lines = work.Host().Intercompany().ListEntered(*pairing.relationId);
  LeaveOutWhatIsNotSent(work, pairing, lines);
  return lines;
}

MEStatusCode SendLine(Work& work, const Pairing& pairing, const exchange::KeyPair& keys,
                      const DBMultiEntityTransaction& row) {
  RequireConnected(work, pairing);
  RequireNotSent(work, row);
  RequireRequestOfItsOwn(work, pairing, row);
  const std::string request = RequestOfLine(row);
  const exchange::Fact proposal = exchange::MakeFact(ProposalFor(work, pairing, row), pairing.pairingId, keys);
  const MEStatusCode answer = MultiEntityDriver::UpdateTransactionWithState(
      std::string_view(pairing.partnerRealm), std::string_view(request), static_cast<MEState>(TransactionState::kSent));
  if (answer == MEStatusPermissionDenied) {
    work.Refuse(answer, work.WhyNotDone(UseCase::kSendRequest, answer), Remedy::kAskForTheRight);
  }
  if (answer != MEStatusSuccess) return answer;
  Keep(work, pairing, proposal, standalone::FactOrigin::kMade);
  work.Host().Outbox().Set({.pairing = pairing.id,
                            .requestId = request,
                            .proposal = std::string(proposal.Id().Bytes()),
                            .targetId = row.targetId,
                            .mark = {}});
  work.Host().Record({.action = "exchange.send",
                      .subject = LineText(row) + " to " + PartnerText(pairing),
                      .transactions = standalone::TransactionRange{.first = row.txnId, .last = row.txnId},
                      .changes = {{"state", standalone::StateName(TransactionState{row.state}),
                                   standalone::StateName(TransactionState::kSent)}}});
  return answer;
}

SentOfPartner SendAllOf(Work& work, const Pairing& pairing, const exchange::KeyPair& keys) {
  SentOfPartner sent;
  if (!IsConnected(pairing)) return sent;
  // One that could not be sent stays entered, and is not met again behind the last one that was looked at.
  for (std::int64_t last = 0;;) {
    standalone::EnteredRows entered = work.Read([&] {
      standalone::EnteredRows some =
          work.Host().Intercompany().ListEnteredBehind(*pairing.relationId, last, kLinesReadAtOnce);
      LeaveOutWhatIsNotSent(work, pairing, some.rows);
      return some;
    });
    if (entered.lastNumber == last) return sent;
    last = entered.lastNumber;
    for (const DBMultiEntityTransaction& row : entered.rows) SendOneOf(work, pairing, keys, row, sent);
  }
}

}  // namespace desk
