#include "standalone/desk/inside/RelationRows.h"

#include <chrono>
#include <optional>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/AccountTable.h"
#include "standalone/desk/inside/Texts.h"

namespace desk {

namespace {

std::optional<ListItem> AccountOf(Work& work, std::int32_t id) {
  if (id == 0) return std::nullopt;
  return ListItem{.id = id, .name = TextOf(work.Host().Accounts().FullNameOf(id))};
}

}  // namespace

Relation RelationOf(Work& work, const DBMultiEntityRelation& row) {
  const auto moment = [](std::int64_t milliseconds) {
    return Relation::Moment(std::chrono::milliseconds(milliseconds));
  };
  return {.id = row.relationId,
          .realm = row.realmId,
          .partner = row.partnerName,
          .type = row.relationType,
          .state = standalone::RelationState{row.state},
          .dueFrom = AccountOf(work, row.dueFromAccountId),
          .dueTo = AccountOf(work, row.dueToAccountId),
          .revision = row.revision,
          .createdAt = moment(row.createdAt),
          .changedAt = moment(row.changedAt)};
}

MEStatusCode ReadRelations(Work& work, std::vector<Relation>& relations) {
  std::vector<DBMultiEntityRelation> rows;
  const MEStatusCode answer = MultiEntityDriver::GetRelationsList(rows);
  if (answer != MEStatusSuccess) return answer;
  for (const DBMultiEntityRelation& row : rows) relations.push_back(RelationOf(work, row));
  return answer;
}

}  // namespace desk
