#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/Clock.h"
#include "standalone/app/Invocation.h"
#include "standalone/company/Session.h"
#include "standalone/company/StandaloneHost.h"

namespace app {

// The company file of a command: open for the user who was named, with the module attached to it.
class Company {
 public:
  // Lines that the operations log gains while this lives are added to the invocation's trace. MULTIENTITY_NOW, a local
  // time such as 2026-01-31T09:30:00, sets the clock for tests and scripts; it goes on from there, and the log says so.
  Company(Invocation& invocation, const std::string& file);
  Company(const Company&) = delete;
  Company& operator=(const Company&) = delete;
  ~Company() = default;

  standalone::StandaloneHost& Host() noexcept { return host_; }
  standalone::Session& Attached() noexcept { return session_; }

  // One unit of work that only reads, or one that may write.
  template <typename Operation>
  auto Read(Operation&& operation) {
    return host_.Request(standalone::Access::kRead, std::forward<Operation>(operation));
  }
  template <typename Operation>
  auto Write(Operation&& operation) {
    return host_.Request(standalone::Access::kWrite, std::forward<Operation>(operation));
  }

 private:
  std::unique_ptr<platform::Clock> clock_;  // null for the machine's
  standalone::StandaloneHost host_;
  standalone::Session session_;
};

}  // namespace app
