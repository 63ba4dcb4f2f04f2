#include "support/CallScript.h"

#include <algorithm>
#include <cstdio>

namespace call_text {

std::string Of(std::string_view text) {
  return text.empty() ? "\"\"" : std::string(text);
}

std::string Of(const Util::TString& text) {
  return Of(text.view());
}

std::string Of(DateType32 date) {
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", date.GetYear(), date.GetMonth(), date.GetDay());
  return text;
}

std::string Of(const DBMultiEntityRelation& row) {
  return Of(row.realmId);
}

std::string Of(const DBMultiEntityTransaction& row) {
  return std::to_string(row.txnId) + "/" + std::to_string(row.targetId);
}

std::string Of(const DBMultiEntityRejectedTxnReceiver& row) {
  return Of(row.requestId);
}

}  // namespace call_text

void CallScript::FailAt(std::string name, std::optional<long> code) {
  FailAtNth(std::move(name), 0, code);
}

void CallScript::FailAtNth(std::string name, std::size_t nth, std::optional<long> code) {
  faults_.push_back({std::move(name), nth, {}, {code}});
}

void CallScript::OnCall(std::string name, std::function<void()> action) {
  actions_.emplace(std::move(name), std::move(action));
}

void CallScript::OnEveryCall(std::function<void()> action) {
  actionsOfEveryCall_.push_back(std::move(action));
}

std::vector<std::string> CallScript::CallsOf(std::initializer_list<std::string_view> names) const {
  std::vector<std::string> found;
  std::ranges::copy_if(calls_, std::back_inserter(found), [names](const std::string& call) {
    return std::ranges::find(names, std::string_view(call).substr(0, call.find('('))) != names.end();
  });
  return found;
}

void CallScript::Forget() {
  counts_.clear();
  calls_.clear();
  events_.clear();
}

void CallScript::AddException(std::string name, std::size_t nth, std::exception_ptr exception) {
  faults_.push_back({std::move(name), nth, std::move(exception), {}});
}

void CallScript::Add(const char* name, std::string text) {
  ++counts_[name];
  calls_.push_back(text);
  events_.push_back(std::move(text));
}

std::optional<ScriptedFailure> CallScript::Play(const std::string& name) {
  std::ranges::for_each(actionsOfEveryCall_, [](const auto& action) { action(); });
  const auto [first, last] = actions_.equal_range(name);
  std::for_each(first, last, [](const auto& entry) { entry.second(); });

  const auto fault = std::ranges::find_if(faults_, [&](const Fault& candidate) { return IsDue(candidate, name); });
  if (fault == faults_.end()) return std::nullopt;
  if (fault->exception) std::rethrow_exception(fault->exception);
  return fault->failure;
}

bool CallScript::IsDue(const Fault& fault, const std::string& name) const {
  if (fault.name == kAnyCall) return fault.nth == calls_.size();
  return fault.name == name && (fault.nth == 0 || fault.nth == counts_.at(name));
}
