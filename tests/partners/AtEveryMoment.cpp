#include "partners/AtEveryMoment.h"

#include <algorithm>

#include "partners/Holding.h"
#include "standalone/values/States.h"

namespace partners {

namespace {

using exchange::Outcome;
using standalone::InboxState;
using standalone::TransactionState;

constexpr const char* kUnbalanced =
    "SELECT 'the lines of transaction ' || txn_id || ' sum to ' || sum(amount) FROM txn_line "
    "GROUP BY txn_id HAVING sum(amount) <> 0";
constexpr const char* kBroken = "SELECT 'a row of ' || \"table\" || ' refers to nothing' FROM pragma_foreign_key_check";

class Looking {
 public:
  Looking(const std::string& company, Books& books)
      : company_(company), rows_(books.Rows()), inbox_(books.Inbox()), held_(HeldRequests(books)) {
    for (const char* sql : {kUnbalanced, kBroken}) {
      for (const std::string& what : books.Texts(sql)) Complain(what);
    }
    rejections_ = books.Rejections();
  }

  void Look() const {
    for (const RequestRow& row : rows_) {
      if (row.isOwn) {
        LookAtOwn(row);
      } else {
        LookAtBooked(row);
      }
    }
    for (const InboxRow& row : inbox_) LookAtInbox(row);
  }

 private:
  [[noreturn]] void Complain(const std::string& what) const { throw Violation(company_ + ": " + what); }

  const HeldRequest* Find(const std::string& pairing, const std::string& request, bool isOwn) const {
    const auto found = held_.find({.pairing = pairing, .request = request, .isOwn = isOwn});
    return found == held_.end() ? nullptr : &found->second;
  }

  // What was closed may never have left.
  void LookAtOwn(const RequestRow& row) const {
    const auto state = static_cast<TransactionState>(row.state);
    if (row.pairing.empty() || state == TransactionState::kEntered || state == TransactionState::kClosed) return;
    const HeldRequest* held = Find(row.pairing, row.request, true);
    if (held == nullptr || held->proposals.empty()) {
      Complain("request " + row.request + " is in state " + std::to_string(row.state) + " without a proposal");
    }
    if (state == TransactionState::kEstablished && held->Outcome() != Outcome::kAccepted) {
      Complain("request " + row.request + " is established and was not accepted");
    }
    if (state == TransactionState::kCameBack && held->answers.empty()) {
      Complain("request " + row.request + " came back without an answer");
    }
  }

  void LookAtBooked(const RequestRow& row) const {
    const auto isSame = [&row](const RequestRow& other) {
      return !other.isOwn && other.pairing == row.pairing && other.request == row.request;
    };
    if (std::ranges::count_if(rows_, isSame) > 1) Complain("request " + row.request + " is booked more than once");
    if (rejections_.contains({row.pairing, row.request})) {
      Complain("request " + row.request + " is booked and rejected");
    }
    const HeldRequest* held = Find(row.pairing, row.request, false);
    if (held == nullptr || held->proposals.empty()) return;
    // Restored books keep what a partner tells and do not apply it until they have compared.
    const bool isApplied = std::ranges::any_of(
        inbox_, [&row](const InboxRow& known) { return known.pairing == row.pairing && known.request == row.request; });
    if (!isApplied) return;
    const bool isSameAmount = std::ranges::any_of(
        held->proposals, [&row](const auto& proposal) { return proposal.second.amount == row.amount; });
    if (isSameAmount && held->Outcome() != Outcome::kAccepted) {
      Complain("request " + row.request + " is booked and was not answered as accepted");
    }
  }

  static std::optional<Outcome> DecidedAs(InboxState state) {
    switch (state) {
      case InboxState::kNew:
      case InboxState::kHeld:
        return std::nullopt;
      case InboxState::kAccepted:
      case InboxState::kToBookAgain:
        return Outcome::kAccepted;
      case InboxState::kRejected:
        return Outcome::kRejected;
      case InboxState::kRefused:
        return Outcome::kRefused;
      case InboxState::kWithdrawn:
        return Outcome::kWithdrawn;
    }
    return std::nullopt;
  }

  void LookAtInbox(const InboxRow& row) const {
    const HeldRequest* held = Find(row.pairing, row.request, false);
    if (held == nullptr || held->proposals.empty()) {
      Complain("request " + row.request + " is in the inbox without a proposal");
    }
    if (held->Outcome() != DecidedAs(row.state)) {
      Complain("request " + row.request + " is " + std::string(NameOf(row.state)) + " in the inbox and was answered " +
               (held->Outcome() ? std::string(exchange::WordOf(*held->Outcome())) : "not at all"));
    }
    if (row.state == InboxState::kAccepted) LookAtAccepted(row, *held);
    if (row.state == InboxState::kNew || row.state == InboxState::kHeld) LookAtWaiting(row, *held);
  }
  void LookAtWaiting(const InboxRow& row, const HeldRequest& held) const {
    if (held.isWithdrawn) Complain("request " + row.request + " waits although it was withdrawn");
    if (held.proposals.size() > 1) return;
    const std::optional<exchange::EarlierLink>& earlier = held.proposals.begin()->second.earlier;
    const bool takesBack = earlier && earlier->how == exchange::EarlierRequest::kReversed;
    const bool isHeldRightly = takesBack && !IsBooked(row.pairing, earlier->request);
    if (isHeldRightly != (row.state == InboxState::kHeld)) {
      Complain("request " + row.request + " is " + std::string(NameOf(row.state)) + ", and what it takes back is " +
               (isHeldRightly ? "not booked" : "booked, or nothing"));
    }
  }
  bool IsBooked(const std::string& pairing, const std::string& request) const {
    return std::ranges::any_of(
        rows_, [&](const RequestRow& row) { return !row.isOwn && row.pairing == pairing && row.request == request; });
  }
  void LookAtAccepted(const InboxRow& row, const HeldRequest& held) const {
    const bool isOfTheAmount = std::ranges::any_of(
        held.proposals, [&row](const auto& proposal) { return proposal.second.amount == row.owed; });
    if (!isOfTheAmount) {
      Complain("request " + row.request + " was accepted with an entry of " + std::to_string(row.owed));
    }
  }

  const std::string& company_;
  std::vector<RequestRow> rows_;
  std::vector<InboxRow> inbox_;
  std::map<RequestName, HeldRequest> held_;
  std::set<std::pair<std::string, std::string>> rejections_;
};

}  // namespace

void RequireSound(const std::string& company, Books& books) {
  Looking(company, books).Look();
}

}  // namespace partners
