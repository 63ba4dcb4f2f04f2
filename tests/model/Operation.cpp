#include "model/Operation.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "model/Pools.h"

namespace model {

namespace {

constexpr std::size_t kSettingUp = 16;

std::uint32_t Below(rc::Random& random, std::uint32_t bound) {
  return static_cast<std::uint32_t>(random.next() % bound);
}

Fault AFault(rc::Random& random) {
  static constexpr std::array<FaultKind, 6> kFaults{FaultKind::kRefuse,          FaultKind::kRefuse,
                                                    FaultKind::kRefuse,          FaultKind::kThrowStandard,
                                                    FaultKind::kThrowOutOfRange, FaultKind::kThrowOther};
  static constexpr std::array<int, 5> kCodes{kEdListFailure, kEdListDuplicateAccount, kEdListDuplicateName, 0, -5};
  static constexpr std::array<std::uint32_t, 4> kReaches{3, 6, 12, 40};
  Fault fault;
  fault.call = 1 + static_cast<int>(Below(random, kReaches.at(Below(random, kReaches.size()))));
  fault.kind = kFaults.at(Below(random, kFaults.size()));
  fault.code = kCodes.at(Below(random, kCodes.size()));
  fault.preferenceMissing = Below(random, 4) == 0;
  return fault;
}

// The operations that decide most, and so are taken more often than the others.
constexpr std::array kWeighty{Kind::kCreateRelation,
                              Kind::kUpdateRelation,
                              Kind::kDeleteRelation,
                              Kind::kRecordGeneralJournalEntry,
                              Kind::kRemoveGeneralJournalEntry,
                              Kind::kUpdateTransactionOfRequest,
                              Kind::kUpdateTransactionOfLine,
                              Kind::kDoesTransactionExist,
                              Kind::kSaveRejectedTransaction,
                              Kind::kGetAllRejectedTransaction,
                              Kind::kListEntriesOfTransaction,
                              Kind::kListEntriesOfPeriod,
                              Kind::kGetAccountsList,
                              Kind::kBlockUserIfRealmReset,
                              Kind::kCheckForPluginNavigation,
                              Kind::kProcessSchedulerMessage,
                              Kind::kDeliverFirstMessage,
                              Kind::kStartScheduler};

// What fills a company with the rows that the operations work on.
constexpr std::array kFilling{Kind::kPutRelation,    Kind::kPutRelation,    Kind::kPutRelation,
                              Kind::kPutTransaction, Kind::kPutTransaction, Kind::kPutTransaction,
                              Kind::kPutTransaction, Kind::kPutRejected};

Operation AnOperation(rc::Random& random, Kind kind) {
  Operation operation;
  operation.kind = kind;
  for (auto& argument : operation.arguments) argument = static_cast<std::uint16_t>(Below(random, 5040));
  if (Below(random, 10) < 4) operation.fault = AFault(random);
  return operation;
}

Kind AKind(rc::Random& random, std::size_t first, std::size_t beyond) {
  return static_cast<Kind>(first + Below(random, static_cast<std::uint32_t>(beyond - first)));
}

Operation AnyOperation(rc::Random& random) {
  const std::uint32_t of10 = Below(random, 10);
  if (of10 < 4) return AnOperation(random, kWeighty.at(Below(random, kWeighty.size())));
  if (of10 < 7) return AnOperation(random, AKind(random, 0, kOperationKinds));
  if (of10 < 8) return AnOperation(random, kFilling.at(Below(random, kFilling.size())));
  return AnOperation(random, AKind(random, kOperationKinds, kKinds));
}

Operation ASwitch(rc::Random& random, int key) {
  Operation operation{.kind = Kind::kSetFeatureSwitch};
  operation.arguments[0] = static_cast<std::uint16_t>(key);
  operation.arguments[1] = Below(random, 8) == 0 ? 1 : 0;
  return operation;
}

Operation FirstQuestion(rc::Random& random) {
  Operation operation{.kind = Kind::kIsFeatureEnabled};
  if (Below(random, 8) == 0) {
    operation.fault = {.call = 1 + static_cast<int>(Below(random, 3)), .kind = FaultKind::kThrowStandard};
  }
  return operation;
}

History Generate(rc::Random random, std::size_t operations, bool firstOfProcess) {
  History history;
  history.reserve(operations);
  if (firstOfProcess) {
    for (int key = 0; key < 3; ++key) history.push_back(ASwitch(random, key));
    history.push_back(FirstQuestion(random));
  }
  const bool filled = Below(random, 4) != 0;
  while (history.size() < std::min(kSettingUp, operations)) {
    history.push_back(AnOperation(
        random, filled ? kFilling.at(Below(random, kFilling.size())) : AKind(random, kOperationKinds, kKinds)));
  }
  while (history.size() < operations) history.push_back(AnyOperation(random));
  return history;
}

// Simpler forms of one step: without its fault, and with each of its numbers smaller.
std::vector<Operation> Simpler(const Operation& operation) {
  std::vector<Operation> simpler;
  const auto add = [&](auto change) {
    Operation candidate = operation;
    change(candidate);
    if (candidate.arguments != operation.arguments || candidate.fault != operation.fault) simpler.push_back(candidate);
  };
  add([](Operation& candidate) { candidate.fault = {}; });
  add([](Operation& candidate) { candidate.arguments = {}; });
  for (std::size_t i = 0; i < Operation::kArguments; ++i) {
    add([i](Operation& candidate) { candidate.arguments.at(i) = 0; });
    add([i](Operation& candidate) { candidate.arguments.at(i) /= 2; });
    add([i](Operation& candidate) {
      if (candidate.arguments.at(i) != 0) --candidate.arguments.at(i);
    });
  }
  return simpler;
}

rc::Seq<History> SimplerHistories(const History& history) {
  return rc::seq::concat(rc::shrink::removeChunks(history),
                         rc::shrink::eachElement(history, [](const Operation& operation) {
                           return rc::seq::fromContainer(Simpler(operation));
                         }));
}

template <std::size_t Width>
void Fill(char (&field)[Width], const Util::TString& text) {
  std::memcpy(field, text.c_str(), std::min(text.size(), Width - 1));
}

void PutRelation(World& world, const Arguments& arguments) {
  DBMultiEntityRelation row{};
  Fill(row.realmId, arguments.RealmOfLine(arguments.Raw(8) % 3, 1));
  row.relationId = arguments.RelationOf(row.realmId, 0);
  Fill(row.partnerName, arguments.PartnerName(2));
  row.state = static_cast<std::int16_t>(arguments.State(3));
  row.relationType = static_cast<std::int16_t>(arguments.Below(4, 3));
  row.dueFromAccountId = row.state == 4 ? 0 : arguments.AccountId(5);
  row.dueToAccountId = row.state == 4 ? 0 : arguments.AccountId(6);
  row.revision = 5;
  std::erase_if(world.relations, [&](const auto& other) {
    return std::strcmp(other.realmId, row.realmId) == 0 || (other.relationId == row.relationId && !arguments.Rarely(7));
  });
  world.relations.push_back(row);
}

void PutTransaction(World& world, const Arguments& arguments) {
  DBMultiEntityTransaction row{};
  row.targetId = arguments.TargetId(1);
  row.txnId = arguments.TxnOf(row.targetId, 0);
  row.relationId = arguments.RelationOfLine(row.targetId, 2);
  Fill(row.requestId, arguments.RequestOfLine(row.targetId, 3));
  row.txnType = arguments.TxnType(4);
  row.state = static_cast<std::int16_t>(arguments.State(5));
  std::erase_if(world.transactions, [&](const auto& other) { return other.targetId == row.targetId; });
  world.transactions.push_back(row);
  if (arguments.Rarely(6)) return;
  world.lines.insert_or_assign(row.targetId, Line{.txnId = row.txnId,
                                                  .txnType = row.txnType,
                                                  .date = arguments.Date(7),
                                                  .minorUnits = arguments.Raw(8) * 7 - 9000,
                                                  .accountName = "Account " + std::to_string(arguments.Below(9, 9)),
                                                  .memo = arguments.Flag(9) ? "memo %d" : "",
                                                  .nameId = arguments.Below(8, 6)});
}

void PutLine(World& world, const Arguments& arguments) {
  world.lines.insert_or_assign(arguments.TargetId(0), Line{.txnId = arguments.TxnId(1),
                                                           .txnType = arguments.TxnType(2),
                                                           .date = arguments.Date(3),
                                                           .minorUnits = arguments.Raw(4),
                                                           .accountName = "Line account",
                                                           .memo = "line",
                                                           .nameId = arguments.Below(5, 6)});
}

void PutRejected(World& world, const Arguments& arguments) {
  DBMultiEntityRejectedTxnReceiver row{};
  Fill(row.requestId, arguments.RequestId(0));
  row.txnType = arguments.RejectedType(1);
  row.relationId = arguments.RelationOfLine(arguments.Raw(5) % 3, 2);
  const Util::TString amount = arguments.RejectedAmount(3);
  std::memcpy(row.amount, amount.c_str(), std::min(amount.size(), sizeof row.amount));
  Fill(row.partnerTxnId, arguments.RequestId(4));
  world.rejected.push_back(row);
  if (world.rejected.size() > 8) world.rejected.erase(world.rejected.begin());
}

template <class Table>
void DropOne(Table& table, const Arguments& arguments) {
  if (!table.empty()) table.erase(std::next(table.begin(), arguments.Below(0, static_cast<int>(table.size()))));
}

void SetAccount(World& world, const Arguments& arguments) {
  Account& account = world.accounts[arguments.AccountId(0)];
  account.deleted = arguments.Rarely(1);
  account.subAccount = arguments.Rarely(2);
  account.special = arguments.Rarely(3);
  account.type = static_cast<std::int16_t>(arguments.Rarely(4) ? arguments.Below(5, 18) : 2);
  world.accountMapLoadFactor = arguments.Flag(6) ? 2.5F : 1.0F;
}

void SetApplication(World& world, const Arguments& arguments) {
  world.serverMode = arguments.Rarely(0);
  world.open = !arguments.Rarely(1);
  world.closing = arguments.Rarely(2);
  world.hasActiveFile = !arguments.Rarely(3);
  world.fileState = arguments.Below(4, 8) == 7 ? 1 : arguments.Below(5, 3) * 2;
}

void SetCompany(World& world, const Arguments& arguments) {
  world.preferencesAvailable = !arguments.Rarely(0);
  world.sampleFile = arguments.Rarely(1);
  world.accountantsCopy = arguments.Rarely(2) ? 2 : 0;
  world.multiCurrency = arguments.Below(3, 3) == 2;
  world.homeCurrency = arguments.Rarely(4) ? "" : "EUR";
}

void SetBridge(World& world, const Arguments& arguments) {
  world.bridgeThere = !arguments.Rarely(0);
  world.accountantEntryThere = !arguments.Rarely(1);
  world.attentionEntryThere = !arguments.Rarely(2);
  world.accountant = arguments.Flag(3);
  world.attention = arguments.Below(4, 6);
}

void SetMember(auto& set, const auto& element, bool member) {
  if (member) set.insert(element);
  if (!member) set.erase(element);
}

void SetPreference(World& world, const char* key, const std::string& value, bool remove) {
  if (remove) world.preferences.erase(key);
  if (!remove) world.preferences.insert_or_assign(key, value);
}

}  // namespace

rc::Gen<History> AHistory(std::size_t operations, bool firstOfProcess) {
  return rc::Gen<History>([=](const rc::Random& random, int) {
    return rc::shrinkable::shrinkRecur(Generate(random, operations, firstOfProcess), SimplerHistories);
  });
}

World FreshWorld() {
  World world;
  for (std::int16_t type = 0; type < 17; ++type) {
    world.accounts.emplace(
        type + 1, Account{.name = type == 0 ? "Bank" : "Account of type " + std::to_string(type), .type = type});
  }
  world.accounts.emplace(18, Account{.name = "Parent:Sub", .type = 2, .subAccount = true});
  world.accounts.emplace(19, Account{.name = "Gone", .type = 2, .deleted = true});
  world.accounts.emplace(20, Account{.name = "Kept by the host", .type = 2, .special = true});
  for (std::int32_t recnum = 21; recnum < 30; ++recnum) {
    world.accounts.emplace(recnum, Account{.name = "Intercompany " + std::to_string(recnum), .type = 2});
  }
  world.names = {{1, {"Top", 0}}, {2, {"Mid", 1}}, {3, {"Child", 2}}, {4, {"Alone", 0}}};
  for (unsigned int i = 0; i < 6; ++i) {
    world.queryRows.push_back(
        {.selection = i % 2, .date = DateType32(2024, 3, 1 + static_cast<int>(i)), .txnId = 100 + i});
  }
  return world;
}

void Change(World& world, const Operation& operation) {
  static constexpr std::array<const char*, 3> kSwitches{"ME_FOR_ALL", "ME_FOR_BILLS", "ME_FOR_CHECKS"};
  static constexpr std::array<const char*, 5> kAccountSwitches{"Other_Current_Asset", "Bank", "Expense",
                                                               "Other_Current_Liability", "Non_Posting"};
  static constexpr std::array<const char*, 3> kValues{"HoursToLaunchDay", "InitialDelayInSeconds",
                                                      "CheckForRealmReset"};
  static constexpr std::array<std::int32_t, 4> kFeatures{19, 20, 16, 0};
  static constexpr std::array<std::int32_t, 4> kActions{2, 1, 5, 4};
  static constexpr std::array<std::int32_t, 4> kLevels{0, 1, 3, 4};
  const Arguments a(operation);
  switch (operation.kind) {
    case Kind::kSetFeatureSwitch:
      return SetMember(world.switchesOff, std::pair<std::string, std::string>("MultiEntityFeature", a.Of(0, kSwitches)),
                       a.Flag(1));
    case Kind::kSetAccountSwitch:
      return SetMember(world.switchesOff,
                       std::pair<std::string, std::string>("MultiEntityAccounts", a.Of(0, kAccountSwitches)),
                       a.Rarely(1));
    case Kind::kSetRight:
      return SetMember(world.rightsMissing, std::pair(a.Of(0, kFeatures), a.Of(1, kActions)), a.Below(2, 3) == 2);
    case Kind::kSetListRight:
      return SetMember(world.listRightsMissing, a.Of(0, kActions), a.Flag(1));
    case Kind::kSetAdministrator:
      world.administrator = a.Below(0, 4) != 3;
      return;
    case Kind::kSetClock:
      world.now = a.Clock(0);
      return;
    case Kind::kSetRemoteValue:
      world.remoteValues.insert_or_assign(a.Of(0, kValues), a.RemoteValue(1));
      return;
    case Kind::kSetStoredDate:
      return SetPreference(world, "MEPromptLaunchDate", a.StoredDate(0), a.Rarely(1));
    case Kind::kSetStoredRealm:
      return SetPreference(world, "MERealmId", std::string(a.Realm(0).view()), a.Rarely(1));
    case Kind::kPutRelation:
      return PutRelation(world, a);
    case Kind::kDropRelation:
      return DropOne(world.relations, a);
    case Kind::kPutTransaction:
      return PutTransaction(world, a);
    case Kind::kPutLine:
      return PutLine(world, a);
    case Kind::kDropLine:
      return DropOne(world.lines, a);
    case Kind::kPutRejected:
      return PutRejected(world, a);
    case Kind::kSetAccount:
      return SetAccount(world, a);
    case Kind::kSetApplication:
      return SetApplication(world, a);
    case Kind::kSetCompany:
      return SetCompany(world, a);
    case Kind::kSetBridge:
      return SetBridge(world, a);
    case Kind::kSetAnswers:
      world.yesNoAnswer = 1 + a.Below(0, 3);
      world.messageAnswer = a.Below(1, 3);
      return;
    case Kind::kPutQueryRow:
      world.queryRows.push_back({.selection = static_cast<unsigned int>(a.Below(0, 3)),
                                 .date = a.Date(1),
                                 .txnId = static_cast<unsigned long>(a.Raw(2))});
      return;
    case Kind::kSetLogLevel:
      return SetMember(world.unwantedLevels, a.Of(0, kLevels), a.Rarely(1));
    case Kind::kSetLastTimer:
      world.lastTimer = a.Rarely(0) ? 0xFFFFFFFEU : world.lastTimer;
      return;
    default:
      return;
  }
}

}  // namespace model
