#include "standalone/desk/Journal.h"

#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHost/Enumerations.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Amount.h"

namespace desk {

namespace {

constexpr std::int32_t kNoAccount = 0;

// What is booked, as the module is asked to.
struct Sides {
  MEAccountInfo expense;
  std::int32_t dueTo = kNoAccount;
  MECNameInfo name;
};

MEAccountInfo ExpenseOf(Work& work, const EntryToRecord& entry) {
  if (const auto* made = std::get_if<NewAccount>(&entry.expense)) {
    return {.name = std::string_view(made->name.Text()), .type = made->type, .accountId = kToBeCreated};
  }
  const standalone::Account account = work.Host().Accounts().Require(std::get<Existing>(entry.expense).text);
  return {.name = std::string_view(account.fullName), .type = account.type, .accountId = account.id};
}

// Without a relation it does not matter: the module refuses such a booking before it looks at the account.
std::int32_t DueToOf(Work& work, const EntryToRecord& entry) {
  if (entry.dueTo) return work.Host().Accounts().Require(*entry.dueTo).id;
  DBMultiEntityRelation relation{};
  if (!work.Host().Relations().Find(entry.realm.Text(), relation)) return kNoAccount;
  if (relation.dueToAccountId == kNoAccount) {
    work.Refuse("the relation with realm " + entry.realm.Text() + " has no due-to account",
                Remedy::kNameTheDueToAccount);
  }
  return relation.dueToAccountId;
}

MECNameInfo NameOf(Work& work, const EntryToRecord& entry) {
  if (const auto* made = std::get_if<NewVendor>(&entry.name)) {
    return {.name = std::string_view(made->name.Text()), .nameId = kToBeCreated};
  }
  const standalone::Name name = work.Host().Names().Require(std::get<Existing>(entry.name).text);
  return {.name = std::string_view(name.fullName), .nameId = name.id};
}

Sides SidesOf(Work& work, const EntryToRecord& entry) {
  return {.expense = ExpenseOf(work, entry), .dueTo = DueToOf(work, entry), .name = NameOf(work, entry)};
}

// The module tells of one that does not exist.
void RequireIntercompanyEntry(Work& work, std::int32_t txnId) {
  const std::optional<standalone::TransactionHeader> header = work.Host().Transactions().FindHeader(txnId);
  if (!header || (header->type == kTxnTypeJournalEntry && work.Host().Intercompany().HasAnyOf(txnId))) return;
  work.Refuse("transaction " + std::to_string(txnId) + " is no journal entry of a partner's request",
              Remedy::kSeeJournalEntries);
}

}  // namespace

std::int32_t RecordJournalEntry(Company& company, const EntryToRecord& entry) {
  Work work(company.Opened(), UseCase::kRecordJournalEntry);
  const std::string amount = standalone::FormatAmount(entry.amount.MinorUnits());
  std::uint32_t txnId = 0;
  work.AskToWrite([&] {
    // The module refuses for want of the right before it looks at anything, so nothing is looked up for it.
    const bool mayBook = work.HasRight({kFeatureJournalEntries, kActionCreate});
    const Sides sides = mayBook ? SidesOf(work, entry) : Sides{};
    const MEStatusCode answer = MultiEntityDriver::RecordGeneralJournalEntry(
        std::string_view(entry.realm.Text()), sides.expense, sides.dueTo, std::string_view(amount),
        std::string_view(entry.request.Text()), sides.name, txnId);
    return work.Recorded(
        answer, [&] { return DeedOfRecording(LineReader(work).LinesOfEntry(static_cast<std::int32_t>(txnId))); });
  });
  return static_cast<std::int32_t>(txnId);
}

std::vector<IntercompanyLine> RemoveJournalEntry(Company& company, std::int32_t txnId) {
  Work work(company.Opened(), UseCase::kRemoveJournalEntry);
  std::vector<IntercompanyLine> removed;
  work.AskToWrite([&] {
    work.RequireRight({kFeatureJournalEntries, kActionDelete});
    RequireIntercompanyEntry(work, txnId);
    removed = LineReader(work).LinesOfEntry(txnId);
    return work.Recorded(MultiEntityDriver::RemoveGeneralJournalEntry(static_cast<std::uint32_t>(txnId)),
                         [&] { return DeedOfRemoval(removed); });
  });
  return removed;
}

}  // namespace desk
