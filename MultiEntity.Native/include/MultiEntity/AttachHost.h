#pragma once

#include <cstdint>

#include "MultiEntity/Export.h"
#include "MultiEntityHost/HostServices.h"

enum MEAttachResult : std::int32_t {
  MEAttachDone = 0,
  MEAttachSizeUnknown = 1,
  MEAttachVersionUnknown = 2,
  MEAttachAbiUnknown = 3,
  MEAttachAlreadyAttached = 4,
};

// Gives the library its host. A host calls it once, on its user-interface thread and before any other operation, and
// keeps the services alive until it has detached. A record of a size, version or ABI that the library does not know is
// refused, and so is a second host while one is attached.
extern "C" MULTIENTITY_API MEAttachResult AttachHost(const HostServices& services) noexcept;

// Lets go of the host: an armed timer is killed and no service is called again. On the user-interface thread, before
// the library is unloaded and when none of its messages is queued any more; without an attached host it does nothing.
// Operations called while no host is attached find and log nothing, and grant no right that has to be asked for.
extern "C" MULTIENTITY_API void DetachHost() noexcept;
