#include "standalone/values/States.h"

#include <array>
#include <charconv>
#include <optional>

#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr RelationState kNoRelationState{6};

constexpr std::array<std::int16_t, 4> kNamed{1, 3, 4, 5};

template <typename State>
std::optional<State> ReadState(std::string_view text) {
  for (const std::int16_t named : kNamed) {
    if (text == StateName(State{named})) return State{named};
  }
  std::int16_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return State{number};
}

[[noreturn]] void ThrowNoRelationState(std::string_view text) {
  throw InvalidInput("state " + Quoted(text) +
                     " is not acceptable; give pending, established, without-accounts or deactivated, or a number from "
                     "-32768 to 32767 other than 6");
}

std::string NumberedState(std::int16_t number) {
  return "state " + std::to_string(number);
}

}  // namespace

std::string StateName(RelationState state) {
  switch (state) {
    case RelationState::kPending:
      return "pending";
    case RelationState::kEstablished:
      return "established";
    case RelationState::kWithoutAccounts:
      return "without-accounts";
    case RelationState::kDeactivated:
      return "deactivated";
  }
  return NumberedState(static_cast<std::int16_t>(state));
}

std::string StateName(TransactionState state) {
  switch (state) {
    case TransactionState::kPending:
      return "pending";
    case TransactionState::kEstablished:
      return "established";
    case TransactionState::kRejected:
      return "rejected";
    case TransactionState::kDeactivated:
      return "deactivated";
  }
  return NumberedState(static_cast<std::int16_t>(state));
}

RelationState ParseRelationState(std::string_view text) {
  const std::optional<RelationState> state = ReadState<RelationState>(text);
  if (!state || *state == kNoRelationState) ThrowNoRelationState(text);
  return *state;
}

RelationState RequireStored(RelationState state) {
  if (state == kNoRelationState) ThrowNoRelationState(std::to_string(static_cast<std::int16_t>(state)));
  return state;
}

TransactionState ParseTransactionState(std::string_view text) {
  if (const std::optional<TransactionState> state = ReadState<TransactionState>(text)) return *state;
  throw InvalidInput("state " + Quoted(text) +
                     " is not acceptable; give pending, established, rejected or deactivated, or a number from -32768 "
                     "to 32767");
}

}  // namespace standalone
