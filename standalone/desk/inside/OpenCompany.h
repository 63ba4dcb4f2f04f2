#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "platform/Clock.h"
#include "standalone/company/Session.h"
#include "standalone/company/StandaloneHost.h"
#include "standalone/desk/results/Lookalikes.h"

namespace desk {

// The clock that MULTIENTITY_NOW sets; null when it sets none. standalone::InvalidInput for a time that is none.
std::unique_ptr<platform::Clock> GivenClock();
// What it was set to, for the audit trail; empty for the machine's own.
std::string ClockSetTo();

// What a company that is open consists of. Its clock is the machine's unless MULTIENTITY_NOW sets another one.
class OpenCompany {
 public:
  OpenCompany(const std::filesystem::path& file, const std::string& user, standalone::OpenOptions how,
              std::function<void(std::int32_t status)> onAnswer, std::function<void()> onSaved,
              standalone::LogLimits log = {});

  standalone::StandaloneHost& Host() noexcept { return host_; }
  standalone::Session& Attached() noexcept { return session_; }
  void TellAnswer(std::int32_t status) const {
    if (onAnswer_) onAnswer_(status);
  }
  void SetLookalikesObserver(std::function<void(const Lookalikes& names)> observer) {
    onLookalikes_ = std::move(observer);
  }
  void Tell(const Lookalikes& names) const {
    if (onLookalikes_) onLookalikes_(names);
  }
  // Whether nobody has asked yet, since the company was opened, about the opening letter of that pairing.
  bool IsFirstOpeningTo(std::int32_t pairing) { return writtenTo_.insert(pairing).second; }

 private:
  std::unique_ptr<platform::Clock> clock_;  // null for the machine's
  std::function<void(std::int32_t status)> onAnswer_;
  std::function<void(const Lookalikes& names)> onLookalikes_;
  std::set<std::int32_t> writtenTo_;
  standalone::StandaloneHost host_;
  standalone::Session session_;
};

}  // namespace desk
