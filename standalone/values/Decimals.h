#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace standalone {

// How many decimals amounts have: the hundredths of a dollar are two.
class Decimals {
 public:
  static constexpr std::int64_t kMost = 4;

  // Throws std::out_of_range unless the count is 0 to kMost.
  constexpr explicit Decimals(std::int64_t count) : count_(Checked(count)) {}

  constexpr std::size_t Count() const noexcept { return count_; }

  friend constexpr bool operator==(Decimals, Decimals) noexcept = default;

 private:
  static constexpr std::uint8_t Checked(std::int64_t count) {
    if (count < 0 || count > kMost) throw std::out_of_range("amounts have none to four decimals");
    return static_cast<std::uint8_t>(count);
  }

  std::uint8_t count_;
};

inline constexpr Decimals kTwoDecimals{2};

}  // namespace standalone
