#pragma once

#include "MultiEntityHost/Platform.h"

// The operating system itself, for a host that hands in no platform of its own. Never destroyed.
Platform& NativePlatform() noexcept;
