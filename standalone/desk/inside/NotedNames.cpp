#include "standalone/desk/inside/NotedNames.h"

#include <optional>
#include <string>

#include "standalone/books/AccountTable.h"
#include "standalone/books/NameTable.h"

namespace desk {

namespace {

Lookalikes OneOf(Lookalikes::List list, std::string_view name, std::string other) {
  return {.list = list, .count = 1, .first = {{.name = std::string(name), .other = std::move(other)}}};
}

}  // namespace

void NotedNames::NoteAccount(std::string_view fullName) {
  std::optional<std::string> other = work_.Host().Accounts().ForAlike(fullName).Find(fullName);
  if (other) Note(OneOf(Lookalikes::List::kAccounts, fullName, *std::move(other)));
}

void NotedNames::NoteName(std::string_view fullName) {
  std::optional<std::string> other = work_.Host().Names().ForAlike(fullName).Find(fullName);
  if (other) Note(OneOf(Lookalikes::List::kNames, fullName, *std::move(other)));
}

void NotedNames::Tell() const {
  for (const Lookalikes& lookalikes : noted_) work_.Tell(lookalikes);
}

}  // namespace desk
