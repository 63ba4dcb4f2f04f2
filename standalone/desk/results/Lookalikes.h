#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace desk {

// Names that were made in a list although a reader may take them for others of it: they differ from these only by
// capitals, or by how the same letters are written.
struct Lookalikes {
  enum class List { kAccounts, kNames };
  struct Pair {
    std::string name;
    std::string other;  // that was there before
  };

  List list = List::kNames;
  std::int64_t count = 0;   // 1 or more
  std::vector<Pair> first;  // up to ten of them
};

}  // namespace desk
