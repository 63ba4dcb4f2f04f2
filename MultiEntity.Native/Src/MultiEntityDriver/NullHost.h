#pragma once

#include "host/HostServices.h"

const HostServices& NullHostServices() noexcept;
