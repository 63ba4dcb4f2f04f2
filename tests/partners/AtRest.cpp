#include "partners/AtRest.h"

#include <algorithm>
#include <map>
#include <set>

#include "partners/Books.h"
#include "partners/Carrying.h"
#include "partners/Holding.h"
#include "standalone/desk/Audit.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Reports.h"
#include "standalone/values/States.h"

namespace partners {

namespace {

using standalone::InboxState;
using standalone::TransactionState;

constexpr int kMostRounds = 12;

// What may still change, of all companies.
std::string Changing(Companies& companies) {
  std::string text;
  for (std::size_t who = 0; who < companies.Size(); ++who) text += Books(companies.FileOf(who)).Changing();
  return text;
}

// A request at its sender and at its receiver.
struct Sides {
  std::size_t sender = 0;
  std::size_t receiver = 0;
  std::optional<desk::OutboxRequest> sent;
  std::optional<desk::InboxRequest> got;
};

std::string Described(const std::string& request, const Sides& sides) {
  std::string text =
      "request " + request + " of " + kCompanies.at(sides.sender) + " to " + kCompanies.at(sides.receiver) + " is ";
  text += !sides.sent ? "unknown" : !sides.sent->state ? "lost" : standalone::MarkedStateName(*sides.sent->state);
  text += " there and ";
  text += sides.got ? std::string(standalone::NameOf(sides.got->state)) : "unknown";
  return text + " here";
}

bool Agree(InboxState inbox, TransactionState row) {
  switch (inbox) {
    case InboxState::kNew:
    case InboxState::kHeld:
      return row == TransactionState::kSent;
    case InboxState::kAccepted:
    case InboxState::kToBookAgain:
      return row == TransactionState::kEstablished;
    case InboxState::kRejected:
    case InboxState::kRefused:
      return row == TransactionState::kCameBack || row == TransactionState::kClosed;
    case InboxState::kWithdrawn:
      return row == TransactionState::kClosed;
  }
  return false;
}

class Agreement {
 public:
  Agreement(Companies& companies, bool hasRestores) : companies_(companies), hasRestores_(hasRestores) {}

  void Require() {
    RequireTheSameFacts();
    for (std::size_t who = 0; who < companies_.Size(); ++who) Gather(who);
    for (const auto& [name, sides] : requests_) RequireOneOutcome(name.second, sides);
    RequireTheSameTotals();
    for (std::size_t who = 0; who < companies_.Size(); ++who) RequireTheTrail(who);
  }

 private:
  void RequireTheSameFacts() {
    // Of each pairing, by company.
    std::map<std::string, std::map<std::size_t, std::map<exchange::Hash, std::string>>> held;
    for (std::size_t who = 0; who < companies_.Size(); ++who) {
      Books books(companies_.FileOf(who));
      for (const auto& [pairing, facts] : books.Facts()) {
        for (const HeldFact& fact : facts) {
          held[pairing][who][fact.fact.Id()] = fact.fact.What().kind + " " + fact.fact.What().name;
        }
      }
    }
    for (const auto& [pairing, sides] : held) {
      if (sides.size() != 2) throw Violation("a pairing is not one of two");
      RequireAllOf(*sides.begin(), *sides.rbegin());
      RequireAllOf(*sides.rbegin(), *sides.begin());
    }
  }
  using Side = std::pair<const std::size_t, std::map<exchange::Hash, std::string>>;
  static void RequireAllOf(const Side& one, const Side& other) {
    for (const auto& [hash, what] : one.second) {
      if (other.second.contains(hash)) continue;
      throw Violation(std::string(kCompanies.at(other.first)) + " does not hold what " + kCompanies.at(one.first) +
                      " does, " + what + " (" + std::to_string(other.second.size()) + " and " +
                      std::to_string(one.second.size()) + " facts)");
    }
  }

  // A request id is one of a sender to a receiver.
  Sides& Of(std::size_t sender, std::size_t receiver, const std::string& request) {
    Sides& sides = requests_[{{sender, receiver}, request}];
    sides.sender = sender;
    sides.receiver = receiver;
    return sides;
  }
  void Gather(std::size_t who) {
    desk::Company& company = companies_.Open(who);
    for (desk::OutboxRequest& sent : desk::ListOutbox(company, {.settled = true})) {
      if (!sent.isSent && !sent.isLost) continue;
      Sides& sides = Of(who, CompanyNamed(sent.partner), sent.requestId);
      sides.sent = std::move(sent);
    }
    for (desk::InboxRequest& got : desk::ListInbox(company, {.decided = true})) {
      Sides& sides = Of(CompanyNamed(got.partner), who, got.requestId);
      sides.got = std::move(got);
    }
  }

  static std::set<std::string> SaidOf(const std::vector<desk::Remark>& remarks, bool isByUs) {
    std::set<std::string> said;
    for (const desk::Remark& remark : remarks) {
      if (remark.isOurs == isByUs) said.insert(remark.id);
    }
    return said;
  }
  static void RequireTheSameRemarks(const std::string& request, const Sides& sides) {
    for (const bool isBySender : {true, false}) {
      if (SaidOf(sides.sent->remarks, isBySender) == SaidOf(sides.got->remarks, !isBySender)) continue;
      throw Violation("not the same is told of what was said: " + Described(request, sides));
    }
    const bool isDecided = sides.got->state != InboxState::kNew && sides.got->state != InboxState::kHeld;
    if (sides.sent->isDisputed != sides.got->isDisputed || (isDecided && sides.got->isDisputed)) {
      throw Violation("only one side calls it disputed: " + Described(request, sides));
    }
  }
  void RequireOneOutcome(const std::string& request, const Sides& sides) const {
    if (sides.sent && sides.got) RequireTheSameRemarks(request, sides);
    const bool isLost = sides.sent && sides.sent->isLost;
    if (isLost && hasRestores_ && sides.got) return;
    if (!sides.sent || !sides.sent->state || !sides.got || !Agree(sides.got->state, sides.sent->state->number)) {
      throw Violation(Described(request, sides));
    }
  }

  void RequireTheSameTotals() const {
    std::map<std::pair<std::size_t, std::size_t>, std::pair<std::int64_t, std::int64_t>> totals;
    std::map<std::size_t, std::vector<InboxRow>> inboxes;
    for (std::size_t who = 0; who < companies_.Size(); ++who) inboxes[who] = Books(companies_.FileOf(who)).Inbox();
    for (const auto& [name, sides] : requests_) {
      if (!sides.sent || !sides.sent->state || sides.got->state == InboxState::kToBookAgain) continue;
      auto& [dueFrom, dueTo] = totals[name.first];
      if (sides.sent->state->number == TransactionState::kEstablished) dueFrom += sides.sent->amount.minorUnits;
      for (const InboxRow& row : inboxes[sides.receiver]) {
        if (row.request == name.second && row.txnId != 0 && row.state == InboxState::kAccepted && sides.got->entry &&
            sides.got->entry->txnId == row.txnId) {
          dueTo += row.owed;
        }
      }
    }
    for (const auto& [pair, total] : totals) {
      if (total.first != total.second) {
        throw Violation(std::string(kCompanies.at(pair.first)) + " has " + std::to_string(total.first) +
                        " established with " + kCompanies.at(pair.second) + ", which has " +
                        std::to_string(total.second));
      }
    }
  }

  void RequireTheTrail(std::size_t who) const {
    const desk::AuditVerdict verdict = desk::VerifyAudit(companies_.Open(who));
    if (verdict.breakAt) {
      throw Violation(std::string(kCompanies.at(who)) + ": the audit trail breaks at " +
                      std::to_string(*verdict.breakAt));
    }
  }

  Companies& companies_;
  bool hasRestores_;
  std::map<std::pair<std::pair<std::size_t, std::size_t>, std::string>, Sides> requests_;
};

}  // namespace

// A letter that is set aside in one round is put again in the same one, at the soonest, and taken in the next.
void ComeToRest(Companies& companies) {
  std::string before = Changing(companies);
  int quiet = 0;
  for (int round = 0; round < kMostRounds; ++round) {
    std::size_t put = 0;
    for (std::size_t who = 0; who < companies.Size(); ++who) put += Carry(companies, who);
    std::string after = Changing(companies);
    quiet = put == 0 && after == before ? quiet + 1 : 0;
    if (quiet == 2) return;
    before = std::move(after);
  }
  throw Violation("after " + std::to_string(kMostRounds) +
                  " rounds of carrying something still changes, or letters are put");
}

void RequireAgreement(Companies& companies, bool hasRestores) {
  Agreement(companies, hasRestores).Require();
}

}  // namespace partners
