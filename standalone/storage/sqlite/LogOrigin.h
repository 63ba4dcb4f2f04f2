#pragma once

#include <filesystem>

namespace standalone {

// Refuses a company file whose write-ahead log belongs to another state of it, as after a backup was copied over a
// company that had crashed: the engine would mix the two. Each transaction adds at most one line to the audit trail, so
// that a log that skips one, or has another one in its place, is noticed; so is one of a newer schema version than the
// file that does not bring it forward itself, as far as it holds the file's first page or the file has a trail. What a
// crash leaves is never refused, also one in the middle of moving the log into the file. Only reads, also while others
// write; FileInUse while somebody else keeps a file that looks so.
//
// `name` is what people call the file. Throws CompanyFileError.
void RequireOwnLog(const std::filesystem::path& companyFile, const std::filesystem::path& name);

}  // namespace standalone
