#pragma once

namespace standalone {

// What SQLite keeps beside a file, under its name with one of these: it belongs to the file's content, but for the
// index of the log, which is made anew from the log.
inline constexpr const char* kLogSuffix = "-wal";
inline constexpr const char* kLogIndexSuffix = "-shm";
inline constexpr const char* kRollbackSuffix = "-journal";
inline constexpr const char* kJournalSuffixes[] = {kLogSuffix, kLogIndexSuffix, kRollbackSuffix};

}  // namespace standalone
