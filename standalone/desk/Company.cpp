#include "standalone/desk/Company.h"

#include <string_view>
#include <utility>

#include "standalone/books/UserTable.h"
#include "standalone/company/CompanyFile.h"
#include "standalone/desk/inside/OpenCompany.h"

namespace desk {

namespace {

static_assert(std::string_view(kFirstUser) == standalone::kAdministratorName);

Opening OpeningOf(const standalone::Opening& done) {
  Opening opening{.broughtForward = {}, .onlyRead = done.onlyRead};
  if (done.migrated) {
    opening.broughtForward = BroughtForward{.from = done.migrated->from,
                                            .to = done.migrated->to,
                                            .before = done.migrated->before,
                                            .left = done.migrated->left};
  }
  return opening;
}

standalone::OpenOptions HowToOpen(const CompanyOptions& options) {
  standalone::OpenOptions how;
  how.networkShares.mayBeWorkedOn = options.networkShare;
  if (options.onOpened) {
    how.tell = [tell = options.onOpened](const standalone::Opening& done) {
      tell(OpeningOf(done));
    };
  }
  return how;
}

NewLogLine LogLineOf(const Util::Ops::Line& line) {
  return {static_cast<std::int32_t>(line.level), static_cast<std::int32_t>(line.eventType), line.shortName,
          std::string(line.message)};
}

}  // namespace

void CreateCompany(const NewCompany& company) {
  const std::unique_ptr<platform::Clock> clock = GivenClock();
  standalone::CompanyFile::Create(company.file,
                                  {.name = company.name,
                                   .homeCurrency = company.homeCurrency,
                                   .multiCurrency = company.multiCurrency,
                                   .sampleFile = company.sampleFile,
                                   .accountantsCopy = company.accountantsCopy,
                                   .clock = {.clock = clock.get(), .setTo = ClockSetTo()}},
                                  {.mayBeWorkedOn = company.networkShare});
}

Company::Company(const std::filesystem::path& file, CompanyOptions options)
    : opened_(std::make_unique<OpenCompany>(file, options.user, HowToOpen(options), std::move(options.onAnswer),
                                            std::move(options.onSaved))) {
  if (!options.onLogLine) return;
  opened_->Host().Log().SetObserver(
      [tell = std::move(options.onLogLine)](const Util::Ops::Line& line) { tell(LogLineOf(line)); });
}

Company::~Company() = default;

const std::filesystem::path& Company::File() const noexcept {
  return opened_->Host().CompanyFilePath();
}

const std::string& Company::UserName() const noexcept {
  return opened_->Host().CurrentUser().name;
}

bool Company::HasBridge() const noexcept {
  return opened_->Attached().HasBridge();
}

}  // namespace desk
