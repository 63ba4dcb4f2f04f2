#pragma once

#if !defined(_WIN32)

#include <cstdint>

// What Platform::GetLocalTime fills, with the fields that the Windows headers define.
struct _SYSTEMTIME {
  std::uint16_t wYear;
  std::uint16_t wMonth;      // 1 to 12
  std::uint16_t wDayOfWeek;  // 0 is Sunday
  std::uint16_t wDay;        // 1 to 31
  std::uint16_t wHour;
  std::uint16_t wMinute;
  std::uint16_t wSecond;
  std::uint16_t wMilliseconds;
};

using SYSTEMTIME = _SYSTEMTIME;

#endif
