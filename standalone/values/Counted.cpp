#include "standalone/values/Counted.h"

namespace standalone {

std::string Counted(std::int64_t count, std::string_view one, std::string_view many) {
  std::string text = std::to_string(count) + ' ';
  if (count == 1) return text.append(one);
  return many.empty() ? text.append(one).append("s") : text.append(many);
}

}  // namespace standalone
