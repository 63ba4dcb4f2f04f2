#include "bench/ExchangingByHand.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sodium.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "bench/HandWrittenTrail.h"
#include "platform/SystemUser.h"
#include "standalone/values/Uuid.h"

namespace bench {

namespace {

constexpr std::string_view kFactForm = "multientity-fact-1";
constexpr std::string_view kEnvelopeForm = "multientity-envelope-1";
constexpr std::string_view kSealedForm = "multientity-sealed-1\n";
constexpr std::size_t kMostContent = 1'048'576 - kSealedForm.size() - crypto_box_SEALBYTES;
// "64:", the signature, ",".
constexpr std::size_t kSignatureField = crypto_sign_BYTES + 4;
constexpr std::size_t kAddressDigits = 16;

// Yields the lines that were entered after the pairing and not sent yet, the first one first, with the account that is
// debited beside it.
constexpr const char* kEntered = R"sql(
SELECT m.id, m.txn_id, m.target_id, m.request_id, t.date, l.amount, l.memo, t.memo, n.full_name,
       (SELECT a.name FROM txn_line o CROSS JOIN account a ON a.id = o.account_id
         WHERE o.txn_id = m.txn_id AND o.amount > 0
           AND NOT EXISTS (SELECT 1 FROM me_transaction WHERE target_id = o.id) ORDER BY o.id LIMIT 1)
  FROM me_transaction m
 CROSS JOIN exchange_pairing p ON p.relation_id = m.relation_id AND p.first_txn_id <= m.txn_id
 CROSS JOIN txn t ON t.id = m.txn_id
 CROSS JOIN txn_line l ON l.id = m.target_id
 CROSS JOIN name n ON n.id = t.name_id
 WHERE m.relation_id = ?1 AND m.state = 0 AND m.of_before = 0 ORDER BY m.id LIMIT 1)sql";
constexpr const char* kSetState = "UPDATE me_transaction SET state = ?2 WHERE id = ?1";
constexpr const char* kConfirm = "UPDATE txn SET partner_confirmed = 1 WHERE id = ?1";
constexpr const char* kInsertFact =
    "INSERT INTO exchange_fact (pairing_id, hash, origin, kind, name, names, month, body, signature, shown, set_aside) "
    "VALUES (1, ?1, ?2, ?3, ?4, '', ?5, ?6, ?7, 0, '')";
constexpr const char* kHasFact = "SELECT 1 FROM exchange_fact WHERE pairing_id = 1 AND hash = ?1";
constexpr const char* kInsertOutbox = "INSERT INTO exchange_outbox VALUES (1, ?1, ?2, ?3, '')";
constexpr const char* kInsertInbox =
    "INSERT INTO exchange_inbox (pairing_id, request_id, proposal, state, mark, txn_id) "
    "VALUES (1, ?1, ?2, 'accepted', '', ?3)";
constexpr const char* kIsKnown = R"sql(
SELECT 1 WHERE EXISTS (SELECT 1 FROM exchange_inbox WHERE pairing_id = 1 AND request_id = ?2)
    OR EXISTS (SELECT 1 FROM me_transaction WHERE relation_id = ?1 AND request_id = ?2)
    OR EXISTS (SELECT 1 FROM me_rejected_transaction WHERE request_id = ?2))sql";
constexpr const char* kRule = R"sql(
SELECT r.id, r.account_id, a.full_name, n.id, p.booked_up_to FROM exchange_rule r
 CROSS JOIN exchange_pairing p ON p.id = 1
 CROSS JOIN account a ON a.id = r.account_id
 CROSS JOIN name n ON n.full_name = ?1
 WHERE r.pairing_id = 1 AND r.name = ?1 AND r.hint = '' AND r.memo = '')sql";
constexpr const char* kInsertHeader = "INSERT INTO txn (type, date, name_id, memo) VALUES (8, ?1, ?2, ?3)";
constexpr const char* kInsertLine = "INSERT INTO txn_line (txn_id, account_id, amount, memo) VALUES (?1, ?2, ?3, ?4)";
constexpr const char* kPost = "UPDATE txn SET posted = 1 WHERE id = ?1";
constexpr const char* kInsertRow =
    "INSERT INTO me_transaction (txn_id, target_id, relation_id, request_id, txn_type, state) "
    "VALUES (?1, ?2, ?3, ?4, 8, 3)";
constexpr const char* kSent =
    "SELECT id, txn_id FROM me_transaction WHERE relation_id = ?1 AND request_id = ?2 AND state = 1";
constexpr const char* kHashes = "SELECT hash FROM exchange_fact WHERE pairing_id = 1 ORDER BY hash";
constexpr const char* kNotShown =
    "SELECT body, signature, origin = 'made', hash FROM exchange_fact WHERE pairing_id = 1 AND shown = 0 ORDER BY id";
constexpr const char* kHasNotShown = "SELECT 1 FROM exchange_fact WHERE pairing_id = 1 AND shown = 0 LIMIT 1";
constexpr const char* kOfThePairing =
    "SELECT body, signature FROM exchange_fact WHERE pairing_id = 1 AND kind = ?1 AND name = ?2";
constexpr const char* kMarkShown =
    "UPDATE exchange_fact SET shown = 1 WHERE pairing_id = 1 AND hash = ?1 AND shown = 0";
constexpr const char* kMarkAllShown = "UPDATE exchange_fact SET shown = 1 WHERE pairing_id = 1 AND shown = 0";
constexpr const char* kCarrying =
    "SELECT word, word_for, is_echoed, their_word, letters, letters_for, owes_reply, their_summary, is_compared "
    "FROM exchange_carrying WHERE pairing_id = 1";
constexpr const char* kSetCarrying =
    "UPDATE exchange_carrying SET word = ?1, word_for = ?2, is_echoed = ?3, their_word = ?4, letters = ?5, "
    "letters_for = ?6, owes_reply = ?7, their_summary = ?8, is_compared = ?9 WHERE pairing_id = 1";
constexpr const char* kSetLookedFor = "UPDATE exchange_left SET looked_for = ?1 WHERE looked_for < ?1";
constexpr const char* kLastOfTrail = "SELECT * FROM audit ORDER BY id DESC LIMIT 1";
constexpr const char* kAppendToTrail =
    "INSERT INTO audit VALUES (?1, ?2, ?3, '', 'Exchange', ?4, ?5, nullif(?6, 0), nullif(?6, 0), ?7, ?8)";

struct Bytes {
  std::string_view bytes;
};

void Bind(sqlite3_stmt* statement, int index, std::int64_t value) {
  sqlite3_bind_int64(statement, index, value);
}

void Bind(sqlite3_stmt* statement, int index, std::string_view text) {
  sqlite3_bind_text64(statement, index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

void Bind(sqlite3_stmt* statement, int index, Bytes blob) {
  sqlite3_bind_blob64(statement, index, blob.bytes.data(), blob.bytes.size(), SQLITE_STATIC);
}

std::string_view Column(sqlite3_stmt* statement, int column) {
  const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
  return {bytes, bytes == nullptr ? 0 : static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

const unsigned char* BytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

unsigned char* BytesOf(std::string& text) {
  return reinterpret_cast<unsigned char*>(text.data());
}

std::string HexOf(std::string_view bytes) {
  std::string digits(2 * bytes.size() + 1, '\0');
  sodium_bin2hex(digits.data(), digits.size(), BytesOf(bytes), bytes.size());
  digits.pop_back();
  return digits;
}

template <typename Octets>
std::string_view ViewOf(const Octets& octets) {
  return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

std::string HashOf(std::string_view message) {
  std::string hash(crypto_hash_sha256_BYTES, '\0');
  crypto_hash_sha256(BytesOf(hash), BytesOf(message), message.size());
  return hash;
}

template <typename Key>
Key SealingKeyOf(const Key& signingKey) {
  Key key{};
  if (crypto_sign_ed25519_pk_to_curve25519(key.data(), signingKey.data()) != 0) {
    throw std::runtime_error("a key is none");
  }
  return key;
}

std::string AddressOf(std::string_view key) {
  return HexOf(HashOf(key)).substr(0, kAddressDigits);
}

std::string NewWord() {
  std::string bytes(16, '\0');
  randombytes_buf(bytes.data(), bytes.size());
  return HexOf(bytes);
}

void Append(std::string& out, std::string_view bytes) {
  out += std::to_string(bytes.size());
  out += ':';
  out += bytes;
  out += ',';
}

void AppendField(std::string& out, std::string_view name, std::string_view value) {
  if (value.empty()) return;
  Append(out, name);
  Append(out, value);
}

std::string WireOf(std::string_view body, std::string_view signature) {
  std::string wire;
  Append(wire, body);
  Append(wire, signature);
  return wire;
}

std::string FieldOfFact(std::string_view wire) {
  std::string field;
  AppendField(field, "fact", wire);
  return field;
}

std::string_view Take(std::string_view& rest) {
  const std::size_t colon = rest.find(':');
  if (colon == std::string_view::npos) throw std::runtime_error("a letter is cut off");
  const auto size = static_cast<std::size_t>(std::stoul(std::string(rest.substr(0, colon))));
  if (rest.size() < colon + size + 2) throw std::runtime_error("a letter is cut off");
  const std::string_view taken = rest.substr(colon + 1, size);
  rest.remove_prefix(colon + size + 2);
  return taken;
}

void RequireSigned(std::string_view key, std::string_view message, std::string_view signature) {
  if (signature.size() != crypto_sign_BYTES ||
      crypto_sign_verify_detached(BytesOf(signature), BytesOf(message), message.size(), BytesOf(key)) != 0) {
    throw std::runtime_error("a signature is wrong");
  }
}

std::string ContentOfFile(const std::filesystem::path& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return std::move(content).str();
}

// On the disk when it returns.
void Write(const std::filesystem::path& file, std::string_view bytes, int how) {
  const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | how, 0644);
  bool isWritten = descriptor >= 0;
  while (isWritten && !bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    isWritten = count > 0;
    if (isWritten) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  isWritten = isWritten && ::fsync(descriptor) == 0;
  if (descriptor >= 0) ::close(descriptor);
  if (!isWritten) throw std::runtime_error("cannot write " + file.string());
}

std::uint32_t DateOf(std::string_view iso) {
  const auto number = [iso](std::size_t at, std::size_t count) {
    return static_cast<std::uint32_t>(std::stoul(std::string(iso.substr(at, count))));
  };
  return number(0, 4) << 16U | number(5, 2) << 8U | number(8, 2);
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  for (std::size_t end = 0; (end = text.find('\n')) != std::string_view::npos; text.remove_prefix(end + 1)) {
    lines.emplace_back(text.substr(0, end));
  }
  return lines;
}

}  // namespace

void ExchangingByHand::Closer::operator()(sqlite3* database) const noexcept {
  sqlite3_close(database);
}

void ExchangingByHand::Closer::operator()(sqlite3_stmt* statement) const noexcept {
  sqlite3_finalize(statement);
}

ExchangingByHand::ExchangingByHand(const std::filesystem::path& company, std::function<Moment()> now)
    : now_(std::move(now)), systemUser_(platform::SystemUserName()), identity_(company.string() + ".identity") {
  if (sodium_init() < 0) throw std::runtime_error("there are no random numbers");
  sqlite3* database = nullptr;
  const int opened = sqlite3_open_v2(company.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(database);
  if (opened != SQLITE_OK) Fail("open");
  sqlite3_busy_timeout(database, 10'000);
  if (sqlite3_exec(database, "PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON; PRAGMA trusted_schema = OFF;",
                   nullptr, nullptr, nullptr) != SQLITE_OK) {
    Fail("PRAGMA");
  }
  begin_ = Prepare("BEGIN IMMEDIATE");
  commit_ = Prepare("COMMIT");
  entered_ = Prepare(kEntered);
  setState_ = Prepare(kSetState);
  confirm_ = Prepare(kConfirm);
  insertFact_ = Prepare(kInsertFact);
  hasFact_ = Prepare(kHasFact);
  insertOutbox_ = Prepare(kInsertOutbox);
  insertInbox_ = Prepare(kInsertInbox);
  isKnown_ = Prepare(kIsKnown);
  rule_ = Prepare(kRule);
  insertHeader_ = Prepare(kInsertHeader);
  insertLine_ = Prepare(kInsertLine);
  post_ = Prepare(kPost);
  insertRow_ = Prepare(kInsertRow);
  sent_ = Prepare(kSent);
  hashes_ = Prepare(kHashes);
  notShown_ = Prepare(kNotShown);
  hasNotShown_ = Prepare(kHasNotShown);
  ofThePairing_ = Prepare(kOfThePairing);
  markShown_ = Prepare(kMarkShown);
  markAllShown_ = Prepare(kMarkAllShown);
  carrying_ = Prepare(kCarrying);
  setCarrying_ = Prepare(kSetCarrying);
  setLookedFor_ = Prepare(kSetLookedFor);
  lastOfTrail_ = Prepare(kLastOfTrail);
  appendToTrail_ = Prepare(kAppendToTrail);
  ReadPairing();
  ReadIdentity();
}

void ExchangingByHand::ReadPairing() {
  sqlite3_stmt* const pairing = Prepare(R"sql(
SELECT p.pairing_id, p.partner_name, p.partner_realm, p.partner_key, p.relation_id, p.folder, r.partner_name,
       p.due_to_account_id, a.full_name, c.home_currency
  FROM company c CROSS JOIN exchange_pairing p ON p.id = 1 CROSS JOIN me_relation r ON r.id = p.relation_id
 CROSS JOIN account a ON a.id = p.due_to_account_id)sql");
  if (!Step(pairing)) Fail("no pairing");
  pairing_ = Column(pairing, 0);
  const std::string realm(Column(pairing, 2));
  partner_ = std::string(Column(pairing, 1)) + " (realm " + realm + ")";
  std::ranges::copy(Column(pairing, 3), partnerKey_.begin());
  relation_ = sqlite3_column_int64(pairing, 4);
  folder_ = Column(pairing, 5);
  relationPartner_ = std::string(Column(pairing, 6)) + " (" + realm + ")";
  dueTo_ = sqlite3_column_int64(pairing, 7);
  dueToName_ = Column(pairing, 8);
  currency_ = Column(pairing, 9);
  sqlite3_reset(pairing);
}

void ExchangingByHand::ReadIdentity() {
  constexpr std::string_view kSeed = "seed ";
  std::ifstream file(identity_);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("left ")) ++left_;
    if (!line.starts_with(kSeed)) continue;
    Key seed{};
    sodium_hex2bin(seed.data(), seed.size(), line.data() + kSeed.size(), line.size() - kSeed.size(), nullptr, nullptr,
                   nullptr);
    crypto_sign_seed_keypair(public_.data(), secret_.data(), seed.data());
  }
}

void ExchangingByHand::Carry() {
  TakeLetters();
  Propose();
  PutLetters();
}

void ExchangingByHand::TakeLetters() {
  const std::string address = AddressOf(ViewOf(public_)) + '-';
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    if (entry.path().filename().string().starts_with(address)) files.push_back(entry.path());
  }
  std::ranges::sort(files);
  for (const std::filesystem::path& file : files) {
    const Letter letter = Open(file);
    if (SaysNothingNew(letter)) continue;
    for (const std::string_view wire : letter.facts) TakeFact(wire);
    NoteRead(letter);
    std::filesystem::remove(file);
  }
}

ExchangingByHand::Letter ExchangingByHand::Open(const std::filesystem::path& file) const {
  const std::string netstring = ContentOfFile(file);
  std::string_view rest = netstring;
  std::string_view sealed = Take(rest);
  sealed.remove_prefix(kSealedForm.size());
  const Key key = SealingKeyOf(public_);
  Key secret{};
  crypto_sign_ed25519_sk_to_curve25519(secret.data(), secret_.data());
  Letter letter;
  letter.content.resize(sealed.size() - crypto_box_SEALBYTES);
  if (crypto_box_seal_open(BytesOf(letter.content), BytesOf(sealed), sealed.size(), key.data(), secret.data()) != 0) {
    throw std::runtime_error("a letter is for somebody else");
  }
  rest = letter.content;
  for (int count = 0; count < 4; ++count) Take(rest);
  while (true) {
    const std::string_view before = rest;
    const std::string_view name = Take(rest);
    if (rest.empty()) {
      const std::string_view content = letter.content;
      RequireSigned(ViewOf(partnerKey_), content.substr(0, content.size() - before.size()), name);
      return letter;
    }
    const std::string_view value = Take(rest);
    if (name == "word") letter.word = value;
    if (name == "echo") letter.echo = value;
    if (name == "summary") letter.summary = value;
    if (name == "fact") letter.facts.push_back(value);
  }
}

bool ExchangingByHand::SaysNothingNew(const Letter& letter) {
  const Carrying carrying = ReadCarrying();
  return letter.word.empty() && letter.summary == carrying.theirSummary &&
         (letter.echo != carrying.word || carrying.isEchoed);
}

void ExchangingByHand::TakeFact(std::string_view wire) {
  std::string_view rest = wire;
  Fact fact;
  fact.wire = wire;
  fact.body = Take(rest);
  fact.signature = Take(rest);
  rest = fact.body;
  Take(rest);
  Take(rest);
  fact.author = Take(rest);
  fact.kind = Take(rest);
  fact.name = Take(rest);
  fact.month = Take(rest);
  while (!rest.empty()) {
    const std::string_view name = Take(rest);
    fact.fields.emplace(name, Take(rest));
  }
  if (fact.kind != "proposal" && fact.kind != "answer") return;
  if (fact.author != HexOf(ViewOf(partnerKey_))) throw std::runtime_error("a fact is of somebody else");
  RequireSigned(ViewOf(partnerKey_), fact.body, fact.signature);
  Run(begin_);
  if (!Holds(HashOf(fact.body))) fact.kind == "proposal" ? Book(fact) : Establish(fact);
  Commit();
}

void ExchangingByHand::Book(const Fact& proposal) {
  const std::string hash =
      Keep("partner", proposal.kind, proposal.name, proposal.month, proposal.body, proposal.signature);
  const std::string_view name = proposal.fields.at("name");
  const std::string_view memo = proposal.fields.at("memo");
  const std::string_view day = proposal.fields.at("date");
  const std::int64_t amount = std::stoll(std::string(proposal.fields.at("amount")));
  if (Find(isKnown_, relation_, proposal.name)) Fail("a request is known");
  if (!Find(rule_, name) || sqlite3_column_int64(rule_, 4) < amount) Fail("no rule fits");
  const std::string rule = std::to_string(sqlite3_column_int64(rule_, 0));
  const std::int64_t account = sqlite3_column_int64(rule_, 1);
  const std::string accountName(Column(rule_, 2));
  Run(insertHeader_, std::int64_t{DateOf(day)}, sqlite3_column_int64(rule_, 3), memo);
  const std::int64_t txn = sqlite3_last_insert_rowid(database_.get());
  Run(insertLine_, txn, account, amount, name);
  const std::int64_t line = sqlite3_last_insert_rowid(database_.get());
  Run(insertLine_, txn, dueTo_, -amount, name);
  Run(post_, txn);
  Run(insertRow_, txn, line, relation_, proposal.name);
  Run(insertInbox_, proposal.name, Bytes{hash}, txn);
  std::string body = Begun("answer", proposal.name, proposal.month);
  AppendField(body, "day", day);
  AppendField(body, "entry", std::to_string(txn));
  AppendField(body, "outcome", "accepted");
  AppendField(body, "proposal", proposal.wire);
  Keep("made", "answer", proposal.name, proposal.month, body, Sign(body));
  const std::string field = "request " + std::string(proposal.name);
  ChangesText changes;
  changes.Add(field, "new");
  changes.Add("entry memo", memo);
  changes.Add("partner", relationPartner_);
  changes.Add("request", proposal.name);
  changes.Add("date", day);
  changes.Add("amount", PlainAmount(amount) + " " + currency_);
  changes.Add("account", accountName);
  changes.Add("liability account", dueToName_);
  changes.Add("name", name);
  changes.Add("memo", name);
  changes.Add("state", "established");
  changes.Change(field, "new", "accepted");
  changes.Add("by rule", rule);
  AppendToTrail("exchange.take", txn, fmt::format("the proposal {} of {}", proposal.name, partner_), changes.End());
}

// The proposal that it answers was signed here, and is held.
void ExchangingByHand::Establish(const Fact& answer) {
  std::string_view asked = answer.fields.at("proposal");
  if (answer.fields.at("outcome") != "accepted" || !Holds(HashOf(Take(asked)))) Fail("an answer is of something else");
  Keep("partner", answer.kind, answer.name, answer.month, answer.body, answer.signature);
  if (!Find(sent_, relation_, answer.name)) Fail("a request was not sent");
  const std::int64_t txn = sqlite3_column_int64(sent_, 1);
  Run(confirm_, txn);
  Run(setState_, sqlite3_column_int64(sent_, 0), std::int64_t{3});
  ChangesText changes;
  changes.Change("request " + std::string(answer.name), "sent", "established");
  AppendToTrail("exchange.take", txn, fmt::format("the answer {} of {}", answer.name, partner_), changes.End());
}

void ExchangingByHand::NoteRead(const Letter& letter) {
  Run(begin_);
  Carrying carrying = ReadCarrying();
  const std::string held = SummaryOfHeld();
  const bool isEcho = !carrying.word.empty() && letter.echo == carrying.word;
  carrying.isEchoed = carrying.isEchoed || isEcho;
  if (!letter.word.empty()) {
    carrying.theirWord = letter.word;
    carrying.owesReply = true;
  }
  carrying.theirSummary = letter.summary;
  for (std::string_view wire : letter.facts) Run(markShown_, Bytes{HashOf(Take(wire))});
  if (letter.summary == held) {
    Run(markAllShown_);
    carrying.isCompared = carrying.isCompared || isEcho;
  }
  WriteCarrying(carrying);
  Commit();
}

void ExchangingByHand::Propose() {
  while (ProposeNext()) continue;
}

bool ExchangingByHand::ProposeNext() {
  Run(begin_);
  const bool isThere = Find(entered_, relation_);
  if (isThere) {
    const std::int64_t row = sqlite3_column_int64(entered_, 0);
    const std::int64_t txn = sqlite3_column_int64(entered_, 1);
    const std::int64_t target = sqlite3_column_int64(entered_, 2);
    const std::string request(Column(entered_, 3));
    const std::string day = IsoDate(static_cast<std::uint32_t>(sqlite3_column_int64(entered_, 4)));
    const std::string month = day.substr(0, 7);
    const std::string_view lineMemo = Column(entered_, 6);
    std::string body = Begun("proposal", request, month);
    AppendField(body, "amount", std::to_string(sqlite3_column_int64(entered_, 5)));
    AppendField(body, "currency", currency_);
    AppendField(body, "date", day);
    AppendField(body, "hint", Column(entered_, 9));
    AppendField(body, "memo", lineMemo.empty() ? Column(entered_, 7) : lineMemo);
    AppendField(body, "name", Column(entered_, 8));
    AppendField(body, "type", "bill");
    const std::string hash = Keep("made", "proposal", request, month, body, Sign(body));
    Run(setState_, row, std::int64_t{1});
    Run(insertOutbox_, std::string_view(request), Bytes{hash}, target);
    ChangesText changes;
    changes.Change("state", "entered", "sent");
    AppendToTrail("exchange.send", txn, fmt::format("the request \"{}\" of bill {} to {}", request, txn, partner_),
                  changes.End());
  }
  Commit();
  return isThere;
}

void ExchangingByHand::PutLetters() {
  const std::string held = SummaryOfHeld();
  Run(begin_);
  Carrying carrying = ReadCarrying();
  const bool asks = Find(hasNotShown_);
  if (asks && carrying.wordFor != held) {
    carrying.word = NewWord();
    carrying.wordFor = held;
    carrying.isEchoed = false;
  }
  Run(setLookedFor_, left_);
  WriteCarrying(carrying);
  Commit();
  const std::string word = asks && !carrying.isEchoed ? carrying.word : std::string();
  Part part;
  Append(part.head, kEnvelopeForm);
  Append(part.head, pairing_);
  Append(part.head, HexOf(ViewOf(public_)));
  Append(part.head, HexOf(ViewOf(partnerKey_)));
  AppendField(part.head, "word", word);
  AppendField(part.head, "echo", carrying.theirWord);
  AppendField(part.head, "summary", held);
  part.content = part.head;
  for (const std::string_view kind : {"invitation", "acceptance", "confirmation"}) {
    if (Find(ofThePairing_, kind, std::string_view(pairing_))) {
      AddFact(part, FieldOfFact(WireOf(Column(ofThePairing_, 0), Column(ofThePairing_, 1))));
    }
  }
  while (!word.empty() && Step(notShown_)) {
    AddFact(part, FieldOfFact(WireOf(Column(notShown_, 0), Column(notShown_, 1))));
    if (sqlite3_column_int64(notShown_, 2) == 0) continue;
    part.left += "left " + HexOf(Column(notShown_, 3)) + '\n';
    ++part.leftLines;
  }
  sqlite3_reset(notShown_);
  PutPart(part);
  Run(begin_);
  const std::vector<std::string> lying = LinesOf(carrying.letters);
  carrying.owesReply = false;
  carrying.lettersFor = word + ' ' + carrying.theirWord + ' ' + held;
  carrying.letters.clear();
  for (const std::string& name : part.names) carrying.letters += name + '\n';
  WriteCarrying(carrying);
  Commit();
  for (const std::string& name : lying) std::filesystem::remove(folder_ / name);
}

void ExchangingByHand::AddFact(Part& part, std::string_view field) {
  if (part.content.size() + field.size() + kSignatureField > kMostContent) PutPart(part);
  part.content += field;
}

// What leaves is in the identity before anybody has it.
void ExchangingByHand::PutPart(Part& part) {
  if (part.leftLines != 0) {
    Write(identity_, part.left, O_APPEND);
    left_ += part.leftLines;
  }
  part.left.clear();
  part.leftLines = 0;
  Append(part.content, Sign(part.content));
  const Key key = SealingKeyOf(partnerKey_);
  std::string envelope(kSealedForm);
  envelope.resize(kSealedForm.size() + part.content.size() + crypto_box_SEALBYTES);
  crypto_box_seal(BytesOf(envelope) + kSealedForm.size(), BytesOf(part.content), part.content.size(), key.data());
  part.content = part.head;
  std::string netstring;
  Append(netstring, envelope);
  const auto moment = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
  part.names.push_back(AddressOf(ViewOf(partnerKey_)) + '-' + standalone::MakeUuid(moment) + ".envelope");
  const std::filesystem::path draft = folder_ / ('.' + part.names.back() + ".new");
  Write(draft, netstring, O_TRUNC);
  std::filesystem::rename(draft, folder_ / part.names.back());
}

std::string ExchangingByHand::Begun(std::string_view kind, std::string_view name, std::string_view month) const {
  std::string body;
  Append(body, kFactForm);
  Append(body, pairing_);
  Append(body, HexOf(ViewOf(public_)));
  Append(body, kind);
  Append(body, name);
  Append(body, month);
  return body;
}

std::string ExchangingByHand::Sign(std::string_view message) const {
  std::string signature(crypto_sign_BYTES, '\0');
  crypto_sign_detached(BytesOf(signature), nullptr, BytesOf(message), message.size(), secret_.data());
  return signature;
}

std::string ExchangingByHand::Keep(std::string_view origin, std::string_view kind, std::string_view name,
                                   std::string_view month, std::string_view body, std::string_view signature) {
  std::string hash = HashOf(body);
  Run(insertFact_, Bytes{hash}, origin, kind, name, month, Bytes{body}, Bytes{signature});
  return hash;
}

bool ExchangingByHand::Holds(std::string_view hash) {
  return Find(hasFact_, Bytes{hash});
}

std::string ExchangingByHand::SummaryOfHeld() {
  crypto_hash_sha256_state state;
  crypto_hash_sha256_init(&state);
  std::int64_t count = 0;
  for (; Step(hashes_); ++count) {
    const std::string_view hash = Column(hashes_, 0);
    crypto_hash_sha256_update(&state, BytesOf(hash), hash.size());
  }
  sqlite3_reset(hashes_);
  std::string digest(crypto_hash_sha256_BYTES, '\0');
  crypto_hash_sha256_final(&state, BytesOf(digest));
  return std::to_string(count) + ' ' + HexOf(digest);
}

ExchangingByHand::Carrying ExchangingByHand::ReadCarrying() {
  if (!Find(carrying_)) Fail("nothing was carried before");
  const auto text = [this](int column) {
    return std::string(Column(carrying_, column));
  };
  return {.word = text(0),
          .wordFor = text(1),
          .isEchoed = sqlite3_column_int(carrying_, 2) != 0,
          .theirWord = text(3),
          .letters = text(4),
          .lettersFor = text(5),
          .owesReply = sqlite3_column_int(carrying_, 6) != 0,
          .theirSummary = text(7),
          .isCompared = sqlite3_column_int(carrying_, 8) != 0};
}

void ExchangingByHand::WriteCarrying(const Carrying& carrying) {
  Run(setCarrying_, std::string_view(carrying.word), std::string_view(carrying.wordFor),
      std::int64_t{carrying.isEchoed}, std::string_view(carrying.theirWord), std::string_view(carrying.letters),
      std::string_view(carrying.lettersFor), std::int64_t{carrying.owesReply}, std::string_view(carrying.theirSummary),
      std::int64_t{carrying.isCompared});
}

void ExchangingByHand::AppendToTrail(std::string_view action, std::int64_t txn, std::string_view subject,
                                     std::string_view changes) {
  if (!Step(lastOfTrail_)) Fail("no trail");
  const std::int64_t number = sqlite3_column_int64(lastOfTrail_, 0) + 1;
  const std::string previous = DigestOfLine(lastOfTrail_);
  sqlite3_reset(lastOfTrail_);
  const auto at = std::chrono::duration_cast<std::chrono::milliseconds>(now_().time_since_epoch());
  Run(appendToTrail_, number, std::string_view(previous), static_cast<std::int64_t>(at.count()),
      std::string_view(systemUser_), action, txn, subject, changes);
}

void ExchangingByHand::Fail(const char* what) const {
  throw std::runtime_error(fmt::format("the hand-written side failed ({}): {}", what, sqlite3_errmsg(database_.get())));
}

sqlite3_stmt* ExchangingByHand::Prepare(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  const int prepared = sqlite3_prepare_v3(database_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  statements_.emplace_back(statement);
  if (prepared != SQLITE_OK) Fail(sql);
  return statement;
}

bool ExchangingByHand::Step(sqlite3_stmt* statement) const {
  const int code = sqlite3_step(statement);
  if (code != SQLITE_ROW && code != SQLITE_DONE) Fail(sqlite3_sql(statement));
  return code == SQLITE_ROW;
}

// What was found stays to be read until it is looked for anew, or the transaction ends.
template <typename... Values>
bool ExchangingByHand::Find(sqlite3_stmt* statement, const Values&... values) {
  sqlite3_reset(statement);
  int index = 0;
  (Bind(statement, ++index, values), ...);
  const bool isThere = Step(statement);
  if (isThere) found_.push_back(statement);
  return isThere;
}

void ExchangingByHand::Commit() {
  for (sqlite3_stmt* const statement : found_) sqlite3_reset(statement);
  found_.clear();
  Run(commit_);
}

template <typename... Values>
void ExchangingByHand::Run(sqlite3_stmt* statement, const Values&... values) {
  Find(statement, values...);
  if (sqlite3_reset(statement) != SQLITE_OK) Fail(sqlite3_sql(statement));
}

}  // namespace bench
