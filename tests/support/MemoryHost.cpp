#include "support/MemoryHost.h"

#include <cstdio>

#include "MultiEntityHost/SystemTime.h"

namespace {

constexpr std::size_t kFormattedLength = 256;

template <std::size_t kSize>
void Put(char (&field)[kSize], const char* text) {
  std::memcpy(field, text, std::strlen(text) + 1);
}

}  // namespace

MemoryHost::MemoryHost() : services_(Absent::Host::Services(*this, this)) {
  relation.relationId = 1;
  Put(relation.realmId, "9130000000000001");
  Put(relation.partnerName, "Birch Services");
  relation.state = 3;
  relation.dueFromAccountId = 1;
  relation.dueToAccountId = 2;
  row.txnId = 7;
  row.relationId = 1;
  row.targetId = 13;
  row.txnType = kTxnTypeJournalEntry;
  row.state = 3;
  Put(row.requestId, "0b8e3a60-0000-4000-8000-000000000001");
  rows = {row};
  DBMultiEntityRejectedTxnReceiver bill{};
  bill.txnType = kTxnTypeBill;
  bill.relationId = 1;
  Put(bill.requestId, "0b8e3a60-0000-4000-8000-000000000002");
  Put(bill.amount, "99.00");
  Put(bill.partnerTxnId, "41");
  rejected = {bill};
}

char* MemoryHost::FormatStringV(const char* pattern, std::va_list arguments) {
  auto* const text = static_cast<char*>(std::malloc(kFormattedLength));
  if (text != nullptr) std::vsnprintf(text, kFormattedLength, pattern, arguments);
  return text;
}

Util::Status MemoryHost::GetCompanyDBPreference(Util::TString key, Util::TString& value) {
  value = key == "MERealmId" ? "9130000000000009" : "20250630";
  return kDone;
}

Util::Status MemoryHost::GetAllRelations(std::vector<DBMultiEntityRelation>& out) {
  out.assign(1, relation);
  return kDone;
}

Util::Status MemoryHost::GetTransactionWithTargets(long /*txnId*/, std::vector<DBMultiEntityTransaction>& out) {
  return Fill(out, rows);
}

Util::Status MemoryHost::GetAllTransactionWithTargets(std::vector<DBMultiEntityTransaction>& out) {
  return Fill(out, rows);
}

Util::Status MemoryHost::GetAllRejectedTransaction(std::vector<DBMultiEntityRejectedTxnReceiver>& out) {
  return Fill(out, rejected);
}

EdListStatus MemoryHost::CreateNewChartOfAccount(char* /*name*/, std::int16_t /*type*/, std::int32_t& recnum,
                                                 bool /*option*/) {
  recnum = 3;
  return kEdListSuccess;
}

std::unordered_map<long, std::pair<std::string, std::string>> MemoryHost::GetAllAccounts() {
  return {{1, {"Due from Birch", "Other Current Asset"}},
          {2, {"Due to Birch", "Other Current Liability"}},
          {3, {"Checking", "Bank"}}};
}

EdListStatus MemoryHost::CreateCName(Util::TString& /*name*/, NameType /*type*/, std::int32_t& nameId) {
  nameId = 1;
  return kEdListSuccess;
}

EdListStatus MemoryHost::CreateGeneralJournalEntry(CAccnt& /*first*/, CAccnt& /*second*/, Util::TString /*amount*/,
                                                   JournalEntryIds& ids, std::int32_t /*nameId*/,
                                                   Util::TString /*name*/) {
  ids = {7, 13};
  return kEdListSuccess;
}

void MemoryHost::GetLocalTime(_SYSTEMTIME& now) {
  now = {.wYear = 2025,
         .wMonth = 6,
         .wDayOfWeek = 1,
         .wDay = 30,
         .wHour = 9,
         .wMinute = 30,
         .wSecond = 0,
         .wMilliseconds = 0};
}
