#include "standalone/values/States.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "standalone/values/Errors.h"
#include "standalone/values/Suggestions.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr RelationState kNoRelationState{6};

template <typename State>
using Name = std::pair<std::string_view, State>;

constexpr std::array<Name<RelationState>, 4> kRelationStates{{{"pending", RelationState::kPending},
                                                              {"established", RelationState::kEstablished},
                                                              {"without-accounts", RelationState::kWithoutAccounts},
                                                              {"deactivated", RelationState::kDeactivated}}};

constexpr std::array<Name<TransactionState>, 6> kTransactionStates{{{"entered", TransactionState::kEntered},
                                                                    {"sent", TransactionState::kSent},
                                                                    {"came-back", TransactionState::kCameBack},
                                                                    {"established", TransactionState::kEstablished},
                                                                    {"rejected", TransactionState::kRejected},
                                                                    {"closed", TransactionState::kClosed}}};

constexpr std::array<Name<TransactionState>, 6> kStatesOfBefore{{{"sent by the partner", TransactionState{0}},
                                                                 {"pending", TransactionState{1}},
                                                                 {"came back", TransactionState{2}},
                                                                 {"established", TransactionState{3}},
                                                                 {"rejected", TransactionState{4}},
                                                                 {"deactivated", TransactionState{5}}}};

// What scripts for version 1.0 give.
constexpr std::array<Name<TransactionState>, 2> kFormerNames{
    {{"pending", TransactionState::kSent}, {"deactivated", TransactionState::kClosed}}};

template <typename State, std::size_t kSize>
std::string NameIn(const std::array<Name<State>, kSize>& names, State state) {
  const auto found = std::ranges::find(names, state, &Name<State>::second);
  if (found != names.end()) return std::string(found->first);
  return "state " + std::to_string(static_cast<std::int16_t>(state));
}

template <typename State, std::size_t kSize>
std::optional<State> StateIn(const std::array<Name<State>, kSize>& names, std::string_view text) {
  const auto found = std::ranges::find(names, text, &Name<State>::first);
  if (found == names.end()) return std::nullopt;
  return found->second;
}

template <typename State>
std::optional<State> NumberedState(std::string_view text) {
  std::int16_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return State{number};
}

std::optional<TransactionState> ReadTransactionState(std::string_view text) {
  if (const auto named = StateIn(kTransactionStates, text)) return named;
  if (const auto former = StateIn(kFormerNames, text)) return former;
  return NumberedState<TransactionState>(text);
}

// Behind what a state may be.
template <typename State, std::size_t kSize>
std::string SuggestionFrom(const std::array<Name<State>, kSize>& names, std::string_view typed) {
  std::vector<std::string> known;
  for (const Name<State>& name : names) known.emplace_back(name.first);
  return DidYouMean(typed, known);
}

std::string AfterAPoint(const std::string& suggestion) {
  return suggestion.empty() ? suggestion : '.' + suggestion;
}

[[noreturn]] void ThrowNoRelationState(std::string_view text) {
  throw InvalidInput("state " + Quoted(text) +
                     " is not acceptable; give pending, established, without-accounts or deactivated, or a number from "
                     "-32768 to 32767 other than 6" +
                     AfterAPoint(SuggestionFrom(kRelationStates, text)));
}

using enum TransactionState;

constexpr std::array kFromEntered{kSent, kEstablished, kClosed};
constexpr std::array kFromSent{kCameBack, kEstablished, kClosed};
constexpr std::array kFromCameBack{kSent, kClosed};

// Those of before take part in no exchange: what waits is settled by hand alone, in any way that version 1.0 had a word
// for, and a number that meant nothing may be left.
constexpr std::array kFromSentByPartnerBefore{TransactionState{1}, TransactionState{3}, TransactionState{4},
                                              TransactionState{5}};
constexpr std::array kFromPendingBefore{TransactionState{2}, TransactionState{3}, TransactionState{4},
                                        TransactionState{5}};
constexpr std::array kFromCameBackBefore{TransactionState{1}, TransactionState{3}, TransactionState{4},
                                         TransactionState{5}};
constexpr std::array kFromUnknownBefore{TransactionState{3}, TransactionState{5}};

std::span<const TransactionState> MovesOfToday(TransactionState from) noexcept {
  switch (from) {
    case kEntered:
      return kFromEntered;
    case kSent:
      return kFromSent;
    case kCameBack:
      return kFromCameBack;
    default:
      return {};
  }
}

std::span<const TransactionState> MovesOfBefore(TransactionState from) noexcept {
  switch (static_cast<std::int16_t>(from)) {
    case 0:
      return kFromSentByPartnerBefore;
    case 1:
      return kFromPendingBefore;
    case 2:
      return kFromCameBackBefore;
    case 3:
    case 4:
    case 5:
      return {};
    default:
      return kFromUnknownBefore;
  }
}

}  // namespace

std::string StateName(RelationState state) {
  return NameIn(kRelationStates, state);
}

std::string StateName(TransactionState state) {
  return NameIn(kTransactionStates, state);
}

std::string StateName(BookedState state) {
  return state.ofBefore ? NameIn(kStatesOfBefore, state.number) : StateName(state.number);
}

std::string MarkedStateName(BookedState state) {
  return state.ofBefore ? StateName(state) + " (before)" : StateName(state);
}

RelationState ParseRelationState(std::string_view text) {
  std::optional<RelationState> state = StateIn(kRelationStates, text);
  if (!state) state = NumberedState<RelationState>(text);
  if (!state || *state == kNoRelationState) ThrowNoRelationState(text);
  return *state;
}

RelationState RequireStored(RelationState state) {
  if (state == kNoRelationState) ThrowNoRelationState(std::to_string(static_cast<std::int16_t>(state)));
  return state;
}

TransactionState ParseTransactionState(std::string_view text) {
  if (const std::optional<TransactionState> state = ReadTransactionState(text)) return *state;
  throw InvalidInput("state " + Quoted(text) +
                     " is not acceptable; give entered, sent, came-back, established, rejected or closed, or a number "
                     "from -32768 to 32767" +
                     AfterAPoint(SuggestionFrom(kTransactionStates, text)));
}

TransactionState ParseOwnTransactionState(std::string_view text) {
  if (const std::optional<TransactionState> state = ReadTransactionState(text)) {
    const bool isNamed = std::ranges::count(kTransactionStates, *state, &Name<TransactionState>::second) != 0;
    if (isNamed && *state != kRejected) return *state;
  }
  throw InvalidInput("The state " + Quoted(text) +
                     " is not acceptable; give entered (0), sent (1), came-back (2), established (3) or closed (5)." +
                     SuggestionFrom(kTransactionStates, text));
}

std::span<const TransactionState> MovesFrom(BookedState state) noexcept {
  return state.ofBefore ? MovesOfBefore(state.number) : MovesOfToday(state.number);
}

}  // namespace standalone
