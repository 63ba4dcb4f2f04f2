#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "partners/Books.h"
#include "standalone/exchange/Kinds.h"

namespace partners {

// All that one company holds of a request of one of the two.
struct HeldRequest {
  struct Said {
    exchange::Hash hash;
    exchange::Answer what;
  };

  std::map<exchange::Hash, exchange::Proposal> proposals;
  std::vector<Said> answers;
  bool isWithdrawn = false;  // by a withdrawal that was applied
  bool isOwn = false;        // of the company that holds it

  // Of several the one that ranks first, and then has the lower hash.
  std::optional<exchange::Outcome> Outcome() const;
};

// By pairing and request; one id may be that of a request of each of the two.
struct RequestName {
  std::string pairing;
  std::string request;
  bool isOwn = false;

  friend auto operator<=>(const RequestName&, const RequestName&) = default;
};

std::map<RequestName, HeldRequest> HeldRequests(Books& books);

}  // namespace partners
