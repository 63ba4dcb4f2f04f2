#include "standalone/desk/inside/Posting.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <numeric>

#include "standalone/books/RowFields.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Uuid.h"

namespace desk {

namespace {

// In which the lines are entered, by their indexes. The lists pair an intercompany line with the line behind it, which
// must not be one of another transaction: one of the company's own comes last.
std::vector<std::size_t> OrderOf(const std::vector<LineToPost>& lines) {
  std::vector<std::size_t> order(lines.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto lastOwn = std::find_if(order.rbegin(), order.rend(), [&](std::size_t i) { return !lines[i].request; });
  if (lastOwn != order.rend()) std::rotate(order.rbegin(), lastOwn, std::next(lastOwn));
  return order;
}

void RequireAccountsTakePostings(Work& work, const TransactionToPost& transaction) {
  for (const LineToPost& line : transaction.lines) {
    const std::optional<standalone::Account> account = work.Host().Accounts().Find(line.accountId);
    if (!account) throw standalone::InvalidInput("There is no account " + std::to_string(line.accountId) + ".");
    standalone::RequireTakesPostings(*account);
  }
}

void AddRequest(Work& work, std::int16_t txnType, std::int32_t txnId, std::int32_t lineId,
                const RequestToPost& request) {
  DBMultiEntityTransaction row{};
  row.txnId = txnId;
  row.relationId = request.relationId;
  row.targetId = lineId;
  standalone::Fill(row.requestId, request.requestId);
  row.txnType = txnType;
  row.state = static_cast<std::int16_t>(request.state);
  work.Host().Intercompany().Add(row);
  work.Host().OwnRequests().Add(lineId, request.earlier);
}

}  // namespace

PostedTransaction Post(Work& work, const TransactionToPost& transaction) {
  RequireAccountsTakePostings(work, transaction);
  standalone::TransactionTable& transactions = work.Host().Transactions();
  PostedTransaction posted;
  posted.txnId = transactions.AddHeader({.type = transaction.type,
                                         .date = transaction.date,
                                         .nameId = transaction.nameId,
                                         .memo = transaction.memo,
                                         .documentNumber = transaction.documentNumber});
  posted.lineIds.resize(transaction.lines.size());
  for (const std::size_t index : OrderOf(transaction.lines)) {
    const LineToPost& line = transaction.lines[index];
    const std::int32_t lineId =
        transactions.AddLine(posted.txnId, {.accountId = line.accountId, .amount = line.amount, .memo = line.memo});
    posted.lineIds[index] = lineId;
    if (line.request) AddRequest(work, transaction.type, posted.txnId, lineId, *line.request);
  }
  for (const LinkToPost& link : transaction.links) {
    work.Host().Links().Add({.txnId = posted.txnId, .kind = link.kind, .earlierTxnId = link.earlierTxnId});
  }
  for (const std::string& reference : transaction.attachments) {
    work.Host().Attachments().Add(posted.txnId, reference);
  }
  transactions.Post(posted.txnId);
  return posted;
}

std::string NewRequestId(Work& work) {
  return standalone::MakeUuid(std::chrono::floor<std::chrono::milliseconds>(work.Host().Clock().Now()));
}

}  // namespace desk
