#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/books/AccountTable.h"
#include "standalone/books/AuditTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/books/UserTable.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/desk/results/IntercompanyLine.h"
#include "standalone/desk/results/Relation.h"
#include "standalone/values/CheckedText.h"
#include "standalone/values/States.h"

// What the audit trail tells of the use cases.
namespace desk {

// The values of a record by the names that people read; empty for a record that is not there.
using Facts = std::vector<std::pair<std::string, std::string>>;

// Tells what is not the same before and after.
standalone::AuditDeed DeedOf(std::string action, std::string subject, Facts before, Facts after);

// Whether the field is how a transaction is linked to an earlier one, whose number is the value.
bool IsLink(std::string_view field);

// The lines of a journal entry as they are in the books, or were; and the memo of the entry, which is told if no line
// has it. What goes with it is what was attached later.
standalone::AuditDeed DeedOfRecording(const std::vector<IntercompanyLine>& lines, const std::string& memo);
standalone::AuditDeed DeedOfRemoval(const std::vector<IntercompanyLine>& lines, const std::string& memo,
                                    const std::vector<std::string>& attachments);
// A transaction that was entered here, with all of its lines, as it is in the books; for one that goes, asked before it
// is gone.
Facts FactsOfTransaction(Work& work, std::int32_t txnId);
// Such as bill.record; tells of the transaction as it is now, and `more` about it.
standalone::AuditDeed DeedOfPosting(Work& work, std::string action, std::int32_t txnId, const Facts& more = {});
// All that goes, asked before it is gone.
standalone::AuditDeed DeedOfTransactionRemoval(Work& work, std::int32_t txnId);
standalone::AuditDeed DeedOfAttaching(const standalone::TransactionHeader& header,
                                      const std::vector<std::string>& attachments);
standalone::AuditDeed DeedOfDetaching(const standalone::TransactionHeader& header,
                                      const std::vector<std::string>& attachments);
// The line as it was, and the state that it has now.
standalone::AuditDeed DeedOfState(const IntercompanyLine& line, standalone::BookedState now);

// What the books have of the relation; none when it is not there.
std::optional<Relation> RelationInBooks(Work& work, const standalone::RealmId& realm);
// As it was and as it is; one of them is there.
standalone::AuditDeed DeedOfRelation(const std::optional<Relation>& before, const std::optional<Relation>& after);

// A partner's request that was rejected.
standalone::AuditDeed DeedOfSaving(const DBMultiEntityRelation& partner, const DBMultiEntityRejectedTxnReceiver& row);
standalone::AuditDeed DeedOfForgetting(const DBMultiEntityRelation& partner,
                                       const DBMultiEntityRejectedTxnReceiver& row);

// As the account or name was and is; one of them is there. `below` counts what has changed with it below it.
using CountBelow = std::pair<std::string, std::int64_t>;
standalone::AuditDeed DeedOfAccount(std::string action, const std::optional<standalone::Account>& before,
                                    const std::optional<standalone::Account>& after, const CountBelow& below = {});
standalone::AuditDeed DeedOfName(std::string action, const std::optional<standalone::Name>& before,
                                 const std::optional<standalone::Name>& after, const CountBelow& below = {});

// As the user was and is; one of them is there.
standalone::AuditDeed DeedOfUser(const std::optional<standalone::User>& before,
                                 const std::optional<standalone::User>& after);
standalone::AuditDeed DeedOfSettings(const standalone::Settings& before, const standalone::Settings& after);
standalone::AuditDeed DeedOfRealm(const std::optional<std::string>& before, const std::string& after);

}  // namespace desk
