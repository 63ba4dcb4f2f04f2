#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "standalone/storage/Statement.h"
#include "standalone/values/States.h"

namespace standalone {

// An account as reports tell of it.
struct LedgerAccount {
  std::int32_t id = 0;
  std::int32_t parentId = 0;  // 0 without a parent
  std::int16_t type = 0;
  bool deleted = false;
  std::string number;    // what people call it by; empty without one
  std::string fullName;  // colon-separated, from the top
};

// A line of a posted transaction with what its transaction shows. Texts are valid until the next line.
struct LedgerLine {
  std::int32_t id = 0;
  std::int32_t txnId = 0;
  std::int16_t txnType = 0;
  DateType32 date;
  std::int32_t accountId = 0;
  std::int64_t amount = 0;
  std::string_view documentNumber;
  std::string_view name;  // whom the transaction names; empty for nobody
  std::string_view memo;  // the transaction's
  std::string_view lineMemo;
};

struct RegisterLine : LedgerLine {
  std::int32_t otherAccountId = 0;  // that of all other lines of the transaction; 0 when they are on several
};

struct PartnerLine : LedgerLine {
  std::optional<BookedState> state;  // of the partner's request that it belongs to
};

// The days from one to another, both included; the null date leaves an end open.
struct LedgerDays {
  DateType32 from;
  DateType32 to;
};

// What is asked of all posted lines for reports; each question reads them once. Every operation needs an open unit of
// work.
class LedgerQueries {
 public:
  explicit LedgerQueries(Database& database);

  // By full name, those marked deleted included.
  std::vector<LedgerAccount> Accounts();
  std::optional<LedgerAccount> FindAccount(std::int32_t id);

  void ForEachAmount(LedgerDays days, const std::function<void(std::int32_t accountId, std::int64_t amount)>& take);

  // Of an account, on request with those below it.
  std::int64_t SumOf(std::int32_t accountId, bool withSubAccounts, LedgerDays days);
  // By date, transaction and line.
  void ForEachOf(std::int32_t accountId, bool withSubAccounts, LedgerDays days,
                 const std::function<void(const RegisterLine& line)>& take);

  // Those of an account of the relation up to a day, in the same order, but for what belongs to a request of another
  // partner. The due-to line of a partner's request is the one behind the line that the request belongs to.
  void ForEachWithPartner(std::int32_t relationId, std::int32_t accountId, DateType32 to,
                          const std::function<void(const PartnerLine& line)>& take);
  // Whose requests may have left something on accounts that are not the relation's any more; mostly nobody's.
  std::unordered_set<std::int32_t> RelationsWithLinesElsewhere();
  // What they have left there: what is owed to this company, or by it. In no order.
  void ForEachElsewhere(std::int32_t relationId, bool isOwedToUs, DateType32 to,
                        const std::function<void(const PartnerLine& line)>& take);

  struct Reversal {
    std::int32_t txnId = 0;
    std::int32_t earlierTxnId = 0;
    DateType32 date;
  };
  // The last one first.
  std::vector<Reversal> Reversals();

 private:
  Statement accounts_;
  Statement account_;
  Statement amounts_;
  Statement allAmounts_;
  Statement sum_;
  Statement register_;
  Statement withPartner_;
  Statement anyElsewhere_;
  Statement elsewhere_;
  Statement reversals_;
};

}  // namespace standalone
