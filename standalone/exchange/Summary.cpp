#include "standalone/exchange/Summary.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <stdexcept>

#include "standalone/exchange/Errors.h"
#include "standalone/values/Text.h"

namespace exchange {

std::string Summary::Text() const {
  return std::to_string(count) + " " + digest.Hex();
}

Summary Summary::FromText(std::string_view text) {
  const std::string_view number = text.substr(0, text.find(' '));
  std::uint64_t count = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), count);
  const bool isCount = error == std::errc{} && std::to_string(count) == number && count <= kMostFacts;
  if (!isCount || number.size() == text.size()) {
    throw Malformed("The summary " + standalone::Quoted(text) + " is no number, a blank and a digest.");
  }
  return {.count = count, .digest = Hash::FromHex(text.substr(number.size() + 1))};
}

void Summarizing::Add(const Hash& hash) {
  if (count_ > 0 && hash <= last_) throw std::invalid_argument("hashes are summed up in ascending order");
  digest_.Add(hash.Bytes());
  last_ = hash;
  ++count_;
}

Summary Summarizing::Finish() {
  return {.count = count_, .digest = Hash::FromHex(digest_.Finish())};
}

Summary SummaryOf(const std::vector<Hash>& hashes) {
  Summarizing summarizing;
  for (const Hash& hash : hashes) summarizing.Add(hash);
  return summarizing.Finish();
}

std::vector<std::string> MonthsThatDiffer(const Months& ours, const Months& theirs) {
  std::vector<std::string> differ;
  for (const auto& [month, summary] : ours) {
    const auto their = theirs.find(month);
    if (their == theirs.end() || their->second != summary) differ.push_back(month);
  }
  for (const auto& [month, summary] : theirs) {
    if (!ours.contains(month)) differ.push_back(month);
  }
  std::ranges::sort(differ);
  return differ;
}

std::vector<Hash> Lacking(const std::vector<Hash>& theirs, const std::vector<Hash>& ours) {
  std::vector<Hash> lacking;
  std::ranges::set_difference(ours, theirs, std::back_inserter(lacking));
  return lacking;
}

}  // namespace exchange
