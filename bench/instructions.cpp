// Does a fixed piece of work after another and has callgrind write one profile for each, so that the instructions of
// one call can be told exactly and compared with an earlier build. See scripts/count-instructions.sh.
//
// multientity_instructions [TEXT]    only what has TEXT in its name

#include <valgrind/callgrind.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MESchedulerUtil.h"
#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntity/MultiEntityScheduler.h"
#include "MultiEntityHost/SystemTime.h"
#include "bench/HandWritten.h"
#include "bench/SampleCompany.h"
#include "standalone/company/Session.h"
#include "standalone/company/StandaloneHost.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/Import.h"
#include "standalone/desk/Journal.h"
#include "standalone/desk/Transactions.h"
#include "support/MemoryHost.h"
#include "support/MultiEntityPrivateAccess.h"

namespace bench {

namespace {

using standalone::Access;
using standalone::Session;
using standalone::StandaloneHost;

constexpr const char* kRealm = "9130000000000001";
constexpr const char* kRequest = "0b8e3a60-0000-4000-8000-000000000001";

// What is counted: all, or what has this in its name.
std::string_view wanted;

// Counts the second run of `work`: the first one fills what is read once per process.
void Count(const std::string& name, const std::function<void()>& work) {
  if (name.find(wanted) == std::string::npos) return;
  work();
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  work();
  CALLGRIND_DUMP_STATS_AT(name.c_str());
  CALLGRIND_STOP_INSTRUMENTATION;
}

// A line of the log costs more when it is the first one of its second; ten calls level that out.
std::function<void()> TenTimes(std::function<void()> call) {
  return [call = std::move(call)] {
    for (int count = 0; count < 10; ++count) call();
  };
}

// One call of each exported operation. Arguments are made before the counting where they can be.
class Calls {
 public:
  Calls(MemoryHost& host, std::string suffix) : host_(host), suffix_(std::move(suffix)) {}

  void CountAll() {
    One("an empty call", [] { MultiEntityDriver::GetGJEDeletionDueToFDPFailure(); });
    One("AttachHost and DetachHost", [&] {
      DetachHost();
      AttachHost(host_.Services());
    });
    CountGates();
    CountRelations();
    CountTransactions();
    CountQueries();
    CountRejected();
    CountIdentity();
    CountScheduler();
    CountRefusals();
  }

 private:
  void One(const std::string& name, const std::function<void()>& call) { Count(name + suffix_, call); }

  void CountGates() {
    One("IsFeatureEnabled", [] { MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal); });
    One("HasMEPermission",
        [] { MultiEntityDriver::HasMEPermission(MEPermissionViewTransactions, kFeatureJournalEntries); });
    One("IsAccountTypeEnabledForME", [] { MultiEntityDriver::IsAccountTypeEnabledForME(KrEnumerations::kBank); });
  }

  void CountRelations() {
    std::vector<MEAccountInfo> accounts(2);
    accounts[0].accountId = 1;
    accounts[1] = {.name = {}, .type = 0, .accountId = 2, .role = MEAccountRoleDueTo};
    One("CreateRelation",
        [&] { MultiEntityDriver::CreateRelation(realm_, partner_, MERelationType{}, MEStateEstablished, accounts); });
    One("PopulateCOAInRelation", [&] {
      DBMultiEntityRelation row{};
      MultiEntityDriver::PopulateCOAInRelation(row, accounts);
    });
    One("UpdateRelation", [&] {
      MERelationInfo info;
      info.realmId = realm_;
      info.state = MEStateEstablished;
      MultiEntityDriver::UpdateRelation(info);
    });
    One("DeleteRelation", [&] { MultiEntityDriver::DeleteRelation(realm_, true); });
    DBMultiEntityRelation relation{};
    One("GetRelation", [&] { MultiEntityDriver::GetRelation(realm_, relation); });
    One("GetRelationById", [&] { MultiEntityDriver::GetRelationById(1, relation); });
    One("GetRelationsList", [] {
      std::vector<DBMultiEntityRelation> list;
      MultiEntityDriver::GetRelationsList(list);
    });
    One("GetRelationRealmIdList", [] {
      std::vector<std::string> list;
      MultiEntityDriver::GetRelationRealmIdList(list, true);
    });
    One("IsCOAValidForMultiEntity", [&] {
      CAccnt account(host_, 1, kFeatureTypeStandard);
      MultiEntityDriver::IsCOAValidForMultiEntity(&account);
    });
    One("GetAccountsList", [] {
      std::unordered_map<long, std::pair<std::string, std::string>> list;
      MultiEntityDriver::GetAccountsList(list, MEAccountFilterUnused, "");
    });
    One("GetAccountListByType", [] {
      std::vector<std::pair<std::string, long>> list;
      MultiEntityDriver::GetAccountListByType(0, list);
    });
  }

  void CountTransactions() {
    MEAccountInfo expense;
    expense.accountId = 3;
    MECNameInfo name;
    name.nameId = 1;
    One("RecordGeneralJournalEntry", [&] {
      std::uint32_t txnId = 0;
      MultiEntityDriver::RecordGeneralJournalEntry(realm_, expense, 2, amount_, request_, name, txnId);
    });
    One("SetGJEDeletionDueToFDPFailure", [] { MultiEntityDriver::SetGJEDeletionDueToFDPFailure(false); });
    One("RemoveGeneralJournalEntry", [] { MultiEntityDriver::RemoveGeneralJournalEntry(7); });
    One("GetListOfTxnTargetEntries of a transaction", [] {
      std::vector<METxnInfo> list;
      MultiEntityDriver::GetListOfTxnTargetEntries(list, 7);
    });
    One("GetListOfTxnTargetEntries of a period", [] {
      std::vector<METxnInfo> list;
      MultiEntityDriver::GetListOfTxnTargetEntries(list, NullDate(), NullDate());
    });
    One("UpdateTransactionWithState by request",
        [&] { MultiEntityDriver::UpdateTransactionWithState(realm_, request_, MEStateEstablished); });
    One("UpdateTransactionWithState by line",
        [] { MultiEntityDriver::UpdateTransactionWithState(7, 13, MEStateEstablished); });
    One("DoesTransactionExist", [&] { MultiEntityDriver::DoesTransactionExist(realm_, request_); });
  }

  void CountQueries() {
    constexpr unsigned int kSelection = 1;
    constexpr unsigned int kDateField = 2;
    std::vector<unsigned long> txns;
    One("GetTxns", [&] { MultiEntityPrivateAccess::GetTxns(kSelection, txns); });
    One("GetTxnsForPeriod", [&] {
      MultiEntityPrivateAccess::GetTxnsForPeriod({2025, 1, 1}, {2025, 12, 31}, kSelection, kDateField, txns);
    });
  }

  void CountRejected() {
    host_.isRequestKnown = false;
    One("SaveRejectedTransaction",
        [&] { MultiEntityDriver::SaveRejectedTransaction(request_, kTxnTypeBill, realm_, amount_, partnerTxn_); });
    host_.isRequestKnown = true;
    One("GetAllRejectedTransaction", [] {
      std::vector<MERejectedTxnInfo> list;
      MultiEntityDriver::GetAllRejectedTransaction(list);
    });
    One("DeleteRejectedTransaction", [&] { MultiEntityDriver::DeleteRejectedTransaction(request_); });
  }

  void CountIdentity() {
    One("GetMECacheRealmId", [&] {
      bool ok = false;
      host_.LocalFree(MultiEntityDriver::GetMECacheRealmId(realm_, ok));
    });
    std::string realm(kRealm);
    One("SetMECacheRealmId", [&] { MultiEntityDriver::SetMECacheRealmId(realm.data()); });
    const Util::TString own("9130000000000009");
    One("IsRealmReset", [&] { MultiEntityPrivateAccess::IsRealmReset(own); });
    One("BlockUserIfRealmReset", [&] { MultiEntityDriver::BlockUserIfRealmReset(own); });
    One("CheckForPluginNavigation", [] { MultiEntityDriver::CheckForPluginNavigation(); });
    One("SybaseRelationsUserPersonaForRole", [] { MultiEntityDriver::SybaseRelationsUserPersonaForRole(1); });
  }

  void CountScheduler() {
    One("GetDelayInSecondsFromDCE", [] { MESchedulerUtil::GetDelayInSecondsFromDCE(); });
    One("GetHoursToLaunchFromDCE", [] { MESchedulerUtil::GetHoursToLaunchFromDCE(); });
    One("DateToString", [] { MESchedulerUtil::DateToString({2025, 6, 30}); });
    One("StringToDate", [] { MESchedulerUtil::StringToDate("20250630"); });
    _SYSTEMTIME now{};
    host_.GetLocalTime(now);
    One("SystemTimeToDate", [&] { MESchedulerUtil::SystemTimeToDate(now); });
    One("IsTimerLaunchDateToday", [] { MultiEntityPrivateAccess::IsTimerLaunchDateToday(); });
    One("GetNextSchedulerTimeFromPrefDb", [] { MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(); });
    One("SetNextSchedulerTimeToPrefDb", [] { MESchedulerUtil::SetNextSchedulerTimeToPrefDb(); });
    One("GetSchedulerLaunchDelayInSeconds", [] { MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(); });
    One("CanProcessSchedulerMsg", [] { MESchedulerUtil::CanProcessSchedulerMsg(); });
    One("StartScheduler", [] { MESchedulerUtil::StartScheduler(); });
    One("OnTimerElapsed", [] { MESchedulerUtil::OnTimerElapsed(nullptr, 0, 0, 0); });
    One("ProcessMsg of a MultiEntityScheduler", [] { MultiEntityScheduler().ProcessMsg(); });
    One("KillAnyExistingScheduler", [] { MESchedulerUtil::KillAnyExistingScheduler(); });
  }

  void CountRefusals() {
    host_.grantsRights = false;
    One("DeleteRelation refused", [&] { MultiEntityDriver::DeleteRelation(realm_, true); });
    One("UpdateTransactionWithState by request refused",
        [&] { MultiEntityDriver::UpdateTransactionWithState(realm_, request_, MEStateEstablished); });
    host_.grantsRights = true;
  }

  MemoryHost& host_;
  std::string suffix_;
  const Util::TString realm_{kRealm};
  const Util::TString partner_{"Birch Services"};
  const Util::TString request_{kRequest};
  const Util::TString amount_{"1,234.50"};
  const Util::TString partnerTxn_{"41"};
};

void CountOperations() {
  MemoryHost host;
  if (AttachHost(host.Services()) != MEAttachDone) throw std::runtime_error("the host was not attached");
  Calls(host, ", log off").CountAll();
  host.wantsLog = true;
  Calls(host, ", log on").CountAll();
  DetachHost();
}

// The stand-alone host and the hand-written side on the same small company.
void CountOnCompanyFile(const std::filesystem::path& folder) {
  constexpr std::int64_t kLines = 2'000;
  constexpr DateType32 kFrom(2025, 1, 1);
  constexpr DateType32 kTo(2025, 12, 31);
  const std::filesystem::path company = folder / "counted.company";
  MakeCompany(company, kLines);
  StandaloneHost host(company);
  const Session session(host);
  HandWritten hand(company);
  Count("company file: period listing of 2000 lines", [&] {
    std::vector<METxnInfo> list;
    host.Request(Access::kRead, [&] { return MultiEntityDriver::GetListOfTxnTargetEntries(list, kFrom, kTo); });
  });
  Count("by hand: period listing of 2000 lines", [&] {
    std::vector<METxnInfo> list;
    hand.ListPeriod(kFrom, kTo, list);
  });
  const Request known = RequestOf(1);
  Count("company file: ten questions for a request id", TenTimes([&] {
          host.Request(Access::kRead, [&] {
            return MultiEntityDriver::DoesTransactionExist(std::string_view(known.realm), std::string_view(known.id));
          });
        }));
  Count("by hand: ten questions for a request id", TenTimes([&] { hand.Exists(known.realm, known.id); }));
  Count("company file: accounts free for relations", [&] {
    std::unordered_map<long, std::pair<std::string, std::string>> list;
    host.Request(Access::kRead, [&] { return MultiEntityDriver::GetAccountsList(list, MEAccountFilterUnused, ""); });
  });
}

// What writes, with its line of the audit trail.
void CountAtTheDesk(const std::filesystem::path& folder) {
  constexpr std::int64_t kLines = 2'000;
  const std::filesystem::path file = folder / "desk.company";
  MakeCompany(file, kLines);
  desk::Company company(file);
  HandWritten hand(file);
  platform::Clock& clock = platform::SystemClock();
  std::int64_t sent = 0;
  Count("desk: ten state changes by request id", TenTimes([&] {
          const Request request = RequestOf(++sent);
          desk::SetState(company, standalone::RealmId(request.realm), standalone::RequestId(request.id),
                         standalone::TransactionState::kEstablished);
        }));
  Count("by hand: ten state changes by request id", TenTimes([&] {
          const Request request = RequestOf(++sent);
          hand.Establish(request.realm, request.id, clock.Now());
        }));
  std::int64_t next = kLines;
  Count("desk: recording ten journal entries", TenTimes([&] {
          desk::RecordJournalEntry(company, {.partner = standalone::RealmId(RealmId(2)),
                                             .request = standalone::RequestId(RequestId(++next)),
                                             .amount = standalone::LineAmount("1,234.50"),
                                             .expense = desk::Existing{"Operating Expenses:Department 3"},
                                             .dueTo = {},
                                             .name = desk::Existing{"Region 3:Vendor 2:Branch 1"}});
        }));
  Count("by hand: recording ten journal entries", TenTimes([&] {
          hand.Record({.realmId = RealmId(2),
                       .expenseAccount = ExpenseAccount(3),
                       .dueToAccount = DueToAccount(2),
                       .amount = 123'450,
                       .requestId = RequestId(++next),
                       .nameId = 131},
                      clock.Now());
        }));
}

// The first import is the uncounted one; the second goes into another company.
void CountImport(const std::filesystem::path& folder) {
  const std::filesystem::path csv = folder / "counted.csv";
  WriteImportFile(csv, 500);
  int companies = 0;
  Count("desk: import of 500 transactions", [&] {
    const std::filesystem::path file = folder / ("import" + std::to_string(++companies) + ".company");
    CALLGRIND_TOGGLE_COLLECT;
    MakeCompany(file, 0);
    desk::Company company(file);
    CALLGRIND_TOGGLE_COLLECT;
    desk::Import(company, desk::Importable::kTransactions, csv);
  });
}

}  // namespace

}  // namespace bench

int main(int count, char** arguments) {
  try {
    if (count > 1) bench::wanted = arguments[1];
    bench::CountOperations();
    const bench::WorkFolder folder(std::filesystem::temp_directory_path());
    bench::CountOnCompanyFile(folder.Path());
    bench::CountAtTheDesk(folder.Path());
    bench::CountImport(folder.Path());
    return EXIT_SUCCESS;
  } catch (const std::exception& error) {
    std::cerr << "multientity_instructions: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
