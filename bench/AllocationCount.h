#pragma once

#include <cstddef>

namespace bench {

// While it lives, counts what is allocated with operator new in this process, the module's part included. One at a
// time.
class AllocationCount {
 public:
  AllocationCount() noexcept;
  AllocationCount(const AllocationCount&) = delete;
  AllocationCount& operator=(const AllocationCount&) = delete;
  ~AllocationCount();

  // Bytes that are alive now and that were at most alive at once, SQLite's included in the latter.
  std::ptrdiff_t Live() const noexcept;
  std::ptrdiff_t Peak() const noexcept;

 private:
  std::ptrdiff_t databaseBefore_;
};

constexpr double InMebibytes(std::ptrdiff_t bytes) {
  return static_cast<double>(bytes) / (1024 * 1024);
}

}  // namespace bench
