#pragma once

#include <vector>

#include "MultiEntityHost/HostServices.h"

// The attached host, or a host that grants nothing, reads nothing and logs nothing while none is attached. The platform
// is never null.
const HostServices& Host() noexcept;

bool IsHostAttached() noexcept;

// For attaching and detaching alone, which tell the listeners and the timer.
void KeepHost(const HostServices& services) noexcept;
void ForgetHost() noexcept;

// Every listener for the closing of the host's system that there is, whether a host is attached or not.
const std::vector<CNotifyCloseSystem*>& CloseSystemListeners() noexcept;
