#include "standalone/desk/Audit.h"

#include "standalone/books/AuditTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/LocalTimes.h"
#include "standalone/desk/inside/Work.h"

namespace desk {

namespace {

constexpr const char* kTheTrail = "the audit trail";

bool Holds(const Period& period, DateType32 day) {
  return (period.From() == NullDate() || period.From().Compare(day) <= 0) &&
         (period.To() == NullDate() || period.To().Compare(day) >= 0);
}

AuditedDeed AuditedDeedOf(const standalone::AuditLine& line) {
  const AuditedDeed::Moment at{std::chrono::milliseconds(line.at)};
  AuditedDeed deed{.number = line.number,
                   .at = at,
                   .localTime = LocalTimeAt(std::chrono::time_point_cast<platform::Clock::TimePoint::duration>(at)),
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

}  // namespace

std::vector<AuditedDeed> ListAudit(Company& company, const AuditQuery& query) {
  Work work(company.Opened(), UseCase::kReadAudit);
  std::vector<AuditedDeed> deeds;
  work.Read([&] {
    work.RequireAdministratorOrAccountant(kTheTrail);
    const standalone::AuditFilter filter{.user = query.user, .action = query.action, .txnId = query.txnId};
    work.Host().Audit().ForEach(filter, [&](const standalone::AuditLine& line) {
      AuditedDeed deed = AuditedDeedOf(line);
      if (Holds(query.period, deed.localTime.day)) deeds.push_back(std::move(deed));
    });
  });
  return deeds;
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
