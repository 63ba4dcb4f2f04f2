#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/storage/ReadOnce.h"
#include "standalone/storage/Statement.h"
#include "standalone/values/Text.h"

namespace standalone {

// The relations with partner companies, one for each partner's realm, in the order in which they were added. Rows are
// those of the host contract; the table keeps their times and revision itself. Every operation needs an open unit of
// work; ConstraintViolation for a realm that has a relation already and for accounts that do not exist.
class RelationTable {
 public:
  explicit RelationTable(Database& database);

  // False when there is none. Each is read once as long as nobody changes a list.
  bool Find(std::string_view realmId, DBMultiEntityRelation& row);
  bool FindById(std::int64_t id, DBMultiEntityRelation& row);
  void List(std::vector<DBMultiEntityRelation>& rows);

  // Both bring the columns up to date that the table keeps itself; `now` is in milliseconds since 1970, UTC. False when
  // there is nothing to change.
  void Add(DBMultiEntityRelation& row, std::int64_t now);
  bool Change(DBMultiEntityRelation& row, std::int64_t now);
  bool Remove(std::string_view realmId);

  // Whether any relation uses the account. Asked of each account once as long as nobody changes a list.
  bool UsesAccount(std::int32_t account);
  // The same of one of two accounts, 0 for none.
  bool UsesAccounts(std::int64_t account1, std::int64_t account2);
  // The same without the relation of that realm.
  bool OthersUseAccounts(std::string_view realmId, std::int64_t account1, std::int64_t account2);
  std::int64_t CountInState(std::int16_t state);

 private:
  using ByRealm = std::unordered_map<std::string, DBMultiEntityRelation, TextHash, std::equal_to<>>;

  // Those that were read.
  struct Held {
    ByRealm byRealm;
    std::unordered_map<std::int64_t, const DBMultiEntityRelation*> byId;
    std::unordered_map<std::int32_t, bool> isUsed;  // by account
  };

  const DBMultiEntityRelation& Hold(Held& held, const Rows& rows);

  Database& database_;
  ReadOnce<Held> held_;
  Statement byRealm_;
  Statement byId_;
  Statement all_;
  Statement insert_;
  Statement update_;
  Statement delete_;
  Statement usesAccounts_;
  Statement othersUseAccounts_;
  Statement inState_;
};

}  // namespace standalone
