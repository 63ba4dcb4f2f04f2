#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/books/AuditTable.h"
#include "standalone/books/SettingsTable.h"
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
standalone::AuditDeed DeedOf(std::string action, std::string subject, const Facts& before, const Facts& after);

// The lines of a journal entry as they are in the books, or were.
standalone::AuditDeed DeedOfRecording(const std::vector<IntercompanyLine>& lines);
standalone::AuditDeed DeedOfRemoval(const std::vector<IntercompanyLine>& lines);
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

// As the user was and is; one of them is there.
standalone::AuditDeed DeedOfUser(const std::optional<standalone::User>& before,
                                 const std::optional<standalone::User>& after);
standalone::AuditDeed DeedOfSettings(const standalone::Settings& before, const standalone::Settings& after);
standalone::AuditDeed DeedOfRealm(const std::optional<std::string>& before, const std::string& after);

}  // namespace desk
