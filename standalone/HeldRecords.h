#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace standalone {

// What was read of a list's records, by record number. The numbers of a list are small and leave no large gaps, so that
// most lists are held whole; of a longer one two records may share a place, which then holds the later one.
template <typename Value>
class HeldRecords {
 public:
  // Null when it is not held. Valid until the next Hold().
  const Value* Find(std::uint64_t number) const noexcept {
    const std::size_t place = PlaceOf(number);
    return place < places_.size() && places_[place].number == number ? &places_[place].value : nullptr;
  }

  const Value& Hold(std::uint64_t number, Value value) {
    const std::size_t place = PlaceOf(number);
    if (place >= places_.size()) places_.resize(place + 1);
    places_[place] = {number, std::move(value)};
    return places_[place].value;
  }

 private:
  static constexpr std::size_t kMostPlaces = 65'536;

  struct Place {
    std::uint64_t number = ~std::uint64_t{0};  // no record has this one
    Value value;
  };

  static std::size_t PlaceOf(std::uint64_t number) noexcept { return static_cast<std::size_t>(number % kMostPlaces); }

  std::vector<Place> places_;
};

}  // namespace standalone
