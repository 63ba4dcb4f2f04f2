#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace standalone {

// Refuses a file that is not a company file, was written by a newer program (one that knows more schema versions) or is
// cut off; looks at the file's bytes only, so that it stays untouched. Throws CompanyFileError. Returns the schema
// version that the header tells, behind which the file is ahead while a change of it is in its write-ahead log only.
std::uint32_t RequireCompanyFileHeader(const std::filesystem::path& file, std::size_t newestVersion);

}  // namespace standalone
