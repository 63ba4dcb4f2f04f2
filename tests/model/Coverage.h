#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/Operation.h"

namespace model {

inline constexpr std::size_t kAnswers = 48;

// How often each operation gave each answer. Plain numbers, so that it can lie in memory that processes share.
struct Coverage {
  std::array<std::array<std::uint64_t, kAnswers>, kKinds> counts{};
  std::uint64_t operations = 0;
  std::uint64_t faults = 0;
  std::uint64_t histories = 0;

  void Count(Kind kind, std::string_view answer, bool faultPlayed);
  void Add(const Coverage& other);
};

// The table, a line for each operation.
std::string Table(const Coverage& coverage);

// The operations that never gave an answer that they can give.
std::vector<std::string> Missing(const Coverage& coverage);

}  // namespace model
