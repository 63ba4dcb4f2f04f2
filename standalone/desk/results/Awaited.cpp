#include "standalone/desk/results/Awaited.h"

#include "standalone/values/Counted.h"

namespace desk {

namespace {

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : ", ") + text;
  return joined;
}

std::string WhatSpeaksForWhich(const Awaited& awaited) {
  if (awaited.fromElsewhere == 0) return "all of it left from here, so that a backup was restored";
  const std::string those = awaited.fromElsewhere == awaited.cameBack ? "none of it" : "not all of it";
  return those +
         " left from here by the identity beside the books: a copy of this company is at work elsewhere, or a backup "
         "of its whole folder was restored";
}

}  // namespace

std::string MissingText(const Awaited& awaited) {
  if (awaited.isIdentityLost) {
    return "the identity that was lost knew what this company told its partners, and these books may lack some of it";
  }
  return "these books lack " + standalone::Counted(awaited.missing, "fact") +
         " that this company told its partners, as books of before have been restored";
}

std::string CameBackText(const Awaited& awaited) {
  const std::int64_t others = awaited.cameBack - static_cast<std::int64_t>(awaited.firstThatCameBack.size());
  return standalone::Counted(awaited.cameBack, "fact") + " that this company signed and these books never made " +
         (awaited.cameBack == 1 ? "has" : "have") + " come back: " + Joined(awaited.firstThatCameBack) +
         (others > 0 ? " and " + std::to_string(others) + " more" : "") + "; " + WhatSpeaksForWhich(awaited);
}

std::string ToCompareText(const Awaited& awaited) {
  return Joined(awaited.toCompare);
}

}  // namespace desk
