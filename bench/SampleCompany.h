#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/Clock.h"

namespace bench {

// A folder that is removed with all that is in it.
class WorkFolder {
 public:
  explicit WorkFolder(const std::filesystem::path& parent);
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  ~WorkFolder();
  const std::filesystem::path& Path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

inline constexpr std::int32_t kPartners = 20;
inline constexpr std::int32_t kNames = 300;
inline constexpr std::int32_t kExpenseAccounts = 40;

// Record numbers in a sample company.
inline constexpr std::int32_t kPayableAccount = 1;
inline constexpr std::int32_t kBankAccount = 2;
constexpr std::int32_t DueFromAccount(std::int32_t partner) {
  return 2 + partner;
}
constexpr std::int32_t DueToAccount(std::int32_t partner) {
  return 2 + kPartners + partner;
}
inline constexpr std::int32_t kExpenseParent = 3 + 2 * kPartners;
constexpr std::int32_t ExpenseAccount(std::int32_t number) {
  return kExpenseParent + number;
}

// The realm id of a partner, who are counted from 1.
std::string RealmId(std::int32_t partner);
// The request id of the number-th intercompany line, counted from 1.
std::string RequestId(std::int64_t number);

// A request as both companies know it.
struct Request {
  std::string realm;
  std::string id;
};
// That of an intercompany line, which are counted from 1.
Request RequestOf(std::int64_t line);

// The state of every intercompany line of a sample company: sent, so that the partner may answer.
inline constexpr std::int16_t kSampleState = 1;

// Makes a company with that many intercompany lines, a third each of bills, checks and journal entries, all of them in
// 2025 and every fourth transaction an ordinary bill between them. Names stand up to two levels deep.
void MakeCompany(const std::filesystem::path& file, std::int64_t lines);

// Makes a company with that many accounts of all types, a fifth of them sub-accounts, and relations that use two each.
void MakeChart(const std::filesystem::path& file, std::int32_t accounts, std::int32_t relations);

// The transactions of a company file, their lines, their intercompany rows, which of them are own requests, the audit
// trail and the files that were imported as text, which is never empty.
std::string ContentOf(const std::filesystem::path& company);
// When each line of the audit trail was written.
std::vector<platform::Clock::TimePoint> MomentsOfTrail(const std::filesystem::path& company);

// Writes an import file of that many transactions for a company made with no lines, of the same mix.
void WriteImportFile(const std::filesystem::path& csv, std::int64_t transactions);

}  // namespace bench
