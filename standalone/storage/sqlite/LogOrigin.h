#pragma once

#include <filesystem>

namespace standalone {

// Refuses a company file whose write-ahead log belongs to another state of it, as after a backup was copied over a
// company that had crashed: the engine would mix the two. Each transaction adds at most one line to the audit trail, so
// that a log that skips one, or has another one in its place, is noticed. What a crash leaves is never refused, also
// one in the middle of moving the log into the file. Others may be writing: whoever opened the company first has
// looked.
//
// Only reads. `name` is what people call the file, whose schema has the trail. Throws CompanyFileError.
void RequireOwnLog(const std::filesystem::path& companyFile, const std::filesystem::path& name);

}  // namespace standalone
