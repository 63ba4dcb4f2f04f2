#include "standalone/import/Faults.h"

#include <algorithm>
#include <utility>

namespace standalone {

namespace {

constexpr std::size_t kShown = 100;

std::string LineText(const BadRow& row) {
  return "line " + std::to_string(row.line) + ": " + row.reason;
}

std::string MessageOf(const std::string& file, const std::vector<BadRow>& first, std::uint64_t more) {
  if (first.size() == 1 && more == 0) return file + ", " + LineText(first.front());
  std::string text = file + " has " + std::to_string(first.size() + more) + " faults:";
  for (const BadRow& row : first) text += "\n  " + LineText(row);
  if (more != 0) text += "\n  and " + std::to_string(more) + " more.";
  return text;
}

}  // namespace

void Faults::Add(Fault fault) {
  ++count_;
  if (!Shows(fault.line)) return;
  if (!fault.reason.ends_with('.')) fault.reason += '.';
  const auto after = std::ranges::upper_bound(first_, fault.line, {}, &Fault::line);
  first_.insert(after, std::move(fault));
  if (first_.size() > kShown) first_.pop_back();
}

void Faults::ReplaceThatOfTheWhole(std::uint64_t line, std::string reason) {
  const auto found =
      std::ranges::find_if(first_, [line](const Fault& fault) { return fault.line == line && fault.ofTheWhole; });
  if (found != first_.end()) found->reason = std::move(reason);
}

void Faults::Add(const Faults& others) {
  for (const Fault& fault : others.first_) Add(fault);
  count_ += others.count_ - others.first_.size();
}

void Faults::Add(const BadRows& others) {
  for (const BadRow& row : others.First()) Add(row.line, row.reason);
  count_ += others.More();
}

void Faults::Clear() {
  first_.clear();
  count_ = 0;
}

bool Faults::Shows(std::uint64_t line) const noexcept {
  return first_.size() < kShown || line < first_.back().line;
}

BadRows Faults::In(const std::string& file) const {
  std::vector<BadRow> first(first_.begin(), first_.end());
  const std::uint64_t more = count_ - first.size();
  const std::string message = MessageOf(file, first, more);
  return {message, std::move(first), more};
}

}  // namespace standalone
