#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/books/AuditTable.h"
#include "standalone/books/PairingTable.h"
#include "standalone/desk/inside/HeldRequests.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/exchange/Fact.h"
#include "standalone/exchange/Keys.h"
#include "standalone/exchange/Kinds.h"
#include "standalone/values/InboxState.h"

// What becomes of requests between this company and its partners: decided anew from all that is held about one whenever
// something comes to it, so that the order in which facts come makes no difference. Within a unit of work that writes.
namespace desk {

// A proposal, a withdrawal or an answer.
bool IsAboutARequest(const exchange::Fact& fact) noexcept;
// Why such a fact is kept and not applied: it is not understood, or its request id is one that nobody could ask for.
std::string WhyNotUnderstood(const exchange::Fact& fact);
RequestOf WhoseRequest(const exchange::Fact& fact, bool isByUs) noexcept;

struct DecidedRequest {
  std::vector<std::string> done;                 // for people; empty when nothing has changed
  std::string outstanding;                       // why it could not be done; the unit of work is to be taken back then
  std::vector<standalone::AuditChange> changes;  // for the trail
  std::optional<std::int32_t> txnId{std::optional<std::int32_t>()};  // whose line has changed, or that was booked
};

// Has the inbox, the books and the answers follow what is held; the keys are this company's own.
DecidedRequest DecideRequest(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys,
                             RequestOf whose, const std::string& request);

// Makes the answer to the proposal that counts, and keeps it.
void MakeAnswer(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys,
                const exchange::Answer& answer);

// Makes the plea not to accept this company's proposal any more, and keeps it.
void MakeWithdrawal(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys,
                    const exchange::Proposal& proposal);

// Looks again at what was held for want of this request.
void DecideWhatNames(Work& work, const standalone::Pairing& pairing, const exchange::KeyPair& keys,
                     const std::string& request, DecidedRequest& decided);

// "bill R-1 of 2026-11-02 over 33.33 USD waits in the inbox", as DecidedRequest tells it.
std::string DecidedText(Work& work, const exchange::Proposal& proposal, standalone::InboxState state);
// "bill R-1 of 2026-11-02 over 33.33 USD".
std::string RequestText(Work& work, const exchange::Proposal& proposal);

}  // namespace desk
