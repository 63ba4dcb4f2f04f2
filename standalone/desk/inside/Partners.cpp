#include "standalone/desk/inside/Partners.h"

#include <optional>
#include <vector>

#include "standalone/books/RelationTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/values/States.h"
#include "standalone/values/Suggestions.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

using standalone::Quoted;

template <typename IsIt>
std::vector<DBMultiEntityRelation> Those(const std::vector<DBMultiEntityRelation>& relations, IsIt&& isIt) {
  std::vector<DBMultiEntityRelation> found;
  for (const DBMultiEntityRelation& relation : relations) {
    if (isIt(standalone::Field(relation.partnerName))) found.push_back(relation);
  }
  return found;
}

std::vector<DBMultiEntityRelation> ThoseCalled(const std::vector<DBMultiEntityRelation>& relations,
                                               std::string_view name) {
  std::vector<DBMultiEntityRelation> found = Those(relations, [name](std::string_view its) { return its == name; });
  if (!found.empty()) return found;
  return Those(relations, [name](std::string_view its) { return standalone::EqualIgnoringCase(its, name); });
}

[[noreturn]] void RefuseSeveral(Work& work, std::string_view name, const std::vector<DBMultiEntityRelation>& partners) {
  std::string realms;
  for (const DBMultiEntityRelation& partner : partners) {
    realms += (realms.empty() ? "" : " and ") + Quoted(standalone::Field(partner.realmId));
  }
  work.Refuse("several partners are called " + Quoted(name) + ", those of the realms " + realms +
                  "; give the realm id of one of them",
              Remedy::kSeeRelations);
}

std::vector<std::string> NamesAndRealmsOf(const std::vector<DBMultiEntityRelation>& relations) {
  std::vector<std::string> texts;
  for (const DBMultiEntityRelation& relation : relations) {
    texts.emplace_back(standalone::Field(relation.partnerName));
    texts.emplace_back(standalone::Field(relation.realmId));
  }
  return texts;
}

[[noreturn]] void RefuseUnknown(Work& work, std::string_view text) {
  work.Refuse("there is no relation with the partner " + Quoted(text), Remedy::kMakeARelation);
}

// Where there is none, a refusal that follows tells who may have been meant.
std::optional<DBMultiEntityRelation> FindPartner(Work& work, std::string_view text) {
  DBMultiEntityRelation relation{};
  if (work.Host().Relations().Find(text, relation)) return relation;
  std::vector<DBMultiEntityRelation> relations;
  work.Host().Relations().List(relations);
  const std::vector<DBMultiEntityRelation> called = ThoseCalled(relations, text);
  if (called.size() > 1) RefuseSeveral(work, text, called);
  if (!called.empty()) return called.front();
  work.Suggest(standalone::DidYouMean(text, NamesAndRealmsOf(relations)));
  return std::nullopt;
}

}  // namespace

std::string PartnerText(const DBMultiEntityRelation& relation) {
  return std::string(standalone::Field(relation.partnerName)) + " (realm " +
         std::string(standalone::Field(relation.realmId)) + ")";
}

DBMultiEntityRelation RequirePartner(Work& work, std::string_view realmOrName) {
  if (const std::optional<DBMultiEntityRelation> found = FindPartner(work, realmOrName)) return *found;
  RefuseUnknown(work, realmOrName);
}

standalone::RealmId RealmOf(Work& work, const Partner& partner) {
  const std::string& text = partner.Text();
  if (const std::optional<DBMultiEntityRelation> found = FindPartner(work, text)) {
    return standalone::RealmId(standalone::Field(found->realmId));
  }
  if (text.size() > kRealmIdLength) RefuseUnknown(work, text);
  return standalone::RealmId(text);
}

void RequireEstablished(const Work& work, const DBMultiEntityRelation& relation) {
  const auto state = standalone::RelationState{relation.state};
  if (state == standalone::RelationState::kEstablished) return;
  work.Refuse("the relation with " + PartnerText(relation) + " is not established, but " + standalone::StateName(state),
              Remedy::kEstablishTheRelation);
}

std::int32_t RequireDueFrom(const Work& work, const DBMultiEntityRelation& relation) {
  RequireEstablished(work, relation);
  if (relation.dueFromAccountId != 0) return relation.dueFromAccountId;
  work.Refuse("the relation with " + PartnerText(relation) + " has no due-from account",
              Remedy::kGiveTheRelationAccounts);
}

}  // namespace desk
