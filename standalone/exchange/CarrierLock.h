#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/Clock.h"
#include "platform/SharedFile.h"

namespace exchange {

inline constexpr const char* kLockSuffix = ".lock";

// What the one has who carries a company's envelopes; the system takes it back when the program ends, however it does.
// The file in which it is kept lies beside the identity and stays there.
class CarrierLock {
 public:
  // Nothing while somebody else has it. Throws IdentityError when it cannot be asked for.
  static std::optional<CarrierLock> TryTake(const std::filesystem::path& identity, platform::Clock& clock);

  // Who has it, or had it last, and since when, as a part of a sentence; "another program" when that cannot be read.
  static std::string Holder(const std::filesystem::path& identity);

  bool IsOf(const std::filesystem::path& identity) const { return identity == identity_; }

 private:
  CarrierLock(std::filesystem::path identity, platform::SharedFile file)
      : identity_(std::move(identity)), file_(std::move(file)) {}

  std::filesystem::path identity_;
  platform::SharedFile file_;
};

}  // namespace exchange
