#pragma once

#include <array>

namespace standalone {

// What SchemaSteps() answers. A step that has been released never changes.

inline constexpr const char* kVersion1 = R"sql(
CREATE TABLE company (
  id INTEGER PRIMARY KEY CHECK (id = 1),
  name TEXT NOT NULL,
  home_currency TEXT NOT NULL,
  multi_currency INTEGER NOT NULL CHECK (multi_currency IN (0, 1)),
  sample_file INTEGER NOT NULL CHECK (sample_file IN (0, 1)),
  accountants_copy INTEGER NOT NULL CHECK (accountants_copy IN (0, 1))
) STRICT;

CREATE TABLE preference (
  key TEXT PRIMARY KEY NOT NULL,
  value TEXT NOT NULL
) STRICT, WITHOUT ROWID;

CREATE TABLE account (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  parent_id INTEGER REFERENCES account (id),
  name TEXT NOT NULL CHECK (name <> ''),
  full_name TEXT NOT NULL COLLATE NOCASE,
  type INTEGER NOT NULL CHECK (type BETWEEN 0 AND 32767),
  special_kind INTEGER NOT NULL CHECK (special_kind BETWEEN 0 AND 2147483647),
  deleted INTEGER NOT NULL CHECK (deleted IN (0, 1))
) STRICT;
CREATE UNIQUE INDEX account_full_name ON account (full_name) WHERE deleted = 0;
CREATE INDEX account_type ON account (type, full_name) WHERE deleted = 0;
CREATE INDEX account_parent ON account (parent_id);

CREATE TABLE name (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  parent_id INTEGER REFERENCES name (id),
  name TEXT NOT NULL CHECK (name <> ''),
  full_name TEXT NOT NULL COLLATE NOCASE UNIQUE,
  kind INTEGER NOT NULL CHECK (kind BETWEEN 0 AND 3)
) STRICT;
CREATE INDEX name_parent ON name (parent_id);

-- The date is year * 65536 + month * 256 + day, so that numbers compare as days do.
CREATE TABLE txn (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  type INTEGER NOT NULL CHECK (type IN (3, 8, 9)),
  date INTEGER NOT NULL CHECK (date > 0),
  name_id INTEGER REFERENCES name (id),
  memo TEXT NOT NULL,
  posted INTEGER NOT NULL DEFAULT 0 CHECK (posted IN (0, 1)),
  partner_confirmed INTEGER NOT NULL DEFAULT 0 CHECK (partner_confirmed IN (0, 1))
) STRICT;
CREATE INDEX txn_type_date ON txn (type, date);
CREATE INDEX txn_name ON txn (name_id);

-- AUTOINCREMENT: the id of a deleted line is never given to another one, and the lines of one booking are neighbours.
CREATE TABLE txn_line (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  txn_id INTEGER NOT NULL REFERENCES txn (id) ON DELETE CASCADE,
  account_id INTEGER NOT NULL REFERENCES account (id),
  amount INTEGER NOT NULL CHECK (amount BETWEEN -9999999999999 AND 9999999999999),
  memo TEXT NOT NULL
) STRICT;
CREATE INDEX txn_line_txn ON txn_line (txn_id);
CREATE INDEX txn_line_account ON txn_line (account_id);

CREATE TRIGGER txn_insert_posted BEFORE INSERT ON txn WHEN NEW.posted <> 0 BEGIN
  SELECT RAISE(ABORT, 'a transaction is posted after its lines are entered');
END;
CREATE TRIGGER txn_post BEFORE UPDATE OF posted ON txn WHEN OLD.posted = 0 AND NEW.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'a transaction needs at least two lines')
    WHERE (SELECT count(*) FROM txn_line WHERE txn_id = NEW.id) < 2;
  SELECT RAISE(ABORT, 'the lines of a transaction must sum to zero')
    WHERE (SELECT sum(amount) FROM txn_line WHERE txn_id = NEW.id) <> 0;
END;
CREATE TRIGGER txn_change_posted BEFORE UPDATE OF id, type, date, name_id, memo, posted ON txn WHEN OLD.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'a posted transaction does not change');
END;
CREATE TRIGGER txn_line_insert_posted BEFORE INSERT ON txn_line
    WHEN (SELECT posted FROM txn WHERE id = NEW.txn_id) = 1 BEGIN
  SELECT RAISE(ABORT, 'a posted transaction takes no more lines');
END;
CREATE TRIGGER txn_line_update_posted BEFORE UPDATE ON txn_line
    WHEN (SELECT max(posted) FROM txn WHERE id IN (OLD.txn_id, NEW.txn_id)) = 1 BEGIN
  SELECT RAISE(ABORT, 'a line of a posted transaction does not change');
END;
-- Deleting the transaction itself removes its lines after it is gone, which this lets through.
CREATE TRIGGER txn_line_delete_posted BEFORE DELETE ON txn_line
    WHEN (SELECT posted FROM txn WHERE id = OLD.txn_id) = 1 BEGIN
  SELECT RAISE(ABORT, 'a line of a posted transaction is not deleted');
END;

CREATE TABLE me_relation (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  realm_id TEXT NOT NULL UNIQUE CHECK (length(CAST(realm_id AS BLOB)) BETWEEN 1 AND 19),
  partner_name TEXT NOT NULL CHECK (length(CAST(partner_name AS BLOB)) <= 59),
  relation_type INTEGER NOT NULL,
  state INTEGER NOT NULL,
  created_at INTEGER NOT NULL,
  changed_at INTEGER NOT NULL,
  revision INTEGER NOT NULL,
  due_from_account_id INTEGER NOT NULL,
  due_to_account_id INTEGER NOT NULL
) STRICT;
CREATE INDEX me_relation_due_from ON me_relation (due_from_account_id);
CREATE INDEX me_relation_due_to ON me_relation (due_to_account_id);

-- No reference to txn: a removal may leave a row behind when the entry is already gone.
CREATE TABLE me_transaction (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  txn_id INTEGER NOT NULL,
  target_id INTEGER NOT NULL UNIQUE,
  relation_id INTEGER NOT NULL REFERENCES me_relation (id),
  request_id TEXT NOT NULL CHECK (length(CAST(request_id AS BLOB)) <= 36),
  txn_type INTEGER NOT NULL,
  state INTEGER NOT NULL,
  UNIQUE (txn_id, target_id)
) STRICT;
CREATE INDEX me_transaction_request ON me_transaction (relation_id, request_id);
CREATE UNIQUE INDEX me_transaction_journal_request ON me_transaction (relation_id, request_id)
  WHERE txn_type = 8 AND request_id <> '';

CREATE TABLE me_rejected_transaction (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  request_id TEXT NOT NULL CHECK (length(CAST(request_id AS BLOB)) <= 36),
  txn_type INTEGER NOT NULL,
  relation_id INTEGER NOT NULL,
  amount TEXT NOT NULL,
  partner_txn_id TEXT NOT NULL
) STRICT;
CREATE INDEX me_rejected_transaction_request ON me_rejected_transaction (request_id);

CREATE TABLE user (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  name TEXT NOT NULL COLLATE NOCASE UNIQUE CHECK (name <> ''),
  administrator INTEGER NOT NULL CHECK (administrator IN (0, 1)),
  accountant INTEGER NOT NULL CHECK (accountant IN (0, 1))
) STRICT;
CREATE TABLE user_feature_right (
  user_id INTEGER NOT NULL REFERENCES user (id) ON DELETE CASCADE,
  feature INTEGER NOT NULL,
  action INTEGER NOT NULL,
  PRIMARY KEY (user_id, feature, action)
) STRICT, WITHOUT ROWID;
CREATE TABLE user_list_right (
  user_id INTEGER NOT NULL REFERENCES user (id) ON DELETE CASCADE,
  list INTEGER NOT NULL,
  action INTEGER NOT NULL,
  PRIMARY KEY (user_id, list, action)
) STRICT, WITHOUT ROWID;
)sql";

// The audit trail; how many decimals the company's currency has; what was imported. Intercompany rows of before have
// states of another meaning.
inline constexpr const char* kVersion2 = R"sql(
-- What was done, by whom: line after line, each with the SHA-256 of the one before it, in hexadecimal digits. Times are in
-- milliseconds since 1970, UTC; `clock` is what the clock was set to, if it was. `changes` is a JSON array of objects with
-- "field" and, as far as there is one, the value "before" and "after". The transactions that a line tells of are all from
-- `first_txn_id` to `last_txn_id`.
CREATE TABLE audit (
  id INTEGER PRIMARY KEY CHECK (id > 0),
  previous TEXT NOT NULL CHECK (length(previous) = 64),
  at INTEGER NOT NULL,
  clock TEXT NOT NULL,
  user TEXT NOT NULL,
  system_user TEXT NOT NULL,
  action TEXT NOT NULL CHECK (action <> ''),
  first_txn_id INTEGER,
  last_txn_id INTEGER,
  subject TEXT NOT NULL,
  changes TEXT NOT NULL,
  CHECK ((first_txn_id IS NULL) = (last_txn_id IS NULL))
) STRICT;
CREATE TRIGGER audit_insert BEFORE INSERT ON audit BEGIN
  SELECT RAISE(ABORT, 'the audit trail grows at its end only')
    WHERE NEW.id IS NOT (SELECT ifnull(max(id), 0) + 1 FROM audit);
END;
CREATE TRIGGER audit_update BEFORE UPDATE ON audit BEGIN
  SELECT RAISE(ABORT, 'a line of the audit trail does not change');
END;
CREATE TRIGGER audit_delete BEFORE DELETE ON audit BEGIN
  SELECT RAISE(ABORT, 'a line of the audit trail is not deleted');
END;

-- Files whose rows are in the books, by their SHA-256 in hexadecimal digits.
CREATE TABLE imported_file (
  sha256 TEXT PRIMARY KEY NOT NULL CHECK (length(sha256) = 64),
  audit_id INTEGER NOT NULL REFERENCES audit (id)
) STRICT, WITHOUT ROWID;

ALTER TABLE company ADD COLUMN decimals INTEGER NOT NULL DEFAULT 2 CHECK (decimals BETWEEN 0 AND 4);

ALTER TABLE me_transaction ADD COLUMN of_before INTEGER NOT NULL DEFAULT 0 CHECK (of_before IN (0, 1));
UPDATE me_transaction SET of_before = 1;
)sql";

// What is entered and corrected at the desk: account numbers, document numbers and attachments, what belongs together,
// the requests of this company's own, the closing date. And who this company is to its partners, which of them it is
// paired with, and the signed facts that both of a pair hold.
inline constexpr const char* kVersion3 = R"sql(
ALTER TABLE account ADD COLUMN number TEXT NOT NULL DEFAULT '';
CREATE UNIQUE INDEX account_number ON account (number) WHERE number <> '' AND deleted = 0;

ALTER TABLE txn ADD COLUMN document_number TEXT NOT NULL DEFAULT '';
DROP TRIGGER txn_change_posted;
CREATE TRIGGER txn_change_posted
    BEFORE UPDATE OF id, type, date, name_id, memo, document_number, posted ON txn WHEN OLD.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'a posted transaction does not change');
END;

-- On this day and before nothing is posted or deleted any more; 0 while the books are open.
ALTER TABLE company ADD COLUMN closing_date INTEGER NOT NULL DEFAULT 0 CHECK (closing_date >= 0);
-- While it has its row, the unit of work may do so all the same. The row refers to one that cannot be, so that a unit of
-- work that leaves it there is never committed.
CREATE TABLE after_close (
  id INTEGER PRIMARY KEY CHECK (id = 1),
  taken_back INTEGER NOT NULL DEFAULT 2 CHECK (taken_back = 2)
    REFERENCES after_close (id) DEFERRABLE INITIALLY DEFERRED
) STRICT;
CREATE TRIGGER txn_post_closed BEFORE UPDATE OF posted ON txn WHEN OLD.posted = 0 AND NEW.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'the books are closed on that day')
    FROM company WHERE NEW.date <= closing_date AND NOT EXISTS (SELECT 1 FROM after_close);
END;
CREATE TRIGGER txn_delete_closed BEFORE DELETE ON txn WHEN OLD.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'the books are closed on that day')
    FROM company WHERE OLD.date <= closing_date AND NOT EXISTS (SELECT 1 FROM after_close);
END;

-- A transaction that reverses, corrects or moves an earlier one, which stays as long as there is one that does. It is
-- reversed once, unless its reversal was reversed itself.
CREATE TABLE txn_link (
  txn_id INTEGER NOT NULL REFERENCES txn (id) ON DELETE CASCADE,
  kind TEXT NOT NULL CHECK (kind IN ('reverses', 'corrects', 'moves')),
  earlier_txn_id INTEGER NOT NULL REFERENCES txn (id) CHECK (earlier_txn_id < txn_id),
  PRIMARY KEY (txn_id, kind)
) STRICT, WITHOUT ROWID;
CREATE INDEX txn_link_earlier ON txn_link (earlier_txn_id, kind);
CREATE TRIGGER txn_link_insert BEFORE INSERT ON txn_link WHEN NEW.kind = 'reverses' BEGIN
  SELECT RAISE(ABORT, 'the transaction is reversed already')
    FROM txn_link AS reversal WHERE earlier_txn_id = NEW.earlier_txn_id AND kind = 'reverses' AND NOT EXISTS
      (SELECT 1 FROM txn_link WHERE earlier_txn_id = reversal.txn_id AND kind = 'reverses');
END;
CREATE TRIGGER txn_link_update BEFORE UPDATE ON txn_link BEGIN
  SELECT RAISE(ABORT, 'a link of transactions does not change');
END;
-- With its later transaction it goes after that is gone.
CREATE TRIGGER txn_link_delete BEFORE DELETE ON txn_link WHEN EXISTS (SELECT 1 FROM txn WHERE id = OLD.txn_id) BEGIN
  SELECT RAISE(ABORT, 'a link of transactions is not deleted');
END;

-- The intercompany lines that this company entered itself, of journal entries; a bill or a check is its own without. The
-- request of a line may reverse or correct that of an earlier one.
CREATE TABLE me_own_request (
  target_id INTEGER PRIMARY KEY REFERENCES txn_line (id) ON DELETE CASCADE,
  names TEXT CHECK (names IN ('reverses', 'corrects')),
  earlier_target_id INTEGER REFERENCES txn_line (id) CHECK (earlier_target_id < target_id),
  CHECK ((names IS NULL) = (earlier_target_id IS NULL))
) STRICT;
CREATE INDEX me_own_request_earlier ON me_own_request (earlier_target_id);
CREATE TRIGGER me_own_request_update BEFORE UPDATE ON me_own_request BEGIN
  SELECT RAISE(ABORT, 'what a request names does not change');
END;
CREATE TRIGGER me_own_request_delete BEFORE DELETE ON me_own_request
    WHEN EXISTS (SELECT 1 FROM txn_line WHERE id = OLD.target_id) BEGIN
  SELECT RAISE(ABORT, 'what a request names is not deleted');
END;
-- An entry was booked from a partner's request unless it is about what a partner owes.
INSERT INTO me_own_request (target_id)
  SELECT target_id FROM me_transaction JOIN txn_line ON txn_line.id = target_id
  WHERE txn_type = 8 AND account_id IN (SELECT due_from_account_id FROM me_relation);

-- Where the paper of a transaction is: a path or a link.
CREATE TABLE txn_attachment (
  id INTEGER PRIMARY KEY,
  txn_id INTEGER NOT NULL REFERENCES txn (id) ON DELETE CASCADE,
  reference TEXT NOT NULL CHECK (reference <> '')
) STRICT;
CREATE INDEX txn_attachment_txn ON txn_attachment (txn_id);

-- The public keys by which these books have signed, the last one now. The secret ones lie beside the books, never in them.
CREATE TABLE exchange_own_key (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  public_key BLOB NOT NULL UNIQUE CHECK (length(public_key) = 32)
) STRICT;

-- An invitation reserves its accounts until the partner's relation bears them. The partner is known from its acceptance on.
CREATE TABLE exchange_pairing (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  pairing_id TEXT NOT NULL UNIQUE CHECK (length(pairing_id) = 32),
  invited_by_us INTEGER NOT NULL CHECK (invited_by_us IN (0, 1)),
  state TEXT NOT NULL CHECK (state IN ('invited', 'answered', 'accepted', 'established', 'blocked', 'removed')),
  partner_name TEXT NOT NULL CHECK (partner_name <> ''),
  partner_realm TEXT NOT NULL,
  partner_key BLOB CHECK (length(partner_key) = 32),
  relation_id INTEGER REFERENCES me_relation (id) ON DELETE SET NULL,
  -- The state in which it was when the pairing took it up; none for one that the pairing has made.
  relation_state_before INTEGER,
  due_from_account_id INTEGER NOT NULL REFERENCES account (id),
  due_to_account_id INTEGER NOT NULL REFERENCES account (id),
  folder TEXT NOT NULL,
  -- Which transactions were entered before is not sent by itself: this is the first that was not.
  first_txn_id INTEGER NOT NULL,
  -- Requests up to this amount that a rule fits are booked without a person.
  booked_up_to INTEGER CHECK (booked_up_to > 0),
  CHECK (state IN ('invited', 'removed') OR partner_key IS NOT NULL)
) STRICT;
CREATE UNIQUE INDEX exchange_pairing_relation ON exchange_pairing (relation_id)
  WHERE relation_id IS NOT NULL AND state <> 'removed';

-- How far the carrying of letters has come. `word` is asked back from the partner as long as what this company holds
-- sums up to `word_for`; the letters that were put last are in the mailbox under the names in `letters`, a line each.
-- `telling` is what the next letter tells so that both find out what the other one lacks: all months, or the lists of
-- some. That is begun once for each pair of summaries, `worked_through`. `compared_since` is why it is to be done.
CREATE TABLE exchange_carrying (
  pairing_id INTEGER PRIMARY KEY REFERENCES exchange_pairing (id),
  word TEXT NOT NULL,
  word_for TEXT NOT NULL,
  is_echoed INTEGER NOT NULL CHECK (is_echoed IN (0, 1)),
  their_word TEXT NOT NULL,
  letters TEXT NOT NULL,
  letters_for TEXT NOT NULL,
  owes_reply INTEGER NOT NULL CHECK (owes_reply IN (0, 1)),
  their_summary TEXT NOT NULL,
  telling TEXT NOT NULL,
  worked_through TEXT NOT NULL,
  compared_since TEXT NOT NULL,
  is_compared INTEGER NOT NULL CHECK (is_compared IN (0, 1))
) STRICT;

-- Every fact whose signature is right is kept for good, also one that is not understood. `names` is the request that
-- a fact's own request corrects or reverses; `shown` says that the partner has shown to hold it.
CREATE TABLE exchange_fact (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  pairing_id INTEGER NOT NULL REFERENCES exchange_pairing (id),
  hash BLOB NOT NULL CHECK (length(hash) = 32),
  origin TEXT NOT NULL CHECK (origin IN ('made', 'came back', 'partner')),
  kind TEXT NOT NULL,
  name TEXT NOT NULL,
  names TEXT NOT NULL,
  month TEXT NOT NULL,
  body BLOB NOT NULL,
  signature BLOB NOT NULL CHECK (length(signature) = 64),
  shown INTEGER NOT NULL CHECK (shown IN (0, 1)),
  set_aside TEXT NOT NULL,
  UNIQUE (pairing_id, hash)
) STRICT;
CREATE INDEX exchange_fact_name ON exchange_fact (pairing_id, kind, name);
CREATE INDEX exchange_fact_names ON exchange_fact (pairing_id, names) WHERE names <> '';
CREATE INDEX exchange_fact_month ON exchange_fact (pairing_id, month, hash);
CREATE INDEX exchange_fact_not_shown ON exchange_fact (pairing_id) WHERE shown = 0;
CREATE TRIGGER exchange_fact_update BEFORE UPDATE OF id, pairing_id, hash, origin, kind, name, names, month, body,
    signature ON exchange_fact BEGIN
  SELECT RAISE(ABORT, 'a fact does not change');
END;
CREATE TRIGGER exchange_fact_delete BEFORE DELETE ON exchange_fact BEGIN
  SELECT RAISE(ABORT, 'a fact is not deleted');
END;

-- How many of the facts that left, which the identity knows, are in these books, or need not be looked for. Books that
-- were restored to before know of fewer.
CREATE TABLE exchange_left (
  id INTEGER PRIMARY KEY CHECK (id = 1),
  looked_for INTEGER NOT NULL CHECK (looked_for >= 0)
) STRICT;
INSERT INTO exchange_left (id, looked_for) VALUES (1, 0);

-- What has become of partners' requests, each by the proposal that counts. The entry that was booked for one stays as
-- long as the answer stands; books that were paired anew may know it by two pairings.
CREATE TABLE exchange_inbox (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  pairing_id INTEGER NOT NULL REFERENCES exchange_pairing (id),
  request_id TEXT NOT NULL CHECK (request_id <> ''),
  proposal BLOB NOT NULL CHECK (length(proposal) = 32),
  state TEXT NOT NULL CHECK (state IN ('new', 'held', 'accepted', 'to-book-again', 'rejected', 'refused', 'withdrawn')),
  mark TEXT NOT NULL,
  txn_id INTEGER REFERENCES txn (id),
  UNIQUE (pairing_id, request_id),
  UNIQUE (txn_id, pairing_id),
  CHECK ((state = 'accepted') = (txn_id IS NOT NULL))
) STRICT;
CREATE INDEX exchange_inbox_request ON exchange_inbox (request_id);
CREATE INDEX exchange_inbox_waiting ON exchange_inbox (pairing_id) WHERE state IN ('new', 'held', 'to-book-again');

-- The requests of this company whose proposals were made, and their lines; without one where these books lost it.
CREATE TABLE exchange_outbox (
  pairing_id INTEGER NOT NULL REFERENCES exchange_pairing (id),
  request_id TEXT NOT NULL CHECK (request_id <> ''),
  proposal BLOB NOT NULL CHECK (length(proposal) = 32),
  target_id INTEGER REFERENCES txn_line (id),
  mark TEXT NOT NULL,
  PRIMARY KEY (pairing_id, request_id)
) STRICT, WITHOUT ROWID;
CREATE UNIQUE INDEX exchange_outbox_line ON exchange_outbox (target_id, pairing_id) WHERE target_id IS NOT NULL;
CREATE INDEX exchange_outbox_lost ON exchange_outbox (pairing_id, request_id) WHERE target_id IS NULL;
-- What is entered and waits to be sent.
CREATE INDEX me_transaction_entered ON me_transaction (relation_id, id) WHERE state = 0 AND of_before = 0;

-- Where requests of a partner are booked: those of that name, hint of the account and text in the memo, each empty for
-- any. Without a name they are booked under the one that each tells. What was learned from a booking of a person counts
-- only where no rule that a person added fits.
CREATE TABLE exchange_rule (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  pairing_id INTEGER NOT NULL REFERENCES exchange_pairing (id),
  name TEXT NOT NULL COLLATE NOCASE,
  hint TEXT NOT NULL COLLATE NOCASE,
  memo TEXT NOT NULL COLLATE NOCASE,
  account_id INTEGER NOT NULL REFERENCES account (id),
  name_id INTEGER REFERENCES name (id),
  learned INTEGER NOT NULL CHECK (learned IN (0, 1)),
  UNIQUE (pairing_id, name, hint, memo, learned),
  CHECK (name <> '' OR hint <> '' OR memo <> '')
) STRICT;
CREATE INDEX exchange_rule_name ON exchange_rule (name_id);
)sql";

// What companies that exchange requests learned after they had begun to.
inline constexpr const char* kVersion4 = R"sql(
-- The few facts that wait to be applied are asked for with each letter.
CREATE INDEX exchange_fact_set_aside ON exchange_fact (pairing_id) WHERE set_aside <> '';
-- Neither hashes nor request ids come in their order, so that an index by them has another page written for each. What
-- is said of one request stands together; the hashes of a month are sorted only where two companies compare them, and a
-- request of a relation is looked for in each pairing that this has had.
DROP INDEX exchange_fact_name;
CREATE INDEX exchange_fact_name ON exchange_fact (pairing_id, name, kind);
DROP INDEX exchange_fact_month;
CREATE INDEX exchange_fact_month ON exchange_fact (pairing_id, month);
DROP INDEX exchange_inbox_request;
-- What companies say about requests, and what decides nothing: the disputes and notes that are understood, each by the
-- request that it is about, of this company's own or of the partner's, whether that is here or not.
CREATE TABLE exchange_remark (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  pairing_id INTEGER NOT NULL,
  hash BLOB NOT NULL,
  request_id TEXT NOT NULL CHECK (request_id <> ''),
  asked_by_us INTEGER NOT NULL CHECK (asked_by_us IN (0, 1)),
  UNIQUE (pairing_id, hash),
  FOREIGN KEY (pairing_id, hash) REFERENCES exchange_fact (pairing_id, hash)
) STRICT;
CREATE INDEX exchange_remark_request ON exchange_remark (pairing_id, request_id, asked_by_us);
-- Facts of this company that come back were made by books that are no more, or by a copy of the company: up to which of
-- them, by their ids, all partners were compared with since, and up to which a person has confirmed which it was. Those
-- that came back before were told as they came. As long as one waits, what was made here and has not left is withheld.
ALTER TABLE exchange_left ADD COLUMN came_back_compared INTEGER NOT NULL DEFAULT 0 CHECK (came_back_compared >= 0);
ALTER TABLE exchange_left ADD COLUMN came_back_confirmed INTEGER NOT NULL DEFAULT 0 CHECK (came_back_confirmed >= 0);
CREATE INDEX exchange_fact_came_back ON exchange_fact (id) WHERE origin = 'came back';
UPDATE exchange_left SET
  came_back_compared = coalesce((SELECT max(id) FROM exchange_fact WHERE origin = 'came back'), 0),
  came_back_confirmed = coalesce((SELECT max(id) FROM exchange_fact WHERE origin = 'came back'), 0);
CREATE TABLE exchange_withheld (
  hash BLOB NOT NULL PRIMARY KEY CHECK (length(hash) = 32)
) STRICT, WITHOUT ROWID;

-- Keys besides that of the pairing: by which the partner has signed before; under which letters wait until a person has
-- compared the fingerprint, announced by the key of the pairing or by nobody; of which a person has said that they are
-- not the partner's.
CREATE TABLE exchange_partner_key (
  pairing_id INTEGER NOT NULL REFERENCES exchange_pairing (id),
  public_key BLOB NOT NULL CHECK (length(public_key) = 32),
  standing TEXT NOT NULL CHECK (standing IN ('former', 'offered', 'declined')),
  announced INTEGER NOT NULL CHECK (announced IN (0, 1)),
  PRIMARY KEY (pairing_id, public_key)
) STRICT, WITHOUT ROWID;
-- Books that were restored together with an identity of before learn from partners which key came after it: these books
-- do not sign with that.
ALTER TABLE exchange_own_key ADD COLUMN signs INTEGER NOT NULL DEFAULT 1 CHECK (signs IN (0, 1));
)sql";

inline constexpr std::array kSchemaSteps{kVersion1, kVersion2, kVersion3, kVersion4};

// What SchemaDigest() answers, which a test compares with what the steps make.
inline constexpr const char* kSchemaDigest = "8d58f08bd71c9173f6ffde12b0079ea7f5c9acb6ec648c8a6872bfb61d9c9187";

}  // namespace standalone
