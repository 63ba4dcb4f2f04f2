#include "standalone/desk/json/Json.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

Json JsonOf(const AuditedChange& change) {
  return {{"field", change.field}, {"before", OrNull(change.before)}, {"after", OrNull(change.after)}};
}

}  // namespace

Json JsonOf(const AuditedDeed& deed) {
  Json changes = Json::array();
  for (const AuditedChange& change : deed.changes) changes.push_back(JsonOf(change));
  return {{"number", deed.number},
          {"time", standalone::FormatUtc(deed.at)},
          {"clockSetTo", deed.clock.empty() ? Json() : Json(deed.clock)},
          {"user", deed.user.empty() ? Json() : Json(deed.user)},
          {"systemUser", deed.systemUser},
          {"action", deed.action},
          {"subject", deed.subject},
          {"firstTransaction", OrNull(deed.firstTxnId)},
          {"lastTransaction", OrNull(deed.lastTxnId)},
          {"changes", std::move(changes)}};
}

Json JsonOf(const AuditVerdict& verdict) {
  return {{"whole", !verdict.breakAt.has_value()},
          {"lines", verdict.lines},
          {"head", verdict.head},
          {"breakAt", OrNull(verdict.breakAt)}};
}

Json JsonOf(const BackedUp& made) {
  return {{"file", standalone::PathText(made.file)},
          {"bytes", made.bytes},
          {"auditLines", made.auditLines},
          {"head", made.head}};
}

Json JsonOf(const Restored& done) {
  return {{"file", standalone::PathText(done.file)},
          {"auditLines", done.auditLines},
          {"head", done.head},
          {"auditLinesGivenUp", done.givenUp},
          {"movedAside", done.aside.empty() ? Json() : Json(standalone::PathText(done.aside))}};
}

Json JsonOf(const ExportedJournal& exported) {
  return {{"file", standalone::PathText(exported.file)},
          {"bytes", exported.bytes},
          {"accounts", exported.accounts},
          {"transactions", exported.transactions},
          {"lines", exported.lines}};
}

}  // namespace desk
