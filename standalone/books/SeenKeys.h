#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "standalone/storage/Statement.h"

namespace standalone {

// The keys that a unit of work has met so far, however many, on the disk if need be. One at a time, and within a unit
// of work that writes.
class SeenKeys {
 public:
  // Where a key was met first, and how many keys had been put to use before it.
  struct Place {
    std::int64_t line = 0;
    std::int64_t used = 0;
  };

  explicit SeenKeys(Database& database);

  // To be called before the first key and after the last one.
  void Begin();
  void End();

  // False when the key was met before.
  bool Add(std::string_view key, const Place& place);
  // Notes that what stands under the key was complained about as a whole.
  void NoteComplaint(std::string_view key);
  // Of a key that was met before.
  struct Before {
    std::int64_t line = 0;
    bool complaint = false;  // whether there was one
  };
  // Nothing when this was asked of the key already.
  std::optional<Before> MetBefore(std::string_view key);
  // Of the key that was put to use after so many others. Looks through all of them.
  std::int64_t LineOfUsed(std::int64_t before);

 private:
  Statement create_;
  Statement drop_;
  Statement insert_;
  Statement note_;
  Statement before_;
  Statement lineOfUsed_;
};

}  // namespace standalone
