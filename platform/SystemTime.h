#pragma once

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
