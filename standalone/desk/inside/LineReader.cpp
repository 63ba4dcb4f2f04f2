#include "standalone/desk/inside/LineReader.h"

#include "standalone/books/AccountTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/desk/inside/Texts.h"

namespace desk {

namespace {

// What is due of a journal entry stands on the line behind its target line.
constexpr std::int32_t LineAfter(std::int32_t lineId) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(lineId) + 1U);
}

template <typename Row>
standalone::BookedState BookedStateOf(Work& work, const Row& row) {
  return {standalone::TransactionState{row.state}, work.Host().Intercompany().IsOfBefore(row.txnId, row.targetId)};
}

}  // namespace

standalone::BookedState StateOf(Work& work, const METxnInfo& listed) {
  return BookedStateOf(work, listed);
}

standalone::BookedState StateOf(Work& work, const DBMultiEntityTransaction& row) {
  return BookedStateOf(work, row);
}

LineReader::LineReader(Work& work)
    : work_(work),
      currency_(work.Host().Settings().Get().homeCurrency),
      decimals_(work.Host().Settings().Get().decimals) {}

std::optional<ListItem> LineReader::NameOf(std::int32_t nameId) {
  if (nameId == 0) return std::nullopt;
  const auto [held, isNew] = names_.try_emplace(nameId);
  if (isNew) {
    if (auto found = work_.Host().Names().Find(nameId)) held->second = std::move(found->fullName);
  }
  return ListItem{.id = nameId, .name = held->second};
}

std::optional<ListItem> LineReader::AccountOf(std::int32_t accountId) {
  if (accountId == 0) return std::nullopt;
  return ListItem{.id = accountId, .name = TextOf(work_.Host().Accounts().FullNameOf(accountId))};
}

standalone::Money LineReader::MoneyOf(const standalone::LineView& line) const {
  return {.minorUnits = line.amount, .currency = currency_, .decimals = decimals_};
}

IntercompanyLine LineReader::Read(const METxnInfo& listed) {
  IntercompanyLine read{.txnId = listed.txnId,
                        .lineId = listed.targetId,
                        .type = listed.txnType,
                        .state = StateOf(work_, listed),
                        .date = {},
                        .realm = TextOf(listed.realmId),
                        .partner = TextOf(listed.partnerName),
                        .name = {},
                        .memo = {},
                        .account = {},
                        .otherAccount = {},
                        .amount = {},
                        .requestId = TextOf(listed.requestId)};
  FillFromTheBooks(read);
  return read;
}

IntercompanyLine LineReader::LineOf(const DBMultiEntityTransaction& row, standalone::BookedState state) {
  IntercompanyLine read{.txnId = row.txnId,
                        .lineId = row.targetId,
                        .type = row.txnType,
                        .state = state,
                        .date = {},
                        .realm = {},
                        .partner = {},
                        .name = {},
                        .memo = {},
                        .account = {},
                        .otherAccount = {},
                        .amount = {},
                        .requestId = std::string(standalone::Field(row.requestId))};
  DBMultiEntityRelation relation{};
  if (work_.Host().Relations().FindById(row.relationId, relation)) {
    read.realm = relation.realmId;
    read.partner = relation.partnerName;
  }
  return read;
}

IntercompanyLine LineReader::ReadRequest(const DBMultiEntityTransaction& row) {
  const std::optional<standalone::BookedRow> booked = work_.Host().Intercompany().FindBooked(row.txnId, row.targetId);
  IntercompanyLine read = LineOf(row, {standalone::TransactionState{row.state}, booked && booked->ofBefore});
  if (!booked || booked->line.txnType == 0) return read;
  read.date = booked->line.date;
  read.amount = MoneyOf(booked->line);
  return read;
}

IntercompanyLine LineReader::Read(const standalone::BookedRow& booked) {
  IntercompanyLine read = LineOf(booked.row, {standalone::TransactionState{booked.row.state}, booked.ofBefore});
  if (booked.line.txnType == 0) return read;
  read.date = booked.line.date;
  read.name = NameOf(booked.line.nameId);
  read.memo = TextOf(booked.line.memo);
  read.account = AccountOf(booked.line.accountId);
  read.amount = MoneyOf(booked.line);
  read.otherAccount = AccountOf(booked.otherAccountId);
  return read;
}

void LineReader::FillFromTheBooks(IntercompanyLine& read) {
  standalone::TransactionTable& transactions = work_.Host().Transactions();
  const standalone::LineView line = transactions.FindLineOf(read.txnId, read.lineId);
  if (line.txnType == 0) return;
  read.date = line.date;
  read.name = NameOf(line.nameId);
  read.memo = TextOf(line.memo);
  read.account = AccountOf(line.accountId);
  read.amount = MoneyOf(line);
  // An entry of this company's own pays no partner's bill: what stands behind its line is of no account.
  if (line.txnType != kTxnTypeJournalEntry || work_.Host().OwnRequests().Has(read.lineId)) return;
  read.otherAccount = AccountOf(transactions.FindLineOf(read.txnId, LineAfter(read.lineId)).accountId);
}

std::vector<IntercompanyLine> LineReader::Read(const std::vector<METxnInfo>& listed) {
  std::vector<IntercompanyLine> lines;
  lines.reserve(listed.size());
  for (const METxnInfo& entry : listed) lines.push_back(Read(entry));
  return lines;
}

EntryLines LineReader::LinesOfEntry(std::int32_t txnId) {
  EntryLines entry;
  for (standalone::BookedRow& booked : work_.Host().Intercompany().BookedOf(txnId)) {
    entry.lines.push_back(Read(booked));
    entry.memo = std::move(booked.entryMemo);
  }
  return entry;
}

}  // namespace desk
