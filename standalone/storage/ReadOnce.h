#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "standalone/storage/Database.h"

namespace standalone {

// A value that was read from the company's lists or settings in a unit of work and is asked for again, in that unit or
// a later one; read anew as soon as it may no longer hold. Asked for outside of a unit of work, it is read, which is
// refused there.
template <typename Value>
class ReadOnce {
 public:
  explicit ReadOnce(Database& database) noexcept : database_(database) {}

  // The value; `read` fills a new one when there is none that holds.
  template <typename Read>
  Value& Get(Read&& read) {
    if (Value* const held = Held()) return *held;
    Value value;
    std::forward<Read>(read)(value);
    return Hold(std::move(value));
  }

  Value& Hold(Value value) {
    version_ = database_.ListsVersion();
    return value_.emplace(std::move(value));
  }

  // Null when there is none that holds.
  Value* Held() { return value_ && database_.InUnit() && version_ == database_.ListsVersion() ? &*value_ : nullptr; }

 private:
  Database& database_;
  std::optional<Value> value_;
  std::uint64_t version_ = 0;
};

}  // namespace standalone
