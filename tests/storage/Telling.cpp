#include "tests/storage/Telling.h"

#include <sstream>

#include "MultiEntity/MultiEntityDriver.h"

namespace standalone {

namespace {

// Rows as lines, their columns parted by bars.
class Lines {
 public:
  explicit Lines(std::ostringstream& out) : out_(out) {}

  template <typename First, typename... Rest>
  void Add(const char* kind, const First& first, const Rest&... rest) {
    out_ << kind << ": " << first;
    ((out_ << '|' << rest), ...);
    out_ << '\n';
  }

 private:
  std::ostringstream& out_;
};

void TellSettings(StandaloneHost& host, Lines& lines) {
  const Settings& settings = host.Settings().Get();
  lines.Add("company", settings.companyName, settings.homeCurrency, settings.multiCurrency, settings.sampleFile,
            settings.accountantsCopy);
  Statement preferences(host.Data(), "SELECT key, value FROM preference ORDER BY key");
  for (Rows rows = preferences.Query(); rows.Step();) lines.Add("preference", rows.Text(0), rows.Text(1));
}

void TellUsers(StandaloneHost& host, Lines& lines) {
  for (const User& user : host.Users().List()) {
    lines.Add("user", user.name, user.administrator, user.accountant);
    for (const FeatureRight& right : user.featureRights) lines.Add("  right", FeatureRightText(right));
    for (const ListRight& right : user.listRights) lines.Add("  right", ListRightText(right));
  }
}

void TellLists(StandaloneHost& host, Lines& lines) {
  for (const Account& account : host.Accounts().List(/*withDeleted=*/true)) {
    lines.Add("account", account.id, account.parentId, account.fullName, account.type, account.specialKind,
              account.deleted);
  }
  for (const Name& name : host.Names().List()) {
    lines.Add("name", name.id, name.parentId, name.fullName, NameKindText(name.kind));
  }
}

void TellTransactions(StandaloneHost& host, Lines& lines) {
  Statement headers(host.Data(),
                    "SELECT id, type, date, name_id, memo, posted, partner_confirmed FROM txn ORDER BY id");
  Statement entries(host.Data(), "SELECT id, account_id, amount, memo FROM txn_line WHERE txn_id = ?1 ORDER BY id");
  for (Rows header = headers.Query(); header.Step();) {
    lines.Add("transaction", header.Int64(0), header.Int64(1), header.Int64(2), header.Int64(3), header.Text(4),
              header.Bool(5), header.Bool(6));
    for (Rows line = entries.Query(header.Int64(0)); line.Step();) {
      lines.Add("  line", line.Int64(0), line.Int64(1), line.Int64(2), line.Text(3));
    }
  }
  // Numbers that were given once are not given again.
  Statement numbers(host.Data(),
                    "SELECT name, seq FROM sqlite_sequence WHERE name IN ('account', 'name', 'txn', 'txn_line', "
                    "'me_relation', 'me_transaction', 'me_rejected_transaction', 'user') ORDER BY name");
  for (Rows rows = numbers.Query(); rows.Step();) lines.Add("last number", rows.Text(0), rows.Int64(1));
}

void TellRelations(Lines& lines) {
  std::vector<DBMultiEntityRelation> relations;
  lines.Add("relations", MultiEntityDriver::GetRelationsList(relations));
  for (const DBMultiEntityRelation& row : relations) {
    lines.Add("relation", row.relationId, row.realmId, row.partnerName, row.relationType, row.state, row.createdAt,
              row.changedAt, row.revision, row.dueFromAccountId, row.dueToAccountId);
  }
}

void TellIntercompanyLines(Lines& lines) {
  std::vector<METxnInfo> listed;
  lines.Add("intercompany lines",
            MultiEntityDriver::GetListOfTxnTargetEntries(listed, DateType32(2000, 1, 1), DateType32(2999, 12, 31)));
  for (const METxnInfo& line : listed) {
    lines.Add("intercompany line", line.txnId, line.targetId, line.txnType, line.state, line.realmId.c_str(),
              line.partnerName.c_str(), line.requestId.c_str(), line.amount.c_str(), line.currencyCode.c_str(),
              line.txnName.c_str(), line.billCheckAccountName.c_str(), line.liabilityAccountName.c_str(),
              line.entryAccountName.c_str(), line.txnDate.c_str());
  }
}

void TellRejected(Lines& lines) {
  std::vector<MERejectedTxnInfo> rejected;
  lines.Add("rejected", MultiEntityDriver::GetAllRejectedTransaction(rejected));
  for (const MERejectedTxnInfo& row : rejected) {
    lines.Add("rejected", row.txnType, row.realmId.c_str(), row.requestId.c_str(), row.amount.c_str(),
              row.partnerTxnId.c_str());
  }
}

// What a query answers, a line for each row.
void TellRows(StandaloneHost& host, Lines& lines, const char* kind, const std::string& columns,
              const std::string& from) {
  const std::string sql = "SELECT json_array(" + columns + ") FROM " + from;
  Statement query(host.Data(), sql.c_str());
  for (Rows rows = query.Query(); rows.Step();) lines.Add(kind, rows.Text(0));
}

}  // namespace

std::string Tell(StandaloneHost& host) {
  std::ostringstream text;
  Lines lines(text);
  host.Request(Access::kRead, [&] {
    TellSettings(host, lines);
    TellUsers(host, lines);
    TellLists(host, lines);
    TellTransactions(host, lines);
    TellRelations(lines);
    TellIntercompanyLines(lines);
    TellRejected(lines);
  });
  return text.str();
}

std::string TellOfTheDesk(StandaloneHost& host) {
  std::ostringstream text;
  Lines lines(text);
  host.Request(Access::kRead, [&] {
    TellRows(host, lines, "closing date", "closing_date", "company");
    TellRows(host, lines, "account number", "id, number", "account WHERE number <> '' ORDER BY id");
    TellRows(host, lines, "document", "id, document_number", "txn WHERE document_number <> '' ORDER BY id");
    TellRows(host, lines, "attachment", "txn_id, reference", "txn_attachment ORDER BY id");
    TellRows(host, lines, "link", "txn_id, kind, earlier_txn_id", "txn_link ORDER BY txn_id, kind");
    TellRows(host, lines, "own request", "target_id, names, earlier_target_id", "me_own_request ORDER BY target_id");
    TellRows(host, lines, "own key", "hex(public_key)", "exchange_own_key ORDER BY id");
    TellRows(host, lines, "pairing",
             "id, pairing_id, invited_by_us, state, partner_name, partner_realm, hex(partner_key), relation_id, "
             "due_from_account_id, due_to_account_id, folder, first_txn_id, booked_up_to",
             "exchange_pairing ORDER BY id");
    TellRows(host, lines, "fact", "pairing_id, hex(hash), origin, kind, name, names, month, shown, set_aside",
             "exchange_fact ORDER BY hash");
    TellRows(host, lines, "inbox", "pairing_id, request_id, hex(proposal), state, mark, txn_id",
             "exchange_inbox ORDER BY request_id");
    TellRows(host, lines, "outbox", "pairing_id, request_id, hex(proposal), target_id, mark",
             "exchange_outbox ORDER BY request_id");
    TellRows(host, lines, "rule", "id, pairing_id, name, hint, memo, account_id, name_id, learned",
             "exchange_rule ORDER BY id");
  });
  return text.str();
}

}  // namespace standalone
