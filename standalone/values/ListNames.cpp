#include "standalone/values/ListNames.h"

#include <algorithm>

#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

std::string NormalizedFullName(std::string_view what, std::string_view text) {
  RequireText(what, text, 1, kListFullNameLength);
  std::string name;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(':', begin), text.size());
    const std::string_view part = Trimmed(text.substr(begin, end - begin));
    if (part.empty()) {
      throw InvalidInput(std::string(what) + " " + Quoted(text) +
                         " has an empty part; write it as Parent:Child, with a text in each part.");
    }
    RequireText(what, part, 1, kListNameLength);
    name.append(name.empty() ? "" : ":").append(part);
    begin = end + 1;
  }
  return name;
}

std::string_view LastPart(std::string_view fullName) noexcept {
  return fullName.substr(fullName.rfind(':') + 1);
}

std::string_view ParentPart(std::string_view fullName) noexcept {
  const std::size_t colon = fullName.rfind(':');
  return colon == std::string_view::npos ? std::string_view() : fullName.substr(0, colon);
}

std::string_view RequireNewAccountName(std::string_view text) {
  return RequireText("new expense account", text, 1, kListFullNameLength);
}

std::string_view RequireNewName(std::string_view text) {
  return RequireText("new name", text, 1, kListFullNameLength);
}

}  // namespace standalone
