#include "standalone/services/JournalService.h"

#include <limits>
#include <optional>

#include "standalone/services/Guard.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Text.h"

namespace standalone {

EdListStatus JournalService::CreateGeneralJournalEntry(CAccnt& first, CAccnt& second, Util::TString amount,
                                                       JournalEntryIds& ids, std::int32_t nameId, Util::TString name) {
  return AsEdListStatus([&] {
    const AccountFacts& credited = accounts_.RecordOf(first.Handle());
    const AccountFacts& debited = accounts_.RecordOf(second.Handle());
    if (!TakesPostings(credited) || !TakesPostings(debited)) return kEdListFailure;
    const std::optional<std::int64_t> minorUnits = ParseAmount(amount.view(), settings_.Get().decimals);
    const std::optional<Name> booked = names_.Find(nameId);
    if (!minorUnits || !booked) return kEdListFailure;
    const std::string_view memo = name.empty() ? std::string_view(booked->fullName) : name.view();
    RequireText("The name", memo, 1, kMemoLength);

    const std::int32_t txnId =
        transactions_.AddHeader({.type = kTxnTypeJournalEntry,
                                 .date = wish_.date == NullDate() ? platform::Today(clock_) : wish_.date,
                                 .nameId = booked->id,
                                 .memo = wish_.memo ? std::string_view(*wish_.memo) : memo,
                                 .documentNumber = ""});
    const std::optional<std::int32_t> targetId =
        AddLines(txnId, {.accountId = debited.id, .amount = *minorUnits, .memo = memo},
                 {.accountId = credited.id, .amount = -*minorUnits, .memo = memo});
    if (!targetId) return TakeOut(txnId);
    ids = {static_cast<std::uint32_t>(txnId), static_cast<std::uint32_t>(*targetId)};
    return kEdListSuccess;
  });
}

EdListStatus JournalService::DeleteGeneralJournalEntry(std::uint32_t txnId) {
  return AsEdListStatus([&] {
    if (txnId > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) return kEdListFailure;
    const auto id = static_cast<std::int32_t>(txnId);
    if (!MayDelete(id)) return kEdListFailure;
    transactions_.Delete(id);
    return kEdListSuccess;
  });
}

EdListStatus JournalService::UpdateMETransaction(std::int32_t txnId, std::int32_t viewType) {
  return AsEdListStatus([&] {
    const std::optional<TransactionHeader> header = transactions_.FindHeader(txnId);
    if (!header || header->type != viewType) return kEdListFailure;
    // The row that the partner has just established is written after this.
    if (intercompany_.CountOpenOf(txnId) <= 1) transactions_.ConfirmByPartner(txnId, viewType);
    return kEdListSuccess;
  });
}

// Enters the two lines as neighbours and posts the entry; returns the id of the first. None when the file refuses it.
std::optional<std::int32_t> JournalService::AddLines(std::int32_t txnId, const NewLine& debit, const NewLine& credit) {
  try {
    const std::int32_t debitLine = transactions_.AddLine(txnId, debit);
    const std::int32_t creditLine = transactions_.AddLine(txnId, credit);
    if (creditLine != debitLine + 1) return std::nullopt;
    transactions_.Post(txnId);
    return debitLine;
  } catch (const ConstraintViolation&) {
    return std::nullopt;
  }
}

// Work without a status is committed whatever this answers, so nothing half-made may stay in it. A savepoint would do
// it too, but has the engine copy each page that a booking touches.
EdListStatus JournalService::TakeOut(std::int32_t txnId) {
  try {
    transactions_.Delete(txnId);
  } catch (const ConstraintViolation&) {
    // What cannot be taken out is not committed.
    database_.Rollback();
  }
  return kEdListFailure;
}

bool JournalService::MayDelete(std::int32_t txnId) {
  const std::optional<TransactionHeader> header = transactions_.FindHeader(txnId);
  if (!header || header->type != kTxnTypeJournalEntry) return false;
  if (!intercompany_.HasAnyOf(txnId)) return true;
  return removalUnderWay_ && removalUnderWay_();
}

}  // namespace standalone
