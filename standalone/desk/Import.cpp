#include "standalone/desk/Import.h"

#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/import/Import.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

auto ImportOf(Importable what) noexcept {
  switch (what) {
    case Importable::kAccounts:
      return &standalone::ImportAccounts;
    case Importable::kNames:
      return &standalone::ImportNames;
    case Importable::kTransactions:
      break;
  }
  return &standalone::ImportTransactions;
}

standalone::AuditDeed DeedOfImport(const std::filesystem::path& csv, const standalone::ImportResult& result) {
  const std::vector<std::pair<const char*, std::int64_t>> counts{
      {"rows", result.rows},   {"accounts", result.accounts},
      {"names", result.names}, {"transactions", result.transactions},
      {"lines", result.lines}, {"intercompany lines", result.intercompanyRows}};
  Facts facts;
  for (const auto& [what, count] : counts) {
    if (count != 0) facts.emplace_back(what, std::to_string(count));
  }
  return DeedOf("import", standalone::PathText(csv.filename()), {}, facts);
}

}  // namespace

Imported Import(Company& company, Importable what, const std::filesystem::path& csv, const Progress& progress) {
  Work work(company.Opened(), UseCase::kImport);
  const standalone::ImportResult result = work.WriteAsAdministrator("an import", [&] {
    standalone::ImportResult imported = ImportOf(what)(work.Host(), csv, progress);
    work.Host().Record(DeedOfImport(csv, imported));
    return imported;
  });
  return {.rows = result.rows,
          .accounts = result.accounts,
          .names = result.names,
          .transactions = result.transactions,
          .lines = result.lines,
          .intercompanyLines = result.intercompanyRows};
}

}  // namespace desk
