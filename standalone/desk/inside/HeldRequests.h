#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/Fact.h"
#include "standalone/exchange/Kinds.h"
#include "standalone/exchange/Standing.h"

// What this company and a partner hold about one request; within a unit of work.
namespace desk {

// Who has entered a request, and asks the other one to book it.
enum class RequestOf { kUs, kPartner };

struct HeldProposal {
  exchange::Fact fact;
  exchange::Proposal says;
};

// As far as it is understood.
struct HeldRequest {
  exchange::HeldFacts facts;
  std::vector<HeldProposal> proposals;
  std::vector<std::pair<exchange::Hash, exchange::Answer>> answers;

  // Those that count; null where there is none.
  const HeldProposal* Proposal() const;
  const exchange::Answer* Answer() const;
};

HeldRequest HeldAbout(Work& work, const standalone::Pairing& pairing, RequestOf whose, std::string_view request);

}  // namespace desk
