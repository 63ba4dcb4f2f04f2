#include "standalone/import/TransactionImport.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <set>

#include "standalone/company/StandaloneHost.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Amount.h"
#include "standalone/values/ListNames.h"
#include "standalone/values/Money.h"

namespace standalone {

namespace {

std::string RequestText(std::string_view requestId, std::string_view realm) {
  return "The request " + Quoted(requestId) + " of the partner " + Quoted(realm);
}

}  // namespace

TransactionImport::Columns::Columns(const CsvReader& rows)
    : transaction(rows, "transaction"),
      type(rows, "type"),
      date(rows, "date"),
      name(rows, "name"),
      memo(rows, "memo"),
      account(rows, "account"),
      amount(rows, "amount"),
      lineMemo(rows, "line_memo"),
      partnerRealm(rows, "partner_realm"),
      requestId(rows, "request_id"),
      state(rows, "state") {}

TransactionImport::TransactionImport(StandaloneHost& host, const CsvReader& rows, const ImportOptions& options,
                                     ImportResult& result, Faults& faults)
    : host_(host),
      rows_(rows),
      options_(options),
      result_(result),
      faults_(faults),
      columns_(rows),
      seenKeys_(host.Data()) {}

void TransactionImport::Begin() {
  const Settings& settings = host_.Settings().Get();
  currency_ = settings.homeCurrency;
  decimals_ = settings.decimals;
  closedThrough_ = settings.closingDate;
  seenKeys_.Begin();
}

void TransactionImport::TakeRow() {
  const std::string_view key = KeyOfRow();
  const bool followsLostRow = std::exchange(rowIsLost_, false);
  if (!open_.isOpen || open_.key != key) {
    Finish();
    Open(key, followsLostRow);
  }
  try {
    TakeIntoOpen();
  } catch (const InvalidInput& fault) {
    open_.faults.Add(rows_.Line(), fault.what());
    open_.isPartOnly = true;
  }
}

void TransactionImport::Finish() {
  if (!open_.isOpen) return;
  open_.isOpen = false;
  const Known known = Recognise();
  if (options_.skipKnown && known.requests != 0 && known.requests == open_.requests) {
    ++result_.passedOver;
    return;
  }
  if (known.requests != 0) RefuseKnown(known);
  RefuseRepeatedRequests();
  faults_.Add(open_.faults);
  if (!open_.isPartOnly) Close();
}

void TransactionImport::BreakOff() {
  if (open_.isOpen) faults_.Add(open_.faults);
}

// A row that cannot be told may have been one of the open transaction, or the first one of the next.
std::string_view TransactionImport::KeyOfRow() {
  try {
    rows_.RequireFields();
    return RequireText("The key transaction", rows_[columns_.transaction], 1, kListFullNameLength);
  } catch (const InvalidInput&) {
    rowIsLost_ = true;
    open_.isPartOnly = true;
    throw;
  }
}

void TransactionImport::Open(std::string_view key, bool followsLostRow) {
  open_.isOpen = true;
  open_.key = key;
  open_.line = rows_.Line();
  open_.hasHeader = false;
  open_.isPartOnly = followsLostRow;
  open_.lineCount = 0;
  open_.requests = 0;
  open_.sum = 0;
  open_.faults.Clear();
  const bool isFirst =
      seenKeys_.Add(key, {.line = static_cast<std::int64_t>(open_.line), .used = result_.transactions});
  if (!isFirst) RefuseApart();
  open_.awaitsHeader = isFirst && !(followsLostRow && rows_[columns_.type].empty());
}

// What was said of the first of its rows as a whole only followed from that.
void TransactionImport::RefuseApart() {
  open_.isPartOnly = true;
  const std::optional<SeenKeys::Before> before = seenKeys_.MetBefore(open_.key);
  if (!before) return;
  const auto line = static_cast<std::uint64_t>(before->line);
  std::string reason = "The rows of the transaction " + Quoted(open_.key) + " stand apart: lines " +
                       std::to_string(line) + " and " + std::to_string(open_.line) +
                       "; put the rows of one transaction together.";
  if (before->complaint) {
    faults_.ReplaceThatOfTheWhole(line, std::move(reason));
  } else {
    faults_.Add(line, std::move(reason));
  }
}

// The partner comes first, so that a transaction that is in the books is recognised whatever else its rows say.
void TransactionImport::TakeIntoOpen() {
  Line& line = NewLine();
  const bool isFirst = std::exchange(open_.awaitsHeader, false);
  const std::optional<std::string> fault = isFirst ? FaultOfHeader() : std::nullopt;
  TakePartner(line);
  if (fault) throw InvalidInput(*fault);
  if (!isFirst && open_.hasHeader) {
    RequireSame("type", columns_.type, open_.type);
    RequireSame("date", columns_.date, open_.date);
    RequireSame("name", columns_.name, open_.name);
    RequireSame("memo", columns_.memo, open_.memo);
  }
  TakeAmount(line);
}

// The header of a row with a bad partner holds for the rows behind it all the same.
std::optional<std::string> TransactionImport::FaultOfHeader() {
  try {
    TakeHeader();
    return std::nullopt;
  } catch (const InvalidInput& fault) {
    return fault.what();
  }
}

void TransactionImport::TakeHeader() {
  open_.type = rows_[columns_.type];
  open_.date = rows_[columns_.date];
  open_.name = rows_[columns_.name];
  open_.memo = RequireText("The memo", rows_[columns_.memo], 0, kMemoLength);
  open_.typeNumber = ParseTransactionType(open_.type);
  open_.day = ParseDate("The date", open_.date);
  open_.nameId = open_.name.empty() ? 0 : names_.Get(open_.name, [this] { return FindName(open_.name); });
  open_.hasHeader = true;
  RequireOpenBooks();
}

void TransactionImport::RequireOpenBooks() const {
  if (open_.day.Compare(closedThrough_) > 0) return;
  throw InvalidInput("The date " + Quoted(open_.date) + " is not after " + FormatIsoDate(closedThrough_) +
                     ", through which the books are closed; date it later, or have an administrator open them.");
}

void TransactionImport::RequireSame(const char* what, CsvReader::Column column, std::string_view first) const {
  const std::string_view repeated = rows_[column];
  if (repeated.empty() || repeated == first) return;
  throw InvalidInput("The " + std::string(what) + " " + Quoted(repeated) + " differs from " + Quoted(first) +
                     " in the first row of the transaction; leave it empty or repeat it.");
}

TransactionImport::Line& TransactionImport::NewLine() {
  if (open_.lineCount == open_.lines.size()) open_.lines.emplace_back();
  Line& line = open_.lines[open_.lineCount++];
  line.row = rows_.Line();
  line.relationId = 0;
  line.requestId.clear();
  return line;
}

void TransactionImport::TakePartner(Line& line) {
  const std::string_view realm = rows_[columns_.partnerRealm];
  const std::string_view request = rows_[columns_.requestId];
  const std::string_view state = rows_[columns_.state];
  if (realm.empty()) {
    if (request.empty() && state.empty()) return;
    throw InvalidInput("There is a request_id or a state, but no partner_realm; give all or none of them.");
  }
  line.relationId = relations_.Get(realm, [&] { return FindRelation(RequireRealmId(realm)); });
  line.realm = realm;
  if (!request.empty()) {
    line.requestId = RequireRequestId(request);
    ++open_.requests;
  }
  line.state = state.empty() ? TransactionState::kEntered : ParseOwnTransactionState(state);
  RequireLeftToTheExchange(line, request);
}

// What the partner knows of a request its letters tell, and nothing else.
void TransactionImport::RequireLeftToTheExchange(const Line& line, std::string_view request) {
  const std::int32_t pairing = livePairings_.Get(line.realm, [&] {
    const std::optional<Pairing> live = host_.Pairings().FindLiveOf(line.relationId);
    return live ? live->id : 0;
  });
  if (pairing == 0) return;
  if (line.state != TransactionState::kEntered) {
    throw InvalidInput("The state " + Quoted(StateName(line.state)) + " is one that the answers of the partner " +
                       Quoted(line.realm) + " give, with whom this company is paired; leave it empty.");
  }
  if (!host_.Inbox().FindOfRelation(line.relationId, request) && !host_.Outbox().Find(pairing, request)) return;
  throw InvalidInput(RequestText(request, line.realm) + " has come or gone by the exchange; leave it out.");
}

void TransactionImport::TakeAmount(Line& line) {
  const std::string_view text = rows_[columns_.amount];
  const std::optional<std::int64_t> amount = ParseAmount(text, decimals_);
  if (!amount) throw InvalidInput("The amount " + WhyNoAmount(text, currency_, decimals_) + ".");
  line.amount = *amount;
  line.memo = RequireText("The line memo", rows_[columns_.lineMemo], 0, kMemoLength);
  const std::string_view account = rows_[columns_.account];
  line.accountId = accounts_.Get(account, [&] { return FindAccount(account); });
  const std::optional<std::int64_t> sum = AddAmounts(open_.sum, *amount);
  if (!sum) {
    throw InvalidInput("The amount " + Quoted(text) + " brings the transaction " + Quoted(open_.key) +
                       " from a sum of " + FormatAmount(open_.sum, decimals_) + " beyond " +
                       FormatAmount(std::numeric_limits<std::int64_t>::max(), decimals_) +
                       "; divide it into several transactions.");
  }
  open_.sum = *sum;
}

TransactionImport::Known TransactionImport::Recognise() {
  Known known;
  for (std::size_t number = 0; open_.requests != 0 && number < open_.lineCount; ++number) {
    const Line& line = open_.lines[number];
    if (line.requestId.empty()) continue;
    DBMultiEntityTransaction row{};
    if (!host_.Intercompany().FindRequest(line.relationId, line.requestId, row)) continue;
    if (result_.transactions != 0 && row.txnId >= result_.transactionIds.first) {
      RefuseOfTwo(line, row.txnId);
      continue;
    }
    if (known.requests++ != 0) continue;
    known.line = &line;
    known.txnId = row.txnId;
  }
  return known;
}

void TransactionImport::Refuse(const Line& line, std::string reason) {
  open_.faults.Add(line.row, std::move(reason));
  open_.isPartOnly = true;
}

void TransactionImport::RefuseKnown(const Known& known) {
  std::string reason = RequestText(known.line->requestId, known.line->realm) +
                       " is in the books already, in transaction " + std::to_string(known.txnId);
  if (known.requests == open_.requests) {
    reason += "; leave the transaction " + Quoted(open_.key) +
              " out, or have those that are in the books passed over (--skip-known).";
  } else {
    reason += ", but the transaction " + Quoted(open_.key) +
              " has other requests that are not; make it a transaction of these alone.";
  }
  Refuse(*known.line, std::move(reason));
}

void TransactionImport::RefuseOfTwo(const Line& line, std::int32_t txnId) {
  std::string other;
  if (faults_.Shows(line.row)) {
    other = " in line " + std::to_string(seenKeys_.LineOfUsed(txnId - result_.transactionIds.first));
  }
  Refuse(line, RequestText(line.requestId, line.realm) + " belongs to the transaction that begins" + other +
                   " already; a request belongs to one transaction.");
}

// Bills and checks may have several lines of one request.
void TransactionImport::RefuseRepeatedRequests() {
  if (open_.requests < 2 || !open_.hasHeader || open_.typeNumber != kTxnTypeJournalEntry) return;
  std::set<std::pair<std::int32_t, std::string_view>> met;
  for (std::size_t number = 0; number < open_.lineCount; ++number) {
    const Line& line = open_.lines[number];
    if (line.requestId.empty() || met.emplace(line.relationId, line.requestId).second) continue;
    Refuse(line,
           RequestText(line.requestId, line.realm) +
               " belongs to another line of the journal entry already; a journal entry has one line of a request.");
  }
}

void TransactionImport::Close() {
  try {
    RequirePostable();
    Book();
    return;
  } catch (const InvalidInput& fault) {
    faults_.AddOfTheWhole(open_.line, fault.what());
  } catch (const ConstraintViolation& fault) {
    faults_.AddOfTheWhole(open_.line, fault.what());
  }
  seenKeys_.NoteComplaint(open_.key);
}

void TransactionImport::RequirePostable() const {
  if (open_.lineCount < 2) {
    throw InvalidInput("The transaction " + Quoted(open_.key) + " has one row only; it needs two or more.");
  }
  if (open_.sum != 0) {
    throw InvalidInput("The amounts of the transaction " + Quoted(open_.key) + " sum to " +
                       FormatAmount(open_.sum, decimals_) + "; debits and credits must sum to zero.");
  }
  if (open_.typeNumber == kTxnTypeJournalEntry && open_.lines[open_.lineCount - 1].relationId != 0) {
    throw InvalidInput("The last row of the journal entry " + Quoted(open_.key) +
                       " has a partner_realm; the row of the due-to account must follow it.");
  }
}

void TransactionImport::Book() {
  TransactionTable& transactions = host_.Transactions();
  const std::int32_t id = transactions.AddHeader(
      {.type = open_.typeNumber, .date = open_.day, .nameId = open_.nameId, .memo = open_.memo, .documentNumber = ""});
  if (result_.transactions == 0) result_.transactionIds.first = id;
  result_.transactionIds.last = id;
  ++result_.transactions;
  for (std::size_t number = 0; number < open_.lineCount; ++number) {
    const Line& line = open_.lines[number];
    const std::int32_t lineId =
        transactions.AddLine(id, {.accountId = line.accountId, .amount = line.amount, .memo = line.memo});
    ++result_.lines;
    if (line.relationId != 0) BookPartner(id, lineId, line);
  }
  transactions.Post(id);
}

// What a partner owes is entered here; what is owed to a partner is booked from its request.
bool TransactionImport::IsOwnRequest(const Line& line) {
  if (open_.typeNumber != kTxnTypeJournalEntry) return false;
  return line.accountId == dueFromAccounts_.Get(line.realm, [&] {
    DBMultiEntityRelation relation{};
    host_.Relations().FindById(line.relationId, relation);
    return relation.dueFromAccountId;
  });
}

void TransactionImport::BookPartner(std::int32_t txnId, std::int32_t lineId, const Line& line) {
  DBMultiEntityTransaction row{};
  row.txnId = txnId;
  row.relationId = line.relationId;
  row.targetId = lineId;
  std::ranges::copy(line.requestId, row.requestId);
  row.txnType = open_.typeNumber;
  row.state = static_cast<std::int16_t>(line.state);
  host_.Intercompany().Add(row);
  if (IsOwnRequest(line)) host_.OwnRequests().Add(lineId, std::nullopt);
  ++result_.intercompanyRows;
}

std::int32_t TransactionImport::FindAccount(std::string_view text) {
  const std::optional<Account> account = host_.Accounts().FindTyped(text);
  if (!account) {
    throw InvalidInput("There is no account " + Quoted(text) +
                       "; write its number or its full name, or import the account first.");
  }
  RequireTakesPostings(*account);
  return account->id;
}

std::int32_t TransactionImport::FindName(std::string_view text) {
  const std::optional<Name> name = host_.Names().FindByFullName(NormalizedFullName("The name", text));
  if (name) return name->id;
  throw InvalidInput("There is no name " + Quoted(text) + "; write its full name, or import the name first.");
}

std::int32_t TransactionImport::FindRelation(std::string_view realm) {
  DBMultiEntityRelation relation{};
  if (host_.Relations().Find(realm, relation)) return relation.relationId;
  throw InvalidInput("There is no relation with the partner " + Quoted(realm) + "; make the relation first.");
}

}  // namespace standalone
