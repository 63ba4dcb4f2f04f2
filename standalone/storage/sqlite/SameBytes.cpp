#include "standalone/storage/sqlite/SameBytes.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace standalone {

bool HaveSameBytes(const std::filesystem::path& file, const std::filesystem::path& other) {
  if (!std::filesystem::is_regular_file(std::filesystem::symlink_status(other))) return false;
  std::ifstream first(file, std::ios::binary);
  std::ifstream second(other, std::ios::binary);
  using Byte = std::istreambuf_iterator<char>;
  return first && second && std::equal(Byte(first), Byte(), Byte(second), Byte());
}

}  // namespace standalone
