#pragma once

#include <cstdint>
#include <filesystem>

namespace standalone {

// Whether the write-ahead log beside a company file has lost a transaction that was committed: one that another
// followed, so that it had been brought to the disk. The engine takes such a place for the end of the log and would
// drop everything behind it. What a crash leaves at the end of a log is no damage. Only reads; others may be writing.
bool IsLogDamaged(const std::filesystem::path& companyFile, std::uint32_t pageSize);

}  // namespace standalone
