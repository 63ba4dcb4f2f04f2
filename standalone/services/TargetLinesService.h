#pragma once

#include "MultiEntityHost/TargetLines.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/LinesAhead.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/services/HandleTable.h"

namespace standalone {

// The lines of bills, checks and journal entries. A line is seen under its own transaction's type only, or under any.
class TargetLinesService final : public TargetLines {
 public:
  TargetLinesService(TransactionTable& transactions, LinesAhead& ahead, AccountTable& accounts, NameList& names)
      : transactions_(transactions), ahead_(ahead), accounts_(accounts), names_(names) {}

  bool TargExists(std::int32_t targetId, TViewType view) override;
  LineHandle OpenLine(std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe, TViewType view) override;
  DateType32 GetDate(LineHandle line) override;
  BalType GetAmount(LineHandle line) override;
  const char* GetAccountName(LineHandle line, std::int32_t option1, std::int32_t option2) override;
  Util::TString GetStrMemo(LineHandle line) override;
  CName GetTransactionName(LineHandle line) override;
  void ReleaseLine(LineHandle line) noexcept override;

 private:
  struct OpenLineRecord {
    std::int32_t id = 0;
    LineView line;
    // Kept from the moment it is asked for, because the text is to stand until the line is released.
    Util::TString accountName;
  };

  OpenLineRecord& RecordOf(LineHandle line) { return open_.At(static_cast<std::uint64_t>(line)); }

  TransactionTable& transactions_;
  LinesAhead& ahead_;
  AccountTable& accounts_;
  NameList& names_;
  HandleTable<OpenLineRecord> open_;
};

}  // namespace standalone
