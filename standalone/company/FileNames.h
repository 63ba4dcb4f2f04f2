#pragma once

#include <filesystem>

namespace standalone {

// What lies beside a company has its name with a suffix. Throws InvalidInput for a name that is none of a file.
const std::filesystem::path& RequireFileName(const std::filesystem::path& file);

// Whatever it is, also a link to nothing.
bool IsThere(const std::filesystem::path& file);

// The file to which a link leads, beside which lies what belongs to it: the engine's log, the operations log, the
// remote switches. What is no link stays as it is.
std::filesystem::path BehindItsLinks(const std::filesystem::path& path);

// What an engine has left beside a company that is gone, and would take for that of a new one of that name; empty when
// nothing is.
std::filesystem::path LeftBeside(const std::filesystem::path& file);

}  // namespace standalone
