#include "standalone/desk/Correcting.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "standalone/books/AccountTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Closing.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/Posting.h"
#include "standalone/desk/inside/RelationAccounts.h"
#include "standalone/desk/inside/Reversing.h"
#include "standalone/desk/inside/Texts.h"
#include "standalone/desk/inside/TypeRights.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

// An entry of a partner's request, as far as its expense is concerned.
struct BookedExpense {
  standalone::TransactionHeader entry;
  standalone::PostedLine line;
  std::int32_t dueToId = 0;  // the account of the line behind it
  std::int32_t standsAt = 0;
  standalone::TransactionHeader last;  // the entry itself, or what has moved the expense since
};

ListItem AccountItemOf(Work& work, std::int32_t id) {
  return {.id = id, .name = TextOf(work.Host().Accounts().FullNameOf(id))};
}

standalone::TransactionHeader RequireEntryOfAPartner(Work& work, std::int32_t txnId) {
  standalone::TransactionHeader header = RequirePosted(work, txnId);
  RequireRightsToType(work, header.type, {kActionCreate, kActionModify});
  if (header.type == kTxnTypeJournalEntry && !IsOwn(work, txnId)) return header;
  work.Refuse(TextOf(header) + " was entered here, not booked from a partner's request", Remedy::kReverseOrRemove);
}

// What was booked from one request has one expense.
BookedExpense RequireExpense(Work& work, std::int32_t txnId) {
  BookedExpense expense;
  expense.entry = RequireEntryOfAPartner(work, txnId);
  std::vector<DBMultiEntityTransaction> rows;
  work.Host().Intercompany().ListOf(txnId, rows);
  const std::vector<standalone::PostedLine> lines = work.Host().Transactions().LinesOf(txnId);
  const auto line = std::ranges::find(lines, rows.front().targetId, &standalone::PostedLine::id);
  if (rows.size() != 1 || line == lines.end() || std::next(line) == lines.end()) {
    work.Refuse(TextOf(expense.entry) + " has not one expense, but " + std::to_string(rows.size()),
                Remedy::kEnterAnEntry);
  }
  expense.line = *line;
  expense.dueToId = std::next(line)->accountId;
  const std::vector<std::int32_t> moves = LiveMovesOf(work, txnId);
  expense.last = moves.empty() ? expense.entry : RequirePosted(work, moves.back());
  expense.standsAt =
      moves.empty() ? line->accountId : work.Host().Transactions().LinesOf(moves.back()).front().accountId;
  return expense;
}

standalone::Account RequireAnotherAccount(Work& work, const BookedExpense& expense, const std::string& text) {
  const standalone::Account account = work.Host().Accounts().Require(text);
  if (account.id == expense.standsAt) {
    work.Refuse(
        "the expense of " + TextOf(expense.entry) + " stands at " + standalone::Quoted(account.fullName) + " already",
        Remedy::kNameAnExpenseAccount);
  }
  if (account.id == expense.dueToId) {
    work.Refuse("the account " + standalone::Quoted(account.fullName) + " is the one that " + TextOf(expense.entry) +
                    " credits with what is due",
                Remedy::kNameAnExpenseAccount);
  }
  if (const std::string why = WhyPaired(work, account.id); !why.empty())
    work.Refuse(why, Remedy::kNameAnExpenseAccount);
  return account;
}

TransactionToPost MoveOf(const BookedExpense& expense, std::int32_t accountId, DateType32 date) {
  return {.type = kTxnTypeJournalEntry,
          .date = date,
          .nameId = expense.entry.nameId,
          .memo = expense.entry.memo,
          .documentNumber = expense.entry.documentNumber,
          .lines = {{.accountId = accountId, .amount = expense.line.amount, .memo = expense.line.memo},
                    {.accountId = expense.standsAt, .amount = -expense.line.amount, .memo = expense.line.memo}},
          .links = {{.kind = standalone::LinkKind::kMoves, .earlierTxnId = expense.entry.id}}};
}

standalone::AuditDeed DeedOfReversal(Work& work, const PostedReversal& reversal) {
  standalone::AuditDeed deed = DeedOfPosting(work, "transaction.reverse", reversal.txnId);
  deed.changes.insert(deed.changes.end(), reversal.closed.begin(), reversal.closed.end());
  std::ranges::move(FollowTakenUp(work, reversal.takenUp), std::back_inserter(deed.changes));
  return deed;
}

}  // namespace

ReversedTransaction ReverseTransaction(Company& company, const TransactionToReverse& given) {
  Work work(company.Opened(), UseCase::kReverseTransaction);
  return work.Write([&] {
    RequireRightsToSomeType(work, {kActionCreate, kActionModify});
    const standalone::TransactionHeader original = RequirePosted(work, given.txnId);
    RequireRightsToType(work, original.type, {kActionCreate, kActionModify});
    RequireReversible(work, original);
    const DateType32 date = given.date.value_or(work.Today());
    RequireNotBefore(work, original, date);
    Closing closing(work, given.closedDays);
    closing.RequireOpen(date);
    PostedReversal reversal =
        PostReversal(work, original, date, given.memo ? std::optional(given.memo->Text()) : std::nullopt);
    work.Host().Record(closing.Told(DeedOfReversal(work, reversal)));
    return ReversedTransaction{
        .txnId = original.id, .reversal = ReadTransaction(work, reversal.txnId), .toTell = std::move(reversal.toTell)};
  });
}

RecordedTransaction RemoveTransaction(Company& company, std::int32_t txnId, ClosedDays closedDays) {
  Work work(company.Opened(), UseCase::kRemoveTransaction);
  return work.Write([&] {
    RequireRightsToSomeType(work, {kActionDelete});
    const standalone::TransactionHeader header = RequirePosted(work, txnId);
    RequireRightsToType(work, header.type, {kActionDelete});
    RequireRemovable(work, header);
    Closing closing(work, closedDays);
    closing.RequireOpen(header.date);
    RecordedTransaction removed = ReadTransaction(work, txnId);
    const standalone::AuditDeed deed = DeedOfTransactionRemoval(work, txnId);
    work.Host().Intercompany().RemoveAllOf(txnId);
    work.Host().Transactions().Delete(txnId);
    work.Host().Record(closing.Told(deed));
    return removed;
  });
}

MovedExpense MoveExpense(Company& company, const ExpenseToMove& given) {
  Work work(company.Opened(), UseCase::kMoveExpense);
  return work.Write([&] {
    work.RequireRight({kFeatureJournalEntries, kActionCreate});
    work.RequireRight({kFeatureJournalEntries, kActionModify});
    const BookedExpense expense = RequireExpense(work, given.txnId);
    if (const std::optional<std::int32_t> back = TakenBackBy(work, given.txnId)) {
      work.Refuse(
          "the partner has taken back " + TextOf(expense.entry) + ", with " + TextOf(RequirePosted(work, *back)),
          Remedy::kEnterAnEntry);
    }
    const standalone::Account account = RequireAnotherAccount(work, expense, given.account);
    const DateType32 date = given.date.value_or(work.Today());
    RequireNotBefore(work, expense.last, date);
    Closing closing(work, given.closedDays);
    closing.RequireOpen(date);
    const std::int32_t moveId = Post(work, MoveOf(expense, account.id, date)).txnId;
    work.Host().Record(closing.Told(DeedOfPosting(work, "journal.move", moveId)));
    return MovedExpense{.txnId = expense.entry.id,
                        .from = AccountItemOf(work, expense.standsAt),
                        .to = {.id = account.id, .name = account.fullName},
                        .move = ReadTransaction(work, moveId)};
  });
}

}  // namespace desk
