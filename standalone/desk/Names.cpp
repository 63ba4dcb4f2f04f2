#include "standalone/desk/Names.h"

#include "standalone/books/NameTable.h"
#include "standalone/books/RuleTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/ListChanges.h"
#include "standalone/desk/inside/NotedNames.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

constexpr const char* kNamesOfTheCompany = "names";

Name ListedName(const standalone::Name& name) {
  return {.id = name.id, .name = name.fullName, .kind = standalone::NameKindText(name.kind)};
}

void RequireUnusedName(Work& work, const standalone::Name& name) {
  const standalone::NameUse use = work.Host().Names().UseOf(name.id);
  const std::string subject = "the name " + standalone::Quoted(name.fullName) + " has ";
  if (use.subNames != 0) work.Refuse(subject + "names below it", Remedy::kDeleteTheLowerFirst);
  if (use.transactions != 0) {
    work.Refuse(subject + standalone::Counted(use.transactions, "transaction"), Remedy::kRenameInstead);
  }
  const std::optional<standalone::RuleRow> rule = work.Host().Rules().FindOfName(name.id);
  if (!rule) return;
  work.Refuse("requests are booked under the name " + standalone::Quoted(name.fullName) + " by rule " +
                  std::to_string(rule->id),
              Remedy::kSeeTheRules);
}

}  // namespace

std::vector<Name> ListNames(Company& company) {
  Work work(company.Opened(), UseCase::kListNames);
  std::vector<Name> names;
  work.Read([&] {
    for (const standalone::Name& name : work.Host().Names().List()) names.push_back(ListedName(name));
  });
  return names;
}

Name AddName(Company& company, const NameToAdd& name) {
  const standalone::NameKind kind = standalone::ParseNameKind(name.kind);
  Work work(company.Opened(), UseCase::kChangeNames);
  NotedNames noted(work);
  const Name added = work.Write([&] {
    work.RequireOneOf(
        {{kFeatureBills, kActionCreate}, {kFeatureChecks, kActionCreate}, {kFeatureJournalEntries, kActionCreate}});
    const standalone::Name made = Accepted([&] { return work.Host().Names().Create(name.name, kind); });
    noted.NoteName(made.fullName);
    work.Host().Record(DeedOfName("name.add", {}, made));
    return ListedName(made);
  });
  noted.Tell();
  return added;
}

RenamedName RenameName(Company& company, const std::string& name, const std::string& ownName) {
  Work work(company.Opened(), UseCase::kChangeNames);
  NotedNames noted(work);
  RenamedName renamed = work.Write([&] {
    work.RequireAdministratorOrAccountant(kNamesOfTheCompany, "renamed");
    const standalone::Name before = work.Host().Names().Require(name);
    const std::int64_t below = Accepted([&] { return work.Host().Names().Rename(before.id, ownName); });
    const standalone::Name after = work.Host().Names().Find(before.id).value();
    RenamedName result{.name = ListedName(after), .before = before.fullName, .subNames = 0};
    if (after.fullName == before.fullName) return result;
    noted.NoteName(after.fullName);
    work.Host().Record(DeedOfName("name.rename", before, after, {"names below it", below}));
    result.subNames = below;
    return result;
  });
  noted.Tell();
  return renamed;
}

Name DeleteName(Company& company, const std::string& name) {
  Work work(company.Opened(), UseCase::kChangeNames);
  return work.Write([&] {
    work.RequireAdministratorOrAccountant(kNamesOfTheCompany, "deleted");
    const standalone::Name before = work.Host().Names().Require(name);
    RequireUnusedName(work, before);
    work.Host().Names().Delete(before.id);
    work.Host().Record(DeedOfName("name.delete", before, {}));
    return ListedName(before);
  });
}

}  // namespace desk
