#include "standalone/books/LinkTable.h"

#include <array>
#include <string_view>
#include <utility>

#include "standalone/values/Errors.h"

namespace standalone {

namespace {

constexpr std::array<std::pair<LinkKind, std::string_view>, 3> kKinds{
    {{LinkKind::kReverses, "reverses"}, {LinkKind::kCorrects, "corrects"}, {LinkKind::kMoves, "moves"}}};

std::string_view TextOf(LinkKind kind) {
  for (const auto& [known, text] : kKinds) {
    if (known == kind) return text;
  }
  return {};
}

LinkKind KindOf(std::string_view stored) {
  for (const auto& [kind, text] : kKinds) {
    if (text == stored) return kind;
  }
  throw CompanyFileError("The company file is damaged: it has a link of an unknown kind.");
}

}  // namespace

LinkTable::LinkTable(Database& database)
    : insert_(database, Writes::kBookings, "INSERT INTO txn_link (txn_id, kind, earlier_txn_id) VALUES (?1, ?2, ?3)"),
      of_(database,
          "SELECT txn_id, kind, earlier_txn_id FROM txn_link WHERE txn_id = ?1 OR earlier_txn_id = ?1 "
          "ORDER BY txn_id, kind"),
      reversal_(
          database,
          "SELECT txn_id FROM txn_link AS reversal WHERE earlier_txn_id = ?1 AND kind = 'reverses' AND NOT EXISTS "
          "(SELECT 1 FROM txn_link WHERE earlier_txn_id = reversal.txn_id AND kind = 'reverses')"),
      later_(database, "SELECT 1 FROM txn_link WHERE earlier_txn_id = ?1 LIMIT 1") {}

void LinkTable::Add(const TransactionLink& link) {
  insert_.Run(link.txnId, TextOf(link.kind), link.earlierTxnId);
}

std::vector<TransactionLink> LinkTable::Of(std::int32_t txnId) {
  std::vector<TransactionLink> links;
  for (Rows rows = of_.Query(txnId); rows.Step();) {
    links.push_back({.txnId = rows.Int32(0), .kind = KindOf(rows.Text(1)), .earlierTxnId = rows.Int32(2)});
  }
  return links;
}

std::optional<std::int32_t> LinkTable::ReversalOf(std::int32_t txnId) {
  Rows rows = reversal_.Query(txnId);
  if (!rows.Step()) return std::nullopt;
  return rows.Int32(0);
}

bool LinkTable::HasLater(std::int32_t txnId) {
  return later_.Query(txnId).Step();
}

}  // namespace standalone
