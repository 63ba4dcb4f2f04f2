#include "standalone/desk/Arriving.h"

#include <algorithm>
#include <system_error>

#include "standalone/company/FileNames.h"
#include "standalone/exchange/FolderMailbox.h"

namespace desk {

bool IsLetterFor(const std::vector<std::string>& addresses, const std::filesystem::path& name) {
  const std::string text = exchange::NameOfFile(name);
  return std::ranges::any_of(addresses,
                             [&](const std::string& address) { return exchange::IsEnvelopeNameFor(text, address); });
}

BooksWritten BooksWrittenOf(const std::filesystem::path& company) {
  BooksWritten written;
  for (const std::filesystem::path& file : standalone::FilesOfBooks(company)) {
    std::error_code error;
    const std::uintmax_t bytes = std::filesystem::file_size(file, error);
    BooksWritten::File& how = written.files.emplace_back();
    // Whoever only reads makes an empty log, too, and removes it.
    if (!error && bytes != 0) how = {.bytes = bytes, .at = std::filesystem::last_write_time(file, error)};
  }
  return written;
}

std::filesystem::path FolderOfBooks(const std::filesystem::path& company) {
  return standalone::FolderOf(standalone::BehindItsLinks(company));
}

}  // namespace desk
