#include "partners/Books.h"

#include <array>
#include <chrono>

#include "standalone/books/AuditTable.h"
#include "standalone/storage/Database.h"

namespace partners {

namespace {

constexpr const char* kFacts =
    "SELECT p.pairing_id, f.body, f.signature, f.origin <> 'partner', f.set_aside = '' FROM exchange_fact f "
    "JOIN exchange_pairing p ON p.id = f.pairing_id ORDER BY f.hash";
constexpr const char* kRows =
    "SELECT coalesce(p.pairing_id, ''), m.request_id, l.amount, m.state, m.txn_id, "
    "  m.txn_type <> 8 OR EXISTS (SELECT 1 FROM me_own_request o WHERE o.target_id = m.target_id), "
    "  m.txn_type, coalesce(p.partner_name, '') "
    "FROM me_transaction m JOIN txn_line l ON l.id = m.target_id "
    "LEFT JOIN exchange_pairing p ON p.relation_id = m.relation_id AND p.state <> 'removed' ORDER BY m.id";
constexpr const char* kRejections =
    "SELECT p.pairing_id, r.request_id FROM me_rejected_transaction r "
    "JOIN exchange_pairing p ON p.relation_id = r.relation_id AND p.state <> 'removed'";
constexpr const char* kInbox =
    "SELECT p.pairing_id, i.request_id, i.state, i.mark, coalesce(i.txn_id, 0), "
    "  coalesce((SELECT -sum(l.amount) FROM txn_line l JOIN me_relation r ON r.id = p.relation_id "
    "    WHERE l.txn_id = i.txn_id AND l.account_id = r.due_to_account_id), 0) "
    "FROM exchange_inbox i JOIN exchange_pairing p ON p.id = i.pairing_id ORDER BY i.id";
constexpr std::array kChanging{
    "SELECT hex(hash) || ' ' || shown || ' ' || set_aside FROM exchange_fact ORDER BY pairing_id, hash",
    "SELECT word || ' ' || is_echoed || ' ' || their_word FROM exchange_carrying ORDER BY pairing_id",
    "SELECT their_summary || ' ' || owes_reply || ' ' || telling || ' ' || worked_through FROM exchange_carrying "
    "ORDER BY pairing_id",
    "SELECT request_id || ' ' || state || ' ' || mark FROM exchange_inbox ORDER BY id",
    "SELECT request_id || ' ' || mark FROM exchange_outbox ORDER BY pairing_id, request_id",
    "SELECT request_id || ' ' || state FROM me_transaction ORDER BY id",
    "SELECT CAST(count(*) AS TEXT) FROM txn",
};

}  // namespace

Books::Books(const std::filesystem::path& file) : file_(file, std::chrono::seconds(5)) {}

std::map<std::string, std::vector<HeldFact>> Books::Facts() {
  std::map<std::string, std::vector<HeldFact>> facts;
  file_.ForEachRow(kFacts, [&facts](const standalone::Rows& row) {
    facts[std::string(row.Text(0))].push_back(
        {.fact = exchange::Fact(row.Bytes(1), row.Bytes(2)), .isOwn = row.Bool(3), .isApplied = row.Bool(4)});
  });
  return facts;
}

std::vector<RequestRow> Books::Rows() {
  std::vector<RequestRow> rows;
  file_.ForEachRow(kRows, [&rows](const standalone::Rows& row) {
    rows.push_back({.pairing = std::string(row.Text(0)),
                    .request = std::string(row.Text(1)),
                    .amount = row.Int64(2),
                    .state = row.Int16(3),
                    .txnId = row.Int32(4),
                    .isOwn = row.Bool(5),
                    .type = row.Int16(6),
                    .partner = std::string(row.Text(7))});
  });
  return rows;
}

std::set<std::pair<std::string, std::string>> Books::Rejections() {
  std::set<std::pair<std::string, std::string>> rejections;
  file_.ForEachRow(kRejections, [&rejections](const standalone::Rows& row) {
    rejections.emplace(std::string(row.Text(0)), std::string(row.Text(1)));
  });
  return rejections;
}

std::vector<InboxRow> Books::Inbox() {
  std::vector<InboxRow> rows;
  file_.ForEachRow(kInbox, [&rows](const standalone::Rows& row) {
    rows.push_back({.pairing = std::string(row.Text(0)),
                    .request = std::string(row.Text(1)),
                    .state = *standalone::InboxStateOf(row.Text(2)),
                    .mark = std::string(row.Text(3)),
                    .txnId = row.Int32(4),
                    .owed = row.Int64(5)});
  });
  return rows;
}

std::string Books::Changing() {
  std::string all;
  for (const char* sql : kChanging) {
    for (const std::string& text : Texts(sql)) all.append(text).append("\n");
  }
  return all;
}

std::vector<std::string> Books::Texts(const char* sql) {
  std::vector<std::string> texts;
  file_.ForEachRow(sql, [&texts](const standalone::Rows& row) { texts.emplace_back(row.Text(0)); });
  return texts;
}

std::string Books::Key() {
  return Texts("SELECT lower(hex(public_key)) FROM exchange_own_key ORDER BY signs, id").back();
}

std::optional<std::int64_t> Books::TrailBreak() {
  const standalone::UnitOfWork work(file_, standalone::Access::kRead);
  return standalone::AuditTable(file_).Check().breakAt;
}

}  // namespace partners
