#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "standalone/books/SeenKeys.h"
#include "standalone/import/CsvReader.h"
#include "standalone/import/Faults.h"
#include "standalone/import/Import.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Decimals.h"
#include "standalone/values/States.h"
#include "standalone/values/Text.h"

namespace standalone {

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

// Takes the rows of transactions one by one. The rows of one transaction are kept until the last of them has come; only
// then is it known whether it is in the books already, and it is booked when nothing is wrong with it.
class TransactionImport {
 public:
  TransactionImport(StandaloneHost& host, const CsvReader& rows, const ImportOptions& options, ImportResult& result,
                    Faults& faults);

  void Begin();
  // Throws InvalidInput when it cannot be told to which transaction the row belongs.
  void TakeRow();
  // After the last row.
  void Finish();
  // After a row behind which nothing could be read.
  void BreakOff();
  void End() { seenKeys_.End(); }

 private:
  struct Line {
    std::uint64_t row = 0;
    std::int32_t accountId = 0;
    std::int64_t amount = 0;
    std::string memo;
    std::int32_t relationId = 0;  // 0 for a line without a partner
    std::string realm;
    std::string requestId;
    TransactionState state = TransactionState::kEntered;
  };

  // The transaction whose rows are being read.
  struct OpenTransaction {
    bool isOpen = false;
    std::string key;
    std::uint64_t line = 0;
    std::string type;
    std::string date;
    std::string name;
    std::string memo;
    bool awaitsHeader = false;
    bool hasHeader = false;  // whether the four above are acceptable, and those that follow are set
    std::int16_t typeNumber = 0;
    DateType32 day;
    std::int32_t nameId = 0;
    bool isPartOnly = false;  // whether rows of it are missing here or are not acceptable
    std::size_t lineCount = 0;
    std::vector<Line> lines;   // and those of others before it behind them, for their memory
    std::size_t requests = 0;  // lines with one
    std::int64_t sum = 0;
    Faults faults;
  };

  std::string_view KeyOfRow();
  void Open(std::string_view key, bool followsLostRow);
  void RefuseApart();
  void TakeIntoOpen();
  std::optional<std::string> FaultOfHeader();
  void TakeHeader();
  void RequireOpenBooks() const;
  void RequireSame(const char* what, CsvReader::Column column, std::string_view first) const;
  Line& NewLine();
  void TakePartner(Line& line);
  void TakeAmount(Line& line);

  // How many of the transaction's requests are in the books, and the first line with one of these.
  struct Known {
    std::size_t requests = 0;
    const Line* line = nullptr;
    std::int32_t txnId = 0;
  };
  Known Recognise();
  void Refuse(const Line& line, std::string reason);
  void RefuseKnown(const Known& known);
  void RefuseOfTwo(const Line& line, std::int32_t txnId);
  void RefuseRepeatedRequests();
  void Close();
  void RequirePostable() const;
  void Book();
  bool IsOwnRequest(const Line& line);
  void BookPartner(std::int32_t txnId, std::int32_t lineId, const Line& line);

  std::int32_t FindAccount(std::string_view text);
  std::int32_t FindName(std::string_view text);
  void RequireLeftToTheExchange(const Line& line, std::string_view request);
  std::int32_t FindRelation(std::string_view realm);

  StandaloneHost& host_;
  const CsvReader& rows_;
  const ImportOptions& options_;
  ImportResult& result_;
  Faults& faults_;

  struct Columns {
    explicit Columns(const CsvReader& rows);

    CsvReader::Column transaction, type, date, name, memo, account, amount, lineMemo, partnerRealm, requestId, state;
  };
  const Columns columns_;

  std::string currency_;
  Decimals decimals_ = kTwoDecimals;  // the company's, as long as the unit of work lasts
  SeenKeys seenKeys_;
  FoundIds accounts_;
  FoundIds names_;
  FoundIds relations_;
  FoundIds livePairings_;     // by realm; 0 without one
  FoundIds dueFromAccounts_;  // by realm
  DateType32 closedThrough_;
  OpenTransaction open_;
  bool rowIsLost_ = false;  // whether it cannot be told to which transaction the row before belongs
};

}  // namespace standalone
