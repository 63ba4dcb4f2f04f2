#pragma once

#include "host/HostServices.h"

// The attached host, or a host that grants nothing, reads nothing and logs nothing while none is attached. The platform
// is never null.
const HostServices& Host() noexcept;

bool IsHostAttached() noexcept;
