#pragma once

#include <span>
#include <string>
#include <string_view>

namespace standalone {

// " Did you mean "Utilities:Power"?", or nothing, for a text that is none of those that are known: with those that it
// is like but for a few letters, those that it begins, or those whose part behind the last colon it is like.
std::string DidYouMean(std::string_view typed, std::span<const std::string> known);

}  // namespace standalone
