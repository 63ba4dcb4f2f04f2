#include "standalone/books/OwnRequestTable.h"

#include <string_view>

namespace standalone {

namespace {

std::string_view TextOf(EarlierRequest::Kind kind) {
  return kind == EarlierRequest::Kind::kReverses ? "reverses" : "corrects";
}

}  // namespace

OwnRequestTable::OwnRequestTable(Database& database)
    : insert_(database, Writes::kBookings,
              "INSERT INTO me_own_request (target_id, names, earlier_target_id) "
              "VALUES (?1, nullif(?2, ''), nullif(?3, 0))"),
      has_(database, "SELECT 1 FROM me_own_request WHERE target_id = ?1"),
      earlier_(database,
               "SELECT names, earlier_target_id FROM me_own_request WHERE target_id = ?1 AND names IS NOT NULL"),
      later_(database, "SELECT target_id FROM me_own_request WHERE earlier_target_id = ?1 AND names = ?2") {}

void OwnRequestTable::Add(std::int32_t targetId, const std::optional<EarlierRequest>& earlier) {
  if (earlier) {
    insert_.Run(targetId, TextOf(earlier->kind), earlier->targetId);
  } else {
    insert_.Run(targetId, std::string_view(), 0);
  }
}

bool OwnRequestTable::Has(std::int32_t targetId) {
  return has_.Query(targetId).Step();
}

std::optional<EarlierRequest> OwnRequestTable::EarlierOf(std::int32_t targetId) {
  Rows rows = earlier_.Query(targetId);
  if (!rows.Step()) return std::nullopt;
  using Kind = EarlierRequest::Kind;
  return EarlierRequest{.kind = rows.Text(0) == TextOf(Kind::kReverses) ? Kind::kReverses : Kind::kCorrects,
                        .targetId = rows.Int32(1)};
}

std::optional<std::int32_t> OwnRequestTable::LaterOf(std::int32_t targetId, EarlierRequest::Kind kind) {
  Rows rows = later_.Query(targetId, TextOf(kind));
  if (!rows.Step()) return std::nullopt;
  return rows.Int32(0);
}

}  // namespace standalone
