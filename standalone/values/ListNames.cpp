#include "standalone/values/ListNames.h"

#include <algorithm>

#include "standalone/values/Characters.h"
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

std::string FullNameUnder(std::string_view parent, std::string_view ownName) {
  std::string fullName(parent);
  return fullName.append(fullName.empty() ? "" : ":").append(ownName);
}

std::string RenamedFullName(std::string_view what, std::string_view fullName, std::string_view ownName) {
  if (ownName.find(':') != std::string_view::npos) {
    throw InvalidInput(std::string(what) + " " + Quoted(ownName) +
                       " has a colon; give its own name only, it stays where it stands.");
  }
  return NormalizedFullName(what, FullNameUnder(ParentPart(fullName), ownName));
}

void RequireRoomBelow(std::int64_t longest, std::string_view fullName, std::string_view renamed) {
  const auto most = static_cast<std::int64_t>(kListFullNameLength);
  const std::int64_t needed =
      longest + static_cast<std::int64_t>(renamed.size()) - static_cast<std::int64_t>(fullName.size());
  if (needed <= most) return;
  throw InvalidInput("As " + Quoted(renamed) + " it would have below it a name of " + std::to_string(needed) +
                     " bytes; " + std::to_string(most) + " are the most.");
}

bool IsAccountNumber(std::string_view text) noexcept {
  bool followsDigit = false;
  for (const char character : text) {
    const bool isDigit = IsAsciiDigit(character);
    if (!isDigit && (!followsDigit || (character != '.' && character != '-'))) return false;
    followsDigit = isDigit;
  }
  return followsDigit && text.size() <= kAccountNumberLength;
}

std::string_view RequireAccountNumber(std::string_view text) {
  if (IsAccountNumber(text)) return text;
  throw InvalidInput("The account number " + Quoted(text) + " is none; give 1 to " +
                     std::to_string(kAccountNumberLength) +
                     " digits, with single points or dashes between them, such as 4000 or 4000.10.");
}

std::string_view RequireNewAccountName(std::string_view text) {
  return RequireText("new expense account", text, 1, kListFullNameLength);
}

std::string_view RequireNewName(std::string_view text) {
  return RequireText("new name", text, 1, kListFullNameLength);
}

}  // namespace standalone
