#pragma once

#include <filesystem>
#include <optional>

#include "MultiEntityHost/Platform.h"

namespace platform {

// Where the program lies that is running. Nothing when the system does not tell.
std::optional<std::filesystem::path> OwnProgram();

// Where a library lies that is loaded by its file name: beside the program and nowhere else, so that neither the
// current folder nor the environment brings another one. Nothing when the system does not tell where the program lies.
std::optional<std::filesystem::path> BesideTheProgram(const char* fileName);

}  // namespace platform

// The operating system itself, for a host that hands in no platform of its own. Never destroyed.
Platform& NativePlatform() noexcept;
