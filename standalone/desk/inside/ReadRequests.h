#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/RequestSelection.h"
#include "standalone/exchange/Kinds.h"

// What lists of requests have in common; within a unit of work.
namespace desk {

// Those of the partner that is named, or all, but for what never was or is no longer a pairing.
std::vector<standalone::Pairing> PairingsOf(Work& work, const std::optional<Partner>& partner);

std::int16_t TxnTypeOf(exchange::RequestType type) noexcept;
bool MaySee(Work& work, std::int16_t txnType);
// Refused for who may see transactions of no type.
void RequireMaySeeSome(Work& work);

// What a selection leaves out, its names aside.
class SelectedAmounts {
 public:
  // Throws standalone::InvalidInput for an amount that is none of the company's.
  SelectedAmounts(Work& work, const RequestSelection& selection);
  bool Hold(std::int64_t minorUnits) const noexcept;

 private:
  std::optional<std::int64_t> upTo_;
};

// Whether the requests are named one by one.
bool IsNamed(const RequestSelection& selection, const std::string& request);

}  // namespace desk
