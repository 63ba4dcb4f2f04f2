#pragma once

// The definition of SYSTEMTIME, for the few sources that read its fields.
#if defined(_WIN32)

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#else

#include <cstdint>

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
