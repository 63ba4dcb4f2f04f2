#include "standalone/desk/Booking.h"

#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHost/Enumerations.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/RejectedRequestTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/Partners.h"
#include "standalone/desk/inside/RelationAccounts.h"
#include "standalone/values/Amount.h"
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

std::string AccountText(Work& work, std::int32_t id) {
  return standalone::Quoted(work.Host().Accounts().FullNameOf(id).view());
}

DBMultiEntityRelation RequireEstablishedRelation(Work& work, const standalone::RealmId& realm) {
  DBMultiEntityRelation relation{};
  if (!work.Host().Relations().Find(realm.Text(), relation)) {
    work.Refuse("there is no relation with the partner " + standalone::Quoted(realm.Text()), Remedy::kMakeARelation);
  }
  RequireEstablished(work, relation);
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

// A request id as it is known, how, and by what it differs.
struct NearlyKnown {
  std::string request;
  std::string_view how;
  std::string_view by;
};

std::optional<NearlyKnown> Known(std::optional<std::string> request, std::string_view how, std::string_view by) {
  if (!request) return std::nullopt;
  return NearlyKnown{.request = *std::move(request), .how = how, .by = by};
}

constexpr std::string_view kBooked = "is in the books already";
constexpr std::string_view kRejected = "was rejected";

// One that is the same but for blanks at its ends; one without such blanks is among them itself.
std::optional<NearlyKnown> FindButForBlanks(Work& work, const std::string& request, std::int32_t relationId) {
  constexpr std::string_view kBlanks = "blanks at its ends";
  auto known = Known(work.Host().Intercompany().FindRequestButForBlanks(relationId, request), kBooked, kBlanks);
  return known ? known : Known(work.Host().Rejected().FindButForBlanks(relationId, request), kRejected, kBlanks);
}

std::optional<NearlyKnown> FindButForCase(Work& work, const std::string& request, std::int32_t relationId) {
  constexpr std::string_view kCase = "the case of its letters";
  auto known = Known(work.Host().Intercompany().FindRequestButForCase(relationId, request), kBooked, kCase);
  return known ? known : Known(work.Host().Rejected().FindButForCase(relationId, request), kRejected, kCase);
}

void RefuseNearlyKnown(Work& work, const EntryToRecord& entry, const DBMultiEntityRelation& relation,
                       const NearlyKnown& known) {
  work.Refuse("the request id " + standalone::Quoted(entry.request.Text()) + " differs from " +
                  standalone::Quoted(known.request) + " of " + PartnerText(relation) + ", which " +
                  std::string(known.how) + ", by nothing but " + std::string(known.by),
              Remedy::kWriteTheRequestIdAsKnown);
}

// Returns the journal entry that has the request already, which the module refuses to book once more.
std::optional<std::int32_t> RequireRequest(Work& work, const EntryToRecord& entry,
                                           const DBMultiEntityRelation& relation) {
  const std::string& request = entry.request.Text();
  const std::optional<NearlyKnown> butForBlanks = FindButForBlanks(work, request, relation.relationId);
  if (butForBlanks || standalone::Trimmed(request) != request) {
    DBMultiEntityTransaction booked{};
    if (work.Host().Intercompany().FindRequest(relation.relationId, request, booked)) {
      if (!IsOwn(work, booked.txnId)) return booked.txnId;
      work.Refuse(
          "the request " + standalone::Quoted(request) + " is one of this company's own to " + PartnerText(relation),
          Remedy::kSeeOwnTransactions);
    }
    RefuseRejectedRequest(work, entry, relation);
    if (butForBlanks) RefuseNearlyKnown(work, entry, relation, *butForBlanks);
  }
  const std::optional<NearlyKnown> butForCase = FindButForCase(work, request, relation.relationId);
  if (butForCase) RefuseNearlyKnown(work, entry, relation, *butForCase);
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

// The balance with a partner would be another one, and nobody would have asked it.
void RefusePairedExpense(Work& work, std::int32_t expense) {
  if (const std::string why = WhyPaired(work, expense); !why.empty()) work.Refuse(why, Remedy::kNameAnExpenseAccount);
}

Sides SidesOf(Work& work, const EntryToRecord& entry, const BookableRequest& bookable) {
  const DBMultiEntityRelation& relation = bookable.relation;
  RefuseAnotherDueTo(work, entry, relation);
  Sides sides{.expense = ExpenseOf(work, entry), .dueTo = relation.dueToAccountId, .name = NameOf(work, entry)};
  if (sides.expense.accountId == sides.dueTo) {
    work.Refuse("the account " + AccountText(work, sides.dueTo) + " would be both debited and credited, as it is " +
                    "the due-to account of " + PartnerText(relation),
                Remedy::kNameAnExpenseAccount);
  }
  if (sides.expense.accountId != bookable.standsAt) RefusePairedExpense(work, sides.expense.accountId);
  return sides;
}

// As the company writes it.
std::string AmountOf(Work& work, const EntryToRecord& entry) {
  const standalone::Settings& settings = work.Host().Settings().Get();
  const std::int64_t minorUnits =
      standalone::RequireAmount(entry.amount.Text(), settings.homeCurrency, settings.decimals);
  std::string amount = standalone::FormatAmount(minorUnits, settings.decimals);
  if (minorUnits != 0) return amount;
  work.Refuse("the amount is " + amount + ", and an entry over nothing is not booked", Remedy::kGiveAnAmount);
}

void RequireRequestId(Work& work, const EntryToRecord& entry) {
  if (!standalone::Trimmed(entry.request.Text()).empty()) return;
  work.Refuse("the request id is blank", Remedy::kGiveTheRequestId);
}

// Has the host book as the entry says, as long as it lives.
class BookedAs {
 public:
  BookedAs(standalone::StandaloneHost& host, const EntryToRecord& entry) : host_(host) {
    host_.BookAs({.date = entry.date.value_or(NullDate()),
                  .memo = entry.memo ? std::optional(entry.memo->Text()) : std::nullopt});
  }
  BookedAs(const BookedAs&) = delete;
  BookedAs& operator=(const BookedAs&) = delete;
  ~BookedAs() { host_.BookAs({}); }

 private:
  standalone::StandaloneHost& host_;
};

void NoteMade(NotedNames& noted, const EntryToRecord& entry) {
  if (const auto* made = std::get_if<NewAccount>(&entry.expense)) {
    noted.NoteAccount(standalone::NormalizedFullName("The account name", made->name.Text()));
  }
  if (const auto* made = std::get_if<NewVendor>(&entry.name)) {
    noted.NoteName(standalone::NormalizedFullName("The name", made->name.Text()));
  }
}

// The module comes to the request after the account and the name that it is to make, which the first booking has made.
bool MayBeForTheRequest(MEStatusCode answer) {
  return answer == MEStatusDeclined || answer == MEStatusExpenseAccountRefused || answer == MEStatusNameRefused;
}

MEStatusCode AskToBook(const EntryToRecord& entry, std::string_view realm, const std::string& amount,
                       const Sides& sides, std::uint32_t& txnId) {
  return MultiEntityDriver::RecordGeneralJournalEntry(realm, sides.expense, sides.dueTo, std::string_view(amount),
                                                      std::string_view(entry.request.Text()), sides.name, txnId);
}

}  // namespace

// The module refuses for want of the right before it looks at anything, so nothing is looked up for it.
MEStatusCode AskInVain(const EntryToRecord& entry) {
  std::uint32_t none = 0;
  return AskToBook(entry, entry.partner.Text(), {}, {}, none);
}

BookableRequest RequireBookable(Work& work, const EntryToRecord& entry) {
  BookableRequest bookable{.amount = AmountOf(work, entry), .relation = {}, .standsAt = 0};
  RequireRequestId(work, entry);
  bookable.relation = RequireEstablishedRelation(work, RealmOf(work, entry.partner));
  return bookable;
}

MEStatusCode Book(Work& work, const EntryToRecord& entry, const BookableRequest& bookable, Closing& closing,
                  BookedEntry& booked) {
  const DBMultiEntityRelation& relation = bookable.relation;
  const std::optional<std::int32_t> before = RequireRequest(work, entry, relation);
  closing.RequireOpen(entry.date.value_or(work.Today()));
  const BookedAs bookedAs(work.Host(), entry);
  std::uint32_t txnId = 0;
  const MEStatusCode answer =
      AskToBook(entry, relation.realmId, bookable.amount, SidesOf(work, entry, bookable), txnId);
  if (before && MayBeForTheRequest(answer)) {
    work.Refuse(answer,
                "the request " + standalone::Quoted(entry.request.Text()) + " of " + PartnerText(relation) +
                    " is booked already, as journal entry " + std::to_string(*before),
                Remedy::kSeeTheBookedEntry);
  }
  booked.txnId = static_cast<std::int32_t>(txnId);
  if (answer == MEStatusSuccess) NoteMade(booked.noted, entry);
  return answer;
}

standalone::AuditDeed DeedOfBooked(Work& work, std::int32_t txnId) {
  const EntryLines entry = LineReader(work).LinesOfEntry(txnId);
  return DeedOfRecording(entry.lines, entry.memo);
}

}  // namespace desk
