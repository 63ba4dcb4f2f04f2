#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "standalone/books/LinkTable.h"
#include "standalone/books/OwnRequestTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/States.h"

// How use cases enter transactions of this company's own.
namespace desk {

// What a partner is asked to book for a line.
struct RequestToPost {
  std::int32_t relationId = 0;
  std::string requestId;
  standalone::TransactionState state = standalone::TransactionState::kEntered;
  std::optional<standalone::EarlierRequest> earlier = std::nullopt;
};

struct LineToPost {
  std::int32_t accountId = 0;
  std::int64_t amount = 0;  // minor units; a debit is positive
  std::string memo;
  std::optional<RequestToPost> request = std::nullopt;  // of an intercompany line
};

// To an earlier transaction.
struct LinkToPost {
  standalone::LinkKind kind{};
  std::int32_t earlierTxnId = 0;
};

struct TransactionToPost {
  std::int16_t type = 0;  // kTxnTypeBill, ...
  DateType32 date;
  std::int32_t nameId = 0;  // 0 without a name
  std::string memo;
  std::string documentNumber;
  std::vector<LineToPost> lines;
  std::vector<LinkToPost> links{std::vector<LinkToPost>()};
  std::vector<std::string> attachments{std::vector<std::string>()};
};

struct PostedTransaction {
  std::int32_t txnId = 0;
  std::vector<std::int32_t> lineIds;  // in the order of the lines
};

// Within a unit of work that writes; the caller records what was done. The lines are entered in their order, but that
// the last one of the company's own comes last, as an intercompany line is followed by a line of its transaction.
// Throws standalone::InvalidInput for an account that takes no postings, standalone::ConstraintViolation for what the
// file refuses, such as lines that do not sum to zero.
PostedTransaction Post(Work& work, const TransactionToPost& transaction);

// Which nobody has used, for a line that is posted.
std::string NewRequestId(Work& work);

}  // namespace desk
