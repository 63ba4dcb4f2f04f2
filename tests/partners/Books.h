#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "standalone/exchange/Fact.h"
#include "standalone/storage/sqlite/SqliteDatabase.h"
#include "standalone/values/InboxState.h"

namespace partners {

// What must hold does not.
class Violation : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct HeldFact {
  exchange::Fact fact;
  bool isOwn = false;
  bool isApplied = false;  // or set aside, for now or for good
};

// A row of this company's own, or an entry that was booked from a partner's request.
struct RequestRow {
  std::string pairing;  // empty when the relation is of none
  std::string request;
  std::int64_t amount = 0;  // what the one owes the other: positive where the receiver owes it to the sender
  std::int16_t state = 0;
  std::int32_t txnId = 0;
  bool isOwn = false;
  std::int16_t type = 0;  // of the transaction
  std::string partner;    // its name; empty like the pairing
};

struct InboxRow {
  std::string pairing;
  std::string request;
  standalone::InboxState state{};
  std::string mark;
  std::int32_t txnId = 0;  // of the entry that it was booked with, if it is
  std::int64_t owed = 0;   // by that entry, on the account that the relation has for it
};

// A company's books as another program reads them.
class Books {
 public:
  explicit Books(const std::filesystem::path& file);

  // The facts of each pairing.
  std::map<std::string, std::vector<HeldFact>> Facts();
  std::vector<RequestRow> Rows();
  std::vector<InboxRow> Inbox();
  // Of what the module keeps as rejected.
  std::set<std::pair<std::string, std::string>> Rejections();
  // All that carrying changes, as a text.
  std::string Changing();
  std::vector<std::string> Texts(const char* sql);
  // By which they sign, in 64 hexadecimal digits; of who has one.
  std::string Key();
  // The first line of the audit trail that does not go on from the one before it.
  std::optional<std::int64_t> TrailBreak();

 private:
  standalone::SqliteDatabase file_;
};

}  // namespace partners
