#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "standalone/desk/results/Partner.h"
#include "standalone/desk/results/Refusal.h"
#include "standalone/desk/results/Remark.h"
#include "standalone/desk/results/RequestSelection.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/Money.h"
#include "standalone/values/States.h"

// What this company asks the partners with whom it is paired to book.
namespace desk {

class Company;

// An intercompany line that was entered here and its request, or the request of one that these books lost.
struct OutboxRequest {
  std::string partner;
  std::string realm;
  std::string requestId;
  std::int32_t txnId = 0;  // 0 for one that is lost
  std::int32_t lineId = 0;
  std::int16_t type = 0;
  DateType32 date;
  standalone::Money amount;  // positive: the partner owes it
  std::string name;
  std::string memo;
  std::optional<standalone::BookedState> state = std::nullopt;  // none for one that is lost
  bool isSent = false;                                          // its proposal was made, and goes with the letters
  bool isWithdrawing = false;                                   // asked to be withdrawn, and not answered
  bool isLost = false;                                 // the partner has its proposal, these books have no transaction
  std::string reason;                                  // that the partner gave, if it came back
  std::string mark;                                    // why a person has to look closely, as a sentence; mostly empty
  std::vector<Remark> remarks{std::vector<Remark>()};  // in the order in which they came into these books
  bool isDisputed = false;                             // by the partner, who has not answered it
};

struct OutboxFilter {
  std::optional<Partner> partner = std::nullopt;
  bool settled = false;  // those, too, that are established or closed
};

// As far as the user may see transactions of their types, by partner and date.
std::vector<OutboxRequest> ListOutbox(Company& company, const OutboxFilter& filter = {});
OutboxRequest ShowOutbox(Company& company, const standalone::RequestId& request,
                         const std::optional<Partner>& partner = {});

struct LeftOut {
  OutboxRequest request;
  Refusal refusal;
};
struct SentRequests {
  std::vector<OutboxRequest> sent;
  std::vector<LeftOut> left;  // as they were
};

// Makes the proposals of entered lines with partners whose relation is established, each in a unit of work of its own:
// of all that were entered after the pairing, but what the partner may have been sent before by a request that these
// books lost, or of those that are named, whatever they are and whenever they were entered. They leave with
// the next letters. Needs the right to modify transactions of their types.
SentRequests SendRequests(Company& company, const RequestSelection& selection = {});

// Asks the partner not to accept a request that was sent. What the partner has decided stands. Needs the right to
// modify transactions of its type.
OutboxRequest WithdrawRequest(Company& company, const standalone::RequestId& request,
                              const std::optional<Partner>& partner = {});

// Tells the partner something about a request that was sent, such as what it disputes. Needs the right to view
// transactions of its type.
OutboxRequest NoteOnOwnRequest(Company& company, const standalone::RequestId& request,
                               const standalone::RemarkText& text, const std::optional<Partner>& partner = {});

}  // namespace desk
