#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/desk/inside/Posting.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/RecordedTransaction.h"
#include "standalone/values/Shares.h"

// How what a person gives becomes the lines of a transaction; within a unit of work.
namespace desk {

struct PartnerAndShare {
  std::string partner;  // by realm id or name
  standalone::ShareText share;
};

struct LinesToCompose {
  EnteredType type{};
  std::vector<LineToPost> lines;  // as the paper has them, none with a request
  std::vector<PartnerAndShare> shares;
  std::optional<std::string> credited = std::nullopt;  // the account; the only one when left out
  std::string memo;                                    // of what the partners bear and of what is credited
};

// What is left of the lines, what the partners bear with requests of its own, and of a bill or a check what is
// credited; sums to zero. Refused for lines or shares that cannot be.
std::vector<LineToPost> Compose(Work& work, const LinesToCompose& given);

// What a partner bears of a bill is no line of it.
void RefusePairedAccount(Work& work, EnteredType type, std::int32_t accountId);

// Whether what a bill or a check comes to may be credited to an account of that type.
bool MayCredit(EnteredType type, std::int16_t accountType) noexcept;

// What the partner is asked to book for: a line on what it owes this company, with a request of its own.
LineToPost PartnersLine(Work& work, const DBMultiEntityRelation& relation, std::int64_t amount, std::string memo);

// That of a line which is repeated in another transaction: it follows the transaction's, and a text of its own stays.
std::string MemoOfRepeated(const std::string& lines, const std::string& before, const std::string& after);

// The amount as the company has it.
standalone::Money MoneyOf(Work& work, std::int64_t minorUnits);

}  // namespace desk
