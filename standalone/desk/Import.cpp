#include "standalone/desk/Import.h"

#include <utility>

#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/LocalTimes.h"
#include "standalone/desk/inside/NotedNames.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/import/Import.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

constexpr const char* kAnImport = "an import";

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

struct SourceOf {
  standalone::CsvSource operator()(const std::filesystem::path& file) const { return {file}; }
  standalone::CsvSource operator()(const CsvStream& stream) const { return {stream.name, stream.read}; }
};

// Without the folder, which is of this machine only.
struct FileNameOf {
  std::string operator()(const std::filesystem::path& file) const { return standalone::PathText(file.filename()); }
  std::string operator()(const CsvStream& stream) const { return stream.name; }
};

std::string FirstImportText(const standalone::AuditLine& line) {
  return "as " + standalone::Quoted(line.subject) + " by " + line.user + " (" + line.systemUser + ") on " +
         standalone::FormatDayAndTime(LocalTimeAt(line.at), ' ') + ", line " + std::to_string(line.number) +
         " of the audit trail";
}

// Nothing when nobody has imported that file.
std::optional<standalone::AuditLine> FirstImportOf(Work& work, const std::string& sha256) {
  const std::optional<std::int64_t> number = work.Host().ImportedFiles().AuditLineOf(sha256);
  if (!number) return std::nullopt;
  return work.Host().Audit().Find(*number);
}

standalone::AuditDeed DeedOfImport(const std::string& name, const standalone::ImportResult& result, bool isAgain) {
  const std::vector<std::pair<const char*, std::int64_t>> counts{{"rows", result.rows},
                                                                 {"accounts", result.accounts},
                                                                 {"names", result.names},
                                                                 {"transactions", result.transactions},
                                                                 {"lines", result.lines},
                                                                 {"intercompany lines", result.intercompanyRows},
                                                                 {"passed over", result.passedOver}};
  Facts facts{{"SHA-256", result.sha256}};
  for (const auto& [what, count] : counts) {
    if (count != 0) facts.emplace_back(what, std::to_string(count));
  }
  if (isAgain) facts.emplace_back("imported before", "yes");
  standalone::AuditDeed deed = DeedOf("import", name, {}, std::move(facts));
  if (result.transactions != 0) deed.transactions = result.transactionIds;
  return deed;
}

Lookalikes LookalikesOf(Importable what, const standalone::ImportResult& result) {
  Lookalikes lookalikes{.list = what == Importable::kAccounts ? Lookalikes::List::kAccounts : Lookalikes::List::kNames,
                        .count = result.alikeCount,
                        .first = {}};
  for (const auto& [name, other] : result.alike) lookalikes.first.push_back({.name = name, .other = other});
  return lookalikes;
}

// Within a unit of work that writes.
class Importing {
 public:
  Importing(Work& work, Importable what, std::string name, const HowToImport& how)
      : work_(work), noted_(work), what_(what), name_(std::move(name)), how_(how) {}

  Imported Run(standalone::CsvSource& source) {
    const standalone::ImportOptions options{
        .skipKnown = how_.skipKnown, .progress = how_.progress, .onRead = [&](const std::string& sha256) {
          NoticeFirstImport(source.Name(), sha256);
        }};
    const standalone::ImportResult result = ImportOf(what_)(work_.Host(), std::move(source), options);
    const std::int64_t line = work_.Host().Record(DeedOfImport(name_, result, first_.has_value()));
    if (result.rows != 0) work_.Host().ImportedFiles().Add(result.sha256, line);
    if (result.alikeCount != 0) noted_.Note(LookalikesOf(what_, result));
    return {.rows = result.rows,
            .accounts = result.accounts,
            .names = result.names,
            .transactions = result.transactions,
            .lines = result.lines,
            .intercompanyLines = result.intercompanyRows,
            .passedOver = result.passedOver};
  }
  void TellNoted() const { noted_.Tell(); }

 private:
  void NoticeFirstImport(const std::string& source, const std::string& sha256) {
    first_ = FirstImportOf(work_, sha256);
    if (!first_ || how_.again) return;
    work_.Refuse(source + " was imported before, " + FirstImportText(*first_) + ".", Remedy::kImportAgain);
  }

  Work& work_;
  NotedNames noted_;
  Importable what_;
  std::string name_;
  const HowToImport& how_;
  std::optional<standalone::AuditLine> first_;
};

}  // namespace

Imported Import(Company& company, Importable what, const CsvToImport& csv, const HowToImport& how) {
  Work work(company.Opened(), UseCase::kImport);
  work.RequireAdministrator(kAnImport);
  standalone::CsvSource source = std::visit(SourceOf(), csv);
  Importing importing(work, what, std::visit(FileNameOf(), csv), how);
  const auto import = [&] {
    return importing.Run(source);
  };
  const Imported imported =
      how.dryRun ? work.RehearseAsAdministrator(kAnImport, import) : work.WriteAsAdministrator(kAnImport, import);
  importing.TellNoted();
  return imported;
}

}  // namespace desk
