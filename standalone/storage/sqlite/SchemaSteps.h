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

inline constexpr std::array kSchemaSteps{kVersion1, kVersion2};

}  // namespace standalone
