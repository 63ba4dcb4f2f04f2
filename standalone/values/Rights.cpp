#include "standalone/values/Rights.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

struct Word {
  const char* text;
  std::int32_t number;
};

constexpr std::array<Word, 3> kFeatures{
    {{"checks", kFeatureChecks}, {"journal", kFeatureJournalEntries}, {"bills", kFeatureBills}}};
constexpr std::array<Word, 4> kActions{
    {{"create", kActionCreate}, {"view", kActionView}, {"delete", kActionDelete}, {"modify", kActionModify}}};
constexpr std::array<Word, 1> kLists{{{"accounts", kListAccounts}}};

std::string TextOf(std::span<const Word> words, std::int32_t number) {
  for (const Word& word : words) {
    if (word.number == number) return word.text;
  }
  return std::to_string(number);
}

std::optional<std::int32_t> NumberOf(std::span<const Word> words, std::string_view text) {
  for (const Word& word : words) {
    if (EqualIgnoringCase(word.text, text)) return word.number;
  }
  return std::nullopt;
}

std::string Joined(std::span<const Word> words) {
  std::string joined;
  for (const Word& word : words) joined.append(joined.empty() ? "" : ", ").append(word.text);
  return joined;
}

// Reads "subject:action".
std::pair<std::int32_t, std::int32_t> ParseRight(std::span<const Word> subjects, std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon != std::string_view::npos) {
    const std::optional<std::int32_t> subject = NumberOf(subjects, text.substr(0, colon));
    const std::optional<std::int32_t> action = NumberOf(kActions, text.substr(colon + 1));
    if (subject && action) return {*subject, *action};
  }
  throw InvalidInput("The right " + Quoted(text) + " is not known; write it as " + subjects.front().text +
                     ":view, where the first word is one of " + Joined(subjects) + " and the second one of " +
                     Joined(kActions) + ".");
}

}  // namespace

std::string FeatureRightText(FeatureRight right) {
  return TextOf(kFeatures, right.feature) + ":" + TextOf(kActions, right.action);
}

std::string ListRightText(ListRight right) {
  return TextOf(kLists, right.list) + ":" + TextOf(kActions, right.action);
}

FeatureRight ParseFeatureRight(std::string_view text) {
  const auto [feature, action] = ParseRight(kFeatures, text);
  return {static_cast<ProgramFeature>(feature), static_cast<UserAction>(action)};
}

ListRight ParseListRight(std::string_view text) {
  const auto [list, action] = ParseRight(kLists, text);
  return {static_cast<ListType>(list), static_cast<UserAction>(action)};
}

bool IsListRight(std::string_view text) noexcept {
  return NumberOf(kLists, text.substr(0, text.find(':'))).has_value();
}

std::string_view RequireRight(std::string_view text) {
  if (IsListRight(text)) {
    ParseListRight(text);
  } else {
    ParseFeatureRight(text);
  }
  return text;
}

std::vector<Right> AllRights() {
  std::vector<Right> rights;
  for (const auto& subjects : {std::span<const Word>(kFeatures), std::span<const Word>(kLists)}) {
    for (const Word& subject : subjects) {
      for (const Word& action : kActions) rights.emplace_back(std::string(subject.text) + ":" + action.text);
    }
  }
  return rights;
}

}  // namespace standalone
