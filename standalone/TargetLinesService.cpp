#include "standalone/TargetLinesService.h"

#include <utility>

namespace standalone {

bool TargetLinesService::TargExists(std::int32_t targetId, TViewType view) {
  return transactions_.LineExists(targetId, view);
}

LineHandle TargetLinesService::OpenLine(std::int32_t targetId, FeatureType /*feature*/, ReadFailSafeType /*failSafe*/,
                                        TViewType view) {
  LineView line;
  transactions_.FindLine(targetId, view, line);
  const std::uint64_t handle = open_.Open();
  open_.At(handle) = std::move(line);
  return LineHandle{handle};
}

DateType32 TargetLinesService::GetDate(LineHandle line) {
  return ViewOf(line).date;
}

BalType TargetLinesService::GetAmount(LineHandle line) {
  return {ViewOf(line).amount};
}

const char* TargetLinesService::GetAccountName(LineHandle line, std::int32_t /*option1*/, std::int32_t /*option2*/) {
  return ViewOf(line).accountName.c_str();
}

Util::TString TargetLinesService::GetStrMemo(LineHandle line) {
  return std::string_view(ViewOf(line).memo);
}

CName TargetLinesService::GetTransactionName(LineHandle line) {
  return {names_, NameHandle{static_cast<std::uint64_t>(ViewOf(line).nameId)}};
}

void TargetLinesService::ReleaseLine(LineHandle line) noexcept {
  open_.Release(static_cast<std::uint64_t>(line));
}

}  // namespace standalone
