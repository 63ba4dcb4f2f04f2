#pragma once

namespace Util {

// The outcome of a call into the host's data access: a code, of which 0 is success. The module asks only whether the
// call succeeded, and for one preference what the code was.
class Status {
 public:
  static constexpr long kSuccess = 0;
  // The company-database preference does not exist yet.
  static constexpr long kPreferenceMissing = -6018;

  constexpr explicit Status(long code) noexcept : code_(code) {}

  constexpr bool Succeeded() const noexcept { return code_ == kSuccess; }
  constexpr bool Failed() const noexcept { return code_ != kSuccess; }
  constexpr long GetStatusCode() const noexcept { return code_; }

 private:
  long code_;
};

}  // namespace Util
