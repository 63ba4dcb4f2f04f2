#pragma once

#include <string_view>
#include <vector>

#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/Lookalikes.h"

namespace desk {

// Which of the names that a use case makes are like others. They are looked up within its unit of work, once they are
// made, and told after it.
class NotedNames {
 public:
  explicit NotedNames(Work& work) noexcept : work_(work) {}

  void NoteAccount(std::string_view fullName);
  void NoteName(std::string_view fullName);
  void Note(Lookalikes lookalikes) { noted_.push_back(std::move(lookalikes)); }
  void Tell() const;

 private:
  Work& work_;
  std::vector<Lookalikes> noted_;
};

}  // namespace desk
