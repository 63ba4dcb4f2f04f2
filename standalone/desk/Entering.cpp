#include "standalone/desk/Entering.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/LinkTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Closing.h"
#include "standalone/desk/inside/Composing.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LostRequests.h"
#include "standalone/desk/inside/NotedNames.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/Partners.h"
#include "standalone/desk/inside/Posting.h"
#include "standalone/desk/inside/Reversing.h"
#include "standalone/desk/inside/TypeRights.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/Rights.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

// What is said in the audit trail, such as bill.record.
std::string ActionOf(EnteredType type, const char* what) {
  switch (type) {
    case EnteredType::kBill:
      return std::string("bill.") + what;
    case EnteredType::kCheck:
      return std::string("check.") + what;
    case EnteredType::kEntry:
      break;
  }
  return std::string("entry.") + what;
}

standalone::FeatureRight RightToCreate(EnteredType type) noexcept {
  switch (type) {
    case EnteredType::kBill:
      return {kFeatureBills, kActionCreate};
    case EnteredType::kCheck:
      return {kFeatureChecks, kActionCreate};
    case EnteredType::kEntry:
      break;
  }
  return {kFeatureJournalEntries, kActionCreate};
}

std::vector<std::string> TextsOf(const std::vector<standalone::Attachment>& attachments) {
  std::vector<std::string> texts;
  for (const standalone::Attachment& attachment : attachments) texts.push_back(attachment.Text());
  return texts;
}

LinesToCompose LinesOf(Work& work, const TransactionToRecord& given) {
  LinesToCompose toCompose{
      .type = given.type, .lines = {}, .shares = {}, .credited = given.credited, .memo = given.memo.Text()};
  const standalone::Settings& settings = work.Host().Settings().Get();
  for (const EnteredLine& line : given.lines) {
    const standalone::Account account = work.Host().Accounts().Require(line.account);
    standalone::RequireTakesPostings(account);
    toCompose.lines.push_back(
        {.accountId = account.id,
         .amount = standalone::RequireAmount(line.amount.Text(), settings.homeCurrency, settings.decimals),
         .memo = line.memo.Text()});
  }
  for (const PartnersShare& share : given.shares) toCompose.shares.push_back({share.partner, share.share});
  return toCompose;
}

void RefuseKnownVendor(Work& work, const NewVendor& vendor) {
  if (const auto known = work.Host().Names().FindByFullName(vendor.name.Text())) {
    work.Refuse("there is a name " + standalone::Quoted(known->fullName) + " already", Remedy::kUseTheNameLikeThat);
  }
}

// It is made right before the transaction that names it is posted.
std::int32_t MakeVendor(Work& work, const NewVendor& vendor) {
  RefuseKnownVendor(work, vendor);
  return work.Host().Names().Create(vendor.name.Text(), standalone::NameKind::kVendor).id;
}

std::int32_t NameOf(Work& work, const TransactionToRecord& given) {
  if (const auto* const vendor = std::get_if<NewVendor>(&given.name)) return MakeVendor(work, *vendor);
  if (const auto* const named = std::get_if<Existing>(&given.name)) return work.Host().Names().Require(named->text).id;
  if (given.type == EnteredType::kEntry) return 0;
  work.Refuse(given.type == EnteredType::kBill ? "the bill names nobody whom it is from"
                                               : "the check names nobody whom it is for",
              Remedy::kNameWhom);
}

// What the paper of a transaction calls itself, and whose it is.
struct Document {
  std::int16_t type = 0;
  std::int32_t nameId = 0;
  const std::string& number;
};

void RefuseASecondOne(Work& work, const Document& document) {
  if (document.number.empty()) return;
  const std::optional<standalone::KnownDocument> known =
      work.Host().Transactions().FindDocument(document.type, document.nameId, document.number);
  if (!known) return;
  const std::string written = known->number == document.number ? "" : ", written " + standalone::Quoted(known->number);
  work.Refuse("the document number " + standalone::Quoted(document.number) + " of that name is in the books" + written +
                  ", as " + TransactionText(EnteredType{document.type}, known->txnId),
              Remedy::kRecordAgain);
}

Document DocumentOf(const TransactionToPost& toPost) {
  return {.type = toPost.type, .nameId = toPost.nameId, .number = toPost.documentNumber};
}

// What is lost comes first: who says that it is another one than a transaction of the books means no more than that.
void RefuseWhatIsKnown(Work& work, const TransactionToPost& toPost, const std::vector<LostRequest>& takenUp = {}) {
  RefuseToAskTwice(work, toPost, takenUp);
  RefuseASecondOne(work, DocumentOf(toPost));
}

std::vector<LostRequest> LostOf(Work& work, const TransactionToRecord& given) {
  std::vector<LostRequest> lost;
  for (const standalone::RequestId& request : given.lost) lost.push_back(RequireLost(work, given.type, request));
  return lost;
}

// What was left out is as the partners know it.
TransactionToRecord WithWhatWasSent(const TransactionToRecord& given, const std::vector<LostRequest>& lost) {
  TransactionToRecord completed = given;
  if (lost.empty()) return completed;
  const exchange::Proposal& sent = lost.front().proposal;
  if (!completed.date) completed.date = sent.date;
  if (completed.memo.Text().empty()) completed.memo = standalone::Memo(sent.memo);
  if (completed.documentNumber.Text().empty()) completed.documentNumber = standalone::DocumentNumber(sent.document);
  if (std::holds_alternative<std::monostate>(completed.name) && !sent.name.empty())
    completed.name = Existing{sent.name};
  return completed;
}

TransactionToPost Composed(Work& work, const TransactionToRecord& given) {
  TransactionToPost toPost{.type = static_cast<std::int16_t>(given.type),
                           .date = given.date ? *given.date : work.Today(),
                           .nameId = 0,
                           .memo = given.memo.Text(),
                           .documentNumber = given.documentNumber.Text(),
                           .lines = Compose(work, LinesOf(work, given)),
                           .links = {},
                           .attachments = TextsOf(given.attachments)};
  toPost.nameId = NameOf(work, given);
  return toPost;
}

std::int32_t NameIdOf(const RecordedTransaction& transaction) {
  return transaction.name ? transaction.name->id : 0;
}

// Who asks for one of another type learns nothing about it.
RecordedTransaction RequireOriginal(Work& work, const TransactionToCopy& copy) {
  const std::optional<standalone::TransactionHeader> header = work.Host().Transactions().FindHeader(copy.txnId);
  if (!header || !header->posted || header->type != static_cast<std::int16_t>(copy.type)) {
    work.Refuse("there is no " + TransactionText(copy.type, copy.txnId), Remedy::kSeeTransactions);
  }
  if (!IsOwn(work, copy.txnId)) {
    work.Refuse(TransactionText(copy.type, copy.txnId) + " was booked from a partner's request",
                Remedy::kCopyAnotherOne);
  }
  if (IsReversal(work, copy.txnId)) {
    work.Refuse(TransactionText(copy.type, copy.txnId) + " reverses another transaction", Remedy::kCopyAnotherOne);
  }
  if (IsMove(work, copy.txnId)) {
    work.Refuse(TransactionText(copy.type, copy.txnId) + " moves an expense", Remedy::kMoveTheExpenseAgain);
  }
  return ReadTransaction(work, copy.txnId);
}

LineToPost CopyOf(Work& work, std::int32_t txnId, const RecordedLine& line) {
  LineToPost copied{.accountId = line.account.id, .amount = line.amount.minorUnits, .memo = line.memo};
  DBMultiEntityTransaction row{};
  DBMultiEntityRelation relation{};
  if (!work.Host().Intercompany().Find(txnId, line.lineId, row)) return copied;
  work.Host().Relations().FindById(row.relationId, relation);
  return PartnersLine(work, relation, copied.amount, copied.memo);
}

// What nobody has called wrong stays, also a partner's line that was imported on another account than the relation's.
LineToPost RepeatOf(Work& work, const RecordedTransaction& original, const RecordedLine& line,
                    const std::string& memo) {
  LineToPost repeated = CopyOf(work, original.txnId, line);
  repeated.accountId = line.account.id;
  repeated.memo = MemoOfRepeated(line.memo, original.memo, memo);
  return repeated;
}

TransactionToPost Copied(Work& work, const TransactionToCopy& copy) {
  const RecordedTransaction original = RequireOriginal(work, copy);
  TransactionToPost toPost{
      .type = static_cast<std::int16_t>(copy.type),
      .date = copy.date ? *copy.date : work.Today(),
      .nameId = NameIdOf(original),
      .memo = original.memo,
      .documentNumber = copy.documentNumber ? copy.documentNumber->Text() : original.documentNumber,
      .lines = {},
      .links = {},
      .attachments = TextsOf(copy.attachments)};
  for (const RecordedLine& line : original.lines) toPost.lines.push_back(CopyOf(work, copy.txnId, line));
  if (!copy.again) RefuseWhatIsKnown(work, toPost);
  return toPost;
}

// What nobody will ever find under these numbers.
RecordedTransaction WithoutNumbers(RecordedTransaction preview, bool isNameNew) {
  preview.txnId = 0;
  if (isNameNew && preview.name) preview.name->id = 0;
  for (RecordedLine& line : preview.lines) {
    line.lineId = 0;
    if (line.partners) line.partners->requestId.clear();
  }
  return preview;
}

// Posts what `compose` makes in a unit of work that is taken back if it is only to be seen.
struct Entry {
  EnteredType type{};
  ClosedDays closedDays{};
  std::function<TransactionToPost()> compose;
  std::function<standalone::AuditDeed(std::int32_t txnId)> deed;
  // What else becomes another by it, for the trail.
  std::function<std::vector<standalone::AuditChange>()> follow = nullptr;
};

RecordedTransaction Enter(Work& work, Posting how, const Entry& entry) {
  const auto post = [&] {
    work.RequireRight(RightToCreate(entry.type));
    Closing closing(work, entry.closedDays);
    const TransactionToPost toPost = entry.compose();
    closing.RequireOpen(toPost.date);
    const PostedTransaction posted = Post(work, toPost);
    if (how == Posting::kPost) {
      standalone::AuditDeed deed = entry.deed(posted.txnId);
      if (entry.follow) std::ranges::move(entry.follow(), std::back_inserter(deed.changes));
      work.Host().Record(closing.Told(std::move(deed)));
    }
    return ReadTransaction(work, posted.txnId);
  };
  return how == Posting::kPost ? work.Write(post) : work.Host().Rehearse(post);
}

standalone::TransactionHeader RequireCorrectable(Work& work, const TransactionToCorrect& given) {
  const std::optional<standalone::TransactionHeader> header = work.Host().Transactions().FindHeader(given.txnId);
  if (!header || !header->posted || header->type != static_cast<std::int16_t>(given.type)) {
    work.Refuse("there is no " + TransactionText(given.type, given.txnId), Remedy::kSeeTransactions);
  }
  if (IsReversal(work, given.txnId)) {
    work.Refuse(TransactionText(given.type, given.txnId) + " reverses another transaction", Remedy::kRemoveTheReversal);
  }
  if (IsMove(work, given.txnId)) {
    work.Refuse(TransactionText(given.type, given.txnId) + " moves an expense", Remedy::kMoveTheExpenseAgain);
  }
  RequireReversible(work, *header);
  return *header;
}

bool HasPartners(const RecordedTransaction& transaction) {
  return std::ranges::any_of(transaction.lines, [](const RecordedLine& line) { return line.partners.has_value(); });
}

void RequireLinesAndSharesTogether(Work& work, const RecordedTransaction& original, const TransactionToCorrect& given) {
  const bool needsLines = !given.shares.empty() || given.withoutPartners || given.credited;
  if (needsLines && given.lines.empty()) {
    work.Refuse("the shares and the account that is credited are given with the lines", Remedy::kGiveLines);
  }
  if (!given.lines.empty() && given.shares.empty() && !given.withoutPartners && HasPartners(original)) {
    work.Refuse(TransactionText(given.type, given.txnId) + " has partners, and no share is given of the new lines",
                Remedy::kGiveTheSharesAgain);
  }
}

// Where the original has what it comes to; none where that cannot be told, as in an entry.
std::optional<std::string> CreditedOf(Work& work, const RecordedTransaction& original) {
  std::optional<std::string> credited;
  for (const RecordedLine& line : original.lines) {
    if (original.type == EnteredType::kEntry || line.partners) continue;
    const std::optional<standalone::Account> account = work.Host().Accounts().Find(line.account.id);
    if (account && MayCredit(original.type, account->type)) credited = "#" + std::to_string(account->id);
  }
  return credited;
}

// What is given of it, as if it were a transaction of its own.
TransactionToRecord NewPartOf(Work& work, const RecordedTransaction& original, const TransactionToCorrect& given) {
  TransactionToRecord part{.type = given.type,
                           .name = given.name,
                           .memo = given.memo.value_or(standalone::Memo(original.memo)),
                           .lines = given.lines,
                           .shares = given.shares,
                           .credited = given.credited,
                           .attachments = {}};
  if (!part.credited) part.credited = CreditedOf(work, original);
  return part;
}

// Each partner's lines in order.
void NameEarlierRequests(Work& work, std::int32_t originalId, std::vector<LineToPost>& lines) {
  std::vector<DBMultiEntityTransaction> earlier;
  work.Host().Intercompany().ListOf(originalId, earlier);
  for (LineToPost& line : lines) {
    if (!line.request) continue;
    const auto row = std::ranges::find(earlier, line.request->relationId, &DBMultiEntityTransaction::relationId);
    if (row == earlier.end()) continue;
    line.request->earlier =
        standalone::EarlierRequest{.kind = standalone::EarlierRequest::Kind::kCorrects, .targetId = row->targetId};
    earlier.erase(row);
  }
}

bool IsTheSame(const LineToPost& line, const RecordedLine& original) {
  return line.accountId == original.account.id && line.amount == original.amount.minorUnits &&
         line.memo == original.memo && line.request.has_value() == original.partners.has_value();
}

bool IsOfAnotherPaper(const TransactionToPost& toPost, const RecordedTransaction& original) {
  return toPost.documentNumber != original.documentNumber || toPost.nameId != NameIdOf(original);
}

// A day counts where it is given: what is left out is today, which hardly ever is the original's.
void RequireAnythingElse(Work& work, const TransactionToPost& toPost, const RecordedTransaction& original,
                         std::optional<DateType32> date) {
  const bool isElse = (date && *date != original.date) || IsOfAnotherPaper(toPost, original) ||
                      toPost.memo != original.memo || toPost.attachments != original.attachments ||
                      !std::ranges::equal(toPost.lines, original.lines, IsTheSame);
  if (isElse) return;
  work.Refuse("nothing of " + TransactionText(original.type, original.txnId) + " would be another",
              Remedy::kSayWhatIsWrong);
}

TransactionToPost Corrected(Work& work, const RecordedTransaction& original, const TransactionToCorrect& given,
                            DateType32 date) {
  const TransactionToRecord part = NewPartOf(work, original, given);
  TransactionToPost toPost{
      .type = static_cast<std::int16_t>(given.type),
      .date = date,
      .nameId = NameIdOf(original),
      .memo = given.memo ? given.memo->Text() : original.memo,
      .documentNumber = given.documentNumber ? given.documentNumber->Text() : original.documentNumber,
      .lines = {},
      .links = {{.kind = standalone::LinkKind::kCorrects, .earlierTxnId = original.txnId}},
      .attachments = given.attachments.empty() ? original.attachments : TextsOf(given.attachments)};
  if (!std::holds_alternative<std::monostate>(given.name)) toPost.nameId = NameOf(work, part);
  if (!given.lines.empty()) {
    toPost.lines = Compose(work, LinesOf(work, part));
  } else {
    for (const RecordedLine& line : original.lines) toPost.lines.push_back(RepeatOf(work, original, line, toPost.memo));
  }
  RequireAnythingElse(work, toPost, original, given.date);
  NameEarlierRequests(work, original.txnId, toPost.lines);
  return toPost;
}

standalone::AuditDeed DeedOfCorrection(Work& work, EnteredType type, const PostedReversal& reversal,
                                       std::int32_t correctionId) {
  standalone::AuditDeed deed = DeedOfPosting(work, ActionOf(type, "correct"), correctionId,
                                             {{"reversal", TransactionText(type, reversal.txnId)}});
  deed.transactions = standalone::TransactionRange{.first = reversal.txnId, .last = correctionId};
  deed.changes.insert(deed.changes.end(), reversal.closed.begin(), reversal.closed.end());
  std::ranges::move(FollowTakenUp(work, reversal.takenUp), std::back_inserter(deed.changes));
  return deed;
}

void NoteNewVendor(NotedNames& noted, const std::variant<std::monostate, Existing, NewVendor>& name) {
  const auto* const vendor = std::get_if<NewVendor>(&name);
  if (vendor != nullptr) noted.NoteName(standalone::NormalizedFullName("The name", vendor->name.Text()));
}

CorrectedTransaction PostCorrection(Work& work, const TransactionToCorrect& given, Posting how) {
  RequireRightsToType(work, static_cast<std::int16_t>(given.type), {kActionCreate, kActionModify});
  const standalone::TransactionHeader header = RequireCorrectable(work, given);
  const RecordedTransaction original = ReadTransaction(work, header.id);
  RequireLinesAndSharesTogether(work, original, given);
  const DateType32 date = given.date.value_or(work.Today());
  const DateType32 reversalDate = date.Compare(header.date) < 0 ? header.date : date;
  Closing closing(work, given.closedDays);
  closing.RequireOpen(reversalDate);
  closing.RequireOpen(date);
  const TransactionToPost toPost = Corrected(work, original, given, date);
  if (!given.again) RefuseToAskTwice(work, toPost);
  PostedReversal reversal = PostReversal(work, header, reversalDate);
  if (!given.again && IsOfAnotherPaper(toPost, original)) RefuseASecondOne(work, DocumentOf(toPost));
  const std::int32_t correctionId = Post(work, toPost).txnId;
  if (how == Posting::kPost) {
    work.Host().Record(closing.Told(DeedOfCorrection(work, given.type, reversal, correctionId)));
  }
  return {.reversed = {.txnId = header.id,
                       .reversal = ReadTransaction(work, reversal.txnId),
                       .toTell = std::move(reversal.toTell)},
          .correction = ReadTransaction(work, correctionId)};
}

}  // namespace

void RequireMayEnter(Company& company, EnteredType type) {
  Work work(company.Opened(), UseCase::kRecordTransaction);
  work.Read([&] { work.RequireRight(RightToCreate(type)); });
}

void RequireDay(Company& company, std::optional<DateType32> day, ClosedDays closedDays) {
  Work work(company.Opened(), UseCase::kRecordTransaction);
  work.Read([&] {
    Closing closing(work, closedDays);
    if (closedDays == ClosedDays::kRefused) closing.RequireOpen(day.value_or(work.Today()));
  });
}

void RequireNewVendor(Company& company, const NewVendor& vendor) {
  Work work(company.Opened(), UseCase::kRecordTransaction);
  work.Read([&] { RefuseKnownVendor(work, vendor); });
}

void RequireAnotherDocument(Company& company, const TransactionToRecord& transaction) {
  if (transaction.again || std::holds_alternative<NewVendor>(transaction.name)) return;
  Work work(company.Opened(), UseCase::kRecordTransaction);
  work.Read([&] {
    RefuseASecondOne(work, {.type = static_cast<std::int16_t>(transaction.type),
                            .nameId = NameOf(work, transaction),
                            .number = transaction.documentNumber.Text()});
  });
}

void RequireAccount(Company& company, EnteredType type, const std::string& account) {
  Work work(company.Opened(), UseCase::kRecordTransaction);
  work.Read([&] {
    const standalone::Account found = work.Host().Accounts().Require(account);
    standalone::RequireTakesPostings(found);
    RefusePairedAccount(work, type, found.id);
  });
}

void RequireName(Company& company, const std::string& name) {
  Work work(company.Opened(), UseCase::kRecordTransaction);
  work.Read([&] { work.Host().Names().Require(name); });
}

void RequirePartnerToShareWith(Company& company, const std::string& partner) {
  Work work(company.Opened(), UseCase::kRecordTransaction);
  work.Read([&] { RequireDueFrom(work, RequirePartner(work, partner)); });
}

standalone::Money RequireAmount(Company& company, const standalone::LineAmount& amount) {
  Work work(company.Opened(), UseCase::kRecordTransaction);
  return work.Read([&] {
    const standalone::Settings& settings = work.Host().Settings().Get();
    return MoneyOf(work, standalone::RequireAmount(amount.Text(), settings.homeCurrency, settings.decimals));
  });
}

RecordedTransaction RecordTransaction(Company& company, const TransactionToRecord& transaction, Posting how) {
  Work work(company.Opened(), UseCase::kRecordTransaction);
  NotedNames noted(work);
  std::vector<LostRequest> lost;
  const auto compose = [&] {
    lost = LostOf(work, transaction);
    TransactionToPost toPost = Composed(work, WithWhatWasSent(transaction, lost));
    TakeUp(work, lost, toPost);
    if (!transaction.again) RefuseWhatIsKnown(work, toPost, lost);
    return toPost;
  };
  const auto deed = [&](std::int32_t txnId) {
    NoteNewVendor(noted, transaction.name);
    return DeedOfPosting(work, ActionOf(transaction.type, "record"), txnId);
  };
  RecordedTransaction entered = Enter(
      work, how,
      {.type = transaction.type, .closedDays = transaction.closedDays, .compose = compose, .deed = deed, .follow = [&] {
         return FollowTakenUp(work, lost);
       }});
  noted.Tell();
  if (how == Posting::kPost) return entered;
  return WithoutNumbers(std::move(entered), std::holds_alternative<NewVendor>(transaction.name));
}

RecordedTransaction CopyTransaction(Company& company, const TransactionToCopy& copy, Posting how) {
  Work work(company.Opened(), UseCase::kCopyTransaction);
  RecordedTransaction entered =
      Enter(work, how,
            {.type = copy.type,
             .closedDays = copy.closedDays,
             .compose = [&] { return Copied(work, copy); },
             .deed =
                 [&](std::int32_t txnId) {
                   return DeedOfPosting(work, ActionOf(copy.type, "copy"), txnId,
                                        {{"copy of", TransactionText(copy.type, copy.txnId)}});
                 }});
  if (how == Posting::kPost) return entered;
  return WithoutNumbers(std::move(entered), /*isNameNew=*/false);
}

CorrectedTransaction CorrectTransaction(Company& company, const TransactionToCorrect& given, Posting how) {
  Work work(company.Opened(), UseCase::kCorrectTransaction);
  NotedNames noted(work);
  const auto post = [&] {
    CorrectedTransaction posted = PostCorrection(work, given, how);
    if (how == Posting::kPost) NoteNewVendor(noted, given.name);
    return posted;
  };
  CorrectedTransaction corrected = how == Posting::kPost ? work.Write(post) : work.Host().Rehearse(post);
  noted.Tell();
  if (how == Posting::kPost) return corrected;
  corrected.reversed.reversal = WithoutNumbers(std::move(corrected.reversed.reversal), /*isNameNew=*/false);
  corrected.correction = WithoutNumbers(std::move(corrected.correction), std::holds_alternative<NewVendor>(given.name));
  return corrected;
}

}  // namespace desk
