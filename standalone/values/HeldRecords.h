#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace standalone {

// What was read of a list's records, by record number. Room is made for neighbouring numbers together, so that it
// follows what was read, wherever in the list that stands. Most lists can be held whole; of one with more numbers than
// there are places two records may share a place, which then holds the later one.
template <typename Value>
class HeldRecords {
 public:
  // Null when it is not held. Valid until the next Hold().
  const Value* Find(std::uint64_t number) const noexcept {
    const std::size_t page = PageOf(number);
    if (page >= pages_.size() || pages_[page] == nullptr) return nullptr;
    const Place& place = (*pages_[page])[number % kPagePlaces];
    return place.number == number ? &place.value : nullptr;
  }

  const Value& Hold(std::uint64_t number, Value value) {
    const std::size_t page = PageOf(number);
    if (page >= pages_.size()) pages_.resize(page + 1);
    if (pages_[page] == nullptr) pages_[page] = std::make_unique<Page>();
    Place& place = (*pages_[page])[number % kPagePlaces];
    place = {number, std::move(value)};
    return place.value;
  }

 private:
  static constexpr std::size_t kMostPages = 256;
  static constexpr std::size_t kPagePlaces = 256;

  struct Place {
    std::uint64_t number = ~std::uint64_t{0};  // no record has this one
    Value value;
  };
  using Page = std::array<Place, kPagePlaces>;

  static std::size_t PageOf(std::uint64_t number) noexcept {
    return static_cast<std::size_t>(number / kPagePlaces % kMostPages);
  }

  std::vector<std::unique_ptr<Page>> pages_;  // null where nothing was read
};

}  // namespace standalone
