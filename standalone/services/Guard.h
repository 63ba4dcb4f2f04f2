#pragma once

#include <exception>
#include <utility>

#include "MultiEntityHost/Enumerations.h"
#include "MultiEntityHost/Status.h"
#include "standalone/values/Errors.h"

namespace standalone {

// Status codes of this host beside those that the seam knows.
inline constexpr long kStatusNotFound = -1;
inline constexpr long kStatusRefused = -2;
inline constexpr long kStatusFailed = -3;

// Runs `work`, which returns a status code, and turns what it throws into a code. A unit of work that the failure
// spoiled reports it again when it is to be committed.
template <typename Work>
Util::Status AsStatus(Work&& work) {
  try {
    return Util::Status(std::forward<Work>(work)());
  } catch (const ConstraintViolation&) {
    return Util::Status(kStatusRefused);
  } catch (const InvalidInput&) {
    return Util::Status(kStatusRefused);
  } catch (const std::exception&) {
    return Util::Status(kStatusFailed);
  }
}

// The same for the calls into lists and transactions.
template <typename Work>
EdListStatus AsEdListStatus(Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (const std::exception&) {
    return kEdListFailure;
  }
}

}  // namespace standalone
