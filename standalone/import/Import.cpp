#include "standalone/import/Import.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "standalone/books/SeenKeys.h"
#include "standalone/company/StandaloneHost.h"
#include "standalone/import/CsvReader.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Dates.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/States.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::uint64_t kRowsPerProgress = 256;

constexpr std::array<std::string_view, 2> kAccountColumns{"name", "type"};
constexpr std::array<std::string_view, 2> kAccountOptions{"special", "deleted"};
constexpr std::array<std::string_view, 2> kNameColumns{"name", "kind"};
constexpr std::array<std::string_view, 7> kTransactionColumns{"transaction", "type",    "date",  "name",
                                                              "memo",        "account", "amount"};
constexpr std::array<std::string_view, 4> kTransactionOptions{"line_memo", "partner_realm", "request_id", "state"};

// Runs `work`, and gives what it refuses the place of a row.
template <typename Work>
void At(const CsvReader& rows, std::uint64_t line, Work&& work) {
  try {
    work();
  } catch (const RefusedRow&) {
    throw;
  } catch (const InvalidInput& error) {
    rows.RefuseAt(line, error.what());
  } catch (const ConstraintViolation& error) {
    rows.RefuseAt(line, error.what());
  }
}

template <typename Work>
void InWritingUnit(StandaloneHost& host, Work&& work) {
  if (host.Data().InUnit()) {
    std::forward<Work>(work)();
  } else {
    host.Request(Access::kWrite, std::forward<Work>(work));
  }
}

// Hands each row to `take` and calls `finish` after the last one, all in one unit of work.
template <typename Take, typename Finish>
void ImportRows(StandaloneHost& host, CsvReader& rows, ImportResult& result, const ImportProgress& progress,
                Take&& take, Finish&& finish) {
  const auto report = [&] {
    if (progress) progress(rows.BytesRead(), rows.BytesTotal());
  };
  InWritingUnit(host, [&] {
    while (rows.NextRow()) {
      At(rows, rows.Line(), take);
      ++result.rows;
      if (static_cast<std::uint64_t>(result.rows) % kRowsPerProgress == 0) report();
    }
    finish();
  });
  report();
}

std::int32_t ParseWhole(std::string_view what, std::string_view text, std::int32_t most) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isWhole = error == std::errc{} && end == text.data() + text.size();
  if (isWhole && number >= 0 && number <= most) return number;
  throw InvalidInput(std::string(what) + " " + Quoted(text) + " is not a whole number from 0 to " +
                     std::to_string(most) + ".");
}

// What a transaction keeps from its first row.
struct OpenTransaction {
  std::string key;
  std::uint64_t line = 0;
  std::string type;
  std::string date;
  std::string name;
  std::string memo;
  std::int16_t typeNumber = 0;
  std::int32_t id = 0;
  std::int32_t lines = 0;
  std::int64_t sum = 0;
  bool awaitsDueToLine = false;
};

// Record numbers by the texts that the file calls them by, each looked up once. Nobody else writes meanwhile.
class FoundIds {
 public:
  template <typename Find>
  std::int32_t Get(std::string_view text, Find&& find) {
    if (const auto found = ids_.find(text); found != ids_.end()) return found->second;
    const std::int32_t id = std::forward<Find>(find)();
    if (ids_.size() == kMost) ids_.clear();
    ids_.emplace(text, id);
    return id;
  }

 private:
  // So that a file of any size is imported in the same memory.
  static constexpr std::size_t kMost = 4096;

  std::unordered_map<std::string, std::int32_t, TextHash, std::equal_to<>> ids_;
};

class TransactionImport {
 public:
  TransactionImport(StandaloneHost& host, const CsvReader& rows, ImportResult& result)
      : host_(host), rows_(rows), result_(result), seenKeys_(host.Data()) {}

  void Prepare() { seenKeys_.Begin(); }

  void TakeRow() {
    const std::string_view key = RequireText("The key transaction", rows_["transaction"], 1, kListFullNameLength);
    if (!open_ || open_->key != key) {
      Finish();
      Begin(key);
    } else {
      RequireSame("type", open_->type);
      RequireSame("date", open_->date);
      RequireSame("name", open_->name);
      RequireSame("memo", open_->memo);
    }
    AddLine();
  }

  void Finish() {
    if (!open_) return;
    At(rows_, open_->line, [this] { Post(); });
    open_.reset();
  }

  void End() {
    Finish();
    seenKeys_.End();
  }

 private:
  void Begin(std::string_view key) {
    if (!seenKeys_.Add(key)) {
      throw InvalidInput("The transaction " + Quoted(key) +
                         " has rows further up already; put the rows of one transaction together.");
    }
    OpenTransaction begun;
    begun.key = key;
    begun.line = rows_.Line();
    begun.type = rows_["type"];
    begun.date = rows_["date"];
    begun.name = rows_["name"];
    begun.memo = RequireText("The memo", rows_["memo"], 0, kMemoLength);
    begun.typeNumber = ParseTransactionType(begun.type);
    begun.id = host_.Transactions().AddHeader(
        {.type = begun.typeNumber,
         .date = ParseDate("The date", begun.date),
         .nameId = begun.name.empty() ? 0 : names_.Get(begun.name, [&] { return FindName(begun.name); }),
         .memo = begun.memo});
    open_ = std::move(begun);
    ++result_.transactions;
  }

  void RequireSame(std::string_view column, std::string_view first) {
    const std::string_view repeated = rows_[column];
    if (repeated.empty() || repeated == first) return;
    throw InvalidInput("The " + std::string(column) + " " + Quoted(repeated) + " differs from " + Quoted(first) +
                       " in the first row of the transaction; leave it empty or repeat it.");
  }

  void AddLine() {
    const std::optional<std::int64_t> amount = ParseAmount(rows_["amount"]);
    if (!amount) {
      throw InvalidInput("The amount " + Quoted(rows_["amount"]) +
                         " is none; write it as 1,234.50 or -1234.5, up to 99,999,999,999.99.");
    }
    const std::string_view memo = RequireText("The line memo", rows_["line_memo"], 0, kMemoLength);
    const std::string_view account = rows_["account"];
    const std::int32_t accountId = accounts_.Get(account, [&] { return FindAccount(account); });
    const std::int32_t id =
        host_.Transactions().AddLine(open_->id, {.accountId = accountId, .amount = *amount, .memo = memo});
    open_->awaitsDueToLine = false;
    open_->sum = SumWith(*amount);
    ++open_->lines;
    ++result_.lines;
    AddIntercompanyRow(id);
  }

  std::int64_t SumWith(std::int64_t amount) const {
    const std::optional<std::int64_t> sum = AddAmounts(open_->sum, amount);
    if (sum) return *sum;
    throw InvalidInput("The amount " + Quoted(rows_["amount"]) + " brings the transaction " + Quoted(open_->key) +
                       " from a sum of " + FormatAmount(open_->sum) + " beyond " +
                       FormatAmount(std::numeric_limits<std::int64_t>::max()) +
                       "; divide it into several transactions.");
  }

  void AddIntercompanyRow(std::int32_t lineId) {
    const std::string_view realm = rows_["partner_realm"];
    const std::string_view request = rows_["request_id"];
    const std::string_view state = rows_["state"];
    if (realm.empty()) {
      if (request.empty() && state.empty()) return;
      throw InvalidInput("There is a request_id or a state, but no partner_realm; give all or none of them.");
    }
    const std::int32_t relationId = relations_.Get(realm, [&] { return FindRelation(RequireRealmId(realm)); });
    if (!request.empty()) RequireRequestId(request);
    RequireFreeRequest(relationId, request);
    const TransactionState entered = state.empty() ? TransactionState::kEntered : ParseOwnTransactionState(state);
    DBMultiEntityTransaction row{};
    row.txnId = open_->id;
    row.relationId = relationId;
    row.targetId = lineId;
    std::ranges::copy(request, row.requestId);
    row.txnType = open_->typeNumber;
    row.state = static_cast<std::int16_t>(entered);
    host_.Intercompany().Add(row);
    open_->awaitsDueToLine = open_->typeNumber == kTxnTypeJournalEntry;
    ++result_.intercompanyRows;
  }

  void RequireFreeRequest(std::int32_t relationId, std::string_view request) {
    if (open_->typeNumber != kTxnTypeJournalEntry || request.empty()) return;
    if (!host_.Intercompany().HasJournalEntryOf(relationId, request)) return;
    throw InvalidInput("The request id " + Quoted(request) +
                       " belongs to another journal entry with that partner already.");
  }

  void Post() {
    if (open_->lines < 2) {
      throw InvalidInput("The transaction " + Quoted(open_->key) + " has one row only; it needs two or more.");
    }
    if (open_->sum != 0) {
      throw InvalidInput("The amounts of the transaction " + Quoted(open_->key) + " sum to " +
                         FormatAmount(open_->sum) + "; debits and credits must sum to zero.");
    }
    if (open_->awaitsDueToLine) {
      throw InvalidInput("The last row of the journal entry " + Quoted(open_->key) +
                         " has a partner_realm; the row of the due-to account must follow it.");
    }
    host_.Transactions().Post(open_->id);
  }

  std::int32_t FindAccount(std::string_view text) {
    const std::optional<Account> account =
        host_.Accounts().FindByFullName(NormalizedFullName("The account name", text));
    if (!account) {
      throw InvalidInput("There is no account " + Quoted(text) + "; write its full name, or import the account first.");
    }
    if (account->type == KrEnumerations::kNonPosting) {
      throw InvalidInput("The account " + Quoted(text) + " is a non-posting account and takes no amounts.");
    }
    return account->id;
  }

  std::int32_t FindName(std::string_view text) {
    const std::optional<Name> name = host_.Names().FindByFullName(NormalizedFullName("The name", text));
    if (name) return name->id;
    throw InvalidInput("There is no name " + Quoted(text) + "; write its full name, or import the name first.");
  }

  std::int32_t FindRelation(std::string_view realm) {
    DBMultiEntityRelation relation{};
    if (host_.Relations().Find(realm, relation)) return relation.relationId;
    throw InvalidInput("There is no relation with the partner " + Quoted(realm) + "; make the relation first.");
  }

  StandaloneHost& host_;
  const CsvReader& rows_;
  ImportResult& result_;
  SeenKeys seenKeys_;
  FoundIds accounts_;
  FoundIds names_;
  FoundIds relations_;
  std::optional<OpenTransaction> open_;
};

}  // namespace

ImportResult ImportAccounts(StandaloneHost& host, const std::filesystem::path& csv, const ImportProgress& progress) {
  CsvReader rows(csv, kAccountColumns, kAccountOptions);
  ImportResult result;
  const auto take = [&] {
    NewAccount account;
    account.fullName = rows["name"];
    account.type = ParseAccountType(rows["type"]);
    if (const std::string_view special = rows["special"]; !special.empty()) {
      account.specialKind = ParseWhole("The special kind", special, std::numeric_limits<std::int32_t>::max());
    }
    if (const std::string_view deleted = rows["deleted"]; !deleted.empty()) {
      account.deleted = ParseYesNo("The mark deleted", deleted);
    }
    host.Accounts().Create(account);
    ++result.accounts;
  };
  ImportRows(host, rows, result, progress, take, [] {});
  return result;
}

ImportResult ImportNames(StandaloneHost& host, const std::filesystem::path& csv, const ImportProgress& progress) {
  CsvReader rows(csv, kNameColumns, {});
  ImportResult result;
  const auto take = [&] {
    host.Names().Create(rows["name"], ParseNameKind(rows["kind"]));
    ++result.names;
  };
  ImportRows(host, rows, result, progress, take, [] {});
  return result;
}

ImportResult ImportTransactions(StandaloneHost& host, const std::filesystem::path& csv,
                                const ImportProgress& progress) {
  CsvReader rows(csv, kTransactionColumns, kTransactionOptions);
  ImportResult result;
  TransactionImport import(host, rows, result);
  bool isPrepared = false;
  const auto take = [&] {
    if (!std::exchange(isPrepared, true)) import.Prepare();
    import.TakeRow();
  };
  ImportRows(host, rows, result, progress, take, [&] {
    if (isPrepared) import.End();
  });
  return result;
}

}  // namespace standalone
