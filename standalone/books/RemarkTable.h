#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/storage/Statement.h"

namespace standalone {

// Which request a fact says something about, and decides nothing. What it says is kept with the facts.
struct RemarkRow {
  std::int32_t pairing = 0;
  std::string hash;  // of the fact, 32 bytes
  std::string requestId;
  bool askedByUs = false;  // the request is one of this company's own; otherwise one of the partner's

  friend bool operator==(const RemarkRow&, const RemarkRow&) = default;
};

// What this company and its partners have said about requests, whether these books have the requests or not. Every
// operation needs an open unit of work; ConstraintViolation for a fact that there is not.
class RemarkTable {
 public:
  explicit RemarkTable(Database& database);

  // False when the fact has its row already.
  bool Add(const RemarkRow& row);
  // The hashes of the facts about one request, in the order in which they were added.
  std::vector<std::string> About(std::int32_t pairing, std::string_view requestId, bool askedByUs);

 private:
  Statement insert_;
  Statement about_;
};

}  // namespace standalone
