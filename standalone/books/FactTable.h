#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/storage/Statement.h"

namespace standalone {

// How a fact came into these books.
enum class FactOrigin {
  kMade,      // signed here
  kCameBack,  // signed by this company, and handed back by the partner: these books had lost it or never had it
  kPartners,
};

// A signed fact as it is kept. What it says is for who reads it; the books only tell one from the other.
struct StoredFact {
  std::int32_t pairing = 0;
  std::string hash;  // 32 bytes
  FactOrigin origin = FactOrigin::kMade;
  std::string kind;
  std::string name;
  std::string names;  // the request that its own one corrects or reverses; empty for none
  std::string month;  // YYYY-MM; empty for what is of no month
  std::string body;
  std::string signature;  // 64 bytes
  bool shown = false;     // whether the partner has shown to hold it
  std::string setAside;   // why it is not understood or not applied; empty if it is
};

// What this company and its partners have told each other. Facts are kept for good and never change. Every operation
// needs an open unit of work.
class FactTable {
 public:
  explicit FactTable(Database& database);

  // False when the pairing has it already, which then stays as it is.
  bool Add(const StoredFact& fact);
  std::optional<StoredFact> Find(std::int32_t pairing, std::string_view hash);
  bool Has(std::int32_t pairing, std::string_view hash);
  // Those of one kind and name, by hash.
  void ForEachOf(std::int32_t pairing, std::string_view kind, std::string_view name,
                 const std::function<void(const StoredFact& fact)>& take);
  // Those whose own request corrects or reverses that one, by hash.
  void ForEachNaming(std::int32_t pairing, std::string_view request,
                     const std::function<void(const StoredFact& fact)>& take);
  // The number of the one that came into the books last; 0 without any.
  std::int64_t LastNumber();
  // Those up to that number that the partner has not shown to hold, in the order in which they came into the books.
  void ForEachNotShown(std::int32_t pairing, std::int64_t lastNumber,
                       const std::function<void(const StoredFact& fact)>& take);
  bool HasNotShown(std::int32_t pairing);
  // Those that are set aside, in that order.
  void ForEachSetAside(std::int32_t pairing, const std::function<void(const StoredFact& fact)>& take);
  // The number of the one that came back last, 0 for none; they have ascending ones in the order in which they came.
  std::int64_t LastCameBack();
  std::int64_t CountCameBackAfter(std::int64_t number);
  void ForEachCameBackAfter(std::int64_t number, const std::function<void(const StoredFact& fact)>& take);

  // Facts that partners are not told of for now, of all pairings: none of the questions about what the partner has not
  // shown to hold and none of those by hashes knows them.
  void Withhold(std::string_view hash);
  void WithholdNothing();

  std::uint64_t Count(std::int32_t pairing);
  // All in ascending order of the hashes, which are valid within the call.
  void ForEachHash(std::int32_t pairing, const std::function<void(std::string_view hash)>& take);
  // Month by month, each in ascending order of the hashes, which are valid within the call.
  void ForEachMonthsHash(std::int32_t pairing,
                         const std::function<void(std::string_view month, std::string_view hash)>& take);
  void ForEachHashOf(std::int32_t pairing, std::string_view month,
                     const std::function<void(std::string_view hash)>& take);

  void MarkShown(std::int32_t pairing, std::string_view hash);
  // False when it was not shown anyway.
  bool MarkNotShown(std::int32_t pairing, std::string_view hash);
  void MarkMonthNotShown(std::int32_t pairing, std::string_view month);
  void MarkAllShown(std::int32_t pairing);
  // Why a fact is not applied; empty once it is.
  void SetAside(std::int32_t pairing, std::string_view hash, std::string_view why);

 private:
  Statement insert_;
  Statement one_;
  Statement has_;
  Statement named_;
  Statement naming_;
  Statement last_;
  Statement notShown_;
  Statement setAside_;
  Statement anyNotShown_;
  Statement count_;
  Statement hashes_;
  Statement hashesByMonth_;
  Statement hashesOfMonth_;
  Statement markShown_;
  Statement markNotShown_;
  Statement markMonthNotShown_;
  Statement markAllShown_;
  Statement updateSetAside_;
  Statement lastCameBack_;
  Statement countCameBack_;
  Statement cameBack_;
  Statement withhold_;
  Statement anyWithheld_;
  Statement withholdNothing_;
};

}  // namespace standalone
