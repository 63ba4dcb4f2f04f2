#pragma once

#include <filesystem>
#include <functional>
#include <span>

#include "bench/HandWritten.h"

namespace bench {

// When one side has written each of its lines of the audit trail.
using Moments = std::span<const HandWritten::Moment>;

// Ends the run with that message unless both sides leave the same rows in copies of a company. `ours` is given a copy,
// and the desk opens it at a noon of the past, so that no day ends meanwhile. `byHand` does the same work at the
// moments at which `ours` has done it, as they stand in the audit trail and make its SHA-256.
void RequireSameRows(const std::filesystem::path& company, const char* what,
                     const std::function<void(const std::filesystem::path& company)>& ours,
                     const std::function<void(HandWritten& hand, Moments moments)>& byHand);

}  // namespace bench
