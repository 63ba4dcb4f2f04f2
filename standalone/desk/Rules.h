#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/results/Partner.h"
#include "standalone/desk/results/Rule.h"

// Where requests of partners are booked, so that a person need not say it for each. Of those that fit a request, what a
// person has added goes before what was learned, and a rule that says more of the request before one that says less.
namespace desk {

class Company;

struct RuleToAdd {
  Partner partner;
  std::optional<std::string> name;  // of the requests, 1 to 500 bytes; it, the hint or the memo is needed
  std::optional<std::string> hint;  // of the account, 1 to 100 bytes
  std::optional<std::string> memo;  // a text somewhere in the memo, 1 to 4000 bytes
  std::string expense;              // an account as people give it
  std::optional<std::string> bookedAs = std::nullopt;  // a name as people give it; the one of each request without it
};

// By partner, in the order in which they were added, those of pairings that are ended, too, unless a partner is named.
// Needs the right to view transactions of some type.
std::vector<Rule> ListRules(Company& company, const std::optional<Partner>& partner = {});
// Needs the right journal:create. Refused for an account that can take no expense of the partner's requests, and where
// a person has added a rule for the same requests before. Throws standalone::InvalidInput without anything that the
// requests have in common.
Rule AddRule(Company& company, const RuleToAdd& rule);
// Needs the right journal:create. Returns the rule that is gone.
Rule RemoveRule(Company& company, std::int32_t rule);

}  // namespace desk
