#pragma once

#include <string>
#include <vector>

#include "MultiEntity/Records.h"
#include "standalone/app/terminal/Output.h"

namespace app {

class Company;

// Rows for programs and for people.
struct Listing {
  Json json = Json::array();
  Table table;
};

Listing ListEntries(const std::vector<METxnInfo>& entries);

// A relation with the names of its accounts.
struct RelationView {
  DBMultiEntityRelation row{};
  std::string dueFrom;
  std::string dueTo;
};

// Looks the accounts up; within a unit of work.
RelationView ViewOf(Company& company, const DBMultiEntityRelation& row);
Json RelationJson(const RelationView& view);
Listing ListRelationViews(const std::vector<RelationView>& views);

}  // namespace app
