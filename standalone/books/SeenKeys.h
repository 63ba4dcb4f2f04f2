#pragma once

#include <string_view>

#include "standalone/storage/Statement.h"

namespace standalone {

// The keys that a unit of work has met so far, however many, on the disk if need be. One at a time, and within a unit
// of work that writes.
class SeenKeys {
 public:
  explicit SeenKeys(Database& database);

  // To be called before the first key and after the last one.
  void Begin();
  void End();

  // False when the key was met before.
  bool Add(std::string_view key);

 private:
  Statement create_;
  Statement drop_;
  Statement insert_;
};

}  // namespace standalone
