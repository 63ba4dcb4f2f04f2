#pragma once

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <regex>
#include <set>

#include "MultiEntity/Records.h"
#include "MultiEntityHostHelpers/AbsentServices.h"
#include "MultiEntityHostHelpers/MemoryTables.h"

// What a company file holds. One counter numbers all that is added to it.
struct Company {
  struct Account {
    std::string name;
    KrEnumerations::AccntTypeType type;
  };
  struct Line {
    std::uint32_t entry;
    std::string account;
    BalType debit;  // negative for a credit
    std::string memo;
  };

  DateType32 today;
  std::int32_t lastId = 100;
  std::map<long, Account> accounts;
  std::set<std::string> names;
  std::map<std::int32_t, Line> lines;
  MemoryTables tables;
};

// A host whose only user may do everything. What it does not override it does not have, such as message boxes.
class MemoryHost final : public Absent::Host, private DBMgr::FileMgr {
 public:
  Company company;
  HostServices Services() { return Absent::Host::Services(company.tables); }

  // Around each call of the library: what it wrote is taken back when it throws or answers anything but success.
  MEStatusCode UnitOfWork(auto call) {
    struct Unit {
      Company& company;
      Company kept = company;
      ~Unit() { company = std::move(kept); }
    } unit{company};
    const MEStatusCode status = call();
    if (status == MEStatusSuccess) unit.kept = company;
    return status;
  }

  void DeliverMessages() {
    for (const auto& next : std::exchange(queue_, {})) UnitOfWork([&] { return next->ProcessMsg(), MEStatusSuccess; });
  }
  void CloseCompany() {
    for (CNotifyCloseSystem* listener : listeners_) listener->HandleNotification({});
  }

  bool Wants(Level level) const noexcept override { return level != Level::kNotice; }
  void Write(const Line& line) noexcept override {
    std::printf("    log: %.*s\n", static_cast<int>(line.message.size()), line.message.data());
  }

  bool IsFeatureEnabled(const char*, const char*) override { return true; }
  bool CurrentUserIsAdminUser() override { return true; }
  bool FeaturePermissionAvailable(ProgramFeature, UserAction, unsigned char) override { return true; }

  AccountHandle OpenAccount(FeatureType) override { return AccountHandle{++lastHandle_}; }
  EdListStatus GetAccountForRecnum(long recnum, CAccnt& account) override {
    if (!company.accounts.contains(recnum)) return kEdListFailure;
    loaded_[account.Handle()] = recnum;
    return kEdListSuccess;
  }
  KrEnumerations::AccntTypeType GetType(AccountHandle account) override {
    return loaded_.contains(account) ? company.accounts.at(loaded_[account]).type : KrEnumerations::AccntTypeType{};
  }
  void ReleaseAccount(AccountHandle account) noexcept override { loaded_.erase(account); }
  EdListStatus CreateNewChartOfAccount(char* name, std::int16_t type, std::int32_t& recnum, bool) override {
    const auto hasName = [=](const auto& account) {
      return account.second.name == name;
    };
    if (std::ranges::any_of(company.accounts, hasName)) return kEdListDuplicateAccount;
    recnum = ++company.lastId;
    company.accounts[recnum] = {name, static_cast<KrEnumerations::AccntTypeType>(type)};
    return kEdListSuccess;
  }
  EdListStatus CreateCName(Util::TString& name, NameType, std::int32_t& nameId) override {
    nameId = ++company.lastId;
    return company.names.insert(name.c_str()).second ? kEdListSuccess : kEdListDuplicateName;
  }

  // Credits the first account and debits the second. The credit's line has the number after the debit's.
  EdListStatus CreateGeneralJournalEntry(CAccnt& first, CAccnt& second, Util::TString amount, JournalEntryIds& ids,
                                         std::int32_t, Util::TString name) override {
    static const std::regex kAmount("([0-9]{1,15})\\.([0-9]{2})");
    std::cmatch parts;
    if (!std::regex_match(amount.c_str(), parts, kAmount)) return kEdListFailure;
    const std::int64_t cents = std::stoll(parts.str(1) + parts.str(2));
    const auto entry = static_cast<std::uint32_t>(++company.lastId);
    const std::int32_t line = ++company.lastId;
    company.lines[line] = {entry, NameOf(second), {cents}, name.c_str()};
    company.lines[++company.lastId] = {entry, NameOf(first), {-cents}, name.c_str()};
    ids = {entry, static_cast<std::uint32_t>(line)};
    return kEdListSuccess;
  }
  EdListStatus DeleteGeneralJournalEntry(std::uint32_t txnId) override {
    const auto ofEntry = [=](const auto& line) {
      return line.second.entry == txnId;
    };
    return std::erase_if(company.lines, ofEntry) > 0 ? kEdListSuccess : kEdListFailure;
  }
  EdListStatus UpdateMETransaction(std::int32_t, std::int32_t) override { return kEdListSuccess; }

  bool TargExists(std::int32_t line, TViewType) override { return company.lines.contains(line); }
  LineHandle OpenLine(std::int32_t line, FeatureType, ReadFailSafeType, TViewType) override { return LineHandle(line); }
  DateType32 GetDate(LineHandle) override { return company.today; }
  BalType GetAmount(LineHandle line) override { return At(line).debit; }
  const char* GetAccountName(LineHandle line, std::int32_t, std::int32_t) override { return At(line).account.c_str(); }
  Util::TString GetStrMemo(LineHandle line) override { return At(line).memo.c_str(); }
  void Money2Str_s(char* buffer, std::size_t size, BalType amount, MoneyFormat) override {
    const std::lldiv_t parts = std::lldiv(std::abs(amount.minorUnits), 100);
    std::snprintf(buffer, size, "%s%lld.%02lld", amount.minorUnits < 0 ? "-" : "", parts.quot, parts.rem);
  }

  bool SystemIsOpen() override { return true; }
  DBMgr::FileMgr* GetActiveFileMgr() override { return this; }
  std::int32_t GetFileState() override { return 0; }
  void Enqueue(AppMsg* message) noexcept override { queue_.emplace_back(message); }
  void SubscribeCloseSystem(CNotifyCloseSystem& listener) noexcept override { listeners_.insert(&listener); }
  void UnsubscribeCloseSystem(CNotifyCloseSystem& listener) noexcept override { listeners_.erase(&listener); }

 private:
  const Company::Line& At(LineHandle line) const { return company.lines.at(static_cast<std::int32_t>(line)); }
  std::string NameOf(const CAccnt& account) { return company.accounts.at(loaded_[account.Handle()]).name; }

  std::map<AccountHandle, long> loaded_;
  std::uint64_t lastHandle_ = 0;
  std::vector<std::unique_ptr<AppMsg>> queue_;
  std::set<CNotifyCloseSystem*> listeners_;
};
