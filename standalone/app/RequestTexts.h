#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/app/Remedies.h"
#include "standalone/app/terminal/Output.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Rules.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/InboxState.h"
#include "standalone/values/Money.h"

// What people are told, and say, of requests between this company and its partners.
namespace app {

// Which requests are meant, as people say it.
struct SelectionOptions {
  std::vector<std::string> requests;
  std::optional<std::string> partner;
  std::optional<std::string> upTo;
  bool all = false;  // said so that nobody means it by leaving something out
};
// Throws standalone::InvalidInput.
desk::RequestSelection SelectionOf(const SelectionOptions& options);

// A list with what has to be looked at closely below it. `file` is the company as people type it.
std::string InboxListText(const std::vector<desk::InboxRequest>& requests);
std::string OutboxListText(const std::vector<desk::OutboxRequest>& requests);

// A list with what keeps some of them from fitting below it.
std::string RulesText(const std::vector<desk::Rule>& rules);
// "rule 3 for requests of Alder Supply Company".
std::string CalledRule(const desk::Rule& rule);

// All of one request, a line for each value, and what to do next.
std::string InboxRequestText(const desk::InboxRequest& request, const std::string& file);
std::string OutboxRequestText(const desk::OutboxRequest& request, const std::string& file);

// "request R-1017 of Alder Supply Company, a bill of 2026-11-02 over 480.00 USD"; one's own is one to the partner.
std::string CalledRequest(const desk::InboxRequest& request);
std::string CalledRequest(const desk::OutboxRequest& request);

// That what was said of a request leaves with the next letters; `file` is the company as people type it.
std::string RemarkLeavesText(const std::string& file);
inline constexpr const char* kRemarkHelp = "What the partner is told, 1 to 4000 bytes";

// "480.00 USD", the latter if the company has a currency.
std::string AmountWithCurrency(const standalone::Money& amount);

// That something was left as it was, why, and what to do; `called` as above.
std::string LeftText(std::string_view called, const desk::Refusal& refusal);

// Of all that were left; nothing for a single one beside which nothing was done, which FailForLeft() tells of.
template <typename Left>
std::string LeftTexts(std::size_t doneCount, const std::vector<Left>& left) {
  if (doneCount == 0 && left.size() == 1) return {};
  std::string text;
  for (const Left& one : left) text += LeftText(CalledRequest(one.request), one.refusal);
  return text;
}

template <typename Left>
std::vector<desk::Refusal> RefusalsOf(const std::vector<Left>& left) {
  std::vector<desk::Refusal> refusals;
  for (const Left& one : left) refusals.push_back(one.refusal);
  return refusals;
}

// For programs, each with the words of what to do.
template <typename Left>
Json LeftJson(const std::vector<Left>& left) {
  Json list = Json::array();
  for (const Left& one : left) {
    list.push_back(desk::JsonOf(one));
    list.back()["refusal"]["hint"] = HintFor(one.refusal.remedy);
  }
  return list;
}

// Ends the command when something was left: as a refusal does when nothing was done, otherwise as work that could not
// be finished.
void FailForLeft(std::size_t doneCount, const std::vector<desk::Refusal>& left);

// The values of --state of an inbox; throws standalone::InvalidInput for another text.
inline constexpr const char* kInboxStates = "new|held|accepted|to-book-again|rejected|refused|withdrawn";
standalone::InboxState ParseInboxState(const std::string& text);

}  // namespace app
