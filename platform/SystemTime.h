#pragma once

#include <chrono>
#include <cstdint>
#include <ctime>

// The definition of SYSTEMTIME, for the few sources that read its fields.
#if defined(_WIN32)

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#else

#include "MultiEntityHost/SystemTime.h"

#endif

namespace platform {

// Into the fields of a SYSTEMTIME.
inline void FillSystemTime(const std::tm& local, std::chrono::milliseconds withinSecond, _SYSTEMTIME& filled) noexcept {
  filled.wYear = static_cast<std::uint16_t>(local.tm_year + 1900);
  filled.wMonth = static_cast<std::uint16_t>(local.tm_mon + 1);
  filled.wDayOfWeek = static_cast<std::uint16_t>(local.tm_wday);
  filled.wDay = static_cast<std::uint16_t>(local.tm_mday);
  filled.wHour = static_cast<std::uint16_t>(local.tm_hour);
  filled.wMinute = static_cast<std::uint16_t>(local.tm_min);
  filled.wSecond = static_cast<std::uint16_t>(local.tm_sec);
  filled.wMilliseconds = static_cast<std::uint16_t>(withinSecond.count());
}

}  // namespace platform
