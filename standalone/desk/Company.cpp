#include "standalone/desk/Company.h"

#include <string_view>
#include <utility>

#include "standalone/books/UserTable.h"
#include "standalone/company/CompanyFile.h"
#include "standalone/desk/Openings.h"
#include "standalone/desk/inside/OpenCompany.h"

namespace desk {

namespace {

static_assert(std::string_view(kFirstUser) == standalone::kAdministratorName);

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
    : opened_(std::make_unique<OpenCompany>(file, options.user,
                                            HowToOpen(options.networkShare, std::move(options.onOpened)),
                                            std::move(options.onAnswer), std::move(options.onSaved))) {
  opened_->SetLookalikesObserver(std::move(options.onLookalikes));
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
