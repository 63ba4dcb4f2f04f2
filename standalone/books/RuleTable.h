#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/storage/Statement.h"

namespace standalone {

// Where requests of a partner are booked.
struct RuleRow {
  std::int32_t id = 0;
  std::int32_t pairing = 0;
  std::string name;  // of the request; it, the hint and the memo are empty for any, but for one of them at least
  std::string hint;
  std::string memo;  // a text somewhere in the memo
  std::int32_t accountId = 0;
  std::optional<std::int32_t> nameId = std::nullopt;  // in these books; none for the name that each request tells
  bool learned = false;                               // from a booking of a person

  friend bool operator==(const RuleRow&, const RuleRow&) = default;
};

// What a request says of itself.
struct RequestTold {
  std::string_view name;
  std::string_view hint;
  std::string_view memo;
};

// The rules for requests of partners. Texts compare without regard to the case of ASCII letters. Every operation needs
// an open unit of work.
class RuleTable {
 public:
  explicit RuleTable(Database& database);

  // Returns the number. ConstraintViolation where there is a rule for the same requests that was come by in the same
  // way.
  std::int32_t Add(const RuleRow& rule);
  // Where a rule books from now on.
  void SetTarget(std::int32_t id, std::int32_t accountId, std::optional<std::int32_t> nameId);
  void Remove(std::int32_t id);

  std::optional<RuleRow> Find(std::int32_t id);
  // The one for exactly these requests that was come by in the same way.
  std::optional<RuleRow> FindAlike(const RuleRow& rule);
  // The first that books under a name.
  std::optional<RuleRow> FindOfName(std::int32_t nameId);
  // Of one pairing, in the order in which they were added.
  std::vector<RuleRow> List(std::int32_t pairing);
  // Those of a pairing that are for a request, in the same order.
  std::vector<RuleRow> ListFor(std::int32_t pairing, const RequestTold& request);

 private:
  Database& database_;
  Statement insert_;
  Statement setTarget_;
  Statement delete_;
  Statement byId_;
  Statement alike_;
  Statement ofName_;
  Statement all_;
  Statement forRequest_;
};

}  // namespace standalone
