#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "MultiEntityHost/DateType32.h"
#include "standalone/desk/Journal.h"
#include "standalone/desk/results/Partner.h"
#include "standalone/desk/results/Refusal.h"
#include "standalone/desk/results/Remark.h"
#include "standalone/desk/results/RequestSelection.h"
#include "standalone/desk/results/Rule.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/InboxState.h"
#include "standalone/values/Money.h"

// What partners ask this company to book.
namespace desk {

class Company;

// The earlier request of the partner that this one is about.
struct EarlierOfPartner {
  bool reverses = false;  // takes it back; otherwise it stands in its place
  std::string requestId;
};

struct EntryOfRequest {
  std::int32_t txnId = 0;
  DateType32 day;
};

// A partner's request as its proposal tells it, and what has become of it here.
struct InboxRequest {
  std::string partner;  // as it is called here
  std::string realm;
  std::string requestId;
  std::int16_t type = 0;  // kTxnTypeBill, kTxnTypeCheck or kTxnTypeJournalEntry: what the partner entered
  DateType32 date;
  standalone::Money amount;  // positive: this company owes it
  std::string document;
  std::string name;
  std::string memo;
  std::string hint;  // the account to which the partner books such things
  std::optional<EarlierOfPartner> earlier = std::nullopt;
  standalone::InboxState state{};
  std::string mark;                                    // why a person has to look closely, as a sentence; mostly empty
  std::string reason;                                  // rejected, refused: why, if anything was said
  std::optional<EntryOfRequest> entry = std::nullopt;  // accepted: in these books
  std::optional<EntryOfRequest> entryBefore = std::nullopt;  // to be booked again: as the answer has it
  std::optional<Rule> rule = std::nullopt;                   // new, to be booked again: the one that fits
  std::string ruleMark{std::string()};                       // why none does although there are some; mostly empty
  std::vector<Remark> remarks{std::vector<Remark>()};        // in the order in which they came into these books
  bool isDisputed = false;                                   // by this company, which has not decided it
};

struct InboxFilter {
  std::optional<Partner> partner = std::nullopt;
  std::optional<standalone::InboxState> state = std::nullopt;
  bool decided = false;  // those, too, with which nothing is left to do; a state that is asked for is listed anyway
};

// As far as the user may see requests of their types, by partner and date.
std::vector<InboxRequest> ListInbox(Company& company, const InboxFilter& filter = {});
// Refused for one that there is not, and for one that several partners have when none is named.
InboxRequest ShowInbox(Company& company, const standalone::RequestId& request,
                       const std::optional<Partner>& partner = {});

// How requests are to be booked. What is left out is taken from the entry that a request takes back, for others from
// the proposal's own name; refused where that leaves a gap. By rule, the account and the name are those of the rule
// that fits each request; refused where none does.
struct RequestBooking {
  std::optional<std::variant<Existing, NewAccount>> expense = std::nullopt;
  std::optional<std::variant<Existing, NewVendor>> name = std::nullopt;
  std::optional<DateType32> date =
      std::nullopt;     // the proposal's own when left out; the first open day where that one is closed
  bool byRule = false;  // without an account and a name
};

struct BookedRequest {
  InboxRequest request;
  bool isDateMoved = false;                         // as the books are closed on the day that was meant
  std::optional<std::int32_t> rule = std::nullopt;  // by which it was booked
};
struct LeftRequest {
  InboxRequest request;
  Refusal refusal;
};
struct BookedRequests {
  std::vector<BookedRequest> booked;
  std::vector<LeftRequest> left;  // as they were
};

// Books requests that are new, and those that are to be booked again, with the relation's own due-to account, and
// answers them; each is a unit of work of its own. What a person says of a single request that is named, both account
// and name, is learned as a rule for those like it. Needs the right journal:create. Refused when nothing fits the
// selection.
BookedRequests AcceptRequests(Company& company, const RequestSelection& selection, const RequestBooking& booking);

struct RejectedRequests {
  std::vector<InboxRequest> rejected;
  std::vector<LeftRequest> left;
};

// Answers requests that are new or held with a rejection, each in a unit of work of its own; those of bills and checks
// stand among the rejections as well. Needs the right to view transactions of their types.
RejectedRequests RejectRequests(Company& company, const RequestSelection& selection, const standalone::Memo& reason);

// Tells the partner why a request that is new or held is not going to be booked as it is, without deciding it: it is
// booked by no rule and left out of selections from now on, until it is accepted or rejected by its name. Needs the
// right to view transactions of its type, like the one below.
InboxRequest DisputeRequest(Company& company, const standalone::RequestId& request,
                            const standalone::RemarkText& reason, const std::optional<Partner>& partner = {});
// Tells the partner something about a request, whatever has become of it.
InboxRequest NoteOnRequest(Company& company, const standalone::RequestId& request, const standalone::RemarkText& text,
                           const std::optional<Partner>& partner = {});

}  // namespace desk
