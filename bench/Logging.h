#pragma once

#include <array>
#include <string>

#include "standalone/company/StandaloneHost.h"
#include "standalone/desk/inside/OpenCompany.h"

namespace bench {

// How much a host writes into its operations log. Requests are measured with both, as the hand-written side writes
// none.
struct Logging {
  const char* title;
  const char* suffix;
  Util::Ops::Level least;

  std::string TitleOf(const std::string& what) const { return what + title; }
  std::string SuffixOf(const std::string& copy) const { return copy + suffix; }
  standalone::HostOptions Options() const {
    standalone::HostOptions options;
    options.log.least = least;
    return options;
  }
  // As the desk has a company open, whose log is one of everything.
  desk::OpenCompany Open(const std::filesystem::path& company) const {
    standalone::LogLimits limits;
    limits.least = least;
    return {company, standalone::kAdministratorName, {}, nullptr, nullptr, limits};
  }
};

inline constexpr std::array kLoggings{
    Logging{", log of warnings and errors", "-warnings", Util::Ops::Level::kWarning},
    Logging{", log of everything", "-everything", Util::Ops::Level::kTrace},
};

}  // namespace bench
