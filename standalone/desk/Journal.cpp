#include "standalone/desk/Journal.h"

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/InboxTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/Booking.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Closing.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/NotedNames.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/Partners.h"
#include "standalone/desk/inside/Reversing.h"
#include "standalone/desk/inside/TypeRights.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

// It is answered from there, and the partner learns of it.
void RefuseWhatTheInboxKnows(Work& work, const DBMultiEntityRelation& relation, const std::string& request) {
  const auto known = work.Host().Inbox().FindOfRelation(relation.relationId, request);
  if (!known || known->state == standalone::InboxState::kAccepted) return;
  work.Refuse("the request " + standalone::Quoted(request) + " of " + PartnerText(relation) +
                  " has come by the exchange, and is " + std::string(NameOf(known->state)),
              Remedy::kAnswerInTheInbox);
}

// A request that has come by the exchange, too, with another amount, is decided by nothing but the exchange then.
void ClearMarks(Work& work, std::int32_t txnId) {
  std::vector<DBMultiEntityTransaction> rows;
  work.Host().Intercompany().ListOf(txnId, rows);
  for (const DBMultiEntityTransaction& row : rows) {
    auto known = work.Host().Inbox().FindOfRelation(row.relationId, standalone::Field(row.requestId));
    if (!known || known->state != standalone::InboxState::kNew || known->mark.empty()) continue;
    known->mark.clear();
    work.Host().Inbox().Set(*known);
  }
}

// What the partner was told was booked stays.
void RefuseAnswered(Work& work, const standalone::TransactionHeader& entry) {
  const auto known = work.Host().Inbox().FindByEntry(entry.id);
  if (!known) return;
  work.Refuse("the partner was told that " + TextOf(entry) + " is booked for its request " +
                  standalone::Quoted(known->requestId),
              Remedy::kWaitForTheReversal);
}

// Nothing of an expense that was moved would be left to move.
void RequireNotMoved(Work& work, const standalone::TransactionHeader& entry) {
  const std::optional<std::int32_t> last = LastAboutExpenseOf(work, entry.id);
  if (!last) return;
  const std::string moved = IsReversal(work, *last) ? " was moved and moved back by " : " was moved by ";
  work.Refuse("the expense of " + TextOf(entry) + moved + TransactionText(EnteredType::kEntry, *last),
              Remedy::kTakeBackTheLaterFirst);
}

standalone::TransactionHeader RequireEntryToRemove(Work& work, std::int32_t txnId) {
  standalone::TransactionHeader entry = RequirePosted(work, txnId);
  RequireRightsToType(work, entry.type, {kActionDelete});
  if (IsOwn(work, txnId)) {
    work.Refuse(TextOf(entry) + " was entered here, not booked from a partner's request", Remedy::kReverseOrRemove);
  }
  RefuseAnswered(work, entry);
  RequireNotMoved(work, entry);
  return entry;
}

}  // namespace

std::int32_t RecordJournalEntry(Company& company, const EntryToRecord& entry) {
  Work work(company.Opened(), UseCase::kRecordJournalEntry);
  NotedNames noted(work);
  BookedEntry booked{.noted = noted};
  work.AskToWrite([&] {
    if (!work.HasRight({kFeatureJournalEntries, kActionCreate})) return AskInVain(entry);
    const BookableRequest bookable = RequireBookable(work, entry);
    RefuseWhatTheInboxKnows(work, bookable.relation, entry.request.Text());
    Closing closing(work, entry.closedDays);
    const MEStatusCode answer = Book(work, entry, bookable, closing, booked);
    return work.Recorded(answer, [&] { return closing.Told(DeedOfBooked(work, booked.txnId)); });
  });
  noted.Tell();
  return booked.txnId;
}

std::vector<IntercompanyLine> RemoveJournalEntry(Company& company, std::int32_t txnId, ClosedDays closedDays) {
  Work work(company.Opened(), UseCase::kRemoveJournalEntry);
  std::vector<IntercompanyLine> removed;
  work.AskToWrite([&] {
    work.RequireRight({kFeatureJournalEntries, kActionDelete});
    const standalone::TransactionHeader entry = RequireEntryToRemove(work, txnId);
    Closing closing(work, closedDays);
    closing.RequireOpen(entry.date);
    removed = LineReader(work).LinesOfEntry(txnId).lines;
    ClearMarks(work, txnId);
    const std::vector<std::string> attachments = work.Host().Attachments().Of(txnId);
    return work.Recorded(MultiEntityDriver::RemoveGeneralJournalEntry(static_cast<std::uint32_t>(txnId)),
                         [&] { return closing.Told(DeedOfRemoval(removed, entry.memo, attachments)); });
  });
  return removed;
}

}  // namespace desk
