#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace desk {

// Why nobody decides or sends for now: these books are not those by which this company told its partners last.
struct Awaited {
  bool isIdentityLost = false;     // and with it, what this company told its partners before
  std::int64_t missing = 0;        // facts that this company told its partners, and its books lack
  std::int64_t cameBack = 0;       // facts of this company that came back, and of which nobody has confirmed why
  std::int64_t fromElsewhere = 0;  // of these, those that did not leave from here
  std::vector<std::string> firstThatCameBack;  // up to three, such as "the proposal R-1 to Birch"
  std::vector<std::string> toCompare;          // partners that have yet to show what they hold, by name
};

// "these books lack 2 facts that this company told its partners, as books of before have been restored".
std::string MissingText(const Awaited& awaited);
// "2 facts that this company signed and these books never made have come back: the proposal R-1 to Birch, ...", and
// what speaks for which reason.
std::string CameBackText(const Awaited& awaited);
// "Birch, Cedar".
std::string ToCompareText(const Awaited& awaited);

}  // namespace desk
