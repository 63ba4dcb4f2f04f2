#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>

namespace standalone {

// Whether the write-ahead log beside a company file has lost a transaction that was committed: one that another
// followed, so that it had been brought to the disk. The engine takes such a place for the end of the log and would
// drop everything behind it. What a crash leaves at the end of a log is no damage. Only reads; others may be writing.
bool IsLogDamaged(const std::filesystem::path& companyFile, std::uint32_t pageSize);

// A page as a transaction has left it.
struct LogFrame {
  std::uint32_t page = 0;                  // 1 for the first
  std::uint32_t pages = 0;                 // of the file, where the frame ends a transaction; 0 elsewhere
  std::uint64_t offset = 0;                // of the content in the log
  std::span<const unsigned char> content;  // valid while it is handed over
};

// Hands those that the engine would replay to `take`, in their order, also of a transaction that does not end.
void ForEachFrame(const std::filesystem::path& companyFile, std::uint32_t pageSize,
                  const std::function<void(const LogFrame& frame)>& take);

}  // namespace standalone
