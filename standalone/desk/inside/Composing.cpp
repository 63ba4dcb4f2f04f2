#include "standalone/desk/inside/Composing.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "standalone/books/AccountTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/desk/inside/Partners.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::SplitFault;

struct Bearer {
  DBMultiEntityRelation relation{};
  standalone::Share share;
  std::string shareText;
};

// The lines of a bill or a check, or what is debited or credited by an entry, and who bears a part of it.
struct Side {
  std::vector<LineToPost> lines;
  std::vector<Bearer> bearers;
};

std::string AmountText(Work& work, std::int64_t minorUnits) {
  return standalone::FormatAmount(MoneyOf(work, minorUnits));
}

std::string QuotedAccount(Work& work, std::int32_t id) {
  return standalone::Quoted(work.Host().Accounts().FullNameOf(id).view());
}

void RequireLines(Work& work, const LinesToCompose& given) {
  if (given.lines.empty()) {
    work.Refuse(std::string("the ") + NounOf(given.type) + " has no lines", Remedy::kGiveLines);
  }
  for (const LineToPost& line : given.lines) {
    if (line.amount == 0) {
      work.Refuse("the line for " + QuotedAccount(work, line.accountId) + " is " + AmountText(work, 0) +
                      ", and a line over nothing is not booked",
                  Remedy::kGiveLines);
    }
    RefusePairedAccount(work, given.type, line.accountId);
  }
}

std::int64_t SumOf(Work& work, const std::vector<LineToPost>& lines) {
  std::int64_t sum = 0;
  for (const LineToPost& line : lines) {
    const std::optional<std::int64_t> next = standalone::AddAmounts(sum, line.amount);
    if (!next) work.Refuse("the lines come to more than can be booked", Remedy::kGiveLines);
    sum = *next;
  }
  return sum;
}

std::vector<Bearer> BearersOf(Work& work, const LinesToCompose& given) {
  std::vector<Bearer> bearers;
  for (const PartnerAndShare& part : given.shares) {
    Bearer bearer{.relation = RequirePartner(work, part.partner), .share = {}, .shareText = part.share.Text()};
    RequireDueFrom(work, bearer.relation);
    const bool isKnown = std::ranges::any_of(
        bearers, [&](const Bearer& before) { return before.relation.relationId == bearer.relation.relationId; });
    if (isKnown) work.Refuse("two shares are of " + PartnerText(bearer.relation), Remedy::kCheckTheShares);
    if (const std::optional<standalone::Fraction> fraction = standalone::FractionOf(part.share)) {
      bearer.share = *fraction;
    } else {
      const standalone::Settings& settings = work.Host().Settings().Get();
      bearer.share = standalone::RequireAmount(part.share.Text(), settings.homeCurrency, settings.decimals);
    }
    bearers.push_back(bearer);
  }
  return bearers;
}

// What is shared: of an entry maybe not all that it debits or credits.
struct SharedWhole {
  std::int64_t amount = 0;
  bool isAll = true;
};

std::string WhyNot(Work& work, const LinesToCompose& given, const SplitFault& fault, const Bearer& bearer,
                   const SharedWhole& whole) {
  const std::string partner = PartnerText(bearer.relation);
  const std::string ofWhole = std::string(whole.isAll ? "the " : "what partners can bear of the ") +
                              NounOf(given.type) + ", which comes to " + AmountText(work, whole.amount);
  switch (fault.why) {
    case SplitFault::Why::kOfNothing:
      return partner + " cannot bear a share of " + ofWhole;
    case SplitFault::Why::kOtherSign:
      return "the share of " + partner + " has not the sign of " + ofWhole;
    case SplitFault::Why::kBeyondTheWhole:
      return "with the share of " + partner + " the partners bear more than " + ofWhole;
    case SplitFault::Why::kNothing:
      return "the share of " + partner + " comes to " + AmountText(work, 0) + " of " + ofWhole;
    case SplitFault::Why::kTooFine:
      break;
  }
  return "the fractions up to that of " + partner + " have no common denominator to reckon with; give percentages";
}

void RequirePostable(Work& work, std::int64_t part) {
  if (std::abs(part) <= standalone::kLargestAmount) return;
  work.Refuse("a partner's share comes to " + AmountText(work, part) + ", and no more than " +
                  AmountText(work, standalone::kLargestAmount) + " can be booked",
              Remedy::kCheckTheShares);
}

// Not what money went through, what is owed anyway, and what settles with a partner.
bool CanBeBorne(Work& work, std::int32_t accountId) {
  const std::optional<standalone::Account> account = work.Host().Accounts().Find(accountId);
  if (!account || work.Host().Relations().UsesAccount(accountId)) return false;
  return account->type != KrEnumerations::kBank && account->type != KrEnumerations::kCreditCard &&
         account->type != KrEnumerations::kAccountsReceivable && account->type != KrEnumerations::kAccountsPayable;
}

void RefuseFractions(Work& work, const Side& side) {
  for (const Bearer& bearer : side.bearers) {
    if (!std::holds_alternative<standalone::Fraction>(bearer.share)) continue;
    work.Refuse("the share " + standalone::Quoted(bearer.shareText) + " of " + PartnerText(bearer.relation) +
                    " is of what the journal entry debits, and no partner bears a percentage or a fraction of what is "
                    "debited to " +
                    QuotedAccount(work, side.lines.front().accountId),
                Remedy::kShareByAnAmount);
  }
}

// Of an entry those that partners can bear a part of; an amount may be one of the others where there are no such.
std::vector<LineToPost*> LinesToShare(Work& work, EnteredType type, Side& side) {
  std::vector<LineToPost*> all;
  std::vector<LineToPost*> borne;
  for (LineToPost& line : side.lines) {
    all.push_back(&line);
    if (type == EnteredType::kEntry && CanBeBorne(work, line.accountId)) borne.push_back(&line);
  }
  if (!borne.empty()) return borne;
  if (type == EnteredType::kEntry) RefuseFractions(work, side);
  return all;
}

// Takes what the bearers bear out of the lines; returns what they bear.
std::vector<LineToPost> TakeShares(Work& work, const LinesToCompose& given, Side& side) {
  if (side.bearers.empty()) return {};
  const std::vector<LineToPost*> shared = LinesToShare(work, given.type, side);
  std::vector<std::int64_t> amounts;
  std::vector<standalone::Share> shares;
  SharedWhole whole{.isAll = shared.size() == side.lines.size()};
  for (const LineToPost* const line : shared) {
    amounts.push_back(line->amount);
    whole.amount += line->amount;
  }
  for (const Bearer& bearer : side.bearers) shares.push_back(bearer.share);
  const auto result = standalone::SplitAmong(amounts, shares);
  if (const auto* const fault = std::get_if<SplitFault>(&result)) {
    work.Refuse(WhyNot(work, given, *fault, side.bearers[fault->share], whole), Remedy::kCheckTheShares);
  }
  const auto& split = std::get<standalone::Split>(result);
  for (const std::int64_t part : split.partners) RequirePostable(work, part);
  std::vector<LineToPost> partners;
  for (std::size_t i = 0; i < side.bearers.size(); ++i) {
    partners.push_back(PartnersLine(work, side.bearers[i].relation, split.partners[i], given.memo));
  }
  for (std::size_t i = 0; i < shared.size(); ++i) shared[i]->amount = split.own[i];
  std::erase_if(side.lines, [](const LineToPost& line) { return line.amount == 0; });
  return partners;
}

template <typename Lines>
void Append(std::vector<LineToPost>& lines, Lines&& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

// The account that bills or checks credit when nobody says which.
std::int32_t OnlyAccountToCredit(Work& work, EnteredType type) {
  const bool isBill = type == EnteredType::kBill;
  const std::int16_t accountType = isBill ? KrEnumerations::kAccountsPayable : KrEnumerations::kBank;
  const std::vector<standalone::Account> accounts = work.Host().Accounts().ListOfType(accountType);
  if (accounts.size() == 1) return accounts.front().id;
  const std::string typeName = standalone::AccountTypeName(accountType);
  work.Refuse("there " + (accounts.empty() ? "is no account" : "are " + std::to_string(accounts.size()) + " accounts") +
                  " of type " + typeName + (accounts.empty() ? "" : "; say which of them is credited"),
              isBill ? Remedy::kNameThePayable : Remedy::kNameTheBank);
}

std::int32_t AccountToCredit(Work& work, const LinesToCompose& given) {
  if (!given.credited) return OnlyAccountToCredit(work, given.type);
  const standalone::Account account = work.Host().Accounts().Require(*given.credited);
  if (MayCredit(given.type, account.type)) return account.id;
  work.Refuse("the account " + standalone::Quoted(account.fullName) + " is of type " +
                  standalone::AccountTypeName(account.type) + ", which a " + NounOf(given.type) + " does not credit",
              given.type == EnteredType::kBill ? Remedy::kNameThePayable : Remedy::kNameTheBank);
}

// It would take back there what the line books.
void RequireNoLineOn(Work& work, const LinesToCompose& given, std::int32_t credited) {
  if (std::ranges::find(given.lines, credited, &LineToPost::accountId) == given.lines.end()) return;
  work.Refuse("the line for " + QuotedAccount(work, credited) + " is on the account that the " + NounOf(given.type) +
                  " credits with what its lines come to",
              Remedy::kGiveOtherLines);
}

std::vector<LineToPost> ComposePayment(Work& work, const LinesToCompose& given) {
  const std::int64_t whole = SumOf(work, given.lines);
  if (whole == 0 || std::abs(whole) > standalone::kLargestAmount) {
    work.Refuse(
        std::string("the lines of the ") + NounOf(given.type) + " come to " + AmountText(work, whole) +
            (whole == 0 ? ", and nothing is not booked"
                        : ", and no more than " + AmountText(work, standalone::kLargestAmount) + " can be booked"),
        Remedy::kGiveLines);
  }
  const std::int32_t credited = AccountToCredit(work, given);
  RequireNoLineOn(work, given, credited);
  Side side{.lines = given.lines, .bearers = BearersOf(work, given)};
  const std::vector<LineToPost> partners = TakeShares(work, given, side);
  std::vector<LineToPost> lines = std::move(side.lines);
  Append(lines, partners);
  lines.push_back({.accountId = credited, .amount = -whole, .memo = given.memo});
  return lines;
}

bool IsOfCredits(const standalone::Share& share) {
  const auto* const amount = std::get_if<std::int64_t>(&share);
  return amount != nullptr && *amount < 0;
}

// Fractions are of what is debited.
std::vector<LineToPost> ComposeEntry(Work& work, const LinesToCompose& given) {
  if (const std::int64_t sum = SumOf(work, given.lines); sum != 0) {
    work.Refuse("the lines of the entry sum to " + AmountText(work, sum) + ", not to " + AmountText(work, 0),
                Remedy::kBalanceTheEntry);
  }
  Side debits;
  Side credits;
  for (const LineToPost& line : given.lines) (line.amount > 0 ? debits : credits).lines.push_back(line);
  for (const Bearer& bearer : BearersOf(work, given)) {
    (IsOfCredits(bearer.share) ? credits : debits).bearers.push_back(bearer);
  }
  std::vector<LineToPost> partners = TakeShares(work, given, debits);
  Append(partners, TakeShares(work, given, credits));
  std::vector<LineToPost> lines = std::move(debits.lines);
  Append(lines, credits.lines);
  if (lines.empty()) {
    work.Refuse("the partners bear all that is debited and all that is credited, and nothing is left to book here",
                Remedy::kCheckTheShares);
  }
  Append(lines, partners);
  return lines;
}

}  // namespace

standalone::Money MoneyOf(Work& work, std::int64_t minorUnits) {
  const standalone::Settings& settings = work.Host().Settings().Get();
  return {.minorUnits = minorUnits, .currency = settings.homeCurrency, .decimals = settings.decimals};
}

void RefusePairedAccount(Work& work, EnteredType type, std::int32_t accountId) {
  if (type != EnteredType::kBill || !work.Host().Relations().UsesAccount(accountId)) return;
  work.Refuse("the account " + QuotedAccount(work, accountId) + " is paired with a partner", Remedy::kGiveThePartner);
}

bool MayCredit(EnteredType type, std::int16_t accountType) noexcept {
  if (type == EnteredType::kBill) return accountType == KrEnumerations::kAccountsPayable;
  return accountType == KrEnumerations::kBank || accountType == KrEnumerations::kCreditCard;
}

LineToPost PartnersLine(Work& work, const DBMultiEntityRelation& relation, std::int64_t amount, std::string memo) {
  return {.accountId = RequireDueFrom(work, relation),
          .amount = amount,
          .memo = std::move(memo),
          .request = RequestToPost{.relationId = relation.relationId, .requestId = NewRequestId(work)}};
}

std::string MemoOfRepeated(const std::string& lines, const std::string& before, const std::string& after) {
  return !lines.empty() && lines == before ? after : lines;
}

std::vector<LineToPost> Compose(Work& work, const LinesToCompose& given) {
  RequireLines(work, given);
  return given.type == EnteredType::kEntry ? ComposeEntry(work, given) : ComposePayment(work, given);
}

}  // namespace desk
