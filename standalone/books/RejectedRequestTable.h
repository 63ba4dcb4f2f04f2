#pragma once

#include <string_view>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/storage/Statement.h"

namespace standalone {

// The partners' requests that this company has rejected, in the order in which it did. Every operation needs an open
// unit of work; a row that the company refuses throws ConstraintViolation.
class RejectedRequestTable {
 public:
  explicit RejectedRequestTable(Database& database);

  void Add(const DBMultiEntityRejectedTxnReceiver& row);
  void List(std::vector<DBMultiEntityRejectedTxnReceiver>& rows);
  bool Has(std::string_view requestId);
  // False when there is none.
  bool Remove(std::string_view requestId);

 private:
  Statement insert_;
  Statement all_;
  Statement byRequest_;
  Statement delete_;
};

}  // namespace standalone
