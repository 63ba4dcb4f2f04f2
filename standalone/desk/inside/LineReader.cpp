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

LineReader::LineReader(Work& work) : work_(work), currency_(work.Host().Settings().Get().homeCurrency) {}

std::optional<ListItem> LineReader::NameOf(const standalone::LineView& line) {
  if (line.nameId == 0) return std::nullopt;
  const auto [held, isNew] = names_.try_emplace(line.nameId);
  if (isNew) {
    if (const auto found = work_.Host().Names().Find(line.nameId)) held->second = found->fullName;
  }
  return ListItem{.id = line.nameId, .name = held->second};
}

std::optional<ListItem> LineReader::AccountOf(const standalone::LineView& line) {
  if (line.accountId == 0) return std::nullopt;
  return ListItem{.id = line.accountId, .name = TextOf(work_.Host().Accounts().FullNameOf(line.accountId))};
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

IntercompanyLine LineReader::Read(const DBMultiEntityTransaction& row) {
  IntercompanyLine read{.txnId = row.txnId,
                        .lineId = row.targetId,
                        .type = row.txnType,
                        .state = StateOf(work_, row),
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
  FillFromTheBooks(read);
  return read;
}

void LineReader::FillFromTheBooks(IntercompanyLine& read) {
  standalone::TransactionTable& transactions = work_.Host().Transactions();
  const standalone::LineView line = transactions.FindLineOf(read.txnId, read.lineId);
  if (line.txnType == 0) return;
  read.date = line.date;
  read.name = NameOf(line);
  read.memo = TextOf(line.memo);
  read.account = AccountOf(line);
  read.amount = standalone::Money{.minorUnits = line.amount, .currency = currency_};
  if (line.txnType != kTxnTypeJournalEntry) return;
  read.otherAccount = AccountOf(transactions.FindLineOf(read.txnId, LineAfter(read.lineId)));
}

std::vector<IntercompanyLine> LineReader::Read(const std::vector<METxnInfo>& listed) {
  std::vector<IntercompanyLine> lines;
  lines.reserve(listed.size());
  for (const METxnInfo& entry : listed) lines.push_back(Read(entry));
  return lines;
}

std::vector<IntercompanyLine> LineReader::LinesOfEntry(std::int32_t txnId) {
  std::vector<DBMultiEntityTransaction> rows;
  work_.Host().Intercompany().ListOf(txnId, rows);
  std::vector<IntercompanyLine> lines;
  for (const DBMultiEntityTransaction& row : rows) lines.push_back(Read(row));
  return lines;
}

}  // namespace desk
