#include "standalone/services/TargetLinesService.h"

#include <utility>

namespace standalone {

namespace {

bool IsSeenUnder(const LineView& line, TViewType view) {
  return view == kViewAny || line.txnType == view;
}

}  // namespace

bool TargetLinesService::TargExists(std::int32_t targetId, TViewType view) {
  const LineView* const ahead = ahead_.Find(targetId);
  return ahead != nullptr ? IsSeenUnder(*ahead, view) : transactions_.LineExists(targetId, view);
}

LineHandle TargetLinesService::OpenLine(std::int32_t targetId, FeatureType /*feature*/, ReadFailSafeType /*failSafe*/,
                                        TViewType view) {
  LineView line;
  if (const LineView* const ahead = ahead_.Find(targetId); ahead == nullptr) {
    line = transactions_.FindLine(targetId, view);
  } else if (IsSeenUnder(*ahead, view)) {
    line = *ahead;
  }
  const std::uint64_t handle = open_.Open();
  OpenLineRecord& record = open_.At(handle);
  record.id = targetId;
  record.accountName = {};
  record.line = std::move(line);
  return LineHandle{handle};
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
