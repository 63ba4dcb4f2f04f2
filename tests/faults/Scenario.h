#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/MultiEntityDriver.h"
#include "faults/Handling.h"
#include "support/AttachedHost.h"

namespace faults {

// What operations answer through their reference arguments.
struct Results {
  DBMultiEntityRelation relation{};
  std::vector<DBMultiEntityRelation> relations;
  std::vector<std::string> realmIds;
  std::unordered_map<long, std::pair<std::string, std::string>> accounts;
  std::vector<std::pair<std::string, long>> accountsOfType;
  std::vector<METxnInfo> entries;
  std::vector<MERejectedTxnInfo> rejected;
  std::vector<unsigned long> txns;
  std::uint32_t txnId = 0;
};

// A company of which every operation can be asked: its administrator is signed in, the bridge is there and says that no
// accountant is, and all books hold something. It is eight o'clock.
class Company {
 public:
  Company();
  Company(const Company&) = delete;
  Company& operator=(const Company&) = delete;
  ~Company();

  // What the bridge answers.
  unsigned char accountant = 0;
  std::int32_t syncNeed = 0;

  ScriptedHost host;
  Results results;

 private:
  Attachment attachment_{host.Services()};
};

// One operation on one of its paths. `act` answers what the operation returned, as text. Where a name is overloaded,
// `operation` has the arguments that tell the forms apart.
struct Scenario {
  std::string name;
  std::string operation;
  std::function<void(Company&)> arrange;
  std::function<std::string(Company&)> act;
  Table table;
};

// For an operation that needs no more than the company.
inline void Nothing(Company& /*company*/) {}

// A check with an intercompany row, and a line for what it pays.
void AddACheck(Company& company);

// What the log says once the question for the right has been answered.
inline const std::string kRightAnswered = Notice("MULTIENTITY::Exiting MultiEntityDriver::HasMEPermission");

std::string Text(bool answer);
std::string Text(MEStatusCode status);

// What the company's caller and the host's tables hold, one text for each row.
Texts Describe(const Results& results);
Texts Describe(ScriptedHost& host);

// The parts of tables that many operations share.
Table FeatureGate(const std::string& answer, const std::string& disabledNote);
Table RightToManageRelations(const std::string& refusedNote);
Table Right(const std::string& answer, const std::string& refusedNote);
Table UsableAccounts();
Table HomeCurrency();

std::vector<Scenario> GateScenarios();
std::vector<Scenario> AccountScenarios();
std::vector<Scenario> RelationScenarios();
std::vector<Scenario> JournalScenarios();
std::vector<Scenario> TransactionScenarios();
std::vector<Scenario> ListingScenarios();
std::vector<Scenario> RealmScenarios();
std::vector<Scenario> SchedulerScenarios();

// All of them.
const std::vector<Scenario>& Scenarios();

}  // namespace faults
