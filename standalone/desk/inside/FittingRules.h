#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "standalone/books/AuditTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/books/RuleTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/Rule.h"
#include "standalone/exchange/Kinds.h"

// Which rule says where a partner's request is booked; within a unit of work.
namespace desk {

Rule RuleOf(Work& work, const standalone::RuleRow& row);

// Why nothing can be booked by a rule for requests of the partner to the account; empty when it can.
std::string WhyUnfit(Work& work, const standalone::Pairing& pairing, std::int32_t accountId);

struct FoundRule {
  std::optional<standalone::RuleRow> rule;
  std::string whyNone;        // completes "the request ... stays:"
  bool isForAPerson = false;  // there are rules, but none of them decides
};
// Of those that fit, the one that goes before all others. None for a request that takes an earlier one back, which
// follows that one, and none where the best ones say different things.
FoundRule FindRule(Work& work, const standalone::Pairing& pairing, const exchange::Proposal& request);

// Where requests like it are booked from now on, unless a person has added a rule; nothing for one that names nobody.
// Tells what has changed.
std::optional<standalone::AuditChange> LearnRule(Work& work, const standalone::RuleRow& learned);

// What a rule says, but for its partner.
std::string RuleText(const Rule& rule);

}  // namespace desk
