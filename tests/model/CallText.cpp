#include "model/CallText.h"

#include <cstdio>

namespace model::text {

std::string Of(std::string_view text) {
  std::string quoted = "\"";
  quoted += text;
  quoted += '"';
  return quoted;
}

std::string Of(DateType32 date) {
  char read[32];
  std::snprintf(read, sizeof read, "%04d-%02d-%02d", date.GetYear(), date.GetMonth(), date.GetDay());
  return read;
}

std::string Of(const DBMultiEntityRelation& row) {
  return "relation{" + Of(row.relationId) + ' ' + OfField(row.realmId) + ' ' + OfField(row.partnerName) + " type " +
         Of(row.relationType) + " state " + Of(row.state) + " revision " + Of(row.revision) + ' ' + Of(row.createdAt) +
         '-' + Of(row.changedAt) + " from " + Of(row.dueFromAccountId) + " to " + Of(row.dueToAccountId) + '}';
}

std::string Of(const DBMultiEntityTransaction& row) {
  return "transaction{" + Of(row.txnId) + '/' + Of(row.targetId) + " relation " + Of(row.relationId) + ' ' +
         OfField(row.requestId) + " type " + Of(row.txnType) + " state " + Of(row.state) + '}';
}

std::string Of(const DBMultiEntityRejectedTxnReceiver& row) {
  return "rejected{" + OfField(row.requestId) + " type " + Of(row.txnType) + " relation " + Of(row.relationId) + ' ' +
         OfField(row.amount) + ' ' + OfField(row.partnerTxnId) + '}';
}

}  // namespace model::text
