#include "standalone/desk/Audit.h"

#include <array>
#include <map>
#include <set>
#include <utility>

#include "standalone/books/AuditTable.h"
#include "standalone/books/UserTable.h"
#include "standalone/desk/AuditedDeeds.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LocalTimes.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

constexpr const char* kTheTrail = "the audit trail";

// What posts or removes transactions with a link to an earlier one.
constexpr std::array kDeedsWithLinks{"transaction.reverse", "transaction.remove", "bill.correct",
                                     "check.correct",       "entry.correct",      "journal.move"};

struct Link {
  standalone::TransactionRange later;
  std::int32_t earlier = 0;
};

void AddLinksIn(const standalone::AuditLine& line, std::vector<Link>& links) {
  if (!line.transactions) return;
  for (const standalone::AuditChange& change : line.changes) {
    if (!IsLink(change.field)) continue;
    const std::optional<std::int32_t> earlier =
        standalone::ParseRecordNumber(change.after ? *change.after : change.before.value_or(""));
    if (earlier) links.push_back({.later = *line.transactions, .earlier = *earlier});
  }
}

std::vector<Link> LinksInTheTrail(Work& work) {
  std::vector<Link> links;
  for (const char* const action : kDeedsWithLinks) {
    work.Host().Audit().ForEach({.user = {}, .action = action, .txnId = {}},
                                [&](const standalone::AuditLine& line) { AddLinksIn(line, links); });
  }
  return links;
}

bool IsAnyOf(const std::set<std::int32_t>& txnIds, const Link& link) {
  const auto later = txnIds.lower_bound(link.later.first);
  return txnIds.contains(link.earlier) || (later != txnIds.end() && *later <= link.later.last);
}

// The transaction itself among them.
std::set<std::int32_t> LinkedTo(Work& work, std::int32_t txnId) {
  std::set<std::int32_t> linked{txnId};
  const std::vector<Link> links = LinksInTheTrail(work);
  for (std::size_t known = 0; known != linked.size();) {
    known = linked.size();
    for (const Link& link : links) {
      if (!IsAnyOf(linked, link)) continue;
      linked.insert(link.earlier);
      for (std::int32_t later = link.later.first; later <= link.later.last; ++later) linked.insert(later);
    }
  }
  return linked;
}

// Whoever is a user, or was one when the trail was written.
void RequireUserOfTheTrail(Work& work, const std::string& user) {
  if (work.Host().Users().Find(user)) return;
  bool isInTheTrail = false;
  work.Host().Audit().ForEach({.user = user, .action = {}, .txnId = {}},
                              [&](const standalone::AuditLine&) { isInTheTrail = true; });
  if (!isInTheTrail) work.Host().Users().Require(user);
}

}  // namespace

bool IsOfPeriod(const AuditedDeed& deed, const Period& period) noexcept {
  const DateType32 day = deed.localTime.day;
  return (period.From() == NullDate() || period.From().Compare(day) <= 0) &&
         (period.To() == NullDate() || period.To().Compare(day) >= 0);
}

AuditedDeed AuditedDeedOf(const standalone::AuditLine& line) {
  AuditedDeed deed{.number = line.number,
                   .at = AuditedDeed::Moment(std::chrono::milliseconds(line.at)),
                   .localTime = LocalTimeAt(line.at),
                   .clock = line.clock,
                   .user = line.user,
                   .systemUser = line.systemUser,
                   .action = line.action,
                   .subject = line.subject,
                   .firstTxnId = {},
                   .lastTxnId = {},
                   .changes = {}};
  if (line.transactions) {
    deed.firstTxnId = line.transactions->first;
    deed.lastTxnId = line.transactions->last;
  }
  for (const standalone::AuditChange& change : line.changes) {
    deed.changes.push_back({change.field, change.before, change.after});
  }
  return deed;
}

std::vector<AuditedDeed> ListAudit(Company& company, const AuditQuery& query) {
  Work work(company.Opened(), UseCase::kReadAudit);
  std::map<std::int64_t, AuditedDeed> deeds;
  const auto take = [&](const standalone::AuditLine& line) {
    AuditedDeed deed = AuditedDeedOf(line);
    if (IsOfPeriod(deed, query.period)) deeds.emplace(line.number, std::move(deed));
  };
  work.Read([&] {
    work.RequireAdministratorOrAccountant(kTheTrail);
    if (!query.user.empty()) RequireUserOfTheTrail(work, query.user);
    standalone::AuditFilter filter{.user = query.user, .action = query.action, .txnId = {}};
    if (!query.txnId) return work.Host().Audit().ForEach(filter, take);
    for (const std::int32_t txnId : LinkedTo(work, *query.txnId)) {
      filter.txnId = txnId;
      work.Host().Audit().ForEach(filter, take);
    }
  });
  std::vector<AuditedDeed> inOrder;
  inOrder.reserve(deeds.size());
  for (auto& [number, deed] : deeds) inOrder.push_back(std::move(deed));
  return inOrder;
}

AuditVerdict VerifyAudit(Company& company) {
  Work work(company.Opened(), UseCase::kReadAudit);
  return work.Read([&] {
    work.RequireAdministratorOrAccountant(kTheTrail);
    const standalone::AuditCheck check = work.Host().Audit().Check();
    return AuditVerdict{.lines = check.lines, .head = check.head, .breakAt = check.breakAt};
  });
}

}  // namespace desk
