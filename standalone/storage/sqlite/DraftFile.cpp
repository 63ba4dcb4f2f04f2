#include "standalone/storage/sqlite/DraftFile.h"

#include <random>
#include <string>
#include <system_error>

#include "standalone/storage/sqlite/Journals.h"
#include "standalone/values/Text.h"

namespace standalone {

DraftFile::DraftFile(const std::filesystem::path& finalName)
    : path_(WithSuffix(finalName, "." + std::to_string(std::random_device{}()) + ".new")) {
  platform::MakeFile(path_);
}

DraftFile::~DraftFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
  for (const char* const suffix : kJournalSuffixes) std::filesystem::remove(WithSuffix(path_, suffix), ignored);
}

}  // namespace standalone
