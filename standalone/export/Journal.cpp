#include "standalone/export/Journal.h"

#include <array>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "MultiEntityHost/Enumerations.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/AttachmentTable.h"
#include "standalone/books/PostedLines.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/export/JournalTexts.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Money.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 16U;

// ledger knows no others when it is asked to be strict.
constexpr std::array kTags{"txn",   "type",     "number",   "partner", "realm",     "request",
                           "state", "reverses", "corrects", "moves",   "attachment"};

// Nothing for a type without a balance and for those of the host that have no name here.
std::string_view TypeCode(std::int16_t type) noexcept {
  switch (type) {
    case KrEnumerations::kBank:
      return "C";
    case KrEnumerations::kEquity:
      return "E";
    case KrEnumerations::kIncome:
    case KrEnumerations::kOtherIncome:
      return "R";
    case KrEnumerations::kCostOfGoodsSold:
    case KrEnumerations::kExpense:
    case KrEnumerations::kOtherExpense:
      return "X";
    default:
      if (IsAsset(type)) return "A";
      return IsLiability(type) ? "L" : std::string_view();
  }
}

class Journal {
 public:
  Journal(Database& database, const Settings& settings, const std::function<void(std::string_view text)>& take)
      : attachments_(database),
        unit_(settings.homeCurrency.empty() ? "" : " " + settings.homeCurrency),
        decimals_(settings.decimals),
        take_(take) {}

  void BeginWith(const Settings& settings, DateType32 from, DateType32 to) {
    Add("; ", Shown(settings.companyName), "\n");
    if (from != NullDate()) Add("; from ", FormatIsoDate(from), "\n");
    if (to != NullDate()) Add("; to ", FormatIsoDate(to), "\n");
    Add("; %XX is the byte with these hexadecimal digits, where the text would not be read as it is\n");
    Add("decimal-mark .\n");
    if (!settings.homeCurrency.empty()) Add("commodity ", settings.homeCurrency, "\n");
    for (const char* const tag : kTags) Add("tag ", tag, "\n");
    Add("\n");
  }

  // In the order of their names, so that those with the same name are neighbours.
  void AddAccounts(const std::vector<Account>& accounts) {
    for (std::size_t index = 0; index < accounts.size(); ++index) {
      const Account& account = accounts[index];
      const auto hasNameOf = [&](std::size_t other) {
        return other < accounts.size() && EqualIgnoringCase(accounts[other].fullName, account.fullName);
      };
      const bool isNamesake = account.deleted && (hasNameOf(index + 1) || (index != 0 && hasNameOf(index - 1)));
      AddAccount(account,
                 isNamesake ? DeletedAccountText(account.fullName, account.id) : AccountText(account.fullName));
    }
    counts_.accounts = static_cast<std::int64_t>(accounts.size());
  }

  void AddLine(const PostedLineView& line) {
    if (line.txnId != txnId_) AddHeader(line);
    Add("    ", accounts_.at(line.accountId), "  ", FormatPlainAmount(line.amount, decimals_), unit_, "\n");
    if (!line.memo.empty()) Add("    ; ", CommentText(line.memo), "\n");
    if (line.intercompany) {
      AddTag("partner", line.intercompany->partner);
      AddTag("realm", line.intercompany->realm);
      AddTag("request", line.intercompany->requestId);
      AddTag("state", MarkedStateName(line.intercompany->state));
    }
    ++counts_.lines;
    if (text_.size() >= kPiece) HandOn();
  }

  JournalCounts End() {
    HandOn();
    return counts_;
  }

 private:
  template <typename... Texts>
  void Add(const Texts&... texts) {
    (text_.append(texts), ...);
  }

  void AddTag(std::string_view tag, std::string_view value) {
    if (!value.empty()) Add("    ; ", tag, ": ", TagText(value), "\n");
  }
  void AddLink(std::string_view tag, std::int32_t earlierTxnId) {
    if (earlierTxnId != 0) AddTag(tag, std::to_string(earlierTxnId));
  }

  void AddAccount(const Account& account, std::string name) {
    Add("account ", name, "\n");
    AddTag("type", TypeCode(account.type));
    AddTag("number", account.number);
    accounts_.emplace(account.id, std::move(name));
  }

  void AddHeader(const PostedLineView& line) {
    txnId_ = line.txnId;
    ++counts_.transactions;
    const std::string id = std::to_string(line.txnId);
    const std::string description = DescriptionText(line.name, line.txnMemo);
    Add("\n", FormatIsoDate(line.date), " (", line.documentNumber.empty() ? id : CodeText(line.documentNumber), ")",
        description.empty() ? "" : " ", description, "\n");
    AddTag("txn", id);
    AddTag("type", TransactionTypeName(line.txnType));
    AddLink("reverses", line.reverses);
    AddLink("corrects", line.corrects);
    AddLink("moves", line.moves);
    for (const std::string& reference : attachments_.Of(line.txnId)) AddTag("attachment", reference);
  }

  void HandOn() {
    take_(text_);
    text_.clear();
  }

  AttachmentTable attachments_;
  std::string unit_;  // behind an amount
  Decimals decimals_;
  const std::function<void(std::string_view text)>& take_;
  std::unordered_map<std::int32_t, std::string> accounts_;  // as they are written
  std::string text_;
  std::int32_t txnId_ = 0;
  JournalCounts counts_;
};

}  // namespace

JournalCounts WriteJournal(Database& database, DateType32 from, DateType32 to,
                           const std::function<void(std::string_view text)>& take) {
  SettingsTable settings(database);
  Journal journal(database, settings.Get(), take);
  journal.BeginWith(settings.Get(), from, to);
  journal.AddAccounts(AccountTable(database).List(/*withDeleted=*/true));
  PostedLines(database).ForEach(from, to, [&journal](const PostedLineView& line) { journal.AddLine(line); });
  return journal.End();
}

}  // namespace standalone
