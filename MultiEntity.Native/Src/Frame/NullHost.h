#pragma once

#include "MultiEntityHost/HostServices.h"

const HostServices& NullHostServices() noexcept;
