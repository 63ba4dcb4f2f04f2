#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "MultiEntity/Records.h"
#include "model/Operation.h"

namespace model {

// An operation's numbers, read as values. Ordinary values come first and more than once, so that most calls get far.
class Arguments {
 public:
  explicit Arguments(const Operation& operation) : operation_(operation) {}

  std::uint16_t Raw(std::size_t at) const { return operation_.arguments.at(at); }
  bool Flag(std::size_t at) const { return Raw(at) % 2 == 1; }
  bool Rarely(std::size_t at) const { return Raw(at) % 8 == 7; }
  int Below(std::size_t at, int bound) const { return Raw(at) % bound; }
  template <class Pool>
  auto Of(std::size_t at, const Pool& pool) const {
    return pool[Raw(at) % std::size(pool)];
  }

  Util::TString Realm(std::size_t at) const;
  Util::TString PartnerName(std::size_t at) const;
  Util::TString RequestId(std::size_t at) const;
  std::int32_t AccountId(std::size_t at) const;
  MEState State(std::size_t at) const;
  std::int16_t TxnType(std::size_t at) const;
  std::int16_t RejectedType(std::size_t at) const;
  std::int32_t RelationId(std::size_t at) const;
  // The id that a relation with that partner mostly has.
  std::int32_t RelationOf(std::string_view realm, std::size_t at) const;
  std::int32_t TxnId(std::size_t at) const { return 1 + Below(at, 12); }
  // What the row of a line mostly says.
  std::int32_t TxnOf(std::int32_t targetId, std::size_t at) const { return Rarely(at) ? 7 : 1 + targetId / 3; }
  std::int32_t RelationOfLine(std::int32_t targetId, std::size_t at) const;
  Util::TString RealmOfLine(std::int32_t targetId, std::size_t at) const;
  Util::TString RequestOfLine(std::int32_t targetId, std::size_t at) const;
  std::int32_t TargetId(std::size_t at) const { return 1 + Below(at, 14); }
  Util::TString Amount(std::size_t at) const;
  Util::TString RejectedAmount(std::size_t at) const;
  DateType32 Date(std::size_t at) const;
  std::string StoredDate(std::size_t at) const;
  std::string RemoteValue(std::size_t at) const;
  SYSTEMTIME Clock(std::size_t at) const;

  // Uses four numbers from `at` on.
  std::vector<MEAccountInfo> Accounts(std::size_t at) const;
  MEAccountInfo ExpenseAccount(std::size_t at) const;
  MECNameInfo NameInfo(std::size_t at) const;

 private:
  const Operation& operation_;
};

}  // namespace model
