#include "standalone/desk/Export.h"

#include "standalone/company/WholeFile.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/export/Journal.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

ExportedJournal Export(Work& work, const Period& period, const std::function<void(std::string_view text)>& take) {
  return work.Read([&]() -> ExportedJournal {
    // What an account adds up to would tell of those that a user may not see.
    work.RequireAllOf(
        {{kFeatureBills, kActionView}, {kFeatureChecks, kActionView}, {kFeatureJournalEntries, kActionView}});
    ExportedJournal exported;
    const standalone::JournalCounts counts =
        standalone::WriteJournal(work.Host().Data(), period.From(), period.To(), [&](std::string_view text) {
          exported.bytes += text.size();
          take(text);
        });
    exported.accounts = counts.accounts;
    exported.transactions = counts.transactions;
    exported.lines = counts.lines;
    return exported;
  });
}

[[noreturn]] void RefuseTaken(const Work& work, const std::filesystem::path& file) {
  work.Refuse("There is a file " + standalone::PathText(file) + " already.", Remedy::kReplaceTheFile);
}

}  // namespace

ExportedJournal ExportJournal(Company& company, const Period& period,
                              const std::function<void(std::string_view text)>& take) {
  Work work(company.Opened(), UseCase::kExport);
  return Export(work, period, take);
}

ExportedJournal ExportJournalTo(Company& company, const Period& period, const std::filesystem::path& file,
                                bool replaces) {
  Work work(company.Opened(), UseCase::kExport);
  standalone::WholeFile whole(file, work.Host().CompanyFilePath());
  if (whole.IsTaken() && !replaces) RefuseTaken(work, file);
  ExportedJournal exported = Export(work, period, [&whole](std::string_view text) { whole.Write(text); });
  if (!whole.Publish(replaces)) RefuseTaken(work, file);
  exported.file = file;
  return exported;
}

}  // namespace desk
