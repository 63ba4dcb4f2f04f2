#include "standalone/values/WaitingWork.h"

#include <string_view>

#include "standalone/values/Counted.h"

namespace standalone {

std::string WaitingText(const WaitingWork& waiting) {
  std::string text;
  const auto add = [&text](std::int64_t count, std::string_view what, std::string_view how) {
    if (count != 0) text.append(text.empty() ? "" : ", ").append(Counted(count, what)).append(how);
  };
  add(waiting.requests, "request", " of partners to answer");
  add(waiting.cameBack, "transaction", " that came back");
  add(waiting.ofBefore, "transaction", " of version 1.0 to answer");
  add(waiting.partners, "partner", " to confirm");
  add(waiting.outstanding, "message", " of partners that could not be applied");
  add(waiting.relations, "relation", " not established yet");
  return text;
}

}  // namespace standalone
