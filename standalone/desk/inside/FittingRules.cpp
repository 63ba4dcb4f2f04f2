#include "standalone/desk/inside/FittingRules.h"

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

#include "standalone/books/AccountTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/RelationAccounts.h"
#include "standalone/desk/inside/Texts.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::Pairing;
using standalone::Quoted;
using standalone::RuleRow;

// What goes first.
auto RankOf(const RuleRow& rule) {
  return std::tuple(!rule.learned, !rule.name.empty() + !rule.hint.empty() + !rule.memo.empty());
}

bool SaysTheSame(const RuleRow& left, const RuleRow& right) {
  return left.accountId == right.accountId && left.nameId == right.nameId;
}

// Takes out those by which nothing can be booked; tells why of the last one.
std::string TakeOutUnfit(Work& work, const Pairing& pairing, std::vector<RuleRow>& rules) {
  std::string why;
  std::erase_if(rules, [&](const RuleRow& rule) {
    const std::string unfit = WhyUnfit(work, pairing, rule.accountId);
    if (!unfit.empty()) why = "rule " + std::to_string(rule.id) + " is for it, but " + unfit;
    return !unfit.empty();
  });
  return why;
}

FoundRule None(std::string why, bool isForAPerson) {
  return {.rule = {}, .whyNone = std::move(why), .isForAPerson = isForAPerson};
}

}  // namespace

Rule RuleOf(Work& work, const RuleRow& row) {
  const Pairing pairing = work.Host().Pairings().Find(row.pairing).value();
  Rule rule{.id = row.id,
            .partner = pairing.partnerName,
            .realm = pairing.partnerRealm,
            .name = row.name,
            .hint = row.hint,
            .memo = row.memo,
            .account = {.id = row.accountId, .name = TextOf(work.Host().Accounts().FullNameOf(row.accountId))},
            .isLearned = row.learned,
            .unfit = WhyUnfit(work, pairing, row.accountId)};
  if (!row.nameId) return rule;
  rule.bookedAs = {.id = *row.nameId, .name = work.Host().Names().Find(*row.nameId).value().fullName};
  return rule;
}

std::string WhyUnfit(Work& work, const Pairing& pairing, std::int32_t accountId) {
  if (pairing.state == standalone::PairingState::kRemoved)
    return "the pairing with " + PartnerText(pairing) + " is ended";
  const standalone::Account account = work.Host().Accounts().Find(accountId).value();
  const std::string subject = "the account " + Quoted(account.fullName);
  if (account.deleted) return subject + " is marked deleted";
  if (!standalone::TakesPostings(account)) return subject + " is a non-posting account";
  if (account.id == pairing.dueToAccountId) return subject + " is the due-to account of " + PartnerText(pairing);
  return WhyPaired(work, account.id);
}

FoundRule FindRule(Work& work, const Pairing& pairing, const exchange::Proposal& request) {
  if (request.earlier && request.earlier->how == exchange::EarlierRequest::kReversed) {
    return None("it takes back the request " + Quoted(request.earlier->request) +
                    ", and goes to where that one is booked, whatever the rules say",
                /*isForAPerson=*/false);
  }
  std::vector<RuleRow> rules =
      work.Host().Rules().ListFor(pairing.id, {.name = request.name, .hint = request.hint, .memo = request.memo});
  std::string unfit = TakeOutUnfit(work, pairing, rules);
  if (rules.empty()) return unfit.empty() ? None("no rule fits it", false) : None(std::move(unfit), true);
  const auto best = std::ranges::max_element(rules, {}, RankOf);
  for (const RuleRow& other : rules) {
    if (RankOf(other) != RankOf(*best) || SaysTheSame(other, *best)) continue;
    return None("the rules " + std::to_string(best->id) + " and " + std::to_string(other.id) +
                    " fit it equally well, and say different things",
                /*isForAPerson=*/true);
  }
  if (!best->nameId && request.name.empty()) {
    return None("rule " + std::to_string(best->id) + " books under the name that a request tells, and it names nobody",
                /*isForAPerson=*/true);
  }
  return {.rule = std::move(*best), .whyNone = {}};
}

std::optional<standalone::AuditChange> LearnRule(Work& work, const RuleRow& learned) {
  if (learned.name.empty()) return std::nullopt;
  const std::optional<RuleRow> before = work.Host().Rules().FindAlike(learned);
  if (before && SaysTheSame(*before, learned)) return std::nullopt;
  const std::int32_t id = before ? before->id : work.Host().Rules().Add(learned);
  standalone::AuditChange change{
      .field = "learned rule " + std::to_string(id), .before = std::nullopt, .after = std::nullopt};
  if (before) {
    change.before = RuleText(RuleOf(work, *before));
    work.Host().Rules().SetTarget(id, learned.accountId, learned.nameId);
  }
  change.after = RuleText(RuleOf(work, work.Host().Rules().Find(id).value()));
  return change;
}

std::string RuleText(const Rule& rule) {
  std::string text;
  const auto add = [&text](std::string_view what, const std::string& value) {
    if (!value.empty()) text.append(text.empty() ? "" : ", ").append(what).append(Quoted(value));
  };
  add("name ", rule.name);
  add("account there ", rule.hint);
  add("memo with ", rule.memo);
  text += " to " + Quoted(rule.account.name);
  if (rule.bookedAs) text += " as " + Quoted(rule.bookedAs->name);
  return text;
}

}  // namespace desk
