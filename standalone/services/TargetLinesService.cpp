#include "standalone/services/TargetLinesService.h"

#include <utility>

namespace standalone {

bool TargetLinesService::TargExists(std::int32_t targetId, TViewType view) {
  if (ahead_.GoTo(targetId)) return IsAheadSeenUnder(view);
  return transactions_.LineExists(targetId, view);
}

LineHandle TargetLinesService::OpenLine(std::int32_t targetId, FeatureType /*feature*/, ReadFailSafeType /*failSafe*/,
                                        TViewType view) {
  LineView found;
  if (!ahead_.GoTo(targetId)) {
    found = transactions_.FindLine(targetId, view);
  } else if (IsAheadSeenUnder(view)) {
    found = ahead_.Take();
  }
  const std::uint64_t handle = open_.Open();
  OpenLineRecord& record = open_.At(handle);
  record.id = targetId;
  record.accountName = {};
  record.line = std::move(found);
  return LineHandle{handle};
}

bool TargetLinesService::IsAheadSeenUnder(TViewType view) const {
  return view == kViewAny || ahead_.TypeOfTransaction() == view;
}

DateType32 TargetLinesService::GetDate(LineHandle line) {
  return RecordOf(line).line.date;
}

BalType TargetLinesService::GetAmount(LineHandle line) {
  return {RecordOf(line).line.amount};
}

const char* TargetLinesService::GetAccountName(LineHandle line, std::int32_t /*option1*/, std::int32_t /*option2*/) {
  OpenLineRecord& record = RecordOf(line);
  if (record.line.accountId != 0) record.accountName = accounts_.FullNameOf(record.line.accountId);
  return record.accountName.c_str();
}

Util::TString TargetLinesService::GetStrMemo(LineHandle line) {
  const OpenLineRecord& record = RecordOf(line);
  if (record.line.hasMemo) return record.line.memo;
  return record.line.txnType != 0 ? transactions_.MemoOf(record.id) : Util::TString();
}

CName TargetLinesService::GetTransactionName(LineHandle line) {
  return {names_, NameHandle{static_cast<std::uint64_t>(RecordOf(line).line.nameId)}};
}

void TargetLinesService::ReleaseLine(LineHandle line) noexcept {
  open_.Release(static_cast<std::uint64_t>(line));
}

}  // namespace standalone
