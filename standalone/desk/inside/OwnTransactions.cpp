#include "standalone/desk/inside/OwnTransactions.h"

#include <algorithm>

#include "standalone/books/RowFields.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/Texts.h"

namespace desk {

namespace {

PartnersPart PartOf(Work& work, const DBMultiEntityTransaction& row) {
  PartnersPart part{.realm = {},
                    .partner = {},
                    .requestId = std::string(standalone::Field(row.requestId)),
                    .state = StateOf(work, row)};
  DBMultiEntityRelation relation{};
  if (work.Host().Relations().FindById(row.relationId, relation)) {
    part.realm = standalone::Field(relation.realmId);
    part.partner = standalone::Field(relation.partnerName);
  }
  return part;
}

RecordedLine ReadPostedLine(Work& work, std::int32_t txnId, const standalone::PostedLine& line) {
  const standalone::Settings& settings = work.Host().Settings().Get();
  RecordedLine read{
      .lineId = line.id,
      .account = {.id = line.accountId, .name = TextOf(work.Host().Accounts().FullNameOf(line.accountId))},
      .amount = {.minorUnits = line.amount, .currency = settings.homeCurrency, .decimals = settings.decimals},
      .memo = line.memo,
      .partners = {}};
  DBMultiEntityTransaction row{};
  if (work.Host().Intercompany().Find(txnId, line.id, row)) read.partners = PartOf(work, row);
  return read;
}

}  // namespace

bool IsOwn(Work& work, std::int32_t txnId) {
  const std::optional<standalone::TransactionHeader> header = work.Host().Transactions().FindHeader(txnId);
  if (!header || header->type != kTxnTypeJournalEntry) return header.has_value();
  std::vector<DBMultiEntityTransaction> rows;
  work.Host().Intercompany().ListOf(txnId, rows);
  return rows.empty() ||
         std::ranges::any_of(rows, [&](const auto& row) { return work.Host().OwnRequests().Has(row.targetId); });
}

std::optional<std::int32_t> EarlierOf(Work& work, std::int32_t txnId, standalone::LinkKind kind) {
  for (const standalone::TransactionLink& link : work.Host().Links().Of(txnId)) {
    if (link.txnId == txnId && link.kind == kind) return link.earlierTxnId;
  }
  return std::nullopt;
}

bool IsReversal(Work& work, std::int32_t txnId) {
  return EarlierOf(work, txnId, standalone::LinkKind::kReverses).has_value();
}

bool IsMove(Work& work, std::int32_t txnId) {
  return EarlierOf(work, txnId, standalone::LinkKind::kMoves).has_value();
}

RecordedTransaction ReadTransaction(Work& work, std::int32_t txnId) {
  const standalone::TransactionHeader header = work.Host().Transactions().FindHeader(txnId).value();
  RecordedTransaction read{.txnId = txnId,
                           .type = EnteredType{header.type},
                           .date = header.date,
                           .name = {},
                           .memo = header.memo,
                           .documentNumber = header.documentNumber,
                           .lines = {},
                           .attachments = work.Host().Attachments().Of(txnId)};
  if (const auto name = work.Host().Names().Find(header.nameId)) {
    read.name = ListItem{.id = name->id, .name = name->fullName};
  }
  for (const standalone::PostedLine& line : work.Host().Transactions().LinesOf(txnId)) {
    read.lines.push_back(ReadPostedLine(work, txnId, line));
  }
  return read;
}

void RefuseBooked(Work& work, std::int32_t relationId, const std::string& request) {
  DBMultiEntityTransaction row{};
  if (!work.Host().Intercompany().FindRequest(relationId, request, row) || IsOwn(work, row.txnId)) return;
  work.Refuse("the request " + standalone::Quoted(request) + " is booked here, as " +
                  TransactionText(EnteredType::kEntry, row.txnId),
              Remedy::kSeeTheBookedEntry);
}

std::string TransactionText(EnteredType type, std::int32_t txnId) {
  return std::string(NounOf(type)) + ' ' + std::to_string(txnId);
}

}  // namespace desk
