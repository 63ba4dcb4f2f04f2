#pragma once

#include <initializer_list>
#include <vector>

#include "standalone/storage/sqlite/SchemaSteps.h"

namespace standalone {

// Steps of every kind that a later version may take after those of this one.

inline constexpr const char* kAddsAColumn = "ALTER TABLE account ADD COLUMN note TEXT NOT NULL DEFAULT ''";

// The table that most others refer to, in a posted state, with triggers of its own and of other tables that read it.
inline constexpr const char* kMakesTransactionsAnew = R"sql(
CREATE TABLE txn_anew (
  id INTEGER PRIMARY KEY AUTOINCREMENT CHECK (id BETWEEN 1 AND 2147483646),
  type INTEGER NOT NULL CHECK (type IN (3, 8, 9)),
  date INTEGER NOT NULL CHECK (date > 0),
  name_id INTEGER REFERENCES name (id),
  memo TEXT NOT NULL,
  due_date INTEGER NOT NULL DEFAULT 0,
  posted INTEGER NOT NULL DEFAULT 0 CHECK (posted IN (0, 1)),
  partner_confirmed INTEGER NOT NULL DEFAULT 0 CHECK (partner_confirmed IN (0, 1)),
  document_number TEXT NOT NULL DEFAULT ''
) STRICT;
INSERT INTO txn_anew (id, type, date, name_id, memo, posted, partner_confirmed, document_number)
  SELECT id, type, date, name_id, memo, posted, partner_confirmed, document_number FROM txn;
DROP TABLE txn;
ALTER TABLE txn_anew RENAME TO txn;
CREATE INDEX txn_type_date ON txn (type, date);
CREATE INDEX txn_name ON txn (name_id);
CREATE TRIGGER txn_insert_posted BEFORE INSERT ON txn WHEN NEW.posted <> 0 BEGIN
  SELECT RAISE(ABORT, 'a transaction is posted after its lines are entered');
END;
CREATE TRIGGER txn_post BEFORE UPDATE OF posted ON txn WHEN OLD.posted = 0 AND NEW.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'a transaction needs at least two lines')
    WHERE (SELECT count(*) FROM txn_line WHERE txn_id = NEW.id) < 2;
  SELECT RAISE(ABORT, 'the lines of a transaction must sum to zero')
    WHERE (SELECT sum(amount) FROM txn_line WHERE txn_id = NEW.id) <> 0;
END;
CREATE TRIGGER txn_change_posted
    BEFORE UPDATE OF id, type, date, name_id, memo, document_number, posted ON txn WHEN OLD.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'a posted transaction does not change');
END;
CREATE TRIGGER txn_post_closed BEFORE UPDATE OF posted ON txn WHEN OLD.posted = 0 AND NEW.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'the books are closed on that day')
    FROM company WHERE NEW.date <= closing_date AND NOT EXISTS (SELECT 1 FROM after_close);
END;
CREATE TRIGGER txn_delete_closed BEFORE DELETE ON txn WHEN OLD.posted = 1 BEGIN
  SELECT RAISE(ABORT, 'the books are closed on that day')
    FROM company WHERE OLD.date <= closing_date AND NOT EXISTS (SELECT 1 FROM after_close);
END;
)sql";

inline constexpr const char* kReplacesAnIndexAndATrigger = R"sql(
DROP INDEX account_type;
CREATE INDEX account_type ON account (type, full_name, id) WHERE deleted = 0;
DROP TRIGGER txn_line_delete_posted;
CREATE TRIGGER txn_line_delete_posted BEFORE DELETE ON txn_line
    WHEN (SELECT posted FROM txn WHERE id = OLD.txn_id) = 1 BEGIN
  SELECT RAISE(ABORT, 'no line of a posted transaction is deleted');
END;
)sql";

inline constexpr const char* kAddsATable = "CREATE TABLE note (id INTEGER PRIMARY KEY, text TEXT NOT NULL) STRICT";
inline constexpr const char* kDropsATable = "DROP TABLE note";

// The steps of this version and these.
inline std::vector<const char*> ThisVersionAnd(std::initializer_list<const char*> more) {
  std::vector<const char*> steps(kSchemaSteps.begin(), kSchemaSteps.end());
  steps.insert(steps.end(), more);
  return steps;
}

}  // namespace standalone
