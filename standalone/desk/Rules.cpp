#include "standalone/desk/Rules.h"

#include <string_view>

#include "standalone/books/AccountTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/RuleTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/FittingRules.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/ReadRequests.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::Pairing;
using standalone::RuleRow;

constexpr standalone::FeatureRight kRightToChangeRules{kFeatureJournalEntries, kActionCreate};

std::string ConditionOf(std::string_view what, const std::optional<std::string>& text, std::size_t most) {
  if (!text) return {};
  return std::string(standalone::RequireText(what, standalone::Trimmed(*text), 1, most));
}

RuleRow ConditionsOf(const RuleToAdd& rule) {
  RuleRow row{.name = ConditionOf("The name of the requests", rule.name, standalone::kListFullNameLength),
              .hint = ConditionOf("The partner's account", rule.hint, standalone::kListNameLength),
              .memo = ConditionOf("The text in the memo", rule.memo, standalone::kMemoLength)};
  if (!row.name.empty() || !row.hint.empty() || !row.memo.empty()) return row;
  throw standalone::InvalidInput(
      "The rule says of no request what it is like; give a name, an account of the partner or a text in the memo.");
}

standalone::AuditDeed DeedOfRule(std::string action, const Rule& rule, bool isThereAfter) {
  Facts facts;
  for (const auto& [field, value] : Facts{{"partner", rule.partner},
                                          {"realm", rule.realm},
                                          {"name", rule.name},
                                          {"their account", rule.hint},
                                          {"memo with", rule.memo},
                                          {"account", rule.account.name},
                                          {"booked as", rule.bookedAs ? rule.bookedAs->name : ""}}) {
    if (!value.empty()) facts.emplace_back(field, value);
  }
  const std::string subject = (rule.isLearned ? "learned rule " : "rule ") + std::to_string(rule.id);
  return isThereAfter ? DeedOf(std::move(action), subject, {}, std::move(facts))
                      : DeedOf(std::move(action), subject, std::move(facts), {});
}

void RefuseKnownRule(Work& work, const RuleRow& row) {
  const std::optional<RuleRow> known = work.Host().Rules().FindAlike(row);
  if (!known) return;
  work.Refuse("there is a rule for the same requests, rule " + std::to_string(known->id) + ": " +
                  RuleText(RuleOf(work, *known)),
              Remedy::kSeeTheRules);
}

}  // namespace

std::vector<Rule> ListRules(Company& company, const std::optional<Partner>& partner) {
  Work work(company.Opened(), UseCase::kReadRules);
  std::vector<Rule> rules;
  work.Read([&] {
    RequireMaySeeSome(work);
    const std::vector<Pairing> pairings =
        partner ? std::vector{RequirePairing(work, partner->Text())} : work.Host().Pairings().List();
    for (const Pairing& pairing : pairings) {
      for (const RuleRow& row : work.Host().Rules().List(pairing.id)) rules.push_back(RuleOf(work, row));
    }
  });
  return rules;
}

Rule AddRule(Company& company, const RuleToAdd& rule) {
  Work work(company.Opened(), UseCase::kChangeRules);
  return work.Write([&] {
    work.RequireRight(kRightToChangeRules);
    RuleRow row = ConditionsOf(rule);
    const Pairing pairing = RequirePairing(work, rule.partner.Text());
    row.pairing = pairing.id;
    row.accountId = work.Host().Accounts().Require(rule.expense).id;
    if (rule.bookedAs) row.nameId = work.Host().Names().Require(*rule.bookedAs).id;
    if (const std::string why = WhyUnfit(work, pairing, row.accountId); !why.empty()) {
      work.Refuse(why, Remedy::kNameAnExpenseAccount);
    }
    RefuseKnownRule(work, row);
    row.id = work.Host().Rules().Add(row);
    Rule added = RuleOf(work, row);
    work.Host().Record(DeedOfRule("rules.add", added, /*isThereAfter=*/true));
    return added;
  });
}

Rule RemoveRule(Company& company, std::int32_t rule) {
  Work work(company.Opened(), UseCase::kChangeRules);
  return work.Write([&] {
    work.RequireRight(kRightToChangeRules);
    const std::optional<RuleRow> row = work.Host().Rules().Find(rule);
    if (!row) work.Refuse("there is no rule " + std::to_string(rule), Remedy::kSeeTheRules);
    Rule removed = RuleOf(work, *row);
    work.Host().Rules().Remove(rule);
    work.Host().Record(DeedOfRule("rules.remove", removed, /*isThereAfter=*/false));
    return removed;
  });
}

}  // namespace desk
