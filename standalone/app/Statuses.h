#pragma once

#include <string>
#include <string_view>

#include "MultiEntity/Records.h"

namespace app {

// What a person asked for. The same number of the module means different things, and asks for different remedies.
enum class Request {
  kListAccounts,
  kCreateRelation,
  kUpdateRelation,
  kDeleteRelation,
  kReadRelations,
  kRecordJournalEntry,
  kRemoveJournalEntry,
  kListTransactions,
  kSetTransactionState,
  kFindRequest,
  kSaveRejection,
  kListRejections,
  kDeleteRejection,
};

// What an answer of the module means, in general and as the answer to a request.
std::string_view MeaningOf(MEStatusCode status) noexcept;
std::string_view MeaningOf(Request request, MEStatusCode status) noexcept;

// What to do about it; empty when there is nothing to say.
std::string_view HintFor(Request request, MEStatusCode status) noexcept;

// Throws Declined unless the module answered 1.
void RequireSuccess(Request request, MEStatusCode status);

// The state of a relation, or of an intercompany transaction: "pending", "established", ...; "state 2" for a number
// without a name.
std::string StateText(int state);
std::string TransactionStateText(int state);

}  // namespace app
