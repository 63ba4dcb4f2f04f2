#pragma once

#include <filesystem>

namespace platform {

// Whether a file or folder lies on another machine. False when the system does not tell; never throws.
bool IsOnNetworkShare(const std::filesystem::path& file) noexcept;

}  // namespace platform
