#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "MultiEntityHost/Journal.h"
#include "platform/Clock.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/services/ChartOfAccountsService.h"

namespace standalone {

// What whoever has the module book an entry says beyond that, for the module has no word for it.
struct BookingWish {
  DateType32 date;                  // the null date for today's
  std::optional<std::string> memo;  // of the entry; the name's text when left out
};

// The general journal. A booking is dated today and carries the name's text as memo, and so do its lines, unless it is
// wished otherwise. A transaction is confirmed once the last of its partners has established it. An entry with an
// intercompany row is deleted only while the module itself removes it.
class JournalService final : public Journal {
 public:
  JournalService(Database& database, ChartOfAccountsService& accounts, NameTable& names, TransactionTable& transactions,
                 IntercompanyTable& intercompany, SettingsTable& settings, platform::Clock& clock) noexcept
      : database_(database),
        accounts_(accounts),
        names_(names),
        transactions_(transactions),
        intercompany_(intercompany),
        settings_(settings),
        clock_(clock) {}

  void BookAs(BookingWish wish) { wish_ = std::move(wish); }
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
  SettingsTable& settings_;
  platform::Clock& clock_;
  BookingWish wish_;
  std::function<bool()> removalUnderWay_;
};

}  // namespace standalone
