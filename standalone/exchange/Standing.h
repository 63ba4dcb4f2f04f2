#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "standalone/exchange/Kinds.h"
#include "standalone/exchange/Octets.h"
#include "standalone/values/InboxState.h"
#include "standalone/values/States.h"

// What a request has become, told anew from all that is held about it and from what the books have of it, so that
// neither the order in which facts come nor how often they come makes a difference. Nothing here reads or writes.
namespace exchange {

struct HeldProposal {
  Hash hash;
  std::int64_t amount = 0;  // minor units; what the receiver owes the sender
};

struct HeldAnswer {
  Hash hash;
  Outcome outcome{};
  Hash proposal;  // that it answers and carries
};

// About one request of one sender to one receiver; what an answer carries is among the proposals.
struct HeldFacts {
  std::vector<HeldProposal> proposals;
  std::vector<HeldAnswer> answers;
  bool withdrawal = false;
};

// Of several, the one that ranks first, then the one with the lower hash; null without any.
const HeldAnswer* AnswerThatCounts(const HeldFacts& held) noexcept;
// The one that the answer that counts carries, or else the one with the lower hash; null without any.
const HeldProposal* ProposalThatCounts(const HeldFacts& held) noexcept;

// Why a person has to look at a proposal that is new.
enum class Mark {
  kNone,
  kKnownWithAnotherAmount,  // booked by hand under that id
  kReversedAlready,         // another request reverses the same one
};

// Of the request that the proposal that counts reverses.
enum class Reversed {
  kNothing,            // it reverses none
  kBooked,             // accepted and booked here
  kBookedAndReversed,  // as above, and a reversal of it is booked or waits, too
  kNotBooked,          // undecided, decided otherwise, or unknown
};

struct ReceiversBooks {
  std::optional<standalone::InboxState> inbox = std::nullopt;  // none for an id that the inbox does not know
  // Of the entry that was booked from this partner's request, with the sign of a proposal's.
  std::optional<std::int64_t> bookedAmount = std::nullopt;
  bool rejectionIsKept = false;  // of this partner's request, by the module or from an earlier pairing
  bool isInUse = false;  // otherwise: another partner's rejection, a request of this company's own to this partner
  Reversed reversed = Reversed::kNothing;
};

struct ReceiversStanding {
  std::optional<standalone::InboxState> inbox = std::nullopt;  // none while there is no proposal
  Mark mark = Mark::kNone;
  std::optional<Outcome> answer = std::nullopt;  // to be made now, to the proposal that counts
  friend bool operator==(const ReceiversStanding&, const ReceiversStanding&) = default;
};

ReceiversStanding StandingAtReceiver(const HeldFacts& held, const ReceiversBooks& books) noexcept;

// What the sender's books have of a request.
struct SendersBooks {
  std::optional<standalone::TransactionState> row = std::nullopt;
};

struct SendersStanding {
  std::optional<standalone::TransactionState> row = std::nullopt;  // what it becomes; as it was for most
  bool isLost = false;                                             // a proposal of ours without its transaction
  bool isWithdrawing = false;                                      // asked to be withdrawn, and not answered
  // Closed here before it was known that it had been sent, as by a copy of these books: the partner does not know.
  bool isToBeWithdrawn = false;
  // An answer overtook what was done upon another one: the partner has booked what was corrected, reversed or closed
  // here.
  bool wasOvertaken = false;
  friend bool operator==(const SendersStanding&, const SendersStanding&) = default;
};

SendersStanding StandingAtSender(const HeldFacts& held, const SendersBooks& books) noexcept;

}  // namespace exchange
