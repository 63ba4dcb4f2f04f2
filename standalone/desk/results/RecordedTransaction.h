#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "MultiEntityHost/Enumerations.h"
#include "standalone/desk/results/ListItem.h"
#include "standalone/values/Money.h"
#include "standalone/values/States.h"

namespace desk {

// What this company enters itself.
enum class EnteredType : std::int16_t {
  kBill = kTxnTypeBill,
  kCheck = kTxnTypeCheck,
  kEntry = kTxnTypeJournalEntry,
};

// "bill", "check" or "journal entry".
constexpr const char* NounOf(EnteredType type) noexcept {
  switch (type) {
    case EnteredType::kBill:
      return "bill";
    case EnteredType::kCheck:
      return "check";
    case EnteredType::kEntry:
      break;
  }
  return "journal entry";
}

// What a partner is asked to book.
struct PartnersPart {
  std::string realm;
  std::string partner;
  std::string requestId;  // empty while nothing is posted
  standalone::BookedState state;
};

struct RecordedLine {
  std::int32_t lineId = 0;  // 0 while nothing is posted
  ListItem account;
  standalone::Money amount;
  std::string memo;
  std::optional<PartnersPart> partners;
};

// A transaction that this company entered itself, or would.
struct RecordedTransaction {
  std::int32_t txnId = 0;  // 0 while nothing is posted
  EnteredType type{};
  DateType32 date;
  std::optional<ListItem> name;  // with the number 0 while it is not made
  std::string memo;
  std::string documentNumber;
  std::vector<RecordedLine> lines;
  std::vector<std::string> attachments;
};

}  // namespace desk
