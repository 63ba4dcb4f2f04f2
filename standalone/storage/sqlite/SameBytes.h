#pragma once

#include <filesystem>

namespace standalone {

// False also when `other` is no file of its own.
bool HaveSameBytes(const std::filesystem::path& file, const std::filesystem::path& other);

}  // namespace standalone
