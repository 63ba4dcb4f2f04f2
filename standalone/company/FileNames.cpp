#include "standalone/company/FileNames.h"

#include <string>
#include <system_error>

#include "platform/DiskFiles.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

const std::filesystem::path& RequireFileName(const std::filesystem::path& file) {
  if (file.empty()) throw InvalidInput("The name of the file is empty. Give the path of a file.");
  // It would cut the suffix off.
  if (file.native().find('\0') != std::filesystem::path::string_type::npos) {
    throw InvalidInput("The name of the file " + Quoted(PathText(file)) + " holds a NUL. Leave it out.");
  }
  if (platform::NamesAStream(file)) {
    throw InvalidInput("The name of the file " + Quoted(PathText(file)) +
                       " has a colon, which names a stream within a file on this system. Choose a name without one.");
  }
  return file;
}

bool IsThere(const std::filesystem::path& file) {
  std::error_code ignored;
  return std::filesystem::exists(std::filesystem::symlink_status(file, ignored));
}

std::filesystem::path BehindItsLinks(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_symlink(std::filesystem::symlink_status(path, error))) return path;
  std::filesystem::path file = std::filesystem::canonical(path, error);
  return error ? path : file;
}

std::filesystem::path LeftBeside(const std::filesystem::path& file) {
  for (const char* const suffix : {"-wal", "-shm", "-journal"}) {
    std::filesystem::path left = WithSuffix(file, suffix);
    if (IsThere(left)) return left;
  }
  return {};
}

}  // namespace standalone
