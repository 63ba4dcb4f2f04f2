#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/storage/Statement.h"

namespace standalone {

// The bills and checks that partners have rejected, in the order in which they were saved. Every operation needs an
// open unit of work; a row that the company refuses throws ConstraintViolation.
class RejectedRequestTable {
 public:
  explicit RejectedRequestTable(Database& database);

  void Add(const DBMultiEntityRejectedTxnReceiver& row);
  void List(std::vector<DBMultiEntityRejectedTxnReceiver>& rows);
  bool Has(std::string_view requestId);
  // The first row of that partner's request; blank, with the relation 0, when there is none.
  DBMultiEntityRejectedTxnReceiver Find(std::int32_t relationId, std::string_view requestId);
  // A request id of that partner that is the same but for blanks at its ends.
  std::optional<std::string> FindButForBlanks(std::int32_t relationId, std::string_view requestId);
  // The same for one that is all in small letters or all in capitals, of ASCII, and differs by that only.
  std::optional<std::string> FindButForCase(std::int32_t relationId, std::string_view requestId);
  // False when there is none.
  bool Remove(std::string_view requestId);
  // Those of one partner only.
  bool Remove(std::int32_t relationId, std::string_view requestId);

 private:
  Statement insert_;
  Statement all_;
  Statement byRequest_;
  Statement ofRelation_;
  Statement ofRelationButForBlanks_;
  Statement ofRelationButForCase_;
  Statement delete_;
  Statement deleteOfRelation_;
};

}  // namespace standalone
