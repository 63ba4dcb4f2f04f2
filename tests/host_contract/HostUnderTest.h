#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "MultiEntityHost/HostServices.h"

namespace host_contract {

// A host whose promises are tested, with an empty company and a user who may do everything. All calls fall into one
// unit of work of the host, from its construction to Reopen() or its end.
class HostUnderTest {
 public:
  virtual ~HostUnderTest() = default;

  virtual const HostServices& Services() = 0;

  // Bring an account or a name into being by the host's own means; the full name's parents exist already.
  virtual std::int32_t SeedAccount(std::string_view fullName, std::int16_t type, std::int32_t specialKind,
                                   bool deleted) = 0;
  virtual std::int32_t SeedName(std::string_view fullName) = 0;

  // Whether the module is just removing a journal entry.
  virtual void SetRemovalUnderWay(bool underWay) = 0;

  // Saves the company and opens it again as another program would. Services() are new ones then.
  virtual void Reopen() = 0;
};

struct HostMaker {
  const char* name;
  std::unique_ptr<HostUnderTest> (*make)();
};

inline std::ostream& operator<<(std::ostream& out, const HostMaker& maker) {
  return out << maker.name;
}

inline std::string NameOfHost(const testing::TestParamInfo<HostMaker>& info) {
  return info.param.name;
}

template <std::size_t kSize>
void Put(char (&field)[kSize], std::string_view text) {
  std::memset(field, 0, kSize);
  std::memcpy(field, text.data(), text.size());
}

inline DBMultiEntityRelation Relation(std::string_view realmId, std::int32_t dueFrom, std::int32_t dueTo) {
  DBMultiEntityRelation row{};
  Put(row.realmId, realmId);
  Put(row.partnerName, "Alder Supply");
  row.relationType = 1;
  row.state = 3;
  row.dueFromAccountId = dueFrom;
  row.dueToAccountId = dueTo;
  return row;
}

struct Line {
  std::int32_t txnId;
  std::int32_t targetId;
};

inline DBMultiEntityTransaction Row(std::int32_t relationId, Line line, std::string_view requestId,
                                    std::int16_t txnType) {
  DBMultiEntityTransaction row{};
  row.txnId = line.txnId;
  row.targetId = line.targetId;
  row.relationId = relationId;
  Put(row.requestId, requestId);
  row.txnType = txnType;
  row.state = 3;
  return row;
}

class HostContract : public testing::TestWithParam<HostMaker> {
 protected:
  const HostServices& Services() { return host_->Services(); }
  MultiEntityDBManager& Store() { return Services().multiEntity; }

  std::int32_t SaveRelation(std::string_view realmId, std::int32_t dueFrom = 0, std::int32_t dueTo = 0) {
    DBMultiEntityRelation row = Relation(realmId, dueFrom, dueTo);
    EXPECT_TRUE(Store().SaveRelation(row).Succeeded());
    return row.relationId;
  }

  bool Save(DBMultiEntityTransaction row) { return Store().SaveTransaction(row).Succeeded(); }

  std::int32_t SeedAccount(std::string_view fullName, std::int16_t type = KrEnumerations::kExpense) {
    return host_->SeedAccount(fullName, type, 0, false);
  }

  std::unique_ptr<HostUnderTest> host_ = GetParam().make();
};

class RelationStore : public HostContract {};
class TransactionRowStore : public HostContract {};
class RejectedTransactionStore : public HostContract {};
class AccountList : public HostContract {};
class NameListing : public HostContract {};
class GeneralJournal : public HostContract {};
class TransactionLine : public HostContract {};
class MoneyText : public HostContract {};
class Preference : public HostContract {};

}  // namespace host_contract
