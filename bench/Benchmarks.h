#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "bench/Comparison.h"

namespace bench {

// How much of everything one run measures.
struct Sizes {
  std::vector<std::int64_t> listedLines{10'000, 100'000, 1'000'000};
  std::int64_t storedLines = 1'000'000;
  std::int64_t importedTransactions = 100'000;
  std::int64_t reportedTransactions = 100'000;
  std::int32_t accounts = 50'000;
  std::int32_t relations = 1'000;
  std::int64_t exchangedProposals = 10'000;
  std::int64_t fewProposals = 1'000;
  std::int64_t manyProposals = 100'000;
};

// Each makes its company files in `folder`, makes sure that both sides answer the same, and adds its lines to the
// table.
void AddPeriodListing(Table& table, const std::filesystem::path& folder, const Sizes& sizes);
void AddRecording(Table& table, const std::filesystem::path& folder);
void AddRequests(Table& table, const std::filesystem::path& folder, const Sizes& sizes);
void AddImporting(Table& table, const std::filesystem::path& folder, const Sizes& sizes);
void AddLookingUp(Table& table, const std::filesystem::path& folder, const Sizes& sizes);
void AddExchanging(Table& table, const std::filesystem::path& folder, const Sizes& sizes);
void AddFreeAccounts(Table& table, const std::filesystem::path& folder, const Sizes& sizes);

// The sample company with that many lines, made at the first question.
std::filesystem::path CompanyWith(const std::filesystem::path& folder, std::int64_t lines);
// A copy of a company file that nobody has open.
std::filesystem::path CopyOf(const std::filesystem::path& company, const char* suffix);

// Ends the run with that message unless both sides answered the same.
void Require(bool isSame, const char* what);

// Whether a command line of the shell ends well.
bool Succeeds(const std::string& command);

// What is no ratio of times, printed at once.
void PrintListingGrowth(const Table& table, const Sizes& sizes);
void PrintListingMemory(const std::filesystem::path& folder, const Sizes& sizes);
void PrintImportMemory(const std::filesystem::path& folder, const Sizes& sizes);
// The time for each proposal and the peak memory, of few and of many.
void PrintExchangeGrowth(const std::filesystem::path& folder, const Sizes& sizes);
// What hledger needs for reports of the same transactions, where it is installed.
void PrintJournalReports(const std::filesystem::path& folder, const Sizes& sizes);
// What the ledger program needs for as many entries, where it is installed.
void PrintLedger(const std::filesystem::path& folder, const Sizes& sizes);

}  // namespace bench
