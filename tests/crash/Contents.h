#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

// What a company file holds, as far as crashes may harm it.
struct EntryLine {
  std::int64_t id = 0;
  std::string account{};
  std::int64_t amount = 0;  // minor units

  bool operator==(const EntryLine&) const = default;
};

struct IntercompanyRow {
  std::int64_t line = 0;
  std::string realm{};
  std::string request{};
  int type = 0;
  int state = 0;
  std::string names{};  // "reverses" or "corrects" the request of an earlier line
  std::int64_t earlierLine = 0;

  bool operator==(const IntercompanyRow&) const = default;
};

struct Link {
  std::string kind{};  // "reverses", "corrects" or "moves"
  std::int64_t earlier = 0;

  bool operator==(const Link&) const = default;
};

struct Transaction {
  int type = 0;
  std::int64_t date = 0;
  std::string name{};
  std::string memo{};
  bool posted = false;
  bool confirmed = false;
  std::vector<EntryLine> lines{};
  std::vector<IntercompanyRow> rows{};
  std::vector<Link> links{};

  bool operator==(const Transaction&) const = default;
};

struct Contents {
  std::map<std::int64_t, Transaction> transactions{};
  std::set<std::string> accounts{};
  std::set<std::string> names{};

  bool operator==(const Contents&) const = default;
};

// What was found in a file: what is wrong with it, in words, and what it holds if it can be read.
struct Inspection {
  std::vector<std::string> faults{};
  // Entries, intercompany rows and lines of the audit trail that have lost each other, in words; faults where all
  // journal entries are intercompany ones and nobody has damaged the file, as opening it does not look for them.
  std::vector<std::string> separated{};
  Contents contents{};
};

// Looks through a company file with nothing but SQLite: whether it is sound, its references hold, every transaction is
// posted and sums to zero, every journal entry has its intercompany row and every such row its entry, no request id is
// booked twice, and the audit trail is whole and tells of every transaction with a row. All journal entries of the file
// have to be intercompany ones.
Inspection Inspect(const std::filesystem::path& file);

// A copy of the file and its write-ahead log beside it, so that the file stays as a crash left it.
std::filesystem::path CopyOf(const std::filesystem::path& file);
Inspection InspectCopy(const std::filesystem::path& file);
