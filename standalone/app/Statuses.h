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
};

// What an answer of the module means, in general.
std::string_view MeaningOf(MEStatusCode status) noexcept;

// What to do about it; empty when there is nothing to say.
std::string_view HintFor(Request request, MEStatusCode status) noexcept;

// Throws Declined unless the module answered 1.
void RequireSuccess(Request request, MEStatusCode status);

// "pending", "established", ...; "state 2" for a number without a name.
std::string StateText(int state);

}  // namespace app
