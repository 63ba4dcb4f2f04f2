#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/exchange/Octets.h"
#include "standalone/values/Sha256.h"

// How two companies find out in what the facts that they hold differ: the whole, then the months, then the hashes.
namespace exchange {

// Of a set of facts: how many there are, and SHA-256 over their hashes in ascending order; of none, over nothing.
struct Summary {
  std::uint64_t count = 0;
  Hash digest;

  // The number in decimal, a blank, the digest in hexadecimal digits.
  std::string Text() const;
  // Reads exactly that, with a count up to kMostFacts; throws Malformed.
  static Summary FromText(std::string_view text);

  friend bool operator==(const Summary&, const Summary&) = default;
};

inline constexpr std::uint64_t kMostFacts = 999'999'999'999;

// Makes the summary of hashes that come one after the other.
class Summarizing {
 public:
  // Throws std::invalid_argument unless the hash is above the one before.
  void Add(const Hash& hash);
  // Nothing is added afterwards.
  Summary Finish();

 private:
  standalone::Sha256 digest_;
  std::uint64_t count_ = 0;
  Hash last_;
};

// The hashes ascend, none twice.
Summary SummaryOf(const std::vector<Hash>& hashes);

// The months of which facts are held; "" is that of facts of the pairing itself. A month without facts has no summary.
using Months = std::map<std::string, Summary>;
// The hashes of months, ascending, none twice. A month without facts may be there, to tell that there are none.
using HashLists = std::map<std::string, std::vector<Hash>>;

// The months whose summaries differ and those that one of the two lacks, ascending.
std::vector<std::string> MonthsThatDiffer(const Months& ours, const Months& theirs);

// Of ours what theirs lacks, ascending; both ascend.
std::vector<Hash> Lacking(const std::vector<Hash>& theirs, const std::vector<Hash>& ours);

}  // namespace exchange
