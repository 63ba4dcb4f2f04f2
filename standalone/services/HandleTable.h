#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace standalone {

// Values under numbers of 1 and above; a released number is used again, and its value's memory with it.
template <typename Value>
class HandleTable {
 public:
  std::uint64_t Open() {
    if (free_.empty()) {
      values_.emplace_back();
      // So that Release never allocates.
      free_.reserve(values_.size());
      return values_.size();
    }
    const std::uint64_t handle = free_.back();
    free_.pop_back();
    return handle;
  }

  Value& At(std::uint64_t handle) { return values_.at(static_cast<std::size_t>(handle - 1)); }

  void Release(std::uint64_t handle) noexcept { free_.push_back(handle); }

 private:
  // A deque, so that a value stays where it is while others are opened.
  std::deque<Value> values_;
  std::vector<std::uint64_t> free_;
};

}  // namespace standalone
