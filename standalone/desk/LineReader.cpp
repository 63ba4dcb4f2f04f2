#include "standalone/desk/LineReader.h"

#include "standalone/books/AccountTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/desk/work/Texts.h"

namespace desk {

LineReader::LineReader(Work& work) : work_(work), currency_(work.Host().Settings().Get().homeCurrency) {}

std::optional<ListItem> LineReader::AccountOf(const standalone::LineView& line) {
  if (line.accountId == 0) return std::nullopt;
  return ListItem{.id = line.accountId, .name = TextOf(work_.Host().Accounts().FullNameOf(line.accountId))};
}

IntercompanyLine LineReader::Read(const METxnInfo& listed) {
  IntercompanyLine read{.txnId = listed.txnId,
                        .lineId = listed.targetId,
                        .type = listed.txnType,
                        .state = standalone::TransactionState{listed.state},
                        .date = {},
                        .realm = TextOf(listed.realmId),
                        .partner = TextOf(listed.partnerName),
                        .name = TextOf(listed.txnName),
                        .nameId = {},
                        .account = {},
                        .otherAccount = {},
                        .amount = {},
                        .requestId = TextOf(listed.requestId)};
  standalone::TransactionTable& transactions = work_.Host().Transactions();
  const standalone::LineView line = transactions.FindLineOf(listed.txnId, listed.targetId);
  if (line.txnType == 0) return read;
  read.date = line.date;
  if (line.nameId != 0) read.nameId = line.nameId;
  read.account = AccountOf(line);
  read.amount = standalone::Money{.minorUnits = line.amount, .currency = currency_};
  if (line.txnType == kTxnTypeJournalEntry) {
    read.otherAccount = AccountOf(transactions.FindLineOf(listed.txnId, listed.targetId + 1));
  }
  return read;
}

std::vector<IntercompanyLine> LineReader::Read(const std::vector<METxnInfo>& listed) {
  std::vector<IntercompanyLine> lines;
  lines.reserve(listed.size());
  for (const METxnInfo& entry : listed) lines.push_back(Read(entry));
  return lines;
}

}  // namespace desk
