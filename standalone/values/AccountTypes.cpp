#include "standalone/values/AccountTypes.h"

#include <array>
#include <charconv>
#include <limits>
#include <string>
#include <vector>

#include "standalone/values/Errors.h"
#include "standalone/values/Suggestions.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::array<const char*, 16> kTypeNames{"Bank",
                                                 "Accounts Receivable",
                                                 "Other Current Asset",
                                                 "Fixed Asset",
                                                 "Other Asset",
                                                 "Accounts Payable",
                                                 "Credit Card",
                                                 "Other Current Liability",
                                                 "Long Term Liability",
                                                 "Equity",
                                                 "Income",
                                                 "Cost of Goods Sold",
                                                 "Expense",
                                                 "Other Income",
                                                 "Other Expense",
                                                 "Non-Posting"};

// Others call some types otherwise.
std::string SuggestedType(std::string_view typed, const std::vector<std::string>& known) {
  if (EqualIgnoringCase(typed, "cheque")) return DidYouMean("check", known);
  if (EqualIgnoringCase(typed, "entry")) return DidYouMean("journal", known);
  return DidYouMean(typed, known);
}

}  // namespace

std::string AccountTypeName(std::int16_t type) {
  const auto index = static_cast<std::size_t>(type);
  return type >= 0 && index < kTypeNames.size() ? kTypeNames[index] : "Type " + std::to_string(type);
}

std::int16_t ParseAccountType(std::string_view text) {
  for (std::size_t type = 0; type < kTypeNames.size(); ++type) {
    if (EqualIgnoringCase(text, kTypeNames[type])) return static_cast<std::int16_t>(type);
  }
  std::int16_t type = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), type);
  if (error == std::errc{} && end == text.data() + text.size() && type >= 0) return type;
  std::string names;
  for (const char* name : kTypeNames) names.append(names.empty() ? "" : ", ").append(name);
  throw InvalidInput("The account type " + Quoted(text) + " is not known; the types are " + names +
                     ", or a number from 0 to " + std::to_string(std::numeric_limits<std::int16_t>::max()) + ".");
}

bool IsAsset(std::int16_t type) noexcept {
  switch (type) {
    case KrEnumerations::kBank:
    case KrEnumerations::kAccountsReceivable:
    case KrEnumerations::kOtherCurrentAsset:
    case KrEnumerations::kFixedAsset:
    case KrEnumerations::kOtherAsset:
      return true;
    default:
      return false;
  }
}

bool IsLiability(std::int16_t type) noexcept {
  switch (type) {
    case KrEnumerations::kAccountsPayable:
    case KrEnumerations::kCreditCard:
    case KrEnumerations::kOtherCurrentLiability:
    case KrEnumerations::kLongTermLiability:
      return true;
    default:
      return false;
  }
}

std::string TransactionTypeName(std::int32_t type) {
  switch (type) {
    case kTxnTypeCheck:
      return "check";
    case kTxnTypeJournalEntry:
      return "journal";
    case kTxnTypeBill:
      return "bill";
    default:
      return std::to_string(type);
  }
}

std::int16_t ParseTransactionType(std::string_view text) {
  if (EqualIgnoringCase(text, "check")) return kTxnTypeCheck;
  if (EqualIgnoringCase(text, "journal")) return kTxnTypeJournalEntry;
  if (EqualIgnoringCase(text, "bill")) return kTxnTypeBill;
  throw InvalidInput("The transaction type " + Quoted(text) + " is not known; the types are bill, check and journal." +
                     SuggestedType(text, {"bill", "check", "journal"}));
}

RejectableType ParseRejectableType(std::string_view text) {
  for (const RejectableType type : {RejectableType::kBill, RejectableType::kCheck}) {
    const auto number = static_cast<std::int16_t>(type);
    if (text == TransactionTypeName(number) || text == std::to_string(number)) return type;
  }
  const std::string suggested = SuggestedType(text, {"bill", "check"});
  throw InvalidInput("type " + Quoted(text) + " is not acceptable; partners reject a bill or a check" +
                     (suggested.empty() ? suggested : '.' + suggested));
}

}  // namespace standalone
