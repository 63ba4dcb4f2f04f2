#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "standalone/storage/sqlite/WriteAheadLog.h"

namespace standalone {

// What a company's write-ahead log has of each page last, by the page's number.
inline std::map<std::uint32_t, std::string> LastPagesOf(const std::filesystem::path& file, std::uint32_t pageSize) {
  std::map<std::uint32_t, std::string> last;
  ForEachFrame(file, pageSize,
               [&](const LogFrame& frame) { last[frame.page].assign(frame.content.begin(), frame.content.end()); });
  return last;
}

// The file when only the pages for which `isMoved` answers true were moved into it, before the power went.
template <typename IsMoved>
std::string PartlyMoved(std::string file, const std::map<std::uint32_t, std::string>& last, std::size_t pageSize,
                        const IsMoved& isMoved) {
  for (const auto& [page, content] : last) {
    if (!isMoved(page)) continue;
    const std::size_t offset = std::size_t{page - 1} * pageSize;
    if (file.size() < offset + pageSize) file.resize(offset + pageSize);
    file.replace(offset, pageSize, content);
  }
  return file;
}

}  // namespace standalone
