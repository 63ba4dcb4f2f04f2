#include "standalone/books/AlikeNames.h"

#include "standalone/values/Characters.h"
#include "standalone/values/Unicode.h"

namespace standalone {

void AlikeNames::Add(std::string_view fullName) {
  if (!IsPrintableAscii(fullName)) byForm_.try_emplace(FoldedForm(fullName), fullName);
}

std::optional<std::string> AlikeNames::Find(std::string_view fullName) const {
  const bool isAscii = IsPrintableAscii(fullName);
  if (isAscii && byForm_.empty()) return std::nullopt;
  const std::string form = FoldedForm(fullName);
  if (const auto found = byForm_.find(form); found != byForm_.end()) return found->second;
  if (isAscii || !IsPrintableAscii(form)) return std::nullopt;
  return findInList_(form);
}

}  // namespace standalone
