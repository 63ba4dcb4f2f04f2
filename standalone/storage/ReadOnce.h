#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "standalone/storage/Database.h"

namespace standalone {

// A value that was read in a unit of work and is asked for again, in that unit or a later one; read anew as soon as it
// may no longer hold. Asked for outside of a unit of work, it is read, which is refused there.
template <typename Value>
class ReadOnce {
 public:
  // `of` is what the value was read from: the lists and settings, or bookings, too.
  explicit ReadOnce(Database& database, Writes of = Writes::kLists) noexcept : database_(database), of_(of) {}

  // The value; `read` fills a new one when there is none that holds.
  template <typename Read>
  Value& Get(Read&& read) {
    if (Value* const held = Held()) return *held;
    Value value;
    std::forward<Read>(read)(value);
    return Hold(std::move(value));
  }

  Value& Hold(Value value) {
    version_ = database_.ReadVersion(of_);
    return value_.emplace(std::move(value));
  }

  // Null when there is none that holds.
  Value* Held() { return value_ && database_.InUnit() && version_ == database_.ReadVersion(of_) ? &*value_ : nullptr; }

  void Forget() noexcept { value_.reset(); }

 private:
  Database& database_;
  Writes of_;
  std::optional<Value> value_;
  std::uint64_t version_ = 0;
};

}  // namespace standalone
