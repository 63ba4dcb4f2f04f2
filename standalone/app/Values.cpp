#include "standalone/app/Values.h"

#include <fmt/format.h>

#include <charconv>
#include <limits>
#include <string>

#include "MultiEntityHost/Enumerations.h"
#include "standalone/app/Statuses.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

constexpr std::int32_t kLargestId = std::numeric_limits<std::int32_t>::max() - 1;

// A state by its name or by its number.
std::optional<MEState> ReadState(std::string_view text, std::string (*nameOf)(int state)) {
  for (const MEState state : {MEStatePending, MEStateEstablished, MEStateWithoutAccounts, MEStateDeactivated}) {
    if (text == nameOf(state)) return state;
  }
  std::int16_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return static_cast<MEState>(number);
}

}  // namespace

std::filesystem::path FilePath(std::string_view text) {
  if (text.empty()) throw standalone::InvalidInput("the file name is empty; give the path of a file");
  return {std::u8string(text.begin(), text.end())};
}

Util::TString RealmId(std::string_view text) {
  return standalone::RequireRealmId(text);
}

Util::TString PartnerName(std::string_view text) {
  return standalone::RequirePartnerName(text);
}

Util::TString RequestId(std::string_view text) {
  return standalone::RequireRequestId(text);
}

Util::TString Amount(std::string_view text) {
  if (!standalone::ParseAmount(text)) {
    throw standalone::InvalidInput(fmt::format(
        "amount {} is not acceptable; write it like 1234.50 or 1,234.50, with at most two decimals, up to {}",
        standalone::Quoted(text), standalone::FormatAmount(standalone::kLargestAmount)));
  }
  return text;
}

Util::TString NewListName(std::string_view what, std::string_view text) {
  return standalone::RequireText(what, text, 1, standalone::kListFullNameLength);
}

std::int32_t RecordId(std::string_view what, std::string_view text) {
  return WholeNumber(what, text, 1, kLargestId);
}

std::int32_t WholeNumber(std::string_view what, std::string_view text, std::int32_t least, std::int32_t most) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < least || number > most) {
    throw standalone::InvalidInput(fmt::format("{} {} is not acceptable; give a whole number from {} to {}", what,
                                               standalone::Quoted(text), least, most));
  }
  return number;
}

MEState RelationState(std::string_view text) {
  const std::optional<MEState> state = ReadState(text, StateText);
  if (!state || *state == MEStateKeepStored) {
    throw standalone::InvalidInput(fmt::format(
        "state {} is not acceptable; give pending, established, without-accounts or deactivated, or a number "
        "from -32768 to 32767 other than 6",
        standalone::Quoted(text)));
  }
  return *state;
}

MEState TransactionState(std::string_view text) {
  const std::optional<MEState> state = ReadState(text, TransactionStateText);
  if (!state) {
    throw standalone::InvalidInput(
        fmt::format("state {} is not acceptable; give pending, established, rejected or deactivated, or a number "
                    "from -32768 to 32767",
                    standalone::Quoted(text)));
  }
  return *state;
}

std::int16_t RejectedType(std::string_view text) {
  for (const std::int16_t type : {kTxnTypeBill, kTxnTypeCheck}) {
    if (text == standalone::TransactionTypeName(type) || text == std::to_string(type)) return type;
  }
  throw standalone::InvalidInput(
      fmt::format("type {} is not acceptable; partners reject a bill or a check", standalone::Quoted(text)));
}

Util::TString RejectedAmount(std::string_view text) {
  const Util::TString amount = Amount(text);
  if (amount.size() <= kRejectedAmountLength) return amount;
  throw standalone::InvalidInput(fmt::format("amount {} is too long; write it with at most {} characters",
                                             standalone::Quoted(text), kRejectedAmountLength));
}

Util::TString PartnerTxnId(std::string_view text) {
  return standalone::RequireText("The partner's transaction id", text, 1, kPartnerTxnIdLength);
}

MERelationType RelationType(std::string_view text) {
  return static_cast<MERelationType>(WholeNumber("relation type", text, std::numeric_limits<std::int16_t>::min(),
                                                 std::numeric_limits<std::int16_t>::max()));
}

DateType32 PeriodBound(std::string_view what, const std::optional<std::string>& text) {
  return text ? standalone::ParseDate(what, *text) : NullDate();
}

}  // namespace app
