#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "MultiEntityHost/Journal.h"
#include "platform/Clock.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/services/ChartOfAccountsService.h"

namespace standalone {

// The general journal. A booking is dated today and carries the name's text as memo. An entry with an intercompany row
// is deleted only while the module itself removes it.
class JournalService final : public Journal {
 public:
  JournalService(Database& database, ChartOfAccountsService& accounts, NameTable& names, TransactionTable& transactions,
                 IntercompanyTable& intercompany, platform::Clock& clock) noexcept
      : database_(database),
        accounts_(accounts),
        names_(names),
        transactions_(transactions),
        intercompany_(intercompany),
        clock_(clock) {}

  void SetRemovalUnderWay(std::function<bool()> predicate) { removalUnderWay_ = std::move(predicate); }

  EdListStatus CreateGeneralJournalEntry(CAccnt& first, CAccnt& second, Util::TString amount, JournalEntryIds& ids,
                                         std::int32_t nameId, Util::TString name) override;
  EdListStatus DeleteGeneralJournalEntry(std::uint32_t txnId) override;
  EdListStatus UpdateMETransaction(std::int32_t txnId, std::int32_t viewType) override;

 private:
  std::optional<std::int32_t> AddLines(std::int32_t txnId, const NewLine& debit, const NewLine& credit);
  EdListStatus TakeOut(std::int32_t txnId);
  bool MayDelete(std::int32_t txnId);

  Database& database_;
  ChartOfAccountsService& accounts_;
  NameTable& names_;
  TransactionTable& transactions_;
  IntercompanyTable& intercompany_;
  platform::Clock& clock_;
  std::function<bool()> removalUnderWay_;
};

}  // namespace standalone
