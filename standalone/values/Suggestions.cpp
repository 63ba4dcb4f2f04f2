#include "standalone/values/Suggestions.h"

#include <algorithm>
#include <vector>

#include "standalone/values/Characters.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::size_t kMostNamed = 3;
// So many letters make a beginning that means something.
constexpr std::size_t kLeastBeginning = 3;
constexpr std::size_t kLettersToAMistake = 3;

// How many letters are to be changed, put in, taken out, or swapped with the next one.
std::size_t MistakesBetween(std::string_view left, std::string_view right) {
  std::vector<std::size_t> beforeLast;
  std::vector<std::size_t> last(right.size() + 1);
  for (std::size_t j = 0; j <= right.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    std::vector<std::size_t> row(right.size() + 1, i);
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const bool same = LowerAscii(left[i - 1]) == LowerAscii(right[j - 1]);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0U : 1U)});
      const bool swapped = i > 1 && j > 1 && LowerAscii(left[i - 1]) == LowerAscii(right[j - 2]) &&
                           LowerAscii(left[i - 2]) == LowerAscii(right[j - 1]);
      if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
    beforeLast = std::move(last);
    last = std::move(row);
  }
  return last.back();
}

// The whole name counts before a part of it.
std::size_t FarFrom(std::string_view typed, std::string_view known) {
  std::size_t mistakes = MistakesBetween(typed, known);
  if (const std::string_view part = LastPart(known); part.size() != known.size()) {
    mistakes = std::min(mistakes, MistakesBetween(typed, part) + 1);
  }
  if (typed.size() >= kLeastBeginning && known.size() > typed.size()) {
    mistakes = std::min(mistakes, MistakesBetween(typed, known.substr(0, typed.size())) + 1);
  }
  return mistakes;
}

}  // namespace

std::string DidYouMean(std::string_view typed, std::span<const std::string> known) {
  std::size_t least = std::max<std::size_t>(1, typed.size() / kLettersToAMistake);
  std::vector<std::string_view> nearest;
  for (const std::string& name : known) {
    const std::size_t far = FarFrom(typed, name);
    if (far > least) continue;
    if (far < least) nearest.clear();
    least = far;
    const bool isNamed = std::ranges::find(nearest, name) != nearest.end();
    if (!isNamed && nearest.size() < kMostNamed) nearest.push_back(name);
  }
  std::string text;
  for (const std::string_view name : nearest) text.append(text.empty() ? "" : " or ").append(Quoted(name));
  return text.empty() ? text : " Did you mean " + text + "?";
}

}  // namespace standalone
