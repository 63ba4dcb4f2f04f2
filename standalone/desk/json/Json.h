#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "standalone/desk/Accounts.h"
#include "standalone/desk/Attachments.h"
#include "standalone/desk/Audit.h"
#include "standalone/desk/Backup.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/Correcting.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Exchange.h"
#include "standalone/desk/ExchangeStatus.h"
#include "standalone/desk/Export.h"
#include "standalone/desk/Identity.h"
#include "standalone/desk/Import.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Log.h"
#include "standalone/desk/Names.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Pairing.h"
#include "standalone/desk/Realm.h"
#include "standalone/desk/Rejections.h"
#include "standalone/desk/Relations.h"
#include "standalone/desk/Reminder.h"
#include "standalone/desk/Reports.h"
#include "standalone/desk/Rules.h"
#include "standalone/desk/Settings.h"
#include "standalone/desk/Transactions.h"
#include "standalone/desk/Users.h"
#include "standalone/desk/results/Lookalikes.h"
#include "standalone/desk/results/Person.h"
#include "standalone/desk/results/RecordedTransaction.h"
#include "standalone/desk/results/Refusal.h"
#include "standalone/values/Errors.h"

// The results of the desk for programs, the same from every front end. Dates are YYYY-MM-DD, amounts decimal texts
// without separators, debits positive; what is not there is null. Keys stay in the order in which they were added.
namespace desk {

using Json = nlohmann::ordered_json;

Json JsonOf(const Account& account);
Json JsonOf(const Name& name);
Json JsonOf(const Lookalikes& lookalikes);
Json JsonOf(const User& user);
Json JsonOf(const Settings& settings);
Json JsonOf(const Imported& imported);
Json JsonOf(const standalone::BadRow& row);
Json JsonOf(const AuditedDeed& deed);
Json JsonOf(const AuditVerdict& verdict);
Json JsonOf(const BackedUp& made);
Json JsonOf(const Restored& done);
Json JsonOf(const ExportedJournal& exported);
Json JsonOf(const LogLine& line);
Json JsonOf(const NewLogLine& line);
Json JsonOf(const Relation& relation);
Json JsonOf(const IntercompanyLine& line);
Json JsonOf(const RecordedTransaction& transaction);
// What the transaction has now; what has changed is called as what was done.
Json JsonOf(const ChangedAttachments& changed);
Json JsonOf(const ReversedTransaction& reversed);
Json JsonOf(const CorrectedTransaction& corrected);
Json JsonOf(const MovedExpense& moved);
Json JsonOf(const Rejection& rejection);
Json JsonOf(const PairedPartner& partner);
Json JsonOf(const OwnIdentity& identity);
Json JsonOf(const ReplacedKey& replaced);
Json JsonOf(const TakenLetter& letter);
Json JsonOf(const Awaited& awaited);
Json JsonOf(const CarriedWith& carried);
Json JsonOf(const Rule& rule);
Json JsonOf(const InboxRequest& request);
Json JsonOf(const WaitingRequest& request);
Json JsonOf(const BookedRequest& booked);
Json JsonOf(const LeftRequest& left);
Json JsonOf(const OutboxRequest& request);
Json JsonOf(const LeftOut& left);
Json JsonOf(const RequestsOfAKind& requests);
Json JsonOf(const OutboxStatus& outbox);
Json JsonOf(const InboxStatus& inbox);
Json JsonOf(const Balances& balances);
Json JsonOf(const Register& told);
Json JsonOf(const OpenItems& open);
Json JsonOf(const ShownTransaction& shown);
Json JsonOf(const RealmCheck& check);
Json JsonOf(const standalone::WaitingWork& waiting);
Json JsonOf(const Reminder& reminder);
Json JsonOf(const ReminderReset& reset);
Json JsonOf(const BroughtForward& broughtForward);
Json JsonOf(const Opening& opening);
Json JsonOf(const Question& question);
Json JsonOf(const PluginScreen& screen);
Json JsonOf(const Refusal& refusal);

// The keys state and stateNumber.
Json JsonOf(standalone::RelationState state);
Json JsonOf(standalone::TransactionState state);
// The same and ofBefore.
Json JsonOf(standalone::BookedState state);
// The keys persona and personaNumber.
Json JsonOf(Persona persona);
std::string_view NameOf(Persona persona) noexcept;
// "agreed", "no-request", "not-answered", "closed".
std::string_view NameOf(Standing standing) noexcept;
// "reverses" or "reversed-by", "corrects" or "corrected-by", "moves" or "moved-by".
std::string_view NameOf(const ShownLink& link) noexcept;
// "0-30", "31-60", "61-90", "over-90".
std::string_view NameOfAge(std::size_t age) noexcept;
// "question", "notice", "warning".
std::string_view NameOf(Question::Kind kind) noexcept;

template <typename Item>
Json JsonOf(const std::vector<Item>& items) {
  Json list = Json::array();
  for (const Item& item : items) list.push_back(JsonOf(item));
  return list;
}

// Null for what is not there.
template <typename Value>
Json OrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

}  // namespace desk
