#pragma once

#include <chrono>
#include <cstdint>

// The host's calendar date: one number with the year in the upper 16 bits, then 8 bits of month and 8 bits of day, so
// that comparing numbers compares days. 0 is the null date. Fields are stored as they are given, also out of range.
class DateType32 {
 public:
  constexpr DateType32() noexcept = default;
  constexpr DateType32(int year, int month, int day) noexcept {
    SetYear(year);
    SetMonth(month);
    SetDay(day);
  }

  constexpr int GetDay() const noexcept { return static_cast<int>(value_ & 0xFFU); }
  constexpr int GetMonth() const noexcept { return static_cast<int>((value_ >> 8U) & 0xFFU); }
  constexpr int GetYear() const noexcept { return static_cast<int>(value_ >> 16U); }

  constexpr void SetDay(int day) noexcept {
    value_ = (value_ & 0xFFFFFF00U) | (static_cast<std::uint32_t>(day) & 0xFFU);
  }
  constexpr void SetMonth(int month) noexcept {
    value_ = (value_ & 0xFFFF00FFU) | ((static_cast<std::uint32_t>(month) & 0xFFU) << 8U);
  }
  constexpr void SetYear(int year) noexcept {
    value_ = (value_ & 0x0000FFFFU) | ((static_cast<std::uint32_t>(year) & 0xFFFFU) << 16U);
  }

  // Whether the three fields name a day of the calendar. The null date does not.
  constexpr bool ValidDate() const noexcept { return GetYear() > 0 && Calendar().ok(); }

  // Negative, 0 or positive as this date is before, the same as or after the other.
  constexpr int Compare(DateType32 other) const noexcept {
    return static_cast<int>(value_ > other.value_) - static_cast<int>(value_ < other.value_);
  }

  constexpr std::uint32_t Value() const noexcept { return value_; }

  friend constexpr bool operator==(DateType32 left, DateType32 right) noexcept = default;

  // The day that the fields count to; months and days out of range run over into the years and months beside them.
  constexpr std::chrono::sys_days Days() const noexcept {
    const auto month = std::chrono::year(GetYear()) / std::chrono::January + std::chrono::months(GetMonth() - 1);
    return std::chrono::sys_days(month / 1) + std::chrono::days(GetDay() - 1);
  }

 private:
  constexpr std::chrono::year_month_day Calendar() const noexcept {
    return std::chrono::year(GetYear()) / std::chrono::month(static_cast<unsigned>(GetMonth())) /
           std::chrono::day(static_cast<unsigned>(GetDay()));
  }

  std::uint32_t value_ = 0;
};

constexpr DateType32 NullDate() noexcept {
  return {};
}

constexpr DateType32 DateAdd(DateType32 date, int days) noexcept {
  const std::chrono::year_month_day sum(date.Days() + std::chrono::days(days));
  return {static_cast<int>(sum.year()), static_cast<int>(static_cast<unsigned>(sum.month())),
          static_cast<int>(static_cast<unsigned>(sum.day()))};
}

// Whole days from `earlier` to `later`; negative when they are the other way round.
constexpr int DateMinusDate(DateType32 later, DateType32 earlier) noexcept {
  return static_cast<int>((later.Days() - earlier.Days()).count());
}
