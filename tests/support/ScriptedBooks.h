#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntityHost/Journal.h"
#include "MultiEntityHost/Money.h"
#include "MultiEntityHost/QueryEngine.h"
#include "MultiEntityHost/TargetLines.h"
#include "support/CallScript.h"
#include "support/OpenObjects.h"
#include "support/ScriptedLists.h"
#include "support/ScriptedStore.h"

struct ScriptedLine {
  std::int32_t txnId = 1;
  std::int16_t txnType = 8;
  DateType32 date{};
  std::int64_t minorUnits = 0;
  std::string accountName{};
  std::string memo{};
  std::int32_t nameId = 0;  // the name on the transaction; 0 for none
};

class ScriptedLines final : public TargetLines {
 public:
  ScriptedLines(CallScript& script, ScriptedNames& names) : script_(script), names_(names) {}

  bool TargExists(std::int32_t targetId, TViewType view) override;
  LineHandle OpenLine(std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe, TViewType view) override;
  DateType32 GetDate(LineHandle line) override;
  BalType GetAmount(LineHandle line) override;
  const char* GetAccountName(LineHandle line, std::int32_t option1, std::int32_t option2) override;
  Util::TString GetStrMemo(LineHandle line) override;
  CName GetTransactionName(LineHandle line) override;
  void ReleaseLine(LineHandle line) noexcept override;

  std::map<std::int32_t, ScriptedLine> lines;  // by target line id

  OpenObjects<LineHandle, std::int32_t> open{"line"};  // target line ids

 private:
  // A line that is not there reads as one without anything in it.
  const ScriptedLine& Find(std::int32_t targetId) const;

  CallScript& script_;
  ScriptedNames& names_;
};

// Amount texts: a sign, thousands separators and at most two decimals are optional.
std::optional<std::int64_t> ParsedAmount(std::string_view text);

class ScriptedJournal final : public Journal {
 public:
  ScriptedJournal(CallScript& script, ScriptedStore& store, ScriptedChart& chart, ScriptedNames& names,
                  ScriptedLines& lines)
      : script_(script), store_(store), chart_(chart), names_(names), lines_(lines) {}

  EdListStatus CreateGeneralJournalEntry(CAccnt& first, CAccnt& second, Util::TString amount, JournalEntryIds& ids,
                                         std::int32_t nameId, Util::TString name) override;
  EdListStatus DeleteGeneralJournalEntry(std::uint32_t txnId) override;
  EdListStatus UpdateMETransaction(std::int32_t txnId, std::int32_t viewType) override;

  DateType32 today{2024, 3, 3};
  // Whether the module is just removing a journal entry: only then one with an intercompany row may be deleted.
  std::function<bool()> removalUnderWay = [] {
    return false;
  };
  std::vector<std::int32_t> confirmed;  // transactions that the partner company confirmed

 private:
  bool CanBePosted(long recnum) const;

  CallScript& script_;
  ScriptedStore& store_;
  ScriptedChart& chart_;
  ScriptedNames& names_;
  ScriptedLines& lines_;
  std::int32_t lastTxnId_ = 0;
  std::int32_t lastTargetId_ = 0;
};

class ScriptedMoney final : public Money {
 public:
  explicit ScriptedMoney(CallScript& script) : script_(script) {}

  void String2Dollar(BalType& amount, const char* text) override;
  void Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat format) override;

 private:
  CallScript& script_;
};

// A row that a query may find.
struct ScriptedQueryRow {
  unsigned int selection;
  unsigned long txnId;
  std::map<unsigned int, DateType32> dates;  // by field
};

class ScriptedQueries final : public QueryEngine {
 public:
  explicit ScriptedQueries(CallScript& script) : script_(script) {}

  QueryHandle OpenQuery() override;
  Util::Status SetSelect(QueryHandle query, unsigned int selection) override;
  long SetStatement(QueryHandle query, unsigned int field, DQE::SelectOp op, DateType32 date) override;
  long SetStatement(QueryHandle query, long left, DQE::SelectOp op, long right) override;
  Util::Status DoQuery(QueryHandle query) override;
  bool ResultExists(QueryHandle query) override;
  const DQE::IDBResultSetRow* First(QueryHandle query) override;
  const DQE::IDBResultSetRow* Next(QueryHandle query) override;
  unsigned long GetTransPtrType(QueryHandle query, const DQE::IDBResultSetRow* row, std::int32_t column) override;
  void ReleaseQuery(QueryHandle query) noexcept override;

  std::vector<ScriptedQueryRow> rows;

 private:
  using Statement = std::function<bool(const ScriptedQueryRow&)>;

  struct Query {
    unsigned int selection = 0;
    std::vector<Statement> statements{};  // a statement's id is its place, from 1
    std::vector<const ScriptedQueryRow*> found{};
    std::size_t next = 0;
  };

  static const DQE::IDBResultSetRow* NextRow(Query& query);

  CallScript& script_;

 public:
  OpenObjects<QueryHandle, Query> open{"query"};
};
