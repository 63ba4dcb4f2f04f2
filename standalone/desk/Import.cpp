#include "standalone/desk/Import.h"

#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/import/Import.h"

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

}  // namespace

Imported Import(Company& company, Importable what, const std::filesystem::path& csv, const Progress& progress) {
  Work work(company.Opened(), UseCase::kImport);
  const standalone::ImportResult result =
      work.WriteAsAdministrator("an import", [&] { return ImportOf(what)(work.Host(), csv, progress); });
  return {.rows = result.rows,
          .accounts = result.accounts,
          .names = result.names,
          .transactions = result.transactions,
          .lines = result.lines,
          .intercompanyLines = result.intercompanyRows};
}

}  // namespace desk
