#pragma once

#include "host/TargetLines.h"
#include "standalone/HandleTable.h"
#include "standalone/TransactionTable.h"

namespace standalone {

// The lines of bills, checks and journal entries. A line is seen under its own transaction's type only, or under any.
class TargetLinesService final : public TargetLines {
 public:
  TargetLinesService(TransactionTable& transactions, NameList& names) : transactions_(transactions), names_(names) {}

  bool TargExists(std::int32_t targetId, TViewType view) override;
  LineHandle OpenLine(std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe, TViewType view) override;
  DateType32 GetDate(LineHandle line) override;
  BalType GetAmount(LineHandle line) override;
  const char* GetAccountName(LineHandle line, std::int32_t option1, std::int32_t option2) override;
  Util::TString GetStrMemo(LineHandle line) override;
  CName GetTransactionName(LineHandle line) override;
  void ReleaseLine(LineHandle line) noexcept override;

 private:
  const LineView& ViewOf(LineHandle line) { return open_.At(static_cast<std::uint64_t>(line)); }

  TransactionTable& transactions_;
  NameList& names_;
  HandleTable<LineView> open_;
};

}  // namespace standalone
