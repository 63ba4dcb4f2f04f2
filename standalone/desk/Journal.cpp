#include "standalone/desk/Journal.h"

#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHost/Enumerations.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/RejectedRequestTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Amount.h"
#include "standalone/values/States.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

constexpr std::int32_t kNoAccount = 0;

// What is booked, as the module is asked to.
struct Sides {
  MEAccountInfo expense;
  std::int32_t dueTo = kNoAccount;
  MECNameInfo name;
};

std::string PartnerText(const DBMultiEntityRelation& relation) {
  return std::string(standalone::Field(relation.partnerName)) + " (realm " +
         std::string(standalone::Field(relation.realmId)) + ")";
}

std::string AccountText(Work& work, std::int32_t id) {
  return standalone::Quoted(work.Host().Accounts().FullNameOf(id).view());
}

DBMultiEntityRelation RequireEstablishedRelation(Work& work, const standalone::RealmId& realm) {
  DBMultiEntityRelation relation{};
  if (!work.Host().Relations().Find(realm.Text(), relation)) {
    work.Refuse("there is no relation with a partner of realm " + standalone::Quoted(realm.Text()),
                Remedy::kMakeARelation);
  }
  const auto state = standalone::RelationState{relation.state};
  if (state != standalone::RelationState::kEstablished) {
    work.Refuse(
        "the relation with " + PartnerText(relation) + " is not established, but " + standalone::StateName(state),
        Remedy::kEstablishTheRelation);
  }
  if (relation.dueToAccountId == kNoAccount) {
    work.Refuse("the relation with " + PartnerText(relation) + " has no due-to account",
                Remedy::kGiveTheRelationAccounts);
  }
  return relation;
}

void RefuseAnotherDueTo(Work& work, const EntryToRecord& entry, const DBMultiEntityRelation& relation) {
  if (!entry.dueTo) return;
  const standalone::Account named = work.Host().Accounts().Require(*entry.dueTo);
  if (named.id == relation.dueToAccountId) return;
  work.Refuse("what this company owes " + PartnerText(relation) + " is booked to the relation's account " +
                  AccountText(work, relation.dueToAccountId) + ", not to " + standalone::Quoted(named.fullName),
              Remedy::kLeaveOutTheDueToAccount);
}

void RefuseRejectedRequest(Work& work, const EntryToRecord& entry, const DBMultiEntityRelation& relation) {
  if (work.Host().Rejected().Find(relation.relationId, entry.request.Text()).relationId == 0) return;
  work.Refuse(
      "the request " + standalone::Quoted(entry.request.Text()) + " of " + PartnerText(relation) + " was rejected",
      Remedy::kDeleteTheRejection);
}

void RefuseNearlyKnownRequest(Work& work, const EntryToRecord& entry, const DBMultiEntityRelation& relation) {
  const std::string& request = entry.request.Text();
  const auto refuse = [&](const std::string& known, std::string_view how) {
    work.Refuse("the request id " + standalone::Quoted(request) + " differs from " + standalone::Quoted(known) +
                    " of " + PartnerText(relation) + ", which " + std::string(how) +
                    ", by nothing but blanks at its ends",
                Remedy::kWriteTheRequestIdAsKnown);
  };
  if (const auto known = work.Host().Intercompany().FindRequestButForBlanks(relation.relationId, request)) {
    refuse(*known, "is in the books already");
  }
  if (const auto known = work.Host().Rejected().FindButForBlanks(relation.relationId, request)) {
    refuse(*known, "was rejected");
  }
}

// Returns the journal entry that has the request already, which the module refuses to book once more.
std::optional<std::int32_t> RequireRequest(Work& work, const EntryToRecord& entry,
                                           const DBMultiEntityRelation& relation) {
  DBMultiEntityTransaction booked{};
  if (work.Host().Intercompany().FindRequest(relation.relationId, entry.request.Text(), booked)) {
    if (booked.txnType == kTxnTypeJournalEntry) return booked.txnId;
    work.Refuse("the request " + standalone::Quoted(entry.request.Text()) + " is one that this company has sent to " +
                    PartnerText(relation) + " itself",
                Remedy::kSeeOwnTransactions);
  }
  RefuseRejectedRequest(work, entry, relation);
  RefuseNearlyKnownRequest(work, entry, relation);
  return std::nullopt;
}

MEAccountInfo ExpenseOf(Work& work, const EntryToRecord& entry) {
  if (const auto* made = std::get_if<NewAccount>(&entry.expense)) {
    return {.name = std::string_view(made->name.Text()), .type = made->type, .accountId = kToBeCreated};
  }
  const standalone::Account account = work.Host().Accounts().Require(std::get<Existing>(entry.expense).text);
  return {.name = std::string_view(account.fullName), .type = account.type, .accountId = account.id};
}

MECNameInfo NameOf(Work& work, const EntryToRecord& entry) {
  if (const auto* made = std::get_if<NewVendor>(&entry.name)) {
    return {.name = std::string_view(made->name.Text()), .nameId = kToBeCreated};
  }
  const standalone::Name name = work.Host().Names().Require(std::get<Existing>(entry.name).text);
  return {.name = std::string_view(name.fullName), .nameId = name.id};
}

Sides SidesOf(Work& work, const EntryToRecord& entry, const DBMultiEntityRelation& relation) {
  RefuseAnotherDueTo(work, entry, relation);
  Sides sides{.expense = ExpenseOf(work, entry), .dueTo = relation.dueToAccountId, .name = NameOf(work, entry)};
  if (sides.expense.accountId == sides.dueTo) {
    work.Refuse("the account " + AccountText(work, sides.dueTo) + " would be both debited and credited, as it is " +
                    "the due-to account of " + PartnerText(relation),
                Remedy::kNameAnExpenseAccount);
  }
  return sides;
}

void RequireAmountAndRequestId(Work& work, const EntryToRecord& entry) {
  if (entry.amount.MinorUnits() == 0) {
    work.Refuse("the amount is 0.00, and an entry over nothing is not booked", Remedy::kGiveAnAmount);
  }
  if (standalone::Trimmed(entry.request.Text()).empty()) {
    work.Refuse("the request id is blank", Remedy::kGiveTheRequestId);
  }
}

MEStatusCode AskToBook(const EntryToRecord& entry, const Sides& sides, std::uint32_t& txnId) {
  const std::string amount = standalone::FormatAmount(entry.amount.MinorUnits());
  return MultiEntityDriver::RecordGeneralJournalEntry(std::string_view(entry.realm.Text()), sides.expense, sides.dueTo,
                                                      std::string_view(amount), std::string_view(entry.request.Text()),
                                                      sides.name, txnId);
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
  std::uint32_t txnId = 0;
  work.AskToWrite([&] {
    // The module refuses for want of the right before it looks at anything, so nothing is looked up for it.
    if (!work.HasRight({kFeatureJournalEntries, kActionCreate})) return AskToBook(entry, {}, txnId);
    RequireAmountAndRequestId(work, entry);
    const DBMultiEntityRelation relation = RequireEstablishedRelation(work, entry.realm);
    const std::optional<std::int32_t> booked = RequireRequest(work, entry, relation);
    const MEStatusCode answer = AskToBook(entry, SidesOf(work, entry, relation), txnId);
    if (answer == MEStatusDeclined && booked) {
      work.Refuse(answer,
                  "the request " + standalone::Quoted(entry.request.Text()) + " of " + PartnerText(relation) +
                      " is booked already, as journal entry " + std::to_string(*booked),
                  Remedy::kSeeTheBookedEntry);
    }
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
