#pragma once

#include <filesystem>

namespace standalone {

// Refuses a company file whose write-ahead log belongs to another state of it, as after a backup was copied over a
// company that had crashed: the engine would mix the two. Each transaction adds at most one line to the audit trail, so
// that a log that skips one, or has another one in its place, is noticed. What a crash leaves is never refused, also
// one in the middle of moving the log into the file. Only reads, also while others write; FileInUse while somebody else
// keeps a file that looks so.
//
// `name` is what people call the file. Throws CompanyFileError.
void RequireOwnLog(const std::filesystem::path& companyFile, const std::filesystem::path& name);

}  // namespace standalone
