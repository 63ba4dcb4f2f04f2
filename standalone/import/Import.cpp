#include "standalone/import/Import.h"

#include <array>
#include <charconv>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "standalone/company/StandaloneHost.h"
#include "standalone/import/CsvReader.h"
#include "standalone/import/Faults.h"
#include "standalone/import/TransactionImport.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::uint64_t kRowsPerProgress = 256;

constexpr std::array<std::string_view, 2> kAccountColumns{"name", "type"};
constexpr std::array<std::string_view, 3> kAccountOptions{"special", "deleted", "number"};
constexpr std::array<std::string_view, 2> kNameColumns{"name", "kind"};
constexpr std::array<std::string_view, 7> kTransactionColumns{"transaction", "type",    "date",  "name",
                                                              "memo",        "account", "amount"};
constexpr std::array<std::string_view, 4> kTransactionOptions{"line_memo", "partner_realm", "request_id", "state"};

template <typename Work>
void InWritingUnit(StandaloneHost& host, Work&& work) {
  if (host.Data().InUnit()) {
    std::forward<Work>(work)();
  } else {
    host.Request(Access::kWrite, std::forward<Work>(work));
  }
}

// Reads all rows and answers whether that went to the end of the file. `takeRow` throws InvalidInput for one that is
// not acceptable.
template <typename TakeRow>
bool ReadRows(CsvReader& rows, ImportResult& result, Faults& faults, const std::function<void()>& report,
              TakeRow&& takeRow) {
  try {
    while (rows.NextRow()) {
      try {
        takeRow();
      } catch (const InvalidInput& fault) {
        faults.Add(rows.Line(), fault.what());
      }
      ++result.rows;
      if (static_cast<std::uint64_t>(result.rows) % kRowsPerProgress == 0) report();
    }
    return true;
  } catch (const BadRows& broken) {
    faults.Add(broken);
    return false;
  }
}

// Has `import` take the rows of a file, all in one unit of work.
template <typename Import>
void ImportRows(StandaloneHost& host, CsvSource& csv, CsvReader& rows, const ImportOptions& options,
                ImportResult& result, Faults& faults, Import& import) {
  const auto report = [&] {
    if (options.progress) options.progress(rows.BytesRead(), csv.BytesTotal());
  };
  InWritingUnit(host, [&] {
    import.Begin();
    if (ReadRows(rows, result, faults, report, [&] { import.TakeRow(); })) {
      import.Finish();
      result.sha256 = csv.Sha256Digits();
      if (options.onRead) options.onRead(result.sha256);
    } else {
      import.BreakOff();
    }
    if (faults.Any()) throw faults.In(csv.Name());
    import.End();
  });
  report();
}

std::int32_t ParseWholeNumber(std::string_view what, std::string_view text, std::int32_t most) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isWhole = error == std::errc{} && end == text.data() + text.size();
  if (isWhole && number >= 0 && number <= most) return number;
  throw InvalidInput(std::string(what) + " " + Quoted(text) + " is not a whole number from 0 to " +
                     std::to_string(most) + ".");
}

std::string InSmallLetters(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

// Which accounts or names are missing because their rows are not acceptable.
class MissingItems {
 public:
  // Of a row that does not say what it is called.
  void AddUnnamed() { mayBeAny_ = true; }
  void Add(std::string_view fullName) {
    // A file may have any number of them.
    constexpr std::size_t kMost = 4096;
    if (names_.size() == kMost) {
      mayBeAny_ = true;
    } else {
      names_.insert(InSmallLetters(std::string(fullName)));
    }
  }
  bool MayBeSome() const { return mayBeAny_ || !names_.empty(); }
  bool MayHave(std::string_view fullName) const {
    return mayBeAny_ || names_.contains(InSmallLetters(std::string(fullName)));
  }

 private:
  std::unordered_set<std::string> names_;
  bool mayBeAny_ = false;
};

// Rows that stand under others by a colon-separated name. An `Item` is what a row says, and how it is added.
template <typename Item>
class ListImport {
 public:
  ListImport(StandaloneHost& host, const CsvReader& rows, ImportResult& result)
      : host_(host), rows_(rows), result_(result), columns_(rows) {}

  void Begin() { alike_ = Item::ForAlike(host_); }
  void TakeRow() {
    try {
      rows_.RequireFields();
      const auto item = columns_.Read(rows_);
      if (FollowsFromAnother()) {
        NoteMissing();
      } else {
        NoteAlike(Item::Add(host_, item));
      }
    } catch (const InvalidInput&) {
      NoteMissing();
      throw;
    } catch (const ConstraintViolation& taken) {
      throw InvalidInput(taken.what());
    }
  }
  void Finish() {}
  void BreakOff() {}
  void End() {}

 private:
  void NoteAlike(const std::string& fullName) {
    constexpr std::size_t kMostTold = 10;
    if (std::optional<std::string> other = alike_->Find(fullName)) {
      ++result_.alikeCount;
      if (result_.alike.size() < kMostTold) result_.alike.push_back({fullName, *std::move(other)});
    }
    alike_->Add(fullName);
  }
  std::string FullName() const {
    rows_.RequireFields();
    return NormalizedFullName(Item::kWhat, rows_[columns_.name]);
  }
  bool FollowsFromAnother() {
    if (!missing_.MayBeSome()) return false;
    const std::string fullName = FullName();
    const std::string_view parent = ParentPart(fullName);
    return !parent.empty() && missing_.MayHave(parent) && !Item::IsThere(host_, parent);
  }
  void NoteMissing() {
    try {
      const std::string fullName = FullName();
      if (!Item::IsThere(host_, fullName)) missing_.Add(fullName);
    } catch (const InvalidInput&) {
      missing_.AddUnnamed();
    }
  }

  StandaloneHost& host_;
  const CsvReader& rows_;
  ImportResult& result_;
  typename Item::Columns columns_;
  std::optional<AlikeNames> alike_;  // once the unit of work has begun
  MissingItems missing_;
};

struct AccountItem {
  static constexpr std::string_view kWhat = "The account name";

  struct Columns {
    explicit Columns(const CsvReader& rows)
        : name(rows, "name"),
          type(rows, "type"),
          special(rows, "special"),
          deleted(rows, "deleted"),
          number(rows, "number") {}

    NewAccount Read(const CsvReader& rows) const {
      NewAccount account;
      account.fullName = rows[name];
      account.type = ParseAccountType(rows[type]);
      if (const std::string_view text = rows[special]; !text.empty()) {
        account.specialKind = ParseWholeNumber("The special kind", text, std::numeric_limits<std::int32_t>::max());
      }
      if (const std::string_view text = rows[deleted]; !text.empty()) {
        account.deleted = ParseYesNo("The mark deleted", text);
      }
      if (const std::string_view text = rows[number]; !text.empty()) account.number = text;
      return account;
    }

    CsvReader::Column name, type, special, deleted, number;
  };

  // The name that others must not be like; none for an account marked deleted.
  static std::string Add(StandaloneHost& host, const NewAccount& account) {
    Account added = host.Accounts().Create(account);
    return added.deleted ? std::string() : std::move(added.fullName);
  }
  static AlikeNames ForAlike(StandaloneHost& host) { return host.Accounts().ForAlike(); }
  static bool IsThere(StandaloneHost& host, std::string_view fullName) {
    return host.Accounts().FindByFullName(fullName).has_value();
  }
};

struct NewListItem {
  std::string_view fullName;
  NameKind kind;
};

struct NameItem {
  static constexpr std::string_view kWhat = "The name";

  struct Columns {
    explicit Columns(const CsvReader& rows) : name(rows, "name"), kind(rows, "kind") {}

    NewListItem Read(const CsvReader& rows) const { return {rows[name], ParseNameKind(rows[kind])}; }

    CsvReader::Column name, kind;
  };

  static std::string Add(StandaloneHost& host, const NewListItem& item) {
    return host.Names().Create(item.fullName, item.kind).fullName;
  }
  static AlikeNames ForAlike(StandaloneHost& host) { return host.Names().ForAlike(); }
  static bool IsThere(StandaloneHost& host, std::string_view fullName) {
    return host.Names().FindByFullName(fullName).has_value();
  }
};

// All rows of a file that was imported are items that were added.
template <typename Item>
ImportResult ImportList(StandaloneHost& host, CsvSource& csv, CsvReader& rows, const ImportOptions& options) {
  ImportResult result;
  Faults faults;
  ListImport<Item> import(host, rows, result);
  ImportRows(host, csv, rows, options, result, faults, import);
  return result;
}

}  // namespace

ImportResult ImportAccounts(StandaloneHost& host, CsvSource&& csv, const ImportOptions& options) {
  CsvReader rows(csv, kAccountColumns, kAccountOptions);
  ImportResult result = ImportList<AccountItem>(host, csv, rows, options);
  result.accounts = result.rows;
  return result;
}

ImportResult ImportNames(StandaloneHost& host, CsvSource&& csv, const ImportOptions& options) {
  CsvReader rows(csv, kNameColumns, {});
  ImportResult result = ImportList<NameItem>(host, csv, rows, options);
  result.names = result.rows;
  return result;
}

ImportResult ImportTransactions(StandaloneHost& host, CsvSource&& csv, const ImportOptions& options) {
  CsvReader rows(csv, kTransactionColumns, kTransactionOptions);
  ImportResult result;
  Faults faults;
  TransactionImport import(host, rows, options, result, faults);
  ImportRows(host, csv, rows, options, result, faults, import);
  return result;
}

}  // namespace standalone
